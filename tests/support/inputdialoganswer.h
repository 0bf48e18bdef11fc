#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class QInputDialog;

/// Answers the input dialogs that a test expects, as a person would: waits for each, looks at its
/// title and prompt, types a text and presses Enter, or presses Escape. Make it before the action; ask
/// verdict() after it.
class InputDialogAnswer : public QObject
{
    Q_OBJECT

public:
    struct Expected
    {
        QString title;
        QString prompt;
        QString typed; ///< Null presses Escape.
    };

    /// Expects these dialogs in this order; an empty list expects that none is shown.
    explicit InputDialogAnswer(QList<Expected> expected);

    /// Empty when exactly the expected dialogs were shown, each with an empty input; otherwise what was
    /// wrong. A superfluous dialog is cancelled, so that a failing test ends.
    [[nodiscard]] QString verdict() const;

private:
    void look();
    void answer(QInputDialog& dialog);

    QList<Expected> m_expected;
    qsizetype m_shown = 0;
    QStringList m_problems;
    QTimer m_timer;
};
