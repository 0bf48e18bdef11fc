#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/derlist.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

// Lists between this library and the programs openssl and certtool, both ways.

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// What stands behind a text up to the end of its line; "none" without it.
std::string lineBehind(const std::string& output, std::string_view text)
{
    const std::size_t place = output.find(text);
    if (place == std::string::npos) {
        return "none";
    }
    const std::size_t start = place + text.size();
    return output.substr(start, output.find('\n', start) - start);
}

/// A time as the programs print it by ISO 8601: "2024-02-29 12:34:56Z".
std::string isoText(const UaDateTime& time)
{
    std::string text(time.toString().toUtf8());
    text.replace(text.find('T'), 1, " ");
    return text.erase(text.find('.'), 4);
}

/// The number that the class gives for one that was printed in hexadecimal.
int expectedNumber(const std::string& printed)
{
    constexpr int hexadecimal = 16;
    const unsigned long long value = std::strtoull(printed.c_str(), nullptr, hexadecimal);
    const bool fits = printed.rfind("0x", 0) == 0 && value <= 0x7FFFFFFF;
    return fits ? static_cast<int>(value) : -1;
}

class RevocationListInteropTest : public PkiTest
{
protected:
    [[nodiscard]] std::string run(const std::string& command) const
    {
        return outputOf("cd " + directory.path() + " && " + command);
    }
    void runWell(const std::string& command) const
    {
        const std::string output = run(command);
        ASSERT_THAT(output, ::testing::EndsWith("exit 0\n")) << command;
    }
    [[nodiscard]] UaPkiRevocationList read(const std::string& name) const
    {
        UaPkiRevocationList list = UaPkiRevocationList::fromFile(directory.uniFile(name));
        EXPECT_FALSE(list.isNull()) << name;
        EXPECT_THAT(messagesOf(list), IsEmpty()) << name;
        return list;
    }
    /// Compares all fields with what openssl prints.
    void expectSameFields(const UaPkiRevocationList& list, const std::string& file) const
    {
        const std::string output =
            run("openssl crl -in " + file +
                " -noout -issuer -lastupdate -nextupdate -crlnumber -dateopt iso_8601"
                " -nameopt utf8,sname,sep_multiline");
        EXPECT_EQ(isoText(list.thisUpdate()), lineBehind(output, "lastUpdate=")) << output;
        const std::string next = lineBehind(output, "nextUpdate=");
        EXPECT_EQ(list.nextUpdate().isNull() ? "NONE" : isoText(list.nextUpdate()), next) << output;
        EXPECT_EQ(list.crlNumber(), expectedNumber(lineBehind(output, "crlNumber="))) << output;
        expectSameIssuer(list.issuer(), output);
    }
    static void expectSameIssuer(const UaPkiIdentity& issuer, const std::string& output)
    {
        const struct
        {
            const char* prefix;
            const UaString& value;
        } fields[] = {
            {"    O=", issuer.organization},     {"    OU=", issuer.organizationUnit},
            {"    L=", issuer.locality},         {"    ST=", issuer.state},
            {"    C=", issuer.country},          {"    CN=", issuer.commonName},
            {"    DC=", issuer.domainComponent},
        };
        for (const auto& field : fields) {
            const std::string printed = lineBehind(output, field.prefix);
            EXPECT_EQ(field.value.isEmpty() ? "none" : field.value.toUtf8(), printed)
                << field.prefix;
        }
    }
    /// Both forms are what openssl writes.
    void expectSameForms(const UaPkiRevocationList& list, const std::string& file) const
    {
        runWell("openssl crl -in " + file + " -outform DER -out their.der");
        runWell("openssl crl -in " + file + " -outform PEM -out their.pem");
        EXPECT_EQ(toStdString(list.toDER()), readBytes(directory.file("their.der")));
        EXPECT_EQ(list.toPEMFile(directory.uniFile("our.pem")), 1);
        EXPECT_EQ(readBytes(directory.file("our.pem")), readBytes(directory.file("their.pem")));
        EXPECT_EQ(read("their.der").toDER(), list.toDER());
    }

