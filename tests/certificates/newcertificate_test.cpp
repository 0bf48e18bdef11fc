#include "base/uaarrays.h"
#include "certificates/certificatetext.h"
#include "certificates/newcertificate.h"
#include "tests/certificates/opensslprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

// A certificate says exactly what was ordered, or none is made.

namespace {

UaString toUaString(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), bytes.size()};
}

UaStringArray toArray(const QStringList& texts)
{
    UaStringArray array;
    if (OpcUa_IsNotGood(array.create(OpcUa_Int32(texts.size())))) {
        qFatal("no memory");
    }
    for (qsizetype i = 0; i < texts.size(); ++i) {
        UaString text = toUaString(texts[i]);
        if (OpcUa_IsNotGood(text.detach(&array[OpcUa_UInt32(i)]))) {
            qFatal("no memory");
        }
    }
    return array;
}

NewCertificateOrder sampleOrder()
{
    NewCertificateOrder order;
    order.subject.commonName = "Press 12";
    order.subject.organization = "Example Works";
    order.subject.locality = "Erlangen";
    order.subject.state = "Bavaria";
    order.subject.country = "DE";
    order.info.uri = "urn:plant7::";
    order.info.dnsNames = toArray({u"plant7"_s});
    order.info.ipAddresses = toArray({u"10.0.0.1"_s});
    order.info.validTime = 3600;
    order.keySize = 1024;
    return order;
}

QByteArray derOf(const UaPkiCertificate& certificate)
{
    const UaByteArray der = certificate.toDER();
    return {reinterpret_cast<const char*>(der.data()), der.size()};
}

/// Text of the subjectAltName as the openssl program prints it.
QString alternativeNames(const UaPkiCertificate& certificate)
{
    const QString text =
        runOpenSsl({u"x509"_s, u"-inform"_s, u"DER"_s, u"-noout"_s, u"-ext"_s, u"subjectAltName"_s},
                   derOf(certificate));
    return text.section(u'\n', 1).trimmed();
}

enum Outcome
{
    Exact,   ///< Made, and it says what was ordered.
    Refused, ///< OpenSSL doesn't make it.
    Differs, ///< OpenSSL would make another one.
};

void setName(NewCertificateOrder& order, const QString& value)
{
    order.subject.commonName = toUaString(value);
}
void setState(NewCertificateOrder& order, const QString& value)
{
    order.subject.state = toUaString(value);
}
void setCountry(NewCertificateOrder& order, const QString& value)
{
    order.subject.country = toUaString(value);
}
void setUri(NewCertificateOrder& order, const QString& value)
{
    order.info.uri = toUaString(value);
}
void setDns(NewCertificateOrder& order, const QString& value)
{
    order.info.dnsNames = toArray({value});
}
void setIp(NewCertificateOrder& order, const QString& value)
{
    order.info.ipAddresses = toArray({value});
}

using Setter = void (*)(NewCertificateOrder& order, const QString& value);

} // namespace

class NewCertificateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void order_becomes_a_certificate_and_its_key();
    static void unusual_text_is_exact_or_told_data();
    static void unusual_text_is_exact_or_told();
    static void several_differences_are_told_together();
    static void names_stay_on_their_line_of_the_failure();
    static void long_texts_are_cut_in_the_failure();
    static void key_sizes_that_no_key_has_fail_data();
    static void key_sizes_that_no_key_has_fail();
    static void ten_thousand_names_are_exact_and_in_order();
};

void NewCertificateTest::order_becomes_a_certificate_and_its_key()
{
    const NewCertificate made = makeNewCertificate(sampleOrder());
    QCOMPARE(made.failure, QString());
    QVERIFY(!made.certificate.isNull());
    QVERIFY(made.certificate.isSelfSigned());
    QCOMPARE(made.keyPair.publicKey().keySize(), 1024);
    QVERIFY(made.certificate.publicKey().toDER() == made.keyPair.publicKey().toDER());
    QCOMPARE(alternativeNames(made.certificate),
             u"URI:urn:plant7::, DNS:plant7, IP Address:10.0.0.1"_s);
}

