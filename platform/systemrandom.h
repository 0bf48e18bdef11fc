#pragma once

#include "platform/types.h"

/// Makes sure, at the start of the platform, that the source answers. `BadResourceUnavailable` when it
/// doesn't.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_SystemRandom_Initialize();

/// Fills a buffer from the system's random source; may be called from any thread. `size` is in
/// bytes. `BadInvalidArgument` for a null buffer, `BadResourceUnavailable` when the source fails; the
/// buffer must not be used then.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_SystemRandom_Fill(void* buffer, OpcUa_UInt32 size);
