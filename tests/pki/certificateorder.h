#pragma once

#include "pki/uapkicertificate.h"
#include "pki/uapkicertificateinfo.h"
#include "pki/uapkiidentity.h"

#include <string>
#include <string_view>
#include <vector>

// What is asked for when the tests make certificates, and what came out.

/// An array of texts.
[[nodiscard]] UaStringArray textArray(const std::vector<std::string>& texts);

/// A URI, two host names, an IPv4 and an IPv6 address, an e-mail address, an hour, the serial number 77.
[[nodiscard]] UaPkiCertificateInfo sampleInfo();

/// All seven fields.
[[nodiscard]] UaPkiIdentity sampleIdentity();

/// Only a common name.
[[nodiscard]] UaPkiIdentity identityOf(const char* commonName);

/// One extension as it stands in a certificate.
struct ExtensionContent
{
    std::string name; ///< The library's short name.
    bool isCritical;
    std::string bytes; ///< Upper case hexadecimal.

    friend bool operator==(const ExtensionContent&, const ExtensionContent&) = default;
};
void PrintTo(const ExtensionContent& extension, std::ostream* stream);

/// All extensions in their order.
[[nodiscard]] std::vector<ExtensionContent> extensionsOf(const UaPkiCertificate& certificate);

/// The names of all extensions in their order.
[[nodiscard]] std::vector<std::string> extensionNamesOf(const UaPkiCertificate& certificate);

/// One extension's bytes in upper case hexadecimal; empty without it.
[[nodiscard]] std::string extensionBytes(const UaPkiCertificate& certificate, int nid);

/// Attributes of a name as "CN=subject", in their order.
[[nodiscard]] std::vector<std::string> attributesOf(const X509_NAME* name);

[[nodiscard]] std::string hexOf(std::string_view bytes);
