#include "platform/privatefile.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What the system does to the calls of the file writer.
struct Faults
{
    ssize_t room = -1;      ///< Bytes that still fit on the disk; -1 is no limit.
    std::size_t pieces = 0; ///< Writes at most so many bytes at once; 0 is no limit.
    int interruptions = 0;  ///< Calls that a signal ends.
    bool isSyncFailing = false;
    bool isRenameFailing = false;
    bool isOwnerKept = true;
    mode_t seenModes = 0; ///< Modes that the file had while it was written.
};

Faults faults;

class PrivateFileTest : public testing::Test
{
protected:
    PrivateFileTest() { faults = Faults(); }
    ~PrivateFileTest() override { faults = Faults(); }

    OpcUa_StatusCode write(const std::string& name, const Bytes& bytes)
    {
        return OpcUa_P_PrivateFile_Write(m_folder.path(name).c_str(), bytes.data(), bytes.size());
    }

    [[nodiscard]] mode_t modeOf(const std::string& name) const
    {
        struct stat status = {};
        EXPECT_EQ(lstat(m_folder.path(name).c_str(), &status), 0);
        return status.st_mode;
    }

    TestFolder m_folder;
    const Bytes m_old = fromText("the old content");
    const Bytes m_new = pattern(10000);
};

} // namespace

