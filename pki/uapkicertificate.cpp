#include "pki/uapkicertificate.h"

#include "base/uabytestring.h"
#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/pkibarecontext.h"
#include "pki/pkicertificate.h"
#include "pki/pkider.h"
#include "pki/pkifile.h"
#include "pki/pkipem.h"
#include "platform/status.h"

#include <optional>
#include <utility>

namespace {

X509* share(X509* pCertificate) noexcept
{
    return pCertificate != nullptr && X509_up_ref(pCertificate) == 1 ? pCertificate : nullptr;
}

/// d2i_X509 into a new handle, without the search for a decoder of its key.
X509* decodeDer(X509** /*target*/, const unsigned char** bytes, long size)
{
    X509* certificate = X509_new_ex(PkiBareContext(), nullptr);
    // A failure frees the target.
    return certificate != nullptr ? d2i_X509(&certificate, bytes, size) : nullptr;
}

/// The same for PEM_read_bio_X509.
X509* decodePem(BIO* text, X509** /*target*/, pem_password_cb* callback, void* data)
{
    X509* certificate = X509_new_ex(PkiBareContext(), nullptr);
    if (certificate == nullptr ||
        PEM_read_bio_X509(text, &certificate, callback, data) == nullptr) {
        // A failure may have freed the target, which is null then.
        X509_free(certificate);
        return nullptr;
    }
    return certificate;
}

/// What was decoded; null with the library's errors drained on failure.
UaPkiCertificate resultOf(const PkiHandle<X509>& handle) noexcept
{
    UaPkiCertificate result(handle.get());
    if (handle == nullptr) {
        result.addLibraryErrors();
    }
    return result;
}

template <typename Bytes>
UaPkiCertificate fromBytes(const Bytes& bytes, OpcUa_Int32 size) noexcept
{
    if (bytes.isEmpty()) {
        UaPkiCertificate result;
        result.addError("Error in fromDER: empty ByteString in argument DERdata");
        return result;
    }
    const PkiErrorScope scope;
    return resultOf(PkiDer_Decode<X509>(bytes.data(), static_cast<std::size_t>(size), decodeDer));
}

/// Encodes a certificate and hands it to `write(bytes, size)`. 0 for success, -1 on failure.
template <typename Write>
int writeFile(const UaPkiCertificate& certificate, int (*encode)(BIO*, const X509*),
              Write write) noexcept
{
    const bool isWritten = PkiCertificate_Ask(certificate, [&](const X509* handle) {
        const PkiHandle<BIO> encoded(BIO_new(BIO_s_mem()));
        if (encoded == nullptr || encode(encoded.get(), handle) != 1) {
            return false;
        }
        char* bytes = nullptr;
        const long size = BIO_get_mem_data(encoded.get(), &bytes);
        return write(bytes, static_cast<std::size_t>(size));
    });
    return isWritten ? 0 : -1;
}

int writeFile(const UaPkiCertificate& certificate, int (*encode)(BIO*, const X509*),
              const char* path) noexcept
{
    return writeFile(certificate, encode, [&](const char* bytes, std::size_t size) {
        return PkiFile_Write(path, bytes, size, certificate);
    });
}

int writeFile(const UaPkiCertificate& certificate, int (*encode)(BIO*, const X509*),
              const UaUniString& path) noexcept
{
    return writeFile(certificate, encode, [&](const char* bytes, std::size_t size) {
        return PkiFile_Write(path, "wb", bytes, size, certificate);
    });
}

} // namespace

UaPkiCertificate::UaPkiCertificate(X509* pCertificate) noexcept
    : m_pCertificate(share(pCertificate))
{
}

UaPkiCertificate::UaPkiCertificate(const UaPkiCertificate& other) noexcept
    : UaPkiErrorList(other)
    , m_pCertificate(share(other.m_pCertificate))
{
}

UaPkiCertificate::UaPkiCertificate(UaPkiCertificate&& other) noexcept
    : UaPkiErrorList(std::move(other))
    , m_pCertificate(std::exchange(other.m_pCertificate, nullptr))
{
}

UaPkiCertificate& UaPkiCertificate::operator=(const UaPkiCertificate& other) noexcept
{
    if (this != &other) {
        X509_free(std::exchange(m_pCertificate, share(other.m_pCertificate)));
    }
    return *this;
}

UaPkiCertificate& UaPkiCertificate::operator=(UaPkiCertificate&& other) noexcept
{
    std::swap(m_pCertificate, other.m_pCertificate);
    UaPkiErrorList::operator=(std::move(other));
    return *this;
}

UaPkiCertificate::~UaPkiCertificate()
{
    X509_free(m_pCertificate);
}

UaPkiCertificate UaPkiCertificate::fromDER(const UaByteArray& DERdata) noexcept
{
    return fromBytes(DERdata, DERdata.size());
}

UaPkiCertificate UaPkiCertificate::fromDER(const UaByteString& DERdata) noexcept
{
    return fromBytes(DERdata, DERdata.length());
}

UaPkiCertificate UaPkiCertificate::fromDERFile(const char* path) noexcept
{
    const PkiErrorScope scope;
    UaPkiCertificate result;
    const auto bytes = PkiFile_Read(path, PkiFile_LargestSize, result);
    return bytes ? resultOf(PkiDer_Decode<X509>(bytes->data(), bytes->size(), decodeDer))
                 : std::move(result);
}

UaPkiCertificate UaPkiCertificate::fromDERFile(const UaUniString& path) noexcept
{
    const PkiErrorScope scope;
    UaPkiCertificate result;
    const auto bytes = PkiFile_ReadSized(path, "rb", PkiFile_LargestSize, result);
    return bytes ? resultOf(PkiDer_Decode<X509>(bytes->data(), bytes->size(), decodeDer))
                 : std::move(result);
}

UaPkiCertificate UaPkiCertificate::fromPEMFile(const char* path) noexcept
{
    const PkiErrorScope scope;
    UaPkiCertificate result;
    const auto bytes = PkiFile_Read(path, PkiFile_LargestSize, result);
    return bytes ? resultOf(PkiPem_Decode<X509>(bytes->data(), bytes->size(), decodePem))
                 : std::move(result);
}

UaByteArray UaPkiCertificate::toDER() const noexcept
{
    return PkiCertificate_Ask(*this,
                              [](const X509* handle) { return PkiDer_Encode(handle, i2d_X509); });
}

UaByteString UaPkiCertificate::toDERByteString() const noexcept
{
    UaByteArray bytes = toDER();
    OpcUa_ByteString record = {-1, nullptr};
    UaByteString result;
    if (!bytes.isEmpty() && OpcUa_IsGood(bytes.detach(&record))) {
        result.attach(&record);
    }
    return result;
}

int UaPkiCertificate::toDERFile(const char* path) const noexcept
{
    return writeFile(*this, i2d_X509_bio, path);
}

int UaPkiCertificate::toDERFile(const UaUniString& path) const noexcept
{
    return writeFile(*this, i2d_X509_bio, path);
}

int UaPkiCertificate::toPEMFile(const char* path) const noexcept
{
    return writeFile(*this, PEM_write_bio_X509, path);
}

int UaPkiCertificate::toPEMFile(const UaUniString& path) const noexcept
{
    return writeFile(*this, PEM_write_bio_X509, path);
}
