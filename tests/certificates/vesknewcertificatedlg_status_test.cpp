#include "tests/certificates/newcertificatedialog.h"
#include "tests/support/inputdialoganswer.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QToolTip>

using namespace Qt::StringLiterals;

// Which fields the dialog finds filled in, when it enables OK and what it says while it doesn't.

namespace {

const QString dnsTitle = u"Add DNS Name"_s;
const QString dnsPrompt = u"Enter the DNS name to add:"_s;
const QString dnsRetry = u"Please ensure to enter a valid DNS name!\nEnter the DNS name to add:"_s;
const QString ipTitle = u"Add IP Address"_s;
const QString ipPrompt = u"Enter the IP address to add:"_s;
const QString ipRetry =
    u"Please ensure to enter a valid IPv4 or IPv6 address!\nEnter the IP address to add:"_s;

constexpr auto nameMissing = "A domain name or an IP address is missing.";

/// A DNS name of this many characters, made of labels of up to 63.
QString dnsName(int size)
{
    QString name(size, u'a');
    for (int i = 63; i < size - 1; i += 64) {
        name[i] = u'.';
    }
    return name;
}

struct Field
{
    const char* input;
    const char* status;
    const char* problem;
};

constexpr Field requiredFields[] = {
    {"txtCommonName", "lblStatCN", "The common name is missing."},
    {"txtOrganization", "lblStatO", "The organization is missing."},
    {"txtLocality", "lblStatL", "The locality is missing."},
    {"txtState", "lblStatS", "The state is missing."},
    {"txtCountry", "lblStatC", "The two letters of the country are missing."},
};

} // namespace

class VeskNewCertificateDlgStatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void empty_dialog_names_all_that_is_missing();
    static void required_field_decides_on_ok_data();
    static void required_field_decides_on_ok();
    static void disabled_ok_tells_why_when_pointed_at();
    static void screen_reader_hears_what_is_missing();
    static void unit_may_be_empty();
    static void country_needs_two_characters_data();
    static void country_needs_two_characters();
    static void uri_is_required();
    static void one_of_both_lists_is_enough();
    static void list_entry_enables_its_remove_button();
    static void dns_name_is_added_or_asked_for_again_data();
    static void dns_name_is_added_or_asked_for_again();
    static void ip_address_is_added_or_asked_for_again_data();
    static void ip_address_is_added_or_asked_for_again();
    static void add_buttons_ask_on_until_the_answer_is_valid();
    static void cancel_adds_nothing();
    static void password_decides_on_ok_data();
    static void password_decides_on_ok();
    static void unchecking_the_box_forgets_the_password();
    static void enter_in_a_field_does_nothing_while_ok_is_disabled();
};

void VeskNewCertificateDlgStatusTest::empty_dialog_names_all_that_is_missing()
{
    const NewCertificateDialog form;
    QVERIFY(!form.ok().isEnabled());
    QStringList problems;
    for (const Field& field : requiredFields) {
        QCOMPARE(form.status(field.status), u"missing"_s);
        problems.append(QString::fromLatin1(field.problem));
    }
    QCOMPARE(form.ok().toolTip(), problems.join(u'\n'));
    QCOMPARE(form.status("lblStatURI"), u"valid"_s);
    QCOMPARE(form.status("lblStatDNS"), u"valid"_s);
    QCOMPARE(form.status("lblStatIP"), u"missing off"_s);
    QCOMPARE(form.status("lblStatOU"), u"missing off"_s);
    form.fillIn();
    QVERIFY(form.ok().isEnabled());
    QCOMPARE(form.ok().toolTip(), QString());
}

void VeskNewCertificateDlgStatusTest::required_field_decides_on_ok_data()
{
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("problem");
    for (const Field& field : requiredFields) {
        QTest::newRow(field.input)
            << QByteArray(field.status) << QString::fromLatin1(field.problem);
    }
}

