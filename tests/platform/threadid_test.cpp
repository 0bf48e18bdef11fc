#include "platform/threadid.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(ThreadId, stays_the_same_within_a_thread_and_differs_between_two)
{
    const OpcUa_UInt32 own = OpcUa_P_Thread_GetCurrentId();
    EXPECT_EQ(OpcUa_P_Thread_GetCurrentId(), own);
    OpcUa_UInt32 other = own;
    std::thread([&other] { other = OpcUa_P_Thread_GetCurrentId(); }).join();
    EXPECT_NE(other, own);
    EXPECT_NE(own, 0u);
}

} // namespace
