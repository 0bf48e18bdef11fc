#include "platform/clock.h"
#include "tests/platform/steadyticks.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

TEST(TickCount, counts_the_milliseconds_of_the_steady_clock)
{
    const auto ticksNow = [] {
        const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
        return static_cast<OpcUa_UInt32>(
            std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
    };
    const OpcUa_UInt32 before = ticksNow();
    const OpcUa_UInt32 count = OpcUa_P_Clock_GetTickCount();
    const OpcUa_UInt32 after = ticksNow();
    // Differences hold across a wrap too.
    EXPECT_LE(count - before, after - before);
}

TEST(TickCount, a_source_replaces_the_steady_clock)
{
    {
        const SteadyTicks ticks(0xFFFFFFFF);
        EXPECT_EQ(OpcUa_P_Clock_GetTickCount(), 0xFFFFFFFFu);
        SteadyTicks::advance(1);
        EXPECT_EQ(OpcUa_P_Clock_GetTickCount(), 0u);
    }
    const auto source = [] { return OpcUa_UInt32{77}; };
    EXPECT_EQ(OpcUa_P_Clock_SetTickSource(source), nullptr);
    EXPECT_EQ(OpcUa_P_Clock_GetTickCount(), 77u);
    EXPECT_EQ(OpcUa_P_Clock_SetTickSource(nullptr), OpcUa_P_TickSource(source));
    EXPECT_LE(OpcUa_P_Clock_GetTickCount() - OpcUa_P_Clock_ReadSystemTicks() + 60000, 60000u);
}

} // namespace