void VeskNewCertificateDlgStatusTest::required_field_decides_on_ok()
{
    QFETCH(const QByteArray, status);
    QFETCH(const QString, problem);

    const char* input = QTest::currentDataTag();
    const NewCertificateDialog form;
    form.fillIn();
    auto& label = form.child<QLabel>(status.constData());
    QCOMPARE(form.status(status.constData()), u"valid"_s);
    QCOMPARE(label.toolTip(), QString());
    QCOMPARE(label.accessibleName(), u"Valid"_s);
    QCOMPARE(form.line(input).accessibleDescription(), QString());

    form.type(input, QString());
    QVERIFY(!form.ok().isEnabled());
    QCOMPARE(form.ok().toolTip(), problem);
    QCOMPARE(form.status(status.constData()), u"missing"_s);
    QCOMPARE(label.toolTip(), problem);
    QCOMPARE(label.accessibleName(), problem);
    QCOMPARE(form.line(input).accessibleDescription(), problem);

    form.type(input, u"DE"_s);
    QVERIFY(form.ok().isEnabled());
    QCOMPARE(form.status(status.constData()), u"valid"_s);
}

void VeskNewCertificateDlgStatusTest::disabled_ok_tells_why_when_pointed_at()
{
    const NewCertificateDialog form;
    form.fillIn();
    form.type("txtState", QString());
    for (QWidget* widget : {static_cast<QWidget*>(&form.ok()),
                            static_cast<QWidget*>(&form.child<QLabel>("lblStatS"))}) {
        QToolTip::hideText();
        const QPoint center = widget->rect().center();
        QHelpEvent pointing(QEvent::ToolTip, center, widget->mapToGlobal(center));
        QApplication::sendEvent(widget, &pointing);
        QCOMPARE(QToolTip::text(), u"The state is missing."_s);
    }
}

void VeskNewCertificateDlgStatusTest::screen_reader_hears_what_is_missing()
{
    const NewCertificateDialog form;
    form.fillIn();
    form.type("txtState", QString());
    const auto heard = [](QWidget& widget, QAccessible::Text what) {
        return QAccessible::queryAccessibleInterface(&widget)->text(what);
    };
    const QString problem = u"The state is missing."_s;
    QCOMPARE(heard(form.line("txtState"), QAccessible::Name), u"State:"_s);
    QCOMPARE(heard(form.line("txtState"), QAccessible::Description), problem);
    QCOMPARE(heard(form.child<QLabel>("lblStatS"), QAccessible::Name), problem);
    QCOMPARE(heard(form.child<QLabel>("lblStatL"), QAccessible::Name), u"Valid"_s);
    QCOMPARE(heard(form.ok(), QAccessible::Description), problem);
    QCOMPARE(heard(form.dns(), QAccessible::Name), u"Domain Names"_s);
    QCOMPARE(heard(form.ip(), QAccessible::Name), u"IP Addresses"_s);
    form.dialog->setDNSNames({});
    QCOMPARE(heard(form.dns(), QAccessible::Description), QString::fromLatin1(nameMissing));
}

void VeskNewCertificateDlgStatusTest::unit_may_be_empty()
{
    const NewCertificateDialog form;
    form.fillIn();
    QCOMPARE(form.status("lblStatOU"), u"valid"_s);
    form.type("txtOrganizationUnit", QString());
    QCOMPARE(form.status("lblStatOU"), u"missing off"_s);
    QCOMPARE(form.child<QLabel>("lblStatOU").toolTip(),
             u"The organization unit may be left empty."_s);
    QVERIFY(form.ok().isEnabled());
    QCOMPARE(form.ok().toolTip(), QString());
}

void VeskNewCertificateDlgStatusTest::country_needs_two_characters_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("kept");
    QTest::addColumn<bool>("isValid");

    QTest::newRow("one letter") << u"D"_s << u"D"_s << false;
    QTest::newRow("two letters") << u"DE"_s << u"DE"_s << true;
    QTest::newRow("a third is not taken") << u"DEU"_s << u"DE"_s << true;
}

void VeskNewCertificateDlgStatusTest::country_needs_two_characters()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, kept);
    QFETCH(const bool, isValid);

    const NewCertificateDialog form;
    form.fillIn();
    form.type("txtCountry", QString());
    form.type("txtCountry", typed);
    QCOMPARE(form.line("txtCountry").text(), kept);
    QCOMPARE(form.status("lblStatC"), isValid ? u"valid"_s : u"missing"_s);
    QCOMPARE(form.ok().isEnabled(), isValid);
}

void VeskNewCertificateDlgStatusTest::uri_is_required()
{
    const NewCertificateDialog form;
    form.fillIn();
    form.line("txtURI").clear();
    QVERIFY(!form.ok().isEnabled());
    QCOMPARE(form.status("lblStatURI"), u"missing"_s);
    QCOMPARE(form.ok().toolTip(), u"The application URI is missing."_s);
}

