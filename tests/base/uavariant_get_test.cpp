#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uadatavalue.h"
#include "base/uadatetime.h"
#include "base/uaexpandednodeid.h"
#include "base/uaextensionobject.h"
#include "base/uaguid.h"
#include "base/ualocalizedtext.h"
#include "base/uanodeid.h"
#include "base/uaqualifiedname.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/testrecord.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

// Getters of the scalars that are no numbers.

namespace {

UaVariant variantOf(OpcUa_Byte type, VariantShape shape)
{
    OwnedVariant filled;
    makeShape(*filled, builtInSamples()[type - OpcUaType_Boolean], shape);
    UaVariant variant;
    variant.attach(*filled);
    return variant;
}

/// A scalar whose pointer is null.
UaVariant pointerless(OpcUa_Byte type)
{
    OpcUa_Variant stack{};
    stack.Datatype = type;
    UaVariant variant;
    variant.attach(stack);
    return variant;
}

/// Every variant but scalars of the accepted types is out of range and leaves the target.
template <typename Value>
void expectRefusals(const std::vector<OpcUa_Byte>& accepted, const Value& sample,
                    OpcUa_StatusCode (UaVariant::*getter)(Value&) const)
{
    Value value = sample;
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= OpcUaType_DiagnosticInfo; ++type) {
        const bool isAccepted = std::find(accepted.begin(), accepted.end(), type) != accepted.end();
        for (const VariantShape shape : allShapes) {
            if (isAccepted && shape == VariantShape::Scalar) {
                continue;
            }
            EXPECT_EQ(nameOf((variantOf(type, shape).*getter)(value)), "BadOutOfRange")
                << "type " << int{type};
            EXPECT_TRUE(value == sample) << "a failure leaves the target";
        }
        if (isAccepted && OpcUa_BuiltInType_GetTraits(type)->IsByPointer) {
            EXPECT_EQ(nameOf((pointerless(type).*getter)(value)), "BadOutOfRange");
        }
    }
}

/// Null is refused, or gives the default.
template <typename Value>
void expectNull(const char* status, const Value& sample,
                OpcUa_StatusCode (UaVariant::*getter)(Value&) const)
{
    Value value = sample;
    EXPECT_EQ(nameOf((UaVariant().*getter)(value)), status);
    EXPECT_TRUE(value == (std::string_view(status) == "Good" ? Value() : sample));
}

template <typename Value>
Value get(const UaVariant& variant, OpcUa_StatusCode (UaVariant::*getter)(Value&) const)
{
    Value value;
    EXPECT_EQ((variant.*getter)(value), OpcUa_Good);
    return value;
}

/// Each allocation failing once is told, and leaves the target.
template <typename Value>
void expectFaultsTold(const UaVariant& variant, const Value& sample,
                      OpcUa_StatusCode (UaVariant::*getter)(Value&) const)
{
    Value value = sample;
    const std::size_t failures =
        forEveryFailingAllocation([&] { return (variant.*getter)(value); },
                                  [&](OpcUa_StatusCode status) {
                                      EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                      EXPECT_TRUE(value == sample);
                                  });
    EXPECT_GT(failures, 0u);
}

const UaNodeId otherNodeId(OpcUa_UInt32{99}, 9);

TEST(UaVariantGet, node_id)
{
    const UaNodeId numeric(OpcUa_UInt32{85}, 0);
    const UaNodeId string(UaString("pump"), 2);
    EXPECT_EQ(get(UaVariant(numeric), &UaVariant::toNodeId), numeric);
    EXPECT_EQ(get(UaVariant(string), &UaVariant::toNodeId), string);
    EXPECT_EQ(get(UaVariant(UaNodeId()), &UaVariant::toNodeId), UaNodeId());
    expectNull("Good", otherNodeId, &UaVariant::toNodeId);
    expectRefusals({OpcUaType_NodeId}, otherNodeId, &UaVariant::toNodeId);
    expectFaultsTold(UaVariant(string), otherNodeId, &UaVariant::toNodeId);
    expectFaultsTold(UaVariant(numeric), otherNodeId, &UaVariant::toNodeId);
}

TEST(UaVariantGet, node_id_of_unknown_type_is_out_of_range)
{
    OpcUa_NodeId record;
    OpcUa_NodeId_Initialize(&record);
    record.IdentifierType = 4;
    OpcUa_Variant stack{};
    stack.Datatype = OpcUaType_NodeId;
    stack.Value.NodeId = &record;
    const auto& variant = reinterpret_cast<const UaVariant&>(stack);
    UaNodeId nodeId = otherNodeId;
    EXPECT_EQ(nameOf(variant.toNodeId(nodeId)), "BadOutOfRange");
    EXPECT_EQ(nodeId, otherNodeId);
    UaExpandedNodeId expanded;
    EXPECT_EQ(nameOf(variant.toExpandedNodeId(expanded)), "BadOutOfRange");
}

