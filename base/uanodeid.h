#pragma once

#include "base/uasharedrecord.h"
#include "platform/types.h"
#include "stack/opcua_nodeid.h"

#include <string_view>

class UaByteString;
class UaGuid;
class UaString;

/// The identifier of a node in a server (OPC 10000-3, 8.2): a number, a string, a guid or opaque
/// bytes, within a namespace. The default is the null node id, number 0 in namespace 0.
///
/// A handle to one shared block: copying counts and never copies the identifier, and a setter
/// attaches a new block. Copies may live in different threads; one handle belongs to one thread.
/// Where memory is short, a constructor or setter leaves the null node id.
class UaNodeId
{
public:
    UaNodeId() noexcept = default;

    explicit UaNodeId(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex = 0) noexcept;

    /// A null string stays null: it makes another node id than an empty one does.
    explicit UaNodeId(const UaString& identifier, OpcUa_UInt16 namespaceIndex = 0) noexcept;
    explicit UaNodeId(const UaGuid& identifier, OpcUa_UInt16 namespaceIndex = 0) noexcept;
    explicit UaNodeId(const UaByteString& identifier, OpcUa_UInt16 namespaceIndex = 0) noexcept;

    /// Deep copy of a record. An identifier type above 3 gives the null node id.
    explicit UaNodeId(const OpcUa_NodeId& nodeId) noexcept;
    UaNodeId& operator=(const OpcUa_NodeId& nodeId) noexcept;

    void setNodeId(OpcUa_UInt32 identifier, OpcUa_UInt16 namespaceIndex) noexcept;
    void setNodeId(const UaString& identifier, OpcUa_UInt16 namespaceIndex) noexcept;
    void setNodeId(const UaGuid& identifier, OpcUa_UInt16 namespaceIndex) noexcept;
    void setNodeId(const UaByteString& identifier, OpcUa_UInt16 namespaceIndex) noexcept;

    /// Makes the null node id; other handles to the block keep theirs.
    void clear() noexcept;

    /// OpcUa_IdentifierType_Numeric (0), _String (1), _Guid (2) or _Opaque (3).
    [[nodiscard]] OpcUa_UInt16 identifierType() const noexcept;
    [[nodiscard]] OpcUa_UInt16 namespaceIndex() const noexcept;

    /// The identifier as a copy; 0, null string, null guid or null byte string when the identifier is
    /// of another type. toOpcUaNodeId() gives access without a copy.
    [[nodiscard]] OpcUa_UInt32 identifierNumeric() const noexcept;
    [[nodiscard]] UaString identifierString() const;
    [[nodiscard]] UaGuid identifierGuid() const noexcept;
    [[nodiscard]] UaByteString identifierOpaque() const;

    /// True in namespace 0 for the number 0, a null or empty string, a null guid and empty bytes.
    [[nodiscard]] bool isNull() const noexcept;

    /// The record within the block, never null; valid until the handle changes or dies.
    [[nodiscard]] const OpcUa_NodeId* toOpcUaNodeId() const noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, `BadOutOfMemory`; the record is null then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_NodeId* pTarget) const noexcept;

    /// Moves the identifier into an initialised record, which is cleared first, and leaves the null
    /// node id; an identifier that other handles share is copied instead. `BadInvalidArgument` for a
    /// null pointer, `BadOutOfMemory`; the handle stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_NodeId* pTarget) noexcept;

    /// The identifier alone: "85", the string, "{6b29fc40-ca47-1067-b31d-00dd010662da}", or
    /// hexadecimal digits "01AB". Never cut; can't be read back. A null string gives the null string.
    [[nodiscard]] UaString toString() const;

    /// Type and identifier joined by bars: "NS0|Numeric|85", "NS2|String|Pump", "NS2|Guid|{...}",
    /// "NS2|Opaque|0x01AB". Cut at 255 bytes without a mark: a string wherever that falls, opaque
    /// bytes after a whole one. A string ends at a NUL inside it.
    [[nodiscard]] UaString toFullString() const;

    /// The form of OPC 10000-6, 5.3.1.10: "i=85", "ns=2;s=Pump", "ns=2;g=6b29fc40-...",
    /// "ns=0;b=Aas=". Namespace 0 is left out, except with opaque bytes. A string form is cut at 255
    /// bytes without a mark and ends at a NUL inside the string; the others are never cut.
    [[nodiscard]] UaString toXmlString() const;

    /// Reads what toXmlString prints; the null node id when the text is of another form, which only
    /// isNull tells. "ns=...;" may be left out, and "ns=;" is namespace 0. Every byte of the text
    /// counts, also a NUL. Numbers are decimal and may have white space and a sign in front as the C
    /// library's strtoul has it: "i=-1" is 4294967295. A namespace index above 65535 and a number
    /// above 4294967295 are refused. A guid is read as UaGuid::fromString does, so text behind it
    /// doesn't matter. A text below 3 bytes is refused, and with it "s=".
    [[nodiscard]] static UaNodeId fromXmlString(const UaString& text);

    /// Type and namespace index, then the identifier: a number by value, a string by length and
    /// OpcUa_String_StrnCmp, a guid by its bytes, opaque by length and bytes. A null string differs
    /// from an empty one, as do null and empty bytes.
    [[nodiscard]] bool operator==(const UaNodeId& other) const noexcept;

    /// An order for containers: type, namespace index, then numbers by value, strings and opaque
    /// bytes the shorter first, guids by their bytes in memory. It isn't the order of the texts.
    [[nodiscard]] bool operator<(const UaNodeId& other) const noexcept;

    /// The same forms, tests and order for a record, without a copy of it. An identifier type above 3
    /// gives a null string, is equal to nothing, and has no order among its like.
    [[nodiscard]] static UaString toString(const OpcUa_NodeId& nodeId);
    [[nodiscard]] static UaString toFullString(const OpcUa_NodeId& nodeId);
    [[nodiscard]] static UaString toXmlString(const OpcUa_NodeId& nodeId);
    [[nodiscard]] static bool isEqual(const OpcUa_NodeId& left, const OpcUa_NodeId& right) noexcept;
    [[nodiscard]] static bool isLess(const OpcUa_NodeId& left, const OpcUa_NodeId& right) noexcept;

private:
    using Block = UaSharedRecord<OpcUa_NodeId, OpcUa_NodeId_Initialize, OpcUa_NodeId_Clear>;

    static Block copyOf(const OpcUa_NodeId& nodeId) noexcept;
    static UaNodeId readOpaque(std::string_view text, OpcUa_UInt16 namespaceIndex) noexcept;

    Block m_block; ///< Empty for the null node id.
};
