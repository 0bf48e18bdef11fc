#pragma once

#include "platform/types.h"

// The one place that asks the system for the time of day and for the tick count. All functions may
// be called from any thread.

/// The current time as the count of 100-nanosecond units since 1 January 1601 UTC.
[[nodiscard]] OpcUa_UInt64 OpcUa_P_Clock_UtcNow();

/// A source of the current time in the unit of OpcUa_P_Clock_UtcNow.
using OpcUa_P_ClockSource = OpcUa_UInt64 (*)();

/// Replaces the system clock, so that a test can choose the time; null restores it. Returns the
/// source that was set before, null for the system's.
OpcUa_P_ClockSource OpcUa_P_Clock_SetSource(OpcUa_P_ClockSource source);

/// The system's clock itself, in the same unit.
[[nodiscard]] OpcUa_UInt64 OpcUa_P_Clock_ReadSystem();

/// Milliseconds of a steady clock that no change of the time of day moves. The count starts anew at 0
/// after 4294967295, every 49.7 days.
[[nodiscard]] OpcUa_UInt32 OpcUa_P_Clock_GetTickCount();

/// A source of the tick count in the unit of OpcUa_P_Clock_GetTickCount.
using OpcUa_P_TickSource = OpcUa_UInt32 (*)();

/// Replaces the steady clock, so that a test can choose the tick count; null restores it. Returns the
/// source that was set before, null for the system's.
OpcUa_P_TickSource OpcUa_P_Clock_SetTickSource(OpcUa_P_TickSource source);

/// The system's tick count itself, in the same unit.
[[nodiscard]] OpcUa_UInt32 OpcUa_P_Clock_ReadSystemTicks();
