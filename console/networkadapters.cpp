#include "console/networkadapters.h"

#include <QNetworkInterface>

QList<NetworkAdapter> networkAdapters()
{
    const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
    QList<NetworkAdapter> adapters;
    adapters.reserve(interfaces.size());
    for (const QNetworkInterface& interface : interfaces) {
        NetworkAdapter adapter{interface.humanReadableName(),
                               interface.flags().testFlag(QNetworkInterface::IsLoopBack),
                               {}};
        const QList<QNetworkAddressEntry> entries = interface.addressEntries();
        for (const QNetworkAddressEntry& entry : entries) {
            adapter.addresses.append(entry.ip());
        }
        adapters.append(adapter);
    }
    return adapters;
}

namespace {

bool isHostOfText(const QString& host, const QString& text)
{
    return host == text || host == u'[' + text + u']';
}

} // namespace

bool isHostOfAddress(const QString& host, const QHostAddress& address)
{
    if (isHostOfText(host, address.toString())) {
        return true;
    }
    if (address.scopeId().isEmpty()) {
        return false;
    }
    QHostAddress unscoped(address);
    unscoped.setScopeId(QString());
    return isHostOfText(host, unscoped.toString());
}
