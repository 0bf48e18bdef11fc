#pragma once

#include "base/uadatetime.h"
#include "base/uastring.h"
#include "pki/opensslhandles.h"

#include <ctime>
#include <string_view>

// Texts and times of ASN.1. Not for users of the layer. The callers hold a PkiErrorScope.

/// The default for the begin of a lifetime that can't be read, as seconds since 1970.
inline constexpr std::time_t PkiTime_Never = 4294967295;

/// A text of any of the ASN.1 string types as UTF-8, converted only where it must be: it may refer to the
/// string, which must outlive it. Empty for null and for what can't be converted; the library has a reason
/// in its queue for some of that.
class PkiText
{
public:
    explicit PkiText(const ASN1_STRING* pText) noexcept;

    /// Never a null pointer.
    [[nodiscard]] std::string_view view() const noexcept { return m_view; }

private:
    PkiLibraryBytes m_converted;
    std::string_view m_view = "";
};

/// A string of its own; null, with the reason in the library's queue, when memory is short.
[[nodiscard]] UaString PkiText_Copy(std::string_view text) noexcept;

/// The text of an ASN.1 string, empty where PkiText is.
[[nodiscard]] UaString PkiText_Read(const ASN1_STRING* pText) noexcept;

/// A UTCTime or GeneralizedTime. Years of two digits from 70 on belong to the 20th century, all others
/// to the 21st. Up to three digits of a fraction count; what stands behind the seconds, a zone too,
/// doesn't otherwise matter. `unreadable` for null, other types, and texts that are no time.
[[nodiscard]] UaDateTime PkiTime_Read(const ASN1_TIME* pTime,
                                      const UaDateTime& unreadable) noexcept;
