#include "base/uaunistring.h"
#include "pki/pkifile.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkirevocationlist.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/allocationfaults.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

// Lists in files.

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

UaPkiRevocationList sampleList()
{
    UaPkiRevocationList list(3600, identityOf("Authority"), 7);
    EXPECT_TRUE(list.sign(sampleKeyPair().privateKey()));
    return list;
}

class RevocationListFileTest : public PkiTest
{
protected:
    /// Reads in both forms, which must agree; the file engine's result.
    UaPkiRevocationList read(const std::string& name) const
    {
        const UaPkiRevocationList plain = UaPkiRevocationList::fromFile(path(name).c_str());
        UaPkiRevocationList engine = UaPkiRevocationList::fromFile(directory.uniFile(name));
        EXPECT_EQ(plain.isNull(), engine.isNull()) << name;
        EXPECT_EQ(plain.getErrors().empty(), !plain.isNull()) << name;
        EXPECT_EQ(plain.toDER(), engine.toDER()) << name;
        return engine;
    }
    void expectRefused(const std::string& name, const std::string& what) const
    {
        const UaPkiRevocationList refused = read(name);
        EXPECT_TRUE(refused.isNull()) << what;
        EXPECT_THAT(messagesOf(refused), Not(IsEmpty())) << what;
        EXPECT_EQ(ERR_peek_error(), 0u) << what;
    }
    [[nodiscard]] std::string path(const std::string& name) const { return directory.file(name); }

    TemporaryDirectory directory;
    const UaPkiRevocationList list = sampleList();
    const std::string derBytes = toStdString(list.toDER());
};

TEST_F(RevocationListFileTest, lists_go_out_and_in_by_every_form)
{
    EXPECT_EQ(list.toDERFile(path("a.der").c_str()), 1);
    EXPECT_EQ(list.toDERFile(directory.uniFile("b.der")), 1);
    EXPECT_EQ(list.toPEMFile(path("a.pem").c_str()), 1);
    EXPECT_EQ(list.toPEMFile(directory.uniFile("b.pem")), 1);
    EXPECT_THAT(messagesOf(list), IsEmpty());
    EXPECT_EQ(readBytes(path("a.der")), derBytes);
    EXPECT_EQ(readBytes(path("b.der")), derBytes);
    EXPECT_THAT(readBytes(path("a.pem")), StartsWith("-----BEGIN X509 CRL-----\n"));
    EXPECT_EQ(readBytes(path("a.pem")), readBytes(path("b.pem")));
    for (const char* name : {"a.der", "b.der", "a.pem", "b.pem"}) {
        EXPECT_EQ(toStdString(read(name).toDER()), derBytes) << name;
    }
}

TEST_F(RevocationListFileTest, text_is_tried_first_and_der_second)
{
    MemoryFileEngine engine;
    ASSERT_EQ(list.toPEMFile(UaUniString("text")), 1);
    ASSERT_EQ(list.toDERFile(UaUniString("binary")), 1);
    EXPECT_EQ(UaPkiRevocationList::fromFile(UaUniString("text")).toDER(), list.toDER());
    EXPECT_EQ(UaPkiRevocationList::fromFile(UaUniString("binary")).toDER(), list.toDER());
    EXPECT_THAT(engine.calls,
                ElementsAre("wt text", "wb binary", "rt text", "rt binary", "rb binary"));
    EXPECT_EQ(engine.openStreams(), 0u);
    EXPECT_EQ(engine.files["binary"], derBytes);
}

TEST_F(RevocationListFileTest, a_missing_file_is_told)
{
    const UaPkiRevocationList engine = UaPkiRevocationList::fromFile(directory.uniFile("none"));
    EXPECT_TRUE(engine.isNull());
    EXPECT_THAT(messagesOf(engine), ElementsAre("Could not open file for reading"));
    const UaPkiRevocationList plain = UaPkiRevocationList::fromFile(path("none").c_str());
    EXPECT_TRUE(plain.isNull());
    EXPECT_THAT(messagesOf(plain), ElementsAre(HasSubstr("No such file"), HasSubstr("BIO")));
    const UaPkiRevocationList null =
        UaPkiRevocationList::fromFile(static_cast<const char*>(nullptr));
    EXPECT_TRUE(null.isNull());
    EXPECT_THAT(messagesOf(null), ElementsAre("Could not open file for reading"));
    expectRefused("", "a directory");
}

