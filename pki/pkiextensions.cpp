#include "pki/pkiextensions.h"

#include "pki/uapkicertificateinfo.h"

#include <algorithm>
#include <string_view>

namespace {

// The values go to the library's configuration parser as they stand; the quotes around the comments
// become part of them. An application's key signs certificates as well, since it signs its own.

constexpr PkiExtensionRow applicationRows[] = {
    {"basicConstraints", "critical, CA:FALSE"},
    {"nsComment", "\"Generated with Solvarin Core Library using OpenSSL\""},
    {"subjectKeyIdentifier", "hash"},
    PkiExtensions_IssuersKey,
    {"keyUsage",
     "critical, nonRepudiation, digitalSignature, keyEncipherment, dataEncipherment, keyCertSign"},
    {"extendedKeyUsage", "critical, serverAuth,clientAuth"},
};

constexpr PkiExtensionRow authorityRows[] = {
    {"basicConstraints", "critical, CA:TRUE"},
    {"nsComment", "\"CA certificate generated with Solvarin Core Library using OpenSSL\""},
    {"keyUsage",
     "critical, nonRepudiation, digitalSignature, keyEncipherment, keyCertSign, cRLSign"},
    {"extendedKeyUsage", "critical, serverAuth,clientAuth"},
    {"subjectKeyIdentifier", "hash"},
};

constexpr PkiExtensionRow signingRows[] = {
    {"subjectKeyIdentifier", "hash"},
    PkiExtensions_IssuersKey,
};

std::string_view viewOf(const OpcUa_String& text)
{
    return {text.strContent != nullptr ? text.strContent : "", text.uLength};
}

/// Hands the pieces of the text to `add(prefix, text)`, in their order.
template <typename Add>
void forEachName(const UaPkiCertificateInfo& info, Add add)
{
    if (!info.uri.isEmpty()) {
        add("URI:", info.uri.view());
    }
    for (const OpcUa_String& name : info.dnsNames) {
        add(",DNS:", viewOf(name));
    }
    for (const OpcUa_String& address : info.ipAddresses) {
        add(",IP:", viewOf(address));
    }
    if (!info.email.isEmpty()) {
        add(",email:", info.email.view());
    }
}

} // namespace

std::span<const PkiExtensionRow> PkiExtensions_Rows(bool isCA) noexcept
{
    return isCA ? std::span<const PkiExtensionRow>(authorityRows)
                : std::span<const PkiExtensionRow>(applicationRows);
}

std::span<const PkiExtensionRow> PkiExtensions_SigningRows() noexcept
{
    return signingRows;
}

PkiHandle<X509_EXTENSION> PkiExtensions_Make(X509V3_CTX& context,
                                             const PkiExtensionRow& row) noexcept
{
    PkiHandle<X509_EXTENSION> extension(X509V3_EXT_conf(nullptr, &context, row.name, row.value));
    // When memory is short, the library passes over what may be missing, such as the identifier of the
    // issuer's key, and only its queue tells.
    if (ERR_peek_error() != 0) {
        return nullptr;
    }
    return extension;
}

bool PkiExtensions_HasSubjectAltName(const UaPkiCertificateInfo& info) noexcept
{
    return !info.uri.isEmpty() || info.dnsNames.length() > 0 || info.ipAddresses.length() > 0 ||
           !info.email.isEmpty();
}

UaString PkiExtensions_SubjectAltName(const UaPkiCertificateInfo& info) noexcept
{
    OpcUa_Int64 length = 0;
    forEachName(info, [&](std::string_view prefix, std::string_view name) {
        length += static_cast<OpcUa_Int64>(prefix.size() + name.size());
    });
    return UaString::compose(length, [&](char* position) {
        forEachName(info, [&](std::string_view prefix, std::string_view name) {
            position = std::copy(prefix.begin(), prefix.end(), position);
            position = std::copy(name.begin(), name.end(), position);
        });
    });
}

PkiHandle<X509_EXTENSION>
PkiExtensions_MakeSubjectAltName(X509V3_CTX& context, const UaPkiCertificateInfo& info) noexcept
{
    const UaString names = PkiExtensions_SubjectAltName(info);
    if (names.isNull()) {
        ERR_raise(ERR_LIB_X509V3, ERR_R_MALLOC_FAILURE);
        return nullptr;
    }
    return PkiExtensions_Make(context, {"subjectAltName", names.toUtf8()});
}
