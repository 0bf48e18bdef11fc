#include "certificates/certificatefiles.h"
#include "certificates/veskcertificatemodel.h"
#include "certificates/veskcrlmodel.h"
#include "tests/certificates/opensslprogram.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;

// The lists show what the openssl program has written, field by field.

namespace {

constexpr const char* configuration = R"([ca]
default_ca = any
[any]
database = index.txt
default_md = sha256
[any_with_number]
database = index.txt
default_md = sha256
crlnumber = number
[req]
distinguished_name = name
[name]
)";

struct Certificate
{
    const char* name; ///< Of the test's row.
    QString subject;
    QString alternativeNames; ///< Empty for none.
    QString days;
    QStringList columns; ///< Name, O, OU, L, ST, C, URI, DNS names, IP addresses.
};

QList<Certificate> certificates()
{
    const QString loopback = u"0000:0000:0000:0000:0000:0000:0000:0001"_s;
    return {
        {"all fields",
         u"/C=DE/ST=Bavaria/L=Erlangen/O=Works/OU=Hall/CN=Press"_s,
         u"URI:urn:host:press,DNS:host,DNS:host.example,IP:10.0.0.1,IP:::1"_s,
         u"30"_s,
         {u"Press"_s, u"Works"_s, u"Hall"_s, u"Erlangen"_s, u"Bavaria"_s, u"DE"_s,
          u"urn:host:press"_s, u"host, host.example"_s, u"10.0.0.1, "_s + loopback}},
        {"only a name",
         u"/CN=Press"_s,
         QString(),
         u"30"_s,
         {u"Press"_s, QString(), QString(), QString(), QString(), QString(), QString(), QString(),
          QString()}},
        {"no name at all",
         u"/"_s,
         u"DNS:host"_s,
         u"30"_s,
         {QString(), QString(), QString(), QString(), QString(), QString(), QString(), u"host"_s,
          QString()}},
        {"first of several entries",
         u"/O=First/O=Second/CN=first/CN=second"_s,
         QString(),
         u"30"_s,
         {u"first"_s, u"First"_s, QString(), QString(), QString(), QString(), QString(), QString(),
          QString()}},
        {"last of several URIs, other names left out",
         u"/CN=Press"_s,
         u"email:a@b.example,URI:urn:first,RID:1.2.3.4,DNS:host,URI:urn:last"_s,
         u"30"_s,
         {u"Press"_s, QString(), QString(), QString(), QString(), QString(), u"urn:last"_s,
          u"host"_s, QString()}},
        {"umlauts and signs",
         u"/O=M\u00fcller & S\u00f6hne <AG>/CN=\u00dcbung \\/ \u65e5\u672c"_s,
         QString(),
         u"30"_s,
         {u"\u00dcbung / \u65e5\u672c"_s, u"M\u00fcller & S\u00f6hne <AG>"_s, QString(), QString(),
          QString(), QString(), QString(), QString(), QString()}},
        {"lifetime beyond 2050",
         u"/CN=Press"_s,
         QString(),
         u"40000"_s,
         {u"Press"_s, QString(), QString(), QString(), QString(), QString(), QString(), QString(),
          QString()}},
    };
}

QString found(const QString& text, const QString& label)
{
    for (const QString& line : text.split(u'\n')) {
        if (line.startsWith(label + u'=')) {
            return line.mid(label.size() + 1);
        }
    }
    return {};
}

/// The date that the program writes behind a label, "2026-11-21 22:08:58Z".
QDateTime dateIn(const QString& text, const QString& label)
{
    return QDateTime::fromString(found(text, label), Qt::ISODate);
}

} // namespace

class ForeignFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void certificate_shows_its_fields_data();
    void certificate_shows_its_fields();
    void issued_certificate_shows_the_issuers_names();
    void revocation_list_shows_its_fields_data();
    void revocation_list_shows_its_fields();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }
    QString run(const QStringList& arguments) const
    {
        return runOpenSsl(arguments, QByteArray(), m_directory.path());
    }
    void makeCertificate(const QString& file, const QString& subject,
                         const QStringList& more) const;

    QTemporaryDir m_directory;
};

