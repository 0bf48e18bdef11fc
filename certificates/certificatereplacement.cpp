#include "certificates/certificatereplacement.h"

#include "certificates/secrettext.h"
#include "platform/privatefile.h"

#include <QFile>
#include <QSaveFile>

#include <cstddef>
#include <utility>

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

/// The bytes of the key file, so that it can be put back.
class FormerKey
{
public:
    explicit FormerKey(QByteArray path)
        : m_path(std::move(path))
    {
        QFile file(QFile::decodeName(m_path));
        m_exists = file.open(QIODevice::ReadOnly);
        m_bytes = m_exists ? file.readAll() : QByteArray();
    }
    ~FormerKey() { wipe(m_bytes); }
    FormerKey(const FormerKey&) = delete;
    FormerKey& operator=(const FormerKey&) = delete;

    void putBack() const
    {
        if (m_exists) {
            // There is nothing else to try when this fails too.
            static_cast<void>(OpcUa_P_PrivateFile_Write(m_path.constData(), m_bytes.constData(),
                                                        static_cast<std::size_t>(m_bytes.size())));
        } else {
            QFile::remove(QFile::decodeName(m_path));
        }
    }

private:
    QByteArray m_path;
    QByteArray m_bytes;
    bool m_exists = false;
};

} // namespace

bool replaceCertificate(const CertificateReplacement& replacement)
{
    const char* const password = passwordOf(replacement);
    const UaByteArray der = replacement.certificate.toDER();
    if (!isCertificateOf(der, replacement.keyPair) || !isReadable(replacement.keyPair, password)) {
        return false;
    }
    const QByteArray keyFile = QFile::encodeName(replacement.keyFile);
    const FormerKey formerKey(keyFile);
    // Until it is committed, the certificate lies beside the old one; without that it goes again.
    QSaveFile certificateFile(replacement.certificateFile);
    if (!write(certificateFile, der) ||
        replacement.keyPair.toPEMFile(keyFile.constData(), password) != 0) {
        return false;
    }
    if (!certificateFile.commit()) {
        formerKey.putBack();
        return false;
    }
    return true;
}
