#include "base/hexadecimal.h"
#include "platform/allocator.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

TEST(Hexadecimal, values_are_those_of_both_cases)
{
    for (int character = 0; character < 256; ++character) {
        const std::size_t upper = UaHexadecimal::Digits.find(static_cast<char>(character));
        int expected = upper == std::string_view::npos ? -1 : static_cast<int>(upper);
        if (character >= 'a' && character <= 'f') {
            expected = character - 'a' + 10;
        }
        EXPECT_EQ(UaHexadecimal::valueOf(static_cast<char>(character)), expected) << character;
    }
}

TEST(Hexadecimal, every_byte_survives_both_ways)
{
    for (int value = 0; value < 256; ++value) {
        const auto byte = static_cast<OpcUa_Byte>(value);
        char text[2] = {};
        UaHexadecimal::encode(&byte, 1, text);
        OpcUa_Byte decoded = 0;
        EXPECT_TRUE(UaHexadecimal::decode({text, 2}, &decoded));
        EXPECT_EQ(decoded, byte);
    }
}

TEST(Hexadecimal, nothing_gives_an_empty_text)
{
    for (const bool spaces : {false, true}) {
        const UaString text = UaHexadecimal::encode(nullptr, 0, spaces);
        EXPECT_TRUE(text.isEmpty());
        EXPECT_FALSE(text.isNull());
    }
}

TEST(Hexadecimal, text_that_would_be_too_long_is_null_before_memory_is_taken)
{
    static std::size_t allocations = 0;
    OpcUa_Memory_SetFaultHook([](std::size_t) {
        ++allocations;
        return true;
    });
    const OpcUa_Byte byte = 0;
    constexpr auto tooMany = static_cast<std::size_t>(UaString::MaxLength / 2) + 1;
    EXPECT_TRUE(UaHexadecimal::encode(&byte, tooMany, false).isNull());
    EXPECT_TRUE(
        UaHexadecimal::encode(&byte, std::numeric_limits<OpcUa_Int32>::max(), true).isNull());
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_EQ(allocations, 0u);
}

TEST(Hexadecimal, odd_counts_and_other_characters_are_refused)
{
    OpcUa_Byte bytes[4] = {};
    for (const char* text : {"A", "ABC", "AG", "GA", "A ", " A", "AB CD", "0x", "+1", "\xC3\xA9"}) {
        EXPECT_FALSE(UaHexadecimal::decode(text, bytes)) << text;
    }
    EXPECT_TRUE(UaHexadecimal::decode("", bytes));
}

} // namespace
