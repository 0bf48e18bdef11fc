#include "stack/opcua_recordlayout.h"

#include "platform/allocator.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_variant.h"

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

// Most values own nothing. Those that visibly don't are passed without a call.

void release(OpcUa_String& string)
{
    if ((string.flags & OpcUa_String_OwnsContent) != 0) {
        OpcUa_Memory_Free(string.strContent);
    }
}

void release(OpcUa_NodeId& nodeId)
{
    if (nodeId.IdentifierType != OpcUa_IdentifierType_Numeric) {
        OpcUa_NodeId_Clear(&nodeId);
    }
}

void release(OpcUa_Variant& variant)
{
    if (variant.Datatype > OpcUaType_Double || variant.ArrayType != OpcUa_VariantArrayType_Scalar) {
        OpcUa_Variant_Clear(&variant);
    }
}

void releaseValue(const OpcUa_RecordField& field, void* value)
{
    switch (field.Type) {
    case OpcUaType_String:
        release(*static_cast<OpcUa_String*>(value));
        break;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        OpcUa_Memory_Free(static_cast<OpcUa_ByteString*>(value)->Data);
        break;
    case OpcUaType_NodeId:
        release(*static_cast<OpcUa_NodeId*>(value));
        break;
    case OpcUaType_ExpandedNodeId:
        release(static_cast<OpcUa_ExpandedNodeId*>(value)->NodeId);
        release(static_cast<OpcUa_ExpandedNodeId*>(value)->NamespaceUri);
        break;
    case OpcUaType_QualifiedName:
        release(static_cast<OpcUa_QualifiedName*>(value)->Name);
        break;
    case OpcUaType_LocalizedText:
        release(static_cast<OpcUa_LocalizedText*>(value)->Locale);
        release(static_cast<OpcUa_LocalizedText*>(value)->Text);
        break;
    case OpcUaType_ExtensionObject:
        OpcUa_ExtensionObject_Clear(static_cast<OpcUa_ExtensionObject*>(value));
        break;
    case OpcUaType_DataValue:
        release(static_cast<OpcUa_DataValue*>(value)->Value);
        break;
    case OpcUaType_Variant:
        release(*static_cast<OpcUa_Variant*>(value));
        break;
    case OpcUaType_DiagnosticInfo:
        OpcUa_DiagnosticInfo_Clear(static_cast<OpcUa_DiagnosticInfo*>(value));
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
