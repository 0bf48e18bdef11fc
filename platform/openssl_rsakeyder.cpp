#include "platform/openssl_rsakeyder.h"

#include "platform/cryptobytes.h"
#include "platform/openssl_handles.h"
#include "platform/status.h"

#include <openssl/crypto.h>
#include <openssl/encoder.h>

#include <cstring>

RsaKeyDer::RsaKeyDer(const EVP_PKEY* key, int selection)
{
    const OpenSslPointer<OSSL_ENCODER_CTX> context(
        OSSL_ENCODER_CTX_new_for_pkey(key, selection, "DER", "type-specific", nullptr));
    if (context == nullptr || OSSL_ENCODER_to_data(context.get(), &m_data, &m_size) != 1) {
        m_size = 0;
    }
}

RsaKeyDer::~RsaKeyDer()
{
    OPENSSL_clear_free(m_data, m_size);
}

OpcUa_StatusCode RsaKeyDer::copyTo(OpcUa_CryptoBytes& output) const
{
    if (m_size == 0) {
        output.Length = 0;
        return OpcUa_Bad;
    }
    if (!hasRoom(output, static_cast<OpcUa_UInt32>(m_size))) {
        return OpcUa_BadInvalidArgument;
    }
    output.Length = static_cast<OpcUa_Int32>(m_size);
    if (output.Data != nullptr) {
        std::memcpy(output.Data, m_data, m_size);
    }
    return OpcUa_Good;
}
