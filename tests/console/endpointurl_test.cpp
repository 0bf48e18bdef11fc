#include "console/endpointrecord.h"
#include "console/endpointurl.h"
#include "tests/support/testmain.h"

using namespace Qt::StringLiterals;

class EndpointUrlTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void url_without_host_and_port_has_no_parts_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("empty") << QString();
        QTest::newRow("no port") << u"opc.tcp://host"_s;
        QTest::newRow("no host") << u"opc.tcp://:4840"_s;
        QTest::newRow("no digit behind the colon") << u"opc.tcp://host:port"_s;
        QTest::newRow("other scheme") << u"http://host:4840"_s;
        QTest::newRow("blank before the scheme") << u" opc.tcp://host:4840"_s;
        QTest::newRow("line break before the scheme") << u"\nopc.tcp://host:4840"_s;
        QTest::newRow("one slash") << u"opc.tcp:/host:4840"_s;
        QTest::newRow("digits of another script") << u"opc.tcp://host:\u0664\u0668"_s;
    }

    void url_without_host_and_port_has_no_parts()
    {
        QFETCH(const QString, url);
        QVERIFY(!parseEndpointUrl(url));
    }

    void url_is_taken_apart_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<int>("protocol");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        const auto row = [](const char* name, const QString& url, int protocol, const QString& host,
                            int port) { QTest::newRow(name) << url << protocol << host << port; };
        row("tcp", u"opc.tcp://host:4840"_s, 0, u"host"_s, 4840);
        row("https", u"https://host:443"_s, 1, u"host"_s, 443);
        row("case of tcp", u"OPC.TCP://Host:1"_s, 0, u"Host"_s, 1);
        row("case of https", u"HTTPS://Host:1"_s, 1, u"Host"_s, 1);
        row("any character between opc and tcp", u"opcxtcp://host:1"_s, 0, u"host"_s, 1);
        row("placeholder", u"opc.tcp://[NodeName]:4840"_s, 0, u"[NodeName]"_s, 4840);
        row("IPv6", u"opc.tcp://[fe80::1%eth0]:4840"_s, 0, u"[fe80::1%eth0]"_s, 4840);
        row("IPv6 without brackets", u"opc.tcp://fe80::1:4840"_s, 0, u"fe80::1"_s, 4840);
        row("last colon with a digit counts", u"opc.tcp://a:1/b:2:x"_s, 0, u"a:1/b"_s, 2);
        row("path behind the port", u"opc.tcp://host:4840/path"_s, 0, u"host"_s, 4840);
        row("port 0", u"opc.tcp://host:0"_s, 0, u"host"_s, 0);
        row("leading zeros", u"opc.tcp://host:004840"_s, 0, u"host"_s, 4840);
        row("beyond 16 bits", u"opc.tcp://host:70000"_s, 0, u"host"_s, 70000);
        row("largest int", u"opc.tcp://host:2147483647"_s, 0, u"host"_s, 2147483647);
        row("beyond an int", u"opc.tcp://host:2147483648"_s, 0, u"host"_s, 0);
        row("far beyond an int", u"opc.tcp://host:99999999999999999999"_s, 0, u"host"_s, 0);
        row("non-Latin host", u"opc.tcp://\u30b5\u30fc\u30d0\u30fc:1"_s, 0,
            u"\u30b5\u30fc\u30d0\u30fc"_s, 1);
        row("line break in the host", u"opc.tcp://a\nb:1"_s, 0, u"a\nb"_s, 1);
    }

    void url_is_taken_apart()
    {
        QFETCH(const QString, url);
        QFETCH(const int, protocol);
        QFETCH(const QString, host);
        QFETCH(const int, port);
        const auto parts = parseEndpointUrl(url);
        QVERIFY(parts);
        QCOMPARE(parts->protocol, protocol);
        QCOMPARE(parts->host, host);
        QCOMPARE(parts->port, port);
    }

    void long_urls_are_taken_apart_in_linear_time()
    {
        const QString colons = u"opc.tcp://"_s + QString(1000000, u':');
        const QString digits = u"opc.tcp://"_s + QString(1000000, u'1') + u'x';
        QVERIFY(!parseEndpointUrl(colons));
        QCOMPARE(parseEndpointUrl(colons + u"5"_s)->port, 5);
        QVERIFY(!parseEndpointUrl(digits));
        QCOMPARE(withEndpointPort(digits, 5), digits);
    }

    void url_is_put_together_data()
    {
        QTest::addColumn<int>("protocol");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("expected");
        QTest::newRow("tcp") << 0 << u"host"_s << u"opc.tcp://host:4840"_s;
        QTest::newRow("https") << 1 << u"host"_s << u"https://host:4840"_s;
        QTest::newRow("any other protocol is https") << -1 << u"host"_s << u"https://host:4840"_s;
        QTest::newRow("empty host") << 0 << QString() << u"opc.tcp://:4840"_s;
        QTest::newRow("host like a place holder")
            << 0 << u"[fe80::1%3]%1"_s << u"opc.tcp://[fe80::1%3]%1:4840"_s;
    }

    void url_is_put_together()
    {
        QFETCH(const int, protocol);
        QFETCH(const QString, host);
        QFETCH(const QString, expected);
        QCOMPARE(makeEndpointUrl(protocol, host, 4840), expected);
    }

    void port_replaces_the_last_digits_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("expected");
        QTest::newRow("port") << u"opc.tcp://h1:4840"_s << u"opc.tcp://h1:51"_s;
        QTest::newRow("no port, host ends in a digit")
            << u"opc.tcp://host1"_s << u"opc.tcp://host51"_s;
        QTest::newRow("path") << u"opc.tcp://h:4840/a"_s << u"opc.tcp://h:4840/a"_s;
        QTest::newRow("path that ends in a digit")
            << u"opc.tcp://h:4840/a7"_s << u"opc.tcp://h:4840/a51"_s;
        QTest::newRow("line break at the end") << u"opc.tcp://h:1\n"_s << u"opc.tcp://h:1\n"_s;
        QTest::newRow("only digits") << u"123"_s << u"51"_s;
        QTest::newRow("digits of another script") << u"a:\u0664\u0668"_s << u"a:\u0664\u0668"_s;
        QTest::newRow("empty") << QString() << QString();
    }

    void port_replaces_the_last_digits()
    {
        QFETCH(const QString, url);
        QFETCH(const QString, expected);
        QCOMPARE(withEndpointPort(url, 51), expected);
    }

    void protocol_follows_either_url_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("stackUrl");
        QTest::addColumn<int>("expected");
        const auto row = [](const char* name, const QString& url, const QString& stackUrl,
                            int expected) { QTest::newRow(name) << url << stackUrl << expected; };
        row("tcp", u"opc.tcp://h:1"_s, QString(), EndpointProtocolTcp);
        row("https", u"https://h:1"_s, QString(), EndpointProtocolHttps);
        row("https in the stack URL alone", u"x"_s, u"https://h:1"_s, EndpointProtocolHttps);
        row("tcp in the stack URL wins", u"https://h:1"_s, u"opc.tcp://h:1"_s, EndpointProtocolTcp);
        row("tcp in the URL wins", u"opc.tcp://h:1"_s, u"https://h:1"_s, EndpointProtocolTcp);
        row("neither", u"http://h:1"_s, u"ftp://h:1"_s, EndpointProtocolTcp);
        row("empty", QString(), QString(), EndpointProtocolTcp);
        row("the case counts", u"HTTPS://h:1"_s, u"Https://h:1"_s, EndpointProtocolTcp);
        row("tcp in another case isn't tcp", u"OPC.TCP://h:1"_s, u"https://h:1"_s,
            EndpointProtocolHttps);
        row("the scheme alone", u"https"_s, QString(), EndpointProtocolTcp);
        row("not at the start", u" https://h:1"_s, QString(), EndpointProtocolTcp);
    }

    void protocol_follows_either_url()
    {
        QFETCH(const QString, url);
        QFETCH(const QString, stackUrl);
        QFETCH(const int, expected);
        QCOMPARE(endpointProtocol(url, stackUrl), expected);
    }
};

ZANDREL_TEST_MAIN(EndpointUrlTest)

#include "endpointurl_test.moc"
