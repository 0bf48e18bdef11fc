// Making a self-signed certificate, beside the bare calls of the library with the same key and fields.
// The names of the pair differ in their end alone: .../ours and .../floor.

#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkirsakeypair.h"
#include "platform/status.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <utility>

namespace {

constexpr int keySize = 2048;
constexpr OpcUa_UInt32 validTime = 3600;
constexpr const char* host = "host.example.org";
constexpr const char* uri = "urn:host.example.org:Sample:Server";

const UaPkiRSAKeyPair& keyPair()
{
    static const UaPkiRSAKeyPair pair(keySize);
    return pair;
}

UaPkiCertificateInfo makeInfo()
{
    UaPkiCertificateInfo info;
    info.uri = uri;
    if (OpcUa_IsGood(info.dnsNames.create(1))) {
        (void)UaString(host).copyTo(&info.dnsNames[0]);
    }
    info.validTime = validTime;
    return info;
}

UaPkiIdentity makeIdentity()
{
    return {.organization = "Organization",
            .organizationUnit = "Unit",
            .locality = "Locality",
            .state = "State",
            .country = "DE",
            .commonName = "Server",
            .domainComponent = host};
}

PkiHandle<X509> ours()
{
    static const UaPkiCertificateInfo info = makeInfo();
    static const UaPkiIdentity identity = makeIdentity();
    const UaPkiCertificate certificate(info, identity, keyPair(), false,
                                       UaPkiCertificate::Sha256WithRsa);
    if (!certificate.isNull()) {
        X509_up_ref(certificate.handle());
    }
    return PkiHandle<X509>(certificate.handle());
}

bool addName(X509_NAME* name, const char* type, const char* text)
{
    return X509_NAME_add_entry_by_txt(name, type, MBSTRING_UTF8,
                                      reinterpret_cast<const unsigned char*>(text), -1, -1, 0) == 1;
}

bool addExtension(X509* certificate, X509V3_CTX& context, const char* name, const char* value)
{
    const PkiHandle<X509_EXTENSION> extension(X509V3_EXT_conf(nullptr, &context, name, value));
    return extension != nullptr && X509_add_ext(certificate, extension.get(), -1) == 1;
}

bool addExtensions(X509* certificate)
{
    X509V3_CTX context{};
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    return addExtension(certificate, context, "basicConstraints", "critical, CA:FALSE") &&
           addExtension(certificate, context, "nsComment",
                        "\"Generated with Solvarin Core Library using OpenSSL\"") &&
           addExtension(certificate, context, "subjectKeyIdentifier", "hash") &&
           addExtension(certificate, context, "authorityKeyIdentifier", "keyid, issuer:always") &&
           addExtension(certificate, context, "keyUsage",
                        "critical, nonRepudiation, digitalSignature, keyEncipherment, "
                        "dataEncipherment, keyCertSign") &&
           addExtension(certificate, context, "extendedKeyUsage",
                        "critical, serverAuth,clientAuth") &&
           addExtension(certificate, context, "subjectAltName",
                        "URI:urn:host.example.org:Sample:Server,DNS:host.example.org");
}

PkiHandle<X509> bareCalls()
{
    PkiHandle<X509> certificate(X509_new());
    EVP_PKEY* const key = keyPair().privateKey().handle();
    const PkiHandle<X509_NAME> name(X509_NAME_new());
    const bool isMade =
        X509_set_version(certificate.get(), X509_VERSION_3) == 1 &&
        ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), std::time(nullptr)) == 1 &&
        addName(name.get(), "DC", host) && addName(name.get(), "C", "DE") &&
        addName(name.get(), "ST", "State") && addName(name.get(), "L", "Locality") &&
        addName(name.get(), "O", "Organization") && addName(name.get(), "OU", "Unit") &&
        addName(name.get(), "CN", "Server") &&
        X509_set_subject_name(certificate.get(), name.get()) == 1 &&
        X509_set_issuer_name(certificate.get(), name.get()) == 1 &&
        X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0) != nullptr &&
        X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validTime) != nullptr &&
        X509_set_pubkey(certificate.get(), key) == 1 && addExtensions(certificate.get()) &&
        X509_sign(certificate.get(), key, EVP_sha256()) > 0;
    return isMade ? std::move(certificate) : nullptr;
}

/// The same names, as many extensions, and a signature that holds.
bool areAlike(const X509* left, const X509* right)
{
    EVP_PKEY* const key = keyPair().privateKey().handle();
    return left != nullptr && right != nullptr &&
           X509_NAME_cmp(X509_get_subject_name(left), X509_get_subject_name(right)) == 0 &&
           X509_get_ext_count(left) == X509_get_ext_count(right) &&
           X509_verify(const_cast<X509*>(left), key) == 1 &&
           X509_verify(const_cast<X509*>(right), key) == 1;
}

void measure(benchmark::State& state, PkiHandle<X509> (*make)())
{
    if (!areAlike(ours().get(), bareCalls().get())) {
        state.SkipWithError("the two certificates differ");
        return;
    }
    for (auto _ : state) {
        const PkiHandle<X509> certificate = make();
        benchmark::DoNotOptimize(certificate.get());
    }
}

BENCHMARK_CAPTURE(measure, ours, ours)->Name("selfSigned/ours");
BENCHMARK_CAPTURE(measure, floor, bareCalls)->Name("selfSigned/floor");

} // namespace
