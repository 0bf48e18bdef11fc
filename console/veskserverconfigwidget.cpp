#include "console/veskserverconfigwidget.h"

#include "console/configelements.h"
#include "console/configfile.h"
#include "console/endpointconfig.h"
#include "console/endpointurldelegate.h"
#include "console/securitypolicies.h"
#include "console/vesksecuritydelegate.h"
#include "console/veskserverconfigmodel.h"
#include "widgets/wheelguard.h"

#include "ui_veskserverconfigwidget.h"

#include <QHostInfo>
#include <QShortcut>

#include <utility>

VeskServerConfigWidget::VeskServerConfigWidget(const QString& configFile, int firewallMode,
                                               const QString& firewallRuleName, QWidget* parent,
                                               std::unique_ptr<FirewallPorts> firewall,
                                               NetworkAdapterSource adapters)
    : QWidget(parent)
    , ui(std::make_unique<Ui::VeskServerConfigWidget>())
    , m_configFile(configFile)
    , m_pModel(new VeskServerConfigModel(this))
    , m_firewallMode(firewallMode)
    , m_firewallRuleName(firewallRuleName)
    , m_securityPolicies(SecurityPolicies::known)
    , m_deprecatedPolicies(SecurityPolicies::deprecated)
    , m_pFirewall(std::move(firewall))
    , m_adapters(std::move(adapters))
{
    ui->setupUi(this);
    setUpTable();
    ui->checkBox_addFirewallException->setVisible(m_firewallMode == FirewallModePerEndpoint);
    fillNetworkCombos();
    connectForm();
    connectNetworkForm();
    makePolicyLines();
    setUpKeyboard();
    guardWheel(this);
    sltLoadConfiguration();
}

VeskServerConfigWidget::~VeskServerConfigWidget() = default;

void VeskServerConfigWidget::setUpTable()
{
    QTreeView* table = ui->treeView_endpoints;
    table->setModel(m_pModel);
    table->setItemDelegateForColumn(VeskServerConfigModel::SecurityColumn,
                                    new VeskSecurityDelegate(m_securityPolicies, this));
    table->setItemDelegateForColumn(VeskServerConfigModel::UrlColumn,
                                    new EndpointUrlDelegate(this));
    ui->splitter->setStretchFactor(0, 1);
    ui->splitter->setStretchFactor(1, 0);
}

void VeskServerConfigWidget::fillNetworkCombos()
{
    ui->comboBox_networkAdapter->addItem(tr("All"));
    const QList<NetworkAdapter> adapters = m_adapters();
    for (const NetworkAdapter& adapter : adapters) {
        if (!adapter.isLoopback && !adapter.addresses.isEmpty()) {
            ui->comboBox_networkAdapter->addItem(adapter.name);
        }
    }
    ui->comboBox_networkAdapter->addItem(QStringLiteral("Local Only"));
    ui->comboBox_networkAdapter->setCurrentIndex(0);

    const QString hostName = QHostInfo::localHostName();
    ui->comboBox_ip->addItem(hostName, hostName);
    ui->comboBox_ip->setCurrentIndex(0);
}

void VeskServerConfigWidget::connectForm()
{
    connect(ui->toolButton_add, &QToolButton::clicked, this,
            &VeskServerConfigWidget::sltAddEndpoint);
    connect(ui->toolButton_remove, &QToolButton::clicked, this,
            &VeskServerConfigWidget::sltRemoveEndpoint);
    connect(ui->pushButton_apply, &QPushButton::clicked, this,
            &VeskServerConfigWidget::sltSaveConfiguration);
    connect(ui->pushButton_revert, &QPushButton::clicked, this,
            &VeskServerConfigWidget::sltLoadConfiguration);
    connect(ui->treeView_endpoints->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &VeskServerConfigWidget::sltCurrentEndpointChanged);
    connect(ui->checkBox_spNone, &QCheckBox::clicked, this,
            &VeskServerConfigWidget::sltSpNoneClicked);
    connect(ui->checkBox_allowAnonymous, &QCheckBox::clicked, this,
            &VeskServerConfigWidget::sltAllowAnonymousClicked);
    connect(ui->checkBox_allowLocalUsers, &QCheckBox::clicked, this,
            &VeskServerConfigWidget::sltAllowLocalUsersClicked);
}

void VeskServerConfigWidget::connectNetworkForm()
{
    connect(ui->comboBox_protocol, &QComboBox::currentIndexChanged, this,
            &VeskServerConfigWidget::sltProtocolChanged);
    connect(ui->lineEdit_networkName, &QLineEdit::textEdited, this,
            &VeskServerConfigWidget::sltNetworkNameEdited);
    connect(ui->comboBox_networkAdapter, &QComboBox::currentIndexChanged, this,
            qOverload<int>(&VeskServerConfigWidget::sltNetworkAdapterChanged));
    connect(ui->comboBox_ip, &QComboBox::currentIndexChanged, this,
            &VeskServerConfigWidget::sltIPChanged);
    connect(ui->spinBox_uaTcpPort, &QSpinBox::valueChanged, this,
            &VeskServerConfigWidget::sltPortChanged);
    connect(ui->checkBox_addFirewallException, &QCheckBox::clicked, this,
            &VeskServerConfigWidget::sltAddFirewallExceptionClicked);
    connect(ui->toolButton_copyNetworkAddress, &QToolButton::clicked, this,
            &VeskServerConfigWidget::sltCopyNetworkAddressClicked);
}

