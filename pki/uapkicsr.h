#pragma once

#include "base/uabytearray.h"
#include "pki/uapkierrorlist.h"

#include <memory>

class UaByteString;
class UaPkiRSAKeyPair;
class UaUniString;
struct UaPkiCertificateInfo;
struct UaPkiIdentity;
using X509_REQ = struct X509_req_st; // the library's own types.h leaves it out

/// A certificate signing request (RFC 2986). It is null or shares one OpenSSL handle with its copies,
/// which cost one reference and may live in other threads: nothing changes a request once it is made.
/// Failures never throw: they become messages, and results are empty.
class UaPkiCSR : public UaPkiErrorList
{
public:
    /// A null request.
    UaPkiCSR() noexcept = default;
    /// A new request for the key, signed with it: SHA-1 for the signature algorithm 0, otherwise
    /// SHA-256. It asks for the extensions that a certificate made by this library has, see
    /// UaPkiCertificate, but for the comment and the issuer's key identifier; only one that isn't for an
    /// authority names the application's URI, hosts and e-mail. Null with messages on failure; when only
    /// the check of the new signature fails, the request stays beside the messages.
    UaPkiCSR(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
             const UaPkiRSAKeyPair& keyPair, bool isCA, int signatureAlgorithm) noexcept;
    /// Takes the handle over, which may be null: it is freed with the last copy, and at once when
    /// memory is short.
    explicit UaPkiCSR(X509_REQ* pRequest) noexcept;

    /// Reads the DER form; what stands behind it doesn't matter. A null request with messages on failure.
    [[nodiscard]] static UaPkiCSR fromDER(const UaByteArray& data) noexcept;
    /// The same from a regular file of up to 1 MiB.
    [[nodiscard]] static UaPkiCSR fromDERFile(const char* path) noexcept;
    /// The same through the file engine.
    [[nodiscard]] static UaPkiCSR fromDERFile(const UaUniString& path) noexcept;

    /// The DER form; empty for a null request, which adds "The CSR is NULL".
    [[nodiscard]] UaByteArray toDER() const noexcept;
    /// The same bytes; null instead of empty.
    [[nodiscard]] UaByteString toDERByteString() const noexcept;
    /// Writes the DER form through the file engine over whatever file is there. 0 for success, -1 with
    /// messages on failure; a null request leaves the file alone.
    [[nodiscard]] int toDERFile(const UaUniString& path) const noexcept;

    [[nodiscard]] bool isNull() const noexcept { return m_pRequest == nullptr; }
    /// The handle, borrowed: valid as long as a copy lives. May be null.
    [[nodiscard]] X509_REQ* handle() const noexcept { return m_pRequest.get(); }

private:
    std::shared_ptr<X509_REQ> m_pRequest; ///< Requests have no count of their own.
};
