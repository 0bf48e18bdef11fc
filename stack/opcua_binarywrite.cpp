#include "stack/opcua_binarywrite.h"

#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_namespacetable.h"
#include "stack/opcua_variantparts.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

/// Any number but 0 goes out as 1.
template <typename Sink>
OpcUa_StatusCode writeBooleans(Sink& sink, const OpcUa_Boolean* values, std::size_t count)
{
    const OpcUa_StatusCode status = sink.reserve(count);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    std::array<OpcUa_Byte, 256> chunk;
    for (std::size_t done = 0; done < count;) {
        const std::size_t size = std::min(chunk.size(), count - done);
        std::transform(values + done, values + done + size, chunk.begin(),
                       [](OpcUa_Boolean value) { return static_cast<OpcUa_Byte>(value != 0); });
        sink.putBytes(chunk.data(), size);
        done += size;
    }
    return status;
}

template <typename Sink>
OpcUa_StatusCode writeMemory(Sink& sink, const void* values, std::size_t size)
{
    const OpcUa_StatusCode status = sink.reserve(size);
    if (OpcUa_IsGood(status)) {
        sink.putBytes(values, size);
    }
    return status;
}

template <OpcUa_Byte type, typename T, typename Sink>
OpcUa_StatusCode writeElements(Sink& sink, const T* values, std::size_t count)
{
    if constexpr (type == OpcUaType_Boolean) {
        return writeBooleans(sink, values, count);
    } else if constexpr (OpcUa_BinaryType_IsCopiedAsMemory<type, T>) {
        return writeMemory(sink, values, count * sizeof(T));
    } else {
        OpcUa_StatusCode status = OpcUa_Good;
        for (std::size_t i = 0; i < count && OpcUa_IsGood(status); ++i) {
            status = OpcUa_BinaryWrite<type>(sink, values[i]);
        }
        return status;
    }
}

/// A null pointer is written as the empty value of its type.
template <typename Sink>
OpcUa_StatusCode writePointed(Sink& sink, OpcUa_Byte type, const OpcUa_ElementTraits& traits,
                              const void* value)
{
    if (value != nullptr) {
        return OpcUa_BinaryWrite_Value(sink, type, value);
    }
    union
    {
        OpcUa_DiagnosticInfo diagnosticInfo;
        OpcUa_DataValue dataValue;
        OpcUa_ExtensionObject extensionObject;
        OpcUa_ExpandedNodeId nodeId;
    } empty;
    traits.Initialize(&empty);
    return OpcUa_BinaryWrite_Value(sink, type, &empty);
}

template <typename Sink>
OpcUa_StatusCode writeScalar(Sink& sink, const OpcUa_Variant& value)
{
    if (value.Datatype == OpcUaType_Null) {
        return OpcUa_BinaryWrite_Plain(sink, OpcUaType_Null);
    }
    const OpcUa_ElementTraits* traits = OpcUa_BuiltInType_GetTraits(value.Datatype);
    if (traits == nullptr) {
        return OpcUa_BadEncodingError;
    }
    const OpcUa_StatusCode status = OpcUa_BinaryWrite_Plain(sink, value.Datatype);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    return traits->IsByPointer ? writePointed(sink, value.Datatype, *traits,
                                              OpcUa_VariantValue_GetPointer(value.Value))
                               : OpcUa_BinaryWrite_Value(sink, value.Datatype, &value.Value);
}

template <typename Sink>
OpcUa_StatusCode writeArray(Sink& sink, OpcUa_Byte type, const OpcUa_VariantArray& array)
{
    const OpcUa_StatusCode status =
        OpcUa_BinaryWrite_Plain(sink, static_cast<OpcUa_Byte>(type | OpcUa_BinaryVariant_IsArray));
    return OpcUa_IsBad(status) ? status
                               : OpcUa_BinaryWrite_Array(sink, type, array.Elements, array.Length);
}

