#include "pki/pkikey.h"

#include "pki/uapkierrorlist.h"

#include <openssl/pem.h>

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

UaByteArray PkiKey_ToDer(const EVP_PKEY* pKey, const UaPkiErrorList& errors) noexcept
{
    const int length = pKey != nullptr ? i2d_PrivateKey(pKey, nullptr) : 0;
    bool isWritten = false;
    UaByteArray bytes = UaByteArray::compose(
        length, [&](OpcUa_Byte* data) { isWritten = i2d_PrivateKey(pKey, &data) == length; });
    errors.addLibraryErrors();
    return isWritten ? bytes : UaByteArray();
}
