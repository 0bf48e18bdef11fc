#pragma once

#include "platform/types.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_string.h"

inline constexpr OpcUa_UInt16 OpcUa_IdentifierType_Numeric = 0;
inline constexpr OpcUa_UInt16 OpcUa_IdentifierType_String = 1;
inline constexpr OpcUa_UInt16 OpcUa_IdentifierType_Guid = 2;
inline constexpr OpcUa_UInt16 OpcUa_IdentifierType_Opaque = 3;

/// The identifier of a node in a server (OPC 10000-3, 8.2). It owns its identifier.
struct OpcUa_NodeId
{
    OpcUa_UInt16 IdentifierType; ///< Picks the member of Identifier.
    OpcUa_UInt16 NamespaceIndex;
    union
    {
        OpcUa_UInt32 Numeric;
        OpcUa_String String;
        OpcUa_Guid* Guid; ///< From the stack's allocator; null stands for the null guid.
        OpcUa_ByteString ByteString;
    } Identifier;
};

/// Makes the null node id, numeric 0 in namespace 0, without looking at what was there. A null
/// pointer is ignored.
void OpcUa_NodeId_Initialize(OpcUa_NodeId* nodeId);

/// Frees the identifier and makes the null node id. Null pointers and a second call are allowed.
void OpcUa_NodeId_Clear(OpcUa_NodeId* nodeId);

/// Deep copy; what the destination held is cleared. `BadInvalidArgument` for a null pointer or an
/// identifier type above 3, `BadOutOfMemory`; the destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_NodeId_CopyTo(const OpcUa_NodeId* source,
                                                   OpcUa_NodeId* destination);

/// Differences of identifier type and namespace index, then the order of the identifiers by their
/// type's compare; identifiers of an unknown type are equal. The same pointer is equal, a null
/// pointer less.
[[nodiscard]] OpcUa_Int32 OpcUa_NodeId_Compare(const OpcUa_NodeId* left, const OpcUa_NodeId* right);

/// True for a null pointer and in namespace 0 for the number 0, a null or empty string, a null guid
/// and an empty byte string.
[[nodiscard]] bool OpcUa_NodeId_IsNull(const OpcUa_NodeId* nodeId);
