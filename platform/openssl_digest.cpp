#include "platform/openssl_digest.h"

#include "platform/openssl_handles.h"
#include "platform/status.h"

namespace {

OpcUa_StatusCode generate(const EVP_MD* digest, const OpcUa_Byte* data, OpcUa_UInt32 length,
                          OpcUa_Byte* result)
{
    if (data == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (result == nullptr) {
        return OpcUa_Bad;
    }
    const OpenSslErrorScope errors;
    return EVP_Digest(data, length, result, nullptr, digest, nullptr) == 1 ? OpcUa_Good : OpcUa_Bad;
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_SHA1_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                               OpcUa_Byte* result)
{
    return generate(EVP_sha1(), data, length, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_SHA224_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                 OpcUa_Byte* result)
{
    return generate(EVP_sha224(), data, length, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_SHA256_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                 OpcUa_Byte* result)
{
    return generate(EVP_sha256(), data, length, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_SHA384_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                 OpcUa_Byte* result)
{
    return generate(EVP_sha384(), data, length, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_SHA512_Generate(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                                 OpcUa_Byte* result)
{
    return generate(EVP_sha512(), data, length, result);
}
