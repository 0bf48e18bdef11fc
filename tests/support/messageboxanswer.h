#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

/// Answers the message boxes that a test expects, as a person would: waits for each, looks at its
/// title and text, and clicks a button. Make it before the action; ask verdict() after it:
///
///     MessageBoxAnswer answer(title, text, QMessageBox::Ok);
///     QTest::mouseClick(button, Qt::LeftButton);
///     QCOMPARE(answer.verdict(), QString());
class MessageBoxAnswer : public QObject
{
    Q_OBJECT

public:
    struct Expected
    {
        QString title;
        QString text;
        QMessageBox::StandardButton answer;
    };

    MessageBoxAnswer(const QString& title, const QString& text, QMessageBox::StandardButton answer);

    /// Expects these boxes in this order; an empty list expects that none is shown.
    explicit MessageBoxAnswer(QList<Expected> expected);

    /// Empty when exactly the expected boxes were shown; otherwise what was wrong. A wrong or
    /// superfluous box is dismissed, so that a failing test ends.
    [[nodiscard]] QString verdict() const;

    /// The same as one bool.
    [[nodiscard]] bool wasShown() const { return verdict().isEmpty(); }

    /// Called with each box before it is answered.
    void setInspection(std::function<void(QMessageBox&)> inspection);

private:
    void look();
    void answer(QMessageBox& box);
    static void dismiss(QMessageBox& box);

    QList<Expected> m_expected;
    qsizetype m_shown = 0;
    QStringList m_problems;
    std::function<void(QMessageBox&)> m_inspection;
    QTimer m_timer;
};
