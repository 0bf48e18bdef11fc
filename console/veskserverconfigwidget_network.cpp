// The network half of the endpoints tab: the current endpoint's URLs in the controls, and the slots
// that store them.

#include "console/endpointurl.h"
#include "console/veskserverconfigmodel.h"
#include "console/veskserverconfigwidget.h"

#include "ui_veskserverconfigwidget.h"

#include <QApplication>
#include <QHostInfo>
#include <QSignalBlocker>

namespace {

const QString localOnlyAddress = QStringLiteral("127.0.0.1");

/// The port of the Local Discovery Server.
constexpr int discoveryPort = 4840;

} // namespace

void VeskServerConfigWidget::sltCurrentEndpointChanged(QModelIndex current, QModelIndex previous)
{
    if (current.row() == previous.row()) {
        return;
    }
    resetSecurity();
    if (!current.isValid()) {
        return;
    }
    const EndpointRecord endpoint = m_pModel->endpoint(current.row());
    showUrl(endpoint);
    showSecurity(endpoint.securitySettings);
    showFirewallException(current.row());
}

void VeskServerConfigWidget::showUrl(const EndpointRecord& endpoint)
{
    if (const auto parts = parseEndpointUrl(endpoint.url)) {
        const QSignalBlocker protocolBlocker(ui->comboBox_protocol);
        const QSignalBlocker portBlocker(ui->spinBox_uaTcpPort);
        ui->comboBox_protocol->setCurrentIndex(parts->protocol);
        ui->lineEdit_networkName->setText(parts->host);
        ui->lineEdit_networkName->home(false); // a long name shows its beginning
        ui->spinBox_uaTcpPort->setValue(parts->port);
    }
    if (const auto parts = parseEndpointUrl(endpoint.stackUrl)) {
        {
            const QSignalBlocker protocolBlocker(ui->comboBox_protocol);
            ui->comboBox_protocol->setCurrentIndex(parts->protocol);
        }
        showStackHost(parts->host);
    }
    markDiscoveryPort(ui->spinBox_uaTcpPort->value());
    ui->label_endpointUrl->setText(formUrl(ui->lineEdit_networkName->text()));
}

void VeskServerConfigWidget::showStackHost(const QString& host)
{
    if (host == QHostInfo::localHostName()) {
        selectAdapter(0);
        return;
    }
    if (host == localOnlyAddress) {
        selectAdapter(ui->comboBox_networkAdapter->count() - 1);
        return;
    }
    const QList<NetworkAdapter> adapters = m_adapters();
    for (const NetworkAdapter& adapter : adapters) {
        for (const QHostAddress& address : adapter.addresses) {
            if (!isHostOfAddress(host, address)) {
                continue;
            }
            const int index = ui->comboBox_networkAdapter->findText(
                adapter.name, Qt::MatchExactly | Qt::MatchCaseSensitive);
            // A loopback adapter isn't offered: nothing to select, and nothing to store.
            if (index >= 0) {
                selectAdapter(index);
                selectAddress(host);
            }
            return;
        }
    }
}

void VeskServerConfigWidget::selectAdapter(int index)
{
    ui->comboBox_networkAdapter->setCurrentIndex(index);
    sltNetworkAdapterChanged(index, true);
}

namespace {

/// The item whose data is the host, or the one that means the same address otherwise written.
int findAddress(const QComboBox& addresses, const QString& host)
{
    const int exact =
        addresses.findData(host, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive);
    for (int i = 0; exact < 0 && i < addresses.count(); ++i) {
        if (isHostOfAddress(host, QHostAddress(addresses.itemText(i)))) {
            return i;
        }
    }
    return exact;
}

} // namespace

void VeskServerConfigWidget::selectAddress(const QString& host)
{
    const int index = findAddress(*ui->comboBox_ip, host);
    if (index < 0) {
        return;
    }
    ui->comboBox_ip->setCurrentIndex(index);
    sltIPChanged(index);
}

