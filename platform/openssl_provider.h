#pragma once

#include "platform/cryptotypes.h"

// Start and stop of the OpenSSL library for this process, and random keys. OpcUa_P_OpenSSL_Initialize
// and OpcUa_P_OpenSSL_Cleanup run once each, before and after all other use, on the thread that
// starts the platform layer; the other functions may be called from any thread in between. The
// library locks itself; the lock table here serves callers that still ask for locks by number, which
// are taken after any lock of theirs and before those of the trace.

/// Starts the library: memory from the platform's allocator (if the library hasn't allocated yet),
/// the lock table, algorithms, seed, error texts, its version in the build information, and the
/// index for user data of certificate stores.
///
/// `BadOutOfMemory` or the status of a mutex for the lock table, `BadResourceUnavailable` without an
/// index, `Bad` when the random source can't be seeded, `BadUnexpectedError` when the library doesn't
/// start; all that was made is taken back then. Good without doing anything when it runs already.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_Initialize();

/// Takes back what OpcUa_P_OpenSSL_Initialize made; allowed twice. The library itself stays usable
/// until the process ends. The build information is left to the stop sequence.
void OpcUa_P_OpenSSL_Cleanup();

/// The number of locks in the table; 0 while the library isn't started.
[[nodiscard]] int OpcUa_P_OpenSSL_GetLockCount();

/// Enters (bit 0 of `mode` set) or leaves lock `number`. A number outside the table is traced with
/// `file` and `line`, which may be null and 0, and does nothing else.
void OpcUa_P_OpenSSL_LockCallback(int mode, int number, const char* file, int line);

/// The number of the calling thread, by which the library tells threads apart.
[[nodiscard]] OpcUa_UInt32 OpcUa_P_OpenSSL_ThreadIdCallback();

/// The index under which a certificate store keeps user data; -1 before the library's first start,
/// and the same for all later ones.
[[nodiscard]] int OpcUa_P_OpenSSL_GetStoreIndex();

/// Fills `key` with random bytes and sets its type to OpcUa_Crypto_KeyType_Random. `length` is in
/// bytes, from 1 to 1024; a negative one stands for the key length of `provider`, which may be null
/// otherwise. With null data in `key` only type and length go back.
///
/// `BadInvalidArgument` for a null key, a length outside its range or above the room in `key`, and a
/// negative length without a provider; `Bad` when the random source fails.
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_GenerateRandomKey(const OpcUa_CryptoProvider* provider, OpcUa_Int32 length,
                                  OpcUa_Key* key);