// The linker puts these in the places of the functions without the prefix.
extern "C" {
ssize_t __real_write(int file, const void* bytes, std::size_t size);
int __real_fsync(int file);
int __real_rename(const char* from, const char* to);
int __real_fchown(int file, uid_t owner, gid_t group);

ssize_t __wrap_write(int file, const void* bytes, std::size_t size)
{
    struct stat status = {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        faults.seenModes |= status.st_mode & 07777u;
    }
    if (faults.interruptions > 0) {
        --faults.interruptions;
        errno = EINTR;
        return -1;
    }
    if (faults.room == 0) {
        errno = ENOSPC;
        return -1;
    }
    if (faults.pieces != 0) {
        size = std::min(size, faults.pieces);
    }
    if (faults.room > 0) {
        size = std::min(size, static_cast<std::size_t>(faults.room));
        faults.room -= static_cast<ssize_t>(size);
    }
    return __real_write(file, bytes, size);
}

int __wrap_fsync(int file)
{
    errno = EIO;
    return faults.isSyncFailing ? -1 : __real_fsync(file);
}

int __wrap_rename(const char* from, const char* to)
{
    errno = EACCES;
    return faults.isRenameFailing ? -1 : __real_rename(from, to);
}

int __wrap_fchown(int file, uid_t owner, gid_t group)
{
    errno = EPERM;
    return faults.isOwnerKept ? __real_fchown(file, owner, group) : -1;
}
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PrivateFileTest, null_is_refused)
{
    EXPECT_EQ(OpcUa_P_PrivateFile_Write(nullptr, "x", 1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_PrivateFile_Write(m_folder.path("file").c_str(), nullptr, 1),
              OpcUa_BadInvalidArgument);
    EXPECT_THAT(m_folder.names(), IsEmpty());
}

TEST_F(PrivateFileTest, new_file_is_its_owners_alone_from_the_first_byte_on)
{
    const mode_t before = umask(0);
    EXPECT_EQ(write("file", m_new), OpcUa_Good);
    umask(before);
    EXPECT_EQ(m_folder.read("file"), m_new);
    EXPECT_EQ(modeOf("file"), static_cast<mode_t>(S_IFREG | 0600));
    EXPECT_EQ(faults.seenModes, 0600u);
    EXPECT_THAT(m_folder.names(), ElementsAre("file"));
}

TEST_F(PrivateFileTest, empty_content_gives_an_empty_file)
{
    EXPECT_EQ(OpcUa_P_PrivateFile_Write(m_folder.path("file").c_str(), "", 0), OpcUa_Good);
    EXPECT_THAT(m_folder.read("file"), IsEmpty());
}

TEST_F(PrivateFileTest, replaced_file_keeps_its_mode_and_is_shorter_when_the_new_one_is)
{
    for (const mode_t mode : {0600u, 0640u, 0644u, 0660u, 0700u}) {
        SCOPED_TRACE(mode);
        m_folder.write("file", m_new);
        ASSERT_EQ(chmod(m_folder.path("file").c_str(), mode), 0);
        faults.seenModes = 0;
        EXPECT_EQ(write("file", m_old), OpcUa_Good);
        EXPECT_EQ(m_folder.read("file"), m_old);
        EXPECT_EQ(modeOf("file"), S_IFREG | mode);
        EXPECT_EQ(faults.seenModes, 0600u);
        EXPECT_THAT(m_folder.names(), ElementsAre("file"));
    }
}

TEST_F(PrivateFileTest, replaced_file_keeps_its_owner_where_the_system_lets_it)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    m_folder.write("file", m_old);
    ASSERT_EQ(chown(m_folder.path("file").c_str(), 1234, 5678), 0);
    EXPECT_EQ(write("file", m_new), OpcUa_Good);
    struct stat status = {};
    ASSERT_EQ(stat(m_folder.path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234u);
    EXPECT_EQ(status.st_gid, 5678u);
}

TEST_F(PrivateFileTest, file_of_another_owner_becomes_the_writers_alone)
{
    m_folder.write("file", m_old);
    ASSERT_EQ(chmod(m_folder.path("file").c_str(), 0664), 0);
    faults.isOwnerKept = false;
    EXPECT_EQ(write("file", m_new), OpcUa_Good);
    EXPECT_EQ(m_folder.read("file"), m_new);
    EXPECT_EQ(modeOf("file"), static_cast<mode_t>(S_IFREG | 0600));
}

TEST_F(PrivateFileTest, symbolic_link_is_followed)
{
    m_folder.write("target", m_old);
    ASSERT_EQ(symlink("target", m_folder.path("link").c_str()), 0);
    EXPECT_EQ(write("link", m_new), OpcUa_Good);
    EXPECT_EQ(m_folder.read("target"), m_new);
    EXPECT_TRUE(S_ISLNK(modeOf("link")));
    EXPECT_THAT(m_folder.names(), ElementsAre("link", "target"));
}

TEST_F(PrivateFileTest, what_is_no_regular_file_is_refused)
{
    ASSERT_EQ(symlink("nowhere", m_folder.path("dangling").c_str()), 0);
    ASSERT_EQ(symlink("loop", m_folder.path("loop").c_str()), 0);
    ASSERT_EQ(mkdir(m_folder.path("folder").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    for (const char* const name : {"dangling", "loop", "folder", "pipe", "folder/", ""}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(write(name, m_new), OpcUa_BadResourceUnavailable);
    }
    EXPECT_EQ(OpcUa_P_PrivateFile_Write("/dev/null", "x", 1), OpcUa_BadResourceUnavailable);
    EXPECT_THAT(m_folder.names(), ElementsAre("dangling", "folder", "loop", "pipe"));
    EXPECT_TRUE(S_ISLNK(modeOf("dangling")));
    EXPECT_TRUE(S_ISFIFO(modeOf("pipe")));
}

TEST_F(PrivateFileTest, missing_folder_and_names_that_are_too_long_are_refused)
{
    EXPECT_EQ(write("missing/file", m_new), OpcUa_BadResourceUnavailable);
    for (const std::size_t length : {250u, 256u, 4000u, 5000u, 100000u}) {
        SCOPED_TRACE(length);
        EXPECT_EQ(write(std::string(length, 'x'), m_new), OpcUa_BadResourceUnavailable);
    }
    EXPECT_THAT(m_folder.names(), IsEmpty());
}

TEST_F(PrivateFileTest, full_disk_leaves_the_old_file_and_nothing_else)
{
    for (const ssize_t room : {0, 1, 5000, 9999}) {
        SCOPED_TRACE(room);
        faults = Faults();
        m_folder.write("file", m_old);
        faults.room = room;
        EXPECT_EQ(write("file", m_new), OpcUa_BadResourceUnavailable);
        faults.room = room;
        EXPECT_EQ(write("other", m_new), OpcUa_BadResourceUnavailable);
        EXPECT_EQ(m_folder.read("file"), m_old);
        EXPECT_THAT(m_folder.names(), ElementsAre("file"));
    }
}

TEST_F(PrivateFileTest, failing_sync_or_rename_leaves_the_old_file_and_nothing_else)
{
    m_folder.write("file", m_old);
    faults.isSyncFailing = true;
    EXPECT_EQ(write("file", m_new), OpcUa_BadResourceUnavailable);
    faults = Faults();
    faults.isRenameFailing = true;
    EXPECT_EQ(write("file", m_new), OpcUa_BadResourceUnavailable);
    EXPECT_EQ(m_folder.read("file"), m_old);
    EXPECT_THAT(m_folder.names(), ElementsAre("file"));
}

TEST_F(PrivateFileTest, interrupted_and_partial_writes_are_continued)
{
    faults.interruptions = 3;
    faults.pieces = 7;
    EXPECT_EQ(write("file", m_new), OpcUa_Good);
    EXPECT_EQ(m_folder.read("file"), m_new);
}

} // namespace
