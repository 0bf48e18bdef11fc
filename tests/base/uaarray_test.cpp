#include "base/uaarray.h"
#include "base/uaarrays.h"
#include "platform/clock.h"
#include "platform/status.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>

// The pattern of the array family, tried on each of its members.

namespace {

template <typename Array, OpcUa_Byte type>
struct Member
{
    using ArrayType = Array;
    static constexpr OpcUa_Byte Type = type;
};

using Members = testing::Types<
    Member<UaBooleanArray, OpcUaType_Boolean>, Member<UaSByteArray, OpcUaType_SByte>,
    Member<UaInt16Array, OpcUaType_Int16>, Member<UaUInt16Array, OpcUaType_UInt16>,
    Member<UaInt32Array, OpcUaType_Int32>, Member<UaUInt32Array, OpcUaType_UInt32>,
    Member<UaInt64Array, OpcUaType_Int64>, Member<UaUInt64Array, OpcUaType_UInt64>,
    Member<UaFloatArray, OpcUaType_Float>, Member<UaDoubleArray, OpcUaType_Double>,
    Member<UaStringArray, OpcUaType_String>, Member<UaDateTimeArray, OpcUaType_DateTime>,
    Member<UaGuidArray, OpcUaType_Guid>, Member<UaByteStringArray, OpcUaType_ByteString>,
    Member<UaNodeIdArray, OpcUaType_NodeId>,
    Member<UaExpandedNodeIdArray, OpcUaType_ExpandedNodeId>,
    Member<UaStatusCodeArray, OpcUaType_StatusCode>,
    Member<UaQualifiedNameArray, OpcUaType_QualifiedName>,
    Member<UaLocalizedTextArray, OpcUaType_LocalizedText>,
    Member<UaExtensionObjectArray, OpcUaType_ExtensionObject>,
    Member<UaVariantArray, OpcUaType_Variant>, Member<UaDataValues, OpcUaType_DataValue>,
    Member<UaDiagnosticInfos, OpcUaType_DiagnosticInfo>>;

template <typename M>
class ArrayFamily : public testing::Test
{
protected:
    using FamilyMember = typename M::ArrayType;

    static const BuiltInSample& sample() { return builtInSamples()[M::Type - OpcUaType_Boolean]; }

    /// Three elements: two alike and one that differs in one field.
    static FamilyMember filled()
    {
        FamilyMember array;
        EXPECT_EQ(array.create(3), OpcUa_Good);
        sample().fill(&array[0]);
        sample().fillOther(&array[1]);
        sample().fill(&array[2]);
        return array;
    }

    static void expectEmpty(const FamilyMember& array)
    {
        EXPECT_EQ(array.length(), 0);
        EXPECT_EQ(array.rawArray(), nullptr);
        EXPECT_EQ(array.begin(), array.end());
        EXPECT_EQ(array, FamilyMember());
    }

    /// An array of another type than this one.
    static void makeStranger(OpcUa_Variant& variant)
    {
        const OpcUa_Byte other = M::Type == OpcUaType_String ? OpcUaType_Int32 : OpcUaType_String;
        makeArray(variant, builtInSamples()[other - OpcUaType_Boolean], 2);
    }
};

TYPED_TEST_SUITE(ArrayFamily, Members);

TYPED_TEST(ArrayFamily, has_one_virtual_operation_and_two_members)
{
    using Array = typename TypeParam::ArrayType;
    EXPECT_TRUE(std::has_virtual_destructor_v<Array>);
    EXPECT_EQ(sizeof(Array), 3 * sizeof(void*));
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Array>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<Array>);
}

TYPED_TEST(ArrayFamily, default_is_empty_and_clears_twice)
{
    typename TypeParam::ArrayType array;
    this->expectEmpty(array);
    array.clear();
    array.clear();
    this->expectEmpty(array);
}

TYPED_TEST(ArrayFamily, count_below_one_or_null_pointer_gives_the_empty_array)
{
    using Array = typename TypeParam::ArrayType;
    const Array source = this->filled();
    this->expectEmpty(Array(-1, source.rawArray()));
    this->expectEmpty(Array(0, source.rawArray()));
    this->expectEmpty(Array(3, nullptr));
}

