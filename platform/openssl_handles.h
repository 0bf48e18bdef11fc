#pragma once

#include <openssl/bio.h>
#include <openssl/encoder.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include <memory>

// Owners of the library's handles for the crypto sources of this folder. Not for users of the layer.

struct OpenSslDeleter
{
    void operator()(BIO* bio) const { BIO_free_all(bio); }
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(EVP_PKEY_CTX* context) const { EVP_PKEY_CTX_free(context); }
    void operator()(OSSL_ENCODER_CTX* context) const { OSSL_ENCODER_CTX_free(context); }
};

template <typename Handle>
using OpenSslPointer = std::unique_ptr<Handle, OpenSslDeleter>;

/// Empties the library's error queue of this thread at both ends of a function, so that what is found
/// in it belongs to the function and nothing is left for the next caller.
class OpenSslErrorScope
{
public:
    OpenSslErrorScope() { ERR_clear_error(); }
    ~OpenSslErrorScope() { ERR_clear_error(); }
    OpenSslErrorScope(const OpenSslErrorScope&) = delete;
    OpenSslErrorScope& operator=(const OpenSslErrorScope&) = delete;
};
