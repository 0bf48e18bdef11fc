#include "pki/opensslhandles.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/samplekey.h"
#include "tests/support/allocationfaults.h"

#include <openssl/dsa.h>

#include <memory>
#include <string>
#include <utility>

namespace {

using UaPkiPublicKeyTest = PkiTest;

PkiHandle<EVP_PKEY> generate(const char* type, const char* curve = nullptr)
{
    return PkiHandle<EVP_PKEY>(curve != nullptr ? EVP_PKEY_Q_keygen(nullptr, nullptr, type, curve)
                                                : EVP_PKEY_Q_keygen(nullptr, nullptr, type));
}

PkiHandle<EVP_PKEY> generateDsa()
{
    const std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)> parameters(
        EVP_PKEY_CTX_new_from_name(nullptr, "DSA", nullptr), EVP_PKEY_CTX_free);
    EVP_PKEY* domain = nullptr;
    EXPECT_EQ(EVP_PKEY_paramgen_init(parameters.get()), 1);
    EXPECT_EQ(EVP_PKEY_CTX_set_dsa_paramgen_bits(parameters.get(), 1024), 1);
    EXPECT_EQ(EVP_PKEY_CTX_set_dsa_paramgen_q_bits(parameters.get(), 160), 1);
    EXPECT_EQ(EVP_PKEY_paramgen(parameters.get(), &domain), 1);
    const PkiHandle<EVP_PKEY> owner(domain);
    const std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)> context(
        EVP_PKEY_CTX_new(domain, nullptr), EVP_PKEY_CTX_free);
    EVP_PKEY* key = nullptr;
    EXPECT_EQ(EVP_PKEY_keygen_init(context.get()), 1);
    EXPECT_EQ(EVP_PKEY_keygen(context.get(), &key), 1);
    return PkiHandle<EVP_PKEY>(key);
}

/// That an object has no key, tells so by messages, and leaves the queue empty.
void expectEmpty(const UaPkiPublicKey& key, const char* what)
{
    (void)key.getErrors();
    EXPECT_EQ(key.handle(), nullptr) << what;
    EXPECT_FALSE(key.getErrors().empty()) << what;
    EXPECT_EQ(key.keySize(), -1) << what;
    EXPECT_EQ(key.keyType(), 0) << what;
    EXPECT_FALSE(key.getErrors().empty()) << what;
    EXPECT_TRUE(key.toDER().isEmpty()) << what;
}

TEST_F(UaPkiPublicKeyTest, a_default_object_has_a_handle_but_no_key)
{
    expectEmpty(UaPkiPublicKey(), "default");
}

TEST_F(UaPkiPublicKeyTest, no_key_to_store_leaves_it_empty_with_messages)
{
    const UaPkiPublicKey ofNull(nullptr);
    EXPECT_FALSE(ofNull.getErrors().empty());
    expectEmpty(ofNull, "null");
    const PkiHandle<EVP_PKEY> without(EVP_PKEY_new());
    const UaPkiPublicKey ofEmpty(without.get());
    EXPECT_FALSE(ofEmpty.getErrors().empty());
    expectEmpty(ofEmpty, "empty");
}

TEST_F(UaPkiPublicKeyTest, garbage_and_every_truncation_is_refused_with_messages)
{
    const UaByteArray whole = sampleKeyPair().publicKey().toDER();
    ASSERT_GT(whole.size(), 200);
    for (OpcUa_Int32 size = 0; size < whole.size(); ++size) {
        const UaPkiPublicKey key = UaPkiPublicKey::fromDER(UaByteArray(whole.data(), size));
        EXPECT_FALSE(key.getErrors().empty()) << size;
        EXPECT_EQ(key.keySize(), -1) << size;
    }
    const UaPkiPublicKey garbage = UaPkiPublicKey::fromDER(UaByteArray("garbage", 7));
    EXPECT_FALSE(garbage.getErrors().empty());
    expectEmpty(garbage, "garbage");
}

TEST_F(UaPkiPublicKeyTest, key_of_a_2048_bit_pair_has_2048_bits)
{
    const UaPkiPublicKey key = sampleKeyPair().publicKey();
    EXPECT_EQ(key.keySize(), 2048);
    EXPECT_EQ(key.keyType(), 6);
    EXPECT_TRUE(key.getErrors().empty());
}

