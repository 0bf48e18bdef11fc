#pragma once

#include "platform/allocator.h"
#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_binaryfast.h"
#include "stack/opcua_binaryforms.h"
#include "stack/opcua_binarysource.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <type_traits>

// The counterpart of "stack/opcua_binarywrite.h". Every function fills memory of any content without
// freeing what was there, and leaves a cleared value after a failure.

/// Reads a value of a built-in type by its number: numbers, times, guids and texts inline.
template <OpcUa_Byte type, typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead(OpcUa_BinaryReader& reader, T& value);

/// The same with a number that is known only at run time, 1 to 25. `BadDecodingError` for any other.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_Value(OpcUa_BinaryReader& reader, OpcUa_Byte type,
                                                      void* value);

/// Reads the count and the elements of an array of a built-in type, 1 to 25.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_Array(OpcUa_BinaryReader& reader, OpcUa_Byte type,
                                                      void** values, OpcUa_Int32* count);

/// Reads the count of an array and holds it against the limits; -1 or more. After a failure it is 0.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_Count(OpcUa_BinaryReader& reader,
                                                      OpcUa_Int32& count);

/// Reads a variant of any type and shape.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_AnyVariant(OpcUa_BinaryReader& reader,
                                                           OpcUa_Variant& value);
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_ExtensionObject(OpcUa_BinaryReader& reader,
                                                                OpcUa_ExtensionObject& value);
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_DiagnosticInfo(OpcUa_BinaryReader& reader,
                                                               OpcUa_DiagnosticInfo& value);

/// Reads the id of a message's encoding and its record into a new block, and gives its row.
/// `BadDecodingError` for an id that the context doesn't know. Both are null after a failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_Message(OpcUa_BinaryReader& reader, void*& message,
                                                        const OpcUa_EncodeableType*& type);

/// The same with a short way for numbers.
[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_Variant(OpcUa_BinaryReader& reader,
                                                               OpcUa_Variant& value)
{
    if (reader.available() >= OpcUa_BinaryNumber_Room && reader.Level < OpcUa_Nesting_MaxLevels) {
        const std::size_t size = OpcUa_BinaryNumber_Sizes[*reader.Buffer->Current];
        if (size != 0) {
            value = {};
            reader.Buffer->Current = OpcUa_BinaryNumber_Get(reader.Buffer->Current, value, size);
            return OpcUa_Good;
        }
    }
    return OpcUa_BinaryRead_AnyVariant(reader, value);
}

/// Compares a length with a limit, where 0 is no limit.
[[nodiscard]] constexpr bool OpcUa_BinaryLimit_IsExceeded(OpcUa_Int32 limit, OpcUa_Int32 length)
{
    return limit > 0 && length > limit;
}

template <typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_Plain(OpcUa_BinaryReader& reader, T& value)
{
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= OpcUa_BinaryReader::WindowSize);
    const OpcUa_StatusCode status = reader.need(sizeof(T));
    if (OpcUa_IsGood(status)) {
        reader.get(value);
    } else {
        value = T{};
    }
    return status;
}

/// Any number but 0 is true.
[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_Boolean(OpcUa_BinaryReader& reader,
                                                               OpcUa_Boolean& value)
{
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, value);
    value = value != 0 ? OpcUa_True : OpcUa_False;
    return status;
}

/// Reads the length of a text and holds it against a limit and the stream; -1 or more.
[[nodiscard]] inline OpcUa_StatusCode
OpcUa_BinaryRead_TextLength(OpcUa_BinaryReader& reader, OpcUa_Int32 limit, OpcUa_Int32& length)
{
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, length);
    if (OpcUa_IsBad(status) || length == -1) {
        return status;
    }
    if (length < 0) {
        return OpcUa_BadDecodingError;
    }
    if (OpcUa_BinaryLimit_IsExceeded(limit, length)) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    return static_cast<std::size_t>(length) > reader.remaining() ? OpcUa_BadExpectedStreamToBlock
                                                                 : OpcUa_Good;
}

/// A text on the wire, in the buffer.
struct OpcUa_BinaryTextView
{
    const OpcUa_Byte* Bytes;
    std::size_t Size;
};

/// The text that the reader is at. No bytes if it is null, goes beyond the buffer or exceeds the limit.
[[nodiscard]] inline OpcUa_BinaryTextView
OpcUa_BinaryTextView_Peek(const OpcUa_BinaryReader& reader, OpcUa_Int32 limit)
{
    OpcUa_Int32 length;
    const OpcUa_Byte* from = reader.Buffer->Current;
    const std::size_t available = reader.available();
    if (available < sizeof(length)) {
        return {};
    }
    std::memcpy(&length, from, sizeof(length));
    const std::size_t size = static_cast<OpcUa_UInt32>(length); // negative: beyond every buffer
    if (size > available - sizeof(length) || OpcUa_BinaryLimit_IsExceeded(limit, length)) {
        return {};
    }
    return {from + sizeof(length), size};
}

