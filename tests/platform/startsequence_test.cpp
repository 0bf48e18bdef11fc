#include "platform/buildinformation.h"
#include "platform/startup/opcua_proxystub.h"
#include "platform/startup/startsequence.h"
#include "platform/startup/uaplatformlayer.h"
#include "platform/status.h"
#include "platform/systemrandom.h"
#include "stack/opcua_proxystubconfiguration.h"
#include "tests/platform/servicestates.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <string>

namespace {

void expectNothingRuns()
{
    EXPECT_FALSE(isTimerServiceRunning());
    EXPECT_FALSE(isCryptoRunning());
    EXPECT_FALSE(isTraceRunning());
    EXPECT_FALSE(isNetworkRunning());
    EXPECT_FALSE(isTypeTableFilled());
    EXPECT_FALSE(isNamespaceTableFilled());
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
        EXPECT_TRUE(isNetworkRunning());
        EXPECT_TRUE(isTypeTableFilled());
        EXPECT_TRUE(isNamespaceTableFilled());
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

const OpcUa_ProxyStubConfiguration& current()
{
    const OpcUa_ProxyStubConfiguration* record = nullptr;
    EXPECT_EQ(OpcUa_ProxyStub_GetConfiguration(&record), OpcUa_Good);
    return *record;
}

/// Leaves a record behind that leaves every choice to the stack.
class StackConfiguration : public testing::Test
{
protected:
    ~StackConfiguration() override
    {
        OpcUa_ProxyStubConfiguration record{};
        OpcUa_ProxyStubConfiguration_Initialize(&record);
        EXPECT_EQ(UaPlatformLayer::setStackConfiguration(record), 0);
    }
};

TEST_F(StackConfiguration, unset_record_leaves_every_choice_to_the_stack)
{
    EXPECT_EQ(UaPlatformLayer::stackConfiguration().iSerializer_MaxAlloc, -1);
    ASSERT_EQ(UaPlatformLayer::init(), 0);
    EXPECT_EQ(UaPlatformLayer::stackConfiguration().iSerializer_MaxAlloc, -1);
    EXPECT_EQ(current().iSerializer_MaxAlloc, 16777216);
    UaPlatformLayer::cleanup();
}

TEST_F(StackConfiguration, record_that_was_set_before_outlives_starts_and_stops)
{
    OpcUa_ProxyStubConfiguration record = UaPlatformLayer::stackConfiguration();
    record.iSerializer_MaxAlloc = 1234;
    ASSERT_EQ(UaPlatformLayer::setStackConfiguration(record), 0);
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(UaPlatformLayer::init(), 0);
        EXPECT_EQ(current().iSerializer_MaxAlloc, 1234);
        EXPECT_EQ(current().iSerializer_MaxStringLength, 16777216);
        UaPlatformLayer::cleanup();
        EXPECT_EQ(UaPlatformLayer::stackConfiguration().iSerializer_MaxAlloc, 1234);
    }
}

TEST_F(StackConfiguration, running_stack_takes_a_changed_record_at_once)
{
    ASSERT_EQ(UaPlatformLayer::init(), 0);
    OpcUa_ProxyStubConfiguration record = UaPlatformLayer::stackConfiguration();
    record.iSerializer_MaxArrayLength = 77;
    EXPECT_EQ(UaPlatformLayer::setStackConfiguration(record), 0);
    EXPECT_EQ(current().iSerializer_MaxArrayLength, 77);
    EXPECT_EQ(UaPlatformLayer::stackConfiguration().iSerializer_MaxArrayLength, 77);
    UaPlatformLayer::cleanup();
}

TEST_F(StackConfiguration, refused_record_leaves_the_old_one)
{
    OpcUa_ProxyStubConfiguration record = UaPlatformLayer::stackConfiguration();
    record.iSerializer_MaxArrayLength = 77;
    OpcUa_ProxyStub_AddProxy();
    EXPECT_EQ(UaPlatformLayer::setStackConfiguration(record), -1);
    OpcUa_ProxyStub_RemoveProxy();
    EXPECT_EQ(UaPlatformLayer::stackConfiguration().iSerializer_MaxArrayLength, -1);
    EXPECT_EQ(current().iSerializer_MaxArrayLength, 65536);
}

TEST(StartSequence, stack_that_does_not_start_fails_the_start)
{
    OpcUa_ProxyStub_AddStub();
    EXPECT_EQ(UaPlatformLayer::init(), -1);
    OpcUa_ProxyStub_RemoveStub();
    // The stack took itself back, with the timers; the rest waits for the user that stays counted.
    EXPECT_FALSE(isTimerServiceRunning());
    EXPECT_FALSE(isTraceRunning());
    EXPECT_TRUE(isCryptoRunning());
    UaPlatformLayer::cleanup();
    expectNothingRuns();
}

TEST(StartSequence, stack_goes_on_for_another_user_of_it)
{
    ASSERT_EQ(startPlatform(), 0);
    const OpcUa_ProxyStubConfiguration record = stackConfiguration();
    ASSERT_EQ(OpcUa_ProxyStub_Initialize(&record), OpcUa_Good);
    stopPlatform();
    EXPECT_TRUE(isTraceRunning());
    EXPECT_TRUE(isTimerServiceRunning());
    EXPECT_FALSE(isCryptoRunning());
    OpcUa_ProxyStub_Clear();
    expectNothingRuns();
}

TEST(StartSequence, every_failing_allocation_fails_it_and_the_stop_leaves_nothing)
{
    // What the crypto library makes once for the process must not be what fails.
    ASSERT_EQ(startPlatform(), 0);
    stopPlatform();
    const std::size_t failures = forEveryFailingAllocation(startPlatform, [](int result) {
        EXPECT_EQ(result, -1);
        stopPlatform();
        expectNothingRuns();
    });
    EXPECT_GT(failures, 10u);
    stopPlatform();
    expectNothingRuns();
}

} // namespace