    TemporaryDirectory directory;
};

struct ForeignRow
{
    const char* name;
    const char* keyCommand;
    const char* subject;
    const char* index;     ///< Revoked certificates as the program's database has them.
    const char* crlNumber; ///< Hexadecimal; null for none.
    const char* arguments;
};

constexpr const char* rsaKey = "genpkey -algorithm RSA -pkeyopt rsa_keygen_bits:1024";
constexpr const char* plainSubject = "/C=DE/O=Org/CN=Authority";
constexpr const char* bare = "-crl_lastupdate 20240101000000Z -crl_nextupdate 20240201000000Z";
constexpr const char* month =
    "-crl_lastupdate 20240101000000Z -crl_nextupdate 20240201000000Z -crlexts some";

constexpr const char* allReasons =
    "R\t301231235959Z\t240101000001Z\t01\tunknown\t/CN=a\n"
    "R\t301231235959Z\t240101000002Z,unspecified\t02\tunknown\t/CN=b\n"
    "R\t301231235959Z\t240101000003Z,keyCompromise\t03\tunknown\t/CN=c\n"
    "R\t301231235959Z\t240101000004Z,CACompromise\t04\tunknown\t/CN=d\n"
    "R\t301231235959Z\t240101000005Z,affiliationChanged\t05\tunknown\t/CN=e\n"
    "R\t301231235959Z\t240101000006Z,superseded\t06\tunknown\t/CN=f\n"
    "R\t301231235959Z\t240101000007Z,cessationOfOperation\t07\tunknown\t/CN=g\n"
    "R\t301231235959Z\t240101000008Z,certificateHold\t08\tunknown\t/CN=h\n"
    "R\t301231235959Z\t240101000009Z,removeFromCRL\t09\tunknown\t/CN=i\n"
    "R\t301231235959Z\t240101000010Z,holdInstruction,1.2.840.10040.2.1\t0A\tunknown\t/CN=j\n"
    "R\t301231235959Z\t240101000011Z,keyTime,20231231235959Z\t0B\tunknown\t/CN=k\n"
    "R\t301231235959Z\t240101000012Z,CAkeyTime,20231231235959Z\t0C\tunknown\t/CN=l\n";
constexpr const char* hugeSerial = "R\t20601231235959Z\t491231235959Z\t7F00112233445566778899AABB"
                                   "CCDDEEFF001122\tunknown\t/CN=a\n";

