#include "widgets/displaytext.h"

#include <QStringBuilder>

namespace {

constexpr qsizetype lineLength = 60;
constexpr QChar zeroWidthSpace(0x200b);

/// The next position that doesn't part a surrogate pair.
qsizetype wholeCharacter(const QString& text, qsizetype position)
{
    const bool isInside = position > 0 && position < text.size() &&
                          text[position].isLowSurrogate() && text[position - 1].isHighSurrogate();
    return isInside ? position + 1 : position;
}

bool isDirectionMark(QChar character)
{
    const char16_t unit = character.unicode();
    return unit == 0x061c || unit == 0x200e || unit == 0x200f ||
           (unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069);
}

QString breakable(const QString& text)
{
    QString result;
    for (qsizetype from = 0; from < text.size();) {
        const qsizetype to = wholeCharacter(text, qMin(from + lineLength, text.size()));
        result += QStringView(text).sliced(from, to - from);
        result += zeroWidthSpace;
        from = to;
    }
    return result;
}

} // namespace

QString cutForDisplay(const QString& text, qsizetype limit)
{
    if (text.size() <= limit) {
        return text;
    }
    const qsizetype headEnd = wholeCharacter(text, limit / 2);
    const qsizetype tailBegin = wholeCharacter(text, text.size() - limit / 2);
    return QStringView(text).first(headEnd) % QChar(0x2026) % QStringView(text).sliced(tailBegin);
}

QString lineForDisplay(const QString& text, qsizetype limit)
{
    QString line = cutForDisplay(text, limit);
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar character = line.at(i);
        const bool isControl = character.category() == QChar::Other_Control;
        if (character.isSpace()) {
            if (character != u' ' && character != QChar::Nbsp) {
                line[i] = u' ';
            }
        } else if (isControl || isDirectionMark(character)) {
            line[i] = QChar::ReplacementCharacter;
        }
    }
    return line;
}

QString plainToolTip(const QString& text)
{
    // Tooltips know no plain text format and guess.
    return QStringLiteral("<p>%1</p>").arg(breakable(cutForDisplay(text)).toHtmlEscaped());
}
