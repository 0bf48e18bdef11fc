#pragma once

#include "platform/types.h"
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

struct OpcUa_Encoder;
struct OpcUa_EncodeableType;
struct OpcUa_MessageContext;
struct OpcUa_OutputStream;

/// Writes one value. With a null `size` its bytes go to the stream; otherwise nothing is written and
/// the bytes that it would take are added to `*size`. `fieldName` may be null: the binary form
/// ignores it, other encodings show it.
template <typename T>
using OpcUa_WriteOperation = OpcUa_StatusCode (*)(OpcUa_Encoder* encoder, const char* fieldName,
                                                  const T* value, OpcUa_Int32* size);

/// The same for an array: a null one with the count -1 or 0, or `count` elements.
template <typename T>
using OpcUa_WriteArrayOperation = OpcUa_StatusCode (*)(OpcUa_Encoder* encoder,
                                                       const char* fieldName, const T* values,
                                                       OpcUa_Int32 count, OpcUa_Int32* size);

/// What an encoder does. Every operation checks in this order: a null handle or value, or an array
/// with a positive count and no elements, is `BadInvalidArgument`; so is a handle of another kind, or
/// one whose table holds something else in the place of this very operation; an encoder that isn't
/// open is `BadInvalidState`. Further failures: `BadEncodingError` for a value that has no encoding
/// (an unknown type number, an unknown identifier type, a count below -1, a positive length without
/// content, dimensions below 0), `BadEncodingLimitsExceeded` for values nested deeper than
/// OpcUa_Nesting_MaxLevels and for what doesn't fit a length, and the status of the stream. After a
/// failure the message is abandoned; a size is left as it was.
struct OpcUa_EncoderInterface
{
    /// Starts to write to a stream, which outlives the encoder's use, as does the context. Once for
    /// each encoder: `BadInvalidState` for one that was opened before. `BadNotSupported` for a context
    /// of another encoding.
    OpcUa_StatusCode (*Open)(OpcUa_Encoder* encoder, OpcUa_OutputStream* stream,
                             const OpcUa_MessageContext* context);
    /// Ends the use of the stream, which stays open.
    OpcUa_StatusCode (*Close)(OpcUa_Encoder* encoder);
    /// Frees the encoder, open or closed, and makes the pointer null.
    OpcUa_StatusCode (*Delete)(OpcUa_Encoder** encoder);
    /// Names the namespace of the fields to come, for encodings that show it.
    OpcUa_StatusCode (*PushNamespace)(OpcUa_Encoder* encoder, const char* namespaceUri);
    /// Goes back to the namespace before.
    OpcUa_StatusCode (*PopNamespace)(OpcUa_Encoder* encoder);

    OpcUa_WriteOperation<OpcUa_Boolean> WriteBoolean;
    OpcUa_WriteOperation<OpcUa_SByte> WriteSByte;
    OpcUa_WriteOperation<OpcUa_Byte> WriteByte;
    OpcUa_WriteOperation<OpcUa_Int16> WriteInt16;
    OpcUa_WriteOperation<OpcUa_UInt16> WriteUInt16;
    OpcUa_WriteOperation<OpcUa_Int32> WriteInt32;
    OpcUa_WriteOperation<OpcUa_UInt32> WriteUInt32;
    OpcUa_WriteOperation<OpcUa_Int64> WriteInt64;
    OpcUa_WriteOperation<OpcUa_UInt64> WriteUInt64;
    OpcUa_WriteOperation<OpcUa_Float> WriteFloat;
    OpcUa_WriteOperation<OpcUa_Double> WriteDouble;
    OpcUa_WriteOperation<OpcUa_String> WriteString;
    OpcUa_WriteOperation<OpcUa_DateTime> WriteDateTime;
    OpcUa_WriteOperation<OpcUa_Guid> WriteGuid;
    OpcUa_WriteOperation<OpcUa_ByteString> WriteByteString;
    OpcUa_WriteOperation<OpcUa_XmlElement> WriteXmlElement;
    OpcUa_WriteOperation<OpcUa_NodeId> WriteNodeId;
    OpcUa_WriteOperation<OpcUa_ExpandedNodeId> WriteExpandedNodeId;
    OpcUa_WriteOperation<OpcUa_StatusCode> WriteStatusCode;
    OpcUa_WriteOperation<OpcUa_DiagnosticInfo> WriteDiagnosticInfo;
    OpcUa_WriteOperation<OpcUa_LocalizedText> WriteLocalizedText;
    OpcUa_WriteOperation<OpcUa_QualifiedName> WriteQualifiedName;
    OpcUa_WriteOperation<OpcUa_ExtensionObject> WriteExtensionObject;
    OpcUa_WriteOperation<OpcUa_DataValue> WriteDataValue;
    OpcUa_WriteOperation<OpcUa_Variant> WriteVariant;
    /// Writes a record by its row.
    OpcUa_StatusCode (*WriteEncodeable)(OpcUa_Encoder* encoder, const char* fieldName,
                                        const void* value, const OpcUa_EncodeableType* type,
                                        OpcUa_Int32* size);
    OpcUa_WriteOperation<OpcUa_Int32> WriteEnumerated;

