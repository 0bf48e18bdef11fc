#include "platform/socketlibrary.h"
#include "platform/status.h"

// The sockets of this system are part of it and need no start.

OpcUa_StatusCode OpcUa_P_SocketLibrary_Start()
{
    return OpcUa_Good;
}

void OpcUa_P_SocketLibrary_Stop() {}
