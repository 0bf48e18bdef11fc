#include "base/uaguid.h"
#include "platform/allocator.h"
#include "platform/clock.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>
#include <type_traits>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaGuid>);
static_assert(std::is_nothrow_copy_assignable_v<UaGuid>);

constexpr OpcUa_Guid record = {
    0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};
const UaGuid sample(record);
const std::string sampleText = "{6b29fc40-ca47-1067-b31d-00dd010662da}";

TEST(UaGuid, default_is_the_null_guid)
{
    UaGuid guid;
    EXPECT_TRUE(guid.isNull());
    EXPECT_EQ(guid, UaGuid(OpcUa_Guid_Null));
    EXPECT_EQ(textOf(guid.toString()), "{00000000-0000-0000-0000-000000000000}");
    guid.clear();
    EXPECT_TRUE(guid.isNull());
}

TEST(UaGuid, prints_in_lower_case_with_braces)
{
    EXPECT_EQ(textOf(sample.toString()), sampleText);
    EXPECT_EQ(sample.toString().length(), 38);
    const UaGuid small(OpcUa_Guid{1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}});
    EXPECT_EQ(textOf(small.toString()), "{00000001-0002-0003-0405-060708090a0b}");
}

struct ReadRow
{
    const char* text;
    OpcUa_Guid guid;
};

constexpr std::array<ReadRow, 14> readRows = {
    {{"{6B29FC40-CA47-1067-B31D-00DD010662DA}", record},
     {"6B29FC40-CA47-1067-B31D-00DD010662DA", record},
     {"{6b29fc40-ca47-1067-b31d-00dd010662da}", record},
     {"6b29Fc40-cA47-1067-b31D-00dd010662Da", record},
     {"{6B29FC40-CA47-1067-B31D-00DD010662DA", record}, // a closing brace isn't looked at
     {"6B29FC40-CA47-1067-B31D-00DD010662DA}", record},
     {"6B29FC40-CA47-1067-B31D-00DD010662DA...", record},
     {"{00000000-0000-0000-0000-000000000000}", {}},
     {"ffffffff-ffff-ffff-ffff-ffffffffffff",
      {0xFFFFFFFF, 0xFFFF, 0xFFFF, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}}},
     // Fields may be short and have white space, a sign or "0x" in front, as in any such scan.
     {"1-2-3-0405-060708090a0b", {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}},
     {" 1- 2-\t3-0405-060708090a0b", {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}},
     {"+1-2-3-0405-060708090a0b", {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}},
     {"-1-2-3-0405-060708090a0b", {0xFFFFFFFF, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}},
     {"0x1-2-3-0405-060708090a0b", {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}}}}};

TEST(UaGuid, reads_the_whole_form_and_what_a_scan_takes)
{
    for (const ReadRow& row : readRows) {
        SCOPED_TRACE(row.text);
        UaGuid guid(OpcUa_Guid{9, 9, 9, {}});
        EXPECT_EQ(guid.fromString(row.text), OpcUa_Good);
        EXPECT_EQ(textOf(guid.toString()), textOf(UaGuid(row.guid).toString()));
        guid = sample;
        EXPECT_EQ(guid.fromString(UaString(row.text)), OpcUa_Good);
        EXPECT_EQ(guid, UaGuid(row.guid));
    }
}

TEST(UaGuid, reads_as_the_stack_does)
{
    // Each character of the whole form replaced by each of these, and cut there.
    const std::string whole = "{6b29fc40-ca47-1067-b31d-00dd010662da}";
    for (std::size_t place = 0; place < whole.size(); ++place) {
        for (const char character : std::string("0fFgG-{} +x\xFF", 12)) {
            std::string text = whole;
            text[place] = character;
            for (const std::string& variation : {text, text.substr(0, place)}) {
                SCOPED_TRACE(variation);
                UaGuid guid;
                OpcUa_Guid expected;
                const OpcUa_StatusCode status = OpcUa_Guid_FromString(variation.c_str(), &expected);
                EXPECT_EQ(guid.fromString(variation.c_str()), status);
                EXPECT_EQ(guid, UaGuid(expected));
            }
        }
    }
}

