#pragma once

#include "pki/uapkicertificate.h"
#include "pki/uapkirevocationlist.h"

#include <QString>
#include <QStringList>

// The files in the server's PKI directories. What a file is tells its content alone: extensions only
// choose which files are looked at.

/// Whether a directory is there. An empty path isn't one.
[[nodiscard]] bool directoryExists(const QString& directory);

/// Absolute paths of the files of a directory that may be certificates, in the order of the file system;
/// none for an empty path and a directory that isn't there. `bAllFiles` takes files of any
/// name with a dot.
[[nodiscard]] QStringList certificateFiles(const QString& directory, bool bAllFiles);

/// The same for revocation lists, which may share a directory with certificates.
[[nodiscard]] QStringList revocationListFiles(const QString& directory);

/// The absolute path of a file, in the form in which the functions above give it.
[[nodiscard]] QString absoluteFile(const QString& path);

/// Reads a certificate in DER or PEM form; null for a file that is none.
[[nodiscard]] UaPkiCertificate loadCertificate(const QString& path);

/// Reads a revocation list in PEM or DER form; null for a file that is none.
[[nodiscard]] UaPkiRevocationList loadRevocationList(const QString& path);
