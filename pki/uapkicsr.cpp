#include "pki/uapkicsr.h"

#include "base/uabytestring.h"
#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/pkider.h"
#include "pki/pkifile.h"
#include "platform/status.h"

#include <new>
#include <optional>
#include <utility>

namespace {

constexpr const char* isNullMessage = "The CSR is NULL";

/// A handle that copies share; null when memory is short, and the handle is freed then.
std::shared_ptr<X509_REQ> makeShared(X509_REQ* pRequest) noexcept
{
    try {
        return pRequest != nullptr ? std::shared_ptr<X509_REQ>(pRequest, PkiDeleter()) : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// What some bytes give; null with the library's errors drained on failure.
UaPkiCSR decode(const OpcUa_Byte* bytes, std::size_t size) noexcept
{
    UaPkiCSR result(PkiDer_Decode(bytes, size, d2i_X509_REQ).release());
    if (result.isNull()) {
        PkiError_EnsureReason();
        result.addLibraryErrors();
    }
    return result;
}

} // namespace

UaPkiCSR::UaPkiCSR(X509_REQ* pRequest) noexcept
    : m_pRequest(makeShared(pRequest))
{
}

UaPkiCSR UaPkiCSR::fromDER(const UaByteArray& data) noexcept
{
    if (data.isEmpty()) {
        UaPkiCSR result;
        result.addError("Error in fromDER: empty ByteString in argument DERdata");
        return result;
    }
    const PkiErrorScope scope;
    return decode(data.data(), static_cast<std::size_t>(data.size()));
}

UaPkiCSR UaPkiCSR::fromDERFile(const char* path) noexcept
{
    const PkiErrorScope scope;
    UaPkiCSR result;
    const auto bytes = PkiFile_Read(path, PkiFile_LargestSize, result);
    return bytes ? decode(bytes->data(), bytes->size()) : std::move(result);
}

UaPkiCSR UaPkiCSR::fromDERFile(const UaUniString& path) noexcept
{
    const PkiErrorScope scope;
    UaPkiCSR result;
    const auto bytes = PkiFile_ReadSized(path, "rb", PkiFile_LargestSize, result);
    return bytes ? decode(bytes->data(), bytes->size()) : std::move(result);
}

UaByteArray UaPkiCSR::toDER() const noexcept
{
    if (isNull()) {
        addError(isNullMessage);
        return {};
    }
    const PkiErrorScope scope;
    UaByteArray bytes = PkiDer_Encode(m_pRequest.get(), i2d_X509_REQ);
    addLibraryErrors();
    return bytes;
}

UaByteString UaPkiCSR::toDERByteString() const noexcept
{
    UaByteArray bytes = toDER();
    OpcUa_ByteString record = {-1, nullptr};
    UaByteString result;
    if (!bytes.isEmpty() && OpcUa_IsGood(bytes.detach(&record))) {
        result.attach(&record);
    }
    return result;
}

int UaPkiCSR::toDERFile(const UaUniString& path) const noexcept
{
    const UaByteArray bytes = toDER();
    const PkiErrorScope scope;
    return !bytes.isEmpty() && PkiFile_Write(path, "wb", bytes.data(),
                                             static_cast<std::size_t>(bytes.size()), *this)
               ? 0
               : -1;
}
