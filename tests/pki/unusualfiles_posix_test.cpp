#include "base/uaunistring.h"
#include "pki/uapkicsr.h"
#include "pki/uapkirevocationlist.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/temporarydirectory.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include <sys/stat.h>

// Lists and requests in files that are none: a reader must neither wait for them nor read them without
// end.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class UnusualFilesTest : public PkiTest
{
protected:
    static void expectRefused(const std::string& path)
    {
        const UaUniString uniPath(path.c_str());
        for (const UaPkiRevocationList& list : {UaPkiRevocationList::fromFile(path.c_str()),
                                                UaPkiRevocationList::fromFile(uniPath)}) {
            EXPECT_TRUE(list.isNull()) << path;
        }
        for (const UaPkiCSR& request :
             {UaPkiCSR::fromDERFile(path.c_str()), UaPkiCSR::fromDERFile(uniPath)}) {
            EXPECT_TRUE(request.isNull()) << path;
        }
        EXPECT_THAT(messagesOf(UaPkiRevocationList::fromFile(path.c_str())), Not(IsEmpty()));
        EXPECT_THAT(messagesOf(UaPkiRevocationList::fromFile(uniPath)), Not(IsEmpty()));
        EXPECT_THAT(messagesOf(UaPkiCSR::fromDERFile(path.c_str())), Not(IsEmpty()));
        EXPECT_THAT(messagesOf(UaPkiCSR::fromDERFile(uniPath)), Not(IsEmpty()));
    }

    TemporaryDirectory directory;
};

TEST_F(UnusualFilesTest, devices_and_pipes_are_refused_at_once)
{
    ASSERT_EQ(mkfifo(directory.file("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink(directory.file("pipe"), directory.file("link to pipe"));
    std::filesystem::create_symlink(directory.file("loop"), directory.file("loop"));
    for (const std::string& path :
         {directory.file("pipe"), directory.file("link to pipe"), directory.file("loop"),
          directory.path(), std::string("/dev/zero"), std::string("/dev/null"),
          std::string("/dev/random"), std::string("/dev/tty")}) {
        expectRefused(path);
    }
}

TEST_F(UnusualFilesTest, a_sparse_file_of_terabytes_is_too_large)
{
    const std::string path = directory.file("sparse");
    writeBytes(path, "");
    std::error_code error;
    constexpr std::uintmax_t terabyte = 1ULL << 40;
    std::filesystem::resize_file(path, 4 * terabyte, error);
    if (error) {
        GTEST_SKIP() << "the file system takes no such file: " << error.message();
    }
    expectRefused(path);
    EXPECT_THAT(messagesOf(UaPkiRevocationList::fromFile(path.c_str())),
                ElementsAre("The file is too large"));
    EXPECT_THAT(messagesOf(UaPkiCSR::fromDERFile(path.c_str())),
                ElementsAre("The file is too large"));
}

TEST_F(UnusualFilesTest, files_of_the_process_that_tell_no_size_are_read_to_their_end)
{
    expectRefused("/proc/self/status");
}

} // namespace
