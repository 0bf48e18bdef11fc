#pragma once

#include "platform/types.h"

/// The system's number of the calling thread, as its tools show it.
[[nodiscard]] OpcUa_UInt32 OpcUa_P_Thread_GetCurrentId();
