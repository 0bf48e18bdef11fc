#include "tests/support/filedialoganswer.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

FileDialogAnswer::FileDialogAnswer(const QString& typedName)
    : m_typedName(typedName)
    , m_wasNative(!QCoreApplication::testAttribute(Qt::AA_DontUseNativeDialogs))
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    connect(&m_timer, &QTimer::timeout, this, &FileDialogAnswer::look);
    m_timer.start(5);
}

FileDialogAnswer::~FileDialogAnswer()
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, !m_wasNative);
}

void FileDialogAnswer::look()
{
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (!dialog || !dialog->isVisible()) {
        return;
    }
    auto* input = dialog->findChild<QLineEdit*>(u"fileNameEdit"_s);
    if (m_timesShown++ > 0 || !input) {
        dialog->reject(); // so that a failing test ends
        return;
    }
    note(*dialog);
    m_fileName = input->text();
    if (m_typedName.isEmpty()) {
        QTest::keyClick(dialog, Qt::Key_Escape);
        return;
    }
    input->setCompleter(nullptr); // its list comes at any time and takes the key
    input->selectAll();
    QTest::keyClicks(input, m_typedName);
    QTest::keyClick(input, Qt::Key_Enter);
}

void FileDialogAnswer::note(const QFileDialog& dialog)
{
    m_title = dialog.windowTitle();
    m_nameFilters = dialog.nameFilters();
    m_directory = dialog.directory().absolutePath();
    m_pParent = dialog.parentWidget();
    m_isForSaving = dialog.acceptMode() == QFileDialog::AcceptSave;
}
