#include "base/uaunistring.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/certificatecorpus.h"
#include "tests/pki/certificateview.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/temporarydirectory.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

// Certificates that `openssl` and `certtool` make are read here, and each field is what these programs
// print; what we write is read by them.

namespace {

using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class CertificateProgramsTest : public PkiTest
{
protected:
    void run(const std::string& commands) const
    {
        const std::string output = outputOf("(cd " + directory.path() + " && " + commands + ")");
        ASSERT_THAT(output, EndsWith("exit 0\n"));
    }
    [[nodiscard]] UaPkiCertificate read(const std::string& name) const
    {
        UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(directory.uniFile(name));
        EXPECT_FALSE(certificate.isNull()) << name;
        return certificate;
    }
    /// Compares all fields with what both programs print. certtool's names are in a notation of their
    /// own where they aren't plain.
    void expectFieldsOfBoth(const std::vector<std::string>& names, bool isPlain) const
    {
        const std::vector<CertificateView> views = viewsOfOpenssl(directory.path(), names);
        ASSERT_THAT(views, SizeIs(names.size()));
        for (std::size_t i = 0; i < names.size(); ++i) {
            const CertificateView ours = viewOf(read(names[i]));
            EXPECT_GE(views[i].size(), 24u) << names[i];
            EXPECT_EQ(commonWith(ours, views[i]), views[i]) << names[i];
            if (isPlain) {
                const CertificateView theirs = viewOfCerttool(directory.file(names[i]));
                EXPECT_GE(theirs.size(), 20u) << names[i];
                EXPECT_EQ(commonWith(ours, theirs), theirs) << names[i];
            }
        }
    }

    TemporaryDirectory directory;
};

TEST_F(CertificateProgramsTest, the_distributions_certificates_read_as_openssl_prints_them)
{
    std::vector<std::string> names;
    for (const std::string& bytes : certificateCorpus()) {
        // The distribution's come first.
        if (names.size() < certificateCorpus().size() - certificateCorpusOwn) {
            names.push_back(std::to_string(names.size()) + ".der");
            writeBytes(directory.file(names.back()), bytes);
        }
    }
    ASSERT_GT(names.size(), 100u) << "the distribution's certificates are missing";
    expectFieldsOfBoth(names, false);
}

constexpr const char* configuration = R"([req]
distinguished_name = dn
prompt = no
[dn]
DC = org
C = DE
ST = state
L = city
O = organisation
OU = unit
CN = application
[all]
basicConstraints = critical, CA:FALSE
keyUsage = critical, digitalSignature, keyCertSign
extendedKeyUsage = serverAuth, clientAuth
nsComment = "a comment"
crlDistributionPoints = URI:http://host/list.crl
authorityInfoAccess = OCSP;URI:http://host/ocsp
certificatePolicies = 1.2.3.4
subjectAltName = @names
[names]
email.1 = first@host
email.2 = last@host
URI.1 = urn:first
URI.2 = urn:last
DNS.1 = host
DNS.2 = *.host.example.org
DNS.3 = third
IP.1 = 192.168.0.1
IP.2 = ::1
IP.3 = 2001:db8:abcd:ef::1234
RID.1 = 1.2.3.4
otherName.1 = 1.2.3.4;UTF8:other
dirName.1 = directory
[directory]
CN = directory
)";

TEST_F(CertificateProgramsTest, every_type_of_name_and_extension_of_openssl_is_read)
{
    writeBytes(directory.file("c.cnf"), configuration);
    run("openssl req -x509 -config c.cnf -extensions all -newkey rsa:2048 -nodes -keyout k.pem"
        " -outform DER -out all.der");
    expectFieldsOfBoth({"all.der"}, true);
    const UaPkiCertificateInfo info = read("all.der").info();
    EXPECT_EQ(info.uri, "urn:last");
    EXPECT_EQ(info.email, "last@host");
    EXPECT_EQ(info.dnsNames.length(), 3);
    EXPECT_EQ(info.ipAddresses.length(), 3);
}

