#include "platform/status.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(Status, severity_is_in_the_top_two_bits)
{
    struct Row
    {
        OpcUa_StatusCode status;
        bool isGood;
        bool isUncertain;
        bool isBad;
    };
    const std::array<Row, 8> rows = {{{OpcUa_Good, true, false, false},
                                      {0x00000001, true, false, false},
                                      {0x3FFFFFFF, true, false, false},
                                      {OpcUa_Uncertain, false, true, false},
                                      {0x7FFFFFFF, false, true, false},
                                      {OpcUa_Bad, false, false, true},
                                      {OpcUa_BadOutOfRange, false, false, true},
                                      {0xC0000000, false, false, true}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.status);
        EXPECT_EQ(OpcUa_IsGood(row.status), row.isGood);
        EXPECT_EQ(OpcUa_IsNotGood(row.status), !row.isGood);
        EXPECT_EQ(OpcUa_IsUncertain(row.status), row.isUncertain);
        EXPECT_EQ(OpcUa_IsBad(row.status), row.isBad);
        EXPECT_EQ(OpcUa_IsNotBad(row.status), !row.isBad);
    }
}

} // namespace
