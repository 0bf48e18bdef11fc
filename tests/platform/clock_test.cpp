#include "platform/clock.h"
#include "platform/datetime.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

OpcUa_UInt64 fixedTime()
{
    return 0x01D0000012345678;
}

TEST(Clock, system_time_lies_around_the_time_of_the_standard_library)
{
    const auto ticksAt = [](std::chrono::system_clock::time_point time) {
        const auto micros =
            std::chrono::duration_cast<std::chrono::microseconds>(time.time_since_epoch());
        return static_cast<OpcUa_UInt64>(micros.count()) * 10 + 116444736000000000u;
    };
    const OpcUa_UInt64 before = ticksAt(std::chrono::system_clock::now());
    const OpcUa_UInt64 now = OpcUa_P_Clock_UtcNow();
    const OpcUa_UInt64 after =
        ticksAt(std::chrono::system_clock::now() + std::chrono::microseconds(1));
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(Clock, a_source_replaces_the_system)
{
    EXPECT_EQ(OpcUa_P_Clock_SetSource(fixedTime), nullptr);
    EXPECT_EQ(OpcUa_P_Clock_UtcNow(), fixedTime());
    const OpcUa_DateTime now = OpcUa_DateTime_UtcNow();
    EXPECT_EQ(now.dwHighDateTime, 0x01D00000u);
    EXPECT_EQ(now.dwLowDateTime, 0x12345678u);
    EXPECT_EQ(OpcUa_P_Clock_SetSource(nullptr), &fixedTime);
    EXPECT_NE(OpcUa_P_Clock_UtcNow(), fixedTime());
}

} // namespace
