// The security half of the endpoints tab: the lines of the policies, and the firewall.

#include "console/securitypolicies.h"
#include "console/veskserverconfigmodel.h"
#include "console/veskserverconfigwidget.h"
#include "widgets/plainmessagebox.h"

#include "ui_veskserverconfigwidget.h"

#include <array>

namespace {

constexpr const char* policyProperty = "SpName";

/// The modes that the items of a policy's combo box stand for.
constexpr std::array<quint16, 3> modesOfItems = {
    MessageSecurityModeSign, MessageSecurityModeSignAndEncrypt,
    MessageSecurityModeSign | MessageSecurityModeSignAndEncrypt};

constexpr int defaultModeItem = 1;

quint16 modesOfItem(int index)
{
    return index >= 0 && index < static_cast<int>(modesOfItems.size())
               ? modesOfItems.at(static_cast<std::size_t>(index))
               : quint16(0);
}

/// Modes that no item stands for leave the default.
int itemOfModes(quint16 modes)
{
    for (int i = 0; i < static_cast<int>(modesOfItems.size()); ++i) {
        const quint16 known = modesOfItem(i);
        if ((modes & modesOfItems.back()) == known) {
            return i;
        }
    }
    return defaultModeItem;
}

QString policyOf(const QObject* control)
{
    return control ? control->property(policyProperty).toString() : QString();
}

} // namespace

void VeskServerConfigWidget::makePolicyLines()
{
    for (int row = 1; row < m_securityPolicies.size(); ++row) {
        makePolicyLine(row);
    }
}

void VeskServerConfigWidget::makePolicyLine(int row)
{
    const QString& policy = m_securityPolicies.at(row);
    const QString name = SecurityPolicies::name(policy);

    auto* check = new QCheckBox(name, ui->groupBox_2);
    check->setProperty(policyProperty, policy);
    check->setToolTip(tr("Support connections with %1 encryption").arg(name));

    auto* mode = new QComboBox(ui->groupBox_2);
    mode->setProperty(policyProperty, policy);
    mode->addItems({QStringLiteral("Sign"), QStringLiteral("Sign & Encrypt"),
                    QStringLiteral("Sign + Sign & Encrypt")});
    mode->setCurrentIndex(defaultModeItem);
    mode->setEnabled(false);
    mode->setAccessibleName(tr("Message security mode of %1").arg(name));
    mode->setToolTip(
        tr("<p><b>Sign: </b>The communication between client and server will only be signed, not "
           "encrypted.</p><p><b>Sign &amp; Encrypt: </b>The communication between client and "
           "server will be signed and encrypted.</p><p><b>Sign + Sign &amp; Encrypt: </b>Allow "
           "both of the above options."));

    ui->gridLayout_sp->addWidget(check, row, 0);
    ui->gridLayout_sp->addWidget(mode, row, 1);
    connect(check, &QCheckBox::clicked, this, &VeskServerConfigWidget::sltSpClicked);
    connect(check, &QCheckBox::toggled, mode, &QComboBox::setEnabled);
    connect(mode, &QComboBox::activated, this, &VeskServerConfigWidget::sltMsmActivated);
}

QList<VeskServerConfigWidget::PolicyLine> VeskServerConfigWidget::policyLines() const
{
    const auto at = [this](int row, int column) {
        return ui->gridLayout_sp->itemAtPosition(row, column)->widget();
    };
    QList<PolicyLine> lines;
    for (int row = 1; row < m_securityPolicies.size(); ++row) {
        lines.append({qobject_cast<QCheckBox*>(at(row, 0)), qobject_cast<QComboBox*>(at(row, 1))});
    }
    return lines;
}

QComboBox* VeskServerConfigWidget::modeBox(const QString& policy) const
{
    const QList<PolicyLine> lines = policyLines();
    for (const PolicyLine& line : lines) {
        if (policyOf(line.mode) == policy) {
            return line.mode;
        }
    }
    return nullptr;
}

void VeskServerConfigWidget::resetSecurity()
{
    ui->checkBox_spNone->setChecked(false);
    const QList<PolicyLine> lines = policyLines();
    for (const PolicyLine& line : lines) {
        line.check->setChecked(false);
        line.mode->setCurrentIndex(defaultModeItem);
    }
}

