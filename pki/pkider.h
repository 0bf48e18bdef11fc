#pragma once

#include "base/uabytearray.h"
#include "pki/opensslhandles.h"

#include <cstddef>
#include <limits>

// DER forms by the library's functions. Not for users of the layer. The callers hold a PkiErrorScope;
// reasons of a failure are in the library's queue.

/// The DER form of a handle; empty on failure.
template <typename Handle>
[[nodiscard]] UaByteArray PkiDer_Encode(const Handle* pHandle,
                                        int (*i2d)(const Handle*, unsigned char**)) noexcept
{
    const int length = i2d(pHandle, nullptr);
    bool isWritten = false;
    UaByteArray bytes = UaByteArray::compose(
        length, [&](OpcUa_Byte* data) { isWritten = i2d(pHandle, &data) == length; });
    if (!isWritten) {
        PkiError_EnsureReason();
        return {};
    }
    return bytes;
}

/// A handle from the DER form at the start of some bytes; null on failure.
template <typename Handle>
[[nodiscard]] PkiHandle<Handle> PkiDer_Decode(const OpcUa_Byte* bytes, std::size_t size,
                                              Handle* (*d2i)(Handle**, const unsigned char**,
                                                             long)) noexcept
{
    if (size > static_cast<std::size_t>(std::numeric_limits<long>::max())) {
        ERR_raise(ERR_LIB_ASN1, ASN1_R_TOO_LONG);
        return nullptr;
    }
    // The library takes a null pointer for a mistake of the program.
    const OpcUa_Byte nothing = 0;
    const unsigned char* position = size > 0 ? bytes : &nothing;
    return PkiHandle<Handle>(d2i(nullptr, &position, static_cast<long>(size)));
}
