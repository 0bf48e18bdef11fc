#pragma once

#include "platform/cryptotypes.h"

// AES in CBC mode. The functions may be called from any thread and take no lock.

/// Bytes of a block and of the initial vector.
inline constexpr OpcUa_UInt32 OpcUa_Aes_BlockSize = 16;

/// @name AES-128 and AES-256, chosen by the key's length
/// Each turns `inputLength` bytes into as many bytes of `output`, without padding. `initialVector`
/// has 16 bytes and stays as it is. `output` may be `input` itself but must not overlap it otherwise.
/// `*outputLength` says on entry how many bytes `output` has room for, and on return how many it
/// holds; with a null `output` the needed number goes back and nothing else happens.
///
/// `Bad` for a key that has neither 16 nor 32 bytes, and when the library fails, with 0 in
/// `*outputLength`. `BadInvalidArgument` for other null pointers, an input that is no whole number of
/// blocks, and an output without enough room.
/// @{
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_AES_CBC_Encrypt(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                const OpcUa_Key* key, const OpcUa_Byte* initialVector,
                                OpcUa_Byte* output, OpcUa_UInt32* outputLength);
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_AES_CBC_Decrypt(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                const OpcUa_Key* key, const OpcUa_Byte* initialVector,
                                OpcUa_Byte* output, OpcUa_UInt32* outputLength);
/// @}
