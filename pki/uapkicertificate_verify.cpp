#include "pki/opensslhandles.h"
#include "pki/pkibarecontext.h"
#include "pki/pkicertificate.h"
#include "pki/pkider.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"

namespace {

/// The part of a certificate that is signed, as it is encoded; null on failure.
PkiHandle<ASN1_TYPE> signedPart(const X509* pCertificate) noexcept
{
    unsigned char* encoded = nullptr;
    const int size = i2d_X509(pCertificate, &encoded);
    const PkiLibraryBytes bytes(encoded);
    if (size <= 0) {
        return nullptr;
    }
    const unsigned char* position = encoded;
    long length = 0;
    int tag = 0;
    int tagClass = 0;
    ASN1_get_object(&position, &length, &tag, &tagClass, size);
    return PkiHandle<ASN1_TYPE>(d2i_ASN1_TYPE(nullptr, &position, length));
}

/// X509_verify in the default context: that function works in the certificate's, which may know no
/// algorithms.
bool verify(const X509* pCertificate, EVP_PKEY* pKey) noexcept
{
    const X509_ALGOR* algorithm = nullptr;
    const ASN1_BIT_STRING* signature = nullptr;
    X509_get0_signature(&signature, &algorithm, pCertificate);
    if (X509_ALGOR_cmp(algorithm, X509_get0_tbs_sigalg(pCertificate)) != 0) {
        return false;
    }
    const PkiHandle<ASN1_TYPE> content = signedPart(pCertificate);
    // The function only reads what it takes as changeable.
    return content != nullptr &&
           ASN1_item_verify(ASN1_ITEM_rptr(ASN1_ANY), const_cast<X509_ALGOR*>(algorithm),
                            const_cast<ASN1_BIT_STRING*>(signature), content.get(), pKey) > 0;
}

/// For a certificate of the default context.
bool issuesItself(X509* pCertificate) noexcept
{
    EVP_PKEY* const key = X509_get0_pubkey(pCertificate);
    const int issued = X509_check_issued(pCertificate, pCertificate);
    if (key == nullptr || issued == X509_V_ERR_UNSPECIFIED) {
        PkiError_EnsureReason();
        return false;
    }
    return issued == X509_V_OK && X509_verify(pCertificate, key) > 0;
}

} // namespace

UaPkiPublicKey UaPkiCertificate::publicKey() const noexcept
{
    return PkiCertificate_Ask(*this, [this](const X509* handle) {
        const UaByteArray bytes = PkiDer_Encode(X509_get_X509_PUBKEY(handle), i2d_X509_PUBKEY);
        UaPkiPublicKey key = UaPkiPublicKey::fromDER(bytes);
        if (PkiHandle<EVP_PKEY>(key.handle()) != nullptr) {
            return key;
        }
        for (const UaString& message : key.getErrors()) {
            addError(message);
        }
        return UaPkiPublicKey();
    });
}

bool UaPkiCertificate::isSelfSigned() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        // What most certificates fail at, told without another decoding.
        if (X509_NAME_cmp(X509_get_subject_name(handle), X509_get_issuer_name(handle)) != 0) {
            return false;
        }
        const PkiHandle<X509> complete = PkiBareContext_Complete(handle);
        if (complete == nullptr) {
            PkiError_EnsureReason();
            return false;
        }
        return issuesItself(complete.get());
    });
}

bool UaPkiCertificate::verifySignature(const UaPkiPublicKey& key) const noexcept
{
    const PkiHandle<EVP_PKEY> keyHandle(key.handle());
    return PkiCertificate_Ask(*this, [&](const X509* handle) {
        return keyHandle != nullptr && verify(handle, keyHandle.get());
    });
}
