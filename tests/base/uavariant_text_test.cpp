#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uadatetime.h"
#include "base/uaexpandednodeid.h"
#include "base/uaguid.h"
#include "base/ualocalizedtext.h"
#include "base/uanodeid.h"
#include "base/uaqualifiedname.h"
#include "base/uastatuscode.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

UaVariant variantOf(OpcUa_Byte type, VariantShape shape)
{
    OwnedVariant filled;
    makeShape(*filled, builtInSamples()[type - OpcUaType_Boolean], shape);
    UaVariant variant;
    variant.attach(*filled);
    return variant;
}

UaGuid guid()
{
    UaGuid value;
    EXPECT_EQ(value.fromString("6B29FC40-CA47-1067-B31D-00DD010662DA"), OpcUa_Good);
    return value;
}

UaVariant xml(std::string_view bytes)
{
    UaVariant variant;
    variant.setXmlElement(UaString(bytes.data(), static_cast<OpcUa_Int64>(bytes.size())));
    return variant;
}

struct TextRow
{
    UaVariant variant;
    const char* text;
};

const OpcUa_Byte someBytes[] = {0xAB, 0x01};

TEST(UaVariantToString, scalars)
{
    const std::vector<TextRow> rows = {
        {UaVariant(), ""},
        {boolean(1), "true"},
        {boolean(2), "true"},
        {boolean(0), "false"},
        {sbyte(-128), "-128"},
        {byte(255), "255"},
        {int16(-32768), "-32768"},
        {uint16(65535), "65535"},
        {int32(INT32_MIN), "-2147483648"},
        {uint32(UINT32_MAX), "4294967295"},
        {int64(INT64_MIN), "-9223372036854775808"},
        {uint64(UINT64_MAX), "18446744073709551615"},
        {real(0.1F), "0.1"},
        {real(1234567.0F), "1.23457e+06"},
        {real(-0.0F), "-0"},
        {real(0.1), "0.1"},
        {real(1.0 / 3), "0.333333333333"},
        {real(123456789012.0), "123456789012"},
        {real(1234567890123.0), "1.23456789012e+12"},
        {real(1e-5), "1e-05"},
        {real(std::numeric_limits<double>::infinity()), "inf"},
        {real(-std::numeric_limits<double>::infinity()), "-inf"},
        {real(std::numeric_limits<double>::quiet_NaN()), "nan"},
        {text("as it is"), "as it is"},
        {text(""), ""},
        {UaVariant(UaDateTime(OpcUa_Int64{116444736000000000})), "1970-01-01T00:00:00.000Z"},
        {UaVariant(guid()), "{6b29fc40-ca47-1067-b31d-00dd010662da}"},
        {UaVariant(UaByteString(2, someBytes)), "AB 01"},
        {UaVariant(UaByteString()), ""},
        {xml("<a/>"), "<a/>"},
        {xml(std::string_view("<a\0/>", 5)), "<a"},
        {UaVariant(UaNodeId(OpcUa_UInt32{85}, 3)), "85"},
        {UaVariant(UaNodeId(UaString("pump"), 3)), "pump"},
        {UaVariant(UaExpandedNodeId(UaNodeId(UaString("pump"), 3), "urn:a", 5)), "pump"},
        {UaVariant(UaStatusCode(OpcUa_BadOutOfRange)), "BadOutOfRange"},
        {UaVariant(UaStatusCode(0x803C0001)), "BadOutOfRange (0x803c0001)"},
        {UaVariant(UaQualifiedName("name", 4)), "name"},
        {UaVariant(UaLocalizedText("en", "text")), "text"},
        {variantOf(OpcUaType_ExtensionObject, VariantShape::Scalar), "Type cannot be displayed"},
        {variantOf(OpcUaType_DataValue, VariantShape::Scalar), "Type cannot be displayed"},
        {variantOf(OpcUaType_Variant, VariantShape::Scalar), "Type cannot be displayed"},
        {variantOf(OpcUaType_DiagnosticInfo, VariantShape::Scalar), "Type cannot be displayed"}};
    for (const TextRow& row : rows) {
        EXPECT_EQ(textOf(row.variant.toString()), row.text) << "type " << int{row.variant.type()};
    }
}

TEST(UaVariantToString, text_of_nothing_is_null)
{
    UaVariant nullText;
    nullText.setString(UaString());
    EXPECT_TRUE(nullText.toString().isNull());
    EXPECT_TRUE(xml("").toString().isNull());
    UaVariant nullXml;
    nullXml.setXmlElement(UaString());
    EXPECT_TRUE(nullXml.toString().isNull());
    for (const OpcUa_Byte type : {OpcUaType_Guid, OpcUaType_NodeId, OpcUaType_ExpandedNodeId,
                                  OpcUaType_QualifiedName, OpcUaType_LocalizedText}) {
        OpcUa_Variant pointerless{};
        pointerless.Datatype = type;
        const auto& variant = reinterpret_cast<const UaVariant&>(pointerless);
        EXPECT_TRUE(variant.toString().isNull()) << int{type};
        EXPECT_TRUE(variant.toFullString().isNull()) << int{type};
    }
    EXPECT_FALSE(UaVariant().toString().isNull()) << "Null has an empty text";
}