template <typename Sink>
OpcUa_StatusCode writeMatrix(Sink& sink, OpcUa_Byte type, const OpcUa_VariantMatrix& matrix)
{
    const OpcUa_Int32 size = OpcUa_BinaryMatrix_SizeOf(matrix);
    if (size < 0) {
        return OpcUa_BadEncodingError;
    }
    OpcUa_StatusCode status =
        OpcUa_BinaryWrite_Plain(sink, static_cast<OpcUa_Byte>(type | OpcUa_BinaryVariant_IsArray |
                                                              OpcUa_BinaryVariant_HasDimensions));
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite_Array(sink, type, matrix.Elements, size);
    }
    return OpcUa_IsBad(status) ? status
                               : OpcUa_BinaryWrite_Array(sink, OpcUaType_Int32, matrix.Dimensions,
                                                         matrix.NoOfDimensions);
}

/// The id of a row's binary encoding: with an index where the context knows the namespace, otherwise
/// with the URI itself.
template <typename Sink>
OpcUa_StatusCode writeTypeId(Sink& sink, const OpcUa_EncodeableType& type)
{
    OpcUa_UInt16 index = 0;
    if (OpcUa_IsGood(OpcUa_BinaryEncoder_FindNamespace(sink.writer(), type, index))) {
        return OpcUa_BinaryWrite_NumericNodeId(sink, index, type.BinaryEncodingTypeId, 0);
    }
    const OpcUa_StatusCode status = OpcUa_BinaryWrite_NumericNodeId(
        sink, 0, type.BinaryEncodingTypeId, OpcUa_BinaryNodeId_HasNamespaceUri);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    OpcUa_String uri = {0, static_cast<OpcUa_UInt32>(std::strlen(type.NamespaceUri)),
                        const_cast<char*>(type.NamespaceUri)};
    return OpcUa_BinaryWrite_Text(sink, uri);
}

/// The length in front of a record is known when the record is written.
OpcUa_StatusCode writeRecordBody(OpcUa_BinaryWriter& writer, const OpcUa_EncodeableType& type,
                                 const void* record)
{
    OpcUa_StatusCode status = OpcUa_BinaryWrite_Plain(writer, OpcUa_Int32{0});
    if (OpcUa_IsBad(status)) {
        return status;
    }
    const std::ptrdiff_t start = writer.Buffer->Current - writer.Buffer->Begin;
    status = type.Encode(record, writer.Encoder);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    OpcUa_Byte* body = writer.Buffer->Begin + start;
    const auto length = static_cast<OpcUa_Int32>(writer.Buffer->Current - body);
    std::memcpy(body - sizeof(length), &length, sizeof(length));
    return status;
}

OpcUa_StatusCode writeRecordBody(OpcUa_BinaryCounter& counter, const OpcUa_EncodeableType& type,
                                 const void* record)
{
    OpcUa_Int32 length = 0;
    const OpcUa_StatusCode status = type.GetSize(record, counter.Writer.Encoder, &length);
    if (OpcUa_IsGood(status)) {
        counter.Size += sizeof(length) + static_cast<OpcUa_UInt32>(length);
    }
    return status;
}

template <typename Sink>
OpcUa_StatusCode writeRecord(Sink& sink, const OpcUa_ExtensionObject& value)
{
    const auto& body = value.Body.EncodeableObject;
    if (body.Object == nullptr || body.Type == nullptr || body.Type->Encode == nullptr ||
        body.Type->GetSize == nullptr) {
        return OpcUa_BadEncodingError;
    }
    OpcUa_StatusCode status = writeTypeId(sink, *body.Type);
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite_Plain(sink, OpcUa_BinaryBody_Bytes);
    }
    return OpcUa_IsBad(status) ? status : writeRecordBody(sink, *body.Type, body.Object);
}

template <typename Sink>
OpcUa_StatusCode writeEncodedBody(Sink& sink, const OpcUa_ExtensionObject& value, OpcUa_Byte form)
{
    OpcUa_StatusCode status = OpcUa_BinaryWrite_ExpandedNodeId(sink, value.TypeId);
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite_Plain(sink, form);
    }
    if (OpcUa_IsBad(status) || form == OpcUa_BinaryBody_None) {
        return status;
    }
    return OpcUa_BinaryWrite_Text(sink, value.Body.Binary);
}

