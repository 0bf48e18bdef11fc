#include "base/numbertext.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

std::string integerText(OpcUa_Int64 value, OpcUa_Int32 base)
{
    UaNumberText::IntegerBuffer buffer;
    return std::string(UaNumberText::format(buffer, value, base));
}

std::string unsignedText(OpcUa_UInt64 value, OpcUa_Int32 base)
{
    UaNumberText::IntegerBuffer buffer;
    return std::string(UaNumberText::format(buffer, value, base));
}

std::string doubleText(OpcUa_Double value, char form, OpcUa_Int32 precision)
{
    UaNumberText::DoubleBuffer buffer;
    return std::string(UaNumberText::format(buffer, value, form, precision));
}

constexpr OpcUa_Int64 lowest = std::numeric_limits<OpcUa_Int64>::min();
constexpr OpcUa_UInt64 highest = std::numeric_limits<OpcUa_UInt64>::max();

TEST(NumberText, integers_are_written_in_each_base)
{
    EXPECT_EQ(integerText(0, 10), "0");
    EXPECT_EQ(integerText(-42, 10), "-42");
    EXPECT_EQ(integerText(255, 16), "FF");
    EXPECT_EQ(integerText(-255, 16), "-FF");
    EXPECT_EQ(integerText(35, 36), "Z");
    EXPECT_EQ(integerText(lowest, 10), "-9223372036854775808");
    EXPECT_EQ(integerText(lowest, 2), "-1" + std::string(63, '0'));
    EXPECT_EQ(unsignedText(highest, 10), "18446744073709551615");
    EXPECT_EQ(unsignedText(highest, 2), std::string(64, '1'));
    for (OpcUa_Int32 base = 2; base <= 36; ++base) {
        for (OpcUa_Int64 digit = 0; digit < base; ++digit) {
            const char expected = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[digit];
            EXPECT_EQ(integerText(digit, base), std::string(1, expected));
        }
        EXPECT_EQ(integerText(base, base), "10");
    }
}

TEST(NumberText, other_bases_count_as_ten)
{
    for (const OpcUa_Int32 base : {std::numeric_limits<OpcUa_Int32>::min(), -1, 0, 1, 37,
                                   std::numeric_limits<OpcUa_Int32>::max()}) {
        EXPECT_EQ(integerText(-42, base), "-42");
        EXPECT_EQ(unsignedText(42, base), "42");
    }
}

std::string printed(OpcUa_Double value, char form, OpcUa_Int32 precision)
{
    const std::string format = std::string("%.*") + form;
    char buffer[2000];
    std::snprintf(buffer, sizeof(buffer), format.c_str(), precision, value);
    return buffer;
}

TEST(NumberText, doubles_are_those_of_printf)
{
    const OpcUa_Double values[] = {0.0,
                                   -0.0,
                                   1.0,
                                   -1.5,
                                   0.1,
                                   1e-5,
                                   123456789.0,
                                   1e100,
                                   std::numeric_limits<OpcUa_Double>::max(),
                                   std::numeric_limits<OpcUa_Double>::lowest(),
                                   std::numeric_limits<OpcUa_Double>::min(),
                                   std::numeric_limits<OpcUa_Double>::denorm_min(),
                                   std::numeric_limits<OpcUa_Double>::infinity(),
                                   -std::numeric_limits<OpcUa_Double>::infinity(),
                                   std::numeric_limits<OpcUa_Double>::quiet_NaN()};
    for (const OpcUa_Double value : values) {
        for (const char form : {'f', 'F', 'e', 'E', 'g', 'G'}) {
            for (const OpcUa_Int32 precision : {0, 1, 6, 12, 17, 1100}) {
                EXPECT_EQ(doubleText(value, form, precision), printed(value, form, precision));
            }
        }
    }
}

TEST(NumberText, random_doubles_are_those_of_printf)
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const OpcUa_UInt64 bits = random();
        OpcUa_Double value = 0;
        static_assert(sizeof(value) == sizeof(bits));
        std::memcpy(&value, &bits, sizeof(value));
        const char form = "feg"[i % 3];
        ASSERT_EQ(doubleText(value, form, i % 20), printed(value, form, i % 20));
    }
}

TEST(NumberText, defaults_of_a_double)
{
    EXPECT_EQ(doubleText(0.1, 'f', -1), "0.100000");
    EXPECT_EQ(doubleText(0.1, 'f', std::numeric_limits<OpcUa_Int32>::min()), "0.100000");
    EXPECT_EQ(doubleText(0.1, 'x', -1), "0.1");
    EXPECT_EQ(doubleText(0.1, '\0', -1), "0.1");
}

TEST(NumberText, precision_is_held)
{
    const OpcUa_Int32 most = std::numeric_limits<OpcUa_Int32>::max();
    const std::string text = doubleText(std::numeric_limits<OpcUa_Double>::lowest(), 'f', most);
    EXPECT_EQ(text.size(), 311u + UaNumberText::MaxPrecision);
    EXPECT_EQ(doubleText(0.5, 'f', most), "0.5" + std::string(1099, '0'));
    EXPECT_EQ(doubleText(0.5, 'e', most), "5." + std::string(1100, '0') + "e-01");
    EXPECT_EQ(doubleText(0.5, 'g', most), "0.5");
}

} // namespace
