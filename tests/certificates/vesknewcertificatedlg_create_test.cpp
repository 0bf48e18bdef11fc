#define OPENSSL_SUPPRESS_DEPRECATED // the library's own random source can only be replaced this way

#include "certificates/secrettext.h"
#include "tests/certificates/newcertificatedialog.h"
#include "tests/certificates/opensslprogram.h"
#include "tests/support/inputdialoganswer.h"
#include "tests/support/messageboxanswer.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QSignalSpy>
#include <openssl/rand.h>

using namespace Qt::StringLiterals;

// What OK makes, read by the openssl program, and what it says when nothing can be made.

namespace {

const QString failureTitle = u"Could Not Create Certificate"_s;

/// While it lives, the library's random source notes the cursor, and fails when it shall.
class RandomSource
{
public:
    explicit RandomSource(bool fails)
    {
        s_fails = fails;
        s_cursor.reset();
        static const RAND_METHOD method = {nullptr, bytes, nullptr, nullptr, bytes, status};
        RAND_set_rand_method(&method);
    }
    ~RandomSource() { RAND_set_rand_method(RAND_OpenSSL()); }
    Q_DISABLE_COPY_MOVE(RandomSource)

    /// The cursor of the application when random bytes were asked for; none when they weren't.
    [[nodiscard]] static std::optional<Qt::CursorShape> cursor() { return s_cursor; }

private:
    static int bytes(unsigned char* buffer, int size)
    {
        const QCursor* cursor = QGuiApplication::overrideCursor();
        s_cursor = cursor ? cursor->shape() : Qt::ArrowCursor;
        return s_fails ? 0 : RAND_OpenSSL()->bytes(buffer, size);
    }
    static int status() { return 1; }

    inline static bool s_fails = false;
    inline static std::optional<Qt::CursorShape> s_cursor;
};

QByteArray bytesOf(const UaByteArray& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The dialog's certificate as the openssl program tells it.
QString told(const NewCertificateDialog& form, const QStringList& what)
{
    return runOpenSsl(QStringList({u"x509"_s, u"-inform"_s, u"DER"_s, u"-noout"_s}) + what,
                      bytesOf(form.dialog->certificate().toDER()));
}

QString toldNames(const NewCertificateDialog& form)
{
    return told(form, {u"-ext"_s, u"subjectAltName"_s}).section(u'\n', 1).trimmed();
}

QString found(const QString& text, const QString& pattern)
{
    return QRegularExpression(pattern).match(text).captured(1);
}

QDateTime toldDate(const NewCertificateDialog& form, const QString& which)
{
    const QString text = told(form, {u"-dates"_s, u"-dateopt"_s, u"iso_8601"_s});
    return QDateTime::fromString(found(text, which + u"=(.*)Z"_s).replace(u' ', u'T') + u'Z',
                                 Qt::ISODate);
}

bool isAccepted(const NewCertificateDialog& form)
{
    return !form.dialog->isVisible() && form.dialog->result() == QDialog::Accepted &&
           !form.dialog->certificate().isNull();
}

/// Presses OK and looks at the one box that follows.
struct Refusal
{
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    Qt::TextFormat format = Qt::AutoText;
    bool hasCursor = false;
};

Refusal pressOkInVain(const NewCertificateDialog& form)
{
    Refusal refusal;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&refusal] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box && box->windowTitle() == failureTitle) {
            refusal = {box->text(), box->icon(), box->textFormat(),
                       QGuiApplication::overrideCursor() != nullptr};
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        }
    });
    timer.start(5);
    NewCertificateDialog::click(form.ok());
    return refusal;
}

} // namespace

class VeskNewCertificateDlgCreateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void certificate_says_what_stands_in_the_form();
    static void key_belongs_to_the_certificate();
    static void empty_unit_is_no_entry();
    static void ip_addresses_alone_are_enough();
    static void key_has_the_chosen_size_data();
    static void key_has_the_chosen_size();
    static void certificate_lives_as_chosen_data();
    static void certificate_lives_as_chosen();
    static void signature_uses_the_algorithm_that_was_set_data();
    static void signature_uses_the_algorithm_that_was_set();
    static void mandatory_dialog_ends_with_ok();
    static void enter_in_a_field_presses_ok();
    static void prefilled_address_is_written_as_the_same();
    static void wait_cursor_shows_while_keys_are_made();
    static void failing_key_generation_is_told_and_can_be_tried_again();
    static void refused_address_is_told_and_can_be_removed();
    static void refused_country_is_told();
    static void name_that_openssl_would_change_is_told_as_plain_text();
    static void password_is_a_text_of_its_own();
};

