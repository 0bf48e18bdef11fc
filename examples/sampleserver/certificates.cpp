#include "examples/sampleserver/certificates.h"

#include "base/uadatetime.h"
#include "base/uastring.h"
#include "examples/sampleserver/shiftedclock.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "pki/uapkirsakeypair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace {

constexpr int keySize = 2048;
constexpr int secondsPerDay = 24 * 60 * 60;
constexpr int yearInDays = 365;
constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

constexpr const char* ownCertificate = "pki/own/certs/sampleserver.der";
constexpr const char* ownKey = "pki/own/private/sampleserver.pem";

/// A lifetime as it looks from today, and what the console makes of it.
struct State
{
    const char* name;
    int firstDay;
    int days;
};
constexpr State states[] = {
    {"valid", -1, 5 * yearInDays},
    {"expires-soon", 10 - yearInDays, yearInDays},
    {"expired", -30 - yearInDays, yearInDays},
    {"not-yet-valid", 30, yearInDays},
};
constexpr const State& inPem = states[0];
constexpr const char* inPemName = "pem";
constexpr const char* otherName = "something-else";

struct Folder
{
    const char* path;
    const char* what; ///< Begins the names of files and of subjects.
};
constexpr Folder applicationFolders[] = {
    {"pki/trusted/certs", "client"},
    {"pki/rejected", "stranger"},
};
constexpr Folder authorityFolder = {"pki/issuers/certs", "authority"};
constexpr Folder listFolders[] = {
    {"pki/trusted/crl", "trusted"},
    {"pki/issuers/crl", "issuers"},
};

/// Runs `write(path)`, which tells what went wrong, for a file that isn't there yet.
template <typename Write>
QString writeNew(const QDir& root, const QString& name, Write write)
{
    const QString path = root.filePath(name);
    if (QFileInfo::exists(path)) {
        return {};
    }
    const QString error = write(QFile::encodeName(path));
    return error.isEmpty() ? QString()
                           : QStringLiteral("The file '%1' can't be written: %2")
                                 .arg(QDir::toNativeSeparators(path), error);
}

/// What an object has to say for itself, for a failed operation on it.
QString errorsOf(const UaPkiErrorList& object)
{
    QStringList texts;
    for (const UaString& text : object.getErrors()) {
        texts.append(QString::fromUtf8(text.toUtf8()));
    }
    return texts.isEmpty() ? QStringLiteral("unknown error") : texts.join(QLatin1String(", "));
}

QString nameOf(const Folder& folder, const char* state, const char* ending)
{
    return QStringLiteral("%1/%2-%3.%4")
        .arg(QLatin1String(folder.path), QLatin1String(folder.what), QLatin1String(state),
             QLatin1String(ending));
}

UaString textOf(const QString& text)
{
    return UaString(text.toUtf8().constData());
}

/// Lays the samples out, one folder after the other, up to the first error.
class Samples
{
public:
    explicit Samples(const QDir& root)
        : m_root(root)
        , m_keyPair(keySize)
        , m_authority(makeAuthority("valid", states[0]))
    {
    }

    QString layOut()
    {
        QString error = writeOwn();
        for (const Folder& folder : applicationFolders) {
            if (error.isEmpty()) {
                error = writeCertificates(folder, false);
            }
        }
        if (error.isEmpty()) {
            error = writeCertificates(authorityFolder, true);
        }
        for (const Folder& folder : listFolders) {
            if (error.isEmpty()) {
                error = writeLists(folder);
            }
        }
        return error;
    }

private:
    [[nodiscard]] UaPkiCertificateInfo infoOf(const QString& application, const State& state)
    {
        UaPkiCertificateInfo info;
        info.uri = textOf(QStringLiteral("urn:localhost:Sample:") + application);
        info.validTime = static_cast<OpcUa_UInt32>(state.days) * secondsPerDay;
        info.serialNumber = ++m_serialNumber;
        const UaString host("localhost");
        if (OpcUa_IsGood(info.dnsNames.create(1))) {
            (void)host.copyTo(&info.dnsNames[0]);
        }
        return info;
    }

    static UaPkiIdentity identityOf(const QString& name)
    {
        UaPkiIdentity identity;
        identity.commonName = textOf(name);
        identity.organization = "Sample Plant";
        identity.organizationUnit = "Line 2";
        identity.locality = "Springfield";
        identity.country = "US";
        return identity;
    }

    static QString titleOf(const char* what, const char* state)
    {
        return QStringLiteral("%1 (%2)").arg(QLatin1String(what), QLatin1String(state));
    }

    UaPkiCertificate makeAuthority(const char* name, const State& state)
    {
        const ShiftedClock clock(state.firstDay);
        const QString title = titleOf(authorityFolder.what, name);
        return {infoOf(title, state), identityOf(title), m_keyPair, true, sha256};
    }

