#include "pki/pkisignature.h"

#include "pki/uapkicertificate.h"

#include <openssl/core_names.h>
#include <openssl/params.h>

#include <array>

namespace {

/// What names the algorithm of a signature that is being made; null on failure.
PkiHandle<X509_ALGOR> algorithmOf(EVP_PKEY_CTX* context)
{
    constexpr std::size_t largestSize = 128;
    std::array<unsigned char, largestSize> bytes{};
    OSSL_PARAM parameters[] = {
        OSSL_PARAM_octet_string(OSSL_SIGNATURE_PARAM_ALGORITHM_ID, bytes.data(), bytes.size()),
        OSSL_PARAM_END};
    if (EVP_PKEY_CTX_get_params(context, parameters) != 1) {
        return nullptr;
    }
    const unsigned char* position = bytes.data();
    return PkiHandle<X509_ALGOR>(
        d2i_X509_ALGOR(nullptr, &position, static_cast<long>(parameters[0].return_size)));
}

} // namespace

const EVP_MD* PkiSignature_Digest(int signatureAlgorithm) noexcept
{
    return signatureAlgorithm == UaPkiCertificate::Sha1WithRsa ? EVP_sha1() : EVP_sha256();
}

PkiSignature::PkiSignature(EVP_PKEY* pKey, const EVP_MD* digest) noexcept
    : m_context(EVP_MD_CTX_new())
{
    m_isReady = m_context != nullptr &&
                EVP_DigestSignInit(m_context.get(), &m_pKeyContext, digest, nullptr, pKey) == 1;
}

bool PkiSignature::nameAlgorithm(const PkiSignatureParts& parts) const noexcept
{
    const PkiHandle<X509_ALGOR> algorithm = algorithmOf(m_pKeyContext);
    if (algorithm == nullptr) {
        return false;
    }
    for (const X509_ALGOR* const place : {parts.innerAlgorithm, parts.outerAlgorithm}) {
        if (place != nullptr &&
            X509_ALGOR_copy(const_cast<X509_ALGOR*>(place), algorithm.get()) != 1) {
            return false;
        }
    }
    return true;
}

bool PkiSignature::sign(const PkiSignatureParts& parts, const unsigned char* bytes,
                        std::size_t size) const noexcept
{
    std::size_t length = 0;
    if (EVP_DigestSign(m_context.get(), nullptr, &length, bytes, size) != 1) {
        return false;
    }
    PkiLibraryBytes made(static_cast<unsigned char*>(OPENSSL_malloc(length)));
    if (made == nullptr || EVP_DigestSign(m_context.get(), made.get(), &length, bytes, size) != 1) {
        return false;
    }
    auto* const signature = const_cast<ASN1_BIT_STRING*>(parts.signature);
    ASN1_STRING_set0(signature, made.release(), static_cast<int>(length));
    // No unused bits at the end.
    constexpr long unusedBits = 0x07;
    signature->flags = (signature->flags & ~unusedBits) | ASN1_STRING_FLAG_BITS_LEFT;
    return true;
}
