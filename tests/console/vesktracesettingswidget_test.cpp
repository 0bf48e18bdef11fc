#include "console/vesktracesettingswidget.h"
#include "tests/console/tracetab.h"
#include "tests/support/filedialoganswer.h"

#include <QDesktopServices>
#include <QDir>
#include <QDomDocument>
#include <QFileInfo>
#include <QSignalSpy>
#include <QToolButton>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// What the form shows, so that one comparison covers it all.
struct Shown
{
    QString traceFile;
    int maxEntries = 0;
    int maxBackup = 0;
    bool isAppOn = false;
    QString appLevel;
    bool isStackOn = false;
    QString stackLevel;
    bool operator==(const Shown&) const = default;
};

/// The values of sampleConfig().
Shown sampleValues()
{
    return {u"[TracePath]/srvTrace.log"_s, 50000, 3, true, u"Info"_s, false, u"ERROR"_s};
}

/// The values that the form has before a file gives it others.
Shown initialValues()
{
    return {u"srvTrace.log"_s, 100000, 5, false, u"Errors"_s, false, u"ERROR"_s};
}

Shown shownBy(const TraceTab& tab)
{
    return {tab.traceFile().text(),        tab.maxEntries().value(),     tab.maxBackup().value(),
            tab.app().isChecked(),         tab.appLevel().currentText(), tab.stack().isChecked(),
            tab.stackLevel().currentText()};
}

/// The text of an element of the file's Trace.
QString inFile(const TraceTab& tab, const QString& name)
{
    QDomDocument document;
    if (!document.setContent(tab.fileContent())) {
        return u"not well-formed"_s;
    }
    return document.documentElement()
        .firstChildElement(u"UaServerConfig"_s)
        .firstChildElement(u"Trace"_s)
        .firstChildElement(name)
        .text();
}

QByteArray trace(const QByteArray& content)
{
    return serverConfig("<Trace>" + content + "</Trace>");
}

/// Line breaks and indents may change when a document is written.
QByteArray withoutSpace(const QByteArray& text)
{
    return text.simplified().replace(' ', "");
}

/// Takes URLs in place of the desktop.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler(u"file"_s, this, "take"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    QList<QUrl> urls;

public Q_SLOTS:
    void take(const QUrl& url) { urls.append(url); }
};

} // namespace

class VeskTraceSettingsWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void load_shows_what_the_file_holds_data();
    static void load_shows_what_the_file_holds();
    static void load_takes_the_levels_of_the_lists_data();
    static void load_takes_the_levels_of_the_lists();
    static void load_limits_numbers_to_the_spin_box_data();
    static void load_limits_numbers_to_the_spin_box();
    static void load_without_trace_element_keeps_the_form_data();
    static void load_without_trace_element_keeps_the_form();
    static void every_edit_sets_dirty_data();
    static void every_edit_sets_dirty();
    static void stack_trace_follows_the_application_trace_off();
    static void application_trace_follows_the_stack_trace_on();
    static void apply_writes_exactly_the_edited_values();
    static void apply_writes_each_level_data();
    static void apply_writes_each_level();
    static void apply_keeps_what_it_does_not_know();
    static void apply_leaves_elements_without_text_and_does_not_read_again();
    static void apply_with_an_unknown_level_writes_an_empty_one();
    static void apply_writes_the_limit_of_a_number_beyond_it();
    static void apply_tells_once();
    static void apply_twice_gives_the_same_bytes();
    static void revert_takes_the_file_again();
    static void save_and_reload_do_what_the_buttons_do();
    static void trace_path_stands_for_the_placeholder_data();
    static void trace_path_stands_for_the_placeholder();
    static void chosen_file_goes_into_the_form();
    static void file_dialog_opens_where_the_trace_file_lies_data();
    static void file_dialog_opens_where_the_trace_file_lies();
    static void cancelled_file_dialog_changes_nothing();
    static void folder_of_the_trace_file_opens_data();
    static void folder_of_the_trace_file_opens();
};

