// The examples of docs/values.md about arrays and variants. What stands between the markers is quoted
// there word for word.

#include "base/uaarrays.h"
#include "base/uabytestring.h"
#include "base/uanumericrange.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "stack/opcua_variant.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace {

/// Readings as they come from a device.
const std::vector<OpcUa_Double> readings = {20.5, 21.0, 21.5, 22.0, 22.5, 23.0};

TEST(DocsVariants, arrays_own_their_block)
{
    // docs begin
    UaDoubleArray temperatures(static_cast<OpcUa_Int32>(readings.size()), readings.data());
    temperatures[0] = 20.0; // the array's own copy

    OpcUa_Double sum = 0;
    for (const OpcUa_Double temperature : temperatures) {
        sum += temperature;
    }
    EXPECT_EQ(sum, 130.0);
    EXPECT_EQ(readings[0], 20.5);
    // docs end
}

TEST(DocsVariants, texts_in_an_array)
{
    // docs begin
    UaStringArray names;
    if (OpcUa_IsGood(names.create(2))) {
        EXPECT_EQ(UaString("Pump").copyTo(&names[0]), OpcUa_Good);
        EXPECT_EQ(UaString("Valve").copyTo(&names[1]), OpcUa_Good);
    }
    // docs end
    EXPECT_EQ(UaString(&names[1]), "Valve");
}

TEST(DocsVariants, blocks_move)
{
    // docs begin
    UaDoubleArray temperatures(static_cast<OpcUa_Int32>(readings.size()), readings.data());
    UaVariant value(temperatures, true); // moves the block
    EXPECT_EQ(temperatures.length(), 0);

    OpcUa_Variant stack;
    value.detach(&stack); // a record of the stack, which the caller clears
    EXPECT_TRUE(value.isEmpty());
    EXPECT_EQ(temperatures.setArray(stack, true), OpcUa_Good); // and back again
    EXPECT_EQ(temperatures.length(), 6);
    // docs end
}

TEST(DocsVariants, values_of_any_type)
{
    // docs begin
    UaVariant value(21.5);
    EXPECT_EQ(value.type(), OpcUaType_Double);
    EXPECT_EQ(value.toString(), "21.5");

    value = UaString("running");
    EXPECT_EQ(value.type(), OpcUaType_String);

    value.setBool(OpcUa_True); // OpcUa_Boolean and OpcUa_Byte are one type: a setter names it
    EXPECT_EQ(value.toString(), "true");
    // docs end
}

TEST(DocsVariants, conversions_tell_what_they_refuse)
{
    // docs begin
    OpcUa_Int16 speed = -1;
    EXPECT_EQ(UaVariant(UaString("1500")).toInt16(speed), OpcUa_Good);
    EXPECT_EQ(speed, 1500);
    EXPECT_EQ(UaVariant(99.5).toInt16(speed), OpcUa_Good);
    EXPECT_EQ(speed, 100); // rounded
    EXPECT_EQ(UaVariant(OpcUa_Int32{40000}).toInt16(speed), OpcUa_BadOutOfRange);
    EXPECT_EQ(speed, 100); // untouched
    // docs end
}

TEST(DocsVariants, type_changes_in_place)
{
    // docs begin
    UaVariant input(UaString("{1| 2 |3}")); // what a person typed
    EXPECT_EQ(input.changeType(OpcUaType_Int32, true), OpcUa_Good);
    EXPECT_EQ(input.toString(), "{1,2,3}");

    UaVariant wrong(UaString("{1|two|3}"));
    EXPECT_EQ(wrong.changeType(OpcUaType_Int32, true), OpcUa_BadOutOfRange);
    EXPECT_EQ(wrong.toString(), "{1|two|3}"); // still the text
    // docs end
}

TEST(DocsVariants, matrices_have_dimensions)
{
    // docs begin
    const OpcUa_Int32 rowsAndColumns[] = {2, 3};
    UaDoubleArray cells(static_cast<OpcUa_Int32>(readings.size()), readings.data());
    UaVariant table;
    EXPECT_EQ(table.setDoubleMatrix(cells, UaInt32Array(2, rowsAndColumns), true), OpcUa_Good);
    EXPECT_TRUE(table.isMatrix());
    EXPECT_EQ(table.arraySize(), 6);
    // docs end
}

TEST(DocsVariants, parts_are_read_and_written)
{
    // docs begin
    UaVariant trend(UaDoubleArray(static_cast<OpcUa_Int32>(readings.size()), readings.data()));
    UaNumericRange range;
    EXPECT_EQ(range.fromString("1:2"), OpcUa_Good);

    UaVariant part;
    EXPECT_EQ(trend.getIndexRange(range, part), OpcUa_Good);
    EXPECT_EQ(part.toString(), "{21,21.5}");

    const OpcUa_Double corrected[] = {20.9, 21.4};
    EXPECT_EQ(trend.setIndexRange(range, UaVariant(UaDoubleArray(2, corrected))), OpcUa_Good);
    EXPECT_EQ(trend.toString(), "{20.5,20.9,21.4,22,22.5,23}");
    // docs end
}

TEST(DocsVariants, comparison)
{
    // docs begin
    UaVariant limit(OpcUa_Int32{50});
    UaVariant speed(49.5);
    EXPECT_FALSE(speed <= limit); // two types are in no order

    EXPECT_EQ(UaVariant::adjustTypes(speed, limit, true), OpcUa_Good);
    EXPECT_TRUE(speed <= limit); // two Doubles are
    // docs end
}

} // namespace
