#pragma once

#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_binaryfast.h"
#include "stack/opcua_binaryforms.h"
#include "stack/opcua_binarysink.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"

#include <cstddef>
#include <type_traits>

// The binary encoding of the built-in types (OPC 10000-6, 5.2.2), each written once for a writer and
// for a counter. Callers have made the entry checks. After a failure the message is abandoned.

/// Writes a value of a built-in type by its number: numbers, times, guids and texts inline.
template <OpcUa_Byte type, typename Sink, typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite(Sink& sink, const T& value);

/// The same with a number that is known only at run time, 1 to 25. `BadEncodingError` for any other.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_Value(Sink& sink, OpcUa_Byte type,
                                                       const void* value);

/// Writes the count and the elements of an array of a built-in type.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_Array(Sink& sink, OpcUa_Byte type,
                                                       const void* values, OpcUa_Int32 count);

/// Writes a variant of any type and shape.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_AnyVariant(Sink& sink, const OpcUa_Variant& value);
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode
OpcUa_BinaryWrite_ExtensionObject(Sink& sink, const OpcUa_ExtensionObject& value);
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_DiagnosticInfo(Sink& sink,
                                                                const OpcUa_DiagnosticInfo& value);

/// The index of a row's namespace by the context of an encoder, or `BadNotFound`.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryEncoder_FindNamespace(const OpcUa_BinaryWriter& writer,
                                                                 const OpcUa_EncodeableType& type,
                                                                 OpcUa_UInt16& index);

/// The same with a short way for numbers.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_Variant(Sink& sink, const OpcUa_Variant& value)
{
    if constexpr (!Sink::IsCounter) {
        const std::size_t size = OpcUa_BinaryNumber_SizeOf(value);
        if (size != 0 && sink.room() >= OpcUa_BinaryNumber_Room &&
            sink.Level < OpcUa_Nesting_MaxLevels) {
            sink.Buffer->Current = OpcUa_BinaryNumber_Put(sink.Buffer->Current, value, size);
            return OpcUa_Good;
        }
    }
    return OpcUa_BinaryWrite_AnyVariant(sink, value);
}

/// Writes the count of an array whose elements follow, -1 or 0 for none. `BadEncodingError` for a
/// count below -1, or a positive one without elements.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_Count(Sink& sink, const void* values,
                                                       OpcUa_Int32 count)
{
    if (count < -1 || (count > 0 && values == nullptr)) {
        return OpcUa_BadEncodingError;
    }
    const OpcUa_StatusCode status = sink.reserve(sizeof(count));
    if (OpcUa_IsGood(status)) {
        sink.put(count);
    }
    return status;
}

/// The bytes of a string or byte string as they go to the wire.
struct OpcUa_BinaryText
{
    const void* Bytes;
    OpcUa_Int32 Length; ///< -1 for null.

    /// Bytes of content.
    [[nodiscard]] std::size_t contentSize() const
    {
        return Length < 0 ? 0 : static_cast<std::size_t>(Length);
    }

    /// Bytes with the length in front.
    [[nodiscard]] std::size_t size() const { return sizeof(Length) + contentSize(); }

    /// Into room that is reserved.
    template <typename Sink>
    void put(Sink& sink) const
    {
        sink.put(Length);
        sink.putBytes(Bytes, contentSize());
    }
};

