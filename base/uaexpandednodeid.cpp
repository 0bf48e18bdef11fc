#include "base/uaexpandednodeid.h"

#include "base/uanodeid.h"
#include "base/uastring.h"

UaExpandedNodeId::UaExpandedNodeId(const UaNodeId& nodeId, const UaString& namespaceUri,
                                   OpcUa_UInt32 serverIndex) noexcept
{
    setExpandedNodeId(nodeId, namespaceUri, serverIndex);
}

UaExpandedNodeId::UaExpandedNodeId(const OpcUa_ExpandedNodeId& nodeId) noexcept
    : m_nodeId(nodeId)
{
}

UaExpandedNodeId& UaExpandedNodeId::operator=(const OpcUa_ExpandedNodeId& nodeId) noexcept
{
    m_nodeId.set(nodeId);
    return *this;
}

void UaExpandedNodeId::setExpandedNodeId(const UaNodeId& nodeId, const UaString& namespaceUri,
                                         OpcUa_UInt32 serverIndex) noexcept
{
    m_nodeId.set({*nodeId.toOpcUaNodeId(), *namespaceUri.toOpcUaString(), serverIndex});
}

void UaExpandedNodeId::clear() noexcept
{
    m_nodeId.clear();
}

UaNodeId UaExpandedNodeId::nodeId() const noexcept
{
    return UaNodeId(m_nodeId.get()->NodeId);
}

UaString UaExpandedNodeId::namespaceUri() const
{
    return UaString(&m_nodeId.get()->NamespaceUri);
}

OpcUa_UInt32 UaExpandedNodeId::serverIndex() const noexcept
{
    return m_nodeId.get()->ServerIndex;
}

bool UaExpandedNodeId::isNull() const noexcept
{
    return OpcUa_NodeId_IsNull(&m_nodeId.get()->NodeId);
}

const OpcUa_ExpandedNodeId* UaExpandedNodeId::toOpcUaExpandedNodeId() const noexcept
{
    return m_nodeId.get();
}

OpcUa_StatusCode UaExpandedNodeId::copyTo(OpcUa_ExpandedNodeId* pTarget) const noexcept
{
    return m_nodeId.copyTo(pTarget);
}

OpcUa_StatusCode UaExpandedNodeId::detach(OpcUa_ExpandedNodeId* pTarget) noexcept
{
    return m_nodeId.detach(pTarget);
}

UaString UaExpandedNodeId::toString() const
{
    return UaNodeId::toString(m_nodeId.get()->NodeId);
}

UaString UaExpandedNodeId::toFullString() const
{
    return UaNodeId::toFullString(m_nodeId.get()->NodeId);
}

bool UaExpandedNodeId::operator==(const UaExpandedNodeId& other) const noexcept
{
    return isEqual(*m_nodeId.get(), *other.m_nodeId.get());
}

bool UaExpandedNodeId::isEqual(const OpcUa_ExpandedNodeId& left,
                               const OpcUa_ExpandedNodeId& right) noexcept
{
    return left.ServerIndex == right.ServerIndex &&
           OpcUa_String_Compare(&left.NamespaceUri, &right.NamespaceUri) == 0 &&
           UaNodeId::isEqual(left.NodeId, right.NodeId);
}
