#pragma once

#include "base/uabytearray.h"
#include "pki/uapkierrorlist.h"
#include "pki/uapkipassword.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"

#include <openssl/types.h>

class UaUniString;

/// An RSA key pair: made, kept in files, and handed out as its two halves. Copies share one OpenSSL
/// handle and cost one reference; the key is wiped with the last of them. Failures never throw: they
/// become messages, and the key is empty.
class UaPkiRSAKeyPair : public UaPkiErrorList
{
public:
    /// A handle without a key in it.
    UaPkiRSAKeyPair() noexcept;
    /// Makes a new key with the exponent 65537. This takes a second or more for large keys. The library
    /// refuses less than 512 bits, and more than 16384 are refused as it refuses to use them.
    explicit UaPkiRSAKeyPair(int keySize) noexcept;
    /// Takes a further reference on the handle, which may be null.
    explicit UaPkiRSAKeyPair(EVP_PKEY* pKey) noexcept;

    UaPkiRSAKeyPair(const UaPkiRSAKeyPair& other) noexcept;
    UaPkiRSAKeyPair(UaPkiRSAKeyPair&& other) noexcept;
    UaPkiRSAKeyPair& operator=(const UaPkiRSAKeyPair& other) noexcept;
    UaPkiRSAKeyPair& operator=(UaPkiRSAKeyPair&& other) noexcept;
    ~UaPkiRSAKeyPair();

    /// The public part alone.
    [[nodiscard]] UaPkiPublicKey publicKey() const noexcept;
    /// A further reference to the same key.
    [[nodiscard]] UaPkiPrivateKey privateKey() const noexcept;

    /// Writes the key to a file in the traditional PEM form ("BEGIN RSA PRIVATE KEY"), encrypted with
    /// AES-256 in CBC mode when there is a password, of which the first 1024 bytes count. An empty
    /// password is refused. A null key fails without a message.
    ///
    /// A new file is readable and writable by its owner alone from its first byte on; one that replaces
    /// another keeps the other's mode and, where the system lets it, its owner. After a failure what was
    /// there is untouched. 0 for success, -1 on failure.
    [[nodiscard]] int toPEMFile(const char* path, const char* password) const noexcept;

    /// The key as PEM text in the PKCS#8 form ("BEGIN PRIVATE KEY", "BEGIN ENCRYPTED PRIVATE KEY"), with
    /// the same cipher and the same rules. Empty on failure. The bytes are secret, and wiping them is the
    /// caller's.
    [[nodiscard]] UaByteArray toPEM(const char* password) const noexcept;

    /// The RSAPrivateKey of RFC 8017, A.1.2. Empty on failure. The bytes are secret, and wiping them is
    /// the caller's.
    [[nodiscard]] UaByteArray toDER() const noexcept;

    /// Reads the first private key of a PEM file of up to 1 MiB, encrypted or not, which must be an RSA
    /// key. For an encrypted one the callback is asked with its data; without a callback `password` is
    /// the pass phrase, and with neither the key is refused. Nobody is ever asked on a terminal. Empty
    /// with messages on failure.
    [[nodiscard]] static UaPkiRSAKeyPair fromPEMFile(const char* path, const char* password,
                                                     UaPkiPasswordCallback callback = nullptr,
                                                     void* callbackData = nullptr) noexcept;
    /// The same through the file engine.
    [[nodiscard]] static UaPkiRSAKeyPair fromPEMFile(const UaUniString& path, const char* password,
                                                     UaPkiPasswordCallback callback = nullptr,
                                                     void* callbackData = nullptr) noexcept;

private:
    EVP_PKEY* m_pKey;
};
