#include "console/vesktracesettingswidget.h"
#include "tests/console/tracetab.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QMetaMethod>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

/// What can take the focus, in reading order.
const char* const inputs[] = {
    "lineEdit_traceFile",     "toolButton_setTraceFile",    "pushButton_openTraceFolder",
    "spinBox_maxEntries",     "spinBox_maxBackupFiles",     "checkBox_appTraceEnabled",
    "comboBox_appTraceLevel", "checkBox_stackTraceEnabled", "comboBox_stackTraceLevel",
    "pushButton_apply",       "pushButton_revert"};

QString textOf(const QWidget& widget)
{
    return widget.property(qobject_cast<const QGroupBox*>(&widget) ? "title" : "text").toString();
}

QStringList itemsOf(const QComboBox& combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i) {
        items.append(combo.itemText(i));
    }
    return items;
}

void turnWheel(QWidget& widget)
{
    const QPointF center = QRectF(widget.rect()).center();
    QWheelEvent event(center, widget.mapToGlobal(center), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

} // namespace

class VeskTraceSettingsFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void widgets_carry_their_texts_and_tooltips_data();
    static void widgets_carry_their_texts_and_tooltips();
    static void form_has_its_title_and_size();
    static void inputs_begin_with_their_initial_values();
    static void levels_run_from_the_fewest_messages_to_the_most();
    static void signal_and_slots_keep_their_order();
    static void every_input_is_named();
    static void tab_key_walks_in_reading_order();
    static void nothing_is_cut_data();
    static void nothing_is_cut();
    static void small_window_scrolls_to_the_focus();
    static void labels_stay_aligned_when_the_font_grows();
    static void wheel_changes_only_what_has_the_focus();
};

void VeskTraceSettingsFormTest::widgets_carry_their_texts_and_tooltips_data()
{
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");

    const QByteArray group = "QGroupBox";
    const QByteArray label = "QLabel";
    const QByteArray button = "QPushButton";
    QTest::newRow("groupBox") << group << u"General"_s << QString();
    QTest::newRow("label") << label << u"Trace File"_s << u"The file to store the trace to"_s;
    QTest::newRow("toolButton_setTraceFile")
        << QByteArray("QToolButton") << u"..."_s
        << u"Open a file dialog to choose the file to save the trace to"_s;
    QTest::newRow("pushButton_openTraceFolder")
        << button << u"Open Folder..."_s << u"Open the folder containing the trace file(s)"_s;
    QTest::newRow("label_2") << label << u"Max. Entries"_s
                             << u"The maximum number of trace entries per trace file"_s;
    QTest::newRow("label_3") << label << u"Max. Backup Files"_s
                             << u"The maximum number of trace backup files that will be created"_s;
    QTest::newRow("groupBox_2") << group << u"Application Trace"_s << QString();
    QTest::newRow("label_5") << label << u"Enabled"_s << u"Enables the application trace"_s;
    QTest::newRow("label_4") << label << u"Trace Level"_s
                             << u"The trace level for the application trace"_s;
    QTest::newRow("groupBox_3") << group << u"Stack Trace"_s << QString();
    QTest::newRow("label_6") << label << u"Enabled"_s << u"Enables the UA stack trace"_s;
    QTest::newRow("label_7") << label << u"Trace Level"_s
                             << u"The trace level for the UA stack trace"_s;
    QTest::newRow("pushButton_apply") << button << u"Apply"_s << QString();
    QTest::newRow("pushButton_revert") << button << u"Revert"_s << QString();

    // An input tells the same as its label.
    QTest::newRow("lineEdit_traceFile")
        << QByteArray("QLineEdit") << u"srvTrace.log"_s << u"The file to store the trace to"_s;
    QTest::newRow("checkBox_appTraceEnabled")
        << QByteArray("QCheckBox") << QString() << u"Enables the application trace"_s;
    QTest::newRow("checkBox_stackTraceEnabled")
        << QByteArray("QCheckBox") << QString() << u"Enables the UA stack trace"_s;
}

void VeskTraceSettingsFormTest::widgets_carry_their_texts_and_tooltips()
{
    QFETCH(const QByteArray, className);
    QFETCH(const QString, text);
    QFETCH(const QString, toolTip);

    const TraceTab tab{QByteArray()};
    const auto& widget = tab.child<QWidget>(QTest::currentDataTag());
    QCOMPARE(QByteArray(widget.metaObject()->className()), className);
    QCOMPARE(textOf(widget), text);
    QCOMPARE(widget.toolTip(), toolTip);
}

