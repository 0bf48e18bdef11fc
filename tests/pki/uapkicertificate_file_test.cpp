#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/allocationfaults.h"

#include <gmock/gmock.h>
#include <openssl/pem.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

// Certificates in files.

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* isTooLarge = "The file is too large";

class CertificateFileTest : public PkiTest
{
protected:
    [[nodiscard]] std::string path(const char* name) const { return directory.file(name); }

    /// Reads DER in both forms, which must agree.
    [[nodiscard]] UaPkiCertificate readDer(const char* name) const
    {
        const UaPkiCertificate plain = UaPkiCertificate::fromDERFile(path(name).c_str());
        UaPkiCertificate engine = UaPkiCertificate::fromDERFile(directory.uniFile(name));
        EXPECT_EQ(plain.isNull(), engine.isNull()) << name;
        EXPECT_EQ(messagesOf(plain).empty(), !plain.isNull()) << name;
        return engine;
    }
    [[nodiscard]] UaPkiCertificate readPem(const char* name) const
    {
        return UaPkiCertificate::fromPEMFile(path(name).c_str());
    }
    /// What becomes of a PEM text.
    [[nodiscard]] UaPkiCertificate readText(const std::string& text) const
    {
        writeBytes(path("text"), text);
        return readPem("text");
    }

    TemporaryDirectory directory;
    const std::string der = sampleDer();
    const std::string pem = samplePem();
};

TEST_F(CertificateFileTest, der_is_read_by_both_forms)
{
    writeBytes(path("f"), der);
    const UaPkiCertificate certificate = readDer("f");
    EXPECT_EQ(toStdString(certificate.toDER()), der);
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
}

TEST_F(CertificateFileTest, der_and_pem_are_written_by_both_forms)
{
    const UaPkiCertificate certificate = sampleCertificate();
    EXPECT_EQ(certificate.toDERFile(path("a").c_str()), 0);
    EXPECT_EQ(certificate.toDERFile(directory.uniFile("b")), 0);
    EXPECT_EQ(certificate.toPEMFile(path("c").c_str()), 0);
    EXPECT_EQ(certificate.toPEMFile(directory.uniFile("d")), 0);
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
    EXPECT_EQ(readBytes(path("a")), toStdString(certificate.toDER()));
    EXPECT_EQ(readBytes(path("b")), readBytes(path("a")));
    EXPECT_THAT(readBytes(path("c")), ::testing::StartsWith("-----BEGIN CERTIFICATE-----\n"));
    EXPECT_EQ(readBytes(path("d")), readBytes(path("c")));
    EXPECT_EQ(readPem("c").toDER(), certificate.toDER());
}

TEST_F(CertificateFileTest, a_longer_file_is_replaced_whole)
{
    writeBytes(path("f"), std::string(10'000, 'x'));
    EXPECT_EQ(sampleCertificate().toDERFile(path("f").c_str()), 0);
    EXPECT_EQ(readBytes(path("f")).size(), sampleDer().size());
    writeBytes(path("f"), std::string(10'000, 'x'));
    EXPECT_EQ(sampleCertificate().toPEMFile(directory.uniFile("f")), 0);
    EXPECT_EQ(readBytes(path("f")).size(), pem.size());
}

TEST_F(CertificateFileTest, paths_of_any_character_set_go_through_the_engine)
{
    const UaUniString name = directory.uniFile("caf\xC3\xA9 \xE8\xA8\xBC");
    EXPECT_EQ(sampleCertificate().toDERFile(name), 0);
    EXPECT_FALSE(UaPkiCertificate::fromDERFile(name).isNull());
}

TEST_F(CertificateFileTest, a_missing_file_is_told_in_the_words_of_each_form)
{
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromDERFile(directory.uniFile("f"))),
                ElementsAre("Could not get file size"));
    for (const UaPkiCertificate& certificate : {UaPkiCertificate::fromDERFile(path("f").c_str()),
                                                UaPkiCertificate::fromPEMFile(path("f").c_str())}) {
        EXPECT_TRUE(certificate.isNull());
    }
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromDERFile(path("f").c_str())),
                ElementsAre(HasSubstr("No such file"), HasSubstr("BIO")));
    EXPECT_THAT(messagesOf(readPem("f")), ElementsAre(HasSubstr("No such file"), HasSubstr("BIO")));
    const char* const none = nullptr;
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromDERFile(none)), Not(IsEmpty()));
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromPEMFile(none)), Not(IsEmpty()));
}

