#include "tests/support/messageboxanswer.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

MessageBoxAnswer::MessageBoxAnswer(const QString& title, const QString& text,
                                   QMessageBox::StandardButton answer)
    : MessageBoxAnswer(QList<Expected>{{title, text, answer}})
{
}

MessageBoxAnswer::MessageBoxAnswer(QList<Expected> expected)
    : m_expected(std::move(expected))
{
    connect(&m_timer, &QTimer::timeout, this, &MessageBoxAnswer::look);
    m_timer.start(5);
}

QString MessageBoxAnswer::verdict() const
{
    QStringList problems = m_problems;
    for (qsizetype i = m_shown; i < m_expected.size(); ++i) {
        problems.append(u"not shown: "_s + m_expected[i].title);
    }
    return problems.join(u'\n');
}

void MessageBoxAnswer::setInspection(std::function<void(QMessageBox&)> inspection)
{
    m_inspection = std::move(inspection);
}

void MessageBoxAnswer::look()
{
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box && box->isVisible()) {
        answer(*box);
    }
}

void MessageBoxAnswer::answer(QMessageBox& box)
{
    if (m_shown >= m_expected.size()) {
        m_problems.append(u"not expected: %1: %2"_s.arg(box.windowTitle(), box.text()));
        dismiss(box);
        return;
    }
    const Expected& expected = m_expected[m_shown++];
    if (box.windowTitle() != expected.title || box.text() != expected.text) {
        m_problems.append(u"expected %1: %2\nbut got %3: %4"_s.arg(expected.title, expected.text,
                                                                   box.windowTitle(), box.text()));
    }
    if (m_inspection) {
        m_inspection(box);
    }
    QAbstractButton* button = box.button(expected.answer);
    if (!button) {
        m_problems.append(u"no such button in "_s + box.windowTitle());
        dismiss(box);
        return;
    }
    QTest::mouseClick(button, Qt::LeftButton);
}

void MessageBoxAnswer::dismiss(QMessageBox& box)
{
    box.done(box.standardButton(box.buttons().constLast()));
}
