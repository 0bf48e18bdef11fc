#include "console/firewallports.h"

#include <utility>

FirewallChanges firewallChanges(QList<int> openPorts, int firewallMode,
                                const QList<FirewallPortEntry>& entries)
{
    FirewallChanges changes;
    for (const FirewallPortEntry& entry : entries) {
        if (!entry.enabled && firewallMode != FirewallModeAllEndpoints) {
            continue;
        }
        if (openPorts.removeAll(entry.port) == 0) {
            changes.toOpen.append(entry.port);
        }
    }
    changes.toClose = std::move(openPorts);
    return changes;
}
