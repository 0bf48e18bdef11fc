#include "base/utf16.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

std::u16string toUnits(std::string_view utf8)
{
    const std::string exact(utf8);
    std::u16string units(UaUtf16::countUnits(exact), u'#');
    UaUtf16::fromUtf8(exact, units.data());
    return units;
}

std::string toBytes(std::u16string_view units)
{
    std::string utf8(UaUtf16::countBytes(units), '#');
    UaUtf16::toUtf8(units, utf8.data());
    return utf8;
}

struct UnitsRow
{
    const char* name;
    std::string_view utf8;
    std::u16string_view units;
};

void PrintTo(const UnitsRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class Utf16Units : public testing::TestWithParam<UnitsRow>
{
};

TEST_P(Utf16Units, come_one_per_character)
{
    EXPECT_EQ(toUnits(GetParam().utf8), GetParam().units);
}

constexpr UnitsRow unitsRows[] = {
    {"nothing", "", u""},
    {"ascii", "abc", u"abc"},
    {"embedded_nul", "a\0b"sv, u"a\0b"sv},
    {"two_byte_lead_skips_one", "\xC3\xA9z", u"\u00E9z"},
    {"three_byte_lead_skips_two", "\xE2\x82\xACz", u"\u20ACz"},
    {"four_byte_lead_skips_three", "\xF0\x9F\x98\x80z", u"\uFFFDz"},
    {"five_byte_lead_skips_four", "\xF8\x88\x80\x80\x80z", u"\uFFFDz"},
    {"six_byte_lead_skips_five", "\xFC\x84\x80\x80\x80\x80z", u"\uFFFDz"},
    {"other_bytes_count_alone", "\x80\xBF\xFE\xFFz", u"\uFFFD\uFFFD\uFFFD\uFFFDz"},
    {"lead_skips_whatever_follows",
     "\xE2"
     "abz",
     u"\uFFFDz"},
    {"ascii_of_several_words", "0123456789abcdef0123456789", u"0123456789abcdef0123456789"},
    {"wide_character_in_each_word", "0123456\xC3\xA9 01234567\xC3\xA9 0123456789",
     u"0123456\u00E9 01234567\u00E9 0123456789"},
    {"cut_lead_behind_a_word", "01234567\xE2", u"01234567\uFFFD"},
    {"cut_lead_at_the_end", "a\xE2\x82", u"a\uFFFD"},
    {"overlong_nul_makes_no_nul", "\xC0\x80", u"\uFFFD"},
    {"overlong_slash_makes_no_slash", "\xC0\xAF", u"\uFFFD"},
    {"no_slash_from_the_low_bits", "\xF0\x90\x80\xAF", u"\uFFFD"},
};

INSTANTIATE_TEST_SUITE_P(Rows, Utf16Units, testing::ValuesIn(unitsRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Utf16, surrogate_passes_as_a_unit)
{
    const std::u16string surrogate(1, static_cast<char16_t>(0xD800));
    EXPECT_EQ(toUnits("\xED\xA0\x80"), surrogate);
    EXPECT_EQ(toBytes(surrogate), "\xED\xA0\x80");
}

TEST(Utf16, pair_of_surrogates_gives_two_sequences)
{
    EXPECT_EQ(toBytes(u"\U0001F600"), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(Utf16, bytes_follow_the_size_of_the_unit)
{
    EXPECT_EQ(toBytes(u"\x7F"), "\x7F");
    EXPECT_EQ(toBytes(u"\u0080"), "\xC2\x80");
    EXPECT_EQ(toBytes(u"\u07FF"), "\xDF\xBF");
    EXPECT_EQ(toBytes(u"\u0800"), "\xE0\xA0\x80");
    EXPECT_EQ(toBytes(u"\uFFFF"), "\xEF\xBF\xBF");
    EXPECT_EQ(toBytes(u"a\0b"sv), "a\0b"sv);
}

TEST(Utf16, every_unit_survives_both_ways)
{
    std::u16string all;
    for (char32_t unit = 0; unit < 0x10000; ++unit) {
        all += static_cast<char16_t>(unit);
    }
    EXPECT_EQ(toUnits(toBytes(all)), all);
}

} // namespace
