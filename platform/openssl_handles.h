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

/// Takes what a function adds to the library's error queue of this thread out again at its end, so
/// that nothing of ours is left for the next caller and nothing of the caller's is lost.
class OpenSslErrorScope
{
public:
    // An empty queue takes no mark; going back to it then empties the queue again.
    OpenSslErrorScope() { ERR_set_mark(); }
    ~OpenSslErrorScope() { ERR_pop_to_mark(); }
    OpenSslErrorScope(const OpenSslErrorScope&) = delete;
    OpenSslErrorScope& operator=(const OpenSslErrorScope&) = delete;
};
