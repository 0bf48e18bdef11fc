#pragma once

#include <QByteArray>
#include <QString>

// Passwords are overwritten after use. Qt's texts share their memory and leave what they outgrow
// behind, so this goes only as far as Qt allows.

/// A copy that shares no memory with the text, so that each of both can be wiped without the other.
[[nodiscard]] QString unsharedCopy(const QString& text);

/// Overwrites the characters, in this text and in all that share its memory, and empties the text.
void wipe(QString& text);
void wipe(QByteArray& bytes);
