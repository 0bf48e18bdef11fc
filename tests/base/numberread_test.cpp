#include "base/numberread.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

struct SignedRow
{
    std::string_view text;
    bool isRead;
    OpcUa_Int64 value;
};

TEST(UaNumberRead, signed_numbers_take_the_whole_text)
{
    constexpr SignedRow rows[] = {{"", true, 0},
                                  {"0", true, 0},
                                  {"-0", true, 0},
                                  {"\t\n\v\f\r 42", true, 42},
                                  {"+42", true, 42},
                                  {"-42", true, -42},
                                  {"9223372036854775807", true, INT64_MAX},
                                  {"9223372036854775808", false, 0},
                                  {"-9223372036854775808", true, INT64_MIN},
                                  {"-9223372036854775809", false, 0},
                                  {"18446744073709551616", false, 0},
                                  {"42 ", false, 0},
                                  {"4 2", false, 0},
                                  {"+ 42", false, 0},
                                  {"+-42", false, 0},
                                  {"-+42", false, 0},
                                  {"0x2A", false, 0},
                                  {"   ", false, 0},
                                  {"-", false, 0},
                                  {std::string_view("1\0", 2), false, 0}};
    for (const SignedRow& row : rows) {
        OpcUa_Int64 value = 0;
        EXPECT_EQ(UaNumberRead::readSigned(row.text, value), row.isRead) << row.text;
        if (row.isRead) {
            EXPECT_EQ(value, row.value) << row.text;
        }
    }
}

struct UnsignedRow
{
    std::string_view text;
    bool isRead;
    OpcUa_UInt64 value;
};

TEST(UaNumberRead, unsigned_numbers_have_no_minus)
{
    constexpr UnsignedRow rows[] = {{"", true, 0},
                                    {"+7", true, 7},
                                    {" 7", true, 7},
                                    {"-7", false, 0},
                                    {"-0", false, 0},
                                    {"18446744073709551615", true, UINT64_MAX},
                                    {"18446744073709551616", false, 0},
                                    {"7a", false, 0}};
    for (const UnsignedRow& row : rows) {
        OpcUa_UInt64 value = 0;
        EXPECT_EQ(UaNumberRead::readUnsigned(row.text, value), row.isRead) << row.text;
        if (row.isRead) {
            EXPECT_EQ(value, row.value) << row.text;
        }
    }
}

TEST(UaNumberRead, hexadecimal_numbers_have_a_prefix_and_a_limit_of_digits)
{
    constexpr UnsignedRow rows[] = {
        {"0x0", true, 0},   {"0X1f", true, 31}, {"0xFFFF", true, 65535}, {"0x10000", false, 0},
        {"0x", false, 0},   {"", false, 0},     {"1F", false, 0},        {"0x1G", false, 0},
        {" 0x1", false, 0}, {"0x 1", false, 0}, {"0x+1", false, 0},      {"0x-1", false, 0},
        {"x1", false, 0},   {"1x1", false, 0}};
    for (const UnsignedRow& row : rows) {
        OpcUa_UInt64 value = 0;
        EXPECT_EQ(UaNumberRead::readHexadecimal(row.text, 4, value), row.isRead) << row.text;
        if (row.isRead) {
            EXPECT_EQ(value, row.value) << row.text;
        }
    }
    OpcUa_UInt64 value = 0;
    EXPECT_TRUE(UaNumberRead::readHexadecimal("0xFFFFFFFFFFFFFFFF", 16, value));
    EXPECT_EQ(value, UINT64_MAX);
}

struct DoubleRow
{
    std::string_view text;
    bool isRead;
    OpcUa_Double value;
};

TEST(UaNumberRead, floating_point_numbers_take_the_whole_text)
{
    constexpr DoubleRow rows[] = {{"", true, 0.0},
                                  {"1.5", true, 1.5},
                                  {" \t-1.5e2", true, -150.0},
                                  {"+.5", true, 0.5},
                                  {"5.", true, 5.0},
                                  {"0x10", true, 16.0},
                                  {"-0X1.8P1", true, -3.0},
                                  {"4.9e-324", true, 4.9e-324},
                                  {"1.7976931348623157e308", true, 1.7976931348623157e308},
                                  {"1e309", false, 0},
                                  {"1e-400", false, 0},
                                  {"+-1", false, 0},
                                  {"--1", false, 0},
                                  {"0x-1", false, 0},
                                  {"0xnan", false, 0},
                                  {"0xinf", false, 0},
                                  {"0xp1", false, 0},
                                  {"0x", false, 0},
                                  {"1,5", false, 0},
                                  {"1.5 ", false, 0},
                                  {"1.5x", false, 0},
                                  {" ", false, 0},
                                  {".", false, 0},
                                  {"e5", false, 0}};
    for (const DoubleRow& row : rows) {
        OpcUa_Double value = 0;
        EXPECT_EQ(UaNumberRead::readDouble(row.text, value), row.isRead) << row.text;
        if (row.isRead) {
            EXPECT_EQ(value, row.value) << row.text;
        }
    }
}

TEST(UaNumberRead, infinity_and_nan_are_words)
{
    OpcUa_Double value = 0;
    EXPECT_TRUE(UaNumberRead::readDouble("-Infinity", value));
    EXPECT_TRUE(std::isinf(value));
    EXPECT_TRUE(std::signbit(value));
    EXPECT_TRUE(UaNumberRead::readDouble("NAN", value));
    EXPECT_TRUE(std::isnan(value));
}

TEST(UaNumberRead, agrees_with_the_c_library_on_whole_texts)
{
    const std::string texts[] = {"0",    "17",     "-3.25", "1e-5",  " 8",    "0x1.8p3", "1e",
                                 "abc",  "- 1",    "0x",    "1e+",   "inf",   "infin",   "1..2",
                                 "1e5.", "0x1p+2", "0b1",   "1_000", "1'000", "٣"};
    for (const std::string& textValue : texts) {
        char* end = nullptr;
        const double expected = std::strtod(textValue.c_str(), &end);
        OpcUa_Double value = 0;
        const bool isRead = UaNumberRead::readDouble(textValue, value);
        EXPECT_EQ(isRead, *end == '\0') << textValue;
        if (isRead) {
            EXPECT_EQ(value, expected) << textValue;
        }
    }
}

} // namespace