OpcUa_Byte maskOf(const OpcUa_DiagnosticInfo& value)
{
    const auto flagIf = [](bool condition, OpcUa_Byte flag) { return condition ? flag : 0; };
    return static_cast<OpcUa_Byte>(
        flagIf(value.SymbolicId != -1, OpcUa_BinaryDiagnosticInfo_HasSymbolicId) |
        flagIf(value.NamespaceUri != -1, OpcUa_BinaryDiagnosticInfo_HasNamespaceUri) |
        flagIf(value.Locale != -1, OpcUa_BinaryDiagnosticInfo_HasLocale) |
        flagIf(value.LocalizedText != -1, OpcUa_BinaryDiagnosticInfo_HasLocalizedText) |
        flagIf(value.AdditionalInfo.strContent != nullptr,
               OpcUa_BinaryDiagnosticInfo_HasAdditionalInfo) |
        flagIf(value.InnerStatusCode != OpcUa_Good, OpcUa_BinaryDiagnosticInfo_HasInnerStatusCode) |
        flagIf(value.InnerDiagnosticInfo != nullptr,
               OpcUa_BinaryDiagnosticInfo_HasInnerDiagnosticInfo));
}

} // namespace

OpcUa_Int32 OpcUa_BinaryMatrix_SizeOf(const OpcUa_VariantMatrix& matrix)
{
    if (matrix.NoOfDimensions < 1 || matrix.Dimensions == nullptr) {
        return -1;
    }
    const OpcUa_Int32* begin = matrix.Dimensions;
    const OpcUa_Int32* end = begin + matrix.NoOfDimensions;
    const auto isNegative = [](OpcUa_Int32 dimension) { return dimension < 0; };
    if (std::any_of(begin, end, isNegative)) {
        return -1;
    }
    if (std::find(begin, end, 0) != end) {
        return 0;
    }
    // 0 now stands for a product that doesn't fit.
    const OpcUa_Int32 size = OpcUa_Variant_MatrixSize(&matrix);
    return size == 0 ? -1 : size;
}

OpcUa_StatusCode OpcUa_BinaryEncoder_FindNamespace(const OpcUa_BinaryWriter& writer,
                                                   const OpcUa_EncodeableType& type,
                                                   OpcUa_UInt16& index)
{
    index = 0;
    return type.NamespaceUri == nullptr
               ? OpcUa_Good
               : OpcUa_NamespaceTable_FindUri(writer.Context->NamespaceUris, type.NamespaceUri,
                                              &index);
}

template <typename Sink>
OpcUa_StatusCode OpcUa_BinaryWrite_Value(Sink& sink, OpcUa_Byte type, const void* value)
{
    return OpcUa_BuiltInType_Dispatch(
        type, OpcUa_BadEncodingError, [&]<OpcUa_Byte number, typename T>() {
            return OpcUa_BinaryWrite<number>(sink, *static_cast<const T*>(value));
        });
}

template <typename Sink>
OpcUa_StatusCode OpcUa_BinaryWrite_Array(Sink& sink, OpcUa_Byte type, const void* values,
                                         OpcUa_Int32 count)
{
    const OpcUa_StatusCode status = OpcUa_BinaryWrite_Count(sink, values, count);
    if (OpcUa_IsBad(status) || count < 1) {
        return status;
    }
    return OpcUa_BuiltInType_Dispatch(
        type, OpcUa_BadEncodingError, [&]<OpcUa_Byte number, typename T>() {
            return writeElements<number>(sink, static_cast<const T*>(values),
                                         static_cast<std::size_t>(count));
        });
}

template <typename Sink>
OpcUa_StatusCode OpcUa_BinaryWrite_AnyVariant(Sink& sink, const OpcUa_Variant& value)
{
    const OpcUa_BinaryLevel level(sink.writer().Level);
    if (level.isTooDeep()) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    if (value.ArrayType == OpcUa_VariantArrayType_Scalar) {
        return writeScalar(sink, value);
    }
    if (value.Datatype == OpcUaType_Null || value.Datatype > OpcUaType_DiagnosticInfo) {
        return OpcUa_BadEncodingError;
    }
    switch (value.ArrayType) {
    case OpcUa_VariantArrayType_Array:
        return writeArray(sink, value.Datatype, value.Value.Array);
    case OpcUa_VariantArrayType_Matrix:
        return writeMatrix(sink, value.Datatype, value.Value.Matrix);
    default:
        return OpcUa_BadEncodingError;
    }
}

