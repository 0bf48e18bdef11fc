#pragma once

#include "platform/types.h"

// Millisecond timers, served by one thread from a table of NoOfTimers slots. Timers may be created
// and deleted from any thread and from their own callbacks.
//
// One recursive lock guards the table, and it is held while a callback runs: a long callback holds up
// all timers, and a callback must not wait for a thread that creates or deletes one. Lock order: the
// timer lock before the lock of a semaphore and the lock of the trace. A trace hook must therefore not
// call into this header.

/// Slots of the timer table.
inline constexpr OpcUa_UInt32 NoOfTimers = 50;

/// The longest time in milliseconds that the timer thread sleeps while there is a timer.
inline constexpr OpcUa_UInt32 OpcUa_Timer_LongestSleep = 200;

struct OpcUa_TimerEntry;

/// A handle is a pointer to the timer's slot. A slot is used again after its timer was deleted, so
/// that a copy of an old handle may name another timer.
using OpcUa_Timer = OpcUa_TimerEntry*;

/// Gets the timer's data, the timer, and the milliseconds since it was last run or, before its first
/// run, created. It must not throw.
using OpcUa_TimerCallback = void (*)(void* callbackData, OpcUa_Timer timer, OpcUa_UInt32 elapsed);

/// One slot of the table. The timer lock guards it.
struct OpcUa_TimerEntry
{
    bool used;
    OpcUa_UInt32 interval; ///< Milliseconds.
    OpcUa_TimerCallback timerCallback;
    OpcUa_TimerCallback killCallback;
    void* callbackData;
    OpcUa_UInt32 lastFired; ///< Tick count of the last run.
    OpcUa_UInt32 nextDue;   ///< `lastFired` plus `interval`.
};

/// Starts the thread that runs the timers. `BadInvalidState` when it runs already; `BadOutOfMemory`
/// or `BadResourceUnavailable`, with nothing left behind, when it can't be started. Starting and
/// stopping are done by one thread.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_TimerService_Start();

/// Ends the thread, then deletes every timer that is left, so that its kill callback runs on the
/// calling thread. `BadInvalidState` when the service doesn't run or when called by a callback on
/// the timer thread.
OpcUa_StatusCode OpcUa_P_TimerService_Stop();

/// Makes a timer that runs `timerCallback` on the timer thread every `interval` milliseconds: never
/// earlier, and at most 200 milliseconds late as long as callbacks are short. An interval of 0 runs
/// it as often as the thread comes by, once a millisecond at most. Both callbacks may be null.
/// `killCallback` runs once, when the timer is deleted.
///
/// `BadInvalidArgument` for a null `timer`, `BadResourceUnavailable` with all slots taken,
/// `BadInvalidState` when the service doesn't run; `*timer` is null after a failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Timer_Create(OpcUa_Timer* timer, OpcUa_UInt32 interval,
                                                    OpcUa_TimerCallback timerCallback,
                                                    OpcUa_TimerCallback killCallback,
                                                    void* callbackData);

/// Runs the timer's kill callback on the calling thread, frees the slot and sets the handle to null.
/// When it returns, no callback of the timer runs or will run, unless it was called by one. The
/// handle itself must outlive the kill callback.
///
/// `BadInvalidArgument` for a null pointer, a null handle, and a handle whose timer is deleted
/// already or just being deleted. A handle that points to no slot is only set to null.
OpcUa_StatusCode OpcUa_P_Timer_Delete(OpcUa_Timer* timer);
