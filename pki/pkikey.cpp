#include "pki/pkikey.h"

#include "pki/uapkierrorlist.h"

#include <openssl/pem.h>
#include <openssl/provider.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

/// Who is to be asked for the pass phrase.
struct PasswordSource
{
    const char* password;
    UaPkiPasswordCallback callback;
    void* callbackData;
};

/// Writes the password as far as there is room; 0 without one.
int givePassword(char* buffer, int size, const char* password)
{
    if (password == nullptr || size <= 0) {
        return 0;
    }
    const std::size_t length = strnlen(password, static_cast<std::size_t>(size));
    std::memcpy(buffer, password, length);
    return static_cast<int>(length);
}

int askForPassword(char* buffer, int size, int rwflag, void* userData)
{
    const auto& source = *static_cast<const PasswordSource*>(userData);
    if (source.callback == nullptr) {
        return givePassword(buffer, size, source.password);
    }
    const int length = source.callback(buffer, size, rwflag, source.callbackData);
    // The library would read behind its buffer.
    return length <= size ? length : -1;
}

/// The form of the key's own type by way of its traditional PEM text: the library wipes what it needs
/// for that, while i2d_PrivateKey frees a copy of the key as it is. Empty for a type without such a
/// form.
UaByteArray encodeWiped(EVP_PKEY* pKey)
{
    const PkiHandle<BIO> text(BIO_new(BIO_s_mem()));
    if (text == nullptr || PEM_write_bio_PrivateKey_traditional(text.get(), pKey, nullptr, nullptr,
                                                                0, nullptr, nullptr) != 1) {
        return {};
    }
    char* name = nullptr;
    char* header = nullptr;
    unsigned char* data = nullptr;
    long size = 0;
    if (PEM_read_bio(text.get(), &name, &header, &data, &size) != 1) {
        return {};
    }
    const UaByteArray bytes(data, static_cast<OpcUa_Int32>(size));
    OPENSSL_free(name);
    OPENSSL_free(header);
    OPENSSL_clear_free(data, static_cast<std::size_t>(size));
    return bytes;
}

UaByteArray encode(const EVP_PKEY* pKey)
{
    const int length = i2d_PrivateKey(pKey, nullptr);
    bool isWritten = false;
    UaByteArray bytes = UaByteArray::compose(
        length, [&](OpcUa_Byte* data) { isWritten = i2d_PrivateKey(pKey, &data) == length; });
    return isWritten ? bytes : UaByteArray();
}

/// A context without any algorithm, made once and kept: where the library finds no decoder, it reads a
/// key by its older way, which makes no copies. Null when it can't be made.
OSSL_LIB_CTX* bareContext()
{
    static OSSL_LIB_CTX* const pContext = [] {
        PkiHandle<OSSL_LIB_CTX> context(OSSL_LIB_CTX_new());
        // Without the null provider the default one would come by itself.
        const bool isBare =
            context != nullptr && OSSL_PROVIDER_load(context.get(), "null") != nullptr;
        return isBare ? context.release() : nullptr;
    }();
    return pContext;
}

} // namespace

EVP_PKEY* PkiKey_Share(EVP_PKEY* pKey) noexcept
{
    return pKey != nullptr && EVP_PKEY_up_ref(pKey) == 1 ? pKey : nullptr;
}

PkiHandle<EVP_PKEY> PkiKey_FromPem(const OpcUa_Byte* bytes, std::size_t size, const char* password,
                                   UaPkiPasswordCallback callback, void* callbackData) noexcept
{
    constexpr std::size_t largestSize = std::numeric_limits<int>::max();
    // The library refuses a null pointer in words of its own; an empty text has no start line.
    const void* const text = size > 0 ? static_cast<const void*>(bytes) : "";
    const PkiHandle<BIO> bio(BIO_new_mem_buf(text, static_cast<int>(std::min(size, largestSize))));
    PasswordSource source{password, callback, callbackData};
    return bio == nullptr ? nullptr
                          : PkiHandle<EVP_PKEY>(PEM_read_bio_PrivateKey(bio.get(), nullptr,
                                                                        askForPassword, &source));
}

PkiHandle<EVP_PKEY> PkiKey_FromDer(const UaByteArray& data, int keyType) noexcept
{
    // The library takes a null pointer for a mistake of the program.
    const OpcUa_Byte nothing = 0;
    const OpcUa_Byte* const bytes = data.isEmpty() ? &nothing : data.data();
    const OpcUa_Byte* position = bytes;
    if (OSSL_LIB_CTX* const pContext = bareContext()) {
        PkiHandle<EVP_PKEY> key(
            d2i_PrivateKey_ex(keyType, nullptr, &position, data.size(), pContext, nullptr));
        if (key != nullptr) {
            return key;
        }
        ERR_clear_error();
    }
    position = bytes;
    return PkiHandle<EVP_PKEY>(d2i_PrivateKey(keyType, nullptr, &position, data.size()));
}

UaByteArray PkiKey_ToDer(EVP_PKEY* pKey, const UaPkiErrorList& errors) noexcept
{
    UaByteArray bytes = pKey != nullptr ? encodeWiped(pKey) : UaByteArray();
    if (bytes.isEmpty() && pKey != nullptr) {
        // A type without a traditional form, or memory was short.
        ERR_clear_error();
        bytes = encode(pKey);
    }
    errors.addLibraryErrors();
    return bytes;
}
