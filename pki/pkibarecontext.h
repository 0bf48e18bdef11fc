#pragma once

#include "pki/opensslhandles.h"

// Not for users of the layer.

/// A library context without any algorithm, made once and kept for the life of the process; null when
/// it can't be made, which stands for the default context. Threads share it.
///
/// What is decoded in it has no usable keys: the library, which searches all its decoders for each
/// public key and keeps copies of each private key on its way through them, finds none. That search is
/// most of the time that reading a certificate takes, and the fields of a certificate don't need its key.
[[nodiscard]] OSSL_LIB_CTX* PkiBareContext() noexcept;

/// The same certificate decoded in the default context, with its key and whatever the library derives
/// from it; null on failure, with the reason in the library's queue.
[[nodiscard]] PkiHandle<X509> PkiBareContext_Complete(const X509* pCertificate) noexcept;