void VeskTraceSettingsWidgetTest::load_shows_what_the_file_holds_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Shown>("expected");

    QTest::newRow("sample") << sampleConfig() << sampleValues();
    QTest::newRow("empty Trace") << trace({}) << Shown{{}, 0, 0, false, {}, false, {}};
    QTest::newRow("elements without text")
        << trace("<UaAppTraceFile/><UaAppTraceMaxEntries/><UaAppTraceMaxBackup/>"
                 "<UaAppTraceEnabled/><UaAppTraceLevel/><UaStackTraceEnabled/>"
                 "<UaStackTraceLevel/>")
        << Shown{};
    QTest::newRow("first of repeated elements")
        << trace("<UaAppTraceMaxBackup>1</UaAppTraceMaxBackup>"
                 "<UaAppTraceMaxBackup>2</UaAppTraceMaxBackup>")
        << Shown{{}, 0, 1, false, {}, false, {}};
    QTest::newRow("first of repeated Trace")
        << serverConfig("<Trace><UaAppTraceFile>1</UaAppTraceFile></Trace>"
                        "<Trace><UaAppTraceFile>2</UaAppTraceFile></Trace>")
        << Shown{u"1"_s, 0, 0, false, {}, false, {}};
    QTest::newRow("only the direct children count")
        << trace("<Other><UaAppTraceFile>1</UaAppTraceFile></Other>") << Shown{};
    QTest::newRow("CDATA, comment and instruction")
        << trace("<?p q?><UaAppTraceFile><![CDATA[a<b>]]></UaAppTraceFile><!-- c -->"
                 "<UaAppTraceMaxBackup>1<!-- c -->2</UaAppTraceMaxBackup>")
        << Shown{u"a<b>"_s, 0, 12, false, {}, false, {}};
    QTest::newRow("not Latin") << trace("<UaAppTraceFile>журнал/跟踪😀.log</UaAppTraceFile>")
                               << Shown{u"журнал/跟踪😀.log"_s, 0, 0, false, {}, false, {}};
    QTest::newRow("wrong numbers") << trace("<UaAppTraceMaxEntries>many</UaAppTraceMaxEntries>"
                                            "<UaAppTraceMaxBackup>1.5</UaAppTraceMaxBackup>")
                                   << Shown{};
    QTest::newRow("switches") << trace("<UaAppTraceEnabled>FALSE</UaAppTraceEnabled>"
                                       "<UaStackTraceEnabled>true</UaStackTraceEnabled>")
                              << Shown{{}, 0, 0, false, {}, true, {}};
    QTest::newRow("levels that aren't in the list")
        << trace("<UaAppTraceLevel>All</UaAppTraceLevel>"
                 "<UaStackTraceLevel>TRACE</UaStackTraceLevel>")
        << Shown{};
    QTest::newRow("levels in another case") << trace("<UaAppTraceLevel>info</UaAppTraceLevel>"
                                                     "<UaStackTraceLevel>Error</UaStackTraceLevel>")
                                            << Shown{};
    QTest::newRow("levels with a space") << trace("<UaAppTraceLevel> Info</UaAppTraceLevel>"
                                                  "<UaStackTraceLevel>ERROR </UaStackTraceLevel>")
                                         << Shown{};
    QTest::newRow("level of the other trace")
        << trace("<UaAppTraceLevel>ERROR</UaAppTraceLevel>"
                 "<UaStackTraceLevel>Errors</UaStackTraceLevel>")
        << Shown{};
    QTest::newRow("document element's name doesn't matter")
        << QByteArray("<x><UaServerConfig><Trace><UaAppTraceFile>f</UaAppTraceFile></Trace>"
                      "</UaServerConfig></x>")
        << Shown{u"f"_s, 0, 0, false, {}, false, {}};
}

