#include "console/configdom.h"

#include "console/domwalk.h"

using namespace Qt::StringLiterals;

namespace {

/// Whether the text form of a node of that kind can hold the value.
bool canHold(const QDomNode& node, const QString& value)
{
    if (node.isComment()) {
        return !value.contains("--"_L1) && !value.endsWith(u'-');
    }
    return !node.isProcessingInstruction() || !value.contains("?>"_L1);
}

} // namespace

QDomElement descend(QDomElement from, std::initializer_list<QString> names)
{
    for (const QString& name : names) {
        from = from.firstChildElement(name);
    }
    return from;
}

QDomElement obtainChild(QDomElement parent, const QString& name)
{
    const QDomElement child = parent.firstChildElement(name);
    if (!child.isNull()) {
        return child;
    }
    return parent.appendChild(parent.ownerDocument().createElement(name)).toElement();
}

void setFirstChildValue(const QDomElement& element, const QString& value)
{
    QDomNode child = element.firstChild();
    if (child.isText()) {
        setFirstChildText(element, value);
    } else if (canHold(child, value)) {
        child.setNodeValue(value);
    }
}

void setFirstChildText(const QDomElement& element, const QString& text)
{
    QDomElement parent = element;
    QDomText child = element.firstChild().toText();
    if (!child.isCDATASection() && text.isEmpty()) {
        parent.removeChild(child);
    } else if (child.isCDATASection() && text.contains("]]>"_L1)) {
        parent.replaceChild(element.ownerDocument().createTextNode(text), child);
    } else {
        child.setNodeValue(text);
    }
}

QDomElement appendTextElement(QDomElement parent, const QString& name, const QString& text)
{
    QDomDocument document = parent.ownerDocument();
    QDomElement element = document.createElement(name);
    element.appendChild(document.createTextNode(text));
    parent.appendChild(element);
    return element;
}

bool isShallow(const QDomDocument& document, int maxDepth)
{
    return visitElements(document,
                         [maxDepth](const QDomElement&, int depth) { return depth <= maxDepth; });
}
