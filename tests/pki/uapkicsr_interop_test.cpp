#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicertificateinfo.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiidentity.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"

#include <gmock/gmock.h>

#include <string>

// Requests between this library and the programs openssl and certtool, both ways.

namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

class RequestInteropTest : public PkiTest
{
protected:
    [[nodiscard]] std::string run(const std::string& command) const
    {
        return outputOf("cd " + directory.path() + " && " + command);
    }
    void runWell(const std::string& command) const
    {
        ASSERT_THAT(run(command), EndsWith("exit 0\n")) << command;
    }

    TemporaryDirectory directory;
};

struct OurRow
{
    const char* name;
    bool isCA;
    int signatureAlgorithm;
    const char* signature;
};

constexpr OurRow ourRows[] = {
    {"application, SHA-1", false, 0, "sha1WithRSAEncryption"},
    {"application, SHA-256", false, 1, "sha256WithRSAEncryption"},
    {"authority, SHA-1", true, 0, "sha1WithRSAEncryption"},
    {"authority, SHA-256", true, 1, "sha256WithRSAEncryption"},
};

constexpr const char* subjectLine =
    "subject=DC = host, C = DE, ST = State, L = Ort \xC3\xBC, O = Organisation, OU = Unit, "
    "CN = application@host\n";
constexpr const char* namesLine =
    "URI:urn:host:application, DNS:host, DNS:host.example.org, IP Address:192.168.0.1, "
    "IP Address:2001:DB8:0:0:0:0:0:1, email:operator@example.org\n";

TEST_F(RequestInteropTest, openssl_verifies_our_requests_and_reads_their_fields)
{
    for (const OurRow& row : ourRows) {
        SCOPED_TRACE(row.name);
        const UaPkiCSR request(sampleInfo(), sampleIdentity(), sampleKeyPair(), row.isCA,
                               row.signatureAlgorithm);
        ASSERT_EQ(request.toDERFile(directory.uniFile("request.der")), 0);
        const std::string text = run("openssl req -inform DER -in request.der -noout -verify -text"
                                     " -subject -nameopt utf8,space_eq,sep_comma_plus_space,sname");
        EXPECT_THAT(text, AllOf(HasSubstr("self-signature verify OK"), HasSubstr(subjectLine),
                                HasSubstr("Version: 1 (0x0)"), HasSubstr(row.signature),
                                HasSubstr("X509v3 Subject Key Identifier"),
                                HasSubstr("TLS Web Server Authentication, TLS Web Client "
                                          "Authentication"),
                                HasSubstr(row.isCA ? "CA:TRUE" : "CA:FALSE"),
                                Not(HasSubstr("Authority Key")), Not(HasSubstr("Comment"))));
        EXPECT_EQ(text.find(namesLine) != std::string::npos, !row.isCA) << text;
    }
}

TEST_F(RequestInteropTest, certtool_reads_the_fields_of_our_requests)
{
    for (const OurRow& row : ourRows) {
        SCOPED_TRACE(row.name);
        const UaPkiCSR request(sampleInfo(), sampleIdentity(), sampleKeyPair(), row.isCA,
                               row.signatureAlgorithm);
        ASSERT_EQ(request.toDERFile(directory.uniFile("request.der")), 0);
        const std::string text = run("certtool --crq-info --inder --infile request.der");
        EXPECT_THAT(text, AllOf(HasSubstr("Subject: CN=application@host,OU=Unit,O=Organisation,"
                                          "L=Ort \xC3\xBC,ST=State,C=DE,DC=host\n"),
                                HasSubstr("Basic Constraints (critical)"),
                                HasSubstr("Key Usage (critical)"), HasSubstr("TLS WWW Server"),
                                HasSubstr("TLS WWW Client"), HasSubstr("Subject Key Identifier"),
                                HasSubstr("Self signature: verified"), EndsWith("exit 0\n")));
        for (const char* name :
             {"URI: urn:host:application", "DNSname: host.example.org", "IPAddress: 192.168.0.1",
              "IPAddress: 2001:db8::1", "RFC822Name: operator@example.org"}) {
            EXPECT_EQ(text.find(name) != std::string::npos, !row.isCA) << name;
        }
    }
}

TEST_F(RequestInteropTest, openssl_issues_what_our_request_asks_for)
{
    const UaPkiCSR request(sampleInfo(), sampleIdentity(), sampleKeyPair(), false, sha256);
    ASSERT_EQ(request.toDERFile(directory.uniFile("request.der")), 0);
    runWell("openssl req -x509 -newkey rsa:2048 -nodes -keyout ca.key -out ca.pem -subj /CN=CA");
    runWell("openssl x509 -req -inform DER -in request.der -CA ca.pem -CAkey ca.key -CAcreateserial"
            " -copy_extensions copyall -out issued.pem");
    const UaPkiCertificate issued =
        UaPkiCertificate::fromPEMFile(directory.file("issued.pem").c_str());
    ASSERT_FALSE(issued.isNull());
    EXPECT_EQ(issued.subject(), sampleIdentity());
    EXPECT_EQ(issued.info().uri, "urn:host:application");
    EXPECT_EQ(issued.publicKey().toDER(), sampleKeyPair().publicKey().toDER());
    EXPECT_THAT(run("openssl verify -CAfile ca.pem issued.pem"), HasSubstr("issued.pem: OK"));
}

struct ForeignRow
{
    const char* name;
    const char* keyCommand;
    const char* arguments;
    bool hasNames;
};

constexpr const char* rsaKey = "genpkey -algorithm RSA -pkeyopt rsa_keygen_bits:1024";