void VeskTraceSettingsFormTest::form_has_its_title_and_size()
{
    const VeskTraceSettingsWidget widget{QString(), QString()};
    QCOMPARE(widget.windowTitle(), u"Trace Settings"_s);
    QCOMPARE(widget.size(), QSize(607, 523));
}

void VeskTraceSettingsFormTest::inputs_begin_with_their_initial_values()
{
    const TraceTab tab{QByteArray()};
    QCOMPARE(tab.traceFile().text(), u"srvTrace.log"_s);
    QCOMPARE(tab.maxEntries().minimum(), 0);
    QCOMPARE(tab.maxEntries().maximum(), 9999999);
    QCOMPARE(tab.maxEntries().value(), 100000);
    QCOMPARE(tab.maxBackup().minimum(), 0);
    QCOMPARE(tab.maxBackup().maximum(), 9999999);
    QCOMPARE(tab.maxBackup().value(), 5);
    QVERIFY(!tab.app().isChecked());
    QVERIFY(!tab.stack().isChecked());
    QCOMPARE(tab.appLevel().currentText(), u"Errors"_s);
    QCOMPARE(tab.stackLevel().currentText(), u"ERROR"_s);
    QVERIFY(tab.isClean());
}

void VeskTraceSettingsFormTest::levels_run_from_the_fewest_messages_to_the_most()
{
    const TraceTab tab{QByteArray()};
    QCOMPARE(itemsOf(tab.appLevel()),
             QStringList({u"Errors"_s, u"Warning"_s, u"Info"_s, u"InterfaceCall"_s, u"CtorDtor"_s,
                          u"ProgramFlow"_s, u"Data"_s}));
    QCOMPARE(itemsOf(tab.stackLevel()), QStringList({u"ERROR"_s, u"WARNING"_s, u"SYSTEM"_s,
                                                     u"INFO"_s, u"DEBUG"_s, u"CONTENT"_s}));
    QVERIFY(!tab.appLevel().isEditable());
    QVERIFY(!tab.stackLevel().isEditable());
}

void VeskTraceSettingsFormTest::signal_and_slots_keep_their_order()
{
    const QMetaObject& meta = VeskTraceSettingsWidget::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        methods.append(meta.method(i).methodSignature());
    }
    QCOMPARE(methods,
             QByteArrayList({"changesSaved()", "sltSaveConfiguration()", "sltLoadConfiguration()",
                             "sltTraceFileEdited(QString)", "sltMaxEntriesChanged(int)",
                             "sltMaxBackupFilesChanged(int)", "sltAppTraceClicked(bool)",
                             "sltAppTraceLevelActivated(QString)", "sltStackTraceClicked(bool)",
                             "sltStackTraceLevelActivated(QString)", "sltSetTraceFileClicked()",
                             "sltOpenTraceFolderClicked()"}));
}

void VeskTraceSettingsFormTest::every_input_is_named()
{
    const TraceTab tab{QByteArray()};
    QHash<const QWidget*, QString> labels;
    for (const QLabel* label : tab.widget.findChildren<QLabel*>()) {
        QVERIFY2(label->buddy(), qPrintable(label->objectName()));
        labels.insert(label->buddy(), label->text());
    }
    const QList<std::pair<const char*, QString>> expected = {
        {"lineEdit_traceFile", u"Trace File"_s},
        {"spinBox_maxEntries", u"Max. Entries"_s},
        {"spinBox_maxBackupFiles", u"Max. Backup Files"_s},
        {"checkBox_appTraceEnabled", u"Enabled"_s},
        {"comboBox_appTraceLevel", u"Trace Level"_s},
        {"checkBox_stackTraceEnabled", u"Enabled"_s},
        {"comboBox_stackTraceLevel", u"Trace Level"_s},
    };
    QCOMPARE(labels.size(), expected.size());
    for (const auto& [input, text] : expected) {
        QCOMPARE(labels.value(&tab.child<QWidget>(input)), text);
    }
    QCOMPARE(tab.child<QToolButton>("toolButton_setTraceFile").accessibleName(),
             u"Choose Trace File"_s);
}

void VeskTraceSettingsFormTest::tab_key_walks_in_reading_order()
{
    TraceTab tab(sampleConfig());
    QVERIFY(QTest::qWaitForWindowActive(&tab.widget));
    tab.traceFile().setFocus();
    TraceTab::typeNumber(tab.maxBackup(), u"9"_s); // so that both buttons are enabled
    for (const char* name : inputs) {
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1StringView(name));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget()->objectName(), u"lineEdit_traceFile"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget()->objectName(), u"pushButton_revert"_s);
}

