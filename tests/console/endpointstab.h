#pragma once

#include "console/veskserverconfigmodel.h"
#include "console/veskserverconfigwidget.h"

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

#include <memory>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QToolButton;
class QTreeView;

/// One endpoint in a configuration file: its URL and, when it isn't empty, its stack URL, followed by
/// whatever else it holds.
[[nodiscard]] QByteArray endpointXml(const QByteArray& url, const QByteArray& stackUrl = {},
                                     const QByteArray& content = {});

/// A security setting of the policy with that name and those modes.
[[nodiscard]] QByteArray settingXml(const QByteArray& policyName, const QList<QByteArray>& modes);

/// The URI of the policy with that name.
[[nodiscard]] QString policyUri(const char* policyName);

/// "opc.tcp://<this computer>:<port>".
[[nodiscard]] QString localUrl(int port, const char* scheme = "opc.tcp");

/// The adapters of a computer that has all kinds: the loopback adapter with 127.0.0.1, 127.0.0.2 and
/// ::1, "eth0" with 192.168.7.5 and fe80::1, "wlan0" with fe80::2%wlan0 and 10.0.0.7, "down0"
/// without an address.
[[nodiscard]] QList<NetworkAdapter> sampleAdapters();

/// A firewall that records what is done to it. The record outlives the tab that owns the firewall.
struct FirewallRecord
{
    QList<int> openPorts;
    QStringList calls; ///< "ports <rule>", "open <rule> <port>", "close <rule> <port>".
};
[[nodiscard]] std::unique_ptr<FirewallPorts>
makeRecordingFirewall(std::shared_ptr<FirewallRecord> record);

/// The tab "UA Endpoints" on a configuration file of its own in a new directory, with its widgets by
/// their object names and its controls worked as a person does.
class EndpointsTab
{
public:
    explicit EndpointsTab(const QByteArray& content, int firewallMode = FirewallModeNone,
                          std::shared_ptr<FirewallRecord> record = nullptr,
                          NetworkAdapterSource adapters = &sampleAdapters);

    template <typename T>
    [[nodiscard]] T& child(const char* name) const
    {
        T* found = widget->findChild<T*>(QLatin1StringView(name));
        if (!found) {
            qFatal("no %s in the form", name);
        }
        return *found;
    }

    [[nodiscard]] QTreeView& table() const;
    [[nodiscard]] QToolButton& add() const;
    [[nodiscard]] QToolButton& remove() const;
    [[nodiscard]] QComboBox& protocol() const;
    [[nodiscard]] QLineEdit& networkName() const;
    [[nodiscard]] QToolButton& copy() const;
    [[nodiscard]] QComboBox& adapter() const;
    [[nodiscard]] QComboBox& ip() const;
    [[nodiscard]] QSpinBox& port() const;
    [[nodiscard]] QLabel& url() const;
    [[nodiscard]] QCheckBox& firewallException() const;
    [[nodiscard]] QCheckBox& anonymous() const;
    [[nodiscard]] QCheckBox& localUsers() const;
    [[nodiscard]] QCheckBox& none() const;
    [[nodiscard]] QPushButton& apply() const;
    [[nodiscard]] QPushButton& revert() const;

    /// The check box and the combo box of a policy but None.
    [[nodiscard]] QCheckBox& policy(const char* policyName) const;
    [[nodiscard]] QComboBox& modes(const char* policyName) const;

    [[nodiscard]] VeskServerConfigModel& model() const;
    [[nodiscard]] EndpointRecord record(int row) const { return model().endpoint(row); }
    [[nodiscard]] int rowCount() const { return model().rowCount(); }
    [[nodiscard]] int currentRow() const;

    /// The texts of one column of the table.
    [[nodiscard]] QStringList column(int column) const;

    void selectRow(int row) const;

    /// Types a number into the port's spin box, in place of what it holds.
    void typePort(int number) const;

    /// Types a text into the host's input, in place of what it holds.
    void typeHost(const QString& text) const;

    static void click(QAbstractButton& button);

    /// Picks an item from the list of a combo box.
    static void choose(QComboBox& combo, int index);
    static void choose(QComboBox& combo, const QString& text);

    [[nodiscard]] static QStringList items(const QComboBox& combo);
    [[nodiscard]] static QStringList itemData(const QComboBox& combo);

    /// Whether the flag and both buttons agree on it.
    [[nodiscard]] bool isDirty() const;
    [[nodiscard]] bool isClean() const;

    [[nodiscard]] QByteArray fileContent() const;

    /// Puts something else into the tab's file.
    void setFileContent(const QByteArray& content) const;

    QTemporaryDir directory;
    QString path;
    std::unique_ptr<VeskServerConfigWidget> widget;
};
