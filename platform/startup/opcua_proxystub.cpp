#include "platform/startup/opcua_proxystub.h"

#include "platform/network.h"
#include "platform/status.h"
#include "platform/timer.h"
#include "platform/trace.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_namespacetable.h"
#include "stack/opcua_proxystubconfiguration.h"

#include <mutex>

namespace {

struct StackState
{
    /// Recursive, since the kill callbacks of timers run inside the stop.
    std::recursive_mutex mutex;
    OpcUa_UInt32 initCount = 0;
};

StackState& state()
{
    static StackState instance;
    return instance;
}

OpcUa_StatusCode startTrace()
{
    const OpcUa_StatusCode status = OpcUa_Trace_Initialize();
    OpcUa_Trace(OpcUa_TraceLevel_Debug,
                "OpcUa_ProxyStub_Initialize: Tracer has been initialized!\n");
    return status;
}

OpcUa_StatusCode startNetwork()
{
    OpcUa_Trace(OpcUa_TraceLevel_Debug, "OpcUa_ProxyStub_Initialize: Network Module...\n");
    const OpcUa_StatusCode status = OpcUa_P_Socket_InitializeNetwork();
    if (OpcUa_IsNotBad(status)) {
        OpcUa_Trace(OpcUa_TraceLevel_Debug, "OpcUa_ProxyStub_Initialize: Network Module done!\n");
    }
    return status;
}

OpcUa_StatusCode makeTypeTable()
{
    OpcUa_EncodeableTypeTable_Initialize(&OpcUa_EncodeableTypes);
    return OpcUa_EncodeableTypeTable_AddTypes(&OpcUa_EncodeableTypes, OpcUa_KnownEncodeableTypes);
}

OpcUa_StatusCode makeNamespaceTable()
{
    OpcUa_NamespaceTable_Initialize(&OpcUa_Namespaces);
    return OpcUa_NamespaceTable_AddUri(&OpcUa_Namespaces, OpcUa_NamespaceTable_StandardUri,
                                       nullptr);
}

OpcUa_StatusCode startStack(const OpcUa_ProxyStubConfiguration* configuration)
{
    OpcUa_StatusCode status = OpcUa_ProxyStub_ReInitialize(configuration);
    for (const auto step : {startTrace, startNetwork, makeTypeTable, makeNamespaceTable}) {
        if (OpcUa_IsBad(status)) {
            break;
        }
        status = step();
    }
    return status;
}

void stopStack()
{
    OpcUa_Trace(OpcUa_TraceLevel_Debug, "OpcUa_ProxyStub_Clear: Network Module...\n");
    OpcUa_P_Socket_CleanupNetwork();
    OpcUa_P_TimerService_Stop();
    OpcUa_Trace(OpcUa_TraceLevel_Debug, "OpcUa_ProxyStub_Clear: Network Module done!\n");
    OpcUa_Trace_Clear();
    OpcUa_EncodeableTypeTable_Clear(&OpcUa_EncodeableTypes);
    OpcUa_NamespaceTable_Clear(&OpcUa_Namespaces);
}

} // namespace

OpcUa_StatusCode OpcUa_ProxyStub_Initialize(const OpcUa_ProxyStubConfiguration* configuration)
{
    if (configuration == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const std::scoped_lock lock(state().mutex);
    ++state().initCount;
    if (state().initCount > 1) {
        return OpcUa_Good;
    }
    const OpcUa_StatusCode status = startStack(configuration);
    if (OpcUa_IsBad(status)) {
        OpcUa_ProxyStub_Clear();
    }
    return status;
}

void OpcUa_ProxyStub_Clear()
{
    const std::scoped_lock lock(state().mutex);
    if (state().initCount == 0) {
        return;
    }
    --state().initCount;
    if (state().initCount == 0) {
        stopStack();
    }
}
