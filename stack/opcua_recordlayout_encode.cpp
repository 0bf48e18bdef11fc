#include "platform/status.h"
#include "stack/opcua_binarywrite.h"
#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_fieldoperations.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"

// Records take the fast way past the table of a binary encoder, and the table of any other.

namespace {

template <typename Sink>
OpcUa_StatusCode writeRecord(Sink& sink, const OpcUa_RecordLayout& layout, const void* record);

template <typename Sink>
OpcUa_StatusCode writeRecords(Sink& sink, const OpcUa_RecordLayout& layout, const void* block,
                              OpcUa_Int32 count)
{
    OpcUa_StatusCode status = OpcUa_BinaryWrite_Count(sink, block, count);
    for (OpcUa_Int32 i = 0; i < count && OpcUa_IsNotBad(status); ++i) {
        status = writeRecord(sink, layout, OpcUa_Record_At(layout, block, i));
    }
    return status;
}

template <typename Sink>
OpcUa_StatusCode writeArray(Sink& sink, const OpcUa_RecordField& field, const void* record)
{
    const void* block = OpcUa_Field_Block(field, record);
    const OpcUa_Int32 count = OpcUa_Field_Count(field, record);
    return field.Type == OpcUa_FieldType_Record
               ? writeRecords(sink, *field.Record, block, count)
               : OpcUa_BinaryWrite_Array(sink, field.BuiltInType, block, count);
}

template <typename Sink>
OpcUa_StatusCode writeField(Sink& sink, const OpcUa_RecordField& field, const void* record)
{
    const void* value = OpcUa_Field_At(record, field.Offset);
    if (!field.IsValue) {
        return field.IsArray ? writeArray(sink, field, record)
                             : writeRecord(sink, *field.Record, value);
    }
    return OpcUa_BuiltInType_Dispatch(
        field.BuiltInType, OpcUa_BadEncodingError, [&]<OpcUa_Byte type, typename T>() {
            return OpcUa_BinaryWrite<type>(sink, *static_cast<const T*>(value));
        });
}

template <typename Sink>
OpcUa_StatusCode writeRecord(Sink& sink, const OpcUa_RecordLayout& layout, const void* record)
{
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        const OpcUa_StatusCode status = writeField(sink, field, record);
        if (OpcUa_IsBad(status)) {
            return status;
        }
    }
    return OpcUa_Good;
}

/// Through the table of an encoder of any kind; with a size only that is added up.
OpcUa_StatusCode writeByTable(OpcUa_Encoder* encoder, const OpcUa_RecordLayout& layout,
                              const void* record, OpcUa_Int32* size)
{
    if (encoder->Interface == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        const OpcUa_StatusCode status = OpcUa_Field_Write(encoder, field, record, size);
        if (OpcUa_IsBad(status)) {
            return status;
        }
    }
    return OpcUa_Good;
}

OpcUa_StatusCode addSize(const OpcUa_RecordLayout& layout, const void* record,
                         OpcUa_Encoder* encoder, OpcUa_Int32& size)
{
    OpcUa_BinaryWriter* writer = OpcUa_BinaryWriter_FromEncoder(encoder);
    if (writer == nullptr) {
        return writeByTable(encoder, layout, record, &size);
    }
    OpcUa_BinaryCounter counter{*writer};
    const OpcUa_StatusCode status = writeRecord(counter, layout, record);
    return OpcUa_IsBad(status) ? status : counter.addTo(size);
}

} // namespace

OpcUa_StatusCode OpcUa_RecordLayout_GetSize(const OpcUa_RecordLayout& layout, const void* record,
                                            OpcUa_Encoder* encoder, OpcUa_Int32* size)
{
    if (size != nullptr) {
        *size = -1;
    }
    if (record == nullptr || encoder == nullptr || size == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_Int32 sum = 0;
    const OpcUa_StatusCode status = addSize(layout, record, encoder, sum);
    if (OpcUa_IsNotBad(status)) {
        *size = sum;
    }
    return status;
}

OpcUa_StatusCode OpcUa_RecordLayout_Encode(const OpcUa_RecordLayout& layout, const void* record,
                                           OpcUa_Encoder* encoder)
{
    if (record == nullptr || encoder == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_BinaryWriter* writer = OpcUa_BinaryWriter_FromEncoder(encoder);
    return writer == nullptr ? writeByTable(encoder, layout, record, nullptr)
                             : writer->finish(writeRecord(*writer, layout, record));
}
