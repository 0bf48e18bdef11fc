#include "base/uaunistring.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <string>

namespace {

struct NumberRow
{
    const char* name;
    const char* text;
    OpcUa_Int32 base;
    std::optional<OpcUa_Int32> int32;
    std::optional<OpcUa_UInt32> uint32;
    std::optional<OpcUa_Int64> int64;
    std::optional<OpcUa_UInt64> uint64;
};

void PrintTo(const NumberRow& row, std::ostream* stream)
{
    *stream << row.name;
}

/// A number as read, or nothing; a refused one is 0 too.
template <typename Integer>
std::optional<Integer> read(const UaUniString& text, OpcUa_Int32 base,
                            Integer (UaUniString::*reader)(bool*, OpcUa_Int32) const)
{
    bool isRead = false;
    const Integer number = (text.*reader)(&isRead, base);
    EXPECT_EQ((text.*reader)(nullptr, base), number);
    if (!isRead) {
        EXPECT_EQ(number, Integer{0});
        return std::nullopt;
    }
    return number;
}

class UniStringNumber : public testing::TestWithParam<NumberRow>
{
};

TEST_P(UniStringNumber, is_read_or_refused)
{
    const NumberRow& row = GetParam();
    const UaUniString text(row.text);
    EXPECT_EQ(read<OpcUa_Int32>(text, row.base, &UaUniString::toInt32), row.int32);
    EXPECT_EQ(read<OpcUa_UInt32>(text, row.base, &UaUniString::toUInt32), row.uint32);
    EXPECT_EQ(read<OpcUa_Int64>(text, row.base, &UaUniString::toInt64), row.int64);
    EXPECT_EQ(read<OpcUa_UInt64>(text, row.base, &UaUniString::toUInt64), row.uint64);
}

constexpr std::nullopt_t no = std::nullopt;
constexpr OpcUa_Int64 min64 = std::numeric_limits<OpcUa_Int64>::min();
constexpr OpcUa_Int64 max64 = std::numeric_limits<OpcUa_Int64>::max();

constexpr NumberRow numberRows[] = {
    {"nothing", "", 10, no, no, no, no},
    {"white_space", " \t", 10, no, no, no, no},
    {"sign_alone", "-", 10, no, no, no, no},
    {"plus_alone", "+", 10, no, no, no, no},
    {"two_signs", "+-1", 10, no, no, no, no},
    {"letters", "abc", 10, no, no, no, no},
    {"number_and_letters", "12a", 10, no, no, no, no},
    {"fraction", "1.0", 10, no, no, no, no},
    {"inner_blank", "1 2", 10, no, no, no, no},
    {"prefix", "0x10", 16, no, no, no, no},
    {"wide_digits", "\xEF\xBC\x91", 10, no, no, no, no},
    {"zero", "0", 10, 0, 0, 0, 0},
    {"minus_zero", "-0", 10, 0, no, 0, no},
    {"leading_zeros", "000000000000000000000000042", 10, 42, 42, 42, 42},
    {"plus", "+42", 10, 42, 42, 42, 42},
    {"minus", "-42", 10, -42, no, -42, no},
    {"white_space_around", " \t42\r\n", 10, 42, 42, 42, 42},
    {"last_int32", "2147483647", 10, 2147483647, 2147483647, 2147483647, 2147483647},
    {"above_int32", "2147483648", 10, no, 2147483648, 2147483648, 2147483648},
    {"first_int32", "-2147483648", 10, std::numeric_limits<OpcUa_Int32>::min(), no, -2147483648LL,
     no},
    {"below_int32", "-2147483649", 10, no, no, -2147483649LL, no},
    {"last_uint32", "4294967295", 10, no, 4294967295, 4294967295, 4294967295},
    {"above_uint32", "4294967296", 10, no, no, 4294967296, 4294967296},
    {"last_int64", "9223372036854775807", 10, no, no, max64, 9223372036854775807u},
    {"above_int64", "9223372036854775808", 10, no, no, no, 9223372036854775808u},
    {"first_int64", "-9223372036854775808", 10, no, no, min64, no},
    {"below_int64", "-9223372036854775809", 10, no, no, no, no},
    {"last_uint64", "18446744073709551615", 10, no, no, no, 18446744073709551615u},
    {"above_uint64", "18446744073709551616", 10, no, no, no, no},
    {"far_above", "99999999999999999999999999", 10, no, no, no, no},
    {"binary", "101", 2, 5, 5, 5, 5},
    {"digit_above_the_base", "102", 2, no, no, no, no},
    {"hexadecimal", "fF", 16, 255, 255, 255, 255},
    {"base_36", "zZ", 36, 1295, 1295, 1295, 1295},
    {"base_0", "1", 0, no, no, no, no},
    {"base_1", "0", 1, no, no, no, no},
    {"base_37", "1", 37, no, no, no, no},
    {"negative_base", "1", -10, no, no, no, no},
};

INSTANTIATE_TEST_SUITE_P(Rows, UniStringNumber, testing::ValuesIn(numberRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(UniStringNumbers, null_and_0_units_are_refused)
{
    bool isRead = true;
    EXPECT_EQ(UaUniString().toInt32(&isRead), 0);
    EXPECT_FALSE(isRead);
    isRead = true;
    EXPECT_EQ(UaUniString(u"1\0", 2).toInt32(&isRead), 0);
    EXPECT_FALSE(isRead);
    isRead = true;
    EXPECT_EQ(UaUniString().toDouble(&isRead), 0.0);
    EXPECT_FALSE(isRead);
}

struct DoubleRow
{
    const char* name;
    const char* text;
    std::optional<OpcUa_Double> value;
};

void PrintTo(const DoubleRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class UniStringDouble : public testing::TestWithParam<DoubleRow>
{
};

TEST_P(UniStringDouble, is_read_or_refused)
{
    bool isRead = false;
    const OpcUa_Double value = UaUniString(GetParam().text).toDouble(&isRead);
    EXPECT_EQ(isRead, GetParam().value.has_value());
    EXPECT_EQ(value, GetParam().value.value_or(0.0));
    EXPECT_EQ(UaUniString(GetParam().text).toDouble(), value);
}

constexpr DoubleRow doubleRows[] = {
    {"nothing", "", no},
    {"letters", "abc", no},
    {"number_and_letters", "1.5x", no},
    {"two_signs", "+-1", no},
    {"two_plus", "++1", no},
    {"comma", "1,5", no},
    {"hexadecimal", "0x10", no},
    {"too_large", "1e400", no},
    {"too_small", "1e-400", no},
    {"integer", "42", 42.0},
    {"fraction", "1.5", 1.5},
    {"point_first", ".5", 0.5},
    {"point_last", "5.", 5.0},
    {"minus", "-1.5", -1.5},
    {"plus", "+1.5", 1.5},
    {"exponent", "1.5e2", 150.0},
    {"upper_case_exponent", "1.5E-2", 0.015},
    {"white_space_around", " 1.5\n", 1.5},
    {"largest", "1.7976931348623157e308", 1.7976931348623157e308},
    {"infinity", "-inf", -std::numeric_limits<OpcUa_Double>::infinity()},
};

INSTANTIATE_TEST_SUITE_P(Rows, UniStringDouble, testing::ValuesIn(doubleRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(UniStringNumbers, nan_is_read)
{
    bool isRead = false;
    EXPECT_TRUE(std::isnan(UaUniString("nan").toDouble(&isRead)));
    EXPECT_TRUE(isRead);
}

TEST(UniStringNumbers, double_without_memory_is_refused)
{
    const UaUniString text = u" 1.5 ";
    for (const std::size_t failAt : {0, 1}) {
        const AllocationFaults faults(failAt);
        bool isRead = true;
        EXPECT_EQ(text.toDouble(&isRead), 0.0);
        EXPECT_FALSE(isRead);
    }
}

TEST(UniStringNumbers, numbers_are_written_and_read_back)
{
    EXPECT_EQ(UaUniString::number(-42), u"-42");
    EXPECT_EQ(UaUniString::number(255u, 16), u"FF");
    EXPECT_EQ(UaUniString::number(min64).toInt64(), min64);
    EXPECT_EQ(UaUniString::number(std::numeric_limits<OpcUa_UInt64>::max()).toUInt64(),
              std::numeric_limits<OpcUa_UInt64>::max());
    EXPECT_EQ(UaUniString::number(1.5), u"1.5");
    EXPECT_EQ(UaUniString::number(1.5, 'f', 2), u"1.50");
    EXPECT_EQ(UaUniString::number(0.1, 'g', 17).toDouble(), 0.1);
}

} // namespace