TEST_F(RevocationListFileTest, what_is_no_list_loads_as_nothing)
{
    const std::string pem = [&] {
        EXPECT_EQ(list.toPEMFile(path("pem").c_str()), 1);
        return readBytes(path("pem"));
    }();
    const struct
    {
        const char* name;
        std::string bytes;
    } rows[] = {
        {"empty", ""},
        {"garbage", "garbage"},
        {"certificate", sampleDer()},
        {"certificate as text", samplePem()},
        {"zeros", std::string(5000, '\0')},
        {"dashes", std::string(100'000, '-')},
        {"text without an end", pem.substr(0, pem.size() - 10)},
        {"text cut in the middle", pem.substr(0, pem.size() / 2)},
        {"start line alone", "-----BEGIN X509 CRL-----\n"},
        {"no content", "-----BEGIN X509 CRL-----\n-----END X509 CRL-----\n"},
        {"no base 64", "-----BEGIN X509 CRL-----\n????\n-----END X509 CRL-----\n"},
        {"another content", "-----BEGIN X509 CRL-----\nMAA=\n-----END X509 CRL-----\n"},
    };
    for (const auto& row : rows) {
        writeBytes(path("f"), row.bytes);
        expectRefused("f", row.name);
    }
}

TEST_F(RevocationListFileTest, text_around_the_list_does_not_matter)
{
    ASSERT_EQ(list.toPEMFile(path("pem").c_str()), 1);
    const std::string pem = readBytes(path("pem"));
    std::string carriageReturns;
    for (const char character : pem) {
        carriageReturns += character == '\n' ? std::string("\r\n") : std::string(1, character);
    }
    for (const std::string& text :
         {"Certificate Revocation List:\n" + pem, pem + "more words", samplePem() + pem,
          "-----BEGIN NOTHING-----\nMAA=\n-----END NOTHING-----\n" + pem, pem + pem,
          carriageReturns}) {
        writeBytes(path("f"), text);
        EXPECT_EQ(toStdString(read("f").toDER()), derBytes) << text;
    }
}

TEST_F(RevocationListFileTest, text_that_claims_to_be_encrypted_is_refused_without_asking)
{
    for (const char* header :
         {"Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-256-CBC,00112233445566778899AABBCCDDEEFF\n\n",
          "Proc-Type: 4,ENCRYPTED\nDEK-Info: DES-EDE3-CBC,0011\n\n",
          "Proc-Type: 4,ENCRYPTED\n\n"}) {
        writeBytes(path("f"), std::string("-----BEGIN X509 CRL-----\n") + header +
                                  "AAAAAAAAAAAAAAAAAAAAAA==\n-----END X509 CRL-----\n");
        expectRefused("f", header);
    }
}

TEST_F(RevocationListFileTest, a_file_is_read_up_to_its_bound)
{
    writeBytes(path("f"), derBytes);
    std::filesystem::resize_file(path("f"), PkiFile_LargestListSize);
    EXPECT_EQ(toStdString(read("f").toDER()), derBytes);
    std::filesystem::resize_file(path("f"), PkiFile_LargestListSize + 1);
    const UaPkiRevocationList plain = UaPkiRevocationList::fromFile(path("f").c_str());
    EXPECT_TRUE(plain.isNull());
    EXPECT_THAT(messagesOf(plain), ElementsAre("The file is too large"));
    const UaPkiRevocationList engine = UaPkiRevocationList::fromFile(directory.uniFile("f"));
    EXPECT_TRUE(engine.isNull());
    EXPECT_THAT(messagesOf(engine), ElementsAre("The file is too large"));
}

TEST_F(RevocationListFileTest, a_list_cut_at_any_byte_is_refused_with_messages)
{
    MemoryFileEngine engine;
    for (std::size_t size = 0; size < derBytes.size(); ++size) {
        engine.files["f"] = derBytes.substr(0, size);
        const UaPkiRevocationList cut = UaPkiRevocationList::fromFile(UaUniString("f"));
        EXPECT_TRUE(cut.isNull()) << size;
        EXPECT_THAT(messagesOf(cut), Not(IsEmpty())) << size;
    }
}

TEST_F(RevocationListFileTest, a_target_that_can_not_be_opened_gives_0_without_a_message)
{
    for (const std::string& name : {std::string("missing/f"), std::string()}) {
        const std::string target = name.empty() ? "" : path(name);
        EXPECT_EQ(list.toDERFile(target.c_str()), 0);
        EXPECT_EQ(list.toPEMFile(target.c_str()), 0);
        EXPECT_EQ(list.toDERFile(UaUniString(target.c_str())), 0);
        EXPECT_EQ(list.toPEMFile(UaUniString(target.c_str())), 0);
    }
    EXPECT_EQ(list.toDERFile(static_cast<const char*>(nullptr)), 0);
    EXPECT_EQ(list.toPEMFile(static_cast<const char*>(nullptr)), 0);
    EXPECT_THAT(messagesOf(list), IsEmpty());
}

TEST_F(RevocationListFileTest, a_null_list_gives_0_and_leaves_the_file_alone)
{
    writeBytes(path("f"), "before");
    const UaPkiRevocationList null;
    EXPECT_EQ(null.toDERFile(path("f").c_str()), 0);
    EXPECT_EQ(null.toPEMFile(path("f").c_str()), 0);
    EXPECT_EQ(null.toDERFile(directory.uniFile("f")), 0);
    EXPECT_EQ(null.toPEMFile(directory.uniFile("f")), 0);
    EXPECT_THAT(messagesOf(null), IsEmpty());
    EXPECT_EQ(readBytes(path("f")), "before");
}

TEST_F(RevocationListFileTest, a_failed_write_leaves_messages_and_counts_as_done_through_the_engine)
{
    MemoryFileEngine engine;
    engine.writeLimit = 10;
    EXPECT_EQ(list.toDERFile(UaUniString("f")), 1);
    EXPECT_THAT(messagesOf(list), ElementsAre("Could not write file"));
    EXPECT_EQ(list.toPEMFile(UaUniString("f")), 1);
    EXPECT_THAT(messagesOf(list), ElementsAre("Could not write file"));
    engine.writeLimit = -1;
    engine.failClosing = true;
    EXPECT_EQ(list.toDERFile(UaUniString("f")), 1);
    EXPECT_THAT(messagesOf(list), ElementsAre("Could not write file"));
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(RevocationListFileTest, a_full_disk_is_told)
{
    const char* const fullDisk = "/dev/full";
    if (!std::filesystem::exists(fullDisk)) {
        GTEST_SKIP() << "no device that is always full";
    }
    EXPECT_EQ(list.toDERFile(fullDisk), 0);
    EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
    EXPECT_EQ(list.toPEMFile(fullDisk), 0);
    EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
    EXPECT_EQ(list.toDERFile(UaUniString(fullDisk)), 1);
    EXPECT_THAT(messagesOf(list), ElementsAre("Could not write file"));
    EXPECT_EQ(list.toPEMFile(UaUniString(fullDisk)), 1);
    EXPECT_THAT(messagesOf(list), ElementsAre("Could not write file"));
}

TEST_F(RevocationListFileTest, a_failing_read_is_told)
{
    MemoryFileEngine engine;
    engine.files["f"] = derBytes;
    engine.failReading = true;
    const UaPkiRevocationList failed = UaPkiRevocationList::fromFile(UaUniString("f"));
    EXPECT_TRUE(failed.isNull());
    EXPECT_THAT(messagesOf(failed), ElementsAre("Could not read file"));
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(RevocationListFileTest, memory_short_for_the_bytes_gives_a_null_list)
{
    ASSERT_EQ(list.toDERFile(directory.uniFile("f")), 1);
    const UaUniString file = directory.uniFile("f");
    const std::size_t failures =
        forEveryFailingAllocation([&] { return UaPkiRevocationList::fromFile(file); },
                                  [](const UaPkiRevocationList& result) {
                                      EXPECT_TRUE(result.isNull());
                                      EXPECT_TRUE(result.toDER().isEmpty());
                                  });
    EXPECT_GE(failures, 2u);
    const std::size_t encodings =
        forEveryFailingAllocation([&] { return list.toDER(); },
                                  [](const UaByteArray& bytes) { EXPECT_TRUE(bytes.isEmpty()); });
    EXPECT_GE(encodings, 1u);
}

} // namespace
