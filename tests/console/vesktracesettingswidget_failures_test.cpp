#include "console/vesktracesettingswidget.h"
#include "tests/console/tracetab.h"
#include "tests/support/smalldisk.h"
#include "tests/support/unprivileged.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

// What the tab does when its file can't be read or written: it says nothing, keeps the values in the
// form and stays dirty.

namespace {

QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

/// Puts something in the place of the tab's file that it can't read or mustn't touch.
struct Damage
{
    const char* name;
    void (*inflict)(const QString& path);
    QByteArray content; ///< What the file must hold afterwards; null when it is no file.
};

void remove(const QString& path)
{
    QVERIFY(QFile::remove(path));
}

void replaceByFolder(const QString& path)
{
    QVERIFY(QFile::remove(path));
    QVERIFY(QDir().mkdir(path));
}

template <const char* content>
void replaceBy(const QString& path)
{
    writeFile(path, content);
}

void nestTooDeep(const QString& path)
{
    writeFile(path, nested(501));
}

constexpr char truncated[] = "<ServerConfiguration><UaServerConfig><Trace>";
constexpr char noXml[] = "[Trace]\nFile=x\n";
constexpr char binary[] = "\x7f"
                          "ELF\x02\x01\x01";
constexpr char empty[] = "";

const Damage damages[] = {
    {"missing", remove, QByteArray()},      {"folder in its place", replaceByFolder, QByteArray()},
    {"empty", replaceBy<empty>, empty},     {"truncated", replaceBy<truncated>, truncated},
    {"no XML", replaceBy<noXml>, noXml},    {"binary", replaceBy<binary>, binary},
    {"too deep", nestTooDeep, nested(501)},
};

void addDamages()
{
    QTest::addColumn<const Damage*>("damage");
    for (const Damage& damage : damages) {
        QTest::newRow(damage.name) << &damage;
    }
}

/// Marks the tab dirty with a value that no file of these tests holds.
void edit(const TraceTab& tab)
{
    TraceTab::typeNumber(tab.maxBackup(), u"77"_s);
}

} // namespace

class VeskTraceSettingsFailuresTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void unreadable_file_shows_the_initial_values_data() { addDamages(); }
    static void unreadable_file_shows_the_initial_values();
    static void failed_revert_keeps_values_and_dirty_data() { addDamages(); }
    static void failed_revert_keeps_values_and_dirty();
    static void failed_revert_stays_clean();
    static void failed_apply_keeps_values_dirty_and_file_data() { addDamages(); }
    static void failed_apply_keeps_values_dirty_and_file();
    static void file_without_permission_is_not_read();
    static void file_without_write_permission_keeps_dirty();
    static void read_only_disk_keeps_dirty();
    static void full_disk_keeps_dirty_and_the_old_file();
    static void text_that_xml_forbids_is_not_written();
    static void folder_name_is_no_file();
};

void VeskTraceSettingsFailuresTest::unreadable_file_shows_the_initial_values()
{
    QFETCH(const Damage*, damage);

    const QTemporaryDir directory;
    const QString path = writeFile(directory.filePath(u"ServerConfig.xml"_s), sampleConfig());
    damage->inflict(path);
    const VeskTraceSettingsWidget widget(path, QString());
    QCOMPARE(widget.findChild<QLineEdit*>(u"lineEdit_traceFile"_s)->text(), u"srvTrace.log"_s);
    QCOMPARE(widget.findChild<QSpinBox*>(u"spinBox_maxEntries"_s)->value(), 100000);
    QVERIFY(!widget.m_bDirty);
    QVERIFY(!widget.findChild<QPushButton*>(u"pushButton_apply"_s)->isEnabled());
    QVERIFY(!widget.findChild<QPushButton*>(u"pushButton_revert"_s)->isEnabled());
}

void VeskTraceSettingsFailuresTest::failed_revert_keeps_values_and_dirty()
{
    QFETCH(const Damage*, damage);

    const TraceTab tab(sampleConfig());
    edit(tab);
    damage->inflict(tab.path);
    TraceTab::click(tab.revert());
    QVERIFY(tab.isDirty());
    QCOMPARE(tab.maxBackup().value(), 77);
    QCOMPARE(tab.fileContent(), damage->content);
}

void VeskTraceSettingsFailuresTest::failed_revert_stays_clean()
{
    TraceTab tab(sampleConfig());
    remove(tab.path);
    tab.widget.reload();
    QVERIFY(tab.isClean());
    QCOMPARE(tab.maxBackup().value(), 3);
}

