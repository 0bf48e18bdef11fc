#include "certificates/certificatelocationinfo.h"
#include "console/configreaders.h"
#include "tests/support/configsample.h"

#include <QDomDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const ConfigPaths paths = {u"/opt/zandrel"_s, u"/etc/server"_s};

QDomElement rootOf(QDomDocument& document, const QByteArray& text)
{
    if (!document.setContent(text)) {
        qFatal("not well-formed: %s", text.constData());
    }
    return document.documentElement();
}

struct Located
{
    bool isComplete = false;
    CertificateLocationInfo info;
};

Located locate(const QByteArray& text)
{
    QDomDocument document;
    Located located;
    located.isComplete = readCertificateLocations(rootOf(document, text), paths, located.info);
    return located;
}

QByteArray element(const QByteArray& name, const QByteArray& content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

QByteArray rejected()
{
    return element("RejectedCertificatesDirectory", "/rejected");
}

/// The four directories of a store, each path beginning with the name of the store.
QByteArray directories(const QByteArray& name)
{
    return element("CertificateTrustListLocation", name + "/trusted") +
           element("CertificateRevocationListLocation", name + "/revoked") +
           element("IssuersCertificatesLocation", name + "/issuers") +
           element("IssuersRevocationListLocation", name + "/issuersRevoked");
}

QByteArray certificate(const QByteArray& name)
{
    return element("ServerCertificate", name + "/cert") +
           element("ServerPrivateKey", name + "/key");
}

QByteArray store(const QByteArray& content)
{
    return element("OpenSSLStore", content);
}

QByteArray defaultStore(const QByteArray& content)
{
    return element("DefaultApplicationCertificateStore", content);
}

QByteArray endpoint(const QByteArray& content)
{
    return element("UaEndpoint", element("CertificateStore", content));
}

void compareDirectories(const CertificateLocationInfo& info, const QString& name)
{
    const auto expected = [&name](const QString& tail) {
        return name.isEmpty() ? QString() : name + tail;
    };
    QCOMPARE(info.trustListLocation, expected(u"/trusted/"_s));
    QCOMPARE(info.revocationListLocation, expected(u"/revoked/"_s));
    QCOMPARE(info.issuersCertificatesLocation, expected(u"/issuers/"_s));
    QCOMPARE(info.issuersRevocationListLocation, expected(u"/issuersRevoked/"_s));
}

struct Settings
{
    QString commonName = u"1"_s;
    QString organization = u"2"_s;
    QString organizationUnit = u"3"_s;
    QString locality = u"4"_s;
    QString state = u"5"_s;
    QString country = u"6"_s;
    bool operator==(const Settings&) const = default;
};

struct ReadSettings
{
    bool isComplete = false;
    Settings settings;
};

ReadSettings readSettings(const QByteArray& text)
{
    QDomDocument document;
    ReadSettings result;
    Settings& s = result.settings;
    result.isComplete =
        readCertificateSettings(rootOf(document, text), u"alpha"_s, s.commonName, s.organization,
                                s.organizationUnit, s.locality, s.state, s.country);
    return result;
}

QByteArray settings(const QByteArray& commonName)
{
    return element("CommonName", commonName) + element("Organization", "O") +
           element("OrganizationUnit", "OU") + element("Locality", "L") + element("State", "S") +
           element("Country", "C");
}

} // namespace

class ConfigReadersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void empty_elements_give_nothing();
    static void sample_gives_all_locations();
    static void directory_gets_its_placeholders_and_a_slash_data();
    static void directory_gets_its_placeholders_and_a_slash();
    static void file_path_gets_its_placeholders_only_data();
    static void file_path_gets_its_placeholders_only();
    static void store_is_the_default_or_the_first_endpoints_data();
    static void store_is_the_default_or_the_first_endpoints();
    static void server_certificate_is_searched_in_order_data();
    static void server_certificate_is_searched_in_order();
    static void missing_directory_leaves_all_four_empty();
    static void each_group_counts_for_the_result();
    static void settings_are_read_in_order();
    static void settings_with_a_missing_element_change_nothing();
    static void common_name_takes_the_server_name_data();
    static void common_name_takes_the_server_name();
};

void ConfigReadersTest::empty_elements_give_nothing()
{
    CertificateLocationInfo info;
    QVERIFY(!readCertificateLocations(QDomElement(), paths, info));
    QVERIFY(!locate("<a/>").isComplete);
    QVERIFY(!locate(serverConfig({})).isComplete);
    QVERIFY(!readSettings("<a/>").isComplete);
    QVERIFY(!readSettings(serverConfig({})).isComplete);
}