TYPED_TEST(ArrayFamily, constructor_copies_every_element_deeply)
{
    using Array = typename TypeParam::ArrayType;
    Array source = this->filled();
    const Array copy(source.length(), source.rawArray());
    EXPECT_NE(copy.rawArray(), source.rawArray());
    EXPECT_EQ(copy, source);
    source.clear();
    EXPECT_EQ(copy, this->filled());
}

TYPED_TEST(ArrayFamily, copies_are_deep)
{
    using Array = typename TypeParam::ArrayType;
    Array source = this->filled();
    const Array constructed(source);
    Array assigned;
    assigned = source;
    assigned = *&assigned;
    source.clear();
    EXPECT_EQ(constructed, this->filled());
    EXPECT_EQ(assigned, this->filled());
    assigned = Array();
    this->expectEmpty(assigned);
}

TYPED_TEST(ArrayFamily, moves_take_the_block_and_leave_an_empty_array)
{
    using Array = typename TypeParam::ArrayType;
    Array source = this->filled();
    const auto* block = source.rawArray();
    Array constructed(std::move(source));
    EXPECT_EQ(constructed.rawArray(), block);
    this->expectEmpty(source); // NOLINT(bugprone-use-after-move): its state is the promise
    Array assigned = this->filled();
    assigned = std::move(constructed);
    EXPECT_EQ(assigned.rawArray(), block);
    this->expectEmpty(constructed); // NOLINT(bugprone-use-after-move): its state is the promise
    assigned.swap(constructed);
    EXPECT_EQ(constructed.rawArray(), block);
    this->expectEmpty(assigned);
}

TYPED_TEST(ArrayFamily, equality_needs_the_same_length_and_elements)
{
    using Array = typename TypeParam::ArrayType;
    const Array array = this->filled();
    EXPECT_EQ(array, this->filled());
    EXPECT_NE(array, Array(2, array.rawArray()));
    EXPECT_NE(Array(1, array.rawArray()), Array(1, array.rawArray() + 1));
    EXPECT_NE(array, Array());
}

TYPED_TEST(ArrayFamily, empty_arrays_are_equal_whatever_their_history)
{
    using Array = typename TypeParam::ArrayType;
    Array detached = this->filled();
    OpcUa_Elements_Free(*OpcUa_BuiltInType_GetTraits(TypeParam::Type), detached.detach(), 3);
    Array cleared = this->filled();
    cleared.clear();
    EXPECT_EQ(detached, cleared);
    EXPECT_EQ(detached, Array(-1, nullptr));
}

TYPED_TEST(ArrayFamily, elements_are_reached_by_index_and_in_order)
{
    typename TypeParam::ArrayType array = this->filled();
    const auto& constant = array;
    EXPECT_EQ(&array[1], array.rawArray() + 1);
    EXPECT_EQ(&constant[2], constant.rawArray() + 2);
    EXPECT_EQ(std::distance(array.begin(), array.end()), 3);
    EXPECT_EQ(std::distance(constant.begin(), constant.end()), 3);
    EXPECT_EQ(constant.begin(), &array[0]);
}

TYPED_TEST(ArrayFamily, create_makes_initialised_elements)
{
    typename TypeParam::ArrayType array = this->filled();
    EXPECT_EQ(array.create(2), OpcUa_Good);
    ASSERT_EQ(array.length(), 2);
    const BuiltInValue initial(TypeParam::Type);
    for (const auto& element : array) {
        EXPECT_EQ(OpcUa_BuiltInType_GetTraits(TypeParam::Type)->Compare(&element, initial.get()),
                  0);
    }
    EXPECT_EQ(array.create(0), OpcUa_Good);
    this->expectEmpty(array);
    EXPECT_EQ(array.create(-5), OpcUa_Good);
    this->expectEmpty(array);
}

TYPED_TEST(ArrayFamily, attach_copies_as_the_constructor_does)
{
    using Array = typename TypeParam::ArrayType;
    const Array source = this->filled();
    Array array = this->filled();
    array.attach(2, source.rawArray());
    EXPECT_EQ(array, Array(2, source.rawArray()));
    EXPECT_NE(array.rawArray(), source.rawArray());
    array.attach(1, array.rawArray() + 1);
    EXPECT_EQ(array, Array(1, source.rawArray() + 1)) << "its own elements survive";
    array.attach(-1, source.rawArray());
    this->expectEmpty(array);
    array.attach(3, source.rawArray());
    array.attach(3, nullptr);
    this->expectEmpty(array);
}

