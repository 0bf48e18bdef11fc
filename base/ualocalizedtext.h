#pragma once

#include "base/uaownedrecord.h"
#include "platform/types.h"
#include "stack/opcua_localizedtext.h"

class UaString;

/// A text for people and the locale that it is written in, such as "en-US" (OPC 10000-3, 8.5). The
/// default has both null.
///
/// Owns its record by value: copies are deep, moves take the content and leave the default. Where
/// memory is short, construction, copy and setter leave the default. Not shared between threads.
class UaLocalizedText
{
public:
    UaLocalizedText() noexcept = default;
    UaLocalizedText(const UaString& locale, const UaString& text) noexcept;

    /// Deep copy of a record.
    explicit UaLocalizedText(const OpcUa_LocalizedText& text) noexcept;
    UaLocalizedText& operator=(const OpcUa_LocalizedText& text) noexcept;

    /// Replaces the whole content.
    void setLocalizedText(const UaString& locale, const UaString& text) noexcept;

    /// Makes the default.
    void clear() noexcept;

    /// Copies of both parts; null where there is none.
    [[nodiscard]] UaString locale() const;
    [[nodiscard]] UaString text() const;

    /// True when both parts are null or empty.
    [[nodiscard]] bool isNull() const noexcept;

    /// The record, never null; valid until the object changes or dies.
    [[nodiscard]] const OpcUa_LocalizedText* toOpcUaLocalizedText() const noexcept;

    /// Deep copy into an initialised record, which is cleared first. `BadInvalidArgument` for a null
    /// pointer, `BadOutOfMemory`; the record is cleared then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_LocalizedText* pTarget) const noexcept;

    /// Moves the content into an initialised record, which is cleared first, and leaves the default.
    /// `BadInvalidArgument` for a null pointer; the object stays as it was then.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_LocalizedText* pTarget) noexcept;

    /// The text alone; null when there is none.
    [[nodiscard]] UaString toString() const;

    /// "en-US|Hello": locale and text joined by a bar, which always shows. It is filled in by
    /// UaString::arg, the locale first, so a "%1" inside the locale takes the text instead of the
    /// text's place.
    [[nodiscard]] UaString toFullString() const;

    /// Both parts; a null one differs from an empty one.
    [[nodiscard]] bool operator==(const UaLocalizedText& other) const noexcept;

private:
    UaOwnedRecord<OpcUa_LocalizedText, OpcUa_LocalizedText_Initialize, OpcUa_LocalizedText_Clear,
                  OpcUa_LocalizedText_CopyTo>
        m_text;
};
