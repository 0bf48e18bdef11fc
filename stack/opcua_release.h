#pragma once

#include "platform/allocator.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"

// Frees what a value owns and leaves the value itself undefined, for one whose memory is about to be
// freed or initialised. Most values own nothing, and those that visibly don't are passed without a
// call.

inline void OpcUa_Value_Release(OpcUa_String& string)
{
    if ((string.flags & OpcUa_String_OwnsContent) != 0) {
        OpcUa_Memory_Free(string.strContent);
    }
}

inline void OpcUa_Value_Release(OpcUa_ByteString& byteString)
{
    if (byteString.Data != nullptr) {
        OpcUa_Memory_Free(byteString.Data);
    }
}

inline void OpcUa_Value_Release(OpcUa_NodeId& nodeId)
{
    if (nodeId.IdentifierType == OpcUa_IdentifierType_String) {
        OpcUa_Value_Release(nodeId.Identifier.String);
    } else if (nodeId.IdentifierType != OpcUa_IdentifierType_Numeric) {
        OpcUa_NodeId_Clear(&nodeId);
    }
}

inline void OpcUa_Value_Release(OpcUa_ExpandedNodeId& nodeId)
{
    OpcUa_Value_Release(nodeId.NodeId);
    OpcUa_Value_Release(nodeId.NamespaceUri);
}

inline void OpcUa_Value_Release(OpcUa_QualifiedName& name)
{
    OpcUa_Value_Release(name.Name);
}

inline void OpcUa_Value_Release(OpcUa_LocalizedText& text)
{
    OpcUa_Value_Release(text.Locale);
    OpcUa_Value_Release(text.Text);
}

inline void OpcUa_Value_Release(OpcUa_Variant& variant)
{
    if (variant.Datatype > OpcUaType_Double || variant.ArrayType != OpcUa_VariantArrayType_Scalar) {
        OpcUa_Variant_Clear(&variant);
    }
}

inline void OpcUa_Value_Release(OpcUa_DataValue& value)
{
    OpcUa_Value_Release(value.Value);
}

inline void OpcUa_Value_Release(OpcUa_ExtensionObject& object)
{
    OpcUa_ExtensionObject_Clear(&object);
}

inline void OpcUa_Value_Release(OpcUa_DiagnosticInfo& info)
{
    OpcUa_DiagnosticInfo_Clear(&info);
}
