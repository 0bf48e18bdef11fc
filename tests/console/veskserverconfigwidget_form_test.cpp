#include "console/securitypolicies.h"
#include "tests/console/endpointstab.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QHostInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QSplitter>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

// What the tab looks like before anyone touches it, and what the mouse and long texts do to it.

namespace {

const QByteArray oneEndpoint = serverConfig(endpointXml("opc.tcp://host:4850"));

QString textOf(const QWidget& widget)
{
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
        return group->title();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text();
    }
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->text();
    }
    return {};
}

void turnWheel(QWidget& widget)
{
    const QPointF center = QRectF(widget.rect()).center();
    QWheelEvent event(center, widget.mapToGlobal(center), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void askForToolTip(QWidget& widget, const QPoint& place)
{
    QHelpEvent event(QEvent::ToolTip, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
}

} // namespace

class VeskServerConfigWidgetFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void widgets_have_their_names_texts_and_tooltips_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        const auto row = [](const char* name, const char* kind, const char* text,
                            const char* toolTip) {
            QTest::newRow(name) << QByteArray(name) << QByteArray(kind)
                                << QString(QLatin1StringView(text))
                                << QString(QLatin1StringView(toolTip));
        };
        row("groupBox_3", "QGroupBox", "General", "");
        row("checkBox_allowAnonymous", "QCheckBox", "Enable Anonymous logon",
            "Allow connecting without user credentials");
        row("checkBox_allowLocalUsers", "QCheckBox", "Enable Username/Password logon",
            "Allow connecting with username and password");
        row("treeView_endpoints", "QTreeView", "", "The configured UA endpoints");
        row("toolButton_add", "QToolButton", "", "Add new Endpoint");
        row("toolButton_remove", "QToolButton", "", "Remove selected Endpoint");
        row("groupBox", "QGroupBox", "Network Configuration", "");
        row("comboBox_protocol", "QComboBox", "", "The protocol to use for this Endpoint");
        row("lineEdit_networkName", "QLineEdit", "", "The host portion of the Endpoint URL");
        row("toolButton_copyNetworkAddress", "QToolButton", "",
            "Copy 'Network Adapter' to the 'Hostname / IP' field");
        row("comboBox_ip", "QComboBox", "",
            "If a Network Adapter is selected, choose the IP Address to bind to here");
        row("label_endpointUrl", "QLabel", "opc.tcp://hostname:4850",
            "The Endpoint URL as it will be seen in FindServers and GetEndpoints calls");
        row("checkBox_addFirewallException", "QCheckBox", "Add as firewall exception",
            "Add the port as an exception to the system firewall");
        row("groupBox_2", "QGroupBox", "Security", "");
        row("checkBox_spNone", "QCheckBox", "None", "Support connections with no encryption");
        row("pushButton_apply", "QPushButton", "Apply", "");
        row("pushButton_revert", "QPushButton", "Revert", "");
    }

    void widgets_have_their_names_texts_and_tooltips()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const QByteArray, kind);
        QFETCH(const QString, text);
        QFETCH(const QString, toolTip);
        const EndpointsTab tab("not xml");
        const auto& widget = tab.child<QWidget>(name);
        QVERIFY(widget.inherits(kind));
        QCOMPARE(textOf(widget), text);
        QCOMPARE(widget.toolTip(), toolTip);
    }

    void rich_tooltips_explain_adapter_and_port()
    {
        const EndpointsTab tab("not xml");
        const QString adapter = tab.adapter().toolTip();
        QVERIFY(Qt::mightBeRichText(adapter));
        for (const char* word : {"All", "adapter", "Local Only"}) {
            QVERIFY2(adapter.contains(QLatin1StringView(word)), word);
        }
        const QString port = tab.port().toolTip();
        QVERIFY(Qt::mightBeRichText(port));
        QVERIFY(port.contains(u"The TCP port of the Endpoint"_s));
        QVERIFY(port.contains(u"4840"_s));
        QVERIFY(port.contains(u"Local Discovery Server"_s));
    }

    void initial_values_without_a_file()
    {
        const EndpointsTab tab("not xml");
        QCOMPARE(EndpointsTab::items(tab.protocol()), (QStringList{u"UA TCP"_s, u"UA HTTPS"_s}));
        QCOMPARE(tab.protocol().currentIndex(), 0);
        QCOMPARE(tab.port().minimum(), 0);
        QCOMPARE(tab.port().maximum(), 65535);
        QCOMPARE(tab.port().value(), 4850);
        QCOMPARE(tab.networkName().text(), QString());
        QVERIFY(!tab.none().isChecked());
        QVERIFY(tab.isClean());
    }

    void adapter_combo_offers_all_usable_adapters_and_local_only()
    {
        const EndpointsTab tab("not xml");
        QCOMPARE(EndpointsTab::items(tab.adapter()),
                 (QStringList{u"All"_s, u"eth0"_s, u"wlan0"_s, u"Local Only"_s}));
        QCOMPARE(tab.adapter().currentIndex(), 0);
        for (int i = 0; i < tab.adapter().count(); ++i) {
            QVERIFY(!tab.adapter().itemData(i).isValid());
        }
    }

    void adapter_combo_offers_the_computers_own_adapters_unless_told_otherwise()
    {
        QStringList expected = {u"All"_s};
        for (const NetworkAdapter& adapter : networkAdapters()) {
            if (!adapter.isLoopback && !adapter.addresses.isEmpty()) {
                expected.append(adapter.name);
            }
        }
        expected.append(u"Local Only"_s);
        const VeskServerConfigWidget widget(QString(), FirewallModeNone, u"UA Port"_s);
        const auto* combo = widget.findChild<QComboBox*>(u"comboBox_networkAdapter"_s);
        QCOMPARE(EndpointsTab::items(*combo), expected);
    }

    void adapter_combo_without_any_adapter_has_two_items()
    {
        const EndpointsTab tab("not xml", FirewallModeNone, nullptr,
                               [] { return QList<NetworkAdapter>(); });
        QCOMPARE(EndpointsTab::items(tab.adapter()), (QStringList{u"All"_s, u"Local Only"_s}));
    }

    void ip_combo_offers_the_host_name()
    {
        const EndpointsTab tab("not xml");
        const QString hostName = QHostInfo::localHostName();
        QCOMPARE(EndpointsTab::items(tab.ip()), QStringList(hostName));
        QCOMPARE(EndpointsTab::itemData(tab.ip()), QStringList(hostName));
        QCOMPARE(tab.ip().currentIndex(), 0);
    }

    void buttons_have_icons_and_names()
    {
        const EndpointsTab tab("not xml");
        for (const QToolButton* button : {&tab.add(), &tab.remove(), &tab.copy()}) {
            QVERIFY2(!button->icon().isNull(), qPrintable(button->objectName()));
            QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
        }
        const auto isIcon = [](const QToolButton& button, const QString& path) {
            return button.icon().pixmap(16).toImage() == QIcon(path).pixmap(16).toImage();
        };
        QVERIFY(isIcon(tab.add(), u":/veskwidgets/images/add.png"_s));
        QVERIFY(isIcon(tab.remove(), u":/veskwidgets/images/remove.png"_s));
        QVERIFY(isIcon(tab.copy(), u":/veskwidgets/images/copyTo.png"_s));
    }

    void labels_stand_beside_their_inputs_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("buddy");
        QTest::newRow("host") << u"Hostname / IP"_s << QByteArray("lineEdit_networkName");
        QTest::newRow("adapter") << u"Network Adapter"_s << QByteArray("comboBox_networkAdapter");
        QTest::newRow("port") << u"Port"_s << QByteArray("spinBox_uaTcpPort");
        QTest::newRow("protocol") << u"Protocol"_s << QByteArray("comboBox_protocol");
        QTest::newRow("url") << u"Endpoint URL"_s << QByteArray();
    }

    void labels_stand_beside_their_inputs()
    {
        QFETCH(const QString, text);
        QFETCH(const QByteArray, buddy);
        const EndpointsTab tab("not xml");
        const auto labels = tab.widget->findChildren<QLabel*>();
        const auto label = std::find_if(labels.begin(), labels.end(), [&](const QLabel* candidate) {
            return candidate->text() == text;
        });
        QVERIFY(label != labels.end());
        QCOMPARE((*label)->buddy() ? (*label)->buddy()->objectName().toUtf8() : QByteArray(),
                 buddy);
    }

    void table_is_a_flat_list_of_single_rows()
    {
        const EndpointsTab tab(oneEndpoint);
        const QTreeView& table = tab.table();
        QCOMPARE(table.editTriggers(), QAbstractItemView::NoEditTriggers);
        QVERIFY(table.alternatingRowColors());
        QCOMPARE(table.selectionMode(), QAbstractItemView::SingleSelection);
        QCOMPARE(table.selectionBehavior(), QAbstractItemView::SelectRows);
        QVERIFY(!table.rootIsDecorated());
        QVERIFY(table.uniformRowHeights());
        QVERIFY(!table.itemsExpandable());
        QVERIFY(!table.showDropIndicator());
        QVERIFY(!table.accessibleName().isEmpty());
    }

    void table_and_groups_lie_in_a_splitter()
    {
        const EndpointsTab tab(oneEndpoint);
        const auto& splitter = tab.child<QSplitter>("splitter");
        QCOMPARE(splitter.orientation(), Qt::Horizontal);
        QCOMPARE(splitter.count(), 2);
        QVERIFY(splitter.widget(0)->isAncestorOf(&tab.table()));
        QVERIFY(splitter.widget(1)->isAncestorOf(&tab.child<QGroupBox>("groupBox")));
        QVERIFY(splitter.widget(1)->isAncestorOf(&tab.child<QGroupBox>("groupBox_2")));
        QVERIFY(!splitter.isAncestorOf(&tab.child<QGroupBox>("groupBox_3")));
    }

    void each_policy_but_none_has_a_line_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("Basic128Rsa15") << 1;
        QTest::newRow("Basic256") << 2;
        QTest::newRow("Basic256Sha256") << 3;
    }

    void each_policy_but_none_has_a_line()
    {
        QFETCH(const int, row);
        const QString name = QLatin1StringView(QTest::currentDataTag());
        const QString uri = u"http://opcfoundation.org/UA/SecurityPolicy#"_s + name;
        const EndpointsTab tab("not xml");
        const auto& grid = tab.child<QGridLayout>("gridLayout_sp");
        QCOMPARE(grid.itemAtPosition(0, 0)->widget(), &tab.none());

        const auto* check = qobject_cast<QCheckBox*>(grid.itemAtPosition(row, 0)->widget());
        QVERIFY(check);
        QCOMPARE(check->text(), name);
        QCOMPARE(check->property("SpName").toString(), uri);
        QCOMPARE(check->toolTip(), u"Support connections with %1 encryption"_s.arg(name));
        QVERIFY(!check->isChecked());

        const auto* modes = qobject_cast<QComboBox*>(grid.itemAtPosition(row, 1)->widget());
        QVERIFY(modes);
        QCOMPARE(EndpointsTab::items(*modes),
                 (QStringList{u"Sign"_s, u"Sign & Encrypt"_s, u"Sign + Sign & Encrypt"_s}));
        QCOMPARE(modes->property("SpName").toString(), uri);
        QCOMPARE(modes->currentIndex(), 1);
        QVERIFY(!modes->isEnabled());
        QVERIFY(!modes->accessibleName().isEmpty());
        QCOMPARE(modes->toolTip(),
                 u"<p><b>Sign: </b>The communication between client and server will only be "
                 "signed, not encrypted.</p><p><b>Sign &amp; Encrypt: </b>The communication "
                 "between client and server will be signed and encrypted.</p><p><b>Sign + Sign "
                 "&amp; Encrypt: </b>Allow both of the above options."_s);
    }

    void policy_lines_are_reached_by_tab_behind_none()
    {
        const EndpointsTab tab(serverConfig(
            endpointXml("opc.tcp://h:1", {},
                        settingXml("Basic128Rsa15", {"Sign"}) + settingXml("Basic256", {"Sign"}) +
                            settingXml("Basic256Sha256", {"Sign"}))));
        QList<QWidget*> expected = {&tab.none()};
        for (const char* name : {"Basic128Rsa15", "Basic256", "Basic256Sha256"}) {
            expected << &tab.policy(name) << &tab.modes(name);
        }
        tab.none().setFocus();
        for (QWidget* widget : expected) {
            QCOMPARE(QApplication::focusWidget(), widget);
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
    }

    void firewall_box_shows_in_mode_1_only_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("isVisible");
        QTest::newRow("none") << 0 << false;
        QTest::newRow("per endpoint") << 1 << true;
        QTest::newRow("all endpoints") << 2 << false;
        QTest::newRow("no mode") << 3 << false;
    }

    void firewall_box_shows_in_mode_1_only()
    {
        QFETCH(const int, mode);
        QFETCH(const bool, isVisible);
        const EndpointsTab tab(oneEndpoint, mode);
        QCOMPARE(tab.firewallException().isVisible(), isVisible);
    }

    void slots_stand_in_their_order()
    {
        const QMetaObject& meta = VeskServerConfigWidget::staticMetaObject;
        QStringList slots_;
        QStringList signals_;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            const QMetaMethod method = meta.method(i);
            const QString signature = QString::fromLatin1(method.methodSignature());
            (method.methodType() == QMetaMethod::Signal ? signals_ : slots_).append(signature);
            QVERIFY(method.access() == QMetaMethod::Public);
        }
        QCOMPARE(signals_, QStringList(u"changesSaved()"_s));
        QCOMPARE(slots_,
                 (QStringList{
                     u"sltAddEndpoint()"_s, u"sltRemoveEndpoint()"_s, u"sltSaveConfiguration()"_s,
                     u"sltLoadConfiguration()"_s,
                     u"sltCurrentEndpointChanged(QModelIndex,QModelIndex)"_s,
                     u"sltProtocolChanged(int)"_s, u"sltNetworkNameEdited(QString)"_s,
                     u"sltNetworkAdapterChanged(int,bool)"_s, u"sltNetworkAdapterChanged(int)"_s,
                     u"sltIPChanged(int)"_s, u"sltPortChanged(int)"_s, u"sltSpNoneClicked(bool)"_s,
                     u"sltSpClicked(bool)"_s, u"sltMsmActivated(int)"_s,
                     u"sltAddFirewallExceptionClicked(bool)"_s, u"sltCopyNetworkAddressClicked()"_s,
                     u"sltAllowAnonymousClicked(bool)"_s, u"sltAllowLocalUsersClicked(bool)"_s}));
    }

    // Long texts

    void long_url_is_elided_and_pushes_nothing_out()
    {
        const EndpointsTab tab(serverConfig(endpointXml("opc.tcp://short:1")));
        const int before = tab.widget->minimumSizeHint().width();
        const QString host = QString(3000, u'h');
        const QString url = u"opc.tcp://%1:4850"_s.arg(host);
        tab.setFileContent(serverConfig(endpointXml(url.toUtf8())));
        tab.widget->reload();
        QCoreApplication::processEvents();

        QCOMPARE(tab.url().text(), url);
        QCOMPARE(tab.networkName().text(), host);
        QCOMPARE(tab.widget->minimumSizeHint().width(), before);
        QCOMPARE(tab.widget->width(), 800);
        QCOMPARE(tab.table().textElideMode(), Qt::ElideMiddle);
        const QHeaderView* header = tab.table().header();
        QVERIFY(header->length() <= tab.table().viewport()->width());
        // All four icons have their place.
        QVERIFY(header->sectionSize(3) >= 4 * (16 + 3));
    }

    void tooltip_of_an_elided_url_shows_it_as_plain_text()
    {
        const EndpointsTab tab(
            serverConfig(endpointXml("opc.tcp://&lt;b&gt;" + QByteArray(300, 'h') + ":4850")));
        QTreeView& table = tab.table();
        const QRect cell = table.visualRect(tab.model().index(0, 2));
        askForToolTip(*table.viewport(), cell.center());
        QVERIFY(QToolTip::text().contains(u"opc.tcp://&lt;b&gt;hhh"_s));
        QVERIFY(!QToolTip::text().contains(u"<b>"_s));

        askForToolTip(tab.url(), tab.url().rect().center());
        QVERIFY(QToolTip::text().contains(u"opc.tcp://&lt;b&gt;hhh"_s));
        QVERIFY(QToolTip::text().contains(u"FindServers"_s));
        QCOMPARE(tab.url().textFormat(), Qt::PlainText);
    }

    void tooltip_of_a_short_url_is_the_tables()
    {
        const EndpointsTab tab(serverConfig(endpointXml("opc.tcp://h:1")));
        QTreeView& table = tab.table();
        askForToolTip(*table.viewport(), table.visualRect(tab.model().index(0, 2)).center());
        QVERIFY(!QToolTip::text().contains(u"opc.tcp"_s));
    }

    void number_column_has_room_for_the_last_number()
    {
        QByteArray xml;
        for (int i = 0; i < 1200; ++i) {
            xml += endpointXml("opc.tcp://h:1");
        }
        const EndpointsTab tab(serverConfig(xml));
        QTreeView& table = tab.table();
        QVERIFY(table.columnWidth(0) >= table.sizeHintForIndex(tab.model().index(1199, 0)).width());
        QCOMPARE(tab.column(0).constLast(), u"1200"_s);
    }

    void columns_have_the_width_of_their_contents()
    {
        const EndpointsTab tab(
            serverConfig(endpointXml("opc.tcp://h:1") + endpointXml("https://host2:1")));
        const QTreeView& table = tab.table();
        for (int column = 0; column < 3; ++column) {
            for (int row = 0; row < 2; ++row) {
                const QModelIndex index = tab.model().index(row, column);
                QVERIFY(table.columnWidth(column) >= table.sizeHintForIndex(index).width());
            }
        }
    }

    void long_adapter_name_pushes_nothing_out()
    {
        const EndpointsTab usual(oneEndpoint);
        const EndpointsTab tab(
            oneEndpoint, FirewallModeNone, nullptr, []() -> QList<NetworkAdapter> {
                return {{QString(500, u'n'), false, {QHostAddress(u"10.1.1.1"_s)}}};
            });
        QCOMPARE(tab.adapter().count(), 3);
        QCOMPARE(tab.widget->minimumSizeHint(), usual.widget->minimumSizeHint());
    }

    void low_window_scrolls_the_settings_up_and_down_alone()
    {
        const EndpointsTab tab(
            serverConfig(endpointXml("opc.tcp://h:1", {}, settingXml("Basic256Sha256", {"Sign"}))));
        auto& area = tab.child<QScrollArea>("scrollArea");
        QVERIFY(!area.verticalScrollBar()->isVisible());
        tab.widget->resize(tab.widget->minimumSizeHint().width(), 300);
        QTRY_VERIFY(area.verticalScrollBar()->isVisible());
        QVERIFY(area.widget()->width() >= area.widget()->minimumSizeHint().width());
        QCOMPARE(area.widget()->width(), area.viewport()->width());

        // What is out of sight comes into it with the focus.
        QComboBox& last = tab.modes("Basic256Sha256");
        QVERIFY(last.visibleRegion().isEmpty());
        tab.policy("Basic256Sha256").setFocus();
        QTest::keyClick(&tab.policy("Basic256Sha256"), Qt::Key_Tab);
        QVERIFY(last.hasFocus());
        QCOMPARE(last.visibleRegion().boundingRect(), last.rect());
    }

    // Mouse wheel

    void wheel_changes_an_input_only_with_the_focus_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name :
             {"comboBox_protocol", "comboBox_networkAdapter", "comboBox_ip", "spinBox_uaTcpPort"}) {
            QTest::newRow(name) << QByteArray(name);
        }
        QTest::newRow("policy") << QByteArray();
    }

    void wheel_changes_an_input_only_with_the_focus()
    {
        QFETCH(const QByteArray, name);
        const EndpointsTab tab(serverConfig(endpointXml(
            "opc.tcp://h:4850", "opc.tcp://192.168.7.5:4850", settingXml("Basic256", {"Sign"}))));
        QWidget& input = name.isEmpty() ? tab.modes("Basic256") : tab.child<QWidget>(name);
        const auto value = [&input] {
            const auto* combo = qobject_cast<const QComboBox*>(&input);
            return combo ? combo->currentText() : input.property("text").toString();
        };
        const QString before = value();
        tab.table().setFocus();
        turnWheel(input);
        QCOMPARE(value(), before);
        QVERIFY(tab.table().hasFocus());
        input.setFocus();
        turnWheel(input);
        QVERIFY(value() != before);
        QVERIFY(tab.isDirty());
    }
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetFormTest)

#include "veskserverconfigwidget_form_test.moc"
