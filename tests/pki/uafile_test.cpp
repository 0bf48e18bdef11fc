#include "pki/uafile.h"
#include "pki/uafileengine.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/temporarydirectory.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <utility>

namespace {

static_assert(!std::is_copy_constructible_v<UaFile>);

TEST(UaFileTest, a_file_that_is_not_open_reads_and_writes_nothing)
{
    UaFile file{UaUniString(u"/no/such/file")};
    std::array<char, 4> block{};
    EXPECT_FALSE(file.isOpen());
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(file.size(), -1);
    EXPECT_EQ(file.read(block.data(), 4), 0);
    EXPECT_EQ(file.write(block.data(), 4), 0);
    EXPECT_FALSE(file.close());
    EXPECT_FALSE(file.open("rb"));
    EXPECT_EQ(file.stream(), nullptr);
}

TEST(UaFileTest, writes_and_reads_back)
{
    const TemporaryDirectory directory;
    UaFile file(directory.uniFile("f"));
    ASSERT_TRUE(file.open("wb"));
    EXPECT_EQ(file.write("hello", 5), 5);
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.close());
    EXPECT_TRUE(file.exists());
    EXPECT_EQ(file.size(), 5);
    ASSERT_TRUE(file.open("rb"));
    std::array<char, 8> block{};
    EXPECT_EQ(file.read(block.data(), 8), 5);
    EXPECT_STREQ(block.data(), "hello");
    EXPECT_EQ(file.read(block.data(), 8), 0);
}

TEST(UaFileTest, closes_what_it_has_opened)
{
    MemoryFileEngine engine;
    {
        UaFile file{UaUniString(u"f")};
        EXPECT_TRUE(file.open("wb"));
        EXPECT_EQ(file.write("1", 1), 1);
        EXPECT_TRUE(file.open("wb")) << "closes the first stream";
        EXPECT_EQ(engine.openStreams(), 1u);
        EXPECT_EQ(file.write("22", 2), 2);
        UaFile moved(std::move(file));
        EXPECT_TRUE(moved.isOpen());
        UaFile other{UaUniString(u"g")};
        EXPECT_TRUE(other.open("wb"));
        other = std::move(moved);
        EXPECT_EQ(engine.openStreams(), 1u) << "the target's stream is closed";
        EXPECT_EQ(other.path(), UaUniString(u"f"));
    }
    EXPECT_EQ(engine.openStreams(), 0u);
    EXPECT_EQ(engine.files["f"], "22");
}

TEST(UaFileEngineInstanceTest, there_is_one_engine_until_another_takes_its_place)
{
    UaAbstractFileEngine& first = uaFileEngine();
    EXPECT_EQ(&uaFileEngine(), &first);
    EXPECT_NE(dynamic_cast<UaFileEngine*>(&first), nullptr);
    {
        MemoryFileEngine memory;
        EXPECT_EQ(&uaFileEngine(), &memory);
        UaFileEngine another;
        EXPECT_EQ(uaSetFileEngine(&another), &memory);
        EXPECT_EQ(&uaFileEngine(), &another);
        EXPECT_EQ(uaSetFileEngine(&memory), &another);
    }
    EXPECT_EQ(&uaFileEngine(), &first);
    EXPECT_EQ(uaSetFileEngine(nullptr), nullptr);
    EXPECT_EQ(&uaFileEngine(), &first);
}

} // namespace
