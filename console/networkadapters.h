#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>

#include <functional>

/// A network adapter of this computer, as far as an endpoint can be bound to it.
struct NetworkAdapter
{
    QString name; ///< As the system shows it to people. Two adapters may share a name.
    bool isLoopback = false;
    QList<QHostAddress> addresses; ///< IPv6 link-local ones carry their scope.
};

/// Tells the adapters at the moment of the call.
using NetworkAdapterSource = std::function<QList<NetworkAdapter>()>;

/// All adapters of this computer in the system's order.
[[nodiscard]] QList<NetworkAdapter> networkAdapters();

/// Whether the host of a URL means this address: its text, or an IPv6 text in brackets. A host
/// without a scope means the address whatever its scope is.
[[nodiscard]] bool isHostOfAddress(const QString& host, const QHostAddress& address);
