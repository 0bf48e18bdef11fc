#pragma once

#include "platform/types.h"

// Threads. A thread record is created, started, waited for and deleted by one thread at a time; what
// the started thread runs is its own. The functions take no lock. The number of the calling thread
// is in "platform/threadid.h".

/// Bytes that are reserved for the stack of a thread.
inline constexpr OpcUa_UInt32 ThreadStackSize = 1048576;

/// The system's part of a started thread.
struct OpcUa_SystemThread;

/// What a thread runs. It must not throw.
using OpcUa_ThreadFunction = void (*)(void* argument);

/// One thread. The handle is null until the thread is started.
struct OpcUa_ThreadRecord
{
    OpcUa_SystemThread* handle;
    OpcUa_ThreadFunction startFunction;
    void* startArgument;
};
using OpcUa_Thread = OpcUa_ThreadRecord*;

/// Makes the record of a thread that isn't started yet. `BadInvalidArgument` for a null pointer,
/// `BadOutOfMemory` with a null thread. The caller gives it back with OpcUa_P_Thread_Delete.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Thread_Create(OpcUa_Thread* thread);

/// Starts the thread with a stack of ThreadStackSize bytes. `BadInvalidArgument` for a null thread
/// or function, `BadInvalidState` for one that was started before, `BadOutOfMemory`, and
/// `BadResourceUnavailable`, after a trace with the system's message, when the system has no thread
/// to give. After a failure it may be started again.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Thread_Start(OpcUa_Thread thread,
                                                    OpcUa_ThreadFunction function, void* argument);

/// Waits until a started thread has ended. `BadInvalidArgument` for a null thread,
/// `BadInvalidState` for one that isn't started, that was waited for already, or that is the calling
/// one.
OpcUa_StatusCode OpcUa_P_Thread_Wait(OpcUa_Thread thread);

/// Frees the record and sets it to null. A thread that wasn't waited for goes on by itself, and its
/// stack is freed when it ends. `BadInvalidArgument` for a null pointer or a null thread.
OpcUa_StatusCode OpcUa_P_Thread_Delete(OpcUa_Thread* thread);
