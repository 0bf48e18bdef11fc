#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class QFileDialog;

/// Answers the one file dialog that a test expects, as a person would: waits for it, notes what it
/// shows, then types a name and presses Enter, or presses Escape. Make it before the action. While
/// it lives, file dialogs are Qt's own, not the desktop's.
class FileDialogAnswer : public QObject
{
    Q_OBJECT

public:
    /// A name in the folder that the dialog shows; an empty one cancels.
    explicit FileDialogAnswer(const QString& typedName);
    ~FileDialogAnswer() override;

    [[nodiscard]] int timesShown() const { return m_timesShown; }
    [[nodiscard]] QString title() const { return m_title; }
    [[nodiscard]] QStringList nameFilters() const { return m_nameFilters; }
    [[nodiscard]] QString directory() const { return m_directory; } ///< Absolute, where it opened.
    [[nodiscard]] QString fileName() const { return m_fileName; }   ///< As it stood in the input.
    [[nodiscard]] QWidget* parentWidget() const { return m_pParent; }
    [[nodiscard]] bool isForSaving() const { return m_isForSaving; }

private:
    void look();
    void note(const QFileDialog& dialog);

    QString m_typedName;
    bool m_wasNative;
    int m_timesShown = 0;
    QString m_title;
    QStringList m_nameFilters;
    QString m_directory;
    QString m_fileName;
    QWidget* m_pParent = nullptr;
    bool m_isForSaving = false;
    QTimer m_timer;
};
