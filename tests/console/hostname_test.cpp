#include "console/hostname.h"
#include "tests/support/configsample.h"

#include <QDomDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QDomDocument parsed(const QByteArray& text)
{
    QDomDocument document;
    if (!document.setContent(text)) {
        qFatal("not well-formed: %s", text.constData());
    }
    return document;
}

QByteArray lineOf(const QDomDocument& document)
{
    return document.toByteArray(-1);
}

QByteArray expanded(const QByteArray& text)
{
    const QDomDocument document = parsed(text);
    expandHostName(document, u"alpha"_s);
    return lineOf(document);
}

QByteArray tools(const QByteArray& content)
{
    return "<r><ConfigTools><ZandrelDialog>" + content + "</ZandrelDialog></ConfigTools></r>";
}

} // namespace

class HostNameTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void placeholder_in_urls_becomes_the_host_name_data();
    static void placeholder_in_urls_becomes_the_host_name();
    static void group_host_takes_the_host_name_data();
    static void group_host_takes_the_host_name();
    static void empty_document_stays_empty();
    static void remembered_name_is_compared_and_replaced_data();
    static void remembered_name_is_compared_and_replaced();
    static void second_check_finds_no_change();
};

void HostNameTest::placeholder_in_urls_becomes_the_host_name_data()
{
    QTest::addColumn<QByteArray>("endpoints");
    QTest::addColumn<QByteArray>("expected");

    const auto url = [](const QByteArray& text) {
        return "<UaEndpoint><Url>" + text + "</Url></UaEndpoint>";
    };
    const auto row = [](const char* name, const QByteArray& before, const QByteArray& after) {
        QTest::newRow(name) << before << after;
    };
    row("URL", url("opc.tcp://[NodeName]:4840"), url("opc.tcp://alpha:4840"));
    row("every occurrence", url("[NodeName]x[NodeName]"), url("alphaxalpha"));
    row("other case", url("opc.tcp://[nodename]:4840"), url("opc.tcp://[nodename]:4840"));
    row("no placeholder", url("opc.tcp://beta:4840"), url("opc.tcp://beta:4840"));
    row("every endpoint", url("a[NodeName]") + "<Other/>" + url("b[NodeName]"),
        url("aalpha") + "<Other/>" + url("balpha"));
    row("stack URL", "<UaEndpoint><Url>x</Url><StackUrl>[NodeName]</StackUrl></UaEndpoint>",
        "<UaEndpoint><Url>x</Url><StackUrl>alpha</StackUrl></UaEndpoint>");
    row("stack URL without a URL", "<UaEndpoint><StackUrl>[NodeName]</StackUrl></UaEndpoint>",
        "<UaEndpoint><StackUrl>alpha</StackUrl></UaEndpoint>");
    row("first of two URLs", "<UaEndpoint><Url>[NodeName]</Url><Url>[NodeName]</Url></UaEndpoint>",
        "<UaEndpoint><Url>alpha</Url><Url>[NodeName]</Url></UaEndpoint>");
    row("URL without text", "<UaEndpoint><Url/></UaEndpoint>", "<UaEndpoint><Url/></UaEndpoint>");
    row("other elements", "<UaEndpoint><Note>[NodeName]</Note></UaEndpoint>",
        "<UaEndpoint><Note>[NodeName]</Note></UaEndpoint>");
    row("server name", "<ServerName>[NodeName]</ServerName>",
        "<ServerName>[NodeName]</ServerName>");
    row("CDATA", url("<![CDATA[[NodeName]&]]>"), url("<![CDATA[alpha&]]>"));
    // The whole text goes into the first child, whatever that is, and what follows stays.
    row("comment inside", url("a<!--c-->[NodeName]"), url("aalpha<!--c-->[NodeName]"));
    row("comment first", url("<!--c-->[NodeName]"), url("<!--alpha-->[NodeName]"));
}

void HostNameTest::placeholder_in_urls_becomes_the_host_name()
{
    QFETCH(const QByteArray, endpoints);
    QFETCH(const QByteArray, expected);
    QCOMPARE(expanded(serverConfig(endpoints)), serverConfig(expected));
}

