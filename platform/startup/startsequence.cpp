#include "platform/startup/startsequence.h"

#include "platform/buildinformation.h"
#include "platform/openssl_provider.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "platform/timer.h"
#include "platform/trace.h"

int startPlatform()
{
    using Step = OpcUa_StatusCode (*)();
    static constexpr Step steps[] = {OpcUa_P_TimerService_Start, OpcUa_P_OpenSSL_Initialize,
                                     OpcUa_P_SystemRandom_Initialize, OpcUa_Trace_Initialize};
    for (const Step step : steps) {
        if (OpcUa_IsBad(step())) {
            return -1;
        }
    }
    return 0;
}

void stopPlatform()
{
    OpcUa_P_TimerService_Stop();
    OpcUa_Trace_Clear();
    OpcUa_P_BuildInformation_Restore();
    OpcUa_P_OpenSSL_Cleanup();
}
