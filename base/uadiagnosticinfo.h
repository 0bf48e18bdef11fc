#pragma once

#include "base/uaownedrecord.h"
#include "platform/types.h"
#include "stack/opcua_diagnosticinfo.h"

class UaString;

/// Vendor-specific detail to a status (OPC 10000-6, 5.2.2.12). Symbolic id, namespace URI, locale and
/// localized text are indexes into the string table of the message that carries it; -1 is none. The
/// default has no field set.
///
/// Owns its record by value: copies are deep, with all inner infos; moves take the content and leave
/// the default. Where memory is short, construction and copy leave the default. Not shared between
/// threads.
class UaDiagnosticInfo
{
public:
    UaDiagnosticInfo() noexcept = default;

    /// Deep copy of a record; the default for one nested deeper than OpcUa_Nesting_MaxLevels.
    explicit UaDiagnosticInfo(const OpcUa_DiagnosticInfo& info) noexcept;
    UaDiagnosticInfo& operator=(const OpcUa_DiagnosticInfo& info) noexcept;

    /// Makes the default.
    void clear() noexcept;

    [[nodiscard]] OpcUa_Int32 symbolicId() const noexcept;
    [[nodiscard]] OpcUa_Int32 namespaceUri() const noexcept;
    [[nodiscard]] OpcUa_Int32 locale() const noexcept;
    [[nodiscard]] OpcUa_Int32 localizedText() const noexcept;

    /// A copy; null when there is none.
    [[nodiscard]] UaString additionalInfo() const;
    [[nodiscard]] OpcUa_StatusCode innerStatusCode() const noexcept;

    /// The inner info, or null when there is none. It belongs to this object and is valid until this
    /// changes or dies.
    [[nodiscard]] const OpcUa_DiagnosticInfo* innerDiagnosticInfo() const noexcept;

    void setSymbolicId(OpcUa_Int32 index) noexcept;
    void setNamespaceUri(OpcUa_Int32 index) noexcept;
    void setLocale(OpcUa_Int32 index) noexcept;
    void setLocalizedText(OpcUa_Int32 index) noexcept;
    void setInnerStatusCode(OpcUa_StatusCode status) noexcept;

    /// Copies the text. `BadOutOfMemory`; the old text stays then.
    OpcUa_StatusCode setAdditionalInfo(const UaString& text) noexcept;

    /// Puts a deep copy inside; the argument may be this object itself. `BadOutOfMemory`, or
    /// `BadEncodingLimitsExceeded` when this object would be nested deeper than it could be copied;
    /// the old inner info stays then.
    OpcUa_StatusCode setInnerDiagnosticInfo(const UaDiagnosticInfo& info) noexcept;

    /// Takes the inner info away.
    void clearInnerDiagnosticInfo() noexcept;

    /// The record, never null; valid until the object changes or dies.
    [[nodiscard]] const OpcUa_DiagnosticInfo* toOpcUaDiagnosticInfo() const noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, `BadOutOfMemory`; the record is cleared then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_DiagnosticInfo* pTarget) const noexcept;

    /// Moves the content into an initialised record, which is cleared first, and leaves the default.
    /// `BadInvalidArgument` for a null pointer; the object stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_DiagnosticInfo* pTarget) noexcept;

    /// All fields and the inner infos.
    [[nodiscard]] bool operator==(const UaDiagnosticInfo& other) const noexcept;

private:
    UaOwnedRecord<OpcUa_DiagnosticInfo, OpcUa_DiagnosticInfo_Initialize, OpcUa_DiagnosticInfo_Clear,
                  OpcUa_DiagnosticInfo_CopyTo>
        m_info;
};
