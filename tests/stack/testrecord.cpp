#include "tests/stack/testrecord.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_decoder.h"
#include "stack/opcua_encoder.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

#include <stdexcept>

namespace {

void initializeRecord(TestRecord* record)
{
    *record = {};
    OpcUa_ExtensionObject_Initialize(&record->Next);
}

void clearRecord(TestRecord* record)
{
    if (record != nullptr) {
        OpcUa_String_Clear(&record->Name);
        OpcUa_ExtensionObject_Clear(&record->Next);
        record->Number = 0;
    }
}

OpcUa_StatusCode fillRecord(const TestRecord& source, TestRecord& copy)
{
    copy.Number = source.Number;
    const OpcUa_StatusCode status = OpcUa_String_CopyTo(&source.Name, &copy.Name);
    return OpcUa_IsBad(status) ? status : OpcUa_ExtensionObject_CopyTo(&source.Next, &copy.Next);
}

OpcUa_StatusCode copyRecord(const void* source, void* destination)
{
    return OpcUa_Record_CopyTo<initializeRecord, clearRecord>(
        static_cast<const TestRecord*>(source), static_cast<TestRecord*>(destination), fillRecord);
}

OpcUa_Int32 orderOf(const TestRecord& left, const TestRecord& right)
{
    if (left.Number != right.Number) {
        return OpcUa_Int32_Compare(&left.Number, &right.Number);
    }
    const OpcUa_Int32 order = OpcUa_String_Compare(&left.Name, &right.Name);
    return order != 0 ? order : OpcUa_ExtensionObject_Compare(&left.Next, &right.Next);
}

OpcUa_Int32 compareRecords(const void* left, const void* right)
{
    return OpcUa_Record_Compare(static_cast<const TestRecord*>(left),
                                static_cast<const TestRecord*>(right), orderOf);
}

OpcUa_Int32 compareNumbers(const void* left, const void* right)
{
    return OpcUa_Int32_Compare(&static_cast<const TestRecord*>(left)->Number,
                               &static_cast<const TestRecord*>(right)->Number);
}

// As a host writes them: by the tables of operations, field by field.

OpcUa_StatusCode sizeOfRecord(const void* value, OpcUa_Encoder* encoder, OpcUa_Int32* size)
{
    if (value == nullptr || encoder == nullptr || size == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *size = -1;
    const auto& record = *static_cast<const TestRecord*>(value);
    const OpcUa_EncoderInterface& to = *encoder->Interface;
    OpcUa_Int32 sum = 0;
    OpcUa_StatusCode status = to.WriteInt32(encoder, "Number", &record.Number, &sum);
    if (OpcUa_IsGood(status)) {
        status = to.WriteString(encoder, "Name", &record.Name, &sum);
    }
    if (OpcUa_IsGood(status)) {
        status = to.WriteExtensionObject(encoder, "Next", &record.Next, &sum);
    }
    if (OpcUa_IsGood(status)) {
        *size = sum;
    }
    return status;
}

OpcUa_StatusCode encodeRecord(const void* value, OpcUa_Encoder* encoder)
{
    if (value == nullptr || encoder == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const auto& record = *static_cast<const TestRecord*>(value);
    const OpcUa_EncoderInterface& to = *encoder->Interface;
    OpcUa_StatusCode status = to.WriteInt32(encoder, "Number", &record.Number, nullptr);
    if (OpcUa_IsGood(status)) {
        status = to.WriteString(encoder, "Name", &record.Name, nullptr);
    }
    return OpcUa_IsBad(status) ? status
                               : to.WriteExtensionObject(encoder, "Next", &record.Next, nullptr);
}

OpcUa_StatusCode decodeRecord(void* value, OpcUa_Decoder* decoder)
{
    if (value == nullptr || decoder == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    auto& record = *static_cast<TestRecord*>(value);
    initializeRecord(&record);
    const OpcUa_DecoderInterface& from = *decoder->Interface;
    OpcUa_StatusCode status = from.ReadInt32(decoder, "Number", &record.Number);
    if (OpcUa_IsGood(status)) {
        status = from.ReadString(decoder, "Name", &record.Name);
    }
    if (OpcUa_IsGood(status)) {
        status = from.ReadExtensionObject(decoder, "Next", &record.Next);
    }
    if (OpcUa_IsBad(status)) {
        clearRecord(&record);
    }
    return status;
}

constexpr OpcUa_EncodeableType makeType(OpcUa_Int32 (*compare)(const void*, const void*))
{
    return {"TestRecord",
            1001,
            1002,
            0,
            nullptr,
            sizeof(TestRecord),
            [](void* record) { initializeRecord(static_cast<TestRecord*>(record)); },
            [](void* record) { clearRecord(static_cast<TestRecord*>(record)); },
            sizeOfRecord,
            encodeRecord,
            decodeRecord,
            compare,
            nullptr,
            copyRecord};
}

} // namespace

const OpcUa_EncodeableType testRecordType = makeType(compareRecords);
const OpcUa_EncodeableType testRecordTwinType = makeType(compareRecords);
const OpcUa_EncodeableType testRecordOtherType = makeType(compareNumbers);

void fillWithTestRecord(OpcUa_ExtensionObject& object, OpcUa_Int32 number, const char* name,
                        const OpcUa_EncodeableType& type)
{
    auto* record = static_cast<TestRecord*>(OpcUa_Memory_Alloc(sizeof(TestRecord)));
    initializeRecord(record);
    record->Number = number;
    if (OpcUa_IsBad(OpcUa_String_AttachCopy(&record->Name, name))) {
        throw std::runtime_error("no memory for a test record");
    }
    object.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    object.Body.EncodeableObject = {record, &type};
}

TestRecord& testRecordOf(OpcUa_ExtensionObject& object)
{
    return *static_cast<TestRecord*>(object.Body.EncodeableObject.Object);
}
