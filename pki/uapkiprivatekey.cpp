#include "pki/uapkiprivatekey.h"

#include "pki/opensslhandles.h"
#include "pki/pkikey.h"

#include <utility>

UaPkiPrivateKey::UaPkiPrivateKey() noexcept
    : m_pKey(EVP_PKEY_new())
{
}

UaPkiPrivateKey::UaPkiPrivateKey(EVP_PKEY* pKey) noexcept
    : m_pKey(PkiKey_Share(pKey))
{
}

UaPkiPrivateKey::UaPkiPrivateKey(const UaPkiPrivateKey& other) noexcept
    : UaPkiErrorList(other)
    , m_pKey(PkiKey_Share(other.m_pKey))
{
}

UaPkiPrivateKey::UaPkiPrivateKey(UaPkiPrivateKey&& other) noexcept
    : UaPkiErrorList(std::move(other))
    , m_pKey(std::exchange(other.m_pKey, nullptr))
{
}

UaPkiPrivateKey& UaPkiPrivateKey::operator=(const UaPkiPrivateKey& other) noexcept
{
    if (this != &other) {
        EVP_PKEY_free(std::exchange(m_pKey, PkiKey_Share(other.m_pKey)));
    }
    return *this;
}

UaPkiPrivateKey& UaPkiPrivateKey::operator=(UaPkiPrivateKey&& other) noexcept
{
    std::swap(m_pKey, other.m_pKey);
    UaPkiErrorList::operator=(std::move(other));
    return *this;
}

UaPkiPrivateKey::~UaPkiPrivateKey()
{
    EVP_PKEY_free(m_pKey);
}

UaPkiPrivateKey UaPkiPrivateKey::fromDER(const UaByteArray& data, int keyType) noexcept
{
    const PkiErrorScope scope;
    UaPkiPrivateKey result;
    const PkiHandle<EVP_PKEY> key = PkiKey_FromDer(data, keyType);
    if (key == nullptr) {
        result.addLibraryErrors();
        return result;
    }
    EVP_PKEY_free(std::exchange(result.m_pKey, PkiKey_Share(key.get())));
    return result;
}

UaPkiPrivateKey UaPkiPrivateKey::fromPEM(const UaByteArray& data, const char* password,
                                         UaPkiPasswordCallback callback,
                                         void* callbackData) noexcept
{
    const PkiErrorScope scope;
    UaPkiPrivateKey result;
    const PkiHandle<EVP_PKEY> key = PkiKey_FromPem(
        data.data(), static_cast<std::size_t>(data.size()), password, callback, callbackData);
    if (key == nullptr) {
        result.addLibraryErrors();
        return result;
    }
    EVP_PKEY_free(std::exchange(result.m_pKey, PkiKey_Share(key.get())));
    return result;
}

UaByteArray UaPkiPrivateKey::toDER() const noexcept
{
    const PkiErrorScope scope;
    return PkiKey_ToDer(m_pKey, *this);
}
