#include "pki/opensslhandles.h"
#include "pki/pkibarecontext.h"
#include "pki/pkicertificate.h"
#include "pki/pkiextensions.h"
#include "pki/pkiname.h"
#include "pki/pkisignature.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirsakeypair.h"

#include <cstddef>
#include <ctime>
#include <utility>

namespace {

/// Makes a certificate with `fill(certificate)`, which tells whether all went well; null on failure,
/// with the library's errors drained.
template <typename Fill>
X509* make(const UaPkiErrorList& errors, Fill fill)
{
    PkiHandle<X509> certificate(X509_new());
    if (certificate == nullptr) {
        return nullptr;
    }
    if (!fill(certificate.get())) {
        errors.addLibraryErrors();
        return nullptr;
    }
    return certificate.release();
}

/// Version 3 and the serial number, for which 0 stands for the current time.
bool setNumbers(X509* certificate, OpcUa_Int32 serialNumber, std::time_t now)
{
    const OpcUa_Int32 serial = serialNumber != 0 ? serialNumber : static_cast<OpcUa_Int32>(now);
    return X509_set_version(certificate, X509_VERSION_3) == 1 &&
           ASN1_INTEGER_set(X509_get_serialNumber(certificate), serial) == 1;
}

bool setNames(X509* certificate, const X509_NAME* subject, const X509_NAME* issuer)
{
    return subject != nullptr && issuer != nullptr &&
           X509_set_subject_name(certificate, subject) == 1 &&
           X509_set_issuer_name(certificate, issuer) == 1;
}

/// The lifetime begins now; `seconds` may carry it past 2050, where the form of times changes.
bool setLifetime(X509* certificate, OpcUa_UInt32 seconds, std::time_t now)
{
    return X509_time_adj_ex(X509_getm_notBefore(certificate), 0, 0, &now) != nullptr &&
           X509_time_adj_ex(X509_getm_notAfter(certificate), 0, seconds, &now) != nullptr;
}

/// Copies the public part of a key. X509_set_pubkey would keep the whole key, the private part too, for
/// as long as the certificate lives.
bool setKey(X509* certificate, EVP_PKEY* key)
{
    X509_PUBKEY* encoded = nullptr;
    if (key == nullptr || X509_PUBKEY_set(&encoded, key) != 1) {
        ERR_raise(ERR_LIB_X509, X509_R_UNABLE_TO_GET_CERTS_PUBLIC_KEY);
        return false;
    }
    const PkiHandle<X509_PUBKEY> owner(encoded);
    ASN1_OBJECT* type = nullptr;
    const unsigned char* bits = nullptr;
    int size = 0;
    X509_ALGOR* algorithm = nullptr;
    X509_PUBKEY_get0_param(&type, &bits, &size, &algorithm, encoded);
    PkiLibraryBytes copy(
        static_cast<unsigned char*>(OPENSSL_memdup(bits, static_cast<std::size_t>(size))));
    X509_PUBKEY* const target = X509_get_X509_PUBKEY(certificate);
    X509_ALGOR* targetAlgorithm = nullptr;
    if (copy == nullptr || X509_PUBKEY_set0_param(target, OBJ_dup(type), V_ASN1_UNDEF, nullptr,
                                                  copy.get(), size) != 1) {
        return false;
    }
    (void)copy.release();
    X509_PUBKEY_get0_param(nullptr, nullptr, nullptr, &targetAlgorithm, target);
    return X509_ALGOR_copy(targetAlgorithm, algorithm) == 1;
}

X509V3_CTX contextOf(X509* issuer, X509* subject, X509_REQ* request = nullptr)
{
    X509V3_CTX context{};
    X509V3_set_ctx(&context, issuer, subject, request, nullptr, 0);
    return context;
}

bool add(X509* certificate, const PkiHandle<X509_EXTENSION>& extension)
{
    return extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1;
}

/// What the extensions tell of a certificate that is its own issuer. The library would leave its key's
/// identifier out if it saw the certificate itself.
PkiHandle<X509> likenessOf(X509* certificate)
{
    PkiHandle<X509> likeness(X509_new());
    const bool isAlike =
        likeness != nullptr &&
        X509_set_issuer_name(likeness.get(), X509_get_issuer_name(certificate)) == 1 &&
        X509_set_serialNumber(likeness.get(), X509_get_serialNumber(certificate)) == 1;
    return isAlike ? std::move(likeness) : nullptr;
}

/// Adds the table's extensions and, to an application's certificate, its names. Without an issuer the
/// certificate is its own.
bool addExtensions(X509* certificate, X509* issuer, const UaPkiCertificateInfo& info, bool isCA)
{
    const PkiHandle<X509> likeness = issuer == nullptr ? likenessOf(certificate) : nullptr;
    if (issuer == nullptr && likeness == nullptr) {
        return false;
    }
    X509V3_CTX context = contextOf(likeness != nullptr ? likeness.get() : issuer, certificate);
    for (const PkiExtensionRow& row : PkiExtensions_Rows(isCA)) {
        const PkiHandle<X509_EXTENSION> extension = PkiExtensions_Make(context, row);
        if (!add(certificate, extension) ||
            (likeness != nullptr && !add(likeness.get(), extension))) {
            return false;
        }
    }
    return isCA || !PkiExtensions_HasSubjectAltName(info) ||
           add(certificate, PkiExtensions_MakeSubjectAltName(context, info));
}

bool signWith(X509* certificate, EVP_PKEY* key, int signatureAlgorithm)
{
    PkiSignatureParts parts;
    parts.innerAlgorithm = X509_get0_tbs_sigalg(certificate);
    X509_get0_signature(&parts.signature, &parts.outerAlgorithm, certificate);
    return PkiSignature_Sign(certificate, parts, i2d_re_X509_tbs, key,
                             PkiSignature_Digest(signatureAlgorithm));
}

/// Copies a request's extensions but for the one that names its issuer's key.
bool addRequested(X509* certificate, const X509_REQ* request)
{
    const PkiHandle<STACK_OF(X509_EXTENSION)> extensions(
        X509_REQ_get_extensions(const_cast<X509_REQ*>(request)));
    if (extensions == nullptr) {
        // None, unless there are some that can't be read.
        return ERR_peek_error() == 0;
    }
    for (int i = 0; i < sk_X509_EXTENSION_num(extensions.get()); ++i) {
        X509_EXTENSION* const extension = sk_X509_EXTENSION_value(extensions.get(), i);
        const int nid = OBJ_obj2nid(X509_EXTENSION_get_object(extension));
        if (nid != NID_authority_key_identifier && X509_add_ext(certificate, extension, -1) != 1) {
            return false;
        }
    }
    return true;
}

bool isSignedWith(X509* certificate, EVP_PKEY* key)
{
    if (key == nullptr) {
        ERR_raise(ERR_LIB_X509, X509_R_UNABLE_TO_GET_CERTS_PUBLIC_KEY);
        return false;
    }
    return X509_verify(certificate, key) > 0;
}

/// Replaces the extensions of another issuer. `complete` is the same certificate with its algorithms.
bool renewExtensions(X509* certificate, X509* complete, X509* issuer)
{
    X509V3_CTX context = contextOf(issuer, complete);
    for (const PkiExtensionRow& row : PkiExtensions_SigningRows()) {
        const PkiHandle<X509_EXTENSION> extension = PkiExtensions_Make(context, row);
        if (extension == nullptr) {
            return false;
        }
        const int nid = OBJ_sn2nid(row.name);
        for (int position = X509_get_ext_by_NID(certificate, nid, -1); position >= 0;
             position = X509_get_ext_by_NID(certificate, nid, -1)) {
            const PkiHandle<X509_EXTENSION> former(X509_delete_ext(certificate, position));
        }
        if (!add(certificate, extension)) {
            return false;
        }
    }
    return true;
}

/// What the constructors make.
struct Order
{
    const UaPkiCertificateInfo& info;
    const X509_NAME* subject;
    const X509_NAME* issuerName;
    EVP_PKEY* key;
    X509* issuer; ///< Whose identifiers the extensions tell; null for the certificate itself.
    bool isCA;
    EVP_PKEY* issuerKey;
    int signatureAlgorithm;
};

X509* make(const UaPkiErrorList& errors, const Order& order)
{
    const std::time_t now = UaDateTime::now().toTime_t();
    return make(errors, [&](X509* certificate) {
        return setNumbers(certificate, order.info.serialNumber, now) &&
               setNames(certificate, order.subject, order.issuerName) &&
               setLifetime(certificate, order.info.validTime, now) &&
               setKey(certificate, order.key) &&
               addExtensions(certificate, order.issuer, order.info, order.isCA) &&
               signWith(certificate, order.issuerKey, order.signatureAlgorithm);
    });
}

} // namespace

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                   const UaPkiRSAKeyPair& keyPair, bool isCA,
                                   int signatureAlgorithm) noexcept
{
    const PkiErrorScope scope;
    const UaPkiPrivateKey key = keyPair.privateKey();
    const PkiHandle<X509_NAME> name = PkiName_Build(subject);
    m_pCertificate = make(*this, {.info = info,
                                  .subject = name.get(),
                                  .issuerName = name.get(),
                                  .key = key.handle(),
                                  .issuer = nullptr,
                                  .isCA = isCA,
                                  .issuerKey = key.handle(),
                                  .signatureAlgorithm = signatureAlgorithm});
}

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                   const UaPkiPublicKey& subjectKey, const UaPkiIdentity& issuer,
                                   const UaPkiPrivateKey& issuerKey) noexcept
{
    const PkiErrorScope scope;
    const PkiHandle<EVP_PKEY> key(subjectKey.handle());
    const PkiHandle<X509_NAME> name = PkiName_Build(subject);
    const PkiHandle<X509_NAME> issuerName = PkiName_Build(issuer);
    m_pCertificate = make(*this, {.info = info,
                                  .subject = name.get(),
                                  .issuerName = issuerName.get(),
                                  .key = key.get(),
                                  .issuer = nullptr,
                                  .isCA = false,
                                  .issuerKey = issuerKey.handle(),
                                  .signatureAlgorithm = Sha1WithRsa});
}

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                                   const UaPkiPublicKey& subjectKey, const UaPkiCertificate& issuer,
                                   const UaPkiPrivateKey& issuerKey, bool isCA,
                                   int signatureAlgorithm) noexcept
{
    const PkiErrorScope scope;
    if (issuer.isNull()) {
        addError(PkiCertificate_IsNull);
        return;
    }
    const PkiHandle<EVP_PKEY> key(subjectKey.handle());
    const PkiHandle<X509_NAME> name = PkiName_Build(subject);
    const PkiHandle<X509_NAME> issuerName = PkiName_Rebuild(X509_get_subject_name(issuer.handle()));
    m_pCertificate = make(*this, {.info = info,
                                  .subject = name.get(),
                                  .issuerName = issuerName.get(),
                                  .key = key.get(),
                                  .issuer = issuer.handle(),
                                  .isCA = isCA,
                                  .issuerKey = issuerKey.handle(),
                                  .signatureAlgorithm = signatureAlgorithm});
}

