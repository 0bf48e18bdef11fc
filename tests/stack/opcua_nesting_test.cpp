#include "stack/opcua_nesting.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace {

TEST(Nesting, level_behind_the_last_is_too_deep)
{
    std::vector<std::unique_ptr<OpcUa_NestingLevel>> levels;
    for (OpcUa_UInt32 i = 1; i <= OpcUa_Nesting_MaxLevels; ++i) {
        levels.push_back(std::make_unique<OpcUa_NestingLevel>());
        EXPECT_FALSE(levels.back()->isTooDeep()) << i;
    }
    {
        const OpcUa_NestingLevel beyond;
        EXPECT_TRUE(beyond.isTooDeep());
    }
    levels.pop_back();
    const OpcUa_NestingLevel again;
    EXPECT_FALSE(again.isTooDeep());
}

TEST(Nesting, each_thread_has_a_budget_of_its_own)
{
    std::vector<std::unique_ptr<OpcUa_NestingLevel>> levels;
    for (OpcUa_UInt32 i = 0; i < OpcUa_Nesting_MaxLevels; ++i) {
        levels.push_back(std::make_unique<OpcUa_NestingLevel>());
    }
    bool isTooDeep = true;
    std::thread([&isTooDeep] { isTooDeep = OpcUa_NestingLevel().isTooDeep(); }).join();
    EXPECT_FALSE(isTooDeep);
    const OpcUa_NestingLevel beyond;
    EXPECT_TRUE(beyond.isTooDeep());
}

} // namespace