constexpr ForeignRow foreignRows[] = {
    {"no entries", rsaKey, plainSubject, "", "01", month},
    {"all reasons", rsaKey, plainSubject, allReasons, "02", month},
    {"huge serial and number", rsaKey, plainSubject, hugeSerial,
     "7F00112233445566778899AABBCCDDEEFF001122", month},
    {"largest number of 31 bits", rsaKey, plainSubject, "", "7FFFFFFF", month},
    {"smallest number above", rsaKey, plainSubject, "", "80000000", month},
    {"largest number of 63 bits", rsaKey, plainSubject, "", "7FFFFFFFFFFFFFFF", month},
    {"smallest number above that", rsaKey, plainSubject, "", "8000000000000000", month},
    {"no number", rsaKey, plainSubject, "", nullptr, month},
    {"no extensions, version 1", rsaKey, plainSubject, "", nullptr, bare},
    {"many extensions", rsaKey, plainSubject, "", "03", "-crlexts many"},
    {"last second of UTCTime", rsaKey, plainSubject, "", "04",
     "-crl_lastupdate 491231235958Z -crl_nextupdate 491231235959Z"},
    {"first second of GeneralizedTime", rsaKey, plainSubject, "", "05",
     "-crl_lastupdate 491231235959Z -crl_nextupdate 20500101000000Z"},
    {"far future", rsaKey, plainSubject, "", "06",
     "-crl_lastupdate 20500101000000Z -crl_nextupdate 99991231235959Z"},
    {"1970", rsaKey, plainSubject, "", "07",
     "-crl_lastupdate 700101000000Z -crl_nextupdate 991231235959Z"},
    {"EC", "genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256", plainSubject, allReasons, "08",
     month},
    {"DSA", "dsaparam -genkey -noout 1024", plainSubject, allReasons, "09", month},
    {"ED25519", "genpkey -algorithm ED25519", plainSubject, allReasons, "0A", month},
    {"PSS", "genpkey -algorithm RSA-PSS -pkeyopt rsa_keygen_bits:1024", plainSubject, allReasons,
     "0B", month},
    {"every field of a name", rsaKey,
     "/DC=com/DC=example/C=DE/ST=Land/L=M\xC3\xBCnchen/O=Org/O=Second/OU=Unit/CN=First/CN=Name", "",
     "0C", month},
    {"other fields of a name", rsaKey, "/SN=Sur/GN=Given/serialNumber=5/title=T", "", "0D", month},
    {"odd characters", rsaKey, "/O=A \\/ B, C+D;E\"F<G>H#I/CN=\xE6\xBC\xA2\xE5\xAD\x97", "", "0E",
     month},
};

constexpr const char* configuration = R"([ca]
default_ca = d
[d]
database = index.txt
default_md = sha256
default_crl_days = 30
[none]
[some]
authorityKeyIdentifier = keyid:always
[many]
authorityKeyIdentifier = keyid:always, issuer:always
issuerAltName = URI:http://example.org/, DNS:example.org, email:a@example.org, IP:10.0.0.1
issuingDistributionPoint = critical, @point
1.2.3.4.5 = ASN1:UTF8String:own
[point]
fullname = URI:http://example.org/list.crl
onlyuser = TRUE
)";

TEST_F(RevocationListInteropTest, lists_of_openssl_are_read_field_by_field)
{
    for (const ForeignRow& row : foreignRows) {
        SCOPED_TRACE(row.name);
        std::string text = configuration;
        if (row.crlNumber != nullptr) {
            text.insert(text.find("[none]"), "crlnumber = crlnumber\n");
            writeBytes(directory.file("crlnumber"), std::string(row.crlNumber) + "\n");
        }
        writeBytes(directory.file("ca.cnf"), text);
        writeBytes(directory.file("index.txt"), row.index);
        runWell(std::string("openssl ") + row.keyCommand + " 2>errors >key.pem");
        runWell("openssl req -x509 -utf8 -key key.pem -out ca.pem -subj '" +
                std::string(row.subject) + "'");
        runWell(std::string("openssl ca -config ca.cnf -gencrl -keyfile key.pem -cert ca.pem"
                            " -out list.pem ") +
                row.arguments);

        const UaPkiRevocationList list = read("list.pem");
        expectSameFields(list, "list.pem");
        expectSameForms(list, "list.pem");
        const UaPkiCertificate authority =
            UaPkiCertificate::fromPEMFile(directory.file("ca.pem").c_str());
        EXPECT_TRUE(list.verifySignature(authority.publicKey()));
        EXPECT_EQ(list.issuer(), authority.subject());
        EXPECT_THAT(messagesOf(list), ::testing::SizeIs(::testing::Le(2)));
        EXPECT_FALSE(list.verifySignature(sampleKeyPair().publicKey()));
        EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
    }
}