TYPED_TEST(ArrayFamily, attach_with_detach_takes_the_block_over)
{
    using Array = typename TypeParam::ArrayType;
    Array source = this->filled();
    auto* block = source.rawArray();
    Array array = this->filled();
    array.attach(3, block, false);
    EXPECT_NE(array.rawArray(), block) << "without the flag it copies";
    array.attach(3, source.detach(), true);
    EXPECT_EQ(array.rawArray(), block);
    EXPECT_EQ(array, this->filled());
    array.attach(0, block, true);
    this->expectEmpty(array);
}

TYPED_TEST(ArrayFamily, block_of_attach_without_length_stays_the_callers)
{
    using Array = typename TypeParam::ArrayType;
    Array source = this->filled();
    auto* block = source.detach();
    Array array;
    array.attach(-1, block, true);
    this->expectEmpty(array);
    array.attach(3, block, true);
    EXPECT_EQ(array, this->filled()) << "the caller still owned it";
}

TYPED_TEST(ArrayFamily, detach_hands_the_block_out)
{
    using Array = typename TypeParam::ArrayType;
    Array array = this->filled();
    const auto* block = array.rawArray();
    auto* detached = array.detach();
    EXPECT_EQ(detached, block);
    this->expectEmpty(array);
    EXPECT_EQ(array.detach(), nullptr);
    EXPECT_EQ(Array(3, detached), this->filled());
    OpcUa_Elements_Free(*OpcUa_BuiltInType_GetTraits(TypeParam::Type), detached, 3);
}

TYPED_TEST(ArrayFamily, to_variant_copies_into_a_cleared_variant)
{
    using Array = typename TypeParam::ArrayType;
    Array array = this->filled();
    OwnedVariant variant;
    this->makeStranger(*variant);
    EXPECT_EQ(std::as_const(array).toVariant(variant.get()), OpcUa_Good);
    EXPECT_EQ(variant->Datatype, TypeParam::Type);
    EXPECT_EQ(variant->ArrayType, OpcUa_VariantArrayType_Array);
    EXPECT_EQ(variant->Value.Array.Length, 3);
    EXPECT_NE(variant->Value.Array.Elements, array.rawArray());
    Array back;
    EXPECT_EQ(back.setArray(std::as_const(*variant)), OpcUa_Good);
    EXPECT_EQ(back, array);
    EXPECT_EQ(array.toVariant(variant.get(), false), OpcUa_Good);
    EXPECT_EQ(array.length(), 3) << "without the flag it copies";
}

TYPED_TEST(ArrayFamily, to_variant_of_an_empty_array_is_an_array_without_a_block)
{
    const typename TypeParam::ArrayType array;
    OwnedVariant variant;
    EXPECT_EQ(array.toVariant(variant.get()), OpcUa_Good);
    EXPECT_EQ(variant->Datatype, TypeParam::Type);
    EXPECT_EQ(variant->ArrayType, OpcUa_VariantArrayType_Array);
    EXPECT_EQ(variant->Value.Array.Length, 0);
    EXPECT_EQ(variant->Value.Array.Elements, nullptr);
}

TYPED_TEST(ArrayFamily, to_variant_with_detach_moves_the_block)
{
    typename TypeParam::ArrayType array = this->filled();
    const auto* block = array.rawArray();
    OwnedVariant variant;
    this->makeStranger(*variant);
    EXPECT_EQ(array.toVariant(variant.get(), true), OpcUa_Good);
    EXPECT_EQ(variant->Datatype, TypeParam::Type);
    EXPECT_EQ(variant->Value.Array.Elements, block);
    EXPECT_EQ(variant->Value.Array.Length, 3);
    this->expectEmpty(array);
}

