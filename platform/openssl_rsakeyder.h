#pragma once

#include "platform/cryptotypes.h"

#include <openssl/types.h>

#include <cstddef>

/// A key as PKCS#1 DER, wiped when it is freed. Not for users of the layer. The library's own i2d
/// functions are no choice: short of memory they write another, longer form, behind the end of a
/// buffer that was measured before.
class RsaKeyDer
{
public:
    /// Encodes the key; `selection` is EVP_PKEY_PUBLIC_KEY or EVP_PKEY_KEYPAIR. Empty when the
    /// library fails.
    RsaKeyDer(const EVP_PKEY* key, int selection);
    ~RsaKeyDer();
    RsaKeyDer(const RsaKeyDer&) = delete;
    RsaKeyDer& operator=(const RsaKeyDer&) = delete;

    [[nodiscard]] const unsigned char* data() const { return m_data; }
    /// In bytes; 0 when it is empty.
    [[nodiscard]] std::size_t size() const { return m_size; }

    /// Hands the bytes over; with null data in `output` only the length goes back.
    /// `BadInvalidArgument` without enough room, `Bad` with a length of 0 when it is empty.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_CryptoBytes& output) const;

private:
    unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
};
