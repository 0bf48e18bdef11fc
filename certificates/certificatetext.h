#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

class UaDateTime;
class UaString;
class UaStringArray;

// Values of the base layer as those of Qt.

/// The text, decoded from UTF-8.
[[nodiscard]] QString toQString(const UaString& text);

[[nodiscard]] QStringList toQStringList(const UaStringArray& texts);

/// The texts, joined by ", ".
[[nodiscard]] QString toJoinedText(const UaStringArray& texts);

/// The time as local time; its last digits, below a millisecond, are cut off.
[[nodiscard]] QDateTime toLocalDateTime(const UaDateTime& time);
