#include "pki/opensslhandles.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

// Certificates from requests, and certificates that are signed anew.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int sha1 = UaPkiCertificate::Sha1WithRsa;
constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

UaPkiCertificate authority()
{
    UaPkiCertificateInfo info = sampleInfo();
    info.serialNumber = 5;
    return {info, identityOf("authority"), sampleKeyPair(), true, sha256};
}

UaPkiCertificate application()
{
    return {sampleInfo(), sampleIdentity(), otherKeyPair(), false, sha256};
}

/// What an authorityKeyIdentifier tells: the key's identifier, the issuer of its certificate, and that
/// certificate's serial number.
struct Authority
{
    std::string keyId;
    std::vector<std::string> issuer;
    long serialNumber;
};

Authority authorityOf(const UaPkiCertificate& certificate)
{
    auto* const id = static_cast<AUTHORITY_KEYID*>(
        X509_get_ext_d2i(certificate.handle(), NID_authority_key_identifier, nullptr, nullptr));
    if (id == nullptr) {
        return {};
    }
    const GENERAL_NAME* const name =
        sk_GENERAL_NAME_num(id->issuer) == 1 ? sk_GENERAL_NAME_value(id->issuer, 0) : nullptr;
    Authority authority{
        .keyId = id->keyid == nullptr
                     ? ""
                     : hexOf({reinterpret_cast<const char*>(ASN1_STRING_get0_data(id->keyid)),
                              static_cast<std::size_t>(ASN1_STRING_length(id->keyid))}),
        .issuer = attributesOf(name != nullptr ? name->d.directoryName : nullptr),
        .serialNumber = ASN1_INTEGER_get(id->serial)};
    AUTHORITY_KEYID_free(id);
    return authority;
}

std::string keyIdIn(const UaPkiCertificate& certificate)
{
    constexpr std::size_t header = 4;
    return extensionBytes(certificate, NID_subject_key_identifier).substr(header);
}

/// The certificate's authority is that one and it verifies with its key.
void expectIssuedBy(const UaPkiCertificate& certificate, const UaPkiCertificate& issuer)
{
    const Authority found = authorityOf(certificate);
    EXPECT_EQ(found.keyId, keyIdIn(issuer));
    EXPECT_EQ(found.issuer, attributesOf(X509_get_issuer_name(issuer.handle())));
    EXPECT_EQ(found.serialNumber, issuer.info().serialNumber);
    EXPECT_EQ(attributesOf(X509_get_issuer_name(certificate.handle())),
              attributesOf(X509_get_subject_name(issuer.handle())));
    EXPECT_TRUE(certificate.verifySignature(issuer.publicKey()));
}

class FromCsrTest : public PkiTest
{
protected:
    static UaPkiCSR requestOf(const UaPkiCertificateInfo& info, bool isCA = false)
    {
        return {info, sampleIdentity(), otherKeyPair(), isCA, sha256};
    }
    static UaPkiCertificate issue(const UaPkiCSR& request, int signatureAlgorithm = sha256)
    {
        return UaPkiCertificate::fromCSR(request, authority(), sampleKeyPair().privateKey(), 7200,
                                         1234, signatureAlgorithm);
    }
};

TEST_F(FromCsrTest, subject_key_and_extensions_come_from_the_request)
{
    constexpr std::time_t now = 1'700'000'000;
    const FixedClock clock(UaDateTime::fromTime_t(now));
    const UaPkiCertificate certificate = issue(requestOf(sampleInfo()));
    ASSERT_FALSE(certificate.isNull());
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
    EXPECT_EQ(X509_get_version(certificate.handle()), X509_VERSION_3);
    EXPECT_EQ(certificate.subject(), sampleIdentity());
    EXPECT_EQ(certificate.publicKey().toDER(), otherKeyPair().publicKey().toDER());
    EXPECT_EQ(certificate.info().serialNumber, 1234);
    EXPECT_EQ(certificate.info().uri, "urn:host:application");
    EXPECT_EQ(certificate.validFrom().toTime_t(), now);
    EXPECT_EQ(certificate.validTo().toTime_t(), now + 7200);
    EXPECT_THAT(extensionNamesOf(certificate),
                ElementsAre("basicConstraints", "subjectKeyIdentifier", "keyUsage",
                            "extendedKeyUsage", "subjectAltName", "authorityKeyIdentifier"));
    expectIssuedBy(certificate, authority());
}

