#include "console/configguard.h"

#include <QLatin1StringView>

using namespace Qt::StringLiterals;

namespace {

/// Walks over the markup of a text. Every skip function starts at an opening "<" and ends behind
/// the closing ">", or at the end of a text that lacks it; the parser refuses such a text anyway.
class MarkupScanner
{
public:
    explicit MarkupScanner(QStringView text)
        : m_text(text)
    {
    }

    bool isWithinLimits()
    {
        while ((m_at = m_text.indexOf(u'<', m_at)) >= 0) {
            if (!skipMarkup()) {
                return false;
            }
        }
        return true;
    }

private:
    [[nodiscard]] bool isAt(QLatin1StringView mark) const
    {
        return m_text.sliced(m_at).startsWith(mark);
    }

    void skipBehind(QLatin1StringView mark)
    {
        const qsizetype end = m_text.indexOf(mark, m_at);
        m_at = end < 0 ? m_text.size() : end + mark.size();
    }

    bool skipMarkup()
    {
        const QChar next = m_at + 1 < m_text.size() ? m_text[m_at + 1] : QChar();
        if (next == u'/') {
            --m_depth;
            skipBehind(">"_L1);
            return true;
        }
        if (next == u'!') {
            skipDeclaration();
            return true;
        }
        if (next == u'?') {
            skipBehind("?>"_L1);
            return true;
        }
        return skipStartTag();
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
            } else if (c == u'<' && isAt("<!--"_L1)) {
                m_at += 4;
                skipBehind("-->"_L1);
                --m_at;
            } else if (c == u'<' && isAt("<?"_L1)) {
                skipBehind("?>"_L1);
                --m_at;
            } else if (c == u'>' && !inBrackets) {
                ++m_at;
                return;
            }
        }
    }

    void skipQuoted(QChar quote)
    {
        const qsizetype end = m_text.indexOf(quote, m_at + 1);
        m_at = end < 0 ? m_text.size() : end;
    }

    bool skipStartTag()
    {
        int attributes = 0;
        for (++m_at; m_at < m_text.size(); ++m_at) {
            const QChar c = m_text[m_at];
            if (c == u'"' || c == u'\'') {
                if (++attributes > ConfigLimits::maxAttributes) {
                    return false;
                }
                skipQuoted(c);
            } else if (c == u'>') {
                const bool isEmptyElement = m_text[m_at - 1] == u'/';
                ++m_at;
                return isEmptyElement ? m_depth < ConfigLimits::maxDepth
                                      : ++m_depth <= ConfigLimits::maxDepth;
            }
        }
        return true;
    }

    QStringView m_text;
    qsizetype m_at = 0;
    int m_depth = 0;
};

bool isXmlUnit(char16_t c)
{
    return c >= 0x20 ? c < 0xFFFE : c == u'\t' || c == u'\n' || c == u'\r';
}

} // namespace

bool isWithinLimits(QStringView text)
{
    return MarkupScanner(text).isWithinLimits();
}

bool isXmlText(QStringView text)
{
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char16_t c = text[at].unicode();
        if (QChar::isSurrogate(c)) {
            const bool isPair =
                QChar::isHighSurrogate(c) && at + 1 < text.size() && text[at + 1].isLowSurrogate();
            if (!isPair) {
                return false;
            }
            ++at;
        } else if (!isXmlUnit(c)) {
            return false;
        }
    }
    return true;
}
