#pragma once

#include "base/uabuiltinarray.h"
#include "stack/opcua_bytestring.h"
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

// The arrays over the built-in types (OPC 10000-6, 5.1.2). All of them are the one pattern of
// UaBuiltInArray; they are classes of their own so that a header can declare one by its name alone.
// Arrays of Byte are held by UaByteArray, arrays of XmlElement, which shares its record, by
// UaByteStringArray.

/// Elements of type OpcUa_Boolean.
class UaBooleanArray final : public UaBuiltInArray<OpcUa_Boolean, OpcUaType_Boolean>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_SByte.
class UaSByteArray final : public UaBuiltInArray<OpcUa_SByte, OpcUaType_SByte>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Int16.
class UaInt16Array final : public UaBuiltInArray<OpcUa_Int16, OpcUaType_Int16>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_UInt16.
class UaUInt16Array final : public UaBuiltInArray<OpcUa_UInt16, OpcUaType_UInt16>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Int32.
class UaInt32Array final : public UaBuiltInArray<OpcUa_Int32, OpcUaType_Int32>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_UInt32.
class UaUInt32Array final : public UaBuiltInArray<OpcUa_UInt32, OpcUaType_UInt32>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Int64.
class UaInt64Array final : public UaBuiltInArray<OpcUa_Int64, OpcUaType_Int64>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_UInt64.
class UaUInt64Array final : public UaBuiltInArray<OpcUa_UInt64, OpcUaType_UInt64>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Float.
class UaFloatArray final : public UaBuiltInArray<OpcUa_Float, OpcUaType_Float>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Double.
class UaDoubleArray final : public UaBuiltInArray<OpcUa_Double, OpcUaType_Double>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_String.
class UaStringArray final : public UaBuiltInArray<OpcUa_String, OpcUaType_String>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_DateTime.
class UaDateTimeArray final : public UaBuiltInArray<OpcUa_DateTime, OpcUaType_DateTime>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Guid.
class UaGuidArray final : public UaBuiltInArray<OpcUa_Guid, OpcUaType_Guid>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_ByteString.
class UaByteStringArray final : public UaBuiltInArray<OpcUa_ByteString, OpcUaType_ByteString>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_NodeId.
class UaNodeIdArray final : public UaBuiltInArray<OpcUa_NodeId, OpcUaType_NodeId>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_ExpandedNodeId.
class UaExpandedNodeIdArray final
    : public UaBuiltInArray<OpcUa_ExpandedNodeId, OpcUaType_ExpandedNodeId>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_StatusCode.
class UaStatusCodeArray final : public UaBuiltInArray<OpcUa_StatusCode, OpcUaType_StatusCode>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_QualifiedName.
class UaQualifiedNameArray final
    : public UaBuiltInArray<OpcUa_QualifiedName, OpcUaType_QualifiedName>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_LocalizedText.
class UaLocalizedTextArray final
    : public UaBuiltInArray<OpcUa_LocalizedText, OpcUaType_LocalizedText>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_ExtensionObject.
class UaExtensionObjectArray final
    : public UaBuiltInArray<OpcUa_ExtensionObject, OpcUaType_ExtensionObject>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_Variant.
class UaVariantArray final : public UaBuiltInArray<OpcUa_Variant, OpcUaType_Variant>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_DataValue.
class UaDataValues final : public UaBuiltInArray<OpcUa_DataValue, OpcUaType_DataValue>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};

/// Elements of type OpcUa_DiagnosticInfo.
class UaDiagnosticInfos final
    : public UaBuiltInArray<OpcUa_DiagnosticInfo, OpcUaType_DiagnosticInfo>
{
public:
    using UaBuiltInArray::UaBuiltInArray;
};
