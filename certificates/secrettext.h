#pragma once

#include <QByteArray>
#include <QString>

class UaByteArray;

// Passwords and keys are overwritten after use. Qt's texts share their memory and leave what they
// outgrow behind, so this goes only as far as Qt allows.

/// A copy that shares no memory with the text, so that each of both can be wiped without the other.
[[nodiscard]] QString unsharedCopy(const QString& text);

/// Overwrites what the object holds, in it and in all that share its memory, and empties it.
void wipe(QString& text);
void wipe(QByteArray& bytes);
void wipe(UaByteArray& bytes);
