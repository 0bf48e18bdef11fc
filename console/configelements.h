#pragma once

#include <QString>

// Names of the elements of the server configuration file that the console touches, in the order of
// the file. All look-ups go by name and take the first match.
namespace ConfigElement {

inline const QString UaServerConfig = QStringLiteral("UaServerConfig");
inline const QString ServerName = QStringLiteral("ServerName");
inline const QString RejectedCertificatesDirectory =
    QStringLiteral("RejectedCertificatesDirectory");

inline const QString DefaultApplicationCertificateStore =
    QStringLiteral("DefaultApplicationCertificateStore");
inline const QString OpenSSLStore = QStringLiteral("OpenSSLStore");
inline const QString CertificateTrustListLocation = QStringLiteral("CertificateTrustListLocation");
inline const QString CertificateRevocationListLocation =
    QStringLiteral("CertificateRevocationListLocation");
inline const QString IssuersCertificatesLocation = QStringLiteral("IssuersCertificatesLocation");
inline const QString IssuersRevocationListLocation =
    QStringLiteral("IssuersRevocationListLocation");
inline const QString ServerCertificate = QStringLiteral("ServerCertificate");
inline const QString ServerPrivateKey = QStringLiteral("ServerPrivateKey");

inline const QString UaEndpoint = QStringLiteral("UaEndpoint");
inline const QString Url = QStringLiteral("Url");
inline const QString StackUrl = QStringLiteral("StackUrl");
inline const QString SecuritySetting = QStringLiteral("SecuritySetting");
inline const QString SecurityPolicy = QStringLiteral("SecurityPolicy");
inline const QString MessageSecurityMode = QStringLiteral("MessageSecurityMode");
inline const QString CertificateStore = QStringLiteral("CertificateStore");
inline const QString CertificateSettings = QStringLiteral("CertificateSettings");
inline const QString CommonName = QStringLiteral("CommonName");
inline const QString Organization = QStringLiteral("Organization");
inline const QString OrganizationUnit = QStringLiteral("OrganizationUnit");
inline const QString Locality = QStringLiteral("Locality");
inline const QString State = QStringLiteral("State");
inline const QString Country = QStringLiteral("Country");

inline const QString UserIdentityTokens = QStringLiteral("UserIdentityTokens");
inline const QString EnableAnonymous = QStringLiteral("EnableAnonymous");
inline const QString EnableUserPw = QStringLiteral("EnableUserPw");

inline const QString Trace = QStringLiteral("Trace");
inline const QString UaAppTraceFile = QStringLiteral("UaAppTraceFile");
inline const QString UaAppTraceMaxEntries = QStringLiteral("UaAppTraceMaxEntries");
inline const QString UaAppTraceMaxBackup = QStringLiteral("UaAppTraceMaxBackup");
inline const QString UaAppTraceEnabled = QStringLiteral("UaAppTraceEnabled");
inline const QString UaAppTraceLevel = QStringLiteral("UaAppTraceLevel");
inline const QString UaStackTraceEnabled = QStringLiteral("UaStackTraceEnabled");
inline const QString UaStackTraceLevel = QStringLiteral("UaStackTraceLevel");

inline const QString ConfigTools = QStringLiteral("ConfigTools");
inline const QString ZandrelDialog = QStringLiteral("ZandrelDialog");
inline const QString Geometry = QStringLiteral("Geometry");
inline const QString Hostname = QStringLiteral("Hostname");

inline const QString Objects = QStringLiteral("Objects");
inline const QString UaConfig = QStringLiteral("UaConfig");
inline const QString UserAuthorization = QStringLiteral("UserAuthorization");
inline const QString Configuration = QStringLiteral("Configuration");
inline const QString GroupHost = QStringLiteral("GroupHost");

} // namespace ConfigElement

// Placeholders that stand in texts of the file. All are replaced case-sensitively, as plain text.
namespace ConfigPlaceholder {

inline const QString ApplicationPath = QStringLiteral("[ApplicationPath]");
inline const QString ConfigPath = QStringLiteral("[ConfigPath]");
inline const QString NodeName = QStringLiteral("[NodeName]");
inline const QString ServerName = QStringLiteral("[ServerName]");
inline const QString TracePath = QStringLiteral("[TracePath]");

} // namespace ConfigPlaceholder
