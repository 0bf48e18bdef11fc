#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uanodeid.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <string>
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

UaVariant strings(const std::vector<const char*>& texts)
{
    UaStringArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(texts.size())), OpcUa_Good);
    for (OpcUa_UInt32 i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(OpcUa_String_AttachCopy(&array[i], texts[i]), OpcUa_Good);
    }
    return UaVariant(array);
}

/// After a failure not a byte of the variant has changed.
void expectRefused(UaVariant variant, OpcUa_Byte target, bool bToArray, const char* status)
{
    const VariantMemory before = memoryOf(variant);
    const int type = variant.type();
    EXPECT_EQ(nameOf(variant.changeType(target, bToArray)), status)
        << "type " << type << " to " << int{target} << (bToArray ? " array" : "");
    EXPECT_EQ(memoryOf(variant), before);
}

void expectChanged(UaVariant variant, OpcUa_Byte target, bool bToArray, const char* result)
{
    const std::string before = textOf(variant.toString());
    EXPECT_EQ(nameOf(variant.changeType(target, bToArray)), "Good")
        << before << " to " << int{target};
    EXPECT_EQ(variant.type(), target) << before;
    EXPECT_EQ(variant.isArray(), bToArray) << before;
    EXPECT_EQ(textOf(variant.toString()), result) << before << " to " << int{target};
}

constexpr OpcUa_Byte lastType = OpcUaType_DiagnosticInfo;

bool isNumber(OpcUa_Byte type)
{
    return type >= OpcUaType_Boolean && type <= OpcUaType_Double;
}

TEST(UaVariantChangeType, null_and_matrices_are_a_mismatch)
{
    for (OpcUa_Byte target = 0; target <= lastType; ++target) {
        for (const bool bToArray : {false, true}) {
            expectRefused(UaVariant(), target, bToArray, "BadTypeMismatch");
            expectRefused(variantOf(OpcUaType_Byte, VariantShape::Matrix), target, bToArray,
                          "BadTypeMismatch");
            expectRefused(variantOf(OpcUaType_String, VariantShape::Matrix), target, bToArray,
                          "BadTypeMismatch");
        }
    }
}

TEST(UaVariantChangeType, own_type_asks_for_the_shape_only)
{
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= lastType; ++type) {
        expectRefused(variantOf(type, VariantShape::Scalar), type, false, "Good");
        expectRefused(variantOf(type, VariantShape::Array), type, true, "Good");
        expectRefused(variantOf(type, VariantShape::Array), type, false, "BadTypeMismatch");
        if (type != OpcUaType_String) {
            expectRefused(variantOf(type, VariantShape::Scalar), type, true, "BadOutOfRange");
        }
    }
}

TEST(UaVariantChangeType, string_becomes_a_string_array_by_its_array_text)
{
    expectChanged(text("{a| b }"), OpcUaType_String, true, "{'a','b'}");
    expectRefused(text("{}"), OpcUaType_String, true, "BadOutOfRange");
    expectRefused(text("a|b"), OpcUaType_String, true, "BadTypeMismatch");
}

struct ChangeRow
{
    UaVariant source;
    OpcUa_Byte target;
    const char* result;
};

TEST(UaVariantChangeType, scalars_go_through_the_conversions)
{
    const OpcUa_Byte data[] = {0x01, 0xAB};
    const std::vector<ChangeRow> rows = {
        {text("0"), OpcUaType_Boolean, "false"},
        {int32(-5), OpcUaType_SByte, "-5"},
        {int64(300), OpcUaType_Byte, "44"},
        {real(2.5), OpcUaType_Int16, "3"},
        {text("0x1F"), OpcUaType_UInt16, "31"},
        {text("-7"), OpcUaType_Int32, "-7"},
        {boolean(1), OpcUaType_UInt32, "1"},
        {text("9223372036854775807"), OpcUaType_Int64, "9223372036854775807"},
        {real(1e10), OpcUaType_UInt64, "10000000000"},
        {real(0.1), OpcUaType_Float, "0.1"},
        {uint64(5), OpcUaType_Double, "5"},
        {real(0.1), OpcUaType_String, "0.1"},
        {boolean(1), OpcUaType_String, "true"},
        {UaVariant(UaNodeId(OpcUa_UInt32{85}, 3)), OpcUaType_String, "85"},
        {UaVariant(UaByteString(2, data)), OpcUaType_String, "01 AB"},
        {text("1970-01-01T00:00:00.000Z"), OpcUaType_DateTime, "1970-01-01T00:00:00.000Z"},
        {text("01AB"), OpcUaType_ByteString, "01 AB"},
        {text("{1|171}"), OpcUaType_ByteString, "01 AB"}};
    for (const ChangeRow& row : rows) {
        expectChanged(row.source, row.target, false, row.result);
    }
    UaVariant xml;
    xml.setXmlElement(UaString("<a/>"));
    expectChanged(xml, OpcUaType_ByteString, false, "3C 61 2F 3E");
}