TEST_F(CertificateProgramsTest, keys_and_signatures_of_all_kinds_are_read)
{
    writeBytes(directory.file("c.cnf"), configuration);
    const std::string make = "openssl req -x509 -config c.cnf -nodes -keyout k.pem -outform DER ";
    run(make + "-newkey rsa:1024 -sha1 -out sha1.der");
    run(make + "-newkey rsa:2048 -sha384 -out sha384.der");
    run(make + "-newkey rsa:2048 -sigopt rsa_padding_mode:pss -out pss.der");
    run(make + "-newkey rsa-pss -out psskey.der");
    run(make + "-newkey ec -pkeyopt ec_paramgen_curve:P-256 -out p256.der");
    run(make + "-newkey ec -pkeyopt ec_paramgen_curve:secp521r1 -out p521.der");
    run(make + "-newkey ec -pkeyopt ec_paramgen_curve:brainpoolP256r1 -out brainpool.der");
    run(make + "-newkey ec -pkeyopt ec_paramgen_curve:P-256 -pkeyopt ec_param_enc:explicit"
               " -out explicit.der");
    run(make + "-newkey ed25519 -out ed25519.der");
    run(make + "-newkey ed448 -out ed448.der");
    run("openssl genpkey -genparam -algorithm DSA -pkeyopt dsa_paramgen_bits:1024 -out p.pem"
        " && openssl genpkey -paramfile p.pem -out dsa.pem"
        " && openssl req -x509 -config c.cnf -key dsa.pem -outform DER -out dsa.der");
    const std::vector<std::string> names = {
        "sha1.der",      "sha384.der",   "pss.der",     "psskey.der", "p256.der", "p521.der",
        "brainpool.der", "explicit.der", "ed25519.der", "ed448.der",  "dsa.der"};
    expectFieldsOfBoth(names, false);
    for (const std::string& name : names) {
        const UaPkiCertificate certificate = read(name);
        EXPECT_TRUE(certificate.isSelfSigned()) << name;
        EXPECT_TRUE(certificate.verifySignature(certificate.publicKey())) << name;
        EXPECT_FALSE(certificate.verifySignature(read("sha1.der").publicKey()) &&
                     name != "sha1.der")
            << name;
        (void)messagesOf(certificate);
    }
    EXPECT_EQ(read("dsa.der").publicKey().keyType(), 116);
    EXPECT_EQ(read("sha1.der").publicKey().keyType(), 6);
}

TEST_F(CertificateProgramsTest, a_key_that_may_not_sign_certificates_signs_none_of_its_own)
{
    run("openssl req -x509 -newkey rsa:2048 -nodes -keyout k.pem -subj /CN=a"
        " -addext keyUsage=digitalSignature -outform DER -out a.der");
    const UaPkiCertificate certificate = read("a.der");
    EXPECT_TRUE(certificate.verifySignature(certificate.publicKey()));
    EXPECT_FALSE(certificate.isSelfSigned());
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
}

TEST_F(CertificateProgramsTest, serial_numbers_and_versions_of_all_kinds_are_read)
{
    writeBytes(directory.file("c.cnf"), configuration);
    run("openssl genrsa -out k.pem 2048 && openssl req -new -config c.cnf -key k.pem -out r.pem");
    const std::map<std::string, std::string> serialNumbers = {
        {"zero", "0"},
        {"one", "1"},
        {"borderline", "128"},
        {"largest", "2147483647"},
        {"toolarge", "2147483648"},
        {"negative", "-5"},
        {"negative2", "-2147483649"},
        {"huge", "0x7FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"},
        {"beyond", "0xFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"},
    };
    std::vector<std::string> names;
    for (const auto& [name, number] : serialNumbers) {
        names.push_back(name + ".der");
        // Without extensions these are of version 1.
        run("openssl x509 -req -in r.pem -signkey k.pem -set_serial " + number +
            " -outform DER -out " + names.back());
    }
    expectFieldsOfBoth(names, false);
    EXPECT_EQ(read("largest.der").info().serialNumber, 2147483647);
    EXPECT_EQ(read("toolarge.der").info().serialNumber, -1);
    EXPECT_EQ(read("negative.der").info().serialNumber, -5);
    EXPECT_TRUE(read("zero.der").isSelfSigned());
}

TEST_F(CertificateProgramsTest, texts_of_all_types_of_openssl_are_read)
{
    run("openssl genrsa -out k.pem 2048");
    const std::map<std::string, std::string> masks = {
        {"printable", "MASK:0x2"},   {"t61", "MASK:0x4"},   {"ia5", "MASK:0x10"},
        {"universal", "MASK:0x100"}, {"bmp", "MASK:0x800"}, {"utf8", "MASK:0x2000"},
        {"default", "default"},      {"nombstr", "nombstr"}};
    std::vector<std::string> names;
    for (const auto& [name, mask] : masks) {
        const bool isAscii = name == "printable" || name == "ia5";
        names.push_back(name + ".der");
        writeBytes(directory.file("c.cnf"), "[req]\ndistinguished_name = dn\nprompt = no\nutf8 = "
                                            "yes\nstring_mask = " +
                                                mask + "\n[dn]\nO = Organisation\nCN = " +
                                                (isAscii ? "plain" : "G\xC3\xBCnther") + "\n");
        run("openssl req -x509 -config c.cnf -key k.pem -outform DER -out " + names.back());
        EXPECT_EQ(read(names.back()).commonName(), isAscii ? "plain" : "G\xC3\xBCnther") << name;
    }
    expectFieldsOfBoth(names, false);
}

