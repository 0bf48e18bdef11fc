#include "pki/pkirequest.h"

#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"

bool PkiRequest_AsksFor(int nid) noexcept
{
    return nid != NID_authority_key_identifier && nid != NID_netscape_comment;
}

bool PkiRequest_Push(const PkiExtensionStack& stack, PkiHandle<X509_EXTENSION> extension) noexcept
{
    if (stack == nullptr || extension == nullptr ||
        sk_X509_EXTENSION_push(stack.get(), extension.get()) <= 0) {
        return false;
    }
    (void)extension.release();
    return true;
}

bool PkiRequest_Sign(X509_REQ* pRequest, const PkiExtensionStack& extensions,
                     const UaPkiPrivateKey& key, int signatureAlgorithm) noexcept
{
    if (extensions == nullptr || (sk_X509_EXTENSION_num(extensions.get()) > 0 &&
                                  X509_REQ_add_extensions(pRequest, extensions.get()) != 1)) {
        return false;
    }
    const EVP_MD* const digest =
        signatureAlgorithm == UaPkiCertificate::Sha1WithRsa ? EVP_sha1() : EVP_sha256();
    return X509_REQ_sign(pRequest, key.handle(), digest) > 0;
}

bool PkiRequest_Verify(X509_REQ* pRequest) noexcept
{
    const PkiHandle<EVP_PKEY> key(X509_REQ_get_pubkey(pRequest));
    return key != nullptr && X509_REQ_verify(pRequest, key.get()) > 0;
}
