#include "pki/uapkicsr.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

// What the openssl program and GnuTLS' certtool make of our certificates.

namespace {

using ::testing::HasSubstr;

constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

UaPkiCertificateInfo infoOf(OpcUa_Int32 serialNumber)
{
    UaPkiCertificateInfo info = sampleInfo();
    info.serialNumber = serialNumber;
    return info;
}

struct Row
{
    const char* name;
    bool isCA;
    bool isSelfSigned;
    int serialNumber;
    bool hasSha1;
    bool hasNames;
    const char* verdict; ///< Of certtool.
};

constexpr const char* isVerified = "Chain verification output: Verified.";

constexpr Row rows[] = {
    {"application", false, true, 77, false, true, "The certificate issuer is not a CA"},
    {"authority", true, true, 5, false, false, isVerified},
    {"named", false, false, 12, true, true, "uses insecure algorithm"},
    {"issued", false, false, 13, false, true, isVerified},
    {"sub", true, false, 14, false, false, isVerified},
    {"requested", false, false, 15, false, true, isVerified},
    {"resigned", false, false, 16, false, true, isVerified},
};

class CertificateInteropTest : public PkiTest, public ::testing::WithParamInterface<Row>
{
protected:
    void SetUp() override
    {
        PkiTest::SetUp();
        write("authority", authority);
        write("sample", make(GetParam().name));
    }

    UaPkiCertificate make(const std::string& name) const
    {
        const UaPkiCertificateInfo info = infoOf(GetParam().serialNumber);
        const UaPkiPublicKey key = otherKeyPair().publicKey();
        const UaPkiPrivateKey issuerKey = sampleKeyPair().privateKey();
        if (name == "application") {
            return {info, sampleIdentity(), sampleKeyPair(), false, sha256};
        }
        if (name == "named") {
            return {info, sampleIdentity(), key, authority.subject(), issuerKey};
        }
        if (name == "issued" || name == "sub") {
            return {info, sampleIdentity(), key, authority, issuerKey, GetParam().isCA, sha256};
        }
        if (name == "requested") {
            const UaPkiCSR request(info, sampleIdentity(), otherKeyPair(), false, sha256);
            return UaPkiCertificate::fromCSR(request, authority, issuerKey, info.validTime,
                                             info.serialNumber, sha256);
        }
        if (name == "resigned") {
            UaPkiCertificate certificate(info, sampleIdentity(), otherKeyPair(), false, sha256);
            EXPECT_TRUE(certificate.sign(authority, issuerKey, sha256));
            return certificate;
        }
        return authority;
    }

    void write(const char* name, const UaPkiCertificate& certificate) const
    {
        ASSERT_FALSE(certificate.isNull()) << name;
        const std::string path = directory.file(name);
        ASSERT_EQ(certificate.toDERFile((path + ".der").c_str()), 0) << name;
        ASSERT_EQ(certificate.toPEMFile((path + ".pem").c_str()), 0) << name;
    }

    std::string run(const std::string& command) const
    {
        const std::string output = outputOf("cd " + directory.path() + " && " + command);
        EXPECT_THAT(output, HasSubstr("exit 0")) << command;
        return output;
    }

    /// One line for each extension in the order of the file: its name, and whether it is critical.
    [[nodiscard]] std::vector<std::pair<std::string, bool>> parsedExtensions() const
    {
        std::istringstream lines(run("openssl asn1parse -inform DER -in sample.der"));
        std::vector<std::pair<std::string, bool>> extensions;
        bool isInExtensions = false;
        for (std::string line; std::getline(lines, line);) {
            isInExtensions = isInExtensions || line.find("cont [ 3 ]") != std::string::npos;
            const std::size_t name = line.find("OBJECT            :");
            if (isInExtensions && line.find("d=1 ") != std::string::npos) {
                break;
            }
            if (isInExtensions && name != std::string::npos) {
                extensions.emplace_back(line.substr(name + 19), false);
            } else if (isInExtensions && line.find("BOOLEAN") != std::string::npos) {
                extensions.back().second = true;
            }
        }
        return extensions;
    }