/// Of a record: a plain text in its place is for whoever takes strings from outside.
[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryText_Of(const OpcUa_String& string,
                                                          OpcUa_BinaryText& text)
{
    const auto length = static_cast<OpcUa_Int32>(string.uLength);
    text = {string.strContent, string.strContent == nullptr ? -1 : length};
    return string.strContent != nullptr && length < 0 ? OpcUa_BadEncodingLimitsExceeded
                                                      : OpcUa_Good;
}

[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryText_Of(const OpcUa_ByteString& bytes,
                                                          OpcUa_BinaryText& text)
{
    if (bytes.Length > 0 && bytes.Data == nullptr) {
        return OpcUa_BadEncodingError;
    }
    text = {bytes.Data, bytes.Length < 0 ? -1 : bytes.Length};
    return OpcUa_Good;
}

template <typename Sink, typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_Plain(Sink& sink, const T& value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    const OpcUa_StatusCode status = sink.reserve(sizeof(T));
    if (OpcUa_IsGood(status)) {
        sink.put(value);
    }
    return status;
}

/// A string or a byte string.
template <typename Sink, typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_Text(Sink& sink, const T& value)
{
    OpcUa_BinaryText text;
    OpcUa_StatusCode status = OpcUa_BinaryText_Of(value, text);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = sink.reserve(text.size());
    if (OpcUa_IsGood(status)) {
        text.put(sink);
    }
    return status;
}

/// A numeric node id in the shortest form that holds it.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode
OpcUa_BinaryWrite_NumericNodeId(Sink& sink, OpcUa_UInt16 namespaceIndex, OpcUa_UInt32 number,
                                OpcUa_Byte flags)
{
    if (namespaceIndex == 0 && number <= 0xFF) {
        const OpcUa_StatusCode status = sink.reserve(2);
        if (OpcUa_IsGood(status)) {
            sink.put(static_cast<OpcUa_Byte>(OpcUa_BinaryNodeId_TwoByte | flags));
            sink.put(static_cast<OpcUa_Byte>(number));
        }
        return status;
    }
    if (namespaceIndex <= 0xFF && number <= 0xFFFF) {
        const OpcUa_StatusCode status = sink.reserve(4);
        if (OpcUa_IsGood(status)) {
            sink.put(static_cast<OpcUa_Byte>(OpcUa_BinaryNodeId_FourByte | flags));
            sink.put(static_cast<OpcUa_Byte>(namespaceIndex));
            sink.put(static_cast<OpcUa_UInt16>(number));
        }
        return status;
    }
    const OpcUa_StatusCode status = sink.reserve(7);
    if (OpcUa_IsGood(status)) {
        sink.put(static_cast<OpcUa_Byte>(OpcUa_BinaryNodeId_Numeric | flags));
        sink.put(namespaceIndex);
        sink.put(number);
    }
    return status;
}

/// A node id whose identifier is a text.
template <typename Sink, typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_TextNodeId(Sink& sink, OpcUa_Byte form,
                                                            OpcUa_UInt16 namespaceIndex,
                                                            const T& identifier)
{
    OpcUa_BinaryText text;
    OpcUa_StatusCode status = OpcUa_BinaryText_Of(identifier, text);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = sink.reserve(3 + text.size());
    if (OpcUa_IsGood(status)) {
        sink.put(form);
        sink.put(namespaceIndex);
        text.put(sink);
    }
    return status;
}

/// A node id whose identifier is a guid; a null pointer stands for the null guid.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_GuidNodeId(Sink& sink, OpcUa_Byte form,
                                                            OpcUa_UInt16 namespaceIndex,
                                                            const OpcUa_Guid* identifier)
{
    const OpcUa_StatusCode status = sink.reserve(3 + sizeof(OpcUa_Guid));
    if (OpcUa_IsGood(status)) {
        sink.put(form);
        sink.put(namespaceIndex);
        sink.put(identifier == nullptr ? OpcUa_Guid_Null : *identifier);
    }
    return status;
}

/// A node id with the flags of an expanded one, 0 for none.
template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_NodeId(Sink& sink, const OpcUa_NodeId& value,
                                                        OpcUa_Byte flags = 0)
{
    switch (value.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return OpcUa_BinaryWrite_NumericNodeId(sink, value.NamespaceIndex, value.Identifier.Numeric,
                                               flags);
    case OpcUa_IdentifierType_String:
        return OpcUa_BinaryWrite_TextNodeId(sink, OpcUa_BinaryNodeId_String | flags,
                                            value.NamespaceIndex, value.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return OpcUa_BinaryWrite_GuidNodeId(sink, OpcUa_BinaryNodeId_Guid | flags,
                                            value.NamespaceIndex, value.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return OpcUa_BinaryWrite_TextNodeId(sink, OpcUa_BinaryNodeId_ByteString | flags,
                                            value.NamespaceIndex, value.Identifier.ByteString);
    default:
        return OpcUa_BadEncodingError;
    }
}

template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_ExpandedNodeId(Sink& sink,
                                                                const OpcUa_ExpandedNodeId& value)
{
    const bool hasUri = value.NamespaceUri.strContent != nullptr;
    const bool hasServer = value.ServerIndex != 0;
    const int flags = (hasUri ? OpcUa_BinaryNodeId_HasNamespaceUri : 0) |
                      (hasServer ? OpcUa_BinaryNodeId_HasServerIndex : 0);
    OpcUa_StatusCode status =
        OpcUa_BinaryWrite_NodeId(sink, value.NodeId, static_cast<OpcUa_Byte>(flags));
    if (hasUri && OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite_Text(sink, value.NamespaceUri);
    }
    if (hasServer && OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite_Plain(sink, value.ServerIndex);
    }
    return status;
}

template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_QualifiedName(Sink& sink,
                                                               const OpcUa_QualifiedName& value)
{
    OpcUa_BinaryText name;
    OpcUa_StatusCode status = OpcUa_BinaryText_Of(value.Name, name);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    status = sink.reserve(sizeof(value.NamespaceIndex) + name.size());
    if (OpcUa_IsGood(status)) {
        sink.put(value.NamespaceIndex);
        name.put(sink);
    }
    return status;
}

template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_LocalizedText(Sink& sink,
                                                               const OpcUa_LocalizedText& value)
{
    OpcUa_BinaryText locale;
    OpcUa_BinaryText text;
    OpcUa_StatusCode status = OpcUa_BinaryText_Of(value.Locale, locale);
    if (OpcUa_IsNotBad(status)) {
        status = OpcUa_BinaryText_Of(value.Text, text);
    }
    if (OpcUa_IsBad(status)) {
        return status;
    }
    const bool hasLocale = locale.Length >= 0;
    const bool hasText = text.Length >= 0;
    status = sink.reserve(1 + (hasLocale ? locale.size() : 0) + (hasText ? text.size() : 0));
    if (OpcUa_IsBad(status)) {
        return status;
    }
    sink.put(static_cast<OpcUa_Byte>((hasLocale ? OpcUa_BinaryLocalizedText_HasLocale : 0) |
                                     (hasText ? OpcUa_BinaryLocalizedText_HasText : 0)));
    if (hasLocale) {
        locale.put(sink);
    }
    if (hasText) {
        text.put(sink);
    }
    return OpcUa_Good;
}

[[nodiscard]] inline OpcUa_Byte OpcUa_BinaryDataValue_MaskOf(const OpcUa_DataValue& value)
{
    const auto flagIf = [](bool condition, OpcUa_Byte flag) { return condition ? flag : 0; };
    return static_cast<OpcUa_Byte>(
        flagIf(value.Value.Datatype != OpcUaType_Null, OpcUa_BinaryDataValue_HasValue) |
        flagIf(value.StatusCode != OpcUa_Good, OpcUa_BinaryDataValue_HasStatusCode) |
        flagIf(OpcUa_DateTime_ToTicks(value.SourceTimestamp) != 0,
               OpcUa_BinaryDataValue_HasSourceTimestamp) |
        flagIf(value.SourcePicoseconds != 0, OpcUa_BinaryDataValue_HasSourcePicoseconds) |
        flagIf(OpcUa_DateTime_ToTicks(value.ServerTimestamp) != 0,
               OpcUa_BinaryDataValue_HasServerTimestamp) |
        flagIf(value.ServerPicoseconds != 0, OpcUa_BinaryDataValue_HasServerPicoseconds));
}

/// Writes a data value whose number takes `size` bytes, and gives where it ends. Within the room that
/// the longest one needs, fields that aren't there are overwritten by those that are.
[[nodiscard]] inline OpcUa_Byte* OpcUa_BinaryDataValue_PutNumber(OpcUa_Byte* to, OpcUa_Byte mask,
                                                                 const OpcUa_DataValue& value,
                                                                 std::size_t size)
{
    *to = mask;
    to = OpcUa_BinaryNumber_Put(to + 1, value.Value, size);
    const auto putField = [&](OpcUa_Byte flag, const auto& field) {
        std::memcpy(to, &field, sizeof(field));
        to += (mask & flag) != 0 ? sizeof(field) : 0;
    };
    putField(OpcUa_BinaryDataValue_HasStatusCode, value.StatusCode);
    putField(OpcUa_BinaryDataValue_HasSourceTimestamp, value.SourceTimestamp);
    putField(OpcUa_BinaryDataValue_HasSourcePicoseconds, value.SourcePicoseconds);
    putField(OpcUa_BinaryDataValue_HasServerTimestamp, value.ServerTimestamp);
    putField(OpcUa_BinaryDataValue_HasServerPicoseconds, value.ServerPicoseconds);
    return to;
}

template <typename Sink>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryWrite_DataValue(Sink& sink, const OpcUa_DataValue& value)
{
    const OpcUa_Byte mask = OpcUa_BinaryDataValue_MaskOf(value);
    if constexpr (!Sink::IsCounter) {
        const std::size_t size = OpcUa_BinaryNumber_SizeOf(value.Value);
        if (size != 0 && sink.room() >= OpcUa_BinaryDataValue_NumberRoom &&
            sink.Level < OpcUa_Nesting_MaxLevels) {
            sink.Buffer->Current =
                OpcUa_BinaryDataValue_PutNumber(sink.Buffer->Current, mask, value, size);
            return OpcUa_Good;
        }
    }
    OpcUa_StatusCode status = OpcUa_BinaryWrite_Plain(sink, mask);
    const auto putField = [&](OpcUa_Byte flag, const auto& field) {
        if (OpcUa_IsGood(status) && (mask & flag) != 0) {
            status = OpcUa_BinaryWrite_Plain(sink, field);
        }
    };
    if (OpcUa_IsGood(status) && (mask & OpcUa_BinaryDataValue_HasValue) != 0) {
        status = OpcUa_BinaryWrite_Variant(sink, value.Value);
    }
    putField(OpcUa_BinaryDataValue_HasStatusCode, value.StatusCode);
    putField(OpcUa_BinaryDataValue_HasSourceTimestamp, value.SourceTimestamp);
    putField(OpcUa_BinaryDataValue_HasSourcePicoseconds, value.SourcePicoseconds);
    putField(OpcUa_BinaryDataValue_HasServerTimestamp, value.ServerTimestamp);
    putField(OpcUa_BinaryDataValue_HasServerPicoseconds, value.ServerPicoseconds);
    return status;
}

template <OpcUa_Byte type, typename Sink, typename T>
OpcUa_StatusCode OpcUa_BinaryWrite(Sink& sink, const T& value)
{
    if constexpr (type == OpcUaType_Boolean) {
        return OpcUa_BinaryWrite_Plain(sink, static_cast<OpcUa_Byte>(value != OpcUa_False));
    } else if constexpr (type == OpcUaType_NodeId) {
        return OpcUa_BinaryWrite_NodeId(sink, value);
    } else if constexpr (type == OpcUaType_ExpandedNodeId) {
        return OpcUa_BinaryWrite_ExpandedNodeId(sink, value);
    } else if constexpr (type == OpcUaType_QualifiedName) {
        return OpcUa_BinaryWrite_QualifiedName(sink, value);
    } else if constexpr (type == OpcUaType_LocalizedText) {
        return OpcUa_BinaryWrite_LocalizedText(sink, value);
    } else if constexpr (type == OpcUaType_ExtensionObject) {
        return OpcUa_BinaryWrite_ExtensionObject(sink, value);
    } else if constexpr (type == OpcUaType_DataValue) {
        return OpcUa_BinaryWrite_DataValue(sink, value);
    } else if constexpr (type == OpcUaType_Variant) {
        return OpcUa_BinaryWrite_Variant(sink, value);
    } else if constexpr (type == OpcUaType_DiagnosticInfo) {
        return OpcUa_BinaryWrite_DiagnosticInfo(sink, value);
    } else if constexpr (type == OpcUaType_String || type == OpcUaType_ByteString ||
                         type == OpcUaType_XmlElement) {
        return OpcUa_BinaryWrite_Text(sink, value);
    } else {
        return OpcUa_BinaryWrite_Plain(sink, value);
    }
}
