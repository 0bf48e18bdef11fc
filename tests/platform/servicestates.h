#pragma once

#include "platform/network.h"
#include "platform/openssl_provider.h"
#include "platform/status.h"
#include "platform/timer.h"
#include "platform/trace.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_namespacetable.h"

// Whether the services of the start sequence run, as it shows from outside.

inline bool isTimerServiceRunning()
{
    OpcUa_Timer timer = nullptr;
    const OpcUa_StatusCode status = OpcUa_P_Timer_Create(&timer, 100000, nullptr, nullptr, nullptr);
    OpcUa_P_Timer_Delete(&timer);
    return OpcUa_IsGood(status);
}

inline bool isCryptoRunning()
{
    return OpcUa_P_OpenSSL_GetLockCount() > 0;
}

/// Traces a message of a level that no test lets through.
inline bool isTraceRunning()
{
    return OpcUa_Trace(1, "probe");
}

inline bool isNetworkRunning()
{
    return OpcUa_P_Socket_Network().socketMutex != nullptr;
}

inline bool isTypeTableFilled()
{
    return OpcUa_EncodeableTypes.Count > 0;
}

inline bool isNamespaceTableFilled()
{
    return OpcUa_Namespaces.Count > 0;
}