void VeskNewCertificateDlgStatusTest::one_of_both_lists_is_enough()
{
    const NewCertificateDialog form;
    form.fillIn();
    const auto statuses = [&form] {
        return form.status("lblStatDNS") + u", "_s + form.status("lblStatIP");
    };
    QCOMPARE(statuses(), u"valid, missing off"_s);
    QCOMPARE(form.child<QLabel>("lblStatIP").toolTip(), u"The domain name is enough."_s);
    QVERIFY(form.ok().isEnabled());

    form.dialog->setIPAddresses({u"::1"_s});
    QCOMPARE(statuses(), u"valid, valid"_s);
    QVERIFY(form.ok().isEnabled());

    NewCertificateDialog::select(form.dns(), 0);
    form.click("btnRemoveDNS");
    QCOMPARE(form.dns().count(), 0);
    QCOMPARE(statuses(), u"missing off, valid"_s);
    QCOMPARE(form.child<QLabel>("lblStatDNS").toolTip(), u"The IP address is enough."_s);
    QVERIFY(!form.child<QPushButton>("btnRemoveDNS").isEnabled());
    QVERIFY(form.ok().isEnabled());

    NewCertificateDialog::select(form.ip(), 0);
    form.click("btnRemoveIP");
    QCOMPARE(form.ip().count(), 0);
    QCOMPARE(statuses(), u"missing, missing"_s);
    QVERIFY(!form.child<QPushButton>("btnRemoveIP").isEnabled());
    QVERIFY(!form.ok().isEnabled());
    QCOMPARE(form.ok().toolTip(), QString::fromLatin1(nameMissing)); // told once
    QCOMPARE(form.dns().accessibleDescription(), QString::fromLatin1(nameMissing));
    QCOMPARE(form.ip().accessibleDescription(), QString::fromLatin1(nameMissing));

    const InputDialogAnswer answer({{ipTitle, ipPrompt, u"10.0.0.1"_s}});
    form.click("btnAddIP");
    QCOMPARE(answer.verdict(), QString());
    QCOMPARE(statuses(), u"missing off, valid"_s);
    QVERIFY(form.ok().isEnabled());
}

void VeskNewCertificateDlgStatusTest::list_entry_enables_its_remove_button()
{
    const NewCertificateDialog form;
    form.dialog->setDNSNames({u"a"_s, u"b"_s, u"c"_s});
    form.dialog->setIPAddresses({u"::1"_s, u"::2"_s});
    auto& removeDns = form.child<QPushButton>("btnRemoveDNS");
    auto& removeIp = form.child<QPushButton>("btnRemoveIP");
    QVERIFY(!removeDns.isEnabled());
    QVERIFY(!removeIp.isEnabled());
    form.dialog->sltRemoveDNS(); // without a current row
    form.dialog->sltRemoveIP();
    QCOMPARE(form.dns().count(), 3);
    QCOMPARE(form.ip().count(), 2);

    NewCertificateDialog::select(form.dns(), 1);
    QVERIFY(removeDns.isEnabled());
    QVERIFY(!removeIp.isEnabled());
    NewCertificateDialog::click(removeDns);
    QCOMPARE(NewCertificateDialog::textsOf(form.dns()), QStringList({u"a"_s, u"c"_s}));
    QVERIFY(removeDns.isEnabled()); // a neighbour is the current one now

    NewCertificateDialog::select(form.ip(), 0);
    QVERIFY(removeIp.isEnabled());
    NewCertificateDialog::click(removeIp);
    NewCertificateDialog::click(removeIp);
    QCOMPARE(form.ip().count(), 0);
    QVERIFY(!removeIp.isEnabled());
}

