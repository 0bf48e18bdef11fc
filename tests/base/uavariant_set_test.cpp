#include "base/uabytestring.h"
#include "base/uadatavalue.h"
#include "base/uadatetime.h"
#include "base/uaexpandednodeid.h"
#include "base/uaextensionobject.h"
#include "base/uaguid.h"
#include "base/ualocalizedtext.h"
#include "base/uanodeid.h"
#include "base/uaqualifiedname.h"
#include "base/uastatuscode.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

// Setters, constructors and assignments of scalars.

namespace {

const OpcUa_Byte someBytes[] = {0xAB, 0, 0x01};

UaByteString bytes()
{
    return {3, someBytes};
}

UaGuid guid()
{
    UaGuid value;
    EXPECT_EQ(value.fromString("6B29FC40-CA47-1067-B31D-00DD010662DA"), OpcUa_Good);
    return value;
}

UaExpandedNodeId expandedNodeId()
{
    return {UaNodeId(UaString("pump"), 2), "urn:a", 3};
}

UaExtensionObject extensionObject()
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    fillWithTestRecord(record, 5, "record");
    UaExtensionObject object;
    object.attach(record);
    return object;
}

UaDataValue dataValue()
{
    return {text("running"), OpcUa_UncertainInitialValue, UaDateTime(1), UaDateTime(2), 3, 4};
}

/// A variant that held something before, so that a setter has to clear it.
UaVariant used()
{
    return text("what was there before");
}

const OpcUa_VariantValue& valueOf(const UaVariant& variant)
{
    return variant.toOpcUaVariant()->Value;
}

void expectScalar(const UaVariant& variant, OpcUa_Byte type)
{
    EXPECT_EQ(variant.toOpcUaVariant()->Datatype, type);
    EXPECT_EQ(variant.toOpcUaVariant()->ArrayType, OpcUa_VariantArrayType_Scalar);
    EXPECT_EQ(variant.toOpcUaVariant()->Reserved, 0);
}

/// Tries a setter of numbers, and construction and assignment where the type has them of its own.
template <typename T>
void expectNumber(void (UaVariant::*setter)(T), T value, OpcUa_Byte type,
                  T OpcUa_VariantValue::*member)
{
    UaVariant variant = used();
    (variant.*setter)(value);
    expectScalar(variant, type);
    EXPECT_EQ(valueOf(variant).*member, value);
}

template <typename Source, typename T>
void expectConstructed(const Source& source, OpcUa_Byte type, T OpcUa_VariantValue::*member,
                       T expected)
{
    const UaVariant constructed(source);
    expectScalar(constructed, type);
    EXPECT_EQ(valueOf(constructed).*member, expected);
    UaVariant assigned = used();
    assigned = source;
    expectScalar(assigned, type);
    EXPECT_EQ(valueOf(assigned).*member, expected);
}

TEST(UaVariantSet, numbers_are_stored_in_the_union)
{
    using V = OpcUa_VariantValue;
    expectNumber<OpcUa_Boolean>(&UaVariant::setBool, 1, OpcUaType_Boolean, &V::Boolean);
    expectNumber<OpcUa_SByte>(&UaVariant::setSByte, -128, OpcUaType_SByte, &V::SByte);
    expectNumber<OpcUa_Byte>(&UaVariant::setByte, 255, OpcUaType_Byte, &V::Byte);
    expectNumber<OpcUa_Int16>(&UaVariant::setInt16, -32768, OpcUaType_Int16, &V::Int16);
    expectNumber<OpcUa_UInt16>(&UaVariant::setUInt16, 65535, OpcUaType_UInt16, &V::UInt16);
    expectNumber<OpcUa_Int32>(&UaVariant::setInt32, -5, OpcUaType_Int32, &V::Int32);
    expectNumber<OpcUa_UInt32>(&UaVariant::setUInt32, 5, OpcUaType_UInt32, &V::UInt32);
    expectNumber<OpcUa_Int64>(&UaVariant::setInt64, -5, OpcUaType_Int64, &V::Int64);
    expectNumber<OpcUa_UInt64>(&UaVariant::setUInt64, 5, OpcUaType_UInt64, &V::UInt64);
    expectNumber<OpcUa_Float>(&UaVariant::setFloat, 0.5F, OpcUaType_Float, &V::Float);
    expectNumber<OpcUa_Double>(&UaVariant::setDouble, 0.5, OpcUaType_Double, &V::Double);
    expectNumber<OpcUa_StatusCode>(&UaVariant::setStatusCode, OpcUa_BadNoData, OpcUaType_StatusCode,
                                   &V::StatusCode);
}

