#include "pki/opensslhandles.h"
#include "pki/pkiextensions.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/derwriter.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"

#include <gmock/gmock.h>
#include <openssl/sha.h>

#include <array>
#include <string>
#include <vector>

// The constructors that make certificates, field by field.

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

using namespace std::string_literals;

using UaPkiCertificateCreateTest = PkiTest;

UaPkiCertificate selfSigned(const UaPkiCertificateInfo& info, bool isCA = false)
{
    return {info, sampleIdentity(), sampleKeyPair(), isCA, sha256};
}

/// SHA-1 of the bits of a public key.
std::string keyIdOf(const UaPkiRSAKeyPair& keyPair)
{
    const std::string spki = toStdString(keyPair.publicKey().toDER());
    // The sequence of the algorithm takes 15 bytes, its frame 4, and the bit string's header 5.
    constexpr std::size_t header = 24;
    std::array<unsigned char, SHA_DIGEST_LENGTH> digest{};
    SHA1(reinterpret_cast<const unsigned char*>(spki.data()) + header, spki.size() - header,
         digest.data());
    return {reinterpret_cast<const char*>(digest.data()), digest.size()};
}

std::string nameBytes(const X509_NAME* name)
{
    unsigned char* encoded = nullptr;
    const int size = i2d_X509_NAME(name, &encoded);
    const PkiLibraryBytes owner(encoded);
    return {reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(size)};
}

/// What names a key, the issuer of its certificate, and that certificate's serial number.
std::string authorityBytes(const UaPkiRSAKeyPair& keyPair, const UaPkiCertificate& issuer)
{
    const X509_NAME* const name = X509_get_issuer_name(issuer.handle());
    const auto serial = static_cast<char>(issuer.info().serialNumber);
    return hexOf(der(DerSequence, der('\x80', keyIdOf(keyPair)) +
                                      der('\xA1', der('\xA4', nameBytes(name))) +
                                      der('\x82', std::string_view(&serial, 1))));
}

TEST_F(UaPkiCertificateCreateTest, an_applications_extensions_are_the_tables_with_the_names_last)
{
    const UaPkiCertificate certificate = selfSigned(sampleInfo());
    ASSERT_FALSE(certificate.isNull());
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
    const std::string comment = "\"Generated with Solvarin Core Library using OpenSSL\"";
    EXPECT_THAT(
        extensionsOf(certificate),
        ElementsAre(
            ExtensionContent{"basicConstraints", true, "3000"},
            ExtensionContent{"nsComment", false, hexOf(der('\x16', comment))},
            ExtensionContent{"subjectKeyIdentifier", false,
                             hexOf(der(DerOctetString, keyIdOf(sampleKeyPair())))},
            ExtensionContent{"authorityKeyIdentifier", false,
                             authorityBytes(sampleKeyPair(), certificate)},
            ExtensionContent{"keyUsage", true, "030202F4"},
            ExtensionContent{"extendedKeyUsage", true,
                             "301406082B0601050507030106082B06010505070302"},
            ExtensionContent{
                "subjectAltName", false,
                hexOf(der(DerSequence,
                          der('\x86', "urn:host:application") + der('\x82', "host") +
                              der('\x82', "host.example.org") + der('\x87', "\xC0\xA8\x00\x01"s) +
                              der('\x87', "\x20\x01\x0D\xB8\0\0\0\0\0\0\0\0\0\0\0\x01"s) +
                              der('\x81', "operator@example.org")))}));
}

TEST_F(UaPkiCertificateCreateTest, an_authoritys_extensions_are_the_tables_without_any_names)
{
    const UaPkiCertificate certificate = selfSigned(sampleInfo(), true);
    ASSERT_FALSE(certificate.isNull());
    const std::string comment =
        "\"CA certificate generated with Solvarin Core Library using OpenSSL\"";
    EXPECT_THAT(
        extensionsOf(certificate),
        ElementsAre(ExtensionContent{"basicConstraints", true, "30030101FF"},
                    ExtensionContent{"nsComment", false, hexOf(der('\x16', comment))},
                    ExtensionContent{"keyUsage", true, "030201E6"},
                    ExtensionContent{"extendedKeyUsage", true,
                                     "301406082B0601050507030106082B06010505070302"},
                    ExtensionContent{"subjectKeyIdentifier", false,
                                     hexOf(der(DerOctetString, keyIdOf(sampleKeyPair())))}));
    EXPECT_TRUE(certificate.info().uri.isEmpty());
}

