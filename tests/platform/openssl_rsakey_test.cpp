#include "platform/openssl_rsa.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"
#include "tests/platform/rsatestkeys.h"
#include "tests/platform/rsavectors.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>

namespace {

struct SizeRow
{
    OpcUa_UInt32 bits;
    OpcUa_Int32 publicLength;
    OpcUa_Int32 privateLength;
};

/// The most that DER of such a key can need.
constexpr std::array<SizeRow, 2> sizes = {{{1024, 140, 611}, {2048, 270, 1194}}};

TEST(RsaKeys, key_types_have_their_numbers)
{
    EXPECT_EQ(OpcUa_Crypto_KeyType_Rsa_Private, 5u);
    EXPECT_EQ(OpcUa_Crypto_KeyType_Rsa_Public, 6u);
}

TEST(RsaKeys, null_buffers_get_lengths_and_types)
{
    for (const SizeRow& row : sizes) {
        SCOPED_TRACE(row.bits);
        OpcUa_Key publicKey = {0, {-1, nullptr}};
        OpcUa_Key privateKey = {0, {-1, nullptr}};
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(row.bits, &publicKey, &privateKey), OpcUa_Good);
        EXPECT_EQ(publicKey.Type, 6u);
        EXPECT_EQ(privateKey.Type, 5u);
        EXPECT_EQ(publicKey.Key.Length, row.publicLength);
        EXPECT_EQ(privateKey.Key.Length, row.privateLength);
    }
}

TEST(RsaKeys, generated_keys_never_need_more_than_the_reported_length)
{
    for (int round = 0; round < 30; ++round) {
        const RsaPair pair = generateRsaPair(1024);
        EXPECT_EQ(pair.publicDer.size(), 140u);
        EXPECT_GE(pair.privateDer.size(), 600u);
        EXPECT_LE(pair.privateDer.size(), 611u);
    }
    expectEmptyErrorQueue();
}

TEST(RsaKeys, generated_key_is_accepted_by_the_openssl_program)
{
    const TestFolder folder;
    for (const SizeRow& row : sizes) {
        SCOPED_TRACE(row.bits);
        const RsaPair pair = generateRsaPair(row.bits);
        folder.write("private.der", pair.privateDer);
        ASSERT_TRUE(folder.openssl("rsa -inform DER -in private.der -check -noout"));
        ASSERT_TRUE(folder.openssl("rsa -inform DER -in private.der -RSAPublicKey_out -outform DER "
                                   "-out public.der"));
        EXPECT_EQ(folder.read("public.der"), pair.publicDer);
        // The traditional form, not wrapped: version 0 and the modulus come first.
        ASSERT_TRUE(folder.openssl(
            "rsa -inform DER -in private.der -traditional -outform DER -out traditional.der"));
        EXPECT_EQ(folder.read("traditional.der"), pair.privateDer);
        // Exponent 65537 ends the public half.
        EXPECT_EQ(toHex(Bytes(pair.publicDer.end() - 5, pair.publicDer.end())), "0203010001");
        ASSERT_TRUE(folder.openssl("rsa -inform DER -in private.der -text -noout -out text"));
        const Bytes text = folder.read("text");
        EXPECT_NE(std::string(text.begin(), text.end())
                      .find(std::to_string(row.bits) + " bit, 2 primes)"),
                  std::string::npos);
    }
}

TEST(RsaKeys, only_1024_and_2048_bits_are_generated)
{
    Bytes room(8192);
    for (const OpcUa_UInt32 bits :
         {0u, 1u, 512u, 1023u, 1025u, 1536u, 2047u, 2049u, 3072u, 4096u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(bits);
        OpcUa_Key publicKey = {0, {0, nullptr}};
        OpcUa_Key privateKey = {0, {0, nullptr}};
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(bits, &publicKey, &privateKey),
                  OpcUa_BadInvalidArgument);
        publicKey.Key = over(room);
        privateKey.Key = over(room);
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(bits, &publicKey, &privateKey),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(publicKey.Type, 0u);
        EXPECT_EQ(privateKey.Type, 0u);
    }
}

TEST(RsaKeys, generation_refuses_null_and_too_little_room)
{
    Bytes room(2048, 0xEE);
    OpcUa_Key publicKey = keyOver(0, room);
    OpcUa_Key privateKey = keyOver(0, room);
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(1024, nullptr, &privateKey),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(1024, &publicKey, nullptr),
              OpcUa_BadInvalidArgument);
    for (const SizeRow& row : sizes) {
        publicKey.Key.Length = row.publicLength - 1;
        privateKey.Key.Length = row.privateLength;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(row.bits, &publicKey, &privateKey),
                  OpcUa_BadInvalidArgument);
        publicKey.Key.Length = row.publicLength;
        privateKey.Key.Length = row.privateLength - 1;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(row.bits, &publicKey, &privateKey),
                  OpcUa_BadInvalidArgument);
        privateKey.Key.Length = -1;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(row.bits, &publicKey, &privateKey),
                  OpcUa_BadInvalidArgument);
    }
    EXPECT_EQ(room, Bytes(2048, 0xEE));
}

