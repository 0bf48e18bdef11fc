#include "platform/openssl_psha.h"

#include "platform/allocator.h"
#include "platform/cryptobytes.h"
#include "platform/openssl_hmac.h"
#include "platform/status.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

struct Input
{
    const OpcUa_Byte* data;
    OpcUa_UInt32 length;
};

/// The state of one derivation in one block: A(i) with the seed right behind it, since both are
/// hashed together, and the secret. It is wiped when it is freed.
class PShaContext
{
public:
    PShaContext(const DigestKind& kind, Input secret, Input seed)
        : m_kind(kind)
        , m_seedLength(seed.length)
        , m_secretLength(secret.length)
    {
        const std::uint64_t size = std::uint64_t{kind.size} + seed.length + secret.length;
        if (size > std::numeric_limits<std::size_t>::max()) {
            return;
        }
        m_size = static_cast<std::size_t>(size);
        m_block = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(m_size));
        if (m_block != nullptr) {
            std::memcpy(m_block + kind.size, seed.data, seed.length);
            std::memcpy(m_block + kind.size + seed.length, secret.data, secret.length);
        }
    }
    ~PShaContext()
    {
        if (m_block != nullptr) {
            OPENSSL_cleanse(m_block, m_size);
            OpcUa_Memory_Free(m_block);
        }
    }
    PShaContext(const PShaContext&) = delete;
    PShaContext& operator=(const PShaContext&) = delete;

    [[nodiscard]] bool isValid() const { return m_block != nullptr; }

    /// A(1) = HMAC(secret, seed)
    [[nodiscard]] OpcUa_StatusCode start() { return hash(seed(), m_seedLength, m_block); }

    /// block = HMAC(secret, A(i) + seed), A(i+1) = HMAC(secret, A(i))
    [[nodiscard]] OpcUa_StatusCode next(OpcUa_Byte* block)
    {
        const std::size_t both = std::size_t{m_kind.size} + m_seedLength;
        const OpcUa_StatusCode status = hash(m_block, both, block);
        return OpcUa_IsBad(status) ? status : hash(m_block, m_kind.size, m_block);
    }

private:
    [[nodiscard]] const OpcUa_Byte* seed() const { return m_block + m_kind.size; }
    [[nodiscard]] const OpcUa_Byte* secret() const { return seed() + m_seedLength; }
    [[nodiscard]] OpcUa_StatusCode hash(const OpcUa_Byte* data, std::size_t length,
                                        OpcUa_Byte* result) const
    {
        return calculateHmac(m_kind, secret(), m_secretLength, data, length, result);
    }

    const DigestKind& m_kind;
    OpcUa_UInt32 m_seedLength;
    OpcUa_UInt32 m_secretLength;
    std::size_t m_size = 0;
    OpcUa_Byte* m_block = nullptr;
};

OpcUa_StatusCode deriveBlocks(const DigestKind& kind, PShaContext& context, OpcUa_Byte* output,
                              OpcUa_UInt32 length)
{
    OpcUa_StatusCode status = context.start();
    std::array<OpcUa_Byte, 32> block{};
    for (OpcUa_UInt32 done = 0; OpcUa_IsNotBad(status) && done < length; done += kind.size) {
        status = context.next(block.data());
        std::memcpy(output + done, block.data(), std::min(kind.size, length - done));
    }
    OPENSSL_cleanse(block.data(), block.size());
    if (OpcUa_IsBad(status)) {
        OPENSSL_cleanse(output, length);
    }
    return status;
}

OpcUa_StatusCode derive(const DigestKind& kind, const OpcUa_CryptoProvider* provider, Input secret,
                        Input seed, OpcUa_Int32 length, OpcUa_Key* result)
{
    constexpr OpcUa_UInt32 longestKey = 512;
    const OpcUa_UInt32 wanted = chooseKeyLength(provider, length);
    if (secret.data == nullptr || seed.data == nullptr || result == nullptr || wanted == 0 ||
        wanted > longestKey || !hasRoom(result->Key, wanted)) {
        return OpcUa_BadInvalidArgument;
    }
    result->Key.Length = static_cast<OpcUa_Int32>(wanted);
    if (result->Key.Data == nullptr) {
        return OpcUa_Good;
    }
    PShaContext context(kind, secret, seed);
    if (!context.isValid()) {
        return OpcUa_BadOutOfMemory;
    }
    return deriveBlocks(kind, context, result->Key.Data, wanted);
}

} // namespace

OpcUa_StatusCode OpcUa_P_OpenSSL_PSHA1_Derive(const OpcUa_CryptoProvider* provider,
                                              const OpcUa_Byte* secret, OpcUa_UInt32 secretLength,
                                              const OpcUa_Byte* seed, OpcUa_UInt32 seedLength,
                                              OpcUa_Int32 length, OpcUa_Key* result)
{
    return derive(sha1Kind, provider, {secret, secretLength}, {seed, seedLength}, length, result);
}

OpcUa_StatusCode OpcUa_P_OpenSSL_PSHA256_Derive(const OpcUa_CryptoProvider* provider,
                                                const OpcUa_Byte* secret, OpcUa_UInt32 secretLength,
                                                const OpcUa_Byte* seed, OpcUa_UInt32 seedLength,
                                                OpcUa_Int32 length, OpcUa_Key* result)
{
    return derive(sha256Kind, provider, {secret, secretLength}, {seed, seedLength}, length, result);
}
