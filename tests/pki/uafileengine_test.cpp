#include "pki/uafileengine.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class UaFileEngineTest : public ::testing::Test
{
protected:
    UaUniString path(const char* name) const { return directory.uniFile(name); }

    TemporaryDirectory directory;
    UaFileEngine engine;
    UaUniString here = directory.path().c_str();
};

std::vector<std::string> namesOf(const UaUniStringList& list, const std::string& directory)
{
    std::vector<std::string> names;
    for (const UaUniString& entry : list) {
        const std::string text = entry.toUaString().toUtf8();
        EXPECT_EQ(text.rfind(directory + "/", 0), 0u) << text;
        names.push_back(text.substr(directory.size() + 1));
    }
    return names;
}

TEST_F(UaFileEngineTest, remove_takes_files_alone_and_traces_failures)
{
    writeBytes(directory.file("a"), "x");
    EXPECT_TRUE(engine.remove(path("a")));
    EXPECT_FALSE(std::filesystem::exists(directory.file("a")));

    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_FALSE(engine.remove(path("a")));
    EXPECT_FALSE(engine.remove(here));
    EXPECT_TRUE(std::filesystem::exists(directory.path()));
    ASSERT_EQ(TraceRecorder::messages().size(), 2u);
    EXPECT_EQ(TraceRecorder::messages()[0],
              "UaFileEngine::remove: Invalid File Handle. GetLastError reports 2\n");
}

TEST_F(UaFileEngineTest, copy_overwrites_its_target)
{
    writeBytes(directory.file("from"), "new");
    writeBytes(directory.file("to"), "old and longer");
    EXPECT_TRUE(engine.copy(path("from"), path("to")));
    EXPECT_EQ(readBytes(directory.file("to")), "new");
    EXPECT_EQ(readBytes(directory.file("from")), "new");
    EXPECT_EQ(engine.count(here), 4) << "something was left behind";
}

TEST_F(UaFileEngineTest, copy_takes_empty_and_large_files)
{
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, std::size_t{300'000}}) {
        const std::string bytes(size, 'b');
        writeBytes(directory.file("from"), bytes);
        EXPECT_TRUE(engine.copy(path("from"), path("to")));
        EXPECT_EQ(readBytes(directory.file("to")), bytes);
    }
}

TEST_F(UaFileEngineTest, copy_that_fails_traces_the_code_from_before_and_keeps_the_target)
{
    writeBytes(directory.file("to"), "old");
    const TraceRecorder trace;
    errno = 77;
    EXPECT_FALSE(engine.copy(path("missing"), path("to")));
    EXPECT_THAT(TraceRecorder::messages(),
                ElementsAre("UaFileEngine::copy: Could not write into the ini file!\n",
                            "Error code: 77\n"));
    EXPECT_EQ(readBytes(directory.file("to")), "old");
}

TEST_F(UaFileEngineTest, copy_refuses_what_it_must_not_replace)
{
    writeBytes(directory.file("from"), "bytes");
    std::filesystem::create_directory(directory.file("folder"));
    std::filesystem::create_hard_link(directory.file("from"), directory.file("same"));
    EXPECT_FALSE(engine.copy(path("from"), path("from")));
    EXPECT_FALSE(engine.copy(path("from"), path("same")));
    EXPECT_FALSE(engine.copy(path("from"), path("folder")));
    EXPECT_FALSE(engine.copy(path("folder"), path("to")));
    EXPECT_FALSE(engine.copy(path("from"), path("missing/to")));
    EXPECT_EQ(readBytes(directory.file("from")), "bytes");
}

TEST_F(UaFileEngineTest, rename_keeps_both_files_when_the_name_is_taken)
{
    writeBytes(directory.file("from"), "1");
    writeBytes(directory.file("to"), "2");
    EXPECT_FALSE(engine.rename(path("from"), path("to")));
    EXPECT_EQ(readBytes(directory.file("from")), "1");
    EXPECT_EQ(readBytes(directory.file("to")), "2");
    EXPECT_TRUE(engine.rename(path("from"), path("third")));
    EXPECT_EQ(readBytes(directory.file("third")), "1");
    EXPECT_FALSE(engine.exists(path("from")));
    EXPECT_FALSE(engine.rename(path("from"), path("fourth")));
}