    TemporaryDirectory directory;
    const UaPkiCertificate authority{infoOf(5), identityOf("authority"), sampleKeyPair(), true,
                                     sha256};
};

TEST_P(CertificateInteropTest, openssl_sees_the_extensions_in_their_order_and_criticality)
{
    using Extensions = std::vector<std::pair<std::string, bool>>;
    const std::string name = GetParam().name;
    Extensions expected = {{"X509v3 Basic Constraints", true},
                           {"Netscape Comment", false},
                           {"X509v3 Subject Key Identifier", false},
                           {"X509v3 Authority Key Identifier", false},
                           {"X509v3 Key Usage", true},
                           {"X509v3 Extended Key Usage", true},
                           {"X509v3 Subject Alternative Name", false}};
    if (GetParam().isCA) {
        expected = {{"X509v3 Basic Constraints", true},
                    {"Netscape Comment", false},
                    {"X509v3 Key Usage", true},
                    {"X509v3 Extended Key Usage", true},
                    {"X509v3 Subject Key Identifier", false}};
    } else if (name == "requested") {
        expected = {{"X509v3 Basic Constraints", true},
                    {"X509v3 Subject Key Identifier", false},
                    {"X509v3 Key Usage", true},
                    {"X509v3 Extended Key Usage", true},
                    {"X509v3 Subject Alternative Name", false},
                    {"X509v3 Authority Key Identifier", false}};
    } else if (name == "resigned") {
        expected = {{"X509v3 Basic Constraints", true},
                    {"Netscape Comment", false},
                    {"X509v3 Key Usage", true},
                    {"X509v3 Extended Key Usage", true},
                    {"X509v3 Subject Alternative Name", false},
                    {"X509v3 Subject Key Identifier", false},
                    {"X509v3 Authority Key Identifier", false}};
    }
    EXPECT_EQ(parsedExtensions(), expected);
}

TEST_P(CertificateInteropTest, openssl_sees_the_fields)
{
    const std::string text =
        run("openssl x509 -in sample.pem -noout -subject -issuer -serial -dates"
            " -nameopt RFC2253,-esc_msb,utf8,sep_comma_plus");
    const bool isAuthority = std::string(GetParam().name) == "authority";
    EXPECT_THAT(text, HasSubstr(isAuthority ? "subject=CN=authority\n"
                                            : "subject=CN=application@host,OU=Unit,O=Organisation,"
                                              "L=Ort \xC3\xBC,ST=State,C=DE,DC=host\n"));
    EXPECT_THAT(text, HasSubstr(std::string("issuer=") +
                                (std::string(GetParam().name) == "application"
                                     ? "CN=application@host,OU=Unit,O=Organisation,"
                                       "L=Ort \xC3\xBC,ST=State,C=DE,DC=host\n"
                                     : "CN=authority\n")));
    std::ostringstream serial;
    serial << "serial=" << std::uppercase << std::hex << (GetParam().serialNumber < 16 ? "0" : "")
           << GetParam().serialNumber << '\n';
    EXPECT_THAT(text, HasSubstr(serial.str()));
    run("openssl x509 -in sample.pem -noout -checkend 3500");
    EXPECT_THAT(
        outputOf("openssl x509 -in " + directory.file("sample.pem") + " -noout -checkend 3700"),
        HasSubstr("exit 1"));
}

TEST_P(CertificateInteropTest, openssl_verifies_it_against_its_authority)
{
    // At a higher level the program refuses SHA-1.
    const std::string command =
        "cd " + directory.path() + " && openssl verify -auth_level 0 -CAfile ";
    const std::string anchor = GetParam().isSelfSigned ? "sample.pem" : "authority.pem";
    const std::string text = outputOf(command + anchor + " sample.pem");
    if (std::string(GetParam().name) == "named") {
        // It refers to itself as its issuer, so that no chain can be found. The signature is right.
        EXPECT_THAT(text, HasSubstr("unable to get local issuer certificate"));
        const UaPkiCertificate read =
            UaPkiCertificate::fromDERFile(directory.file("sample.der").c_str());
        EXPECT_TRUE(read.verifySignature(authority.publicKey()));
    } else {
        EXPECT_THAT(text, HasSubstr("sample.pem: OK"));
    }
}

TEST_P(CertificateInteropTest, certtool_sees_the_same)
{
    const std::string text = run("certtool --certificate-info --inder --infile sample.der");
    EXPECT_THAT(text, HasSubstr("Version: 3"));
    EXPECT_THAT(text, HasSubstr("Signature Algorithm: RSA-SHA" +
                                std::string(GetParam().hasSha1 ? "1" : "256")));
    EXPECT_THAT(text, HasSubstr(GetParam().isCA ? "Certificate Authority (CA): TRUE"
                                                : "Certificate Authority (CA): FALSE"));
    EXPECT_THAT(text, HasSubstr("Key Usage (critical):"));
    EXPECT_THAT(text, HasSubstr("Key Purpose (critical):"));
    EXPECT_THAT(text, HasSubstr("TLS WWW Server."));
    EXPECT_THAT(text, HasSubstr("TLS WWW Client."));
    EXPECT_THAT(text, HasSubstr("Certificate signing."));
    EXPECT_EQ(text.find("CRL signing.") != std::string::npos, GetParam().isCA);
    EXPECT_EQ(text.find("Data encipherment.") != std::string::npos, !GetParam().isCA);
    EXPECT_THAT(text, HasSubstr("Subject Key Identifier (not critical):"));
    EXPECT_EQ(text.find("Authority Key Identifier (not critical):") != std::string::npos,
              !GetParam().isCA);
    for (const char* name :
         {"URI: urn:host:application", "DNSname: host\n", "DNSname: host.example.org",
          "IPAddress: 192.168.0.1", "IPAddress: 2001:db8::1", "RFC822Name: operator@example.org"}) {
        EXPECT_EQ(text.find(name) != std::string::npos, GetParam().hasNames) << name;
    }
}

TEST_P(CertificateInteropTest, certtool_verifies_the_chain)
{
    const std::string anchor = GetParam().isSelfSigned ? "sample.pem" : "authority.pem";
    const std::string text =
        outputOf("cd " + directory.path() + " && certtool --verify --verify-profile low" +
                 " --load-ca-certificate " + anchor + " --infile sample.pem");
    EXPECT_THAT(text, HasSubstr(GetParam().verdict));
}

INSTANTIATE_TEST_SUITE_P(Forms, CertificateInteropTest, ::testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
