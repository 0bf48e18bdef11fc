#pragma once

#include "platform/types.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_string.h"

/// A node id that names its namespace by URI or by index, and its server (OPC 10000-4, 7.16).
struct OpcUa_ExpandedNodeId
{
    OpcUa_NodeId NodeId;
    OpcUa_String NamespaceUri; ///< Replaces the namespace index of NodeId when not null.
    OpcUa_UInt32 ServerIndex;
};

/// Makes the null node id without URI on server 0, without looking at what was there. A null pointer
/// is ignored.
void OpcUa_ExpandedNodeId_Initialize(OpcUa_ExpandedNodeId* nodeId);

/// Frees what it owns and initialises it. Null pointers and a second call are allowed.
void OpcUa_ExpandedNodeId_Clear(OpcUa_ExpandedNodeId* nodeId);

/// Deep copy; what the destination held is cleared. `BadInvalidArgument`, `BadOutOfMemory`; the
/// destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_ExpandedNodeId_CopyTo(const OpcUa_ExpandedNodeId* source,
                                                           OpcUa_ExpandedNodeId* destination);

/// Server index, namespace URI, then node id. The same pointer is equal, a null pointer less.
[[nodiscard]] OpcUa_Int32 OpcUa_ExpandedNodeId_Compare(const OpcUa_ExpandedNodeId* left,
                                                       const OpcUa_ExpandedNodeId* right);