TEST_F(CertificateFileTest, a_directory_is_no_certificate)
{
    std::filesystem::create_directory(path("d"));
    EXPECT_TRUE(readDer("d").isNull());
    EXPECT_TRUE(readPem("d").isNull());
}

TEST_F(CertificateFileTest, files_that_are_no_certificate_are_null_with_messages)
{
    for (const std::string& bytes :
         {std::string(), std::string("garbage"), std::string(1'000'000, '\0'), pem,
          der.substr(0, der.size() - 1), "x" + der}) {
        writeBytes(path("f"), bytes);
        const UaPkiCertificate certificate = readDer("f");
        EXPECT_TRUE(certificate.isNull());
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    }
    for (const std::string& text : {std::string(), std::string("garbage"), der,
                                    std::string(1'000'000, '\n'), std::string(1'000'000, '-')}) {
        const UaPkiCertificate certificate = readText(text);
        EXPECT_TRUE(certificate.isNull());
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    }
}

TEST_F(CertificateFileTest, files_up_to_one_mebibyte_are_read)
{
    constexpr std::size_t largest = 1024 * 1024;
    writeBytes(path("f"), der + std::string(largest - der.size(), '\0'));
    EXPECT_FALSE(readDer("f").isNull());
    EXPECT_FALSE(readText(pem + std::string(largest - pem.size(), '\n')).isNull());
    writeBytes(path("f"), der + std::string(largest - der.size() + 1, '\0'));
    EXPECT_THAT(messagesOf(readDer("f")), ElementsAre(isTooLarge));
    EXPECT_THAT(messagesOf(readText(pem + std::string(largest - pem.size() + 1, '\n'))),
                ElementsAre(isTooLarge));
}

TEST_F(CertificateFileTest, a_sparse_file_of_terabytes_is_refused_at_once)
{
    writeBytes(path("f"), der);
    std::filesystem::resize_file(path("f"), std::uintmax_t{4} << 40u);
    EXPECT_THAT(messagesOf(readDer("f")), ElementsAre(isTooLarge));
    EXPECT_THAT(messagesOf(readPem("f")), ElementsAre(isTooLarge));
}

TEST_F(CertificateFileTest, text_around_a_pem_certificate_does_not_matter)
{
    std::string crossed = pem;
    for (std::size_t i = 0; (i = crossed.find('\n', i)) != std::string::npos; i += 2) {
        crossed.insert(i, "\r");
    }
    const std::string otherKind = "-----BEGIN OTHER-----\nAAAA\n-----END OTHER-----\n";
    std::string olderName = pem;
    for (std::size_t i = 0; (i = olderName.find(" CERTIFICATE", i)) != std::string::npos; i += 9) {
        olderName.insert(i, " X509");
    }
    for (const std::string& text :
         {pem, "text before\n\n" + pem + "text behind\n", crossed, otherKind + pem,
          pem + "-----BEGIN CERTIFICATE-----\nbroken", olderName, std::string("\0\n", 2) + pem}) {
        const UaPkiCertificate certificate = readText(text);
        EXPECT_EQ(toStdString(certificate.toDER()), der) << text.substr(0, 60);
        EXPECT_THAT(messagesOf(certificate), IsEmpty());
    }
}

TEST_F(CertificateFileTest, the_first_of_several_pem_certificates_is_read)
{
    const std::string another = samplePem({.subject = "another"});
    EXPECT_EQ(readText(another + pem).commonName(), "another");
    EXPECT_EQ(readText(pem + another).commonName(), "subject");
}

TEST_F(CertificateFileTest, pem_texts_that_are_broken_are_null_with_messages)
{
    const std::size_t middle = pem.size() / 2;
    std::string badCharacter = pem;
    badCharacter[middle] = '!';
    const std::string trusted = "-----BEGIN TRUSTED CERTIFICATE-----" + pem.substr(27);
    for (const std::string& text :
         {pem.substr(0, middle), pem.substr(0, pem.rfind("-----END")), badCharacter, trusted,
          pem.substr(1), std::string("-----BEGIN CERTIFICATE-----\n-----END CERTIFICATE-----\n"),
          std::string("-----BEGIN CERTIFICATE-----\nMAA=\n-----END CERTIFICATE-----\n")}) {
        const UaPkiCertificate certificate = readText(text);
        EXPECT_TRUE(certificate.isNull()) << text.substr(0, 60);
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty())) << text.substr(0, 60);
    }
}

