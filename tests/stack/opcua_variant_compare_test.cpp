#include "platform/status.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_variant.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* compareComplaint = "OpcUa_Variant_Compare: invalid matrix size!\n";

void makeInt32s(OpcUa_Variant& variant, const std::vector<OpcUa_Int32>& dimensions,
                const std::vector<OpcUa_Int32>& values)
{
    makeMatrix(variant, OpcUaType_Int32, dimensions, static_cast<OpcUa_Int32>(values.size()));
    std::copy(values.begin(), values.end(),
              static_cast<OpcUa_Int32*>(variant.Value.Matrix.Elements));
}

class VariantCompareOfType : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(VariantCompareOfType, scalars_differ_as_their_type_says)
{
    OwnedVariant left;
    makeScalar(*left, GetParam());
    OwnedVariant right;
    BuiltInSample other = GetParam();
    other.fill = other.fillOther;
    makeScalar(*right, other);
    const BuiltInValue leftValue(GetParam().type, GetParam().fill);
    const BuiltInValue rightValue(GetParam().type, GetParam().fillOther);
    const OpcUa_Int32 expected = GetParam().type > OpcUaType_DataValue
                                     ? 0
                                     : OpcUa_BuiltInType_GetTraits(GetParam().type)
                                           ->Compare(leftValue.get(), rightValue.get());
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), expected);
}

TEST_P(VariantCompareOfType, arrays_and_matrices_differ_by_their_first_unequal_element)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(GetParam().type);
    for (const VariantShape shape : {VariantShape::Array, VariantShape::Matrix}) {
        OwnedVariant left;
        makeShape(*left, GetParam(), shape);
        OwnedVariant right;
        makeShape(*right, GetParam(), shape);
        void* elements = shape == VariantShape::Array ? right->Value.Array.Elements
                                                      : right->Value.Matrix.Elements;
        void* last = static_cast<char*>(elements) + 2 * traits.Size;
        traits.Clear(last);
        GetParam().fillOther(last);
        EXPECT_NE(OpcUa_Variant_Compare(left.get(), right.get()), 0);
        EXPECT_NE(OpcUa_Variant_Compare(right.get(), left.get()), 0);
    }
}

class VariantCompareOfPointerHeldType : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(VariantCompareOfPointerHeldType, null_pointer_of_a_scalar_equals_only_another)
{
    // Scalars of the last two types are never looked at.
    const bool isCompared = GetParam().type <= OpcUaType_DataValue;
    OwnedVariant filled;
    makeScalar(*filled, GetParam());
    OwnedVariant null;
    null->Datatype = GetParam().type;
    OwnedVariant otherNull;
    otherNull->Datatype = GetParam().type;
    EXPECT_EQ(OpcUa_Variant_Compare(null.get(), otherNull.get()), 0);
    EXPECT_EQ(OpcUa_Variant_Compare(filled.get(), null.get()), isCompared ? 1 : 0);
    const OpcUa_Int32 nullFirst = GetParam().type == OpcUaType_ExtensionObject ? 1 : -1;
    EXPECT_EQ(OpcUa_Variant_Compare(null.get(), filled.get()), isCompared ? nullFirst : 0);
}

INSTANTIATE_TEST_SUITE_P(Type, VariantCompareOfType, testing::ValuesIn(builtInSamples()),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Type, VariantCompareOfPointerHeldType,
                         testing::ValuesIn(builtInSamplesWhere(
                             [](const OpcUa_ElementTraits& traits) { return traits.IsByPointer; })),
                         testing::PrintToStringParamName());

TEST(VariantCompare, pointers)
{
    OwnedVariant variant;
    EXPECT_EQ(OpcUa_Variant_Compare(nullptr, nullptr), 0);
    EXPECT_EQ(OpcUa_Variant_Compare(variant.get(), variant.get()), 0);
    EXPECT_EQ(OpcUa_Variant_Compare(nullptr, variant.get()), -1);
    EXPECT_EQ(OpcUa_Variant_Compare(variant.get(), nullptr), 1);
}

TEST(VariantCompare, type_and_shape_come_first)
{
    OwnedVariant left;
    left->Datatype = OpcUaType_Int16;
    OwnedVariant right;
    right->Datatype = OpcUaType_UInt32;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 4 - 7);
    right->Datatype = OpcUaType_Int16;
    right->ArrayType = OpcUa_VariantArrayType_Matrix;
    right->Value.Matrix = {0, nullptr, nullptr};
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), -2);
}

TEST(VariantCompare, two_null_variants_are_equal)
{
    OwnedVariant left;
    OwnedVariant right;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 0);
}