TEST_F(FromCsrTest, an_authoritys_request_gives_an_authority)
{
    const UaPkiCertificate certificate = issue(requestOf(sampleInfo(), true));
    EXPECT_EQ(extensionBytes(certificate, NID_basic_constraints), "30030101FF");
    EXPECT_EQ(extensionBytes(certificate, NID_subject_alt_name), "");
}

TEST_F(FromCsrTest, both_signature_algorithms_are_those_of_certificates)
{
    EXPECT_EQ(issue(requestOf(sampleInfo()), sha1).signatureTypeName(), "RSA-SHA1");
    EXPECT_EQ(issue(requestOf(sampleInfo()), sha256).signatureTypeName(), "RSA-SHA256");
}

TEST_F(FromCsrTest, a_serial_number_of_zero_is_the_current_time)
{
    const FixedClock clock(UaDateTime::fromTime_t(1'700'000'000));
    const UaPkiCertificate certificate = UaPkiCertificate::fromCSR(
        requestOf(sampleInfo()), authority(), sampleKeyPair().privateKey(), 1, 0, sha256);
    EXPECT_EQ(certificate.info().serialNumber, 1'700'000'000);
}

/// A request with the library's own calls; its extensions are in the library's words.
UaPkiCSR handMadeRequest(const std::vector<std::pair<const char*, const char*>>& extensions)
{
    PkiHandle<X509_REQ> request(X509_REQ_new());
    X509_REQ_set_pubkey(request.get(), otherKeyPair().privateKey().handle());
    const PkiHandle<X509> certificate(X509_new());
    X509_set_serialNumber(certificate.get(), X509_get_serialNumber(application().handle()));
    X509V3_CTX context{};
    X509V3_set_ctx(&context, authority().handle(), certificate.get(), request.get(), nullptr, 0);
    STACK_OF(X509_EXTENSION)* stack = nullptr;
    const UaPkiCertificate issuer = authority();
    context.issuer_cert = issuer.handle();
    for (const auto& [name, value] : extensions) {
        const PkiHandle<X509_EXTENSION> extension(X509V3_EXT_conf(nullptr, &context, name, value));
        EXPECT_NE(X509v3_add_ext(&stack, extension.get(), -1), nullptr) << name;
    }
    const PkiHandle<STACK_OF(X509_EXTENSION)> owner(stack);
    if (stack != nullptr) {
        X509_REQ_add_extensions(request.get(), stack);
    }
    X509_REQ_sign(request.get(), otherKeyPair().privateKey().handle(), EVP_sha256());
    return UaPkiCSR(request.release());
}

TEST_F(FromCsrTest, a_request_without_extensions_gets_the_issuers_identifier_alone)
{
    const UaPkiCertificate certificate = issue(handMadeRequest({}));
    ASSERT_FALSE(certificate.isNull());
    EXPECT_THAT(extensionNamesOf(certificate), ElementsAre("authorityKeyIdentifier"));
    expectIssuedBy(certificate, authority());
}

TEST_F(FromCsrTest, the_requests_own_idea_of_its_issuer_is_left_out)
{
    const UaPkiCertificate certificate = issue(handMadeRequest({
        {"nsComment", "mine"},
        {"authorityKeyIdentifier", "issuer:always"},
        {"basicConstraints", "CA:FALSE"},
    }));
    EXPECT_THAT(extensionNamesOf(certificate),
                ElementsAre("nsComment", "basicConstraints", "authorityKeyIdentifier"));
    expectIssuedBy(certificate, authority());
}

TEST_F(FromCsrTest, extensions_that_can_not_be_read_are_not_dropped_in_silence)
{
    PkiHandle<X509_REQ> request(X509_REQ_new());
    X509_REQ_set_pubkey(request.get(), otherKeyPair().privateKey().handle());
    constexpr unsigned char garbage[] = {0x30, 0x03, 0x02, 0x01, 0x01};
    X509_REQ_add1_attr_by_NID(request.get(), NID_ext_req, V_ASN1_SEQUENCE, garbage,
                              sizeof(garbage));
    const UaPkiCertificate certificate = issue(UaPkiCSR(request.release()));
    EXPECT_TRUE(certificate.isNull());
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
}

TEST_F(FromCsrTest, a_key_that_is_not_the_issuers_is_found_out)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromCSR(
        requestOf(sampleInfo()), authority(), otherKeyPair().privateKey(), 1, 1, sha256);
    EXPECT_TRUE(certificate.isNull());
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
}

TEST_F(FromCsrTest, what_is_null_is_told)
{
    const UaPkiPrivateKey key = sampleKeyPair().privateKey();
    const UaPkiCSR request = requestOf(sampleInfo());
    const UaPkiCertificate noRequest =
        UaPkiCertificate::fromCSR(UaPkiCSR(), authority(), key, 1, 1, sha256);
    EXPECT_THAT(messagesOf(noRequest), ElementsAre("The CSR is NULL"));
    const UaPkiCertificate noIssuer =
        UaPkiCertificate::fromCSR(request, UaPkiCertificate(), key, 1, 1, sha256);
    EXPECT_THAT(messagesOf(noIssuer), ElementsAre("The certificate is NULL"));
    for (const UaPkiPrivateKey& none : {UaPkiPrivateKey(), UaPkiPrivateKey(nullptr)}) {
        const UaPkiCertificate noKey =
            UaPkiCertificate::fromCSR(request, authority(), none, 1, 1, sha256);
        EXPECT_TRUE(noKey.isNull());
        EXPECT_THAT(messagesOf(noKey), Not(IsEmpty()));
    }
    const UaPkiCertificate noKeyIn = issue(UaPkiCSR(X509_REQ_new()));
    EXPECT_TRUE(noKeyIn.isNull());
    EXPECT_THAT(messagesOf(noKeyIn), Not(IsEmpty()));
}

TEST_F(FromCsrTest, a_request_that_was_read_serves_as_one_that_was_made)
{
    const FixedClock clock(UaDateTime::fromTime_t(1'700'000'000));
    const UaPkiCSR made = requestOf(sampleInfo());
    const UaPkiCSR read = UaPkiCSR::fromDER(made.toDER());
    EXPECT_EQ(issue(read).toDER(), issue(made).toDER());
    EXPECT_FALSE(issue(read).isNull());
}

using SignTest = PkiTest;

TEST_F(SignTest, the_issuers_extensions_are_made_anew_at_the_end)
{
    const UaPkiCertificate issuer = authority();
    UaPkiCertificate certificate = application();
    const UaByteArray before = certificate.toDER();
    const UaPkiCertificate copy = certificate;
    ASSERT_TRUE(certificate.sign(issuer, sampleKeyPair().privateKey(), sha256));
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
    EXPECT_THAT(extensionNamesOf(certificate),
                ElementsAre("basicConstraints", "nsComment", "keyUsage", "extendedKeyUsage",
                            "subjectAltName", "subjectKeyIdentifier", "authorityKeyIdentifier"));
    expectIssuedBy(certificate, issuer);
    EXPECT_FALSE(certificate.isSelfSigned());
    EXPECT_EQ(copy.toDER(), certificate.toDER()) << "copies see it";
    EXPECT_FALSE(before == certificate.toDER());
    EXPECT_EQ(certificate.subject(), sampleIdentity());
    EXPECT_EQ(certificate.publicKey().toDER(), otherKeyPair().publicKey().toDER());
    EXPECT_EQ(keyIdIn(certificate), keyIdIn(application()));
    EXPECT_EQ(certificate.info().uri, "urn:host:application");
    EXPECT_EQ(certificate.info().serialNumber, 77);
}

TEST_F(SignTest, a_certificate_that_was_read_is_signed_like_one_that_was_made)
{
    UaPkiCertificate made = application();
    UaPkiCertificate read = UaPkiCertificate::fromDER(made.toDER());
    const UaPkiCertificate issuer = authority();
    const UaPkiCertificate readIssuer = UaPkiCertificate::fromDER(issuer.toDER());
    ASSERT_TRUE(made.sign(issuer, sampleKeyPair().privateKey(), sha256));
    ASSERT_TRUE(read.sign(readIssuer, sampleKeyPair().privateKey(), sha256));
    EXPECT_EQ(read.toDER(), made.toDER());
    EXPECT_EQ(UaPkiCertificate::fromDER(read.toDER()).thumbPrint(), read.thumbPrint());
}

TEST_F(SignTest, every_algorithm_but_zero_is_sha256)
{
    for (const int algorithm : {0, 1, 5, -1}) {
        UaPkiCertificate certificate = application();
        EXPECT_TRUE(certificate.sign(authority(), sampleKeyPair().privateKey(), algorithm));
        EXPECT_EQ(certificate.signatureTypeName(), algorithm == 0 ? "RSA-SHA1" : "RSA-SHA256");
    }
}

TEST_F(SignTest, a_certificate_signs_itself)
{
    UaPkiCertificate certificate = application();
    ASSERT_TRUE(certificate.sign(certificate, otherKeyPair().privateKey(), sha256));
    EXPECT_TRUE(certificate.isSelfSigned());
    expectIssuedBy(certificate, certificate);
}

TEST_F(SignTest, signing_twice_leaves_one_of_each_extension)
{
    UaPkiCertificate certificate = application();
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(certificate.sign(authority(), sampleKeyPair().privateKey(), sha256));
        EXPECT_EQ(extensionNamesOf(certificate).size(), 7u);
    }
}

TEST_F(SignTest, extensions_that_were_missing_are_added)
{
    const UaPkiCertificate donor(sampleInfo(), identityOf("donor"), otherKeyPair(), true, sha256);
    UaPkiCertificate certificate = UaPkiCertificate::fromDER(donor.toDER());
    EXPECT_FALSE(certificate.hasExtension(NID_authority_key_identifier));
    ASSERT_TRUE(certificate.sign(authority(), sampleKeyPair().privateKey(), sha256));
    EXPECT_THAT(extensionNamesOf(certificate),
                ElementsAre("basicConstraints", "nsComment", "keyUsage", "extendedKeyUsage",
                            "subjectKeyIdentifier", "authorityKeyIdentifier"));
}

TEST_F(SignTest, what_is_null_is_told)
{
    UaPkiCertificate certificate = application();
    const UaPkiPrivateKey key = sampleKeyPair().privateKey();
    EXPECT_FALSE(certificate.sign(UaPkiCertificate(), key, sha256));
    EXPECT_THAT(messagesOf(certificate), ElementsAre("The certificate is NULL"));
    UaPkiCertificate none;
    EXPECT_FALSE(none.sign(authority(), key, sha256));
    EXPECT_THAT(messagesOf(none), ElementsAre("The certificate is NULL"));
    for (const UaPkiPrivateKey& noKey : {UaPkiPrivateKey(), UaPkiPrivateKey(nullptr)}) {
        EXPECT_FALSE(certificate.sign(authority(), noKey, sha256));
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    }
}

} // namespace