TEST_F(UaPkiPublicKeyTest, type_is_told_for_rsa_and_dsa_alone)
{
    struct Row
    {
        const char* name;
        PkiHandle<EVP_PKEY> key;
        int type;
        int size;
    };
    const Row rows[] = {
        {"RSA", PkiHandle<EVP_PKEY>(EVP_RSA_gen(1024)), 6, 1024},
        {"DSA", generateDsa(), 116, 1024},
        {"EC", generate("EC", "P-256"), 0, 256},
        {"ED25519", generate("ED25519"), 0, 256},
    };
    for (const Row& row : rows) {
        const UaPkiPublicKey key(row.key.get());
        EXPECT_EQ(key.keyType(), row.type) << row.name;
        EXPECT_GE(key.keySize(), row.size - 3) << row.name;
        EXPECT_LE(key.keySize(), row.size) << row.name;
        const UaPkiPublicKey again = UaPkiPublicKey::fromDER(key.toDER());
        EXPECT_EQ(again.toDER(), key.toDER()) << row.name;
        const PkiHandle<EVP_PKEY> handle(again.handle());
        EXPECT_EQ(EVP_PKEY_eq(handle.get(), row.key.get()), 1) << row.name;
    }
}

TEST_F(UaPkiPublicKeyTest, handle_is_a_reference_of_the_callers_own)
{
    PkiHandle<EVP_PKEY> handle;
    {
        const UaPkiPublicKey key = sampleKeyPair().publicKey();
        handle.reset(key.handle());
    }
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(EVP_PKEY_get_bits(handle.get()), 2048);
}

TEST_F(UaPkiPublicKeyTest, copy_and_assignment_have_keys_of_their_own)
{
    UaPkiPublicKey source = sampleKeyPair().publicKey();
    const UaByteArray bytes = source.toDER();
    const UaPkiPublicKey copy(
        source); // NOLINT(performance-unnecessary-copy-initialization): under test
    UaPkiPublicKey assigned = otherKeyPair().publicKey();
    EXPECT_FALSE(assigned.toDER() == bytes);
    assigned = source;
    source = UaPkiPublicKey();
    EXPECT_EQ(copy.toDER(), bytes);
    EXPECT_EQ(assigned.toDER(), bytes);
    const UaPkiPublicKey& itself = assigned;
    assigned = itself;
    EXPECT_EQ(assigned.toDER(), bytes);
    assigned = source;
    expectEmpty(assigned, "copy of an empty key");
}

TEST_F(UaPkiPublicKeyTest, move_takes_the_key_and_leaves_an_object_that_answers)
{
    UaPkiPublicKey source = sampleKeyPair().publicKey();
    const UaByteArray bytes = source.toDER();
    UaPkiPublicKey moved(std::move(source));
    EXPECT_EQ(moved.toDER(), bytes);
    UaPkiPublicKey assigned;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.toDER(), bytes);
    // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move): a moved-from object is safe
    EXPECT_EQ(source.handle(), nullptr);
    EXPECT_EQ(source.keySize(), -1);       // NOLINT(bugprone-use-after-move): see above
    EXPECT_TRUE(source.toDER().isEmpty()); // NOLINT(bugprone-use-after-move): see above
    const UaPkiPublicKey copy(source);     // NOLINT(bugprone-use-after-move): see above
    EXPECT_EQ(copy.keySize(), -1);
}

TEST_F(UaPkiPublicKeyTest, the_private_part_stays_out)
{
    const PkiHandle<EVP_PKEY> pair(EVP_RSA_gen(1024));
    const UaPkiPublicKey fromPair(pair.get());
    const UaPkiPublicKey copy(fromPair);
    for (const UaPkiPublicKey* key : {&fromPair, &copy}) {
        const PkiHandle<EVP_PKEY> handle(key->handle());
        BIGNUM* exponent = nullptr;
        EXPECT_EQ(EVP_PKEY_get_bn_param(handle.get(), "d", &exponent), 0);
        EXPECT_EQ(exponent, nullptr);
        ERR_clear_error();
    }
}

TEST_F(UaPkiPublicKeyTest, memory_short_for_the_der_form_gives_an_empty_one)
{
    const UaPkiPublicKey key = sampleKeyPair().publicKey();
    const std::size_t failures =
        forEveryFailingAllocation([&] { return key.toDER(); },
                                  [](const UaByteArray& bytes) { EXPECT_TRUE(bytes.isEmpty()); });
    EXPECT_GT(failures, 0u);
}

} // namespace
