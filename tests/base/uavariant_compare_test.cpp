#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uadatavalue.h"
#include "base/uadatetime.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "base/uastatuscode.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "stack/opcua_nesting.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr OpcUa_Double nan = std::numeric_limits<OpcUa_Double>::quiet_NaN();
constexpr OpcUa_Float nanFloat = std::numeric_limits<OpcUa_Float>::quiet_NaN();

UaVariant variantOf(const BuiltInSample& sample, VariantShape shape)
{
    OwnedVariant filled;
    makeShape(*filled, sample, shape);
    UaVariant variant;
    variant.attach(*filled);
    return variant;
}

/// The same with the last element, or the scalar, in its other form.
UaVariant otherOf(const BuiltInSample& sample, VariantShape shape)
{
    const BuiltInSample other = {sample.name, sample.type, sample.fillOther, sample.fill};
    if (shape == VariantShape::Scalar) {
        return variantOf(other, shape);
    }
    UaVariant variant = variantOf(sample, shape);
    OpcUa_Variant stack;
    variant.detach(&stack);
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(sample.type);
    auto* block = static_cast<char*>(shape == VariantShape::Array ? stack.Value.Array.Elements
                                                                  : stack.Value.Matrix.Elements);
    char* last = block + traits.Size * (shape == VariantShape::Array ? 2 : 5);
    traits.Clear(last);
    sample.fillOther(last);
    variant.attach(stack);
    return variant;
}

UaVariant pointerless(OpcUa_Byte type)
{
    OpcUa_Variant stack{};
    stack.Datatype = type;
    UaVariant variant;
    variant.attach(stack);
    return variant;
}

UaVariant emptyArray(OpcUa_Byte type, OpcUa_Int32 length)
{
    OpcUa_Variant stack{};
    stack.Datatype = type;
    stack.ArrayType = OpcUa_VariantArrayType_Array;
    stack.Value.Array = {length, nullptr};
    UaVariant variant;
    variant.attach(stack);
    return variant;
}

UaVariant doubles(const std::vector<OpcUa_Double>& values)
{
    return UaVariant(UaDoubleArray(static_cast<OpcUa_Int32>(values.size()), values.data()));
}

UaVariant doubleMatrix(const std::vector<OpcUa_Double>& values,
                       const std::vector<OpcUa_Int32>& dimensions)
{
    UaVariant variant;
    EXPECT_EQ(variant.setDoubleMatrix(
                  UaDoubleArray(static_cast<OpcUa_Int32>(values.size()), values.data()),
                  UaInt32Array(static_cast<OpcUa_Int32>(dimensions.size()), dimensions.data())),
              OpcUa_Good);
    return variant;
}

TEST(UaVariantEqual, values_of_every_type_and_shape_equal_their_copies)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            const UaVariant variant = variantOf(sample, shape);
            const bool isDiagnosticInfos =
                sample.type == OpcUaType_DiagnosticInfo && shape != VariantShape::Scalar;
            EXPECT_EQ(variant == UaVariant(variant), !isDiagnosticInfos) << sample;
            EXPECT_EQ(variant != UaVariant(variant), isDiagnosticInfos) << sample;
        }
    }
    EXPECT_EQ(UaVariant(), UaVariant());
}

TEST(UaVariantEqual, values_of_every_type_and_shape_differ_from_others)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            const UaVariant variant = variantOf(sample, shape);
            // The two samples of DataValue differ in their picoseconds, which aren't compared.
            const bool isAlike = sample.type == OpcUaType_DataValue;
            EXPECT_EQ(variant == otherOf(sample, shape), isAlike) << sample;
            EXPECT_NE(variant, UaVariant());
            EXPECT_NE(UaVariant(), variant);
        }
    }
}

TEST(UaVariantEqual, type_and_shape_are_compared_first)
{
    EXPECT_NE(int32(1), uint32(1));
    EXPECT_NE(boolean(1), byte(1));
    EXPECT_NE(int32(1), real(1.0));
    for (const BuiltInSample& sample : builtInSamples()) {
        EXPECT_NE(variantOf(sample, VariantShape::Scalar), variantOf(sample, VariantShape::Array));
        EXPECT_NE(variantOf(sample, VariantShape::Array), variantOf(sample, VariantShape::Matrix));
    }
}