void ForeignFilesTest::initTestCase()
{
    writeFile(path(u"openssl.cnf"_s), configuration);
    writeFile(path(u"index.txt"_s), QByteArray());
    QCOMPARE(run({u"genrsa"_s, u"-out"_s, u"key.pem"_s, u"1024"_s}), QString());
    makeCertificate(u"ca.pem"_s, u"/C=FR/ST=Seine/L=Paris/O=Issuer/OU=Trust/CN=CA"_s,
                    {u"-outform"_s, u"PEM"_s});
}

void ForeignFilesTest::makeCertificate(const QString& file, const QString& subject,
                                       const QStringList& more) const
{
    QCOMPARE(run(QStringList{u"req"_s, u"-config"_s, u"openssl.cnf"_s, u"-x509"_s, u"-key"_s,
                             u"key.pem"_s, u"-utf8"_s, u"-subj"_s, subject, u"-out"_s, file} +
                 more),
             QString());
}

void ForeignFilesTest::certificate_shows_its_fields_data()
{
    QTest::addColumn<qsizetype>("number");
    const QList<Certificate> all = certificates();
    for (qsizetype i = 0; i < all.size(); ++i) {
        QTest::newRow(all[i].name) << i;
    }
}

void ForeignFilesTest::certificate_shows_its_fields()
{
    QFETCH(const qsizetype, number);

    const Certificate source = certificates().at(number);
    const QString file = u"c%1.der"_s.arg(number);
    QStringList more = {u"-outform"_s, u"DER"_s, u"-days"_s, source.days};
    if (!source.alternativeNames.isEmpty()) {
        more.append({u"-addext"_s, u"subjectAltName="_s + source.alternativeNames});
    }
    makeCertificate(file, source.subject, more);

    VeskCertificateModel model(QIcon(), VeskCertificateModel::TrustList);
    model.addCertificate(loadCertificate(path(file)), path(file), VeskCertificateModel::Trusted);
    const auto shown = [&model](int column) {
        return model.data(model.index(0, column), Qt::DisplayRole);
    };
    QStringList columns = {shown(VeskCertificateModel::NameColumn).toString()};
    for (int column = VeskCertificateModel::OrganizationColumn;
         column < VeskCertificateModel::FilenameColumn; ++column) {
        columns.append(shown(column).toString());
    }
    QCOMPARE(columns, source.columns);

    const QString told =
        run({u"x509"_s, u"-inform"_s, u"DER"_s, u"-in"_s, file, u"-noout"_s, u"-dates"_s,
             u"-dateopt"_s, u"iso_8601"_s, u"-fingerprint"_s, u"-sha1"_s});
    QCOMPARE(shown(VeskCertificateModel::ValidFromColumn).toDateTime(),
             dateIn(told, u"notBefore"_s));
    QCOMPARE(shown(VeskCertificateModel::ValidToColumn).toDateTime(), dateIn(told, u"notAfter"_s));
    QVERIFY(dateIn(told, u"notAfter"_s).isValid());
    QCOMPARE(model.data(model.index(0, 0), VeskCertificateModel::ThumbprintRole).toString(),
             found(told, u"sha1 Fingerprint"_s).remove(u':'));
    QVERIFY(!model.data(model.index(0, 0), Qt::ToolTipRole).isValid()); // healthy
}

void ForeignFilesTest::issued_certificate_shows_the_issuers_names()
{
    makeCertificate(u"issued.pem"_s, u"/C=DE/O=Works/CN=Press"_s,
                    {u"-CA"_s, u"ca.pem"_s, u"-CAkey"_s, u"key.pem"_s});
    const UaPkiCertificate certificate = loadCertificate(path(u"issued.pem"_s));
    QVERIFY(!certificate.isNull());
    VeskCertificateModel model(QIcon(), VeskCertificateModel::Issuers);
    model.addCertificate(certificate, path(u"issued.pem"_s), VeskCertificateModel::Trusted);
    QStringList columns;
    for (const int column : {0, 1, 4, 5, 6, 7, 8}) {
        columns.append(model.data(model.index(0, column), Qt::DisplayRole).toString());
    }
    QCOMPARE(columns, QStringList({u"Known Issuer"_s, u"Press"_s, u"Issuer"_s, u"Trust"_s,
                                   u"Paris"_s, u"Seine"_s, u"FR"_s}));
}

