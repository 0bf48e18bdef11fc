#include "platform/openssl_aes.h"

#include "platform/openssl_handles.h"
#include "platform/status.h"

#include <algorithm>

namespace {

enum class Direction
{
    Decrypt = 0,
    Encrypt = 1
};

/// The cipher for a key's length; null for a length that isn't served.
const EVP_CIPHER* chooseCipher(const OpcUa_Key& key)
{
    if (key.Key.Data == nullptr) {
        return nullptr;
    }
    switch (key.Key.Length) {
    case 16:
        return EVP_aes_128_cbc();
    case 32:
        return EVP_aes_256_cbc();
    default:
        return nullptr;
    }
}

/// Runs the whole blocks through the cipher, in pieces that the library's int can count.
bool update(EVP_CIPHER_CTX* context, const OpcUa_Byte* input, OpcUa_UInt32 length,
            OpcUa_Byte* output)
{
    constexpr OpcUa_UInt32 largestPiece = 1u << 30;
    for (OpcUa_UInt32 done = 0; done < length;) {
        const OpcUa_UInt32 piece = std::min(length - done, largestPiece);
        int written = 0;
        if (EVP_CipherUpdate(context, output + done, &written, input + done,
                             static_cast<int>(piece)) != 1) {
            return false;
        }
        done += piece;
    }
    return true;
}

OpcUa_StatusCode crypt(Direction direction, const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                       const OpcUa_Key* key, const OpcUa_Byte* initialVector, OpcUa_Byte* output,
                       OpcUa_UInt32* outputLength)
{
    if (input == nullptr || key == nullptr || outputLength == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const EVP_CIPHER* const cipher = chooseCipher(*key);
    if (cipher == nullptr) {
        return OpcUa_Bad;
    }
    const OpcUa_UInt32 room = *outputLength;
    *outputLength = inputLength;
    if (output == nullptr) {
        return OpcUa_Good;
    }
    if (initialVector == nullptr || inputLength % OpcUa_Aes_BlockSize != 0 || room < inputLength) {
        return OpcUa_BadInvalidArgument;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_CIPHER_CTX> context(EVP_CIPHER_CTX_new());
    // Without the library's padding decryption would hold the last block back.
    if (context == nullptr ||
        EVP_CipherInit_ex(context.get(), cipher, nullptr, key->Key.Data, initialVector,
                          static_cast<int>(direction)) != 1 ||
        EVP_CIPHER_CTX_set_padding(context.get(), 0) != 1 ||
        !update(context.get(), input, inputLength, output)) {
        *outputLength = 0;
        return OpcUa_Bad;
    }
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_AES_CBC_Encrypt(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                                 const OpcUa_Key* key,
                                                 const OpcUa_Byte* initialVector,
                                                 OpcUa_Byte* output, OpcUa_UInt32* outputLength)
{
    return crypt(Direction::Encrypt, input, inputLength, key, initialVector, output, outputLength);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_AES_CBC_Decrypt(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                                 const OpcUa_Key* key,
                                                 const OpcUa_Byte* initialVector,
                                                 OpcUa_Byte* output, OpcUa_UInt32* outputLength)
{
    return crypt(Direction::Decrypt, input, inputLength, key, initialVector, output, outputLength);
}