void ConfigReadersTest::sample_gives_all_locations()
{
    const Located located = locate(sampleConfig());
    QVERIFY(located.isComplete);
    const CertificateLocationInfo& info = located.info;
    QCOMPARE(info.revocationListLocation, u"/etc/server/pki/trusted/crl/"_s);
    QCOMPARE(info.trustListLocation, u"/opt/zandrel/pki/trusted/certs/"_s);
    QCOMPARE(info.issuersRevocationListLocation, u"/etc/server/pki/issuers/crl/"_s);
    QCOMPARE(info.issuersCertificatesLocation, u"/etc/server/pki/issuers/certs/"_s);
    QCOMPARE(info.tlsIssuersRevocationListLocation, QString());
    QCOMPARE(info.tlsIssuersCertificatesLocation, QString());
    QCOMPARE(info.rejectedCertificatesDirectory, u"/etc/server/pki/rejected/"_s);
    QCOMPARE(info.serverCertificate, u"/etc/server/pki/own/certs/server.der"_s);
    QCOMPARE(info.serverPrivateKey, u"/etc/server/pki/own/private/server.pem"_s);
}

void ConfigReadersTest::directory_gets_its_placeholders_and_a_slash_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << QByteArray("/pki") << u"/pki/"_s;
    QTest::newRow("slash at the end") << QByteArray("/pki/") << u"/pki/"_s;
    QTest::newRow("backslash at the end") << QByteArray("C:\\pki\\") << u"C:\\pki\\"_s;
    QTest::newRow("backslash inside") << QByteArray("C:\\pki") << u"C:\\pki/"_s;
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("application path")
        << QByteArray("[ApplicationPath]/pki") << u"/opt/zandrel/pki/"_s;
    QTest::newRow("application path alone")
        << QByteArray("[ApplicationPath]") << u"/opt/zandrel/"_s;
    QTest::newRow("configuration path") << QByteArray("[ConfigPath]/pki") << u"/etc/server/pki/"_s;
    QTest::newRow("configuration path at the end gets the slash before it is replaced")
        << QByteArray("[ConfigPath]") << u"/etc/server/"_s;
    QTest::newRow("configuration path with a slash")
        << QByteArray("[ConfigPath]/") << u"/etc/server/"_s;
    QTest::newRow("both, twice")
        << QByteArray("[ApplicationPath][ConfigPath][ApplicationPath][ConfigPath]")
        << u"/opt/zandrel/etc/server/opt/zandrel/etc/server/"_s;
    QTest::newRow("other case") << QByteArray("[applicationpath]/[configpath]")
                                << u"[applicationpath]/[configpath]/"_s;
    QTest::newRow("other placeholders")
        << QByteArray("[NodeName]/[TracePath]") << u"[NodeName]/[TracePath]/"_s;
    QTest::newRow("space at the end") << QByteArray("/pki/ ") << u"/pki/ /"_s;
    QTest::newRow("line break at the end") << QByteArray("/pki/\n") << u"/pki/\n/"_s;
    QTest::newRow("not Latin") << QByteArray("/сертификаты") << u"/сертификаты/"_s;
}

void ConfigReadersTest::directory_gets_its_placeholders_and_a_slash()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, expected);

    const Located located = locate(serverConfig(
        element("RejectedCertificatesDirectory", text) +
        defaultStore(store(element("CertificateTrustListLocation", text) +
                           element("CertificateRevocationListLocation", text) +
                           element("IssuersCertificatesLocation", text) +
                           element("IssuersRevocationListLocation", text) + certificate("x")))));
    QVERIFY(located.isComplete);
    QCOMPARE(located.info.rejectedCertificatesDirectory, expected);
    QCOMPARE(located.info.trustListLocation, expected);
    QCOMPARE(located.info.revocationListLocation, expected);
    QCOMPARE(located.info.issuersCertificatesLocation, expected);
    QCOMPARE(located.info.issuersRevocationListLocation, expected);
}

void ConfigReadersTest::file_path_gets_its_placeholders_only_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << QByteArray("/own/server.der") << u"/own/server.der"_s;
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("application path")
        << QByteArray("[ApplicationPath]/server.der") << u"/opt/zandrel/server.der"_s;
    QTest::newRow("configuration path") << QByteArray("[ConfigPath]") << u"/etc/server"_s;
    QTest::newRow("both") << QByteArray("[ConfigPath][ApplicationPath]")
                          << u"/etc/server/opt/zandrel"_s;
    QTest::newRow("other case") << QByteArray("[CONFIGPATH]/x") << u"[CONFIGPATH]/x"_s;
}

