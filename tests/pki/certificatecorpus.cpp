#include "tests/pki/certificatecorpus.h"

#include "pki/opensslhandles.h"
#include "tests/pki/dercertificate.h"
#include "tests/pki/samplecertificate.h"

#include <openssl/pem.h>

namespace {

void appendBundle(std::vector<std::string>& corpus)
{
    const PkiHandle<BIO> file(BIO_new_file("/etc/ssl/certs/ca-certificates.crt", "r"));
    const PkiErrorScope scope;
    for (;;) {
        char* name = nullptr;
        char* header = nullptr;
        unsigned char* data = nullptr;
        long size = 0;
        if (file == nullptr || PEM_read_bio(file.get(), &name, &header, &data, &size) != 1) {
            return;
        }
        corpus.emplace_back(reinterpret_cast<const char*>(data), static_cast<std::size_t>(size));
        OPENSSL_free(name);
        OPENSSL_free(header);
        OPENSSL_free(data);
    }
}

void appendSamples(std::vector<std::string>& corpus)
{
    const PkiHandle<EVP_PKEY> rsa(EVP_RSA_gen(1024));
    const PkiHandle<EVP_PKEY> ec(EVP_EC_gen("P-384"));
    const PkiHandle<EVP_PKEY> edwards(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
    for (EVP_PKEY* const key : {rsa.get(), ec.get(), edwards.get()}) {
        corpus.push_back(sampleDer(
            {.subjectKey = key, .alternativeNames = "URI:urn:x,DNS:a,DNS:b,IP:10.0.0.1,IP:::1"}));
        corpus.push_back(sampleDer({.issuerKey = key, .issuer = "another"}));
        corpus.push_back(sampleDer({.issuerKey = key}));
    }
}

void appendHandMade(std::vector<std::string>& corpus)
{
    DerCertificate parts;
    corpus.push_back(parts.bytes());
    parts.subject =
        der(DerSequence, derAttribute("\x55\x04\x03", DerUtf8String, std::string("a\0b", 3)));
    parts.notBefore = der(DerGeneralizedTime, "20240101000000.123Z");
    parts.notAfter = der(DerUtcTime, "short");
    parts.serialNumber = der(DerInteger, "\x80");
    parts.extensions = DerCertificate::alternativeNames(derGeneralName(7, "abc"));
    corpus.push_back(parts.bytes());
    parts.extensions += DerCertificate::extension("\x55\x1D\x0F", "broken");
    parts.key = der(DerSequence, der(DerSequence, der(DerObjectId, "\x2A\x03\x04")) +
                                     der(DerBitString, std::string_view("\0key", 4)));
    corpus.push_back(parts.bytes());
}

} // namespace

const std::vector<std::string>& certificateCorpus()
{
    static const std::vector<std::string> corpus = [] {
        std::vector<std::string> certificates;
        appendBundle(certificates);
        appendSamples(certificates);
        appendHandMade(certificates);
        return certificates;
    }();
    return corpus;
}
