#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_nesting.h"
#include "stack/opcua_variant.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"
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

constexpr const char* clearComplaint = "OpcUa_Variant_Clear: invalid matrix size!\n";

TEST(Variant, initialised_one_is_all_zero)
{
    OpcUa_Variant variant;
    std::memset(&variant, 0xA5, sizeof(variant));
    OpcUa_Variant_Initialize(&variant);
    std::array<unsigned char, sizeof(OpcUa_Variant)> bytes{};
    std::memcpy(bytes.data(), &variant, bytes.size());
    EXPECT_THAT(bytes, testing::Each(0));
}

TEST(Variant, it_moves_by_a_plain_copy_of_its_memory)
{
    OwnedVariant source;
    makeArray(*source, builtInSamples()[OpcUaType_String - 1], 3);
    const void* elements = source->Value.Array.Elements;
    OwnedVariant target;
    std::memcpy(target.get(), source.get(), sizeof(OpcUa_Variant));
    OpcUa_Variant_Initialize(source.get());
    EXPECT_EQ(target->Value.Array.Elements, elements);
    EXPECT_EQ(source->Datatype, OpcUaType_Null);
}

class VariantsOfType : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(VariantsOfType, each_shape_is_copied_compared_and_cleared)
{
    for (const VariantShape shape : allShapes) {
        SCOPED_TRACE(static_cast<int>(shape));
        OwnedVariant source;
        makeShape(*source, GetParam(), shape);
        OwnedVariant copy;
        EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(copy->Datatype, source->Datatype);
        EXPECT_EQ(copy->ArrayType, source->ArrayType);
        EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
        OpcUa_Variant_Clear(source.get());
        EXPECT_EQ(source->Datatype, OpcUaType_Null);
        OwnedVariant again;
        makeShape(*again, GetParam(), shape);
        EXPECT_EQ(OpcUa_Variant_Compare(again.get(), copy.get()), 0);
        OpcUa_Variant_Clear(copy.get());
        OpcUa_Variant_Clear(copy.get());
        EXPECT_EQ(copy->Datatype, OpcUaType_Null);
    }
}

TEST_P(VariantsOfType, every_failing_allocation_leaves_a_null_variant)
{
    for (const VariantShape shape : allShapes) {
        SCOPED_TRACE(static_cast<int>(shape));
        OwnedVariant source;
        makeShape(*source, GetParam(), shape);
        std::unique_ptr<OwnedVariant> copy;
        forEveryFailingAllocation(
            [&] {
                copy = std::make_unique<OwnedVariant>();
                (*copy)->Datatype = OpcUaType_Int32;
                return OpcUa_Variant_CopyTo(source.get(), copy->get());
            },
            [&](OpcUa_StatusCode status) {
                EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                EXPECT_EQ((*copy)->Datatype, OpcUaType_Null);
                EXPECT_EQ((*copy)->ArrayType, OpcUa_VariantArrayType_Scalar);
            });
        EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy->get()), 0);
    }
}

TEST_P(VariantsOfType, arrays_without_elements_keep_their_length)
{
    for (const OpcUa_Int32 length : {-1, 0, 5, std::numeric_limits<OpcUa_Int32>::max(),
                                     std::numeric_limits<OpcUa_Int32>::min()}) {
        SCOPED_TRACE(length);
        OwnedVariant source;
        source->Datatype = GetParam().type;
        source->ArrayType = OpcUa_VariantArrayType_Array;
        source->Value.Array = {length, nullptr};
        OwnedVariant copy;
        EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(copy->Value.Array.Length, length);
        EXPECT_EQ(copy->Value.Array.Elements, nullptr);
        EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
    }
}

TEST_P(VariantsOfType, array_of_length_0_with_a_block_frees_the_block)
{
    OwnedVariant variant;
    variant->Datatype = GetParam().type;
    variant->ArrayType = OpcUa_VariantArrayType_Array;
    variant->Value.Array = {0, OpcUa_Memory_Alloc(0)};
    OpcUa_Variant_Clear(variant.get());
    EXPECT_EQ(variant->Datatype, OpcUaType_Null);
}

class VariantsOfPointerHeldType : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(VariantsOfPointerHeldType, null_pointer_of_a_scalar_is_kept)
{
    OwnedVariant source;
    source->Datatype = GetParam().type;
    OwnedVariant copy;
    EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(copy->Datatype, GetParam().type);
    EXPECT_EQ(copy->Value.Guid, nullptr);
    EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
    OpcUa_Variant_Clear(source.get());
}

INSTANTIATE_TEST_SUITE_P(Type, VariantsOfType, testing::ValuesIn(builtInSamples()),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Type, VariantsOfPointerHeldType,
                         testing::ValuesIn(builtInSamplesWhere(
                             [](const OpcUa_ElementTraits& traits) { return traits.IsByPointer; })),
                         testing::PrintToStringParamName());

