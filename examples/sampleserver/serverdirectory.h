#pragma once

#include <QString>

/// What to do with a configuration file that is already there.
enum class ExistingConfig
{
    Keep,
    Replace
};

/// Lays out the directory of a server as the console expects it: "ServerConfig.xml" and, in "pki",
/// folders with own, trusted, issuer and rejected certificates and with revocation lists (see
/// layOutCertificates). The folder for private keys is open to its owner alone.
///
/// Folders that are missing are made, `directory` itself included; folders that exist keep their
/// files. With ExistingConfig::Keep an existing configuration file is an error and nothing is
/// changed. The configuration file is written last and as a whole or not at all.
///
/// Returns an empty text on success, otherwise what went wrong, with the path it went wrong with.
[[nodiscard]] QString layOutServerDirectory(const QString& directory, ExistingConfig existing);

/// The path of the configuration file in a server directory.
[[nodiscard]] QString configFileIn(const QString& directory);