TEST(UaVariantEqual, unknown_types_and_shapes_equal_nothing)
{
    OpcUa_Variant strange{};
    strange.Datatype = 26;
    const auto& variant = reinterpret_cast<const UaVariant&>(strange);
    EXPECT_FALSE(variant == variant);
    strange.Datatype = OpcUaType_Int32;
    strange.ArrayType = 3;
    EXPECT_FALSE(variant == variant);
}

TEST(UaVariantEqual, nan_differs_from_itself_as_a_scalar_and_in_an_array)
{
    EXPECT_FALSE(real(nan) == real(nan));
    EXPECT_FALSE(real(nanFloat) == real(nanFloat));
    const UaVariant array = doubles({1, nan});
    EXPECT_FALSE(array == array);
    EXPECT_TRUE(real(0.0) == real(-0.0));
    EXPECT_TRUE(doubles({0.0}) == doubles({-0.0}));
    const OpcUa_Float floats[] = {nanFloat};
    const UaVariant floatArray{UaFloatArray(1, floats)};
    EXPECT_FALSE(floatArray == floatArray);
}

TEST(UaVariantEqual, matrices_of_equal_bytes_are_equal_even_with_nan)
{
    EXPECT_TRUE(doubleMatrix({1, nan}, {2, 1}) == doubleMatrix({1, nan}, {2, 1}));
    EXPECT_FALSE(doubleMatrix({0.0, nan}, {2, 1}) == doubleMatrix({-0.0, nan}, {2, 1}));
    EXPECT_TRUE(doubleMatrix({0.0, 1}, {2, 1}) == doubleMatrix({-0.0, 1}, {2, 1}));
}

TEST(UaVariantEqual, matrices_need_the_same_dimensions)
{
    EXPECT_FALSE(doubleMatrix({1, 2}, {2, 1}) == doubleMatrix({1, 2}, {1, 2}));
    EXPECT_FALSE(doubleMatrix({1, 2}, {2, 1}) == doubleMatrix({1, 2}, {2}));
    EXPECT_TRUE(doubleMatrix({}, {0, 0}) == doubleMatrix({}, {0, 0}));
    EXPECT_FALSE(doubleMatrix({}, {0, 0}) == doubleMatrix({}, {-1, -1}));
    EXPECT_TRUE(doubleMatrix({}, {}) == doubleMatrix({}, {}));
    OpcUa_Int32 counts[] = {2, 2};
    OpcUa_Variant left{};
    left.Datatype = OpcUaType_Double;
    left.ArrayType = OpcUa_VariantArrayType_Matrix;
    left.Value.Matrix = {2, counts, nullptr};
    const auto& blockless = reinterpret_cast<const UaVariant&>(left);
    EXPECT_FALSE(blockless == doubleMatrix({1, 2, 3, 4}, {2, 2}));
    EXPECT_TRUE(blockless == blockless);
    OpcUa_Variant right = left;
    right.Value.Matrix.Dimensions = nullptr;
    EXPECT_FALSE(blockless == reinterpret_cast<const UaVariant&>(right));
}

TEST(UaVariantEqual, arrays_need_the_same_length)
{
    EXPECT_FALSE(doubles({1, 2}) == doubles({1}));
    EXPECT_TRUE(doubles({}) == doubles({}));
    EXPECT_FALSE(emptyArray(OpcUaType_Double, 0) == emptyArray(OpcUaType_Double, -1));
    EXPECT_TRUE(emptyArray(OpcUaType_Double, 2) == emptyArray(OpcUaType_Double, 2));
    EXPECT_FALSE(emptyArray(OpcUaType_Double, 2) == doubles({1, 2}));
}