TEST_F(UaPkiCertificateCreateTest, names_have_the_fields_that_are_not_empty_in_their_order)
{
    const UaPkiCertificate full = selfSigned(sampleInfo());
    const std::vector<std::string> all = {
        "DC=host",        "C=DE",    "ST=State",           "L=Ort \xC3\xBC",
        "O=Organisation", "OU=Unit", "CN=application@host"};
    EXPECT_EQ(attributesOf(X509_get_subject_name(full.handle())), all);
    EXPECT_EQ(attributesOf(X509_get_issuer_name(full.handle())), all);
    EXPECT_EQ(full.subject(), sampleIdentity());
    const UaPkiCertificate small(sampleInfo(), identityOf("name"), sampleKeyPair(), false, sha256);
    EXPECT_THAT(attributesOf(X509_get_subject_name(small.handle())), ElementsAre("CN=name"));
    const UaPkiCertificate none(sampleInfo(), UaPkiIdentity(), sampleKeyPair(), false, sha256);
    EXPECT_THAT(attributesOf(X509_get_subject_name(none.handle())), IsEmpty());
}

TEST_F(UaPkiCertificateCreateTest, a_name_that_the_library_refuses_leaves_a_null_object)
{
    struct Row
    {
        const char* name;
        UaString UaPkiIdentity::*field;
        std::string text;
    };
    const Row rows[] = {
        {"country of three letters", &UaPkiIdentity::country, "GER"},
        {"country of one letter", &UaPkiIdentity::country, "D"},
        {"common name of 65 characters", &UaPkiIdentity::commonName, std::string(65, 'c')},
        {"no UTF-8", &UaPkiIdentity::organization, "\xC3\x28"},
        {"domain component that isn't ASCII", &UaPkiIdentity::domainComponent, "\xC3\xBC"},
    };
    for (const Row& row : rows) {
        UaPkiIdentity identity = sampleIdentity();
        identity.*row.field = UaString(row.text.c_str());
        const UaPkiCertificate certificate(sampleInfo(), identity, sampleKeyPair(), false, sha256);
        EXPECT_TRUE(certificate.isNull()) << row.name;
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty())) << row.name;
    }
    const UaPkiCertificate longest(sampleInfo(), identityOf(std::string(64, 'c').c_str()),
                                   sampleKeyPair(), false, sha256);
    EXPECT_FALSE(longest.isNull());
}

