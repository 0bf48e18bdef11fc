#include "platform/cryptobytes.h"
#include "platform/openssl_rsa.h"
#include "platform/openssl_rsakey.h"
#include "platform/status.h"
#include "platform/trace.h"

#include <openssl/objects.h>
#include <openssl/rsa.h>

#include <array>
#include <cstddef>

namespace {

void traceFirstError()
{
    std::array<char, 160> text{};
    ERR_error_string_n(ERR_peek_error(), text.data(), text.size());
    OpcUa_Trace(OpcUa_TraceLevel_Error, "*** RSA_Private_Sign: ");
    OpcUa_Trace(OpcUa_TraceLevel_Error, "%s", text.data());
    OpcUa_Trace(OpcUa_TraceLevel_Error, " ***\n");
}

/// Without a digest the library would take the bytes as they stand, so that an unknown number must
/// end here.
bool setDigest(EVP_PKEY_CTX* context, OpcUa_Int32 digestType)
{
    const EVP_MD* const digest = EVP_get_digestbynid(digestType);
    if (digest == nullptr) {
        ERR_raise(ERR_LIB_RSA, RSA_R_UNKNOWN_ALGORITHM_TYPE);
        return false;
    }
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PADDING) == 1 &&
           EVP_PKEY_CTX_set_signature_md(context, digest) == 1;
}

bool sign(EVP_PKEY* key, OpcUa_Int32 digestType, const OpcUa_Byte* digest,
          OpcUa_UInt32 digestLength, OpcUa_CryptoBytes& signature)
{
    const OpenSslPointer<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new(key, nullptr));
    auto length = static_cast<std::size_t>(signature.Length);
    if (context == nullptr || EVP_PKEY_sign_init(context.get()) != 1 ||
        !setDigest(context.get(), digestType) ||
        EVP_PKEY_sign(context.get(), signature.Data, &length, digest, digestLength) != 1) {
        return false;
    }
    signature.Length = static_cast<OpcUa_Int32>(length);
    return true;
}

bool verify(EVP_PKEY* key, OpcUa_Int32 digestType, const OpcUa_Byte* digest,
            OpcUa_UInt32 digestLength, const OpcUa_CryptoBytes& signature)
{
    const OpenSslPointer<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new(key, nullptr));
    return context != nullptr && EVP_PKEY_verify_init(context.get()) == 1 &&
           setDigest(context.get(), digestType) &&
           EVP_PKEY_verify(context.get(), signature.Data,
                           static_cast<std::size_t>(signature.Length), digest, digestLength) == 1;
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_PrivateSign(const OpcUa_Byte* digest,
                                                 OpcUa_UInt32 digestLength,
                                                 const OpcUa_Key* privateKey,
                                                 OpcUa_Int32 digestType,
                                                 OpcUa_CryptoBytes* signature)
{
    if (digest == nullptr || !isRsaKey(privateKey, OpcUa_Crypto_KeyType_Rsa_Private) ||
        signature == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    // What a caller left would be taken for the reason.
    ERR_clear_error();
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = decodeRsaKey(*privateKey);
    if (key == nullptr) {
        traceFirstError();
        return OpcUa_BadUnexpectedError;
    }
    const OpcUa_UInt32 size = rsaSize(key.get());
    if (!hasRoom(*signature, size)) {
        return OpcUa_BadInvalidArgument;
    }
    signature->Length = static_cast<OpcUa_Int32>(size);
    if (signature->Data == nullptr) {
        return OpcUa_Good;
    }
    if (!sign(key.get(), digestType, digest, digestLength, *signature)) {
        traceFirstError();
        signature->Length = 0;
        return OpcUa_Bad;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_PublicVerify(const OpcUa_Byte* digest,
                                                  OpcUa_UInt32 digestLength,
                                                  const OpcUa_Key* publicKey,
                                                  OpcUa_Int32 digestType,
                                                  const OpcUa_CryptoBytes* signature)
{
    if (digest == nullptr || !isRsaKey(publicKey, OpcUa_Crypto_KeyType_Rsa_Public) ||
        signature == nullptr || !hasContent(*signature)) {
        return OpcUa_BadInvalidArgument;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = decodeRsaKey(*publicKey);
    if (key == nullptr) {
        return OpcUa_BadUnexpectedError;
    }
    const OpcUa_UInt32 size = rsaSize(key.get());
    if (size == 0 || static_cast<OpcUa_UInt32>(signature->Length) % size != 0) {
        return OpcUa_BadInvalidArgument;
    }
    return verify(key.get(), digestType, digest, digestLength, *signature)
               ? OpcUa_Good
               : OpcUa_BadSignatureInvalid;
}