void ConfigReadersTest::file_path_gets_its_placeholders_only()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QString, expected);

    const Located located = locate(serverConfig(defaultStore(
        store(element("ServerCertificate", text) + element("ServerPrivateKey", text)))));
    QCOMPARE(located.info.serverCertificate, expected);
    QCOMPARE(located.info.serverPrivateKey, expected);
}

void ConfigReadersTest::store_is_the_default_or_the_first_endpoints_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    const QByteArray first = endpoint(store(directories("/first")));
    const QByteArray second = endpoint(store(directories("/second")));
    QTest::newRow("default store") << defaultStore(store(directories("/default"))) << u"/default"_s;
    QTest::newRow("default store before the endpoint's")
        << first + defaultStore(store(directories("/default"))) << u"/default"_s;
    QTest::newRow("no default store") << first + second << u"/first"_s;
    QTest::newRow("default store without an OpenSSLStore")
        << defaultStore("<Other/>") + first << u"/first"_s;
    QTest::newRow("incomplete default store is no reason to look further")
        << defaultStore(store("<Other/>")) + first << QString();
    QTest::newRow("only the first endpoint counts")
        << element("UaEndpoint", "<Url>x</Url>") + second << QString();
    QTest::newRow("first of repeated default stores")
        << defaultStore(store(directories("/1"))) + defaultStore(store(directories("/2")))
        << u"/1"_s;
    QTest::newRow("nothing") << QByteArray() << QString();
}

void ConfigReadersTest::store_is_the_default_or_the_first_endpoints()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, expected);

    const Located located = locate(serverConfig(content));
    QVERIFY(!located.isComplete); // the other groups are missing
    compareDirectories(located.info, expected);
}

void ConfigReadersTest::server_certificate_is_searched_in_order_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    const QByteArray ownStore = element("ServerCertificate", store(certificate("/own")));
    const QByteArray first = endpoint(store(certificate("/first")));
    QTest::newRow("own store") << defaultStore(store(certificate("/default")) + ownStore) + first
                               << u"/own"_s;
    QTest::newRow("no own store") << defaultStore(store(certificate("/default"))) + first
                                  << u"/default"_s;
    QTest::newRow("own element without a store leads to the endpoint")
        << defaultStore(store(certificate("/default")) + "<ServerCertificate/>") + first
        << u"/first"_s;
    QTest::newRow("own store without a certificate ends the search")
        << defaultStore(store(certificate("/default")) +
                        element("ServerCertificate", store(QByteArray()))) +
               first
        << QString();
    QTest::newRow("no default store") << first << u"/first"_s;
    QTest::newRow("default store without an OpenSSLStore")
        << defaultStore(QByteArray()) + first << u"/first"_s;
    QTest::newRow("own store in a default store without an OpenSSLStore")
        << defaultStore(ownStore) + first << u"/own"_s;
    QTest::newRow("key is missing")
        << defaultStore(store(element("ServerCertificate", "/x"))) << QString();
    QTest::newRow("certificate is missing")
        << defaultStore(store(element("ServerPrivateKey", "/x"))) << QString();
    QTest::newRow("nothing") << QByteArray() << QString();
}

void ConfigReadersTest::server_certificate_is_searched_in_order()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, expected);

    const Located located = locate(serverConfig(content));
    QCOMPARE(located.info.serverCertificate,
             expected.isEmpty() ? QString() : expected + u"/cert"_s);
    QCOMPARE(located.info.serverPrivateKey, expected.isEmpty() ? QString() : expected + u"/key"_s);
}

void ConfigReadersTest::missing_directory_leaves_all_four_empty()
{
    for (const char* name : {"CertificateTrustListLocation", "CertificateRevocationListLocation",
                             "IssuersCertificatesLocation", "IssuersRevocationListLocation"}) {
        QByteArray content = directories("/d");
        content.replace(QByteArray("<") + name + ">", "<Other>");
        content.replace(QByteArray("</") + name + ">", "</Other>");
        const Located located =
            locate(serverConfig(rejected() + defaultStore(store(content + certificate("/c")))));
        QVERIFY(!located.isComplete);
        compareDirectories(located.info, QString());
        QCOMPARE(located.info.rejectedCertificatesDirectory, u"/rejected/"_s);
        QCOMPARE(located.info.serverCertificate, u"/c/cert"_s);
    }
}