TEST_F(UaPkiCertificateCreateTest, a_serial_number_of_zero_is_the_current_time)
{
    const FixedClock clock(UaDateTime::fromTime_t(1'700'000'000));
    UaPkiCertificateInfo info = sampleInfo();
    info.serialNumber = 0;
    EXPECT_EQ(selfSigned(info).info().serialNumber, 1'700'000'000);
    EXPECT_EQ(selfSigned(info).serialNumberString(), selfSigned(info).serialNumberString())
        << "nothing makes it unique";
    FixedClock::set(UaDateTime::fromTime_t(2'208'988'800));
    EXPECT_EQ(selfSigned(info).serialNumberString(), "-7C558180") << "2040, cut to 32 bits";
}

TEST_F(UaPkiCertificateCreateTest, any_other_serial_number_is_taken_as_it_is)
{
    for (const OpcUa_Int32 serial : {1, -1, 255, 2'147'483'647, -2'147'483'647 - 1}) {
        UaPkiCertificateInfo info = sampleInfo();
        info.serialNumber = serial;
        EXPECT_EQ(selfSigned(info).info().serialNumber, serial);
    }
}

TEST_F(UaPkiCertificateCreateTest, the_lifetime_begins_now_and_lasts_as_told)
{
    constexpr std::time_t now = 1'700'000'000;
    const FixedClock clock(UaDateTime::fromTime_t(now));
    for (const OpcUa_UInt32 seconds : {0u, 1u, 3600u, 86'400u * 365, 4'294'967'295u}) {
        UaPkiCertificateInfo info = sampleInfo();
        info.validTime = seconds;
        const UaPkiCertificate certificate = selfSigned(info);
        EXPECT_EQ(certificate.validFrom().toTime_t(), now) << seconds;
        EXPECT_EQ(certificate.validTo().toTime_t(), now + seconds) << seconds;
        EXPECT_TRUE(certificate.isValid()) << seconds;
        const bool isLong = seconds == 4'294'967'295u;
        EXPECT_EQ(ASN1_STRING_type(X509_get0_notAfter(certificate.handle())),
                  isLong ? V_ASN1_GENERALIZEDTIME : V_ASN1_UTCTIME)
            << "RFC 5280: from 2050 on the year has four digits";
    }
}

TEST_F(UaPkiCertificateCreateTest, version_and_key_are_as_told_and_the_signature_verifies)
{
    const UaPkiCertificate certificate = selfSigned(sampleInfo());
    EXPECT_EQ(X509_get_version(certificate.handle()), X509_VERSION_3);
    EXPECT_EQ(certificate.publicKey().toDER(), sampleKeyPair().publicKey().toDER());
    EXPECT_TRUE(certificate.isSelfSigned());
    EXPECT_TRUE(certificate.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_FALSE(certificate.verifySignature(otherKeyPair().publicKey()));
    EXPECT_EQ(UaPkiCertificate::fromDER(certificate.toDER()).thumbPrint(),
              certificate.thumbPrint());
}

TEST_F(UaPkiCertificateCreateTest, every_signature_algorithm_but_zero_is_sha256)
{
    for (const int algorithm : {0, 1, 2, -1, 668}) {
        const UaPkiCertificate certificate(sampleInfo(), sampleIdentity(), sampleKeyPair(), false,
                                           algorithm);
        EXPECT_EQ(certificate.signatureTypeName(), algorithm == 0 ? "RSA-SHA1" : "RSA-SHA256");
        EXPECT_TRUE(certificate.isSelfSigned()) << algorithm;
    }
}

TEST_F(UaPkiCertificateCreateTest, the_certificate_does_not_keep_the_private_key)
{
    const UaPkiCertificate certificate = selfSigned(sampleInfo());
    const PkiErrorScope scope;
    const EVP_PKEY* const key = X509_get0_pubkey(certificate.handle());
    BIGNUM* secret = nullptr;
    EXPECT_FALSE(key != nullptr && EVP_PKEY_get_bn_param(key, "d", &secret) == 1);
    EXPECT_EQ(secret, nullptr);
}

struct NamesRow
{
    const char* name;
    std::string uri;
    std::vector<std::string> dnsNames;
    std::vector<std::string> ipAddresses;
    const char* email;
    const char* text;      ///< What goes to the library.
    std::string extension; ///< What it makes of that; empty when it refuses.
};

UaPkiCertificateInfo infoOf(const NamesRow& row)
{
    return {.uri = UaString(row.uri.c_str()),
            .ipAddresses = textArray(row.ipAddresses),
            .dnsNames = textArray(row.dnsNames),
            .email = row.email,
            .validTime = 1,
            .serialNumber = 1};
}

const NamesRow namesRows[] = {
    {"the URI alone", "urn:a", {}, {}, "", "URI:urn:a", der('\x86', "urn:a")},
    {"all of them",
     "urn:a",
     {"b", "c"},
     {"1.2.3.4", "::1"},
     "d@e",
     "URI:urn:a,DNS:b,DNS:c,IP:1.2.3.4,IP:::1,email:d@e",
     der('\x86', "urn:a") + der('\x82', "b") + der('\x82', "c") + der('\x87', "\x01\x02\x03\x04") +
         der('\x87', std::string(15, '\0') + '\x01') + der('\x81', "d@e")},
    {"no URI", "", {"b"}, {}, "", ",DNS:b", ""},
    {"no URI but an address", "", {}, {"1.2.3.4"}, "", ",IP:1.2.3.4", ""},
    {"no URI but e-mail", "", {}, {}, "d@e", ",email:d@e", ""},
    {"an empty host name", "urn:a", {""}, {}, "", "URI:urn:a,DNS:", ""},
    {"no address", "urn:a", {}, {"host"}, "", "URI:urn:a,IP:host", ""},
    {"an address of three numbers", "urn:a", {}, {"1.2.3"}, "", "URI:urn:a,IP:1.2.3", ""},
    {"a comma begins a further name",
     "urn:a,DNS:b",
     {},
     {},
     "",
     "URI:urn:a,DNS:b",
     der('\x86', "urn:a") + der('\x82', "b")},
    {"a comma before what is no name", "urn:a,b", {}, {}, "", "URI:urn:a,b", ""},
    {"a line break makes all behind it part of the name",
     "urn:a\nDNS:b",
     {"c"},
     {},
     "",
     "URI:urn:a\nDNS:b,DNS:c",
     der('\x86', "urn:a\nDNS:b,DNS:c")},
    {"blanks around a name go",
     " urn:a ",
     {" b"},
     {},
     "",
     "URI: urn:a ,DNS: b",
     der('\x86', "urn:a") + der('\x82', "b")},
    {"critical counts at the begin alone",
     "urn:a",
     {"critical"},
     {},
     "",
     "URI:urn:a,DNS:critical",
     der('\x86', "urn:a") + der('\x82', "critical")},
    {"sections aren't looked up", "urn:a,dirName:s", {}, {}, "", "URI:urn:a,dirName:s", ""},
    {"nor for other names",
     "urn:a,otherName:1.2.3;SEQUENCE:s",
     {},
     {},
     "",
     "URI:urn:a,otherName:1.2.3;SEQUENCE:s",
     ""},
    {"nor files", "@s", {"@t"}, {}, "", "URI:@s,DNS:@t", der('\x86', "@s") + der('\x82', "@t")},
    {"e-mail of the subject, which has none",
     "urn:a",
     {},
     {},
     "copy",
     "URI:urn:a,email:copy",
     der('\x86', "urn:a")},
    {"not ASCII", "urn:\xC3\xBC", {}, {}, "", "URI:urn:\xC3\xBC", der('\x86', "urn:\xC3\xBC")},
};

TEST_F(UaPkiCertificateCreateTest, names_go_to_the_library_as_one_text_that_is_not_cleaned)
{
    for (const NamesRow& row : namesRows) {
        const UaPkiCertificateInfo info = infoOf(row);
        EXPECT_EQ(PkiExtensions_SubjectAltName(info), row.text) << row.name;
        const UaPkiCertificate certificate = selfSigned(info);
        EXPECT_EQ(certificate.isNull(), row.extension.empty()) << row.name;
        EXPECT_EQ(messagesOf(certificate).empty(), !row.extension.empty()) << row.name;
        if (!certificate.isNull()) {
            EXPECT_EQ(extensionBytes(certificate, NID_subject_alt_name),
                      hexOf(der(DerSequence, row.extension)))
                << row.name;
            EXPECT_EQ(extensionNamesOf(certificate).back(), "subjectAltName") << row.name;
        }
    }
}

TEST_F(UaPkiCertificateCreateTest, without_names_there_is_no_extension_for_them)
{
    const UaPkiCertificate certificate = selfSigned(UaPkiCertificateInfo());
    EXPECT_THAT(extensionNamesOf(certificate), Not(Contains("subjectAltName")));
    EXPECT_EQ(extensionNamesOf(certificate).size(), 6u);
}

TEST_F(UaPkiCertificateCreateTest, ten_thousand_host_names_fit_in)
{
    UaPkiCertificateInfo info = sampleInfo();
    std::vector<std::string> names(10'000);
    for (std::size_t i = 0; i < names.size(); ++i) {
        names[i] = "host" + std::to_string(i);
    }
    info.dnsNames = textArray(names);
    const UaPkiCertificate certificate = selfSigned(info);
    EXPECT_EQ(certificate.info().dnsNames, info.dnsNames);
}

TEST_F(UaPkiCertificateCreateTest, keys_that_can_not_sign_leave_a_null_object_with_messages)
{
    const UaPkiRSAKeyPair keyPairs[] = {UaPkiRSAKeyPair(), UaPkiRSAKeyPair(nullptr)};
    for (const UaPkiRSAKeyPair& keyPair : keyPairs) {
        const UaPkiCertificate certificate(sampleInfo(), sampleIdentity(), keyPair, false, sha256);
        EXPECT_TRUE(certificate.isNull());
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    }
    const UaPkiCertificate issuer = selfSigned(sampleInfo(), true);
    struct Row
    {
        const char* name;
        UaPkiPublicKey subjectKey;
        UaPkiPrivateKey issuerKey;
    };
    const Row rows[] = {
        {"no subject's key", UaPkiPublicKey(), sampleKeyPair().privateKey()},
        {"no issuer's key", otherKeyPair().publicKey(), UaPkiPrivateKey()},
        {"a null issuer's key", otherKeyPair().publicKey(), UaPkiPrivateKey(nullptr)},
        {"only a public key of the issuer", otherKeyPair().publicKey(),
         UaPkiPrivateKey(PkiHandle<EVP_PKEY>(sampleKeyPair().publicKey().handle()).get())},
    };
    for (const Row& row : rows) {
        const UaPkiCertificate byName(sampleInfo(), sampleIdentity(), row.subjectKey,
                                      sampleIdentity(), row.issuerKey);
        const UaPkiCertificate byIssuer(sampleInfo(), sampleIdentity(), row.subjectKey, issuer,
                                        row.issuerKey, false, sha256);
        for (const UaPkiCertificate& certificate : {byName, byIssuer}) {
            EXPECT_TRUE(certificate.isNull()) << row.name;
        }
        EXPECT_THAT(messagesOf(byName), Not(IsEmpty())) << row.name;
        EXPECT_THAT(messagesOf(byIssuer), Not(IsEmpty())) << row.name;
        EXPECT_EQ(ERR_peek_error(), 0u) << row.name;
    }
}

TEST_F(UaPkiCertificateCreateTest, keys_of_other_kinds_sign_with_their_own_algorithm)
{
    const UaPkiRSAKeyPair curve(PkiHandle<EVP_PKEY>(EVP_EC_gen("P-256")).get());
    const UaPkiCertificate certificate(sampleInfo(), sampleIdentity(), curve, false, sha256);
    EXPECT_EQ(certificate.signatureTypeName(), "ecdsa-with-SHA256");
    EXPECT_TRUE(certificate.isSelfSigned());
    EXPECT_EQ(certificate.publicKey().toDER(), curve.publicKey().toDER());
}

TEST_F(UaPkiCertificateCreateTest, an_issuers_name_alone_makes_the_certificate_refer_to_itself)
{
    const UaPkiCertificate certificate(sampleInfo(), identityOf("subject"),
                                       otherKeyPair().publicKey(), identityOf("issuer"),
                                       sampleKeyPair().privateKey());
    EXPECT_EQ(certificate.commonName(), "subject");
    EXPECT_EQ(certificate.issuer(), identityOf("issuer"));
    EXPECT_EQ(certificate.publicKey().toDER(), otherKeyPair().publicKey().toDER());
    EXPECT_EQ(certificate.signatureAlgorithm(), UaPkiCertificate::Sha1WithRsa);
    EXPECT_EQ(certificate.signatureTypeName(), "RSA-SHA1");
    EXPECT_TRUE(certificate.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_FALSE(certificate.isSelfSigned());
    EXPECT_EQ(extensionBytes(certificate, NID_authority_key_identifier),
              authorityBytes(otherKeyPair(), certificate));
    EXPECT_EQ(extensionNamesOf(certificate).size(), 7u);
    EXPECT_EQ(extensionBytes(certificate, NID_basic_constraints), "3000");
}

TEST_F(UaPkiCertificateCreateTest, an_issuers_certificate_gives_its_name_and_identifiers)
{
    UaPkiCertificateInfo info = sampleInfo();
    info.serialNumber = 5;
    const UaPkiCertificate issuer(info, sampleIdentity(), sampleKeyPair(), true, sha256);
    for (const bool isCA : {false, true}) {
        const UaPkiCertificate certificate(sampleInfo(), identityOf("subject"),
                                           otherKeyPair().publicKey(), issuer,
                                           sampleKeyPair().privateKey(), isCA, sha256);
        EXPECT_EQ(certificate.issuer(), sampleIdentity());
        EXPECT_EQ(certificate.info().serialNumber, 77);
        EXPECT_TRUE(certificate.verifySignature(issuer.publicKey()));
        EXPECT_EQ(certificate.signatureTypeName(), "RSA-SHA256");
        EXPECT_EQ(extensionNamesOf(certificate).size(), isCA ? 5u : 7u);
        EXPECT_EQ(extensionBytes(certificate, NID_authority_key_identifier),
                  isCA ? "" : authorityBytes(sampleKeyPair(), issuer));
    }
}

TEST_F(UaPkiCertificateCreateTest, an_issuer_that_was_read_serves_as_one_that_was_made)
{
    const UaPkiCertificate made = selfSigned(sampleInfo(), true);
    const UaPkiCertificate read = UaPkiCertificate::fromDER(made.toDER());
    const FixedClock clock(UaDateTime::fromTime_t(1'700'000'000));
    const auto issue = [](const UaPkiCertificate& issuer) {
        return UaPkiCertificate(sampleInfo(), identityOf("subject"), otherKeyPair().publicKey(),
                                issuer, sampleKeyPair().privateKey(), false, sha256);
    };
    EXPECT_FALSE(issue(read).isNull());
    EXPECT_EQ(issue(read).toDER(), issue(made).toDER());
}

TEST_F(UaPkiCertificateCreateTest, a_null_issuer_is_told)
{
    const UaPkiCertificate certificate(sampleInfo(), sampleIdentity(), otherKeyPair().publicKey(),
                                       UaPkiCertificate(), sampleKeyPair().privateKey(), false,
                                       sha256);
    EXPECT_TRUE(certificate.isNull());
    EXPECT_THAT(messagesOf(certificate), ElementsAre("The certificate is NULL"));
}

} // namespace
