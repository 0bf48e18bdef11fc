#include "console/endpointconfig.h"

#include "console/configdom.h"
#include "console/configelements.h"
#include "console/endpointurl.h"
#include "console/securitypolicies.h"

#include <QDomElement>
#include <QHash>

#include <algorithm>
#include <utility>

namespace {

QString childText(const QDomElement& element, const QString& name)
{
    return element.firstChildElement(name).text();
}

constexpr quint16 allModes =
    MessageSecurityModeNone | MessageSecurityModeSign | MessageSecurityModeSignAndEncrypt;

quint16 modeFlag(const QString& text)
{
    for (const MessageSecurityModeName& name : messageSecurityModeNames) {
        if (text == name.text) {
            return name.flag;
        }
    }
    return 0;
}

/// Calls visit(child, name) for each child element. One walk is quicker than a look-up by name for
/// each element that is wanted: a large file spends its time here.
template <typename Visit>
void visitChildren(const QDomElement& parent, Visit visit)
{
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        visit(child, child.tagName());
    }
}

SecurityRecord readSecuritySetting(const QDomElement& element)
{
    SecurityRecord setting;
    bool hasPolicy = false;
    visitChildren(element, [&](const QDomElement& child, const QString& name) {
        if (name == ConfigElement::MessageSecurityMode) {
            setting.messageSecurityModes |= modeFlag(child.text());
        } else if (!hasPolicy && name == ConfigElement::SecurityPolicy) {
            setting.securityPolicy = child.text();
            hasPolicy = true;
        }
    });
    return setting;
}

/// Finds the record of a policy by hash: a file may hold hundreds of thousands of settings.
class SettingsByPolicy
{
public:
    void add(const SecurityRecord& setting)
    {
        const auto known = m_positions.constFind(setting.securityPolicy);
        if (known == m_positions.constEnd()) {
            m_positions.insert(setting.securityPolicy, m_settings.size());
            m_settings.append(setting);
        } else {
            m_settings[*known].messageSecurityModes |= setting.messageSecurityModes;
        }
    }

    [[nodiscard]] QList<SecurityRecord> take() { return std::move(m_settings); }

private:
    QList<SecurityRecord> m_settings;
    QHash<QString, qsizetype> m_positions;
};

EndpointRecord readEndpoint(const QDomElement& element)
{
    std::optional<QString> url;
    std::optional<QString> stackUrl;
    SettingsByPolicy settings;
    visitChildren(element, [&](const QDomElement& child, const QString& name) {
        if (name == ConfigElement::SecuritySetting) {
            settings.add(readSecuritySetting(child));
        } else if (!url && name == ConfigElement::Url) {
            url = child.text();
        } else if (!stackUrl && name == ConfigElement::StackUrl) {
            stackUrl = child.text();
        }
    });

    EndpointRecord endpoint;
    endpoint.url = url.value_or(QString());
    endpoint.stackUrl = stackUrl.value_or(QString());
    endpoint.securitySettings = settings.take();
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

/// Whether a text that is put into the element is all that is read from it.
bool takesText(const QDomElement& element)
{
    const QDomNode child = element.firstChild();
    return child.isText() && child.nextSibling().isNull();
}

bool takesUrls(const QDomElement& endpoint)
{
    const QDomElement stackUrl = endpoint.firstChildElement(ConfigElement::StackUrl);
    return takesText(endpoint.firstChildElement(ConfigElement::Url)) &&
           (stackUrl.isNull() || takesText(stackUrl));
}

bool settingsReadAsTheyAre(const QList<SecurityRecord>& settings)
{
    // More policies than a server has aren't worth a search of their own.
    constexpr qsizetype usualPolicies = 16;
    if (settings.size() > usualPolicies) {
        return false;
    }
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        const auto isSamePolicy = [&](const SecurityRecord& other) {
            return other.securityPolicy == setting->securityPolicy;
        };
        if (setting->messageSecurityModes > allModes ||
            std::any_of(settings.begin(), setting, isSamePolicy)) {
            return false;
        }
    }
    return true;
}

/// Whether an endpoint, once written, is read as the same record.
bool readsAsItIs(const EndpointRecord& endpoint)
{
    return !endpoint.stackUrl.isEmpty() &&
           endpoint.protocol == endpointProtocol(endpoint.url, endpoint.stackUrl) &&
           settingsReadAsTheyAre(endpoint.securitySettings);
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

QList<EndpointRecord> writeEndpoints(QDomElement serverConfig,
                                     const QList<EndpointRecord>& endpoints)
{
    const QDomElement pattern = serverConfig.firstChildElement(ConfigElement::UaEndpoint);
    if (pattern.isNull()) {
        return {};
    }
    // The template loses its settings before it is copied rather than each copy after.
    removeChildren(serverConfig, ConfigElement::UaEndpoint);
    removeChildren(pattern, ConfigElement::SecuritySetting);
    for (const EndpointRecord& endpoint : endpoints) {
        const QDomElement element = pattern.cloneNode().toElement();
        writeEndpoint(element, endpoint);
        serverConfig.appendChild(element);
    }
    const bool readsAsWritten =
        takesUrls(pattern) && std::all_of(endpoints.begin(), endpoints.end(), readsAsItIs);
    return readsAsWritten ? endpoints : readEndpoints(serverConfig);
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
