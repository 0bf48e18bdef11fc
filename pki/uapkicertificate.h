#pragma once

#include "base/uabytearray.h"
#include "base/uadatetime.h"
#include "pki/uapkicertificateinfo.h"
#include "pki/uapkierrorlist.h"
#include "pki/uapkiidentity.h"

#include <openssl/types.h>

class UaByteString;
class UaPkiCSR;
class UaPkiPrivateKey;
class UaPkiPublicKey;
class UaPkiRSAKeyPair;
class UaUniString;

/// An X.509 certificate (RFC 5280): read, asked for its fields, made, signed and written.
///
/// An object is null or shares one OpenSSL handle with its copies, which cost one reference; the
/// certificate is freed with the last of them. Failures never throw: they become messages on the object
/// (see UaPkiErrorList), and what should have been made is null. Every operation on a null object but
/// isNull and copying adds "The certificate is NULL" and returns an empty value.
///
/// Nothing changes a certificate after it was made but sign, which all copies see. Other than that
/// copies may live in different threads; one object belongs to one thread at a time.
class UaPkiCertificate : public UaPkiErrorList
{
public:
    /// Values for `signatureAlgorithm`; every value but 0 stands for SHA-256.
    static constexpr int Sha1WithRsa = 0;
    static constexpr int Sha256WithRsa = 1;

    /// The null certificate.
    UaPkiCertificate() noexcept = default;
    /// Takes a further reference on a handle, which may be null.
    explicit UaPkiCertificate(X509* pCertificate) noexcept;

