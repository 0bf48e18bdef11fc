#include "base/uanodeid.h"

#include "base/uabytestring.h"
#include "base/uaguid.h"
#include "base/uastring.h"
#include "platform/status.h"

#include <utility>

namespace {

constexpr OpcUa_NodeId nullNodeId{};

} // namespace

UaNodeId::UaNodeId(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    setNodeId(identifier, namespaceIndex);
}

UaNodeId::UaNodeId(const UaString& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    setNodeId(identifier, namespaceIndex);
}

UaNodeId::UaNodeId(const UaGuid& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    setNodeId(identifier, namespaceIndex);
}

UaNodeId::UaNodeId(const UaByteString& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    setNodeId(identifier, namespaceIndex);
}

UaNodeId::UaNodeId(const OpcUa_NodeId& nodeId) noexcept
    : m_block(copyOf(nodeId))
{
}

UaNodeId& UaNodeId::operator=(const OpcUa_NodeId& nodeId) noexcept
{
    m_block = copyOf(nodeId);
    return *this;
}

UaNodeId::Block UaNodeId::copyOf(const OpcUa_NodeId& nodeId) noexcept
{
    Block block = Block::create();
    if (OpcUa_NodeId* record = block.unshared();
        record == nullptr || OpcUa_IsBad(OpcUa_NodeId_CopyTo(&nodeId, record))) {
        return {};
    }
    return block;
}

void UaNodeId::setNodeId(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    Block block = Block::create();
    if (OpcUa_NodeId* record = block.unshared(); record != nullptr) {
        record->NamespaceIndex = namespaceIndex;
        record->Identifier.Numeric = identifier;
    }
    m_block = std::move(block);
}

void UaNodeId::setNodeId(const UaString& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId borrowed{OpcUa_IdentifierType_String, namespaceIndex, {}};
    borrowed.Identifier.String = *identifier.toOpcUaString();
    m_block = copyOf(borrowed);
}

void UaNodeId::setNodeId(const UaGuid& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_Guid guid = *identifier.toOpcUaGuid();
    OpcUa_NodeId borrowed{OpcUa_IdentifierType_Guid, namespaceIndex, {}};
    borrowed.Identifier.Guid = &guid;
    m_block = copyOf(borrowed);
}

void UaNodeId::setNodeId(const UaByteString& identifier, OpcUa_UInt16 namespaceIndex) noexcept
{
    OpcUa_NodeId borrowed{OpcUa_IdentifierType_Opaque, namespaceIndex, {}};
    borrowed.Identifier.ByteString = *identifier.toOpcUaByteString();
    m_block = copyOf(borrowed);
}

void UaNodeId::clear() noexcept
{
    m_block = {};
}

OpcUa_UInt16 UaNodeId::identifierType() const noexcept
{
    return toOpcUaNodeId()->IdentifierType;
}

OpcUa_UInt16 UaNodeId::namespaceIndex() const noexcept
{
    return toOpcUaNodeId()->NamespaceIndex;
}

OpcUa_UInt32 UaNodeId::identifierNumeric() const noexcept
{
    const OpcUa_NodeId* record = toOpcUaNodeId();
    return record->IdentifierType == OpcUa_IdentifierType_Numeric ? record->Identifier.Numeric : 0;
}

UaString UaNodeId::identifierString() const
{
    const OpcUa_NodeId* record = toOpcUaNodeId();
    return record->IdentifierType == OpcUa_IdentifierType_String
               ? UaString(&record->Identifier.String)
               : UaString();
}

UaGuid UaNodeId::identifierGuid() const noexcept
{
    const OpcUa_NodeId* record = toOpcUaNodeId();
    const bool bGuid = record->IdentifierType == OpcUa_IdentifierType_Guid;
    return bGuid && record->Identifier.Guid != nullptr ? UaGuid(*record->Identifier.Guid)
                                                       : UaGuid();
}

UaByteString UaNodeId::identifierOpaque() const
{
    const OpcUa_NodeId* record = toOpcUaNodeId();
    return record->IdentifierType == OpcUa_IdentifierType_Opaque
               ? UaByteString(record->Identifier.ByteString)
               : UaByteString();
}

bool UaNodeId::isNull() const noexcept
{
    return OpcUa_NodeId_IsNull(toOpcUaNodeId());
}

const OpcUa_NodeId* UaNodeId::toOpcUaNodeId() const noexcept
{
    return m_block.isEmpty() ? &nullNodeId : m_block.get();
}

OpcUa_StatusCode UaNodeId::copyTo(OpcUa_NodeId* pTarget) const noexcept
{
    return OpcUa_NodeId_CopyTo(toOpcUaNodeId(), pTarget);
}

OpcUa_StatusCode UaNodeId::detach(OpcUa_NodeId* pTarget) noexcept
{
    if (pTarget == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (OpcUa_NodeId* record = m_block.unshared(); record != nullptr) {
        OpcUa_NodeId_Clear(pTarget);
        *pTarget = std::exchange(*record, OpcUa_NodeId{});
    } else if (const OpcUa_StatusCode status = copyTo(pTarget); OpcUa_IsBad(status)) {
        return status;
    }
    clear();
    return OpcUa_Good;
}
