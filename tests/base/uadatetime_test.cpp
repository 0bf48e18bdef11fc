#include "base/uadatetime.h"
#include "platform/clock.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <type_traits>

namespace {

constexpr OpcUa_Int64 unixEpoch = 116444736000000000;
constexpr OpcUa_Int64 second = 10000000;
constexpr OpcUa_Int64 hour = 3600 * second;
constexpr OpcUa_Int64 largest = std::numeric_limits<OpcUa_Int64>::max();

static_assert(std::has_virtual_destructor_v<UaDateTime>);
static_assert(std::is_nothrow_move_constructible_v<UaDateTime>);
static_assert(std::is_nothrow_copy_assignable_v<UaDateTime>);

/// The platform's clock stands still, but goes on by a second with every reading.
class TickingClock
{
public:
    TickingClock()
    {
        reading() = unixEpoch;
        OpcUa_P_Clock_SetSource([] { return reading() += second; });
    }
    ~TickingClock() { OpcUa_P_Clock_SetSource(nullptr); }
    TickingClock(const TickingClock&) = delete;
    TickingClock& operator=(const TickingClock&) = delete;

private:
    static OpcUa_UInt64& reading()
    {
        static OpcUa_UInt64 value = 0;
        return value;
    }
};

TEST(UaDateTime, default_is_the_null_time)
{
    const UaDateTime time;
    EXPECT_TRUE(time.isNull());
    EXPECT_EQ(time.toInt64(), 0);
    EXPECT_EQ(time.toTime_t(), 0);
    EXPECT_EQ(time.msec(), 0);
    EXPECT_EQ(textOf(time.toString()), "1601-01-01T00:00:00.000Z");
}

TEST(UaDateTime, is_null_looks_at_both_words)
{
    EXPECT_FALSE(UaDateTime(OpcUa_DateTime{1, 0}).isNull());
    EXPECT_FALSE(UaDateTime(OpcUa_DateTime{0, 1}).isNull());
    EXPECT_TRUE(UaDateTime(OpcUa_DateTime{0, 0}).isNull());
}

TEST(UaDateTime, count_and_words_convert_both_ways)
{
    const UaDateTime time(OpcUa_Int64{0x0123456789ABCDEF});
    EXPECT_EQ(time.toOpcUaDateTime().dwLowDateTime, 0x89ABCDEFu);
    EXPECT_EQ(time.toOpcUaDateTime().dwHighDateTime, 0x01234567u);
    EXPECT_EQ(UaDateTime(OpcUa_DateTime{0x89ABCDEF, 0x01234567}).toInt64(), 0x0123456789ABCDEF);
    EXPECT_EQ(UaDateTime(OpcUa_Int64{-1}).toInt64(), -1);
    EXPECT_EQ(UaDateTime(OpcUa_Int64{-1}).toOpcUaDateTime().dwHighDateTime, 0xFFFFFFFFu);
}

TEST(UaDateTime, now_is_the_time_of_the_platforms_clock)
{
    const TickingClock clock;
    EXPECT_EQ(UaDateTime::now().toInt64(), unixEpoch + second);
    EXPECT_EQ(UaDateTime::now().toInt64(), unixEpoch + 2 * second);
}

struct TimeTRow
{
    std::time_t seconds;
    OpcUa_Int64 ticks;
};

constexpr std::array<TimeTRow, 5> timeTRows = {{{1, unixEpoch + second},
                                                {0, unixEpoch},
                                                {-1, unixEpoch - second},
                                                {-11644473600, 0},
                                                {253402300799, 2650467743990000000}}};

TEST(UaDateTime, from_time_t_counts_from_1970)
{
    for (const TimeTRow& row : timeTRows) {
        SCOPED_TRACE(row.seconds);
        const UaDateTime time = UaDateTime::fromTime_t(row.seconds);
        EXPECT_EQ(time.toInt64(), row.ticks);
        EXPECT_EQ(time.toTime_t(), row.seconds > 0 ? row.seconds : 0);
    }
}

TEST(UaDateTime, from_time_t_keeps_the_low_64_bits_of_a_far_time)
{
    // (2^63 - 1 + 11644473600) * 10000000 modulo 2^64, worked out with whole numbers of any size.
    EXPECT_EQ(static_cast<OpcUa_UInt64>(
                  UaDateTime::fromTime_t(std::numeric_limits<std::time_t>::max()).toInt64()),
              116444735990000000u);
    EXPECT_EQ(UaDateTime::fromTime_t(std::numeric_limits<std::time_t>::min()).toInt64(),
              116444736000000000);
}

struct ToTimeTRow
{
    OpcUa_Int64 ticks;
    std::time_t seconds;
};

constexpr std::array<ToTimeTRow, 8> toTimeTRows = {{{unixEpoch, 0},
                                                    {unixEpoch - 1, 0},
                                                    {unixEpoch - 5 * second, 0},
                                                    {-1, 0},
                                                    {std::numeric_limits<OpcUa_Int64>::min(), 0},
                                                    {unixEpoch + second - 1, 0},
                                                    {unixEpoch + second, 1},
                                                    {largest, (largest - unixEpoch) / second}}};

TEST(UaDateTime, to_time_t_is_0_up_to_1970)
{
    for (const ToTimeTRow& row : toTimeTRows) {
        EXPECT_EQ(UaDateTime(row.ticks).toTime_t(), row.seconds) << row.ticks;
    }
}

TEST(UaDateTime, msec_is_the_part_below_a_second)
{
    EXPECT_EQ(UaDateTime(unixEpoch).msec(), 0);
    EXPECT_EQ(UaDateTime(unixEpoch + 9999).msec(), 0);
    EXPECT_EQ(UaDateTime(unixEpoch + 10000).msec(), 1);
    EXPECT_EQ(UaDateTime(unixEpoch - 1).msec(), 999);
    EXPECT_EQ(UaDateTime(unixEpoch + second).msec(), 0);
    EXPECT_EQ(UaDateTime(OpcUa_Int64{-1}).msec(), 955); // never negative
}

struct SpanRow
{
    const char* name;
    OpcUa_Int64 from;
    OpcUa_Int64 to;
    OpcUa_Int32 msecs;
    OpcUa_Int32 secs;
    OpcUa_Int32 days;
};

constexpr std::array<SpanRow, 8> spanRows = {
    {{"none", unixEpoch, unixEpoch, 0, 0, 0},
     {"36 hours", unixEpoch, unixEpoch + 36 * hour, 129600000, 129600, 1},
     {"back 36 hours", unixEpoch + 36 * hour, unixEpoch, -129600000, -129600, -1},
     {"just below one of each", unixEpoch, unixEpoch + 9999, 0, 0, 0},
     {"just below a second back", unixEpoch, unixEpoch - second + 1, -999, 0, 0},
     {"24 hours", unixEpoch, unixEpoch + 24 * hour, 86400000, 86400, 1},
     // 30 days are 2592000000 ms, of which 32 bits are left.
     {"30 days", unixEpoch, unixEpoch + 720 * hour, -1702967296, 2592000, 30},
     // From the largest negative to the largest positive count the difference itself turns over.
     {"all of it", std::numeric_limits<OpcUa_Int64>::min(), largest, 0, 0, 0}}};

TEST(UaDateTime, spans_are_whole_units_of_32_bits)
{
    for (const SpanRow& row : spanRows) {
        SCOPED_TRACE(row.name);
        const UaDateTime from(row.from);
        const UaDateTime to(row.to);
        EXPECT_EQ(from.msecsTo(to), row.msecs);
        EXPECT_EQ(from.secsTo(to), row.secs);
        EXPECT_EQ(from.daysTo(to), row.days);
    }
}

TEST(UaDateTime, add_moves_the_time_in_place)
{
    UaDateTime time(unixEpoch);
    time.addSecs(1);
    EXPECT_EQ(time.toInt64(), unixEpoch + second);
    time.addSecs(-2);
    EXPECT_EQ(time.toInt64(), unixEpoch - second);
    time.addMilliSecs(1500);
    EXPECT_EQ(time.toInt64(), unixEpoch + second / 2);
    time.addMilliSecs(-500);
    EXPECT_EQ(time.toInt64(), unixEpoch);
    time.addSecs(std::numeric_limits<OpcUa_Int32>::max());
    EXPECT_EQ(time.toInt64(), unixEpoch + 2147483647 * second);
    time.addSecs(std::numeric_limits<OpcUa_Int32>::min());
    EXPECT_EQ(time.toInt64(), unixEpoch - second);
    time.addMilliSecs(std::numeric_limits<OpcUa_Int32>::min());
    EXPECT_EQ(time.toInt64(), unixEpoch - second - 21474836480000);
    UaDateTime end(largest);
    end.addMilliSecs(1);
    EXPECT_EQ(end.toInt64(), std::numeric_limits<OpcUa_Int64>::min() + 9999);
}

TEST(UaDateTime, text_has_a_date_and_a_time)
{
    const UaDateTime time(OpcUa_Int64{125963012967890000});
    EXPECT_EQ(textOf(time.toString()), "2000-02-29T12:34:56.789Z");
    EXPECT_EQ(textOf(time.toDateString()), "2000-02-29");
    EXPECT_EQ(textOf(time.toTimeString()), "12:34:56.789Z");
    const UaDateTime far(OpcUa_Int64{2650467744000000000});
    EXPECT_EQ(textOf(far.toString()), "10000-01-01T00:00:00.000Z");
    EXPECT_EQ(textOf(far.toDateString()), "10000-01-01");
    EXPECT_EQ(textOf(far.toTimeString()), "00:00:00.000Z");
}

TEST(UaDateTime, a_time_without_a_text_gives_the_null_string)
{
    for (const OpcUa_Int64 ticks : {OpcUa_Int64{9223149888000000000}, largest, OpcUa_Int64{-1}}) {
        EXPECT_TRUE(UaDateTime(ticks).toString().isNull());
        EXPECT_TRUE(UaDateTime(ticks).toDateString().isNull());
        EXPECT_TRUE(UaDateTime(ticks).toTimeString().isNull());
    }
    EXPECT_FALSE(UaDateTime(OpcUa_Int64{9223149888000000000 - 1}).toString().isNull());
}

TEST(UaDateTime, reads_what_it_prints)
{
    for (const OpcUa_Int64 ticks :
         {OpcUa_Int64{0}, OpcUa_Int64{10000}, unixEpoch, OpcUa_Int64{125963012967890000},
          OpcUa_Int64{9223149888000000000 - 10000}}) {
        EXPECT_EQ(UaDateTime::fromString(UaDateTime(ticks).toString()).toInt64(), ticks);
    }
}

TEST(UaDateTime, any_other_text_reads_as_the_null_time)
{
    for (const char* text :
         {"", "2000", "2000-02-29", "2000-02-29T12:34:56.789", "2000-02-29 12:34:56.789Z",
          "2000-02-29T12:34:56.789Z ", " 2000-02-29T12:34:56.789Z", "2000-02-30T12:34:56.789Z",
          "2000-13-01T00:00:00.000Z", "1600-12-31T00:00:00.000Z", "2000-01-01T24:00:00.000Z",
          "20-02-29T12:34:56.789Z", "2000-02-29T12:34:56.78xZ"}) {
        EXPECT_TRUE(UaDateTime::fromString(text).isNull()) << text;
    }
    EXPECT_TRUE(UaDateTime::fromString(UaString()).isNull());
}

TEST(UaDateTime, a_nul_ends_the_text_that_is_read)
{
    const std::string text("2000-02-29T12:34:56.789Z\0Z", 26);
    EXPECT_EQ(UaDateTime::fromString(UaString(text.data(), 26)).toInt64(), 125963012967890000);
}

TEST(UaDateTime, copies_both_words)
{
    OpcUa_DateTime target{1, 1};
    UaDateTime(OpcUa_Int64{0x0123456789ABCDEF}).copyTo(&target);
    EXPECT_EQ(target.dwLowDateTime, 0x89ABCDEFu);
    EXPECT_EQ(target.dwHighDateTime, 0x01234567u);
    UaDateTime().copyTo(nullptr);
}

TEST(UaDateTime, order_is_that_of_unsigned_counts)
{
    const std::array<UaDateTime, 6> inOrder = {
        UaDateTime(OpcUa_DateTime{0, 0}),          UaDateTime(OpcUa_DateTime{1, 0}),
        UaDateTime(OpcUa_DateTime{0xFFFFFFFF, 0}), UaDateTime(OpcUa_DateTime{0, 1}),
        UaDateTime(OpcUa_DateTime{0, 0x7FFFFFFF}), UaDateTime(OpcUa_DateTime{0, 0x80000000})};
    for (std::size_t left = 0; left < inOrder.size(); ++left) {
        for (std::size_t right = 0; right < inOrder.size(); ++right) {
            EXPECT_EQ(inOrder[left] < inOrder[right], left < right);
            EXPECT_EQ(inOrder[left] > inOrder[right], left > right);
            EXPECT_EQ(inOrder[left] == inOrder[right], left == right);
            EXPECT_EQ(inOrder[left] != inOrder[right], left != right);
        }
    }
}

/// A variant that holds something to be freed.
OpcUa_Variant filledVariant()
{
    OpcUa_Variant variant;
    OpcUa_Variant_Initialize(&variant);
    variant.Datatype = OpcUaType_String;
    EXPECT_EQ(OpcUa_String_AttachCopy(&variant.Value.String, "old"), OpcUa_Good);
    return variant;
}

TEST(UaDateTime, to_variant_makes_a_scalar)
{
    OpcUa_Variant variant = filledVariant();
    const UaDateTime time(OpcUa_Int64{0x0123456789ABCDEF});
    ASSERT_EQ(time.toVariant(&variant), OpcUa_Good);
    EXPECT_EQ(variant.Datatype, 13);
    EXPECT_EQ(variant.ArrayType, OpcUa_VariantArrayType_Scalar);
    EXPECT_EQ(UaDateTime(variant.Value.DateTime), time);
    EXPECT_EQ(time.toVariant(nullptr), OpcUa_BadInvalidArgument);
}

TEST(UaDateTime, to_data_value_reads_the_clock_once_for_each_timestamp)
{
    const TickingClock clock;
    OpcUa_DataValue dataValue;
    OpcUa_DataValue_Initialize(&dataValue);
    dataValue.Value = filledVariant();
    dataValue.StatusCode = OpcUa_BadOutOfRange;
    dataValue.SourceTimestamp = {7, 7};
    const UaDateTime time(unixEpoch);
    ASSERT_EQ(time.toDataValue(&dataValue, false), OpcUa_Good);
    EXPECT_EQ(dataValue.Value.Datatype, OpcUaType_DateTime);
    EXPECT_EQ(UaDateTime(dataValue.SourceTimestamp), UaDateTime(OpcUa_DateTime{7, 7}));
    EXPECT_TRUE(UaDateTime(dataValue.ServerTimestamp).isNull());
    ASSERT_EQ(time.toDataValue(&dataValue, true), OpcUa_Good);
    EXPECT_EQ(UaDateTime(dataValue.Value.Value.DateTime), time);
    EXPECT_EQ(UaDateTime(dataValue.SourceTimestamp).toInt64(), unixEpoch + second);
    EXPECT_EQ(UaDateTime(dataValue.ServerTimestamp).toInt64(), unixEpoch + 2 * second);
    EXPECT_EQ(dataValue.StatusCode, OpcUa_BadOutOfRange); // not touched
    EXPECT_EQ(time.toDataValue(nullptr, true), OpcUa_BadInvalidArgument);
    OpcUa_DataValue_Clear(&dataValue);
}

TEST(UaDateTime, text_is_null_when_memory_is_short)
{
    const UaDateTime time(unixEpoch);
    const AllocationFaults noMemory(0);
    EXPECT_TRUE(time.toString().isNull());
}

} // namespace
