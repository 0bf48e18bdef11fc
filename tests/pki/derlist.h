#pragma once

#include "tests/pki/derwriter.h"

#include <string>
#include <string_view>

/// A revocation list put together by hand. Its signature is nobody's.
struct DerList
{
    std::string version = derSmallInteger(1);
    std::string issuer = der(DerSequence, "");
    std::string thisUpdate = der(DerUtcTime, "240101000000Z");
    std::string nextUpdate = der(DerUtcTime, "240201000000Z"); ///< May be empty.
    std::string revoked;                                       ///< Entries, if any.
    std::string extensions;                                    ///< Of the whole list, if any.

    [[nodiscard]] std::string bytes() const
    {
        std::string content = version + algorithm() + issuer + thisUpdate + nextUpdate;
        if (!revoked.empty()) {
            content += der(DerSequence, revoked);
        }
        if (!extensions.empty()) {
            content += der(DerContext0, der(DerSequence, extensions));
        }
        const std::string signature(33, '\0');
        return der(DerSequence,
                   der(DerSequence, content) + algorithm() + der(DerBitString, signature));
    }

    /// sha256WithRSAEncryption
    static std::string algorithm()
    {
        return der(DerSequence, der(DerObjectId, "\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0B") +
                                    std::string("\x05\x00", 2));
    }
    /// An extension with the CRL number's type.
    static std::string numberExtension(std::string_view content)
    {
        return der(DerSequence, der(DerObjectId, "\x55\x1D\x14") + der(DerOctetString, content));
    }
};

/// One attribute of a name; `type` is the content of its object identifier.
inline std::string derAttribute(std::string_view type, unsigned char tag, std::string_view text)
{
    return der(DerSet, der(DerSequence, der(DerObjectId, type) + der(tag, text)));
}
