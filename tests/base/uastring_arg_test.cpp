#include "base/uastring.h"
#include "platform/allocator.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

struct ArgRow
{
    const char* name;
    const char* text;
    const char* expected;
};

void PrintTo(const ArgRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class StringArg : public testing::TestWithParam<ArgRow>
{
};

TEST_P(StringArg, replaces_the_lowest_place)
{
    EXPECT_STREQ(UaString(GetParam().text).arg(UaString("x")).toUtf8(), GetParam().expected);
}

constexpr ArgRow argRows[] = {
    {"one_place", "a%1b", "axb"},
    {"lowest_of_two", "%2 and %1", "%2 and x"},
    {"every_occurrence_of_the_lowest", "%1 %2 %1", "x %2 x"},
    {"numbers_by_value", "%10 %9", "%10 x"},
    {"zero_is_a_number", "%1 %0", "%1 x"},
    {"leading_zeros_do_not_count", "%01 %1 %2", "x x %2"},
    {"zeros_are_one_number", "%00 %0 %1", "x x %1"},
    {"more_digits_than_any_integer", "%100000000000000000000000000000 %99999999999999999999999",
     "%100000000000000000000000000000 x"},
    {"same_width_by_digits", "%21 %12", "%21 x"},
    {"percent_alone", "100% of %1", "100% of x"},
    {"percent_before_a_place", "%%1", "%x"},
    {"percent_at_the_end", "%1%", "x%"},
    {"places_side_by_side", "%1%1", "xx"},
    {"all_digits_belong_to_the_place", "%12", "x"},
    {"no_place", "a%b", "a%b"},
    {"empty", "", ""},
};

INSTANTIATE_TEST_SUITE_P(Rows, StringArg, testing::ValuesIn(argRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(StringArgs, chain_fills_the_places_in_order)
{
    EXPECT_STREQ(UaString("%2-%1-%3").arg("a").arg(2).arg(0.5).toUtf8(), "2-a-0.5");
}

TEST(StringArgs, place_in_an_inserted_text_is_filled_by_the_next_call)
{
    EXPECT_STREQ(UaString("%1 %2").arg("%1").arg("x").toUtf8(), "x %2");
}

TEST(StringArgs, text_without_a_place_keeps_its_block)
{
    const UaString text = "nothing here";
    EXPECT_EQ(text.arg(5).toOpcUaString(), text.toOpcUaString());
}

TEST(StringArgs, null_stays_null_and_inserts_nothing)
{
    EXPECT_TRUE(UaString().arg("x").isNull());
    EXPECT_STREQ(UaString("a%1b").arg(UaString()).toUtf8(), "ab");
    const UaString nothing = UaString("%1").arg(UaString());
    EXPECT_TRUE(nothing.isEmpty());
    EXPECT_FALSE(nothing.isNull());
}

TEST(StringArgs, embedded_nuls_are_kept)
{
    const UaString text = UaString("a\0%1\0b", 6).arg(UaString("\0", 1));
    EXPECT_EQ(text.view(), std::string_view("a\0\0\0b", 5));
}

TEST(StringArgs, width_pads_on_the_left_and_a_negative_one_on_the_right)
{
    EXPECT_STREQ(UaString("[%1]").arg("ab", 4).toUtf8(), "[  ab]");
    EXPECT_STREQ(UaString("[%1]").arg("ab", -4).toUtf8(), "[ab  ]");
    EXPECT_STREQ(UaString("[%1]").arg("ab", 2).toUtf8(), "[ab]");
    EXPECT_STREQ(UaString("[%1]").arg("abc", 2).toUtf8(), "[abc]");
    EXPECT_STREQ(UaString("[%1]").arg("ab", 4, '.').toUtf8(), "[..ab]");
    EXPECT_STREQ(UaString("[%1]").arg(-5, 4, 10, '0').toUtf8(), "[00-5]");
    EXPECT_STREQ(UaString("[%1]").arg(0.5, -5, 'g', -1, '_').toUtf8(), "[0.5__]");
}

TEST(StringArgs, width_counts_characters)
{
    const UaChar euro(char32_t{0x20AC});
    EXPECT_STREQ(UaString("%1").arg("\xC3\xA9", 3, euro).toUtf8(),
                 "\xE2\x82\xAC\xE2\x82\xAC\xC3\xA9");
}

TEST(StringArgs, no_fill_character_pads_nothing)
{
    EXPECT_STREQ(UaString("%1").arg("a", 100, UaChar()).toUtf8(), "a");
}

TEST(StringArgs, integers_of_every_type)
{
    const UaString text = "%1";
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_SByte>::min()).toUtf8(), "-128");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_Byte>::max()).toUtf8(), "255");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_Int16>::min()).toUtf8(), "-32768");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_UInt16>::max()).toUtf8(), "65535");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_Int32>::min()).toUtf8(), "-2147483648");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_UInt32>::max()).toUtf8(), "4294967295");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_Int64>::min()).toUtf8(),
                 "-9223372036854775808");
    EXPECT_STREQ(text.arg(std::numeric_limits<OpcUa_UInt64>::max()).toUtf8(),
                 "18446744073709551615");
}

TEST(StringArgs, integers_in_a_base)
{
    EXPECT_STREQ(UaString("%1").arg(255, 0, 16).toUtf8(), "FF");
    EXPECT_STREQ(UaString("%1").arg(255u, 8, 2, '0').toUtf8(), "11111111");
    EXPECT_STREQ(UaString("%1").arg(-35, 0, 36).toUtf8(), "-Z");
    EXPECT_STREQ(UaString("%1").arg(42, 0, 99).toUtf8(), "42");
}

TEST(StringArgs, doubles_in_their_forms)
{
    EXPECT_STREQ(UaString("%1").arg(1.5).toUtf8(), "1.5");
    EXPECT_STREQ(UaString("%1").arg(1.5F).toUtf8(), "1.5");
    EXPECT_STREQ(UaString("%1").arg(1.5, 0, 'f', 2).toUtf8(), "1.50");
    EXPECT_STREQ(UaString("%1").arg(1.5, 0, 'e', 2).toUtf8(), "1.50e+00");
    EXPECT_STREQ(UaString("%1").arg(1.5, 0, 'E', 2).toUtf8(), "1.50E+00");
    EXPECT_STREQ(UaString("%1").arg(1e20, 0, 'g', 3).toUtf8(), "1e+20");
    EXPECT_STREQ(UaString("%1").arg(0.1, 0, 'f').toUtf8(), "0.100000");
}

TEST(StringArgs, width_that_makes_the_text_too_long_gives_null_before_memory_is_taken)
{
    static std::size_t allocations = 0;
    const UaString text = "%1 and once more %1";
    const UaChar wide(char32_t{0x1F600});
    OpcUa_Memory_SetFaultHook([](std::size_t) {
        ++allocations;
        return true;
    });
    EXPECT_TRUE(text.arg(1, std::numeric_limits<OpcUa_Int32>::min()).isNull());
    EXPECT_TRUE(text.arg(1, std::numeric_limits<OpcUa_Int32>::max()).isNull());
    EXPECT_TRUE(text.arg(1, std::numeric_limits<OpcUa_Int32>::max(), 10, wide).isNull());
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_EQ(allocations, 0u);
}

} // namespace
