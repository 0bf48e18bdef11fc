#pragma once

#include "platform/types.h"

// Trace of the stack and platform layers. A message carries one level bit; what reaches the sink is
// set by an on flag and a level mask. All functions may be called from any thread.

inline constexpr OpcUa_UInt32 OpcUa_TraceLevel_Content = 2; ///< Most detailed.
inline constexpr OpcUa_UInt32 OpcUa_TraceLevel_Debug = 4;
inline constexpr OpcUa_UInt32 OpcUa_TraceLevel_System = 8;
inline constexpr OpcUa_UInt32 OpcUa_TraceLevel_Warning = 16;
inline constexpr OpcUa_UInt32 OpcUa_TraceLevel_Error = 32;

/// Receives one message, cut to 199 characters and without time or thread, under the trace's lock. It
/// may trace itself, but must take no lock under which others trace, such as that of the timers.
using OpcUa_TraceHook = void (*)(const char* message);

/// Makes the trace ready. Before this call every message is lost. `BadOutOfMemory` on failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_Trace_Initialize();

/// Ends the trace; messages are lost from here on. Allowed twice.
void OpcUa_Trace_Clear();

/// Switches the trace on or off and sets the mask of level bits that it lets through.
void OpcUa_Trace_Configure(bool enabled, OpcUa_UInt32 levelMask);

/// Sends messages to an application instead of the standard output; null restores the default,
/// which prints "|%08X| %s %s" with the thread identifier, the UTC time and the message.
void OpcUa_Trace_SetHook(OpcUa_TraceHook hook);

/// Traces one message in printf form. Returns false when the trace was not made ready.
[[gnu::format(printf, 2, 3)]] bool OpcUa_Trace(OpcUa_UInt32 level, const char* format, ...);
