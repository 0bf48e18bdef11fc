#pragma once

#include "pki/opensslhandles.h"
#include "pki/uapkiidentity.h"

// Building distinguished names. Not for users of the layer. The callers hold a PkiErrorScope; reasons of
// a failure are in the library's queue.

/// An attribute of a name and the field it comes from.
struct PkiNameField
{
    const char* shortName;
    UaString UaPkiIdentity::*field;
};

/// All fields in the order in which they stand in a certificate.
inline constexpr PkiNameField PkiName_Fields[] = {
    {"DC", &UaPkiIdentity::domainComponent}, {"C", &UaPkiIdentity::country},
    {"ST", &UaPkiIdentity::state},           {"L", &UaPkiIdentity::locality},
    {"O", &UaPkiIdentity::organization},     {"OU", &UaPkiIdentity::organizationUnit},
    {"CN", &UaPkiIdentity::commonName},
};

/// Adds an attribute at the end of a name, in the string type that the library chooses for it. False for
/// an empty text and for one that the attribute doesn't take, such as a country of three letters.
[[nodiscard]] bool PkiName_Add(X509_NAME* pName, const char* shortName,
                               const UaString& text) noexcept;

/// A name of the fields that aren't empty; null on failure.
[[nodiscard]] PkiHandle<X509_NAME> PkiName_Build(const UaPkiIdentity& identity) noexcept;

/// A name of the same seven attributes of another name, the first of each kind and only those with a
/// text; null on failure, also when a text can't be converted.
[[nodiscard]] PkiHandle<X509_NAME> PkiName_Rebuild(const X509_NAME* pName) noexcept;
