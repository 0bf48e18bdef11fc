#include "stack/opcua_binaryread.h"

#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_variantparts.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr OpcUa_Byte knownDiagnosticInfoFlags = 0x7F;
constexpr OpcUa_Byte knownLocalizedTextFlags = 0x03;

/// Reads into a new block from the stack's allocator; the pointer is null after a failure.
template <typename T, typename Read>
OpcUa_StatusCode readNew(T*& value, Read read)
{
    value = static_cast<T*>(OpcUa_Memory_Alloc(sizeof(T)));
    if (value == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    const OpcUa_StatusCode status = read(*value);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(value);
        value = nullptr;
    }
    return status;
}

/// Reads a text into a new block with `room` bytes behind it. The block is null for the null text and
/// after a failure.
OpcUa_StatusCode readText(OpcUa_BinaryReader& reader, OpcUa_Int32 limit, std::size_t room,
                          OpcUa_Int32& length, void*& text)
{
    text = nullptr;
    OpcUa_StatusCode status = OpcUa_BinaryRead_TextLength(reader, limit, length);
    if (OpcUa_IsBad(status) || length < 0) {
        return status;
    }
    const auto size = static_cast<std::size_t>(length);
    text = OpcUa_Memory_Alloc(size + room);
    status = text == nullptr ? OpcUa_BadOutOfMemory : reader.read(text, size);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(text);
        text = nullptr;
    }
    return status;
}

/// Reads the mask in front of the fields of a record. A flag that isn't known announces a field that
/// can't be skipped.
OpcUa_StatusCode readMask(OpcUa_BinaryReader& reader, OpcUa_Byte knownFlags, OpcUa_Byte& mask)
{
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, mask);
    return OpcUa_IsGood(status) && (mask & ~knownFlags) != 0 ? OpcUa_BadDecodingError : status;
}

/// The namespace index and the identifier of the longer forms, whose type is set when it can be
/// cleared.
template <typename Read>
OpcUa_StatusCode readIdentifier(OpcUa_BinaryReader& reader, OpcUa_UInt16 type, OpcUa_NodeId& value,
                                Read read)
{
    OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, value.NamespaceIndex);
    if (OpcUa_IsGood(status)) {
        status = read();
        value.IdentifierType = type;
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_NodeId_Initialize(&value);
    }
    return status;
}

OpcUa_StatusCode readTwoByteNodeId(OpcUa_BinaryReader& reader, OpcUa_NodeId& value)
{
    OpcUa_Byte number = 0;
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, number);
    value.Identifier.Numeric = number;
    return status;
}

OpcUa_StatusCode readFourByteNodeId(OpcUa_BinaryReader& reader, OpcUa_NodeId& value)
{
    const OpcUa_StatusCode status = reader.need(3);
    if (OpcUa_IsGood(status)) {
        OpcUa_Byte namespaceIndex = 0;
        OpcUa_UInt16 number = 0;
        reader.get(namespaceIndex);
        reader.get(number);
        value.NamespaceIndex = namespaceIndex;
        value.Identifier.Numeric = number;
    }
    return status;
}

OpcUa_StatusCode readLongNodeId(OpcUa_BinaryReader& reader, OpcUa_Byte form, OpcUa_NodeId& value)
{
    auto& identifier = value.Identifier;
    switch (form) {
    case OpcUa_BinaryNodeId_Numeric:
        return readIdentifier(reader, OpcUa_IdentifierType_Numeric, value,
                              [&] { return OpcUa_BinaryRead_Plain(reader, identifier.Numeric); });
    case OpcUa_BinaryNodeId_String:
        return readIdentifier(reader, OpcUa_IdentifierType_String, value,
                              [&] { return OpcUa_BinaryRead_String(reader, identifier.String); });
    case OpcUa_BinaryNodeId_Guid:
        return readIdentifier(reader, OpcUa_IdentifierType_Guid, value, [&] {
            return readNew(identifier.Guid,
                           [&](OpcUa_Guid& guid) { return OpcUa_BinaryRead_Plain(reader, guid); });
        });
    case OpcUa_BinaryNodeId_ByteString:
        return readIdentifier(reader, OpcUa_IdentifierType_Opaque, value, [&] {
            return OpcUa_BinaryRead_ByteString(reader, identifier.ByteString);
        });
    default:
        return OpcUa_BadDecodingError;
    }
}

