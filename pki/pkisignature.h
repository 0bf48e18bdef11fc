#pragma once

#include "pki/opensslhandles.h"

#include <cstddef>

// Signing certificates and requests. Not for users of the layer. The callers hold a
// PkiErrorScope; reasons of a failure are in the library's queue.

/// SHA-1 for the signature algorithm 0, otherwise SHA-256.
[[nodiscard]] const EVP_MD* PkiSignature_Digest(int signatureAlgorithm) noexcept;

/// Where a signature goes. The library shows these parts, but doesn't let them be changed.
struct PkiSignatureParts
{
    const X509_ALGOR* innerAlgorithm = nullptr; ///< Null for a request, which has none.
    const X509_ALGOR* outerAlgorithm = nullptr;
    const ASN1_BIT_STRING* signature = nullptr;
};

/// One signature in the making.
class PkiSignature
{
public:
    /// `isReady` is false on failure, and for a null key.
    PkiSignature(EVP_PKEY* pKey, const EVP_MD* digest) noexcept;

    [[nodiscard]] bool isReady() const noexcept { return m_isReady; }
    /// Names the algorithm where the bytes to be signed have it, and behind them. False on failure.
    [[nodiscard]] bool nameAlgorithm(const PkiSignatureParts& parts) const noexcept;
    /// Signs bytes. False on failure, with the former signature in place.
    [[nodiscard]] bool sign(const PkiSignatureParts& parts, const unsigned char* bytes,
                            std::size_t size) const noexcept;

private:
    PkiHandle<EVP_MD_CTX> m_context;
    EVP_PKEY_CTX* m_pKeyContext = nullptr; ///< Owned by the context.
    bool m_isReady = false;
};

/// Signs as X509_sign and X509_REQ_sign do, but in the default context, whichever the object's is: those
/// functions free a part of the object on its own when memory is short. `encode` gives the bytes to be
/// signed anew. False on failure.
template <typename Handle>
[[nodiscard]] bool PkiSignature_Sign(Handle* pHandle, const PkiSignatureParts& parts,
                                     int (*encode)(Handle*, unsigned char**), EVP_PKEY* pKey,
                                     const EVP_MD* digest) noexcept
{
    const PkiSignature signature(pKey, digest);
    if (!signature.isReady() || !signature.nameAlgorithm(parts)) {
        return false;
    }
    unsigned char* encoded = nullptr;
    const int size = encode(pHandle, &encoded);
    const PkiLibraryBytes owner(encoded);
    return size > 0 && signature.sign(parts, encoded, static_cast<std::size_t>(size));
}
