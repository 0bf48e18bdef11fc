#include "pki/pkibarecontext.h"

#include <openssl/provider.h>

OSSL_LIB_CTX* PkiBareContext() noexcept
{
    static OSSL_LIB_CTX* const pContext = [] {
        PkiHandle<OSSL_LIB_CTX> context(OSSL_LIB_CTX_new());
        // Without the null provider the default one would come by itself.
        const bool isBare =
            context != nullptr && OSSL_PROVIDER_load(context.get(), "null") != nullptr;
        return isBare ? context.release() : nullptr;
    }();
    return pContext;
}

PkiHandle<X509> PkiBareContext_Complete(const X509* pCertificate) noexcept
{
    unsigned char* encoded = nullptr;
    const int size = i2d_X509(pCertificate, &encoded);
    const PkiLibraryBytes bytes(encoded);
    const unsigned char* position = encoded;
    return PkiHandle<X509>(size > 0 ? d2i_X509(nullptr, &position, size) : nullptr);
}
