#include "certificates/certificatereplacement.h"

#include "certificates/secrettext.h"

#include <QFile>
#include <QSaveFile>

namespace {

const char* passwordOf(const CertificateReplacement& replacement)
{
    return replacement.password.isEmpty() ? nullptr : replacement.password.constData();
}

/// Whether the key's bytes give a key again.
bool isReadable(const UaPkiRSAKeyPair& keyPair, const char* password)
{
    UaByteArray written = keyPair.toPEM(password);
    UaByteArray key = keyPair.toDER();
    UaByteArray readBack = UaPkiPrivateKey::fromPEM(written, password).toDER();
    const bool isSame = !key.isEmpty() && key == readBack;
    wipe(written);
    wipe(key);
    wipe(readBack);
    return isSame;
}

/// Whether the bytes give a certificate again, and the key is its own.
bool isCertificateOf(const UaByteArray& der, const UaPkiRSAKeyPair& keyPair)
{
    const UaByteArray key = keyPair.publicKey().toDER();
    return !key.isEmpty() && UaPkiCertificate::fromDER(der).publicKey().toDER() == key;
}

bool write(QSaveFile& file, const UaByteArray& bytes)
{
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char*>(bytes.data()), bytes.size()) == bytes.size() &&
           file.flush();
}

} // namespace

bool replaceCertificate(const CertificateReplacement& replacement)
{
    const char* const password = passwordOf(replacement);
    const UaByteArray der = replacement.certificate.toDER();
    if (!isCertificateOf(der, replacement.keyPair) || !isReadable(replacement.keyPair, password)) {
        return false;
    }
    // Until it is committed, the certificate lies beside the old one; without that it goes again.
    QSaveFile certificateFile(replacement.certificateFile);
    return write(certificateFile, der) &&
           replacement.keyPair.toPEMFile(QFile::encodeName(replacement.keyFile).constData(),
                                         password) == 0 &&
           certificateFile.commit();
}
