#pragma once

#include "platform/types.h"

struct OpcUa_Encoder;
struct OpcUa_Decoder;

/// One row of the table of encodeable types: how a record known at compile time is handled. Rows are
/// immutable and live as long as anything that points at them.
struct OpcUa_EncodeableType
{
    const char* TypeName;
    OpcUa_UInt32 TypeId;               ///< Numeric id of the data type.
    OpcUa_UInt32 BinaryEncodingTypeId; ///< Numeric id of the binary encoding.
    OpcUa_UInt32 XmlEncodingTypeId;    ///< Numeric id of the XML encoding, 0 for none.
    const char* NamespaceUri;          ///< Null for the standard's namespace.
    OpcUa_UInt32 AllocationSize;       ///< Size of the record in bytes.

    /// Brings the record to its zero state; cannot fail.
    void (*Initialize)(void* record);
    /// Frees what the record owns and leaves it in the zero state; allowed on null and twice.
    void (*Clear)(void* record);
    /// Encoded size in bytes.
    OpcUa_StatusCode (*GetSize)(const void* record, OpcUa_Encoder* encoder, OpcUa_Int32* size);
    /// Writes the fields in order.
    OpcUa_StatusCode (*Encode)(const void* record, OpcUa_Encoder* encoder);
    /// Reads the fields in order into a record, which is left cleared on failure.
    OpcUa_StatusCode (*Decode)(void* record, OpcUa_Decoder* decoder);
    /// 0 for equal records, otherwise another number.
    OpcUa_Int32 (*Compare)(const void* left, const void* right);
    /// Allocates a record and copies into it; null on failure.
    OpcUa_StatusCode (*Copy)(const void* record, void** copy);
    /// Deep copy into a given, initialised record, which is left cleared on failure.
    OpcUa_StatusCode (*CopyTo)(const void* source, void* destination);
};
