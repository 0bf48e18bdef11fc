#include "base/uaarray.h"
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
#include "base/uavariantparts.h"

// Setters of scalars.

using namespace UaVariantParts;

namespace {

/// Clears the variant and stores a value that lies in the union.
template <typename T>
void store(OpcUa_Variant& variant, OpcUa_Byte type, T OpcUa_VariantValue::*member, T value)
{
    OpcUa_Variant_Clear(&variant);
    variant.Datatype = type;
    variant.Value.*member = value;
}

/// Clears the variant and stores a value that lies behind a pointer. `fill` brings the content into an
/// initialised record; after its failure the variant is Null.
template <typename Record, typename Fill>
void storeBehind(OpcUa_Variant& variant, OpcUa_Byte type, Record* OpcUa_VariantValue::*member,
                 Fill fill)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    auto* record = static_cast<Record*>(UaArray_CreateBlock(traits, 1));
    if (record != nullptr && OpcUa_IsBad(fill(record))) {
        OpcUa_Elements_Free(traits, record, 1);
        record = nullptr;
    }
    OpcUa_Variant_Clear(&variant);
    if (record != nullptr) {
        variant.Datatype = type;
        variant.Value.*member = record;
    }
}

/// The same for the deep copy of a value class.
template <typename Record, typename Value>
void storeCopy(OpcUa_Variant& variant, OpcUa_Byte type, Record* OpcUa_VariantValue::*member,
               const Value& value)
{
    storeBehind(variant, type, member, [&](Record* record) { return value.copyTo(record); });
}

/// The same with the content moved.
template <typename Record, typename Value>
void storeMoved(OpcUa_Variant& variant, OpcUa_Byte type, Record* OpcUa_VariantValue::*member,
                Value& value)
{
    storeBehind(variant, type, member, [&](Record* record) { return value.detach(record); });
}

/// Stores bytes as one of the two types that are made of them.
void storeBytes(OpcUa_Variant& variant, OpcUa_Byte type, UaByteString& bytes)
{
    OpcUa_Variant_Clear(&variant);
    variant.Datatype = type;
    OpcUa_ByteString_Initialize(&variant.Value.ByteString);
    bytes.detach(&variant.Value.ByteString);
}

void storeBytesCopy(OpcUa_Variant& variant, OpcUa_Byte type, const UaByteString& bytes)
{
    UaByteString copy(bytes);
    if (copy.isNull() && !bytes.isNull()) {
        OpcUa_Variant_Clear(&variant);
        return;
    }
    storeBytes(variant, type, copy);
}

} // namespace

void UaVariant::setBool(OpcUa_Boolean value)
{
    store(m_variant, OpcUaType_Boolean, &OpcUa_VariantValue::Boolean, value);
}

void UaVariant::setSByte(OpcUa_SByte value)
{
    store(m_variant, OpcUaType_SByte, &OpcUa_VariantValue::SByte, value);
}

void UaVariant::setByte(OpcUa_Byte value)
{
    store(m_variant, OpcUaType_Byte, &OpcUa_VariantValue::Byte, value);
}

void UaVariant::setInt16(OpcUa_Int16 value)
{
    store(m_variant, OpcUaType_Int16, &OpcUa_VariantValue::Int16, value);
}

void UaVariant::setUInt16(OpcUa_UInt16 value)
{
    store(m_variant, OpcUaType_UInt16, &OpcUa_VariantValue::UInt16, value);
}

void UaVariant::setInt32(OpcUa_Int32 value)
{
    store(m_variant, OpcUaType_Int32, &OpcUa_VariantValue::Int32, value);
}

void UaVariant::setUInt32(OpcUa_UInt32 value)
{
    store(m_variant, OpcUaType_UInt32, &OpcUa_VariantValue::UInt32, value);
}

void UaVariant::setInt64(OpcUa_Int64 value)
{
    store(m_variant, OpcUaType_Int64, &OpcUa_VariantValue::Int64, value);
}

void UaVariant::setUInt64(OpcUa_UInt64 value)
{
    store(m_variant, OpcUaType_UInt64, &OpcUa_VariantValue::UInt64, value);
}

void UaVariant::setFloat(OpcUa_Float value)
{
    store(m_variant, OpcUaType_Float, &OpcUa_VariantValue::Float, value);
}

