#include "console/configguard.h"

#include <QLatin1StringView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 indentWidth = 2;

/// Walks over the markup of a text. Every skip function starts at an opening "<" and ends behind
/// the closing ">", or at the end of a text that lacks it; the parser refuses such a text anyway.
class MarkupScanner
{
public:
    explicit MarkupScanner(QStringView text)
        : m_text(text)
    {
    }

    MarkupExtent measure()
    {
        while (m_extent.isWithinLimits() && m_at < m_text.size()) {
            const qsizetype begin = m_at;
            const qsizetype end = m_text.indexOf(u'<', begin);
            m_at = end < 0 ? m_text.size() : end;
            noteText(m_at - begin);
            if (end >= 0) {
                skipMarkup();
            }
        }
        if (m_extent.declaresEntities) {
            m_extent.references = m_text.count(u'&');
        }
        return m_extent;
    }

private:
    [[nodiscard]] bool isAt(QLatin1StringView mark) const
    {
        return m_text.sliced(m_at).startsWith(mark);
    }

    void noteText(qsizetype size)
    {
        m_extent.longestText = std::max<qint64>(m_extent.longestText, size);
    }

    void skipBehind(QLatin1StringView mark)
    {
        const qsizetype end = m_text.indexOf(mark, m_at);
        m_at = end < 0 ? m_text.size() : end + mark.size();
    }

    void skipMarkup()
    {
        const qsizetype begin = m_at;
        const QChar next = m_at + 1 < m_text.size() ? m_text[m_at + 1] : QChar();
        m_extent.indent += indentWidth * std::max(m_depth, 0);
        if (next == u'/') {
            --m_depth;
            skipBehind(">"_L1);
            return;
        }
        ++m_extent.nodes;
        if (next == u'!') {
            skipDeclaration();
            noteText(m_at - begin);
        } else if (next == u'?') {
            m_extent.isUnforeseeable |= !hasPlainTarget();
            skipBehind("?>"_L1);
            m_extent.hasInstructions |= begin > 0; // what stands first declares the text as XML
        } else {
            skipStartTag();
        }
    }

    /// The parser takes any name of an instruction without content, but refuses a bad one in the text
    /// form, which puts a blank behind it: such a document couldn't be read back.
    [[nodiscard]] bool hasPlainTarget() const
    {
        qsizetype end = m_at + 2;
        while (end < m_text.size() && isPlainNameCharacter(m_text[end])) {
            ++end;
        }
        if (end == m_text.size()) {
            return true; // cut off: no matter what the name would be
        }
        const QChar first = m_text[m_at + 2];
        if (u"? \t\r\n>"_s.contains(first)) {
            return true; // no name at all, which the parser refuses
        }
        return u"? \t\r\n"_s.contains(m_text[end]) &&
               (first.isLetter() || first == u'_' || first == u':');
    }

    [[nodiscard]] static bool isPlainNameCharacter(QChar c)
    {
        return c.unicode() < 0x80 &&
               (c.isLetterOrNumber() || c == u'_' || c == u'-' || c == u'.' || c == u':');
    }

    void skipDeclaration()
    {
        if (isAt("<!--"_L1)) {
            m_at += 4; // so that "<!-->" doesn't end the comment that it begins
            skipBehind("-->"_L1);
        } else if (isAt("<![CDATA["_L1)) {
            skipBehind("]]>"_L1);
        } else {
            skipDocumentType();
        }
    }

    /// The document type may hold quoted texts, and in its brackets comments, instructions and
    /// declarations, all of which may hold the characters that end it.
    void skipDocumentType()
    {
        bool inBrackets = false;
        for (m_at += 2; m_at < m_text.size(); ++m_at) {
            const QChar c = m_text[m_at];
            if (c == u'"' || c == u'\'') {
                skipQuoted(c);
            } else if (c == u'[') {
                inBrackets = true;
            } else if (c == u']') {
                inBrackets = false;
            } else if (c == u'%') {
                m_extent.isUnforeseeable = true;
            } else if (c == u'<') {
                skipInDocumentType();
            } else if (c == u'>' && !inBrackets) {
                ++m_at;
                return;
            }
        }
    }

    /// Ends at the last character of a comment or instruction, or at the "<" of a declaration.
    void skipInDocumentType()
    {
        if (isAt("<!--"_L1)) {
            m_at += 4;
            skipBehind("-->"_L1);
            --m_at;
        } else if (isAt("<?"_L1)) {
            skipBehind("?>"_L1);
            --m_at;
        } else {
            m_extent.declaresEntities |= isAt("<!ENTITY"_L1);
            m_extent.isUnforeseeable |= isAt("<!ATTLIST"_L1);
        }
    }

    /// Ends at the closing quote.
    void skipQuoted(QChar quote)
    {
        const qsizetype end = m_text.indexOf(quote, m_at + 1);
        m_at = end < 0 ? m_text.size() - 1 : end;
    }

    void skipStartTag()
    {
        m_extent.depth = std::max(m_extent.depth, m_depth + 1);
        qint64 attributes = 0;
        for (++m_at; m_at < m_text.size() && m_text[m_at] != u'>'; ++m_at) {
            const QChar c = m_text[m_at];
            if (c == u'"' || c == u'\'') {
                ++attributes;
                const qsizetype begin = m_at;
                skipQuoted(c);
                noteText(m_at - begin);
            }
        }
        noteAttributes(attributes);
        const bool isEmptyElement = m_text[m_at - 1] == u'/';
        m_depth += isEmptyElement ? 0 : 1;
        ++m_at;
    }

    void noteAttributes(qint64 attributes)
    {
        if (attributes > 0) {
            m_extent.attributes = std::max(m_extent.attributes, attributes);
            m_extent.nodes += 5 + 2 * attributes + attributes * attributes / 50;
        }
    }

    QStringView m_text;
    qsizetype m_at = 0;
    int m_depth = 0; ///< Open elements.
    MarkupExtent m_extent;
};

constexpr qsizetype blockSize = 64;

/// The characters that nearly every text consists of; written so that the compiler looks at many of
/// them at once.
bool isCommon(char16_t c)
{
    return (static_cast<char16_t>(c - 0x20) < 0xD800 - 0x20) | (c == u'\n');
}

qsizetype countCommonBlocks(QStringView text)
{
    qsizetype at = 0;
    for (; at + blockSize <= text.size(); at += blockSize) {
        unsigned common = 1;
        for (qsizetype i = 0; i < blockSize; ++i) {
            common &= static_cast<unsigned>(isCommon(text.utf16()[at + i]));
        }
        if (common == 0) {
            break;
        }
    }
    return at;
}

bool isXmlUnit(char16_t c)
{
    return c >= 0x20 ? c < 0xFFFE : c == u'\t' || c == u'\n' || c == u'\r';
}

bool isSurrogatePair(QStringView text)
{
    return text.size() >= 2 && text[0].isHighSurrogate() && text[1].isLowSurrogate();
}

} // namespace

MarkupExtent measureMarkup(QStringView text)
{
    return MarkupScanner(text).measure();
}

bool isXmlText(QStringView text)
{
    while (!text.isEmpty()) {
        text = text.sliced(countCommonBlocks(text));
        const QStringView block = text.first(qMin<qsizetype>(text.size(), blockSize));
        qsizetype at = 0;
        while (at < block.size()) {
            if (isSurrogatePair(text.sliced(at))) {
                at += 2;
            } else if (!text[at].isSurrogate() && isXmlUnit(text[at].unicode())) {
                ++at;
            } else {
                return false;
            }
        }
        text = text.sliced(at);
    }
    return true;
}
