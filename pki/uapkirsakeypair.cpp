#include "pki/uapkirsakeypair.h"

#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/pkifile.h"
#include "pki/pkikey.h"
#include "platform/privatefile.h"
#include "platform/status.h"

#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace {

/// A new key; null on failure, with the reason in the library's queue.
PkiHandle<EVP_PKEY> generate(int keySize) noexcept
{
    if (keySize > OPENSSL_RSA_MAX_MODULUS_BITS) {
        // Such a key would take hours to make, and the library refuses to use it.
        ERR_raise(ERR_LIB_RSA, RSA_R_MODULUS_TOO_LARGE);
        return nullptr;
    }
    return PkiHandle<EVP_PKEY>(EVP_RSA_gen(static_cast<unsigned>(keySize > 0 ? keySize : 0)));
}

bool isRsa(const EVP_PKEY* pKey) noexcept
{
    if (EVP_PKEY_is_a(pKey, "RSA") == 1) {
        return true;
    }
    ERR_raise(ERR_LIB_EVP, EVP_R_EXPECTING_AN_RSA_KEY);
    return false;
}

/// Takes the RSA key of a file's bytes; null on failure with the library's errors drained.
EVP_PKEY* readKey(const std::optional<PkiBytes>& bytes, const char* password,
                  UaPkiPasswordCallback callback, void* callbackData,
                  const UaPkiErrorList& errors) noexcept
{
    if (!bytes) {
        return nullptr;
    }
    PkiHandle<EVP_PKEY> key =
        PkiKey_FromPem(bytes->data(), bytes->size(), password, callback, callbackData);
    if (key == nullptr || !isRsa(key.get())) {
        errors.addLibraryErrors();
        return nullptr;
    }
    return key.release();
}

/// The pass phrase as the library's default callback cuts it; null without one.
std::optional<std::string_view> passPhrase(const char* password) noexcept
{
    return password == nullptr
               ? std::nullopt
               : std::make_optional(std::string_view(password, strnlen(password, PEM_BUFSIZE)));
}

bool writeFile(const char* path, BIO* text) noexcept
{
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text, &bytes);
    errno = 0;
    return OpcUa_IsGood(OpcUa_P_PrivateFile_Write(path, bytes, static_cast<std::size_t>(size)));
}

} // namespace

UaPkiRSAKeyPair::UaPkiRSAKeyPair() noexcept
    : m_pKey(EVP_PKEY_new())
{
}

UaPkiRSAKeyPair::UaPkiRSAKeyPair(int keySize) noexcept
{
    const PkiErrorScope scope;
    m_pKey = generate(keySize).release();
    if (m_pKey == nullptr) {
        addLibraryErrors();
        m_pKey = EVP_PKEY_new();
    }
}

UaPkiRSAKeyPair::UaPkiRSAKeyPair(EVP_PKEY* pKey) noexcept
    : m_pKey(PkiKey_Share(pKey))
{
}

UaPkiRSAKeyPair::UaPkiRSAKeyPair(const UaPkiRSAKeyPair& other) noexcept
    : UaPkiErrorList(other)
    , m_pKey(PkiKey_Share(other.m_pKey))
{
}

UaPkiRSAKeyPair::UaPkiRSAKeyPair(UaPkiRSAKeyPair&& other) noexcept
    : UaPkiErrorList(std::move(other))
    , m_pKey(std::exchange(other.m_pKey, nullptr))
{
}

UaPkiRSAKeyPair& UaPkiRSAKeyPair::operator=(const UaPkiRSAKeyPair& other) noexcept
{
    if (this != &other) {
        EVP_PKEY_free(std::exchange(m_pKey, PkiKey_Share(other.m_pKey)));
    }
    return *this;
}

UaPkiRSAKeyPair& UaPkiRSAKeyPair::operator=(UaPkiRSAKeyPair&& other) noexcept
{
    std::swap(m_pKey, other.m_pKey);
    UaPkiErrorList::operator=(std::move(other));
    return *this;
}