void VeskServerConfigWidget::showSecurity(const QList<SecurityRecord>& settings)
{
    const QList<PolicyLine> lines = policyLines();
    for (const SecurityRecord& setting : settings) {
        if (setting.securityPolicy == SecurityPolicies::none) {
            ui->checkBox_spNone->setChecked(true);
            continue;
        }
        for (const PolicyLine& line : lines) {
            if (policyOf(line.check) == setting.securityPolicy) {
                line.check->setChecked(true);
                line.mode->setCurrentIndex(itemOfModes(setting.messageSecurityModes));
            }
        }
    }
}

QList<SecurityRecord> VeskServerConfigWidget::currentSettingsWithout(const QString& policy) const
{
    QList<SecurityRecord> settings = m_pModel->endpoint(currentRow()).securitySettings;
    settings.removeIf(
        [&](const SecurityRecord& setting) { return setting.securityPolicy == policy; });
    return settings;
}

void VeskServerConfigWidget::storeSettings(const QList<SecurityRecord>& settings)
{
    m_pModel->setSecuritySettings(currentRow(), settings);
    setDirty(true);
}

void VeskServerConfigWidget::sltSpNoneClicked(bool bEnabled)
{
    QList<SecurityRecord> settings = currentSettingsWithout(SecurityPolicies::none);
    if (bEnabled) {
        settings.append({SecurityPolicies::none, MessageSecurityModeNone});
    }
    storeSettings(settings);
}

void VeskServerConfigWidget::sltSpClicked(bool bEnabled)
{
    const QString policy = policyOf(sender());
    const QComboBox* mode = modeBox(policy);
    if (!mode) {
        return;
    }
    if (bEnabled && m_deprecatedPolicies.contains(policy)) {
        showPlainMessageBox(
            this, QMessageBox::Warning, tr("Security Warning"),
            tr("The chosen SecurityPolicy '%1' is insecure and has been marked as "
               "deprecated by the UA specification.Use this policy only for backward "
               "compatibility with older systems that don't support better encryption, disable it "
               "if not needed.")
                .arg(policy));
    }
    QList<SecurityRecord> settings = currentSettingsWithout(policy);
    if (bEnabled) {
        settings.append({policy, modesOfItem(mode->currentIndex())});
    }
    storeSettings(settings);
}

void VeskServerConfigWidget::sltMsmActivated(int iIndex)
{
    const QString policy = policyOf(sender());
    if (!modeBox(policy)) {
        return;
    }
    QList<SecurityRecord> settings = currentSettingsWithout(policy);
    settings.append({policy, modesOfItem(iIndex)});
    storeSettings(settings);
}

QList<int> VeskServerConfigWidget::openFirewallPorts()
{
    return m_pFirewall ? m_pFirewall->openFirewallPorts(m_firewallRuleName) : QList<int>();
}

void VeskServerConfigWidget::setFirewallPort(int port, bool open)
{
    if (m_pFirewall) {
        m_pFirewall->setFirewallPort(m_firewallRuleName, port, open);
    }
}

void VeskServerConfigWidget::alignFirewall()
{
    const FirewallChanges changes =
        firewallChanges(openFirewallPorts(), m_firewallMode, m_firewallPorts);
    for (const int port : changes.toOpen) {
        setFirewallPort(port, true);
    }
    for (const int port : changes.toClose) {
        setFirewallPort(port, false);
    }
}

void VeskServerConfigWidget::showFirewallException(int row)
{
    if (m_firewallMode == FirewallModePerEndpoint) {
        ui->checkBox_addFirewallException->setChecked(m_firewallPorts.value(row).enabled);
    }
}

void VeskServerConfigWidget::sltAddFirewallExceptionClicked(bool bEnabled)
{
    const int row = currentRow();
    if (m_firewallMode == FirewallModePerEndpoint && row >= 0 && row < m_firewallPorts.size()) {
        m_firewallPorts[row].enabled = bEnabled;
    }
    setDirty(true);
}
