// Private keys: the first byte chooses the form and the password. What reads is written again, read
// again, and is the same key; what doesn't has messages, and the library's queue is empty.

#include "fuzz/require.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirsakeypair.h"

#include <openssl/err.h>
#include <openssl/evp.h>

#include <cstddef>
#include <cstdint>

namespace {

void checkKey(const UaPkiPrivateKey& key)
{
    const bool isRead = key.getErrors().empty();
    require(key.handle() != nullptr);
    require(isRead == (EVP_PKEY_get_id(key.handle()) != EVP_PKEY_NONE));
    const UaByteArray bytes = key.toDER();
    const UaPkiPrivateKey copy(key);
    require(copy.handle() == key.handle());
    const UaPkiPublicKey publicKey(key.handle());
    const UaPkiPublicKey publicCopy(publicKey);
    require(publicKey.keySize() == publicCopy.keySize());
    require(publicKey.keyType() == publicCopy.keyType());
    require(publicKey.toDER() == publicCopy.toDER());
    require(isRead || bytes.isEmpty());
    if (!bytes.isEmpty()) {
        const int type = EVP_PKEY_get_base_id(key.handle());
        const UaPkiPrivateKey again = UaPkiPrivateKey::fromDER(bytes, type);
        require(again.toDER() == bytes);
    }
    const UaPkiRSAKeyPair keyPair(key.handle());
    const UaByteArray text = keyPair.toPEM(nullptr);
    if (!text.isEmpty()) {
        require(UaPkiPrivateKey::fromPEM(text, nullptr).toDER() == bytes);
    }
    require(ERR_peek_error() == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t largest = 64 * 1024;
    if (size == 0 || size > largest) {
        return 0;
    }
    const UaByteArray bytes(data + 1, static_cast<OpcUa_Int32>(size - 1));
    switch (data[0] % 4) {
    case 0:
        checkKey(UaPkiPrivateKey::fromDER(bytes, EVP_PKEY_RSA));
        break;
    case 1:
        checkKey(UaPkiPrivateKey::fromDER(bytes, EVP_PKEY_EC));
        break;
    case 2:
        checkKey(UaPkiPrivateKey::fromPEM(bytes, nullptr));
        break;
    default:
        checkKey(UaPkiPrivateKey::fromPEM(bytes, "secret"));
    }
    return 0;
}
