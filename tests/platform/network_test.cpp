#include "platform/network.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

namespace {

bool isStopped()
{
    const OpcUa_NetworkModule& network = OpcUa_P_Socket_Network();
    return network.socketMutex == nullptr && network.clientThreadMutex == nullptr;
}

TEST(Network, start_makes_its_parts_and_stop_takes_them_back)
{
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(isStopped());
        ASSERT_EQ(OpcUa_P_Socket_InitializeNetwork(), OpcUa_Good);
        const OpcUa_NetworkModule& network = OpcUa_P_Socket_Network();
        EXPECT_NE(network.socketMutex, network.clientThreadMutex);
        EXPECT_EQ(network.clientThreadCount, 0u);
        for (const OpcUa_Mutex mutex : {network.socketMutex, network.clientThreadMutex}) {
            EXPECT_EQ(OpcUa_P_Mutex_Lock(mutex), OpcUa_Good);
            EXPECT_EQ(OpcUa_P_Mutex_Unlock(mutex), OpcUa_Good);
        }
        OpcUa_P_Socket_CleanupNetwork();
    }
    EXPECT_TRUE(isStopped());
}

TEST(Network, second_start_is_refused_and_changes_nothing)
{
    ASSERT_EQ(OpcUa_P_Socket_InitializeNetwork(), OpcUa_Good);
    const OpcUa_Mutex mutex = OpcUa_P_Socket_Network().socketMutex;
    EXPECT_EQ(OpcUa_P_Socket_InitializeNetwork(), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Socket_Network().socketMutex, mutex);
    OpcUa_P_Socket_CleanupNetwork();
}

TEST(Network, stop_without_start_does_nothing)
{
    OpcUa_P_Socket_CleanupNetwork();
    OpcUa_P_Socket_CleanupNetwork();
    EXPECT_TRUE(isStopped());
}

TEST(Network, without_memory_nothing_is_left)
{
    const std::size_t failures =
        forEveryFailingAllocation([] { return OpcUa_P_Socket_InitializeNetwork(); },
                                  [](OpcUa_StatusCode status) {
                                      EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                      EXPECT_TRUE(isStopped());
                                  });
    EXPECT_EQ(failures, 2u);
    EXPECT_FALSE(isStopped());
    OpcUa_P_Socket_CleanupNetwork();
}

} // namespace
