#include "base/uanodeid.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_string.h"

#include <cstring>

namespace {

/// The shorter first, whatever the texts; a null text is before an empty one.
bool isLessString(const OpcUa_String& left, const OpcUa_String& right)
{
    const OpcUa_UInt32 leftLength = OpcUa_String_StrSize(&left);
    const OpcUa_UInt32 rightLength = OpcUa_String_StrSize(&right);
    if (leftLength != rightLength) {
        return leftLength < rightLength;
    }
    return OpcUa_String_Compare(&left, &right) < 0;
}

bool isEqualString(const OpcUa_String& left, const OpcUa_String& right)
{
    return OpcUa_String_StrSize(&left) == OpcUa_String_StrSize(&right) &&
           OpcUa_String_Compare(&left, &right) == 0;
}

/// The order of all 16 bytes in memory, which OpcUa_Guid_Compare gives.
bool isLessGuid(const OpcUa_Guid* left, const OpcUa_Guid* right)
{
    return OpcUa_Guid_Compare(left, right) < 0;
}

bool isLessOpaque(const OpcUa_ByteString& left, const OpcUa_ByteString& right)
{
    if (left.Length != right.Length) {
        return left.Length < right.Length;
    }
    return OpcUa_ByteString_Compare(&left, &right) < 0;
}

} // namespace

bool UaNodeId::isEqual(const OpcUa_NodeId& left, const OpcUa_NodeId& right) noexcept
{
    if (left.IdentifierType != right.IdentifierType ||
        left.NamespaceIndex != right.NamespaceIndex) {
        return false;
    }
    switch (left.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return left.Identifier.Numeric == right.Identifier.Numeric;
    case OpcUa_IdentifierType_String:
        return isEqualString(left.Identifier.String, right.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return OpcUa_Guid_IsEqual(left.Identifier.Guid, right.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return OpcUa_ByteString_Compare(&left.Identifier.ByteString,
                                        &right.Identifier.ByteString) == 0;
    default:
        return false;
    }
}

bool UaNodeId::isLess(const OpcUa_NodeId& left, const OpcUa_NodeId& right) noexcept
{
    if (left.IdentifierType != right.IdentifierType) {
        return left.IdentifierType < right.IdentifierType;
    }
    if (left.NamespaceIndex != right.NamespaceIndex) {
        return left.NamespaceIndex < right.NamespaceIndex;
    }
    switch (left.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return left.Identifier.Numeric < right.Identifier.Numeric;
    case OpcUa_IdentifierType_String:
        return isLessString(left.Identifier.String, right.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return isLessGuid(left.Identifier.Guid, right.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        return isLessOpaque(left.Identifier.ByteString, right.Identifier.ByteString);
    default:
        return false;
    }
}

bool UaNodeId::operator==(const UaNodeId& other) const noexcept
{
    return m_block.isSameAs(other.m_block) || isEqual(*toOpcUaNodeId(), *other.toOpcUaNodeId());
}

bool UaNodeId::operator<(const UaNodeId& other) const noexcept
{
    return !m_block.isSameAs(other.m_block) && isLess(*toOpcUaNodeId(), *other.toOpcUaNodeId());
}
