#pragma once

#include "base/uabytearray.h"
#include "pki/opensslhandles.h"
#include "pki/uapkipassword.h"

#include <cstddef>

class UaPkiErrorList;

// What the key classes share. Not for users of the layer. The callers hold a PkiErrorScope.

/// A further reference to a handle; null for null.
[[nodiscard]] EVP_PKEY* PkiKey_Share(EVP_PKEY* pKey) noexcept;

/// Reads the first private key of a PEM text. For an encrypted one the callback is asked; without one
/// `password` is the pass phrase, up to the room that the library has for it; with neither the key is
/// refused. The library is never left without a callback: it would ask on the terminal. Null on
/// failure, with the reason in the library's queue.
[[nodiscard]] PkiHandle<EVP_PKEY> PkiKey_FromPem(const OpcUa_Byte* bytes, std::size_t size,
                                                 const char* password,
                                                 UaPkiPasswordCallback callback,
                                                 void* callbackData) noexcept;

/// Reads a private key of a type, in the form of the type or PKCS#8, without leaving copies of it in
/// freed memory where that can be helped. Null on failure, with the reason in the library's queue.
[[nodiscard]] PkiHandle<EVP_PKEY> PkiKey_FromDer(const UaByteArray& data, int keyType) noexcept;

/// The private key in the form of its own type; empty on failure, with the library's errors drained.
[[nodiscard]] UaByteArray PkiKey_ToDer(EVP_PKEY* pKey, const UaPkiErrorList& errors) noexcept;