void ConfigReadersTest::each_group_counts_for_the_result()
{
    const auto isComplete = [](bool hasRejected, bool hasDirectories, bool hasCertificate) {
        return locate(serverConfig(
                          (hasRejected ? rejected() : QByteArray()) +
                          defaultStore(store((hasDirectories ? directories("/d") : QByteArray()) +
                                             (hasCertificate ? certificate("/c") : QByteArray())))))
            .isComplete;
    };
    for (int groups = 0; groups < 8; ++groups) {
        QCOMPARE(isComplete(groups & 1, groups & 2, groups & 4), groups == 7);
    }
}

void ConfigReadersTest::settings_are_read_in_order()
{
    const ReadSettings read =
        readSettings(serverConfig(endpoint(element("CertificateSettings", settings("CN"))) +
                                  endpoint(element("CertificateSettings", settings("second")))));
    QVERIFY(read.isComplete);
    QVERIFY(read.settings == Settings({u"CN"_s, u"O"_s, u"OU"_s, u"L"_s, u"S"_s, u"C"_s}));

    const ReadSettings ofSample = readSettings(sampleConfig());
    QVERIFY(ofSample.isComplete);
    QVERIFY(ofSample.settings == Settings({u"Sample@alpha"_s, u"Organization"_s, u"Unit"_s,
                                           u"LocationName"_s, u"State"_s, u"DE"_s}));
}

void ConfigReadersTest::settings_with_a_missing_element_change_nothing()
{
    for (const char* name :
         {"CommonName", "Organization", "OrganizationUnit", "Locality", "State", "Country"}) {
        QByteArray content = settings("CN");
        content.replace(QByteArray("<") + name + ">", "<Other>");
        content.replace(QByteArray("</") + name + ">", "</Other>");
        const ReadSettings read =
            readSettings(serverConfig(endpoint(element("CertificateSettings", content))));
        QVERIFY(!read.isComplete);
        QVERIFY(read.settings == Settings());
    }
    // The first endpoint alone counts.
    QVERIFY(!readSettings(serverConfig("<UaEndpoint/>" +
                                       endpoint(element("CertificateSettings", settings("CN")))))
                 .isComplete);
}

void ConfigReadersTest::common_name_takes_the_server_name_data()
{
    QTest::addColumn<QByteArray>("commonName");
    QTest::addColumn<QByteArray>("serverName"); // the element
    QTest::addColumn<QString>("expected");

    QTest::newRow("server name") << QByteArray("[ServerName]") << element("ServerName", "S")
                                 << u"S"_s;
    QTest::newRow("host name in it")
        << QByteArray("[ServerName]") << element("ServerName", "S@[NodeName]/[NodeName]")
        << u"S@alpha/alpha"_s;
    QTest::newRow("host name in another case")
        << QByteArray("[ServerName]") << element("ServerName", "S@[nodename]") << u"S@[nodename]"_s;
    QTest::newRow("more than the placeholder")
        << QByteArray("[ServerName]!") << element("ServerName", "S") << u"[ServerName]!"_s;
    QTest::newRow("placeholder in another case")
        << QByteArray("[servername]") << element("ServerName", "S") << u"[servername]"_s;
    QTest::newRow("host name in the common name stays")
        << QByteArray("C@[NodeName]") << element("ServerName", "S") << u"C@[NodeName]"_s;
    QTest::newRow("empty server name")
        << QByteArray("[ServerName]") << QByteArray("<ServerName/>") << QString();
    QTest::newRow("no server name")
        << QByteArray("[ServerName]") << QByteArray() << u"[ServerName]"_s;
    QTest::newRow("empty common name") << QByteArray() << element("ServerName", "S") << QString();
}

void ConfigReadersTest::common_name_takes_the_server_name()
{
    QFETCH(const QByteArray, commonName);
    QFETCH(const QByteArray, serverName);
    QFETCH(const QString, expected);

    const ReadSettings read = readSettings(
        serverConfig(serverName + endpoint(element("CertificateSettings", settings(commonName)))));
    QVERIFY(read.isComplete);
    QCOMPARE(read.settings.commonName, expected);
}

QTEST_GUILESS_MAIN(ConfigReadersTest)
#include "configreaders_test.moc"