TEST(RsaKeys, one_half_may_be_asked_for_alone)
{
    Bytes room(611);
    OpcUa_Key publicKey = {0, {0, nullptr}};
    OpcUa_Key privateKey = keyOver(0, room);
    ASSERT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(1024, &publicKey, &privateKey), OpcUa_Good);
    EXPECT_EQ(publicKey.Key.Length, 140);
    EXPECT_EQ(room[0], 0x30);
}

TEST(RsaKeys, failing_allocations_of_a_generation_leave_no_half_a_key)
{
    Bytes publicDer(140);
    Bytes privateDer(611);
    // A generation allocates some thousand times; every 97th stands for the others.
    for (std::size_t failAt = 0; failAt < 3000; failAt += 97) {
        OpcUa_Key publicKey = keyOver(0, publicDer);
        OpcUa_Key privateKey = keyOver(0, privateDer);
        OpcUa_StatusCode status = OpcUa_Good;
        {
            const AllocationFaults faults(failAt);
            status = OpcUa_P_OpenSSL_RSA_GenerateKeys(1024, &publicKey, &privateKey);
        }
        if (OpcUa_IsBad(status)) {
            EXPECT_EQ(status, OpcUa_Bad);
            EXPECT_EQ(publicKey.Key.Length * privateKey.Key.Length, 0);
            continue;
        }
        OpcUa_Int32 bits = 0;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GetKeySize(&publicKey, &bits), OpcUa_Good);
        EXPECT_EQ(bits, 1024);
    }
    expectEmptyErrorQueue();
}

TEST(RsaKeys, key_size_is_told_in_bits)
{
    for (const unsigned bits : {1024u, 2048u, 3072u, 4096u}) {
        SCOPED_TRACE(bits);
        const RsaPair pair = bits <= 2048 ? generateRsaPair(bits) : makeRsaPairByProgram(bits);
        const OpcUa_Key key = pair.publicKey();
        OpcUa_Int32 size = 0;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GetKeySize(&key, &size), OpcUa_Good);
        EXPECT_EQ(size, static_cast<OpcUa_Int32>(bits));
    }
}

TEST(RsaKeys, key_size_is_minus_one_after_a_failure)
{
    const Bytes good = fromHex(RsaVectors::signingPublicKey);
    const Bytes garbage = pattern(270);
    const Bytes truncated(good.begin(), good.end() - 1);
    struct Row
    {
        const char* name;
        OpcUa_Key key;
        OpcUa_StatusCode status;
    };
    for (const Row& row :
         {Row{"garbage", keyOver(6, garbage), OpcUa_BadUnexpectedError},
          Row{"truncated", keyOver(6, truncated), OpcUa_BadUnexpectedError},
          Row{"null data", {6, {270, nullptr}}, OpcUa_BadInvalidArgument},
          Row{"empty", {6, {0, over(good).Data}}, OpcUa_BadInvalidArgument},
          Row{"negative length", {6, {-1, over(good).Data}}, OpcUa_BadInvalidArgument},
          Row{"private type", keyOver(5, good), OpcUa_BadInvalidArgument},
          Row{"unknown type", keyOver(7, good), OpcUa_BadInvalidArgument}}) {
        SCOPED_TRACE(row.name);
        OpcUa_Int32 bits = 77;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GetKeySize(&row.key, &bits), row.status);
        EXPECT_EQ(bits, -1);
    }
    OpcUa_Int32 bits = 77;
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GetKeySize(nullptr, &bits), OpcUa_BadInvalidArgument);
    EXPECT_EQ(bits, -1);
    const OpcUa_Key key = keyOver(6, good);
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GetKeySize(&key, nullptr), OpcUa_BadInvalidArgument);
    expectEmptyErrorQueue();
}

TEST(RsaKeys, truncation_at_every_byte_is_told_for_both_halves)
{
    const Bytes publicDer = fromHex(RsaVectors::signingPublicKey);
    const Bytes privateDer = fromHex(RsaVectors::signingPrivateKey);
    for (std::size_t size = 1; size < publicDer.size(); ++size) {
        // A copy of its own, so that a byte read behind it is seen.
        const Bytes cut(publicDer.begin(), publicDer.begin() + static_cast<std::ptrdiff_t>(size));
        const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Rsa_Public, cut);
        OpcUa_Int32 bits = 0;
        ASSERT_EQ(OpcUa_P_OpenSSL_RSA_GetKeySize(&key, &bits), OpcUa_BadUnexpectedError) << size;
    }
    const Bytes digest(32, 1);
    for (std::size_t size = 1; size < privateDer.size(); ++size) {
        const Bytes cut(privateDer.begin(), privateDer.begin() + static_cast<std::ptrdiff_t>(size));
        const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Rsa_Private, cut);
        OpcUa_CryptoBytes signature = {0, nullptr};
        ASSERT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), 32, &key, 672, &signature),
                  OpcUa_BadUnexpectedError)
            << size;
    }
    expectEmptyErrorQueue();
}

TEST(RsaKeys, key_of_another_algorithm_is_not_decoded)
{
    const TestFolder folder;
    ASSERT_TRUE(
        folder.openssl("genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256 -outform DER "
                       "-out ec.der"));
    const Bytes der = folder.read("ec.der");
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Rsa_Private, der);
    const Bytes digest(32, 1);
    OpcUa_CryptoBytes signature = {0, nullptr};
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), 32, &key, 672, &signature),
              OpcUa_BadUnexpectedError);
    expectEmptyErrorQueue();
}

} // namespace