/// Copies a text that was peeked at into a block, and leaves the reader behind it.
inline void OpcUa_BinaryTextView_Take(OpcUa_BinaryReader& reader, OpcUa_BinaryTextView text,
                                      void* block)
{
    OpcUa_Binary_Copy(block, text.Bytes, text.Size);
    reader.Buffer->Current = text.Bytes + text.Size;
}

/// Reads a text of any kind.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_AnyString(OpcUa_BinaryReader& reader,
                                                          OpcUa_String& value);
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_AnyByteString(OpcUa_BinaryReader& reader,
                                                              OpcUa_ByteString& value);

/// The same with a short way for a text in the buffer, which most are.
[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_String(OpcUa_BinaryReader& reader,
                                                              OpcUa_String& value)
{
    const OpcUa_BinaryTextView text =
        OpcUa_BinaryTextView_Peek(reader, reader.Context->MaxStringLength);
    if (text.Bytes == nullptr) {
        return OpcUa_BinaryRead_AnyString(reader, value);
    }
    auto* content = static_cast<char*>(OpcUa_Memory_Alloc(text.Size + 1));
    if (content == nullptr) {
        value = {};
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_BinaryTextView_Take(reader, text, content);
    content[text.Size] = '\0';
    value = {OpcUa_String_OwnsContent, static_cast<OpcUa_UInt32>(text.Size), content};
    return OpcUa_Good;
}

[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_ByteString(OpcUa_BinaryReader& reader,
                                                                  OpcUa_ByteString& value)
{
    const OpcUa_BinaryTextView text =
        OpcUa_BinaryTextView_Peek(reader, reader.Context->MaxByteStringLength);
    if (text.Bytes == nullptr) {
        return OpcUa_BinaryRead_AnyByteString(reader, value);
    }
    auto* data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(text.Size));
    if (data == nullptr) {
        value = {-1, nullptr};
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_BinaryTextView_Take(reader, text, data);
    value = {static_cast<OpcUa_Int32>(text.Size), data};
    return OpcUa_Good;
}

/// Reads a node id whose flags are among those allowed, and gives them back.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_FlaggedNodeId(OpcUa_BinaryReader& reader,
                                                              OpcUa_Byte allowedFlags,
                                                              OpcUa_NodeId& value,
                                                              OpcUa_Byte& flags);

/// Reads one of the two short forms without flags; false leaves the reader where it was.
[[nodiscard]] inline bool OpcUa_BinaryRead_ShortNodeId(OpcUa_BinaryReader& reader,
                                                       OpcUa_NodeId& value)
{
    constexpr std::size_t longestSize = 4;
    const OpcUa_Byte* from = reader.Buffer->Current;
    if (reader.available() < longestSize || *from > OpcUa_BinaryNodeId_FourByte) {
        return false;
    }
    value = {};
    if (*from == OpcUa_BinaryNodeId_TwoByte) {
        value.Identifier.Numeric = from[1];
        reader.Buffer->Current += 2;
        return true;
    }
    OpcUa_UInt16 number;
    std::memcpy(&number, from + 2, sizeof(number));
    value.NamespaceIndex = from[1];
    value.Identifier.Numeric = number;
    reader.Buffer->Current += longestSize;
    return true;
}

[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_NodeId(OpcUa_BinaryReader& reader,
                                                              OpcUa_NodeId& value)
{
    if (OpcUa_BinaryRead_ShortNodeId(reader, value)) {
        return OpcUa_Good;
    }
    OpcUa_Byte flags = 0;
    return OpcUa_BinaryRead_FlaggedNodeId(reader, 0, value, flags);
}

/// An expanded node id of any form.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_AnyExpandedNodeId(OpcUa_BinaryReader& reader,
                                                                  OpcUa_ExpandedNodeId& value);

[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_ExpandedNodeId(OpcUa_BinaryReader& reader,
                                                                      OpcUa_ExpandedNodeId& value)
{
    if (OpcUa_BinaryRead_ShortNodeId(reader, value.NodeId)) {
        value.NamespaceUri = {};
        value.ServerIndex = 0;
        return OpcUa_Good;
    }
    return OpcUa_BinaryRead_AnyExpandedNodeId(reader, value);
}

[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_QualifiedName(OpcUa_BinaryReader& reader,
                                                                     OpcUa_QualifiedName& value)
{
    value = {};
    OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, value.NamespaceIndex);
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead_String(reader, value.Name);
        if (OpcUa_IsBad(status)) {
            value.NamespaceIndex = 0;
        }
    }
    return status;
}

[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_LocalizedText(OpcUa_BinaryReader& reader,
                                                              OpcUa_LocalizedText& value);

/// Reads a data value into one that is all zero, out of a buffer with the bytes of the longest one that
/// holds a number. False for one that holds anything else, with the reader where it was.
[[nodiscard]] inline bool OpcUa_BinaryRead_NumberDataValue(OpcUa_BinaryReader& reader,
                                                           OpcUa_DataValue& value)
{
    const OpcUa_Byte* from = reader.Buffer->Current;
    const OpcUa_Byte mask = *from;
    ++from;
    const std::size_t size = OpcUa_BinaryNumber_Sizes[*from];
    if ((mask & OpcUa_BinaryDataValue_HasValue) == 0 || mask > OpcUa_BinaryDataValue_KnownFlags ||
        size == 0) {
        return false;
    }
    from = OpcUa_BinaryNumber_Get(from, value.Value, size);
    const auto getField = [&](OpcUa_Byte flag, auto& field) {
        if ((mask & flag) != 0) {
            std::memcpy(&field, from, sizeof(field));
            from += sizeof(field);
        }
    };
    const auto getPicoseconds = [&](OpcUa_Byte flag, OpcUa_UInt16& field) {
        getField(flag, field);
        field = std::min(field, OpcUa_BinaryDataValue_MaxPicoseconds);
    };
    getField(OpcUa_BinaryDataValue_HasStatusCode, value.StatusCode);
    getField(OpcUa_BinaryDataValue_HasSourceTimestamp, value.SourceTimestamp);
    getPicoseconds(OpcUa_BinaryDataValue_HasSourcePicoseconds, value.SourcePicoseconds);
    getField(OpcUa_BinaryDataValue_HasServerTimestamp, value.ServerTimestamp);
    getPicoseconds(OpcUa_BinaryDataValue_HasServerPicoseconds, value.ServerPicoseconds);
    reader.Buffer->Current = from;
    return true;
}

/// Reads a data value of any kind.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_AnyDataValue(OpcUa_BinaryReader& reader,
                                                             OpcUa_DataValue& value);

/// The same with a short way for numbers.
[[nodiscard]] inline OpcUa_StatusCode OpcUa_BinaryRead_DataValue(OpcUa_BinaryReader& reader,
                                                                 OpcUa_DataValue& value)
{
    if (reader.available() >= OpcUa_BinaryDataValue_NumberRoom &&
        reader.Level < OpcUa_Nesting_MaxLevels) {
        value = {};
        if (OpcUa_BinaryRead_NumberDataValue(reader, value)) {
            return OpcUa_Good;
        }
    }
    return OpcUa_BinaryRead_AnyDataValue(reader, value);
}

template <OpcUa_Byte type, typename T>
OpcUa_StatusCode OpcUa_BinaryRead(OpcUa_BinaryReader& reader, T& value)
{
    if constexpr (type == OpcUaType_Boolean) {
        return OpcUa_BinaryRead_Boolean(reader, value);
    } else if constexpr (type == OpcUaType_String) {
        return OpcUa_BinaryRead_String(reader, value);
    } else if constexpr (type == OpcUaType_ByteString || type == OpcUaType_XmlElement) {
        return OpcUa_BinaryRead_ByteString(reader, value);
    } else if constexpr (type == OpcUaType_NodeId) {
        return OpcUa_BinaryRead_NodeId(reader, value);
    } else if constexpr (type == OpcUaType_ExpandedNodeId) {
        return OpcUa_BinaryRead_ExpandedNodeId(reader, value);
    } else if constexpr (type == OpcUaType_QualifiedName) {
        return OpcUa_BinaryRead_QualifiedName(reader, value);
    } else if constexpr (type == OpcUaType_LocalizedText) {
        return OpcUa_BinaryRead_LocalizedText(reader, value);
    } else if constexpr (type == OpcUaType_ExtensionObject) {
        return OpcUa_BinaryRead_ExtensionObject(reader, value);
    } else if constexpr (type == OpcUaType_DataValue) {
        return OpcUa_BinaryRead_DataValue(reader, value);
    } else if constexpr (type == OpcUaType_Variant) {
        return OpcUa_BinaryRead_Variant(reader, value);
    } else if constexpr (type == OpcUaType_DiagnosticInfo) {
        return OpcUa_BinaryRead_DiagnosticInfo(reader, value);
    } else {
        return OpcUa_BinaryRead_Plain(reader, value);
    }
}