TEST(UaGuid, a_text_that_is_none_is_refused_and_clears_the_value)
{
    for (const char* text :
         {"", "{", "{}", "hello", "6B29FC40", "6B29FC40-CA47-1067-B31D-00DD010662",
          "6B29FC40-CA47-1067-B31D-00DD010662xx", "6B29FC40CA471067B31D00DD010662DA",
          "{{6B29FC40-CA47-1067-B31D-00DD010662DA}", "(6B29FC40-CA47-1067-B31D-00DD010662DA)"}) {
        SCOPED_TRACE(text);
        UaGuid guid = sample;
        EXPECT_EQ(guid.fromString(text), OpcUa_BadInvalidArgument);
        EXPECT_TRUE(guid.isNull());
    }
    UaGuid guid = sample;
    EXPECT_EQ(guid.fromString(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(guid.isNull());
    guid = sample;
    EXPECT_EQ(guid.fromString(UaString()), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(guid.isNull());
}

TEST(UaGuid, equality_looks_at_all_16_bytes)
{
    EXPECT_EQ(sample, UaGuid(record));
    for (std::size_t i = 0; i < sizeof(OpcUa_Guid); ++i) {
        OpcUa_Guid other = record;
        reinterpret_cast<OpcUa_Byte*>(&other)[i] ^= 1;
        EXPECT_NE(sample, UaGuid(other)) << i;
        EXPECT_FALSE(UaGuid(other).isNull());
    }
}

TEST(UaGuid, create_makes_a_new_value_each_time)
{
    std::set<std::string> seen;
    for (int round = 0; round < 100; ++round) {
        EXPECT_TRUE(seen.insert(textOf(UaGuid::create().toString())).second);
        UaGuid target = sample;
        ASSERT_EQ(UaGuid::create(target), OpcUa_Good);
        EXPECT_FALSE(target.isNull());
        EXPECT_TRUE(seen.insert(textOf(target.toString())).second);
    }
}

TEST(UaGuid, copies_its_bytes_into_a_target_or_a_new_block)
{
    OpcUa_Guid target{};
    sample.copyTo(&target);
    EXPECT_TRUE(OpcUa_Guid_IsEqual(&target, &record));
    sample.copyTo(nullptr);
    OpcUa_Guid* block = sample.copy();
    EXPECT_TRUE(OpcUa_Guid_IsEqual(block, &record));
    EXPECT_NE(block, sample.toOpcUaGuid());
    OpcUa_Memory_Free(block);
    const AllocationFaults noMemory(0);
    EXPECT_EQ(sample.copy(), nullptr);
}

TEST(UaGuid, to_variant_makes_a_scalar_with_a_block_of_its_own)
{
    OpcUa_Variant variant;
    OpcUa_Variant_Initialize(&variant);
    ASSERT_EQ(sample.toVariant(&variant), OpcUa_Good);
    const OpcUa_Guid* first = variant.Value.Guid;
    EXPECT_EQ(variant.Datatype, 14);
    EXPECT_EQ(variant.ArrayType, OpcUa_VariantArrayType_Scalar);
    EXPECT_TRUE(OpcUa_Guid_IsEqual(first, &record));
    ASSERT_EQ(UaGuid().toVariant(&variant), OpcUa_Good); // frees the first block
    EXPECT_TRUE(OpcUa_Guid_IsNull(variant.Value.Guid));
    EXPECT_NE(variant.Value.Guid, nullptr);
    EXPECT_EQ(sample.toVariant(nullptr), OpcUa_BadInvalidArgument);
    const AllocationFaults noMemory(0);
    EXPECT_EQ(sample.toVariant(&variant), OpcUa_BadOutOfMemory);
    EXPECT_EQ(variant.Datatype, OpcUaType_Null);
}

OpcUa_UInt64 reading = 0;

TEST(UaGuid, to_data_value_reads_the_clock_once_for_each_timestamp)
{
    reading = 100;
    OpcUa_P_Clock_SetSource([] { return ++reading; });
    OpcUa_DataValue dataValue;
    OpcUa_DataValue_Initialize(&dataValue);
    EXPECT_EQ(sample.toDataValue(&dataValue, false), OpcUa_Good);
    EXPECT_TRUE(OpcUa_Guid_IsEqual(dataValue.Value.Value.Guid, &record));
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.SourceTimestamp), 0u);
    EXPECT_EQ(sample.toDataValue(&dataValue, true), OpcUa_Good);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.SourceTimestamp), 101u);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.ServerTimestamp), 102u);
    {
        const AllocationFaults noMemory(0);
        EXPECT_EQ(sample.toDataValue(&dataValue, true), OpcUa_BadOutOfMemory);
    }
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.SourceTimestamp), 101u);
    EXPECT_EQ(dataValue.Value.Datatype, OpcUaType_Null);
    EXPECT_EQ(sample.toDataValue(nullptr, true), OpcUa_BadInvalidArgument);
    OpcUa_DataValue_Clear(&dataValue);
    OpcUa_P_Clock_SetSource(nullptr);
}

TEST(UaGuid, text_is_null_when_memory_is_short)
{
    const AllocationFaults noMemory(0);
    EXPECT_TRUE(sample.toString().isNull());
}

} // namespace
