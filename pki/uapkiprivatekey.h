#pragma once

#include "base/uabytearray.h"
#include "pki/uapkierrorlist.h"
#include "pki/uapkipassword.h"

#include <openssl/types.h>

/// A private key as it is handed to signing. Copies share one OpenSSL handle and cost one reference;
/// the key is wiped with the last of them. Failures never throw: they become messages, and the key is
/// empty.
class UaPkiPrivateKey : public UaPkiErrorList
{
public:
    /// A handle without a key in it.
    UaPkiPrivateKey() noexcept;
    /// Takes a further reference on the handle, which may be null.
    explicit UaPkiPrivateKey(EVP_PKEY* pKey) noexcept;

    UaPkiPrivateKey(const UaPkiPrivateKey& other) noexcept;
    UaPkiPrivateKey(UaPkiPrivateKey&& other) noexcept;
    UaPkiPrivateKey& operator=(const UaPkiPrivateKey& other) noexcept;
    UaPkiPrivateKey& operator=(UaPkiPrivateKey&& other) noexcept;
    ~UaPkiPrivateKey();

    /// Reads the form of the key's own type or PKCS#8 (RFC 5208). `keyType` is a type number of
    /// OpenSSL, such as 6 for RSA. Empty with messages on failure.
    [[nodiscard]] static UaPkiPrivateKey fromDER(const UaByteArray& data, int keyType) noexcept;

    /// Reads the first private key of a PEM text, encrypted or not. For an encrypted one the callback
    /// is asked with its data; without a callback `password` is the pass phrase, and with neither the
    /// key is refused. Nobody is ever asked on a terminal. Empty with messages on failure.
    [[nodiscard]] static UaPkiPrivateKey fromPEM(const UaByteArray& data, const char* password,
                                                 UaPkiPasswordCallback callback = nullptr,
                                                 void* callbackData = nullptr) noexcept;

    /// The form of the key's own type, for RSA that of RFC 8017, A.1.2. Empty on failure. The bytes are
    /// secret, and wiping them is the caller's.
    [[nodiscard]] UaByteArray toDER() const noexcept;

    /// The handle, borrowed: valid as long as this object holds it, no new reference. May be null.
    [[nodiscard]] EVP_PKEY* handle() const noexcept { return m_pKey; }

private:
    EVP_PKEY* m_pKey;
};