TEST(UaVariantSet, numbers_construct_and_assign_by_their_type)
{
    using V = OpcUa_VariantValue;
    expectConstructed(true, OpcUaType_Boolean, &V::Boolean, OpcUa_True);
    expectConstructed(false, OpcUaType_Boolean, &V::Boolean, OpcUa_False);
    expectConstructed(OpcUa_SByte{-1}, OpcUaType_SByte, &V::SByte, OpcUa_SByte{-1});
    expectConstructed(OpcUa_True, OpcUaType_Byte, &V::Byte, OpcUa_Byte{1});
    expectConstructed(OpcUa_Int16{-2}, OpcUaType_Int16, &V::Int16, OpcUa_Int16{-2});
    expectConstructed(OpcUa_UInt16{2}, OpcUaType_UInt16, &V::UInt16, OpcUa_UInt16{2});
    expectConstructed(-3, OpcUaType_Int32, &V::Int32, OpcUa_Int32{-3});
    expectConstructed(3u, OpcUaType_UInt32, &V::UInt32, OpcUa_UInt32{3});
    expectConstructed(OpcUa_Int64{-4}, OpcUaType_Int64, &V::Int64, OpcUa_Int64{-4});
    expectConstructed(OpcUa_UInt64{4}, OpcUaType_UInt64, &V::UInt64, OpcUa_UInt64{4});
    expectConstructed(0.25F, OpcUaType_Float, &V::Float, 0.25F);
    expectConstructed(0.25, OpcUaType_Double, &V::Double, 0.25);
    expectConstructed(UaStatusCode(OpcUa_BadNoData), OpcUaType_StatusCode, &V::StatusCode,
                      OpcUa_StatusCode{OpcUa_BadNoData});
}

/// Tries the three ways by which a value class gets into a variant.
template <typename Value, typename Check>
void expectStored(const Value& value, void (UaVariant::*setter)(const Value&), OpcUa_Byte type,
                  Check check)
{
    UaVariant set = used();
    (set.*setter)(value);
    const UaVariant constructed(value);
    UaVariant assigned = used();
    assigned = value;
    for (const UaVariant* variant : {&std::as_const(set), &constructed, &std::as_const(assigned)}) {
        expectScalar(*variant, type);
        check(valueOf(*variant));
    }
}

TEST(UaVariantSet, text_is_copied)
{
    const UaString value("pump\xC3\xA4");
    expectStored(value, &UaVariant::setString, OpcUaType_String, [&](const OpcUa_VariantValue& v) {
        EXPECT_EQ(UaString(&v.String), value);
        EXPECT_NE(v.String.strContent, value.toUtf8());
    });
    expectStored(UaString(), &UaVariant::setString, OpcUaType_String,
                 [](const OpcUa_VariantValue& v) { EXPECT_TRUE(OpcUa_String_IsNull(&v.String)); });
    expectStored(UaString(""), &UaVariant::setString, OpcUaType_String,
                 [](const OpcUa_VariantValue& v) { EXPECT_TRUE(OpcUa_String_IsEmpty(&v.String)); });
}

TEST(UaVariantSet, date_time_copies_the_count)
{
    expectStored(
        UaDateTime(OpcUa_Int64{-2}), &UaVariant::setDateTime, OpcUaType_DateTime,
        [](const OpcUa_VariantValue& v) { EXPECT_EQ(UaDateTime(v.DateTime).toInt64(), -2); });
}

TEST(UaVariantSet, guid_is_copied_into_a_new_block)
{
    expectStored(guid(), &UaVariant::setGuid, OpcUaType_Guid, [](const OpcUa_VariantValue& v) {
        ASSERT_NE(v.Guid, nullptr);
        EXPECT_EQ(UaGuid(*v.Guid), guid());
    });
}