TEST(UaVariantToString, numbers_are_those_of_printf)
{
    std::mt19937_64 random(20240229);
    for (int i = 0; i < 20000; ++i) {
        const OpcUa_UInt64 bits = random();
        OpcUa_Double number = 0;
        OpcUa_Float single = 0;
        std::memcpy(&number, &bits, sizeof(number));
        std::memcpy(&single, &bits, sizeof(single));
        char expected[64];
        static_cast<void>(std::snprintf(expected, sizeof(expected), "%.12g", number));
        ASSERT_EQ(textOf(real(number).toString()), expected);
        static_cast<void>(
            std::snprintf(expected, sizeof(expected), "%.6g", static_cast<double>(single)));
        ASSERT_EQ(textOf(real(single).toString()), expected);
    }
}

TEST(UaVariantToString, matrices_cannot_be_displayed)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        EXPECT_EQ(textOf(variantOf(sample.type, VariantShape::Matrix).toString()),
                  "Matrix cannot be displayed");
        EXPECT_EQ(textOf(variantOf(sample.type, VariantShape::Matrix).toFullString()),
                  "Matrix cannot be displayed");
    }
}

template <typename Array, typename T>
UaVariant arrayOf(const std::vector<T>& values)
{
    return UaVariant(Array(static_cast<OpcUa_Int32>(values.size()), values.data()));
}

UaVariant bytes(OpcUa_Int32 count, OpcUa_Byte value)
{
    const std::vector<OpcUa_Byte> values(static_cast<std::size_t>(count), value);
    return UaVariant(UaByteArray(values.data(), count));
}

UaVariant strings(const std::vector<std::string>& texts)
{
    UaStringArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(texts.size())), OpcUa_Good);
    for (OpcUa_UInt32 i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(OpcUa_String_AttachToString(texts[i].data(),
                                              static_cast<OpcUa_UInt32>(texts[i].size()), 0, true,
                                              true, &array[i]),
                  OpcUa_Good);
    }
    return UaVariant(array);
}

TEST(UaVariantToString, arrays)
{
    const std::vector<TextRow> rows = {
        {arrayOf<UaBooleanArray, OpcUa_Boolean>({1, 0, 7}), "{true,false,true}"},
        {arrayOf<UaSByteArray, OpcUa_SByte>({-1, 1}), "{-1,1}"},
        {UaVariant(UaByteArray(someBytes, 2)), "{171,1}"},
        {arrayOf<UaInt16Array, OpcUa_Int16>({-1}), "{-1}"},
        {arrayOf<UaUInt16Array, OpcUa_UInt16>({65535}), "{65535}"},
        {arrayOf<UaInt32Array, OpcUa_Int32>({-1, 2, -3}), "{-1,2,-3}"},
        {arrayOf<UaUInt32Array, OpcUa_UInt32>({4294967295u}), "{4294967295}"},
        {arrayOf<UaInt64Array, OpcUa_Int64>({INT64_MIN}), "{-9223372036854775808}"},
        {arrayOf<UaUInt64Array, OpcUa_UInt64>({UINT64_MAX}), "{18446744073709551615}"},
        {arrayOf<UaFloatArray, OpcUa_Float>({0.5F, 1e10F}), "{0.5,1e+10}"},
        {arrayOf<UaDoubleArray, OpcUa_Double>({0.5, 1.0 / 3}), "{0.5,0.333333333333}"},
        {strings({"a", "", "b'c"}), "{'a','','b'c'}"},
        {strings({std::string("a\0b", 3)}), "{'a'}"},
        {arrayOf<UaDateTimeArray, OpcUa_DateTime>({OpcUa_DateTime_FromTicks(116444736000000000)}),
         "{'1970-01-01T00:00:00.000Z'}"},
        {arrayOf<UaDateTimeArray, OpcUa_DateTime>({{0xFFFFFFFF, 0xFFFFFFFF}}), "{''}"},
        {arrayOf<UaGuidArray, OpcUa_Guid>({*guid().toOpcUaGuid()}),
         "{'{6b29fc40-ca47-1067-b31d-00dd010662da}'}"}};
    for (const TextRow& row : rows) {
        EXPECT_EQ(textOf(row.variant.toString()), row.text) << "type " << int{row.variant.type()};
        EXPECT_EQ(textOf(row.variant.toFullString()), row.text);
    }
}

TEST(UaVariantToString, null_string_in_an_array_is_empty)
{
    UaStringArray array;
    ASSERT_EQ(array.create(2), OpcUa_Good);
    EXPECT_EQ(textOf(UaVariant(array).toString()), "{'',''}");
}

TEST(UaVariantToString, empty_arrays)
{
    for (OpcUa_Byte type = 0; type <= OpcUaType_DiagnosticInfo; ++type) {
        for (const OpcUa_Int32 length : {0, -1, 5}) {
            OpcUa_Variant stack{};
            stack.Datatype = type;
            stack.ArrayType = OpcUa_VariantArrayType_Array;
            stack.Value.Array = {length, nullptr};
            EXPECT_EQ(textOf(reinterpret_cast<const UaVariant&>(stack).toString()),
                      type <= OpcUaType_Guid ? "{}" : "This array type cannot be displayed")
                << int{type};
        }
    }
}

