#include "stack/opcua_binaryencoder.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarywrite.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_outputstream.h"
#include "stack/opcua_stringparts.h"

namespace {

using Interface = OpcUa_EncoderInterface;

/// Handle and private block in one.
struct Block
{
    OpcUa_Encoder Encoder;
    OpcUa_BinaryWriter Writer;
};

/// The private block behind a handle whose kind and table are right; the checks that every operation
/// makes first.
template <typename Entry, typename Operation>
OpcUa_BinaryWriter* writerOf(const OpcUa_Encoder* encoder, Entry entry, Operation operation)
{
    if (encoder == nullptr || encoder->Handle == nullptr || encoder->Interface == nullptr) {
        return nullptr;
    }
    auto* writer = static_cast<OpcUa_BinaryWriter*>(encoder->Handle);
    return writer->SanityCheck == OpcUa_BinaryEncoder_SanityCheck &&
                   encoder->Interface->*entry == operation
               ? writer
               : nullptr;
}

/// The same, with the answer for an encoder that isn't open.
template <typename Entry, typename Operation>
OpcUa_StatusCode enter(const OpcUa_Encoder* encoder, Entry entry, Operation operation,
                       OpcUa_BinaryWriter*& writer)
{
    writer = writerOf(encoder, entry, operation);
    if (writer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    return writer->IsClosed ? OpcUa_BadInvalidState : OpcUa_Good;
}

OpcUa_StatusCode openEncoder(OpcUa_Encoder* encoder, OpcUa_OutputStream* stream,
                             const OpcUa_MessageContext* context)
{
    if (stream == nullptr || stream->Interface == nullptr || context == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = writerOf(encoder, &Interface::Open, openEncoder);
    if (writer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (writer->WasOpened) {
        return OpcUa_BadInvalidState;
    }
    if (context->Encoding != OpcUa_MessageEncoding_Binary) {
        return OpcUa_BadNotSupported;
    }
    writer->Stream = stream;
    writer->Context = context;
    writer->Buffer = OpcUa_WriteBuffer_FromStream(stream);
    if (writer->Buffer == nullptr) {
        writer->Buffer = &writer->Staging;
    }
    writer->WasOpened = true;
    writer->IsClosed = false;
    return OpcUa_Good;
}

OpcUa_StatusCode closeEncoder(OpcUa_Encoder* encoder)
{
    OpcUa_BinaryWriter* writer = nullptr;
    const OpcUa_StatusCode status = enter(encoder, &Interface::Close, closeEncoder, writer);
    if (OpcUa_IsGood(status)) {
        writer->IsClosed = true;
    }
    return status;
}

OpcUa_StatusCode deleteEncoder(OpcUa_Encoder** encoder)
{
    OpcUa_BinaryWriter* writer =
        encoder == nullptr ? nullptr : writerOf(*encoder, &Interface::Delete, deleteEncoder);
    if (writer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_WriteBuffer_Clear(writer->Staging);
    writer->SanityCheck = 0;
    OpcUa_Memory_Free(*encoder);
    *encoder = nullptr;
    return OpcUa_Good;
}

OpcUa_StatusCode pushNamespace(OpcUa_Encoder* encoder, const char* namespaceUri)
{
    OpcUa_BinaryWriter* writer = nullptr;
    return namespaceUri == nullptr
               ? OpcUa_BadInvalidArgument
               : enter(encoder, &Interface::PushNamespace, pushNamespace, writer);
}

OpcUa_StatusCode popNamespace(OpcUa_Encoder* encoder)
{
    OpcUa_BinaryWriter* writer = nullptr;
    return enter(encoder, &Interface::PopNamespace, popNamespace, writer);
}

/// Runs `work(sink)` on the writer, or on a counter whose sum is added to `*size`.
template <typename Work>
OpcUa_StatusCode writeOrCount(OpcUa_BinaryWriter& writer, OpcUa_Int32* size, Work work)
{
    if (size == nullptr) {
        return writer.finish(work(writer));
    }
    OpcUa_BinaryCounter counter{writer};
    const OpcUa_StatusCode status = work(counter);
    return OpcUa_IsBad(status) ? status : counter.addTo(*size);
}

/// A plain text may stand in the place of a string.
OpcUa_String recordOf(const OpcUa_String* string)
{
    if (!OpcUa_String_IsPlainText(string)) {
        return *string;
    }
    const OpcUa_StringView view = OpcUa_String_View(string);
    return {0, view.size, const_cast<char*>(view.text)};
}

template <auto entry, OpcUa_Byte type, typename T>
OpcUa_StatusCode writeValue(OpcUa_Encoder* encoder, const char* /*fieldName*/, const T* value,
                            OpcUa_Int32* size)
{
    if (value == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = nullptr;
    const OpcUa_StatusCode status = enter(encoder, entry, writeValue<entry, type, T>, writer);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    return writeOrCount(*writer, size, [value](auto& sink) {
        if constexpr (type == OpcUaType_String) {
            return OpcUa_BinaryWrite<type>(sink, recordOf(value));
        } else {
            return OpcUa_BinaryWrite<type>(sink, *value);
        }
    });
}

template <auto entry, OpcUa_Byte type, typename T>
OpcUa_StatusCode writeArray(OpcUa_Encoder* encoder, const char* /*fieldName*/, const T* values,
                            OpcUa_Int32 count, OpcUa_Int32* size)
{
    if (values == nullptr && count > 0) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = nullptr;
    const OpcUa_StatusCode status = enter(encoder, entry, writeArray<entry, type, T>, writer);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    return writeOrCount(*writer, size, [values, count](auto& sink) {
        return OpcUa_BinaryWrite_Array(sink, type, values, count);
    });
}

/// A record by its row, whose own operations take the encoder.
OpcUa_StatusCode writeRecord(OpcUa_BinaryWriter& writer, const void* value,
                             const OpcUa_EncodeableType& type)
{
    return type.Encode == nullptr ? OpcUa_BadEncodingError : type.Encode(value, writer.Encoder);
}

OpcUa_StatusCode writeRecord(OpcUa_BinaryCounter& counter, const void* value,
                             const OpcUa_EncodeableType& type)
{
    if (type.GetSize == nullptr) {
        return OpcUa_BadEncodingError;
    }
    OpcUa_Int32 size = 0;
    const OpcUa_StatusCode status = type.GetSize(value, counter.Writer.Encoder, &size);
    if (OpcUa_IsGood(status)) {
        counter.Size += static_cast<OpcUa_UInt32>(size);
    }
    return status;
}

template <typename Sink>
OpcUa_StatusCode writeRecords(Sink& sink, const void* values, OpcUa_Int32 count,
                              const OpcUa_EncodeableType& type)
{
    OpcUa_StatusCode status = OpcUa_BinaryWrite_Count(sink, values, count);
    const auto* record = static_cast<const char*>(values);
    for (OpcUa_Int32 i = 0; i < count && OpcUa_IsGood(status); ++i) {
        status = writeRecord(sink, record, type);
        record += type.AllocationSize;
    }
    return status;
}

OpcUa_StatusCode writeEncodeable(OpcUa_Encoder* encoder, const char* /*fieldName*/,
                                 const void* value, const OpcUa_EncodeableType* type,
                                 OpcUa_Int32* size)
{
    if (value == nullptr || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = nullptr;
    const OpcUa_StatusCode status =
        enter(encoder, &Interface::WriteEncodeable, writeEncodeable, writer);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    return writeOrCount(*writer, size,
                        [value, type](auto& sink) { return writeRecord(sink, value, *type); });
}

OpcUa_StatusCode writeEncodeableArray(OpcUa_Encoder* encoder, const char* /*fieldName*/,
                                      const void* values, OpcUa_Int32 count,
                                      const OpcUa_EncodeableType* type, OpcUa_Int32* size)
{
    if ((values == nullptr && count > 0) || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = nullptr;
    const OpcUa_StatusCode status =
        enter(encoder, &Interface::WriteEncodeableArray, writeEncodeableArray, writer);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    return writeOrCount(*writer, size, [values, count, type](auto& sink) {
        return writeRecords(sink, values, count, *type);
    });
}

/// The id of a message is a node id without a URI, so the context has to know its namespace.
template <typename Sink>
OpcUa_StatusCode writeMessageId(Sink& sink, const OpcUa_EncodeableType& type)
{
    OpcUa_UInt16 index = 0;
    return OpcUa_IsBad(OpcUa_BinaryEncoder_FindNamespace(sink.writer(), type, index))
               ? OpcUa_BadEncodingError
               : OpcUa_BinaryWrite_NumericNodeId(sink, index, type.BinaryEncodingTypeId, 0);
}

OpcUa_StatusCode writeMessage(OpcUa_Encoder* encoder, const void* message,
                              const OpcUa_EncodeableType* type, OpcUa_Int32* size)
{
    if (message == nullptr || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = nullptr;
    const OpcUa_StatusCode status = enter(encoder, &Interface::WriteMessage, writeMessage, writer);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    return writeOrCount(*writer, size, [message, type](auto& sink) {
        const OpcUa_StatusCode idStatus = writeMessageId(sink, *type);
        return OpcUa_IsBad(idStatus) ? idStatus : writeRecord(sink, message, *type);
    });
}

} // namespace

const OpcUa_EncoderInterface OpcUa_BinaryEncoder_Interface = {
    .Open = openEncoder,
    .Close = closeEncoder,
    .Delete = deleteEncoder,
    .PushNamespace = pushNamespace,
    .PopNamespace = popNamespace,
    .WriteBoolean = writeValue<&Interface::WriteBoolean, OpcUaType_Boolean>,
    .WriteSByte = writeValue<&Interface::WriteSByte, OpcUaType_SByte>,
    .WriteByte = writeValue<&Interface::WriteByte, OpcUaType_Byte>,
    .WriteInt16 = writeValue<&Interface::WriteInt16, OpcUaType_Int16>,
    .WriteUInt16 = writeValue<&Interface::WriteUInt16, OpcUaType_UInt16>,
    .WriteInt32 = writeValue<&Interface::WriteInt32, OpcUaType_Int32>,
    .WriteUInt32 = writeValue<&Interface::WriteUInt32, OpcUaType_UInt32>,
    .WriteInt64 = writeValue<&Interface::WriteInt64, OpcUaType_Int64>,
    .WriteUInt64 = writeValue<&Interface::WriteUInt64, OpcUaType_UInt64>,
    .WriteFloat = writeValue<&Interface::WriteFloat, OpcUaType_Float>,
    .WriteDouble = writeValue<&Interface::WriteDouble, OpcUaType_Double>,
    .WriteString = writeValue<&Interface::WriteString, OpcUaType_String>,
    .WriteDateTime = writeValue<&Interface::WriteDateTime, OpcUaType_DateTime>,
    .WriteGuid = writeValue<&Interface::WriteGuid, OpcUaType_Guid>,
    .WriteByteString = writeValue<&Interface::WriteByteString, OpcUaType_ByteString>,
    .WriteXmlElement = writeValue<&Interface::WriteXmlElement, OpcUaType_XmlElement>,
    .WriteNodeId = writeValue<&Interface::WriteNodeId, OpcUaType_NodeId>,
    .WriteExpandedNodeId = writeValue<&Interface::WriteExpandedNodeId, OpcUaType_ExpandedNodeId>,
    .WriteStatusCode = writeValue<&Interface::WriteStatusCode, OpcUaType_StatusCode>,
    .WriteDiagnosticInfo = writeValue<&Interface::WriteDiagnosticInfo, OpcUaType_DiagnosticInfo>,
    .WriteLocalizedText = writeValue<&Interface::WriteLocalizedText, OpcUaType_LocalizedText>,
    .WriteQualifiedName = writeValue<&Interface::WriteQualifiedName, OpcUaType_QualifiedName>,
    .WriteExtensionObject = writeValue<&Interface::WriteExtensionObject, OpcUaType_ExtensionObject>,
    .WriteDataValue = writeValue<&Interface::WriteDataValue, OpcUaType_DataValue>,
    .WriteVariant = writeValue<&Interface::WriteVariant, OpcUaType_Variant>,
    .WriteEncodeable = writeEncodeable,
    .WriteEnumerated = writeValue<&Interface::WriteEnumerated, OpcUaType_Int32>,
    .WriteBooleanArray = writeArray<&Interface::WriteBooleanArray, OpcUaType_Boolean>,
    .WriteSByteArray = writeArray<&Interface::WriteSByteArray, OpcUaType_SByte>,
    .WriteByteArray = writeArray<&Interface::WriteByteArray, OpcUaType_Byte>,
    .WriteInt16Array = writeArray<&Interface::WriteInt16Array, OpcUaType_Int16>,
    .WriteUInt16Array = writeArray<&Interface::WriteUInt16Array, OpcUaType_UInt16>,
    .WriteInt32Array = writeArray<&Interface::WriteInt32Array, OpcUaType_Int32>,
    .WriteUInt32Array = writeArray<&Interface::WriteUInt32Array, OpcUaType_UInt32>,
    .WriteInt64Array = writeArray<&Interface::WriteInt64Array, OpcUaType_Int64>,
    .WriteUInt64Array = writeArray<&Interface::WriteUInt64Array, OpcUaType_UInt64>,
    .WriteFloatArray = writeArray<&Interface::WriteFloatArray, OpcUaType_Float>,
    .WriteDoubleArray = writeArray<&Interface::WriteDoubleArray, OpcUaType_Double>,
    .WriteStringArray = writeArray<&Interface::WriteStringArray, OpcUaType_String>,
    .WriteDateTimeArray = writeArray<&Interface::WriteDateTimeArray, OpcUaType_DateTime>,
    .WriteGuidArray = writeArray<&Interface::WriteGuidArray, OpcUaType_Guid>,
    .WriteByteStringArray = writeArray<&Interface::WriteByteStringArray, OpcUaType_ByteString>,
    .WriteXmlElementArray = writeArray<&Interface::WriteXmlElementArray, OpcUaType_XmlElement>,
    .WriteNodeIdArray = writeArray<&Interface::WriteNodeIdArray, OpcUaType_NodeId>,
    .WriteExpandedNodeIdArray =
        writeArray<&Interface::WriteExpandedNodeIdArray, OpcUaType_ExpandedNodeId>,
    .WriteStatusCodeArray = writeArray<&Interface::WriteStatusCodeArray, OpcUaType_StatusCode>,
    .WriteDiagnosticInfoArray =
        writeArray<&Interface::WriteDiagnosticInfoArray, OpcUaType_DiagnosticInfo>,
    .WriteLocalizedTextArray =
        writeArray<&Interface::WriteLocalizedTextArray, OpcUaType_LocalizedText>,
    .WriteQualifiedNameArray =
        writeArray<&Interface::WriteQualifiedNameArray, OpcUaType_QualifiedName>,
    .WriteExtensionObjectArray =
        writeArray<&Interface::WriteExtensionObjectArray, OpcUaType_ExtensionObject>,
    .WriteDataValueArray = writeArray<&Interface::WriteDataValueArray, OpcUaType_DataValue>,
    .WriteVariantArray = writeArray<&Interface::WriteVariantArray, OpcUaType_Variant>,
    .WriteEncodeableArray = writeEncodeableArray,
    .WriteEnumeratedArray = writeArray<&Interface::WriteEnumeratedArray, OpcUaType_Int32>,
    .WriteMessage = writeMessage,
};

OpcUa_StatusCode OpcUa_BinaryWriter::flush(OpcUa_StatusCode status)
{
    const auto length = static_cast<OpcUa_UInt32>(Staging.Current - Staging.Begin);
    if (OpcUa_IsGood(status) && length != 0) {
        status = Stream->Interface->Write(Stream, Staging.Begin, length);
    }
    Staging.Current = Staging.Begin;
    return status;
}

OpcUa_StatusCode OpcUa_BinaryEncoder_Create(OpcUa_Encoder** encoder)
{
    if (encoder == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *encoder = nullptr;
    auto* block = static_cast<Block*>(OpcUa_Memory_AllocZeroed(1, sizeof(Block)));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_BinaryWriter_Initialize(block->Writer, block->Encoder);
    *encoder = &block->Encoder;
    return OpcUa_Good;
}

void OpcUa_BinaryWriter_Initialize(OpcUa_BinaryWriter& writer, OpcUa_Encoder& encoder)
{
    constexpr std::size_t largestSize = 0x7FFFFFFF;
    writer = {};
    writer.SanityCheck = OpcUa_BinaryEncoder_SanityCheck;
    writer.IsClosed = true;
    writer.Encoder = &encoder;
    writer.Staging = {nullptr, nullptr, nullptr, largestSize, true};
    encoder = {&OpcUa_BinaryEncoder_Interface, &writer};
}
