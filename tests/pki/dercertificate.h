#pragma once

#include "tests/pki/derlist.h"
#include "tests/pki/derwriter.h"

#include <string>
#include <string_view>

/// A certificate put together by hand. Its signature is nobody's, and its key can't be decoded unless
/// one is given.
struct DerCertificate
{
    std::string version = der(DerContext0, derSmallInteger(2)); ///< May be empty.
    std::string serialNumber = derSmallInteger(1);
    std::string issuer = der(DerSequence, "");
    std::string notBefore = der(DerUtcTime, "240101000000Z");
    std::string notAfter = der(DerUtcTime, "340101000000Z");
    std::string subject = der(DerSequence, "");
    std::string key =
        der(DerSequence, DerList::algorithm() + der(DerBitString, std::string_view("\0", 1)));
    std::string extensions; ///< If any.
    std::string signatureAlgorithm = DerList::algorithm();

    [[nodiscard]] std::string bytes() const
    {
        std::string content = version + serialNumber + signatureAlgorithm + issuer +
                              der(DerSequence, notBefore + notAfter) + subject + key;
        if (!extensions.empty()) {
            content += der(DerContext3, der(DerSequence, extensions));
        }
        const std::string signature(33, '\0');
        return der(DerSequence,
                   der(DerSequence, content) + signatureAlgorithm + der(DerBitString, signature));
    }

    /// The subjectAltName extension with general names.
    static std::string alternativeNames(std::string_view names)
    {
        return extension("\x55\x1D\x11", der(DerSequence, names));
    }
    static std::string extension(std::string_view type, std::string_view content)
    {
        return der(DerSequence, der(DerObjectId, type) + der(DerOctetString, content));
    }

private:
    static constexpr unsigned char DerContext3 = 0xA3;
};

/// A general name of one of the simple types: 1 e-mail, 2 DNS, 6 URI, 7 IP, 8 registered identifier.
inline std::string derGeneralName(int type, std::string_view content)
{
    return der(static_cast<unsigned char>(0x80 | type), content);
}
