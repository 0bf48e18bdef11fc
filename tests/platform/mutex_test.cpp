#include "platform/mutex.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

class MutexTest : public testing::Test
{
protected:
    MutexTest() { EXPECT_EQ(OpcUa_P_Mutex_Create(&m_mutex), OpcUa_Good); }
    ~MutexTest() override { EXPECT_EQ(OpcUa_P_Mutex_Delete(&m_mutex), OpcUa_Good); }

    OpcUa_Mutex m_mutex = nullptr;
};

TEST(Mutex, null_is_refused_everywhere)
{
    OpcUa_Mutex none = nullptr;
    EXPECT_EQ(OpcUa_P_Mutex_Create(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Mutex_Delete(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Mutex_Delete(&none), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Mutex_Lock(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(nullptr), OpcUa_BadInvalidArgument);
}

TEST(Mutex, lack_of_memory_gives_a_null_mutex)
{
    OpcUa_Mutex mutex = nullptr;
    const AllocationFaults faults(0);
    EXPECT_EQ(OpcUa_P_Mutex_Create(&mutex), OpcUa_BadOutOfMemory);
    EXPECT_EQ(mutex, nullptr);
}

TEST(Mutex, delete_sets_it_to_null)
{
    OpcUa_Mutex mutex = nullptr;
    ASSERT_EQ(OpcUa_P_Mutex_Create(&mutex), OpcUa_Good);
    ASSERT_NE(mutex, nullptr);
    EXPECT_EQ(OpcUa_P_Mutex_Delete(&mutex), OpcUa_Good);
    EXPECT_EQ(mutex, nullptr);
}

TEST_F(MutexTest, unlock_without_lock_is_refused)
{
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Mutex_Lock(m_mutex), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_BadInvalidState);
}

TEST_F(MutexTest, its_holder_may_lock_it_again)
{
    for (int depth = 0; depth < 100; ++depth) {
        EXPECT_EQ(OpcUa_P_Mutex_Lock(m_mutex), OpcUa_Good);
    }
    for (int depth = 0; depth < 100; ++depth) {
        EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_Good);
    }
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_BadInvalidState);
}

TEST_F(MutexTest, unlock_by_another_thread_is_refused)
{
    ASSERT_EQ(OpcUa_P_Mutex_Lock(m_mutex), OpcUa_Good);
    std::thread other([this] { EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_BadInvalidState); });
    other.join();
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_Good);
}

TEST_F(MutexTest, locked_mutex_is_not_deleted)
{
    ASSERT_EQ(OpcUa_P_Mutex_Lock(m_mutex), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Mutex_Delete(&m_mutex), OpcUa_BadInvalidState);
    ASSERT_NE(m_mutex, nullptr);
    EXPECT_EQ(OpcUa_P_Mutex_Unlock(m_mutex), OpcUa_Good);
}

TEST_F(MutexTest, eight_threads_exclude_each_other)
{
    constexpr int perThread = 2000;
    int counter = 0;
    inEightThreads([&] {
        for (int i = 0; i < perThread; ++i) {
            OpcUa_P_Mutex_Lock(m_mutex);
            OpcUa_P_Mutex_Lock(m_mutex);
            ++counter;
            OpcUa_P_Mutex_Unlock(m_mutex);
            OpcUa_P_Mutex_Unlock(m_mutex);
        }
    });
    EXPECT_EQ(counter, 8 * perThread);
}

} // namespace
