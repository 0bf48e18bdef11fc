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

struct OpcUa_Decoder;
struct OpcUa_EncodeableType;
struct OpcUa_InputStream;
struct OpcUa_MessageContext;

/// Reads one value. What was in it is overwritten without being freed; after a failure the value is
/// cleared. `fieldName` may be null: the binary form ignores it.
template <typename T>
using OpcUa_ReadOperation = OpcUa_StatusCode (*)(OpcUa_Decoder* decoder, const char* fieldName,
                                                 T* value);

/// Reads an array into a new block from the stack's allocator. A null array has a null block and the
/// count -1, an empty one a null block and the count 0; after a failure block and count are 0.
template <typename T>
using OpcUa_ReadArrayOperation = OpcUa_StatusCode (*)(OpcUa_Decoder* decoder, const char* fieldName,
                                                      T** values, OpcUa_Int32* count);

/// What a decoder does. Every operation checks in this order: a null handle or value is
/// `BadInvalidArgument`; so is a handle of another kind, or one whose table holds something else in
/// the place of this very operation; a decoder that isn't open is `BadInvalidState`. Further
/// failures: `BadDecodingError` for bytes that are no encoding of the type,
/// `BadEncodingLimitsExceeded` for a length above the context's limit and for values nested deeper
/// than OpcUa_Nesting_MaxLevels, `BadExpectedStreamToBlock` for a stream that ends within the bytes
/// of a string, the status of the stream when it ends anywhere else, `BadOutOfMemory`. After a failure
/// the message is abandoned.
///
/// No length in the input takes memory by itself: blocks are as large as the bytes behind them can
/// fill.
struct OpcUa_DecoderInterface
{
    /// Starts to read from a stream, which outlives the decoder's use, as does the context. Once for
    /// each decoder: `BadInvalidState` for one that was opened before. `BadNotSupported` for a context
    /// of another encoding.
    OpcUa_StatusCode (*Open)(OpcUa_Decoder* decoder, OpcUa_InputStream* stream,
                             const OpcUa_MessageContext* context);
    /// Ends the use of the stream, which stays open.
    OpcUa_StatusCode (*Close)(OpcUa_Decoder* decoder);
    /// Frees the decoder, open or closed, and makes the pointer null.
    OpcUa_StatusCode (*Delete)(OpcUa_Decoder** decoder);
    /// Names the namespace of the fields to come, for encodings that show it.
    OpcUa_StatusCode (*PushNamespace)(OpcUa_Decoder* decoder, const char* namespaceUri);
    /// Goes back to the namespace before.
    OpcUa_StatusCode (*PopNamespace)(OpcUa_Decoder* decoder);

    OpcUa_ReadOperation<OpcUa_Boolean> ReadBoolean;
    OpcUa_ReadOperation<OpcUa_SByte> ReadSByte;
    OpcUa_ReadOperation<OpcUa_Byte> ReadByte;
    OpcUa_ReadOperation<OpcUa_Int16> ReadInt16;
    OpcUa_ReadOperation<OpcUa_UInt16> ReadUInt16;
    OpcUa_ReadOperation<OpcUa_Int32> ReadInt32;
    OpcUa_ReadOperation<OpcUa_UInt32> ReadUInt32;
    OpcUa_ReadOperation<OpcUa_Int64> ReadInt64;
    OpcUa_ReadOperation<OpcUa_UInt64> ReadUInt64;
    OpcUa_ReadOperation<OpcUa_Float> ReadFloat;
    OpcUa_ReadOperation<OpcUa_Double> ReadDouble;
    OpcUa_ReadOperation<OpcUa_String> ReadString;
    OpcUa_ReadOperation<OpcUa_DateTime> ReadDateTime;
    OpcUa_ReadOperation<OpcUa_Guid> ReadGuid;
    OpcUa_ReadOperation<OpcUa_ByteString> ReadByteString;
    OpcUa_ReadOperation<OpcUa_XmlElement> ReadXmlElement;
    OpcUa_ReadOperation<OpcUa_NodeId> ReadNodeId;
    OpcUa_ReadOperation<OpcUa_ExpandedNodeId> ReadExpandedNodeId;
    OpcUa_ReadOperation<OpcUa_StatusCode> ReadStatusCode;
    OpcUa_ReadOperation<OpcUa_DiagnosticInfo> ReadDiagnosticInfo;
    OpcUa_ReadOperation<OpcUa_LocalizedText> ReadLocalizedText;
    OpcUa_ReadOperation<OpcUa_QualifiedName> ReadQualifiedName;
    OpcUa_ReadOperation<OpcUa_ExtensionObject> ReadExtensionObject;
    OpcUa_ReadOperation<OpcUa_DataValue> ReadDataValue;
    OpcUa_ReadOperation<OpcUa_Variant> ReadVariant;
    /// Reads a record by its row.
    OpcUa_StatusCode (*ReadEncodeable)(OpcUa_Decoder* decoder, const char* fieldName, void* value,
                                       const OpcUa_EncodeableType* type);
    OpcUa_ReadOperation<OpcUa_Int32> ReadEnumerated;

