#pragma once

#include "console/firewallports.h"
#include "console/networkadapters.h"

#include <QList>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class ConfigFile;
class QCheckBox;
class QComboBox;
class QDomElement;
class VeskServerConfigModel;
struct EndpointRecord;
struct SecurityRecord;

namespace Ui {
class VeskServerConfigWidget;
}

/// The tab "UA Endpoints": edits the server's endpoints and its user logon. A table shows the
/// endpoints and the controls beside it the current one; every control writes straight into its row
/// and marks the tab as changed.
///
/// The file is read when the tab is made, on Revert and by reload(), and rewritten on Apply and by
/// save(). Apart from a warning about deprecated security policies the tab reports nothing: when the
/// file can't be read or written, the changes stay in the form and m_bDirty stays set.
///
/// Moving to an endpoint on another network adapter, or on one bound to a certain address, stores
/// its stack URL anew and so marks the tab as changed. A URL that isn't of the form
/// scheme://host:port leaves the controls as they were.
class VeskServerConfigWidget : public QWidget
{
    Q_OBJECT

public:
    /// Loads configFile. firewallMode is one of FirewallMode, and firewallRuleName the name under
    /// which ports are opened. Without a firewall every mode behaves as if the firewall's calls
    /// failed. The adapters are asked for at every use.
    VeskServerConfigWidget(const QString& configFile, int firewallMode,
                           const QString& firewallRuleName, QWidget* parent = nullptr,
                           std::unique_ptr<FirewallPorts> firewall = nullptr,
                           NetworkAdapterSource adapters = &networkAdapters);
    ~VeskServerConfigWidget() override;

    /// Takes another file and loads it.
    void setConfigFile(const QString& configFile);

    /// Writes the rows and the logon into the file, like Apply, then loads it again. Clears m_bDirty
    /// and emits changesSaved() only when the file took it.
    void save() { sltSaveConfiguration(); }

    /// Shows what the file holds, like Revert, makes the first row current and clears m_bDirty. A
    /// file that can't be read leaves everything as it is.
    void reload() { sltLoadConfiguration(); }

    /// The open ports under the rule's name; empty on any failure.
    [[nodiscard]] QList<int> openFirewallPorts();

    /// Opens or closes a port under the rule's name; a failure is ignored.
    void setFirewallPort(int port, bool open);

private:
    std::unique_ptr<Ui::VeskServerConfigWidget> ui;

public:
    bool m_bDirty = false; ///< The tab holds unsaved changes. Read by the main window.

Q_SIGNALS:
    /// The file was rewritten.
    void changesSaved();

public Q_SLOTS:
    /// Appends a twin of the last endpoint and makes it current. Nothing rejects two endpoints with
    /// the same URL.
    void sltAddEndpoint();

    /// Removes the current endpoint when it is selected and not the only one.
    void sltRemoveEndpoint();

    void sltSaveConfiguration();
    void sltLoadConfiguration();

    /// Shows the endpoint of the row in the controls.
    void sltCurrentEndpointChanged(QModelIndex current, QModelIndex previous);

    /// Stores both URLs with the scheme of the chosen protocol. The stack URL's host comes from the
    /// IP item at the protocol's own index, not from the current one; that pairing is intended.
    void sltProtocolChanged(int iIndex);

    void sltNetworkNameEdited(QString sNetworkName);

    /// Offers the addresses of the adapter at that index: the host name for the first, "127.0.0.1"
    /// for the last. With blockSignals the stack URL stays as it is, otherwise it takes the first
    /// address.
    void sltNetworkAdapterChanged(int iIndex, bool blockSignals);
    void sltNetworkAdapterChanged(int iIndex);

    /// Stores the stack URL with the host of the IP item at that index.
    void sltIPChanged(int iIndex);

    /// Replaces the digits that both URLs end in. Port 4840 of the Local Discovery Server shows in
    /// orange-red.
    void sltPortChanged(int iPort);

    void sltSpNoneClicked(bool bEnabled);

    /// Adds or removes the policy of the check box that sent the signal. Warns of a deprecated one,
    /// and adds it all the same.
    void sltSpClicked(bool bEnabled);

    /// Stores the modes of the policy whose combo box sent the signal.
    void sltMsmActivated(int iIndex);

    void sltAddFirewallExceptionClicked(bool bEnabled);

    /// Makes the URL speak of the host that the stack URL binds to.
    void sltCopyNetworkAddressClicked();

    void sltAllowAnonymousClicked(bool bEnabled);
    void sltAllowLocalUsersClicked(bool bEnabled);

private:
    /// The controls of one policy but None.
    struct PolicyLine
    {
        QCheckBox* check;
        QComboBox* mode;
    };

    void setUpTable();
    void fillNetworkCombos();
    void connectForm();
    void connectNetworkForm();
    void makePolicyLines();
    void makePolicyLine(int row);
    void setUpKeyboard();

    void showConfiguration(const QDomElement& serverConfig, const QList<EndpointRecord>& endpoints,
                           const QList<int>& openPorts);

    /// Loads the file. The endpoints below the element written are known already, in case the file
    /// still holds that document.
    void load(ConfigFile& file, const QDomElement& written, const QList<EndpointRecord>& endpoints);
    void showUserLogon(const QDomElement& serverConfig);
    void setDirty(bool dirty);
    void alignFirewall();

    [[nodiscard]] int currentRow() const;
    void selectRow(int row);
    void updateRemoveButton();

    void resetSecurity();
    void showUrl(const EndpointRecord& endpoint);
    void showStackHost(const QString& host);
    void selectAdapter(int index);
    void selectAddress(const QString& host);
    void addAddressesOf(const QString& adapterName);
    void showSecurity(const QList<SecurityRecord>& settings);
    void showFirewallException(int row);
    void markDiscoveryPort(int port);

    [[nodiscard]] QString formUrl(const QString& host) const;
    [[nodiscard]] QString addressAt(int index) const;
    [[nodiscard]] QList<PolicyLine> policyLines() const;
    [[nodiscard]] QComboBox* modeBox(const QString& policy) const;
    [[nodiscard]] QList<SecurityRecord> currentSettingsWithout(const QString& policy) const;
    void storeSettings(const QList<SecurityRecord>& settings);

    QString m_configFile;
    VeskServerConfigModel* m_pModel = nullptr;
    int m_firewallMode;
    QString m_firewallRuleName;
    QList<FirewallPortEntry> m_firewallPorts; ///< One for each row, unless the mode is 0.
    QStringList m_securityPolicies;
    QStringList m_deprecatedPolicies;
    std::unique_ptr<FirewallPorts> m_pFirewall;
    NetworkAdapterSource m_adapters;
};
