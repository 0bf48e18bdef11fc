#include "platform/status.h"
#include "platform/systemrandom.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>

namespace {

TEST(SystemRandom, refuses_a_null_buffer)
{
    EXPECT_EQ(OpcUa_P_SystemRandom_Fill(nullptr, 4), OpcUa_BadInvalidArgument);
}

TEST(SystemRandom, fills_every_byte_and_none_behind)
{
    for (const OpcUa_UInt32 size : {0u, 1u, 16u, 1024u, 1025u, 5000u}) {
        SCOPED_TRACE(size);
        std::vector<std::uint8_t> touched(size + 1);
        // A byte that stays 0 in 40 fillings wasn't written to, save with a chance of 256^-40.
        for (int round = 0; round < 40; ++round) {
            std::vector<std::uint8_t> buffer(size + 1);
            ASSERT_EQ(OpcUa_P_SystemRandom_Fill(buffer.data(), size), OpcUa_Good);
            std::transform(buffer.begin(), buffer.end(), touched.begin(), touched.begin(),
                           [](std::uint8_t byte, std::uint8_t all) {
                               return static_cast<std::uint8_t>(byte | all);
                           });
        }
        EXPECT_EQ(std::count(touched.begin(), touched.end(), 0), 1);
        EXPECT_EQ(touched.back(), 0);
    }
}

TEST(SystemRandom, gives_other_bytes_each_time)
{
    std::set<std::vector<std::uint8_t>> seen;
    for (int round = 0; round < 100; ++round) {
        std::vector<std::uint8_t> buffer(16);
        ASSERT_EQ(OpcUa_P_SystemRandom_Fill(buffer.data(), 16), OpcUa_Good);
        EXPECT_TRUE(seen.insert(buffer).second);
    }
}

} // namespace
