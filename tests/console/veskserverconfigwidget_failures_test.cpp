#include "tests/console/endpointstab.h"
#include "tests/support/configsample.h"
#include "tests/support/messageboxanswer.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"
#include "tests/support/unprivileged.h"

#include <QCheckBox>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

// What the tab does when its file can't be read or written, or holds nonsense: it says nothing, keeps
// what it shows and stays dirty.

namespace {

QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

/// Puts something in the place of the tab's file that it can't read or mustn't touch.
struct Damage
{
    const char* name;
    QByteArray content;
    enum
    {
        Missing,
        Folder,
        Content
    } kind = Content;
};

const Damage damages[] = {
    {"missing", {}, Damage::Missing},
    {"folder in its place", {}, Damage::Folder},
    {"empty", ""},
    {"truncated", "<ServerConfiguration><UaServerConfig><UaEndpoint><Url>opc.tcp://h:1"},
    {"no XML", "[Endpoints]\nUrl=x\n"},
    {"binary", QByteArray("\x7f"
                          "ELF\x02\x00\x01",
                          7)},
    {"two document elements", "<a/><b/>"},
    {"too deep", nested(501)},
};

void inflict(const Damage& damage, const QString& path)
{
    QVERIFY(QFile::remove(path));
    if (damage.kind == Damage::Folder) {
        QVERIFY(QDir().mkdir(path));
    } else if (damage.kind == Damage::Content) {
        writeFile(path, damage.content);
    }
}

void addDamages()
{
    QTest::addColumn<const Damage*>("damage");
    for (const Damage& damage : damages) {
        QTest::newRow(damage.name) << &damage;
    }
}

/// A change that each test can tell from what its file holds.
void edit(const EndpointsTab& tab)
{
    tab.typeHost(u"edited"_s);
}

bool showsTheEdit(const EndpointsTab& tab)
{
    return tab.networkName().text() == u"edited"_s &&
           tab.column(2) == QStringList{u"opc.tcp://edited:4840"_s, u"opc.tcp://[NodeName]:4841"_s};
}

/// The sample with some bytes removed, doubled or changed.
QByteArray mutated(QRandomGenerator& random)
{
    QByteArray text = sampleConfig();
    const int changes = random.bounded(1, 6);
    for (int i = 0; i < changes; ++i) {
        const qsizetype from = random.bounded(text.size());
        const qsizetype length = qMin<qsizetype>(random.bounded(1, 200), text.size() - from);
        switch (random.bounded(5)) {
        case 0:
            text.remove(from, length);
            break;
        case 1:
            text.insert(from, text.mid(from, length));
            break;
        case 2:
            text[from] = static_cast<char>(random.bounded(256));
            break;
        case 3:
            text.insert(from, "<UaEndpoint/><Url>x</Url><![CDATA[]]><!---->");
            break;
        default:
            text.truncate(from + 1);
            break;
        }
    }
    return text;
}

/// A sample whose elements, but not its markup, are shuffled: always well-formed.
QByteArray shuffled(QRandomGenerator& random)
{
    QList<QByteArray> elements = {
        "<Url/>",
        "<Url>opc.tcp://a:1</Url>",
        "<Url>http://b</Url>",
        "<Url><![CDATA[https://c:99999999999]]></Url>",
        "<StackUrl/>",
        "<StackUrl>opc.tcp://127.0.0.1:2</StackUrl>",
        "<StackUrl><b>opc.tcp://10.0.0.7:3</b></StackUrl>",
        "<SecuritySetting/>",
        "<!--c-->",
        "text",
        settingXml("Basic256", {"Sign", "Wrong"}),
        settingXml("Other", {}),
        settingXml("None", {"None", "None"}),
    };
    QByteArray xml;
    for (int endpoint = random.bounded(5); endpoint > 0; --endpoint) {
        xml += "<UaEndpoint>";
        for (int i = random.bounded(8); i > 0; --i) {
            xml += elements.at(random.bounded(elements.size()));
        }
        xml += "</UaEndpoint>";
    }
    return serverConfig(xml);
}

bool isWellFormed(const QByteArray& text)
{
    return bool(QDomDocument().setContent(QString::fromUtf8(text)));
}

} // namespace

class VeskServerConfigWidgetFailuresTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_noBox = std::make_unique<MessageBoxAnswer>(QList<MessageBoxAnswer::Expected>());
    }

    void cleanup()
    {
        QCOMPARE(m_noBox->verdict(), QString());
        m_noBox.reset();
    }

    void unreadable_file_shows_an_empty_table_data() { addDamages(); }

    void unreadable_file_shows_an_empty_table()
    {
        QFETCH(const Damage*, damage);
        const QTemporaryDir directory;
        const QString path = writeFile(directory.filePath(u"ServerConfig.xml"_s), "");
        inflict(*damage, path);
        const VeskServerConfigWidget widget(path, FirewallModeNone, QString());
        QCOMPARE(widget.findChild<VeskServerConfigModel*>()->rowCount(), 0);
        QVERIFY(!widget.m_bDirty);
        QVERIFY(!widget.findChild<QPushButton*>(u"pushButton_apply"_s)->isEnabled());
        QVERIFY(!widget.findChild<QPushButton*>(u"pushButton_revert"_s)->isEnabled());
    }

    void failed_revert_keeps_rows_and_dirty_data() { addDamages(); }

    void failed_revert_keeps_rows_and_dirty()
    {
        QFETCH(const Damage*, damage);
        const EndpointsTab tab(sampleConfig());
        edit(tab);
        inflict(*damage, tab.path);
        EndpointsTab::click(tab.revert());
        QVERIFY(tab.isDirty());
        QVERIFY(showsTheEdit(tab));
        QCOMPARE(tab.fileContent(), damage->content);
    }

    void failed_apply_keeps_rows_dirty_and_file_data() { addDamages(); }

    void failed_apply_keeps_rows_dirty_and_file()
    {
        QFETCH(const Damage*, damage);
        const EndpointsTab tab(sampleConfig());
        const QSignalSpy saved(tab.widget.get(), &VeskServerConfigWidget::changesSaved);
        edit(tab);
        inflict(*damage, tab.path);
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isDirty());
        QVERIFY(showsTheEdit(tab));
        QCOMPARE(saved.count(), 0);
        QCOMPARE(tab.fileContent(), damage->content);
        QCOMPARE(QFileInfo(tab.path).isDir(), damage->kind == Damage::Folder);
    }

    void file_that_cannot_be_written_keeps_dirty_and_the_next_apply_works()
    {
        const EndpointsTab tab(sampleConfig());
        const QSignalSpy saved(tab.widget.get(), &VeskServerConfigWidget::changesSaved);
        QVERIFY(
            QFile::setPermissions(tab.directory.path(), QFileDevice::Permissions::fromInt(0x7755)));
        QVERIFY(QFile::setPermissions(tab.path, QFileDevice::Permissions::fromInt(0x4444)));
        edit(tab);
        {
            const Unprivileged user;
            EndpointsTab::click(tab.apply());
            QVERIFY(tab.isDirty());
            QCOMPARE(saved.count(), 0);
            QCOMPARE(tab.fileContent(), sampleConfig());
            QVERIFY(showsTheEdit(tab));
        }
        QVERIFY(QFile::setPermissions(tab.path, QFileDevice::Permissions::fromInt(0x6666)));
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isClean());
        QCOMPARE(saved.count(), 1);
        QVERIFY(tab.fileContent().contains("opc.tcp://edited:4840"));
    }

    void full_disk_keeps_dirty_and_the_old_file()
    {
        SmallDisk disk(64);
        if (!disk.isMounted()) {
            QSKIP(qPrintable(disk.reason()));
        }
        const QByteArray content = serverConfig(endpointXml("opc.tcp://h:1"));
        const QString path = writeFile(disk.filePath(u"ServerConfig.xml"_s), content);
        disk.fillUpTo(0);
        VeskServerConfigWidget widget(path, FirewallModeNone, QString());
        const QSignalSpy saved(&widget, &VeskServerConfigWidget::changesSaved);
        for (int i = 0; i < 200; ++i) {
            widget.sltAddEndpoint();
        }
        widget.save();
        QVERIFY(widget.m_bDirty);
        QCOMPARE(saved.count(), 0);
        QCOMPARE(readFile(path), content);
        QCOMPARE(widget.findChild<VeskServerConfigModel*>()->rowCount(), 201);
    }

    void failed_apply_leaves_the_firewall_alone()
    {
        const auto record = std::make_shared<FirewallRecord>();
        const EndpointsTab tab(sampleConfig(), FirewallModeAllEndpoints, record);
        edit(tab);
        record->calls.clear();
        QVERIFY(QFile::remove(tab.path));
        EndpointsTab::click(tab.apply());
        QCOMPARE(record->calls, QStringList());
    }

    void text_that_xml_forbids_is_not_written()
    {
        const EndpointsTab tab(sampleConfig());
        tab.widget->sltNetworkNameEdited(u"a\u0001"_s); // as from the clipboard
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isDirty());
        QCOMPARE(tab.fileContent(), sampleConfig());
    }

    void end_of_a_cdata_section_in_a_host_breaks_no_file()
    {
        const EndpointsTab tab(
            serverConfig("<UaEndpoint><Url><![CDATA[opc.tcp://h:1]]></Url></UaEndpoint>"));
        tab.typeHost(u"a]]>b"_s);
        EndpointsTab::click(tab.apply());
        QVERIFY(isWellFormed(tab.fileContent()));
        QCOMPARE(tab.isClean(), tab.fileContent().contains("]]"));
    }

    void damaged_files_are_shown_and_saved_without_harm()
    {
        QRandomGenerator random(20240229);
        const EndpointsTab tab(sampleConfig());
        int savedFiles = 0;
        for (int i = 0; i < 600; ++i) {
            const QByteArray before = i % 2 == 0 ? mutated(random) : shuffled(random);
            tab.setFileContent(before);
            tab.widget->reload();
            const bool wasShown = tab.isClean();
            tab.widget->m_bDirty = true;
            tab.selectRow(tab.rowCount() - 1);
            tab.widget->save();
            const QByteArray after = tab.fileContent();
            if (tab.widget->m_bDirty) {
                QCOMPARE(after, before);
            } else {
                ++savedFiles;
                QVERIFY(isWellFormed(after));
            }
            QVERIFY(wasShown || after == before || isWellFormed(after));
        }
        QVERIFY(savedFiles > 300);
    }

    void urls_and_policies_of_megabytes_do_not_stop_the_tab()
    {
        const QByteArray huge(4 * 1024 * 1024, 'h');
        QElapsedTimer timer;
        timer.start();
        const EndpointsTab tab(serverConfig(
            endpointXml("opc.tcp://" + huge + ":4840", {}, settingXml(huge, {"Sign"})) +
            endpointXml(huge, huge)));
        tab.selectRow(1);
        QApplication::processEvents();
        EndpointsTab::click(tab.anonymous());
        EndpointsTab::click(tab.apply());
        QVERIFY(tab.isClean());
        QCOMPARE(tab.record(1).url.size(), huge.size());
        QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
    }

private:
    std::unique_ptr<MessageBoxAnswer> m_noBox;
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetFailuresTest)

#include "veskserverconfigwidget_failures_test.moc"
