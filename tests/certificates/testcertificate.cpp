#include "tests/certificates/testcertificate.h"

#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509v3.h>

#include <memory>

namespace {

template <auto Free>
struct Deleter
{
    template <typename T>
    void operator()(T* handle) const
    {
        Free(handle);
    }
};

using Name = std::unique_ptr<X509_NAME, Deleter<X509_NAME_free>>;
using Certificate = std::unique_ptr<X509, Deleter<X509_free>>;
using RevocationList = std::unique_ptr<X509_CRL, Deleter<X509_CRL_free>>;
using Time = std::unique_ptr<ASN1_TIME, Deleter<ASN1_TIME_free>>;
using Number = std::unique_ptr<ASN1_INTEGER, Deleter<ASN1_INTEGER_free>>;
using Bio = std::unique_ptr<BIO, Deleter<BIO_free>>;
using Names = std::unique_ptr<GENERAL_NAMES, Deleter<GENERAL_NAMES_free>>;

/// One key serves all: making one takes long, and nobody looks at it.
EVP_PKEY* key()
{
    static const std::unique_ptr<EVP_PKEY, Deleter<EVP_PKEY_free>> made(EVP_RSA_gen(1024));
    return made.get();
}

void addEntry(X509_NAME* name, const char* field, const QString& value)
{
    if (value.isEmpty()) {
        return;
    }
    const QByteArray text = value.toUtf8();
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.constData());
    // Straight into an entry: the library's own limits of length don't hold here.
    X509_NAME_ENTRY* entry = X509_NAME_ENTRY_create_by_NID(nullptr, OBJ_sn2nid(field),
                                                           V_ASN1_UTF8STRING, bytes, text.size());
    if (entry == nullptr || X509_NAME_add_entry(name, entry, -1, 0) != 1) {
        qFatal("no name");
    }
    X509_NAME_ENTRY_free(entry);
}

Name makeName(const TestName& source)
{
    Name name(X509_NAME_new());
    addEntry(name.get(), "CN", source.commonName);
    addEntry(name.get(), "O", source.organization);
    addEntry(name.get(), "OU", source.organizationUnit);
    addEntry(name.get(), "L", source.locality);
    addEntry(name.get(), "ST", source.state);
    addEntry(name.get(), "C", source.country);
    return name;
}

Time makeTime(qint64 secondsFromNow)
{
    return Time(X509_gmtime_adj(nullptr, secondsFromNow));
}

void addGeneralName(GENERAL_NAMES* names, int type, const QString& value)
{
    const QByteArray text = value.toUtf8();
    GENERAL_NAME* name = nullptr;
    if (type == GEN_IPADD) {
        name = a2i_GENERAL_NAME(nullptr, nullptr, nullptr, type, text.constData(), 0);
    } else {
        name = GENERAL_NAME_new();
        ASN1_IA5STRING* string = ASN1_IA5STRING_new();
        ASN1_STRING_set(string, text.constData(), static_cast<int>(text.size()));
        GENERAL_NAME_set0_value(name, type, string);
    }
    sk_GENERAL_NAME_push(names, name);
}

void addAlternativeNames(X509* certificate, const TestCertificate& source)
{
    const Names names(sk_GENERAL_NAME_new_null());
    if (!source.uri.isEmpty()) {
        addGeneralName(names.get(), GEN_URI, source.uri);
    }
    for (const QString& name : source.dnsNames) {
        addGeneralName(names.get(), GEN_DNS, name);
    }
    for (const QString& address : source.ipAddresses) {
        addGeneralName(names.get(), GEN_IPADD, address);
    }
    if (sk_GENERAL_NAME_num(names.get()) > 0 &&
        X509_add1_ext_i2d(certificate, NID_subject_alt_name, names.get(), 0, 0) != 1) {
        qFatal("no alternative names");
    }
}

Certificate make(const TestCertificate& source)
{
    static int serial = 0;
    Certificate certificate(X509_new());
    X509* x509 = certificate.get();
    X509_set_version(x509, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(x509), ++serial);
    TestName subject;
    subject.commonName = source.name;
    subject.organization = QStringLiteral("Subject's organization");
    X509_set_subject_name(x509, makeName(subject).get());
    X509_set_issuer_name(x509, makeName(source.issuer).get());
    X509_set1_notBefore(x509, makeTime(source.from).get());
    X509_set1_notAfter(x509, makeTime(source.to).get());
    X509_set_pubkey(x509, key());
    addAlternativeNames(x509, source);
    if (X509_sign(x509, key(), EVP_sha256()) == 0) {
        qFatal("no certificate");
    }
    return certificate;
}

RevocationList make(const TestRevocationList& source)
{
    RevocationList list(X509_CRL_new());
    X509_CRL* crl = list.get();
    X509_CRL_set_version(crl, X509_CRL_VERSION_2);
    X509_CRL_set_issuer_name(crl, makeName(source.issuer).get());
    X509_CRL_set1_lastUpdate(crl, makeTime(source.from).get());
    if (source.nextUpdate) {
        X509_CRL_set1_nextUpdate(crl, makeTime(*source.nextUpdate).get());
    }
    if (source.number) {
        const Number number(ASN1_INTEGER_new());
        ASN1_INTEGER_set(number.get(), *source.number);
        X509_CRL_add1_ext_i2d(crl, NID_crl_number, number.get(), 0, 0);
    }
    if (X509_CRL_sign(crl, key(), EVP_sha256()) == 0) {
        qFatal("no revocation list");
    }
    return list;
}

template <typename Write>
QByteArray textOf(Write write)
{
    const Bio bio(BIO_new(BIO_s_mem()));
    write(bio.get());
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &bytes);
    return {bytes, size};
}

} // namespace

QByteArray TestCertificate::der() const
{
    return textOf([this](BIO* bio) { i2d_X509_bio(bio, make(*this).get()); });
}

QByteArray TestCertificate::pem() const
{
    return textOf([this](BIO* bio) { PEM_write_bio_X509(bio, make(*this).get()); });
}

QByteArray TestRevocationList::der() const
{
    return textOf([this](BIO* bio) { i2d_X509_CRL_bio(bio, make(*this).get()); });
}

QByteArray TestRevocationList::pem() const
{
    return textOf([this](BIO* bio) { PEM_write_bio_X509_CRL(bio, make(*this).get()); });
}
