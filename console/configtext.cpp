#include "console/configtext.h"

#include "console/domwalk.h"

#include <QStringList>

#include <algorithm>

namespace {

using TextForm::pieceSize;

/// Steps that escaping the attributes of one document may take, about a second's worth.
constexpr qint64 maxEscapeSteps = 1'000'000'000;

bool isEscaped(QChar c)
{
    return c == u'&' || c == u'<' || c == u'"' || c == u'\r' || c == u'\n' || c == u'\t';
}

void sortAttributes(QDomElement element)
{
    const QDomNamedNodeMap attributes = element.attributes();
    QStringList names;
    names.reserve(attributes.count());
    for (int i = 0; i < attributes.count(); ++i) {
        names.append(attributes.item(i).nodeName());
    }
    std::sort(names.begin(), names.end());

    QList<QDomAttr> sorted;
    sorted.reserve(names.size());
    for (const QString& name : names) {
        sorted.append(element.removeAttributeNode(element.attributeNode(name)));
    }
    for (const QDomAttr& attribute : sorted) {
        element.setAttributeNode(attribute);
    }
}

class Preparation
{
public:
    bool visit(const QDomElement& element)
    {
        if (element.hasAttributes()) {
            visitAttributes(element);
        }
        for (QDomNode node = element.firstChild(); !node.isNull(); node = node.nextSibling()) {
            if (node.isText() && !node.isCDATASection()) {
                visitText(node.toText());
            }
        }
        return m_steps <= maxEscapeSteps;
    }

    [[nodiscard]] TextFormReadiness result() const
    {
        return {.isLinear = m_steps <= maxEscapeSteps, .isReshaped = m_isReshaped};
    }

private:
    void visitAttributes(const QDomElement& element)
    {
        const QDomNamedNodeMap attributes = element.attributes();
        for (int i = 0; i < attributes.count(); ++i) {
            const QString value = attributes.item(i).nodeValue();
            if (value.size() > pieceSize) {
                m_steps += value.size() * std::count_if(value.begin(), value.end(), isEscaped);
            }
        }
        if (attributes.count() > 1) {
            sortAttributes(element);
        }
    }

    void visitText(QDomText node)
    {
        if (node.previousSibling().isProcessingInstruction() &&
            node.nodeValue().startsWith(u'\n')) {
            node.setNodeValue(node.nodeValue().sliced(1));
            m_isReshaped = true;
        }
        if (node.nodeValue().size() > pieceSize) {
            cut(node);
            m_isReshaped = true;
        }
    }

    /// The node keeps the last piece, so that a walk over the siblings goes on behind it.
    static void cut(QDomText& node)
    {
        const QString text = node.nodeValue();
        QDomNode parent = node.parentNode();
        QDomDocument document = node.ownerDocument();
        qsizetype begin = 0;
        while (text.size() - begin > pieceSize) {
            const qsizetype end = endOfPiece(text, begin + pieceSize);
            parent.insertBefore(document.createTextNode(text.sliced(begin, end - begin)), node);
            begin = end;
        }
        node.setNodeValue(text.sliced(begin));
    }

    /// A ">" is escaped only behind the two brackets before it, which must stay in its piece.
    static qsizetype endOfPiece(const QString& text, qsizetype end)
    {
        while (end < text.size() && text[end - 1] == u']') {
            ++end;
        }
        return end;
    }

    qint64 m_steps = 0;
    bool m_isReshaped = false;
};

} // namespace

TextFormReadiness prepareTextForm(const QDomDocument& document)
{
    Preparation preparation;
    visitElements(document, [&preparation](const QDomElement& element, int) {
        return preparation.visit(element);
    });
    return preparation.result();
}
