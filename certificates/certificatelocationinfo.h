#pragma once

#include <QString>

/// Where the server keeps its certificates. Directory paths end in a separator; the last two fields
/// are paths of files. Fields that were not found are empty.
struct CertificateLocationInfo
{
    QString revocationListLocation;        ///< Revocation lists of trusted certificates.
    QString trustListLocation;             ///< Trusted certificates.
    QString issuersRevocationListLocation; ///< Revocation lists of issuers.
    QString issuersCertificatesLocation;   ///< Issuer certificates.
    /// Revocation lists and certificates of TLS issuers. No element of the configuration file names
    /// them: only an embedder fills them.
    QString tlsIssuersRevocationListLocation;
    QString tlsIssuersCertificatesLocation;
    QString rejectedCertificatesDirectory; ///< Certificates that were rejected.
    QString serverCertificate;             ///< The application instance certificate.
    QString serverPrivateKey;              ///< The private key of that certificate.
};