/// Fields behind the node id of an expanded one.
OpcUa_StatusCode readExpansion(OpcUa_BinaryReader& reader, OpcUa_Byte flags,
                               OpcUa_ExpandedNodeId& value)
{
    OpcUa_StatusCode status = OpcUa_Good;
    if ((flags & OpcUa_BinaryNodeId_HasNamespaceUri) != 0) {
        status = OpcUa_BinaryRead_String(reader, value.NamespaceUri);
    }
    if (OpcUa_IsGood(status) && (flags & OpcUa_BinaryNodeId_HasServerIndex) != 0) {
        status = OpcUa_BinaryRead_Plain(reader, value.ServerIndex);
    }
    return status;
}

OpcUa_StatusCode readPicoseconds(OpcUa_BinaryReader& reader, OpcUa_UInt16& picoseconds)
{
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, picoseconds);
    picoseconds = std::min(picoseconds, OpcUa_BinaryDataValue_MaxPicoseconds);
    return status;
}

OpcUa_StatusCode readDataValueFields(OpcUa_BinaryReader& reader, OpcUa_Byte mask,
                                     OpcUa_DataValue& value)
{
    OpcUa_StatusCode status = OpcUa_Good;
    const auto readField = [&](OpcUa_Byte flag, auto read, auto& field) {
        if (OpcUa_IsGood(status) && (mask & flag) != 0) {
            status = read(reader, field);
        }
    };
    readField(OpcUa_BinaryDataValue_HasValue, OpcUa_BinaryRead_Variant, value.Value);
    readField(OpcUa_BinaryDataValue_HasStatusCode, OpcUa_BinaryRead_Plain<OpcUa_StatusCode>,
              value.StatusCode);
    readField(OpcUa_BinaryDataValue_HasSourceTimestamp, OpcUa_BinaryRead_Plain<OpcUa_DateTime>,
              value.SourceTimestamp);
    readField(OpcUa_BinaryDataValue_HasSourcePicoseconds, readPicoseconds, value.SourcePicoseconds);
    readField(OpcUa_BinaryDataValue_HasServerTimestamp, OpcUa_BinaryRead_Plain<OpcUa_DateTime>,
              value.ServerTimestamp);
    readField(OpcUa_BinaryDataValue_HasServerPicoseconds, readPicoseconds, value.ServerPicoseconds);
    return status;
}

OpcUa_StatusCode readDiagnosticInfoFields(OpcUa_BinaryReader& reader, OpcUa_Byte mask,
                                          OpcUa_DiagnosticInfo& value)
{
    OpcUa_StatusCode status = OpcUa_Good;
    const auto readField = [&](OpcUa_Byte flag, auto read, auto& field) {
        if (OpcUa_IsGood(status) && (mask & flag) != 0) {
            status = read(reader, field);
        }
    };
    constexpr auto& readIndex = OpcUa_BinaryRead_Plain<OpcUa_Int32>;
    readField(OpcUa_BinaryDiagnosticInfo_HasSymbolicId, readIndex, value.SymbolicId);
    readField(OpcUa_BinaryDiagnosticInfo_HasNamespaceUri, readIndex, value.NamespaceUri);
    readField(OpcUa_BinaryDiagnosticInfo_HasLocale, readIndex, value.Locale);
    readField(OpcUa_BinaryDiagnosticInfo_HasLocalizedText, readIndex, value.LocalizedText);
    readField(OpcUa_BinaryDiagnosticInfo_HasAdditionalInfo, OpcUa_BinaryRead_String,
              value.AdditionalInfo);
    readField(OpcUa_BinaryDiagnosticInfo_HasInnerStatusCode,
              OpcUa_BinaryRead_Plain<OpcUa_StatusCode>, value.InnerStatusCode);
    if (OpcUa_IsGood(status) && (mask & OpcUa_BinaryDiagnosticInfo_HasInnerDiagnosticInfo) != 0) {
        status = readNew(value.InnerDiagnosticInfo, [&](OpcUa_DiagnosticInfo& inner) {
            return OpcUa_BinaryRead_DiagnosticInfo(reader, inner);
        });
    }
    return status;
}

