#include "pki/opensslhandles.h"
#include "pki/pkiasn1.h"
#include "pki/pkicertificate.h"
#include "pki/pkigeneralnames.h"
#include "pki/pkinameread.h"
#include "pki/uapkicertificate.h"

#include <cstdint>
#include <utility>

namespace {

constexpr int thumbPrintSize = 20;

UaDateTime readValidFrom(const X509* pCertificate) noexcept
{
    return PkiTime_Read(X509_get0_notBefore(pCertificate), UaDateTime::fromTime_t(PkiTime_Never));
}

UaDateTime readValidTo(const X509* pCertificate) noexcept
{
    return PkiTime_Read(X509_get0_notAfter(pCertificate), UaDateTime::fromTime_t(0));
}

/// The serial number as 32 bits, or -1: what the library gives where its `long` has as many.
OpcUa_Int32 readSerialNumber(const X509* pCertificate) noexcept
{
    std::int64_t value = -1;
    // A large one is no failure to be told.
    ERR_set_mark();
    if (ASN1_INTEGER_get_int64(&value, X509_get0_serialNumber(pCertificate)) != 1) {
        value = -1;
    }
    ERR_pop_to_mark();
    return std::in_range<OpcUa_Int32>(value) ? static_cast<OpcUa_Int32>(value) : -1;
}

/// Empty for an extension that the library doesn't know.
UaString print(X509_EXTENSION* pExtension) noexcept
{
    const PkiHandle<BIO> text(BIO_new(BIO_s_mem()));
    if (text == nullptr || X509V3_EXT_print(text.get(), pExtension, X509V3_EXT_DEFAULT, 0) != 1) {
        if (X509V3_EXT_get(pExtension) != nullptr) {
            PkiError_EnsureReason();
        }
        return {};
    }
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text.get(), &bytes);
    return PkiText_Copy({bytes, static_cast<std::size_t>(size)});
}

} // namespace

UaPkiIdentity UaPkiCertificate::subject() const noexcept
{
    return PkiCertificate_Ask(
        *this, [](const X509* handle) { return PkiName_Read(X509_get_subject_name(handle)); });
}

UaPkiIdentity UaPkiCertificate::issuer() const noexcept
{
    return PkiCertificate_Ask(
        *this, [](const X509* handle) { return PkiName_Read(X509_get_issuer_name(handle)); });
}

UaString UaPkiCertificate::commonName() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        return PkiName_ReadField(X509_get_subject_name(handle), NID_commonName);
    });
}

UaPkiCertificateInfo UaPkiCertificate::info() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        UaPkiCertificateInfo info;
        PkiGeneralNames_Read(handle, info);
        info.serialNumber = readSerialNumber(handle);
        return info;
    });
}

UaString UaPkiCertificate::serialNumberString() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        const PkiHandle<BIGNUM> number(ASN1_INTEGER_to_BN(X509_get0_serialNumber(handle), nullptr));
        char* const digits = number != nullptr ? BN_bn2hex(number.get()) : nullptr;
        const PkiLibraryBytes bytes(reinterpret_cast<unsigned char*>(digits));
        return digits != nullptr ? PkiText_Copy(digits) : UaString();
    });
}

UaDateTime UaPkiCertificate::validFrom() const noexcept
{
    return PkiCertificate_Ask(*this, readValidFrom);
}

UaDateTime UaPkiCertificate::validTo() const noexcept
{
    return PkiCertificate_Ask(*this, readValidTo);
}

bool UaPkiCertificate::isValid() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        const UaDateTime now = UaDateTime::now();
        return !(now < readValidFrom(handle)) && !(now > readValidTo(handle));
    });
}

UaByteArray UaPkiCertificate::thumbPrint() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        // Not X509_digest, which takes the algorithm from the certificate's context.
        unsigned char* encoded = nullptr;
        const int size = i2d_X509(handle, &encoded);
        const PkiLibraryBytes bytes(encoded);
        bool isDigested = false;
        UaByteArray digest =
            UaByteArray::compose(size > 0 ? thumbPrintSize : 0, [&](OpcUa_Byte* target) {
                isDigested = EVP_Digest(encoded, static_cast<std::size_t>(size), target, nullptr,
                                        EVP_sha1(), nullptr) == 1;
            });
        if (!isDigested) {
            PkiError_EnsureReason();
            return UaByteArray();
        }
        return digest;
    });
}

bool UaPkiCertificate::hasExtension(int nid) const noexcept
{
    return PkiCertificate_Ask(
        *this, [nid](const X509* handle) { return X509_get_ext_by_NID(handle, nid, -1) >= 0; });
}

UaString UaPkiCertificate::extensionValue(int nid) const noexcept
{
    return PkiCertificate_Ask(*this, [nid](const X509* handle) {
        const int position = X509_get_ext_by_NID(handle, nid, -1);
        return position >= 0 ? print(X509_get_ext(handle, position)) : UaString();
    });
}

UaString UaPkiCertificate::signatureTypeName() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        const int nid = X509_get_signature_nid(handle);
        return nid != NID_undef ? PkiText_Copy(OBJ_nid2sn(nid)) : UaString();
    });
}

int UaPkiCertificate::signatureAlgorithm() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        return X509_get_signature_nid(handle) == NID_sha256WithRSAEncryption ? Sha256WithRsa
                                                                             : Sha1WithRsa;
    });
}

OpcUa_UInt32 UaPkiCertificate::subjectNameHash() const noexcept
{
    return PkiCertificate_Ask(*this, [](const X509* handle) {
        int isGood = 0;
        const auto hash = static_cast<OpcUa_UInt32>(
            X509_NAME_hash_ex(X509_get_subject_name(handle), nullptr, nullptr, &isGood));
        if (isGood == 0) {
            PkiError_EnsureReason();
        }
        return hash;
    });
}