void VeskNewCertificateDlgStatusTest::dns_name_is_added_or_asked_for_again_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isValid");

    QTest::newRow("one letter") << u"a"_s << true;
    QTest::newRow("a digit") << u"7"_s << true;
    QTest::newRow("host") << u"plant7"_s << true;
    QTest::newRow("final dot") << u"host-name.example."_s << true;
    QTest::newRow("upper case") << u"HOST.Example"_s << true;
    QTest::newRow("label of 63") << QString(63, u'a') << true;
    QTest::newRow("label of 64") << QString(64, u'a') << false;
    QTest::newRow("255 characters") << dnsName(255) << true;
    QTest::newRow("256 characters") << dnsName(256) << false;
    QTest::newRow("leading hyphen") << u"-host"_s << false;
    QTest::newRow("trailing hyphen") << u"host-"_s << false;
    QTest::newRow("hyphen before a dot") << u"host-.example"_s << false;
    QTest::newRow("underscore") << u"a_b"_s << false;
    QTest::newRow("blank") << u" "_s << false;
    QTest::newRow("blank inside") << u"a b"_s << false;
    QTest::newRow("only a dot") << u"."_s << false;
    QTest::newRow("two dots") << u"a..b"_s << false;
    QTest::newRow("two final dots") << u"a.."_s << false;
    QTest::newRow("comma") << u"a,DNS:b"_s << false;
    QTest::newRow("umlaut") << u"m\u00fcller"_s << false;
    QTest::newRow("digits of another script") << u"host\u0661"_s << false;
    QTest::newRow("markup") << u"<b>a</b>"_s << false;
}

void VeskNewCertificateDlgStatusTest::dns_name_is_added_or_asked_for_again()
{
    QFETCH(const QString, typed);
    QFETCH(const bool, isValid);

    const NewCertificateDialog form;
    QList<InputDialogAnswer::Expected> dialogs = {{dnsTitle, dnsPrompt, typed}};
    if (!isValid) {
        dialogs.append({dnsTitle, dnsRetry, u""_s});
    }
    const InputDialogAnswer answer(dialogs);
    form.click("btnAddDNS");
    QCOMPARE(answer.verdict(), QString());
    QStringList expected = {u"plant7"_s};
    if (isValid) {
        expected.append(typed);
    }
    QCOMPARE(NewCertificateDialog::textsOf(form.dns()), expected);
}

void VeskNewCertificateDlgStatusTest::ip_address_is_added_or_asked_for_again_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isValid");

    QTest::newRow("IPv4") << u"192.168.0.1"_s << true;
    QTest::newRow("IPv6") << u"2001:db8::1"_s << true;
    QTest::newRow("IPv6 of all groups") << u"2001:0DB8:0000:0000:0000:0000:0000:0001"_s << true;
    QTest::newRow("IPv4 in IPv6") << u"::ffff:10.0.0.1"_s << true;
    QTest::newRow("octet too large") << u"192.168.0.256"_s << false;
    QTest::newRow("five octets") << u"1.2.3.4.5"_s << false;
    QTest::newRow("brackets") << u"[::1]"_s << false;
    QTest::newRow("host name") << u"localhost"_s << false;
    QTest::newRow("with a mask") << u"10.0.0.1/8"_s << false;
    QTest::newRow("comma") << u"10.0.0.1,DNS:b"_s << false;
}

void VeskNewCertificateDlgStatusTest::ip_address_is_added_or_asked_for_again()
{
    QFETCH(const QString, typed);
    QFETCH(const bool, isValid);

    const NewCertificateDialog form;
    QList<InputDialogAnswer::Expected> dialogs = {{ipTitle, ipPrompt, typed}};
    if (!isValid) {
        dialogs.append({ipTitle, ipRetry, u""_s});
    }
    const InputDialogAnswer answer(dialogs);
    form.click("btnAddIP");
    QCOMPARE(answer.verdict(), QString());
    QCOMPARE(NewCertificateDialog::textsOf(form.ip()),
             isValid ? QStringList{typed} : QStringList());
}

void VeskNewCertificateDlgStatusTest::add_buttons_ask_on_until_the_answer_is_valid()
{
    const NewCertificateDialog form;
    const InputDialogAnswer answer({{dnsTitle, dnsPrompt, u"-host"_s},
                                    {dnsTitle, dnsRetry, u"a_b"_s},
                                    {dnsTitle, dnsRetry, u"host"_s},
                                    {ipTitle, ipPrompt, u"1.2.3.4.5"_s},
                                    {ipTitle, ipRetry, u"::g"_s},
                                    {ipTitle, ipRetry, u"::1"_s}});
    form.click("btnAddDNS");
    form.click("btnAddIP");
    QCOMPARE(answer.verdict(), QString());
    QCOMPARE(NewCertificateDialog::textsOf(form.dns()), QStringList({u"plant7"_s, u"host"_s}));
    QCOMPARE(NewCertificateDialog::textsOf(form.ip()), QStringList({u"::1"_s}));
}

