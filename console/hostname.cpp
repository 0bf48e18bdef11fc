#include "console/hostname.h"

#include "console/configdom.h"
#include "console/configelements.h"

#include <QDomDocument>

namespace {

void expandElement(const QDomElement& element, const QString& hostName)
{
    setFirstChildValue(element, element.text().replace(ConfigPlaceholder::NodeName, hostName));
}

} // namespace

void expandHostName(const QDomDocument& document, const QString& hostName)
{
    const QDomElement root = document.documentElement();
    const QDomElement config = root.firstChildElement(ConfigElement::UaServerConfig);
    for (QDomElement endpoint = config.firstChildElement(ConfigElement::UaEndpoint);
         !endpoint.isNull(); endpoint = endpoint.nextSiblingElement(ConfigElement::UaEndpoint)) {
        expandElement(endpoint.firstChildElement(ConfigElement::Url), hostName);
        expandElement(endpoint.firstChildElement(ConfigElement::StackUrl), hostName);
    }

    const QDomElement groupHost = descend(
        root, {ConfigElement::Objects, ConfigElement::UaConfig, ConfigElement::UserAuthorization,
               ConfigElement::Configuration, ConfigElement::GroupHost});
    setFirstChildValue(groupHost, hostName);
}

HostNameCheck checkHostName(QDomDocument& document, const QString& hostName)
{
    const QDomElement root = document.documentElement();
    QDomElement stored = descend(
        root, {ConfigElement::ConfigTools, ConfigElement::ZandrelDialog, ConfigElement::Hostname});
    if (stored.isNull()) {
        const QDomElement dialog = obtainChild(obtainChild(root, ConfigElement::ConfigTools),
                                               ConfigElement::ZandrelDialog);
        appendTextElement(dialog, ConfigElement::Hostname, hostName);
        return {.isChanged = false, .isStored = true};
    }
    if (stored.text() == hostName) {
        return {};
    }
    if (stored.firstChild().isNull()) {
        stored.appendChild(document.createTextNode(hostName));
    } else {
        setFirstChildValue(stored, hostName);
    }
    return {.isChanged = true, .isStored = true};
}
