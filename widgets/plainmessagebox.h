#pragma once

#include <QMessageBox>

/// Shows a modal message box like the static functions of QMessageBox, but always as plain text:
/// file names and other texts from outside may hold markup. The text can be selected and copied.
/// Returns the button that was pressed;
/// closing the box counts as the escape button.
QMessageBox::StandardButton
showPlainMessageBox(QWidget* parent, QMessageBox::Icon icon, const QString& title,
                    const QString& text, QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);
