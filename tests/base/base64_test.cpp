#include "base/base64.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

std::string encode(std::string_view bytes)
{
    return std::string(
        UaBase64::encode(reinterpret_cast<const OpcUa_Byte*>(bytes.data()), bytes.size()).view());
}

/// The bytes, or nothing for a text that is refused.
std::optional<std::string> decode(std::string_view text)
{
    const std::string exact(text);
    OpcUa_ByteString bytes;
    const OpcUa_StatusCode status = UaBase64::decode(exact, &bytes);
    if (status != OpcUa_Good) {
        EXPECT_EQ(status, OpcUa_BadInvalidArgument);
        EXPECT_EQ(bytes.Length, -1);
        EXPECT_EQ(bytes.Data, nullptr);
        return std::nullopt;
    }
    EXPECT_GE(bytes.Length, 0);
    std::string result;
    if (bytes.Length > 0) {
        result.assign(reinterpret_cast<const char*>(bytes.Data),
                      static_cast<std::size_t>(bytes.Length));
    }
    OpcUa_ByteString_Clear(&bytes);
    return result;
}

struct PairRow
{
    const char* name;
    std::string_view bytes;
    std::string_view text;
};

void PrintTo(const PairRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class Base64Pair : public testing::TestWithParam<PairRow>
{
};

TEST_P(Base64Pair, goes_both_ways)
{
    EXPECT_EQ(encode(GetParam().bytes), GetParam().text);
    EXPECT_EQ(decode(GetParam().text), GetParam().bytes);
}

constexpr PairRow pairRows[] = {
    {"nothing", "", ""},
    {"one_byte_pads_two", "A", "QQ=="},
    {"two_bytes_pad_one", "AB", "QUI="},
    {"three_bytes_pad_none", "ABC", "QUJD"},
    {"rfc_six", "foobar", "Zm9vYmFy"},
    {"last_characters", "\xFB\xFF\xBF", "+/+/"},
    {"zeros", "\0\0\0\0"sv, "AAAAAA=="},
};

INSTANTIATE_TEST_SUITE_P(Rows, Base64Pair, testing::ValuesIn(pairRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Base64, all_bytes_survive_at_all_lengths)
{
    std::string bytes;
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(decode(encode(bytes)), bytes);
        EXPECT_EQ(UaBase64::encodedLength(i), static_cast<OpcUa_Int64>(encode(bytes).size()));
        bytes += static_cast<char>(i * 7);
    }
}

struct TextRow
{
    const char* name;
    std::string_view text;
    std::optional<std::string_view> bytes;
};

void PrintTo(const TextRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class Base64Text : public testing::TestWithParam<TextRow>
{
};

TEST_P(Base64Text, is_read_or_refused)
{
    EXPECT_EQ(decode(GetParam().text), GetParam().bytes);
}

constexpr TextRow textRows[] = {
    {"length_1", "Q", std::nullopt},
    {"length_2", "QQ", std::nullopt},
    {"length_3", "QQ=", std::nullopt},
    {"length_5", "QUJDQ", std::nullopt},
    {"letter_behind_padding", "Q=Q=", std::nullopt},
    {"line_feed_behind_padding", "QQ=\n", std::nullopt},
    {"group_behind_padding", "QQ==QUJD", std::nullopt},
    {"three_paddings", "Q===", std::nullopt},
    {"four_paddings", "====", std::nullopt},
    {"five_paddings", "QUJ=====", std::nullopt},
    {"blank", "QU D", std::nullopt},
    {"minus_of_the_url_alphabet", "QU-D", std::nullopt},
    {"underscore_of_the_url_alphabet", "QU_D", std::nullopt},
    {"nul", "QU\0D"sv, std::nullopt},
    {"high_bytes", "\xC3\xA9\xC3\xA9", std::nullopt},
    {"bad_in_the_last_group", "QUJDQ.==", std::nullopt},
    {"spare_bits_are_ignored", "QR==", "A"},
    {"line_feeds_before_a_group", "\n\n\n\nQUJD", "ABC"},
    {"line_ends_between_groups", "QUJD\r\n\r\nQUJD", "ABCABC"},
    {"line_feeds_before_a_padded_group", "QUJD\n\n\n\nQQ==", "ABCA"},
    {"line_feeds_behind_the_last_group", "QUJD\n\n\n\n", "ABC"},
    {"only_line_feeds", "\n\r\n\r", ""},
    {"line_feed_counts_in_the_length", "QUJD\nQUJD", std::nullopt},
    {"line_feed_inside_a_group", "QU\nD", std::nullopt},
    {"line_feed_leaves_a_short_group", "\nQUJ", std::nullopt},
    {"line_feed_leaves_a_short_padded_group", "\nQQ=", std::nullopt},
    {"line_feeds_leave_padding_alone", "QUJD\n\n==", std::nullopt},
};

INSTANTIATE_TEST_SUITE_P(Rows, Base64Text, testing::ValuesIn(textRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Base64, each_character_outside_the_alphabet_is_refused_at_each_place)
{
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (int character = 0; character < 256; ++character) {
        const bool isKnown = alphabet.find(static_cast<char>(character)) != alphabet.npos;
        for (std::size_t place = 0; place < 4; ++place) {
            std::string text = "AAAAAAAA";
            text[4 + place] = static_cast<char>(character);
            const bool isPadding = character == '=' && place == 3;
            EXPECT_EQ(decode(text).has_value(), isKnown || isPadding) << character << " " << place;
        }
    }
}

TEST(Base64, empty_text_gives_an_empty_byte_string)
{
    OpcUa_ByteString bytes = {7, nullptr};
    EXPECT_EQ(UaBase64::decode("", &bytes), OpcUa_Good);
    EXPECT_EQ(bytes.Length, 0);
}

TEST(Base64, null_pointer_is_refused)
{
    EXPECT_EQ(UaBase64::decode("QUJD", nullptr), OpcUa_BadInvalidArgument);
}

TEST(Base64, without_memory_nothing_is_given)
{
    const AllocationFaults faults(0);
    OpcUa_ByteString bytes;
    EXPECT_EQ(UaBase64::decode("QUJD", &bytes), OpcUa_BadOutOfMemory);
    EXPECT_EQ(bytes.Length, -1);
    const OpcUa_Byte byte = 1;
    const AllocationFaults again(0);
    EXPECT_TRUE(UaBase64::encode(&byte, 1).isNull());
}

TEST(Base64, text_that_would_be_too_long_is_null)
{
    const OpcUa_Byte byte = 1;
    EXPECT_TRUE(UaBase64::encode(&byte, 0x70000000).isNull());
}

} // namespace
