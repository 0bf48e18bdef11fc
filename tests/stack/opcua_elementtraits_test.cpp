#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_string.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace {

const OpcUa_ElementTraits& int32Traits()
{
    return *OpcUa_BuiltInType_GetTraits(OpcUaType_Int32);
}

const OpcUa_ElementTraits& stringTraits()
{
    return *OpcUa_BuiltInType_GetTraits(OpcUaType_String);
}

std::array<OpcUa_String, 3> makeStrings(const char* last)
{
    std::array<OpcUa_String, 3> strings{};
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&strings[0], "first"), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&strings[1], ""), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&strings[2], last), OpcUa_Good);
    return strings;
}

TEST(Elements, plain_elements_are_copied_as_memory)
{
    const std::array<OpcUa_Int32, 4> values = {1, -2, 3, std::numeric_limits<OpcUa_Int32>::min()};
    void* copy = nullptr;
    EXPECT_EQ(OpcUa_Elements_Copy(int32Traits(), values.data(), 4, &copy), OpcUa_Good);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(OpcUa_Elements_Compare(int32Traits(), values.data(), copy, 4), 0);
    static_cast<OpcUa_Int32*>(copy)[1] = 8;
    EXPECT_EQ(OpcUa_Elements_Compare(int32Traits(), values.data(), copy, 4), -10);
    EXPECT_EQ(OpcUa_Elements_Compare(int32Traits(), values.data(), copy, 1), 0);
    OpcUa_Elements_Free(int32Traits(), copy, 4);
}

TEST(Elements, records_are_copied_deeply)
{
    const std::array<OpcUa_String, 3> strings = makeStrings("last");
    void* copy = nullptr;
    EXPECT_EQ(OpcUa_Elements_Copy(stringTraits(), strings.data(), 3, &copy), OpcUa_Good);
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(static_cast<OpcUa_String*>(copy)[2].strContent, strings[2].strContent);
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), strings.data(), copy, 3), 0);
    const std::array<OpcUa_String, 3> others = makeStrings("mast");
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), strings.data(), others.data(), 3), -1);
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), strings.data(), others.data(), 2), 0);
    OpcUa_Elements_Clear(stringTraits(), copy, 3);
    EXPECT_TRUE(OpcUa_String_IsNull(&static_cast<OpcUa_String*>(copy)[2]));
    OpcUa_Elements_Free(stringTraits(), copy, 3);
}

TEST(Elements, empty_blocks_give_empty_copies)
{
    const std::array<OpcUa_String, 3> strings = makeStrings("last");
    for (const OpcUa_Int32 count : {0, -1, std::numeric_limits<OpcUa_Int32>::min()}) {
        SCOPED_TRACE(count);
        int placeholder = 0;
        void* copy = &placeholder;
        EXPECT_EQ(OpcUa_Elements_Copy(stringTraits(), strings.data(), count, &copy), OpcUa_Good);
        EXPECT_EQ(copy, nullptr);
        EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), strings.data(), nullptr, count), 0);
    }
    int placeholder = 0;
    void* copy = &placeholder;
    EXPECT_EQ(OpcUa_Elements_Copy(stringTraits(), nullptr, 3, &copy), OpcUa_Good);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(OpcUa_Elements_Copy(stringTraits(), strings.data(), 3, nullptr),
              OpcUa_BadInvalidArgument);
}

TEST(Elements, null_blocks_are_ignored_and_less)
{
    const std::array<OpcUa_String, 3> strings = makeStrings("last");
    OpcUa_Elements_Clear(stringTraits(), nullptr, 3);
    OpcUa_Elements_Free(stringTraits(), nullptr, 3);
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), nullptr, nullptr, 3), 0);
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), nullptr, strings.data(), 3), -1);
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), strings.data(), nullptr, 3), 1);
    EXPECT_EQ(OpcUa_Elements_Compare(stringTraits(), strings.data(), strings.data(), 3), 0);
}

TEST(Elements, floating_points_of_other_bytes_can_be_equal)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(OpcUaType_Double);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::array<double, 3> left = {0.0, nan, 1.0};
    std::array<double, 3> right = {-0.0, -nan, 1.0};
    EXPECT_EQ(OpcUa_Elements_Compare(traits, left.data(), right.data(), 3), 0);
    right[2] = nan;
    EXPECT_EQ(OpcUa_Elements_Compare(traits, left.data(), right.data(), 3), 1);
}

TEST(Elements, every_failing_allocation_leaves_no_copy)
{
    const std::array<OpcUa_String, 3> strings = makeStrings("last");
    const std::array<OpcUa_Int32, 2> numbers = {1, 2};
    void* copy = nullptr;
    const auto isRefused = [&copy](OpcUa_StatusCode status) {
        EXPECT_EQ(status, OpcUa_BadOutOfMemory);
        EXPECT_EQ(copy, nullptr);
    };
    const std::size_t stringFailures = forEveryFailingAllocation(
        [&] { return OpcUa_Elements_Copy(stringTraits(), strings.data(), 3, &copy); }, isRefused);
    EXPECT_EQ(stringFailures, 4u);
    OpcUa_Elements_Free(stringTraits(), copy, 3);
    const std::size_t numberFailures = forEveryFailingAllocation(
        [&] { return OpcUa_Elements_Copy(int32Traits(), numbers.data(), 2, &copy); }, isRefused);
    EXPECT_EQ(numberFailures, 1u);
    OpcUa_Elements_Free(int32Traits(), copy, 2);
}

TEST(Elements, traits_of_an_encodeable_type_use_its_row)
{
    const OpcUa_ElementTraits traits = OpcUa_ElementTraits_FromEncodeableType(testRecordType);
    EXPECT_EQ(traits.Size, sizeof(TestRecord));
    EXPECT_FALSE(traits.IsPlain);
    std::array<TestRecord, 2> records{};
    traits.Initialize(&records[0]);
    traits.Initialize(&records[1]);
    records[0].Number = 4;
    ASSERT_EQ(OpcUa_String_AttachCopy(&records[1].Name, "second"), OpcUa_Good);
    fillWithTestRecord(records[1].Next, 9, "nested");
    void* copy = nullptr;
    EXPECT_EQ(OpcUa_Elements_Copy(traits, records.data(), 2, &copy), OpcUa_Good);
    EXPECT_EQ(OpcUa_Elements_Compare(traits, records.data(), copy, 2), 0);
    testRecordOf(static_cast<TestRecord*>(copy)[1].Next).Number = 10;
    EXPECT_EQ(OpcUa_Elements_Compare(traits, records.data(), copy, 2), -1);
    OpcUa_Elements_Clear(traits, records.data(), 2);
    EXPECT_EQ(records[0].Number, 0);
    OpcUa_Elements_Free(traits, copy, 2);
}

} // namespace
