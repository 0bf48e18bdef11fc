#pragma once

#include <QList>
#include <QString>

/// One security policy that an endpoint offers, with its message security modes.
struct SecurityRecord
{
    QString securityPolicy;           ///< The standard's URI of the policy, whole.
    quint16 messageSecurityModes = 0; ///< Bits of MessageSecurityModeFlag.

    friend bool operator==(const SecurityRecord&, const SecurityRecord&) = default;
};

/// The numbers stand in the protocol combo box as indexes.
enum EndpointProtocol : int
{
    EndpointProtocolTcp = 0,
    EndpointProtocolHttps = 1
};

/// One endpoint of the server, as the endpoint table holds it.
struct EndpointRecord
{
    int protocol = EndpointProtocolTcp;
    QString url;                            ///< As clients see it.
    QString stackUrl;                       ///< What the server binds to; never empty once loaded.
    QList<SecurityRecord> securitySettings; ///< One record for each policy.

    friend bool operator==(const EndpointRecord&, const EndpointRecord&) = default;
};
