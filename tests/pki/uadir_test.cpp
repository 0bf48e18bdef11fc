#include "pki/uadir.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UaDirTest : public ::testing::Test
{
protected:
    UaUniString path(const char* name) const { return temporary.uniFile(name); }
    bool isThere(const char* name) const { return std::filesystem::exists(temporary.file(name)); }

    TemporaryDirectory temporary;
    UaDir directory{UaUniString(temporary.path().c_str())};
};

TEST_F(UaDirTest, an_empty_path_is_the_current_directory)
{
    EXPECT_EQ(UaDir(UaUniString()).path(), UaUniString(u"."));
    EXPECT_EQ(UaDir(UaUniString(u"")).path(), UaUniString(u"."));
    EXPECT_TRUE(UaDir(UaUniString()).exists());
}

TEST_F(UaDirTest, separators_are_converted_both_ways_on_every_system)
{
    EXPECT_EQ(UaDir::fromNativeSeparators(u"a\\b/c\\"), UaUniString(u"a/b/c/"));
    EXPECT_EQ(UaDir::toNativeSeparators(u"a\\b/c/"), UaUniString(u"a\\b\\c\\"));
    EXPECT_TRUE(UaDir::toNativeSeparators(UaUniString()).isEmpty());
}

TEST_F(UaDirTest, plain_operations_go_to_the_engine)
{
    EXPECT_TRUE(directory.mkdir(path("a")));
    EXPECT_TRUE(directory.exists("a"));
    writeBytes(temporary.file("f"), "1");
    EXPECT_TRUE(directory.copy(path("f"), path("g")));
    EXPECT_TRUE(directory.rename(path("g"), path("h")));
    EXPECT_EQ(readBytes(temporary.file("h")), "1");
    EXPECT_TRUE(directory.remove(path("h")));
    EXPECT_FALSE(directory.exists("h"));
    EXPECT_EQ(directory.count(), 4);
    EXPECT_EQ(directory.entryList(UaAbstractFileEngine::FilterFiles).size(), 1);
    EXPECT_TRUE(directory.rmdir(path("a")));
    EXPECT_FALSE(directory.isRelativePath(path("a")));
    EXPECT_TRUE(directory.isRelativePath("a/b"));
    EXPECT_TRUE(UaDir::canonicalPath(path("a/..")) == directory.path());
    EXPECT_TRUE(UaDir(UaDir::rootPath()).exists());
    EXPECT_TRUE(UaDir(UaDir::tempPath()).exists());
    EXPECT_FALSE(UaDir::homePath().isEmpty());
}

TEST_F(UaDirTest, exists_takes_the_name_for_itself_when_the_directory_is_missing)
{
    writeBytes(temporary.file("f"), "1");
    const UaDir missing(path("missing"));
    EXPECT_FALSE(missing.exists());
    EXPECT_TRUE(missing.exists(path("f")));
    EXPECT_FALSE(missing.exists("f"));
    EXPECT_FALSE(directory.exists(path("f"))) << "a whole path isn't below the directory";
}

TEST_F(UaDirTest, cd_moves_the_object_and_the_process)
{
    const std::string before = std::filesystem::current_path().string();
    ASSERT_TRUE(directory.mkdir(path("sub")));
    UaDir moving{UaUniString()};
    EXPECT_FALSE(moving.cd(path("missing")));
    EXPECT_EQ(moving.path(), UaUniString(u"."));
    EXPECT_TRUE(moving.cd(directory.path()));
    EXPECT_TRUE(moving.cd("sub"));
    EXPECT_EQ(moving.path(), path("sub"));
    EXPECT_TRUE(moving.exists());
    EXPECT_EQ(std::filesystem::current_path(), std::filesystem::canonical(temporary.file("sub")));
    std::filesystem::current_path(before);
}

TEST_F(UaDirTest, mkpath_of_nothing_is_false_and_traced)
{
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_FALSE(directory.mkpath(UaUniString()));
    EXPECT_FALSE(directory.mkpath(u""));
    EXPECT_THAT(TraceRecorder::messages(),
                ElementsAre("UaDir::mkpath: Empty or null file name(s)!\n",
                            "UaDir::mkpath: Empty or null file name(s)!\n"));
}

TEST_F(UaDirTest, mkpath_of_what_exists_is_true_and_traced_as_information)
{
    {
        const TraceRecorder trace(OpcUa_TraceLevel_System);
        EXPECT_TRUE(directory.mkpath(directory.path()));
        EXPECT_THAT(TraceRecorder::messages(),
                    ElementsAre("UaDir::mkpath: Path already exists!\n"));
    }
    const TraceRecorder trace(OpcUa_TraceLevel_Error | OpcUa_TraceLevel_Warning);
    EXPECT_TRUE(directory.mkpath(directory.path()));
    EXPECT_THAT(TraceRecorder::messages(), IsEmpty());
}