TEST(Variant, array_of_null_elements_is_copied_by_its_length)
{
    OwnedVariant source;
    source->ArrayType = OpcUa_VariantArrayType_Array;
    source->Value.Array = {4, OpcUa_Memory_Alloc(0)};
    OwnedVariant copy;
    EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(copy->Value.Array.Length, 4);
    EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
}

TEST(Variant, copy_refuses_unknown_types_and_shapes)
{
    for (const auto& [type, arrayType] : {std::pair{26, 0}, {255, 0}, {63, 1}, {6, 3}, {12, 255}}) {
        SCOPED_TRACE(testing::Message() << type << ", " << arrayType);
        OwnedVariant source;
        source->Datatype = static_cast<OpcUa_Byte>(type);
        source->ArrayType = static_cast<OpcUa_Byte>(arrayType);
        OwnedVariant copy;
        makeScalar(*copy, builtInSamples()[OpcUaType_String - 1]);
        EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_BadInvalidArgument);
        EXPECT_EQ(copy->Datatype, OpcUaType_Null);
        OpcUa_Variant_Clear(source.get());
        EXPECT_EQ(source->Datatype, OpcUaType_Null);
        EXPECT_EQ(source->ArrayType, OpcUa_VariantArrayType_Scalar);
    }
}

TEST(Variant, copy_may_come_from_inside_the_destination)
{
    OwnedVariant outer;
    makeArray(*outer, builtInSamples()[OpcUaType_Variant - 1], 1);
    OwnedVariant expected;
    auto* inner = static_cast<OpcUa_Variant*>(outer->Value.Array.Elements);
    ASSERT_EQ(OpcUa_Variant_CopyTo(inner, expected.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_Variant_CopyTo(inner, outer.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_Variant_Compare(outer.get(), expected.get()), 0);
}

TEST(Variant, copy_of_a_broken_element_frees_the_elements_before_it)
{
    OwnedVariant source;
    makeArray(*source, builtInSamples()[OpcUaType_Variant - 1], 3);
    auto* elements = static_cast<OpcUa_Variant*>(source->Value.Array.Elements);
    OpcUa_Variant_Clear(&elements[2]);
    elements[2].Datatype = 26;
    OwnedVariant copy;
    EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_BadInvalidArgument);
    EXPECT_EQ(copy->Datatype, OpcUaType_Null);
}

TEST(VariantMatrix, size_is_the_product_of_the_dimensions)
{
    constexpr OpcUa_Int32 largest = std::numeric_limits<OpcUa_Int32>::max();
    constexpr OpcUa_Int32 lowest = std::numeric_limits<OpcUa_Int32>::min();
    struct Row
    {
        const char* name;
        std::vector<OpcUa_Int32> dimensions;
        OpcUa_Int32 expected;
    };
    const std::array<Row, 17> rows = {{{"no dimensions", {}, 1},
                                       {"one", {7}, 7},
                                       {"two", {2, 3}, 6},
                                       {"three", {2, 3, 4}, 24},
                                       {"zero first", {0, 3}, 0},
                                       {"zero last", {3, 0}, 0},
                                       {"negative", {-2, 3}, -6},
                                       {"two negative", {-1, -1}, 1},
                                       {"largest", {largest}, largest},
                                       {"largest, once", {largest, 1}, largest},
                                       {"two too large", {65536, 32768}, 0},
                                       {"just fitting", {65536, 32767}, 2147418112},
                                       {"squares of the largest", {largest, largest, largest}, 0},
                                       {"wrapping 32 bits to 1", {65537, 65535, 1}, 0},
                                       {"wrapping 64 bits", {65536, 65536, 65536, 65536}, 0},
                                       {"lowest", {lowest}, 0},
                                       {"lowest squared", {lowest, lowest}, 0}}};
    for (Row row : rows) {
        SCOPED_TRACE(row.name);
        const OpcUa_VariantMatrix matrix{static_cast<OpcUa_Int32>(row.dimensions.size()),
                                         row.dimensions.data(), nullptr};
        EXPECT_EQ(OpcUa_Variant_MatrixSize(&matrix), row.expected);
    }
    EXPECT_EQ(OpcUa_Variant_MatrixSize(nullptr), 0);
    const OpcUa_VariantMatrix noDimensions{2, nullptr, nullptr};
    EXPECT_EQ(OpcUa_Variant_MatrixSize(&noDimensions), 0);
    const OpcUa_VariantMatrix negativeCount{-3, nullptr, nullptr};
    EXPECT_EQ(OpcUa_Variant_MatrixSize(&negativeCount), 1);
}

TEST(VariantMatrix, clear_of_a_dimension_0_keeps_the_elements_and_traces)
{
    for (const std::vector<OpcUa_Int32>& dimensions :
         {std::vector<OpcUa_Int32>{0, 3}, {3, 0}, {-2, 3}, {65536, 65536}}) {
        const TraceRecorder recorder;
        OwnedVariant variant;
        makeMatrix(*variant, OpcUaType_Int32, dimensions, 0);
        auto* elements = static_cast<OpcUa_Int32*>(OpcUa_Memory_AllocArray(3, 4));
        elements[2] = 77;
        variant->Value.Matrix.Elements = elements;
        OpcUa_Variant_Clear(variant.get());
        EXPECT_THAT(TraceRecorder::messages(), ElementsAre(clearComplaint));
        EXPECT_EQ(variant->Datatype, OpcUaType_Null);
        // Still there: a sanitizer would see it freed.
        EXPECT_EQ(elements[2], 77);
        OpcUa_Memory_Free(elements);
    }
}

TEST(VariantMatrix, clear_of_a_proper_matrix_traces_nothing)
{
    const TraceRecorder recorder;
    OwnedVariant variant;
    makeMatrix(*variant, OpcUaType_Int32, {2, 3}, 6);
    OpcUa_Variant_Clear(variant.get());
    makeMatrix(*variant, OpcUaType_Int32, {}, 1);
    OpcUa_Variant_Clear(variant.get());
    makeMatrix(*variant, OpcUaType_Int32, {2, 3}, 0);
    OpcUa_Variant_Clear(variant.get());
    EXPECT_THAT(TraceRecorder::messages(), IsEmpty());
}

TEST(VariantMatrix, copy_of_a_matrix_without_elements_keeps_the_dimensions)
{
    for (const std::vector<OpcUa_Int32>& dimensions :
         {std::vector<OpcUa_Int32>{0, 0}, {-1, -1}, {2, 3}}) {
        OwnedVariant source;
        makeMatrix(*source, OpcUaType_String, dimensions, 0);
        OwnedVariant copy;
        EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
        ASSERT_EQ(copy->Value.Matrix.NoOfDimensions, 2);
        EXPECT_EQ(copy->Value.Matrix.Dimensions[0], dimensions[0]);
        EXPECT_EQ(copy->Value.Matrix.Dimensions[1], dimensions[1]);
        EXPECT_NE(copy->Value.Matrix.Dimensions, source->Value.Matrix.Dimensions);
        EXPECT_EQ(copy->Value.Matrix.Elements, nullptr);
        EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
    }
}

TEST(VariantMatrix, copy_of_missing_dimensions_keeps_their_count)
{
    OwnedVariant source;
    source->Datatype = OpcUaType_Int32;
    source->ArrayType = OpcUa_VariantArrayType_Matrix;
    source->Value.Matrix = {2, nullptr, nullptr};
    OwnedVariant copy;
    EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(copy->Value.Matrix.NoOfDimensions, 2);
    EXPECT_EQ(copy->Value.Matrix.Dimensions, nullptr);
    EXPECT_EQ(copy->Value.Matrix.Elements, nullptr);
}

TEST(VariantNesting, every_kind_is_copied_up_to_the_limit)
{
    for (const NestingKind kind : allNestingKinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        OwnedVariant source;
        makeNested(*source, kind, OpcUa_Nesting_MaxLevels);
        OwnedVariant copy;
        EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
    }
}

TEST(VariantNesting, deeper_nesting_is_refused_never_equal_and_cleared)
{
    for (const NestingKind kind : allNestingKinds) {
        for (const OpcUa_UInt32 depth : {OpcUa_Nesting_MaxLevels + 1, OpcUa_UInt32{100000}}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << ", depth " << depth);
            OwnedVariant source;
            makeNested(*source, kind, depth);
            OwnedVariant twin;
            makeNested(*twin, kind, depth);
            OwnedVariant copy;
            EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()),
                      OpcUa_BadEncodingLimitsExceeded);
            EXPECT_EQ(copy->Datatype, OpcUaType_Null);
            // As a scalar a variant is never looked into by a comparison.
            EXPECT_EQ(OpcUa_Variant_Compare(source.get(), twin.get()),
                      kind == NestingKind::ScalarVariant ? 0 : 1);
            OpcUa_Variant_Clear(source.get());
            EXPECT_EQ(source->Datatype, OpcUaType_Null);
        }
    }
}

TEST(VariantNesting, limit_counts_levels_and_not_siblings)
{
    OwnedVariant source;
    makeArray(*source, builtInSamples()[OpcUaType_Variant - 1], 1000);
    OwnedVariant copy;
    EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_Variant_Compare(source.get(), copy.get()), 0);
    OwnedVariant deep;
    makeNested(*deep, NestingKind::ArrayOfVariants, OpcUa_Nesting_MaxLevels + 1);
    OwnedVariant refused;
    EXPECT_EQ(OpcUa_Variant_CopyTo(deep.get(), refused.get()), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(OpcUa_Variant_CopyTo(source.get(), copy.get()), OpcUa_Good);
}

TEST(VariantNesting, deep_value_is_freed_even_without_memory_for_the_bookkeeping)
{
    OwnedVariant variant;
    makeNested(*variant, NestingKind::ArrayOfVariants, 3 * OpcUa_Nesting_MaxLevels);
    OpcUa_Memory_SetFaultHook([](std::size_t) { return true; });
    OpcUa_Variant_Clear(variant.get());
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_EQ(variant->Datatype, OpcUaType_Null);
}

} // namespace