constexpr ForeignRow foreignRows[] = {
    {"RSA", rsaKey, "-subj /O=Org/CN=Application -reqexts names", true},
    {"EC", "genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256",
     "-subj /O=Org/CN=Application -reqexts names", true},
    {"DSA", "dsaparam -genkey -noout 1024", "-subj /O=Org/CN=Application -reqexts names", true},
    {"ED25519", "genpkey -algorithm ED25519", "-subj /O=Org/CN=Application -reqexts names", true},
    {"PSS", "genpkey -algorithm RSA-PSS -pkeyopt rsa_keygen_bits:1024",
     "-subj /O=Org/CN=Application -reqexts names", true},
    {"no extensions", rsaKey, "-subj /O=Org/CN=Application", false},
    {"no subject", rsaKey, "-subj / -reqexts names", true},
    {"other characters", rsaKey, "-utf8 -subj '/O=\xE6\xBC\xA2/CN=A, \"B\" \\+ C' -reqexts names",
     true},
};

constexpr const char* configuration = R"([req]
distinguished_name = name
attributes = attributes
[name]
[attributes]
challengePassword = challenge
challengePassword_default = challenge
[names]
subjectAltName = URI:urn:host:application, DNS:host, IP:10.0.0.1
keyUsage = critical, digitalSignature
)";

TEST_F(RequestInteropTest, requests_of_openssl_are_read_and_made_into_certificates)
{
    const UaPkiCertificate authority(sampleInfo(), sampleIdentity(), otherKeyPair(), true, sha256);
    ASSERT_EQ(authority.toPEMFile(directory.file("ca.pem").c_str()), 0);
    writeBytes(directory.file("config"), configuration);
    for (const ForeignRow& row : foreignRows) {
        SCOPED_TRACE(row.name);
        runWell(std::string("openssl ") + row.keyCommand + " 2>errors >key.pem");
        runWell("openssl req -new -batch -config config -key key.pem -outform DER"
                " -out request.der " +
                std::string(row.arguments));
        const UaPkiCSR request = UaPkiCSR::fromDERFile(directory.uniFile("request.der"));
        ASSERT_FALSE(request.isNull());
        EXPECT_THAT(messagesOf(request), IsEmpty());
        EXPECT_EQ(toStdString(request.toDER()), readBytes(directory.file("request.der")));
        const UaPkiCertificate issued = UaPkiCertificate::fromCSR(
            request, authority, otherKeyPair().privateKey(), 3600, 5, sha256);
        ASSERT_FALSE(issued.isNull());
        EXPECT_EQ(issued.info().uri, row.hasNames ? "urn:host:application" : "");
        EXPECT_EQ(issued.hasExtension(NID_key_usage), row.hasNames);
        ASSERT_EQ(issued.toPEMFile(directory.file("issued.pem").c_str()), 0);
        EXPECT_THAT(run("openssl verify -CAfile ca.pem issued.pem"), HasSubstr("issued.pem: OK"));
        EXPECT_EQ(run("openssl pkey -in key.pem -pubout"),
                  run("openssl x509 -in issued.pem -noout -pubkey"));
        EXPECT_EQ(run("openssl req -inform DER -in request.der -noout -subject"),
                  run("openssl x509 -in issued.pem -noout -subject"));
    }
}

TEST_F(RequestInteropTest, a_request_of_certtool_is_read_and_made_into_a_certificate)
{
    const UaPkiCertificate authority(sampleInfo(), sampleIdentity(), otherKeyPair(), true, sha256);
    ASSERT_EQ(authority.toPEMFile(directory.file("ca.pem").c_str()), 0);
    writeBytes(directory.file("template"), "organization = Org\ncn = Application\n"
                                           "uri = \"urn:host:application\"\ndns_name = host\n"
                                           "ip_address = 10.0.0.1\nsigning_key\n"
                                           "honor_crq_extensions\n");
    runWell("certtool --generate-privkey --ecc --outfile key.pem");
    runWell("certtool --generate-request --load-privkey key.pem --template template --outder"
            " --outfile request.der");
    const UaPkiCSR request = UaPkiCSR::fromDERFile(directory.file("request.der").c_str());
    ASSERT_FALSE(request.isNull());
    const UaPkiCertificate issued =
        UaPkiCertificate::fromCSR(request, authority, otherKeyPair().privateKey(), 3600, 5, sha256);
    ASSERT_FALSE(issued.isNull());
    EXPECT_EQ(issued.subject().organization, "Org");
    EXPECT_EQ(issued.commonName(), "Application");
    EXPECT_EQ(issued.info().uri, "urn:host:application");
    EXPECT_EQ(issued.info().dnsNames.length(), 1);
    EXPECT_EQ(issued.info().ipAddresses.length(), 1);
    ASSERT_EQ(issued.toPEMFile(directory.file("issued.pem").c_str()), 0);
    EXPECT_THAT(run("certtool --verify --load-ca-certificate ca.pem --infile issued.pem"),
                HasSubstr("The certificate is trusted"));
}

TEST_F(RequestInteropTest, requests_of_our_certificates_verify_in_both_programs)
{
    const UaPkiCertificate certificate(sampleInfo(), sampleIdentity(), sampleKeyPair(), false,
                                       sha256);
    const UaPkiCSR request = certificate.toCSR(sampleKeyPair().privateKey(), sha256);
    ASSERT_EQ(request.toDERFile(directory.uniFile("request.der")), 0);
    EXPECT_THAT(run("openssl req -inform DER -in request.der -noout -verify"),
                HasSubstr("self-signature verify OK"));
    EXPECT_THAT(run("certtool --crq-info --inder --infile request.der"),
                AllOf(HasSubstr("Self signature: verified"), HasSubstr("URI: urn:host:application"),
                      Not(HasSubstr("Authority Key"))));
}

} // namespace
