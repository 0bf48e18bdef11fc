#include "platform/semaphore.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

/// A semaphore that is deleted with its test.
class Owned
{
public:
    Owned(OpcUa_UInt32 initial, OpcUa_UInt32 maximum)
    {
        EXPECT_EQ(OpcUa_P_Semaphore_Create(&m_semaphore, initial, maximum), OpcUa_Good);
    }
    ~Owned() { EXPECT_EQ(OpcUa_P_Semaphore_Delete(&m_semaphore), OpcUa_Good); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    [[nodiscard]] OpcUa_Semaphore get() const { return m_semaphore; }

private:
    OpcUa_Semaphore m_semaphore = nullptr;
};

/// Takes permits until there is none and returns how many there were.
OpcUa_UInt32 drain(const Owned& semaphore)
{
    OpcUa_UInt32 count = 0;
    while (OpcUa_IsGood(OpcUa_P_Semaphore_TimedWait(semaphore.get(), 0))) {
        ++count;
    }
    return count;
}

TEST(Semaphore, null_is_refused_everywhere)
{
    OpcUa_Semaphore none = nullptr;
    EXPECT_EQ(OpcUa_P_Semaphore_Create(nullptr, 0, 1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Semaphore_Delete(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Semaphore_Delete(&none), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Semaphore_Wait(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Semaphore_TimedWait(nullptr, 0), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(nullptr, 1), OpcUa_BadInvalidArgument);
}

TEST(Semaphore, counts_that_make_no_sense_are_refused)
{
    struct Row
    {
        OpcUa_UInt32 initial;
        OpcUa_UInt32 maximum;
    };
    for (const Row& row : {Row{0, 0}, Row{1, 0}, Row{2, 1}, Row{0xFFFFFFFF, 0xFFFFFFFE}}) {
        SCOPED_TRACE(testing::Message() << row.initial << " of " << row.maximum);
        OpcUa_Semaphore semaphore = nullptr;
        EXPECT_EQ(OpcUa_P_Semaphore_Create(&semaphore, row.initial, row.maximum),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(semaphore, nullptr);
    }
}

TEST(Semaphore, lack_of_memory_gives_a_null_semaphore)
{
    OpcUa_Semaphore semaphore = nullptr;
    const AllocationFaults faults(0);
    EXPECT_EQ(OpcUa_P_Semaphore_Create(&semaphore, 0, 1), OpcUa_BadOutOfMemory);
    EXPECT_EQ(semaphore, nullptr);
}

TEST(Semaphore, initial_permits_can_be_taken)
{
    for (const OpcUa_UInt32 initial : {0u, 1u, 5u}) {
        const Owned semaphore(initial, 5);
        EXPECT_EQ(drain(semaphore), initial);
    }
}

TEST(Semaphore, post_adds_its_count)
{
    const Owned semaphore(1, 10);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphore.get(), 3), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphore.get(), 1), OpcUa_Good);
    EXPECT_EQ(drain(semaphore), 5u);
}

TEST(Semaphore, post_of_nothing_is_refused)
{
    const Owned semaphore(0, 1);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphore.get(), 0), OpcUa_BadInvalidArgument);
    EXPECT_EQ(drain(semaphore), 0u);
}

TEST(Semaphore, post_that_does_not_fit_adds_nothing)
{
    struct Row
    {
        OpcUa_UInt32 initial;
        OpcUa_UInt32 maximum;
        OpcUa_UInt32 count;
        OpcUa_StatusCode status;
    };
    for (const Row& row : {Row{1, 1, 1, OpcUa_BadTooManyPosts}, Row{2, 4, 3, OpcUa_BadTooManyPosts},
                           Row{2, 4, 2, OpcUa_Good}, Row{1, 4, 0xFFFFFFFF, OpcUa_BadTooManyPosts},
                           Row{0, 3, 0x80000000, OpcUa_BadTooManyPosts}}) {
        SCOPED_TRACE(testing::Message()
                     << row.count << " to " << row.initial << " of " << row.maximum);
        const Owned semaphore(row.initial, row.maximum);
        EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphore.get(), row.count), row.status);
        EXPECT_EQ(drain(semaphore),
                  OpcUa_IsGood(row.status) ? row.initial + row.count : row.initial);
    }
}

TEST(Semaphore, largest_maximum_holds)
{
    const Owned semaphore(0xFFFFFFFF, 0xFFFFFFFF);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphore.get(), 1), OpcUa_BadTooManyPosts);
    EXPECT_EQ(OpcUa_P_Semaphore_Wait(semaphore.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphore.get(), 1), OpcUa_Good);
}

TEST(Semaphore, timed_wait_ends_with_bad_timeout_and_not_early)
{
    const Owned semaphore(0, 1);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(OpcUa_P_Semaphore_TimedWait(semaphore.get(), 20), OpcUa_BadTimeout);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(20));
    EXPECT_EQ(OpcUa_P_Semaphore_TimedWait(semaphore.get(), 0), OpcUa_BadTimeout);
}

TEST(Semaphore, waits_end_with_a_post)
{
    const Owned semaphore(0, 3);
    std::thread poster([&semaphore] { OpcUa_P_Semaphore_Post(semaphore.get(), 3); });
    EXPECT_EQ(OpcUa_P_Semaphore_Wait(semaphore.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_TimedWait(semaphore.get(), 60000), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_TimedWait(semaphore.get(), OpcUa_Semaphore_Infinite), OpcUa_Good);
    poster.join();
}

TEST(Semaphore, one_post_of_eight_wakes_eight_threads)
{
    const Owned semaphore(0, 8);
    std::atomic<int> taken = 0;
    std::thread poster([&semaphore] { OpcUa_P_Semaphore_Post(semaphore.get(), 8); });
    inEightThreads([&] {
        if (OpcUa_IsGood(OpcUa_P_Semaphore_Wait(semaphore.get()))) {
            ++taken;
        }
    });
    poster.join();
    EXPECT_EQ(taken, 8);
    EXPECT_EQ(drain(semaphore), 0u);
}

TEST(Semaphore, permits_of_eight_threads_are_neither_lost_nor_doubled)
{
    constexpr int perThread = 1000;
    const Owned semaphore(0, 8 * perThread);
    inEightThreads([&] {
        for (int i = 0; i < perThread; ++i) {
            OpcUa_P_Semaphore_Post(semaphore.get(), 1);
            if (i % 2 == 0) {
                OpcUa_P_Semaphore_Wait(semaphore.get());
            }
        }
    });
    EXPECT_EQ(drain(semaphore), 8u * perThread / 2);
}

TEST(Semaphore, waiter_may_delete_it_as_soon_as_it_has_its_permit)
{
    for (int round = 0; round < 200; ++round) {
        OpcUa_Semaphore semaphore = nullptr;
        ASSERT_EQ(OpcUa_P_Semaphore_Create(&semaphore, 0, 1), OpcUa_Good);
        std::thread poster(
            [posted = semaphore] { EXPECT_EQ(OpcUa_P_Semaphore_Post(posted, 1), OpcUa_Good); });
        EXPECT_EQ(OpcUa_P_Semaphore_Wait(semaphore), OpcUa_Good);
        EXPECT_EQ(OpcUa_P_Semaphore_Delete(&semaphore), OpcUa_Good);
        poster.join();
    }
}

} // namespace
