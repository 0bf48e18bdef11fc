#include "platform/buildinformation.h"
#include "platform/openssl_provider.h"
#include "platform/startup/startsequence.h"
#include "platform/startup/uaplatformlayer.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "platform/timer.h"
#include "platform/trace.h"

#include <gtest/gtest.h>

#include <string>

namespace {

bool isTimerServiceRunning()
{
    OpcUa_Timer timer = nullptr;
    const OpcUa_StatusCode status = OpcUa_P_Timer_Create(&timer, 100000, nullptr, nullptr, nullptr);
    OpcUa_P_Timer_Delete(&timer);
    return OpcUa_IsGood(status);
}

bool isCryptoRunning()
{
    return OpcUa_P_OpenSSL_GetLockCount() > 0;
}

bool isTraceRunning()
{
    return OpcUa_Trace(OpcUa_TraceLevel_Error, "probe");
}

void expectNothingRuns()
{
    EXPECT_FALSE(isTimerServiceRunning());
    EXPECT_FALSE(isCryptoRunning());
    EXPECT_FALSE(isTraceRunning());
    EXPECT_EQ(std::string(OpcUa_P_BuildInformation_Get()).find("OpenSSL"), std::string::npos);
}

TEST(StartSequence, every_service_runs_from_start_to_stop)
{
    for (int round = 0; round < 3; ++round) {
        expectNothingRuns();
        ASSERT_EQ(startPlatform(), 0);
        EXPECT_TRUE(isTimerServiceRunning());
        EXPECT_TRUE(isCryptoRunning());
        EXPECT_TRUE(isTraceRunning());
        EXPECT_NE(std::string(OpcUa_P_BuildInformation_Get()).find("\\OpenSSL built for "),
                  std::string::npos);
        stopPlatform();
    }
    expectNothingRuns();
}

TEST(StartSequence, system_random_source_answers)
{
    EXPECT_EQ(OpcUa_P_SystemRandom_Initialize(), OpcUa_Good);
}

TEST(StartSequence, stop_without_start_does_nothing)
{
    stopPlatform();
    stopPlatform();
    expectNothingRuns();
}

TEST(StartSequence, first_failure_stops_it_and_undoes_nothing)
{
    // Somebody else's timer service makes the first step fail.
    ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    EXPECT_EQ(UaPlatformLayer::init(), -1);
    EXPECT_TRUE(isTimerServiceRunning());
    EXPECT_FALSE(isCryptoRunning());
    EXPECT_FALSE(isTraceRunning());
    // The failed user stays counted, so that another one starts nothing, and the last one stops all.
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    EXPECT_FALSE(isCryptoRunning());
    UaPlatformLayer::cleanup();
    EXPECT_TRUE(isTimerServiceRunning());
    UaPlatformLayer::cleanup();
    expectNothingRuns();
}

TEST(StartSequence, kill_callbacks_of_the_stop_can_still_trace)
{
    static bool hasTraced;
    hasTraced = false;
    ASSERT_EQ(startPlatform(), 0);
    OpcUa_Timer timer = nullptr;
    const auto kill = [](void*, OpcUa_Timer, OpcUa_UInt32) { hasTraced = isTraceRunning(); };
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 100000, nullptr, kill, nullptr), OpcUa_Good);
    stopPlatform();
    EXPECT_TRUE(hasTraced);
}

} // namespace
