#include "stack/opcua_recordlayout.h"

#include "platform/allocator.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_release.h"

#include <cstring>

namespace {

void initializeValue(const OpcUa_RecordField& field, void* value)
{
    if (field.Type == OpcUa_FieldType_Record) {
        OpcUa_RecordLayout_Initialize(*field.Record, value);
    } else {
        OpcUa_BuiltInType_GetTraits(field.Type)->Initialize(value);
    }
}

template <typename T>
void releaseAs(void* value)
{
    OpcUa_Value_Release(*static_cast<T*>(value));
}

void releaseValue(const OpcUa_RecordField& field, void* value)
{
    switch (field.Type) {
    case OpcUaType_String:
        releaseAs<OpcUa_String>(value);
        break;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        releaseAs<OpcUa_ByteString>(value);
        break;
    case OpcUaType_NodeId:
        releaseAs<OpcUa_NodeId>(value);
        break;
    case OpcUaType_ExpandedNodeId:
        releaseAs<OpcUa_ExpandedNodeId>(value);
        break;
    case OpcUaType_QualifiedName:
        releaseAs<OpcUa_QualifiedName>(value);
        break;
    case OpcUaType_LocalizedText:
        releaseAs<OpcUa_LocalizedText>(value);
        break;
    case OpcUaType_ExtensionObject:
        releaseAs<OpcUa_ExtensionObject>(value);
        break;
    case OpcUaType_DataValue:
        releaseAs<OpcUa_DataValue>(value);
        break;
    case OpcUaType_Variant:
        releaseAs<OpcUa_Variant>(value);
        break;
    case OpcUaType_DiagnosticInfo:
        releaseAs<OpcUa_DiagnosticInfo>(value);
        break;
    case OpcUa_FieldType_Record:
        OpcUa_RecordLayout_Release(*field.Record, value);
        break;
    default:
        break;
    }
}

void releaseArray(const OpcUa_RecordField& field, void* block, OpcUa_Int32 count)
{
    if (field.Type == OpcUa_FieldType_Record) {
        OpcUa_RecordLayout_FreeBlock(*field.Record, block, count);
    } else {
        OpcUa_Elements_Free(*OpcUa_BuiltInType_GetTraits(field.BuiltInType), block, count);
    }
}

} // namespace

void OpcUa_RecordLayout_Initialize(const OpcUa_RecordLayout& layout, void* record)
{
    if (record == nullptr) {
        return;
    }
    std::memset(record, 0, layout.Size);
    if (layout.IsZeroed) {
        return;
    }
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (!OpcUa_Field_IsZeroed(field)) {
            initializeValue(field, OpcUa_Field_At(record, field.Offset));
        }
    }
}

void OpcUa_RecordLayout_Release(const OpcUa_RecordLayout& layout, void* record)
{
    if (layout.IsPlain) {
        return;
    }
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray) {
            releaseArray(field, OpcUa_Field_Block(field, record), OpcUa_Field_Count(field, record));
        } else {
            releaseValue(field, OpcUa_Field_At(record, field.Offset));
        }
    }
}

void OpcUa_RecordLayout_FreeBlock(const OpcUa_RecordLayout& layout, void* block, OpcUa_Int32 count)
{
    if (block == nullptr) {
        return;
    }
    for (OpcUa_Int32 i = 0; i < count && !layout.IsPlain; ++i) {
        OpcUa_RecordLayout_Release(layout, OpcUa_Record_At(layout, block, i));
    }
    OpcUa_Memory_Free(block);
}

void OpcUa_RecordLayout_Clear(const OpcUa_RecordLayout& layout, void* record)
{
    if (record != nullptr) {
        OpcUa_RecordLayout_Release(layout, record);
        OpcUa_RecordLayout_Initialize(layout, record);
    }
}