TEST_F(UaFileEngineTest, rename_moves_directories_too)
{
    std::filesystem::create_directory(directory.file("folder"));
    writeBytes(directory.file("folder/file"), "1");
    EXPECT_TRUE(engine.rename(path("folder"), path("moved")));
    EXPECT_EQ(readBytes(directory.file("moved/file")), "1");
}

TEST_F(UaFileEngineTest, link_gives_the_same_file_a_second_name)
{
    writeBytes(directory.file("target"), "1");
    EXPECT_TRUE(engine.link(path("target"), path("link")));
    writeBytes(directory.file("target"), "2");
    EXPECT_EQ(readBytes(directory.file("link")), "2");
    EXPECT_FALSE(engine.link(path("target"), path("link")));
    EXPECT_FALSE(engine.link(path("missing"), path("other")));
}

TEST_F(UaFileEngineTest, mkdir_and_rmdir_take_one_directory_and_trace_failures)
{
    EXPECT_TRUE(engine.mkdir(path("a")));
    EXPECT_TRUE(engine.mkdir(path("a/b")));
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_FALSE(engine.mkdir(path("a")));
    EXPECT_FALSE(engine.mkdir(path("x/y")));
    EXPECT_FALSE(engine.rmdir(path("a"))) << "it isn't empty";
    EXPECT_THAT(TraceRecorder::messages(),
                ElementsAre("UaFileEngine::mkdir: Invalid File Handle. GetLastError reports 17\n",
                            "UaFileEngine::mkdir: Invalid File Handle. GetLastError reports 2\n",
                            "UaFileEngine::rmdir: Invalid File Handle. GetLastError reports 39\n"));
    EXPECT_TRUE(engine.rmdir(path("a/b")));
    EXPECT_TRUE(engine.rmdir(path("a")));
}

TEST_F(UaFileEngineTest, files_are_not_sequential)
{
    EXPECT_FALSE(engine.isSequential());
}

TEST_F(UaFileEngineTest, create_file_makes_an_empty_file_once)
{
    EXPECT_TRUE(engine.createFile(here, "new"));
    EXPECT_EQ(engine.fileSize(path("new")), 0);
    writeBytes(directory.file("new"), "kept");
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_FALSE(engine.createFile(here, "new"));
    EXPECT_EQ(readBytes(directory.file("new")), "kept");
    EXPECT_FALSE(engine.createFile(path("missing"), "new"));
    EXPECT_THAT(
        TraceRecorder::messages(),
        ElementsAre("UaFileEngine::createFile: Invalid File Handle. GetLastError reports 17\n",
                    "UaFileEngine::createFile: Invalid File Handle. GetLastError reports 2\n"));
}

TEST_F(UaFileEngineTest, exists_finds_files_and_directories)
{
    writeBytes(directory.file("a"), "x");
    EXPECT_TRUE(engine.exists(path("a")));
    EXPECT_TRUE(engine.exists(here));
    EXPECT_FALSE(engine.exists(path("b")));
    EXPECT_FALSE(engine.exists(UaUniString()));
}

