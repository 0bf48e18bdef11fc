#pragma once

#include "platform/types.h"

// Counting semaphores with a maximum. Waiting and posting may be done from any thread; creating and
// deleting must not overlap with any other use. A semaphore holds a lock of its own for a few
// instructions and takes no other one meanwhile, so that it may be posted under any lock.

/// A count of permits.
struct OpcUa_SemaphoreRecord;
using OpcUa_Semaphore = OpcUa_SemaphoreRecord*;

/// A time to wait, in milliseconds, that never ends.
inline constexpr OpcUa_UInt32 OpcUa_Semaphore_Infinite = 0xFFFFFFFF;

/// Makes a semaphore with `initial` permits that never holds more than `maximum`.
/// `BadInvalidArgument` for a null pointer, a maximum of 0 or an initial count above the maximum;
/// `BadOutOfMemory`. A failure leaves a null semaphore. The caller gives it back with
/// OpcUa_P_Semaphore_Delete.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Semaphore_Create(OpcUa_Semaphore* semaphore,
                                                        OpcUa_UInt32 initial, OpcUa_UInt32 maximum);

/// Frees a semaphore, on which nobody waits, and sets it to null. `BadInvalidArgument` for a null
/// pointer or a null semaphore.
OpcUa_StatusCode OpcUa_P_Semaphore_Delete(OpcUa_Semaphore* semaphore);

/// Waits for a permit, without limit, and takes it. `BadInvalidArgument` for a null semaphore.
OpcUa_StatusCode OpcUa_P_Semaphore_Wait(OpcUa_Semaphore semaphore);

/// Waits for a permit for at most `milliseconds`; 0 only looks, OpcUa_Semaphore_Infinite waits
/// without limit. `BadTimeout` when none came in time, `BadInvalidArgument` for a null semaphore.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Semaphore_TimedWait(OpcUa_Semaphore semaphore,
                                                           OpcUa_UInt32 milliseconds);

/// Adds `count` permits. When they don't all fit below the maximum none is added and the status is
/// `BadTooManyPosts`. `BadInvalidArgument` for a null semaphore or a count of 0.
OpcUa_StatusCode OpcUa_P_Semaphore_Post(OpcUa_Semaphore semaphore, OpcUa_UInt32 count);
