#include "tests/support/configsample.h"

#include <QFile>

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("can't write %s", qPrintable(path));
    }
    return path;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray sampleConfig()
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<ServerConfiguration>
  <UaServerConfig>
    <ServerName>Sample@[NodeName]</ServerName>
    <RejectedCertificatesDirectory>[ConfigPath]/pki/rejected</RejectedCertificatesDirectory>
    <DefaultApplicationCertificateStore>
      <OpenSSLStore>
        <CertificateTrustListLocation>[ApplicationPath]/pki/trusted/certs</CertificateTrustListLocation>
        <CertificateRevocationListLocation>[ConfigPath]/pki/trusted/crl/</CertificateRevocationListLocation>
        <IssuersCertificatesLocation>[ConfigPath]/pki/issuers/certs</IssuersCertificatesLocation>
        <IssuersRevocationListLocation>[ConfigPath]/pki/issuers/crl</IssuersRevocationListLocation>
      </OpenSSLStore>
      <ServerCertificate>
        <OpenSSLStore>
          <ServerCertificate>[ConfigPath]/pki/own/certs/server.der</ServerCertificate>
          <ServerPrivateKey>[ConfigPath]/pki/own/private/server.pem</ServerPrivateKey>
        </OpenSSLStore>
      </ServerCertificate>
    </DefaultApplicationCertificateStore>
    <UaEndpoint>
      <SerializerType>Binary</SerializerType>
      <Url>opc.tcp://[NodeName]:4840</Url>
      <CertificateStore>
        <CertificateSettings>
          <CommonName>[ServerName]</CommonName>
          <Organization>Organization</Organization>
          <OrganizationUnit>Unit</OrganizationUnit>
          <Locality>LocationName</Locality>
          <State>State</State>
          <Country>DE</Country>
        </CertificateSettings>
      </CertificateStore>
      <SecuritySetting>
        <SecurityPolicy>http://opcfoundation.org/UA/SecurityPolicy#None</SecurityPolicy>
        <MessageSecurityMode>None</MessageSecurityMode>
      </SecuritySetting>
      <SecuritySetting>
        <SecurityPolicy>http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256</SecurityPolicy>
        <MessageSecurityMode>Sign</MessageSecurityMode>
        <MessageSecurityMode>SignAndEncrypt</MessageSecurityMode>
      </SecuritySetting>
    </UaEndpoint>
    <UaEndpoint>
      <SerializerType>Binary</SerializerType>
      <Url>opc.tcp://[NodeName]:4841</Url>
      <StackUrl>opc.tcp://127.0.0.1:4841</StackUrl>
      <SecuritySetting>
        <SecurityPolicy>http://opcfoundation.org/UA/SecurityPolicy#Basic256</SecurityPolicy>
        <MessageSecurityMode>Sign</MessageSecurityMode>
      </SecuritySetting>
    </UaEndpoint>
    <UserIdentityTokens>
      <EnableAnonymous>true</EnableAnonymous>
      <EnableUserPw>false</EnableUserPw>
    </UserIdentityTokens>
    <Trace>
      <UaAppTraceFile>[TracePath]/srvTrace.log</UaAppTraceFile>
      <UaAppTraceMaxEntries>50000</UaAppTraceMaxEntries>
      <UaAppTraceMaxBackup>3</UaAppTraceMaxBackup>
      <UaAppTraceEnabled>true</UaAppTraceEnabled>
      <UaAppTraceLevel>Info</UaAppTraceLevel>
      <UaStackTraceEnabled>false</UaStackTraceEnabled>
      <UaStackTraceLevel>ERROR</UaStackTraceLevel>
    </Trace>
  </UaServerConfig>
  <Objects>
    <UaConfig>
      <UserAuthorization>
        <Configuration>
          <GroupHost>placeholder</GroupHost>
        </Configuration>
      </UserAuthorization>
    </UaConfig>
  </Objects>
</ServerConfiguration>
)";
}

QByteArray serverConfig(const QByteArray& content)
{
    return "<ServerConfiguration><UaServerConfig>" + content +
           "</UaServerConfig></ServerConfiguration>";
}