    OpcUa_WriteArrayOperation<OpcUa_Boolean> WriteBooleanArray;
    OpcUa_WriteArrayOperation<OpcUa_SByte> WriteSByteArray;
    OpcUa_WriteArrayOperation<OpcUa_Byte> WriteByteArray;
    OpcUa_WriteArrayOperation<OpcUa_Int16> WriteInt16Array;
    OpcUa_WriteArrayOperation<OpcUa_UInt16> WriteUInt16Array;
    OpcUa_WriteArrayOperation<OpcUa_Int32> WriteInt32Array;
    OpcUa_WriteArrayOperation<OpcUa_UInt32> WriteUInt32Array;
    OpcUa_WriteArrayOperation<OpcUa_Int64> WriteInt64Array;
    OpcUa_WriteArrayOperation<OpcUa_UInt64> WriteUInt64Array;
    OpcUa_WriteArrayOperation<OpcUa_Float> WriteFloatArray;
    OpcUa_WriteArrayOperation<OpcUa_Double> WriteDoubleArray;
    OpcUa_WriteArrayOperation<OpcUa_String> WriteStringArray;
    OpcUa_WriteArrayOperation<OpcUa_DateTime> WriteDateTimeArray;
    OpcUa_WriteArrayOperation<OpcUa_Guid> WriteGuidArray;
    OpcUa_WriteArrayOperation<OpcUa_ByteString> WriteByteStringArray;
    OpcUa_WriteArrayOperation<OpcUa_XmlElement> WriteXmlElementArray;
    OpcUa_WriteArrayOperation<OpcUa_NodeId> WriteNodeIdArray;
    OpcUa_WriteArrayOperation<OpcUa_ExpandedNodeId> WriteExpandedNodeIdArray;
    OpcUa_WriteArrayOperation<OpcUa_StatusCode> WriteStatusCodeArray;
    OpcUa_WriteArrayOperation<OpcUa_DiagnosticInfo> WriteDiagnosticInfoArray;
    OpcUa_WriteArrayOperation<OpcUa_LocalizedText> WriteLocalizedTextArray;
    OpcUa_WriteArrayOperation<OpcUa_QualifiedName> WriteQualifiedNameArray;
    OpcUa_WriteArrayOperation<OpcUa_ExtensionObject> WriteExtensionObjectArray;
    OpcUa_WriteArrayOperation<OpcUa_DataValue> WriteDataValueArray;
    OpcUa_WriteArrayOperation<OpcUa_Variant> WriteVariantArray;
    /// Writes a flat block of records by their row.
    OpcUa_StatusCode (*WriteEncodeableArray)(OpcUa_Encoder* encoder, const char* fieldName,
                                             const void* values, OpcUa_Int32 count,
                                             const OpcUa_EncodeableType* type, OpcUa_Int32* size);
    OpcUa_WriteArrayOperation<OpcUa_Int32> WriteEnumeratedArray;

    /// Writes a message: the id of the binary encoding of its row, then the record.
    OpcUa_StatusCode (*WriteMessage)(OpcUa_Encoder* encoder, const void* message,
                                     const OpcUa_EncodeableType* type, OpcUa_Int32* size);
};

/// An encoder of any kind: a table of operations and a private block. It belongs to one thread.
struct OpcUa_Encoder
{
    const OpcUa_EncoderInterface* Interface;
    void* Handle; ///< The implementation's own.
};
