#include "certificates/certificatefiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QStringList listFiles(const QString& path, const QStringList& nameFilters)
{
    // A directory of no name would be the working directory.
    if (path.isEmpty()) {
        return {};
    }
    const QDir directory(QDir(path).absolutePath());
    QStringList files = directory.entryList(nameFilters, QDir::Files, QDir::NoSort);
    for (QString& file : files) {
        file = directory.absoluteFilePath(file);
    }
    return files;
}

} // namespace

bool directoryExists(const QString& directory)
{
    return !directory.isEmpty() && QDir(directory).exists();
}

QStringList certificateFiles(const QString& directory, bool bAllFiles)
{
    QStringList nameFilters = {QStringLiteral("*.cer"), QStringLiteral("*.der"),
                               QStringLiteral("*.crt")};
    if (bAllFiles) {
        nameFilters.append(QStringLiteral("*.*"));
    }
    return listFiles(directory, nameFilters);
}

QStringList revocationListFiles(const QString& directory)
{
    return listFiles(directory, {QStringLiteral("*.cer"), QStringLiteral("*.der"),
                                 QStringLiteral("*.crt"), QStringLiteral("*.crl")});
}

QString absoluteFile(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

UaPkiCertificate loadCertificate(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    const UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(name.constData());
    return certificate.isNull() ? UaPkiCertificate::fromPEMFile(name.constData()) : certificate;
}

UaPkiRevocationList loadRevocationList(const QString& path)
{
    return UaPkiRevocationList::fromFile(QFile::encodeName(path).constData());
}