TEST(UaVariantEqual, arrays_of_null_are_equal_and_of_diagnostic_infos_never)
{
    EXPECT_TRUE(emptyArray(OpcUaType_Null, 3) == emptyArray(OpcUaType_Null, 3));
    EXPECT_FALSE(emptyArray(OpcUaType_Null, 3) == emptyArray(OpcUaType_Null, 4));
    EXPECT_FALSE(emptyArray(OpcUaType_DiagnosticInfo, 0) ==
                 emptyArray(OpcUaType_DiagnosticInfo, 0));
}

TEST(UaVariantEqual, null_pointers_equal_null_pointers_of_their_type)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        if (!OpcUa_BuiltInType_GetTraits(sample.type)->IsByPointer) {
            continue;
        }
        EXPECT_TRUE(pointerless(sample.type) == pointerless(sample.type)) << sample;
        EXPECT_FALSE(pointerless(sample.type) == variantOf(sample, VariantShape::Scalar));
        EXPECT_FALSE(variantOf(sample, VariantShape::Scalar) == pointerless(sample.type));
    }
    EXPECT_FALSE(pointerless(OpcUaType_Guid) == UaVariant(UaGuid()));
    EXPECT_FALSE(pointerless(OpcUaType_NodeId) == pointerless(OpcUaType_Guid));
}

TEST(UaVariantEqual, texts_and_bytes)
{
    EXPECT_TRUE(text("abc") == text("abc"));
    EXPECT_FALSE(text("abc") == text("ABC"));
    EXPECT_FALSE(text("abc") == text("abcd"));
    UaVariant nullText;
    nullText.setString(UaString());
    EXPECT_FALSE(text("") == nullText) << "a null string differs from an empty one";
    EXPECT_TRUE(nullText == UaVariant(nullText));
    const OpcUa_Byte bytes[] = {1, 2};
    EXPECT_TRUE(UaVariant(UaByteString(2, bytes)) == UaVariant(UaByteString(2, bytes)));
    EXPECT_FALSE(UaVariant(UaByteString(2, bytes)) == UaVariant(UaByteString(1, bytes)));
    EXPECT_FALSE(UaVariant(UaByteString()) == UaVariant(UaByteString(0, nullptr)));
    UaVariant xml;
    xml.setXmlElement(UaByteString(2, bytes));
    EXPECT_TRUE(xml == UaVariant(xml));
    EXPECT_FALSE(xml == UaVariant(UaByteString(2, bytes)));
}

TEST(UaVariantEqual, data_values_are_compared_by_status_and_value_alone)
{
    const UaDataValue value(int32(1), OpcUa_Good, UaDateTime(1), UaDateTime(2), 3, 4);
    const UaDataValue later(int32(1), OpcUa_Good, UaDateTime(9), UaDateTime(9), 9, 9);
    const UaDataValue bad(int32(1), OpcUa_BadNoData, UaDateTime(1), UaDateTime(2), 3, 4);
    const UaDataValue two(int32(2), OpcUa_Good, UaDateTime(1), UaDateTime(2), 3, 4);
    EXPECT_TRUE(UaVariant(value) == UaVariant(later));
    EXPECT_FALSE(UaVariant(value) == UaVariant(bad));
    EXPECT_FALSE(UaVariant(value) == UaVariant(two));
    UaVariant nanValue{UaDataValue(real(nan), OpcUa_Good, UaDateTime(), UaDateTime())};
    EXPECT_FALSE(nanValue == UaVariant(nanValue));
}

TEST(UaVariantEqual, node_ids_of_unknown_type_equal_nothing)
{
    OpcUa_NodeId record;
    OpcUa_NodeId_Initialize(&record);
    record.IdentifierType = 4;
    OpcUa_Variant stack{};
    stack.Datatype = OpcUaType_NodeId;
    stack.Value.NodeId = &record;
    const auto& variant = reinterpret_cast<const UaVariant&>(stack);
    EXPECT_FALSE(variant == variant);
}

