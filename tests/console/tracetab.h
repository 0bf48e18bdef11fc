#pragma once

#include "console/vesktracesettingswidget.h"
#include "tests/support/configsample.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// The tab "Trace" on a configuration file of its own in a new directory, with its widgets by their
/// object names.
class TraceTab
{
public:
    explicit TraceTab(const QByteArray& content, const QString& tracePath = QString())
        : path(writeFile(directory.filePath(QStringLiteral("ServerConfig.xml")), content))
        , widget(path, tracePath)
    {
        widget.show();
    }

    template <typename T>
    [[nodiscard]] T& child(const char* name) const
    {
        T* found = widget.findChild<T*>(QLatin1StringView(name));
        if (!found) {
            qFatal("no %s in the form", name);
        }
        return *found;
    }

    [[nodiscard]] QLineEdit& traceFile() const { return child<QLineEdit>("lineEdit_traceFile"); }
    [[nodiscard]] QSpinBox& maxEntries() const { return child<QSpinBox>("spinBox_maxEntries"); }
    [[nodiscard]] QSpinBox& maxBackup() const { return child<QSpinBox>("spinBox_maxBackupFiles"); }
    [[nodiscard]] QCheckBox& app() const { return child<QCheckBox>("checkBox_appTraceEnabled"); }
    [[nodiscard]] QCheckBox& stack() const
    {
        return child<QCheckBox>("checkBox_stackTraceEnabled");
    }
    [[nodiscard]] QComboBox& appLevel() const { return child<QComboBox>("comboBox_appTraceLevel"); }
    [[nodiscard]] QComboBox& stackLevel() const
    {
        return child<QComboBox>("comboBox_stackTraceLevel");
    }
    [[nodiscard]] QPushButton& apply() const { return child<QPushButton>("pushButton_apply"); }
    [[nodiscard]] QPushButton& revert() const { return child<QPushButton>("pushButton_revert"); }

    /// Types into the trace file's input, in place of what it holds.
    void typeTraceFile(const QString& text) const
    {
        traceFile().selectAll();
        for (const QChar character : text) {
            // QTest's own keys are those of ASCII.
            QTest::sendKeyEvent(QTest::Click, &traceFile(), Qt::Key_unknown, QString(character),
                                Qt::NoModifier);
        }
    }

    /// Types a number into a spin box, in place of what it holds.
    static void typeNumber(QSpinBox& box, const QString& number)
    {
        box.selectAll();
        QTest::keyClicks(&box, number);
    }

    static void click(QAbstractButton& button)
    {
        const QPoint center = button.rect().center();
        // A check box takes a click on its indicator, which stands at its left.
        const bool isCheckBox = qobject_cast<QCheckBox*>(&button) != nullptr;
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier,
                          isCheckBox ? QPoint(8, center.y()) : center);
    }

    /// Whether the flag and both buttons agree on it.
    [[nodiscard]] bool isDirty() const
    {
        return widget.m_bDirty && apply().isEnabled() && revert().isEnabled();
    }
    [[nodiscard]] bool isClean() const
    {
        return !widget.m_bDirty && !apply().isEnabled() && !revert().isEnabled();
    }

    [[nodiscard]] QByteArray fileContent() const { return readFile(path); }

    QTemporaryDir directory;
    QString path;
    VeskTraceSettingsWidget widget;
};
