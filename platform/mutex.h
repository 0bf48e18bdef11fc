#pragma once

#include "platform/types.h"

// Recursive mutexes. A mutex may be locked and unlocked from any thread; creating and deleting it
// must not overlap with any other use. The functions take no lock of their own.

/// A recursive mutex.
struct OpcUa_MutexRecord;
using OpcUa_Mutex = OpcUa_MutexRecord*;

/// Makes an unlocked mutex. `BadInvalidArgument` for a null pointer, `BadOutOfMemory` with a null
/// mutex. The caller gives it back with OpcUa_P_Mutex_Delete.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Mutex_Create(OpcUa_Mutex* mutex);

/// Frees a mutex and sets it to null. `BadInvalidArgument` for a null pointer or a null mutex,
/// `BadInvalidState` for a locked one, which stays as it is.
OpcUa_StatusCode OpcUa_P_Mutex_Delete(OpcUa_Mutex* mutex);

/// Waits until the mutex is free or already the calling thread's, and takes it once more. Every lock
/// needs one unlock. `BadInvalidArgument` for a null mutex.
OpcUa_StatusCode OpcUa_P_Mutex_Lock(OpcUa_Mutex mutex);

/// Takes back one lock. `BadInvalidArgument` for a null mutex, `BadInvalidState` when the calling
/// thread doesn't hold it.
OpcUa_StatusCode OpcUa_P_Mutex_Unlock(OpcUa_Mutex mutex);