TEST_F(CertificateProgramsTest, times_of_both_types_are_read_at_their_borders)
{
    writeBytes(directory.file("c.cnf"), configuration);
    writeBytes(
        directory.file("ca.cnf"),
        "[ca]\ndefault_ca = c\n[c]\ndatabase = index.txt\nnew_certs_dir = .\n"
        "serial = serial\ndefault_md = sha256\npolicy = p\nunique_subject = no\nemail_in_dn = no\n"
        "[p]\ncommonName = optional\n");
    run(": > index.txt && openssl genrsa -out k.pem 2048 && openssl req -new -config c.cnf"
        " -key k.pem -out r.pem");
    struct Row
    {
        const char* from;
        const char* to;
        const char* expectedFrom;
        const char* expectedTo;
    };
    const Row rows[] = {
        {"491231235959Z", "500101000000Z", "2049-12-31T23:59:59.000Z", "2050-01-01T00:00:00.000Z"},
        {"691231235959Z", "700101000000Z", "2069-12-31T23:59:59.000Z", "1970-01-01T00:00:00.000Z"},
        {"991231235959Z", "000101000000Z", "1999-12-31T23:59:59.000Z", "2000-01-01T00:00:00.000Z"},
        {"20491231235959Z", "20500101000000Z", "2049-12-31T23:59:59.000Z",
         "2050-01-01T00:00:00.000Z"},
        {"18500101000000Z", "99991231235959Z", "1850-01-01T00:00:00.000Z",
         "9999-12-31T23:59:59.000Z"},
        {"20240229000000Z", "20380119031408Z", "2024-02-29T00:00:00.000Z",
         "2038-01-19T03:14:08.000Z"},
    };
    std::vector<std::string> names;
    for (const Row& row : rows) {
        names.push_back(std::string(row.from) + row.to + ".der");
        run("openssl ca -batch -config ca.cnf -rand_serial -selfsign -keyfile k.pem -in r.pem"
            " -notext -out t.pem -startdate " +
            std::string(row.from) + " -enddate " + row.to +
            " && openssl x509 -in t.pem -outform DER -out " + names.back());
        const UaPkiCertificate certificate = read(names.back());
        EXPECT_EQ(certificate.validFrom().toString(), row.expectedFrom) << names.back();
        EXPECT_EQ(certificate.validTo().toString(), row.expectedTo) << names.back();
    }
}

TEST_F(CertificateProgramsTest, certificates_of_certtool_are_read)
{
    writeBytes(directory.file("template"),
               "dn = \"CN=application,O=organisation,C=DE\"\nserial = 123456789\n"
               "activation_date = \"2024-02-29 12:34:56 UTC\"\n"
               "expiration_date = \"2051-03-04 05:06:07 UTC\"\n"
               "uri = \"urn:host:application\"\ndns_name = \"host\"\ndns_name = \"other\"\n"
               "ip_address = \"10.1.2.3\"\nip_address = \"fe80::1\"\n"
               "ca\nsigning_key\ncert_signing_key\nencryption_key\ntls_www_server\n");
    const std::map<std::string, std::string> keys = {{"rsa", "--key-type rsa --bits 2048"},
                                                     {"pss", "--key-type rsa-pss --bits 2048"},
                                                     {"ecdsa", "--key-type ecdsa"},
                                                     {"eddsa", "--key-type eddsa"}};
    std::vector<std::string> names;
    for (const auto& [name, options] : keys) {
        names.push_back(name + ".der");
        run("certtool --generate-privkey " + options +
            " --outfile k.pem && certtool --generate-self-signed --load-privkey k.pem"
            " --template template --outder --outfile " +
            names.back());
        EXPECT_TRUE(read(names.back()).isSelfSigned()) << name;
    }
    expectFieldsOfBoth(names, true);
    const UaPkiCertificate certificate = read("rsa.der");
    EXPECT_EQ(certificate.validTo().toString(), "2051-03-04T05:06:07.000Z");
    EXPECT_EQ(certificate.info().serialNumber, 123456789);
}

TEST_F(CertificateProgramsTest, what_we_write_is_read_by_both_programs)
{
    writeBytes(directory.file("c.cnf"), configuration);
    run("openssl req -x509 -config c.cnf -extensions all -newkey rsa:2048 -nodes -keyout k.pem"
        " -outform DER -out in.der");
    const UaPkiCertificate certificate = read("in.der");
    ASSERT_EQ(certificate.toDERFile(directory.uniFile("out.der")), 0);
    ASSERT_EQ(certificate.toPEMFile(directory.uniFile("out.pem")), 0);
    EXPECT_EQ(readBytes(directory.file("out.der")), readBytes(directory.file("in.der")));
    run("openssl x509 -in out.pem -outform DER -out again.der && cmp again.der in.der");
    run("certtool --certificate-info --infile out.pem --outder --outfile again2.der"
        " && cmp again2.der in.der");
    EXPECT_EQ(UaPkiCertificate::fromPEMFile(directory.file("out.pem").c_str()).toDER(),
              certificate.toDER());
}

} // namespace