    UaPkiCertificate makeApplication(const QString& title, const State& state)
    {
        const ShiftedClock clock(state.firstDay);
        return {infoOf(title, state),
                identityOf(title),
                m_keyPair.publicKey(),
                m_authority,
                m_keyPair.privateKey(),
                false,
                sha256};
    }

    /// The certificate that an application makes for itself, and the key that belongs to it.
    QString writeOwn()
    {
        if (QFileInfo::exists(m_root.filePath(QLatin1String(ownCertificate))) ||
            QFileInfo::exists(m_root.filePath(QLatin1String(ownKey)))) {
            return {};
        }
        const UaPkiRSAKeyPair keyPair(keySize);
        const UaPkiCertificate certificate(infoOf(QStringLiteral("Server"), states[0]),
                                           identityOf(QStringLiteral("Sample Server")), keyPair,
                                           false, sha256);
        const QString error = writeNew(m_root, QLatin1String(ownKey), [&](const QByteArray& path) {
            return keyPair.toPEMFile(path.constData(), nullptr) == 0 ? QString()
                                                                     : errorsOf(keyPair);
        });
        return error.isEmpty() ? writeDer(QLatin1String(ownCertificate), certificate) : error;
    }

    QString writeDer(const QString& name, const UaPkiCertificate& certificate) const
    {
        return writeNew(m_root, name, [&](const QByteArray& path) {
            return certificate.toDERFile(path.constData()) == 0 ? QString() : errorsOf(certificate);
        });
    }

    QString writePem(const QString& name, const UaPkiCertificate& certificate) const
    {
        return writeNew(m_root, name, [&](const QByteArray& path) {
            return certificate.toPEMFile(path.constData()) == 0 ? QString() : errorsOf(certificate);
        });
    }

    QString writeOther(const QString& name) const
    {
        return writeNew(m_root, name, [](const QByteArray& path) {
            QFile file(QFile::decodeName(path));
            const QByteArray text = "Neither a certificate nor a revocation list.\n";
            return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() &&
                           file.flush()
                       ? QString()
                       : file.errorString();
        });
    }

    QString writeCertificates(const Folder& folder, bool isAuthority)
    {
        const auto make = [&](const char* name, const State& state) {
            return isAuthority ? makeAuthority(name, state)
                               : makeApplication(titleOf(folder.what, name), state);
        };
        for (const State& state : states) {
            const bool isSigner = isAuthority && &state == &states[0];
            const UaPkiCertificate certificate = isSigner ? m_authority : make(state.name, state);
            QString error = writeDer(nameOf(folder, state.name, "der"), certificate);
            if (!error.isEmpty()) {
                return error;
            }
        }
        const QString error = writePem(nameOf(folder, inPemName, "der"), make(inPemName, inPem));
        return error.isEmpty() ? writeOther(nameOf(folder, otherName, "der")) : error;
    }

    /// A signed list of the authority with two entries.
    UaPkiRevocationList makeList(const State& state)
    {
        const ShiftedClock clock(state.firstDay);
        UaPkiRevocationList list(static_cast<OpcUa_UInt32>(state.days) * secondsPerDay,
                                 m_authority.subject(), ++m_listNumber);
        for (const char* name : {"lost", "replaced"}) {
            list.addRevoked(makeApplication(titleOf("client", name), states[0]), UaDateTime::now());
        }
        (void)list.sign(m_keyPair.privateKey());
        return list;
    }

    QString writeLists(const Folder& folder)
    {
        for (const State& state : states) {
            const UaPkiRevocationList list = makeList(state);
            QString error =
                writeNew(m_root, nameOf(folder, state.name, "crl"), [&](const QByteArray& path) {
                    return list.toDERFile(path.constData()) == 1 ? QString() : errorsOf(list);
                });
            if (!error.isEmpty()) {
                return error;
            }
        }
        const UaPkiRevocationList list = makeList(inPem);
        const QString error =
            writeNew(m_root, nameOf(folder, inPemName, "crl"), [&](const QByteArray& path) {
                return list.toPEMFile(path.constData()) == 1 ? QString() : errorsOf(list);
            });
        return error.isEmpty() ? writeOther(nameOf(folder, otherName, "crl")) : error;
    }

    QDir m_root;
    OpcUa_Int32 m_serialNumber = 0;
    int m_listNumber = 0;
    UaPkiRSAKeyPair m_keyPair; ///< Of everybody but the server itself.
    UaPkiCertificate m_authority;
};

} // namespace

QString layOutCertificates(const QDir& root)
{
    return Samples(root).layOut();
}