TEST_F(RevocationListInteropTest, lists_put_together_by_hand_read_as_openssl_reads_them)
{
    DerList rows[5];
    rows[0].nextUpdate.clear();
    rows[1].version.clear();
    rows[2].thisUpdate = der(DerGeneralizedTime, "19500101000000Z");
    rows[3].extensions = DerList::numberExtension(derSmallInteger(0));
    rows[4].issuer = der(DerSequence, derAttribute("\x55\x04\x0A", 0x1E, {"\0\xE4\0b", 4}) +
                                          derAttribute("\x55\x04\x07", 0x14, "T61") +
                                          derAttribute("\x55\x04\x08", 0x16, "IA5") +
                                          derAttribute("\x55\x04\x03", 0x1C, {"\0\0\0U", 4}));
    for (const DerList& row : rows) {
        writeBytes(directory.file("list.der"), row.bytes());
        expectSameFields(read("list.der"), "list.der");
        expectSameForms(read("list.der"), "list.der");
    }
}

TEST_F(RevocationListInteropTest, a_list_of_certtool_is_read_field_by_field)
{
    writeBytes(directory.file("ca.tmpl"), "organization = Org\ncountry = DE\ncn = Authority\n"
                                          "ca\ncrl_signing_key\nexpiration_days = 100\n");
    writeBytes(directory.file("crl.tmpl"),
               "crl_this_update_date = \"2024-01-01 00:00:00 UTC\"\n"
               "crl_next_update_date = \"2024-02-29 12:34:56 UTC\"\n"
               "crl_revocation_date = \"2023-12-31 23:59:59 UTC\"\ncrl_number = 66000\n");
    runWell("certtool --generate-privkey --ecc --outfile key.pem");
    runWell("certtool --generate-self-signed --load-privkey key.pem --template ca.tmpl"
            " --outfile ca.pem");
    runWell("certtool --generate-crl --load-ca-privkey key.pem --load-ca-certificate ca.pem"
            " --load-certificate ca.pem --template crl.tmpl --outfile list.pem");
    const UaPkiRevocationList list = read("list.pem");
    EXPECT_EQ(isoText(list.thisUpdate()), "2024-01-01 00:00:00Z");
    EXPECT_EQ(isoText(list.nextUpdate()), "2024-02-29 12:34:56Z");
    EXPECT_EQ(list.crlNumber(), 66000);
    const UaPkiCertificate authority =
        UaPkiCertificate::fromPEMFile(directory.file("ca.pem").c_str());
    EXPECT_EQ(list.issuer(), authority.subject());
    EXPECT_EQ(list.issuer().organization, "Org");
    EXPECT_TRUE(list.verifySignature(authority.publicKey()));
    expectSameFields(list, "list.pem");
}

/// An authority of ours, two certificates that it signed, and a list that revokes the first.
class OurListTest : public RevocationListInteropTest
{
protected:
    void SetUp() override
    {
        RevocationListInteropTest::SetUp();
        ASSERT_EQ(authority.toPEMFile(directory.file("ca.pem").c_str()), 0);
        ASSERT_EQ(revoked.toPEMFile(directory.file("revoked.pem").c_str()), 0);
        ASSERT_EQ(kept.toPEMFile(directory.file("kept.pem").c_str()), 0);
        list.addRevoked(revoked, UaDateTime::fromString("2024-01-02T03:04:05.000Z"));
        ASSERT_TRUE(list.sign(otherKeyPair().privateKey()));
        ASSERT_THAT(messagesOf(list), IsEmpty());
        ASSERT_EQ(list.toPEMFile(directory.file("list.pem").c_str()), 1);
    }
    static UaPkiCertificateInfo infoWith(OpcUa_Int32 serialNumber)
    {
        UaPkiCertificateInfo info = sampleInfo();
        info.serialNumber = serialNumber;
        return info;
    }
    UaPkiCertificate leaf(OpcUa_Int32 serialNumber) const
    {
        UaPkiIdentity subject;
        subject.commonName = "Application";
        return {infoWith(serialNumber),      subject, sampleKeyPair().publicKey(),    authority,
                otherKeyPair().privateKey(), false,   UaPkiCertificate::Sha256WithRsa};
    }