void VeskServerConfigWidget::setUpKeyboard()
{
    const auto clickOnKey = [this](Qt::Key key, QToolButton* button) {
        auto* shortcut = new QShortcut(key, ui->treeView_endpoints);
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, button, &QToolButton::click);
    };
    clickOnKey(Qt::Key_Insert, ui->toolButton_add);
    clickOnKey(Qt::Key_Delete, ui->toolButton_remove);

    QWidget* previous = ui->checkBox_spNone;
    for (const PolicyLine& line : policyLines()) {
        setTabOrder(previous, line.check);
        setTabOrder(line.check, line.mode);
        previous = line.mode;
    }
}

void VeskServerConfigWidget::setConfigFile(const QString& configFile)
{
    m_configFile = configFile;
    sltLoadConfiguration();
}

void VeskServerConfigWidget::sltLoadConfiguration()
{
    ConfigFile file(m_configFile);
    load(file, QDomElement(), {});
}

void VeskServerConfigWidget::load(ConfigFile& file, const QDomElement& written,
                                  const QList<EndpointRecord>& endpoints)
{
    const QList<int> openPorts =
        m_firewallMode == FirewallModeNone ? QList<int>() : openFirewallPorts();
    if (file.read() == ConfigFile::ReadResult::Parsed) {
        const QDomElement serverConfig =
            file.root().firstChildElement(ConfigElement::UaServerConfig);
        showConfiguration(serverConfig,
                          serverConfig == written ? endpoints : readEndpoints(serverConfig),
                          openPorts);
    }
    ui->treeView_endpoints->resizeColumnsToContents();
}

void VeskServerConfigWidget::showConfiguration(const QDomElement& serverConfig,
                                               const QList<EndpointRecord>& endpoints,
                                               const QList<int>& openPorts)
{
    m_pModel->clear();
    m_firewallPorts.clear();
    if (m_firewallMode != FirewallModeNone) {
        const QList<int> ports = readEndpointPorts(serverConfig);
        for (const int port : ports) {
            m_firewallPorts.append({port, openPorts.contains(port)});
        }
    }
    m_pModel->addEndpoints(endpoints);
    showUserLogon(serverConfig);
    selectRow(0);
    updateRemoveButton();
    setDirty(false);
}

void VeskServerConfigWidget::showUserLogon(const QDomElement& serverConfig)
{
    if (const std::optional<UserLogon> logon = readUserLogon(serverConfig)) {
        ui->checkBox_allowAnonymous->setChecked(logon->isAnonymousAllowed);
        ui->checkBox_allowLocalUsers->setChecked(logon->isUserPasswordAllowed);
    }
}

void VeskServerConfigWidget::sltSaveConfiguration()
{
    ConfigFile file(m_configFile);
    if (file.read() != ConfigFile::ReadResult::Parsed) {
        return;
    }
    const QDomElement serverConfig = file.root().firstChildElement(ConfigElement::UaServerConfig);
    // The last row can't be removed: no row means that the file's endpoints were never shown.
    const QList<EndpointRecord> written = m_pModel->rowCount() > 0
                                              ? writeEndpoints(serverConfig, m_pModel->endpoints())
                                              : readEndpoints(serverConfig);
    writeUserLogon(serverConfig, {ui->checkBox_allowAnonymous->isChecked(),
                                  ui->checkBox_allowLocalUsers->isChecked()});
    if (!file.write()) {
        return;
    }
    if (m_firewallMode != FirewallModeNone) {
        alignFirewall();
    }
    Q_EMIT changesSaved();
    load(file, serverConfig, written);
}

void VeskServerConfigWidget::setDirty(bool dirty)
{
    m_bDirty = dirty;
    ui->pushButton_apply->setEnabled(dirty);
    ui->pushButton_revert->setEnabled(dirty);
}

void VeskServerConfigWidget::sltAddEndpoint()
{
    const int last = m_pModel->rowCount() - 1;
    if (last < 0) {
        return;
    }
    if (m_firewallMode != FirewallModeNone) {
        m_firewallPorts.append(m_firewallPorts.value(last));
    }
    const EndpointRecord twin = m_pModel->endpoint(last);
    m_pModel->addEndpoint(twin.protocol, twin.url, twin.stackUrl, twin.securitySettings);
    selectRow(last + 1);
    updateRemoveButton();
    setDirty(true);
}

void VeskServerConfigWidget::sltRemoveEndpoint()
{
    const QItemSelectionModel* selection = ui->treeView_endpoints->selectionModel();
    const QModelIndex current = selection->currentIndex();
    if (m_pModel->rowCount() <= 1 || !current.isValid() || !selection->isSelected(current)) {
        return;
    }
    const int row = current.row();
    // While the row goes, its neighbour becomes current under its old number: the port entries must
    // still stand beside the rows.
    m_pModel->removeEndpoint(row);
    if (row < m_firewallPorts.size()) {
        m_firewallPorts.removeAt(row);
    }
    updateRemoveButton();
    setDirty(true);
}

void VeskServerConfigWidget::updateRemoveButton()
{
    ui->toolButton_remove->setEnabled(m_pModel->rowCount() > 1);
}

int VeskServerConfigWidget::currentRow() const
{
    return ui->treeView_endpoints->currentIndex().row();
}

void VeskServerConfigWidget::selectRow(int row)
{
    ui->treeView_endpoints->setCurrentIndex(m_pModel->index(row, 0));
}

void VeskServerConfigWidget::sltAllowAnonymousClicked(bool /*bEnabled*/)
{
    setDirty(true);
}

void VeskServerConfigWidget::sltAllowLocalUsersClicked(bool /*bEnabled*/)
{
    setDirty(true);
}
