#pragma once

#include <QString>

#include <optional>

// The URLs of endpoints as the console takes them apart and puts them together. Free of the form
// and of the file.

/// What the endpoint form shows of a URL.
struct EndpointUrlParts
{
    int protocol = 0; ///< EndpointProtocol.
    QString host;     ///< All up to the last colon that a digit follows; IPv6 with its brackets.
    int port = 0;     ///< As it stands, 0 when it doesn't fit an int. Not limited to 65535.
};

/// Takes a URL apart that begins with "opc.tcp" or "https" in any case, followed by "://", a host, a
/// colon and a port. What follows the port isn't looked at. Null when the URL has another form.
[[nodiscard]] std::optional<EndpointUrlParts> parseEndpointUrl(const QString& url);

/// The URL of that protocol, "opc.tcp" for EndpointProtocolTcp and "https" for any other.
[[nodiscard]] QString makeEndpointUrl(int protocol, const QString& host, int port);

/// The URL with the digits that it ends in replaced by the port; unchanged when it ends otherwise.
[[nodiscard]] QString withEndpointPort(const QString& url, int port);

/// The protocol of an endpoint in the file: HTTPS when a URL says so and none says TCP. The case of
/// the scheme counts.
[[nodiscard]] int endpointProtocol(const QString& url, const QString& stackUrl);
