#include "stack/opcua_expandednodeid.h"

#include "platform/status.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

namespace {

OpcUa_StatusCode fillExpandedNodeId(const OpcUa_ExpandedNodeId& source, OpcUa_ExpandedNodeId& copy)
{
    copy.ServerIndex = source.ServerIndex;
    const OpcUa_StatusCode status = OpcUa_NodeId_CopyTo(&source.NodeId, &copy.NodeId);
    return OpcUa_IsBad(status) ? status
                               : OpcUa_String_CopyTo(&source.NamespaceUri, &copy.NamespaceUri);
}

OpcUa_Int32 compareExpandedNodeIds(const OpcUa_ExpandedNodeId& left,
                                   const OpcUa_ExpandedNodeId& right)
{
    if (left.ServerIndex != right.ServerIndex) {
        return OpcUa_UInt32_Compare(&left.ServerIndex, &right.ServerIndex);
    }
    const OpcUa_Int32 order = OpcUa_String_Compare(&left.NamespaceUri, &right.NamespaceUri);
    return order != 0 ? order : OpcUa_NodeId_Compare(&left.NodeId, &right.NodeId);
}

} // namespace

void OpcUa_ExpandedNodeId_Initialize(OpcUa_ExpandedNodeId* nodeId)
{
    if (nodeId != nullptr) {
        *nodeId = {};
    }
}

void OpcUa_ExpandedNodeId_Clear(OpcUa_ExpandedNodeId* nodeId)
{
    if (nodeId != nullptr) {
        OpcUa_NodeId_Clear(&nodeId->NodeId);
        OpcUa_String_Clear(&nodeId->NamespaceUri);
        nodeId->ServerIndex = 0;
    }
}

OpcUa_StatusCode OpcUa_ExpandedNodeId_CopyTo(const OpcUa_ExpandedNodeId* source,
                                             OpcUa_ExpandedNodeId* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_ExpandedNodeId_Initialize, OpcUa_ExpandedNodeId_Clear>(
        source, destination, fillExpandedNodeId);
}

OpcUa_Int32 OpcUa_ExpandedNodeId_Compare(const OpcUa_ExpandedNodeId* left,
                                         const OpcUa_ExpandedNodeId* right)
{
    return OpcUa_Record_Compare(left, right, compareExpandedNodeIds);
}
