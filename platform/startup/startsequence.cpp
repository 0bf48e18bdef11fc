#include "platform/startup/startsequence.h"

#include "platform/status.h"
#include "platform/trace.h"

int startPlatform()
{
    return OpcUa_IsBad(OpcUa_Trace_Initialize()) ? -1 : 0;
}

void stopPlatform()
{
    OpcUa_Trace_Clear();
}