    const UaPkiCertificate authority = {infoWith(1), sampleIdentity(), otherKeyPair(), true,
                                        UaPkiCertificate::Sha256WithRsa};
    const UaPkiCertificate revoked = leaf(0x1234);
    const UaPkiCertificate kept = leaf(0x1235);
    UaPkiRevocationList list = {3600, sampleIdentity(), 0x10203};
};

TEST_F(OurListTest, reads_in_openssl_field_by_field)
{
    const std::string output = run("openssl crl -in list.pem -noout -text -nameopt utf8");
    EXPECT_THAT(
        output,
        AllOf(HasSubstr("Version 2 (0x1)"), HasSubstr("Signature Algorithm: sha1WithRSAEncryption"),
              HasSubstr("X509v3 CRL Number: \n                66051"),
              HasSubstr("Serial Number: 1234\n        Revocation Date: Jan  2 03:04:05 2024"),
              Not(HasSubstr("1235"))));
    EXPECT_EQ(std::count(output.begin(), output.end(), '\r'), 0);
    expectSameFields(list, "list.pem");
    expectSameForms(list, "list.pem");
    EXPECT_EQ(list.issuer(), sampleIdentity());
}

TEST_F(OurListTest, signature_verifies_in_openssl)
{
    EXPECT_THAT(run("openssl crl -in list.pem -noout -verify -CAfile ca.pem"),
                HasSubstr("verify OK"));
}

TEST_F(OurListTest, openssl_and_certtool_take_the_revoked_certificate_for_revoked)
{
    EXPECT_THAT(run("openssl verify -crl_check -CAfile ca.pem -CRLfile list.pem kept.pem"),
                HasSubstr("kept.pem: OK"));
    EXPECT_THAT(run("openssl verify -crl_check -CAfile ca.pem -CRLfile list.pem revoked.pem"),
                HasSubstr("certificate revoked"));
    const std::string verify =
        "certtool --verify --verify-allow-broken --load-ca-certificate ca.pem"
        " --load-crl list.pem --infile ";
    EXPECT_THAT(run(verify + "kept.pem"), Not(HasSubstr("revoked")));
    EXPECT_THAT(run(verify + "revoked.pem"), HasSubstr("revoked"));
}

TEST_F(OurListTest, reads_in_certtool_field_by_field)
{
    const std::string output = run("certtool --crl-info --infile list.pem");
    EXPECT_THAT(output, AllOf(HasSubstr("Version: 2\n"),
                              HasSubstr("Issuer: CN=application@host,OU=Unit,O=Organisation,"
                                        "L=Ort \xC3\xBC,ST=State,C=DE,DC=host\n"),
                              HasSubstr("CRL Number (not critical): 010203\n"),
                              HasSubstr("Revoked certificates (1):\n"),
                              HasSubstr("Serial Number (hex): 1234\n"),
                              HasSubstr("Revoked at: Tue Jan 02 03:04:05 UTC 2024\n"),
                              HasSubstr("Signature Algorithm: RSA-SHA1\n")));
}

TEST_F(OurListTest, empty_fields_of_the_issuer_are_entries_to_openssl)
{
    UaPkiRevocationList sparseList(3600, identityOf("Authority"), 1);
    ASSERT_TRUE(sparseList.sign(otherKeyPair().privateKey()));
    ASSERT_EQ(sparseList.toDERFile(directory.file("sparse.der").c_str()), 1);
    EXPECT_THAT(run("openssl crl -in sparse.der -noout -issuer -nameopt sname,sep_multiline"),
                HasSubstr("issuer=\n    DC=\n    C=\n    ST=\n    L=\n    O=\n    OU=\n"
                          "    CN=Authority\n"));
    // An empty text breaks the bounds of the standard's attributes: the other program prints the rest.
    EXPECT_THAT(run("certtool --crl-info --inder --infile sparse.der"),
                HasSubstr("CRL Number (not critical): 01\n"));
}

} // namespace