void VeskTraceSettingsFormTest::nothing_is_cut_data()
{
    QTest::addColumn<double>("scale");

    QTest::newRow("100 percent") << 1.0;
    QTest::newRow("150 percent") << 1.5;
    QTest::newRow("200 percent") << 2.0;
}

void VeskTraceSettingsFormTest::nothing_is_cut()
{
    QFETCH(const double, scale);

    TraceTab tab(sampleConfig());
    QFont font = tab.widget.font();
    font.setPointSizeF(font.pointSizeF() * scale);
    tab.widget.setFont(font);
    tab.widget.resize(800, 480); // what a window of 800 by 600 leaves for the tab
    QVERIFY(QTest::qWaitForWindowExposed(&tab.widget));

    auto& scrollArea = tab.child<QScrollArea>("scrollArea");
    QCOMPARE(scrollArea.horizontalScrollBar()->maximum(), 0);
    for (const QWidget* widget : tab.widget.findChildren<QWidget*>()) {
        if (!widget->isVisible() || widget->objectName().startsWith(u"qt_"_s)) {
            continue;
        }
        const QSize needed = widget->minimumSizeHint();
        QVERIFY2(widget->width() >= needed.width() && widget->height() >= needed.height(),
                 qPrintable(widget->objectName()));
        if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->text()));
        }
    }
    // Whatever has no room can be scrolled to.
    for (const char* name : inputs) {
        auto& input = tab.child<QWidget>(name);
        scrollArea.ensureWidgetVisible(&input);
        QCOMPARE(input.visibleRegion().boundingRect().size(), input.size());
    }
}

void VeskTraceSettingsFormTest::small_window_scrolls_to_the_focus()
{
    TraceTab tab(sampleConfig());
    tab.widget.resize(400, 200);
    QVERIFY(QTest::qWaitForWindowActive(&tab.widget));
    QVERIFY(tab.stackLevel().visibleRegion().isEmpty());
    tab.traceFile().setFocus();
    while (!tab.stackLevel().hasFocus()) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(!tab.apply().hasFocus());
    }
    QCOMPARE(tab.stackLevel().visibleRegion().boundingRect().size(), tab.stackLevel().size());
}

void VeskTraceSettingsFormTest::labels_stay_aligned_when_the_font_grows()
{
    TraceTab tab(sampleConfig());
    const auto left = [&tab](const QWidget& widget) {
        return widget.mapTo(&tab.widget, QPoint(0, 0)).x();
    };
    QFont font = tab.widget.font();
    for (const int growth : {0, 4, 8}) {
        font.setPointSize(font.pointSize() + growth);
        tab.widget.setFont(font);
        QApplication::processEvents();
        const int expected = left(tab.traceFile());
        QCOMPARE(left(tab.maxEntries()), expected);
        QCOMPARE(left(tab.maxBackup()), expected);
        QCOMPARE(left(tab.app()), expected);
        QCOMPARE(left(tab.appLevel()), expected);
        QCOMPARE(left(tab.stack()), expected);
        QCOMPARE(left(tab.stackLevel()), expected);
    }
}

void VeskTraceSettingsFormTest::wheel_changes_only_what_has_the_focus()
{
    TraceTab tab(sampleConfig());
    QVERIFY(QTest::qWaitForWindowActive(&tab.widget));
    tab.traceFile().setFocus();
    for (QWidget* input : std::initializer_list<QWidget*>{&tab.maxEntries(), &tab.maxBackup(),
                                                          &tab.appLevel(), &tab.stackLevel()}) {
        turnWheel(*input);
    }
    QVERIFY(tab.isClean());
    QCOMPARE(tab.maxEntries().value(), 50000);
    QCOMPARE(tab.appLevel().currentText(), u"Info"_s);

    tab.maxEntries().setFocus();
    turnWheel(tab.maxEntries());
    QCOMPARE(tab.maxEntries().value(), 50001);
    tab.appLevel().setFocus();
    turnWheel(tab.appLevel());
    QCOMPARE(tab.appLevel().currentText(), u"Warning"_s);
    QVERIFY(tab.isDirty());
}

QTEST_MAIN(VeskTraceSettingsFormTest)
#include "vesktracesettingswidget_form_test.moc"
