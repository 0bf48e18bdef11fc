#pragma once

#include "pki/uapkicertificate.h"
#include "pki/uapkirsakeypair.h"

#include <QByteArray>
#include <QString>

/// A certificate, the key that belongs to it, and where both go.
struct CertificateReplacement
{
    UaPkiCertificate certificate;
    UaPkiRSAKeyPair keyPair;
    QByteArray password; ///< Protects the key; empty for a key without protection.
    QString certificateFile;
    QString keyFile;
};

/// Writes the certificate as DER and its key as PEM in place of the files that may be there. A new key
/// file is its owner's alone, one that replaces another keeps the other's owner and mode.
///
/// The new bytes are read back, and the certificate's are on the disk, before either file is touched.
/// False when anything fails; both files are as they were then.
[[nodiscard]] bool replaceCertificate(const CertificateReplacement& replacement);
