#include "platform/status.h"
#include "stack/opcua_binaryread.h"
#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_fieldoperations.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"

// Records take the fast way past the table of a binary decoder, and the table of any other.

namespace {

/// Fills memory of any content, and leaves a cleared record when a field fails.
template <typename ReadField>
OpcUa_StatusCode readRecord(const OpcUa_RecordLayout& layout, void* record, ReadField readField)
{
    OpcUa_RecordLayout_Initialize(layout, record);
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        const OpcUa_StatusCode status = readField(field);
        if (OpcUa_IsBad(status)) {
            OpcUa_RecordLayout_Clear(layout, record);
            return status;
        }
    }
    return OpcUa_Good;
}

OpcUa_StatusCode readBinary(OpcUa_BinaryReader& reader, const OpcUa_RecordLayout& layout,
                            void* record);

OpcUa_StatusCode readRecords(OpcUa_BinaryReader& reader, const OpcUa_RecordLayout& layout,
                             void** block, OpcUa_Int32* count)
{
    OpcUa_StatusCode status = OpcUa_BinaryRead_Count(reader, *count);
    if (OpcUa_IsNotBad(status)) {
        status = OpcUa_BinaryRead_Elements(
            reader, OpcUa_ElementTraits_FromEncodeableType(*layout.Type), layout.MinimalSize,
            *count, block, [&](void* element) { return readBinary(reader, layout, element); });
    }
    if (OpcUa_IsBad(status)) {
        *count = 0;
    }
    return status;
}

OpcUa_StatusCode readArray(OpcUa_BinaryReader& reader, const OpcUa_RecordField& field, void* record)
{
    void** block = &OpcUa_Field_Block(field, record);
    OpcUa_Int32* count = &OpcUa_Field_Count(field, record);
    return field.Type == OpcUa_FieldType_Record
               ? readRecords(reader, *field.Record, block, count)
               : OpcUa_BinaryRead_Array(reader, field.BuiltInType, block, count);
}

OpcUa_StatusCode readField(OpcUa_BinaryReader& reader, const OpcUa_RecordField& field, void* record)
{
    void* value = OpcUa_Field_At(record, field.Offset);
    if (!field.IsValue) {
        return field.IsArray ? readArray(reader, field, record)
                             : readBinary(reader, *field.Record, value);
    }
    return OpcUa_BuiltInType_Dispatch(
        field.BuiltInType, OpcUa_BadDecodingError, [&]<OpcUa_Byte type, typename T>() {
            return OpcUa_BinaryRead<type>(reader, *static_cast<T*>(value));
        });
}

OpcUa_StatusCode readBinary(OpcUa_BinaryReader& reader, const OpcUa_RecordLayout& layout,
                            void* record)
{
    return readRecord(layout, record, [&](const OpcUa_RecordField& field) {
        return readField(reader, field, record);
    });
}

OpcUa_StatusCode readByTable(OpcUa_Decoder* decoder, const OpcUa_RecordLayout& layout, void* record)
{
    if (decoder->Interface == nullptr) {
        OpcUa_RecordLayout_Initialize(layout, record);
        return OpcUa_BadInvalidArgument;
    }
    return readRecord(layout, record, [&](const OpcUa_RecordField& field) {
        return OpcUa_Field_Read(decoder, field, record);
    });
}

} // namespace

OpcUa_StatusCode OpcUa_RecordLayout_Decode(const OpcUa_RecordLayout& layout, void* record,
                                           OpcUa_Decoder* decoder)
{
    if (record == nullptr || decoder == nullptr) {
        OpcUa_RecordLayout_Initialize(layout, record);
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryReader* reader = OpcUa_BinaryReader_FromDecoder(decoder);
    return reader == nullptr ? readByTable(decoder, layout, record)
                             : readBinary(*reader, layout, record);
}
