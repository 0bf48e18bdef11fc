#include "platform/allocator.h"
#include "platform/openssl_rsa.h"
#include "platform/openssl_rsakey.h"
#include "platform/status.h"

#include <openssl/crypto.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

struct Padding
{
    OpcUa_Int32 number;
    OpcUa_UInt32 overhead; ///< Bytes that it takes of each block.
};

constexpr Padding paddings[] = {{OpcUa_Rsa_PaddingPkcs1, RSA_PKCS1_PADDING_SIZE},
                                {OpcUa_Rsa_PaddingNone, 0},
                                {OpcUa_Rsa_PaddingOaep, 42}};
static_assert(OpcUa_Rsa_PaddingPkcs1 == RSA_PKCS1_PADDING &&
              OpcUa_Rsa_PaddingNone == RSA_NO_PADDING &&
              OpcUa_Rsa_PaddingOaep == RSA_PKCS1_OAEP_PADDING);

const Padding* findPadding(OpcUa_Int32 number)
{
    const auto* const end = std::end(paddings);
    const auto* const found = std::find_if(
        std::begin(paddings), end, [number](const Padding& p) { return p.number == number; });
    return found != end ? found : nullptr;
}

/// One call's caller-side output. What isn't handed over in the end is wiped.
class Output
{
public:
    Output(OpcUa_Byte* data, OpcUa_UInt32* length)
        : m_data(data)
        , m_length(length)
        , m_room(*length)
    {
        *m_length = 0;
    }

    [[nodiscard]] bool append(const OpcUa_Byte* block, std::size_t size)
    {
        if (size > m_room - *m_length) {
            return false;
        }
        std::memcpy(m_data + *m_length, block, size);
        *m_length += static_cast<OpcUa_UInt32>(size);
        return true;
    }

    OpcUa_StatusCode fail(OpcUa_StatusCode status)
    {
        OPENSSL_cleanse(m_data, *m_length);
        *m_length = 0;
        return status;
    }

private:
    OpcUa_Byte* m_data;
    OpcUa_UInt32* m_length;
    OpcUa_UInt32 m_room;
};

/// The result of one block, wiped when it is freed.
class BlockBuffer
{
public:
    explicit BlockBuffer(OpcUa_UInt32 size)
        : m_size(size)
        , m_data(static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(size)))
    {
    }
    ~BlockBuffer()
    {
        if (m_data != nullptr) {
            OPENSSL_cleanse(m_data, m_size);
            OpcUa_Memory_Free(m_data);
        }
    }
    BlockBuffer(const BlockBuffer&) = delete;
    BlockBuffer& operator=(const BlockBuffer&) = delete;

    [[nodiscard]] OpcUa_Byte* data() const { return m_data; }
    [[nodiscard]] OpcUa_UInt32 size() const { return m_size; }

private:
    OpcUa_UInt32 m_size;
    OpcUa_Byte* m_data;
};

using BlockOperation = int (*)(EVP_PKEY_CTX* context, unsigned char* output,
                               std::size_t* outputLength, const unsigned char* input,
                               std::size_t inputLength);
using Prepare = int (*)(EVP_PKEY_CTX* context);

/// Encryption or decryption by what the two differ in.
struct Mode
{
    Prepare prepare;
    BlockOperation run;
};

OpcUa_StatusCode runBlocks(const Mode& mode, EVP_PKEY* key, const Padding& padding,
                           const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                           OpcUa_UInt32 inputBlock, Output output)
{
    const OpenSslPointer<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new(key, nullptr));
    const BlockBuffer block(rsaSize(key));
    if (block.data() == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    if (context == nullptr || mode.prepare(context.get()) != 1 ||
        EVP_PKEY_CTX_set_rsa_padding(context.get(), padding.number) != 1) {
        return OpcUa_Bad;
    }
    for (OpcUa_UInt32 done = 0; done < inputLength;) {
        const OpcUa_UInt32 piece = std::min(inputBlock, inputLength - done);
        std::size_t written = block.size();
        if (mode.run(context.get(), block.data(), &written, input + done, piece) != 1) {
            return output.fail(OpcUa_Bad);
        }
        if (!output.append(block.data(), written)) {
            return output.fail(OpcUa_BadInvalidArgument);
        }
        done += piece;
    }
    return OpcUa_Good;
}

