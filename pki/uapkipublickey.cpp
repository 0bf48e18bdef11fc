#include "pki/uapkipublickey.h"

#include "pki/opensslhandles.h"

#include <utility>

namespace {

/// A handle with the public part of a key; null on failure.
X509_PUBKEY* store(EVP_PKEY* pKey) noexcept
{
    X509_PUBKEY* stored = nullptr;
    return X509_PUBKEY_set(&stored, pKey) == 1 ? stored : nullptr;
}

PkiHandle<EVP_PKEY> extract(const X509_PUBKEY* pKey) noexcept
{
    return PkiHandle<EVP_PKEY>(pKey != nullptr ? X509_PUBKEY_get(pKey) : nullptr);
}

/// A copy through the extracted key; an empty handle when there is none to extract.
X509_PUBKEY* duplicate(const X509_PUBKEY* pKey) noexcept
{
    const PkiErrorScope scope;
    const PkiHandle<EVP_PKEY> key = extract(pKey);
    X509_PUBKEY* const copy = key != nullptr ? store(key.get()) : nullptr;
    return copy != nullptr ? copy : X509_PUBKEY_new();
}

} // namespace

UaPkiPublicKey::UaPkiPublicKey() noexcept
    : m_pKey(X509_PUBKEY_new())
{
}

UaPkiPublicKey::UaPkiPublicKey(EVP_PKEY* pKey) noexcept
{
    const PkiErrorScope scope;
    // What the library stores keeps the whole key within reach, the private part too; its DER form
    // has the public part alone.
    const PkiHandle<X509_PUBKEY> whole(store(pKey));
    unsigned char* encoded = nullptr;
    const int length = whole != nullptr ? i2d_X509_PUBKEY(whole.get(), &encoded) : -1;
    const PkiLibraryBytes bytes(encoded);
    const unsigned char* position = encoded;
    m_pKey = length > 0 ? d2i_X509_PUBKEY(nullptr, &position, length) : nullptr;
    addLibraryErrors();
    if (m_pKey == nullptr) {
        m_pKey = X509_PUBKEY_new();
    }
}

UaPkiPublicKey::UaPkiPublicKey(const UaPkiPublicKey& other) noexcept
    : UaPkiErrorList(other)
    , m_pKey(duplicate(other.m_pKey))
{
}

UaPkiPublicKey::UaPkiPublicKey(UaPkiPublicKey&& other) noexcept
    : UaPkiErrorList(std::move(other))
    , m_pKey(std::exchange(other.m_pKey, nullptr))
{
}

UaPkiPublicKey& UaPkiPublicKey::operator=(const UaPkiPublicKey& other) noexcept
{
    if (this != &other) {
        X509_PUBKEY_free(std::exchange(m_pKey, duplicate(other.m_pKey)));
    }
    return *this;
}

UaPkiPublicKey& UaPkiPublicKey::operator=(UaPkiPublicKey&& other) noexcept
{
    std::swap(m_pKey, other.m_pKey);
    UaPkiErrorList::operator=(std::move(other));
    return *this;
}

UaPkiPublicKey::~UaPkiPublicKey()
{
    X509_PUBKEY_free(m_pKey);
}

UaPkiPublicKey UaPkiPublicKey::fromDER(const UaByteArray& data) noexcept
{
    const PkiErrorScope scope;
    UaPkiPublicKey result;
    const OpcUa_Byte nothing = 0;
    const OpcUa_Byte* bytes = data.isEmpty() ? &nothing : data.data();
    X509_PUBKEY* const key = d2i_X509_PUBKEY(nullptr, &bytes, data.size());
    if (key == nullptr) {
        result.addLibraryErrors();
        return result;
    }
    X509_PUBKEY_free(std::exchange(result.m_pKey, key));
    return result;
}

UaByteArray UaPkiPublicKey::toDER() const noexcept
{
    const PkiErrorScope scope;
    const int length = m_pKey != nullptr ? i2d_X509_PUBKEY(m_pKey, nullptr) : 0;
    bool isWritten = false;
    UaByteArray bytes = UaByteArray::compose(
        length, [&](OpcUa_Byte* data) { isWritten = i2d_X509_PUBKEY(m_pKey, &data) == length; });
    addLibraryErrors();
    return isWritten ? bytes : UaByteArray();
}

EVP_PKEY* UaPkiPublicKey::handle() const noexcept
{
    const PkiErrorScope scope;
    PkiHandle<EVP_PKEY> key = extract(m_pKey);
    addLibraryErrors();
    return key.release();
}

int UaPkiPublicKey::keySize() const noexcept
{
    const PkiHandle<EVP_PKEY> key(handle());
    return key != nullptr ? EVP_PKEY_get_bits(key.get()) : -1;
}

int UaPkiPublicKey::keyType() const noexcept
{
    const PkiHandle<EVP_PKEY> key(handle());
    const int type = key != nullptr ? EVP_PKEY_get_base_id(key.get()) : EVP_PKEY_NONE;
    return type == EVP_PKEY_RSA || type == EVP_PKEY_DSA ? type : 0;
}