TEST(UaVariantGet, expanded_node_id_wraps_a_node_id)
{
    const UaExpandedNodeId other(otherNodeId, "urn:other", 9);
    const UaNodeId inner(UaString("pump"), 2);
    const UaExpandedNodeId expanded(inner, "urn:a", 3);
    EXPECT_EQ(get(UaVariant(expanded), &UaVariant::toExpandedNodeId), expanded);
    const UaExpandedNodeId wrapped = get(UaVariant(inner), &UaVariant::toExpandedNodeId);
    EXPECT_EQ(wrapped.nodeId(), inner);
    EXPECT_TRUE(wrapped.namespaceUri().isEmpty());
    EXPECT_EQ(wrapped.serverIndex(), 0u);
    expectNull("Good", other, &UaVariant::toExpandedNodeId);
    expectRefusals({OpcUaType_NodeId, OpcUaType_ExpandedNodeId}, other,
                   &UaVariant::toExpandedNodeId);
    expectFaultsTold(UaVariant(expanded), other, &UaVariant::toExpandedNodeId);
    expectFaultsTold(UaVariant(inner), other, &UaVariant::toExpandedNodeId);
}

TEST(UaVariantGet, guid)
{
    UaGuid guid;
    ASSERT_EQ(guid.fromString("6B29FC40-CA47-1067-B31D-00DD010662DA"), OpcUa_Good);
    EXPECT_EQ(get(UaVariant(guid), &UaVariant::toGuid), guid);
    expectNull("BadOutOfRange", guid, &UaVariant::toGuid);
    expectRefusals({OpcUaType_Guid}, guid, &UaVariant::toGuid);
}

TEST(UaVariantGet, localized_text_takes_a_string)
{
    const UaLocalizedText other("de", "anders");
    const UaLocalizedText localized("en", "text");
    EXPECT_EQ(get(UaVariant(localized), &UaVariant::toLocalizedText), localized);
    const UaLocalizedText fromText = get(text("plain"), &UaVariant::toLocalizedText);
    EXPECT_EQ(textOf(fromText.text()), "plain");
    EXPECT_TRUE(fromText.locale().isEmpty());
    expectNull("Good", other, &UaVariant::toLocalizedText);
    expectRefusals({OpcUaType_String, OpcUaType_LocalizedText}, other, &UaVariant::toLocalizedText);
    expectFaultsTold(UaVariant(localized), other, &UaVariant::toLocalizedText);
    expectFaultsTold(text("plain"), other, &UaVariant::toLocalizedText);
}

TEST(UaVariantGet, qualified_name)
{
    const UaQualifiedName other("other", 9);
    const UaQualifiedName name("name", 4);
    EXPECT_EQ(get(UaVariant(name), &UaVariant::toQualifiedName), name);
    expectNull("Good", other, &UaVariant::toQualifiedName);
    expectRefusals({OpcUaType_QualifiedName}, other, &UaVariant::toQualifiedName);
    expectFaultsTold(UaVariant(name), other, &UaVariant::toQualifiedName);
}

TEST(UaVariantGet, extension_object)
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    fillWithTestRecord(record, 5, "record");
    UaExtensionObject object;
    object.attach(record);
    EXPECT_EQ(get(UaVariant(object), &UaVariant::toExtensionObject), object);
    expectNull("BadOutOfRange", object, &UaVariant::toExtensionObject);
    expectRefusals({OpcUaType_ExtensionObject}, object, &UaVariant::toExtensionObject);
    expectFaultsTold(UaVariant(object), UaExtensionObject(), &UaVariant::toExtensionObject);
}

TEST(UaVariantGet, data_value)
{
    const UaDataValue other(int32(1), OpcUa_BadNoData, UaDateTime(), UaDateTime());
    const UaDataValue value(text("running"), OpcUa_Good, UaDateTime(1), UaDateTime(2), 3, 4);
    OpcUa_StatusCode (UaVariant::*getter)(UaDataValue&) const = &UaVariant::toDataValue;
    EXPECT_EQ(get(UaVariant(value), getter), value);
    EXPECT_EQ(get(UaVariant(UaDataValue()), getter), UaDataValue());
    expectNull("BadOutOfRange", other, getter);
    expectRefusals({OpcUaType_DataValue}, other, getter);
    expectFaultsTold(UaVariant(value), other, getter);
    const UaDataValue timesOnly(UaVariant(), OpcUa_Good, UaDateTime(1), UaDateTime());
    expectFaultsTold(UaVariant(timesOnly), other, getter);
}

