#include "console/configreaders.h"

#include "certificates/certificatelocationinfo.h"
#include "console/configdom.h"
#include "console/configelements.h"

#include <QDomElement>

namespace {

/// The slash comes before "[ConfigPath]" is replaced: a path that ends in the placeholder gets one
/// too.
QString directory(const QDomElement& element, const ConfigPaths& paths)
{
    QString path = element.text();
    path.replace(ConfigPlaceholder::ApplicationPath, paths.applicationPath);
    if (!path.isEmpty() && !path.endsWith(u'/') && !path.endsWith(u'\\')) {
        path.append(u'/');
    }
    path.replace(ConfigPlaceholder::ConfigPath, paths.configPath);
    return path;
}

QString filePath(const QDomElement& element, const ConfigPaths& paths)
{
    QString path = element.text();
    path.replace(ConfigPlaceholder::ApplicationPath, paths.applicationPath);
    path.replace(ConfigPlaceholder::ConfigPath, paths.configPath);
    return path;
}

QDomElement firstEndpointStore(const QDomElement& config)
{
    return descend(config, {ConfigElement::UaEndpoint, ConfigElement::CertificateStore,
                            ConfigElement::OpenSSLStore});
}

bool readRejectedDirectory(const QDomElement& config, const ConfigPaths& paths,
                           CertificateLocationInfo& info)
{
    const QDomElement rejected =
        config.firstChildElement(ConfigElement::RejectedCertificatesDirectory);
    if (rejected.isNull()) {
        return false;
    }
    info.rejectedCertificatesDirectory = directory(rejected, paths);
    return true;
}

bool readStoreDirectories(const QDomElement& store, const ConfigPaths& paths,
                          CertificateLocationInfo& info)
{
    const QDomElement trusted =
        store.firstChildElement(ConfigElement::CertificateTrustListLocation);
    const QDomElement revoked =
        store.firstChildElement(ConfigElement::CertificateRevocationListLocation);
    const QDomElement issuers = store.firstChildElement(ConfigElement::IssuersCertificatesLocation);
    const QDomElement issuersRevoked =
        store.firstChildElement(ConfigElement::IssuersRevocationListLocation);
    if (trusted.isNull() || revoked.isNull() || issuers.isNull() || issuersRevoked.isNull()) {
        return false;
    }
    info.trustListLocation = directory(trusted, paths);
    info.revocationListLocation = directory(revoked, paths);
    info.issuersCertificatesLocation = directory(issuers, paths);
    info.issuersRevocationListLocation = directory(issuersRevoked, paths);
    return true;
}

bool readServerCertificate(const QDomElement& store, const ConfigPaths& paths,
                           CertificateLocationInfo& info)
{
    const QDomElement certificate = store.firstChildElement(ConfigElement::ServerCertificate);
    const QDomElement privateKey = store.firstChildElement(ConfigElement::ServerPrivateKey);
    if (certificate.isNull() || privateKey.isNull()) {
        return false;
    }
    info.serverCertificate = filePath(certificate, paths);
    info.serverPrivateKey = filePath(privateKey, paths);
    return true;
}

} // namespace

bool readCertificateLocations(const QDomElement& root, const ConfigPaths& paths,
                              CertificateLocationInfo& info)
{
    const QDomElement config = root.firstChildElement(ConfigElement::UaServerConfig);
    if (config.isNull()) {
        return false;
    }
    const bool hasRejected = readRejectedDirectory(config, paths, info);

    const QDomElement defaultStore =
        config.firstChildElement(ConfigElement::DefaultApplicationCertificateStore);
    QDomElement store = defaultStore.firstChildElement(ConfigElement::OpenSSLStore);
    if (store.isNull()) {
        store = firstEndpointStore(config);
    }
    const bool hasDirectories = readStoreDirectories(store, paths, info);

    const QDomElement ownStore = defaultStore.firstChildElement(ConfigElement::ServerCertificate);
    if (!ownStore.isNull()) {
        store = ownStore.firstChildElement(ConfigElement::OpenSSLStore);
    }
    if (store.isNull()) {
        store = firstEndpointStore(config);
    }
    const bool hasCertificate = readServerCertificate(store, paths, info);

    return hasRejected && hasDirectories && hasCertificate;
}

bool readCertificateSettings(const QDomElement& root, const QString& hostName, QString& commonName,
                             QString& organization, QString& organizationUnit, QString& locality,
                             QString& state, QString& country)
{
    const QDomElement config = root.firstChildElement(ConfigElement::UaServerConfig);
    const QDomElement settings =
        descend(config, {ConfigElement::UaEndpoint, ConfigElement::CertificateStore,
                         ConfigElement::CertificateSettings});
    struct Field
    {
        const QString& element;
        QString& text;
    };
    const Field fields[] = {
        {ConfigElement::CommonName, commonName},
        {ConfigElement::Organization, organization},
        {ConfigElement::OrganizationUnit, organizationUnit},
        {ConfigElement::Locality, locality},
        {ConfigElement::State, state},
        {ConfigElement::Country, country},
    };
    for (const Field& field : fields) {
        if (settings.firstChildElement(field.element).isNull()) {
            return false;
        }
    }
    for (const Field& field : fields) {
        field.text = settings.firstChildElement(field.element).text();
    }

    const QDomElement serverName = config.firstChildElement(ConfigElement::ServerName);
    if (commonName == ConfigPlaceholder::ServerName && !serverName.isNull()) {
        commonName = serverName.text().replace(ConfigPlaceholder::NodeName, hostName);
    }
    return true;
}
