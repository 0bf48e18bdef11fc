#pragma once

#include "platform/types.h"

// The one place that asks the system for the time of day. All functions may be called from any
// thread.

/// The current time as the count of 100-nanosecond units since 1 January 1601 UTC.
[[nodiscard]] OpcUa_UInt64 OpcUa_P_Clock_UtcNow();

/// A source of the current time in the unit of OpcUa_P_Clock_UtcNow.
using OpcUa_P_ClockSource = OpcUa_UInt64 (*)();

/// Replaces the system clock, so that a test can choose the time; null restores it. Returns the
/// source that was set before, null for the system's.
OpcUa_P_ClockSource OpcUa_P_Clock_SetSource(OpcUa_P_ClockSource source);

/// The system's clock itself, in the same unit.
[[nodiscard]] OpcUa_UInt64 OpcUa_P_Clock_ReadSystem();
