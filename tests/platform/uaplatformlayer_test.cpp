#include "platform/startup/uaplatformlayer.h"
#include "platform/trace.h"

#include <gtest/gtest.h>

namespace {

/// The trace is the service whose running shows from outside.
bool isRunning()
{
    return OpcUa_Trace(OpcUa_TraceLevel_Error, "probe");
}

TEST(UaPlatformLayer, cleanup_without_init_returns_at_once)
{
    UaPlatformLayer::cleanup();
    EXPECT_FALSE(isRunning());
}

TEST(UaPlatformLayer, init_starts_and_cleanup_stops)
{
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    EXPECT_TRUE(isRunning());
    UaPlatformLayer::cleanup();
    EXPECT_FALSE(isRunning());
}

TEST(UaPlatformLayer, two_inits_and_one_cleanup_leave_everything_running)
{
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    UaPlatformLayer::cleanup();
    EXPECT_TRUE(isRunning());
    UaPlatformLayer::cleanup();
    EXPECT_FALSE(isRunning());
}

TEST(UaPlatformLayer, it_can_be_started_again)
{
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(UaPlatformLayer::init(), 0);
        EXPECT_TRUE(isRunning());
        UaPlatformLayer::cleanup();
        EXPECT_FALSE(isRunning());
    }
}

} // namespace
