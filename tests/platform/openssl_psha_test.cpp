#include "platform/openssl_psha.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using Derive = OpcUa_StatusCode (*)(const OpcUa_CryptoProvider* provider, const OpcUa_Byte* secret,
                                    OpcUa_UInt32 secretLength, const OpcUa_Byte* seed,
                                    OpcUa_UInt32 seedLength, OpcUa_Int32 length, OpcUa_Key* result);

struct Function
{
    const char* name; ///< Of the digest, as the openssl program knows it.
    Derive derive;
};

const std::array<Function, 2> functions = {
    {{"SHA1", OpcUa_P_OpenSSL_PSHA1_Derive}, {"SHA256", OpcUa_P_OpenSSL_PSHA256_Derive}}};

OpcUa_StatusCode deriveInto(Bytes& result, Derive derive, const Bytes& secret, const Bytes& seed,
                            OpcUa_Int32 length, const OpcUa_CryptoProvider* provider = nullptr)
{
    result.assign(513, 0xEE);
    OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, result);
    const OpcUa_StatusCode status =
        derive(provider, secret.data(), static_cast<OpcUa_UInt32>(secret.size()), seed.data(),
               static_cast<OpcUa_UInt32>(seed.size()), length, &key);
    if (OpcUa_IsGood(status)) {
        EXPECT_EQ(result[static_cast<std::size_t>(key.Key.Length)], 0xEE);
        cutTo(result, key.Key.Length);
    }
    return status;
}

TEST(PSha, published_vector_of_the_tls_prf_comes_out)
{
    // The vector for the PRF of TLS 1.2 with SHA-256 that its working group published; the PRF's seed
    // is the label followed by the seed.
    const Bytes secret = fromHex("9bbe436ba940f017b17652849a71db35");
    Bytes seed = fromText("test label");
    const Bytes tail = fromHex("a0ba9f936cda311827a6f796ffd5198c");
    seed.insert(seed.end(), tail.begin(), tail.end());
    Bytes result;
    EXPECT_EQ(deriveInto(result, OpcUa_P_OpenSSL_PSHA256_Derive, secret, seed, 100), OpcUa_Good);
    EXPECT_EQ(toHex(result), "e3f229ba727be17b8d122620557cd453c2aab21d07c3d495329b52d4e61edb5a"
                             "6b301791e90d35c9c9a46b4e14baf9af0fa022f7077def17abfd3797c0564bab"
                             "4fbc91666e9def9b97fce34f796789baa48082d122ee42c5a72e5a5110fff701"
                             "87347b66");
}

TEST(PSha, every_length_is_a_beginning_of_the_longest_result)
{
    const Bytes secret = pattern(37, 1);
    const Bytes seed = pattern(53, 2);
    for (const Function& function : functions) {
        SCOPED_TRACE(function.name);
        Bytes longest;
        ASSERT_EQ(deriveInto(longest, function.derive, secret, seed, 512), OpcUa_Good);
        for (OpcUa_Int32 length = 1; length <= 512; ++length) {
            Bytes result;
            ASSERT_EQ(deriveInto(result, function.derive, secret, seed, length), OpcUa_Good);
            ASSERT_EQ(result, Bytes(longest.begin(), longest.begin() + length));
        }
    }
    expectEmptyErrorQueue();
}

TEST(PSha, results_agree_with_the_openssl_program)
{
    struct Row
    {
        std::size_t secret;
        std::size_t seed;
        OpcUa_Int32 length;
    };
    const TestFolder folder;
    for (const Function& function : functions) {
        for (const Row& row : {Row{32, 32, 80}, Row{1, 1, 1}, Row{64, 20, 512}, Row{65, 100, 33},
                               Row{200, 1000, 19}}) {
            SCOPED_TRACE(testing::Message() << function.name << " " << row.length);
            const Bytes secret = pattern(row.secret, 3);
            const Bytes seed = pattern(row.seed, 4);
            ASSERT_TRUE(folder.openssl(
                "kdf -binary -out expected -keylen " + std::to_string(row.length) +
                " -kdfopt digest:" + function.name + " -kdfopt hexsecret:" + toHex(secret) +
                " -kdfopt hexseed:" + toHex(seed) + " TLS1-PRF"));
            Bytes result;
            EXPECT_EQ(deriveInto(result, function.derive, secret, seed, row.length), OpcUa_Good);
            EXPECT_EQ(toHex(result), toHex(folder.read("expected")));
        }
    }
}

TEST(PSha, lengths_from_1_to_512_are_accepted)
{
    struct Row
    {
        OpcUa_Int32 length;
        OpcUa_StatusCode status;
    };
    const Bytes bytes = pattern(16);
    for (const Function& function : functions) {
        for (const Row& row :
             {Row{0, OpcUa_BadInvalidArgument}, Row{1, OpcUa_Good}, Row{512, OpcUa_Good},
              Row{513, OpcUa_BadInvalidArgument}, Row{0x7FFFFFFF, OpcUa_BadInvalidArgument},
              Row{-1, OpcUa_BadInvalidArgument}}) {
            SCOPED_TRACE(testing::Message() << function.name << " " << row.length);
            Bytes result;
            EXPECT_EQ(deriveInto(result, function.derive, bytes, bytes, row.length), row.status);
            OpcUa_Key key = {OpcUa_Crypto_KeyType_Random, {0, nullptr}};
            EXPECT_EQ(
                function.derive(nullptr, bytes.data(), 16, bytes.data(), 16, row.length, &key),
                row.status);
        }
    }
}