void NewCertificateTest::unusual_text_is_exact_or_told_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QString>("value");
    QTest::addColumn<Outcome>("outcome");

    const QString tab(u'\t');
    // The name takes whatever fits into its field.
    QTest::newRow("name of 64") << Setter(setName) << QString(64, u'n') << Exact;
    QTest::newRow("name of 65") << Setter(setName) << QString(65, u'n') << Refused;
    QTest::newRow("name of 30,000") << Setter(setName) << QString(30000, u'n') << Refused;
    QTest::newRow("name with markup") << Setter(setName) << u"<b>&amp;</b>"_s << Exact;
    QTest::newRow("name with commas") << Setter(setName) << u"a,DNS:b,CN=c/CN=d+e"_s << Exact;
    QTest::newRow("name with line breaks") << Setter(setName) << u"a\nb\r\nc"_s << Exact;
    QTest::newRow("name with blanks around") << Setter(setName) << u" a "_s << Exact;
    QTest::newRow("name with backslash and quotes") << Setter(setName) << u"\\\"a\"'#"_s << Exact;
    QTest::newRow("name with umlauts") << Setter(setName) << u"Pr\u00fcfstand"_s << Exact;
    QTest::newRow("name beyond 16 bits") << Setter(setName) << u"\U0001F512"_s << Exact;
    QTest::newRow("name with right-to-left mark") << Setter(setName) << u"a\u202eb"_s << Exact;
    QTest::newRow("name with a NUL")
        << Setter(setName) << QString::fromLatin1("good\0evil", 9) << Exact;
    QTest::newRow("state of 128") << Setter(setState) << QString(128, u's') << Exact;
    QTest::newRow("state of 129") << Setter(setState) << QString(129, u's') << Refused;

    QTest::newRow("lower case country") << Setter(setCountry) << u"de"_s << Exact;
    QTest::newRow("country of umlauts") << Setter(setCountry) << u"\u00c4\u00d6"_s << Refused;
    QTest::newRow("country of signs") << Setter(setCountry) << u"<>"_s << Refused;
    QTest::newRow("country of one letter") << Setter(setCountry) << u"D"_s << Refused;

    // The URI and what follows are one text in the syntax of OpenSSL's configuration.
    QTest::newRow("URI of 10,000") << Setter(setUri) << u"urn:"_s + QString(10000, u'u') << Exact;
    QTest::newRow("URI with signs") << Setter(setUri) << u"urn:a?b=c&d;e#f[g]@h$i%20j"_s << Exact;
    QTest::newRow("URI with quotes") << Setter(setUri) << u"urn:\"a\"'b\\c"_s << Exact;
    QTest::newRow("URI with blanks inside") << Setter(setUri) << u"urn:a b"_s + tab << Differs;
    QTest::newRow("URI with blank before") << Setter(setUri) << u" urn:a"_s << Differs;
    QTest::newRow("URI with blank behind") << Setter(setUri) << u"urn:a "_s << Differs;
    QTest::newRow("URI with a comma") << Setter(setUri) << u"urn:a,b"_s << Refused;
    QTest::newRow("URI with a comma at its end") << Setter(setUri) << u"urn:a,"_s << Refused;
    QTest::newRow("URI that adds a DNS name") << Setter(setUri) << u"urn:a,DNS:evil"_s << Differs;
    QTest::newRow("URI that adds a URI") << Setter(setUri) << u"urn:a,URI:urn:b"_s << Differs;
    QTest::newRow("URI that adds an identifier")
        << Setter(setUri) << u"urn:a,RID:1.2.3"_s << Differs;
    QTest::newRow("URI that copies an address")
        << Setter(setUri) << u"urn:a,email:copy"_s << Differs;
    QTest::newRow("URI that names a section")
        << Setter(setUri) << u"urn:a,dirName:section"_s << Refused;
    QTest::newRow("URI with a line break") << Setter(setUri) << u"urn:a\nb"_s << Differs;
    QTest::newRow("URI with umlaut") << Setter(setUri) << u"urn:pr\u00fcf"_s << Differs;
    QTest::newRow("URI with a NUL")
        << Setter(setUri) << QString::fromLatin1("urn:a\0b", 7) << Differs;
    QTest::newRow("no URI") << Setter(setUri) << QString() << Refused;

    QTest::newRow("DNS name with final dot") << Setter(setDns) << u"host.example."_s << Exact;
    QTest::newRow("DNS name with wildcard") << Setter(setDns) << u"*.example"_s << Exact;
    QTest::newRow("DNS name that adds another") << Setter(setDns) << u"a,DNS:evil"_s << Differs;
    QTest::newRow("DNS name that adds a URI") << Setter(setDns) << u"a,URI:urn:evil"_s << Differs;
    QTest::newRow("DNS name with a line break") << Setter(setDns) << u"a\nb"_s << Differs;
    QTest::newRow("DNS name with umlaut") << Setter(setDns) << u"m\u00fcller"_s << Differs;
    QTest::newRow("DNS name with comma") << Setter(setDns) << u"a,b"_s << Refused;
    QTest::newRow("empty DNS name") << Setter(setDns) << u""_s << Refused;

    QTest::newRow("IPv6") << Setter(setIp) << u"2001:db8::1"_s << Exact;
    QTest::newRow("IPv6 as certificates tell it")
        << Setter(setIp) << u"2001:0DB8:0000:0000:0000:0000:0000:0001"_s << Exact;
    QTest::newRow("IPv4 in IPv6") << Setter(setIp) << u"::ffff:10.0.0.1"_s << Exact;
    QTest::newRow("IPv4 with blanks around") << Setter(setIp) << u" 10.0.0.1 "_s << Exact;
    QTest::newRow("IPv4 of two numbers") << Setter(setIp) << u"127.1"_s << Refused;
    QTest::newRow("IPv6 with scope") << Setter(setIp) << u"fe80::1%eth0"_s << Refused;
    QTest::newRow("host name as address") << Setter(setIp) << u"localhost"_s << Refused;
    QTest::newRow("address that adds a name") << Setter(setIp) << u"::1,DNS:evil"_s << Differs;
    QTest::newRow("empty address") << Setter(setIp) << u""_s << Refused;
}

