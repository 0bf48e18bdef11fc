#pragma once

#include "platform/cryptotypes.h"
#include "platform/openssl_handles.h"

// Not for users of the layer.

/// Whether a key has the given type and bytes.
[[nodiscard]] bool isRsaKey(const OpcUa_Key* key, OpcUa_UInt32 type);

/// Decodes a key of either RSA type; null for bytes that are no RSA key.
[[nodiscard]] OpenSslPointer<EVP_PKEY> decodeRsaKey(const OpcUa_Key& key);

/// Writes a key as PKCS#1 DER; `selection` is EVP_PKEY_PUBLIC_KEY or EVP_PKEY_KEYPAIR. With null data
/// only the length goes back. `BadInvalidArgument` without enough room, `Bad` with a length of 0 when
/// the library fails. The library's own i2d functions are no choice: short of memory they write
/// another, longer form.
[[nodiscard]] OpcUa_StatusCode encodeRsaKey(const EVP_PKEY* key, int selection,
                                            OpcUa_CryptoBytes& output);

/// Bytes of the modulus, of a block and of a signature.
[[nodiscard]] OpcUa_UInt32 rsaSize(const EVP_PKEY* key);