TEST_F(UaDirTest, mkpath_makes_all_that_is_missing)
{
    EXPECT_TRUE(directory.mkpath(path("a/b/c")));
    EXPECT_TRUE(isThere("a/b/c"));
    EXPECT_TRUE(directory.mkpath(path("a/b/d/")));
    EXPECT_TRUE(isThere("a/b/d"));
    EXPECT_TRUE(directory.mkpath(path("x//y")));
    EXPECT_TRUE(isThere("x/y"));
}

TEST_F(UaDirTest, mkpath_takes_relative_paths)
{
    const std::string before = std::filesystem::current_path().string();
    std::filesystem::current_path(temporary.path());
    EXPECT_TRUE(directory.mkpath("p/q"));
    std::filesystem::current_path(before);
    EXPECT_TRUE(isThere("p/q"));
}

TEST_F(UaDirTest, mkpath_below_a_file_fails)
{
    writeBytes(temporary.file("f"), "1");
    EXPECT_FALSE(directory.mkpath(path("f/a/b")));
    EXPECT_EQ(readBytes(temporary.file("f")), "1");
}

TEST_F(UaDirTest, rmpath_of_nothing_and_of_what_is_missing_is_false_and_traced)
{
    const TraceRecorder trace(OpcUa_TraceLevel_Error);
    EXPECT_FALSE(directory.rmpath(UaUniString()));
    EXPECT_FALSE(directory.rmpath(path("missing")));
    EXPECT_THAT(TraceRecorder::messages(),
                ElementsAre("UaDir::rmpath: Empty or null file name(s)!\n",
                            "UaDir::rmpath: Specified file path does not exist!\n"));
}

TEST_F(UaDirTest, rmpath_goes_up_as_long_as_directories_are_empty)
{
    ASSERT_TRUE(directory.mkpath(path("top/a/b/c")));
    writeBytes(temporary.file("top/stays"), "1");
    EXPECT_TRUE(directory.rmpath(path("top/a/b/c")));
    EXPECT_FALSE(isThere("top/a"));
    EXPECT_TRUE(isThere("top/stays"));
}

TEST_F(UaDirTest, rmpath_is_true_even_when_nothing_could_be_removed)
{
    ASSERT_TRUE(directory.mkpath(path("a/b")));
    EXPECT_TRUE(directory.rmpath(path("a")));
    EXPECT_TRUE(isThere("a/b"));
    writeBytes(temporary.file("f"), "1");
    EXPECT_TRUE(directory.rmpath(path("f")));
    EXPECT_TRUE(isThere("f"));
}

TEST_F(UaDirTest, rmpath_with_a_separator_at_the_end_removes_the_last_directory_alone)
{
    // The part behind the separator is dropped first, and then the same directory is tried again.
    ASSERT_TRUE(directory.mkpath(path("a/b")));
    EXPECT_TRUE(directory.rmpath(path("a/b/")));
    EXPECT_FALSE(isThere("a/b"));
    EXPECT_TRUE(isThere("a"));
}

TEST_F(UaDirTest, count_recursive_sums_the_directories_at_all_depths)
{
    EXPECT_EQ(directory.countRecursive(), 0u);
    ASSERT_TRUE(directory.mkpath(path("a/b/c")));
    ASSERT_TRUE(directory.mkpath(path("a/d")));
    ASSERT_TRUE(directory.mkpath(path("e")));
    writeBytes(temporary.file("a/file"), "1");
    EXPECT_EQ(directory.countRecursive(), 5u);
    EXPECT_EQ(UaDir(path("missing")).countRecursive(), 0u);
}

TEST_F(UaDirTest, count_recursive_comes_to_an_end_in_a_circle_of_links)
{
    ASSERT_TRUE(directory.mkpath(path("a")));
    std::filesystem::create_directory_symlink(temporary.path(), temporary.file("a/back"));
    const OpcUa_UInt32 count = directory.countRecursive();
    EXPECT_GE(count, 2u);
    EXPECT_LE(count, UaDir::LargestCount);
}

TEST_F(UaDirTest, works_on_whatever_engine_is_in_place)
{
    MemoryFileEngine engine;
    const UaDir memory(u"x");
    EXPECT_TRUE(memory.mkpath("x/y"));
    EXPECT_EQ(engine.files.count("x/"), 1u);
    EXPECT_EQ(engine.files.count("x/y/"), 1u);
    EXPECT_EQ(UaDir::homePath(), UaUniString(u"/home"));
    EXPECT_FALSE(isThere("x"));
}

} // namespace