void UaVariant::setDouble(OpcUa_Double value)
{
    store(m_variant, OpcUaType_Double, &OpcUa_VariantValue::Double, value);
}

void UaVariant::setStatusCode(OpcUa_StatusCode value)
{
    store(m_variant, OpcUaType_StatusCode, &OpcUa_VariantValue::StatusCode, value);
}

void UaVariant::setString(const UaString& value)
{
    OpcUa_String copy{};
    const OpcUa_StatusCode status = value.copyTo(&copy);
    OpcUa_Variant_Clear(&m_variant);
    if (OpcUa_IsGood(status)) {
        m_variant.Datatype = OpcUaType_String;
        m_variant.Value.String = copy;
    }
}

void UaVariant::setDateTime(const UaDateTime& value)
{
    store(m_variant, OpcUaType_DateTime, &OpcUa_VariantValue::DateTime, value.toOpcUaDateTime());
}

void UaVariant::setGuid(const UaGuid& value)
{
    storeBehind(m_variant, OpcUaType_Guid, &OpcUa_VariantValue::Guid, [&](OpcUa_Guid* record) {
        value.copyTo(record);
        return OpcUa_Good;
    });
}

void UaVariant::setNodeId(const UaNodeId& value)
{
    storeCopy(m_variant, OpcUaType_NodeId, &OpcUa_VariantValue::NodeId, value);
}

void UaVariant::setExpandedNodeId(const UaExpandedNodeId& value)
{
    storeCopy(m_variant, OpcUaType_ExpandedNodeId, &OpcUa_VariantValue::ExpandedNodeId, value);
}

void UaVariant::setQualifiedName(const UaQualifiedName& value)
{
    storeCopy(m_variant, OpcUaType_QualifiedName, &OpcUa_VariantValue::QualifiedName, value);
}

void UaVariant::setLocalizedText(const UaLocalizedText& value)
{
    storeCopy(m_variant, OpcUaType_LocalizedText, &OpcUa_VariantValue::LocalizedText, value);
}

void UaVariant::setByteString(const UaByteString& value)
{
    storeBytesCopy(m_variant, OpcUaType_ByteString, value);
}

void UaVariant::setByteString(UaByteString& value, bool bDetach)
{
    if (bDetach) {
        storeBytes(m_variant, OpcUaType_ByteString, value);
    } else {
        setByteString(value);
    }
}

void UaVariant::setXmlElement(const UaByteString& value)
{
    storeBytesCopy(m_variant, OpcUaType_XmlElement, value);
}

void UaVariant::setXmlElement(UaByteString& value, bool bDetach)
{
    if (bDetach) {
        storeBytes(m_variant, OpcUaType_XmlElement, value);
    } else {
        setXmlElement(value);
    }
}

void UaVariant::setXmlElement(const UaString& value)
{
    const OpcUa_ByteString bytes = {
        value.isNull() ? -1 : value.length(),
        reinterpret_cast<OpcUa_Byte*>(const_cast<char*>(value.toUtf8()))};
    OpcUa_ByteString copy;
    OpcUa_ByteString_Initialize(&copy);
    const OpcUa_StatusCode status = OpcUa_ByteString_CopyTo(&bytes, &copy);
    OpcUa_Variant_Clear(&m_variant);
    if (OpcUa_IsGood(status)) {
        m_variant.Datatype = OpcUaType_XmlElement;
        m_variant.Value.XmlElement = copy;
    }
}

void UaVariant::setExtensionObject(const UaExtensionObject& value)
{
    storeCopy(m_variant, OpcUaType_ExtensionObject, &OpcUa_VariantValue::ExtensionObject, value);
}

void UaVariant::setExtensionObject(UaExtensionObject& value, bool bDetach)
{
    if (bDetach) {
        storeMoved(m_variant, OpcUaType_ExtensionObject, &OpcUa_VariantValue::ExtensionObject,
                   value);
    } else {
        setExtensionObject(value);
    }
}

void UaVariant::setDataValue(const UaDataValue& value)
{
    storeCopy(m_variant, OpcUaType_DataValue, &OpcUa_VariantValue::DataValue, value);
}

void UaVariant::setDataValue(UaDataValue& value, bool bDetach)
{
    if (bDetach) {
        storeMoved(m_variant, OpcUaType_DataValue, &OpcUa_VariantValue::DataValue, value);
    } else {
        setDataValue(value);
    }
}