void VeskNewCertificateDlgCreateTest::certificate_says_what_stands_in_the_form()
{
    const NewCertificateDialog form({.commonName = u"Press"_s, .uriPart = u"Hall"_s});
    const QSignalSpy accepted(form.dialog.get(), &QDialog::accepted);
    form.fillIn();
    const InputDialogAnswer answer(
        {{u"Add DNS Name"_s, u"Enter the DNS name to add:"_s, u"press.example."_s},
         {u"Add IP Address"_s, u"Enter the IP address to add:"_s, u"192.168.0.1"_s},
         {u"Add IP Address"_s, u"Enter the IP address to add:"_s, u"2001:db8::1"_s}});
    form.click("btnAddDNS");
    form.click("btnAddIP");
    form.click("btnAddIP");
    QCOMPARE(answer.verdict(), QString());
    NewCertificateDialog::choose(form.time(), u"1 Month"_s);
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(accepted.count(), 1);

    const QString name = u"CN=Press 12,OU=Hall 3,O=Example Works,L=Erlangen,ST=Bavaria,C=DE"_s;
    const QStringList format = {u"-nameopt"_s, u"RFC2253"_s};
    QCOMPARE(told(form, format + QStringList{u"-subject"_s}), u"subject="_s + name);
    QCOMPARE(told(form, format + QStringList{u"-issuer"_s}), u"issuer="_s + name);
    QCOMPARE(toldNames(form), u"URI:urn:plant7:Hall:Press, DNS:plant7, DNS:press.example., "
                              "IP Address:192.168.0.1, IP Address:2001:DB8:0:0:0:0:0:1"_s);
    const QString text = told(form, {u"-text"_s});
    QCOMPARE(found(text, u"Version: (\\d)"_s), u"3"_s);
    QCOMPARE(found(text, u"Public-Key: \\((\\d+) bit\\)"_s), u"1024"_s);
    QCOMPARE(found(text, u"Exponent: (\\d+)"_s), u"65537"_s);
    QCOMPARE(found(text, u"Signature Algorithm: (\\w+)"_s), u"sha1WithRSAEncryption"_s);
    QCOMPARE(found(text, u"(CA:\\w+)"_s), u"CA:FALSE"_s);
    QVERIFY(!text.contains(u"email"_s));
    const qint64 serial = found(told(form, {u"-serial"_s}), u"=(\\w+)"_s).toLongLong(nullptr, 16);
    QVERIFY(std::abs(serial - QDateTime::currentSecsSinceEpoch()) < 60);
    QVERIFY(std::abs(toldDate(form, u"notBefore"_s).secsTo(QDateTime::currentDateTime())) < 60);
}

void VeskNewCertificateDlgCreateTest::key_belongs_to_the_certificate()
{
    const NewCertificateDialog form;
    form.fillIn();
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    const QByteArray key = bytesOf(form.dialog->keyPair().toPEM(nullptr));
    QCOMPARE(runOpenSsl({u"pkey"_s, u"-pubout"_s}, key), told(form, {u"-pubkey"_s}));
}

void VeskNewCertificateDlgCreateTest::empty_unit_is_no_entry()
{
    const NewCertificateDialog form;
    form.fillIn();
    form.type("txtOrganizationUnit", QString());
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(told(form, {u"-subject"_s, u"-nameopt"_s, u"RFC2253"_s}),
             u"subject=CN=Press 12,O=Example Works,L=Erlangen,ST=Bavaria,C=DE"_s);
}

void VeskNewCertificateDlgCreateTest::ip_addresses_alone_are_enough()
{
    const NewCertificateDialog form({.host = std::nullopt});
    form.fillIn();
    QVERIFY(!form.ok().isEnabled());
    form.dialog->setIPAddresses({u"10.0.0.2"_s, u"10.0.0.1"_s});
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(toldNames(form), u"URI:urn:::, IP Address:10.0.0.2, IP Address:10.0.0.1"_s);
}

