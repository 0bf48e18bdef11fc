#pragma once

#include "pki/uapkicertificate.h"

#include <openssl/types.h>

#include <string>

// Certificates made by the library's own calls, without our creation.

/// What a sample says; keys are borrowed.
struct CertificateSample
{
    EVP_PKEY* subjectKey = nullptr; ///< sampleKeyPair() when null.
    EVP_PKEY* issuerKey = nullptr;  ///< The subject's when null.
    const char* subject = "subject";
    const char* issuer = "subject";
    bool usesSha1 = false;
    const char* alternativeNames = nullptr; ///< In the library's configuration syntax.
};

/// The DER form of a certificate of version 3 that is valid for an hour from now on.
[[nodiscard]] std::string sampleDer(const CertificateSample& sample = {});

/// The same as PEM.
[[nodiscard]] std::string samplePem(const CertificateSample& sample = {});

/// The same, read by our class.
[[nodiscard]] UaPkiCertificate sampleCertificate(const CertificateSample& sample = {});