TEST(UaVariantEqual, nesting_is_followed_to_a_limit)
{
    for (const NestingKind kind :
         {NestingKind::ArrayOfVariants, NestingKind::ScalarVariant, NestingKind::DataValue}) {
        OwnedVariant shallow;
        makeNested(*shallow, kind, 50);
        const auto& few = reinterpret_cast<const UaVariant&>(*shallow);
        EXPECT_TRUE(few == UaVariant(few));
        OwnedVariant deep;
        makeNested(*deep, kind, OpcUa_Nesting_MaxLevels + 10);
        const auto& many = reinterpret_cast<const UaVariant&>(*deep);
        EXPECT_FALSE(many == many) << "too deep to be told";
    }
}

struct OrderRow
{
    UaVariant left;
    UaVariant right;
    bool isGreaterOrEqual;
    bool isLessOrEqual;
};

UaVariant status(OpcUa_StatusCode code)
{
    return UaVariant(UaStatusCode(code));
}

UaVariant time(OpcUa_Int64 ticks)
{
    return UaVariant(UaDateTime(ticks));
}

TEST(UaVariantOrder, scalars_of_one_type_are_ordered)
{
    const std::vector<OrderRow> rows = {{boolean(0), boolean(1), false, true},
                                        {sbyte(-1), sbyte(1), false, true},
                                        {byte(1), byte(255), false, true},
                                        {int16(-1), int16(1), false, true},
                                        {uint16(1), uint16(65535), false, true},
                                        {int32(-1), int32(1), false, true},
                                        {uint32(1), uint32(UINT32_MAX), false, true},
                                        {int64(-256), int64(1), false, true},
                                        {uint64(256), uint64(UINT64_MAX), false, true},
                                        {real(-1.5F), real(1.5F), false, true},
                                        {real(-1.5), real(1.5), false, true},
                                        {time(255), time(256), false, true},
                                        {time(1), time(-1), false, true}, // counts are unsigned
                                        {status(OpcUa_Good), status(OpcUa_BadNoData), false, true},
                                        {text("z"), text("ab"), false, true}, // the shorter first
                                        {text("ab"), text("ac"), false, true},
                                        {text(""), text("a"), false, true}};
    for (const OrderRow& row : rows) {
        EXPECT_EQ(row.left >= row.right, row.isGreaterOrEqual) << int{row.left.type()};
        EXPECT_EQ(row.left <= row.right, row.isLessOrEqual) << int{row.left.type()};
        EXPECT_EQ(row.right >= row.left, row.isLessOrEqual) << int{row.left.type()};
        EXPECT_EQ(row.right <= row.left, row.isGreaterOrEqual) << int{row.left.type()};
        EXPECT_TRUE(row.left >= UaVariant(row.left)) << int{row.left.type()};
        EXPECT_TRUE(row.left <= UaVariant(row.left)) << int{row.left.type()};
    }
}

TEST(UaVariantOrder, null_strings_and_embedded_nuls_follow_the_order_of_strings)
{
    UaVariant nullText;
    nullText.setString(UaString());
    EXPECT_TRUE(nullText <= text(""));
    EXPECT_FALSE(nullText >= text("")) << "null comes before empty";
    EXPECT_TRUE(text("") >= nullText);
    EXPECT_TRUE(text("") <= nullText) << "equal texts are also less or equal";
    const UaVariant left = text(std::string_view("a\0b", 3));
    const UaVariant right = text(std::string_view("a\0c", 3));
    EXPECT_TRUE(left >= right) << "the comparison ends at the NUL";
    EXPECT_FALSE(left <= right) << "but the texts differ";
}

TEST(UaVariantOrder, nan_is_in_no_order)
{
    EXPECT_FALSE(real(nan) >= real(nan));
    EXPECT_FALSE(real(nan) <= real(nan));
    EXPECT_FALSE(real(nan) >= real(1.0));
    EXPECT_FALSE(real(nanFloat) <= real(1.0F));
}

