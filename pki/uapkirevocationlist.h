#pragma once

#include "base/uabytearray.h"
#include "base/uadatetime.h"
#include "pki/uapkierrorlist.h"
#include "platform/types.h"

#include <openssl/types.h>

class UaPkiCertificate;
class UaPkiPrivateKey;
class UaPkiPublicKey;
class UaUniString;
struct UaPkiIdentity;

/// A certificate revocation list (RFC 5280, 5): read, asked, and made for those who run an authority.
/// It is null or holds one reference to an OpenSSL handle; copies cost one reference and see the same
/// list, also what addRevoked and sign change in it. Failures never throw: they become messages, and
/// results are empty.
class UaPkiRevocationList : public UaPkiErrorList
{
public:
    /// A null list.
    UaPkiRevocationList() noexcept = default;
    /// A new list of version 2 without entries and without a signature, valid from now for so many
    /// seconds. Its issuer has all seven fields in the order DC, C, ST, L, O, OU, CN, an empty one as an
    /// entry with an empty text; a field that the library refuses, such as a country of three letters,
    /// is left out with a message. Null with messages when the rest can't be made.
    UaPkiRevocationList(OpcUa_UInt32 validTime, const UaPkiIdentity& issuer,
                        int crlNumber) noexcept;
    /// Takes a further reference on the handle, which may be null.
    explicit UaPkiRevocationList(X509_CRL* pCrl) noexcept;

    UaPkiRevocationList(const UaPkiRevocationList& other) noexcept;
    UaPkiRevocationList(UaPkiRevocationList&& other) noexcept;
    UaPkiRevocationList& operator=(const UaPkiRevocationList& other) noexcept;
    UaPkiRevocationList& operator=(UaPkiRevocationList&& other) noexcept;
    ~UaPkiRevocationList();

    /// Reads the DER form; what stands behind it doesn't matter. A null list with messages on failure.
    [[nodiscard]] static UaPkiRevocationList fromDER(const UaByteArray& data) noexcept;
    /// Reads the first list of a PEM text, with whatever stands around it, or else the DER form, from a
    /// regular file of up to 64 MiB. An encrypted text is refused; nobody is asked on a terminal. A null
    /// list with messages on failure.
    [[nodiscard]] static UaPkiRevocationList fromFile(const char* path) noexcept;
    /// The same through the file engine.
    [[nodiscard]] static UaPkiRevocationList fromFile(const UaUniString& path) noexcept;

    /// The DER form; empty for a null list.
    [[nodiscard]] UaByteArray toDER() const noexcept;

    /// Writes the list over whatever file is there. 1 for success; 0 without a message for a null list
    /// and where the file can't be opened. A list that can't be encoded or written leaves its messages
    /// and gives 0 with a `char*` path, but 1 through the file engine: only the messages tell.
    [[nodiscard]] int toDERFile(const char* path) const noexcept;
    [[nodiscard]] int toDERFile(const UaUniString& path) const noexcept;
    [[nodiscard]] int toPEMFile(const char* path) const noexcept;
    [[nodiscard]] int toPEMFile(const UaUniString& path) const noexcept;

    /// Adds an entry with a certificate's serial number at the end; the signature covers it once the
    /// list is signed again. Nothing happens for a null list or certificate; a failure leaves messages
    /// and the list as it was.
    void addRevoked(const UaPkiCertificate& certificate, const UaDateTime& revocationTime) noexcept;
    /// Signs with SHA-1. False for a null list, an empty key and with messages on failure.
    bool sign(const UaPkiPrivateKey& key) noexcept;
    /// Whether the signature is that of the key; false with messages where that can't be told, on the
    /// key itself for one that can't be extracted.
    [[nodiscard]] bool verifySignature(const UaPkiPublicKey& key) const noexcept;
    /// Whether both lists name the same issuer (RFC 5280, 7.1); false when either is null.
    [[nodiscard]] bool sameIssuer(const UaPkiRevocationList& other) const noexcept;

    /// Where the validity begins; 4294967295 seconds after 1970 for a null list ("The CRL is NULL") and
    /// a time that can't be read. The years 50 to 69 of a time with two digits are 2050 to 2069.
    [[nodiscard]] UaDateTime thisUpdate() const noexcept;
    /// Where the next list is due; the null time for a list without it, a null one ("The CRL is NULL")
    /// and a time that can't be read.
    [[nodiscard]] UaDateTime nextUpdate() const noexcept;
    /// Whether now lies between both, which count; without the second, now isn't before the first.
    [[nodiscard]] bool isValid() const noexcept;
    /// The first entry of each kind in the issuer's name; empty without a message for a null list.
    [[nodiscard]] UaPkiIdentity issuer() const noexcept;
    /// The CRL number (RFC 5280, 5.2.3). -1 for a null list, one without it and a number beyond 32 bits.
    [[nodiscard]] int crlNumber() const noexcept;

    [[nodiscard]] bool isNull() const noexcept { return m_pCrl == nullptr; }
    /// The handle, borrowed: valid as long as this object holds it, no new reference. May be null.
    [[nodiscard]] X509_CRL* handle() const noexcept { return m_pCrl; }

private:
    X509_CRL* m_pCrl = nullptr;
};
