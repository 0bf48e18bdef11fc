#include "platform/datetime.h"
#include "platform/status.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

constexpr OpcUa_UInt64 ticksPerMillisecond = 10000;
constexpr OpcUa_UInt64 ticksPerSecond = 1000 * ticksPerMillisecond;
constexpr OpcUa_UInt64 ticksPerDay = 86400 * ticksPerSecond;
constexpr OpcUa_UInt64 firstTickOfYear30828 = 9223149888000000000;

struct TextRow
{
    const char* text;
    OpcUa_UInt64 ticks;
};

/// Counts were worked out with another calendar implementation.
constexpr std::array<TextRow, 17> textRows = {
    {{"1601-01-01T00:00:00.000Z", 0},
     {"1601-01-01T00:00:00.001Z", ticksPerMillisecond},
     {"1601-12-31T23:59:59.999Z", 365 * ticksPerDay - ticksPerMillisecond},
     {"1602-01-01T00:00:00.000Z", 365 * ticksPerDay},
     {"1604-02-29T00:00:00.000Z", (3 * 365 + 59) * ticksPerDay},
     {"1700-02-28T00:00:00.000Z", 31291488000000000},
     {"1700-03-01T00:00:00.000Z", 31292352000000000},
     {"1970-01-01T00:00:00.000Z", 116444736000000000},
     {"1969-12-31T23:59:59.999Z", 116444735999990000},
     {"2000-02-29T12:34:56.789Z", 125963012967890000},
     {"2000-03-01T00:00:00.000Z", 125963424000000000},
     {"2024-02-29T23:59:59.999Z", 133537247999990000},
     {"2100-03-01T00:00:00.000Z", 157520160000000000},
     {"9999-12-31T23:59:59.999Z", 2650467743999990000},
     {"10000-01-01T00:00:00.000Z", 2650467744000000000},
     {"30827-01-01T00:00:00.000Z", firstTickOfYear30828 - 365 * ticksPerDay},
     {"30827-12-31T23:59:59.999Z", firstTickOfYear30828 - ticksPerMillisecond}}};

TEST(DateTime, words_and_ticks_convert_both_ways)
{
    constexpr OpcUa_DateTime time = OpcUa_DateTime_FromTicks(0x0123456789ABCDEF);
    EXPECT_EQ(time.dwLowDateTime, 0x89ABCDEFu);
    EXPECT_EQ(time.dwHighDateTime, 0x01234567u);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(time), 0x0123456789ABCDEFu);
}

TEST(DateTime, text_forms_print_and_read_back)
{
    for (const TextRow& row : textRows) {
        SCOPED_TRACE(row.text);
        std::array<char, 100> buffer{};
        EXPECT_EQ(OpcUa_DateTime_GetStringFromDateTime(OpcUa_DateTime_FromTicks(row.ticks),
                                                       buffer.data(), buffer.size()),
                  OpcUa_Good);
        EXPECT_STREQ(buffer.data(), row.text);
        OpcUa_DateTime read{1, 1};
        EXPECT_EQ(OpcUa_DateTime_GetDateTimeFromString(row.text, &read), OpcUa_Good);
        EXPECT_EQ(OpcUa_DateTime_ToTicks(read), row.ticks);
    }
}

TEST(DateTime, printing_cuts_below_the_millisecond)
{
    std::array<char, 100> buffer{};
    EXPECT_EQ(OpcUa_DateTime_GetStringFromDateTime(
                  OpcUa_DateTime_FromTicks(ticksPerMillisecond - 1), buffer.data(), buffer.size()),
              OpcUa_Good);
    EXPECT_STREQ(buffer.data(), "1601-01-01T00:00:00.000Z");
}

TEST(DateTime, every_day_of_four_centuries_follows_the_day_before)
{
    std::string last;
    for (OpcUa_UInt64 day = 0; day < 146097 + 366; ++day) {
        std::array<char, OpcUa_DateTime_TextSize> buffer{};
        const OpcUa_DateTime time = OpcUa_DateTime_FromTicks(day * ticksPerDay);
        ASSERT_EQ(OpcUa_DateTime_GetStringFromDateTime(time, buffer.data(), buffer.size()),
                  OpcUa_Good);
        const std::string text = buffer.data();
        ASSERT_LT(last, text);
        last = text;
        OpcUa_DateTime read{};
        ASSERT_EQ(OpcUa_DateTime_GetDateTimeFromString(text.c_str(), &read), OpcUa_Good);
        ASSERT_EQ(OpcUa_DateTime_ToTicks(read), day * ticksPerDay) << text;
    }
}

