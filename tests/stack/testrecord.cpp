#include "tests/stack/testrecord.h"

#include "platform/allocator.h"
#include "platform/status.h"
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
            nullptr,
            nullptr,
            nullptr,
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