UaPkiRSAKeyPair::~UaPkiRSAKeyPair()
{
    EVP_PKEY_free(m_pKey);
}

UaPkiPublicKey UaPkiRSAKeyPair::publicKey() const noexcept
{
    return UaPkiPublicKey(m_pKey);
}

UaPkiPrivateKey UaPkiRSAKeyPair::privateKey() const noexcept
{
    return UaPkiPrivateKey(m_pKey);
}

int UaPkiRSAKeyPair::toPEMFile(const char* path, const char* password) const noexcept
{
    if (m_pKey == nullptr) {
        return -1;
    }
    const PkiErrorScope scope;
    // The memory is wiped when it grows and when it is freed.
    const PkiHandle<BIO> text(BIO_new(BIO_s_mem()));
    const EVP_CIPHER* const cipher = password != nullptr ? EVP_aes_256_cbc() : nullptr;
    // With neither a key string nor a callback, the default callback takes the last argument for the
    // pass phrase.
    const bool isEncoded =
        text != nullptr && isRsa(m_pKey) &&
        PEM_write_bio_PrivateKey_traditional(text.get(), m_pKey, cipher, nullptr, 0, nullptr,
                                             const_cast<char*>(password)) == 1;
    if (isEncoded && writeFile(path, text.get())) {
        return 0;
    }
    if (isEncoded) {
        PkiFile_RaiseError();
    }
    addLibraryErrors();
    return -1;
}

UaByteArray UaPkiRSAKeyPair::toPEM(const char* password) const noexcept
{
    if (m_pKey == nullptr) {
        return {};
    }
    const PkiErrorScope scope;
    const PkiHandle<BIO> text(BIO_new(BIO_s_mem()));
    const auto phrase = passPhrase(password);
    const bool isUsable = !phrase || !phrase->empty();
    if (!isUsable) {
        ERR_raise(ERR_LIB_PEM, PEM_R_READ_KEY);
    }
    const std::string_view shown = phrase.value_or(std::string_view());
    if (text == nullptr || !isUsable ||
        PEM_write_bio_PrivateKey(text.get(), m_pKey, phrase ? EVP_aes_256_cbc() : nullptr,
                                 reinterpret_cast<const unsigned char*>(shown.data()),
                                 static_cast<int>(shown.size()), nullptr, nullptr) != 1) {
        addLibraryErrors();
        return {};
    }
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text.get(), &bytes);
    return {bytes, static_cast<OpcUa_Int32>(size)};
}

UaByteArray UaPkiRSAKeyPair::toDER() const noexcept
{
    const PkiErrorScope scope;
    return PkiKey_ToDer(m_pKey, *this);
}

UaPkiRSAKeyPair UaPkiRSAKeyPair::fromPEMFile(const char* path, const char* password,
                                             UaPkiPasswordCallback callback,
                                             void* callbackData) noexcept
{
    const PkiErrorScope scope;
    UaPkiRSAKeyPair result;
    const auto bytes = PkiFile_Read(path, PkiFile_LargestSize, result);
    if (EVP_PKEY* const key = readKey(bytes, password, callback, callbackData, result)) {
        EVP_PKEY_free(std::exchange(result.m_pKey, key));
    }
    return result;
}

UaPkiRSAKeyPair UaPkiRSAKeyPair::fromPEMFile(const UaUniString& path, const char* password,
                                             UaPkiPasswordCallback callback,
                                             void* callbackData) noexcept
{
    const PkiErrorScope scope;
    UaPkiRSAKeyPair result;
    const auto bytes = PkiFile_Read(path, "rt", PkiFile_LargestSize, result);
    if (EVP_PKEY* const key = readKey(bytes, password, callback, callbackData, result)) {
        EVP_PKEY_free(std::exchange(result.m_pKey, key));
    }
    return result;
}
