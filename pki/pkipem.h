#pragma once

#include "pki/opensslhandles.h"
#include "platform/types.h"

#include <openssl/pem.h>

#include <cstddef>

// PEM texts of what isn't secret. Not for users of the layer. The callers hold a PkiErrorScope; reasons
// of a failure are in the library's queue.

/// The first object of its kind in a text, whatever stands around it; null on failure. One that claims
/// to be encrypted is refused: without a callback the library would ask on the terminal.
template <typename Handle>
[[nodiscard]] PkiHandle<Handle> PkiPem_Decode(const OpcUa_Byte* bytes, std::size_t size,
                                              Handle* (*read)(BIO*, Handle**, pem_password_cb*,
                                                              void*)) noexcept
{
    constexpr std::size_t largestSize = 0x7FFFFFFF;
    if (size > largestSize) {
        ERR_raise(ERR_LIB_PEM, PEM_R_BAD_BASE64_DECODE);
        return nullptr;
    }
    // The library refuses a null pointer in words of its own; an empty text has no start line.
    const void* const text = size > 0 ? static_cast<const void*>(bytes) : "";
    const PkiHandle<BIO> bio(BIO_new_mem_buf(text, static_cast<int>(size)));
    const auto refuse = [](char* /*buffer*/, int /*size*/, int /*rwflag*/, void* /*data*/) {
        return -1;
    };
    PkiHandle<Handle> handle(bio != nullptr ? read(bio.get(), nullptr, refuse, nullptr) : nullptr);
    if (handle == nullptr && ERR_peek_error() == 0) {
        // The library has no words for a text without any bytes between its two lines.
        ERR_raise(ERR_LIB_PEM, PEM_R_BAD_BASE64_DECODE);
    }
    return handle;
}