void VeskServerConfigWidget::sltNetworkAdapterChanged(int iIndex, bool blockSignals)
{
    QComboBox* addresses = ui->comboBox_ip;
    {
        const QSignalBlocker blocker(blockSignals ? addresses : nullptr);
        addresses->clear();
        if (iIndex == 0) {
            const QString hostName = QHostInfo::localHostName();
            addresses->addItem(hostName, hostName);
        } else if (iIndex == ui->comboBox_networkAdapter->count() - 1) {
            addresses->addItem(localOnlyAddress, localOnlyAddress);
        } else {
            addAddressesOf(ui->comboBox_networkAdapter->itemText(iIndex));
        }
    }
    if (!blockSignals) {
        sltIPChanged(0);
    }
}

void VeskServerConfigWidget::addAddressesOf(const QString& adapterName)
{
    const QList<NetworkAdapter> adapters = m_adapters();
    for (const NetworkAdapter& adapter : adapters) {
        if (adapter.name != adapterName) {
            continue;
        }
        for (const QHostAddress& address : adapter.addresses) {
            const QString text = address.toString();
            if (address.protocol() == QAbstractSocket::IPv4Protocol) {
                ui->comboBox_ip->addItem(text, text);
            } else if (address.protocol() == QAbstractSocket::IPv6Protocol) {
                ui->comboBox_ip->addItem(text, QStringLiteral("[%1]").arg(text));
            }
        }
    }
}

void VeskServerConfigWidget::sltNetworkAdapterChanged(int iIndex)
{
    sltNetworkAdapterChanged(iIndex, false);
}

void VeskServerConfigWidget::sltProtocolChanged(int iIndex)
{
    const int row = currentRow();
    const QString url = formUrl(ui->lineEdit_networkName->text());
    m_pModel->setProtocol(row, ui->comboBox_protocol->currentIndex());
    m_pModel->setUrl(row, url);
    m_pModel->setStackUrl(row, formUrl(addressAt(iIndex)));
    ui->label_endpointUrl->setText(url);
    setDirty(true);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot is known by this signature.
void VeskServerConfigWidget::sltNetworkNameEdited(QString sNetworkName)
{
    const QString url = formUrl(sNetworkName);
    m_pModel->setUrl(currentRow(), url);
    ui->label_endpointUrl->setText(url);
    setDirty(true);
}

void VeskServerConfigWidget::sltIPChanged(int iIndex)
{
    m_pModel->setStackUrl(currentRow(), formUrl(addressAt(iIndex)));
    setDirty(true);
}

void VeskServerConfigWidget::sltPortChanged(int iPort)
{
    const int row = currentRow();
    const EndpointRecord endpoint = m_pModel->endpoint(row);
    const QString url =
        row < 0 ? formUrl(ui->lineEdit_networkName->text()) : withEndpointPort(endpoint.url, iPort);
    m_pModel->setUrl(row, url);
    m_pModel->setStackUrl(row, withEndpointPort(endpoint.stackUrl, iPort));
    ui->label_endpointUrl->setText(url);
    if (row >= 0 && row < m_firewallPorts.size()) {
        m_firewallPorts[row].port = iPort;
    }
    markDiscoveryPort(iPort);
    setDirty(true);
}

void VeskServerConfigWidget::markDiscoveryPort(int port)
{
    QPalette palette = QApplication::palette();
    if (port == discoveryPort) {
        palette.setBrush(QPalette::All, QPalette::Text, QColor(QStringLiteral("orangered")));
    }
    ui->spinBox_uaTcpPort->setPalette(palette);
}

void VeskServerConfigWidget::sltCopyNetworkAddressClicked()
{
    const QString address = ui->comboBox_ip->currentData().toString();
    if (ui->lineEdit_networkName->text() == address) {
        return;
    }
    ui->lineEdit_networkName->setText(address);
    sltNetworkNameEdited(address);
}

QString VeskServerConfigWidget::formUrl(const QString& host) const
{
    return makeEndpointUrl(ui->comboBox_protocol->currentIndex(), host,
                           ui->spinBox_uaTcpPort->value());
}

QString VeskServerConfigWidget::addressAt(int index) const
{
    return ui->comboBox_ip->itemData(index).toString();
}