OpcUa_StatusCode readScalar(OpcUa_BinaryReader& reader, OpcUa_Byte type, OpcUa_VariantValue& value)
{
    return OpcUa_BuiltInType_Dispatch(
        type, OpcUa_BadDecodingError, [&]<OpcUa_Byte number, typename T>() {
            if constexpr (OpcUa_BuiltInType_IsByPointer(number)) {
                T* pointer = nullptr;
                const OpcUa_StatusCode status = readNew(
                    pointer, [&](T& content) { return OpcUa_BinaryRead<number>(reader, content); });
                OpcUa_VariantValue_SetPointer(value, pointer);
                return status;
            } else {
                return OpcUa_BinaryRead<number>(reader, *reinterpret_cast<T*>(&value));
            }
        });
}

/// Exchanges the array that was read for a matrix.
OpcUa_StatusCode readDimensions(OpcUa_BinaryReader& reader, OpcUa_Byte type,
                                OpcUa_VariantValue& value)
{
    const OpcUa_VariantArray array = value.Array;
    OpcUa_VariantMatrix matrix = {0, nullptr, array.Elements};
    void* dimensions = nullptr;
    OpcUa_StatusCode status =
        OpcUa_BinaryRead_Array(reader, OpcUaType_Int32, &dimensions, &matrix.NoOfDimensions);
    matrix.Dimensions = static_cast<OpcUa_Int32*>(dimensions);
    if (OpcUa_IsGood(status) && OpcUa_BinaryMatrix_SizeOf(matrix) != std::max(array.Length, 0)) {
        status = OpcUa_BadDecodingError;
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_Elements_Free(*OpcUa_BuiltInType_GetTraits(type), array.Elements, array.Length);
        OpcUa_Memory_Free(matrix.Dimensions);
        return status;
    }
    value.Matrix = matrix;
    return status;
}

OpcUa_StatusCode readVariantValue(OpcUa_BinaryReader& reader, OpcUa_Byte type, OpcUa_Byte shape,
                                  OpcUa_Variant& value)
{
    if (shape == 0) {
        return type == OpcUaType_Null ? OpcUa_Good : readScalar(reader, type, value.Value);
    }
    // Dimensions without an array, and elements without a type, are none of the standard's forms.
    if ((shape & OpcUa_BinaryVariant_IsArray) == 0 || type == OpcUaType_Null) {
        return OpcUa_BadDecodingError;
    }
    OpcUa_VariantArray& array = value.Value.Array;
    const OpcUa_StatusCode status =
        OpcUa_BinaryRead_Array(reader, type, &array.Elements, &array.Length);
    value.ArrayType = OpcUa_VariantArrayType_Array;
    if (OpcUa_IsBad(status) || (shape & OpcUa_BinaryVariant_HasDimensions) == 0) {
        return status;
    }
    value.ArrayType = OpcUa_VariantArrayType_Matrix;
    return readDimensions(reader, type, value.Value);
}

template <typename T>
OpcUa_StatusCode readMemory(OpcUa_BinaryReader& reader, std::size_t count, void** values)
{
    const std::size_t size = count * sizeof(T);
    if (size > reader.remaining()) {
        return OpcUa_BadEndOfStream;
    }
    void* block = OpcUa_Memory_Alloc(size);
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    const OpcUa_StatusCode status = reader.read(block, size);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(block);
        // One by one the last number would have been cut.
        return status == OpcUa_BadExpectedStreamToBlock ? OpcUa_BadEndOfStream : status;
    }
    *values = block;
    return status;
}

OpcUa_StatusCode readBooleans(OpcUa_BinaryReader& reader, std::size_t count, void** values)
{
    const OpcUa_StatusCode status = readMemory<OpcUa_Boolean>(reader, count, values);
    if (OpcUa_IsGood(status)) {
        auto* booleans = static_cast<OpcUa_Boolean*>(*values);
        std::transform(booleans, booleans + count, booleans,
                       [](OpcUa_Boolean value) { return value != 0 ? OpcUa_True : OpcUa_False; });
    }
    return status;
}