bool areArgumentsValid(const OpcUa_Byte* input, OpcUa_UInt32 inputLength, const OpcUa_Key* key,
                       OpcUa_UInt32 keyType, const OpcUa_UInt32* outputLength)
{
    return input != nullptr && inputLength != 0 && isRsaKey(key, keyType) &&
           outputLength != nullptr;
}

/// Bytes that `blocks` blocks need; 0 when the number can't be told in 32 bits.
OpcUa_UInt32 sumUp(OpcUa_UInt32 blocks, OpcUa_UInt32 blockSize)
{
    const std::uint64_t sum = std::uint64_t{blocks} * blockSize;
    return sum <= std::numeric_limits<OpcUa_UInt32>::max() ? static_cast<OpcUa_UInt32>(sum) : 0;
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_PublicEncrypt(const OpcUa_Byte* input,
                                                   OpcUa_UInt32 inputLength,
                                                   const OpcUa_Key* publicKey, OpcUa_Int32 padding,
                                                   OpcUa_Byte* output, OpcUa_UInt32* outputLength)
{
    if (!areArgumentsValid(input, inputLength, publicKey, OpcUa_Crypto_KeyType_Rsa_Public,
                           outputLength)) {
        return OpcUa_BadInvalidArgument;
    }
    const Padding* const kind = findPadding(padding);
    if (kind == nullptr) {
        return OpcUa_BadNotSupported;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = decodeRsaKey(*publicKey);
    if (key == nullptr || rsaSize(key.get()) <= kind->overhead) {
        return OpcUa_BadUnexpectedError;
    }
    const OpcUa_UInt32 payload = rsaSize(key.get()) - kind->overhead;
    const OpcUa_UInt32 blocks = inputLength / payload + (inputLength % payload != 0 ? 1 : 0);
    const OpcUa_UInt32 needed = sumUp(blocks, rsaSize(key.get()));
    if (needed == 0 || (output != nullptr && *outputLength < needed)) {
        return OpcUa_BadInvalidArgument;
    }
    if (output == nullptr) {
        *outputLength = needed;
        return OpcUa_Good;
    }
    return runBlocks({EVP_PKEY_encrypt_init, EVP_PKEY_encrypt}, key.get(), *kind, input,
                     inputLength, payload, {output, outputLength});
}

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_PrivateDecrypt(const OpcUa_Byte* input,
                                                    OpcUa_UInt32 inputLength,
                                                    const OpcUa_Key* privateKey,
                                                    OpcUa_Int32 padding, OpcUa_Byte* output,
                                                    OpcUa_UInt32* outputLength)
{
    if (!areArgumentsValid(input, inputLength, privateKey, OpcUa_Crypto_KeyType_Rsa_Private,
                           outputLength)) {
        return OpcUa_BadInvalidArgument;
    }
    const Padding* const kind = findPadding(padding);
    if (kind == nullptr) {
        return OpcUa_BadNotSupported;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = decodeRsaKey(*privateKey);
    if (key == nullptr || rsaSize(key.get()) <= kind->overhead) {
        return OpcUa_BadUnexpectedError;
    }
    const OpcUa_UInt32 size = rsaSize(key.get());
    if (inputLength % size != 0) {
        return OpcUa_BadInvalidArgument;
    }
    if (output == nullptr) {
        *outputLength = sumUp(inputLength / size, size - kind->overhead);
        return OpcUa_Good;
    }
    return runBlocks({EVP_PKEY_decrypt_init, EVP_PKEY_decrypt}, key.get(), *kind, input,
                     inputLength, size, {output, outputLength});
}
