#pragma once

#include "pki/uapkicertificate.h"
#include "pki/uapkirsakeypair.h"

#include <QString>

/// What a new application instance certificate shall say.
struct NewCertificateOrder
{
    UaPkiIdentity subject;
    UaPkiCertificateInfo info;
    int keySize = 0; ///< Bits of the RSA key.
    int signatureAlgorithm = UaPkiCertificate::Sha1WithRsa;
};

/// What came of it: both objects and no failure, or a null certificate, an empty key pair and the
/// reason as one text of several lines.
struct NewCertificate
{
    UaPkiRSAKeyPair keyPair;
    UaPkiCertificate certificate;
    QString failure;
};

/// Makes a key pair and a certificate that it signs itself. Takes as long as the key needs.
///
/// The alternative names go through OpenSSL's configuration syntax, in which a comma or a line break
/// makes something else of a name. So they are read back: a certificate that doesn't have exactly the
/// names that were ordered counts as failed.
[[nodiscard]] NewCertificate makeNewCertificate(const NewCertificateOrder& order);
