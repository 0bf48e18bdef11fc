#include "base/uabytestring.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/variantarraymembers.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <concepts>
#include <string>
#include <utility>

// Setters and getters of arrays, tried with every class and type.

namespace {

template <typename M>
class VariantArrays : public testing::Test
{
protected:
    using FamilyMember = typename M::ArrayType;

    static const BuiltInSample& sample() { return builtInSamples()[M::Type - OpcUaType_Boolean]; }

    static FamilyMember filled(OpcUa_Int32 count = 3)
    {
        FamilyMember array;
        fillArray(sample(), count, array);
        return array;
    }

    static UaVariant shaped(VariantShape shape)
    {
        OwnedVariant stack;
        makeShape(*stack, sample(), shape);
        UaVariant variant;
        variant.attach(*stack);
        return variant;
    }

    /// An array variant over a given length and block.
    static UaVariant arrayOf(OpcUa_Int32 length, void* block)
    {
        OpcUa_Variant stack{};
        stack.Datatype = M::Type;
        stack.ArrayType = OpcUa_VariantArrayType_Array;
        stack.Value.Array = {length, block};
        UaVariant variant;
        variant.attach(stack);
        return variant;
    }

    static void expectArray(const UaVariant& variant, OpcUa_Int32 length)
    {
        const OpcUa_Variant& stack = *variant.toOpcUaVariant();
        EXPECT_EQ(stack.Datatype, M::Type);
        EXPECT_EQ(stack.ArrayType, OpcUa_VariantArrayType_Array);
        EXPECT_EQ(stack.Reserved, 0);
        EXPECT_EQ(stack.Value.Array.Length, length);
        EXPECT_EQ(stack.Value.Array.Elements == nullptr, length == 0);
    }

    static const void* block(const UaVariant& variant)
    {
        return variant.toOpcUaVariant()->Value.Array.Elements;
    }
};

TYPED_TEST_SUITE(VariantArrays, VariantArrayMembers);

TYPED_TEST(VariantArrays, setter_copies_and_getter_gives_the_same_back)
{
    using Array = typename TypeParam::ArrayType;
    const Array source = this->filled();
    UaVariant variant = text("old");
    (variant.*TypeParam::Copy)(source);
    this->expectArray(variant, 3);
    EXPECT_NE(this->block(variant), blockOf(source));
    Array back = this->filled(1);
    EXPECT_EQ((variant.*TypeParam::Get)(back), OpcUa_Good);
    EXPECT_EQ(back, source);
    EXPECT_NE(blockOf(back), this->block(variant));
}

TYPED_TEST(VariantArrays, setter_of_an_empty_array_makes_an_array_without_a_block)
{
    using Array = typename TypeParam::ArrayType;
    UaVariant variant = text("old");
    (variant.*TypeParam::Copy)(Array());
    this->expectArray(variant, 0);
    Array back = this->filled();
    EXPECT_EQ((variant.*TypeParam::Get)(back), OpcUa_Good);
    EXPECT_EQ(back, Array());
}

TYPED_TEST(VariantArrays, detach_moves_the_block_and_leaves_the_array_empty)
{
    using Array = typename TypeParam::ArrayType;
    if constexpr (UaVariantDetachableSource<Array>) {
        Array source = this->filled();
        UaVariant variant = text("old");
        (variant.*TypeParam::Detach)(source, false);
        this->expectArray(variant, 3);
        EXPECT_EQ(source, this->filled()) << "without the flag it copies";
        const void* block = blockOf(source);
        (variant.*TypeParam::Detach)(source, true);
        this->expectArray(variant, 3);
        EXPECT_EQ(this->block(variant), block);
        EXPECT_EQ(source, Array());
        (variant.*TypeParam::Detach)(source, true);
        this->expectArray(variant, 0);
    } else {
        SUCCEED() << "this class is always copied";
    }
}

TYPED_TEST(VariantArrays, arrays_construct_and_assign)
{
    using Array = typename TypeParam::ArrayType;
    if constexpr (TypeParam::Type != OpcUaType_XmlElement) {
        Array source = this->filled();
        const UaVariant constructed(source);
        this->expectArray(constructed, 3);
        UaVariant assigned = text("old");
        assigned = source;
        EXPECT_EQ(OpcUa_Variant_Compare(assigned.toOpcUaVariant(), constructed.toOpcUaVariant()),
                  0);
        if constexpr (UaVariantDetachableSource<Array>) {
            const void* block = blockOf(source);
            const UaVariant copied(source, false);
            EXPECT_EQ(blockOf(source), block);
            const UaVariant moved(source, true);
            EXPECT_EQ(this->block(moved), block);
            EXPECT_EQ(source, Array());
        }
    } else {
        static_assert(std::same_as<Array, UaByteStringArray>);
        this->expectArray(this->arrayOf(0, nullptr), 0);
    }
}

TYPED_TEST(VariantArrays, null_variant_gives_the_empty_array)
{
    typename TypeParam::ArrayType array = this->filled();
    EXPECT_EQ((UaVariant().*TypeParam::Get)(array), OpcUa_Good);
    EXPECT_EQ(lengthOf(array), 0);
}

TYPED_TEST(VariantArrays, negative_length_is_an_empty_array)
{
    typename TypeParam::ArrayType array = this->filled();
    EXPECT_EQ((this->arrayOf(-1, nullptr).*TypeParam::Get)(array), OpcUa_Good);
    EXPECT_EQ(lengthOf(array), 0);
}

TYPED_TEST(VariantArrays, length_without_a_block_is_out_of_range)
{
    typename TypeParam::ArrayType array = this->filled();
    EXPECT_EQ(nameOf((this->arrayOf(3, nullptr).*TypeParam::Get)(array)), "BadOutOfRange");
    EXPECT_EQ(array, this->filled());
}

TYPED_TEST(VariantArrays, getter_refuses_every_other_type_and_shape)
{
    typename TypeParam::ArrayType array = this->filled();
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            const bool isOwn = sample.type == TypeParam::Type && shape == VariantShape::Array;
            const bool isText = sample.type == OpcUaType_String && shape == VariantShape::Scalar &&
                                TypeParam::Type <= OpcUaType_Guid;
            const bool isBytes = sample.type == OpcUaType_ByteString &&
                                 shape == VariantShape::Scalar && TypeParam::Type == OpcUaType_Byte;
            if (isOwn || isText || isBytes) {
                continue;
            }
            OwnedVariant stack;
            makeShape(*stack, sample, shape);
            UaVariant variant;
            variant.attach(*stack);
            EXPECT_EQ(nameOf((variant.*TypeParam::Get)(array)), "BadOutOfRange") << sample;
            EXPECT_EQ(array, this->filled()) << "a failure leaves the target";
        }
    }
}

