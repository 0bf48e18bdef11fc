#pragma once

#include "pki/opensslhandles.h"

#include <span>

struct UaPkiCertificateInfo;

// The extensions of the certificates and requests that are made here. Not for users of the layer. The
// callers hold a PkiErrorScope; reasons of a failure are in the library's queue.

/// An extension in the words of OpenSSL's configuration files.
struct PkiExtensionRow
{
    const char* name;
    const char* value;
};

/// Names the issuer: by its key's identifier when it has one, and by its issuer and serial number.
inline constexpr PkiExtensionRow PkiExtensions_IssuersKey = {"authorityKeyIdentifier",
                                                             "keyid, issuer:always"};

/// The rows for an authority's certificate or for an application's, in their order.
[[nodiscard]] std::span<const PkiExtensionRow> PkiExtensions_Rows(bool isCA) noexcept;

/// The rows that are made anew when another issuer signs a certificate.
[[nodiscard]] std::span<const PkiExtensionRow> PkiExtensions_SigningRows() noexcept;

/// Makes an extension for what the context holds; null on failure, and when the library's queue wasn't
/// empty before.
[[nodiscard]] PkiHandle<X509_EXTENSION> PkiExtensions_Make(X509V3_CTX& context,
                                                           const PkiExtensionRow& row) noexcept;

/// Whether there is anything for the subjectAltName extension.
[[nodiscard]] bool PkiExtensions_HasSubjectAltName(const UaPkiCertificateInfo& info) noexcept;

/// Makes the subjectAltName extension: the URI, the host names, the IP addresses and the e-mail address,
/// in this order, as one text "URI:...,DNS:...,IP:...,email:..." that isn't cleaned. The library's
/// configuration syntax holds for it: a comma begins a further name, a line break makes all behind it
/// part of the name, and a NUL ends the text. Without a URI it begins with a comma, which the library
/// refuses. Null on failure.
[[nodiscard]] PkiHandle<X509_EXTENSION>
PkiExtensions_MakeSubjectAltName(X509V3_CTX& context, const UaPkiCertificateInfo& info) noexcept;

/// The text of the subjectAltName extension; null when memory is short.
[[nodiscard]] UaString PkiExtensions_SubjectAltName(const UaPkiCertificateInfo& info) noexcept;
