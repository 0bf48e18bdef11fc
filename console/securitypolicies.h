#pragma once

#include <QString>
#include <QStringList>

// The security policies that an endpoint of the console can offer (OPC 10000-7, 6.6). Their URIs are
// the prefix and the policy's name; configuration files hold them whole.
namespace SecurityPolicies {

/// What every policy URI begins with, up to and including the "#".
inline const QString prefix = QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#");

inline const QString none = prefix + QStringLiteral("None");

/// The policies that the console knows, in the order in which it shows them.
inline const QStringList known = {none, prefix + QStringLiteral("Basic128Rsa15"),
                                  prefix + QStringLiteral("Basic256"),
                                  prefix + QStringLiteral("Basic256Sha256")};

/// Known policies that are no longer held to be secure.
inline const QStringList deprecated = {prefix + QStringLiteral("Basic128Rsa15")};

/// The name of a policy: its URI without the prefix.
[[nodiscard]] inline QString name(const QString& uri)
{
    return uri.sliced(qMin(prefix.size(), uri.size()));
}

} // namespace SecurityPolicies

/// Message security modes of a policy as bits, with the texts that configuration files hold.
enum MessageSecurityModeFlag : quint16
{
    MessageSecurityModeNone = 1,
    MessageSecurityModeSign = 2,
    MessageSecurityModeSignAndEncrypt = 4
};

struct MessageSecurityModeName
{
    MessageSecurityModeFlag flag;
    QString text;
};

/// In the order in which they are written.
inline const MessageSecurityModeName messageSecurityModeNames[] = {
    {MessageSecurityModeNone, QStringLiteral("None")},
    {MessageSecurityModeSign, QStringLiteral("Sign")},
    {MessageSecurityModeSignAndEncrypt, QStringLiteral("SignAndEncrypt")},
};
