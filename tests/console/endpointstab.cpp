#include "tests/console/endpointstab.h"

#include "console/securitypolicies.h"
#include "tests/support/configsample.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QHostInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

QByteArray endpointXml(const QByteArray& url, const QByteArray& stackUrl, const QByteArray& content)
{
    const QByteArray stack =
        stackUrl.isEmpty() ? QByteArray() : "<StackUrl>" + stackUrl + "</StackUrl>";
    return "<UaEndpoint><Url>" + url + "</Url>" + stack + content + "</UaEndpoint>";
}

QByteArray settingXml(const QByteArray& policyName, const QList<QByteArray>& modes)
{
    QByteArray xml =
        "<SecuritySetting><SecurityPolicy>http://opcfoundation.org/UA/SecurityPolicy#" +
        policyName + "</SecurityPolicy>";
    for (const QByteArray& mode : modes) {
        xml += "<MessageSecurityMode>" + mode + "</MessageSecurityMode>";
    }
    return xml + "</SecuritySetting>";
}

QString policyUri(const char* policyName)
{
    return SecurityPolicies::prefix + QLatin1StringView(policyName);
}

QString localUrl(int port, const char* scheme)
{
    return u"%1://%2:%3"_s.arg(QLatin1StringView(scheme), QHostInfo::localHostName(),
                               QString::number(port));
}

QList<NetworkAdapter> sampleAdapters()
{
    const auto address = [](const char* text) { return QHostAddress(QLatin1StringView(text)); };
    return {
        {u"lo"_s, true, {address("127.0.0.1"), address("127.0.0.2"), address("::1")}},
        {u"eth0"_s, false, {address("192.168.7.5"), address("fe80::1")}},
        {u"wlan0"_s, false, {address("fe80::2%wlan0"), address("10.0.0.7")}},
        {u"down0"_s, false, {}},
    };
}

namespace {

class RecordingFirewall : public FirewallPorts
{
public:
    explicit RecordingFirewall(std::shared_ptr<FirewallRecord> record)
        : m_record(std::move(record))
    {
    }

    QList<int> openFirewallPorts(const QString& ruleName) override
    {
        m_record->calls.append(u"ports %1"_s.arg(ruleName));
        return m_record->openPorts;
    }

    void setFirewallPort(const QString& ruleName, int port, bool open) override
    {
        m_record->calls.append(
            u"%1 %2 %3"_s.arg(open ? u"open"_s : u"close"_s, ruleName, QString::number(port)));
        m_record->openPorts.removeAll(port);
        if (open) {
            m_record->openPorts.append(port);
        }
    }

private:
    std::shared_ptr<FirewallRecord> m_record;
};

} // namespace

std::unique_ptr<FirewallPorts> makeRecordingFirewall(std::shared_ptr<FirewallRecord> record)
{
    return std::make_unique<RecordingFirewall>(std::move(record));
}

EndpointsTab::EndpointsTab(const QByteArray& content, int firewallMode,
                           std::shared_ptr<FirewallRecord> record, NetworkAdapterSource adapters)
    : path(writeFile(directory.filePath(u"ServerConfig.xml"_s), content))
    , widget(std::make_unique<VeskServerConfigWidget>(
          path, firewallMode, u"UA Port"_s, nullptr,
          record ? makeRecordingFirewall(std::move(record)) : nullptr, std::move(adapters)))
{
    widget->resize(800, 600);
    widget->show();
    if (!QTest::qWaitForWindowActive(widget.get())) {
        qFatal("the tab doesn't come up");
    }
}

QTreeView& EndpointsTab::table() const
{
    return child<QTreeView>("treeView_endpoints");
}

QToolButton& EndpointsTab::add() const
{
    return child<QToolButton>("toolButton_add");
}

QToolButton& EndpointsTab::remove() const
{
    return child<QToolButton>("toolButton_remove");
}

QComboBox& EndpointsTab::protocol() const
{
    return child<QComboBox>("comboBox_protocol");
}

QLineEdit& EndpointsTab::networkName() const
{
    return child<QLineEdit>("lineEdit_networkName");
}

QToolButton& EndpointsTab::copy() const
{
    return child<QToolButton>("toolButton_copyNetworkAddress");
}

QComboBox& EndpointsTab::adapter() const
{
    return child<QComboBox>("comboBox_networkAdapter");
}

QComboBox& EndpointsTab::ip() const
{
    return child<QComboBox>("comboBox_ip");
}

QSpinBox& EndpointsTab::port() const
{
    return child<QSpinBox>("spinBox_uaTcpPort");
}

