#pragma once

#include "platform/types.h"

#include <cstddef>

// Not for users of the layer.

/// One digest of the families.
struct DigestKind
{
    const char* name; ///< As the library knows it.
    OpcUa_UInt32 size;
};

inline constexpr DigestKind sha1Kind = {"SHA1", 20};
inline constexpr DigestKind sha224Kind = {"SHA224", 28};
inline constexpr DigestKind sha256Kind = {"SHA256", 32};
inline constexpr DigestKind sha384Kind = {"SHA384", 48};
inline constexpr DigestKind sha512Kind = {"SHA512", 64};

/// Writes the HMAC, `kind.size` bytes, to `result`. `key` and `data` must not be null, also for a
/// length of 0. `Bad` when the library fails.
[[nodiscard]] OpcUa_StatusCode calculateHmac(const DigestKind& kind, const OpcUa_Byte* key,
                                             std::size_t keyLength, const OpcUa_Byte* data,
                                             std::size_t length, OpcUa_Byte* result);
