#include "pki/opensslhandles.h"
#include "pki/pkikeyderivation.h"
#include "pki/uapkiprivatekey.h"
#include "tests/pki/errorqueue.h"

#include <openssl/pem.h>
#include <openssl/x509.h>

#include <climits>
#include <string>
#include <utility>

namespace {

using Scheme = std::unique_ptr<X509_ALGOR, decltype(&X509_ALGOR_free)>;

unsigned char salt[8] = {1, 2, 3, 4, 5, 6, 7, 8};

Scheme pbkdf2(long rounds)
{
    return {PKCS5_pbe2_set_iv(EVP_aes_256_cbc(), static_cast<int>(rounds), salt, sizeof(salt),
                              nullptr, NID_hmacWithSHA256),
            X509_ALGOR_free};
}

Scheme pbes1(long rounds)
{
    return {PKCS5_pbe_set(NID_pbe_WithSHA1And3_Key_TripleDES_CBC, static_cast<int>(rounds), salt,
                          sizeof(salt)),
            X509_ALGOR_free};
}

Scheme scrypt(std::uint64_t n, std::uint64_t r, std::uint64_t p)
{
    return {PKCS5_pbe2_set_scrypt(EVP_aes_256_cbc(), salt, sizeof(salt), nullptr, n, r, p),
            X509_ALGOR_free};
}

/// A key in PEM that claims to be encrypted by a scheme.
std::string encryptedKey(const X509_ALGOR* pScheme)
{
    const PkiHandle<X509_SIG> key(X509_SIG_new());
    X509_ALGOR* pTarget = nullptr;
    ASN1_OCTET_STRING* pContent = nullptr;
    X509_SIG_getm(key.get(), &pTarget, &pContent);
    EXPECT_EQ(X509_ALGOR_copy(pTarget, pScheme), 1);
    EXPECT_EQ(ASN1_OCTET_STRING_set(pContent, salt, sizeof(salt)), 1);
    const PkiHandle<BIO> text(BIO_new(BIO_s_mem()));
    EXPECT_EQ(PEM_write_bio_PKCS8(text.get(), key.get()), 1);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text.get(), &bytes);
    return {bytes, static_cast<std::size_t>(size)};
}

class PkiKeyDerivationTest : public PkiTest
{
};

TEST_F(PkiKeyDerivationTest, rounds_up_to_the_limit_are_borne)
{
    constexpr long most = PkiKeyDerivation_MostRounds;
    for (const auto& [rounds, isBearable] : {std::pair{1L, true},
                                             {2048L, true},
                                             {most, true},
                                             {most + 1, false},
                                             {long{INT_MAX}, false}}) {
        SCOPED_TRACE(rounds);
        EXPECT_EQ(PkiKeyDerivation_IsBearable(pbkdf2(rounds).get()), isBearable);
        EXPECT_EQ(PkiKeyDerivation_IsBearable(pbes1(rounds).get()), isBearable);
    }
}

TEST_F(PkiKeyDerivationTest, costs_of_scrypt_count_together)
{
    EXPECT_TRUE(PkiKeyDerivation_IsBearable(scrypt(1u << 14, 8, 1).get()));
    EXPECT_TRUE(PkiKeyDerivation_IsBearable(scrypt(1u << 14, 1, 1u << 10).get()));
    EXPECT_FALSE(PkiKeyDerivation_IsBearable(scrypt(1u << 15, 1, 1u << 10).get()));
}

TEST_F(PkiKeyDerivationTest, parameters_of_another_kind_are_left_to_the_library)
{
    const Scheme scheme(X509_ALGOR_new(), X509_ALGOR_free);
    for (const int type : {NID_pbes2, NID_pbe_WithSHA1And3_Key_TripleDES_CBC, NID_rsaEncryption}) {
        ASSERT_EQ(X509_ALGOR_set0(scheme.get(), OBJ_nid2obj(type), V_ASN1_NULL, nullptr), 1);
        EXPECT_TRUE(PkiKeyDerivation_IsBearable(scheme.get())) << type;
    }
}

TEST_F(PkiKeyDerivationTest, key_that_claims_hours_of_work_is_refused_at_once)
{
    for (const Scheme& scheme : {pbkdf2(INT_MAX), pbes1(INT_MAX), scrypt(1u << 15, 1, 1u << 10)}) {
        const std::string text = encryptedKey(scheme.get());
        const UaByteArray bytes(reinterpret_cast<const OpcUa_Byte*>(text.data()),
                                static_cast<OpcUa_Int32>(text.size()));
        const UaPkiPrivateKey key = UaPkiPrivateKey::fromPEM(bytes, "secret");
        EXPECT_EQ(EVP_PKEY_get_base_id(key.handle()), EVP_PKEY_NONE);
        EXPECT_EQ(key.getErrors().size(), 1u);
    }
}

} // namespace
