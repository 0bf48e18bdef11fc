#include "pki/opensslhandles.h"
#include "pki/pkiname.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkirevocationlist.h"

#include <ctime>

namespace {

constexpr long versionTwo = 1; // counted from 0

PkiHandle<ASN1_TIME> secondsAfter(std::time_t start, OpcUa_UInt32 seconds) noexcept
{
    // In days as well: a long has 32 bits on some systems.
    constexpr OpcUa_UInt32 secondsOfDay = 24 * 60 * 60;
    return PkiHandle<ASN1_TIME>(ASN1_TIME_adj(nullptr, start,
                                              static_cast<int>(seconds / secondsOfDay),
                                              static_cast<long>(seconds % secondsOfDay)));
}

bool setUpdates(X509_CRL* pCrl, OpcUa_UInt32 validTime) noexcept
{
    const std::time_t now = UaDateTime::now().toTime_t();
    const PkiHandle<ASN1_TIME> first = secondsAfter(now, 0);
    const PkiHandle<ASN1_TIME> last = secondsAfter(now, validTime);
    return first != nullptr && last != nullptr &&
           X509_CRL_set1_lastUpdate(pCrl, first.get()) == 1 &&
           X509_CRL_set1_nextUpdate(pCrl, last.get()) == 1;
}

/// The library takes no empty text but in a type that is told to it.
bool addEmptyField(X509_NAME* pName, const char* shortName) noexcept
{
    return X509_NAME_add_entry_by_txt(pName, shortName, V_ASN1_UTF8STRING,
                                      reinterpret_cast<const unsigned char*>(""), 0, -1, 0) == 1;
}

/// Sets the issuer to all the fields that the library takes.
void setIssuer(X509_CRL* pCrl, const UaPkiIdentity& issuer, const UaPkiErrorList& errors) noexcept
{
    const PkiHandle<X509_NAME> name(X509_NAME_new());
    for (const PkiNameField& row : PkiName_Fields) {
        const UaString& text = issuer.*row.field;
        const bool isAdded =
            name != nullptr && (text.isEmpty() ? addEmptyField(name.get(), row.shortName)
                                               : PkiName_Add(name.get(), row.shortName, text));
        if (!isAdded) {
            PkiError_EnsureReason();
            errors.addLibraryErrors();
        }
    }
    if (name == nullptr || X509_CRL_set_issuer_name(pCrl, name.get()) != 1) {
        PkiError_EnsureReason();
        errors.addLibraryErrors();
    }
}

bool addNumber(X509_CRL* pCrl, int crlNumber) noexcept
{
    const PkiHandle<ASN1_INTEGER> number(ASN1_INTEGER_new());
    return number != nullptr && ASN1_INTEGER_set(number.get(), crlNumber) == 1 &&
           X509_CRL_add1_ext_i2d(pCrl, NID_crl_number, number.get(), 0, X509V3_ADD_DEFAULT) == 1;
}

/// Null for a time behind the year 9999, which has no form.
PkiHandle<ASN1_TIME> makeTime(std::time_t seconds) noexcept
{
    PkiHandle<ASN1_TIME> time(ASN1_TIME_set(nullptr, seconds));
    if (time != nullptr && ASN1_TIME_check(time.get()) != 1) {
        ERR_raise(ERR_LIB_ASN1, ASN1_R_ILLEGAL_TIME_VALUE);
        return nullptr;
    }
    return time;
}

PkiHandle<X509_REVOKED> makeEntry(const UaString& serialNumber, std::time_t revocationTime) noexcept
{
    BIGNUM* parsed = nullptr;
    const int length = BN_hex2bn(&parsed, serialNumber.toUtf8());
    const PkiHandle<BIGNUM> number(parsed);
    const PkiHandle<ASN1_INTEGER> serial(length > 0 ? BN_to_ASN1_INTEGER(number.get(), nullptr)
                                                    : nullptr);
    const PkiHandle<ASN1_TIME> time = makeTime(revocationTime);
    PkiHandle<X509_REVOKED> entry(X509_REVOKED_new());
    const bool isComplete = serial != nullptr && time != nullptr && entry != nullptr &&
                            X509_REVOKED_set_serialNumber(entry.get(), serial.get()) == 1 &&
                            X509_REVOKED_set_revocationDate(entry.get(), time.get()) == 1;
    return isComplete ? std::move(entry) : nullptr;
}

} // namespace

UaPkiRevocationList::UaPkiRevocationList(OpcUa_UInt32 validTime, const UaPkiIdentity& issuer,
                                         int crlNumber) noexcept
{
    const PkiErrorScope scope;
    PkiHandle<X509_CRL> crl(X509_CRL_new());
    bool isComplete = crl != nullptr && X509_CRL_set_version(crl.get(), versionTwo) == 1 &&
                      setUpdates(crl.get(), validTime);
    if (isComplete) {
        setIssuer(crl.get(), issuer, *this);
        isComplete = addNumber(crl.get(), crlNumber);
    }
    if (isComplete) {
        m_pCrl = crl.release();
    } else {
        PkiError_EnsureReason();
        addLibraryErrors();
    }
}

void UaPkiRevocationList::addRevoked(const UaPkiCertificate& certificate,
                                     const UaDateTime& revocationTime) noexcept
{
    if (isNull() || certificate.isNull()) {
        return;
    }
    const UaString serialNumber = certificate.serialNumberString();
    const PkiErrorScope scope;
    PkiHandle<X509_REVOKED> entry = makeEntry(serialNumber, revocationTime.toTime_t());
    if (entry != nullptr && X509_CRL_add0_revoked(m_pCrl, entry.get()) == 1) {
        (void)entry.release();
    } else {
        PkiError_EnsureReason();
        addLibraryErrors();
    }
}

bool UaPkiRevocationList::sign(const UaPkiPrivateKey& key) noexcept
{
    if (isNull() || key.handle() == nullptr) {
        return false;
    }
    const PkiErrorScope scope;
    if (X509_CRL_sign(m_pCrl, key.handle(), EVP_sha1()) > 0) {
        return true;
    }
    PkiError_EnsureReason();
    addLibraryErrors();
    return false;
}
