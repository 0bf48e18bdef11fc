#pragma once

#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"

#include <type_traits>

// What the sources of UaPkiCertificate share. Not for users of the layer.

inline constexpr const char* PkiCertificate_IsNull = "The certificate is NULL";

/// What `read(handle)` gives, after which the library's errors are drained into the certificate; for a
/// null certificate its message and an empty value.
template <typename Read>
[[nodiscard]] std::invoke_result_t<Read, X509*>
PkiCertificate_Ask(const UaPkiCertificate& certificate, Read read) noexcept
{
    if (certificate.isNull()) {
        certificate.addError(PkiCertificate_IsNull);
        return {};
    }
    const PkiErrorScope scope;
    auto value = read(certificate.handle());
    certificate.addLibraryErrors();
    return value;
}
