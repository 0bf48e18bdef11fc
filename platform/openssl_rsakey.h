#pragma once

#include "platform/cryptotypes.h"
#include "platform/openssl_handles.h"

// Not for users of the layer.

/// Whether a key has the given type and bytes.
[[nodiscard]] bool isRsaKey(const OpcUa_Key* key, OpcUa_UInt32 type);

/// Decodes a key of either RSA type; null for bytes that are no RSA key.
[[nodiscard]] OpenSslPointer<EVP_PKEY> decodeRsaKey(const OpcUa_Key& key);

/// Bytes of the modulus, of a block and of a signature.
[[nodiscard]] OpcUa_UInt32 rsaSize(const EVP_PKEY* key);
