#include "stack/opcua_binarydecoder.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binaryread.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_inputstream.h"
#include "stack/opcua_messagecontext.h"

#include <algorithm>

namespace {

using Interface = OpcUa_DecoderInterface;

/// Handle and private block in one.
struct Block
{
    OpcUa_Decoder Decoder;
    OpcUa_BinaryReader Reader;
};

/// The private block behind a handle whose kind and table are right; the checks that every operation
/// makes first.
template <typename Entry, typename Operation>
OpcUa_BinaryReader* readerOf(const OpcUa_Decoder* decoder, Entry entry, Operation operation)
{
    if (decoder == nullptr || decoder->Handle == nullptr || decoder->Interface == nullptr) {
        return nullptr;
    }
    auto* reader = static_cast<OpcUa_BinaryReader*>(decoder->Handle);
    return reader->SanityCheck == OpcUa_BinaryDecoder_SanityCheck &&
                   decoder->Interface->*entry == operation
               ? reader
               : nullptr;
}

/// The same, with the answer for a decoder that isn't open.
template <typename Entry, typename Operation>
OpcUa_StatusCode enter(const OpcUa_Decoder* decoder, Entry entry, Operation operation,
                       OpcUa_BinaryReader*& reader)
{
    reader = readerOf(decoder, entry, operation);
    if (reader == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    return reader->IsClosed ? OpcUa_BadInvalidState : OpcUa_Good;
}

/// Finds out where the bytes come from: out of a memory stream's own block, or through the window.
OpcUa_StatusCode attach(OpcUa_BinaryReader& reader, OpcUa_InputStream* stream)
{
    reader.Buffer = OpcUa_ReadBuffer_FromStream(stream);
    if (reader.Buffer != nullptr) {
        return OpcUa_Good;
    }
    OpcUa_UInt32 remaining = 0;
    const OpcUa_StatusCode status = stream->Interface->GetRemaining(stream, &remaining);
    if (OpcUa_IsGood(status)) {
        reader.Buffer = &reader.Window;
        reader.Behind = remaining;
    }
    return status;
}

OpcUa_StatusCode openDecoder(OpcUa_Decoder* decoder, OpcUa_InputStream* stream,
                             const OpcUa_MessageContext* context)
{
    if (stream == nullptr || stream->Interface == nullptr || context == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = readerOf(decoder, &Interface::Open, openDecoder);
    if (reader == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (reader->WasOpened) {
        return OpcUa_BadInvalidState;
    }
    if (context->Encoding != OpcUa_MessageEncoding_Binary) {
        return OpcUa_BadNotSupported;
    }
    const OpcUa_StatusCode status = attach(*reader, stream);
    if (OpcUa_IsGood(status)) {
        reader->Stream = stream;
        reader->Context = context;
        reader->WasOpened = true;
        reader->IsClosed = false;
    }
    return status;
}

OpcUa_StatusCode closeDecoder(OpcUa_Decoder* decoder)
{
    OpcUa_BinaryReader* reader = nullptr;
    const OpcUa_StatusCode status = enter(decoder, &Interface::Close, closeDecoder, reader);
    if (OpcUa_IsGood(status)) {
        reader->IsClosed = true;
    }
    return status;
}

OpcUa_StatusCode deleteDecoder(OpcUa_Decoder** decoder)
{
    OpcUa_BinaryReader* reader =
        decoder == nullptr ? nullptr : readerOf(*decoder, &Interface::Delete, deleteDecoder);
    if (reader == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    reader->SanityCheck = 0;
    OpcUa_Memory_Free(*decoder);
    *decoder = nullptr;
    return OpcUa_Good;
}

OpcUa_StatusCode pushNamespace(OpcUa_Decoder* decoder, const char* namespaceUri)
{
    OpcUa_BinaryReader* reader = nullptr;
    return namespaceUri == nullptr
               ? OpcUa_BadInvalidArgument
               : enter(decoder, &Interface::PushNamespace, pushNamespace, reader);
}

OpcUa_StatusCode popNamespace(OpcUa_Decoder* decoder)
{
    OpcUa_BinaryReader* reader = nullptr;
    return enter(decoder, &Interface::PopNamespace, popNamespace, reader);
}

template <auto entry, OpcUa_Byte type, typename T>
OpcUa_StatusCode readValue(OpcUa_Decoder* decoder, const char* /*fieldName*/, T* value)
{
    if (value == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = nullptr;
    const OpcUa_StatusCode status = enter(decoder, entry, readValue<entry, type, T>, reader);
    return OpcUa_IsBad(status) ? status : OpcUa_BinaryRead<type>(*reader, *value);
}

template <auto entry, OpcUa_Byte type, typename T>
OpcUa_StatusCode readArray(OpcUa_Decoder* decoder, const char* /*fieldName*/, T** values,
                           OpcUa_Int32* count)
{
    if (values == nullptr || count == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = nullptr;
    OpcUa_StatusCode status = enter(decoder, entry, readArray<entry, type, T>, reader);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    void* block = nullptr;
    status = OpcUa_BinaryRead_Array(*reader, type, &block, count);
    *values = static_cast<T*>(block);
    return status;
}

OpcUa_StatusCode readRecord(OpcUa_BinaryReader& reader, void* value,
                            const OpcUa_EncodeableType& type)
{
    return type.Decode == nullptr ? OpcUa_BadDecodingError : type.Decode(value, reader.Decoder);
}

OpcUa_StatusCode readEncodeable(OpcUa_Decoder* decoder, const char* /*fieldName*/, void* value,
                                const OpcUa_EncodeableType* type)
{
    if (value == nullptr || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = nullptr;
    const OpcUa_StatusCode status =
        enter(decoder, &Interface::ReadEncodeable, readEncodeable, reader);
    return OpcUa_IsBad(status) ? status : readRecord(*reader, value, *type);
}

/// The least bytes that a record takes: those of an empty one.
OpcUa_StatusCode measureEmptyRecord(const OpcUa_BinaryReader& reader,
                                    const OpcUa_EncodeableType& type, std::size_t& size)
{
    void* record = OpcUa_Memory_Alloc(type.AllocationSize);
    if (record == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_BinaryWriter writer;
    OpcUa_Encoder encoder;
    OpcUa_BinaryWriter_Initialize(writer, encoder);
    writer.Context = reader.Context;
    writer.IsClosed = false;
    OpcUa_Int32 encodedSize = 0;
    type.Initialize(record);
    const OpcUa_StatusCode status = type.GetSize(record, &encoder, &encodedSize);
    type.Clear(record);
    OpcUa_Memory_Free(record);
    size = static_cast<std::size_t>(std::max(encodedSize, 1));
    return status;
}

OpcUa_StatusCode readRecords(OpcUa_BinaryReader& reader, void** values, OpcUa_Int32* count,
                             const OpcUa_EncodeableType& type)
{
    *values = nullptr;
    OpcUa_StatusCode status = OpcUa_BinaryRead_Count(reader, *count);
    if (OpcUa_IsBad(status) || *count < 1) {
        return status;
    }
    std::size_t minimum = 1;
    status = measureEmptyRecord(reader, type, minimum);
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead_Elements(
            reader, OpcUa_ElementTraits_FromEncodeableType(type), minimum, *count, values,
            [&](void* record) { return readRecord(reader, record, type); });
    }
    if (OpcUa_IsBad(status)) {
        *count = 0;
    }
    return status;
}

OpcUa_StatusCode readEncodeableArray(OpcUa_Decoder* decoder, const char* /*fieldName*/,
                                     void** values, OpcUa_Int32* count,
                                     const OpcUa_EncodeableType* type)
{
    if (values == nullptr || count == nullptr || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = nullptr;
    const OpcUa_StatusCode status =
        enter(decoder, &Interface::ReadEncodeableArray, readEncodeableArray, reader);
    return OpcUa_IsBad(status) ? status : readRecords(*reader, values, count, *type);
}

OpcUa_StatusCode readMessage(OpcUa_Decoder* decoder, void** message,
                             const OpcUa_EncodeableType** type)
{
    if (message == nullptr || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = nullptr;
    const OpcUa_StatusCode status = enter(decoder, &Interface::ReadMessage, readMessage, reader);
    return OpcUa_IsBad(status) ? status : OpcUa_BinaryRead_Message(*reader, *message, *type);
}

} // namespace

const OpcUa_DecoderInterface OpcUa_BinaryDecoder_Interface = {
    .Open = openDecoder,
    .Close = closeDecoder,
    .Delete = deleteDecoder,
    .PushNamespace = pushNamespace,
    .PopNamespace = popNamespace,
    .ReadBoolean = readValue<&Interface::ReadBoolean, OpcUaType_Boolean>,
    .ReadSByte = readValue<&Interface::ReadSByte, OpcUaType_SByte>,
    .ReadByte = readValue<&Interface::ReadByte, OpcUaType_Byte>,
    .ReadInt16 = readValue<&Interface::ReadInt16, OpcUaType_Int16>,
    .ReadUInt16 = readValue<&Interface::ReadUInt16, OpcUaType_UInt16>,
    .ReadInt32 = readValue<&Interface::ReadInt32, OpcUaType_Int32>,
    .ReadUInt32 = readValue<&Interface::ReadUInt32, OpcUaType_UInt32>,
    .ReadInt64 = readValue<&Interface::ReadInt64, OpcUaType_Int64>,
    .ReadUInt64 = readValue<&Interface::ReadUInt64, OpcUaType_UInt64>,
    .ReadFloat = readValue<&Interface::ReadFloat, OpcUaType_Float>,
    .ReadDouble = readValue<&Interface::ReadDouble, OpcUaType_Double>,
    .ReadString = readValue<&Interface::ReadString, OpcUaType_String>,
    .ReadDateTime = readValue<&Interface::ReadDateTime, OpcUaType_DateTime>,
    .ReadGuid = readValue<&Interface::ReadGuid, OpcUaType_Guid>,
    .ReadByteString = readValue<&Interface::ReadByteString, OpcUaType_ByteString>,
    .ReadXmlElement = readValue<&Interface::ReadXmlElement, OpcUaType_XmlElement>,
    .ReadNodeId = readValue<&Interface::ReadNodeId, OpcUaType_NodeId>,
    .ReadExpandedNodeId = readValue<&Interface::ReadExpandedNodeId, OpcUaType_ExpandedNodeId>,
    .ReadStatusCode = readValue<&Interface::ReadStatusCode, OpcUaType_StatusCode>,
    .ReadDiagnosticInfo = readValue<&Interface::ReadDiagnosticInfo, OpcUaType_DiagnosticInfo>,
    .ReadLocalizedText = readValue<&Interface::ReadLocalizedText, OpcUaType_LocalizedText>,
    .ReadQualifiedName = readValue<&Interface::ReadQualifiedName, OpcUaType_QualifiedName>,
    .ReadExtensionObject = readValue<&Interface::ReadExtensionObject, OpcUaType_ExtensionObject>,
    .ReadDataValue = readValue<&Interface::ReadDataValue, OpcUaType_DataValue>,
    .ReadVariant = readValue<&Interface::ReadVariant, OpcUaType_Variant>,
    .ReadEncodeable = readEncodeable,
    .ReadEnumerated = readValue<&Interface::ReadEnumerated, OpcUaType_Int32>,
    .ReadBooleanArray = readArray<&Interface::ReadBooleanArray, OpcUaType_Boolean>,
    .ReadSByteArray = readArray<&Interface::ReadSByteArray, OpcUaType_SByte>,
    .ReadByteArray = readArray<&Interface::ReadByteArray, OpcUaType_Byte>,
    .ReadInt16Array = readArray<&Interface::ReadInt16Array, OpcUaType_Int16>,
    .ReadUInt16Array = readArray<&Interface::ReadUInt16Array, OpcUaType_UInt16>,
    .ReadInt32Array = readArray<&Interface::ReadInt32Array, OpcUaType_Int32>,
    .ReadUInt32Array = readArray<&Interface::ReadUInt32Array, OpcUaType_UInt32>,
    .ReadInt64Array = readArray<&Interface::ReadInt64Array, OpcUaType_Int64>,
    .ReadUInt64Array = readArray<&Interface::ReadUInt64Array, OpcUaType_UInt64>,
    .ReadFloatArray = readArray<&Interface::ReadFloatArray, OpcUaType_Float>,
    .ReadDoubleArray = readArray<&Interface::ReadDoubleArray, OpcUaType_Double>,
    .ReadStringArray = readArray<&Interface::ReadStringArray, OpcUaType_String>,
    .ReadDateTimeArray = readArray<&Interface::ReadDateTimeArray, OpcUaType_DateTime>,
    .ReadGuidArray = readArray<&Interface::ReadGuidArray, OpcUaType_Guid>,
    .ReadByteStringArray = readArray<&Interface::ReadByteStringArray, OpcUaType_ByteString>,
    .ReadXmlElementArray = readArray<&Interface::ReadXmlElementArray, OpcUaType_XmlElement>,
    .ReadNodeIdArray = readArray<&Interface::ReadNodeIdArray, OpcUaType_NodeId>,
    .ReadExpandedNodeIdArray =
        readArray<&Interface::ReadExpandedNodeIdArray, OpcUaType_ExpandedNodeId>,
    .ReadStatusCodeArray = readArray<&Interface::ReadStatusCodeArray, OpcUaType_StatusCode>,
    .ReadDiagnosticInfoArray =
        readArray<&Interface::ReadDiagnosticInfoArray, OpcUaType_DiagnosticInfo>,
    .ReadLocalizedTextArray =
        readArray<&Interface::ReadLocalizedTextArray, OpcUaType_LocalizedText>,
    .ReadQualifiedNameArray =
        readArray<&Interface::ReadQualifiedNameArray, OpcUaType_QualifiedName>,
    .ReadExtensionObjectArray =
        readArray<&Interface::ReadExtensionObjectArray, OpcUaType_ExtensionObject>,
    .ReadDataValueArray = readArray<&Interface::ReadDataValueArray, OpcUaType_DataValue>,
    .ReadVariantArray = readArray<&Interface::ReadVariantArray, OpcUaType_Variant>,
    .ReadEncodeableArray = readEncodeableArray,
    .ReadEnumeratedArray = readArray<&Interface::ReadEnumeratedArray, OpcUaType_Int32>,
    .ReadMessage = readMessage,
};

OpcUa_StatusCode OpcUa_BinaryReader::fill(std::size_t size)
{
    if (Buffer != &Window || size > Behind) {
        return OpcUa_BadEndOfStream;
    }
    OpcUa_UInt32 readLength = 0;
    const OpcUa_StatusCode status =
        Stream->Interface->Read(Stream, WindowBytes, static_cast<OpcUa_UInt32>(size), &readLength);
    if (OpcUa_IsBad(status) || readLength != size) {
        return OpcUa_IsBad(status) ? status : OpcUa_BadEndOfStream;
    }
    Window = {WindowBytes, WindowBytes, WindowBytes + size};
    Behind -= size;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_BinaryReader::readBehind(void* bytes, std::size_t size)
{
    if (Buffer != &Window || size > Behind) {
        return OpcUa_BadExpectedStreamToBlock;
    }
    OpcUa_UInt32 readLength = 0;
    const OpcUa_StatusCode status = Stream->Interface->Read(
        Stream, static_cast<OpcUa_Byte*>(bytes), static_cast<OpcUa_UInt32>(size), &readLength);
    if (OpcUa_IsBad(status) && status != OpcUa_BadEndOfStream) {
        return status;
    }
    Behind -= size;
    return readLength == size ? OpcUa_Good : OpcUa_BadExpectedStreamToBlock;
}

OpcUa_StatusCode OpcUa_BinaryDecoder_Create(OpcUa_Decoder** decoder)
{
    if (decoder == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *decoder = nullptr;
    auto* block = static_cast<Block*>(OpcUa_Memory_AllocZeroed(1, sizeof(Block)));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    block->Reader.SanityCheck = OpcUa_BinaryDecoder_SanityCheck;
    block->Reader.IsClosed = true;
    block->Reader.Decoder = &block->Decoder;
    block->Decoder = {&OpcUa_BinaryDecoder_Interface, &block->Reader};
    *decoder = &block->Decoder;
    return OpcUa_Good;
}