void NewCertificateTest::unusual_text_is_exact_or_told()
{
    QFETCH(const Setter, set);
    QFETCH(const QString, value);
    QFETCH(const Outcome, outcome);

    NewCertificateOrder order = sampleOrder();
    set(order, value);
    const NewCertificate made = makeNewCertificate(order);
    if (outcome == Exact) {
        QCOMPARE(made.failure, QString());
        QVERIFY(made.certificate.subject() == order.subject);
        QVERIFY(made.certificate.info().uri == order.info.uri);
        QVERIFY(made.certificate.info().dnsNames == order.info.dnsNames);
        QCOMPARE(made.certificate.info().ipAddresses.length(), 1);
        return;
    }
    QVERIFY(made.certificate.isNull());
    QCOMPARE(made.keyPair.publicKey().keySize(), -1);
    const QString firstLine = made.failure.section(u'\n', 0, 0);
    QCOMPARE(firstLine, outcome == Refused
                            ? u"The certificate could not be created."_s
                            : u"The certificate would not hold these entries as they stand:"_s);
    QVERIFY(made.failure.size() > firstLine.size() + 5); // and why
}

void NewCertificateTest::several_differences_are_told_together()
{
    NewCertificateOrder order = sampleOrder();
    setUri(order, u"urn:a,DNS:evil,IP:10.0.0.2"_s);
    QCOMPARE(makeNewCertificate(order).failure,
             u"The certificate would not hold these entries as they stand:\n"
             "Application URI: urn:a,DNS:evil,IP:10.0.0.2\n"
             "Domain Names: plant7\n"
             "IP Addresses: 10.0.0.1"_s);
}

void NewCertificateTest::long_texts_are_cut_in_the_failure()
{
    NewCertificateOrder order = sampleOrder();
    setUri(order, u"urn:a "_s + QString(100000, u'\u00fc'));
    const QString failure = makeNewCertificate(order).failure;
    QVERIFY(failure.contains(u"Application URI: urn:a"_s));
    QVERIFY(failure.size() < 1500);
}

void NewCertificateTest::names_stay_on_their_line_of_the_failure()
{
    NewCertificateOrder order = sampleOrder();
    setUri(order, u"urn:a\nDomain Names: b\u202ec"_s);
    QCOMPARE(makeNewCertificate(order).failure,
             u"The certificate would not hold these entries as they stand:\n"
             "Application URI: urn:a Domain Names: b\ufffdc\n"
             "Domain Names: plant7\n"
             "IP Addresses: 10.0.0.1"_s);
}

void NewCertificateTest::key_sizes_that_no_key_has_fail_data()
{
    QTest::addColumn<int>("bits");
    QTest::newRow("negative") << -1;
    QTest::newRow("zero") << 0;
    QTest::newRow("too small") << 256;
    QTest::newRow("too large") << 1000000;
}

void NewCertificateTest::key_sizes_that_no_key_has_fail()
{
    QFETCH(const int, bits);

    NewCertificateOrder order = sampleOrder();
    order.keySize = bits;
    const NewCertificate made = makeNewCertificate(order);
    const QString firstLine = made.failure.section(u'\n', 0, 0);
    QCOMPARE(firstLine, u"The key pair could not be created."_s);
    QVERIFY(made.failure.size() > firstLine.size() + 5);
    QVERIFY(made.certificate.isNull());
}

void NewCertificateTest::ten_thousand_names_are_exact_and_in_order()
{
    QStringList names;
    for (int i = 0; i < 10000; ++i) {
        names.append(u"host%1.example"_s.arg(i));
    }
    NewCertificateOrder order = sampleOrder();
    order.info.dnsNames = toArray(names);
    const NewCertificate made = makeNewCertificate(order);
    QCOMPARE(made.failure, QString());
    QVERIFY(made.certificate.info().dnsNames == order.info.dnsNames);
}

QTEST_GUILESS_MAIN(NewCertificateTest)
#include "newcertificate_test.moc"
