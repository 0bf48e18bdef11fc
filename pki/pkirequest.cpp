#include "pki/pkirequest.h"

#include "pki/pkisignature.h"
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
    PkiSignatureParts parts;
    X509_REQ_get0_signature(pRequest, &parts.signature, &parts.outerAlgorithm);
    return PkiSignature_Sign(pRequest, parts, i2d_re_X509_REQ_tbs, key.handle(),
                             PkiSignature_Digest(signatureAlgorithm));
}

bool PkiRequest_Verify(X509_REQ* pRequest) noexcept
{
    const PkiHandle<EVP_PKEY> key(X509_REQ_get_pubkey(pRequest));
    return key != nullptr && X509_REQ_verify(pRequest, key.get()) > 0;
}
