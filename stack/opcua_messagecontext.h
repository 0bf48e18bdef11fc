#pragma once

#include "platform/types.h"

struct OpcUa_EncodeableTypeTable;
struct OpcUa_NamespaceTable;

/// How the messages of a context are encoded.
enum OpcUa_MessageEncoding : OpcUa_UInt32
{
    OpcUa_MessageEncoding_Binary = 0,
    OpcUa_MessageEncoding_Xml = 1,
};

/// What an encoder or decoder has to know besides the bytes. In every limit 0 is no limit. The tables
/// belong to somebody else, outlive the context and are only read; null is a table without entries.
struct OpcUa_MessageContext
{
    OpcUa_Int32 MaxArrayLength;      ///< Elements of one array.
    OpcUa_Int32 MaxStringLength;     ///< Bytes of one string.
    OpcUa_Int32 MaxByteStringLength; ///< Bytes of one byte string or XML element.
    OpcUa_Int32 MaxMessageSize;      ///< Bytes of a message; no array has more elements either.
    OpcUa_MessageEncoding Encoding;
    const OpcUa_NamespaceTable* NamespaceUris;   ///< Tells which namespace an index means.
    const OpcUa_EncodeableTypeTable* KnownTypes; ///< Rows for the bodies of extension objects.
};

/// Takes the limits from the stack's configuration, with binary encoding and without tables. A null
/// pointer is ignored.
void OpcUa_MessageContext_Initialize(OpcUa_MessageContext* context);