void VeskNewCertificateDlgStatusTest::cancel_adds_nothing()
{
    const NewCertificateDialog form;
    const InputDialogAnswer answer({{dnsTitle, dnsPrompt, QString()},
                                    {ipTitle, ipPrompt, QString()},
                                    {dnsTitle, dnsPrompt, u"a_b"_s},
                                    {dnsTitle, dnsRetry, QString()}});
    form.click("btnAddDNS");
    form.click("btnAddIP");
    form.click("btnAddDNS");
    QCOMPARE(answer.verdict(), QString());
    QCOMPARE(form.dns().count(), 1);
    QCOMPARE(form.ip().count(), 0);
}

void VeskNewCertificateDlgStatusTest::password_decides_on_ok_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("repeated");
    QTest::addColumn<QString>("statuses");
    QTest::addColumn<QString>("problems");

    const QString tooShort = u"The password needs at least four characters."_s;
    const QString differs = u"The repeated password differs."_s;
    QTest::newRow("none") << u""_s << u""_s << u"missing, valid"_s << tooShort;
    QTest::newRow("three characters") << u"abc"_s << u"abc"_s << u"missing, valid"_s << tooShort;
    QTest::newRow("four characters") << u"abcd"_s << u"abcd"_s << u"valid, valid"_s << u""_s;
    QTest::newRow("not repeated") << u"abcd"_s << u""_s << u"valid, missing"_s << differs;
    QTest::newRow("repeated in other case")
        << u"abcd"_s << u"abcD"_s << u"valid, missing"_s << differs;
    QTest::newRow("short and different")
        << u"abc"_s << u"abcd"_s << u"missing, missing"_s << tooShort + u'\n' + differs;
    QTest::newRow("umlauts") << u"\u00e4\u00f6\u00fc\u00df"_s << u"\u00e4\u00f6\u00fc\u00df"_s
                             << u"valid, valid"_s << u""_s;
}

void VeskNewCertificateDlgStatusTest::password_decides_on_ok()
{
    QFETCH(const QString, password);
    QFETCH(const QString, repeated);
    QFETCH(const QString, statuses);
    QFETCH(const QString, problems);

    const NewCertificateDialog form({.offersPassword = true});
    form.fillIn();
    QVERIFY(form.ok().isEnabled());
    NewCertificateDialog::click(form.protect());
    form.type("txtPassword", password);
    form.type("txtPasswordRepeat", repeated);
    QCOMPARE(form.status("lblStatPassword") + u", "_s + form.status("lblStatPasswordRepeat"),
             statuses);
    QCOMPARE(form.ok().isEnabled(), problems.isEmpty());
    QCOMPARE(form.ok().toolTip(), problems);
    QCOMPARE(form.dialog->password(), password);
}

void VeskNewCertificateDlgStatusTest::unchecking_the_box_forgets_the_password()
{
    const NewCertificateDialog form({.offersPassword = true});
    form.fillIn();
    NewCertificateDialog::click(form.protect());
    for (const char* name : {"lblPassword", "txtPassword", "lblStatPassword", "lblPasswordRepeat",
                             "txtPasswordRepeat", "lblStatPasswordRepeat"}) {
        QVERIFY2(form.child<QWidget>(name).isEnabled(), name);
    }
    form.type("txtPassword", u"abc"_s);
    QVERIFY(!form.ok().isEnabled());
    QCOMPARE(form.dialog->password(), u"abc"_s);

    NewCertificateDialog::click(form.protect());
    QVERIFY(form.ok().isEnabled());
    QVERIFY(form.dialog->password().isEmpty());
    for (const char* name : {"lblPassword", "txtPassword", "lblStatPassword", "lblPasswordRepeat",
                             "txtPasswordRepeat", "lblStatPasswordRepeat"}) {
        QVERIFY2(!form.child<QWidget>(name).isEnabled(), name);
    }
    form.dialog->sltPasswordEnabled(Qt::PartiallyChecked); // not checked
    QVERIFY(form.ok().isEnabled());
}

void VeskNewCertificateDlgStatusTest::enter_in_a_field_does_nothing_while_ok_is_disabled()
{
    const NewCertificateDialog form;
    QTest::keyClick(&form.line("txtOrganization"), Qt::Key_Return);
    QVERIFY(form.dialog->isVisible());
    QVERIFY(form.dialog->certificate().isNull());
}

ZANDREL_TEST_MAIN(VeskNewCertificateDlgStatusTest)

#include "vesknewcertificatedlg_status_test.moc"
