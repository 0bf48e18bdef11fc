#include "certificates/certificatefiles.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirsakeypair.h"
#include "tests/certificates/certificatestab.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/configsample.h"
#include "tests/support/messageboxanswer.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Answers the dialog for a new certificate: looks at it, then presses OK or Cancel.
class DialogAnswer : public QObject
{
public:
    DialogAnswer(QDialogButtonBox::StandardButton button, std::function<void(QDialog&)> look)
        : m_button(button)
        , m_look(std::move(look))
    {
        connect(&m_timer, &QTimer::timeout, this, &DialogAnswer::answer);
        m_timer.start(5);
    }

    [[nodiscard]] int timesShown() const { return m_timesShown; }

private:
    void answer()
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        auto* buttons = dialog ? dialog->findChild<QDialogButtonBox*>() : nullptr;
        if (!buttons || dialog->objectName() != u"NewCertificateDialog"_s) {
            return;
        }
        m_timer.stop();
        ++m_timesShown;
        m_look(*dialog);
        QTest::mouseClick(buttons->button(m_button), Qt::LeftButton);
    }

    QDialogButtonBox::StandardButton m_button;
    std::function<void(QDialog&)> m_look;
    QTimer m_timer;
    int m_timesShown = 0;
};

QString text(const QDialog& dialog, const char* name)
{
    return dialog.findChild<QLineEdit*>(QLatin1StringView(name))->text();
}

QString thumbprint(const UaPkiCertificate& certificate)
{
    return QString::fromLatin1(certificate.thumbPrint().toHex().toUtf8());
}

} // namespace

class VeskCertificateManagerCreateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dialog_takes_over_what_the_old_certificate_says()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        QMap<QString, QString> texts;
        QStringList addresses;
        QString keySize;
        bool offersPassword = true;
        const DialogAnswer answer(QDialogButtonBox::Cancel, [&](QDialog& dialog) {
            for (const char* name : {"txtCommonName", "txtOrganization", "txtOrganizationUnit",
                                     "txtLocality", "txtState", "txtCountry"}) {
                texts[QLatin1StringView(name)] = text(dialog, name);
            }
            const auto* list = dialog.findChild<QListWidget*>(u"lstIP"_s);
            for (int i = 0; i < list->count(); ++i) {
                addresses.append(list->item(i)->text());
            }
            keySize = dialog.findChild<QComboBox*>(u"cmbRSAKeyStrength"_s)->currentText();
            offersPassword = dialog.findChild<QCheckBox*>(u"chkPassword"_s)->isVisible();
        });
        tab.click("pushButton_CreateNewCertificate");
        QCOMPARE(answer.timesShown(), 1);
        QCOMPARE(texts, (QMap<QString, QString>{{u"txtCommonName"_s, u"Own server"_s},
                                                {u"txtOrganization"_s, u"Own organization"_s},
                                                {u"txtOrganizationUnit"_s, u"Own unit"_s},
                                                {u"txtLocality"_s, u"Own locality"_s},
                                                {u"txtState"_s, u"Own state"_s},
                                                {u"txtCountry"_s, u"CH"_s}}));
        QCOMPARE(addresses, QStringList{u"192.168.0.7"_s});
        QCOMPARE(keySize, u"1024 bits"_s);
        QVERIFY(!offersPassword);
    }

    void certificate_in_pem_form_fills_nothing_in()
    {
        CertificatesTab tab;
        tab.info.serverCertificate = tab.put(u"own"_s, u"server.der"_s, TestCertificate().pem());
        tab.open();
        QString name;
        const DialogAnswer answer(QDialogButtonBox::Cancel, [&name](QDialog& dialog) {
            name = text(dialog, "txtCommonName") + text(dialog, "txtOrganization");
        });
        tab.click("pushButton_CreateNewCertificate");
        QCOMPARE(answer.timesShown(), 1);
        QCOMPARE(name, QString());
    }

    void cancel_changes_no_file()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        const QByteArray certificate = readFile(tab.info.serverCertificate);
        const QByteArray key = readFile(tab.info.serverPrivateKey);
        QSignalSpy created(tab.widget.get(), &VeskCertificateManager::sigNewCertificateCreated);
        const DialogAnswer answer(QDialogButtonBox::Cancel, [](QDialog&) {});
        tab.contextMenu(tab.trusted(), u"server.der"_s, u"Create New..."_s);
        QCOMPARE(answer.timesShown(), 1);
        QCOMPARE(readFile(tab.info.serverCertificate), certificate);
        QCOMPARE(readFile(tab.info.serverPrivateKey), key);
        QCOMPARE(created.count(), 0);
    }

    void new_certificate_takes_the_place_of_the_old()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.putRevocationList(u"crl"_s, u"a.crl"_s);
        tab.open();
        QFile::setPermissions(tab.info.serverPrivateKey,
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        const UaPkiCertificate old = loadCertificate(tab.info.serverCertificate);
        QSignalSpy created(tab.widget.get(), &VeskCertificateManager::sigNewCertificateCreated);
        QSignalSpy lists(tab.view("treeView_trustedCRLs").model(),
                         &QAbstractItemModel::rowsInserted);
        const DialogAnswer answer(QDialogButtonBox::Ok, [](QDialog& dialog) {
            auto* name = dialog.findChild<QLineEdit*>(u"txtCommonName"_s);
            name->selectAll();
            QTest::keyClicks(name, u"New server"_s);
        });
        MessageBoxAnswer none({});
        tab.select(tab.trusted(), u"server.der"_s);
        tab.click("pushButton_CreateNewCertificate");
        QCOMPARE(answer.timesShown(), 1);
        QCOMPARE(none.verdict(), QString());

        const UaPkiCertificate certificate =
            UaPkiCertificate::fromDERFile(qPrintable(tab.info.serverCertificate));
        QVERIFY(certificate.commonName() == "New server");
        QVERIFY(certificate.issuer().organization == "Own organization");
        QVERIFY(certificate.isSelfSigned());
        QCOMPARE(certificate.signatureAlgorithm(), UaPkiCertificate::Sha256WithRsa);
        const UaPkiRSAKeyPair key =
            UaPkiRSAKeyPair::fromPEMFile(qPrintable(tab.info.serverPrivateKey), nullptr);
        QVERIFY(key.publicKey().toDER() == certificate.publicKey().toDER());
        QCOMPARE(QFile::permissions(tab.info.serverPrivateKey) &
                     QFile::Permissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                        QFile::WriteGroup | QFile::ReadOther),
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);

        QCOMPARE(created.count(), 1);
        QCOMPARE(created[0], QVariantList({thumbprint(old), tab.info.serverCertificate}));
        QCOMPARE(thumbprint(old).size(), 40);
        QCOMPARE(tab.trusted().model()->index(0, 1).data().toString(), u"New server"_s);
        QCOMPARE(tab.currentFile(tab.trusted()), u"server.der"_s);
        QCOMPARE(lists.count(), 0); // only that one list is filled again
    }

    void old_file_that_is_no_certificate_has_no_thumbprint()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.put(u"own"_s, u"server.der"_s, "no certificate");
        tab.open();
        QSignalSpy created(tab.widget.get(), &VeskCertificateManager::sigNewCertificateCreated);
        const DialogAnswer answer(QDialogButtonBox::Ok, [](QDialog& dialog) {
            for (const char* name :
                 {"txtCommonName", "txtOrganization", "txtLocality", "txtState", "txtCountry"}) {
                QTest::keyClicks(dialog.findChild<QLineEdit*>(QLatin1StringView(name)), u"DE"_s);
            }
        });
        tab.click("pushButton_CreateNewCertificate");
        QCOMPARE(created.count(), 1);
        QCOMPARE(created[0][0].toString(), QString());
        QVERIFY(!loadCertificate(tab.info.serverCertificate).isNull());
    }

    void files_that_cannot_be_written_are_told_and_nothing_is_lost_data()
    {
        QTest::addColumn<bool>("isKey");
        QTest::newRow("certificate") << false;
        QTest::newRow("key") << true;
    }

    void files_that_cannot_be_written_are_told_and_nothing_is_lost()
    {
        QFETCH(const bool, isKey);
        CertificatesTab tab;
        tab.putOwn();
        const QByteArray certificate = readFile(tab.info.serverCertificate);
        const QByteArray key = readFile(tab.info.serverPrivateKey);
        const QString keyFile = tab.info.serverPrivateKey;
        if (isKey) {
            tab.info.serverPrivateKey = tab.directory.filePath(u"none/server.pem"_s);
        }
        tab.open();
        QSignalSpy created(tab.widget.get(), &VeskCertificateManager::sigNewCertificateCreated);
        const DialogAnswer answer(QDialogButtonBox::Ok, [&](QDialog&) {
            if (!isKey) { // in the meantime something else has taken its place
                QFile::remove(tab.info.serverCertificate);
                QDir().mkpath(tab.info.serverCertificate + u"/x"_s);
            }
        });
        MessageBoxAnswer box(u"CertificateManager"_s,
                             u"Could not create certificate %1"_s.arg(tab.info.serverCertificate),
                             QMessageBox::Ok);
        box.setInspection(
            [](QMessageBox& shown) { QCOMPARE(shown.icon(), QMessageBox::Critical); });
        tab.click("pushButton_CreateNewCertificate");
        QCOMPARE(box.verdict(), QString());
        QCOMPARE(created.count(), 0);
        QCOMPARE(readFile(keyFile), key);
        QVERIFY(!isKey || readFile(tab.info.serverCertificate) == certificate);
    }
};

ZANDREL_TEST_MAIN(VeskCertificateManagerCreateTest)

#include "veskcertificatemanager_create_test.moc"