TEST(UaVariantChangeType, every_scalar_becomes_a_string)
{
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= lastType; ++type) {
        if (type != OpcUaType_String) {
            const UaVariant source = variantOf(type, VariantShape::Scalar);
            expectChanged(source, OpcUaType_String, false, textOf(source.toString()).c_str());
        }
    }
}

TEST(UaVariantChangeType, failed_scalar_conversion_gives_its_status)
{
    expectRefused(text("x"), OpcUaType_Int32, false, "BadOutOfRange");
    expectRefused(uint64(1), OpcUaType_Float, false, "BadOutOfRange");
    expectRefused(text("yesterday"), OpcUaType_DateTime, false, "BadSyntaxError");
    expectRefused(text("ABC"), OpcUaType_ByteString, false, "BadOutOfRange");
    expectRefused(variantOf(OpcUaType_Guid, VariantShape::Scalar), OpcUaType_Boolean, false,
                  "BadTypeMismatch");
    expectRefused(variantOf(OpcUaType_Guid, VariantShape::Scalar), OpcUaType_Int32, false,
                  "BadOutOfRange");
}

TEST(UaVariantChangeType, other_scalar_targets_are_a_mismatch)
{
    for (const OpcUa_Byte target :
         {OpcUaType_Null, OpcUaType_Guid, OpcUaType_XmlElement, OpcUaType_NodeId,
          OpcUaType_ExpandedNodeId, OpcUaType_StatusCode, OpcUaType_QualifiedName,
          OpcUaType_LocalizedText, OpcUaType_ExtensionObject, OpcUaType_DataValue,
          OpcUaType_Variant, OpcUaType_DiagnosticInfo, OpcUa_Byte{26}, OpcUa_Byte{255}}) {
        expectRefused(text("1"), target, false, "BadTypeMismatch");
    }
}

TEST(UaVariantChangeType, string_array_is_converted_element_by_element)
{
    const std::vector<ChangeRow> rows = {
        {strings({"0", "x"}), OpcUaType_Boolean, "{false,true}"},
        {strings({"-1", "2"}), OpcUaType_SByte, "{-1,2}"},
        {strings({"1", "255"}), OpcUaType_Byte, "{1,255}"},
        {strings({"-1"}), OpcUaType_Int16, "{-1}"},
        {strings({"0xFF"}), OpcUaType_UInt16, "{255}"},
        {strings({"1", " 2", "3"}), OpcUaType_Int32, "{1,2,3}"},
        {strings({"1"}), OpcUaType_UInt32, "{1}"},
        {strings({"1"}), OpcUaType_Int64, "{1}"},
        {strings({"1"}), OpcUaType_UInt64, "{1}"},
        {strings({"0.5"}), OpcUaType_Float, "{0.5}"},
        {strings({"1e3", "-0.5"}), OpcUaType_Double, "{1000,-0.5}"},
        {strings({"1970-01-01T00:00:00.000Z"}), OpcUaType_DateTime, "{'1970-01-01T00:00:00.000Z'}"},
        {strings({}), OpcUaType_Int32, "{}"}};
    for (const ChangeRow& row : rows) {
        expectChanged(row.source, row.target, true, row.result);
    }
}

TEST(UaVariantChangeType, first_failing_element_ends_the_work)
{
    expectRefused(strings({"1", "x", "3"}), OpcUaType_Int32, true, "BadOutOfRange");
    expectRefused(strings({"1970-01-01T00:00:00.000Z", "never", "99"}), OpcUaType_DateTime, true,
                  "BadSyntaxError");
    for (OpcUa_Byte target = 0; target <= lastType; ++target) {
        if (!isNumber(target) && target != OpcUaType_DateTime && target != OpcUaType_String) {
            expectRefused(strings({"1"}), target, true, "BadTypeMismatch");
            expectRefused(strings({}), target, true, "BadTypeMismatch");
        }
    }
}

TEST(UaVariantChangeType, every_other_array_stays_and_is_good)
{
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= lastType; ++type) {
        for (OpcUa_Byte target = 0; target <= lastType && type != OpcUaType_String; ++target) {
            expectRefused(variantOf(type, VariantShape::Array), target, true, "Good");
        }
    }
}

TEST(UaVariantChangeType, int32_array_to_double_stays_an_int32_array)
{
    const OpcUa_Int32 values[] = {1, 2};
    UaVariant variant{UaInt32Array(2, values)};
    EXPECT_EQ(variant.changeType(OpcUaType_Double, true), OpcUa_Good);
    EXPECT_EQ(variant.type(), OpcUaType_Int32);
    EXPECT_EQ(textOf(variant.toString()), "{1,2}");
}