void VeskNewCertificateDlgCreateTest::key_has_the_chosen_size_data()
{
    QTest::addColumn<QString>("bits");
    QTest::newRow("1024 bits") << u"1024"_s;
    QTest::newRow("2048 bits") << u"2048"_s;
    QTest::newRow("3072 bits") << u"3072"_s;
    QTest::newRow("4096 bits") << u"4096"_s;
}

void VeskNewCertificateDlgCreateTest::key_has_the_chosen_size()
{
    QFETCH(const QString, bits);

    const NewCertificateDialog form;
    form.fillIn();
    NewCertificateDialog::choose(form.keySize(), QString::fromLatin1(QTest::currentDataTag()));
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(found(told(form, {u"-text"_s}), u"Public-Key: \\((\\d+) bit\\)"_s), bits);
    QCOMPARE(form.dialog->keyPair().publicKey().keySize(), bits.toInt());
}

void VeskNewCertificateDlgCreateTest::certificate_lives_as_chosen_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::newRow("1 Hour") << qint64(3600);
    QTest::newRow("1 Day") << qint64(86400);
    QTest::newRow("1 Week") << qint64(604800);
    QTest::newRow("1 Month") << qint64(2678400);
    QTest::newRow("1 Year") << qint64(31536000);
    QTest::newRow("2 Years") << qint64(63072000);
    QTest::newRow("3 Years") << qint64(94608000);
    QTest::newRow("4 Years") << qint64(126144000);
    QTest::newRow("5 Years") << qint64(157680000);
    QTest::newRow("10 Years") << qint64(315360000);
    QTest::newRow("20 Years") << qint64(630720000);
}