void VeskTraceSettingsFailuresTest::failed_apply_keeps_values_dirty_and_file()
{
    QFETCH(const Damage*, damage);

    const TraceTab tab(sampleConfig());
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    edit(tab);
    damage->inflict(tab.path);
    TraceTab::click(tab.apply());
    QVERIFY(tab.isDirty());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(tab.maxBackup().value(), 77);
    QCOMPARE(tab.fileContent(), damage->content);
}

void VeskTraceSettingsFailuresTest::file_without_permission_is_not_read()
{
    const TraceTab tab(sampleConfig());
    edit(tab);
    QVERIFY(QFile::setPermissions(tab.path, QFileDevice::Permissions()));
    {
        const Unprivileged user;
        TraceTab::click(tab.revert());
        QVERIFY(tab.isDirty());
        TraceTab::click(tab.apply());
        QVERIFY(tab.isDirty());
    }
    QVERIFY(QFile::setPermissions(tab.path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
    QCOMPARE(tab.fileContent(), sampleConfig());
}

void VeskTraceSettingsFailuresTest::file_without_write_permission_keeps_dirty()
{
    const TraceTab tab(sampleConfig());
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    QVERIFY(QFile::setPermissions(tab.directory.path(), QFileDevice::Permissions::fromInt(0x7755)));
    QVERIFY(QFile::setPermissions(tab.path, QFileDevice::Permissions::fromInt(0x4444)));
    edit(tab);
    {
        const Unprivileged user;
        TraceTab::click(tab.apply());
        QVERIFY(tab.isDirty());
        QCOMPARE(saved.count(), 0);
        QCOMPARE(tab.fileContent(), sampleConfig());
        QCOMPARE(tab.maxBackup().value(), 77);
        TraceTab::click(tab.revert()); // reading goes on
        QVERIFY(tab.isClean());
        QCOMPARE(tab.maxBackup().value(), 3);
    }
}

void VeskTraceSettingsFailuresTest::read_only_disk_keeps_dirty()
{
    SmallDisk disk(64);
    if (!disk.isMounted()) {
        QSKIP(qPrintable(disk.reason()));
    }
    const QString path = writeFile(disk.filePath(u"ServerConfig.xml"_s), sampleConfig());
    VeskTraceSettingsWidget widget(path, QString());
    const QSignalSpy saved(&widget, &VeskTraceSettingsWidget::changesSaved);
    QTest::keyClick(widget.findChild<QComboBox*>(u"comboBox_appTraceLevel"_s), Qt::Key_Home);
    QVERIFY(widget.m_bDirty);
    QVERIFY(disk.makeReadOnly());
    widget.save();
    QVERIFY(widget.m_bDirty);
    QCOMPARE(saved.count(), 0);
    QCOMPARE(readFile(path), sampleConfig());
}

void VeskTraceSettingsFailuresTest::full_disk_keeps_dirty_and_the_old_file()
{
    SmallDisk disk(64);
    if (!disk.isMounted()) {
        QSKIP(qPrintable(disk.reason()));
    }
    const QByteArray content = serverConfig("<Trace><UaAppTraceFile>old</UaAppTraceFile></Trace>");
    const QString path = writeFile(disk.filePath(u"ServerConfig.xml"_s), content);
    disk.fillUpTo(0);
    VeskTraceSettingsWidget widget(path, QString());
    const QSignalSpy saved(&widget, &VeskTraceSettingsWidget::changesSaved);
    // More than the room that the old file leaves when it is truncated.
    auto* input = widget.findChild<QLineEdit*>(u"lineEdit_traceFile"_s);
    input->selectAll();
    QTest::keyClick(input, Qt::Key_X);
    input->setText(QString(20000, u'x'));
    widget.save();
    QVERIFY(widget.m_bDirty);
    QCOMPARE(saved.count(), 0);
    QCOMPARE(readFile(path), content);
    QCOMPARE(input->text().size(), 20000);
}

void VeskTraceSettingsFailuresTest::text_that_xml_forbids_is_not_written()
{
    const TraceTab tab(sampleConfig());
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    edit(tab);
    tab.traceFile().setText(u"a\u0001.log"_s); // as from the clipboard
    TraceTab::click(tab.apply());
    QVERIFY(tab.isDirty());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(tab.fileContent(), sampleConfig());
}

void VeskTraceSettingsFailuresTest::folder_name_is_no_file()
{
    const QTemporaryDir directory;
    VeskTraceSettingsWidget widget(directory.path(), QString());
    QVERIFY(!widget.m_bDirty);
    QTest::keyClick(widget.findChild<QComboBox*>(u"comboBox_appTraceLevel"_s), Qt::Key_End);
    widget.save();
    QVERIFY(widget.m_bDirty);
}

QTEST_MAIN(VeskTraceSettingsFailuresTest)
#include "vesktracesettingswidget_failures_test.moc"
