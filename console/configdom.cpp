#include "console/configdom.h"

#include <QDomDocument>
#include <QStringList>

#include <algorithm>

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
    element.firstChild().setNodeValue(value);
}

void setFirstChildText(const QDomElement& element, const QString& text)
{
    element.firstChild().toText().setNodeValue(text);
}

QDomElement appendTextElement(QDomElement parent, const QString& name, const QString& text)
{
    QDomDocument document = parent.ownerDocument();
    QDomElement element = document.createElement(name);
    element.appendChild(document.createTextNode(text));
    parent.appendChild(element);
    return element;
}

namespace {

/// Calls visit(element, depth) for all elements in document order, the document element at depth 1,
/// until it answers false. Doesn't recurse: the depth comes from outside.
template <typename Visit>
bool visitElements(const QDomDocument& document, Visit visit)
{
    QDomElement element = document.documentElement();
    int depth = 1;
    while (!element.isNull()) {
        if (!visit(element, depth)) {
            return false;
        }
        QDomElement next = element.firstChildElement();
        if (!next.isNull()) {
            ++depth;
        }
        while (next.isNull() && depth > 0) {
            next = element.nextSiblingElement();
            if (next.isNull()) {
                element = element.parentNode().toElement();
                --depth;
            }
        }
        element = next;
    }
    return true;
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

} // namespace

void normaliseAttributes(const QDomDocument& document)
{
    visitElements(document, [](const QDomElement& element, int) {
        if (element.hasAttributes() && element.attributes().count() > 1) {
            sortAttributes(element);
        }
        return true;
    });
}

bool isShallow(const QDomDocument& document, int maxDepth)
{
    return visitElements(document,
                         [maxDepth](const QDomElement&, int depth) { return depth <= maxDepth; });
}
