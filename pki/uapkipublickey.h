#pragma once

#include "base/uabytearray.h"
#include "pki/uapkierrorlist.h"

#include <openssl/types.h>

/// A public key as it is handed to certificates and to whoever verifies a signature. It owns one
/// OpenSSL handle; a copy extracts the key and stores it in a handle of its own. Failures never throw:
/// they become messages, and results are empty.
///
/// A key of an algorithm that the library can't extract still has its DER form, but can't be copied.
class UaPkiPublicKey : public UaPkiErrorList
{
public:
    /// A handle without a key in it.
    UaPkiPublicKey() noexcept;
    /// Stores the public part of a key, on which no reference is kept that the caller must care for.
    /// Without a key in `pKey`, or for a null pointer, the object is empty with messages.
    explicit UaPkiPublicKey(EVP_PKEY* pKey) noexcept;

    UaPkiPublicKey(const UaPkiPublicKey& other) noexcept;
    UaPkiPublicKey(UaPkiPublicKey&& other) noexcept;
    UaPkiPublicKey& operator=(const UaPkiPublicKey& other) noexcept;
    UaPkiPublicKey& operator=(UaPkiPublicKey&& other) noexcept;
    ~UaPkiPublicKey();

    /// Reads a SubjectPublicKeyInfo (RFC 5280, 4.1); empty with messages when it can't be decoded.
    [[nodiscard]] static UaPkiPublicKey fromDER(const UaByteArray& data) noexcept;
    /// The SubjectPublicKeyInfo; empty on failure.
    [[nodiscard]] UaByteArray toDER() const noexcept;

    /// The key with a new reference, which the caller frees with EVP_PKEY_free; null, with messages,
    /// when there is none or it can't be extracted.
    [[nodiscard]] EVP_PKEY* handle() const noexcept;

    /// The key's size in bits; -1 when the key can't be extracted.
    [[nodiscard]] int keySize() const noexcept;
    /// 6 for RSA, 116 for DSA, otherwise 0.
    [[nodiscard]] int keyType() const noexcept;

private:
    X509_PUBKEY* m_pKey;
};
