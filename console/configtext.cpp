#include "console/configtext.h"

#include "console/domwalk.h"

#include <QList>

#include <algorithm>
#include <utility>

using TextForm::pieceSize;

namespace {

/// Steps that escaping the attributes of one document may take, about a second's worth.
constexpr qint64 maxEscapeSteps = 1'000'000'000;

bool isEscaped(QChar c)
{
    return c == u'&' || c == u'<' || c == u'"' || c == u'\r' || c == u'\n' || c == u'\t';
}

/// Each access to an attribute by its number takes a walk, so that this is done once.
QList<QDomAttr> attributesOf(const QDomElement& element)
{
    const QDomNamedNodeMap attributes = element.attributes();
    QList<QDomAttr> list;
    list.reserve(attributes.count());
    for (int i = 0; i < attributes.count(); ++i) {
        list.append(attributes.item(i).toAttr());
    }
    return list;
}

void sortAttributes(QDomElement element, QList<QDomAttr>& attributes)
{
    std::sort(attributes.begin(), attributes.end(),
              [](const QDomAttr& a, const QDomAttr& b) { return a.name() < b.name(); });
    for (const QDomAttr& attribute : std::as_const(attributes)) {
        element.removeAttributeNode(attribute);
    }
    for (const QDomAttr& attribute : std::as_const(attributes)) {
        element.setAttributeNode(attribute);
    }
}

/// Makes the nodes of a document ready for its text form, and puts them back as they were when it
/// goes.
class Preparation
{
public:
    Preparation() = default;
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;

    ~Preparation()
    {
        for (QDomNode& piece : m_pieces) {
            piece.parentNode().removeChild(piece);
        }
        for (Changed& changed : m_changed) {
            changed.node.setNodeValue(changed.text);
        }
    }

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

private:
    struct Changed
    {
        QDomText node;
        QString text;
    };

    void visitAttributes(const QDomElement& element)
    {
        QList<QDomAttr> attributes = attributesOf(element);
        for (const QDomAttr& attribute : std::as_const(attributes)) {
            const QString value = attribute.value();
            if (value.size() > pieceSize) {
                m_steps += value.size() * std::count_if(value.begin(), value.end(), isEscaped);
            }
        }
        if (attributes.size() > 1) {
            sortAttributes(element, attributes);
        }
    }

    void visitText(const QDomText& node)
    {
        const QString text = node.nodeValue();
        const bool startsInNewLine =
            text.startsWith(u'\n') && node.previousSibling().isProcessingInstruction();
        if (startsInNewLine || text.size() > pieceSize) {
            m_changed.append({node, text});
            cut(m_changed.last(), startsInNewLine ? 1 : 0);
        }
    }

    /// The node keeps the last piece, so that a walk over the siblings goes on behind it.
    void cut(Changed& changed, qsizetype begin)
    {
        QDomNode parent = changed.node.parentNode();
        QDomDocument document = changed.node.ownerDocument();
        while (changed.text.size() - begin > pieceSize) {
            const qsizetype end = endOfPiece(changed.text, begin + pieceSize);
            m_pieces.append(parent.insertBefore(
                document.createTextNode(changed.text.sliced(begin, end - begin)), changed.node));
            begin = end;
        }
        changed.node.setNodeValue(changed.text.sliced(begin));
    }

    /// A ">" is escaped only behind the two brackets before it, which must stay in its piece.
    static qsizetype endOfPiece(const QString& text, qsizetype end)
    {
        while (end < text.size() && text[end - 1] == u']') {
            ++end;
        }
        return end;
    }

    QList<Changed> m_changed;
    QList<QDomNode> m_pieces;
    qint64 m_steps = 0;
};

} // namespace

std::optional<QString> stableTextForm(const QDomDocument& document)
{
    Preparation preparation;
    const bool isLinear = visitElements(
        document, [&](const QDomElement& element, int) { return preparation.visit(element); });
    if (!isLinear) {
        return std::nullopt;
    }
    return document.toString(2);
}
