#pragma once

#include "base/uaownedrecord.h"
#include "platform/types.h"
#include "stack/opcua_qualifiedname.h"

class UaString;

/// A name in a namespace (OPC 10000-3, 8.3). The default is a null name in namespace 0.
///
/// Owns its record by value: copies are deep, moves take the content and leave the default. Where
/// memory is short, construction, copy and setter leave the default. Not shared between threads.
class UaQualifiedName
{
public:
    UaQualifiedName() noexcept = default;
    UaQualifiedName(const UaString& name, OpcUa_UInt16 namespaceIndex) noexcept;

    /// Deep copy of a record.
    explicit UaQualifiedName(const OpcUa_QualifiedName& name) noexcept;
    UaQualifiedName& operator=(const OpcUa_QualifiedName& name) noexcept;

    /// Replaces the whole content.
    void setQualifiedName(const UaString& name, OpcUa_UInt16 namespaceIndex) noexcept;

    /// Makes the default.
    void clear() noexcept;

    /// The name as a copy; null when there is none.
    [[nodiscard]] UaString name() const;
    [[nodiscard]] OpcUa_UInt16 namespaceIndex() const noexcept;

    /// True for a null or empty name in namespace 0.
    [[nodiscard]] bool isNull() const noexcept;

    /// The record, never null; valid until the object changes or dies.
    [[nodiscard]] const OpcUa_QualifiedName* toOpcUaQualifiedName() const noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, `BadOutOfMemory`; the record is cleared then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_QualifiedName* pTarget) const noexcept;

    /// Moves the content into an initialised record, which is cleared first, and leaves the default.
    /// `BadInvalidArgument` for a null pointer; the object stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_QualifiedName* pTarget) noexcept;

    /// The name alone; null when there is none.
    [[nodiscard]] UaString toString() const;

    /// "ns=2|Pump": the namespace index always shows.
    [[nodiscard]] UaString toFullString() const;

    /// Namespace index and name; a null name differs from an empty one.
    [[nodiscard]] bool operator==(const UaQualifiedName& other) const noexcept;

private:
    UaOwnedRecord<OpcUa_QualifiedName, OpcUa_QualifiedName_Initialize, OpcUa_QualifiedName_Clear,
                  OpcUa_QualifiedName_CopyTo>
        m_name;
};
