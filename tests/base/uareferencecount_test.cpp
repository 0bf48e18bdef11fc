#include "base/uareferencecount.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

TEST(ReferenceCount, starts_with_one_handle)
{
    UaReferenceCount count;
    EXPECT_TRUE(count.isOne());
    EXPECT_TRUE(count.drop());
}

TEST(ReferenceCount, only_the_last_drop_is_told)
{
    UaReferenceCount count;
    count.take();
    count.take();
    EXPECT_FALSE(count.isOne());
    EXPECT_FALSE(count.drop());
    EXPECT_FALSE(count.drop());
    EXPECT_TRUE(count.isOne());
    EXPECT_TRUE(count.drop());
}

TEST(ReferenceCount, eight_threads_drop_the_last_handle_once)
{
    constexpr int rounds = 2000;
    for (int round = 0; round < 20; ++round) {
        UaReferenceCount count;
        std::atomic<int> lastDrops = 0;
        for (int i = 0; i < 8; ++i) {
            count.take();
        }
        inEightThreads([&] {
            for (int i = 0; i < rounds; ++i) {
                count.take();
                lastDrops += count.drop() ? 1 : 0;
            }
            lastDrops += count.drop() ? 1 : 0;
        });
        EXPECT_EQ(lastDrops, 0);
        EXPECT_TRUE(count.drop());
    }
}

} // namespace
