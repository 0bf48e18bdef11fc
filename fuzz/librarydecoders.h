#pragma once

#include "pki/opensslhandles.h"

#include <openssl/pem.h>

#include <cstddef>
#include <cstdint>

// What OpenSSL itself reads of the input of a fuzz target.

/// With a function such as d2i_X509; null on failure.
template <typename T>
PkiHandle<T> decodeDer(const std::uint8_t* data, std::size_t size,
                       T* (*decode)(T**, const unsigned char**, long))
{
    const PkiErrorScope scope;
    const unsigned char* position = data;
    return PkiHandle<T>(decode(nullptr, &position, static_cast<long>(size)));
}

/// With a function such as PEM_read_bio_X509, without a pass phrase; null on failure.
template <typename T>
PkiHandle<T> decodePem(const std::uint8_t* data, std::size_t size,
                       T* (*decode)(BIO*, T**, pem_password_cb*, void*))
{
    const PkiErrorScope scope;
    const PkiHandle<BIO> bio(BIO_new_mem_buf(data, static_cast<int>(size)));
    const auto refuse = [](char* /*buffer*/, int /*size*/, int /*rwflag*/, void* /*data*/) {
        return -1;
    };
    return PkiHandle<T>(decode(bio.get(), nullptr, refuse, nullptr));
}