TEST(UaVariantSet, identifiers_and_names_are_copied_into_a_new_block)
{
    const UaNodeId nodeId(UaString("pump"), 2);
    expectStored(nodeId, &UaVariant::setNodeId, OpcUaType_NodeId, [&](const OpcUa_VariantValue& v) {
        ASSERT_NE(v.NodeId, nodeId.toOpcUaNodeId());
        EXPECT_EQ(UaNodeId(*v.NodeId), nodeId);
    });
    expectStored(expandedNodeId(), &UaVariant::setExpandedNodeId, OpcUaType_ExpandedNodeId,
                 [](const OpcUa_VariantValue& v) {
                     EXPECT_EQ(UaExpandedNodeId(*v.ExpandedNodeId), expandedNodeId());
                 });
    const UaQualifiedName name("name", 4);
    expectStored(
        name, &UaVariant::setQualifiedName, OpcUaType_QualifiedName,
        [&](const OpcUa_VariantValue& v) { EXPECT_EQ(UaQualifiedName(*v.QualifiedName), name); });
    const UaLocalizedText localized("en", "text");
    expectStored(localized, &UaVariant::setLocalizedText, OpcUaType_LocalizedText,
                 [&](const OpcUa_VariantValue& v) {
                     EXPECT_EQ(UaLocalizedText(*v.LocalizedText), localized);
                 });
}

TEST(UaVariantSet, bytes_are_copied)
{
    expectStored(
        bytes(), &UaVariant::setByteString, OpcUaType_ByteString,
        [](const OpcUa_VariantValue& v) { EXPECT_EQ(UaByteString(v.ByteString), bytes()); });
    expectStored(UaByteString(), &UaVariant::setByteString, OpcUaType_ByteString,
                 [](const OpcUa_VariantValue& v) { EXPECT_EQ(v.ByteString.Length, -1); });
    expectStored(UaByteString(0, nullptr), &UaVariant::setByteString, OpcUaType_ByteString,
                 [](const OpcUa_VariantValue& v) { EXPECT_EQ(v.ByteString.Length, 0); });
}

TEST(UaVariantSet, extension_object_and_data_value_are_copied_into_a_new_block)
{
    expectStored(extensionObject(), &UaVariant::setExtensionObject, OpcUaType_ExtensionObject,
                 [](const OpcUa_VariantValue& v) {
                     EXPECT_EQ(UaExtensionObject(*v.ExtensionObject), extensionObject());
                 });
    expectStored(
        dataValue(), &UaVariant::setDataValue, OpcUaType_DataValue,
        [](const OpcUa_VariantValue& v) { EXPECT_EQ(UaDataValue(*v.DataValue), dataValue()); });
}

TEST(UaVariantSet, xml_element_copies_bytes_or_characters)
{
    UaVariant variant = used();
    variant.setXmlElement(bytes());
    expectScalar(variant, OpcUaType_XmlElement);
    EXPECT_EQ(UaByteString(valueOf(variant).XmlElement), bytes());
    variant = used();
    variant.setXmlElement(UaString("<a/>"));
    expectScalar(variant, OpcUaType_XmlElement);
    EXPECT_EQ(textOf(UaString(UaByteString(valueOf(variant).XmlElement))), "<a/>");
    variant.setXmlElement(UaString());
    EXPECT_EQ(valueOf(variant).XmlElement.Length, -1);
    variant.setXmlElement(UaString(""));
    EXPECT_EQ(valueOf(variant).XmlElement.Length, 0);
}

TEST(UaVariantSet, detach_moves_the_bytes_and_leaves_the_source_empty)
{
    for (const auto& [setter, type] :
         std::vector<std::pair<void (UaVariant::*)(UaByteString&, bool), OpcUa_Byte>>{
             {&UaVariant::setByteString, OpcUaType_ByteString},
             {&UaVariant::setXmlElement, OpcUaType_XmlElement}}) {
        UaByteString source = bytes();
        const OpcUa_Byte* data = source.data();
        UaVariant variant = used();
        (variant.*setter)(source, false);
        expectScalar(variant, type);
        EXPECT_NE(valueOf(variant).ByteString.Data, data);
        EXPECT_EQ(source, bytes());
        (variant.*setter)(source, true);
        expectScalar(variant, type);
        EXPECT_EQ(valueOf(variant).ByteString.Data, data);
        EXPECT_TRUE(source.isNull());
    }
    UaByteString source = bytes();
    const OpcUa_Byte* data = source.data();
    const UaVariant constructed(source, true);
    EXPECT_EQ(valueOf(constructed).ByteString.Data, data);
    EXPECT_TRUE(source.isNull());
}

