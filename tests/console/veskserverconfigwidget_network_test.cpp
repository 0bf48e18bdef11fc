#include "tests/console/endpointstab.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QComboBox>
#include <QHostInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

// The current endpoint's URLs in the controls, and the controls in the URLs.

namespace {

constexpr int all = 0;
constexpr int eth0 = 1;
constexpr int wlan0 = 2;
constexpr int localOnly = 3;

/// A first endpoint on all adapters, then this one.
QByteArray behindAnother(const QByteArray& url, const QByteArray& stackUrl = {})
{
    return serverConfig(endpointXml("opc.tcp://first:4850", localUrl(4850).toUtf8()) +
                        endpointXml(url, stackUrl));
}

QByteArray single(const QByteArray& url, const QByteArray& stackUrl = {})
{
    return serverConfig(endpointXml(url, stackUrl));
}

QString hostName()
{
    return QHostInfo::localHostName();
}

} // namespace

class VeskServerConfigWidgetNetworkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Showing an endpoint

    void controls_show_the_url_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<int>("protocol");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("label");
        const auto row = [](const char* name, const QByteArray& url, int protocol,
                            const QString& host, int port, const QString& label) {
            QTest::newRow(name) << url << protocol << host << port << label;
        };
        row("tcp", "opc.tcp://host:4851", 0, u"host"_s, 4851, u"opc.tcp://host:4851"_s);
        row("https", "https://host:443", 1, u"host"_s, 443, u"https://host:443"_s);
        row("case of the scheme", "HTTPS://Host:443", 1, u"Host"_s, 443, u"https://Host:443"_s);
        row("IPv6", "opc.tcp://[::1]:4851", 0, u"[::1]"_s, 4851, u"opc.tcp://[::1]:4851"_s);
        row("non-Latin", "opc.tcp://\xC3\xA9t\xC3\xA9:1", 0, u"\u00e9t\u00e9"_s, 1,
            u"opc.tcp://\u00e9t\u00e9:1"_s);
        row("largest port", "opc.tcp://host:65535", 0, u"host"_s, 65535, u"opc.tcp://host:65535"_s);
        row("port beyond the range", "opc.tcp://host:70000", 0, u"host"_s, 65535,
            u"opc.tcp://host:65535"_s);
        row("port beyond an int", "opc.tcp://host:99999999999", 0, u"host"_s, 0,
            u"opc.tcp://host:0"_s);
        row("path behind the port", "opc.tcp://host:4851/x", 0, u"host"_s, 4851,
            u"opc.tcp://host:4851"_s);
        row("no match leaves the controls of the row before", "opc.tcp://host", 0, u"first"_s, 4850,
            u"opc.tcp://first:4850"_s);
        row("other scheme leaves them too", "http://host:1", 0, u"first"_s, 4850,
            u"opc.tcp://first:4850"_s);
        row("empty leaves them too", "", 0, u"first"_s, 4850, u"opc.tcp://first:4850"_s);
    }

    void controls_show_the_url()
    {
        QFETCH(const QByteArray, url);
        QFETCH(const int, protocol);
        QFETCH(const QString, host);
        QFETCH(const int, port);
        QFETCH(const QString, label);
        const EndpointsTab tab(behindAnother(url));
        tab.selectRow(1);
        QCOMPARE(tab.protocol().currentIndex(), protocol);
        QCOMPARE(tab.networkName().text(), host);
        QCOMPARE(tab.port().value(), port);
        QCOMPARE(tab.url().text(), label);
        QCOMPARE(tab.column(2).at(1), QString::fromUtf8(url));
        QVERIFY(tab.isClean());
    }

    void protocol_of_the_stack_url_wins_in_the_controls()
    {
        const EndpointsTab tab(single("opc.tcp://host:1", localUrl(1, "https").toUtf8()));
        QCOMPARE(tab.protocol().currentIndex(), 1);
        QCOMPARE(tab.url().text(), u"https://host:1"_s);
    }

    void stack_url_selects_the_adapter_data()
    {
        QTest::addColumn<QByteArray>("stackUrl");
        QTest::addColumn<int>("adapter");
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("isDirty");
        QTest::addColumn<QString>("stored");
        const auto row = [](const char* name, const QByteArray& stackUrl, int adapter,
                            const QString& address, bool isDirty, const QString& stored) {
            QTest::newRow(name) << stackUrl << adapter << address << isDirty << stored;
        };
        const QString host = hostName();
        row("own host name, the adapter of the row before", localUrl(7).toUtf8(), all, host, false,
            localUrl(7));
        row("local only", "opc.tcp://127.0.0.1:7", localOnly, u"127.0.0.1"_s, true,
            u"opc.tcp://127.0.0.1:7"_s);
        row("IPv4", "opc.tcp://192.168.7.5:7", eth0, u"192.168.7.5"_s, true,
            u"opc.tcp://192.168.7.5:7"_s);
        row("second address of an adapter", "opc.tcp://10.0.0.7:7", wlan0, u"10.0.0.7"_s, true,
            u"opc.tcp://10.0.0.7:7"_s);
        row("IPv6 in brackets", "opc.tcp://[fe80::1]:7", eth0, u"fe80::1"_s, true,
            u"opc.tcp://[fe80::1]:7"_s);
        row("IPv6 without brackets", "opc.tcp://fe80::1:7", eth0, u"fe80::1"_s, true,
            u"opc.tcp://[fe80::1]:7"_s);
        row("IPv6 with its scope", "opc.tcp://[fe80::2%wlan0]:7", wlan0, u"fe80::2%wlan0"_s, true,
            u"opc.tcp://[fe80::2%wlan0]:7"_s);
        row("IPv6 without its scope", "opc.tcp://[fe80::2]:7", wlan0, u"fe80::2%wlan0"_s, true,
            u"opc.tcp://[fe80::2%wlan0]:7"_s);
        row("another scope is another address", "opc.tcp://[fe80::2%eth0]:7", all, host, false,
            u"opc.tcp://[fe80::2%eth0]:7"_s);
        row("address of the loopback adapter, which isn't offered", "opc.tcp://[::1]:7", all, host,
            false, u"opc.tcp://[::1]:7"_s);
        row("unknown host", "opc.tcp://elsewhere:7", all, host, false, u"opc.tcp://elsewhere:7"_s);
        row("unknown address", "opc.tcp://192.168.7.6:7", all, host, false,
            u"opc.tcp://192.168.7.6:7"_s);
        row("no match", "opc.tcp://192.168.7.5", all, host, false, u"opc.tcp://192.168.7.5"_s);
    }

    void stack_url_selects_the_adapter()
    {
        QFETCH(const QByteArray, stackUrl);
        QFETCH(const int, adapter);
        QFETCH(const QString, address);
        QFETCH(const bool, isDirty);
        QFETCH(const QString, stored);
        const EndpointsTab tab(behindAnother("opc.tcp://host:7", stackUrl));
        QVERIFY(tab.isClean());
        tab.selectRow(1);
        QCOMPARE(tab.adapter().currentIndex(), adapter);
        QCOMPARE(tab.ip().currentText(), address);
        QCOMPARE(tab.isDirty(), isDirty);
        QCOMPARE(tab.isClean(), !isDirty);
        QCOMPARE(tab.record(1).stackUrl, stored);
        QCOMPARE(tab.record(1).url, u"opc.tcp://host:7"_s);
        QCOMPARE(tab.record(0).stackUrl, localUrl(4850));
    }

    void moving_within_one_adapter_leaves_the_tab_clean()
    {
        const EndpointsTab tab(serverConfig(endpointXml("opc.tcp://a:1", "opc.tcp://127.0.0.1:1") +
                                            endpointXml("opc.tcp://b:2", "opc.tcp://127.0.0.1:2")));
        QCOMPARE(tab.adapter().currentIndex(), localOnly);
        tab.selectRow(1);
        QCOMPARE(tab.networkName().text(), u"b"_s);
        QVERIFY(tab.isClean());
    }

    void moving_to_another_address_of_one_adapter_marks_the_tab()
    {
        const EndpointsTab tab(
            serverConfig(endpointXml("opc.tcp://a:1", "opc.tcp://192.168.7.5:1") +
                         endpointXml("opc.tcp://b:2", "opc.tcp://192.168.7.5:2")));
        QVERIFY(tab.isClean());
        tab.selectRow(1);
        QVERIFY(tab.isDirty());
    }

    void moving_to_another_adapter_stores_the_stack_url_with_the_urls_port()
    {
        const EndpointsTab tab(behindAnother("opc.tcp://host:7", "opc.tcp://127.0.0.1:9"));
        tab.selectRow(1);
        QCOMPARE(tab.record(1).stackUrl, u"opc.tcp://127.0.0.1:7"_s);
        QVERIFY(tab.isDirty());
    }

    void load_shows_an_endpoint_on_another_adapter_and_stays_clean()
    {
        const EndpointsTab tab(single("opc.tcp://host:7", "opc.tcp://192.168.7.5:7"));
        QCOMPARE(tab.adapter().currentIndex(), eth0);
        QVERIFY(tab.isClean());
    }

    void port_4840_of_the_selected_row_shows_in_orangered()
    {
        const EndpointsTab tab(behindAnother("opc.tcp://host:4840"));
        const auto colour = [&tab] { return tab.port().palette().color(QPalette::Text); };
        QCOMPARE(colour(), QApplication::palette().color(QPalette::Text));
        tab.selectRow(1);
        QCOMPARE(colour(), QColor(u"orangered"_s));
        tab.selectRow(0);
        QCOMPARE(colour(), QApplication::palette().color(QPalette::Text));
    }

    // Protocol

    void protocol_changes_both_urls_data()
    {
        QTest::addColumn<QByteArray>("stackUrl");
        QTest::addColumn<QString>("stored");
        // The stack URL takes the IP item at the protocol's own index, which is 1.
        QTest::newRow("adapter with two addresses")
            << QByteArray("opc.tcp://192.168.7.5:7") << u"https://[fe80::1]:7"_s;
        QTest::newRow("one address, so there is no item at 1")
            << localUrl(7).toUtf8() << u"https://:7"_s;
    }

    void protocol_changes_both_urls()
    {
        QFETCH(const QByteArray, stackUrl);
        QFETCH(const QString, stored);
        const EndpointsTab tab(single("opc.tcp://host:7", stackUrl));
        EndpointsTab::choose(tab.protocol(), 1);
        QCOMPARE(tab.record(0).protocol, 1);
        QCOMPARE(tab.record(0).url, u"https://host:7"_s);
        QCOMPARE(tab.record(0).stackUrl, stored);
        QCOMPARE(tab.url().text(), u"https://host:7"_s);
        QCOMPARE(tab.column(1), QStringList(u"UA HTTPS"_s));
        QVERIFY(tab.isDirty());
    }

    void protocol_back_to_tcp_takes_the_first_ip_item()
    {
        const EndpointsTab tab(single("https://host:7", "https://192.168.7.5:7"));
        EndpointsTab::choose(tab.protocol(), 0);
        QCOMPARE(tab.record(0).protocol, 0);
        QCOMPARE(tab.record(0).url, u"opc.tcp://host:7"_s);
        QCOMPARE(tab.record(0).stackUrl, u"opc.tcp://192.168.7.5:7"_s);
    }

    // Host name

    void host_is_stored_while_it_is_typed()
    {
        const EndpointsTab tab(single("opc.tcp://host:7", "opc.tcp://127.0.0.1:7"));
        tab.typeHost(u"s\u00e9rveur"_s);
        QCOMPARE(tab.record(0).url, u"opc.tcp://s\u00e9rveur:7"_s);
        QCOMPARE(tab.record(0).stackUrl, u"opc.tcp://127.0.0.1:7"_s);
        QCOMPARE(tab.url().text(), u"opc.tcp://s\u00e9rveur:7"_s);
        QCOMPARE(tab.column(2), QStringList(u"opc.tcp://s\u00e9rveur:7"_s));
        QVERIFY(tab.isDirty());
    }

    void host_may_be_anything_data()
    {
        QTest::addColumn<QString>("host");
        QTest::newRow("empty") << QString();
        QTest::newRow("like a place holder") << u"a%1b%3"_s;
        QTest::newRow("markup") << u"<b>&amp;\""_s;
        QTest::newRow("blanks") << u"a b"_s;
    }

    void host_may_be_anything()
    {
        QFETCH(const QString, host);
        const EndpointsTab tab(single("opc.tcp://host:7"));
        tab.typeHost(host);
        const QString url = u"opc.tcp://"_s + host + u":7"_s;
        QCOMPARE(tab.record(0).url, url);
        QCOMPARE(tab.url().text(), url);
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isClean());
        QCOMPARE(tab.record(0).url, url);
    }

    void host_of_an_https_endpoint_keeps_its_scheme()
    {
        const EndpointsTab tab(single("https://host:7"));
        tab.typeHost(u"x"_s);
        QCOMPARE(tab.record(0).url, u"https://x:7"_s);
    }

    // Adapter and address

    void adapter_offers_its_addresses_data()
    {
        QTest::addColumn<int>("adapter");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QStringList>("data");
        QTest::addColumn<QString>("stored");
        const QString host = hostName();
        QTest::newRow("all") << all << QStringList(host) << QStringList(host) << localUrl(7);
        QTest::newRow("local only") << localOnly << QStringList(u"127.0.0.1"_s)
                                    << QStringList(u"127.0.0.1"_s) << u"opc.tcp://127.0.0.1:7"_s;
        QTest::newRow("eth0") << eth0 << QStringList{u"192.168.7.5"_s, u"fe80::1"_s}
                              << QStringList{u"192.168.7.5"_s, u"[fe80::1]"_s}
                              << u"opc.tcp://192.168.7.5:7"_s;
        QTest::newRow("wlan0") << wlan0 << QStringList{u"fe80::2%wlan0"_s, u"10.0.0.7"_s}
                               << QStringList{u"[fe80::2%wlan0]"_s, u"10.0.0.7"_s}
                               << u"opc.tcp://[fe80::2%wlan0]:7"_s;
    }

    void adapter_offers_its_addresses()
    {
        QFETCH(const int, adapter);
        QFETCH(const QStringList, texts);
        QFETCH(const QStringList, data);
        QFETCH(const QString, stored);
        const bool isFirst = adapter == all;
        const EndpointsTab tab(
            single("opc.tcp://host:7", isFirst ? "opc.tcp://127.0.0.1:7" : localUrl(7).toUtf8()));
        EndpointsTab::choose(tab.adapter(), adapter);
        QCOMPARE(EndpointsTab::items(tab.ip()), texts);
        QCOMPARE(EndpointsTab::itemData(tab.ip()), data);
        QCOMPARE(tab.ip().currentIndex(), 0);
        QCOMPARE(tab.record(0).stackUrl, stored);
        QCOMPARE(tab.record(0).url, u"opc.tcp://host:7"_s);
        QVERIFY(tab.isDirty());
    }

    void addresses_of_other_protocols_and_of_adapters_that_went_are_not_offered()
    {
        bool isGone = false;
        const auto adapters = [&isGone]() -> QList<NetworkAdapter> {
            if (isGone) {
                return {};
            }
            return {{u"odd0"_s, false, {QHostAddress(), QHostAddress(u"10.1.1.1"_s)}}};
        };
        const EndpointsTab tab(single("opc.tcp://host:7", localUrl(7).toUtf8()), FirewallModeNone,
                               nullptr, adapters);
        EndpointsTab::choose(tab.adapter(), u"odd0"_s);
        QCOMPARE(EndpointsTab::items(tab.ip()), QStringList(u"10.1.1.1"_s));

        EndpointsTab::choose(tab.adapter(), u"All"_s);
        isGone = true;
        EndpointsTab::choose(tab.adapter(), u"odd0"_s);
        QCOMPARE(tab.ip().count(), 0);
        QCOMPARE(tab.record(0).stackUrl, u"opc.tcp://:7"_s);
    }

    void adapters_of_one_name_offer_the_addresses_of_all()
    {
        const EndpointsTab tab(single("opc.tcp://host:7"), FirewallModeNone, nullptr,
                               []() -> QList<NetworkAdapter> {
                                   return {{u"LAN"_s, false, {QHostAddress(u"10.1.1.1"_s)}},
                                           {u"LAN"_s, false, {QHostAddress(u"10.1.1.2"_s)}}};
                               });
        EndpointsTab::choose(tab.adapter(), 2);
        QCOMPARE(EndpointsTab::items(tab.ip()), (QStringList{u"10.1.1.1"_s, u"10.1.1.2"_s}));
    }

    void blocked_adapter_change_leaves_the_stack_url()
    {
        const EndpointsTab tab(single("opc.tcp://host:7", localUrl(7).toUtf8()));
        tab.widget->sltNetworkAdapterChanged(eth0, true);
        QCOMPARE(tab.ip().count(), 2);
        QCOMPARE(tab.record(0).stackUrl, localUrl(7));
        QVERIFY(tab.isClean());
        tab.widget->sltNetworkAdapterChanged(eth0, false);
        QCOMPARE(tab.record(0).stackUrl, u"opc.tcp://192.168.7.5:7"_s);
        QVERIFY(tab.isDirty());
    }

    void address_is_stored_in_the_stack_url_alone()
    {
        const EndpointsTab tab(single("https://host:7", "https://192.168.7.5:7"));
        EndpointsTab::choose(tab.ip(), 1);
        QCOMPARE(tab.record(0).stackUrl, u"https://[fe80::1]:7"_s);
        QCOMPARE(tab.record(0).url, u"https://host:7"_s);
        QVERIFY(tab.isDirty());
    }

    // Port

    void port_replaces_the_last_digits_of_both_urls_data()
    {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QByteArray>("stackUrl");
        QTest::addColumn<QString>("storedUrl");
        QTest::addColumn<QString>("storedStackUrl");
        const auto row = [](const char* name, const QByteArray& url, const QByteArray& stackUrl,
                            const QString& storedUrl, const QString& storedStackUrl) {
            QTest::newRow(name) << url << stackUrl << storedUrl << storedStackUrl;
        };
        row("both", "opc.tcp://h:7", "opc.tcp://127.0.0.1:8", u"opc.tcp://h:5000"_s,
            u"opc.tcp://127.0.0.1:5000"_s);
        row("path", "opc.tcp://h:7/a", "opc.tcp://x:8", u"opc.tcp://h:7/a"_s,
            u"opc.tcp://x:5000"_s);
        row("path that ends in a digit", "opc.tcp://h:7/a1", "opc.tcp://x:8",
            u"opc.tcp://h:7/a5000"_s, u"opc.tcp://x:5000"_s);
        row("no port", "opc.tcp://h", "opc.tcp://x:8", u"opc.tcp://h"_s, u"opc.tcp://x:5000"_s);
    }

    void port_replaces_the_last_digits_of_both_urls()
    {
        QFETCH(const QByteArray, url);
        QFETCH(const QByteArray, stackUrl);
        QFETCH(const QString, storedUrl);
        QFETCH(const QString, storedStackUrl);
        const EndpointsTab tab(single(url, stackUrl));
        tab.typePort(5000);
        QCOMPARE(tab.record(0).url, storedUrl);
        QCOMPARE(tab.record(0).stackUrl, storedStackUrl);
        QCOMPARE(tab.url().text(), storedUrl);
        QVERIFY(tab.isDirty());
    }

    void port_goes_up_and_down_with_the_arrow_keys()
    {
        const EndpointsTab tab(single("opc.tcp://h:65534"));
        QTest::keyClick(&tab.port(), Qt::Key_Up);
        QTest::keyClick(&tab.port(), Qt::Key_Up);
        QCOMPARE(tab.record(0).url, u"opc.tcp://h:65535"_s);
        tab.typePort(0);
        QTest::keyClick(&tab.port(), Qt::Key_Down);
        QCOMPARE(tab.record(0).url, u"opc.tcp://h:0"_s);
    }

    void port_4840_is_marked_until_it_changes()
    {
        const EndpointsTab tab(single("opc.tcp://h:4839"));
        const auto brushes = [&tab] {
            QList<QColor> colours;
            for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
                colours.append(tab.port().palette().color(group, QPalette::Text));
            }
            return colours;
        };
        const QList<QColor> plain = brushes();
        tab.typePort(4840);
        QCOMPARE(brushes(), QList<QColor>(3, QColor(u"orangered"_s)));
        QCOMPARE(tab.port().palette().color(QPalette::Base),
                 QApplication::palette().color(QPalette::Base));
        tab.typePort(4841);
        QCOMPARE(brushes(), plain);
        QVERIFY(plain.at(0) != QColor(u"orangered"_s));
    }

    // Copy

    void copy_puts_the_bound_address_into_the_url_data()
    {
        QTest::addColumn<QByteArray>("stackUrl");
        QTest::addColumn<QString>("host");
        QTest::newRow("all") << localUrl(7).toUtf8() << hostName();
        QTest::newRow("local only") << QByteArray("opc.tcp://127.0.0.1:7") << u"127.0.0.1"_s;
        QTest::newRow("IPv6") << QByteArray("opc.tcp://[fe80::1]:7") << u"[fe80::1]"_s;
    }

    void copy_puts_the_bound_address_into_the_url()
    {
        QFETCH(const QByteArray, stackUrl);
        QFETCH(const QString, host);
        const EndpointsTab tab(single("opc.tcp://other:7", stackUrl));
        EndpointsTab::click(tab.copy());
        const QString url = u"opc.tcp://%1:7"_s.arg(host);
        QCOMPARE(tab.networkName().text(), host);
        QCOMPARE(tab.record(0).url, url);
        QCOMPARE(tab.record(0).stackUrl, url);
        QCOMPARE(tab.url().text(), url);
        QVERIFY(tab.isDirty());
    }

    void copy_of_the_same_address_changes_nothing()
    {
        const EndpointsTab tab(single("opc.tcp://127.0.0.1:7"));
        EndpointsTab::click(tab.copy());
        QVERIFY(tab.isClean());
        QCOMPARE(tab.record(0).url, u"opc.tcp://127.0.0.1:7"_s);
    }

    // Without an endpoint

    void controls_without_an_endpoint_only_mark_the_tab()
    {
        const EndpointsTab tab(serverConfig("<Other/>"));
        QCOMPARE(tab.rowCount(), 0);
        EndpointsTab::choose(tab.protocol(), 1);
        EndpointsTab::choose(tab.adapter(), localOnly);
        tab.typeHost(u"x"_s);
        tab.typePort(1);
        QCOMPARE(tab.url().text(), u"https://x:1"_s);
        EndpointsTab::click(tab.copy());
        QCOMPARE(tab.url().text(), u"https://127.0.0.1:1"_s);
        QCOMPARE(tab.rowCount(), 0);
        QVERIFY(tab.isDirty());
    }
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetNetworkTest)

#include "veskserverconfigwidget_network_test.moc"
