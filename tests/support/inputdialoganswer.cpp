#include "tests/support/inputdialoganswer.h"

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

InputDialogAnswer::InputDialogAnswer(QList<Expected> expected)
    : m_expected(std::move(expected))
{
    connect(&m_timer, &QTimer::timeout, this, &InputDialogAnswer::look);
    m_timer.start(5);
}

QString InputDialogAnswer::verdict() const
{
    QStringList problems = m_problems;
    for (qsizetype i = m_shown; i < m_expected.size(); ++i) {
        problems.append(u"not shown: %1: %2"_s.arg(m_expected[i].title, m_expected[i].prompt));
    }
    return problems.join(u'\n');
}

void InputDialogAnswer::look()
{
    auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
    if (dialog && dialog->isVisible()) {
        answer(*dialog);
    }
}

void InputDialogAnswer::answer(QInputDialog& dialog)
{
    const QString shown = u"%1: %2"_s.arg(dialog.windowTitle(), dialog.labelText());
    if (m_shown >= m_expected.size()) {
        m_problems.append(u"not expected: "_s + shown);
        dialog.reject();
        return;
    }
    const Expected& expected = m_expected[m_shown++];
    if (const QString wanted = u"%1: %2"_s.arg(expected.title, expected.prompt); shown != wanted) {
        m_problems.append(u"expected %1\nbut got %2"_s.arg(wanted, shown));
    }
    if (!dialog.textValue().isEmpty()) {
        m_problems.append(u"not empty: "_s + dialog.textValue());
    }
    if (expected.typed.isNull()) {
        QTest::keyClick(&dialog, Qt::Key_Escape);
        return;
    }
    auto* input = dialog.findChild<QLineEdit*>();
    for (const QChar character : expected.typed) {
        // QTest's own keys are those of ASCII.
        QTest::sendKeyEvent(QTest::Click, input, Qt::Key_unknown, QString(character),
                            Qt::NoModifier);
    }
    QTest::keyClick(input, Qt::Key_Enter);
}
