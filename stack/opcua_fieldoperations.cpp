#include "stack/opcua_fieldoperations.h"

#include "stack/opcua_decoder.h"
#include "stack/opcua_encoder.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"

using Encoder = OpcUa_EncoderInterface;
using Decoder = OpcUa_DecoderInterface;

namespace {

/// What the tables of encoders and decoders have for one type, with its pointers forgotten.
struct Operations
{
    OpcUa_StatusCode (*write)(OpcUa_Encoder* encoder, const char* name, const void* value,
                              OpcUa_Int32* size);
    OpcUa_StatusCode (*writeArray)(OpcUa_Encoder* encoder, const char* name, const void* values,
                                   OpcUa_Int32 count, OpcUa_Int32* size);
    OpcUa_StatusCode (*read)(OpcUa_Decoder* decoder, const char* name, void* value);
    OpcUa_StatusCode (*readArray)(OpcUa_Decoder* decoder, const char* name, void** values,
                                  OpcUa_Int32* count);
};

template <typename T, OpcUa_ReadArrayOperation<T> Decoder::*ReadArrayOperation>
OpcUa_StatusCode readArrayOf(OpcUa_Decoder* decoder, const char* name, void** values,
                             OpcUa_Int32* count)
{
    T* elements = nullptr;
    const OpcUa_StatusCode status =
        (decoder->Interface->*ReadArrayOperation)(decoder, name, &elements, count);
    *values = elements;
    return status;
}

template <typename T, OpcUa_WriteOperation<T> Encoder::*WriteOperation,
          OpcUa_WriteArrayOperation<T> Encoder::*WriteArrayOperation,
          OpcUa_ReadOperation<T> Decoder::*ReadOperation,
          OpcUa_ReadArrayOperation<T> Decoder::*ReadArrayOperation>
constexpr Operations operationsOf()
{
    return {[](OpcUa_Encoder* encoder, const char* name, const void* value, OpcUa_Int32* size) {
                return (encoder->Interface->*WriteOperation)(encoder, name,
                                                             static_cast<const T*>(value), size);
            },
            [](OpcUa_Encoder* encoder, const char* name, const void* values, OpcUa_Int32 count,
               OpcUa_Int32* size) {
                return (encoder->Interface->*WriteArrayOperation)(
                    encoder, name, static_cast<const T*>(values), count, size);
            },
            [](OpcUa_Decoder* decoder, const char* name, void* value) {
                return (decoder->Interface->*ReadOperation)(decoder, name, static_cast<T*>(value));
            },
            readArrayOf<T, ReadArrayOperation>};
}

/// By the type of the field, from Boolean to an enumeration.
constexpr Operations operationsByType[] = {
    operationsOf<OpcUa_Boolean, &Encoder::WriteBoolean, &Encoder::WriteBooleanArray,
                 &Decoder::ReadBoolean, &Decoder::ReadBooleanArray>(),
    operationsOf<OpcUa_SByte, &Encoder::WriteSByte, &Encoder::WriteSByteArray, &Decoder::ReadSByte,
                 &Decoder::ReadSByteArray>(),
    operationsOf<OpcUa_Byte, &Encoder::WriteByte, &Encoder::WriteByteArray, &Decoder::ReadByte,
                 &Decoder::ReadByteArray>(),
    operationsOf<OpcUa_Int16, &Encoder::WriteInt16, &Encoder::WriteInt16Array, &Decoder::ReadInt16,
                 &Decoder::ReadInt16Array>(),
    operationsOf<OpcUa_UInt16, &Encoder::WriteUInt16, &Encoder::WriteUInt16Array,
                 &Decoder::ReadUInt16, &Decoder::ReadUInt16Array>(),
    operationsOf<OpcUa_Int32, &Encoder::WriteInt32, &Encoder::WriteInt32Array, &Decoder::ReadInt32,
                 &Decoder::ReadInt32Array>(),
    operationsOf<OpcUa_UInt32, &Encoder::WriteUInt32, &Encoder::WriteUInt32Array,
                 &Decoder::ReadUInt32, &Decoder::ReadUInt32Array>(),
    operationsOf<OpcUa_Int64, &Encoder::WriteInt64, &Encoder::WriteInt64Array, &Decoder::ReadInt64,
                 &Decoder::ReadInt64Array>(),
    operationsOf<OpcUa_UInt64, &Encoder::WriteUInt64, &Encoder::WriteUInt64Array,
                 &Decoder::ReadUInt64, &Decoder::ReadUInt64Array>(),
    operationsOf<OpcUa_Float, &Encoder::WriteFloat, &Encoder::WriteFloatArray, &Decoder::ReadFloat,
                 &Decoder::ReadFloatArray>(),
    operationsOf<OpcUa_Double, &Encoder::WriteDouble, &Encoder::WriteDoubleArray,
                 &Decoder::ReadDouble, &Decoder::ReadDoubleArray>(),
    operationsOf<OpcUa_String, &Encoder::WriteString, &Encoder::WriteStringArray,
                 &Decoder::ReadString, &Decoder::ReadStringArray>(),
    operationsOf<OpcUa_DateTime, &Encoder::WriteDateTime, &Encoder::WriteDateTimeArray,
                 &Decoder::ReadDateTime, &Decoder::ReadDateTimeArray>(),
    operationsOf<OpcUa_Guid, &Encoder::WriteGuid, &Encoder::WriteGuidArray, &Decoder::ReadGuid,
                 &Decoder::ReadGuidArray>(),
    operationsOf<OpcUa_ByteString, &Encoder::WriteByteString, &Encoder::WriteByteStringArray,
                 &Decoder::ReadByteString, &Decoder::ReadByteStringArray>(),
    operationsOf<OpcUa_XmlElement, &Encoder::WriteXmlElement, &Encoder::WriteXmlElementArray,
                 &Decoder::ReadXmlElement, &Decoder::ReadXmlElementArray>(),
    operationsOf<OpcUa_NodeId, &Encoder::WriteNodeId, &Encoder::WriteNodeIdArray,
                 &Decoder::ReadNodeId, &Decoder::ReadNodeIdArray>(),
    operationsOf<OpcUa_ExpandedNodeId, &Encoder::WriteExpandedNodeId,
                 &Encoder::WriteExpandedNodeIdArray, &Decoder::ReadExpandedNodeId,
                 &Decoder::ReadExpandedNodeIdArray>(),
    operationsOf<OpcUa_StatusCode, &Encoder::WriteStatusCode, &Encoder::WriteStatusCodeArray,
                 &Decoder::ReadStatusCode, &Decoder::ReadStatusCodeArray>(),
    operationsOf<OpcUa_QualifiedName, &Encoder::WriteQualifiedName,
                 &Encoder::WriteQualifiedNameArray, &Decoder::ReadQualifiedName,
                 &Decoder::ReadQualifiedNameArray>(),
    operationsOf<OpcUa_LocalizedText, &Encoder::WriteLocalizedText,
                 &Encoder::WriteLocalizedTextArray, &Decoder::ReadLocalizedText,
                 &Decoder::ReadLocalizedTextArray>(),
    operationsOf<OpcUa_ExtensionObject, &Encoder::WriteExtensionObject,
                 &Encoder::WriteExtensionObjectArray, &Decoder::ReadExtensionObject,
                 &Decoder::ReadExtensionObjectArray>(),
    operationsOf<OpcUa_DataValue, &Encoder::WriteDataValue, &Encoder::WriteDataValueArray,
                 &Decoder::ReadDataValue, &Decoder::ReadDataValueArray>(),
    operationsOf<OpcUa_Variant, &Encoder::WriteVariant, &Encoder::WriteVariantArray,
                 &Decoder::ReadVariant, &Decoder::ReadVariantArray>(),
    operationsOf<OpcUa_DiagnosticInfo, &Encoder::WriteDiagnosticInfo,
                 &Encoder::WriteDiagnosticInfoArray, &Decoder::ReadDiagnosticInfo,
                 &Decoder::ReadDiagnosticInfoArray>(),
    operationsOf<OpcUa_Int32, &Encoder::WriteEnumerated, &Encoder::WriteEnumeratedArray,
                 &Decoder::ReadEnumerated, &Decoder::ReadEnumeratedArray>()};

const Operations& operationsFor(const OpcUa_RecordField& field)
{
    return operationsByType[field.Type - OpcUaType_Boolean];
}

OpcUa_StatusCode writeValue(OpcUa_Encoder* encoder, const OpcUa_RecordField& field,
                            const void* value, OpcUa_Int32* size)
{
    return field.Type == OpcUa_FieldType_Record
               ? encoder->Interface->WriteEncodeable(encoder, field.Name, value, field.Record->Type,
                                                     size)
               : operationsFor(field).write(encoder, field.Name, value, size);
}

OpcUa_StatusCode writeArray(OpcUa_Encoder* encoder, const OpcUa_RecordField& field,
                            const void* values, OpcUa_Int32 count, OpcUa_Int32* size)
{
    return field.Type == OpcUa_FieldType_Record
               ? encoder->Interface->WriteEncodeableArray(encoder, field.Name, values, count,
                                                          field.Record->Type, size)
               : operationsFor(field).writeArray(encoder, field.Name, values, count, size);
}

OpcUa_StatusCode readValue(OpcUa_Decoder* decoder, const OpcUa_RecordField& field, void* value)
{
    return field.Type == OpcUa_FieldType_Record
               ? decoder->Interface->ReadEncodeable(decoder, field.Name, value, field.Record->Type)
               : operationsFor(field).read(decoder, field.Name, value);
}

OpcUa_StatusCode readArray(OpcUa_Decoder* decoder, const OpcUa_RecordField& field, void** values,
                           OpcUa_Int32* count)
{
    return field.Type == OpcUa_FieldType_Record
               ? decoder->Interface->ReadEncodeableArray(decoder, field.Name, values, count,
                                                         field.Record->Type)
               : operationsFor(field).readArray(decoder, field.Name, values, count);
}

} // namespace

OpcUa_StatusCode OpcUa_Field_Write(OpcUa_Encoder* encoder, const OpcUa_RecordField& field,
                                   const void* record, OpcUa_Int32* size)
{
    return field.IsArray ? writeArray(encoder, field, OpcUa_Field_Block(field, record),
                                      OpcUa_Field_Count(field, record), size)
                         : writeValue(encoder, field, OpcUa_Field_At(record, field.Offset), size);
}

OpcUa_StatusCode OpcUa_Field_Read(OpcUa_Decoder* decoder, const OpcUa_RecordField& field,
                                  void* record)
{
    return field.IsArray ? readArray(decoder, field, &OpcUa_Field_Block(field, record),
                                     &OpcUa_Field_Count(field, record))
                         : readValue(decoder, field, OpcUa_Field_At(record, field.Offset));
}
