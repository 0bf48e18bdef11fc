#pragma once

#include "platform/types.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_variant.h"

struct OpcUa_DataValue;
class UaString;

/// A globally unique identifier (OPC 10000-6, 5.1.3). The default, all zero, is the null guid. Copying
/// copies 16 bytes; guids may be shared between threads as plain numbers may.
class UaGuid
{
public:
    UaGuid() noexcept = default;
    explicit UaGuid(const OpcUa_Guid& guid) noexcept
        : m_guid(guid)
    {
    }

    /// A new random guid; the null guid when the system's random source fails.
    [[nodiscard]] static UaGuid create() noexcept;

    /// The same into a target, which is cleared first, with the status of the random source.
    [[nodiscard]] static OpcUa_StatusCode create(UaGuid& target) noexcept;

    /// Makes the null guid.
    void clear() noexcept { m_guid = OpcUa_Guid{}; }

    [[nodiscard]] bool isNull() const noexcept { return OpcUa_Guid_IsNull(&m_guid); }

    /// The record, never null; valid as long as the object.
    [[nodiscard]] const OpcUa_Guid* toOpcUaGuid() const noexcept { return &m_guid; }

    /// "{6b29fc40-ca47-1067-b31d-00dd010662da}", 38 characters in lowercase. Null where memory is
    /// short.
    [[nodiscard]] UaString toString() const;

    /// Clears the value, then reads the form that toString prints, in either case; a leading "{" isn't
    /// needed, and what follows the last digits, such as "}", isn't looked at. Fields are read as the
    /// C library scans "%08x-%04hx-%04hx-%02hx%02hx-...". `BadInvalidArgument` for a null pointer, an
    /// empty text or a missing field; the value is the null guid then.
    [[nodiscard]] OpcUa_StatusCode fromString(const UaString& text);
    [[nodiscard]] OpcUa_StatusCode fromString(const char* text) noexcept;

    /// Copies the 16 bytes; a null target does nothing.
    void copyTo(OpcUa_Guid* pTarget) const noexcept;

    /// A copy in a new block of the stack's allocator, which the caller owns; null where memory is
    /// short.
    [[nodiscard]] OpcUa_Guid* copy() const noexcept;

    [[nodiscard]] bool operator==(const UaGuid& other) const noexcept
    {
        return OpcUa_Guid_IsEqual(&m_guid, &other.m_guid);
    }

    /// Clears the variant and makes it a scalar Guid with a block of its own. `BadInvalidArgument` for
    /// a null pointer, `BadOutOfMemory`; the variant is Null then.
    [[nodiscard]] OpcUa_StatusCode toVariant(OpcUa_Variant* pVariant) const noexcept;

    /// toVariant into the data value's value; with the flag both its timestamps become the platform's
    /// current time, read once for each. After a failure the timestamps stay as they were.
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pDataValue,
                                               bool bUpdateTimestamps) const noexcept;

private:
    OpcUa_Guid m_guid{};
};
