// The sample configuration as the console reads it: every element it looks for is there, the
// folders lie in the server directory, and what it doesn't know survives being read and written.

#include "tests/examples/programrun.h"

#include <QDomDocument>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

QList<QDomElement> childrenOf(const QDomElement& parent, const QString& name)
{
    QList<QDomElement> children;
    for (QDomElement child = parent.firstChildElement(name); !child.isNull();
         child = child.nextSiblingElement(name)) {
        children.append(child);
    }
    return children;
}

QString policyUri(const QString& name)
{
    return QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#") + name;
}

/// The security settings of an endpoint, one text each such as "Basic256: Sign SignAndEncrypt".
QStringList securityOf(const QDomElement& endpoint)
{
    QStringList settings;
    const QList<QDomElement> elements = childrenOf(endpoint, QStringLiteral("SecuritySetting"));
    for (const QDomElement& setting : elements) {
        QString policy = setting.firstChildElement(QStringLiteral("SecurityPolicy")).text();
        QStringList modes;
        const auto modeElements = childrenOf(setting, QStringLiteral("MessageSecurityMode"));
        for (const QDomElement& mode : modeElements) {
            modes.append(mode.text());
        }
        settings.append(policy.remove(policyUri(QString())) + QStringLiteral(": ") +
                        modes.join(QLatin1Char(' ')));
    }
    return settings;
}

constexpr const char* storeChildren[] = {
    "CertificateTrustListLocation",
    "CertificateRevocationListLocation",
    "IssuersCertificatesLocation",
    "IssuersRevocationListLocation",
    "ServerCertificate",
    "ServerPrivateKey",
};

constexpr const char* stores[] = {
    "UaServerConfig/DefaultApplicationCertificateStore/OpenSSLStore",
    "UaServerConfig/UaEndpoint/CertificateStore/OpenSSLStore",
};

constexpr const char* ownCertificateStore =
    "UaServerConfig/DefaultApplicationCertificateStore/ServerCertificate/OpenSSLStore";

constexpr const char* otherElements[] = {
    "UaServerConfig/ServerName",
    "UaServerConfig/RejectedCertificatesDirectory",
    "UaServerConfig/UaEndpoint/Url",
    "UaServerConfig/UaEndpoint/SecuritySetting/SecurityPolicy",
    "UaServerConfig/UaEndpoint/SecuritySetting/MessageSecurityMode",
    "UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/CommonName",
    "UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/Organization",
    "UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/OrganizationUnit",
    "UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/Locality",
    "UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/State",
    "UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/Country",
    "UaServerConfig/UserIdentityTokens/EnableAnonymous",
    "UaServerConfig/UserIdentityTokens/EnableUserPw",
    "UaServerConfig/Trace/UaAppTraceFile",
    "UaServerConfig/Trace/UaAppTraceMaxEntries",
    "UaServerConfig/Trace/UaAppTraceMaxBackup",
    "UaServerConfig/Trace/UaAppTraceEnabled",
    "UaServerConfig/Trace/UaAppTraceLevel",
    "UaServerConfig/Trace/UaStackTraceEnabled",
    "UaServerConfig/Trace/UaStackTraceLevel",
    "Objects/UaConfig/UserAuthorization/Configuration/GroupHost",
};

QString below(const char* path, const char* child)
{
    return QStringLiteral("%1/%2").arg(QLatin1String(path), QLatin1String(child));
}

} // namespace

class SampleConfigTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void element_is_there_once_with_plain_text_data();
    void element_is_there_once_with_plain_text();
    void three_endpoints_differ_in_address_and_security();
    void locations_lead_to_folders_of_the_server_directory_data();
    void locations_lead_to_folders_of_the_server_directory();
    void values_are_those_that_the_console_knows();
    void placeholders_stand_where_they_count();
    void nothing_remembered_by_the_console_is_there();
    void unknown_contents_survive_reading_and_writing();

private:
    [[nodiscard]] QDomElement find(const QString& path) const;

    QTemporaryDir m_folder;
    QString m_text;
    QDomDocument m_document;
};