TYPED_TEST(VariantArrays, every_failed_allocation_of_a_setter_leaves_null)
{
    const typename TypeParam::ArrayType source = this->filled();
    UaVariant variant;
    const std::size_t failures = forEveryFailingAllocation(
        [&] {
            (variant.*TypeParam::Copy)(source);
            return variant.type();
        },
        [&](OpcUa_Byte type) {
            EXPECT_EQ(type, OpcUaType_Null);
            variant = text("old");
        });
    EXPECT_GT(failures, 0u);
}

TYPED_TEST(VariantArrays, every_failed_allocation_of_a_getter_leaves_the_target)
{
    using Array = typename TypeParam::ArrayType;
    const UaVariant variant = this->shaped(VariantShape::Array);
    Array target = this->filled(2);
    const std::size_t failures =
        forEveryFailingAllocation([&] { return (variant.*TypeParam::Get)(target); },
                                  [&](OpcUa_StatusCode status) {
                                      EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                      EXPECT_EQ(target, this->filled(2));
                                  });
    EXPECT_GT(failures, 0u);
}

/// The text of an array's elements after reading another text.
template <typename Array>
std::string readArray(const UaVariant& source, OpcUa_StatusCode (UaVariant::*get)(Array&) const)
{
    Array array;
    const OpcUa_StatusCode status = (source.*get)(array);
    return OpcUa_IsGood(status) ? textOf(UaVariant(array).toString()) : nameOf(status);
}

TEST(UaVariantArrayText, is_read_by_the_value_types)
{
    const UaVariant numbers = text("{1| 2 |3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toBoolArray), "{true,true,true}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toSByteArray), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toByteArray), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toInt16Array), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toUInt16Array), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toInt32Array), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toUInt32Array), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toInt64Array), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toUInt64Array), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toFloatArray), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toDoubleArray), "{1,2,3}");
    EXPECT_EQ(readArray(numbers, &UaVariant::toStringArray), "{'1','2','3'}");
    EXPECT_EQ(readArray(text("{1970-01-01T00:00:00.000Z}"), &UaVariant::toDateTimeArray),
              "{'1970-01-01T00:00:00.000Z'}");
    EXPECT_EQ(readArray(text("{6B29FC40-CA47-1067-B31D-00DD010662DA|}"), &UaVariant::toGuidArray),
              "BadInvalidArgument");
    EXPECT_EQ(readArray(text("{6B29FC40-CA47-1067-B31D-00DD010662DA}"), &UaVariant::toGuidArray),
              "{'{6b29fc40-ca47-1067-b31d-00dd010662da}'}");
}