TEST(UaVariantChangeType, only_a_byte_array_becomes_a_scalar)
{
    const OpcUa_Byte data[] = {0x01, 0xAB};
    expectChanged(UaVariant(UaByteArray(data, 2)), OpcUaType_ByteString, false, "01 AB");
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= lastType; ++type) {
        for (OpcUa_Byte target = 0; target <= lastType; ++target) {
            if (type != OpcUaType_Byte || target != OpcUaType_ByteString) {
                expectRefused(variantOf(type, VariantShape::Array), target, false,
                              "BadTypeMismatch");
            }
        }
    }
    OpcUa_Variant broken{};
    broken.Datatype = OpcUaType_Byte;
    broken.ArrayType = OpcUa_VariantArrayType_Array;
    broken.Value.Array = {3, nullptr};
    expectRefused(UaVariant(broken), OpcUaType_ByteString, false, "BadTypeMismatch");
}

TEST(UaVariantChangeType, text_becomes_an_array_by_its_array_text)
{
    for (OpcUa_Byte target = OpcUaType_SByte; target <= OpcUaType_Double; ++target) {
        expectChanged(text("{1| 2 |3}"), target, true, "{1,2,3}");
    }
    expectChanged(text("{1|0}"), OpcUaType_Boolean, true, "{true,false}");
    expectChanged(text("{1970-01-01T00:00:00.000Z}"), OpcUaType_DateTime, true,
                  "{'1970-01-01T00:00:00.000Z'}");
    expectRefused(text("{1|x}"), OpcUaType_Int32, true, "BadOutOfRange");
    expectRefused(text("1"), OpcUaType_Int32, true, "BadOutOfRange");
    expectRefused(text("1|2|3"), OpcUaType_Int32, true, "BadTypeMismatch");
}

TEST(UaVariantChangeType, byte_string_becomes_a_byte_array)
{
    const OpcUa_Byte data[] = {0x01, 0xAB};
    expectChanged(UaVariant(UaByteString(2, data)), OpcUaType_Byte, true, "{1,171}");
    expectChanged(UaVariant(UaByteString()), OpcUaType_Byte, true, "{}");
    OpcUa_Variant broken{};
    broken.Datatype = OpcUaType_ByteString;
    broken.Value.ByteString = {3, nullptr};
    const auto& overlay = reinterpret_cast<const UaVariant&>(broken);
    UaByteArray array;
    EXPECT_EQ(nameOf(overlay.toByteArray(array)), "BadOutOfRange");
}

TEST(UaVariantChangeType, other_scalars_to_arrays_are_a_mismatch)
{
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= lastType; ++type) {
        for (OpcUa_Byte target = 0; target <= lastType; ++target) {
            const bool isText =
                type == OpcUaType_String && (isNumber(target) || target == OpcUaType_DateTime);
            const bool isBytes = type == OpcUaType_ByteString && target == OpcUaType_Byte;
            if (type != target && !isText && !isBytes) {
                expectRefused(variantOf(type, VariantShape::Scalar), target, true,
                              "BadTypeMismatch");
            }
        }
    }
}

TEST(UaVariantChangeType, every_failed_allocation_leaves_the_variant)
{
    struct Row
    {
        UaVariant source;
        OpcUa_Byte target;
        bool bToArray;
        const char* status;
    };
    const OpcUa_Byte data[] = {0x01, 0xAB};
    const std::vector<Row> rows = {
        {int32(5), OpcUaType_String, false, "BadOutOfMemory"},
        {UaVariant(UaByteString(2, data)), OpcUaType_String, false, "BadOutOfMemory"},
        {text("01AB"), OpcUaType_ByteString, false, "BadOutOfMemory"},
        {text("{a|b}"), OpcUaType_String, true, "BadOutOfMemory"},
        {text("{1|2}"), OpcUaType_Int32, true, "BadOutOfMemory"},
        {strings({"1", "2"}), OpcUaType_Double, true, "BadOutOfMemory"},
        {UaVariant(UaByteString(2, data)), OpcUaType_Byte, true, "BadOutOfMemory"},
        {UaVariant(UaByteArray(data, 2)), OpcUaType_ByteString, false, "BadTypeMismatch"}};
    for (const Row& row : rows) {
        UaVariant variant(row.source);
        const std::size_t failures =
            forEveryFailingAllocation([&] { return variant.changeType(row.target, row.bToArray); },
                                      [&](OpcUa_StatusCode status) {
                                          EXPECT_EQ(nameOf(status), row.status);
                                          EXPECT_EQ(variant, row.source);
                                      });
        EXPECT_GT(failures, 0u) << textOf(row.source.toString());
        EXPECT_EQ(variant.type(), row.target);
    }
}

} // namespace