void VeskTraceSettingsWidgetTest::load_shows_what_the_file_holds()
{
    QFETCH(const QByteArray, content);
    QFETCH(const Shown, expected);

    const TraceTab tab(content);
    const Shown shown = shownBy(tab);
    QCOMPARE(shown.traceFile, expected.traceFile);
    QCOMPARE(shown.maxEntries, expected.maxEntries);
    QCOMPARE(shown.maxBackup, expected.maxBackup);
    QCOMPARE(shown.isAppOn, expected.isAppOn);
    QCOMPARE(shown.appLevel, expected.appLevel);
    QCOMPARE(shown.isStackOn, expected.isStackOn);
    QCOMPARE(shown.stackLevel, expected.stackLevel);
    QCOMPARE(tab.appLevel().currentIndex() == -1, expected.appLevel.isEmpty());
    QCOMPARE(tab.stackLevel().currentIndex() == -1, expected.stackLevel.isEmpty());
    QVERIFY(tab.isClean());
    QCOMPARE(tab.fileContent(), content);
}

void VeskTraceSettingsWidgetTest::load_takes_the_levels_of_the_lists_data()
{
    QTest::addColumn<bool>("isApp");
    QTest::addColumn<int>("index");

    for (const char* level :
         {"Errors", "Warning", "Info", "InterfaceCall", "CtorDtor", "ProgramFlow", "Data"}) {
        static int index = 0;
        QTest::newRow(level) << true << index++;
    }
    for (const char* level : {"ERROR", "WARNING", "SYSTEM", "INFO", "DEBUG", "CONTENT"}) {
        static int index = 0;
        QTest::newRow(level) << false << index++;
    }
}

void VeskTraceSettingsWidgetTest::load_takes_the_levels_of_the_lists()
{
    QFETCH(const bool, isApp);
    QFETCH(const int, index);

    const QByteArray element = isApp ? "UaAppTraceLevel" : "UaStackTraceLevel";
    const TraceTab tab(trace("<" + element + ">" + QTest::currentDataTag() + "</" + element + ">"));
    QCOMPARE(tab.appLevel().currentIndex(), isApp ? index : -1);
    QCOMPARE(tab.stackLevel().currentIndex(), isApp ? -1 : index);
}

void VeskTraceSettingsWidgetTest::load_limits_numbers_to_the_spin_box_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("below") << QByteArray("-1") << 0;
    QTest::newRow("least") << QByteArray("0") << 0;
    QTest::newRow("greatest") << QByteArray("9999999") << 9999999;
    QTest::newRow("one more") << QByteArray("10000000") << 9999999;
    QTest::newRow("greatest integer") << QByteArray("2147483647") << 9999999;
    QTest::newRow("no integer any more") << QByteArray("2147483648") << 0;
}

void VeskTraceSettingsWidgetTest::load_limits_numbers_to_the_spin_box()
{
    QFETCH(const QByteArray, text);
    QFETCH(const int, expected);

    const TraceTab tab(trace("<UaAppTraceMaxEntries>" + text + "</UaAppTraceMaxEntries>" +
                             "<UaAppTraceMaxBackup>" + text + "</UaAppTraceMaxBackup>"));
    QCOMPARE(tab.maxEntries().value(), expected);
    QCOMPARE(tab.maxBackup().value(), expected);
    QVERIFY(tab.isClean());
}

void VeskTraceSettingsWidgetTest::load_without_trace_element_keeps_the_form_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("no UaServerConfig") << QByteArray("<ServerConfiguration/>");
    QTest::newRow("no Trace") << serverConfig("<ServerName>x</ServerName>");
    QTest::newRow("Trace elsewhere")
        << QByteArray("<ServerConfiguration><Trace><UaAppTraceFile>x</UaAppTraceFile></Trace>"
                      "<UaServerConfig/></ServerConfiguration>");
}

void VeskTraceSettingsWidgetTest::load_without_trace_element_keeps_the_form()
{
    QFETCH(const QByteArray, content);

    const TraceTab tab(content);
    QVERIFY(shownBy(tab) == initialValues());
    QVERIFY(tab.isClean());

    tab.typeTraceFile(u"edited.log"_s);
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    TraceTab::click(tab.apply());
    QCOMPARE(saved.count(), 0);
    QVERIFY(tab.isDirty()); // nothing was written
    QCOMPARE(tab.fileContent(), content);

    TraceTab::click(tab.revert());
    QVERIFY(tab.isClean());
    QCOMPARE(tab.traceFile().text(), u"edited.log"_s);
}