void ForeignFilesTest::revocation_list_shows_its_fields_data()
{
    QTest::addColumn<QByteArray>("number"); // hexadecimal; empty for none
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("days");
    QTest::addColumn<int>("shownNumber");
    QTest::addColumn<QString>("toolTip");

    const QString soon = u"The CRL will expire soon"_s;
    QTest::newRow("without a number") << QByteArray() << u"PEM"_s << u"30"_s << -1 << QString();
    QTest::newRow("number 0") << QByteArray("00") << u"PEM"_s << u"30"_s << 0 << QString();
    QTest::newRow("number 4096") << QByteArray("1000") << u"DER"_s << u"30"_s << 4096 << QString();
    QTest::newRow("number beyond 32 bits")
        << QByteArray("100000000000") << u"DER"_s << u"30"_s << -1 << QString();
    QTest::newRow("next update in ten days")
        << QByteArray("01") << u"PEM"_s << u"10"_s << 1 << soon;
    QTest::newRow("next update beyond 2050")
        << QByteArray("01") << u"DER"_s << u"40000"_s << 1 << QString();
}

void ForeignFilesTest::revocation_list_shows_its_fields()
{
    QFETCH(const QByteArray, number);
    QFETCH(const QString, form);
    QFETCH(const QString, days);
    QFETCH(const int, shownNumber);
    QFETCH(const QString, toolTip);

    writeFile(path(u"number"_s), number + '\n');
    QCOMPARE(run({u"ca"_s, u"-config"_s, u"openssl.cnf"_s, u"-name"_s,
                  number.isEmpty() ? u"any"_s : u"any_with_number"_s, u"-gencrl"_s, u"-cert"_s,
                  u"ca.pem"_s, u"-keyfile"_s, u"key.pem"_s, u"-crldays"_s, days, u"-out"_s,
                  u"list.pem"_s}),
             QString());
    QCOMPARE(
        run({u"crl"_s, u"-in"_s, u"list.pem"_s, u"-outform"_s, form, u"-out"_s, u"list.crl"_s}),
        QString());

    VeskCRLModel model(0);
    model.addCRL(loadRevocationList(path(u"list.crl"_s)), path(u"list.crl"_s));
    const auto shown = [&model](int column) {
        return model.data(model.index(0, column), Qt::DisplayRole);
    };
    QCOMPARE(shown(VeskCRLModel::NumberColumn), QVariant(shownNumber));
    QCOMPARE(QStringList({shown(3).toString(), shown(4).toString(), shown(5).toString(),
                          shown(6).toString(), shown(7).toString()}),
             QStringList({u"Issuer"_s, u"Trust"_s, u"Paris"_s, u"Seine"_s, u"FR"_s}));
    const QString told = run({u"crl"_s, u"-in"_s, u"list.pem"_s, u"-noout"_s, u"-lastupdate"_s,
                              u"-nextupdate"_s, u"-dateopt"_s, u"iso_8601"_s});
    QCOMPARE(shown(VeskCRLModel::ValidFromColumn).toDateTime(), dateIn(told, u"lastUpdate"_s));
    QCOMPARE(shown(VeskCRLModel::NextUpdateColumn).toDateTime(), dateIn(told, u"nextUpdate"_s));
    QVERIFY(dateIn(told, u"nextUpdate"_s).isValid());
    QCOMPARE(model.data(model.index(0, 0), Qt::ToolTipRole).toString(), toolTip);
}

ZANDREL_TEST_MAIN(ForeignFilesTest)

#include "foreignfiles_test.moc"