template <OpcUa_Byte type, typename T>
OpcUa_StatusCode readElements(OpcUa_BinaryReader& reader, OpcUa_Int32 count, void** values)
{
    if constexpr (type == OpcUaType_Boolean) {
        return readBooleans(reader, static_cast<std::size_t>(count), values);
    } else if constexpr (OpcUa_BinaryType_IsCopiedAsMemory<type, T>) {
        return readMemory<T>(reader, static_cast<std::size_t>(count), values);
    } else {
        return OpcUa_BinaryRead_Elements(
            reader, *OpcUa_BuiltInType_GetTraits(type), OpcUa_BinaryType_MinimalSizes[type], count,
            values, [&reader](void* element) {
                return OpcUa_BinaryRead<type>(reader, *static_cast<T*>(element));
            });
    }
}

} // namespace

OpcUa_StatusCode OpcUa_BinaryRead_Nowhere(const OpcUa_ElementTraits& traits, OpcUa_Int32 count,
                                          void* reading,
                                          OpcUa_StatusCode (*readElement)(void*, void*))
{
    void* element = OpcUa_Memory_Alloc(traits.Size);
    OpcUa_StatusCode status = element == nullptr ? OpcUa_BadOutOfMemory : OpcUa_Good;
    for (OpcUa_Int32 i = 0; i < count && OpcUa_IsGood(status); ++i) {
        status = readElement(reading, element);
        if (OpcUa_IsGood(status)) {
            OpcUa_Elements_Clear(traits, element, 1);
        }
    }
    OpcUa_Memory_Free(element);
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_AnyString(OpcUa_BinaryReader& reader, OpcUa_String& value)
{
    value = {};
    OpcUa_Int32 length = 0;
    void* text = nullptr;
    const OpcUa_StatusCode status =
        readText(reader, reader.Context->MaxStringLength, 1, length, text);
    if (text != nullptr) {
        auto* content = static_cast<char*>(text);
        content[length] = '\0';
        value = {OpcUa_String_OwnsContent, static_cast<OpcUa_UInt32>(length), content};
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_AnyByteString(OpcUa_BinaryReader& reader, OpcUa_ByteString& value)
{
    OpcUa_Int32 length = 0;
    void* data = nullptr;
    const OpcUa_StatusCode status =
        readText(reader, reader.Context->MaxByteStringLength, 0, length, data);
    value = {data == nullptr ? -1 : length, static_cast<OpcUa_Byte*>(data)};
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_FlaggedNodeId(OpcUa_BinaryReader& reader, OpcUa_Byte allowedFlags,
                                                OpcUa_NodeId& value, OpcUa_Byte& flags)
{
    OpcUa_NodeId_Initialize(&value);
    OpcUa_Byte first = 0;
    const OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, first);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    flags = first & allowedFlags;
    const auto form = static_cast<OpcUa_Byte>(first & ~allowedFlags);
    switch (form) {
    case OpcUa_BinaryNodeId_TwoByte:
        return readTwoByteNodeId(reader, value);
    case OpcUa_BinaryNodeId_FourByte:
        return readFourByteNodeId(reader, value);
    default:
        return readLongNodeId(reader, form, value);
    }
}

OpcUa_StatusCode OpcUa_BinaryRead_AnyExpandedNodeId(OpcUa_BinaryReader& reader,
                                                    OpcUa_ExpandedNodeId& value)
{
    value = {};
    OpcUa_Byte flags = 0;
    OpcUa_StatusCode status = OpcUa_BinaryRead_FlaggedNodeId(
        reader, OpcUa_BinaryNodeId_HasNamespaceUri | OpcUa_BinaryNodeId_HasServerIndex,
        value.NodeId, flags);
    if (OpcUa_IsGood(status)) {
        status = readExpansion(reader, flags, value);
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_ExpandedNodeId_Clear(&value);
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_LocalizedText(OpcUa_BinaryReader& reader,
                                                OpcUa_LocalizedText& value)
{
    value = {};
    OpcUa_Byte mask = 0;
    OpcUa_StatusCode status = readMask(reader, knownLocalizedTextFlags, mask);
    if (OpcUa_IsGood(status) && (mask & OpcUa_BinaryLocalizedText_HasLocale) != 0) {
        status = OpcUa_BinaryRead_String(reader, value.Locale);
    }
    if (OpcUa_IsGood(status) && (mask & OpcUa_BinaryLocalizedText_HasText) != 0) {
        status = OpcUa_BinaryRead_String(reader, value.Text);
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_LocalizedText_Clear(&value);
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_AnyDataValue(OpcUa_BinaryReader& reader, OpcUa_DataValue& value)
{
    value = {};
    OpcUa_Byte mask = 0;
    OpcUa_StatusCode status = readMask(reader, OpcUa_BinaryDataValue_KnownFlags, mask);
    if (OpcUa_IsGood(status)) {
        status = readDataValueFields(reader, mask, value);
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_DataValue_Clear(&value);
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_DiagnosticInfo(OpcUa_BinaryReader& reader,
                                                 OpcUa_DiagnosticInfo& value)
{
    OpcUa_DiagnosticInfo_Initialize(&value);
    const OpcUa_BinaryLevel level(reader.Level);
    if (level.isTooDeep()) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    OpcUa_Byte mask = 0;
    OpcUa_StatusCode status = readMask(reader, knownDiagnosticInfoFlags, mask);
    if (OpcUa_IsGood(status)) {
        status = readDiagnosticInfoFields(reader, mask, value);
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_DiagnosticInfo_Clear(&value);
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_AnyVariant(OpcUa_BinaryReader& reader, OpcUa_Variant& value)
{
    value = {};
    const OpcUa_BinaryLevel level(reader.Level);
    if (level.isTooDeep()) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    OpcUa_Byte first = 0;
    OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, first);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    const OpcUa_Byte type = first & OpcUa_BinaryVariant_TypeMask;
    if (type > OpcUaType_DiagnosticInfo) {
        return OpcUa_BadDecodingError;
    }
    const auto shape = static_cast<OpcUa_Byte>(first & ~OpcUa_BinaryVariant_TypeMask);
    status = readVariantValue(reader, type, shape, value);
    if (OpcUa_IsBad(status)) {
        OpcUa_Variant_Initialize(&value);
        return status;
    }
    value.Datatype = type;
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_Count(OpcUa_BinaryReader& reader, OpcUa_Int32& count)
{
    OpcUa_StatusCode status = OpcUa_BinaryRead_Plain(reader, count);
    if (OpcUa_IsGood(status) && count < -1) {
        status = OpcUa_BadDecodingError;
    }
    if (OpcUa_IsGood(status) &&
        (OpcUa_BinaryLimit_IsExceeded(reader.Context->MaxArrayLength, count) ||
         OpcUa_BinaryLimit_IsExceeded(reader.Context->MaxMessageSize, count))) {
        status = OpcUa_BadEncodingLimitsExceeded;
    }
    if (OpcUa_IsBad(status)) {
        count = 0;
    }
    return status;
}

OpcUa_StatusCode OpcUa_BinaryRead_Value(OpcUa_BinaryReader& reader, OpcUa_Byte type, void* value)
{
    return OpcUa_BuiltInType_Dispatch(
        type, OpcUa_BadDecodingError, [&]<OpcUa_Byte number, typename T>() {
            return OpcUa_BinaryRead<number>(reader, *static_cast<T*>(value));
        });
}

OpcUa_StatusCode OpcUa_BinaryRead_Array(OpcUa_BinaryReader& reader, OpcUa_Byte type, void** values,
                                        OpcUa_Int32* count)
{
    *values = nullptr;
    OpcUa_StatusCode status = OpcUa_BinaryRead_Count(reader, *count);
    if (OpcUa_IsBad(status) || *count < 1) {
        return status;
    }
    status = OpcUa_BuiltInType_Dispatch(type, OpcUa_BadDecodingError,
                                        [&]<OpcUa_Byte number, typename T>() {
                                            return readElements<number, T>(reader, *count, values);
                                        });
    if (OpcUa_IsBad(status)) {
        *count = 0;
    }
    return status;
}
