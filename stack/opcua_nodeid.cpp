#include "stack/opcua_nodeid.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

namespace {

OpcUa_StatusCode fillGuid(const OpcUa_Guid* source, OpcUa_Guid*& copy)
{
    if (source == nullptr) {
        return OpcUa_Good;
    }
    copy = static_cast<OpcUa_Guid*>(OpcUa_Memory_Alloc(sizeof(OpcUa_Guid)));
    return copy == nullptr ? OpcUa_BadOutOfMemory : OpcUa_Guid_CopyTo(source, copy);
}

OpcUa_StatusCode fillNodeId(const OpcUa_NodeId& source, OpcUa_NodeId& copy)
{
    copy = {source.IdentifierType, source.NamespaceIndex, {}};
    switch (source.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        copy.Identifier.Numeric = source.Identifier.Numeric;
        return OpcUa_Good;
    case OpcUa_IdentifierType_String:
        OpcUa_String_Initialize(&copy.Identifier.String);
        return OpcUa_String_CopyTo(&source.Identifier.String, &copy.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        copy.Identifier.Guid = nullptr;
        return fillGuid(source.Identifier.Guid, copy.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        OpcUa_ByteString_Initialize(&copy.Identifier.ByteString);
        return OpcUa_ByteString_CopyTo(&source.Identifier.ByteString, &copy.Identifier.ByteString);
    default:
        return OpcUa_BadInvalidArgument;
    }
}

OpcUa_Int32 compareIdentifiers(const OpcUa_NodeId& left, const OpcUa_NodeId& right)
{
    switch (left.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return OpcUa_UInt32_Compare(&left.Identifier.Numeric, &right.Identifier.Numeric);
    case OpcUa_IdentifierType_String:
        return OpcUa_String_Compare(&left.Identifier.String, &right.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return OpcUa_Guid_Compare(left.Identifier.Guid, right.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return OpcUa_ByteString_Compare(&left.Identifier.ByteString, &right.Identifier.ByteString);
    default:
        return 0;
    }
}

OpcUa_Int32 compareNodeIds(const OpcUa_NodeId& left, const OpcUa_NodeId& right)
{
    if (left.IdentifierType != right.IdentifierType) {
        return left.IdentifierType - right.IdentifierType;
    }
    if (left.NamespaceIndex != right.NamespaceIndex) {
        return left.NamespaceIndex - right.NamespaceIndex;
    }
    return compareIdentifiers(left, right);
}

} // namespace

void OpcUa_NodeId_Initialize(OpcUa_NodeId* nodeId)
{
    if (nodeId != nullptr) {
        *nodeId = {};
    }
}

void OpcUa_NodeId_Clear(OpcUa_NodeId* nodeId)
{
    if (nodeId == nullptr) {
        return;
    }
    if (nodeId->IdentifierType == OpcUa_IdentifierType_String) {
        OpcUa_String_Clear(&nodeId->Identifier.String);
    } else if (nodeId->IdentifierType == OpcUa_IdentifierType_Guid) {
        OpcUa_Memory_Free(nodeId->Identifier.Guid);
    } else if (nodeId->IdentifierType == OpcUa_IdentifierType_Opaque) {
        OpcUa_ByteString_Clear(&nodeId->Identifier.ByteString);
    }
    OpcUa_NodeId_Initialize(nodeId);
}

OpcUa_StatusCode OpcUa_NodeId_CopyTo(const OpcUa_NodeId* source, OpcUa_NodeId* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_NodeId_Initialize, OpcUa_NodeId_Clear>(source, destination,
                                                                            fillNodeId);
}

OpcUa_Int32 OpcUa_NodeId_Compare(const OpcUa_NodeId* left, const OpcUa_NodeId* right)
{
    return OpcUa_Record_Compare(left, right, compareNodeIds);
}

bool OpcUa_NodeId_IsNull(const OpcUa_NodeId* nodeId)
{
    if (nodeId == nullptr) {
        return true;
    }
    if (nodeId->NamespaceIndex != 0) {
        return false;
    }
    switch (nodeId->IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return nodeId->Identifier.Numeric == 0;
    case OpcUa_IdentifierType_String:
        return OpcUa_String_StrSize(&nodeId->Identifier.String) == 0;
    case OpcUa_IdentifierType_Guid:
        return OpcUa_Guid_IsNull(nodeId->Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return nodeId->Identifier.ByteString.Length < 1;
    default:
        return false;
    }
}