template <typename Sink>
OpcUa_StatusCode OpcUa_BinaryWrite_ExtensionObject(Sink& sink, const OpcUa_ExtensionObject& value)
{
    const OpcUa_BinaryLevel level(sink.writer().Level);
    if (level.isTooDeep()) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    switch (value.Encoding) {
    case OpcUa_ExtensionObjectEncoding_None:
        return writeEncodedBody(sink, value, OpcUa_BinaryBody_None);
    case OpcUa_ExtensionObjectEncoding_Binary:
        return writeEncodedBody(sink, value, OpcUa_BinaryBody_Bytes);
    case OpcUa_ExtensionObjectEncoding_Xml:
        return writeEncodedBody(sink, value, OpcUa_BinaryBody_Xml);
    case OpcUa_ExtensionObjectEncoding_EncodeableObject:
        return writeRecord(sink, value);
    default:
        return OpcUa_BadEncodingError;
    }
}

template <typename Sink>
OpcUa_StatusCode OpcUa_BinaryWrite_DiagnosticInfo(Sink& sink, const OpcUa_DiagnosticInfo& value)
{
    const OpcUa_BinaryLevel level(sink.writer().Level);
    if (level.isTooDeep()) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    const OpcUa_Byte mask = maskOf(value);
    OpcUa_StatusCode status = OpcUa_BinaryWrite_Plain(sink, mask);
    const auto writeField = [&](OpcUa_Byte flag, auto write) {
        if (OpcUa_IsGood(status) && (mask & flag) != 0) {
            status = write();
        }
    };
    const auto writeIndex = [&](OpcUa_Byte flag, OpcUa_Int32 index) {
        writeField(flag, [&] { return OpcUa_BinaryWrite_Plain(sink, index); });
    };
    writeIndex(OpcUa_BinaryDiagnosticInfo_HasSymbolicId, value.SymbolicId);
    writeIndex(OpcUa_BinaryDiagnosticInfo_HasNamespaceUri, value.NamespaceUri);
    writeIndex(OpcUa_BinaryDiagnosticInfo_HasLocale, value.Locale);
    writeIndex(OpcUa_BinaryDiagnosticInfo_HasLocalizedText, value.LocalizedText);
    writeField(OpcUa_BinaryDiagnosticInfo_HasAdditionalInfo,
               [&] { return OpcUa_BinaryWrite_Text(sink, value.AdditionalInfo); });
    writeField(OpcUa_BinaryDiagnosticInfo_HasInnerStatusCode,
               [&] { return OpcUa_BinaryWrite_Plain(sink, value.InnerStatusCode); });
    writeField(OpcUa_BinaryDiagnosticInfo_HasInnerDiagnosticInfo,
               [&] { return OpcUa_BinaryWrite_DiagnosticInfo(sink, *value.InnerDiagnosticInfo); });
    return status;
}

// clang-format off
template OpcUa_StatusCode OpcUa_BinaryWrite_Value(OpcUa_BinaryWriter&, OpcUa_Byte, const void*);
template OpcUa_StatusCode OpcUa_BinaryWrite_Value(OpcUa_BinaryCounter&, OpcUa_Byte, const void*);
template OpcUa_StatusCode OpcUa_BinaryWrite_Array(OpcUa_BinaryWriter&, OpcUa_Byte, const void*, OpcUa_Int32);
template OpcUa_StatusCode OpcUa_BinaryWrite_Array(OpcUa_BinaryCounter&, OpcUa_Byte, const void*, OpcUa_Int32);
template OpcUa_StatusCode OpcUa_BinaryWrite_AnyVariant(OpcUa_BinaryWriter&, const OpcUa_Variant&);
template OpcUa_StatusCode OpcUa_BinaryWrite_AnyVariant(OpcUa_BinaryCounter&, const OpcUa_Variant&);
template OpcUa_StatusCode OpcUa_BinaryWrite_ExtensionObject(OpcUa_BinaryWriter&, const OpcUa_ExtensionObject&);
template OpcUa_StatusCode OpcUa_BinaryWrite_ExtensionObject(OpcUa_BinaryCounter&, const OpcUa_ExtensionObject&);
template OpcUa_StatusCode OpcUa_BinaryWrite_DiagnosticInfo(OpcUa_BinaryWriter&, const OpcUa_DiagnosticInfo&);
template OpcUa_StatusCode OpcUa_BinaryWrite_DiagnosticInfo(OpcUa_BinaryCounter&, const OpcUa_DiagnosticInfo&);
// clang-format on
