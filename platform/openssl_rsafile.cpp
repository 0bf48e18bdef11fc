#include "platform/allocator.h"
#include "platform/openssl_rsa.h"
#include "platform/openssl_rsakey.h"
#include "platform/openssl_rsakeyder.h"
#include "platform/privatefile.h"
#include "platform/status.h"
#include "platform/trace.h"

#include <openssl/crypto.h>
#include <openssl/pem.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace {

struct FileCloser
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// The bytes of a key file, wiped when they are freed.
class KeyFile
{
public:
    explicit KeyFile(const char* path) { read(path); }
    ~KeyFile()
    {
        if (m_bytes != nullptr) {
            OPENSSL_cleanse(m_bytes, m_size);
            OpcUa_Memory_Free(m_bytes);
        }
    }
    KeyFile(const KeyFile&) = delete;
    KeyFile& operator=(const KeyFile&) = delete;

    [[nodiscard]] const OpcUa_Byte* bytes() const { return m_bytes; }
    [[nodiscard]] int size() const { return static_cast<int>(m_size); }

private:
    void read(const char* path)
    {
        std::error_code error;
        // A device or a pipe would never end.
        if (!std::filesystem::is_regular_file(path, error)) {
            return;
        }
        const auto size = std::filesystem::file_size(path, error);
        const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path, "rb"));
        if (error || size == 0 || size > OpcUa_KeyFile_LargestSize || file == nullptr) {
            return;
        }
        // A buffer of the stream would keep the key after the stream is closed.
        std::setvbuf(file.get(), nullptr, _IONBF, 0);
        m_bytes = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(static_cast<std::size_t>(size)));
        if (m_bytes != nullptr) {
            m_size = std::fread(m_bytes, 1, static_cast<std::size_t>(size), file.get());
        }
    }

    OpcUa_Byte* m_bytes = nullptr;
    std::size_t m_size = 0;
};

/// Reads the key of a PEM text. The library asks the callback when it gets one, and takes the user
/// data for the password otherwise.
OpenSslPointer<EVP_PKEY> readPem(const KeyFile& file, const char* password)
{
    const OpenSslPointer<BIO> bio(BIO_new_mem_buf(file.bytes(), file.size()));
    if (bio == nullptr) {
        return nullptr;
    }
    pem_password_cb* const callback =
        password == nullptr ? OpcUa_P_OpenSSL_RSA_pem_password_cb : nullptr;
    return OpenSslPointer<EVP_PKEY>(
        PEM_read_bio_PrivateKey(bio.get(), nullptr, callback, const_cast<char*>(password)));
}

/// Writes the traditional form, which is the PKCS#1 DER in PEM. There is no cipher, so that a pass
/// phrase would have no effect. The library's own writer leaks parts of the key when memory is short.
bool writePem(const EVP_PKEY* key, BIO* bio)
{
    const RsaKeyDer der(key, EVP_PKEY_KEYPAIR);
    return der.size() != 0 &&
           PEM_write_bio(bio, PEM_STRING_RSA, "", der.data(), static_cast<long>(der.size())) > 0;
}

} // namespace

int OpcUa_P_OpenSSL_RSA_pem_password_cb(char* /*buffer*/, int /*size*/, int /*rwflag*/,
                                        void* /*userData*/)
{
    OpcUa_Trace(OpcUa_TraceLevel_Warning,
                "OpcUa_P_OpenSSL_RSA_pem_password_cb: cannot read password protected key!\n");
    return 0;
}

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_LoadPrivateKey(const char* path, OpcUa_Int32 format,
                                                    const char* password, OpcUa_Key* privateKey)
{
    if (path == nullptr || privateKey == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (format != OpcUa_KeyFileFormat_Pem) {
        return OpcUa_BadNotSupported;
    }
    const KeyFile file(path);
    if (file.size() == 0) {
        return OpcUa_Bad;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = readPem(file, password);
    if (key == nullptr) {
        return OpcUa_Bad;
    }
    if (EVP_PKEY_get_base_id(key.get()) != EVP_PKEY_RSA) {
        return OpcUa_BadNotSupported;
    }
    const OpcUa_StatusCode status = RsaKeyDer(key.get(), EVP_PKEY_KEYPAIR).copyTo(privateKey->Key);
    if (OpcUa_IsNotBad(status)) {
        privateKey->Type = OpcUa_Crypto_KeyType_Rsa_Private;
    }
    return status;
}

OpcUa_StatusCode OpcUa_P_OpenSSL_RSA_SavePrivateKey(const char* path, OpcUa_Int32 format,
                                                    const char* /*password*/,
                                                    const OpcUa_Key* privateKey)
{
    if (path == nullptr || !isRsaKey(privateKey, OpcUa_Crypto_KeyType_Rsa_Private)) {
        return OpcUa_BadInvalidArgument;
    }
    if (format != OpcUa_KeyFileFormat_Pem) {
        return OpcUa_BadNotSupported;
    }
    const OpenSslErrorScope errors;
    const OpenSslPointer<EVP_PKEY> key = decodeRsaKey(*privateKey);
    if (key == nullptr) {
        return OpcUa_BadUnexpectedError;
    }
    // The memory is wiped when it grows and when it is freed.
    const OpenSslPointer<BIO> bio(BIO_new(BIO_s_mem()));
    if (bio == nullptr || !writePem(key.get(), bio.get())) {
        return OpcUa_Bad;
    }
    char* text = nullptr;
    const long size = BIO_get_mem_data(bio.get(), &text);
    const OpcUa_StatusCode status =
        OpcUa_P_PrivateFile_Write(path, text, static_cast<std::size_t>(size));
    return OpcUa_IsBad(status) ? OpcUa_Bad : OpcUa_Good;
}
