#pragma once

#include "platform/cryptotypes.h"

// Digests and keyed digests. All functions may be called from any thread and take no lock.

inline constexpr OpcUa_UInt32 OpcUa_Sha1_Size = 20;
inline constexpr OpcUa_UInt32 OpcUa_Sha224_Size = 28;
inline constexpr OpcUa_UInt32 OpcUa_Sha256_Size = 32;
inline constexpr OpcUa_UInt32 OpcUa_Sha384_Size = 48;
inline constexpr OpcUa_UInt32 OpcUa_Sha512_Size = 64;

/// @name Digests
/// Each writes the digest of `length` bytes of `data` to `result`, which has room for the size above.
/// `BadInvalidArgument` for null data; `Bad` for a null result and when the library fails, with an
/// undefined result.
/// @{
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_SHA1_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length, OpcUa_Byte* result);
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_SHA224_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length, OpcUa_Byte* result);
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_SHA256_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length, OpcUa_Byte* result);
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_SHA384_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length, OpcUa_Byte* result);
[[nodiscard]] OpcUa_StatusCode
OpcUa_P_OpenSSL_SHA512_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length, OpcUa_Byte* result);
/// @}

/// @name Keyed digests (HMAC, RFC 2104)
/// Each writes the HMAC of `length` bytes of `data` to `result`; a key of length 0 is allowed. With
/// null data in `result` only the digest's size goes into its length. `BadInvalidArgument` for null
/// data, a null key or key data, a negative key length, a null result, and one without enough room;
/// `Bad` when the library fails.
/// @{
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA1_Generate(const OpcUa_Byte* data,
                                                                  OpcUa_UInt32 length,
                                                                  const OpcUa_Key* key,
                                                                  OpcUa_CryptoBytes* result);
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA224_Generate(const OpcUa_Byte* data,
                                                                    OpcUa_UInt32 length,
                                                                    const OpcUa_Key* key,
                                                                    OpcUa_CryptoBytes* result);
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA256_Generate(const OpcUa_Byte* data,
                                                                    OpcUa_UInt32 length,
                                                                    const OpcUa_Key* key,
                                                                    OpcUa_CryptoBytes* result);
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA384_Generate(const OpcUa_Byte* data,
                                                                    OpcUa_UInt32 length,
                                                                    const OpcUa_Key* key,
                                                                    OpcUa_CryptoBytes* result);
[[nodiscard]] OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA512_Generate(const OpcUa_Byte* data,
                                                                    OpcUa_UInt32 length,
                                                                    const OpcUa_Key* key,
                                                                    OpcUa_CryptoBytes* result);
/// @}
