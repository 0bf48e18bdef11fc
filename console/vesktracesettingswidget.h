#pragma once

#include <QString>
#include <QWidget>

#include <memory>

class QDomElement;

namespace Ui {
class VeskTraceSettingsWidget;
}

/// The tab "Trace": edits the server's trace settings, the Trace element of the configuration file.
/// The values are for the server; the console itself writes no trace.
///
/// The file is read when the tab is made, on Revert and by reload(), and rewritten on Apply and by
/// save(). The tab reports nothing: when the file can't be read or written, the values stay in the
/// form and m_bDirty stays set.
class VeskTraceSettingsWidget : public QWidget
{
    Q_OBJECT

public:
    /// Loads configFile. A non-empty tracePath stands in the form wherever the file's trace file
    /// name has the placeholder "[TracePath]"; its backslashes become slashes.
    explicit VeskTraceSettingsWidget(const QString& configFile, const QString& tracePath,
                                     QWidget* parent = nullptr);
    ~VeskTraceSettingsWidget() override;

    /// Writes the form into the file, like Apply. Clears m_bDirty and emits changesSaved() only
    /// when the file took it. A file without a Trace element is left as it is.
    void save() { sltSaveConfiguration(); }

    /// Takes the file's values into the form, like Revert, and clears m_bDirty. A file without a
    /// Trace element leaves the values in the form.
    void reload() { sltLoadConfiguration(); }

private:
    std::unique_ptr<Ui::VeskTraceSettingsWidget> ui;

public:
    bool m_bDirty = false; ///< The form holds unsaved changes. Read by the main window.

Q_SIGNALS:
    /// The file was rewritten.
    void changesSaved();

public Q_SLOTS:
    void sltSaveConfiguration();
    void sltLoadConfiguration();
    void sltTraceFileEdited(QString sFileName);
    void sltMaxEntriesChanged(int iValue);
    void sltMaxBackupFilesChanged(int iValue);

    /// Switching the application trace off also switches the stack trace off.
    void sltAppTraceClicked(bool bEnabled);
    void sltAppTraceLevelActivated(QString sValue);

    /// Switching the stack trace on also switches the application trace on.
    void sltStackTraceClicked(bool bEnabled);
    void sltStackTraceLevelActivated(QString sValue);

    /// Lets the operator pick the trace file. Cancel changes nothing.
    void sltSetTraceFileClicked();

    /// Opens the trace file's folder with the desktop. A relative name is taken from the console's
    /// working directory; the file needn't exist.
    void sltOpenTraceFolderClicked();

protected:
    void changeEvent(QEvent* event) override;

private:
    void connectForm();
    void alignLabels();
    void setDirty(bool bDirty);
    void readForm(const QDomElement& trace) const;
    void writeForm(const QDomElement& trace);

    QString m_configFile;
    QString m_tracePath;
};