TEST(UaVariantSet, detach_moves_an_extension_object_and_resets_the_source)
{
    UaExtensionObject source = extensionObject();
    const void* body = source.toOpcUaExtensionObject()->Body.EncodeableObject.Object;
    UaVariant variant = used();
    variant.setExtensionObject(source, false);
    EXPECT_NE(valueOf(variant).ExtensionObject->Body.EncodeableObject.Object, body);
    EXPECT_EQ(source, extensionObject());
    variant.setExtensionObject(source, true);
    expectScalar(variant, OpcUaType_ExtensionObject);
    EXPECT_EQ(valueOf(variant).ExtensionObject->Body.EncodeableObject.Object, body);
    EXPECT_EQ(source, UaExtensionObject());
    UaExtensionObject other = extensionObject();
    EXPECT_EQ(UaVariant(other, true).type(), OpcUaType_ExtensionObject);
    EXPECT_EQ(other, UaExtensionObject());
}

TEST(UaVariantSet, detach_moves_a_data_value_that_no_other_handle_shares)
{
    UaDataValue source = dataValue();
    const char* content = source.toOpcUaDataValue()->Value.Value.String.strContent;
    UaVariant variant = used();
    variant.setDataValue(source, false);
    EXPECT_NE(valueOf(variant).DataValue->Value.Value.String.strContent, content);
    EXPECT_EQ(source, dataValue());
    variant.setDataValue(source, true);
    EXPECT_EQ(valueOf(variant).DataValue->Value.Value.String.strContent, content);
    EXPECT_EQ(source, UaDataValue());
    UaDataValue shared = dataValue();
    const UaDataValue keeper = shared;
    const UaVariant constructed(shared, true);
    EXPECT_EQ(UaDataValue(*valueOf(constructed).DataValue), dataValue());
    EXPECT_EQ(keeper, dataValue());
}

/// Sets a scalar with each allocation failing once: the variant is Null then.
template <typename Set>
std::size_t countFailures(Set set)
{
    UaVariant variant;
    return forEveryFailingAllocation(
        [&] {
            set(variant);
            return variant.type();
        },
        [&](OpcUa_Byte type) {
            EXPECT_EQ(type, OpcUaType_Null);
            variant = used();
        });
}

TEST(UaVariantSet, every_failed_allocation_leaves_null)
{
    const UaString string("string");
    const UaGuid guidValue = guid();
    const UaNodeId nodeId(UaString("pump"), 2);
    const UaExpandedNodeId expanded = expandedNodeId();
    const UaQualifiedName name("name", 4);
    const UaLocalizedText localized("en", "text");
    const UaByteString byteString = bytes();
    const UaExtensionObject object = extensionObject();
    const UaDataValue value = dataValue();
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setString(string); }), 1u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setGuid(guidValue); }), 1u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setNodeId(nodeId); }), 2u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setExpandedNodeId(expanded); }), 3u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setQualifiedName(name); }), 2u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setLocalizedText(localized); }), 3u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setByteString(byteString); }), 1u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setXmlElement(byteString); }), 1u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setXmlElement(string); }), 1u);
    EXPECT_GE(countFailures([&](UaVariant& v) { v.setExtensionObject(object); }), 3u);
    EXPECT_EQ(countFailures([&](UaVariant& v) { v.setDataValue(value); }), 2u);
}

TEST(UaVariantSet, failed_detach_leaves_the_source)
{
    UaExtensionObject object = extensionObject();
    UaDataValue value = dataValue();
    EXPECT_EQ(countFailures([&](UaVariant& v) {
                  v.setExtensionObject(object, true);
                  if (AllocationFaults::hasFailed()) {
                      EXPECT_EQ(object.encoding(), OpcUa_ExtensionObjectEncoding_EncodeableObject);
                  }
              }),
              1u);
    EXPECT_EQ(countFailures([&](UaVariant& v) {
                  v.setDataValue(value, true);
                  if (AllocationFaults::hasFailed()) {
                      EXPECT_EQ(value.statusCode(), OpcUa_UncertainInitialValue);
                  }
              }),
              1u);
}

} // namespace
