#include "tests/pki/samplecertificate.h"

#include "pki/opensslhandles.h"
#include "pki/uapkiprivatekey.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"

#include <openssl/pem.h>

#include <cstdlib>

namespace {

constexpr int secondsOfHour = 3600;

PkiHandle<X509_NAME> nameOf(const char* commonName)
{
    PkiHandle<X509_NAME> name(X509_NAME_new());
    X509_NAME_add_entry_by_NID(name.get(), NID_commonName, MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char*>(commonName), -1, -1, 0);
    return name;
}

void addAlternativeNames(X509* certificate, const char* names)
{
    const PkiHandle<X509_EXTENSION> extension(
        X509V3_EXT_nconf_nid(nullptr, nullptr, NID_subject_alt_name, names));
    X509_add_ext(certificate, extension.get(), -1);
}

/// Ed25519 wants no digest.
const EVP_MD* digestFor(const EVP_PKEY* key, bool usesSha1)
{
    return EVP_PKEY_is_a(key, "ED25519") == 1 ? nullptr : usesSha1 ? EVP_sha1() : EVP_sha256();
}

PkiHandle<X509> make(const CertificateSample& sample)
{
    const UaPkiPrivateKey own = sampleKeyPair().privateKey();
    EVP_PKEY* const subjectKey = sample.subjectKey != nullptr ? sample.subjectKey : own.handle();
    EVP_PKEY* const issuerKey = sample.issuerKey != nullptr ? sample.issuerKey : subjectKey;
    PkiHandle<X509> certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_set_subject_name(certificate.get(), nameOf(sample.subject).get());
    X509_set_issuer_name(certificate.get(), nameOf(sample.issuer).get());
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), secondsOfHour);
    X509_set_pubkey(certificate.get(), subjectKey);
    if (sample.alternativeNames != nullptr) {
        addAlternativeNames(certificate.get(), sample.alternativeNames);
    }
    if (X509_sign(certificate.get(), issuerKey, digestFor(issuerKey, sample.usesSha1)) <= 0) {
        std::abort();
    }
    return certificate;
}

std::string textOf(BIO* memory)
{
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(memory, &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

} // namespace

std::string sampleDer(const CertificateSample& sample)
{
    const PkiHandle<BIO> memory(BIO_new(BIO_s_mem()));
    i2d_X509_bio(memory.get(), make(sample).get());
    return textOf(memory.get());
}

std::string samplePem(const CertificateSample& sample)
{
    const PkiHandle<BIO> memory(BIO_new(BIO_s_mem()));
    PEM_write_bio_X509(memory.get(), make(sample).get());
    return textOf(memory.get());
}

UaPkiCertificate sampleCertificate(const CertificateSample& sample)
{
    return UaPkiCertificate::fromDER(toByteArray(sampleDer(sample)));
}
