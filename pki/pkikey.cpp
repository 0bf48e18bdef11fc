#include "pki/pkikey.h"

#include "pki/pkibarecontext.h"
#include "pki/pkikeyderivation.h"
#include "pki/uapkierrorlist.h"

#include <openssl/evperr.h>
#include <openssl/pem.h>
#include <openssl/pkcs12.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

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

/// Bytes that the library has allocated, wiped when they are freed.
class WipedBytes
{
public:
    WipedBytes() = default;
    WipedBytes(const WipedBytes&) = delete;
    WipedBytes& operator=(const WipedBytes&) = delete;
    /// The memory may lie in the library's secure heap, when the program has set one up.
    ~WipedBytes() { OPENSSL_secure_clear_free(data, static_cast<std::size_t>(size)); }

    unsigned char* data = nullptr;
    long size = 0;
};

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
    WipedBytes der;
    if (PEM_read_bio(text.get(), &name, &header, &der.data, &der.size) != 1) {
        return {};
    }
    OPENSSL_free(name);
    OPENSSL_free(header);
    return {der.data, static_cast<OpcUa_Int32>(der.size)};
}

UaByteArray encode(const EVP_PKEY* pKey)
{
    const int length = i2d_PrivateKey(pKey, nullptr);
    bool isWritten = false;
    UaByteArray bytes = UaByteArray::compose(
        length, [&](OpcUa_Byte* data) { isWritten = i2d_PrivateKey(pKey, &data) == length; });
    return isWritten ? bytes : UaByteArray();
}

/// Reads the form of a type, or PKCS#8 of it. In a context without decoders the library reads a key by
/// its older way, which makes no copies of it.
PkiHandle<EVP_PKEY> decode(const OpcUa_Byte* bytes, long size, int keyType)
{
    const OpcUa_Byte* position = bytes;
    if (OSSL_LIB_CTX* const pContext = PkiBareContext()) {
        PkiHandle<EVP_PKEY> key(
            d2i_PrivateKey_ex(keyType, nullptr, &position, size, pContext, nullptr));
        if (key != nullptr) {
            return key;
        }
        ERR_clear_error();
    }
    position = bytes;
    return PkiHandle<EVP_PKEY>(d2i_PrivateKey(keyType, nullptr, &position, size));
}

int typeOf(const PKCS8_PRIV_KEY_INFO* pKey)
{
    const ASN1_OBJECT* algorithm = nullptr;
    return pKey != nullptr && PKCS8_pkey_get0(&algorithm, nullptr, nullptr, nullptr, pKey) == 1
               ? OBJ_obj2nid(algorithm)
               : NID_undef;
}

/// The type in the name of a PEM text such as "RSA PRIVATE KEY".
int typeOf(std::string_view name)
{
    const std::string_view type = name.substr(0, name.find(' '));
    const EVP_PKEY_ASN1_METHOD* const method =
        EVP_PKEY_asn1_find_str(nullptr, type.data(), static_cast<int>(type.size()));
    int id = EVP_PKEY_NONE;
    EVP_PKEY_asn1_get0_info(&id, nullptr, nullptr, nullptr, nullptr, method);
    return id;
}

PkiHandle<EVP_PKEY> decodePkcs8(const OpcUa_Byte* bytes, long size)
{
    const OpcUa_Byte* position = bytes;
    const PkiHandle<PKCS8_PRIV_KEY_INFO> key(d2i_PKCS8_PRIV_KEY_INFO(nullptr, &position, size));
    return key == nullptr ? nullptr : decode(bytes, size, typeOf(key.get()));
}

/// The first private key of a PEM text, decrypted where the text itself is. Empty without one.
class PemBlock
{
public:
    PemBlock(BIO* bio, PasswordSource& source)
    {
        if (bio == nullptr ||
            PEM_bytes_read_bio_secmem(&m_bytes.data, &m_bytes.size, &m_name, PEM_STRING_EVP_PKEY,
                                      bio, askForPassword, &source) != 1) {
            m_name = nullptr;
        }
    }
    PemBlock(const PemBlock&) = delete;
    PemBlock& operator=(const PemBlock&) = delete;
    ~PemBlock() { OPENSSL_secure_free(m_name); }

    [[nodiscard]] std::string_view name() const { return m_name != nullptr ? m_name : ""; }
    [[nodiscard]] const unsigned char* data() const { return m_bytes.data; }
    [[nodiscard]] long size() const { return m_bytes.size; }

private:
    WipedBytes m_bytes;
    char* m_name = nullptr;
};

PkiHandle<EVP_PKEY> decodeEncrypted(const PemBlock& block, PasswordSource& source)
{
    const unsigned char* position = block.data();
    const PkiHandle<X509_SIG> encrypted(d2i_X509_SIG(nullptr, &position, block.size()));
    if (encrypted == nullptr) {
        return nullptr;
    }
    const X509_ALGOR* scheme = nullptr;
    X509_SIG_get0(encrypted.get(), &scheme, nullptr);
    if (!PkiKeyDerivation_IsBearable(scheme)) {
        ERR_raise_data(ERR_LIB_EVP, EVP_R_UNSUPPORTED_KEY_DERIVATION_FUNCTION,
                       "the key claims too many rounds");
        return nullptr;
    }
    std::array<char, PEM_BUFSIZE> password{};
    const int length = askForPassword(password.data(), PEM_BUFSIZE, 0, &source);
    if (length <= 0) {
        ERR_raise(ERR_LIB_PEM, PEM_R_BAD_PASSWORD_READ);
        return nullptr;
    }
    const PkiHandle<PKCS8_PRIV_KEY_INFO> key(
        PKCS8_decrypt(encrypted.get(), password.data(), length));
    OPENSSL_cleanse(password.data(), password.size());
    WipedBytes plain;
    plain.size = key != nullptr ? i2d_PKCS8_PRIV_KEY_INFO(key.get(), &plain.data) : 0;
    return plain.size > 0 ? decode(plain.data, plain.size, typeOf(key.get())) : nullptr;
}

PkiHandle<EVP_PKEY> decode(const PemBlock& block, PasswordSource& source)
{
    const std::string_view name = block.name();
    if (name == PEM_STRING_PKCS8) {
        return decodeEncrypted(block, source);
    }
    if (name == PEM_STRING_PKCS8INF) {
        return decodePkcs8(block.data(), block.size());
    }
    return name.empty() ? nullptr : decode(block.data(), block.size(), typeOf(name));
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
    PkiHandle<EVP_PKEY> key = decode(PemBlock(bio.get(), source), source);
    if (key != nullptr) {
        // The library leaves what it has tried in vain.
        ERR_clear_error();
    } else if (ERR_peek_error() == 0) {
        ERR_raise(ERR_LIB_PEM, PEM_R_READ_KEY);
    }
    return key;
}

PkiHandle<EVP_PKEY> PkiKey_FromDer(const UaByteArray& data, int keyType) noexcept
{
    // The library takes a null pointer for a mistake of the program.
    const OpcUa_Byte nothing = 0;
    return decode(data.isEmpty() ? &nothing : data.data(), data.size(), keyType);
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
