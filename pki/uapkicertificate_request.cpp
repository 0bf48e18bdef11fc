#include "pki/opensslhandles.h"
#include "pki/pkibarecontext.h"
#include "pki/pkicertificate.h"
#include "pki/pkirequest.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicsr.h"

namespace {

/// The extensions that go into a request; null on failure.
PkiExtensionStack copyExtensions(const X509* pCertificate) noexcept
{
    PkiExtensionStack extensions(sk_X509_EXTENSION_new_null());
    const int count = X509_get_ext_count(pCertificate);
    for (int i = 0; i < count; ++i) {
        X509_EXTENSION* const extension = X509_get_ext(pCertificate, i);
        if (PkiRequest_AsksFor(OBJ_obj2nid(X509_EXTENSION_get_object(extension))) &&
            !PkiRequest_Push(extensions,
                             PkiHandle<X509_EXTENSION>(X509_EXTENSION_dup(extension)))) {
            return nullptr;
        }
    }
    return extensions;
}

} // namespace

UaPkiCSR UaPkiCertificate::toCSR(const UaPkiPrivateKey& key, int signatureAlgorithm) const noexcept
{
    UaPkiCSR result;
    if (isNull()) {
        addError(PkiCertificate_IsNull);
        result.addError(PkiCertificate_IsNull);
        return result;
    }
    const PkiErrorScope scope;
    const PkiHandle<X509> certificate = PkiBareContext_Complete(m_pCertificate);
    PkiHandle<X509_REQ> request(
        certificate != nullptr ? X509_to_X509_REQ(certificate.get(), nullptr, nullptr) : nullptr);
    if (request != nullptr &&
        PkiRequest_Sign(request.get(), copyExtensions(certificate.get()), key,
                        signatureAlgorithm) &&
        PkiRequest_Verify(request.get())) {
        return UaPkiCSR(request.release());
    }
    PkiError_EnsureReason();
    result.addLibraryErrors();
    return result;
}