void VeskTraceSettingsWidgetTest::every_edit_sets_dirty_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<int>("key"); // 0 is a click

    QTest::newRow("trace file") << u"lineEdit_traceFile"_s << int(Qt::Key_A);
    QTest::newRow("max. entries, typed") << u"spinBox_maxEntries"_s << int(Qt::Key_1);
    QTest::newRow("max. entries, stepped") << u"spinBox_maxEntries"_s << int(Qt::Key_Up);
    QTest::newRow("max. backup files, typed") << u"spinBox_maxBackupFiles"_s << int(Qt::Key_1);
    QTest::newRow("max. backup files, stepped") << u"spinBox_maxBackupFiles"_s << int(Qt::Key_Down);
    QTest::newRow("application trace, clicked") << u"checkBox_appTraceEnabled"_s << 0;
    QTest::newRow("application trace, by key")
        << u"checkBox_appTraceEnabled"_s << int(Qt::Key_Space);
    QTest::newRow("application trace level") << u"comboBox_appTraceLevel"_s << int(Qt::Key_Down);
    QTest::newRow("application trace level, by letter")
        << u"comboBox_appTraceLevel"_s << int(Qt::Key_W);
    QTest::newRow("stack trace, clicked") << u"checkBox_stackTraceEnabled"_s << 0;
    QTest::newRow("stack trace, by key") << u"checkBox_stackTraceEnabled"_s << int(Qt::Key_Space);
    QTest::newRow("stack trace level") << u"comboBox_stackTraceLevel"_s << int(Qt::Key_Down);
}

void VeskTraceSettingsWidgetTest::every_edit_sets_dirty()
{
    QFETCH(const QString, widget);
    QFETCH(const int, key);

    const TraceTab tab(sampleConfig());
    QVERIFY(tab.isClean());
    auto& input = tab.child<QWidget>(widget.toLatin1().constData());
    if (key == 0) {
        TraceTab::click(tab.child<QCheckBox>(widget.toLatin1().constData()));
    } else {
        QTest::keyClick(&input, static_cast<Qt::Key>(key));
    }
    QVERIFY(tab.isDirty());
    QVERIFY(shownBy(tab) != sampleValues());
    QCOMPARE(tab.fileContent(), sampleConfig()); // only Apply writes
}

void VeskTraceSettingsWidgetTest::stack_trace_follows_the_application_trace_off()
{
    const TraceTab tab(trace("<UaAppTraceEnabled>true</UaAppTraceEnabled>"
                             "<UaStackTraceEnabled>true</UaStackTraceEnabled>"));
    TraceTab::click(tab.app());
    QVERIFY(!tab.app().isChecked());
    QVERIFY(!tab.stack().isChecked());
    QVERIFY(tab.isDirty());

    TraceTab::click(tab.app());
    QVERIFY(tab.app().isChecked());
    QVERIFY(!tab.stack().isChecked());
}

void VeskTraceSettingsWidgetTest::application_trace_follows_the_stack_trace_on()
{
    const TraceTab tab(trace("<UaAppTraceEnabled>false</UaAppTraceEnabled>"
                             "<UaStackTraceEnabled>false</UaStackTraceEnabled>"));
    TraceTab::click(tab.stack());
    QVERIFY(tab.stack().isChecked());
    QVERIFY(tab.app().isChecked());
    QVERIFY(tab.isDirty());

    TraceTab::click(tab.stack());
    QVERIFY(!tab.stack().isChecked());
    QVERIFY(tab.app().isChecked());
}

