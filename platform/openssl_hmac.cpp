#include "platform/openssl_hmac.h"

#include "platform/cryptobytes.h"
#include "platform/openssl_digest.h"
#include "platform/openssl_handles.h"
#include "platform/status.h"

OpcUa_StatusCode calculateHmac(const DigestKind& kind, const OpcUa_Byte* key, std::size_t keyLength,
                               const OpcUa_Byte* data, std::size_t length, OpcUa_Byte* result)
{
    const OpenSslErrorScope errors;
    std::size_t written = 0;
    if (EVP_Q_mac(nullptr, "HMAC", nullptr, kind.name, nullptr, key, keyLength, data, length,
                  result, kind.size, &written) == nullptr ||
        written < 1) {
        return OpcUa_Bad;
    }
    return OpcUa_Good;
}

namespace {

OpcUa_StatusCode generate(const DigestKind& kind, const OpcUa_Byte* data, OpcUa_UInt32 length,
                          const OpcUa_Key* key, OpcUa_CryptoBytes* result)
{
    if (data == nullptr || key == nullptr || key->Key.Data == nullptr || key->Key.Length < 0 ||
        result == nullptr || !hasRoom(*result, kind.size)) {
        return OpcUa_BadInvalidArgument;
    }
    result->Length = static_cast<OpcUa_Int32>(kind.size);
    if (result->Data == nullptr) {
        return OpcUa_Good;
    }
    return calculateHmac(kind, key->Key.Data, static_cast<std::size_t>(key->Key.Length), data,
                         length, result->Data);
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA1_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                    const OpcUa_Key* key, OpcUa_CryptoBytes* result)
{
    return generate(sha1Kind, data, length, key, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA224_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                      const OpcUa_Key* key,
                                                      OpcUa_CryptoBytes* result)
{
    return generate(sha224Kind, data, length, key, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA256_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                      const OpcUa_Key* key,
                                                      OpcUa_CryptoBytes* result)
{
    return generate(sha256Kind, data, length, key, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA384_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                      const OpcUa_Key* key,
                                                      OpcUa_CryptoBytes* result)
{
    return generate(sha384Kind, data, length, key, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_HMAC_SHA512_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                      const OpcUa_Key* key,
                                                      OpcUa_CryptoBytes* result)
{
    return generate(sha512Kind, data, length, key, result);
}