void SampleConfigTest::initTestCase()
{
    QVERIFY(m_folder.isValid());
    const ProgramRun run = runSampleServer({m_folder.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    m_text = QString::fromUtf8(bytesOf(m_folder.filePath(QStringLiteral("ServerConfig.xml"))));
    QString message;
    int line = 0;
    QVERIFY2(m_document.setContent(m_text, &message, &line),
             qPrintable(QStringLiteral("line %1: %2").arg(line).arg(message)));
}

/// The element of a path below the document element, always the first of its name.
QDomElement SampleConfigTest::find(const QString& path) const
{
    QDomElement element = m_document.documentElement();
    const QStringList names = path.split(QLatin1Char('/'));
    for (const QString& name : names) {
        element = element.firstChildElement(name);
    }
    return element;
}

void SampleConfigTest::element_is_there_once_with_plain_text_data()
{
    QTest::addColumn<QString>("path");
    for (const char* path : otherElements) {
        QTest::newRow(path) << QString::fromLatin1(path);
    }
    for (const char* child : {"ServerCertificate", "ServerPrivateKey"}) {
        const QString path = below(ownCertificateStore, child);
        QTest::newRow(qPrintable(path)) << path;
    }
    for (const char* store : stores) {
        for (const char* child : storeChildren) {
            const QString path = below(store, child);
            QTest::newRow(qPrintable(path)) << path;
        }
    }
}

void SampleConfigTest::element_is_there_once_with_plain_text()
{
    QFETCH(QString, path);
    const QDomElement element = find(path);
    QVERIFY(!element.isNull());
    QVERIFY2(element.firstChild().isText(), "a new value could not go in");
    QCOMPARE(element.childNodes().size(), 1);
    QCOMPARE(element.text().trimmed(), element.text());
    QVERIFY(!element.text().isEmpty());
}

void SampleConfigTest::three_endpoints_differ_in_address_and_security()
{
    const QList<QDomElement> endpoints =
        childrenOf(find(QStringLiteral("UaServerConfig")), QStringLiteral("UaEndpoint"));
    QCOMPARE(endpoints.size(), 3);
    QStringList urls;
    QStringList stackUrls;
    for (const QDomElement& endpoint : endpoints) {
        urls.append(endpoint.firstChildElement(QStringLiteral("Url")).text());
        stackUrls.append(endpoint.firstChildElement(QStringLiteral("StackUrl")).text());
    }
    QCOMPARE(urls, (QStringList{QStringLiteral("opc.tcp://[NodeName]:4850"),
                                QStringLiteral("opc.tcp://[NodeName]:4851"),
                                QStringLiteral("https://[NodeName]:4852")}));
    QCOMPARE(stackUrls, (QStringList{QString(), QStringLiteral("opc.tcp://127.0.0.1:4851"),
                                     QStringLiteral("https://[NodeName]:4852")}));
    QCOMPARE(securityOf(endpoints.at(0)),
             (QStringList{QStringLiteral("None: None"), QStringLiteral("Basic256: Sign"),
                          QStringLiteral("Basic256Sha256: Sign SignAndEncrypt")}));
    QCOMPARE(securityOf(endpoints.at(1)),
             (QStringList{QStringLiteral("Basic128Rsa15: SignAndEncrypt"),
                          QStringLiteral("Basic256: Sign SignAndEncrypt")}));
    QCOMPARE(securityOf(endpoints.at(2)),
             (QStringList{QStringLiteral("Basic256Sha256: SignAndEncrypt"),
                          QStringLiteral("Aes256_Sha256_RsaPss: SignAndEncrypt")}));
}

void SampleConfigTest::locations_lead_to_folders_of_the_server_directory_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("expected");
    QTest::newRow("rejected") << "UaServerConfig/RejectedCertificatesDirectory"
                              << "pki/rejected";
    const QStringList expected = {
        QStringLiteral("pki/trusted/certs"), QStringLiteral("pki/trusted/crl"),
        QStringLiteral("pki/issuers/certs"), QStringLiteral("pki/issuers/crl"),
        QStringLiteral("pki/own/certs"),     QStringLiteral("pki/own/private"),
    };
    for (const char* store : stores) {
        for (int i = 0; i < expected.size(); ++i) {
            QTest::addRow("%s/%s", store, storeChildren[i])
                << below(store, storeChildren[i]) << expected.at(i);
        }
    }
    QTest::newRow("own certificate")
        << below(ownCertificateStore, "ServerCertificate") << "pki/own/certs";
    QTest::newRow("own key") << below(ownCertificateStore, "ServerPrivateKey") << "pki/own/private";
}

void SampleConfigTest::locations_lead_to_folders_of_the_server_directory()
{
    QFETCH(QString, path);
    QFETCH(QString, expected);
    QString location = find(path).text();
    QVERIFY2(location.startsWith(QStringLiteral("[ConfigPath]/")), qPrintable(location));
    location.replace(QStringLiteral("[ConfigPath]"), m_folder.path());
    const QFileInfo info(location);
    const bool namesFile = !info.suffix().isEmpty();
    QCOMPARE(namesFile ? info.path() : location, m_folder.filePath(expected));
    QVERIFY(QFileInfo(m_folder.filePath(expected)).isDir());
}

void SampleConfigTest::values_are_those_that_the_console_knows()
{
    const auto text = [this](const char* name) {
        return find(QStringLiteral("UaServerConfig/") + QLatin1String(name)).text();
    };
    const QRegularExpression boolean(QStringLiteral("^(true|false)$"));
    for (const char* name :
         {"UserIdentityTokens/EnableAnonymous", "UserIdentityTokens/EnableUserPw",
          "Trace/UaAppTraceEnabled", "Trace/UaStackTraceEnabled"}) {
        QVERIFY2(boolean.match(text(name)).hasMatch(), name);
    }
    QCOMPARE(text("Trace/UaAppTraceLevel"), QStringLiteral("Info"));
    QCOMPARE(text("Trace/UaStackTraceLevel"), QStringLiteral("ERROR"));
    QCOMPARE(text("Trace/UaAppTraceMaxEntries").toInt(), 100000);
    QCOMPARE(text("Trace/UaAppTraceMaxBackup").toInt(), 5);
}

void SampleConfigTest::placeholders_stand_where_they_count()
{
    const auto text = [this](const char* path) { return find(QLatin1String(path)).text(); };
    QVERIFY(text("UaServerConfig/ServerName").contains(QStringLiteral("[NodeName]")));
    QCOMPARE(text("UaServerConfig/UaEndpoint/CertificateStore/CertificateSettings/CommonName"),
             QStringLiteral("[ServerName]"));
    QCOMPARE(text("UaServerConfig/Trace/UaAppTraceFile"),
             QStringLiteral("[TracePath]/srvTrace.log"));
    QCOMPARE(text("Objects/UaConfig/UserAuthorization/Configuration/GroupHost"),
             QStringLiteral("[NodeName]"));
    QVERIFY(m_text.contains(QStringLiteral("[ApplicationPath]/")));
}

void SampleConfigTest::nothing_remembered_by_the_console_is_there()
{
    for (const char* name : {"ConfigTools", "Geometry", "Hostname"}) {
        QVERIFY2(m_document.elementsByTagName(QLatin1String(name)).isEmpty(), name);
    }
}

void SampleConfigTest::unknown_contents_survive_reading_and_writing()
{
    const QString written = m_document.toString(2);
    const QStringList pieces = {
        QStringLiteral("<?server-config reload=\"on-restart\" revision=\"3\"?>"),
        QStringLiteral("<!-- For the reporting system behind the gateway. -->"),
        QStringLiteral("<![CDATA[Authorised operators only. <All sessions are recorded & "
                       "reviewed.>]]>"),
        QStringLiteral("<MaxSessionTimeout unit=\"ms\">3600000</MaxSessionTimeout>"),
        QStringLiteral("Boiler house &amp; pump station"),
        QStringLiteral("\u039b\u03b5\u03b2\u03b7\u03c4\u03bf\u03c3\u03c4\u03ac\u03c3\u03b9\u03bf"),
        QStringLiteral("\u30dc\u30a4\u30e9\u30fc\u5ba4"),
        QStringLiteral("<MaxThreads>16</MaxThreads>"),
    };
    for (const QString& piece : pieces) {
        QVERIFY2(m_text.contains(piece), qPrintable(piece));
        QVERIFY2(written.contains(piece), qPrintable(piece));
    }
    QDomDocument again;
    QVERIFY(again.setContent(written));
    QCOMPARE(again.toString(2), written);
}

QTEST_GUILESS_MAIN(SampleConfigTest)
#include "sampleconfig_test.moc"