void VeskTraceSettingsWidgetTest::apply_writes_exactly_the_edited_values()
{
    const TraceTab tab(sampleConfig());
    tab.typeTraceFile(u"/var/log/журнал & <1>.log"_s);
    TraceTab::typeNumber(tab.maxEntries(), u"123456"_s);
    TraceTab::typeNumber(tab.maxBackup(), u"9"_s);
    TraceTab::click(tab.stack());
    QTest::keyClick(&tab.appLevel(), Qt::Key_End);
    QTest::keyClick(&tab.stackLevel(), Qt::Key_End);
    TraceTab::click(tab.apply());

    QByteArray expected = sampleConfig();
    expected.replace(R"("1.0" encoding="UTF-8")", "'1.0' encoding='UTF-8'"); // Qt's quotes
    expected.replace("[TracePath]/srvTrace.log", "/var/log/журнал &amp; &lt;1>.log");
    expected.replace("50000", "123456");
    expected.replace("Backup>3<", "Backup>9<");
    expected.replace("UaStackTraceEnabled>false", "UaStackTraceEnabled>true");
    expected.replace("UaAppTraceLevel>Info", "UaAppTraceLevel>Data");
    expected.replace("UaStackTraceLevel>ERROR", "UaStackTraceLevel>CONTENT");
    QCOMPARE(tab.fileContent(), expected);
    QVERIFY(tab.isClean());
}

void VeskTraceSettingsWidgetTest::apply_writes_each_level_data()
{
    QTest::addColumn<QString>("element");
    QTest::addColumn<int>("steps");

    for (const char* level :
         {"Errors", "Warning", "Info", "InterfaceCall", "CtorDtor", "ProgramFlow", "Data"}) {
        static int steps = 0;
        QTest::newRow(level) << u"UaAppTraceLevel"_s << steps++;
    }
    for (const char* level : {"ERROR", "WARNING", "SYSTEM", "INFO", "DEBUG", "CONTENT"}) {
        static int steps = 0;
        QTest::newRow(level) << u"UaStackTraceLevel"_s << steps++;
    }
}

void VeskTraceSettingsWidgetTest::apply_writes_each_level()
{
    QFETCH(const QString, element);
    QFETCH(const int, steps);

    const TraceTab tab(trace("<UaAppTraceLevel>x</UaAppTraceLevel>"
                             "<UaStackTraceLevel>x</UaStackTraceLevel>"));
    QComboBox& combo = element == u"UaAppTraceLevel"_s ? tab.appLevel() : tab.stackLevel();
    QTest::keyClick(&combo, Qt::Key_Home);
    for (int i = 0; i < steps; ++i) {
        QTest::keyClick(&combo, Qt::Key_Down);
    }
    TraceTab::click(tab.apply());
    QCOMPARE(inFile(tab, element), QString::fromLatin1(QTest::currentDataTag()));
}

void VeskTraceSettingsWidgetTest::apply_keeps_what_it_does_not_know()
{
    const QByteArray content = R"(<?xml version='1.0' encoding='UTF-8'?>
<!-- before -->
<Any version="2">
  <UaServerConfig>
    <Unknown a="1">
      <Deep/>
    </Unknown>
    <Trace>
      <Unknown>kept</Unknown>
      <UaAppTraceFile note="x">old<!-- and why --></UaAppTraceFile>
      <UaAppTraceFile>second</UaAppTraceFile>
    </Trace>
    <![CDATA[<raw>]]>
  </UaServerConfig>
  <Журнал>текст</Журнал>
</Any>
)";
    const TraceTab tab(content);
    tab.typeTraceFile(u"new"_s);
    TraceTab::click(tab.apply());
    QByteArray expected = content;
    expected.replace(">old<", ">new<");
    QCOMPARE(withoutSpace(tab.fileContent()), withoutSpace(expected));
}

