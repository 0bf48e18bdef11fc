#include "platform/threadid.h"

#include <unistd.h>

OpcUa_UInt32 OpcUa_P_Thread_GetCurrentId()
{
    return static_cast<OpcUa_UInt32>(gettid());
}
