#include "platform/startup/startsequence.h"

#include "platform/buildinformation.h"
#include "platform/openssl_provider.h"
#include "platform/startup/opcua_proxystub.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "platform/timer.h"
#include "stack/opcua_proxystubconfiguration.h"

namespace {

struct StartState
{
    OpcUa_ProxyStubConfiguration configuration;
    bool isConfigurationSet;
    bool isStackStarted;
};

StartState state{};

OpcUa_StatusCode startServices()
{
    using Step = OpcUa_StatusCode (*)();
    static constexpr Step steps[] = {OpcUa_P_TimerService_Start, OpcUa_P_OpenSSL_Initialize,
                                     OpcUa_P_SystemRandom_Initialize};
    for (const Step step : steps) {
        const OpcUa_StatusCode status = step();
        if (OpcUa_IsBad(status)) {
            return status;
        }
    }
    return OpcUa_Good;
}

void fillConfiguration()
{
    if (!state.isConfigurationSet) {
        OpcUa_ProxyStubConfiguration_Initialize(&state.configuration);
        state.isConfigurationSet = true;
    }
}

} // namespace

int startPlatform()
{
    if (OpcUa_IsBad(startServices())) {
        return -1;
    }
    fillConfiguration();
    state.isStackStarted = OpcUa_IsNotBad(OpcUa_ProxyStub_Initialize(&state.configuration));
    return state.isStackStarted ? 0 : -1;
}

void stopPlatform()
{
    if (state.isStackStarted) {
        OpcUa_ProxyStub_Clear();
        state.isStackStarted = false;
    } else {
        // The stack, which ends the timers, never came up.
        OpcUa_P_TimerService_Stop();
    }
    OpcUa_P_BuildInformation_Restore();
    OpcUa_P_OpenSSL_Cleanup();
}

OpcUa_ProxyStubConfiguration stackConfiguration()
{
    fillConfiguration();
    return state.configuration;
}

int setStackConfiguration(const OpcUa_ProxyStubConfiguration& configuration)
{
    if (OpcUa_IsBad(OpcUa_ProxyStub_ReInitialize(&configuration))) {
        return -1;
    }
    state.configuration = configuration;
    state.isConfigurationSet = true;
    return 0;
}
