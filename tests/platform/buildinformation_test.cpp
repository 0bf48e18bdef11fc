#include "platform/buildinformation.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

TEST(BuildInformation, own_text_names_product_and_version)
{
    OpcUa_P_BuildInformation_Restore();
    EXPECT_THAT(OpcUa_P_BuildInformation_Get(),
                testing::MatchesRegex("Zandrel [0-9]+\\.[0-9]+\\.[0-9]+"));
}

TEST(BuildInformation, null_is_refused)
{
    EXPECT_EQ(OpcUa_P_BuildInformation_Add(nullptr, "text"), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_BuildInformation_Add("prefix", nullptr), OpcUa_BadInvalidArgument);
}

TEST(BuildInformation, fields_are_separated_by_backslashes_until_they_are_taken_away)
{
    const std::string own = OpcUa_P_BuildInformation_Get();
    EXPECT_EQ(OpcUa_P_BuildInformation_Add("", "Library 3"), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_BuildInformation_Add("Library built for ", "100 % %s"), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_BuildInformation_Get(), own + "\\Library 3\\Library built for 100 % %s");
    OpcUa_P_BuildInformation_Restore();
    EXPECT_EQ(OpcUa_P_BuildInformation_Get(), own);
    OpcUa_P_BuildInformation_Restore();
    EXPECT_EQ(OpcUa_P_BuildInformation_Get(), own);
}

TEST(BuildInformation, failing_allocation_leaves_the_text_as_it_was)
{
    ASSERT_EQ(OpcUa_P_BuildInformation_Add("", "first"), OpcUa_Good);
    const std::string before = OpcUa_P_BuildInformation_Get();
    {
        const AllocationFaults faults(0);
        EXPECT_EQ(OpcUa_P_BuildInformation_Add("", "second"), OpcUa_BadOutOfMemory);
    }
    EXPECT_EQ(OpcUa_P_BuildInformation_Get(), before);
    OpcUa_P_BuildInformation_Restore();
}

} // namespace
