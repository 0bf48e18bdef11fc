#pragma once

#include "platform/cryptotypes.h"

// Key derivation by the pseudo-random function of TLS (RFC 5246, section 5) on one digest. The
// functions may be called from any thread and take no lock.

/// @name Derivation
/// Each derives `length` bytes, from 1 to 512, from a secret and a seed into `result`; a negative
/// length stands for the key length of `provider`, which may be null otherwise. With null data in
/// `result` only the length goes back.
///
/// `BadInvalidArgument` for null pointers, a length outside its range or above the room in `result`;
/// `BadOutOfMemory`; `Bad` when the library fails, with all of `result`'s bytes cleared. What was
/// copied of the secret is wiped on every path.
/// @{
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_PSHA1_Derive(const OpcUa_CryptoProvider* provider, const OpcUa_Byte* secret,
                             OpcUa_UInt32 secretLength, const OpcUa_Byte* seed,
                             OpcUa_UInt32 seedLength, OpcUa_Int32 length, OpcUa_Key* result);
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_PSHA256_Derive(const OpcUa_CryptoProvider* provider, const OpcUa_Byte* secret,
                               OpcUa_UInt32 secretLength, const OpcUa_Byte* seed,
                               OpcUa_UInt32 seedLength, OpcUa_Int32 length, OpcUa_Key* result);
/// @}
