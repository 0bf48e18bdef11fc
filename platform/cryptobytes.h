#pragma once

#include "platform/cryptotypes.h"

// Rules about lengths that the crypto functions share. Not for users of the layer.

/// Whether `size` bytes can be written to `bytes`; a null block takes any size, since only the length
/// goes back then.
[[nodiscard]] constexpr bool hasRoom(const OpcUa_CryptoBytes& bytes, OpcUa_UInt32 size)
{
    return bytes.Data == nullptr ||
           (bytes.Length >= 0 && static_cast<OpcUa_UInt32>(bytes.Length) >= size);
}

/// Whether there are bytes to read.
[[nodiscard]] constexpr bool hasContent(const OpcUa_CryptoBytes& bytes)
{
    return bytes.Data != nullptr && bytes.Length > 0;
}

/// The length that was asked for, or the provider's for a negative one; 0 when there is none.
[[nodiscard]] constexpr OpcUa_UInt32 chooseKeyLength(const OpcUa_CryptoProvider* provider,
                                                     OpcUa_Int32 length)
{
    if (length >= 0) {
        return static_cast<OpcUa_UInt32>(length);
    }
    return provider != nullptr ? provider->SymmetricKeyLength : 0;
}