UaPkiCertificate UaPkiCertificate::fromCSR(const UaPkiCSR& request, const UaPkiCertificate& issuer,
                                           const UaPkiPrivateKey& issuerKey, OpcUa_UInt32 validTime,
                                           OpcUa_Int32 serialNumber,
                                           int signatureAlgorithm) noexcept
{
    const PkiErrorScope scope;
    UaPkiCertificate result;
    if (request.isNull() || issuer.isNull()) {
        result.addError(request.isNull() ? "The CSR is NULL" : PkiCertificate_IsNull);
        return result;
    }
    const std::time_t now = UaDateTime::now().toTime_t();
    const PkiHandle<EVP_PKEY> issuersPublicKey(issuer.publicKey().handle());
    X509_REQ* const pRequest = request.handle();
    result.m_pCertificate = make(result, [&](X509* certificate) {
        X509V3_CTX context = contextOf(issuer.handle(), certificate, pRequest);
        const PkiHandle<EVP_PKEY> key(X509_REQ_get_pubkey(pRequest));
        return setNumbers(certificate, serialNumber, now) &&
               setNames(certificate, X509_REQ_get_subject_name(pRequest),
                        X509_get_subject_name(issuer.handle())) &&
               setKey(certificate, key.get()) && addRequested(certificate, pRequest) &&
               add(certificate, PkiExtensions_Make(context, PkiExtensions_IssuersKey)) &&
               setLifetime(certificate, validTime, now) &&
               signWith(certificate, issuerKey.handle(), signatureAlgorithm) &&
               isSignedWith(certificate, issuersPublicKey.get());
    });
    return result;
}

bool UaPkiCertificate::sign(const UaPkiCertificate& issuer, const UaPkiPrivateKey& issuerKey,
                            int signatureAlgorithm) noexcept
{
    const PkiErrorScope scope;
    if (isNull() || issuer.isNull()) {
        addError(PkiCertificate_IsNull);
        return false;
    }
    // The identifier of a key can't be worked out in a certificate without algorithms.
    const PkiHandle<X509> complete = PkiBareContext_Complete(m_pCertificate);
    const bool isSigned =
        complete != nullptr &&
        X509_set_issuer_name(m_pCertificate, X509_get_subject_name(issuer.handle())) == 1 &&
        renewExtensions(m_pCertificate, complete.get(), issuer.handle()) &&
        signWith(m_pCertificate, issuerKey.handle(), signatureAlgorithm);
    if (!isSigned) {
        addLibraryErrors();
    }
    return isSigned;
}
