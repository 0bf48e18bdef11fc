#include "examples/sampleserver/serverdirectory.h"

#include "examples/sampleserver/certificates.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

constexpr const char* openFolders[] = {
    "pki/own/certs",     "pki/trusted/certs", "pki/trusted/crl",
    "pki/issuers/certs", "pki/issuers/crl",   "pki/rejected",
};
constexpr const char* keyFolder = "pki/own/private";
constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

QString cannotMake(const QString& path)
{
    return QStringLiteral("The folder '%1' can't be made.").arg(QDir::toNativeSeparators(path));
}

/// A new folder is closed to others from its first moment, an existing one is closed now.
QString makeKeyFolder(const QString& path)
{
    const bool exists = QFileInfo(path).isDir();
    if (!exists && !QDir().mkdir(path, ownerOnly)) {
        return cannotMake(path);
    }
    if (!QFile::setPermissions(path, ownerOnly)) {
        return QStringLiteral("The folder '%1' can't be closed to other users.")
            .arg(QDir::toNativeSeparators(path));
    }
    return {};
}

QString makeFolders(const QDir& root)
{
    for (const char* folder : openFolders) {
        const QString path = root.filePath(QLatin1String(folder));
        if (!QDir().mkpath(path)) {
            return cannotMake(path);
        }
    }
    return makeKeyFolder(root.filePath(QLatin1String(keyFolder)));
}

QString writeConfig(const QString& path)
{
    QFile sample(QStringLiteral(":/sampleserver/ServerConfig.xml"));
    if (!sample.open(QIODevice::ReadOnly)) {
        return QStringLiteral("The program doesn't hold its sample configuration.");
    }
    const QByteArray text = sample.readAll();
    QSaveFile file(path);
    // commit() doesn't tell that a full disk took only a piece of the text, flush() does. When it
    // was cut short, the second one meets the reason.
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() &&
        (file.flush() || file.flush()) && file.commit()) {
        return {};
    }
    return QStringLiteral("The file '%1' can't be written: %2.")
        .arg(QDir::toNativeSeparators(path), file.errorString());
}

/// True for a link that leads nowhere too: writing would go through it.
bool isThere(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

QString configFileIn(const QString& directory)
{
    return QDir(directory).filePath(QStringLiteral("ServerConfig.xml"));
}

QString layOutServerDirectory(const QString& directory, ExistingConfig existing)
{
    const QString config = configFileIn(directory);
    if (existing == ExistingConfig::Keep && isThere(config)) {
        return QStringLiteral("The file '%1' already exists; --force replaces it.")
            .arg(QDir::toNativeSeparators(config));
    }
    const QDir root(directory);
    QString error = makeFolders(root);
    if (error.isEmpty()) {
        error = layOutCertificates(root);
    }
    return error.isEmpty() ? writeConfig(config) : error;
}
