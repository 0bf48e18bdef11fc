#include "pki/pkikeyderivation.h"

#include "pki/opensslhandles.h"

#include <openssl/asn1t.h>
#include <openssl/x509.h>

#include <cstdint>
#include <memory>

namespace {

/// The parameters of an algorithm as the record that an item describes; null when they are something
/// else.
template <typename Record>
auto unpack(const X509_ALGOR& algorithm, const ASN1_ITEM* pItem)
{
    const auto release = [pItem](Record* pRecord) {
        ASN1_item_free(reinterpret_cast<ASN1_VALUE*>(pRecord), pItem);
    };
    return std::unique_ptr<Record, decltype(release)>(
        static_cast<Record*>(ASN1_TYPE_unpack_sequence(pItem, algorithm.parameter)), release);
}

/// Whether a number is at most so large.
bool isAtMost(const ASN1_INTEGER* pNumber, std::int64_t limit)
{
    std::int64_t number = 0;
    return ASN1_INTEGER_get_int64(&number, pNumber) == 1 && number <= limit;
}

bool isBearableScrypt(const SCRYPT_PARAMS& parameters)
{
    std::int64_t product = 1;
    for (const ASN1_INTEGER* pCost :
         {parameters.costParameter, parameters.blockSize, parameters.parallelizationParameter}) {
        std::int64_t cost = 0;
        if (ASN1_INTEGER_get_int64(&cost, pCost) != 1 || cost > PkiKeyDerivation_MostScryptCost) {
            return false;
        }
        product *= cost > 0 ? cost : 1;
        if (product > PkiKeyDerivation_MostScryptCost) {
            return false;
        }
    }
    return true;
}

/// The function of PBES2 that makes the key (RFC 8018, A.2; RFC 7914, 7).
bool isBearableFunction(const X509_ALGOR& function)
{
    if (OBJ_obj2nid(function.algorithm) == NID_id_scrypt) {
        const auto parameters = unpack<SCRYPT_PARAMS>(function, ASN1_ITEM_rptr(SCRYPT_PARAMS));
        return parameters == nullptr || isBearableScrypt(*parameters);
    }
    const auto parameters = unpack<PBKDF2PARAM>(function, ASN1_ITEM_rptr(PBKDF2PARAM));
    return parameters == nullptr || isAtMost(parameters->iter, PkiKeyDerivation_MostRounds);
}

} // namespace

bool PkiKeyDerivation_IsBearable(const X509_ALGOR* pScheme) noexcept
{
    // Parameters of another kind are the library's to refuse.
    ERR_set_mark();
    bool isBearable = true;
    if (OBJ_obj2nid(pScheme->algorithm) == NID_pbes2) {
        const auto scheme = unpack<PBE2PARAM>(*pScheme, ASN1_ITEM_rptr(PBE2PARAM));
        isBearable = scheme == nullptr || isBearableFunction(*scheme->keyfunc);
    } else {
        const auto scheme = unpack<PBEPARAM>(*pScheme, ASN1_ITEM_rptr(PBEPARAM));
        isBearable = scheme == nullptr || isAtMost(scheme->iter, PkiKeyDerivation_MostRounds);
    }
    ERR_pop_to_mark();
    return isBearable;
}