TEST(UaVariantOrder, every_other_pair_is_false_even_when_equal)
{
    const UaVariant nodeId{UaNodeId(OpcUa_UInt32{85})};
    EXPECT_FALSE(nodeId >= UaVariant(nodeId));
    EXPECT_FALSE(nodeId <= UaVariant(nodeId));
    EXPECT_FALSE(UaVariant() >= UaVariant());
    EXPECT_FALSE(UaVariant() <= UaVariant());
    EXPECT_FALSE(int32(1) >= uint32(1));
    EXPECT_FALSE(int32(1) <= uint32(1));
    for (const BuiltInSample& sample : builtInSamples()) {
        const bool isOrdered =
            sample.type <= OpcUaType_DateTime || sample.type == OpcUaType_StatusCode;
        for (const VariantShape shape : allShapes) {
            const UaVariant variant = variantOf(sample, shape);
            const bool expected = isOrdered && shape == VariantShape::Scalar;
            EXPECT_EQ(variant >= UaVariant(variant), expected) << sample;
            EXPECT_EQ(variant <= UaVariant(variant), expected) << sample;
        }
    }
}

void expectAdjusted(const UaVariant& left, const UaVariant& right, bool bExact,
                    const UaVariant& expectedLeft, const UaVariant& expectedRight,
                    const char* status)
{
    UaVariant adjustedLeft(left);
    UaVariant adjustedRight(right);
    EXPECT_EQ(nameOf(UaVariant::adjustTypes(adjustedLeft, adjustedRight, bExact)), status);
    EXPECT_EQ(adjustedLeft.type(), expectedLeft.type());
    EXPECT_EQ(adjustedLeft, expectedLeft);
    EXPECT_EQ(adjustedRight.type(), expectedRight.type());
    EXPECT_EQ(adjustedRight, expectedRight);
}

TEST(UaVariantAdjustTypes, picks_the_common_type_of_two_numbers)
{
    expectAdjusted(boolean(1), byte(5), false, uint64(1), uint64(5), "Good");
    expectAdjusted(uint16(7), uint32(8), false, uint64(7), uint64(8), "Good");
    expectAdjusted(uint64(UINT64_MAX), boolean(0), false, uint64(UINT64_MAX), uint64(0), "Good");
    expectAdjusted(int32(-7), uint32(8), false, int64(-7), int64(8), "Good");
    expectAdjusted(sbyte(-7), int16(8), false, int64(-7), int64(8), "Good");
    expectAdjusted(boolean(1), sbyte(-1), false, int64(1), int64(-1), "Good");
    expectAdjusted(int64(5), real(0.5F), false, real(5.0), real(0.5), "Good");
    expectAdjusted(real(0.5), byte(7), false, real(0.5), real(7.0), "Good");
    expectAdjusted(real(0.5F), real(0.25), false, real(0.5), real(0.25), "Good");
}

TEST(UaVariantAdjustTypes, values_of_one_type_stay_when_exact)
{
    expectAdjusted(int32(1), int32(2), true, int32(1), int32(2), "Good");
    expectAdjusted(int32(1), int32(2), false, int64(1), int64(2), "Good");
    expectAdjusted(byte(1), byte(2), true, byte(1), byte(2), "Good");
    expectAdjusted(byte(1), byte(2), false, uint64(1), uint64(2), "Good");
    expectAdjusted(real(1.0F), real(2.0F), true, real(1.0F), real(2.0F), "Good");
    expectAdjusted(int32(1), byte(2), true, int64(1), int64(2), "Good");
}

TEST(UaVariantAdjustTypes, other_types_and_shapes_stay)
{
    expectAdjusted(text("1"), int32(2), false, text("1"), int32(2), "Good");
    expectAdjusted(int32(2), text("1"), false, int32(2), text("1"), "Good");
    expectAdjusted(UaVariant(), int32(2), false, UaVariant(), int32(2), "Good");
    expectAdjusted(doubles({1}), real(2.0), false, doubles({1}), real(2.0), "Good");
    expectAdjusted(status(1), uint32(2), false, status(1), uint32(2), "Good");
}

TEST(UaVariantAdjustTypes, a_value_that_does_not_fit_leaves_both)
{
    expectAdjusted(int32(-1), uint64(UINT64_MAX), false, int32(-1), uint64(UINT64_MAX),
                   "BadOutOfRange");
    expectAdjusted(uint64(UINT64_MAX), sbyte(-1), false, uint64(UINT64_MAX), sbyte(-1),
                   "BadOutOfRange");
}

} // namespace
