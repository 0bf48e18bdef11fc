#pragma once

#include <QString>

class QDir;

/// Fills the folders in "pki" of a server directory, which must exist, with certificates and revocation
/// lists made by the PKI library: the server's own certificate with its private key, and in each of the
/// other folders one file of each state that the console shows. They are valid, expire soon, have
/// expired or aren't valid yet; one holds PEM text behind the ending of a binary file, one is nothing of
/// the kind.
///
/// A file that is there already is kept, and so is the pair of the server's certificate and key when
/// one of both is. Making the two keys takes most of the time.
///
/// Returns an empty text on success, otherwise what went wrong, with the path it went wrong with.
[[nodiscard]] QString layOutCertificates(const QDir& root);
