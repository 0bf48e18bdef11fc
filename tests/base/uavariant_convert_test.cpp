#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/variantconversions.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// What a conversion gives: the text of the result, or the name of the status.
template <typename T>
std::string convert(const UaVariant& source, OpcUa_StatusCode (UaVariant::*getter)(T&) const,
                    void (UaVariant::*setter)(T))
{
    T untouched{};
    untouched = static_cast<T>(untouched + 77);
    T value = untouched;
    const OpcUa_StatusCode status = (source.*getter)(value);
    if (OpcUa_IsBad(status)) {
        EXPECT_EQ(value, untouched) << "a failure leaves the target";
        return nameOf(status);
    }
    UaVariant result;
    (result.*setter)(value);
    return textOf(result.toString());
}

struct Target
{
    const char* name;
    std::string (*convert)(const UaVariant& source);
};

const std::vector<Target>& targets()
{
    static const std::vector<Target> all = {
        {"Boolean",
         [](const UaVariant& v) { return convert(v, &UaVariant::toBool, &UaVariant::setBool); }},
        {"SByte",
         [](const UaVariant& v) { return convert(v, &UaVariant::toSByte, &UaVariant::setSByte); }},
        {"Byte",
         [](const UaVariant& v) { return convert(v, &UaVariant::toByte, &UaVariant::setByte); }},
        {"Int16",
         [](const UaVariant& v) { return convert(v, &UaVariant::toInt16, &UaVariant::setInt16); }},
        {"UInt16",
         [](const UaVariant& v) {
             return convert(v, &UaVariant::toUInt16, &UaVariant::setUInt16);
         }},
        {"Int32",
         [](const UaVariant& v) { return convert(v, &UaVariant::toInt32, &UaVariant::setInt32); }},
        {"UInt32",
         [](const UaVariant& v) {
             return convert(v, &UaVariant::toUInt32, &UaVariant::setUInt32);
         }},
        {"Int64",
         [](const UaVariant& v) { return convert(v, &UaVariant::toInt64, &UaVariant::setInt64); }},
        {"UInt64",
         [](const UaVariant& v) {
             return convert(v, &UaVariant::toUInt64, &UaVariant::setUInt64);
         }},
        {"Float",
         [](const UaVariant& v) { return convert(v, &UaVariant::toFloat, &UaVariant::setFloat); }},
        {"Double",
         [](const UaVariant& v) {
             return convert(v, &UaVariant::toDouble, &UaVariant::setDouble);
         }},
    };
    return all;
}

void expectConversions(const std::vector<VariantConversion>& conversions)
{
    for (const VariantConversion& conversion : conversions) {
        std::istringstream results(conversion.results);
        for (const Target& target : targets()) {
            std::string expected;
            ASSERT_TRUE(results >> expected);
            if (expected == "-") {
                expected = "BadOutOfRange";
            }
            EXPECT_EQ(target.convert(conversion.source), expected)
                << "type " << int{conversion.source.type()} << " '"
                << textOf(conversion.source.toString()) << "' to " << target.name;
        }
    }
}

TEST(UaVariantConvert, integers_are_checked_against_the_range_of_the_target)
{
    expectConversions(conversionsOfIntegers());
}

TEST(UaVariantConvert, floating_point_numbers_are_checked_and_rounded)
{
    expectConversions(conversionsOfFloatings());
}

TEST(UaVariantConvert, texts_are_read_as_a_whole)
{
    expectConversions(conversionsOfTexts());
}

TEST(UaVariantConvert, null_and_types_above_string_are_no_numbers)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        if (sample.type <= OpcUaType_String) {
            continue;
        }
        UaVariant source;
        OwnedVariant filled;
        makeScalar(*filled, sample);
        source.attach(*filled);
        for (const Target& target : targets()) {
            const std::string expected =
                std::string_view(target.name) == "Boolean" ? "BadTypeMismatch" : "BadOutOfRange";
            EXPECT_EQ(target.convert(source), expected) << sample << " to " << target.name;
            EXPECT_EQ(target.convert(UaVariant()), expected) << "Null to " << target.name;
        }
    }
}

TEST(UaVariantConvert, arrays_and_matrices_are_out_of_range_for_every_target)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : {VariantShape::Array, VariantShape::Matrix}) {
            UaVariant source;
            OwnedVariant filled;
            makeShape(*filled, sample, shape);
            source.attach(*filled);
            for (const Target& target : targets()) {
                EXPECT_EQ(target.convert(source), "BadOutOfRange") << sample << target.name;
            }
        }
    }
}

TEST(UaVariantConvert, float_2147483648_passes_as_int32)
{
    OpcUa_Int32 value = 0;
    EXPECT_EQ(real(2147483648.0F).toInt32(value), OpcUa_Good);
    EXPECT_EQ(value, std::numeric_limits<OpcUa_Int32>::min());
}

TEST(UaVariantConvert, byte_of_int64_300_is_44)
{
    OpcUa_Byte value = 0;
    EXPECT_EQ(int64(300).toByte(value), OpcUa_Good);
    EXPECT_EQ(value, 44);
    EXPECT_EQ(nameOf(int64(2147483648).toByte(value)), "BadOutOfRange");
    EXPECT_EQ(nameOf(uint64(300).toByte(value)), "BadOutOfRange");
}

