#pragma once

#include <QString>

class QDomElement;
struct CertificateLocationInfo;

/// What the path placeholders of the configuration file stand for.
struct ConfigPaths
{
    QString applicationPath; ///< "[ApplicationPath]": the directory of the executable.
    QString configPath;      ///< "[ConfigPath]": the directory of the configuration file.
};

/// Fills the record from the document element of a configuration file. Three groups are looked for:
/// the directory of rejected certificates, the four directories of the store (all four or none), and
/// the server's certificate with its key. Returns whether all three were found; what was found is in
/// the record either way.
[[nodiscard]] bool readCertificateLocations(const QDomElement& root, const ConfigPaths& paths,
                                            CertificateLocationInfo& info);

/// Fills the arguments from the certificate settings of the first endpoint. Returns whether all six
/// elements exist; otherwise nothing is changed. A common name "[ServerName]" becomes the text of
/// `ServerName`, in which "[NodeName]" stands for the host name.
[[nodiscard]] bool readCertificateSettings(const QDomElement& root, const QString& hostName,
                                           QString& commonName, QString& organization,
                                           QString& organizationUnit, QString& locality,
                                           QString& state, QString& country);
