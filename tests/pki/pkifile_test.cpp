#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/pkifile.h"
#include "pki/uapkierrorlist.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/allocationfaults.h"

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Errors : public UaPkiErrorList
{
};

std::vector<std::string> textsOf(const UaPkiErrorList& errors)
{
    std::vector<std::string> texts;
    for (const UaString& message : errors.getErrors()) {
        texts.emplace_back(message.toUtf8());
    }
    return texts;
}

std::string textOf(const std::optional<PkiBytes>& bytes)
{
    return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size())
                 : "nothing";
}

class PkiFileTest : public PkiTest
{
protected:
    /// All three ways to read, which must agree.
    std::string read(const std::string& name, OpcUa_Int64 limit)
    {
        const std::string path = directory.file(name);
        const std::string bytes = textOf(PkiFile_Read(path.c_str(), limit, errors));
        EXPECT_EQ(textOf(PkiFile_Read(UaUniString(path.c_str()), "rb", limit, errors)), bytes);
        EXPECT_EQ(textOf(PkiFile_ReadSized(UaUniString(path.c_str()), "rb", limit, errors)), bytes);
        return bytes;
    }

    TemporaryDirectory directory;
    Errors errors;
};

TEST_F(PkiFileTest, files_of_all_sizes_up_to_the_limit_are_read_whole)
{
    for (const std::size_t size : {0u, 1u, 8191u, 8192u, 8193u, 20'000u, 100'000u}) {
        const std::string bytes(size, 'b');
        writeBytes(directory.file("f"), bytes);
        EXPECT_EQ(read("f", 100'000), bytes);
        EXPECT_THAT(textsOf(errors), IsEmpty()) << size;
    }
}

TEST_F(PkiFileTest, one_byte_above_the_limit_is_too_much)
{
    for (const std::size_t limit : {0u, 1u, 8191u, 8192u, 50'000u}) {
        writeBytes(directory.file("f"), std::string(limit + 1, 'b'));
        EXPECT_EQ(read("f", static_cast<OpcUa_Int64>(limit)), "nothing");
        EXPECT_THAT(textsOf(errors), ElementsAre("The file is too large", "The file is too large",
                                                 "The file is too large"));
    }
}

TEST_F(PkiFileTest, a_missing_file_is_told_in_the_words_of_each_form)
{
    EXPECT_FALSE(PkiFile_Read(directory.uniFile("f"), "rb", 10, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not open file for reading"));
    EXPECT_FALSE(PkiFile_ReadSized(directory.uniFile("f"), "rb", 10, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not get file size"));
    EXPECT_FALSE(PkiFile_Read(directory.file("f").c_str(), 10, errors));
    EXPECT_THAT(textsOf(errors),
                ElementsAre(::testing::HasSubstr("No such file"), ::testing::HasSubstr("BIO")));
}

TEST_F(PkiFileTest, an_engine_that_lies_about_the_size_is_read_to_its_end)
{
    MemoryFileEngine engine;
    engine.files["f"] = std::string(5000, 'x');
    EXPECT_EQ(textOf(PkiFile_Read(UaUniString("f"), "rb", 5000, errors)), engine.files["f"]);
    engine.failReading = true;
    EXPECT_FALSE(PkiFile_ReadSized(UaUniString("f"), "rb", 5000, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not read file"));
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(PkiFileTest, bytes_are_written_by_both_forms)
{
    EXPECT_TRUE(PkiFile_Write(directory.file("a").c_str(), "bytes", 5, errors));
    EXPECT_TRUE(PkiFile_Write(directory.uniFile("b"), "wb", "bytes", 5, errors));
    EXPECT_TRUE(PkiFile_Write(directory.file("c").c_str(), "", 0, errors));
    EXPECT_EQ(readBytes(directory.file("a")), "bytes");
    EXPECT_EQ(readBytes(directory.file("b")), "bytes");
    EXPECT_TRUE(std::filesystem::exists(directory.file("c")));
    EXPECT_THAT(textsOf(errors), IsEmpty());
}

TEST_F(PkiFileTest, a_place_that_can_not_be_written_is_told)
{
    EXPECT_FALSE(PkiFile_Write(directory.uniFile("x/y"), "wb", "b", 1, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not open file for writing"));
    EXPECT_FALSE(PkiFile_Write(directory.file("x/y").c_str(), "b", 1, errors));
    EXPECT_THAT(textsOf(errors), ::testing::Not(IsEmpty()));
    EXPECT_FALSE(PkiFile_Write(static_cast<const char*>(nullptr), "b", 1, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not open file for writing"));
}

TEST_F(PkiFileTest, a_short_write_and_a_failing_close_are_failures)
{
    MemoryFileEngine engine;
    engine.writeLimit = 3;
    EXPECT_FALSE(PkiFile_Write(UaUniString("f"), "wb", "bytes", 5, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not write file"));
    engine.writeLimit = -1;
    engine.failClosing = true;
    EXPECT_FALSE(PkiFile_Write(UaUniString("f"), "wb", "bytes", 5, errors));
    EXPECT_THAT(textsOf(errors), ElementsAre("Could not write file"));
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(PkiFileTest, memory_short_for_the_bytes_is_a_failure)
{
    writeBytes(directory.file("f"), std::string(50'000, 'x'));
    const UaUniString path = directory.uniFile("f");
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return PkiFile_Read(path, "rb", 100'000, errors).has_value(); },
        [](bool isRead) { EXPECT_FALSE(isRead); });
    EXPECT_GE(failures, 2u);
    (void)errors.getErrors();
}

TEST(PkiBytesTest, keep_what_they_hold_while_they_grow_and_move)
{
    PkiBytes bytes;
    EXPECT_EQ(bytes.data(), nullptr);
    EXPECT_EQ(bytes.size(), 0u);
    bytes.setSize(1);
    EXPECT_EQ(bytes.size(), 0u) << "there is no room";
    ASSERT_TRUE(bytes.reserve(4));
    std::memcpy(bytes.data(), "abcd", 4);
    bytes.setSize(4);
    ASSERT_TRUE(bytes.reserve(1000));
    EXPECT_EQ(std::memcmp(bytes.data(), "abcd", 4), 0);
    EXPECT_GE(bytes.capacity(), 1000u);
    PkiBytes moved(std::move(bytes));
    EXPECT_EQ(moved.size(), 4u);
    PkiBytes assigned;
    assigned = std::move(moved);
    EXPECT_EQ(std::memcmp(assigned.data(), "abcd", 4), 0);
}

} // namespace
