#include "console/endpointconfig.h"

#include "console/configdom.h"
#include "console/configelements.h"
#include "console/endpointurl.h"
#include "console/securitypolicies.h"

#include <QDomElement>
#include <QHash>

namespace {

QString childText(const QDomElement& element, const QString& name)
{
    return element.firstChildElement(name).text();
}

quint16 modeFlag(const QString& text)
{
    for (const MessageSecurityModeName& name : messageSecurityModeNames) {
        if (text == name.text) {
            return name.flag;
        }
    }
    return 0;
}

SecurityRecord readSecuritySetting(const QDomElement& element)
{
    SecurityRecord setting{childText(element, ConfigElement::SecurityPolicy), 0};
    for (QDomElement mode = element.firstChildElement(ConfigElement::MessageSecurityMode);
         !mode.isNull(); mode = mode.nextSiblingElement(ConfigElement::MessageSecurityMode)) {
        setting.messageSecurityModes |= modeFlag(mode.text());
    }
    return setting;
}

/// Settings in the order in which their policies come first. Finds a policy by hash: a file may hold
/// hundreds of thousands of settings.
QList<SecurityRecord> readSecuritySettings(const QDomElement& endpoint)
{
    QList<SecurityRecord> settings;
    QHash<QString, qsizetype> positions;
    for (QDomElement element = endpoint.firstChildElement(ConfigElement::SecuritySetting);
         !element.isNull(); element = element.nextSiblingElement(ConfigElement::SecuritySetting)) {
        const SecurityRecord setting = readSecuritySetting(element);
        const auto known = positions.constFind(setting.securityPolicy);
        if (known == positions.constEnd()) {
            positions.insert(setting.securityPolicy, settings.size());
            settings.append(setting);
        } else {
            settings[*known].messageSecurityModes |= setting.messageSecurityModes;
        }
    }
    return settings;
}

EndpointRecord readEndpoint(const QDomElement& element)
{
    EndpointRecord endpoint;
    endpoint.url = childText(element, ConfigElement::Url);
    endpoint.stackUrl = childText(element, ConfigElement::StackUrl);
    endpoint.securitySettings = readSecuritySettings(element);
    endpoint.protocol = endpointProtocol(endpoint.url, endpoint.stackUrl);
    if (endpoint.stackUrl.isEmpty()) {
        endpoint.stackUrl = endpoint.url;
    }
    return endpoint;
}

void removeChildren(QDomElement parent, const QString& name)
{
    QDomElement child = parent.firstChildElement(name);
    while (!child.isNull()) {
        const QDomElement next = child.nextSiblingElement(name);
        parent.removeChild(child);
        child = next;
    }
}

void writeStackUrl(const QDomElement& element, const EndpointRecord& endpoint)
{
    const QDomElement stackUrl = element.firstChildElement(ConfigElement::StackUrl);
    if (endpoint.stackUrl == endpoint.url) {
        // All of them: a second one would count once the first is gone.
        removeChildren(element, ConfigElement::StackUrl);
    } else if (stackUrl.isNull()) {
        appendTextElement(element, ConfigElement::StackUrl, endpoint.stackUrl);
    } else {
        setFirstChildText(stackUrl, endpoint.stackUrl);
    }
}

void appendSecuritySetting(QDomElement parent, const SecurityRecord& setting)
{
    QDomElement element = parent.ownerDocument().createElement(ConfigElement::SecuritySetting);
    appendTextElement(element, ConfigElement::SecurityPolicy, setting.securityPolicy);
    for (const MessageSecurityModeName& mode : messageSecurityModeNames) {
        if ((setting.messageSecurityModes & mode.flag) != 0) {
            appendTextElement(element, ConfigElement::MessageSecurityMode, mode.text);
        }
    }
    parent.appendChild(element);
}

void writeEndpoint(const QDomElement& element, const EndpointRecord& endpoint)
{
    setFirstChildText(element.firstChildElement(ConfigElement::Url), endpoint.url);
    writeStackUrl(element, endpoint);
    for (const SecurityRecord& setting : endpoint.securitySettings) {
        appendSecuritySetting(element, setting);
    }
}

int portOf(const QString& url)
{
    const std::optional<EndpointUrlParts> parts = parseEndpointUrl(url);
    return parts ? parts->port : 0;
}

} // namespace

QList<EndpointRecord> readEndpoints(const QDomElement& serverConfig)
{
    QList<EndpointRecord> endpoints;
    for (QDomElement element = serverConfig.firstChildElement(ConfigElement::UaEndpoint);
         !element.isNull(); element = element.nextSiblingElement(ConfigElement::UaEndpoint)) {
        endpoints.append(readEndpoint(element));
    }
    return endpoints;
}

QList<int> readEndpointPorts(const QDomElement& serverConfig)
{
    QList<int> ports;
    for (QDomElement element = serverConfig.firstChildElement(ConfigElement::UaEndpoint);
         !element.isNull(); element = element.nextSiblingElement(ConfigElement::UaEndpoint)) {
        const QDomElement stackUrl = element.firstChildElement(ConfigElement::StackUrl);
        const QDomElement url =
            stackUrl.isNull() ? element.firstChildElement(ConfigElement::Url) : stackUrl;
        ports.append(portOf(url.text()));
    }
    return ports;
}

void writeEndpoints(QDomElement serverConfig, const QList<EndpointRecord>& endpoints)
{
    // The template loses its settings before it is copied rather than each copy after.
    const QDomElement pattern = serverConfig.firstChildElement(ConfigElement::UaEndpoint);
    removeChildren(serverConfig, ConfigElement::UaEndpoint);
    removeChildren(pattern, ConfigElement::SecuritySetting);
    if (pattern.isNull()) {
        return;
    }
    for (const EndpointRecord& endpoint : endpoints) {
        const QDomElement element = pattern.cloneNode().toElement();
        writeEndpoint(element, endpoint);
        serverConfig.appendChild(element);
    }
}

std::optional<UserLogon> readUserLogon(const QDomElement& serverConfig)
{
    const QDomElement tokens = serverConfig.firstChildElement(ConfigElement::UserIdentityTokens);
    if (tokens.isNull()) {
        return std::nullopt;
    }
    const auto isTrue = [&](const QString& name) {
        return childText(tokens, name).compare(u"true", Qt::CaseInsensitive) == 0;
    };
    return UserLogon{isTrue(ConfigElement::EnableAnonymous), isTrue(ConfigElement::EnableUserPw)};
}

void writeUserLogon(const QDomElement& serverConfig, const UserLogon& logon)
{
    const QDomElement tokens = serverConfig.firstChildElement(ConfigElement::UserIdentityTokens);
    const auto write = [&](const QString& name, bool isAllowed) {
        setFirstChildText(tokens.firstChildElement(name),
                          isAllowed ? QStringLiteral("true") : QStringLiteral("false"));
    };
    write(ConfigElement::EnableAnonymous, logon.isAnonymousAllowed);
    write(ConfigElement::EnableUserPw, logon.isUserPasswordAllowed);
}
