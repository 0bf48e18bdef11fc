#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_elementtraits.h"
#include "tests/stack/builtinsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace {

class BuiltInTypes : public testing::TestWithParam<BuiltInSample>
{
protected:
    [[nodiscard]] const OpcUa_ElementTraits& traits() const
    {
        return *OpcUa_BuiltInType_GetTraits(GetParam().type);
    }
};

TEST_P(BuiltInTypes, null_pointers_are_ignored_by_initialize_and_clear)
{
    traits().Initialize(nullptr);
    traits().Clear(nullptr);
}

TEST_P(BuiltInTypes, initialised_value_can_be_initialised_and_cleared_again)
{
    BuiltInValue value(GetParam().type);
    EXPECT_TRUE(value.isCleared());
    traits().Initialize(value.get());
    traits().Clear(value.get());
    traits().Clear(value.get());
    EXPECT_TRUE(value.isCleared());
}

TEST_P(BuiltInTypes, filled_value_is_cleared_and_can_be_cleared_again)
{
    BuiltInValue value(GetParam().type, GetParam().fill);
    EXPECT_FALSE(value.isCleared());
    traits().Clear(value.get());
    EXPECT_TRUE(value.isCleared());
    traits().Clear(value.get());
    EXPECT_TRUE(value.isCleared());
}

TEST_P(BuiltInTypes, zeroed_memory_can_be_cleared)
{
    const auto memory = std::make_unique<unsigned char[]>(traits().Size);
    traits().Clear(memory.get());
}

