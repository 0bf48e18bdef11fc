#include "tests/console/endpointstab.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

/// Endpoints on these ports.
QByteArray onPorts(const QList<int>& ports)
{
    QByteArray xml;
    for (const int port : ports) {
        xml += endpointXml("opc.tcp://h:" + QByteArray::number(port));
    }
    return serverConfig(xml);
}

/// As text: comparing empty lists of numbers is undefined in Qt's own header.
QString numbers(const QList<int>& ports)
{
    QStringList texts;
    for (const int port : ports) {
        texts.append(QString::number(port));
    }
    return texts.join(u' ');
}

/// The changes among the calls of a firewall.
QStringList changesOf(const FirewallRecord& record)
{
    return record.calls.filter(QRegularExpression(u"^(open|close) "_s));
}

/// A tab on endpoints with these ports and a firewall with these open ports.
struct Setup
{
    Setup(int mode, const QByteArray& content, const QList<int>& openPorts)
        : record(std::make_shared<FirewallRecord>(FirewallRecord{openPorts, {}}))
        , tab(content, mode, record)
    {
    }

    std::shared_ptr<FirewallRecord> record;
    EndpointsTab tab;
};

} // namespace

class VeskServerConfigWidgetFirewallTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changes_make_the_open_ports_the_wanted_ones_data()
    {
        QTest::addColumn<QList<int>>("open");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QList<FirewallPortEntry>>("entries");
        QTest::addColumn<QList<int>>("toOpen");
        QTest::addColumn<QList<int>>("toClose");
        using Ports = QList<int>;
        using Entries = QList<FirewallPortEntry>;
        const auto row = [](const char* name, const Ports& open, int mode, const Entries& entries,
                            const Ports& toOpen, const Ports& toClose) {
            QTest::newRow(name) << open << mode << entries << toOpen << toClose;
        };
        row("nothing", {}, 1, {}, {}, {});
        row("no endpoint closes all", {1, 2}, 2, {}, {}, {1, 2});
        row("enabled is opened", {}, 1, {{1, true}}, {1}, {});
        row("not enabled isn't", {}, 1, {{1, false}}, {}, {});
        row("not enabled is, for all endpoints", {}, 2, {{1, false}}, {1}, {});
        row("open already", {1}, 1, {{1, true}}, {}, {});
        row("open and not wanted", {1}, 1, {{1, false}}, {}, {1});
        row("two rows on one port, one enabled", {5}, 1, {{5, true}, {5, false}}, {}, {});
        row("two rows on one port, the other enabled", {5}, 1, {{5, false}, {5, true}}, {}, {});
        row("open twice under the rule", {5, 5}, 1, {{5, true}}, {}, {});
        row("order of the rows", {9, 8}, 2, {{3, false}, {8, false}, {1, true}}, {3, 1}, {9});
    }

    void changes_make_the_open_ports_the_wanted_ones()
    {
        QFETCH(const QList<int>, open);
        QFETCH(const int, mode);
        QFETCH(const QList<FirewallPortEntry>, entries);
        const FirewallChanges changes = firewallChanges(open, mode, entries);
        QFETCH(const QList<int>, toOpen);
        QFETCH(const QList<int>, toClose);
        QCOMPARE(numbers(changes.toOpen), numbers(toOpen));
        QCOMPARE(numbers(changes.toClose), numbers(toClose));
    }

    void mode_0_calls_nothing()
    {
        const Setup setup(FirewallModeNone, onPorts({1, 2}), {1});
        QVERIFY(!setup.tab.firewallException().isVisible());
        setup.tab.typePort(3);
        EndpointsTab::click(setup.tab.add());
        EndpointsTab::click(setup.tab.remove());
        EndpointsTab::click(setup.tab.apply());
        QVERIFY(setup.tab.isClean());
        setup.tab.widget->sltAddFirewallExceptionClicked(true);
        QVERIFY(setup.tab.isDirty());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(setup.record->calls, QStringList());
    }

    void rule_name_is_handed_to_the_firewall()
    {
        const Setup setup(FirewallModeAllEndpoints, onPorts({7}), {7, 9});
        QCOMPARE(setup.record->calls, QStringList(u"ports UA Port"_s));
        QCOMPARE(setup.tab.widget->openFirewallPorts(), (QList<int>{7, 9}));
        setup.tab.widget->setFirewallPort(5, true);
        setup.tab.widget->setFirewallPort(9, false);
        QCOMPARE(changesOf(*setup.record),
                 (QStringList{u"open UA Port 5"_s, u"close UA Port 9"_s}));
    }

    void box_shows_whether_the_port_is_open()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2, 3}), {2, 7});
        QVERIFY(!setup.tab.firewallException().isChecked());
        setup.tab.selectRow(1);
        QVERIFY(setup.tab.firewallException().isChecked());
        setup.tab.selectRow(2);
        QVERIFY(!setup.tab.firewallException().isChecked());
        QVERIFY(setup.tab.isClean());
    }

    void port_of_the_stack_url_counts_data()
    {
        QTest::addColumn<QByteArray>("endpoint");
        QTest::addColumn<bool>("isOpen");
        QTest::newRow("URL alone") << endpointXml("opc.tcp://h:5") << true;
        QTest::newRow("stack URL") << endpointXml("opc.tcp://h:4", "opc.tcp://h:5") << true;
        QTest::newRow("URL beside a stack URL")
            << endpointXml("opc.tcp://h:5", "opc.tcp://h:4") << false;
        QTest::newRow("empty stack URL")
            << QByteArray("<UaEndpoint><Url>opc.tcp://h:5</Url><StackUrl/></UaEndpoint>") << false;
        QTest::newRow("https in capitals") << endpointXml("HTTPS://h:5") << true;
        QTest::newRow("other scheme") << endpointXml("ftp://h:5") << false;
    }

    void port_of_the_stack_url_counts()
    {
        QFETCH(const QByteArray, endpoint);
        QFETCH(const bool, isOpen);
        const Setup setup(FirewallModePerEndpoint, serverConfig(endpoint), {5});
        QCOMPARE(setup.tab.firewallException().isChecked(), isOpen);
    }

    void checked_port_is_opened_at_apply()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2}), {});
        setup.tab.selectRow(1);
        EndpointsTab::click(setup.tab.firewallException());
        QVERIFY(setup.tab.isDirty());
        QCOMPARE(changesOf(*setup.record), QStringList());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList(u"open UA Port 2"_s));
        // Each load asks once, and the apply between them.
        QCOMPARE(setup.record->calls.count(u"ports UA Port"_s), 3);
        setup.tab.selectRow(1);
        QVERIFY(setup.tab.firewallException().isChecked());
    }

    void firewall_follows_only_after_the_file()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1}), {});
        EndpointsTab::click(setup.tab.firewallException());
        QStringList callsAtSignal;
        connect(setup.tab.widget.get(), &VeskServerConfigWidget::changesSaved, this,
                [&] { callsAtSignal = changesOf(*setup.record); });
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(callsAtSignal, QStringList(u"open UA Port 1"_s));
    }

    void unchecked_port_is_closed_at_apply()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2}), {1, 2});
        EndpointsTab::click(setup.tab.firewallException());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList(u"close UA Port 1"_s));
        QVERIFY(!setup.tab.firewallException().isChecked());
    }

    void port_that_no_endpoint_uses_is_closed_at_apply()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1}), {1, 9});
        EndpointsTab::click(setup.tab.none());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList(u"close UA Port 9"_s));
    }

    void two_rows_on_one_port_keep_it_open()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({5, 5}), {5});
        EndpointsTab::click(setup.tab.firewallException());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList());
        QCOMPARE(setup.record->openPorts, QList<int>{5});
    }

    void mode_2_opens_all_ports()
    {
        const Setup setup(FirewallModeAllEndpoints, onPorts({1, 2, 3}), {2, 9});
        QVERIFY(!setup.tab.firewallException().isVisible());
        EndpointsTab::click(setup.tab.none());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record),
                 (QStringList{u"open UA Port 1"_s, u"open UA Port 3"_s, u"close UA Port 9"_s}));
    }

    void box_in_mode_2_changes_no_entry()
    {
        const Setup setup(FirewallModeAllEndpoints, onPorts({1}), {});
        setup.tab.widget->sltAddFirewallExceptionClicked(false);
        QVERIFY(setup.tab.isDirty());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList(u"open UA Port 1"_s));
    }

    void changed_port_moves_the_exception()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2}), {1});
        setup.tab.typePort(11);
        QVERIFY(setup.tab.firewallException().isChecked());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record),
                 (QStringList{u"open UA Port 11"_s, u"close UA Port 1"_s}));
    }

    void added_endpoint_copies_the_exception_of_the_last()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2}), {2});
        EndpointsTab::click(setup.tab.add());
        QVERIFY(setup.tab.firewallException().isChecked());
        setup.tab.typePort(3);
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList(u"open UA Port 3"_s));
    }

    void removed_endpoint_takes_its_exception_away_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("isCheckedAfter");
        QTest::addColumn<QStringList>("changes");
        QTest::newRow("first") << 0 << false << QStringList(u"close UA Port 1"_s);
        QTest::newRow("middle") << 1 << true << QStringList();
        QTest::newRow("last") << 2 << false << QStringList(u"close UA Port 3"_s);
    }

    void removed_endpoint_takes_its_exception_away()
    {
        QFETCH(const int, row);
        QFETCH(const bool, isCheckedAfter);
        QFETCH(const QStringList, changes);
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2, 3}), {1, 3});
        setup.tab.selectRow(row);
        EndpointsTab::click(setup.tab.remove());
        // The box shows the entry of the row that is current now.
        QCOMPARE(setup.tab.firewallException().isChecked(), isCheckedAfter);
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), changes);
    }

    void revert_asks_the_firewall_again()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1}), {});
        EndpointsTab::click(setup.tab.none());
        setup.record->openPorts = {1};
        EndpointsTab::click(setup.tab.revert());
        QVERIFY(setup.tab.firewallException().isChecked());
        QCOMPARE(changesOf(*setup.record), QStringList());
    }

    void failed_load_keeps_the_exceptions_of_the_rows()
    {
        const Setup setup(FirewallModePerEndpoint, onPorts({1, 2}), {2});
        const QByteArray content = setup.tab.fileContent();
        setup.tab.setFileContent("no xml");
        setup.tab.widget->reload();
        setup.tab.setFileContent(content);
        EndpointsTab::click(setup.tab.none());
        EndpointsTab::click(setup.tab.apply());
        QCOMPARE(changesOf(*setup.record), QStringList());
    }

    void without_a_firewall_every_call_fails_in_silence_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("1") << 1;
        QTest::newRow("2") << 2;
    }

    void without_a_firewall_every_call_fails_in_silence()
    {
        QFETCH(const int, mode);
        const EndpointsTab tab(onPorts({1, 2}), mode);
        QVERIFY(tab.widget->openFirewallPorts().isEmpty());
        tab.widget->setFirewallPort(1, true);
        tab.widget->sltAddFirewallExceptionClicked(true);
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isClean());
        QVERIFY(!tab.firewallException().isChecked());
    }
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetFirewallTest)

#include "veskserverconfigwidget_firewall_test.moc"
