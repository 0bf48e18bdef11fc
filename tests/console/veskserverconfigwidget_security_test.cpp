#include "console/securitypolicies.h"
#include "tests/console/endpointstab.h"
#include "tests/support/configsample.h"
#include "tests/support/messageboxanswer.h"
#include "tests/support/testmain.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

const QString warningTitle = u"Security Warning"_s;
const QString warningText =
    u"The chosen SecurityPolicy 'http://opcfoundation.org/UA/SecurityPolicy#Basic128Rsa15' is "
    "insecure and has been marked as deprecated by the UA specification.Use this policy only for "
    "backward compatibility with older systems that don't support better encryption, disable it "
    "if not needed."_s;

QByteArray withSettings(const QByteArray& settings)
{
    return serverConfig(endpointXml("opc.tcp://h:1", {}, settings));
}

QList<SecurityRecord> settingsOf(const EndpointsTab& tab)
{
    return tab.record(0).securitySettings;
}

using Settings = QList<SecurityRecord>;

constexpr const char* policyNames[] = {"Basic128Rsa15", "Basic256", "Basic256Sha256"};

} // namespace

class VeskServerConfigWidgetSecurityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void modes_of_the_file_select_the_item_data()
    {
        QTest::addColumn<QList<QByteArray>>("modes");
        QTest::addColumn<int>("item");
        using Modes = QList<QByteArray>;
        QTest::newRow("sign") << Modes{"Sign"} << 0;
        QTest::newRow("sign and encrypt") << Modes{"SignAndEncrypt"} << 1;
        QTest::newRow("both") << Modes{"Sign", "SignAndEncrypt"} << 2;
        QTest::newRow("both, backwards") << Modes{"SignAndEncrypt", "Sign"} << 2;
        QTest::newRow("neither leaves the default") << Modes{} << 1;
        QTest::newRow("unknown leaves the default") << Modes{"Encrypt"} << 1;
        QTest::newRow("none leaves the default") << Modes{"None"} << 1;
        QTest::newRow("none beside sign") << Modes{"None", "Sign"} << 0;
    }

    void modes_of_the_file_select_the_item()
    {
        QFETCH(const QList<QByteArray>, modes);
        QFETCH(const int, item);
        for (const char* name : policyNames) {
            const EndpointsTab tab(withSettings(settingXml(name, modes)));
            for (const char* other : policyNames) {
                const bool isThis = qstrcmp(name, other) == 0;
                QCOMPARE(tab.policy(other).isChecked(), isThis);
                QCOMPARE(tab.modes(other).isEnabled(), isThis);
                QCOMPARE(tab.modes(other).currentIndex(), isThis ? item : 1);
            }
            QVERIFY(!tab.none().isChecked());
        }
    }

    void policy_in_two_settings_shows_the_modes_of_both()
    {
        const EndpointsTab tab(withSettings(settingXml("Basic256", {"Sign"}) +
                                            settingXml("Basic256", {"SignAndEncrypt"})));
        QCOMPARE(tab.modes("Basic256").currentText(), u"Sign + Sign & Encrypt"_s);
        EndpointsTab::click(tab.none());
        EndpointsTab::click(tab.apply());
        QCOMPARE(tab.fileContent().count("SecurityPolicy#Basic256<"), 1);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic256"), 6}, {policyUri("None"), 1}}));
    }

    void none_of_the_file_is_checked()
    {
        const EndpointsTab tab(withSettings(settingXml("None", {"None"})));
        QVERIFY(tab.none().isChecked());
        for (const char* name : policyNames) {
            QVERIFY(!tab.policy(name).isChecked());
        }
    }

    void unknown_policy_is_kept_and_shown_nowhere()
    {
        const EndpointsTab tab(withSettings(settingXml("Unknown", {"Sign"})));
        for (const char* name : policyNames) {
            QVERIFY(!tab.policy(name).isChecked());
        }
        EndpointsTab::click(tab.none());
        EndpointsTab::click(tab.apply());
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Unknown"), 2}, {policyUri("None"), 1}}));
    }

    void another_row_resets_the_controls()
    {
        const EndpointsTab tab(serverConfig(
            endpointXml("opc.tcp://h:1", {},
                        settingXml("None", {"None"}) + settingXml("Basic256", {"Sign"})) +
            endpointXml("opc.tcp://h:2", {}, settingXml("Basic256Sha256", {"Sign"}))));
        tab.selectRow(1);
        QVERIFY(!tab.none().isChecked());
        QVERIFY(!tab.policy("Basic256").isChecked());
        QVERIFY(!tab.modes("Basic256").isEnabled());
        QCOMPARE(tab.modes("Basic256").currentIndex(), 1);
        QVERIFY(tab.policy("Basic256Sha256").isChecked());
        QCOMPARE(tab.modes("Basic256Sha256").currentIndex(), 0);
        QVERIFY(tab.isClean());
    }

    void none_is_added_and_removed()
    {
        const EndpointsTab tab(withSettings(settingXml("Basic256", {"Sign"})));
        EndpointsTab::click(tab.none());
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic256"), 2}, {policyUri("None"), 1}}));
        QVERIFY(tab.isDirty());
        EndpointsTab::click(tab.none());
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic256"), 2}}));
        QVERIFY(tab.isDirty());
    }

    void policy_is_added_with_the_modes_of_its_combo_box_data()
    {
        QTest::addColumn<int>("item");
        QTest::addColumn<int>("modes");
        QTest::newRow("Sign") << 0 << 2;
        QTest::newRow("Sign & Encrypt") << 1 << 4;
        QTest::newRow("Sign + Sign & Encrypt") << 2 << 6;
    }

    void policy_is_added_with_the_modes_of_its_combo_box()
    {
        QFETCH(const int, item);
        QFETCH(const int, modes);
        const EndpointsTab tab(withSettings(settingXml("None", {"None"})));
        const MessageBoxAnswer noBox{QList<MessageBoxAnswer::Expected>()};
        QCheckBox& check = tab.policy("Basic256Sha256");
        EndpointsTab::click(check);
        QVERIFY(tab.modes("Basic256Sha256").isEnabled());
        QCOMPARE(settingsOf(tab).constLast(), (SecurityRecord{policyUri("Basic256Sha256"), 4}));

        EndpointsTab::choose(tab.modes("Basic256Sha256"), item);
        const SecurityRecord expected{policyUri("Basic256Sha256"), quint16(modes)};
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("None"), 1}, expected}));

        // Off and on again keeps the choice.
        EndpointsTab::click(check);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("None"), 1}}));
        QVERIFY(!tab.modes("Basic256Sha256").isEnabled());
        EndpointsTab::click(check);
        QCOMPARE(tab.modes("Basic256Sha256").currentIndex(), item);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("None"), 1}, expected}));
        QCOMPARE(noBox.verdict(), QString());
    }

    void choosing_modes_moves_the_policy_to_the_end_of_the_list()
    {
        const EndpointsTab tab(
            withSettings(settingXml("Basic256", {"Sign"}) + settingXml("None", {"None"})));
        EndpointsTab::choose(tab.modes("Basic256"), 2);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("None"), 1}, {policyUri("Basic256"), 6}}));
        QVERIFY(tab.isDirty());
    }

    void choosing_the_same_modes_again_marks_the_tab()
    {
        const EndpointsTab tab(withSettings(settingXml("Basic256", {"Sign"})));
        EndpointsTab::choose(tab.modes("Basic256"), 0);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic256"), 2}}));
        QVERIFY(tab.isDirty());
    }

    void deprecated_policy_warns_every_time_it_is_checked_and_is_enabled()
    {
        const EndpointsTab tab(withSettings({}));
        QCheckBox& check = tab.policy("Basic128Rsa15");
        for (int i = 0; i < 2; ++i) {
            MessageBoxAnswer answer(warningTitle, warningText, QMessageBox::Ok);
            answer.setInspection([](QMessageBox& box) {
                QCOMPARE(box.icon(), QMessageBox::Warning);
                QCOMPARE(box.standardButtons(), QMessageBox::Ok);
                QCOMPARE(box.textFormat(), Qt::PlainText);
            });
            EndpointsTab::click(check);
            QCOMPARE(answer.verdict(), QString());
            QVERIFY(check.isChecked());
            QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic128Rsa15"), 4}}));

            const MessageBoxAnswer noBox{QList<MessageBoxAnswer::Expected>()};
            EndpointsTab::click(check);
            QCOMPARE(noBox.verdict(), QString());
            QCOMPARE(settingsOf(tab), Settings());
        }
        QVERIFY(tab.isDirty());
    }

    void other_policies_do_not_warn()
    {
        const EndpointsTab tab(withSettings({}));
        const MessageBoxAnswer noBox{QList<MessageBoxAnswer::Expected>()};
        EndpointsTab::click(tab.none());
        EndpointsTab::click(tab.policy("Basic256"));
        EndpointsTab::click(tab.policy("Basic256Sha256"));
        QCOMPARE(settingsOf(tab).size(), 3);
        QCOMPARE(noBox.verdict(), QString());
    }

    void showing_a_deprecated_policy_does_not_warn()
    {
        const MessageBoxAnswer noBox{QList<MessageBoxAnswer::Expected>()};
        const EndpointsTab tab(withSettings(settingXml("Basic128Rsa15", {"Sign"})));
        EndpointsTab::choose(tab.modes("Basic128Rsa15"), 1);
        QCOMPARE(noBox.verdict(), QString());
        QVERIFY(tab.policy("Basic128Rsa15").isChecked());
    }

    void slots_called_by_no_control_do_nothing()
    {
        const EndpointsTab tab(withSettings(settingXml("Basic256", {"Sign"})));
        tab.widget->sltSpClicked(true);
        tab.widget->sltMsmActivated(0);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic256"), 2}}));
        QVERIFY(tab.isClean());
    }

    void keyboard_checks_a_policy()
    {
        const EndpointsTab tab(withSettings({}));
        QTest::keyClick(&tab.policy("Basic256"), Qt::Key_Space);
        QCOMPARE(settingsOf(tab), (Settings{{policyUri("Basic256"), 4}}));
    }

    void table_shows_the_policies_of_the_row()
    {
        const EndpointsTab tab(withSettings(settingXml("None", {"None"})));
        const auto policies = [&tab] { return tab.model().index(0, 3).data().toStringList(); };
        QCOMPARE(policies(), QStringList(policyUri("None")));
        EndpointsTab::click(tab.policy("Basic256"));
        QCOMPARE(policies(), (QStringList{policyUri("None"), policyUri("Basic256")}));
    }
};

ZANDREL_TEST_MAIN(VeskServerConfigWidgetSecurityTest)

#include "veskserverconfigwidget_security_test.moc"