TEST_P(BuiltInTypes, copy_refuses_null_pointers_and_clears_the_destination)
{
    BuiltInValue value(GetParam().type, GetParam().fill);
    EXPECT_EQ(traits().CopyTo(value.get(), nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(traits().CopyTo(nullptr, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_FALSE(value.isCleared());
    EXPECT_EQ(traits().CopyTo(nullptr, value.get()), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(value.isCleared());
}

TEST_P(BuiltInTypes, copy_is_equal_and_independent)
{
    BuiltInValue copy(GetParam().type);
    {
        const BuiltInValue value(GetParam().type, GetParam().fill);
        EXPECT_NE(traits().Compare(value.get(), copy.get()), 0);
        EXPECT_EQ(traits().CopyTo(value.get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(traits().Compare(value.get(), copy.get()), 0);
        EXPECT_EQ(traits().Compare(copy.get(), value.get()), 0);
    }
    const BuiltInValue again(GetParam().type, GetParam().fill);
    EXPECT_EQ(traits().Compare(again.get(), copy.get()), 0);
}

TEST_P(BuiltInTypes, copy_replaces_what_the_destination_held)
{
    const BuiltInValue value(GetParam().type, GetParam().fill);
    BuiltInValue copy(GetParam().type, GetParam().fillOther);
    EXPECT_EQ(traits().CopyTo(value.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(traits().Compare(value.get(), copy.get()), 0);
}

TEST_P(BuiltInTypes, copy_of_an_empty_value_empties_the_destination)
{
    const BuiltInValue value(GetParam().type);
    BuiltInValue copy(GetParam().type, GetParam().fill);
    EXPECT_EQ(traits().CopyTo(value.get(), copy.get()), OpcUa_Good);
    EXPECT_TRUE(copy.isCleared());
}

TEST_P(BuiltInTypes, copy_to_itself_keeps_the_value)
{
    BuiltInValue value(GetParam().type, GetParam().fill);
    EXPECT_EQ(traits().CopyTo(value.get(), value.get()), OpcUa_Good);
    const BuiltInValue again(GetParam().type, GetParam().fill);
    EXPECT_EQ(traits().Compare(value.get(), again.get()), 0);
}

TEST_P(BuiltInTypes, every_failing_allocation_of_a_copy_leaves_a_cleared_destination)
{
    const BuiltInValue value(GetParam().type, GetParam().fill);
    std::unique_ptr<BuiltInValue> copy;
    const std::size_t failures = forEveryFailingAllocation(
        [&] {
            copy = std::make_unique<BuiltInValue>(GetParam().type);
            return traits().CopyTo(value.get(), copy->get());
        },
        [&](OpcUa_StatusCode status) {
            EXPECT_EQ(status, OpcUa_BadOutOfMemory);
            EXPECT_TRUE(copy->isCleared());
        });
    EXPECT_EQ(traits().Compare(value.get(), copy->get()), 0);
    EXPECT_EQ(failures == 0, traits().IsPlain);
}

class OwningBuiltInTypes : public BuiltInTypes
{
};

TEST_P(OwningBuiltInTypes, failing_copy_clears_what_the_destination_held)
{
    const BuiltInValue value(GetParam().type, GetParam().fill);
    BuiltInValue copy(GetParam().type, GetParam().fillOther);
    const AllocationFaults faults(0);
    EXPECT_EQ(traits().CopyTo(value.get(), copy.get()), OpcUa_BadOutOfMemory);
    EXPECT_TRUE(copy.isCleared());
}

TEST_P(BuiltInTypes, compare_tells_a_difference_from_both_sides)
{
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const BuiltInValue other(GetParam().type, GetParam().fillOther);
    const OpcUa_Int32 order = traits().Compare(value.get(), other.get());
    const OpcUa_Int32 reverse = traits().Compare(other.get(), value.get());
    EXPECT_NE(order, 0);
    EXPECT_EQ(order<0, reverse> 0);
    EXPECT_EQ(traits().Compare(value.get(), value.get()), 0);
}

TEST_P(BuiltInTypes, compare_places_null_pointers)
{
    const BuiltInValue value(GetParam().type, GetParam().fill);
    EXPECT_EQ(traits().Compare(nullptr, nullptr), 0);
    const bool isUnordered = GetParam().type == OpcUaType_ByteString ||
                             GetParam().type == OpcUaType_XmlElement ||
                             GetParam().type == OpcUaType_ExtensionObject;
    EXPECT_EQ(traits().Compare(nullptr, value.get()), isUnordered ? 1 : -1);
    EXPECT_EQ(traits().Compare(value.get(), nullptr), 1);
}

INSTANTIATE_TEST_SUITE_P(Type, BuiltInTypes, testing::ValuesIn(builtInSamples()),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Type, OwningBuiltInTypes,
                         testing::ValuesIn(builtInSamplesWhere(
                             [](const OpcUa_ElementTraits& traits) { return !traits.IsPlain; })),
                         testing::PrintToStringParamName());

TEST(BuiltInTypeTable, numbers_have_their_sizes)
{
    const std::array<std::size_t, 26> sizes = {0, 1,  1,  1,  2,  2,  4, 4,  8,  8,  4,  8,  16,
                                               8, 16, 16, 16, 24, 48, 4, 24, 32, 80, 56, 32, 48};
    for (std::size_t type = 0; type < sizes.size(); ++type) {
        SCOPED_TRACE(type);
        const auto* traits = OpcUa_BuiltInType_GetTraits(static_cast<OpcUa_Byte>(type));
        ASSERT_NE(traits, nullptr);
        EXPECT_EQ(traits->Size, sizes[type]);
    }
    EXPECT_EQ(OpcUa_BuiltInType_GetTraits(26), nullptr);
    EXPECT_EQ(OpcUa_BuiltInType_GetTraits(255), nullptr);
}

TEST(BuiltInTypeTable, samples_cover_the_table)
{
    ASSERT_EQ(builtInSamples().size(), 25u);
    for (std::size_t i = 0; i < builtInSamples().size(); ++i) {
        EXPECT_EQ(builtInSamples()[i].type, i + 1);
    }
}

TEST(BuiltInTypeTable, types_that_lie_behind_a_pointer_in_a_variant)
{
    for (OpcUa_Byte type = 0; type < 26; ++type) {
        SCOPED_TRACE(int{type});
        const bool expected = type == 14 || type == 17 || type == 18 || type >= 20;
        EXPECT_EQ(OpcUa_BuiltInType_GetTraits(type)->IsByPointer, expected);
    }
}

TEST(BuiltInTypeTable, null_elements_do_nothing)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(OpcUaType_Null);
    int untouched = 5;
    traits.Initialize(&untouched);
    traits.Clear(&untouched);
    int other = 6;
    EXPECT_EQ(traits.CopyTo(&untouched, &other), OpcUa_Good);
    EXPECT_EQ(traits.Compare(&untouched, &other), 0);
    EXPECT_EQ(untouched, 5);
    EXPECT_EQ(other, 6);
}

} // namespace
