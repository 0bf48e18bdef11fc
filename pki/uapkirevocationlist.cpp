#include "pki/uapkirevocationlist.h"

#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/pkiasn1.h"
#include "pki/pkider.h"
#include "pki/pkifile.h"
#include "pki/pkinameread.h"
#include "pki/pkipem.h"
#include "pki/uapkiidentity.h"
#include "pki/uapkipublickey.h"

#include <limits>
#include <optional>
#include <utility>

namespace {

constexpr const char* isNullMessage = "The CRL is NULL";

X509_CRL* share(X509_CRL* pCrl) noexcept
{
    return pCrl != nullptr && X509_CRL_up_ref(pCrl) == 1 ? pCrl : nullptr;
}

PkiHandle<X509_CRL> decodePem(const PkiBytes& bytes) noexcept
{
    return PkiPem_Decode(bytes.data(), bytes.size(), PEM_read_bio_X509_CRL);
}

PkiHandle<X509_CRL> decodeDer(const PkiBytes& bytes) noexcept
{
    return PkiDer_Decode(bytes.data(), bytes.size(), d2i_X509_CRL);
}

/// Gives a list what was decoded for it, or the library's errors.
void take(UaPkiRevocationList& list, const PkiHandle<X509_CRL>& crl) noexcept
{
    if (crl != nullptr) {
        list = UaPkiRevocationList(crl.get());
    } else {
        PkiError_EnsureReason();
        list.addLibraryErrors();
    }
}

/// Encodes a list and hands it to `write(bytes, size)`.
template <typename Write>
int writeFile(const UaPkiRevocationList& list, int (*encode)(BIO*, const X509_CRL*),
              int resultOfFailure, Write write) noexcept
{
    if (list.isNull()) {
        return 0;
    }
    const PkiErrorScope scope;
    const PkiHandle<BIO> encoded(BIO_new(BIO_s_mem()));
    if (encoded == nullptr || encode(encoded.get(), list.handle()) != 1) {
        PkiError_EnsureReason();
        list.addLibraryErrors();
        return resultOfFailure;
    }
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(encoded.get(), &bytes);
    switch (write(bytes, static_cast<std::size_t>(size))) {
    case PkiFileStatus::Good:
        return 1;
    case PkiFileStatus::NotOpened:
        return 0;
    case PkiFileStatus::NotWritten:
        break;
    }
    return resultOfFailure;
}

int writeFile(const UaPkiRevocationList& list, int (*encode)(BIO*, const X509_CRL*),
              const char* path) noexcept
{
    return writeFile(list, encode, 0, [&](const char* bytes, std::size_t size) {
        return PkiFile_TryWrite(path, bytes, size, list);
    });
}

/// What was opened counts as written here.
int writeFile(const UaPkiRevocationList& list, int (*encode)(BIO*, const X509_CRL*),
              const UaUniString& path, const char* mode) noexcept
{
    return writeFile(list, encode, 1, [&](const char* bytes, std::size_t size) {
        return PkiFile_TryWrite(path, mode, bytes, size, list);
    });
}

} // namespace

UaPkiRevocationList::UaPkiRevocationList(X509_CRL* pCrl) noexcept
    : m_pCrl(share(pCrl))
{
}

UaPkiRevocationList::UaPkiRevocationList(const UaPkiRevocationList& other) noexcept
    : UaPkiErrorList(other)
    , m_pCrl(share(other.m_pCrl))
{
}

UaPkiRevocationList::UaPkiRevocationList(UaPkiRevocationList&& other) noexcept
    : UaPkiErrorList(std::move(other))
    , m_pCrl(std::exchange(other.m_pCrl, nullptr))
{
}

UaPkiRevocationList& UaPkiRevocationList::operator=(const UaPkiRevocationList& other) noexcept
{
    if (this != &other) {
        X509_CRL_free(std::exchange(m_pCrl, share(other.m_pCrl)));
    }
    return *this;
}

UaPkiRevocationList& UaPkiRevocationList::operator=(UaPkiRevocationList&& other) noexcept
{
    std::swap(m_pCrl, other.m_pCrl);
    UaPkiErrorList::operator=(std::move(other));
    return *this;
}

UaPkiRevocationList::~UaPkiRevocationList()
{
    X509_CRL_free(m_pCrl);
}

UaPkiRevocationList UaPkiRevocationList::fromDER(const UaByteArray& data) noexcept
{
    UaPkiRevocationList result;
    if (data.isEmpty()) {
        result.addError("Error in fromDER: empty ByteString in argument DERdata");
        return result;
    }
    const PkiErrorScope scope;
    take(result, PkiDer_Decode(data.data(), static_cast<std::size_t>(data.size()), d2i_X509_CRL));
    return result;
}

