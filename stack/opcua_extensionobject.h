#pragma once

#include "platform/types.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_expandednodeid.h"

/// What the body of an extension object holds.
enum OpcUa_ExtensionObjectEncoding : OpcUa_UInt32
{
    OpcUa_ExtensionObjectEncoding_None = 0,
    OpcUa_ExtensionObjectEncoding_Binary = 1,
    OpcUa_ExtensionObjectEncoding_Xml = 2,
    OpcUa_ExtensionObjectEncoding_EncodeableObject = 3, ///< A decoded record.
};

/// A record of any type, encoded or decoded (OPC 10000-6, 5.1.8). It owns its body.
struct OpcUa_ExtensionObject
{
    OpcUa_ExpandedNodeId TypeId;
    OpcUa_ExtensionObjectEncoding Encoding; ///< Picks the member of Body.
    union
    {
        OpcUa_ByteString Binary;
        OpcUa_XmlElement Xml;
        struct
        {
            void* Object;                     ///< AllocationSize bytes from the stack's allocator.
            const OpcUa_EncodeableType* Type; ///< The row that handles Object.
        } EncodeableObject;
    } Body;
    OpcUa_Int32 BodySize; ///< Encoded size of the body in bytes as far as it is known, else 0.
};

/// Makes an object without type and body, without looking at what was there. A null pointer is
/// ignored.
void OpcUa_ExtensionObject_Initialize(OpcUa_ExtensionObject* object);

/// Frees type and body, a decoded record through its row, and initialises the object. Null pointers
/// and a second call are allowed. Nesting of any depth is freed without deep recursion.
void OpcUa_ExtensionObject_Clear(OpcUa_ExtensionObject* object);

/// Deep copy, a decoded record through its row; what the destination held is cleared.
/// `BadInvalidArgument` for a null pointer, an unknown encoding or a decoded record without object
/// or row, `BadOutOfMemory`, `BadEncodingLimitsExceeded` for nesting deeper than
/// OpcUa_Nesting_MaxLevels, or the row's status; the destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_ExtensionObject_CopyTo(const OpcUa_ExtensionObject* source,
                                                            OpcUa_ExtensionObject* destination);

/// 0 for the same pointer, 1 when one is null. Then type id, encoding, body size and body decide.
/// Two decoded records are compared by their row when both rows carry the same compare; otherwise,
/// and for nesting deeper than OpcUa_Nesting_MaxLevels, the answer is 1.
[[nodiscard]] OpcUa_Int32 OpcUa_ExtensionObject_Compare(const OpcUa_ExtensionObject* left,
                                                        const OpcUa_ExtensionObject* right);
