#pragma once

#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"

/// Whether a scalar of a type lies behind a pointer in a variant, as its element traits tell at run
/// time.
[[nodiscard]] constexpr bool OpcUa_BuiltInType_IsByPointer(OpcUa_Byte type)
{
    return type == OpcUaType_Guid || type == OpcUaType_NodeId || type == OpcUaType_ExpandedNodeId ||
           type >= OpcUaType_QualifiedName;
}

/// Calls `visitor.template operator()<type, T>()` with the number and the record of a built-in type
/// that is known only at run time. A number outside 1 to 25 gives `otherwise`.
template <typename Visitor>
OpcUa_StatusCode OpcUa_BuiltInType_Dispatch(OpcUa_Byte type, OpcUa_StatusCode otherwise,
                                            Visitor visitor)
{
    switch (type) {
    case OpcUaType_Boolean:
        return visitor.template operator()<OpcUaType_Boolean, OpcUa_Boolean>();
    case OpcUaType_SByte:
        return visitor.template operator()<OpcUaType_SByte, OpcUa_SByte>();
    case OpcUaType_Byte:
        return visitor.template operator()<OpcUaType_Byte, OpcUa_Byte>();
    case OpcUaType_Int16:
        return visitor.template operator()<OpcUaType_Int16, OpcUa_Int16>();
    case OpcUaType_UInt16:
        return visitor.template operator()<OpcUaType_UInt16, OpcUa_UInt16>();
    case OpcUaType_Int32:
        return visitor.template operator()<OpcUaType_Int32, OpcUa_Int32>();
    case OpcUaType_UInt32:
        return visitor.template operator()<OpcUaType_UInt32, OpcUa_UInt32>();
    case OpcUaType_Int64:
        return visitor.template operator()<OpcUaType_Int64, OpcUa_Int64>();
    case OpcUaType_UInt64:
        return visitor.template operator()<OpcUaType_UInt64, OpcUa_UInt64>();
    case OpcUaType_Float:
        return visitor.template operator()<OpcUaType_Float, OpcUa_Float>();
    case OpcUaType_Double:
        return visitor.template operator()<OpcUaType_Double, OpcUa_Double>();
    case OpcUaType_String:
        return visitor.template operator()<OpcUaType_String, OpcUa_String>();
    case OpcUaType_DateTime:
        return visitor.template operator()<OpcUaType_DateTime, OpcUa_DateTime>();
    case OpcUaType_Guid:
        return visitor.template operator()<OpcUaType_Guid, OpcUa_Guid>();
    case OpcUaType_ByteString:
        return visitor.template operator()<OpcUaType_ByteString, OpcUa_ByteString>();
    case OpcUaType_XmlElement:
        return visitor.template operator()<OpcUaType_XmlElement, OpcUa_XmlElement>();
    case OpcUaType_NodeId:
        return visitor.template operator()<OpcUaType_NodeId, OpcUa_NodeId>();
    case OpcUaType_ExpandedNodeId:
        return visitor.template operator()<OpcUaType_ExpandedNodeId, OpcUa_ExpandedNodeId>();
    case OpcUaType_StatusCode:
        return visitor.template operator()<OpcUaType_StatusCode, OpcUa_StatusCode>();
    case OpcUaType_QualifiedName:
        return visitor.template operator()<OpcUaType_QualifiedName, OpcUa_QualifiedName>();
    case OpcUaType_LocalizedText:
        return visitor.template operator()<OpcUaType_LocalizedText, OpcUa_LocalizedText>();
    case OpcUaType_ExtensionObject:
        return visitor.template operator()<OpcUaType_ExtensionObject, OpcUa_ExtensionObject>();
    case OpcUaType_DataValue:
        return visitor.template operator()<OpcUaType_DataValue, OpcUa_DataValue>();
    case OpcUaType_Variant:
        return visitor.template operator()<OpcUaType_Variant, OpcUa_Variant>();
    case OpcUaType_DiagnosticInfo:
        return visitor.template operator()<OpcUaType_DiagnosticInfo, OpcUa_DiagnosticInfo>();
    default:
        return otherwise;
    }
}
