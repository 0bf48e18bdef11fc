#pragma once

#include "platform/mutex.h"

// What all sockets of the process share. It is started and stopped with the platform by one thread;
// in between its mutexes may be locked from any. Lock order: the mutex of the sockets, then that of
// the client threads.

/// The module's parts; null mutexes while it isn't started.
struct OpcUa_NetworkModule
{
    OpcUa_Mutex socketMutex;        ///< Guards what sockets of all managers share.
    OpcUa_Mutex clientThreadMutex;  ///< Guards the counter.
    OpcUa_UInt32 clientThreadCount; ///< Threads that serve one accepted connection each.
};

/// The module of the process.
[[nodiscard]] const OpcUa_NetworkModule& OpcUa_P_Socket_Network();

/// Starts the system's sockets and makes the module's parts. `BadInvalidState` when it is started
/// already, `BadOutOfMemory`, or the system's failure; nothing is left then.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_Socket_InitializeNetwork();

/// Takes all of it back; allowed twice.
void OpcUa_P_Socket_CleanupNetwork();