TEST_F(UaFileEngineTest, streams_write_and_read_whole_elements)
{
    std::FILE* stream = engine.fopen(path("file"), "wb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(engine.fwrite("abcdefg", 1, 7, stream), 7);
    EXPECT_TRUE(engine.fclose(stream));

    stream = engine.fopen(path("file"), "rb");
    ASSERT_NE(stream, nullptr);
    std::array<char, 8> block{};
    EXPECT_EQ(engine.fread(block.data(), 3, 3, stream), 2) << "two whole elements of three";
    EXPECT_EQ(std::string(block.data()), "abcdefg");
    EXPECT_TRUE(engine.fclose(stream));

    stream = engine.fopen(path("file"), "ab");
    EXPECT_EQ(engine.fwrite("hi", 2, 1, stream), 1);
    EXPECT_TRUE(engine.fclose(stream));
    EXPECT_EQ(readBytes(directory.file("file")), "abcdefghi");
}

TEST_F(UaFileEngineTest, streams_refuse_nonsense)
{
    std::array<char, 4> block{};
    EXPECT_FALSE(engine.fclose(nullptr));
    EXPECT_EQ(engine.fread(block.data(), 1, 4, nullptr), 0);
    EXPECT_EQ(engine.fwrite(block.data(), 1, 4, nullptr), 0);
    EXPECT_EQ(engine.fopen(path("missing"), "rb"), nullptr);
    EXPECT_EQ(engine.fopen(path("missing/file"), "wb"), nullptr);
    for (const char* mode : {static_cast<const char*>(nullptr), "", "x", "?"}) {
        EXPECT_EQ(engine.fopen(path("file"), mode), nullptr);
    }
    writeBytes(directory.file("file"), "abcd");
    std::FILE* const stream = engine.fopen(path("file"), "rt");
    ASSERT_NE(stream, nullptr);
    const OpcUa_Int64 most = std::numeric_limits<OpcUa_Int64>::max();
    EXPECT_EQ(engine.fread(block.data(), -1, 4, stream), 0);
    EXPECT_EQ(engine.fread(block.data(), 1, -4, stream), 0);
    EXPECT_EQ(engine.fread(block.data(), 4, most, stream), 0) << "the product has no 64 bits";
    EXPECT_EQ(engine.fread(nullptr, 1, 4, stream), 0);
    EXPECT_EQ(engine.fread(block.data(), 1, 4, stream), 4);
    EXPECT_TRUE(engine.fclose(stream));
}

TEST_F(UaFileEngineTest, file_size_is_that_of_a_file_and_minus_one_otherwise)
{
    writeBytes(directory.file("a"), std::string(12345, 'x'));
    EXPECT_EQ(engine.fileSize(path("a")), 12345);
    EXPECT_EQ(engine.fileSize(path("missing")), -1);
    EXPECT_EQ(engine.fileSize(here), -1);
}

struct CanonicalRow
{
    const char* path;
    const char* expected; ///< Null for a path below the current directory.
};

class CanonicalPath : public ::testing::TestWithParam<CanonicalRow>
{
};

TEST_P(CanonicalPath, is_absolute_and_without_dots)
{
    const UaFileEngine engine;
    EXPECT_STREQ(engine.canonicalPath(GetParam().path).toUaString().toUtf8(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CanonicalPath,
    ::testing::Values(CanonicalRow{"/", "/"}, CanonicalRow{"/a/b", "/a/b"},
                      CanonicalRow{"/a/./b", "/a/b"}, CanonicalRow{"/a/../b", "/b"},
                      CanonicalRow{"/a/b/..", "/a"}, CanonicalRow{"/../../a", "/a"},
                      CanonicalRow{"/..", "/"}, CanonicalRow{"/.", "/"},
                      CanonicalRow{"//a///b", "/a/b"}, CanonicalRow{"/a/b/", "/a/b/"},
                      CanonicalRow{"/a/...", "/a/..."}, CanonicalRow{"/.a/..b", "/.a/..b"}));

TEST_F(UaFileEngineTest, canonical_path_of_a_relative_one_begins_with_the_current_directory)
{
    const std::string current = std::filesystem::current_path().string();
    EXPECT_EQ(engine.canonicalPath("a/../b").toUaString().view(), current + "/b");
    EXPECT_EQ(engine.canonicalPath(".").toUaString().view(), current);
}

TEST_F(UaFileEngineTest, canonical_path_that_fails_is_empty_and_traced)
{
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_TRUE(engine.canonicalPath(UaUniString()).isEmpty());
    const std::string expected =
        "UaFileEngine::canonicalPath: Could not canonicalize the path !!!\n";
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre(expected, "Error code: 2\n"));
    EXPECT_TRUE(engine.canonicalPath(std::string(100'000, 'a').c_str()).isEmpty());
}

class EntryList : public UaFileEngineTest
{
protected:
    EntryList()
    {
        for (const char* name : {"b", "a", "c.der"}) {
            writeBytes(directory.file(name), "x");
        }
        std::filesystem::create_directory(directory.file("dir"));
        std::filesystem::permissions(directory.file("c.der"), std::filesystem::perms::owner_read);
    }

    std::vector<std::string> list(OpcUa_UInt32 filters, OpcUa_UInt32 sort = 0)
    {
        return namesOf(engine.entryList(here, filters, sort), directory.path());
    }
};

TEST_F(EntryList, no_filter_gives_everything)
{
    EXPECT_THAT(list(0), UnorderedElementsAre(".", "..", "a", "b", "c.der", "dir"));
}

TEST_F(EntryList, filter_16_leaves_the_dot_entries_out)
{
    EXPECT_THAT(list(16), UnorderedElementsAre("a", "b", "c.der", "dir"));
}

TEST_F(EntryList, filter_1_gives_directories_alone)
{
    EXPECT_THAT(list(1), UnorderedElementsAre(".", "..", "dir"));
    EXPECT_THAT(list(1 | 16), UnorderedElementsAre("dir"));
}

TEST_F(EntryList, filter_2_gives_files_alone)
{
    EXPECT_THAT(list(2), UnorderedElementsAre("a", "b", "c.der"));
}

TEST_F(EntryList, both_kinds_together_give_everything)
{
    EXPECT_THAT(list(1 | 2 | 16), UnorderedElementsAre("a", "b", "c.der", "dir"));
}

TEST_F(EntryList, filter_64_hides_what_its_owner_may_not_write)
{
    EXPECT_THAT(list(2 | 64), UnorderedElementsAre("a", "b"));
    EXPECT_THAT(list(16 | 64), UnorderedElementsAre("a", "b", "dir"));
    EXPECT_THAT(list(1 | 2 | 16 | 64), UnorderedElementsAre("a", "b", "dir"));
}

TEST_F(EntryList, sort_1_orders_by_name)
{
    const TraceRecorder trace;
    EXPECT_THAT(list(16, 1), ElementsAre("a", "b", "c.der", "dir"));
    EXPECT_THAT(TraceRecorder::messages(), IsEmpty());
}

TEST_F(EntryList, other_sorts_are_traced_and_leave_the_list_unsorted)
{
    const std::string unhandled = "UaFileEngine::entryList: Unhandled sort!!!";
    const std::string invalid = "UaFileEngine::entryList: Invalid sort!!!";
    const std::vector<std::string> unsorted = list(16);
    struct Row
    {
        OpcUa_UInt32 sort;
        std::vector<std::string> messages;
    };
    const std::vector<Row> rows = {
        {2, {unhandled, invalid}}, {4, {unhandled, invalid}}, {3, {invalid}}, {5, {invalid}},
        {0xFFFFFFFFu, {invalid}},
    };
    for (const Row& row : rows) {
        const TraceRecorder trace(OpcUa_TraceLevel_Error);
        EXPECT_EQ(list(16, row.sort), unsorted) << row.sort;
        EXPECT_EQ(TraceRecorder::messages(), row.messages) << row.sort;
    }
}

TEST_F(EntryList, missing_directory_gives_an_empty_list_and_a_trace)
{
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_TRUE(engine.entryList(path("missing"), 0, 0).isEmpty());
    EXPECT_TRUE(engine.entryList(path("a"), 0, 0).isEmpty()) << "a file";
    EXPECT_THAT(
        TraceRecorder::messages(),
        ElementsAre("UaFileEngine::entryList: Invalid File Handle. GetLastError reports 2\n",
                    "UaFileEngine::entryList: Invalid File Handle. GetLastError reports 20\n"));
}

TEST_F(EntryList, path_stands_before_the_name_as_it_was_given)
{
    const UaUniStringList entries = engine.entryList(here + UaUniString(u"/"), 16 | 1, 0);
    ASSERT_EQ(entries.size(), 1);
    EXPECT_EQ(entries.at(0), here + UaUniString(u"//dir"));
}

TEST_F(UaFileEngineTest, count_has_the_dot_entries)
{
    EXPECT_EQ(engine.count(here), 2);
    writeBytes(directory.file("a"), "x");
    std::filesystem::create_directory(directory.file("b"));
    EXPECT_EQ(engine.count(here), 4);
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_EQ(engine.count(path("missing")), 0);
    EXPECT_THAT(TraceRecorder::messages(),
                ElementsAre("UaFileEngine::count: Invalid File Handle. GetLastError reports 2\n"));
}

} // namespace
