#pragma once

#include <QByteArray>
#include <QString>

// Configuration files for tests.

/// Writes a file and returns its path; fails the program when that doesn't work.
QString writeFile(const QString& path, const QByteArray& bytes);

/// The bytes of a file; empty when it can't be read.
[[nodiscard]] QByteArray readFile(const QString& path);

/// A configuration with two endpoints and every element that the console reads, with
/// "[NodeName]" in its URLs and placeholders in its paths.
[[nodiscard]] QByteArray sampleConfig();

/// A document with this content below `UaServerConfig`.
[[nodiscard]] QByteArray serverConfig(const QByteArray& content);