TEST(DateTime, print_refuses_a_buffer_that_is_too_small)
{
    struct Row
    {
        const char* name;
        OpcUa_UInt64 ticks;
        OpcUa_UInt32 bufferSize;
        OpcUa_StatusCode expected;
    };
    const std::array<Row, 7> rows = {
        {{"no room at all", 0, 0, OpcUa_BadInvalidArgument},
         {"room for the empty text", 0, 1, OpcUa_BadInvalidArgument},
         {"24 bytes", 0, 24, OpcUa_BadInvalidArgument},
         {"25 bytes", 0, 25, OpcUa_Good},
         {"25 bytes for the last four-digit year", 2650467743999990000, 25, OpcUa_Good},
         {"25 bytes for five digits", 2650467744000000000, 25, OpcUa_BadInvalidArgument},
         {"26 bytes for five digits", 2650467744000000000, 26, OpcUa_Good}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::string buffer(100, '#');
        EXPECT_EQ(OpcUa_DateTime_GetStringFromDateTime(OpcUa_DateTime_FromTicks(row.ticks),
                                                       buffer.data(), row.bufferSize),
                  row.expected);
        EXPECT_EQ(buffer[row.bufferSize], '#');
        if (row.bufferSize > 0 && OpcUa_IsBad(row.expected)) {
            EXPECT_EQ(buffer[0], '\0');
        }
    }
    EXPECT_EQ(OpcUa_DateTime_GetStringFromDateTime({}, nullptr, 100), OpcUa_BadInvalidArgument);
}

TEST(DateTime, print_refuses_years_behind_the_last_one)
{
    for (const OpcUa_UInt64 ticks :
         {firstTickOfYear30828, OpcUa_UInt64{0x7FFFFFFFFFFFFFFF}, OpcUa_UInt64{0x8000000000000000},
          OpcUa_UInt64{0xFFFFFFFFFFFFFFFF}}) {
        SCOPED_TRACE(ticks);
        std::string buffer(100, '#');
        EXPECT_EQ(OpcUa_DateTime_GetStringFromDateTime(OpcUa_DateTime_FromTicks(ticks),
                                                       buffer.data(), 100),
                  OpcUa_BadOutOfRange);
        EXPECT_STREQ(buffer.c_str(), "");
    }
}

TEST(DateTime, read_refuses_null_pointers)
{
    OpcUa_DateTime time{1, 1};
    EXPECT_EQ(OpcUa_DateTime_GetDateTimeFromString(nullptr, &time), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(time), 0u);
    EXPECT_EQ(OpcUa_DateTime_GetDateTimeFromString("2000-01-01T00:00:00.000Z", nullptr),
              OpcUa_BadInvalidArgument);
}

TEST(DateTime, read_tells_syntax_from_range)
{
    struct Row
    {
        const char* text;
        OpcUa_StatusCode expected;
    };
    const std::array<Row, 36> rows = {{
        {"", OpcUa_BadSyntaxError},
        {"2000", OpcUa_BadSyntaxError},
        {"2000-01-01", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00.000", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00Z", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00.00Z", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00.0000Z", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00.000Zx", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00.000Z ", OpcUa_BadSyntaxError},
        {" 2000-01-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00.000z", OpcUa_BadSyntaxError},
        {"2000-01-01t00:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-01-01 00:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000/01/01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-01-01T00.00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-01-01T00:00:00,000Z", OpcUa_BadSyntaxError},
        {"200-01-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"+200-01-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"-2000-01-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"02000-01-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"100000-01-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-1-01T00:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-01-01T0a:00:00.000Z", OpcUa_BadSyntaxError},
        {"2000-13-40T99:99:99.999", OpcUa_BadSyntaxError},
        {"2000-00-01T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"2000-13-01T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"2000-01-00T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"2000-01-32T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"2001-02-29T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"1900-02-29T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"2000-02-30T00:00:00.000Z", OpcUa_BadOutOfRange},
        {"2000-01-01T24:00:00.000Z", OpcUa_BadOutOfRange},
        {"2000-01-01T00:60:00.000Z", OpcUa_BadOutOfRange},
        {"2000-01-01T00:00:60.000Z", OpcUa_BadOutOfRange},
        {"1600-12-31T23:59:59.999Z", OpcUa_BadOutOfRange},
        {"30828-01-01T00:00:00.000Z", OpcUa_BadOutOfRange},
    }};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        OpcUa_DateTime time{1, 1};
        EXPECT_EQ(OpcUa_DateTime_GetDateTimeFromString(row.text, &time), row.expected);
        EXPECT_EQ(OpcUa_DateTime_ToTicks(time), 0u);
    }
}

TEST(DateTime, read_survives_a_cut_at_every_length)
{
    const std::string whole = "2000-02-29T12:34:56.789Z";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        OpcUa_DateTime time{1, 1};
        EXPECT_EQ(OpcUa_DateTime_GetDateTimeFromString(whole.substr(0, length).c_str(), &time),
                  OpcUa_BadSyntaxError);
    }
}

} // namespace