TYPED_TEST(ArrayFamily, to_variant_needs_a_target)
{
    typename TypeParam::ArrayType array = this->filled();
    EXPECT_EQ(nameOf(array.toVariant(nullptr)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(array.toVariant(nullptr, true)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(array.toDataValue(nullptr, true)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(array.toDataValue(nullptr, true, true)), "BadInvalidArgument");
    EXPECT_EQ(array, this->filled());
}

/// A clock that goes on with each look at it.
OpcUa_UInt64 countingClock()
{
    static OpcUa_UInt64 now = 1000;
    return ++now;
}

TYPED_TEST(ArrayFamily, to_data_value_stamps_both_times_by_a_reading_each)
{
    using Array = typename TypeParam::ArrayType;
    Array array = this->filled();
    OpcUa_DataValue dataValue;
    OpcUa_DataValue_Initialize(&dataValue);
    dataValue.StatusCode = OpcUa_BadNoData;
    OpcUa_P_Clock_SetSource(countingClock);
    EXPECT_EQ(std::as_const(array).toDataValue(&dataValue, true), OpcUa_Good);
    OpcUa_P_Clock_SetSource(nullptr);
    const OpcUa_UInt64 source = OpcUa_DateTime_ToTicks(dataValue.SourceTimestamp);
    EXPECT_GT(source, 1000u);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.ServerTimestamp), source + 1);
    EXPECT_EQ(dataValue.StatusCode, OpcUa_BadNoData) << "the other fields stay";
    EXPECT_EQ(dataValue.Value.Value.Array.Length, 3);
    EXPECT_EQ(array.length(), 3);
    OpcUa_DataValue_Clear(&dataValue);
}

TYPED_TEST(ArrayFamily, to_data_value_leaves_the_times_without_the_flag_and_moves_with_detach)
{
    typename TypeParam::ArrayType array = this->filled();
    const auto* block = array.rawArray();
    OpcUa_DataValue dataValue;
    OpcUa_DataValue_Initialize(&dataValue);
    dataValue.SourceTimestamp = {7, 0};
    dataValue.ServerTimestamp = {8, 0};
    EXPECT_EQ(array.toDataValue(&dataValue, true, false), OpcUa_Good);
    EXPECT_EQ(dataValue.SourceTimestamp.dwLowDateTime, 7u);
    EXPECT_EQ(dataValue.ServerTimestamp.dwLowDateTime, 8u);
    EXPECT_EQ(dataValue.Value.Value.Array.Elements, block);
    this->expectEmpty(array);
    OpcUa_DataValue_Clear(&dataValue);
}

TYPED_TEST(ArrayFamily, set_array_refuses_other_types_and_shapes_and_is_empty_then)
{
    using Array = typename TypeParam::ArrayType;
    for (const VariantShape shape : {VariantShape::Scalar, VariantShape::Matrix}) {
        OwnedVariant variant;
        makeShape(*variant, this->sample(), shape);
        Array array = this->filled();
        EXPECT_EQ(nameOf(array.setArray(std::as_const(*variant))), "BadTypeMismatch");
        this->expectEmpty(array);
    }
    OwnedVariant stranger;
    this->makeStranger(*stranger);
    Array array = this->filled();
    EXPECT_EQ(nameOf(array.setArray(*stranger, true)), "BadTypeMismatch");
    this->expectEmpty(array);
    EXPECT_EQ(stranger->Value.Array.Length, 2) << "the variant is what it was";
}

TYPED_TEST(ArrayFamily, set_array_takes_a_negative_length_as_zero)
{
    using Array = typename TypeParam::ArrayType;
    for (const bool detaches : {false, true}) {
        OwnedVariant variant;
        variant->Datatype = TypeParam::Type;
        variant->ArrayType = OpcUa_VariantArrayType_Array;
        variant->Value.Array = {-1, nullptr};
        Array array = this->filled();
        EXPECT_EQ(array.setArray(*variant, detaches), OpcUa_Good);
        this->expectEmpty(array);
    }
}

TYPED_TEST(ArrayFamily, set_array_with_detach_takes_the_block_and_leaves_null)
{
    using Array = typename TypeParam::ArrayType;
    OwnedVariant variant;
    EXPECT_EQ(this->filled().toVariant(variant.get()), OpcUa_Good);
    const void* block = variant->Value.Array.Elements;
    Array array = this->filled();
    EXPECT_EQ(array.setArray(*variant, false), OpcUa_Good);
    EXPECT_NE(array.rawArray(), block);
    EXPECT_EQ(array, this->filled());
    EXPECT_EQ(array.setArray(*variant, true), OpcUa_Good);
    EXPECT_EQ(array.rawArray(), block);
    EXPECT_EQ(variant->Datatype, OpcUaType_Null);
}

TYPED_TEST(ArrayFamily, set_array_with_detach_frees_a_block_without_length)
{
    using Array = typename TypeParam::ArrayType;
    OwnedVariant variant;
    variant->Datatype = TypeParam::Type;
    variant->ArrayType = OpcUa_VariantArrayType_Array;
    variant->Value.Array = {0, OpcUa_Memory_Alloc(8)};
    Array array = this->filled();
    EXPECT_EQ(array.setArray(*variant, true), OpcUa_Good);
    this->expectEmpty(array);
}

TYPED_TEST(ArrayFamily, every_failed_allocation_leaves_an_empty_array)
{
    using Array = typename TypeParam::ArrayType;
    const Array source = this->filled();
    const auto verifyEmpty = [this](const Array& array) { this->expectEmpty(array); };
    EXPECT_GT(forEveryFailingAllocation([&] { return Array(source); }, verifyEmpty), 0u);
    Array target = this->filled();
    const std::size_t failures =
        forEveryFailingAllocation([&] { return (target = source).length(); },
                                  [&](OpcUa_Int32 length) {
                                      EXPECT_EQ(length, 0);
                                      this->expectEmpty(target);
                                      target = this->filled();
                                  });
    EXPECT_GT(failures, 0u);
    EXPECT_EQ(target, source);
    Array created;
    forEveryFailingAllocation([&] { return created.create(3); },
                              [&](OpcUa_StatusCode status) {
                                  EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                  this->expectEmpty(created);
                              });
    EXPECT_EQ(created.length(), 3);
}

TYPED_TEST(ArrayFamily, every_failed_allocation_leaves_a_null_variant)
{
    const typename TypeParam::ArrayType source = this->filled();
    OwnedVariant variant;
    const std::size_t failures = forEveryFailingAllocation(
        [&] {
            OpcUa_Variant_Clear(variant.get());
            return source.toVariant(variant.get());
        },
        [&](OpcUa_StatusCode status) {
            EXPECT_EQ(nameOf(status), "BadOutOfMemory");
            EXPECT_EQ(variant->Datatype, OpcUaType_Null);
        });
    EXPECT_GT(failures, 0u);
    typename TypeParam::ArrayType target;
    forEveryFailingAllocation([&] { return target.setArray(std::as_const(*variant)); },
                              [&](OpcUa_StatusCode status) {
                                  EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                  this->expectEmpty(target);
                              });
    EXPECT_EQ(target, source);
}

TEST(UaByteStringArray, refuses_a_string_variant_and_is_empty_then)
{
    const UaVariant source = text("AB");
    UaByteStringArray array;
    ASSERT_EQ(array.create(1), OpcUa_Good);
    EXPECT_EQ(nameOf(array.setArray(*source.toOpcUaVariant())), "BadTypeMismatch");
    EXPECT_EQ(array.length(), 0);
}

TEST(UaFloatArray, equality_is_that_of_the_stack_for_nan)
{
    const OpcUa_Float values[] = {std::numeric_limits<OpcUa_Float>::quiet_NaN(), 0.0F};
    const OpcUa_Float others[] = {std::numeric_limits<OpcUa_Float>::quiet_NaN(), -0.0F};
    EXPECT_EQ(UaFloatArray(2, values), UaFloatArray(2, others));
}

TEST(UaVariantArray, attaches_an_array_that_lies_in_one_of_its_own_elements)
{
    UaVariantArray array;
    ASSERT_EQ(array.create(2), OpcUa_Good);
    UaVariantArray inner;
    ASSERT_EQ(inner.create(1), OpcUa_Good);
    inner[0].Datatype = OpcUaType_Int32;
    inner[0].Value.Int32 = 42;
    ASSERT_EQ(inner.toVariant(&array[1]), OpcUa_Good);
    EXPECT_EQ(array.setArray(std::as_const(array[1])), OpcUa_Good);
    EXPECT_EQ(array, inner);
    ASSERT_EQ(inner.toVariant(&array[0]), OpcUa_Good);
    EXPECT_EQ(array.setArray(array[0], true), OpcUa_Good);
    EXPECT_EQ(array, inner);
}

} // namespace
