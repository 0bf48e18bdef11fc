#include "console/configelements.h"
#include "console/endpointconfig.h"
#include "console/endpointurl.h"
#include "tests/console/endpointstab.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QDomDocument>

using namespace Qt::StringLiterals;

namespace {

/// A document with this content below UaServerConfig.
class Config
{
public:
    explicit Config(const QByteArray& content)
    {
        if (!m_document.setContent(QString::fromUtf8(serverConfig(content)))) {
            qFatal("not well-formed: %s", content.constData());
        }
    }

    [[nodiscard]] QDomElement element() const
    {
        return m_document.documentElement().firstChildElement(ConfigElement::UaServerConfig);
    }

    /// What stands below UaServerConfig, without white space between the elements.
    [[nodiscard]] QByteArray content() const
    {
        // A comment ends its line even so.
        const QByteArray text = m_document.toString(-1).toUtf8().replace("-->\n", "-->");
        const QByteArray begin = "<UaServerConfig>";
        const qsizetype from = text.indexOf(begin) + begin.size();
        return text.mid(from, text.indexOf("</UaServerConfig>") - from);
    }

private:
    QDomDocument m_document;
};

QList<EndpointRecord> read(const QByteArray& content)
{
    return readEndpoints(Config(content).element());
}

QByteArray written(const QByteArray& content, const QList<EndpointRecord>& endpoints)
{
    const Config config(content);
    writeEndpoints(config.element(), endpoints);
    return config.content();
}

const QString urlA = u"opc.tcp://a:1"_s;
const QString urlB = u"opc.tcp://b:2"_s;

EndpointRecord plain(const QString& url, const QString& stackUrl)
{
    return {endpointProtocol(url, stackUrl), url, stackUrl, {}};
}

} // namespace

class EndpointConfigTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Reading

    void missing_elements_read_as_nothing()
    {
        QVERIFY(readEndpoints(QDomElement()).isEmpty());
        QVERIFY(readEndpointPorts(QDomElement()).isEmpty());
        QVERIFY(!readUserLogon(QDomElement()));
        QVERIFY(read("").isEmpty());
        QCOMPARE(read("<UaEndpoint/>"), QList<EndpointRecord>{EndpointRecord()});
    }

    void urls_of_an_endpoint_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("stackUrl");
        const auto row = [](const char* name, const QByteArray& xml, const QString& url,
                            const QString& stackUrl) {
            QTest::newRow(name) << xml << url << stackUrl;
        };
        row("both", "<Url>opc.tcp://a:1</Url><StackUrl>opc.tcp://b:2</StackUrl>", urlA, urlB);
        row("stack URL first", "<StackUrl>opc.tcp://b:2</StackUrl><Url>opc.tcp://a:1</Url>", urlA,
            urlB);
        row("no stack URL", "<Url>opc.tcp://a:1</Url>", urlA, urlA);
        row("empty stack URL", "<Url>opc.tcp://a:1</Url><StackUrl/>", urlA, urlA);
        row("no URL", "<StackUrl>opc.tcp://b:2</StackUrl>", QString(), urlB);
        row("first of several counts",
            "<Url>opc.tcp://a:1</Url><Url>x</Url><StackUrl>opc.tcp://b:2</StackUrl>"
            "<StackUrl>y</StackUrl>",
            urlA, urlB);
        row("first counts though it is empty", "<Url/><Url>opc.tcp://a:1</Url>", QString(),
            QString());
        row("CDATA", "<Url><![CDATA[opc.tcp://a:1]]></Url>", urlA, urlA);
        row("comment within", "<Url>opc.tcp://<!-- no -->a:1</Url>", urlA, urlA);
        row("processing instruction within", "<Url>opc.tcp://<?no no?>a:1</Url>", urlA, urlA);
        row("white space stays", "<Url> opc.tcp://a:1\n</Url>", u" opc.tcp://a:1\n"_s,
            u" opc.tcp://a:1\n"_s);
        row("markup", "<Url>&lt;b&gt;&amp;</Url>", u"<b>&"_s, u"<b>&"_s);
        row("non-Latin", "<Url>opc.tcp://\xD1\x81\xD0\xB5\xD1\x80\xD0\xB2\xD0\xB5\xD1\x80:1</Url>",
            u"opc.tcp://\u0441\u0435\u0440\u0432\u0435\u0440:1"_s,
            u"opc.tcp://\u0441\u0435\u0440\u0432\u0435\u0440:1"_s);
        row("deeper elements don't count", "<Other><Url>opc.tcp://a:1</Url></Other>", QString(),
            QString());
        row("the case of names counts", "<url>opc.tcp://a:1</url>", QString(), QString());
    }

    void urls_of_an_endpoint()
    {
        QFETCH(const QByteArray, xml);
        QFETCH(const QString, url);
        QFETCH(const QString, stackUrl);
        const QList<EndpointRecord> endpoints = read("<UaEndpoint>" + xml + "</UaEndpoint>");
        QCOMPARE(endpoints, QList<EndpointRecord>{plain(url, stackUrl)});
    }

    void settings_of_an_endpoint_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QList<SecurityRecord>>("expected");
        using Settings = QList<SecurityRecord>;
        const auto row = [](const char* name, const QByteArray& xml, const Settings& expected) {
            QTest::newRow(name) << xml << expected;
        };
        const QString none = policyUri("None");
        const QString basic = policyUri("Basic256");
        row("none", settingXml("None", {"None"}), {{none, 1}});
        row("sign", settingXml("Basic256", {"Sign"}), {{basic, 2}});
        row("sign and encrypt", settingXml("Basic256", {"SignAndEncrypt"}), {{basic, 4}});
        row("both", settingXml("Basic256", {"Sign", "SignAndEncrypt"}), {{basic, 6}});
        row("all, in another order", settingXml("Basic256", {"SignAndEncrypt", "None", "Sign"}),
            {{basic, 7}});
        row("one mode twice", settingXml("Basic256", {"Sign", "Sign"}), {{basic, 2}});
        row("unknown mode keeps the policy without a flag", settingXml("Basic256", {"Encrypt"}),
            {{basic, 0}});
        row("unknown mode beside a known one", settingXml("Basic256", {"Encrypt", "Sign"}),
            {{basic, 2}});
        row("the case of a mode counts", settingXml("Basic256", {"sign", "NONE"}), {{basic, 0}});
        row("blanks of a mode count", settingXml("Basic256", {" Sign"}), {{basic, 0}});
        row("no mode", settingXml("Basic256", {}), {{basic, 0}});
        row("empty mode", settingXml("Basic256", {""}), {{basic, 0}});
        row("mode in CDATA", settingXml("Basic256", {"<![CDATA[Sign]]>"}), {{basic, 2}});
        row("unknown policy", settingXml("Unknown", {"Sign"}), {{policyUri("Unknown"), 2}});
        row("no policy",
            "<SecuritySetting><MessageSecurityMode>Sign</MessageSecurityMode></SecuritySetting>",
            {{QString(), 2}});
        row("modes before the policy",
            "<SecuritySetting><MessageSecurityMode>Sign</MessageSecurityMode>"
            "<SecurityPolicy>p</SecurityPolicy></SecuritySetting>",
            {{u"p"_s, 2}});
        row("first policy of a setting counts",
            "<SecuritySetting><SecurityPolicy>p</SecurityPolicy><SecurityPolicy>q</SecurityPolicy>"
            "</SecuritySetting>",
            {{u"p"_s, 0}});
        row("the same policy merges, in the place of the first",
            settingXml("Basic256", {"Sign"}) + settingXml("None", {"None"}) +
                settingXml("Basic256", {"SignAndEncrypt"}),
            {{basic, 6}, {none, 1}});
        row("policies of another case don't merge",
            settingXml("Basic256", {"Sign"}) + settingXml("BASIC256", {"Sign"}),
            {{basic, 2}, {policyUri("BASIC256"), 2}});
        row("empty setting", "<SecuritySetting/>", {{QString(), 0}});
    }

    void settings_of_an_endpoint()
    {
        QFETCH(const QByteArray, xml);
        QFETCH(const QList<SecurityRecord>, expected);
        const QList<EndpointRecord> endpoints = read(endpointXml("opc.tcp://a:1", {}, xml));
        QCOMPARE(endpoints.size(), 1);
        QCOMPARE(endpoints.at(0).securitySettings, expected);
    }

    void endpoints_are_read_in_the_order_of_the_file()
    {
        const QList<EndpointRecord> endpoints = read(endpointXml("opc.tcp://b:2") + "<Other/>" +
                                                     endpointXml("https://a:1", "https://c:3") +
                                                     "<!-- -->" + endpointXml("opc.tcp://a:1"));
        QCOMPARE(endpoints, (QList<EndpointRecord>{plain(urlB, urlB),
                                                   plain(u"https://a:1"_s, u"https://c:3"_s),
                                                   plain(urlA, urlA)}));
        QCOMPARE(endpoints.at(1).protocol, int(EndpointProtocolHttps));
    }

    void many_settings_are_read_in_linear_time()
    {
        QByteArray xml;
        for (int i = 0; i < 50000; ++i) {
            xml += settingXml(QByteArray::number(i), {"Sign"});
        }
        xml += settingXml("7", {"SignAndEncrypt"});
        const QList<EndpointRecord> endpoints = read(endpointXml("opc.tcp://a:1", {}, xml));
        QCOMPARE(endpoints.at(0).securitySettings.size(), 50000);
        QCOMPARE(endpoints.at(0).securitySettings.at(7).messageSecurityModes, quint16(6));
    }

    void port_of_an_endpoint_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<int>("expected");
        QTest::newRow("URL alone") << QByteArray("<Url>opc.tcp://a:1</Url>") << 1;
        QTest::newRow("stack URL")
            << QByteArray("<Url>opc.tcp://a:1</Url><StackUrl>https://b:2</StackUrl>") << 2;
        QTest::newRow("empty stack URL has none, though the URL has")
            << QByteArray("<Url>opc.tcp://a:1</Url><StackUrl/>") << 0;
        QTest::newRow("other scheme") << QByteArray("<Url>http://a:1</Url>") << 0;
        QTest::newRow("case of the scheme") << QByteArray("<Url>OPC.TCP://a:1</Url>") << 1;
        QTest::newRow("no port") << QByteArray("<Url>opc.tcp://a</Url>") << 0;
        QTest::newRow("port beyond an int") << QByteArray("<Url>https://a:99999999999</Url>") << 0;
        QTest::newRow("nothing") << QByteArray() << 0;
    }

    void port_of_an_endpoint()
    {
        QFETCH(const QByteArray, xml);
        QFETCH(const int, expected);
        const Config config("<UaEndpoint>" + xml + "</UaEndpoint>" + endpointXml("https://z:9"));
        QCOMPARE(readEndpointPorts(config.element()), (QList<int>{expected, 9}));
    }

    // Writing

    void stack_url_is_written_where_it_differs_data()
    {
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<QString>("stackUrl");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray without = "<Url>old</Url><After/>";
        const QByteArray with = "<Url>old</Url><StackUrl>old2</StackUrl><After/>";
        const auto row = [](const char* name, const QByteArray& pattern, const QString& stackUrl,
                            const QByteArray& expected) {
            QTest::newRow(name) << "<UaEndpoint>" + pattern + "</UaEndpoint>" << stackUrl
                                << "<UaEndpoint>" + expected + "</UaEndpoint>";
        };
        row("present and equal is removed", with, urlA, "<Url>opc.tcp://a:1</Url><After/>");
        row("present and different is set", with, urlB,
            "<Url>opc.tcp://a:1</Url><StackUrl>opc.tcp://b:2</StackUrl><After/>");
        row("absent and equal stays absent", without, urlA, "<Url>opc.tcp://a:1</Url><After/>");
        row("absent and different is created behind the rest", without, urlB,
            "<Url>opc.tcp://a:1</Url><After/><StackUrl>opc.tcp://b:2</StackUrl>");
        row("several and equal are all removed",
            "<Url>old</Url><StackUrl>x</StackUrl><StackUrl>y</StackUrl>", urlA,
            "<Url>opc.tcp://a:1</Url>");
        row("several and different: the first is set",
            "<Url>old</Url><StackUrl>x</StackUrl><StackUrl>y</StackUrl>", urlB,
            "<Url>opc.tcp://a:1</Url><StackUrl>opc.tcp://b:2</StackUrl><StackUrl>y</StackUrl>");
        row("present without a text takes nothing", "<Url>old</Url><StackUrl/>", urlB,
            "<Url>opc.tcp://a:1</Url><StackUrl/>");
    }

    void stack_url_is_written_where_it_differs()
    {
        QFETCH(const QByteArray, pattern);
        QFETCH(const QString, stackUrl);
        QFETCH(const QByteArray, expected);
        QCOMPARE(written(pattern, {plain(urlA, stackUrl)}), expected);
    }

    void url_goes_into_the_first_child_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("text") << QByteArray("<Url>old</Url>")
                              << QByteArray("<Url>opc.tcp://a:1</Url>");
        QTest::newRow("CDATA stays CDATA") << QByteArray("<Url><![CDATA[old]]></Url>")
                                           << QByteArray("<Url><![CDATA[opc.tcp://a:1]]></Url>");
        QTest::newRow("without a text it takes nothing")
            << QByteArray("<Url/>") << QByteArray("<Url/>");
        QTest::newRow("comment first takes nothing")
            << QByteArray("<Url><!--c-->old</Url>") << QByteArray("<Url><!--c-->old</Url>");
        QTest::newRow("text behind a comment stays")
            << QByteArray("<Url>old<!--c-->tail</Url>")
            << QByteArray("<Url>opc.tcp://a:1<!--c-->tail</Url>");
        QTest::newRow("first of several") << QByteArray("<Url>x</Url><Url>y</Url>")
                                          << QByteArray("<Url>opc.tcp://a:1</Url><Url>y</Url>");
        QTest::newRow("missing is not made") << QByteArray("<Other/>") << QByteArray("<Other/>");
    }

    void url_goes_into_the_first_child()
    {
        QFETCH(const QByteArray, url);
        QFETCH(const QByteArray, expected);
        QCOMPARE(written("<UaEndpoint>" + url + "</UaEndpoint>", {plain(urlA, urlA)}),
                 "<UaEndpoint>" + expected + "</UaEndpoint>");
    }

    void settings_are_written_behind_the_rest_in_order()
    {
        EndpointRecord endpoint = plain(urlA, urlB);
        endpoint.securitySettings = {
            {policyUri("Basic256"), 6}, {policyUri("None"), 1}, {u"urn:<x>"_s, 7}, {u"urn:y"_s, 0}};
        const QByteArray pattern =
            endpointXml("old", {}, settingXml("Basic256Sha256", {"Sign"}) + "<After/>");
        QCOMPARE(written(pattern, {endpoint}),
                 "<UaEndpoint><Url>opc.tcp://a:1</Url><After/><StackUrl>opc.tcp://b:2</StackUrl>" +
                     settingXml("Basic256", {"Sign", "SignAndEncrypt"}) +
                     settingXml("None", {"None"}) +
                     "<SecuritySetting><SecurityPolicy>urn:&lt;x></SecurityPolicy>"
                     "<MessageSecurityMode>None</MessageSecurityMode>"
                     "<MessageSecurityMode>Sign</MessageSecurityMode>"
                     "<MessageSecurityMode>SignAndEncrypt</MessageSecurityMode></SecuritySetting>"
                     "<SecuritySetting><SecurityPolicy>urn:y</SecurityPolicy></SecuritySetting>"
                     "</UaEndpoint>");
    }

    void endpoints_move_behind_whatever_else_there_is()
    {
        QCOMPARE(written("<Before/>" + endpointXml("old") + "<Between/>" + endpointXml("old2") +
                             "<!--c--><After/>",
                         {plain(urlA, urlA), plain(urlB, urlB)}),
                 "<Before/><Between/><!--c--><After/>" + endpointXml("opc.tcp://a:1") +
                     endpointXml("opc.tcp://b:2"));
    }

    void everything_else_is_taken_from_the_first_endpoint()
    {
        const QByteArray first = "<Serializer kind=\"b\">Binary</Serializer><!--c-->";
        QCOMPARE(written(endpointXml("old", {}, first) +
                             endpointXml("old2", "old3", "<Serializer>Xml</Serializer>"),
                         {plain(urlA, urlA), plain(urlB, urlA)}),
                 endpointXml("opc.tcp://a:1", {}, first) + "<UaEndpoint><Url>opc.tcp://b:2</Url>" +
                     first + "<StackUrl>opc.tcp://a:1</StackUrl></UaEndpoint>");
    }

    void more_or_fewer_endpoints_than_before_can_be_written()
    {
        QCOMPARE(written(endpointXml("old") + endpointXml("old2"), {plain(urlA, urlA)}),
                 endpointXml("opc.tcp://a:1"));
        QCOMPARE(written(endpointXml("old"), {plain(urlA, urlA), plain(urlA, urlA)}),
                 endpointXml("opc.tcp://a:1") + endpointXml("opc.tcp://a:1"));
        QCOMPARE(written("<A/>" + endpointXml("old"), {}), QByteArray("<A/>"));
    }

    void without_an_endpoint_to_copy_nothing_is_written()
    {
        QCOMPARE(written("<A/>", {plain(urlA, urlA)}), QByteArray("<A/>"));
        QVERIFY(writeEndpoints(QDomElement(), {plain(urlA, urlA)}).isEmpty());
    }

    void saving_what_was_read_changes_nothing_more_the_second_time()
    {
        const Config config(endpointXml("opc.tcp://a:1", "opc.tcp://b:2",
                                        settingXml("Basic256", {"Sign"}) +
                                            settingXml("Basic256", {"SignAndEncrypt"})) +
                            endpointXml("opc.tcp://a:1"));
        const QList<EndpointRecord> endpoints = readEndpoints(config.element());
        writeEndpoints(config.element(), endpoints);
        const QByteArray once = config.content();
        QCOMPARE(readEndpoints(config.element()), endpoints);
        QVERIFY(once.contains(settingXml("Basic256", {"Sign", "SignAndEncrypt"})));
        writeEndpoints(config.element(), endpoints);
        QCOMPARE(config.content(), once);
    }

    void write_returns_what_reading_gives_data()
    {
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<EndpointRecord>("endpoint");
        const QByteArray usual = endpointXml("old", "old2");
        const auto row = [](const char* name, const QByteArray& pattern,
                            const EndpointRecord& endpoint) {
            QTest::newRow(name) << pattern << endpoint;
        };
        row("usual", usual, {0, urlA, urlB, {{u"p"_s, 6}, {u"q"_s, 0}}});
        row("URL without a text", "<UaEndpoint><Url/></UaEndpoint>", plain(urlA, urlB));
        row("URL with two texts", "<UaEndpoint><Url>a<!--c-->b</Url></UaEndpoint>",
            plain(urlA, urlB));
        row("URL in CDATA", "<UaEndpoint><Url><![CDATA[a]]></Url></UaEndpoint>", plain(urlA, urlB));
        row("no URL", "<UaEndpoint/>", plain(urlA, urlB));
        row("stack URL without a text", "<UaEndpoint><Url>a</Url><StackUrl/></UaEndpoint>",
            plain(urlA, urlB));
        row("wrong protocol", usual, {1, urlA, urlB, {}});
        row("empty stack URL", usual, {0, urlA, QString(), {}});
        row("policy twice", usual, {0, urlA, urlB, {{u"p"_s, 2}, {u"q"_s, 1}, {u"p"_s, 4}}});
        row("modes that have no name", usual, {0, urlA, urlB, {{u"p"_s, 0xfff2}}});
        row("hundred policies", usual, {0, urlA, urlB, QList<SecurityRecord>(100, {u"p"_s, 2})});
    }

    void write_returns_what_reading_gives()
    {
        QFETCH(const QByteArray, pattern);
        QFETCH(const EndpointRecord, endpoint);
        const Config config(pattern);
        const QList<EndpointRecord> result =
            writeEndpoints(config.element(), {plain(urlA, urlB), endpoint});
        QCOMPARE(result.size(), 2);
        QCOMPARE(result, readEndpoints(config.element()));
    }

    // User logon

    void user_logon_reads_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<bool>("anonymous");
        QTest::addColumn<bool>("userPassword");
        const auto row = [](const char* name, const QByteArray& xml, bool anonymous,
                            bool userPassword) {
            QTest::newRow(name) << xml << anonymous << userPassword;
        };
        row("both", "<EnableAnonymous>true</EnableAnonymous><EnableUserPw>true</EnableUserPw>",
            true, true);
        row("neither", "<EnableAnonymous>false</EnableAnonymous><EnableUserPw>false</EnableUserPw>",
            false, false);
        row("any case", "<EnableAnonymous>TRUE</EnableAnonymous><EnableUserPw>True</EnableUserPw>",
            true, true);
        row("other words", "<EnableAnonymous>1</EnableAnonymous><EnableUserPw>yes</EnableUserPw>",
            false, false);
        row("blanks count",
            "<EnableAnonymous> true</EnableAnonymous><EnableUserPw>true </EnableUserPw>", false,
            false);
        row("missing", "", false, false);
        row("one missing", "<EnableUserPw>true</EnableUserPw>", false, true);
        row("CDATA", "<EnableAnonymous><![CDATA[true]]></EnableAnonymous>", true, false);
        row("first counts",
            "<EnableAnonymous>false</EnableAnonymous><EnableAnonymous>true</EnableAnonymous>",
            false, false);
    }

    void user_logon_reads()
    {
        QFETCH(const QByteArray, xml);
        QFETCH(const bool, anonymous);
        QFETCH(const bool, userPassword);
        const Config config("<UserIdentityTokens>" + xml + "</UserIdentityTokens>");
        const std::optional<UserLogon> logon = readUserLogon(config.element());
        QVERIFY(logon);
        QCOMPARE(logon->isAnonymousAllowed, anonymous);
        QCOMPARE(logon->isUserPasswordAllowed, userPassword);
    }

    void user_logon_without_its_element_is_none()
    {
        QVERIFY(!readUserLogon(Config("<EnableAnonymous>true</EnableAnonymous>").element()));
    }

    void user_logon_is_written_where_there_is_a_text_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* name, const QByteArray& xml, const QByteArray& expected) {
            QTest::newRow(name) << xml << expected;
        };
        row("both",
            "<UserIdentityTokens><EnableAnonymous>x</EnableAnonymous><EnableUserPw>y"
            "</EnableUserPw></UserIdentityTokens>",
            "<UserIdentityTokens><EnableAnonymous>true</EnableAnonymous><EnableUserPw>false"
            "</EnableUserPw></UserIdentityTokens>");
        row("without a text they take nothing",
            "<UserIdentityTokens><EnableAnonymous/><EnableUserPw>y</EnableUserPw>"
            "</UserIdentityTokens>",
            "<UserIdentityTokens><EnableAnonymous/><EnableUserPw>false</EnableUserPw>"
            "</UserIdentityTokens>");
        row("missing elements aren't made", "<UserIdentityTokens/>", "<UserIdentityTokens/>");
        row("missing tokens aren't made", "<A/>", "<A/>");
    }

    void user_logon_is_written_where_there_is_a_text()
    {
        QFETCH(const QByteArray, xml);
        QFETCH(const QByteArray, expected);
        const Config config(xml);
        writeUserLogon(config.element(), {true, false});
        QCOMPARE(config.content(), expected);
    }
};

ZANDREL_TEST_MAIN(EndpointConfigTest)

#include "endpointconfig_test.moc"
