#include "certificates/certificatefiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace {

/// Absolute paths of the files whose names are wanted. Name filters of QDir would make patterns of the
/// endings at each listing, which takes longer than the listing itself.
template <typename IsWanted>
QStringList listFiles(const QString& path, IsWanted isWanted)
{
    // A directory of no name would be the working directory.
    if (path.isEmpty()) {
        return {};
    }
    const QDir directory(QDir(path).absolutePath());
    QStringList files;
    const QStringList names = directory.entryList(QDir::Files, QDir::NoSort);
    for (const QString& name : names) {
        if (isWanted(name)) {
            files.append(directory.absoluteFilePath(name));
        }
    }
    return files;
}

bool hasEnding(const QString& name, std::initializer_list<QLatin1StringView> endings)
{
    return std::any_of(endings.begin(), endings.end(), [&name](QLatin1StringView ending) {
        return name.endsWith(ending, Qt::CaseInsensitive);
    });
}

bool isCertificateName(const QString& name)
{
    return hasEnding(name, {".cer"_L1, ".der"_L1, ".crt"_L1});
}

} // namespace

bool directoryExists(const QString& directory)
{
    return !directory.isEmpty() && QDir(directory).exists();
}

QStringList certificateFiles(const QString& directory, bool bAllFiles)
{
    return listFiles(directory, [bAllFiles](const QString& name) {
        return bAllFiles ? name.contains(u'.') : isCertificateName(name);
    });
}

QStringList revocationListFiles(const QString& directory)
{
    return listFiles(directory, [](const QString& name) {
        return isCertificateName(name) || hasEnding(name, {".crl"_L1});
    });
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