TEST(VariantCompare, two_nan_doubles_are_equal)
{
    OwnedVariant left;
    left->Datatype = OpcUaType_Double;
    left->Value.Double = std::numeric_limits<OpcUa_Double>::quiet_NaN();
    OwnedVariant right;
    *right = *left;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 0);
    right->Value.Double = 1;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 1);
    EXPECT_EQ(OpcUa_Variant_Compare(right.get(), left.get()), 1);
}

TEST(VariantCompare, wide_integers_and_times_go_by_their_bytes)
{
    const OpcUa_UInt64 one = 1;
    const OpcUa_UInt64 more = 256;
    const OpcUa_Int32 expected = std::memcmp(&one, &more, 8) < 0 ? -1 : 1;
    for (const OpcUa_Byte type : {OpcUaType_Int64, OpcUaType_UInt64, OpcUaType_DateTime}) {
        SCOPED_TRACE(int{type});
        OwnedVariant left;
        left->Datatype = type;
        std::memcpy(&left->Value, &one, sizeof(one));
        OwnedVariant right;
        right->Datatype = type;
        std::memcpy(&right->Value, &more, sizeof(more));
        EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), expected);
        EXPECT_EQ(OpcUa_Variant_Compare(right.get(), left.get()), -expected);
    }
}

TEST(VariantCompare, unknown_types_and_shapes_are_equal)
{
    OwnedVariant left;
    left->Datatype = 99;
    left->Value.Int32 = 1;
    OwnedVariant right;
    right->Datatype = 99;
    right->Value.Int32 = 2;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 0);
    left->Datatype = right->Datatype = OpcUaType_Int32;
    left->ArrayType = right->ArrayType = 3;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 0);
}

TEST(VariantCompare, array_length_decides_before_the_elements)
{
    const BuiltInSample& sample = builtInSamples()[OpcUaType_String - 1];
    OwnedVariant left;
    makeArray(*left, sample, 2);
    OwnedVariant right;
    makeArray(*right, sample, 5);
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), -3);
    EXPECT_EQ(OpcUa_Variant_Compare(right.get(), left.get()), 3);
}

TEST(VariantCompare, array_without_elements_is_less_than_one_with_them)
{
    OwnedVariant left;
    left->Datatype = OpcUaType_String;
    left->ArrayType = OpcUa_VariantArrayType_Array;
    left->Value.Array = {2, nullptr};
    OwnedVariant right;
    makeArray(*right, builtInSamples()[OpcUaType_String - 1], 2);
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), -1);
    EXPECT_EQ(OpcUa_Variant_Compare(right.get(), left.get()), 1);
}

TEST(VariantCompare, matrices_go_by_their_product_whatever_the_dimensions)
{
    const TraceRecorder recorder;
    OwnedVariant left;
    makeInt32s(*left, {2, 3}, {1, 2, 3, 4, 5, 6});
    OwnedVariant right;
    makeInt32s(*right, {3, 2}, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), 0);
    OwnedVariant larger;
    makeInt32s(*larger, {5, 2}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), larger.get()), -4);
    static_cast<OpcUa_Int32*>(right->Value.Matrix.Elements)[5] = 9;
    EXPECT_EQ(OpcUa_Variant_Compare(left.get(), right.get()), -3);
    EXPECT_THAT(TraceRecorder::messages(), IsEmpty());
}

TEST(VariantCompare, matrix_of_a_non_positive_size_is_traced)
{
    const TraceRecorder recorder;
    OwnedVariant zero;
    makeMatrix(*zero, OpcUaType_Int32, {0, 3}, 0);
    OwnedVariant otherZero;
    makeMatrix(*otherZero, OpcUaType_Int32, {2, 0, 3}, 0);
    EXPECT_EQ(OpcUa_Variant_Compare(zero.get(), otherZero.get()), 0);
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre(compareComplaint));

    TraceRecorder::messages().clear();
    OwnedVariant proper;
    makeInt32s(*proper, {2}, {1, 2});
    EXPECT_EQ(OpcUa_Variant_Compare(zero.get(), proper.get()), -2);
    EXPECT_EQ(OpcUa_Variant_Compare(proper.get(), zero.get()), 2);
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre(compareComplaint, compareComplaint));

    TraceRecorder::messages().clear();
    OwnedVariant negative;
    makeMatrix(*negative, OpcUaType_Int32, {-4}, 0);
    EXPECT_EQ(OpcUa_Variant_Compare(negative.get(), zero.get()), -4);
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre(compareComplaint));
}

} // namespace
