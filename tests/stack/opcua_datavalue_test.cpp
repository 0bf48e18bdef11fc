#include "platform/status.h"
#include "stack/opcua_datavalue.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>

namespace {

OpcUa_DataValue makeValue(const std::function<void(OpcUa_DataValue&)>& change)
{
    OpcUa_DataValue value;
    OpcUa_DataValue_Initialize(&value);
    value.Value.Datatype = OpcUaType_Int32;
    value.Value.Value.Int32 = 5;
    value.StatusCode = 10;
    value.SourceTimestamp = {10, 10};
    value.ServerTimestamp = {10, 10};
    value.SourcePicoseconds = 10;
    value.ServerPicoseconds = 10;
    change(value);
    return value;
}

TEST(DataValue, initialised_one_is_null_and_good)
{
    OpcUa_DataValue value;
    std::memset(&value, 0xA5, sizeof(value));
    OpcUa_DataValue_Initialize(&value);
    EXPECT_EQ(value.Value.Datatype, OpcUaType_Null);
    EXPECT_EQ(value.StatusCode, OpcUa_Good);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(value.SourceTimestamp), 0u);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(value.ServerTimestamp), 0u);
    EXPECT_EQ(value.SourcePicoseconds, 0);
    EXPECT_EQ(value.ServerPicoseconds, 0);
}

TEST(DataValue, each_field_orders_before_the_next)
{
    const std::array<OpcUa_DataValue, 7> ordered = {
        makeValue([](OpcUa_DataValue&) {}),
        makeValue([](OpcUa_DataValue& v) { v.Value.Value.Int32 = 6; }),
        makeValue([](OpcUa_DataValue& v) { v.ServerPicoseconds = 11; }),
        makeValue([](OpcUa_DataValue& v) { v.SourcePicoseconds = 11; }),
        makeValue([](OpcUa_DataValue& v) { v.ServerTimestamp.dwLowDateTime = 11; }),
        makeValue([](OpcUa_DataValue& v) { v.SourceTimestamp.dwLowDateTime = 11; }),
        makeValue([](OpcUa_DataValue& v) { v.StatusCode = 11; })};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            SCOPED_TRACE(testing::Message() << i << " against " << j);
            const OpcUa_Int32 order = OpcUa_DataValue_Compare(&ordered[i], &ordered[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
}

TEST(DataValue, copy_of_a_broken_value_clears_everything)
{
    const OpcUa_DataValue source = makeValue([](OpcUa_DataValue& v) { v.Value.Datatype = 26; });
    OpcUa_DataValue copy = makeValue([](OpcUa_DataValue&) {});
    EXPECT_EQ(OpcUa_DataValue_CopyTo(&source, &copy), OpcUa_BadInvalidArgument);
    EXPECT_EQ(copy.Value.Datatype, OpcUaType_Null);
    EXPECT_EQ(copy.StatusCode, OpcUa_Good);
    EXPECT_EQ(copy.ServerPicoseconds, 0);
}

} // namespace