UaPkiRevocationList UaPkiRevocationList::fromFile(const char* path) noexcept
{
    const PkiErrorScope scope;
    UaPkiRevocationList result;
    const auto bytes = PkiFile_Read(path, PkiFile_LargestListSize, result);
    if (!bytes) {
        return result;
    }
    PkiHandle<X509_CRL> crl = decodePem(*bytes);
    if (crl == nullptr) {
        crl = decodeDer(*bytes);
    }
    take(result, crl);
    return result;
}

UaPkiRevocationList UaPkiRevocationList::fromFile(const UaUniString& path) noexcept
{
    const PkiErrorScope scope;
    UaPkiRevocationList result;
    auto bytes = PkiFile_Read(path, "rt", PkiFile_LargestListSize, result);
    if (!bytes) {
        return result;
    }
    PkiHandle<X509_CRL> crl = decodePem(*bytes);
    if (crl == nullptr) {
        // An engine may change the bytes of a text.
        bytes.reset();
        bytes = PkiFile_Read(path, "rb", PkiFile_LargestListSize, result);
        crl = bytes ? decodeDer(*bytes) : nullptr;
    }
    take(result, crl);
    return result;
}

UaByteArray UaPkiRevocationList::toDER() const noexcept
{
    if (isNull()) {
        return {};
    }
    const PkiErrorScope scope;
    UaByteArray bytes = PkiDer_Encode(m_pCrl, i2d_X509_CRL);
    addLibraryErrors();
    return bytes;
}

int UaPkiRevocationList::toDERFile(const char* path) const noexcept
{
    return writeFile(*this, i2d_X509_CRL_bio, path);
}

int UaPkiRevocationList::toDERFile(const UaUniString& path) const noexcept
{
    return writeFile(*this, i2d_X509_CRL_bio, path, "wb");
}

int UaPkiRevocationList::toPEMFile(const char* path) const noexcept
{
    return writeFile(*this, PEM_write_bio_X509_CRL, path);
}

int UaPkiRevocationList::toPEMFile(const UaUniString& path) const noexcept
{
    return writeFile(*this, PEM_write_bio_X509_CRL, path, "wt");
}

bool UaPkiRevocationList::verifySignature(const UaPkiPublicKey& key) const noexcept
{
    const PkiHandle<EVP_PKEY> handle(isNull() ? nullptr : key.handle());
    if (handle == nullptr) {
        return false;
    }
    const PkiErrorScope scope;
    if (X509_CRL_verify(m_pCrl, handle.get()) == 1) {
        return true;
    }
    PkiError_EnsureReason();
    addLibraryErrors();
    return false;
}

bool UaPkiRevocationList::sameIssuer(const UaPkiRevocationList& other) const noexcept
{
    return !isNull() && !other.isNull() && X509_CRL_cmp(m_pCrl, other.m_pCrl) == 0;
}

UaDateTime UaPkiRevocationList::thisUpdate() const noexcept
{
    if (isNull()) {
        addError(isNullMessage);
    }
    return PkiTime_Read(isNull() ? nullptr : X509_CRL_get0_lastUpdate(m_pCrl),
                        UaDateTime::fromTime_t(PkiTime_Never));
}

UaDateTime UaPkiRevocationList::nextUpdate() const noexcept
{
    if (isNull()) {
        addError(isNullMessage);
        return {};
    }
    return PkiTime_Read(X509_CRL_get0_nextUpdate(m_pCrl), UaDateTime());
}

bool UaPkiRevocationList::isValid() const noexcept
{
    const UaDateTime now = UaDateTime::now();
    const UaDateTime first = thisUpdate();
    const UaDateTime last = nextUpdate();
    return !isNull() && !(now < first) && (last.isNull() || !(last < now));
}

UaPkiIdentity UaPkiRevocationList::issuer() const noexcept
{
    if (isNull()) {
        return {};
    }
    const PkiErrorScope scope;
    UaPkiIdentity identity = PkiName_Read(X509_CRL_get_issuer(m_pCrl));
    addLibraryErrors();
    return identity;
}

int UaPkiRevocationList::crlNumber() const noexcept
{
    if (isNull()) {
        return -1;
    }
    const PkiErrorScope scope;
    const PkiHandle<ASN1_INTEGER> number(
        static_cast<ASN1_INTEGER*>(X509_CRL_get_ext_d2i(m_pCrl, NID_crl_number, nullptr, nullptr)));
    const long value = number != nullptr ? ASN1_INTEGER_get(number.get()) : -1;
    addLibraryErrors();
    return std::in_range<int>(value) ? static_cast<int>(value) : -1;
}
