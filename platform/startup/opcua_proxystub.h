#pragma once

#include "platform/types.h"

struct OpcUa_ProxyStubConfiguration;

// Start and stop of the stack above a running platform. The calls are counted and may come from any
// thread: a lock of their own, the outermost of all, serialises them.

/// Counts a user of the stack and, for the first one, starts it: its configuration, the trace, the
/// network module, and the tables of encodable types and namespaces, in this order. Each step that a
/// trace can tell is traced at OpcUa_TraceLevel_Debug.
///
/// `BadInvalidArgument` for a null record, which counts nobody; `BadInvalidState` while a proxy or
/// stub exists, `BadOutOfMemory`, or the failure of another step. After a failed step everything is
/// stopped again, the platform's timers too, and the user isn't counted.
[[nodiscard]] OpcUa_StatusCode
OpcUa_ProxyStub_Initialize(const OpcUa_ProxyStubConfiguration* configuration);

/// Takes a user away and, for the last one, stops the network module, the platform's timers, the
/// trace, and empties the tables, in this order. Nothing of the stack may be in use then. Does nothing
/// without a user.
void OpcUa_ProxyStub_Clear();