TEST(UaVariantGet, data_value_into_a_record)
{
    const UaDataValue value(text("running"), OpcUa_Good, UaDateTime(1), UaDateTime(2), 3, 4);
    OpcUa_DataValue record;
    OpcUa_DataValue_Initialize(&record);
    EXPECT_EQ(nameOf(UaVariant(value).toDataValue(nullptr)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(UaVariant().toDataValue(nullptr)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(int32(1).toDataValue(&record)), "BadOutOfRange");
    EXPECT_EQ(UaVariant(value).toDataValue(&record), OpcUa_Good);
    EXPECT_EQ(UaDataValue(record), value);
    OpcUa_DataValue_Clear(&record);
}

TEST(UaVariantGet, date_time_takes_a_text)
{
    const UaDateTime other(OpcUa_Int64{99});
    const UaDateTime dateTime(OpcUa_Int64{116444736000000000});
    EXPECT_EQ(get(UaVariant(dateTime), &UaVariant::toDateTime), dateTime);
    EXPECT_EQ(get(text("1970-01-01T00:00:00.000Z"), &UaVariant::toDateTime), dateTime);
    expectNull("Good", other, &UaVariant::toDateTime);
    expectRefusals({OpcUaType_DateTime, OpcUaType_String}, other, &UaVariant::toDateTime);
    UaDateTime value = other;
    EXPECT_EQ(nameOf(text("yesterday").toDateTime(value)), "BadSyntaxError");
    EXPECT_EQ(nameOf(text("1970-02-30T00:00:00.000Z").toDateTime(value)), "BadOutOfRange");
    EXPECT_EQ(nameOf(text("").toDateTime(value)), "BadSyntaxError");
    EXPECT_EQ(value, other);
}

UaByteString bytesOf(const std::vector<OpcUa_Byte>& data)
{
    return {static_cast<OpcUa_Int32>(data.size()), data.data()};
}

TEST(UaVariantGetByteString, accepts_bytes_and_arrays_of_bytes)
{
    const UaByteString bytes = bytesOf({1, 0, 255});
    EXPECT_EQ(get(UaVariant(bytes), &UaVariant::toByteString), bytes);
    EXPECT_EQ(get(UaVariant(UaByteString()), &UaVariant::toByteString), UaByteString());
    UaVariant xml;
    xml.setXmlElement(bytes);
    EXPECT_EQ(get(xml, &UaVariant::toByteString), bytes);
    EXPECT_EQ(get(UaVariant(UaByteArray(bytes)), &UaVariant::toByteString), bytes);
    EXPECT_EQ(get(UaVariant(UaByteArray()), &UaVariant::toByteString).length(), 0);
    expectNull("Good", bytes, &UaVariant::toByteString);
}

TEST(UaVariantGetByteString, refuses_everything_else)
{
    const UaByteString other = bytesOf({9});
    UaByteString value = other;
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= OpcUaType_DiagnosticInfo; ++type) {
        const bool isText = type == OpcUaType_String;
        const bool isBytes = type == OpcUaType_ByteString || type == OpcUaType_XmlElement;
        for (const VariantShape shape : allShapes) {
            const bool isByteArray = type == OpcUaType_Byte && shape == VariantShape::Array;
            if (isByteArray || (isBytes && shape == VariantShape::Scalar)) {
                continue;
            }
            EXPECT_EQ(nameOf(variantOf(type, shape).toByteString(value)), "BadOutOfRange")
                << int{type} << (isText ? " with no digits" : "");
            EXPECT_EQ(value, other);
        }
    }
    for (const OpcUa_Byte type : {OpcUaType_ByteString, OpcUaType_XmlElement}) {
        OpcUa_Variant stack{};
        stack.Datatype = type;
        stack.Value.ByteString = {3, nullptr};
        EXPECT_EQ(nameOf(reinterpret_cast<const UaVariant&>(stack).toByteString(value)),
                  "BadOutOfRange");
    }
}

TEST(UaVariantGetByteString, reads_array_text_and_hexadecimal_digits)
{
    struct Row
    {
        const char* text;
        std::vector<OpcUa_Byte> bytes;
    };
    const std::vector<Row> rows = {{"{1|2|255}", {1, 2, 255}}, {"{ 7 }", {7}},         {"{ }", {0}},
                                   {"01AB", {0x01, 0xAB}},     {"ffFF", {0xFF, 0xFF}}, {"", {}}};
    for (const Row& row : rows) {
        EXPECT_EQ(get(text(row.text), &UaVariant::toByteString), bytesOf(row.bytes)) << row.text;
    }
    const UaByteString other = bytesOf({9});
    for (const char* refused : {"{1|256}", "{1|x}", "{1|0xA}", "{}", "ABC", "0G", "0x01", "01 AB",
                                " 01", "{01AB", "\xC3\xA4"}) {
        UaByteString value = other;
        EXPECT_EQ(nameOf(text(refused).toByteString(value)), "BadOutOfRange") << refused;
        EXPECT_EQ(value, other);
    }
}

TEST(UaVariantGetByteString, every_failed_allocation_is_told)
{
    const UaByteString other = bytesOf({9});
    expectFaultsTold(UaVariant(bytesOf({1})), other, &UaVariant::toByteString);
    expectFaultsTold(UaVariant(UaByteArray(bytesOf({1}))), other, &UaVariant::toByteString);
    expectFaultsTold(text("{1|2}"), other, &UaVariant::toByteString);
    expectFaultsTold(text("0102"), other, &UaVariant::toByteString);
}

} // namespace