TEST(UaVariantArrayText, failures_are_told_by_the_status_of_the_form_or_the_element)
{
    struct Row
    {
        const char* text;
        const char* result;
    };
    constexpr Row rows[] = {{"", "BadOutOfRange"},
                            {"{}", "BadOutOfRange"},
                            {"1|2|3", "BadTypeMismatch"},
                            {"{1|2", "BadTypeMismatch"},
                            {"{1|x}", "BadOutOfRange"},
                            {"{1|99999999999}", "BadOutOfRange"},
                            {"{1,2}", "BadOutOfRange"},
                            {"{ }", "{0}"},
                            {"{|1}", "{0,1}"}};
    for (const Row& row : rows) {
        EXPECT_EQ(readArray(text(row.text), &UaVariant::toInt32Array), row.result) << row.text;
    }
    EXPECT_EQ(readArray(text("{1970-02-30T00:00:00.000Z}"), &UaVariant::toDateTimeArray),
              "BadOutOfRange");
    EXPECT_EQ(readArray(text("{yesterday}"), &UaVariant::toDateTimeArray), "BadSyntaxError");
    UaVariant null;
    null.setString(UaString());
    EXPECT_EQ(readArray(null, &UaVariant::toStringArray), "BadOutOfRange");
}

TEST(UaVariantArrayText, every_failed_allocation_leaves_the_target)
{
    UaStringArray strings;
    const UaVariant source = text("{a|b}");
    EXPECT_EQ(forEveryFailingAllocation([&] { return source.toStringArray(strings); },
                                        [&](OpcUa_StatusCode status) {
                                            EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                            EXPECT_EQ(strings.length(), 0);
                                        }),
              3u);
    UaGuidArray guids;
    const UaVariant guidText = text("{6B29FC40-CA47-1067-B31D-00DD010662DA}");
    EXPECT_EQ(forEveryFailingAllocation([&] { return guidText.toGuidArray(guids); },
                                        [&](OpcUa_StatusCode status) {
                                            EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                            EXPECT_EQ(guids.length(), 0);
                                        }),
              2u);
}

TEST(UaVariantByteArray, is_also_read_from_a_byte_string)
{
    const OpcUa_Byte data[] = {1, 2, 255};
    UaByteArray array;
    EXPECT_EQ(UaVariant(UaByteString(3, data)).toByteArray(array), OpcUa_Good);
    EXPECT_EQ(array, UaByteArray(data, 3));
    EXPECT_EQ(UaVariant(UaByteString()).toByteArray(array), OpcUa_Good);
    EXPECT_TRUE(array.isEmpty());
    OpcUa_Variant stack{};
    stack.Datatype = OpcUaType_ByteString;
    stack.Value.ByteString = {3, nullptr};
    EXPECT_EQ(nameOf(reinterpret_cast<const UaVariant&>(stack).toByteArray(array)),
              "BadOutOfRange");
}

TEST(UaVariantByteArray, detach_of_a_shared_array_copies)
{
    const OpcUa_Byte data[] = {1, 2, 255};
    UaByteArray source(data, 3);
    const UaByteArray keeper = source;
    UaVariant variant;
    variant.setByteArray(source, true);
    EXPECT_TRUE(source.isEmpty());
    EXPECT_EQ(keeper, UaByteArray(data, 3));
    EXPECT_NE(variant.toOpcUaVariant()->Value.Array.Elements, keeper.data());
    EXPECT_EQ(variant.arraySize(), 3);
}

TEST(UaVariantByteArray, failed_detach_of_a_shared_array_leaves_null_and_the_array)
{
    const OpcUa_Byte data[] = {1, 2, 255};
    UaByteArray source(data, 3);
    const UaByteArray keeper = source;
    UaVariant variant;
    const std::size_t failures = forEveryFailingAllocation(
        [&] {
            variant.setByteArray(source, true);
            return variant.type();
        },
        [&](OpcUa_Byte type) {
            EXPECT_EQ(type, OpcUaType_Null);
            EXPECT_EQ(source, keeper);
        });
    EXPECT_EQ(failures, 1u);
}

} // namespace
