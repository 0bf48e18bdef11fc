#include "tests/console/endpointstab.h"
#include "tests/console/modelrules.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDomDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

// Loading and saving the file, and what marks the tab as changed.

namespace {

const QByteArray logon = "<UserIdentityTokens><EnableAnonymous>true</EnableAnonymous>"
                         "<EnableUserPw>false</EnableUserPw></UserIdentityTokens>";

QByteArray logonXml(const QByteArray& anonymous, const QByteArray& userPassword)
{
    return "<UserIdentityTokens><EnableAnonymous>" + anonymous +
           "</EnableAnonymous><EnableUserPw>" + userPassword +
           "</EnableUserPw></UserIdentityTokens>";
}

/// The file as the console writes a document of this content.
QByteArray asWritten(const QByteArray& content)
{
    QDomDocument document;
    document.setContent(QString::fromUtf8(serverConfig(content)));
    return document.toString(2).toUtf8();
}

/// One way to change something in the tab.
struct Change
{
    const char* name;
    void (*make)(const EndpointsTab& tab);
};

const Change changes[] = {
    {"add", [](const EndpointsTab& tab) { EndpointsTab::click(tab.add()); }},
    {"remove", [](const EndpointsTab& tab) { EndpointsTab::click(tab.remove()); }},
    {"protocol", [](const EndpointsTab& tab) { EndpointsTab::choose(tab.protocol(), 1); }},
    {"host", [](const EndpointsTab& tab) { tab.typeHost(u"x"_s); }},
    {"adapter", [](const EndpointsTab& tab) { EndpointsTab::choose(tab.adapter(), 2); }},
    {"address", [](const EndpointsTab& tab) { EndpointsTab::choose(tab.ip(), 1); }},
    {"port", [](const EndpointsTab& tab) { tab.typePort(99); }},
    {"none", [](const EndpointsTab& tab) { EndpointsTab::click(tab.none()); }},
    {"policy", [](const EndpointsTab& tab) { EndpointsTab::click(tab.policy("Basic256Sha256")); }},
    {"modes", [](const EndpointsTab& tab) { EndpointsTab::choose(tab.modes("Basic256"), 2); }},
    {"firewall", [](const EndpointsTab& tab) { EndpointsTab::click(tab.firewallException()); }},
    {"copy", [](const EndpointsTab& tab) { EndpointsTab::click(tab.copy()); }},
    {"anonymous", [](const EndpointsTab& tab) { EndpointsTab::click(tab.anonymous()); }},
    {"user", [](const EndpointsTab& tab) { EndpointsTab::click(tab.localUsers()); }},
};

QByteArray twoEndpoints()
{
    return endpointXml("opc.tcp://h:1", "opc.tcp://192.168.7.5:1",
                       settingXml("Basic256", {"Sign"})) +
           endpointXml("opc.tcp://h:2") + logon;
}

void addChanges()
{
    QTest::addColumn<const Change*>("change");
    for (const Change& change : changes) {
        QTest::newRow(change.name) << &change;
    }
}

} // namespace

class VeskServerConfigWidgetFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Loading

    void load_shows_the_sample()
    {
        const EndpointsTab tab(sampleConfig());
        const ModelRules rules(tab.model());
        QCOMPARE(tab.column(0), (QStringList{u"1"_s, u"2"_s}));
        QCOMPARE(tab.column(1), (QStringList{u"UA TCP"_s, u"UA TCP"_s}));
        QCOMPARE(tab.column(2),
                 (QStringList{u"opc.tcp://[NodeName]:4840"_s, u"opc.tcp://[NodeName]:4841"_s}));
        QCOMPARE(tab.record(0).stackUrl, u"opc.tcp://[NodeName]:4840"_s);
        QCOMPARE(tab.record(1).stackUrl, u"opc.tcp://127.0.0.1:4841"_s);
        QCOMPARE(tab.currentRow(), 0);
        QVERIFY(tab.table().selectionModel()->isRowSelected(0, QModelIndex()));
        QCOMPARE(tab.networkName().text(), u"[NodeName]"_s);
        QVERIFY(tab.none().isChecked());
        QCOMPARE(tab.modes("Basic256Sha256").currentIndex(), 2);
        QVERIFY(tab.anonymous().isChecked());
        QVERIFY(!tab.localUsers().isChecked());
        QVERIFY(tab.isClean());
    }

    void logon_shows_in_the_check_boxes_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::addColumn<bool>("anonymous");
        QTest::addColumn<bool>("localUsers");
        QTest::newRow("both") << logonXml("true", "TRUE") << true << true;
        QTest::newRow("neither") << logonXml("false", "false") << false << false;
        QTest::newRow("other words") << logonXml("yes", "1") << false << false;
        QTest::newRow("tokens without elements")
            << QByteArray("<UserIdentityTokens/>") << false << false;
        QTest::newRow("absent leaves them as they are") << QByteArray() << true << false;
    }

    void logon_shows_in_the_check_boxes()
    {
        QFETCH(const QByteArray, xml);
        QFETCH(const bool, anonymous);
        QFETCH(const bool, localUsers);
        const EndpointsTab tab(serverConfig(logon));
        tab.setFileContent(serverConfig(xml));
        tab.widget->reload();
        QCOMPARE(tab.anonymous().isChecked(), anonymous);
        QCOMPARE(tab.localUsers().isChecked(), localUsers);
        QVERIFY(tab.isClean());
    }

    void load_replaces_the_rows_and_selects_the_first()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        tab.selectRow(1);
        tab.setFileContent(serverConfig(endpointXml("https://other:3")));
        tab.widget->reload();
        QCOMPARE(tab.column(2), QStringList(u"https://other:3"_s));
        QCOMPARE(tab.column(1), QStringList(u"UA HTTPS"_s));
        QCOMPARE(tab.currentRow(), 0);
        QCOMPARE(tab.url().text(), u"https://other:3"_s);
        QVERIFY(!tab.remove().isEnabled());
        QVERIFY(tab.isClean());
    }

    void load_of_a_file_without_server_config_empties_the_table()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        EndpointsTab::click(tab.none());
        tab.setFileContent("<ServerConfiguration><Other/></ServerConfiguration>");
        tab.widget->reload();
        QCOMPARE(tab.rowCount(), 0);
        QVERIFY(tab.anonymous().isChecked());
        QVERIFY(!tab.remove().isEnabled());
        QVERIFY(tab.isClean());
    }

    void name_of_the_document_element_does_not_matter()
    {
        const EndpointsTab tab("<x><UaServerConfig>" + twoEndpoints() + "</UaServerConfig></x>");
        QCOMPARE(tab.rowCount(), 2);
    }

    void first_server_config_counts()
    {
        const EndpointsTab tab("<x><UaServerConfig>" + endpointXml("opc.tcp://a:1") +
                               "</UaServerConfig><UaServerConfig>" + twoEndpoints() +
                               "</UaServerConfig></x>");
        QCOMPARE(tab.column(2), QStringList(u"opc.tcp://a:1"_s));
    }

    void bytes_are_utf_8_whatever_the_file_declares()
    {
        const EndpointsTab tab("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" +
                               serverConfig(endpointXml("opc.tcp://\xC3\xA9:1")));
        QCOMPARE(tab.column(2), QStringList(u"opc.tcp://\u00e9:1"_s));
        EndpointsTab::click(tab.none());
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.fileContent().contains("opc.tcp://\xC3\xA9:1"));
        QVERIFY(tab.fileContent().startsWith("<?xml version='1.0' encoding='ISO-8859-1'?>"));
    }

    void revert_shows_the_file_again()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        const QByteArray before = tab.fileContent();
        EndpointsTab::click(tab.remove());
        EndpointsTab::click(tab.anonymous());
        EndpointsTab::click(tab.revert());
        QCOMPARE(tab.column(2), (QStringList{u"opc.tcp://h:1"_s, u"opc.tcp://h:2"_s}));
        QVERIFY(tab.anonymous().isChecked());
        QVERIFY(tab.isClean());
        QCOMPARE(tab.fileContent(), before);
    }

    void another_file_is_loaded_and_saved()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        const QByteArray before = tab.fileContent();
        const QString other = writeFile(tab.directory.filePath(u"Other.xml"_s),
                                        serverConfig(endpointXml("opc.tcp://other:9")));
        tab.widget->setConfigFile(other);
        QCOMPARE(tab.column(2), QStringList(u"opc.tcp://other:9"_s));
        tab.typePort(10);
        EndpointsTab::click(tab.apply());
        QVERIFY(readFile(other).contains("<Url>opc.tcp://other:10</Url>"));
        QCOMPARE(tab.fileContent(), before);
    }

    void thousands_of_endpoints_load_in_order()
    {
        QByteArray xml;
        for (int i = 0; i < 3000; ++i) {
            xml += endpointXml("opc.tcp://h:" + QByteArray::number(i));
        }
        const EndpointsTab tab(serverConfig(xml));
        QCOMPARE(tab.rowCount(), 3000);
        QCOMPARE(tab.column(2).at(2999), u"opc.tcp://h:2999"_s);
    }

    // What marks the tab

    void every_change_marks_the_tab_until_it_is_saved_data() { addChanges(); }

    void every_change_marks_the_tab_until_it_is_saved()
    {
        QFETCH(const Change*, change);
        const EndpointsTab tab(serverConfig(twoEndpoints()), FirewallModePerEndpoint);
        const ModelRules rules(tab.model());
        const QSignalSpy saved(tab.widget.get(), &VeskServerConfigWidget::changesSaved);
        QVERIFY(tab.isClean());
        change->make(tab);
        QVERIFY(tab.isDirty());
        QCOMPARE(saved.count(), 0);
        QCOMPARE(tab.fileContent(), serverConfig(twoEndpoints()));

        const QList<EndpointRecord> records = tab.model().endpoints();
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isClean());
        QCOMPARE(saved.count(), 1);
        QCOMPARE(tab.currentRow(), 0);
        // The selection of the first row may have stored its stack URL anew, but alike.
        QCOMPARE(tab.model().endpoints(), records);
        tab.widget->reload();
        QCOMPARE(tab.model().endpoints(), records);
    }

    void every_change_is_undone_by_revert_data() { addChanges(); }

    void every_change_is_undone_by_revert()
    {
        QFETCH(const Change*, change);
        const EndpointsTab tab(serverConfig(twoEndpoints()), FirewallModePerEndpoint);
        const QList<EndpointRecord> records = tab.model().endpoints();
        change->make(tab);
        EndpointsTab::click(tab.revert());
        QVERIFY(tab.isClean());
        QCOMPARE(tab.model().endpoints(), records);
        QVERIFY(tab.anonymous().isChecked());
        QVERIFY(!tab.localUsers().isChecked());
    }

    // Saving

    void save_writes_exactly_the_change()
    {
        const EndpointsTab tab(serverConfig("<A/>" + endpointXml("opc.tcp://h:1", {}, "<B>b</B>") +
                                            "<!--c-->" + logon + "<C/>"));
        tab.typePort(5000);
        EndpointsTab::click(tab.anonymous());
        EndpointsTab::click(tab.policy("Basic256"));
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.fileContent(),
                 asWritten("<A/><!--c-->" + logonXml("false", "false") + "<C/>" +
                           endpointXml("opc.tcp://h:5000", {},
                                       "<B>b</B>" + settingXml("Basic256", {"SignAndEncrypt"}))));
    }

    void save_keeps_the_sample_but_for_the_change()
    {
        const EndpointsTab tab(sampleConfig());
        tab.selectRow(1);
        EndpointsTab::choose(tab.modes("Basic256"), 2);
        EndpointsTab::click(tab.apply());
        const QByteArray file = tab.fileContent();
        for (const QByteArray& kept :
             {QByteArray("<ServerName>Sample@[NodeName]</ServerName>"),
              QByteArray("<GroupHost>placeholder</GroupHost>"),
              QByteArray("<UaAppTraceFile>[TracePath]/srvTrace.log</UaAppTraceFile>"),
              QByteArray("<Url>opc.tcp://[NodeName]:4840</Url>"),
              QByteArray("<StackUrl>opc.tcp://127.0.0.1:4841</StackUrl>")}) {
            QVERIFY2(file.contains(kept), kept.constData());
        }
        // The second endpoint takes what it holds besides from the first.
        QCOMPARE(file.count("<SerializerType>Binary</SerializerType>"), 2);
        QCOMPARE(file.count("<CommonName>[ServerName]</CommonName>"), 2);
    }

    void saving_twice_gives_the_same_bytes()
    {
        const EndpointsTab tab(sampleConfig());
        tab.widget->save();
        const QByteArray once = tab.fileContent();
        tab.widget->save();
        QCOMPARE(tab.fileContent(), once);
        const EndpointsTab again(once);
        again.widget->save();
        QCOMPARE(again.fileContent(), once);
    }

    void save_tells_before_it_loads()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        tab.selectRow(1);
        tab.typePort(99);
        bool wasDirty = false;
        int row = -1;
        QByteArray content;
        connect(tab.widget.get(), &VeskServerConfigWidget::changesSaved, this, [&] {
            wasDirty = tab.widget->m_bDirty;
            row = tab.currentRow();
            content = tab.fileContent();
        });
        EndpointsTab::click(tab.apply());
        QVERIFY(wasDirty);
        QCOMPARE(row, 1);
        QVERIFY(content.contains("opc.tcp://h:99"));
        QVERIFY(tab.isClean());
        QCOMPARE(tab.currentRow(), 0);
    }

    void what_another_program_writes_while_saving_is_shown()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        connect(tab.widget.get(), &VeskServerConfigWidget::changesSaved, this,
                [&tab] { tab.setFileContent(serverConfig(endpointXml("opc.tcp://foreign:1"))); });
        EndpointsTab::click(tab.none());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.column(2), QStringList(u"opc.tcp://foreign:1"_s));
    }

    void logon_is_not_made_where_it_is_missing_data()
    {
        QTest::addColumn<QByteArray>("xml");
        QTest::newRow("no tokens") << QByteArray();
        QTest::newRow("no elements") << QByteArray("<UserIdentityTokens/>");
        QTest::newRow("no texts") << QByteArray(
            "<UserIdentityTokens><EnableAnonymous/><EnableUserPw/>"
            "</UserIdentityTokens>");
    }

    void logon_is_not_made_where_it_is_missing()
    {
        QFETCH(const QByteArray, xml);
        const EndpointsTab tab(serverConfig(xml + endpointXml("opc.tcp://h:1")));
        const QSignalSpy saved(tab.widget.get(), &VeskServerConfigWidget::changesSaved);
        EndpointsTab::click(tab.anonymous());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.fileContent(), asWritten(xml + endpointXml("opc.tcp://h:1")));
        QCOMPARE(saved.count(), 1);
        QVERIFY(tab.isClean());
    }

    void url_without_a_text_is_lost_and_the_rest_is_written()
    {
        const EndpointsTab tab(serverConfig("<UaEndpoint><Url/></UaEndpoint>"));
        tab.typeHost(u"x"_s);
        EndpointsTab::click(tab.none());
        QCOMPARE(tab.column(2), QStringList(u"opc.tcp://x:4850"_s));
        EndpointsTab::click(tab.apply());
        // The stack URL, made for the new URL's sake, was the empty one of the file.
        QCOMPARE(tab.column(2), QStringList(QString()));
        QCOMPARE(tab.record(0).securitySettings, (QList<SecurityRecord>{{policyUri("None"), 1}}));
        QVERIFY(tab.isClean());
    }

    void endpoints_that_were_never_shown_survive_a_save()
    {
        const EndpointsTab tab("not xml");
        QCOMPARE(tab.rowCount(), 0);
        tab.setFileContent(serverConfig(twoEndpoints()));
        EndpointsTab::click(tab.anonymous());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.column(2), (QStringList{u"opc.tcp://h:1"_s, u"opc.tcp://h:2"_s}));
        QVERIFY(tab.isClean());
    }

    void rows_are_lost_in_a_file_without_an_endpoint()
    {
        const EndpointsTab tab(serverConfig(twoEndpoints()));
        tab.setFileContent(serverConfig("<A/>"));
        EndpointsTab::click(tab.none());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.fileContent(), asWritten("<A/>"));
        QCOMPARE(tab.rowCount(), 0);
    }
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetFileTest)

#include "veskserverconfigwidget_file_test.moc"