TEST_F(CertificateFileTest, a_pem_text_cut_anywhere_gives_what_the_library_gives)
{
    for (std::size_t size = 0; size < pem.size(); ++size) {
        const std::string text = pem.substr(0, size);
        const PkiHandle<BIO> bio(BIO_new_mem_buf(text.data(), static_cast<int>(size)));
        const PkiHandle<X509> expected(PEM_read_bio_X509(bio.get(), nullptr, nullptr, nullptr));
        ERR_clear_error();
        const UaPkiCertificate certificate = readText(text);
        EXPECT_EQ(certificate.isNull(), expected == nullptr) << size;
        EXPECT_EQ(messagesOf(certificate).empty(), !certificate.isNull()) << size;
    }
}

TEST_F(CertificateFileTest, a_pem_text_that_claims_to_be_encrypted_is_refused)
{
    for (const char* header :
         {"Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-256-CBC,00112233445566778899AABBCCDDEEFF\n\n",
          "Proc-Type: 4,ENCRYPTED\nDEK-Info: DES-EDE3-CBC,0011223344556677\n\n",
          "Proc-Type: 4,ENCRYPTED\n\n", "Proc-Type: 4,ENCRYPTED\nDEK-Info: NONE,00\n\n"}) {
        std::string text = pem;
        text.insert(text.find('\n') + 1, header);
        const UaPkiCertificate certificate = readText(text);
        EXPECT_TRUE(certificate.isNull()) << header;
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty())) << header;
    }
}

TEST_F(CertificateFileTest, a_place_that_can_not_be_written_is_told)
{
    const UaPkiCertificate certificate = sampleCertificate();
    EXPECT_EQ(certificate.toDERFile(path("x/y").c_str()), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    EXPECT_EQ(certificate.toPEMFile(path("x/y").c_str()), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    EXPECT_EQ(certificate.toDERFile(directory.uniFile("x/y")), -1);
    EXPECT_THAT(messagesOf(certificate), ElementsAre("Could not open file for writing"));
    EXPECT_EQ(certificate.toPEMFile(directory.uniFile("x/y")), -1);
    EXPECT_THAT(messagesOf(certificate), ElementsAre("Could not open file for writing"));
    const char* const none = nullptr;
    EXPECT_EQ(certificate.toDERFile(none), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
}

TEST_F(CertificateFileTest, another_engine_is_used_for_its_paths)
{
    MemoryFileEngine engine;
    engine.files["in"] = der;
    const UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(UaUniString("in"));
    ASSERT_FALSE(certificate.isNull());
    EXPECT_EQ(certificate.toDERFile(UaUniString("out")), 0);
    EXPECT_EQ(engine.files["out"], der);
    EXPECT_EQ(certificate.toPEMFile(UaUniString("text")), 0);
    EXPECT_EQ(engine.files["text"], pem);
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(CertificateFileTest, failures_of_the_engine_are_told_and_nothing_stays_open)
{
    MemoryFileEngine engine;
    engine.files["f"] = der;
    engine.failReading = true;
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromDERFile(UaUniString("f"))),
                ElementsAre("Could not read file"));
    const UaPkiCertificate certificate = sampleCertificate();
    engine.writeLimit = 100;
    EXPECT_EQ(certificate.toDERFile(UaUniString("out")), -1);
    EXPECT_THAT(messagesOf(certificate), ElementsAre("Could not write file"));
    engine.writeLimit = -1;
    engine.failClosing = true;
    EXPECT_EQ(certificate.toPEMFile(UaUniString("out")), -1);
    EXPECT_THAT(messagesOf(certificate), ElementsAre("Could not write file"));
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(CertificateFileTest, memory_short_for_the_bytes_is_a_failure)
{
    writeBytes(path("f"), der);
    const UaUniString name = directory.uniFile("f");
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return UaPkiCertificate::fromDERFile(name); },
        [](const UaPkiCertificate& certificate) { EXPECT_TRUE(certificate.isNull()); });
    EXPECT_GE(failures, 1u);
}

} // namespace
