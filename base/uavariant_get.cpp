#include "base/hexadecimal.h"
#include "base/uaarraytext.h"
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
#include "base/uavariantparts.h"
#include "platform/allocator.h"
#include "stack/opcua_datetime.h"

#include <cstring>
#include <utility>

// Getters of the scalars that are no numbers.

using namespace UaVariantParts;

namespace {

// A value class that finds no memory for its copy is the default. These tell such a copy from a good
// one by what no default shares.

bool isCopied(const OpcUa_NodeId& source, const OpcUa_NodeId& copy)
{
    return copy.IdentifierType == source.IdentifierType &&
           copy.NamespaceIndex == source.NamespaceIndex &&
           (source.IdentifierType != OpcUa_IdentifierType_Numeric ||
            copy.Identifier.Numeric == source.Identifier.Numeric);
}

bool isCopied(const OpcUa_String& source, const OpcUa_String& copy)
{
    return OpcUa_String_IsNull(&source) == OpcUa_String_IsNull(&copy);
}

bool isCopied(const OpcUa_ExpandedNodeId& source, const OpcUa_ExpandedNodeId& copy)
{
    return isCopied(source.NodeId, copy.NodeId) &&
           isCopied(source.NamespaceUri, copy.NamespaceUri) &&
           source.ServerIndex == copy.ServerIndex;
}

bool isCopied(const OpcUa_LocalizedText& source, const OpcUa_LocalizedText& copy)
{
    return isCopied(source.Locale, copy.Locale) && isCopied(source.Text, copy.Text);
}

bool isCopied(const OpcUa_QualifiedName& source, const OpcUa_QualifiedName& copy)
{
    return source.NamespaceIndex == copy.NamespaceIndex && isCopied(source.Name, copy.Name);
}

bool isCopied(const OpcUa_DataValue& source, const OpcUa_DataValue& copy)
{
    return source.Value.Datatype == copy.Value.Datatype && source.StatusCode == copy.StatusCode &&
           OpcUa_DateTime_Compare(&source.SourceTimestamp, &copy.SourceTimestamp) == 0 &&
           OpcUa_DateTime_Compare(&source.ServerTimestamp, &copy.ServerTimestamp) == 0 &&
           source.SourcePicoseconds == copy.SourcePicoseconds &&
           source.ServerPicoseconds == copy.ServerPicoseconds;
}

/// Copies a record into a value class. `recordOf` gives the record of such a value.
template <typename Value, typename Record>
OpcUa_StatusCode deliver(const Record& source, const Record* (Value::*recordOf)() const noexcept,
                         Value& value)
{
    Value copy(source);
    if (!isCopied(source, *(copy.*recordOf)())) {
        return OpcUa_BadOutOfMemory;
    }
    value = std::move(copy);
    return OpcUa_Good;
}

/// The record behind the pointer of a scalar of a type, or null.
template <typename Record>
const Record* recordOf(const OpcUa_Variant& variant, OpcUa_Byte type)
{
    return isScalarOf(variant, type) ? static_cast<const Record*>(pointerOf(variant)) : nullptr;
}

bool isNull(const OpcUa_Variant& variant)
{
    return variant.Datatype == OpcUaType_Null;
}

bool isKnown(const OpcUa_NodeId& nodeId)
{
    return nodeId.IdentifierType <= OpcUa_IdentifierType_Opaque;
}

OpcUa_StatusCode bytesFromBlock(const OpcUa_ByteString& source, UaByteString& value)
{
    if (source.Length > 0 && source.Data == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    UaByteString copy(source);
    if (copy.isNull() && source.Length >= 0) {
        return OpcUa_BadOutOfMemory;
    }
    value = std::move(copy);
    return OpcUa_Good;
}

OpcUa_StatusCode bytesFromArrayText(const UaArrayText& text, UaByteString& value)
{
    auto* bytes =
        static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(static_cast<std::size_t>(text.count())));
    if (bytes == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    UaArrayText::Reader reader(text);
    for (OpcUa_Int32 i = 0; i < text.count(); ++i) {
        OpcUa_Variant piece = null();
        piece.Datatype = OpcUaType_String;
        piece.Value.String = borrow(reader.next());
        if (OpcUa_IsBad(overlay(piece).toByte(bytes[i]))) {
            OpcUa_Memory_Free(bytes);
            return OpcUa_BadOutOfRange;
        }
    }
    value.attach(text.count(), bytes);
    return OpcUa_Good;
}

OpcUa_StatusCode bytesFromHexadecimal(std::string_view text, UaByteString& value)
{
    auto* bytes = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(text.size() / 2));
    if (bytes == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    if (!UaHexadecimal::decode(text, bytes)) {
        OpcUa_Memory_Free(bytes);
        return OpcUa_BadOutOfRange;
    }
    value.attach(static_cast<OpcUa_Int32>(text.size() / 2), bytes);
    return OpcUa_Good;
}

OpcUa_StatusCode bytesFromText(std::string_view text, UaByteString& value)
{
    UaArrayText arrayText;
    return OpcUa_IsGood(arrayText.open(text)) ? bytesFromArrayText(arrayText, value)
                                              : bytesFromHexadecimal(text, value);
}

} // namespace

OpcUa_StatusCode UaVariant::toNodeId(UaNodeId& value) const
{
    if (isNull(m_variant)) {
        value.clear();
        return OpcUa_Good;
    }
    const auto* record = recordOf<OpcUa_NodeId>(m_variant, OpcUaType_NodeId);
    if (record == nullptr || !isKnown(*record)) {
        return OpcUa_BadOutOfRange;
    }
    return deliver(*record, &UaNodeId::toOpcUaNodeId, value);
}

OpcUa_StatusCode UaVariant::toExpandedNodeId(UaExpandedNodeId& value) const
{
    if (isNull(m_variant)) {
        value.clear();
        return OpcUa_Good;
    }
    // A node id is wrapped without a copy, to be copied as a whole like any other.
    OpcUa_ExpandedNodeId wrapped;
    OpcUa_ExpandedNodeId_Initialize(&wrapped);
    const auto* record = recordOf<OpcUa_ExpandedNodeId>(m_variant, OpcUaType_ExpandedNodeId);
    if (const auto* nodeId = recordOf<OpcUa_NodeId>(m_variant, OpcUaType_NodeId)) {
        wrapped.NodeId = *nodeId;
        record = &wrapped;
    }
    if (record == nullptr || !isKnown(record->NodeId)) {
        return OpcUa_BadOutOfRange;
    }
    return deliver(*record, &UaExpandedNodeId::toOpcUaExpandedNodeId, value);
}

OpcUa_StatusCode UaVariant::toGuid(UaGuid& value) const
{
    const auto* record = recordOf<OpcUa_Guid>(m_variant, OpcUaType_Guid);
    if (record == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    value = UaGuid(*record);
    return OpcUa_Good;
}

OpcUa_StatusCode UaVariant::toLocalizedText(UaLocalizedText& value) const
{
    if (isNull(m_variant)) {
        value.clear();
        return OpcUa_Good;
    }
    OpcUa_LocalizedText wrapped;
    OpcUa_LocalizedText_Initialize(&wrapped);
    const auto* record = recordOf<OpcUa_LocalizedText>(m_variant, OpcUaType_LocalizedText);
    if (isScalarOf(m_variant, OpcUaType_String)) {
        wrapped.Text = m_variant.Value.String;
        record = &wrapped;
    }
    if (record == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    return deliver(*record, &UaLocalizedText::toOpcUaLocalizedText, value);
}

OpcUa_StatusCode UaVariant::toQualifiedName(UaQualifiedName& value) const
{
    if (isNull(m_variant)) {
        value.clear();
        return OpcUa_Good;
    }
    const auto* record = recordOf<OpcUa_QualifiedName>(m_variant, OpcUaType_QualifiedName);
    if (record == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    return deliver(*record, &UaQualifiedName::toOpcUaQualifiedName, value);
}

OpcUa_StatusCode UaVariant::toExtensionObject(UaExtensionObject& value) const
{
    const auto* record = recordOf<OpcUa_ExtensionObject>(m_variant, OpcUaType_ExtensionObject);
    if (record == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    OpcUa_ExtensionObject copy;
    OpcUa_ExtensionObject_Initialize(&copy);
    const OpcUa_StatusCode status = OpcUa_ExtensionObject_CopyTo(record, &copy);
    if (OpcUa_IsGood(status)) {
        value.attach(copy);
    }
    return status;
}

OpcUa_StatusCode UaVariant::toDataValue(UaDataValue& value) const
{
    const auto* record = recordOf<OpcUa_DataValue>(m_variant, OpcUaType_DataValue);
    if (record == nullptr) {
        return OpcUa_BadOutOfRange;
    }
    return deliver(*record, &UaDataValue::toOpcUaDataValue, value);
}

OpcUa_StatusCode UaVariant::toDataValue(OpcUa_DataValue* pValue) const
{
    if (pValue == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const auto* record = recordOf<OpcUa_DataValue>(m_variant, OpcUaType_DataValue);
    return record == nullptr ? OpcUa_BadOutOfRange : OpcUa_DataValue_CopyTo(record, pValue);
}

OpcUa_StatusCode UaVariant::toDateTime(UaDateTime& value) const
{
    if (isNull(m_variant)) {
        value = UaDateTime();
        return OpcUa_Good;
    }
    if (isScalarOf(m_variant, OpcUaType_DateTime)) {
        value = UaDateTime(m_variant.Value.DateTime);
        return OpcUa_Good;
    }
    if (!isScalarOf(m_variant, OpcUaType_String)) {
        return OpcUa_BadOutOfRange;
    }
    OpcUa_DateTime dateTime{};
    const OpcUa_StatusCode status =
        UaArrayText_ReadDateTime(viewOf(m_variant.Value.String), dateTime);
    if (OpcUa_IsGood(status)) {
        value = UaDateTime(dateTime);
    }
    return status;
}

OpcUa_StatusCode UaVariant::toByteString(UaByteString& value) const
{
    if (::isArray(m_variant) && m_variant.Datatype == OpcUaType_Byte) {
        const OpcUa_VariantArray& array = m_variant.Value.Array;
        return bytesFromBlock({array.Length, static_cast<OpcUa_Byte*>(array.Elements)}, value);
    }
    switch (isScalar(m_variant) ? m_variant.Datatype : OpcUaType_DiagnosticInfo) {
    case OpcUaType_Null:
        value.clear();
        return OpcUa_Good;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return bytesFromBlock(m_variant.Value.ByteString, value);
    case OpcUaType_String:
        return bytesFromText(viewOf(m_variant.Value.String), value);
    default:
        return OpcUa_BadOutOfRange;
    }
}