TEST(UaVariantToString, array_types_from_byte_string_on_cannot_be_displayed)
{
    for (OpcUa_Byte type = OpcUaType_ByteString; type <= OpcUaType_DiagnosticInfo; ++type) {
        EXPECT_EQ(textOf(variantOf(type, VariantShape::Array).toString()),
                  "This array type cannot be displayed");
    }
}

/// An array of one string of `size` letters: its text takes four bytes more.
std::string printedString(std::size_t size)
{
    return textOf(strings({std::string(size, 'x')}).toString());
}

TEST(UaVariantToString, a_text_of_255_bytes_fits_and_one_more_is_cut)
{
    EXPECT_EQ(printedString(250), "{'" + std::string(250, 'x') + "'}");
    EXPECT_EQ(printedString(251), "{'" + std::string(251, 'x') + "'}");
    EXPECT_EQ(printedString(251).size(), 255u);
    EXPECT_EQ(printedString(252), "{'" + std::string(250, 'x') + "...");
    EXPECT_EQ(printedString(253), "{'" + std::string(250, 'x') + "...");
    EXPECT_EQ(printedString(1000000), "{'" + std::string(250, 'x') + "...");
}

TEST(UaVariantToString, a_cut_between_two_elements_ends_in_a_brace)
{
    // 127 elements of "1," and the brace before them make 255 bytes.
    const std::string whole = textOf(bytes(127, 1).toString());
    EXPECT_EQ(whole.size(), 255u);
    EXPECT_EQ(whole.substr(250), ",1,1}");
    const std::string cut = textOf(bytes(128, 1).toString());
    EXPECT_EQ(cut, whole) << "the elements behind the cut don't show";
    EXPECT_EQ(textOf(bytes(5000, 1).toString()), whole);
}

TEST(UaVariantToString, a_cut_within_an_element_ends_in_dots)
{
    // 84 elements of "12," leave two bytes.
    const std::string cut = textOf(bytes(100, 12).toString());
    EXPECT_EQ(cut.size(), 255u);
    EXPECT_EQ(cut.substr(246), ",12,12...");
    // A comma in the last byte that belongs to the element itself.
    EXPECT_EQ(textOf(strings({std::string(252, ',')}).toString()),
              "{'" + std::string(250, ',') + "...");
}

TEST(UaVariantToString, two_hundred_doubles_stay_within_255_bytes)
{
    for (const OpcUa_Double value : {0.5, 1.0, 1.0 / 3, -1e300, 12.25}) {
        const std::string printed = textOf(
            arrayOf<UaDoubleArray, OpcUa_Double>(std::vector<OpcUa_Double>(200, value)).toString());
        EXPECT_LE(printed.size(), 255u);
        EXPECT_TRUE(printed.ends_with("...") || printed.ends_with("}")) << printed;
    }
}

TEST(UaVariantToString, every_length_of_a_cut_is_told_apart)
{
    // What the buffer of 256 bytes does, said once more in another way.
    for (std::size_t first = 0; first < 260; ++first) {
        for (const std::size_t second : {0u, 1u, 2u, 3u, 4u, 5u}) {
            const std::string a(first, 'a');
            const std::string b(second, 'b');
            std::string expected = "{'";
            expected.append(a).append("','").append(b).append("'}");
            if (first == 251) {
                expected.replace(254, std::string::npos, "}");
            } else if (expected.size() > 255) {
                expected.replace(252, std::string::npos, "...");
            }
            EXPECT_EQ(textOf(strings({a, b}).toString()), expected) << first << " " << second;
        }
    }
}

TEST(UaVariantToFullString, some_scalars_have_a_longer_form)
{
    const std::vector<TextRow> rows = {
        {UaVariant(UaNodeId(OpcUa_UInt32{85}, 3)), "NS3|Numeric|85"},
        {UaVariant(UaQualifiedName("name", 4)), "ns=4|name"},
        {UaVariant(UaLocalizedText("en", "text")), "en|text"},
        {UaVariant(UaExpandedNodeId(UaNodeId(UaString("pump"), 3), "urn:a", 5)), "pump"},
        {int32(5), "5"},
        {text("text"), "text"},
        {UaVariant(), ""},
        {UaVariant(UaStatusCode(OpcUa_BadOutOfRange)), "BadOutOfRange"}};
    for (const TextRow& row : rows) {
        EXPECT_EQ(textOf(row.variant.toFullString()), row.text);
    }
}

TEST(UaVariantToString, every_failed_allocation_gives_a_null_text)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            const UaVariant variant = variantOf(sample.type, shape);
            forEveryFailingAllocation([&] { return variant.toString(); },
                                      [](const UaString& string) { EXPECT_TRUE(string.isNull()); });
            forEveryFailingAllocation(
                [&] { return variant.toFullString(); },
                [](const UaString& string) { EXPECT_NE(string.toUtf8(), nullptr); });
        }
    }
}

} // namespace
