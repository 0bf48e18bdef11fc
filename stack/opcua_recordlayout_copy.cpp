#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"

#include <cstddef>
#include <cstring>

namespace {

/// Fills an initialised record; after a failure it holds what was copied so far.
OpcUa_StatusCode fillRecord(const OpcUa_RecordLayout& layout, const void* source, void* copy);

OpcUa_StatusCode fillNew(const OpcUa_RecordLayout& layout, const void* source, void* copy)
{
    OpcUa_RecordLayout_Initialize(layout, copy);
    return fillRecord(layout, source, copy);
}

OpcUa_StatusCode copyRecords(const OpcUa_RecordLayout& layout, const void* block, OpcUa_Int32 count,
                             void** copy)
{
    if (block == nullptr || count < 1) {
        return OpcUa_Good;
    }
    void* records = OpcUa_Memory_AllocArray(static_cast<std::size_t>(count), layout.Size);
    if (records == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        const OpcUa_StatusCode status =
            fillNew(layout, OpcUa_Record_At(layout, block, i), OpcUa_Record_At(layout, records, i));
        if (OpcUa_IsBad(status)) {
            OpcUa_RecordLayout_FreeBlock(layout, records, i + 1);
            return status;
        }
    }
    *copy = records;
    return OpcUa_Good;
}

OpcUa_StatusCode copyBlock(const OpcUa_RecordField& field, const void* block, OpcUa_Int32 count,
                           void** copy)
{
    if (field.Type == OpcUa_FieldType_Record) {
        return copyRecords(*field.Record, block, count, copy);
    }
    // What is nested in an element counts its level there.
    OpcUa_ElementTraits traits = *OpcUa_BuiltInType_GetTraits(field.BuiltInType);
    traits.IsNestable = false;
    return OpcUa_Elements_Copy(traits, block, count, copy);
}

OpcUa_StatusCode fillArray(const OpcUa_RecordField& field, const void* source, void* copy)
{
    const OpcUa_Int32 count = OpcUa_Field_Count(field, source);
    const OpcUa_StatusCode status =
        copyBlock(field, OpcUa_Field_Block(field, source), count, &OpcUa_Field_Block(field, copy));
    if (OpcUa_IsNotBad(status)) {
        OpcUa_Field_Count(field, copy) = count;
    }
    return status;
}

OpcUa_StatusCode fillValue(const OpcUa_RecordField& field, const void* source, void* copy)
{
    if (field.Type == OpcUa_FieldType_Record) {
        return fillRecord(*field.Record, source, copy);
    }
    return OpcUa_BuiltInType_GetTraits(field.BuiltInType)->CopyTo(source, copy);
}

OpcUa_StatusCode fillRecord(const OpcUa_RecordLayout& layout, const void* source, void* copy)
{
    if (layout.IsPlain) {
        std::memcpy(copy, source, layout.Size);
        return OpcUa_Good;
    }
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        const OpcUa_StatusCode status = field.IsArray
                                            ? fillArray(field, source, copy)
                                            : fillValue(field, OpcUa_Field_At(source, field.Offset),
                                                        OpcUa_Field_At(copy, field.Offset));
        if (OpcUa_IsBad(status)) {
            return status;
        }
    }
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode OpcUa_RecordLayout_CopyTo(const OpcUa_RecordLayout& layout, const void* source,
                                           void* destination)
{
    if (source == nullptr || destination == nullptr) {
        OpcUa_RecordLayout_Clear(layout, destination);
        return OpcUa_BadInvalidArgument;
    }
    if (source == destination) {
        return OpcUa_Good;
    }
    // Finished before the destination is cleared, as the source may lie in what that owns.
    alignas(std::max_align_t) unsigned char copy[OpcUa_RecordLayout_MaxSize];
    const OpcUa_StatusCode status = fillNew(layout, source, copy);
    if (OpcUa_IsBad(status)) {
        OpcUa_RecordLayout_Clear(layout, copy);
    }
    OpcUa_RecordLayout_Release(layout, destination);
    std::memcpy(destination, copy, layout.Size);
    return status;
}

OpcUa_StatusCode OpcUa_RecordLayout_Copy(const OpcUa_RecordLayout& layout, const void* record,
                                         void** copy)
{
    if (copy != nullptr) {
        *copy = nullptr;
    }
    if (record == nullptr || copy == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    return copyRecords(layout, record, 1, copy);
}