void VeskNewCertificateDlgCreateTest::certificate_lives_as_chosen()
{
    QFETCH(const qint64, seconds);

    const NewCertificateDialog form;
    form.fillIn();
    QList<MessageBoxAnswer::Expected> warnings;
    if (seconds > 157680000) {
        warnings.append({u"Security Warning"_s,
                         u"It is not recommended to use certificates with a lifetime greater than "
                         "5 years."_s,
                         QMessageBox::Ok});
    }
    const MessageBoxAnswer answer(warnings);
    NewCertificateDialog::choose(form.time(), QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(answer.verdict(), QString());
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(toldDate(form, u"notBefore"_s).secsTo(toldDate(form, u"notAfter"_s)), seconds);
}

void VeskNewCertificateDlgCreateTest::signature_uses_the_algorithm_that_was_set_data()
{
    QTest::addColumn<int>("algorithm");
    QTest::addColumn<QString>("name");
    QTest::newRow("SHA-1") << 0 << u"sha1WithRSAEncryption"_s;
    QTest::newRow("SHA-256") << 1 << u"sha256WithRSAEncryption"_s;
}

void VeskNewCertificateDlgCreateTest::signature_uses_the_algorithm_that_was_set()
{
    QFETCH(const int, algorithm);
    QFETCH(const QString, name);

    const NewCertificateDialog form;
    form.fillIn();
    form.dialog->setSignatureAlgorithm(algorithm);
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(found(told(form, {u"-text"_s}), u"Signature Algorithm: (\\w+)"_s), name);
}

void VeskNewCertificateDlgCreateTest::mandatory_dialog_ends_with_ok()
{
    const NewCertificateDialog form({.isMandatory = true});
    form.fillIn();
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
}

void VeskNewCertificateDlgCreateTest::enter_in_a_field_presses_ok()
{
    const NewCertificateDialog form;
    QVERIFY(QTest::qWaitForWindowActive(form.dialog.get()));
    form.fillIn();
    QTest::keyClick(&form.line("txtCountry"), Qt::Key_Return);
    QVERIFY(isAccepted(form));
}

void VeskNewCertificateDlgCreateTest::prefilled_address_is_written_as_the_same()
{
    const NewCertificateDialog form;
    form.fillIn();
    form.dialog->setIPAddresses({u"2001:0DB8:0000:0000:0000:0000:0000:0001"_s, u"10.0.0.1"_s});
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(toldNames(form), u"URI:urn:plant7::, DNS:plant7, "
                              "IP Address:2001:DB8:0:0:0:0:0:1, IP Address:10.0.0.1"_s);
}

void VeskNewCertificateDlgCreateTest::wait_cursor_shows_while_keys_are_made()
{
    const NewCertificateDialog form;
    form.fillIn();
    const RandomSource random(false);
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QCOMPARE(random.cursor(), std::optional(Qt::WaitCursor));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void VeskNewCertificateDlgCreateTest::failing_key_generation_is_told_and_can_be_tried_again()
{
    const NewCertificateDialog form;
    form.fillIn();
    {
        const RandomSource random(true);
        const Refusal refusal = pressOkInVain(form);
        QVERIFY2(refusal.text.startsWith(u"The key pair could not be created.\n"_s),
                 qPrintable(refusal.text));
        QVERIFY(refusal.text.contains(u"error:"_s)); // the library's reasons
        QCOMPARE(refusal.icon, QMessageBox::Critical);
        QVERIFY(!refusal.hasCursor);
    }
    QVERIFY(form.dialog->isVisible());
    QVERIFY(form.dialog->certificate().isNull());
    QCOMPARE(form.line("txtOrganization").text(), u"Example Works"_s);
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
}

void VeskNewCertificateDlgCreateTest::refused_address_is_told_and_can_be_removed()
{
    const NewCertificateDialog form;
    form.fillIn();
    const InputDialogAnswer answer(
        {{u"Add IP Address"_s, u"Enter the IP address to add:"_s, u"fe80::1%eth0"_s}});
    form.click("btnAddIP");
    QCOMPARE(answer.verdict(), QString());
    const Refusal refusal = pressOkInVain(form);
    QVERIFY2(refusal.text.startsWith(u"The certificate could not be created.\n"_s),
             qPrintable(refusal.text));
    QVERIFY(refusal.text.contains(u"error:"_s));
    QCOMPARE(refusal.icon, QMessageBox::Critical);
    QVERIFY(form.dialog->isVisible());
    QVERIFY(form.dialog->certificate().isNull());
    QCOMPARE(form.dialog->keyPair().publicKey().keySize(), -1);

    NewCertificateDialog::select(form.ip(), 0);
    form.click("btnRemoveIP");
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
}

void VeskNewCertificateDlgCreateTest::refused_country_is_told()
{
    const NewCertificateDialog form;
    form.fillIn();
    form.type("txtCountry", u"\u00c4\u00d6"_s);
    QVERIFY(form.ok().isEnabled());
    QVERIFY(pressOkInVain(form).text.startsWith(u"The certificate could not be created.\n"_s));
    QVERIFY(form.dialog->isVisible());
}

void VeskNewCertificateDlgCreateTest::name_that_openssl_would_change_is_told_as_plain_text()
{
    const NewCertificateDialog form({.uriPart = u"<b>a</b>,DNS:evil"_s});
    form.fillIn();
    const Refusal refusal = pressOkInVain(form);
    QCOMPARE(refusal.text, u"The certificate would not hold these entries as they stand:\n"
                           "Application URI: urn:plant7:<b>a</b>,DNS:evil:\n"
                           "Domain Names: plant7"_s);
    QCOMPARE(refusal.format, Qt::PlainText);
    QVERIFY(form.dialog->isVisible());
}

void VeskNewCertificateDlgCreateTest::password_is_a_text_of_its_own()
{
    const NewCertificateDialog form({.offersPassword = true});
    form.fillIn();
    NewCertificateDialog::click(form.protect());
    form.type("txtPassword", u"secret"_s);
    form.type("txtPasswordRepeat", u"secret"_s);
    NewCertificateDialog::click(form.ok());
    QVERIFY(isAccepted(form));
    QString password = form.dialog->password();
    QCOMPARE(password, u"secret"_s);
    wipe(password);
    QCOMPARE(form.dialog->password(), u"secret"_s);

    const QByteArray key = bytesOf(form.dialog->keyPair().toPEM("secret"));
    QVERIFY(!runOpenSsl({u"pkey"_s, u"-pubout"_s, u"-passin"_s, u"pass:secret"_s}, key)
                 .startsWith(u"failed"_s));
}

ZANDREL_TEST_MAIN(VeskNewCertificateDlgCreateTest)

#include "vesknewcertificatedlg_create_test.moc"