void VeskTraceSettingsWidgetTest::apply_leaves_elements_without_text_and_does_not_read_again()
{
    const TraceTab tab(trace("<UaAppTraceFile/><UaAppTraceMaxEntries/><UaAppTraceMaxBackup/>"
                             "<UaAppTraceEnabled/><UaAppTraceLevel/><UaStackTraceEnabled/>"
                             "<UaStackTraceLevel>x</UaStackTraceLevel>"));
    tab.typeTraceFile(u"lost.log"_s);
    TraceTab::typeNumber(tab.maxEntries(), u"7"_s);
    TraceTab::click(tab.app());
    QTest::keyClick(&tab.stackLevel(), Qt::Key_End);
    TraceTab::click(tab.apply());

    QVERIFY(tab.isClean());
    QCOMPARE(inFile(tab, u"UaAppTraceFile"_s), QString());
    QCOMPARE(inFile(tab, u"UaAppTraceMaxEntries"_s), QString());
    QCOMPARE(inFile(tab, u"UaAppTraceEnabled"_s), QString());
    QCOMPARE(inFile(tab, u"UaStackTraceLevel"_s), u"CONTENT"_s);
    // The form goes on showing what the file didn't take.
    QCOMPARE(tab.traceFile().text(), u"lost.log"_s);
    QCOMPARE(tab.maxEntries().value(), 7);
    QVERIFY(tab.app().isChecked());

    TraceTab::click(tab.app());
    TraceTab::click(tab.revert());
    QCOMPARE(tab.traceFile().text(), QString());
    QCOMPARE(tab.maxEntries().value(), 0);
}

void VeskTraceSettingsWidgetTest::apply_with_an_unknown_level_writes_an_empty_one()
{
    const TraceTab tab(trace("<UaAppTraceLevel>Everything</UaAppTraceLevel>"
                             "<UaAppTraceMaxBackup>1</UaAppTraceMaxBackup>"));
    QCOMPARE(tab.appLevel().currentIndex(), -1);
    QCOMPARE(tab.appLevel().currentText(), QString());
    TraceTab::typeNumber(tab.maxBackup(), u"2"_s);
    TraceTab::click(tab.apply());
    QVERIFY(tab.fileContent().contains("<UaAppTraceLevel/>"));
    QCOMPARE(inFile(tab, u"UaAppTraceMaxBackup"_s), u"2"_s);
}

void VeskTraceSettingsWidgetTest::apply_writes_the_limit_of_a_number_beyond_it()
{
    const TraceTab tab(trace("<UaAppTraceMaxEntries>20000000</UaAppTraceMaxEntries>"
                             "<UaAppTraceMaxBackup>1</UaAppTraceMaxBackup>"));
    TraceTab::typeNumber(tab.maxBackup(), u"2"_s);
    TraceTab::click(tab.apply());
    QCOMPARE(inFile(tab, u"UaAppTraceMaxEntries"_s), u"9999999"_s);
}

void VeskTraceSettingsWidgetTest::apply_tells_once()
{
    const TraceTab tab(sampleConfig());
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    bool wasDirtyAtSignal = true;
    connect(&tab.widget, &VeskTraceSettingsWidget::changesSaved, &tab.widget,
            [&] { wasDirtyAtSignal = tab.widget.m_bDirty; });
    TraceTab::click(tab.app());
    QCOMPARE(saved.count(), 0);
    TraceTab::click(tab.apply());
    QCOMPARE(saved.count(), 1);
    QVERIFY(!wasDirtyAtSignal);
    TraceTab::click(tab.apply()); // disabled by now
    QCOMPARE(saved.count(), 1);
}

void VeskTraceSettingsWidgetTest::apply_twice_gives_the_same_bytes()
{
    TraceTab tab(R"(<a d="1" c="2" b="3"><UaServerConfig y="1" x="2"><Trace><UaAppTraceFile>f)"
                 R"(</UaAppTraceFile></Trace></UaServerConfig></a>)");
    tab.widget.save();
    const QByteArray first = tab.fileContent();
    QVERIFY(first.contains("\n  <UaServerConfig"));
    tab.widget.save();
    QCOMPARE(tab.fileContent(), first);
}