TEST(PSha, negative_length_is_the_key_length_of_the_provider)
{
    struct Row
    {
        OpcUa_UInt32 keyLength;
        OpcUa_StatusCode status;
    };
    const Bytes bytes = pattern(16);
    for (const Function& function : functions) {
        for (const Row& row :
             {Row{0, OpcUa_BadInvalidArgument}, Row{1, OpcUa_Good}, Row{32, OpcUa_Good},
              Row{512, OpcUa_Good}, Row{513, OpcUa_BadInvalidArgument},
              Row{0xFFFFFFFF, OpcUa_BadInvalidArgument}}) {
            SCOPED_TRACE(testing::Message() << function.name << " " << row.keyLength);
            const OpcUa_CryptoProvider provider = {row.keyLength};
            Bytes result;
            EXPECT_EQ(deriveInto(result, function.derive, bytes, bytes, -1, &provider), row.status);
            if (OpcUa_IsGood(row.status)) {
                EXPECT_EQ(result.size(), row.keyLength);
            }
            // A length of its own goes before the provider's.
            EXPECT_EQ(deriveInto(result, function.derive, bytes, bytes, 20, &provider), OpcUa_Good);
            EXPECT_EQ(result.size(), 20u);
        }
    }
}

TEST(PSha, null_output_gets_the_length)
{
    const Bytes bytes = pattern(16);
    const OpcUa_CryptoProvider provider = {24};
    for (const Function& function : functions) {
        OpcUa_Key key = {OpcUa_Crypto_KeyType_Random, {0, nullptr}};
        EXPECT_EQ(function.derive(nullptr, bytes.data(), 16, bytes.data(), 16, 80, &key),
                  OpcUa_Good);
        EXPECT_EQ(key.Key.Length, 80);
        EXPECT_EQ(function.derive(&provider, bytes.data(), 16, bytes.data(), 16, -5, &key),
                  OpcUa_Good);
        EXPECT_EQ(key.Key.Length, 24);
    }
}

TEST(PSha, null_pointers_and_too_little_room_are_refused)
{
    const Bytes bytes = pattern(16);
    Bytes room(40, 0xEE);
    for (const Function& function : functions) {
        SCOPED_TRACE(function.name);
        OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, room);
        EXPECT_EQ(function.derive(nullptr, nullptr, 16, bytes.data(), 16, 40, &key),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(function.derive(nullptr, bytes.data(), 16, nullptr, 16, 40, &key),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(function.derive(nullptr, bytes.data(), 16, bytes.data(), 16, 40, nullptr),
                  OpcUa_BadInvalidArgument);
        for (const OpcUa_Int32 tooSmall : {-1, 0, 39}) {
            key.Key.Length = tooSmall;
            EXPECT_EQ(function.derive(nullptr, bytes.data(), 16, bytes.data(), 16, 40, &key),
                      OpcUa_BadInvalidArgument);
        }
    }
    EXPECT_EQ(room, Bytes(40, 0xEE));
}

TEST(PSha, empty_secret_and_empty_seed_are_allowed)
{
    const TestFolder folder;
    const Bytes bytes = pattern(8);
    OpcUa_Byte nothing = 0;
    for (const Function& function : functions) {
        SCOPED_TRACE(function.name);
        Bytes emptySecret(20);
        Bytes zeroSecret(20);
        OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, emptySecret);
        EXPECT_EQ(function.derive(nullptr, &nothing, 0, bytes.data(), 8, 20, &key), OpcUa_Good);
        key = keyOver(OpcUa_Crypto_KeyType_Random, zeroSecret);
        // A short HMAC key is padded with zeros.
        EXPECT_EQ(function.derive(nullptr, &nothing, 1, bytes.data(), 8, 20, &key), OpcUa_Good);
        EXPECT_EQ(toHex(emptySecret), toHex(zeroSecret));
        EXPECT_EQ(function.derive(nullptr, bytes.data(), 8, &nothing, 0, 20, &key), OpcUa_Good);
        EXPECT_NE(toHex(emptySecret), toHex(zeroSecret));
    }
}

TEST(PSha, every_failing_allocation_clears_the_output_or_does_no_harm)
{
    const Bytes secret = pattern(20, 5);
    const Bytes seed = pattern(20, 6);
    for (const Function& function : functions) {
        SCOPED_TRACE(function.name);
        Bytes expected;
        ASSERT_EQ(deriveInto(expected, function.derive, secret, seed, 70), OpcUa_Good);
        Bytes output;
        const std::size_t failures = forEveryFailingAllocation(
            [&] { return deriveInto(output, function.derive, secret, seed, 70); },
            [&](OpcUa_StatusCode status) {
                if (status == OpcUa_Good) {
                    EXPECT_EQ(output, expected);
                } else if (status == OpcUa_Bad) {
                    EXPECT_EQ(Bytes(output.begin(), output.begin() + 70), Bytes(70, 0));
                } else {
                    EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                    EXPECT_EQ(output, Bytes(513, 0xEE));
                }
            });
        EXPECT_GT(failures, 10u);
        EXPECT_EQ(output, expected);
    }
    expectEmptyErrorQueue();
}

} // namespace