QLabel& EndpointsTab::url() const
{
    return child<QLabel>("label_endpointUrl");
}

QCheckBox& EndpointsTab::firewallException() const
{
    return child<QCheckBox>("checkBox_addFirewallException");
}

QCheckBox& EndpointsTab::anonymous() const
{
    return child<QCheckBox>("checkBox_allowAnonymous");
}

QCheckBox& EndpointsTab::localUsers() const
{
    return child<QCheckBox>("checkBox_allowLocalUsers");
}

QCheckBox& EndpointsTab::none() const
{
    return child<QCheckBox>("checkBox_spNone");
}

QPushButton& EndpointsTab::apply() const
{
    return child<QPushButton>("pushButton_apply");
}

QPushButton& EndpointsTab::revert() const
{
    return child<QPushButton>("pushButton_revert");
}

namespace {

template <typename T>
T& findByPolicy(const QWidget& form, const char* policyName)
{
    const QString uri = policyUri(policyName);
    const auto candidates = form.findChildren<T*>();
    for (T* candidate : candidates) {
        if (candidate->property("SpName").toString() == uri) {
            return *candidate;
        }
    }
    qFatal("no line of %s in the form", policyName);
}

} // namespace

QCheckBox& EndpointsTab::policy(const char* policyName) const
{
    return findByPolicy<QCheckBox>(*widget, policyName);
}

QComboBox& EndpointsTab::modes(const char* policyName) const
{
    return findByPolicy<QComboBox>(*widget, policyName);
}

VeskServerConfigModel& EndpointsTab::model() const
{
    return *qobject_cast<VeskServerConfigModel*>(table().model());
}

int EndpointsTab::currentRow() const
{
    return table().currentIndex().row();
}

QStringList EndpointsTab::column(int column) const
{
    QStringList texts;
    for (int row = 0; row < rowCount(); ++row) {
        texts.append(model().index(row, column).data().toString());
    }
    return texts;
}

void EndpointsTab::selectRow(int row) const
{
    const QRect cell = table().visualRect(model().index(row, 1));
    QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::NoModifier, cell.center());
}

void EndpointsTab::typePort(int number) const
{
    port().selectAll();
    QTest::keyClicks(&port(), QString::number(number));
    QTest::keyClick(&port(), Qt::Key_Return);
}

void EndpointsTab::typeHost(const QString& text) const
{
    networkName().selectAll();
    if (text.isEmpty()) {
        QTest::keyClick(&networkName(), Qt::Key_Delete);
    }
    for (const QChar character : text) {
        // QTest's own keys are those of ASCII.
        QTest::sendKeyEvent(QTest::Click, &networkName(), Qt::Key_unknown, QString(character),
                            Qt::NoModifier);
    }
}

void EndpointsTab::click(QAbstractButton& button)
{
    const QPoint center = button.rect().center();
    // A check box takes a click on its indicator, which stands at its left.
    const bool isCheckBox = qobject_cast<QCheckBox*>(&button) != nullptr;
    QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier,
                      isCheckBox ? QPoint(8, center.y()) : center);
}

void EndpointsTab::choose(QComboBox& combo, int index)
{
    QTest::keyClick(&combo, Qt::Key_F4);
    QAbstractItemView* list = combo.view();
    if (!QTest::qWaitFor([list] { return list->isVisible(); })) {
        qFatal("the list of a combo box doesn't open");
    }
    QTest::keyClick(list, Qt::Key_Home);
    for (int i = 0; i < index; ++i) {
        QTest::keyClick(list, Qt::Key_Down);
    }
    QTest::keyClick(list, Qt::Key_Return);
}

void EndpointsTab::choose(QComboBox& combo, const QString& text)
{
    choose(combo, combo.findText(text));
}

QStringList EndpointsTab::items(const QComboBox& combo)
{
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i) {
        texts.append(combo.itemText(i));
    }
    return texts;
}

QStringList EndpointsTab::itemData(const QComboBox& combo)
{
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i) {
        texts.append(combo.itemData(i).toString());
    }
    return texts;
}

bool EndpointsTab::isDirty() const
{
    return widget->m_bDirty && apply().isEnabled() && revert().isEnabled();
}

bool EndpointsTab::isClean() const
{
    return !widget->m_bDirty && !apply().isEnabled() && !revert().isEnabled();
}

QByteArray EndpointsTab::fileContent() const
{
    return readFile(path);
}

void EndpointsTab::setFileContent(const QByteArray& content) const
{
    writeFile(path, content);
}