void VeskTraceSettingsWidgetTest::revert_takes_the_file_again()
{
    const TraceTab tab(sampleConfig());
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    tab.typeTraceFile(u"x"_s);
    TraceTab::typeNumber(tab.maxEntries(), u"1"_s);
    TraceTab::typeNumber(tab.maxBackup(), u"1"_s);
    TraceTab::click(tab.app());
    TraceTab::click(tab.stack());
    QTest::keyClick(&tab.appLevel(), Qt::Key_Home);
    QTest::keyClick(&tab.stackLevel(), Qt::Key_End);
    TraceTab::click(tab.revert());
    QVERIFY(shownBy(tab) == sampleValues());
    QVERIFY(tab.isClean());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(tab.fileContent(), sampleConfig());

    QByteArray changed = sampleConfig();
    writeFile(tab.path, changed.replace("50000", "60000")); // another program does
    QTest::keyClick(&tab.appLevel(), Qt::Key_Home);
    TraceTab::click(tab.revert());
    QCOMPARE(tab.maxEntries().value(), 60000);
}

void VeskTraceSettingsWidgetTest::save_and_reload_do_what_the_buttons_do()
{
    TraceTab tab(sampleConfig());
    const QSignalSpy saved(&tab.widget, &VeskTraceSettingsWidget::changesSaved);
    tab.typeTraceFile(u"new.log"_s);
    tab.widget.save();
    QCOMPARE(saved.count(), 1);
    QVERIFY(tab.isClean());
    QCOMPARE(inFile(tab, u"UaAppTraceFile"_s), u"new.log"_s);

    tab.typeTraceFile(u"newer.log"_s);
    tab.widget.reload();
    QCOMPARE(tab.traceFile().text(), u"new.log"_s);
    QVERIFY(tab.isClean());
    QCOMPARE(saved.count(), 1);
}

void VeskTraceSettingsWidgetTest::trace_path_stands_for_the_placeholder_data()
{
    QTest::addColumn<QString>("tracePath");
    QTest::addColumn<QString>("inFileBefore");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("inFileAfter");

    QTest::newRow("empty path keeps the placeholder")
        << QString() << u"[TracePath]/a.log"_s << u"[TracePath]/a.log"_s << u"[TracePath]\\b.log"_s
        << u"[TracePath]\\b.log"_s;
    QTest::newRow("path") << u"/var/trace"_s << u"[TracePath]/a.log"_s << u"/var/trace/a.log"_s
                          << u"/var/trace/b.log"_s << u"[TracePath]/b.log"_s;
    QTest::newRow("path with backslashes")
        << u"C:\\Server\\trace"_s << u"[TracePath]/a.log"_s << u"C:/Server/trace/a.log"_s
        << u"C:\\Server\\trace\\b.log"_s << u"[TracePath]/b.log"_s;
    QTest::newRow("other folder") << u"/var/trace"_s << u"[TracePath]/a.log"_s
                                  << u"/var/trace/a.log"_s << u"D:\\b.log"_s << u"D:/b.log"_s;
    QTest::newRow("placeholder in another case")
        << u"/var/trace"_s << u"[tracepath]/a.log"_s << u"[tracepath]/a.log"_s
        << u"/VAR/TRACE/b.log"_s << u"/VAR/TRACE/b.log"_s;
}

void VeskTraceSettingsWidgetTest::trace_path_stands_for_the_placeholder()
{
    QFETCH(const QString, tracePath);
    QFETCH(const QString, inFileBefore);
    QFETCH(const QString, shown);
    QFETCH(const QString, typed);
    QFETCH(const QString, inFileAfter);

    const TraceTab tab(trace("<UaAppTraceFile>" + inFileBefore.toUtf8() + "</UaAppTraceFile>"),
                       tracePath);
    QCOMPARE(tab.traceFile().text(), shown);
    tab.typeTraceFile(typed);
    TraceTab::click(tab.apply());
    QCOMPARE(inFile(tab, u"UaAppTraceFile"_s), inFileAfter);
    QCOMPARE(tab.traceFile().text(), typed);
}

