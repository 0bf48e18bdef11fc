#include "pki/opensslhandles.h"
#include "pki/pkiextensions.h"
#include "pki/pkiname.h"
#include "pki/pkirequest.h"
#include "pki/uapkicsr.h"
#include "pki/uapkirsakeypair.h"

namespace {

/// The extensions that a new certificate would have; null on failure.
PkiExtensionStack makeExtensions(X509_REQ* pRequest, const UaPkiCertificateInfo& info,
                                 bool isCA) noexcept
{
    X509V3_CTX context{};
    X509V3_set_ctx(&context, nullptr, nullptr, pRequest, nullptr, 0);
    PkiExtensionStack extensions(sk_X509_EXTENSION_new_null());
    for (const PkiExtensionRow& row : PkiExtensions_Rows(isCA)) {
        if (PkiRequest_AsksFor(OBJ_sn2nid(row.name)) &&
            !PkiRequest_Push(extensions, PkiExtensions_Make(context, row))) {
            return nullptr;
        }
    }
    if (!isCA && PkiExtensions_HasSubjectAltName(info) &&
        !PkiRequest_Push(extensions, PkiExtensions_MakeSubjectAltName(context, info))) {
        return nullptr;
    }
    return extensions;
}

} // namespace

UaPkiCSR::UaPkiCSR(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                   const UaPkiRSAKeyPair& keyPair, bool isCA, int signatureAlgorithm) noexcept
{
    // The public half alone: the request would keep the private one alive.
    const PkiHandle<EVP_PKEY> publicKey(keyPair.publicKey().handle());
    const PkiErrorScope scope;
    PkiHandle<X509_REQ> request(X509_REQ_new());
    const PkiHandle<X509_NAME> name = PkiName_Build(subject);
    const bool isMade = request != nullptr && name != nullptr &&
                        X509_REQ_set_version(request.get(), X509_REQ_VERSION_1) == 1 &&
                        X509_REQ_set_subject_name(request.get(), name.get()) == 1 &&
                        X509_REQ_set_pubkey(request.get(), publicKey.get()) == 1 &&
                        PkiRequest_Sign(request.get(), makeExtensions(request.get(), info, isCA),
                                        keyPair.privateKey(), signatureAlgorithm);
    if (!isMade || !PkiRequest_Verify(request.get())) {
        PkiError_EnsureReason();
        addLibraryErrors();
    }
    if (isMade) {
        m_pRequest = UaPkiCSR(request.release()).m_pRequest;
    }
}
