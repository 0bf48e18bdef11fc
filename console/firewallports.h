#pragma once

#include <QList>
#include <QString>

/// What the endpoints tab needs of the system's firewall: globally open TCP ports under the name of
/// a rule. Each system brings its own; a tab without one behaves as if every call failed.
///
/// Failures are not reported. Both operations are called on the GUI thread and keep nothing between
/// calls.
class FirewallPorts
{
public:
    FirewallPorts() = default;
    FirewallPorts(const FirewallPorts&) = delete;
    FirewallPorts& operator=(const FirewallPorts&) = delete;
    virtual ~FirewallPorts() = default;

    /// The enabled TCP ports under exactly this rule name; empty on any failure.
    [[nodiscard]] virtual QList<int> openFirewallPorts(const QString& ruleName) = 0;

    /// Opens a TCP port for all addresses under the rule name, or removes it from the open ports.
    virtual void setFirewallPort(const QString& ruleName, int port, bool open) = 0;
};

/// How the endpoints tab handles the firewall. The numbers are those of its constructor.
enum FirewallMode : int
{
    FirewallModeNone = 0,        ///< Not at all.
    FirewallModePerEndpoint = 1, ///< A check box for each endpoint says whether its port is open.
    FirewallModeAllEndpoints = 2 ///< The ports of all endpoints are open.
};

/// The TCP port of one endpoint.
struct FirewallPortEntry
{
    int port = 0;
    bool enabled = false; ///< The port is to be open.

    friend bool operator==(const FirewallPortEntry&, const FirewallPortEntry&) = default;
};

/// What has to be done to make the open ports of the rule the wanted ones.
struct FirewallChanges
{
    QList<int> toOpen;
    QList<int> toClose;
};

/// Compares the ports that are open with the entries: the enabled ones, in FirewallModeAllEndpoints
/// every one. A port is opened in the order of the entries, unless it is open already; what is open
/// and wanted by no entry is closed.
[[nodiscard]] FirewallChanges firewallChanges(QList<int> openPorts, int firewallMode,
                                              const QList<FirewallPortEntry>& entries);