    OpcUa_ReadArrayOperation<OpcUa_Boolean> ReadBooleanArray;
    OpcUa_ReadArrayOperation<OpcUa_SByte> ReadSByteArray;
    OpcUa_ReadArrayOperation<OpcUa_Byte> ReadByteArray;
    OpcUa_ReadArrayOperation<OpcUa_Int16> ReadInt16Array;
    OpcUa_ReadArrayOperation<OpcUa_UInt16> ReadUInt16Array;
    OpcUa_ReadArrayOperation<OpcUa_Int32> ReadInt32Array;
    OpcUa_ReadArrayOperation<OpcUa_UInt32> ReadUInt32Array;
    OpcUa_ReadArrayOperation<OpcUa_Int64> ReadInt64Array;
    OpcUa_ReadArrayOperation<OpcUa_UInt64> ReadUInt64Array;
    OpcUa_ReadArrayOperation<OpcUa_Float> ReadFloatArray;
    OpcUa_ReadArrayOperation<OpcUa_Double> ReadDoubleArray;
    OpcUa_ReadArrayOperation<OpcUa_String> ReadStringArray;
    OpcUa_ReadArrayOperation<OpcUa_DateTime> ReadDateTimeArray;
    OpcUa_ReadArrayOperation<OpcUa_Guid> ReadGuidArray;
    OpcUa_ReadArrayOperation<OpcUa_ByteString> ReadByteStringArray;
    OpcUa_ReadArrayOperation<OpcUa_XmlElement> ReadXmlElementArray;
    OpcUa_ReadArrayOperation<OpcUa_NodeId> ReadNodeIdArray;
    OpcUa_ReadArrayOperation<OpcUa_ExpandedNodeId> ReadExpandedNodeIdArray;
    OpcUa_ReadArrayOperation<OpcUa_StatusCode> ReadStatusCodeArray;
    OpcUa_ReadArrayOperation<OpcUa_DiagnosticInfo> ReadDiagnosticInfoArray;
    OpcUa_ReadArrayOperation<OpcUa_LocalizedText> ReadLocalizedTextArray;
    OpcUa_ReadArrayOperation<OpcUa_QualifiedName> ReadQualifiedNameArray;
    OpcUa_ReadArrayOperation<OpcUa_ExtensionObject> ReadExtensionObjectArray;
    OpcUa_ReadArrayOperation<OpcUa_DataValue> ReadDataValueArray;
    OpcUa_ReadArrayOperation<OpcUa_Variant> ReadVariantArray;
    /// Reads records by their row into a flat block.
    OpcUa_StatusCode (*ReadEncodeableArray)(OpcUa_Decoder* decoder, const char* fieldName,
                                            void** values, OpcUa_Int32* count,
                                            const OpcUa_EncodeableType* type);
    OpcUa_ReadArrayOperation<OpcUa_Int32> ReadEnumeratedArray;

    /// Reads a message into a new record, and gives its row. `BadDecodingError` for an id that the
    /// context's table doesn't know. Record and row are null after a failure.
    OpcUa_StatusCode (*ReadMessage)(OpcUa_Decoder* decoder, void** message,
                                    const OpcUa_EncodeableType** type);
};

/// A decoder of any kind: a table of operations and a private block. It belongs to one thread.
struct OpcUa_Decoder
{
    const OpcUa_DecoderInterface* Interface;
    void* Handle; ///< The implementation's own.
};
