#pragma once

#include <QStringView>

/// What a configuration text may hold at most. The XML parser takes quadratic time for deep or
/// attribute-rich input and its text form recurses once a level, so that a text beyond these limits
/// is refused before it is parsed.
struct ConfigLimits
{
    static constexpr qint64 maxBytes = 64 * 1024 * 1024;
    static constexpr int maxDepth = 500;
    static constexpr int maxAttributes = 1000;
};

/// Whether no element of an XML text lies deeper than ConfigLimits::maxDepth or carries more
/// attributes than ConfigLimits::maxAttributes. One linear pass that knows comments, CDATA sections,
/// processing instructions and the document type; it doesn't judge whether the text is well-formed.
/// Elements that the text hides in entities of its own are not seen: see isShallow().
[[nodiscard]] bool isWithinLimits(QStringView text);

/// Whether a text consists of characters that XML 1.0 allows (section 2.2, production Char), that
/// is, whether the parser takes each of them back when they are written.
[[nodiscard]] bool isXmlText(QStringView text);
