// The certificates, keys and revocation lists that the program lays out.

#include "base/uadatetime.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "pki/uapkirsakeypair.h"
#include "tests/examples/programrun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

namespace {

const QString ownCertificate = QStringLiteral("pki/own/certs/sampleserver.der");
const QString ownKey = QStringLiteral("pki/own/private/sampleserver.pem");
const QString authority = QStringLiteral("pki/issuers/certs/authority-valid.der");

/// A certificate in either form, as the console looks for it.
UaPkiCertificate readCertificate(const QString& path)
{
    const QByteArray name = QFile::encodeName(path);
    const UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(name.constData());
    return certificate.isNull() ? UaPkiCertificate::fromPEMFile(name.constData()) : certificate;
}

UaPkiRevocationList readList(const QString& path)
{
    return UaPkiRevocationList::fromFile(QFile::encodeName(path).constData());
}

/// "valid", "expires soon", "expired" or "not yet valid"; two weeks before its end a thing expires soon.
QString stateOf(const UaDateTime& from, const UaDateTime& to)
{
    constexpr std::time_t day = 24 * 60 * 60;
    const std::time_t now = UaDateTime::now().toTime_t();
    if (from.toTime_t() > now) {
        return QStringLiteral("not yet valid");
    }
    if (to.toTime_t() < now) {
        return QStringLiteral("expired");
    }
    return to.toTime_t() - now < 15 * day ? QStringLiteral("expires soon")
                                          : QStringLiteral("valid");
}

void addStates(bool hasList)
{
    struct Row
    {
        const char* name;
        const char* state;
        bool isPem;
    };
    const Row rows[] = {
        {"valid", "valid", false},     {"expires-soon", "expires soon", false},
        {"expired", "expired", false}, {"not-yet-valid", "not yet valid", false},
        {"pem", "valid", true},        {"something-else", "", false},
    };
    const QStringList certificates = {QStringLiteral("pki/trusted/certs/client-%1.der"),
                                      QStringLiteral("pki/rejected/stranger-%1.der"),
                                      QStringLiteral("pki/issuers/certs/authority-%1.der")};
    const QStringList lists = {QStringLiteral("pki/trusted/crl/trusted-%1.crl"),
                               QStringLiteral("pki/issuers/crl/issuers-%1.crl")};
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("state");
    QTest::addColumn<bool>("isPem");
    for (const QString& pattern : hasList ? lists : certificates) {
        for (const Row& row : rows) {
            const QString file = pattern.arg(QLatin1String(row.name));
            QTest::newRow(qPrintable(file)) << file << row.state << row.isPem;
        }
    }
}

} // namespace

class SampleCertificatesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void the_own_certificate_belongs_to_its_key();
    void the_own_key_is_its_owners_alone();
    void certificates_have_the_state_of_their_name_data() { addStates(false); }
    void certificates_have_the_state_of_their_name();
    void lists_have_the_state_of_their_name_data() { addStates(true); }
    void lists_have_the_state_of_their_name();
    void every_file_has_been_looked_at();
    void another_run_keeps_what_is_there_and_adds_what_is_missing();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    UaPkiCertificate m_authority;
};

void SampleCertificatesTest::initTestCase()
{
    const ProgramRun run = runSampleServer({m_folder.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    m_authority = readCertificate(path(authority));
    QVERIFY(m_authority.isSelfSigned());
}

void SampleCertificatesTest::the_own_certificate_belongs_to_its_key()
{
    const UaPkiCertificate certificate = readCertificate(path(ownCertificate));
    const QByteArray keyName = QFile::encodeName(path(ownKey));
    const UaPkiRSAKeyPair keyPair = UaPkiRSAKeyPair::fromPEMFile(keyName.constData(), nullptr);
    QVERIFY(certificate.isSelfSigned());
    QVERIFY(certificate.isValid());
    QCOMPARE(keyPair.publicKey().keySize(), 2048);
    QVERIFY(certificate.publicKey().toDER() == keyPair.publicKey().toDER());
    QCOMPARE(certificate.commonName().toUtf8(), "Sample Server");
    QCOMPARE(stateOf(certificate.validFrom(), certificate.validTo()), QStringLiteral("valid"));
}

void SampleCertificatesTest::the_own_key_is_its_owners_alone()
{
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    QCOMPARE(QFile::permissions(path(ownKey)) & others, QFile::Permissions());
}

void SampleCertificatesTest::certificates_have_the_state_of_their_name()
{
    QFETCH(QString, file);
    QFETCH(QString, state);
    QFETCH(bool, isPem);
    QVERIFY(QFileInfo(path(file)).isFile());
    QCOMPARE(bytesOf(path(file)).startsWith("-----BEGIN CERTIFICATE-----"), isPem);
    const UaPkiCertificate certificate = readCertificate(path(file));
    QCOMPARE(certificate.isNull(), state.isEmpty());
    if (!certificate.isNull()) {
        QCOMPARE(stateOf(certificate.validFrom(), certificate.validTo()), state);
        QVERIFY(certificate.verifySignature(m_authority.publicKey()));
    }
}

void SampleCertificatesTest::lists_have_the_state_of_their_name()
{
    QFETCH(QString, file);
    QFETCH(QString, state);
    QFETCH(bool, isPem);
    QVERIFY(QFileInfo(path(file)).isFile());
    QCOMPARE(bytesOf(path(file)).startsWith("-----BEGIN X509 CRL-----"), isPem);
    const UaPkiRevocationList list = readList(path(file));
    QCOMPARE(list.isNull(), state.isEmpty());
    if (!list.isNull()) {
        QCOMPARE(stateOf(list.thisUpdate(), list.nextUpdate()), state);
        QVERIFY(list.verifySignature(m_authority.publicKey()));
        QVERIFY(list.issuer() == m_authority.subject());
    }
}

void SampleCertificatesTest::every_file_has_been_looked_at()
{
    // The rows of the tests above, the own certificate and its key.
    const QStringList folders = {QStringLiteral("trusted/certs"), QStringLiteral("trusted/crl"),
                                 QStringLiteral("issuers/certs"), QStringLiteral("issuers/crl"),
                                 QStringLiteral("rejected")};
    for (const QString& folder : folders) {
        QCOMPARE(QDir(path(QStringLiteral("pki/") + folder)).entryList(QDir::Files).size(), 6);
    }
    QCOMPARE(QDir(path(QStringLiteral("pki/own/certs"))).entryList(QDir::Files).size(), 1);
    QCOMPARE(QDir(path(QStringLiteral("pki/own/private"))).entryList(QDir::Files).size(), 1);
}

void SampleCertificatesTest::another_run_keeps_what_is_there_and_adds_what_is_missing()
{
    const QString missing = path(QStringLiteral("pki/rejected/stranger-expired.der"));
    const QByteArray key = bytesOf(path(ownKey));
    const QByteArray issuer = bytesOf(path(authority));
    QVERIFY(QFile::remove(path(ownCertificate)) && QFile::remove(missing));
    QCOMPARE(runSampleServer({QStringLiteral("--force"), m_folder.path()}).exitCode, 0);
    QVERIFY(QFile::exists(missing));
    QCOMPARE(bytesOf(path(authority)), issuer);
    QCOMPARE(bytesOf(path(ownKey)), key);
    QVERIFY2(!QFile::exists(path(ownCertificate)), "another key's certificate would be of no use");
}

QTEST_GUILESS_MAIN(SampleCertificatesTest)
#include "samplecertificates_test.moc"