    /// Makes a certificate of version 3 that is signed by its own key. Its lifetime of `info.validTime`
    /// seconds begins now. An application's certificate has the entries of `info` in its
    /// subjectAltName extension, which take no commas: OpenSSL's configuration syntax holds. An
    /// authority's certificate has none. Null with messages on failure.
    UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                     const UaPkiRSAKeyPair& keyPair, bool isCA, int signatureAlgorithm) noexcept;
    /// Makes a certificate for another key, in the name of an issuer whose certificate isn't at hand,
    /// signed with SHA-1. Null with messages on failure.
    UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                     const UaPkiPublicKey& subjectKey, const UaPkiIdentity& issuer,
                     const UaPkiPrivateKey& issuerKey) noexcept;
    /// Makes a certificate for another key, signed by an issuer. Null with messages on failure.
    UaPkiCertificate(const UaPkiCertificateInfo& info, const UaPkiIdentity& subject,
                     const UaPkiPublicKey& subjectKey, const UaPkiCertificate& issuer,
                     const UaPkiPrivateKey& issuerKey, bool isCA, int signatureAlgorithm) noexcept;

    /// Copies share the handle; messages aren't copied, and an assignment keeps its target's.
    UaPkiCertificate(const UaPkiCertificate& other) noexcept;
    UaPkiCertificate(UaPkiCertificate&& other) noexcept;
    UaPkiCertificate& operator=(const UaPkiCertificate& other) noexcept;
    UaPkiCertificate& operator=(UaPkiCertificate&& other) noexcept;
    ~UaPkiCertificate();

    /// Reads the DER form; bytes behind the certificate don't matter. Null with messages on failure,
    /// for no bytes with "Error in fromDER: empty ByteString in argument DERdata".
    [[nodiscard]] static UaPkiCertificate fromDER(const UaByteArray& DERdata) noexcept;
    [[nodiscard]] static UaPkiCertificate fromDER(const UaByteString& DERdata) noexcept;

    /// Reads a file of up to 1 MiB in DER form, and no devices or pipes; null with messages on failure.
    /// The path is in the system's character set.
    [[nodiscard]] static UaPkiCertificate fromDERFile(const char* path) noexcept;
    /// The same through the file engine.
    [[nodiscard]] static UaPkiCertificate fromDERFile(const UaUniString& path) noexcept;
    /// Reads the first certificate of a PEM file of up to 1 MiB; text around it doesn't matter. One that
    /// is encrypted is refused without asking anybody. Null with messages on failure.
    [[nodiscard]] static UaPkiCertificate fromPEMFile(const char* path) noexcept;

    /// Makes a certificate from a signing request: its subject, key and extensions, for `validTime`
    /// seconds from now on; a serial number of 0 stands for the current time. Null with messages on
    /// failure.
    [[nodiscard]] static UaPkiCertificate fromCSR(const UaPkiCSR& request,
                                                  const UaPkiCertificate& issuer,
                                                  const UaPkiPrivateKey& issuerKey,
                                                  OpcUa_UInt32 validTime, OpcUa_Int32 serialNumber,
                                                  int signatureAlgorithm) noexcept;

    /// Signs this certificate anew in an issuer's name. False with messages on failure, after which its
    /// signature no longer holds.
    bool sign(const UaPkiCertificate& issuer, const UaPkiPrivateKey& issuerKey,
              int signatureAlgorithm) noexcept;

    /// A signing request for the same subject and key, with the certificate's extensions except for its
    /// issuer's key and its comment, signed by `key`. Null on failure, with messages on the request.
    [[nodiscard]] UaPkiCSR toCSR(const UaPkiPrivateKey& key, int signatureAlgorithm) const noexcept;

    /// The DER form; empty on failure.
    [[nodiscard]] UaByteArray toDER() const noexcept;
    /// The same; null on failure.
    [[nodiscard]] UaByteString toDERByteString() const noexcept;
    /// Write the certificate to a file, through OpenSSL's file BIO with a path in the system's character
    /// set or through the file engine. 0 for success, -1 with messages on failure.
    [[nodiscard]] int toDERFile(const char* path) const noexcept;
    [[nodiscard]] int toDERFile(const UaUniString& path) const noexcept;
    [[nodiscard]] int toPEMFile(const char* path) const noexcept;
    [[nodiscard]] int toPEMFile(const UaUniString& path) const noexcept;

    [[nodiscard]] UaPkiIdentity subject() const noexcept;
    [[nodiscard]] UaPkiIdentity issuer() const noexcept;
    /// The subject's commonName alone.
    [[nodiscard]] UaString commonName() const noexcept;

    /// The entries of the subjectAltName extension, and the serial number; empty without such an
    /// extension, and with messages for one that can't be read. Of several URIs or e-mail addresses the
    /// last counts. An IPv4 address reads as "192.168.0.1", an IPv6 address as eight groups of four upper
    /// case digits ("2001:0DB8:0000:0000:0000:0000:0000:0001"), and an address of another length as an
    /// empty text.
    [[nodiscard]] UaPkiCertificateInfo info() const noexcept;
    /// The serial number in upper case hexadecimal, an even number of digits unless it is "0", with a "-"
    /// before a negative one.
    [[nodiscard]] UaString serialNumberString() const noexcept;

    /// The bounds of the lifetime. The two digits of a UTCTime are read as 1970 to 2069, other than
    /// RFC 5280 has it; a zone other than "Z" isn't regarded. A time that can't be read makes the
    /// certificate never valid: validFrom is then the instant 4294967295 seconds after 1970, validTo
    /// the first instant of 1970.
    [[nodiscard]] UaDateTime validFrom() const noexcept;
    [[nodiscard]] UaDateTime validTo() const noexcept;
    /// Whether the platform's current time lies within the lifetime, its bounds included.
    [[nodiscard]] bool isValid() const noexcept;

    /// The SHA-1 of the DER form, 20 bytes, by which OPC UA names certificates (OPC 10000-6, 6.2.3).
    [[nodiscard]] UaByteArray thumbPrint() const noexcept;
    /// The key of the subject; empty with messages when it can't be decoded.
    [[nodiscard]] UaPkiPublicKey publicKey() const noexcept;
    /// Whether the certificate names itself as its issuer and its own key verifies its signature.
    [[nodiscard]] bool isSelfSigned() const noexcept;
    /// Whether the signature is one of the key's. The lifetime plays no part.
    [[nodiscard]] bool verifySignature(const UaPkiPublicKey& key) const noexcept;

    /// Whether there is an extension of a type, which is a number (NID) of OpenSSL.
    [[nodiscard]] bool hasExtension(int nid) const noexcept;
    /// An extension as OpenSSL prints it; empty without it or, with messages, when it can't be printed.
    [[nodiscard]] UaString extensionValue(int nid) const noexcept;

    /// OpenSSL's short name of the signature algorithm, "RSA-SHA256"; empty for an unknown one.
    [[nodiscard]] UaString signatureTypeName() const noexcept;
    /// Sha256WithRsa for that algorithm and Sha1WithRsa for all others.
    [[nodiscard]] int signatureAlgorithm() const noexcept;
    /// The hash of the subject by which OpenSSL names files of authorities.
    [[nodiscard]] OpcUa_UInt32 subjectNameHash() const noexcept;

    [[nodiscard]] bool isNull() const noexcept { return m_pCertificate == nullptr; }

    /// The handle, borrowed: valid as long as an object shares it. May be null. One that was read here
    /// knows no algorithms, so that the library's own functions neither find its key nor verify with
    /// it; one that was made here has its key in encoded form alone. i2d_X509 and d2i_X509 make a handle
    /// for them.
    [[nodiscard]] X509* handle() const noexcept { return m_pCertificate; }

private:
    X509* m_pCertificate = nullptr;
};