void VeskTraceSettingsWidgetTest::chosen_file_goes_into_the_form()
{
    const TraceTab tab(sampleConfig());
    const QString chosen = tab.directory.filePath(u"chosen.log"_s);
    tab.traceFile().setText(tab.directory.filePath(u"old.log"_s));
    const FileDialogAnswer answer(u"chosen.log"_s);
    TraceTab::click(tab.child<QToolButton>("toolButton_setTraceFile"));
    QCOMPARE(answer.timesShown(), 1);
    QCOMPARE(answer.title(), u"Choose Trace File Location"_s);
    QCOMPARE(answer.nameFilters(), QStringList({u"Logfiles (*.log)"_s, u"All Files (*.*)"_s}));
    QCOMPARE(answer.parentWidget(), &tab.widget);
    QVERIFY(answer.isForSaving());
    QCOMPARE(tab.traceFile().text(), chosen);
    QVERIFY(tab.isDirty());
    QVERIFY(!QFileInfo::exists(chosen));
}

void VeskTraceSettingsWidgetTest::file_dialog_opens_where_the_trace_file_lies_data()
{
    QTest::addColumn<QString>("traceFile");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("fileName");

    const QString here = QDir::currentPath();
    QTest::newRow("absolute") << u"/usr/srv.log"_s << u"/usr"_s << u"srv.log"_s;
    QTest::newRow("relative to the working directory") << u"srv.log"_s << here << u"srv.log"_s;
    QTest::newRow("not Latin") << u"/usr/журнал.log"_s << u"/usr"_s << u"журнал.log"_s;
}

void VeskTraceSettingsWidgetTest::file_dialog_opens_where_the_trace_file_lies()
{
    QFETCH(const QString, traceFile);
    QFETCH(const QString, directory);
    QFETCH(const QString, fileName);

    const TraceTab tab(trace("<UaAppTraceFile>" + traceFile.toUtf8() + "</UaAppTraceFile>"));
    const FileDialogAnswer answer{QString()};
    TraceTab::click(tab.child<QToolButton>("toolButton_setTraceFile"));
    QCOMPARE(answer.timesShown(), 1);
    QCOMPARE(answer.directory(), directory);
    QCOMPARE(answer.fileName(), fileName);
}

void VeskTraceSettingsWidgetTest::cancelled_file_dialog_changes_nothing()
{
    const TraceTab tab(sampleConfig());
    const FileDialogAnswer answer{QString()};
    TraceTab::click(tab.child<QToolButton>("toolButton_setTraceFile"));
    QCOMPARE(answer.timesShown(), 1);
    QVERIFY(shownBy(tab) == sampleValues());
    QVERIFY(tab.isClean());
}

void VeskTraceSettingsWidgetTest::folder_of_the_trace_file_opens_data()
{
    QTest::addColumn<QString>("traceFile");
    QTest::addColumn<QString>("folder");

    QTest::newRow("absolute, file needn't exist") << u"/no/such/srv.log"_s << u"/no/such"_s;
    QTest::newRow("relative") << u"srv.log"_s << QDir::currentPath();
    QTest::newRow("relative with a folder")
        << u"logs/srv.log"_s << QDir::currentPath() + u"/logs"_s;
    QTest::newRow("root") << u"/srv.log"_s << u"/"_s;
    QTest::newRow("characters that a URL escapes")
        << u"/tmp/a b#c?d%20/журнал.log"_s << u"/tmp/a b#c?d%20"_s;
    QTest::newRow("no web address")
        << u"https://host/srv.log"_s << QDir::currentPath() + u"/https:/host"_s;
}

void VeskTraceSettingsWidgetTest::folder_of_the_trace_file_opens()
{
    QFETCH(const QString, traceFile);
    QFETCH(const QString, folder);

    const TraceTab tab(trace("<UaAppTraceFile>" + traceFile.toUtf8() + "</UaAppTraceFile>"));
    UrlCatcher catcher;
    TraceTab::click(tab.child<QPushButton>("pushButton_openTraceFolder"));
    QCOMPARE(catcher.urls.size(), 1);
    QVERIFY(catcher.urls.constFirst().isLocalFile());
    QCOMPARE(catcher.urls.constFirst().toLocalFile(), folder);
    QVERIFY(tab.isClean());
}

QTEST_MAIN(VeskTraceSettingsWidgetTest)
#include "vesktracesettingswidget_test.moc"