TEST(UaVariantConvert, float_of_uint64_1_is_refused)
{
    OpcUa_Float value = 0;
    EXPECT_EQ(nameOf(uint64(1).toFloat(value)), "BadOutOfRange");
    EXPECT_EQ(int64(1).toFloat(value), OpcUa_Good);
    EXPECT_EQ(value, 1.0F);
}

TEST(UaVariantConvert, hexadecimal_text_is_for_wide_unsigned_numbers)
{
    OpcUa_UInt16 word = 0;
    OpcUa_Byte byteValue = 0;
    OpcUa_Int32 number = 0;
    EXPECT_EQ(text("0x1F").toUInt16(word), OpcUa_Good);
    EXPECT_EQ(word, 31);
    EXPECT_EQ(nameOf(text("0x1F").toByte(byteValue)), "BadOutOfRange");
    EXPECT_EQ(nameOf(text("0x1F").toInt32(number)), "BadOutOfRange");
}

TEST(UaVariantConvert, text_false_is_false_in_any_case_and_no_is_true)
{
    OpcUa_Boolean value = OpcUa_True;
    EXPECT_EQ(text("FALSE").toBool(value), OpcUa_Good);
    EXPECT_EQ(value, OpcUa_False);
    EXPECT_EQ(text("no").toBool(value), OpcUa_Good);
    EXPECT_EQ(value, OpcUa_True);
}

TEST(UaVariantConvert, nan_is_true)
{
    OpcUa_Boolean value = OpcUa_False;
    EXPECT_EQ(real(std::numeric_limits<OpcUa_Double>::quiet_NaN()).toBool(value), OpcUa_Good);
    EXPECT_EQ(value, OpcUa_True);
    EXPECT_EQ(real(std::numeric_limits<OpcUa_Float>::quiet_NaN()).toBool(value), OpcUa_Good);
    EXPECT_EQ(value, OpcUa_True);
}

TEST(UaVariantConvert, double_of_uint64_is_exact_to_the_last_bit_that_fits)
{
    struct Row
    {
        OpcUa_UInt64 source;
        OpcUa_Double expected;
    };
    constexpr Row rows[] = {{UINT64_C(1) << 63, 9223372036854775808.0},
                            {(UINT64_C(1) << 63) + 2048, 9223372036854777856.0},
                            {UINT64_MAX, 18446744073709551616.0},
                            {(UINT64_C(1) << 53) - 1, 9007199254740991.0}};
    for (const Row& row : rows) {
        OpcUa_Double value = 0;
        EXPECT_EQ(uint64(row.source).toDouble(value), OpcUa_Good);
        EXPECT_EQ(value, row.expected) << row.source;
    }
}

TEST(UaVariantConvert, rounding_adds_a_half_even_where_that_isnt_the_nearest)
{
    // The largest number below a half, and an odd number whose neighbours are even.
    OpcUa_Int64 value = 0;
    EXPECT_EQ(real(0.49999999999999994).toInt64(value), OpcUa_Good);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(real(4503599627370497.0).toInt64(value), OpcUa_Good);
    EXPECT_EQ(value, 4503599627370498);
}

TEST(UaVariantConvert, every_byte_of_a_text_counts)
{
    OpcUa_Int32 value = 5;
    OpcUa_Double number = 5;
    EXPECT_EQ(nameOf(text(std::string_view("12\0", 3)).toInt32(value)), "BadOutOfRange");
    EXPECT_EQ(nameOf(text(std::string_view("1\0"
                                           "2",
                                           3))
                         .toDouble(number)),
              "BadOutOfRange");
    OpcUa_Boolean truth = OpcUa_False;
    EXPECT_EQ(text(std::string_view("0\0", 2)).toBool(truth), OpcUa_Good);
    EXPECT_EQ(truth, OpcUa_True);
}

TEST(UaVariantConvert, null_text_reads_like_an_empty_one)
{
    UaVariant source;
    source.setString(UaString());
    OpcUa_Int32 value = 5;
    EXPECT_EQ(source.toInt32(value), OpcUa_Good);
    EXPECT_EQ(value, 0);
    OpcUa_Boolean truth = OpcUa_False;
    EXPECT_EQ(source.toBool(truth), OpcUa_Good);
    EXPECT_EQ(truth, OpcUa_True);
}

TEST(UaVariantConvert, text_without_a_nul_behind_it_is_read_to_its_length)
{
    // Attached with a length, the text goes on behind its end.
    const char memory[] = {'1', '2', '3'};
    OpcUa_Variant borrowed{};
    borrowed.Datatype = OpcUaType_String;
    borrowed.Value.String = {0, 2, const_cast<char*>(memory)};
    UaVariant source;
    source.attach(borrowed);
    OpcUa_Int32 value = 0;
    EXPECT_EQ(source.toInt32(value), OpcUa_Good);
    EXPECT_EQ(value, 12);
    OpcUa_Double number = 0;
    EXPECT_EQ(source.toDouble(number), OpcUa_Good);
    EXPECT_EQ(number, 12.0);
}

TEST(UaVariantConvert, nan_and_sign_come_through_to_floating_point)
{
    OpcUa_Float value = 0;
    EXPECT_EQ(real(std::numeric_limits<OpcUa_Double>::quiet_NaN()).toFloat(value), OpcUa_Good);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(real(-0.0).toFloat(value), OpcUa_Good);
    EXPECT_TRUE(std::signbit(value));
    OpcUa_Double number = 0;
    EXPECT_EQ(text("-0").toDouble(number), OpcUa_Good);
    EXPECT_TRUE(std::signbit(number));
}

} // namespace
