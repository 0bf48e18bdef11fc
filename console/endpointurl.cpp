#include "console/endpointurl.h"

#include "console/endpointrecord.h"

#include <QRegularExpression>

std::optional<EndpointUrlParts> parseEndpointUrl(const QString& url)
{
    static const QRegularExpression pattern(QStringLiteral("^(opc.tcp|https)://(.+):(\\d+)"),
                                            QRegularExpression::CaseInsensitiveOption |
                                                QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = pattern.match(url);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const bool isHttps = match.capturedView(1).compare(u"https", Qt::CaseInsensitive) == 0;
    return EndpointUrlParts{isHttps ? EndpointProtocolHttps : EndpointProtocolTcp,
                            match.captured(2), match.capturedView(3).toInt()};
}

QString makeEndpointUrl(int protocol, const QString& host, int port)
{
    const QString scheme =
        protocol == EndpointProtocolTcp ? QStringLiteral("opc.tcp") : QStringLiteral("https");
    // All at once: a host may hold a "%3" of its own.
    return QStringLiteral("%1://%2:%3").arg(scheme, host, QString::number(port));
}

QString withEndpointPort(const QString& url, int port)
{
    qsizetype end = url.size();
    while (end > 0 && url[end - 1] >= u'0' && url[end - 1] <= u'9') {
        --end;
    }
    return end == url.size() ? url : url.left(end) + QString::number(port);
}

int endpointProtocol(const QString& url, const QString& stackUrl)
{
    const auto begins = [&](QStringView scheme) {
        return stackUrl.startsWith(scheme) || url.startsWith(scheme);
    };
    return !begins(u"opc.tcp://") && begins(u"https://") ? EndpointProtocolHttps
                                                         : EndpointProtocolTcp;
}
