#include "pki/uafileengine.h"
#include "tests/pki/temporarydirectory.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <sys/resource.h>
#include <sys/stat.h>

// What holds for the sources of this kind of system: names are bytes, files have modes, and pipes and
// devices have names as files do.

namespace {

class UaFileEnginePosixTest : public ::testing::Test
{
protected:
    UaUniString path(const char* name) const { return directory.uniFile(name); }
    mode_t modeOf(const char* name) const
    {
        struct stat state = {};
        EXPECT_EQ(stat(directory.file(name).c_str(), &state), 0);
        return state.st_mode & 07777u;
    }

    TemporaryDirectory directory;
    UaFileEngine engine;
    UaUniString here = directory.path().c_str();
};

/// Files may not grow beyond so many bytes while it lives, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, SIG_DFL);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit m_before = {};
};

/// An environment variable with another value while it lives.
class Environment
{
public:
    Environment(const char* name, const char* value)
        : m_name(name)
    {
        const char* const before = std::getenv(name);
        m_before = before != nullptr ? before : "";
        setenv(name, value, 1);
    }
    ~Environment()
    {
        if (m_before.empty()) {
            unsetenv(m_name);
        } else {
            setenv(m_name, m_before.c_str(), 1);
        }
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* m_name;
    std::string m_before;
};

TEST_F(UaFileEnginePosixTest, every_name_of_bytes_can_be_listed_and_opened)
{
    const char* const names[] = {
        "plain",
        "\xC3\xBC\xE2\x82\xAC",
        "\xF0\x9F\x94\x91.der",
        "\xFF\xFE",
        "cut \xE2\x82",
        "over\xC0\xAFlong",
        "\x80",
        "\xED\xA0\x80 surrogate",
        "\xF4\x90\x80\x80 beyond",
        "back\\slash",
        "line\nbreak",
    };
    for (const char* name : names) {
        writeBytes(directory.file(name), name);
    }
    const UaUniStringList entries = engine.entryList(here, 16, 1);
    EXPECT_EQ(static_cast<std::size_t>(entries.size()), std::size(names));
    for (const UaUniString& entry : entries) {
        EXPECT_GT(engine.fileSize(entry), 0) << entry.toUaString().toUtf8();
        EXPECT_TRUE(engine.remove(entry)) << entry.toUaString().toUtf8();
    }
    EXPECT_EQ(engine.count(here), 2);
}

TEST_F(UaFileEnginePosixTest, surrogates_are_one_character_of_a_name)
{
    const UaUniString name = here + UaUniString(u"/\xD83D\xDD11.der");
    EXPECT_TRUE(engine.mkdir(name));
    EXPECT_TRUE(std::filesystem::exists(directory.file("\xF0\x9F\x94\x91.der")));
    EXPECT_EQ(engine.entryList(here, 16, 0).at(0), name);
}

TEST_F(UaFileEnginePosixTest, a_path_with_a_zero_inside_is_no_path)
{
    writeBytes(directory.file("a"), "x");
    std::u16string units(path("a").view());
    units += u'\0';
    units += u"b";
    const UaUniString cut(units.data(), static_cast<OpcUa_Int64>(units.size()));
    EXPECT_FALSE(engine.exists(cut));
    EXPECT_EQ(engine.fopen(cut, "rb"), nullptr);
    EXPECT_EQ(engine.fopen(cut, "wb"), nullptr);
    EXPECT_EQ(engine.fileSize(cut), -1);
    EXPECT_FALSE(engine.remove(cut));
    EXPECT_FALSE(engine.rename(cut, path("c")));
    EXPECT_FALSE(engine.rename(path("a"), cut));
    EXPECT_FALSE(engine.copy(cut, path("c")));
    EXPECT_FALSE(engine.mkdir(cut));
    EXPECT_TRUE(engine.entryList(cut, 0, 0).isEmpty());
    EXPECT_EQ(engine.count(here), 3);
}

TEST_F(UaFileEnginePosixTest, a_path_beyond_the_systems_length_is_no_path)
{
    const UaUniString longest = std::string(5000, 'a').c_str();
    EXPECT_FALSE(engine.exists(longest));
    EXPECT_FALSE(engine.mkdir(longest));
    EXPECT_EQ(engine.fopen(longest, "wb"), nullptr);
}

TEST_F(UaFileEnginePosixTest, pipes_and_devices_are_never_waited_for)
{
    ASSERT_EQ(mkfifo(directory.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(engine.fileSize(path("pipe")), -1);
    EXPECT_EQ(engine.fopen(path("pipe"), "rb"), nullptr);
    EXPECT_EQ(engine.fopen(path("pipe"), "wb"), nullptr);
    EXPECT_FALSE(engine.copy(path("pipe"), path("to")));
    EXPECT_EQ(engine.fileSize("/dev/zero"), -1);
    EXPECT_EQ(engine.fopen("/dev/zero", "rb"), nullptr);
    EXPECT_EQ(engine.fopen(here, "rb"), nullptr) << "a directory";
    EXPECT_FALSE(engine.copy("/dev/zero", path("to")));
}

TEST_F(UaFileEnginePosixTest, close_tells_that_the_disk_was_full)
{
    const FullDisk disk(0);
    std::FILE* const stream = engine.fopen(path("file"), "wb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(engine.fwrite("x", 1, 1, stream), 1) << "it is in the buffer";
    EXPECT_FALSE(engine.fclose(stream));
}

TEST_F(UaFileEnginePosixTest, a_device_can_be_written)
{
    std::FILE* const stream = engine.fopen("/dev/null", "wb");
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(engine.fwrite("x", 1, 1, stream), 1);
    EXPECT_TRUE(engine.fclose(stream));
}

TEST_F(UaFileEnginePosixTest, copy_of_a_new_file_is_no_more_open_than_the_source)
{
    writeBytes(directory.file("from"), "secret");
    const mode_t before = umask(0);
    for (const mode_t mode : {0600u, 0640u, 0444u, 04755u}) {
        chmod(directory.file("from").c_str(), mode);
        EXPECT_TRUE(engine.copy(path("from"), path("to")));
        EXPECT_EQ(modeOf("to"), mode & 0777u);
        EXPECT_TRUE(engine.remove(path("to")));
    }
    umask(before);
}

TEST_F(UaFileEnginePosixTest, copy_over_a_file_keeps_that_files_mode)
{
    writeBytes(directory.file("from"), "new");
    writeBytes(directory.file("to"), "old");
    chmod(directory.file("from").c_str(), 0644);
    chmod(directory.file("to").c_str(), 0600);
    EXPECT_TRUE(engine.copy(path("from"), path("to")));
    EXPECT_EQ(readBytes(directory.file("to")), "new");
    EXPECT_EQ(modeOf("to"), 0600u);
}

TEST_F(UaFileEnginePosixTest, copy_follows_a_link_and_refuses_one_that_leads_nowhere)
{
    writeBytes(directory.file("from"), "new");
    writeBytes(directory.file("to"), "old");
    std::filesystem::create_symlink("to", directory.file("link"));
    std::filesystem::create_symlink("nowhere", directory.file("dangling"));
    EXPECT_TRUE(engine.copy(path("from"), path("link")));
    EXPECT_EQ(readBytes(directory.file("to")), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(directory.file("link")));
    EXPECT_FALSE(engine.copy(path("from"), path("dangling")));
}

TEST_F(UaFileEnginePosixTest, copy_to_a_full_disk_keeps_the_target_and_leaves_nothing_behind)
{
    writeBytes(directory.file("from"), std::string(200'000, 'n'));
    writeBytes(directory.file("to"), "old");
    {
        const FullDisk disk(100'000);
        EXPECT_FALSE(engine.copy(path("from"), path("to")));
        EXPECT_FALSE(engine.copy(path("from"), path("new")));
    }
    EXPECT_EQ(readBytes(directory.file("to")), "old");
    EXPECT_EQ(engine.count(here), 4);
}

TEST_F(UaFileEnginePosixTest, links_are_listed_as_what_they_lead_to)
{
    std::filesystem::create_directory(directory.file("dir"));
    std::filesystem::create_symlink("dir", directory.file("to_dir"));
    std::filesystem::create_symlink("nowhere", directory.file("dangling"));
    EXPECT_EQ(engine.entryList(here, 1 | 16, 0).size(), 2);
    EXPECT_EQ(engine.entryList(here, 2 | 16, 0).size(), 1);
}

TEST_F(UaFileEnginePosixTest, an_empty_path_is_searched_from_the_root)
{
    const UaUniStringList root = engine.entryList(UaUniString(), 16 | 1, 0);
    ASSERT_FALSE(root.isEmpty());
    EXPECT_EQ(root.at(0).at(0), u'/');
    EXPECT_TRUE(engine.exists(root.at(0)));
    EXPECT_EQ(engine.count(UaUniString()), engine.count("/"));
}

TEST_F(UaFileEnginePosixTest, count_keeps_sixteen_bits)
{
    // So many files take a disk seconds.
    const char* const memoryDisk = "/dev/shm";
    const Environment temporary("TMPDIR",
                                std::filesystem::exists(memoryDisk) ? memoryDisk : "/tmp");
    const TemporaryDirectory large;
    const UaUniString path(large.path().c_str());
    for (int i = 0; i < 65'536 - 1; ++i) {
        ASSERT_TRUE(engine.createFile(path, UaUniString::number(i)));
    }
    EXPECT_EQ(engine.count(path), 1) << "two dot entries make 65537";
}

TEST_F(UaFileEnginePosixTest, home_and_temporary_directories_are_those_of_the_user)
{
    EXPECT_EQ(engine.rootPath(), UaUniString(u"/"));
    {
        const Environment home("HOME", "/home/somebody");
        const Environment temporary("TMPDIR", "/elsewhere");
        EXPECT_EQ(engine.homePath(), UaUniString(u"/home/somebody"));
        EXPECT_EQ(engine.tempPath(), UaUniString(u"/elsewhere"));
    }
    const Environment home("HOME", "not absolute");
    const Environment temporary("TMPDIR", "not absolute");
    EXPECT_EQ(engine.homePath().at(0), u'/');
    EXPECT_EQ(engine.tempPath(), UaUniString(u"/tmp"));
}

TEST_F(UaFileEnginePosixTest, set_current_changes_where_relative_paths_begin)
{
    const std::string before = std::filesystem::current_path().string();
    writeBytes(directory.file("here"), "x");
    EXPECT_TRUE(engine.setCurrent(here));
    EXPECT_TRUE(engine.exists("here"));
    EXPECT_FALSE(engine.setCurrent("missing"));
    EXPECT_TRUE(engine.isRelativePath("here"));
    EXPECT_TRUE(engine.isRelativePath(UaUniString()));
    EXPECT_TRUE(engine.isRelativePath("\\here"));
    EXPECT_FALSE(engine.isRelativePath("/here"));
    std::filesystem::current_path(before);
}

} // namespace
