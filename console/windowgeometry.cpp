#include "console/windowgeometry.h"

#include "console/configdom.h"
#include "console/configelements.h"

#include <QDomDocument>

QByteArray readWindowGeometry(const QDomElement& root)
{
    const QDomElement geometry = descend(
        root, {ConfigElement::ConfigTools, ConfigElement::ZandrelDialog, ConfigElement::Geometry});
    return QByteArray::fromBase64(geometry.text().toLatin1());
}

void writeWindowGeometry(QDomDocument& document, const QByteArray& geometry)
{
    const QDomElement tools = obtainChild(document.documentElement(), ConfigElement::ConfigTools);
    const QDomElement dialog = obtainChild(tools, ConfigElement::ZandrelDialog);
    QDomElement element = obtainChild(dialog, ConfigElement::Geometry);
    const QString text = QString::fromLatin1(geometry.toBase64());
    if (element.firstChild().isText()) {
        setFirstChildText(element, text);
    } else {
        element.appendChild(document.createTextNode(text));
    }
}
