#include "platform/openssl_rsakey.h"

#include "platform/cryptobytes.h"
#include "platform/openssl_rsa.h"
#include "platform/openssl_rsakeyder.h"
#include "platform/status.h"

#include <openssl/rsa.h>

namespace {

/// Bytes of a DER element with that many bytes of content.
constexpr OpcUa_UInt32 derSize(OpcUa_UInt32 content)
{
    if (content < 0x80) {
        return content + 2;
    }
    return content < 0x100 ? content + 3 : content + 4;
}

/// A number with its top bit set takes one byte more.
constexpr OpcUa_UInt32 derNumberSize(OpcUa_UInt32 bits)
{
    return derSize(bits / 8 + 1);
}

/// Modulus and exponent 65537.
constexpr OpcUa_UInt32 publicDerSize(OpcUa_UInt32 bits)
{
    return derSize(derNumberSize(bits) + derNumberSize(17));
}

/// Version, modulus, both exponents, and five numbers of half the size.
constexpr OpcUa_UInt32 largestPrivateDerSize(OpcUa_UInt32 bits)
{
    return derSize(derSize(1) + derNumberSize(bits) + derNumberSize(17) + derNumberSize(bits) +
                   5 * derNumberSize(bits / 2));
}

} // namespace

bool isRsaKey(const OpcUa_Key* key, OpcUa_UInt32 type)
{
    return key != nullptr && key->Type == type && hasContent(key->Key);
}

OpenSslPointer<EVP_PKEY> decodeRsaKey(const OpcUa_Key& key)
{
    const unsigned char* bytes = key.Key.Data;
    const auto decode =
        key.Type == OpcUa_Crypto_KeyType_Rsa_Private ? d2i_PrivateKey : d2i_PublicKey;
    OpenSslPointer<EVP_PKEY> decoded(decode(EVP_PKEY_RSA, nullptr, &bytes, key.Key.Length));
    if (decoded != nullptr && EVP_PKEY_get_base_id(decoded.get()) != EVP_PKEY_RSA) {
        decoded.reset();
    }
    return decoded;
}

OpcUa_UInt32 rsaSize(const EVP_PKEY* key)
{
    return static_cast<OpcUa_UInt32>(EVP_PKEY_get_size(key));
}

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_GenerateKeys(OpcUa_UInt32 bits, OpcUa_Key* publicKey,
                                                  OpcUa_Key* privateKey)
{
    if (publicKey == nullptr || privateKey == nullptr || (bits != 1024 && bits != 2048)) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_UInt32 publicSize = publicDerSize(bits);
    const OpcUa_UInt32 privateSize = largestPrivateDerSize(bits);
    if (!hasRoom(publicKey->Key, publicSize) || !hasRoom(privateKey->Key, privateSize)) {
        return OpcUa_BadInvalidArgument;
    }
    publicKey->Type = OpcUa_Crypto_KeyType_Rsa_Public;
    publicKey->Key.Length = static_cast<OpcUa_Int32>(publicSize);
    privateKey->Type = OpcUa_Crypto_KeyType_Rsa_Private;
    privateKey->Key.Length = static_cast<OpcUa_Int32>(privateSize);
    if (publicKey->Key.Data == nullptr && privateKey->Key.Data == nullptr) {
        return OpcUa_Good;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key(EVP_RSA_gen(bits));
    if (key == nullptr) {
        publicKey->Key.Length = 0;
        privateKey->Key.Length = 0;
        return OpcUa_Bad;
    }
    OpcUa_StatusCode status = OpcUa_Good;
    if (publicKey->Key.Data != nullptr) {
        status = RsaKeyDer(key.get(), EVP_PKEY_PUBLIC_KEY).copyTo(publicKey->Key);
    }
    if (OpcUa_IsNotBad(status) && privateKey->Key.Data != nullptr) {
        status = RsaKeyDer(key.get(), EVP_PKEY_KEYPAIR).copyTo(privateKey->Key);
    }
    return status;
}

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_GetKeySize(const OpcUa_Key* publicKey, OpcUa_Int32* bits)
{
    if (bits == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *bits = -1;
    if (!isRsaKey(publicKey, OpcUa_Crypto_KeyType_Rsa_Public)) {
        return OpcUa_BadInvalidArgument;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = decodeRsaKey(*publicKey);
    if (key == nullptr) {
        return OpcUa_BadUnexpectedError;
    }
    *bits = EVP_PKEY_get_bits(key.get());
    return OpcUa_Good;
}
