#pragma once

#include "base/uaownedrecord.h"
#include "platform/types.h"
#include "stack/opcua_expandednodeid.h"

class UaNodeId;
class UaString;

/// A node id that may name its namespace by URI and that names its server (OPC 10000-4, 7.16). The
/// default is the null node id without URI on server 0.
///
/// Owns its record by value: copies are deep, moves take the content and leave the default. Where
/// memory is short, construction, copy and setter leave the default. Not shared between threads.
class UaExpandedNodeId
{
public:
    UaExpandedNodeId() noexcept = default;
    UaExpandedNodeId(const UaNodeId& nodeId, const UaString& namespaceUri,
                     OpcUa_UInt32 serverIndex) noexcept;

    /// Deep copy of a record. An identifier type above 3 gives the default.
    explicit UaExpandedNodeId(const OpcUa_ExpandedNodeId& nodeId) noexcept;
    UaExpandedNodeId& operator=(const OpcUa_ExpandedNodeId& nodeId) noexcept;

    /// Replaces the whole content.
    void setExpandedNodeId(const UaNodeId& nodeId, const UaString& namespaceUri,
                           OpcUa_UInt32 serverIndex) noexcept;

    /// Makes the default.
    void clear() noexcept;

    /// The inner node id as a copy, and the URI as a copy; null when there is none.
    [[nodiscard]] UaNodeId nodeId() const noexcept;
    [[nodiscard]] UaString namespaceUri() const;
    [[nodiscard]] OpcUa_UInt32 serverIndex() const noexcept;

    /// True when the inner node id is null, whatever URI and server index are.
    [[nodiscard]] bool isNull() const noexcept;

    /// The record, never null; valid until the object changes or dies.
    [[nodiscard]] const OpcUa_ExpandedNodeId* toOpcUaExpandedNodeId() const noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, `BadOutOfMemory`; the record is cleared then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExpandedNodeId* pTarget) const noexcept;

    /// Moves the content into an initialised record, which is cleared first, and leaves the default.
    /// `BadInvalidArgument` for a null pointer; the object stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_ExpandedNodeId* pTarget) noexcept;

    /// The text forms of the inner node id alone (see UaNodeId): URI and server index never appear.
    [[nodiscard]] UaString toString() const;
    [[nodiscard]] UaString toFullString() const;

    /// Server index, namespace URI and inner node id, the latter by UaNodeId's rule. A null URI
    /// differs from an empty one.
    [[nodiscard]] bool operator==(const UaExpandedNodeId& other) const noexcept;

    /// The same for records.
    [[nodiscard]] static bool isEqual(const OpcUa_ExpandedNodeId& left,
                                      const OpcUa_ExpandedNodeId& right) noexcept;

private:
    UaOwnedRecord<OpcUa_ExpandedNodeId, OpcUa_ExpandedNodeId_Initialize, OpcUa_ExpandedNodeId_Clear,
                  OpcUa_ExpandedNodeId_CopyTo>
        m_nodeId;
};
