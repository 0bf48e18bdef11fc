#include "console/veskserverconfigmodel.h"

#include <QStringList>

VeskServerConfigModel::VeskServerConfigModel(QObject* parent)
    : QAbstractTableModel(parent)
{
}

VeskServerConfigModel::~VeskServerConfigModel() = default;

int VeskServerConfigModel::rowCount(const QModelIndex& /*parent*/) const
{
    return static_cast<int>(m_endpoints.size());
}

int VeskServerConfigModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

namespace {

QStringList policiesOf(const EndpointRecord& endpoint)
{
    QStringList policies;
    policies.reserve(endpoint.securitySettings.size());
    for (const SecurityRecord& setting : endpoint.securitySettings) {
        policies.append(setting.securityPolicy);
    }
    return policies;
}

QVariant protocolName(int protocol)
{
    switch (protocol) {
    case EndpointProtocolTcp:
        return VeskServerConfigModel::tr("UA TCP");
    case EndpointProtocolHttps:
        return VeskServerConfigModel::tr("UA HTTPS");
    default:
        return {};
    }
}

} // namespace

QVariant VeskServerConfigModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole || !isRow(index.row())) {
        return {};
    }
    const EndpointRecord& endpoint = m_endpoints.at(index.row());
    switch (index.column()) {
    case NumberColumn:
        return QString::number(index.row() + 1);
    case ProtocolColumn:
        return protocolName(endpoint.protocol);
    case UrlColumn:
        return endpoint.url;
    case SecurityColumn:
        return policiesOf(endpoint);
    default:
        return {};
    }
}

QVariant VeskServerConfigModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case NumberColumn:
        return tr("#");
    case ProtocolColumn:
        return tr("Protocol");
    case UrlColumn:
        return tr("URL");
    case SecurityColumn:
        return tr("Security");
    default:
        return {};
    }
}

void VeskServerConfigModel::addEndpoint(int protocol, const QString& url, const QString& stackUrl,
                                        const QList<SecurityRecord>& securitySettings)
{
    addEndpoints({EndpointRecord{protocol, url, stackUrl, securitySettings}});
}

void VeskServerConfigModel::addEndpoints(const QList<EndpointRecord>& endpoints)
{
    if (endpoints.isEmpty()) {
        return;
    }
    const int first = rowCount();
    beginInsertRows(QModelIndex(), first, first + static_cast<int>(endpoints.size()) - 1);
    m_endpoints.append(endpoints);
    endInsertRows();
}

void VeskServerConfigModel::removeEndpoint(int row)
{
    if (!isRow(row)) {
        return;
    }
    beginRemoveRows(QModelIndex(), row, row);
    m_endpoints.removeAt(row);
    endRemoveRows();
}

void VeskServerConfigModel::clear()
{
    if (m_endpoints.isEmpty()) {
        return;
    }
    beginRemoveRows(QModelIndex(), 0, rowCount() - 1);
    m_endpoints.clear();
    endRemoveRows();
}

EndpointRecord VeskServerConfigModel::endpoint(int row) const
{
    return m_endpoints.value(row);
}

void VeskServerConfigModel::setProtocol(int row, int protocol)
{
    if (!isRow(row)) {
        return;
    }
    m_endpoints[row].protocol = protocol;
    emitChanged(row, ProtocolColumn);
}

void VeskServerConfigModel::setUrl(int row, const QString& url)
{
    if (!isRow(row)) {
        return;
    }
    m_endpoints[row].url = url;
    emitChanged(row, UrlColumn);
}

void VeskServerConfigModel::setStackUrl(int row, const QString& stackUrl)
{
    if (!isRow(row)) {
        return;
    }
    m_endpoints[row].stackUrl = stackUrl;
}

void VeskServerConfigModel::setSecuritySettings(int row,
                                                const QList<SecurityRecord>& securitySettings)
{
    if (!isRow(row)) {
        return;
    }
    m_endpoints[row].securitySettings = securitySettings;
    emitChanged(row, SecurityColumn);
}

void VeskServerConfigModel::emitChanged(int row, Column column)
{
    const QModelIndex changed = index(row, column);
    Q_EMIT dataChanged(changed, changed);
}
