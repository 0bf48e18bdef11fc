#pragma once

#include "pki/opensslhandles.h"

class UaPkiPrivateKey;

// What signing requests are made with. Not for users of the layer. The callers hold a PkiErrorScope;
// reasons of a failure are in the library's queue.

using PkiExtensionStack = PkiHandle<STACK_OF(X509_EXTENSION)>;

/// Whether a request asks for extensions of a type: who the issuer is, and the comment, is left to
/// whoever issues the certificate.
[[nodiscard]] bool PkiRequest_AsksFor(int nid) noexcept;

/// Adds an extension, which may be null as after a failure. False on failure.
[[nodiscard]] bool PkiRequest_Push(const PkiExtensionStack& stack,
                                   PkiHandle<X509_EXTENSION> extension) noexcept;

/// Gives a request its extensions, if there are any, and signs it. False on failure, and for a null
/// stack.
[[nodiscard]] bool PkiRequest_Sign(X509_REQ* pRequest, const PkiExtensionStack& extensions,
                                   const UaPkiPrivateKey& key, int signatureAlgorithm) noexcept;

/// Whether the signature is that of the request's own key.
[[nodiscard]] bool PkiRequest_Verify(X509_REQ* pRequest) noexcept;
