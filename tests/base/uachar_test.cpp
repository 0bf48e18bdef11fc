#include "base/uachar.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

struct DecodeRow
{
    const char* name;
    std::string_view bytes;
    char32_t codePoint;
    OpcUa_Int32 length;
};

void PrintTo(const DecodeRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class CharDecode : public testing::TestWithParam<DecodeRow>
{
};

TEST_P(CharDecode, gives_code_point_and_length)
{
    const DecodeRow& row = GetParam();
    // A block of exactly that size lets the sanitizer see a read behind it.
    const std::string text(row.bytes);
    const UaChar character = UaChar::decode(text.data(), text.size());
    EXPECT_EQ(OpcUa_UInt32{character.codePoint()}, OpcUa_UInt32{row.codePoint});
    EXPECT_EQ(character.utf8Length(), row.length);
    EXPECT_FALSE(character.isNull());
}

constexpr DecodeRow decodeRows[] = {
    {"nul", "\0"sv, 0, 1},
    {"ascii", "A", U'A', 1},
    {"last_ascii", "\x7F", 0x7F, 1},
    {"only_the_first_of_two", "AB", U'A', 1},
    {"first_of_two_bytes", "\xC2\x80", 0x80, 2},
    {"last_of_two_bytes", "\xDF\xBF", 0x7FF, 2},
    {"first_of_three_bytes", "\xE0\xA0\x80", 0x800, 3},
    {"euro", "\xE2\x82\xAC", 0x20AC, 3},
    {"last_of_three_bytes", "\xEF\xBF\xBF", 0xFFFF, 3},
    {"surrogate_passes", "\xED\xA0\x80", 0xD800, 3},
    {"first_of_four_bytes", "\xF0\x90\x80\x80", 0x10000, 4},
    {"last_code_point", "\xF4\x8F\xBF\xBF", 0x10FFFF, 4},
    {"above_last_code_point", "\xF4\x90\x80\x80", UaChar::Replacement, 4},
    {"five_bytes", "\xF8\x88\x80\x80\x80", UaChar::Replacement, 5},
    {"six_bytes", "\xFC\x84\x80\x80\x80\x80", UaChar::Replacement, 6},
    {"lone_continuation", "\x80", UaChar::Replacement, 1},
    {"lone_continuation_before_text",
     "\xBF"
     "A",
     UaChar::Replacement, 1},
    {"byte_fe", "\xFE\x80", UaChar::Replacement, 1},
    {"byte_ff", "\xFF\x80", UaChar::Replacement, 1},
    {"overlong_nul", "\xC0\x80", UaChar::Replacement, 2},
    {"overlong_slash", "\xC0\xAF", UaChar::Replacement, 2},
    {"overlong_three_bytes", "\xE0\x80\xAF", UaChar::Replacement, 3},
    {"overlong_four_bytes", "\xF0\x80\x80\xAF", UaChar::Replacement, 4},
    {"lead_takes_a_letter",
     "\xC3"
     "A",
     UaChar::Replacement, 2},
    {"cut_after_lead", "\xE2", UaChar::Replacement, 1},
    {"cut_after_two_of_three", "\xE2\x82", UaChar::Replacement, 2},
    {"cut_after_five_of_six", "\xFC\x84\x80\x80\x80", UaChar::Replacement, 5},
};

INSTANTIATE_TEST_SUITE_P(Rows, CharDecode, testing::ValuesIn(decodeRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Char, default_is_no_character)
{
    constexpr UaChar none;
    EXPECT_TRUE(none.isNull());
    EXPECT_EQ(none.codePoint(), 0u);
    EXPECT_EQ(none.utf8Length(), 0);
    EXPECT_EQ(UaChar::decode("", 0), none);
}

TEST(Char, nul_is_a_character)
{
    const UaChar nul = '\0';
    EXPECT_FALSE(nul.isNull());
    EXPECT_FALSE(nul == UaChar());
    EXPECT_EQ(nul, UaChar(char32_t{0}));
}

TEST(Char, byte_above_127_is_no_character)
{
    EXPECT_EQ(UaChar('\xE9').codePoint(), UaChar::Replacement);
    EXPECT_EQ(UaChar('\x7F').codePoint(), 0x7Fu);
}

TEST(Char, code_point_above_the_last_is_replaced)
{
    EXPECT_EQ(UaChar(char32_t{0x10FFFF}).codePoint(), 0x10FFFFu);
    EXPECT_EQ(UaChar(char32_t{0x110000}).codePoint(), UaChar::Replacement);
}

TEST(Char, every_lead_byte_announces_its_length)
{
    for (int byte = 0; byte < 256; ++byte) {
        const std::size_t expected = byte < 0xC0   ? 1
                                     : byte < 0xE0 ? 2
                                     : byte < 0xF0 ? 3
                                     : byte < 0xF8 ? 4
                                     : byte < 0xFC ? 5
                                     : byte < 0xFE ? 6
                                                   : 1;
        EXPECT_EQ(UaChar::announcedLength(static_cast<char>(byte)), expected) << byte;
    }
}

TEST(Char, sequence_ends_with_the_text)
{
    EXPECT_EQ(UaChar::sequenceLength("\xF0\x90", 2), 2u);
    EXPECT_EQ(UaChar::sequenceLength("\xF0\x90\x80\x80z", 5), 4u);
}

TEST(Char, every_code_point_survives_encoding)
{
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        char buffer[UaChar::MaxUtf8Length] = {};
        const std::size_t length = UaChar(codePoint).toUtf8(buffer);
        const UaChar decoded = UaChar::decode(buffer, length);
        ASSERT_EQ(decoded.codePoint(), codePoint);
        ASSERT_EQ(static_cast<std::size_t>(decoded.utf8Length()), length);
        ASSERT_EQ(UaChar(codePoint).utf8Length(), decoded.utf8Length());
    }
}

TEST(Char, no_character_encodes_to_nothing)
{
    char buffer[UaChar::MaxUtf8Length] = {'x'};
    EXPECT_EQ(UaChar().toUtf8(buffer), 0u);
    EXPECT_EQ(buffer[0], 'x');
}

TEST(Char, kinds_are_those_of_ascii)
{
    for (char32_t codePoint = 0; codePoint < 0x300; ++codePoint) {
        const UaChar character(codePoint);
        EXPECT_EQ(character.isDigit(), codePoint >= '0' && codePoint <= '9')
            << OpcUa_UInt32{codePoint};
        EXPECT_EQ(character.isLower(), codePoint >= 'a' && codePoint <= 'z')
            << OpcUa_UInt32{codePoint};
        EXPECT_EQ(character.isUpper(), codePoint >= 'A' && codePoint <= 'Z')
            << OpcUa_UInt32{codePoint};
    }
}

TEST(Char, white_space_is_that_of_unicode)
{
    const std::u32string_view spaces = U"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003"
                                       U"\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028\u2029"
                                       U"\u202F\u205F\u3000";
    for (char32_t codePoint = 0; codePoint < 0x3100; ++codePoint) {
        EXPECT_EQ(UaChar(codePoint).isSpace(), spaces.find(codePoint) != spaces.npos)
            << OpcUa_UInt32{codePoint};
    }
}

} // namespace
