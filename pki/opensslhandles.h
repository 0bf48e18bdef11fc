#pragma once

#include "pki/uapkierrorlist.h"

#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>

// Owners of OpenSSL's handles and of its error queue, for the sources of this folder. Not for users of
// the layer.

struct PkiDeleter
{
    /// All ASN1 types that are strings inside, integers and times too.
    void operator()(ASN1_STRING* value) const noexcept { ASN1_STRING_free(value); }
    void operator()(ASN1_TYPE* value) const noexcept { ASN1_TYPE_free(value); }
    void operator()(BIGNUM* value) const noexcept { BN_free(value); }
    void operator()(BIO* value) const noexcept { BIO_free_all(value); }
    void operator()(EVP_MD_CTX* value) const noexcept { EVP_MD_CTX_free(value); }
    void operator()(EVP_PKEY* value) const noexcept { EVP_PKEY_free(value); }
    void operator()(GENERAL_NAMES* value) const noexcept { GENERAL_NAMES_free(value); }
    void operator()(OSSL_LIB_CTX* value) const noexcept { OSSL_LIB_CTX_free(value); }
    void operator()(PKCS8_PRIV_KEY_INFO* value) const noexcept { PKCS8_PRIV_KEY_INFO_free(value); }
    void operator()(STACK_OF(X509_EXTENSION) * value) const noexcept
    {
        sk_X509_EXTENSION_pop_free(value, X509_EXTENSION_free);
    }
    void operator()(X509* value) const noexcept { X509_free(value); }
    void operator()(X509_ALGOR* value) const noexcept { X509_ALGOR_free(value); }
    void operator()(X509_CRL* value) const noexcept { X509_CRL_free(value); }
    void operator()(X509_EXTENSION* value) const noexcept { X509_EXTENSION_free(value); }
    void operator()(X509_NAME* value) const noexcept { X509_NAME_free(value); }
    void operator()(X509_PUBKEY* value) const noexcept { X509_PUBKEY_free(value); }
    void operator()(X509_REQ* value) const noexcept { X509_REQ_free(value); }
    void operator()(X509_REVOKED* value) const noexcept { X509_REVOKED_free(value); }
    void operator()(X509_SIG* value) const noexcept { X509_SIG_free(value); }
};

/// Owns one reference of a handle: PkiHandle<X509>, PkiHandle<BIO>.
template <typename Handle>
using PkiHandle = std::unique_ptr<Handle, PkiDeleter>;

/// Frees what the library has allocated itself, such as the bytes of i2d_X509 on a null pointer.
struct PkiLibraryBytesDeleter
{
    void operator()(unsigned char* bytes) const noexcept { OPENSSL_free(bytes); }
};
using PkiLibraryBytes = std::unique_ptr<unsigned char, PkiLibraryBytesDeleter>;

/// Empties the library's error queue of this thread at both ends of an operation, so that what
/// addLibraryErrors finds belongs to the operation and nothing is left for the next caller. An
/// operation that calls another one between a failure and addLibraryErrors loses its entries.
class PkiErrorScope
{
public:
    PkiErrorScope() noexcept { clear(); }
    ~PkiErrorScope() { clear(); }
    PkiErrorScope(const PkiErrorScope&) = delete;
    PkiErrorScope& operator=(const PkiErrorScope&) = delete;

private:
    /// Clearing takes as long for an empty queue as for a full one; looking takes a fifth of it.
    static void clear() noexcept
    {
        if (ERR_peek_error() != 0) {
            ERR_clear_error();
        }
    }
};

/// Puts a reason into the queue where a failure has left none, which the library does at times when
/// memory is short.
inline void PkiError_EnsureReason() noexcept
{
    if (ERR_peek_error() == 0) {
        ERR_raise(ERR_LIB_X509, ERR_R_MALLOC_FAILURE);
    }
}