void HostNameTest::group_host_takes_the_host_name_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    const auto group = [](const QByteArray& content) {
        return "<r><Objects><UaConfig><UserAuthorization><Configuration>" + content +
               "</Configuration></UserAuthorization></UaConfig></Objects></r>";
    };
    QTest::newRow("placeholder") << group("<GroupHost>[NodeName]</GroupHost>")
                                 << group("<GroupHost>alpha</GroupHost>");
    QTest::newRow("whatever it held")
        << group("<GroupHost>other</GroupHost>") << group("<GroupHost>alpha</GroupHost>");
    QTest::newRow("no text") << group("<GroupHost/>") << group("<GroupHost/>");
    QTest::newRow("first of two") << group("<GroupHost>x</GroupHost><GroupHost>x</GroupHost>")
                                  << group("<GroupHost>alpha</GroupHost><GroupHost>x</GroupHost>");
    for (const char* name : {"Objects", "UaConfig", "UserAuthorization", "Configuration"}) {
        QByteArray other = group("<GroupHost>x</GroupHost>");
        other.replace(QByteArray("<") + name + ">", "<Other>");
        other.replace(QByteArray("</") + name + ">", "</Other>");
        QTest::addRow("no %s", name) << other << other;
    }
}

void HostNameTest::group_host_takes_the_host_name()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, expected);
    QCOMPARE(expanded(text), expected);
}

void HostNameTest::empty_document_stays_empty()
{
    const QDomDocument document;
    expandHostName(document, u"alpha"_s);
    QVERIFY(document.documentElement().isNull());
    QCOMPARE(expanded("<r/>"), "<r/>");
}

void HostNameTest::remembered_name_is_compared_and_replaced_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isChanged");
    QTest::addColumn<bool>("isStored");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray alpha = "<Hostname>alpha</Hostname>";
    QTest::newRow("same name") << tools(alpha) << false << false << tools(alpha);
    QTest::newRow("other name") << tools("<Hostname>beta</Hostname>") << true << true
                                << tools(alpha);
    QTest::newRow("other case") << tools("<Hostname>Alpha</Hostname>") << true << true
                                << tools(alpha);
    QTest::newRow("name with a space")
        << tools("<Hostname>alpha </Hostname>") << true << true << tools(alpha);
    QTest::newRow("without a text") << tools("<Hostname/>") << true << true << tools(alpha);
    QTest::newRow("no Hostname") << tools("<Geometry>x</Geometry>") << false << true
                                 << tools("<Geometry>x</Geometry>" + alpha);
    QTest::newRow("no ZandrelDialog")
        << QByteArray("<r><ConfigTools><Other/></ConfigTools></r>") << false << true
        << "<r><ConfigTools><Other/><ZandrelDialog>" + alpha + "</ZandrelDialog></ConfigTools></r>";
    QTest::newRow("no ConfigTools")
        << QByteArray("<r><Other/></r>") << false << true
        << "<r><Other/><ConfigTools><ZandrelDialog>" + alpha + "</ZandrelDialog></ConfigTools></r>";
    QTest::newRow("first of two names")
        << tools("<Hostname>beta</Hostname><Hostname>gamma</Hostname>") << true << true
        << tools(alpha + "<Hostname>gamma</Hostname>");
}

void HostNameTest::remembered_name_is_compared_and_replaced()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, isChanged);
    QFETCH(const bool, isStored);
    QFETCH(const QByteArray, expected);

    QDomDocument document = parsed(text);
    const HostNameCheck check = checkHostName(document, u"alpha"_s);
    QCOMPARE(check.isChanged, isChanged);
    QCOMPARE(check.isStored, isStored);
    QCOMPARE(lineOf(document), expected);
}

void HostNameTest::second_check_finds_no_change()
{
    for (const QByteArray& text :
         {QByteArray("<r/>"), tools("<Hostname>beta</Hostname>"), tools("<Hostname/>")}) {
        QDomDocument document = parsed(text);
        QVERIFY(checkHostName(document, u"alpha"_s).isStored);
        const HostNameCheck second = checkHostName(document, u"alpha"_s);
        QVERIFY(!second.isChanged);
        QVERIFY(!second.isStored);
    }
}

QTEST_GUILESS_MAIN(HostNameTest)
#include "hostname_test.moc"
