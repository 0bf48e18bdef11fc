#pragma once

#include <QDomDocument>

/// Calls visit(element, depth) for all elements in document order, the document element at depth 1,
/// until it answers false; returns whether it never did. Doesn't recurse: the depth comes from
/// outside. The visitor may change what an element holds besides elements.
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
