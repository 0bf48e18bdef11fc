#include "platform/openssl_digest.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>
#include <openssl/err.h>

#include <array>

namespace {

using Digest = OpcUa_StatusCode (*)(const OpcUa_Byte* data, OpcUa_UInt32 length,
                                    OpcUa_Byte* result);

/// FIPS 180-4 and its published examples: one, two and many blocks, and the empty text.
struct DigestRow
{
    const char* name;
    Digest digest;
    OpcUa_UInt32 size;
    std::array<const char*, 5> results; ///< In the order of the messages below.
};

const std::array<DigestRow, 5> digests = {{
    {"SHA-1",
     OpcUa_P_OpenSSL_SHA1_Generate,
     20,
     {"da39a3ee5e6b4b0d3255bfef95601890afd80709", "a9993e364706816aba3e25717850c26c9cd0d89d",
      "84983e441c3bd26ebaae4aa1f95129e5e54670f1", "a49b2446a02c645bf419f995b67091253a04a259",
      "34aa973cd4c4daa4f61eeb2bdbad27316534016f"}},
    {"SHA-224",
     OpcUa_P_OpenSSL_SHA224_Generate,
     28,
     {"d14a028c2a3a2bc9476102bb288234c415a2b01f828ea62ac5b3e42f",
      "23097d223405d8228642a477bda255b32aadbce4bda0b3f7e36c9da7",
      "75388b16512776cc5dba5da1fd890150b0c6455cb4f58b1952522525",
      "c97ca9a559850ce97a04a96def6d99a9e0e0e2ab14e6b8df265fc0b3",
      "20794655980c91d8bbb4c1ea97618a4bf03f42581948b2ee4ee7ad67"}},
    {"SHA-256",
     OpcUa_P_OpenSSL_SHA256_Generate,
     32,
     {"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855",
      "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad",
      "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
      "cf5b16a778af8380036ce59e7b0492370b249b11e8f07a51afac45037afee9d1",
      "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}},
    {"SHA-384",
     OpcUa_P_OpenSSL_SHA384_Generate,
     48,
     {"38b060a751ac96384cd9327eb1b1e36a21fdb71114be07434c0cc7bf63f6e1da"
      "274edebfe76f65fbd51ad2f14898b95b",
      "cb00753f45a35e8bb5a03d699ac65007272c32ab0eded1631a8b605a43ff5bed"
      "8086072ba1e7cc2358baeca134c825a7",
      "3391fdddfc8dc7393707a65b1b4709397cf8b1d162af05abfe8f450de5f36bc6"
      "b0455a8520bc4e6f5fe95b1fe3c8452b",
      "09330c33f71147e83d192fc782cd1b4753111b173b3b05d22fa08086e3b0f712"
      "fcc7c71a557e2db966c3e9fa91746039",
      "9d0e1809716474cb086e834e310a4a1ced149e9c00f248527972cec5704c2a5b"
      "07b8b3dc38ecc4ebae97ddd87f3d8985"}},
    {"SHA-512",
     OpcUa_P_OpenSSL_SHA512_Generate,
     64,
     {"cf83e1357eefb8bdf1542850d66d8007d620e4050b5715dc83f4a921d36ce9ce"
      "47d0d13c5d85f2b0ff8318d2877eec2f63b931bd47417a81a538327af927da3e",
      "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a"
      "2192992a274fc1a836ba3c23a3feebbd454d4423643ce80e2a9ac94fa54ca49f",
      "204a8fc6dda82f0a0ced7beb8e08a41657c16ef468b228a8279be331a703c335"
      "96fd15c13b1b07f9aa1d3bea57789ca031ad85c7a71dd70354ec631238ca3445",
      "8e959b75dae313da8cf4f72814fc143f8f7779c6eb9f7fa17299aeadb6889018"
      "501d289e4900f7e4331b99dec4b5433ac7d329eeb6dd26545e96e55b874be909",
      "e718483d0ce769644e2e42c7bc15b4638e1f98b13b2044285632a803afa973eb"
      "de0ff244877ea60a4cb0432ce577c31beb009c5c2c49aa2e4eadb217ad8cc09b"}},
}};

const std::array<std::string, 5> messages = {
    "", "abc", "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
    "abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmnhijklmnoijklmnopjklmnopqklmnopqr"
    "lmnopqrsmnopqrstnopqrstu",
    std::string(1000000, 'a')};

const OpcUa_Byte* bytesOf(const std::string& text)
{
    return reinterpret_cast<const OpcUa_Byte*>(text.c_str());
}

TEST(Digest, sizes_are_those_of_the_algorithms)
{
    EXPECT_EQ(OpcUa_Sha1_Size, 20u);
    EXPECT_EQ(OpcUa_Sha224_Size, 28u);
    EXPECT_EQ(OpcUa_Sha256_Size, 32u);
    EXPECT_EQ(OpcUa_Sha384_Size, 48u);
    EXPECT_EQ(OpcUa_Sha512_Size, 64u);
}

TEST(Digest, published_examples_come_out_and_nothing_behind_them)
{
    for (const DigestRow& row : digests) {
        SCOPED_TRACE(row.name);
        for (std::size_t i = 0; i < messages.size(); ++i) {
            Bytes result(row.size + 1, 0xEE);
            EXPECT_EQ(row.digest(bytesOf(messages[i]),
                                 static_cast<OpcUa_UInt32>(messages[i].size()), result.data()),
                      OpcUa_Good);
            EXPECT_EQ(result.back(), 0xEE);
            result.pop_back();
            EXPECT_EQ(toHex(result), row.results[i]);
        }
    }
    expectEmptyErrorQueue();
}

TEST(Digest, null_data_are_an_invalid_argument_and_a_null_result_a_failure)
{
    Bytes result(64);
    for (const DigestRow& row : digests) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.digest(nullptr, 3, result.data()), OpcUa_BadInvalidArgument);
        EXPECT_EQ(row.digest(nullptr, 0, nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(row.digest(bytesOf("abc"), 3, nullptr), OpcUa_Bad);
    }
}

TEST(Digest, every_failing_allocation_is_a_failure_or_does_no_harm)
{
    for (const DigestRow& row : digests) {
        SCOPED_TRACE(row.name);
        Bytes result(row.size);
        const std::size_t failures = forEveryFailingAllocation(
            [&] {
                result.assign(row.size, 0);
                return row.digest(bytesOf("abc"), 3, result.data());
            },
            [&](OpcUa_StatusCode status) {
                if (status != OpcUa_Bad) {
                    EXPECT_EQ(status, OpcUa_Good);
                    EXPECT_EQ(toHex(result), row.results[1]);
                }
            });
        EXPECT_GT(failures, 0u);
        EXPECT_EQ(toHex(result), row.results[1]);
    }
    expectEmptyErrorQueue();
}

using Hmac = OpcUa_StatusCode (*)(const OpcUa_Byte* data, OpcUa_UInt32 length, const OpcUa_Key* key,
                                  OpcUa_CryptoBytes* result);

/// RFC 2202 for SHA-1 and RFC 4231 for the others.
struct HmacRow
{
    const char* name;
    Hmac hmac;
    OpcUa_UInt32 size;
    std::array<const char*, 6> results; ///< In the order of the cases below.
};

struct HmacCase
{
    Bytes key;
    Bytes data;
};

const char* const longKeyText = "Test Using Larger Than Block-Size Key - Hash Key First";

const std::array<HmacCase, 6> hmacCases = {{
    {Bytes(20, 0x0b), fromText("Hi There")},
    {fromText("Jefe"), fromText("what do ya want for nothing?")},
    {Bytes(20, 0xaa), Bytes(50, 0xdd)},
    {fromHex("0102030405060708090a0b0c0d0e0f10111213141516171819"), Bytes(50, 0xcd)},
    {Bytes(131, 0xaa), fromText(longKeyText)},
    {Bytes(80, 0xaa), fromText(longKeyText)},
}};

const std::array<HmacRow, 5> hmacs = {{
    {"SHA-1",
     OpcUa_P_OpenSSL_HMAC_SHA1_Generate,
     20,
     {"b617318655057264e28bc0b6fb378c8ef146be00", "effcdf6ae5eb2fa2d27416d5f184df9c259a7c79",
      "125d7342b9ac11cd91a39af48aa17b4f63f175d3", "4c9007f4026250c6bc8414f9bf50c86c2d7235da",
      nullptr, "aa4ae5e15272d00e95705637ce8a3b55ed402112"}},
    {"SHA-224",
     OpcUa_P_OpenSSL_HMAC_SHA224_Generate,
     28,
     {"896fb1128abbdf196832107cd49df33f47b4b1169912ba4f53684b22",
      "a30e01098bc6dbbf45690f3a7e9e6d0f8bbea2a39e6148008fd05e44",
      "7fb3cb3588c6c1f6ffa9694d7d6ad2649365b0c1f65d69d1ec8333ea",
      "6c11506874013cac6a2abc1bb382627cec6a90d86efc012de7afec5a",
      "95e9a0db962095adaebe9b2d6f0dbce2d499f112f2d2b7273fa6870e", nullptr}},
    {"SHA-256",
     OpcUa_P_OpenSSL_HMAC_SHA256_Generate,
     32,
     {"b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7",
      "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843",
      "773ea91e36800e46854db8ebd09181a72959098b3ef8c122d9635514ced565fe",
      "82558a389a443c0ea4cc819899f2083a85f0faa3e578f8077a2e3ff46729665b",
      "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54", nullptr}},
    {"SHA-384",
     OpcUa_P_OpenSSL_HMAC_SHA384_Generate,
     48,
     {"afd03944d84895626b0825f4ab46907f15f9dadbe4101ec682aa034c7cebc59c"
      "faea9ea9076ede7f4af152e8b2fa9cb6",
      "af45d2e376484031617f78d2b58a6b1b9c7ef464f5a01b47e42ec3736322445e"
      "8e2240ca5e69e2c78b3239ecfab21649",
      "88062608d3e6ad8a0aa2ace014c8a86f0aa635d947ac9febe83ef4e55966144b"
      "2a5ab39dc13814b94e3ab6e101a34f27",
      "3e8a69b7783c25851933ab6290af6ca77a9981480850009cc5577c6e1f573b4e"
      "6801dd23c4a7d679ccf8a386c674cffb",
      "4ece084485813e9088d2c63a041bc5b44f9ef1012a2b588f3cd11f05033ac4c6"
      "0c2ef6ab4030fe8296248df163f44952",
      nullptr}},
    {"SHA-512",
     OpcUa_P_OpenSSL_HMAC_SHA512_Generate,
     64,
     {"87aa7cdea5ef619d4ff0b4241a1d6cb02379f4e2ce4ec2787ad0b30545e17cde"
      "daa833b7d6b8a702038b274eaea3f4e4be9d914eeb61f1702e696c203a126854",
      "164b7a7bfcf819e2e395fbe73b56e0a387bd64222e831fd610270cd7ea250554"
      "9758bf75c05a994a6d034f65f8f0e6fdcaeab1a34d4a6b4b636e070a38bce737",
      "fa73b0089d56a284efb0f0756c890be9b1b5dbdd8ee81a3655f83e33b2279d39"
      "bf3e848279a722c806b485a47e67c807b946a337bee8942674278859e13292fb",
      "b0ba465637458c6990e5a8c5f61d4af7e576d97ff94b872de76f8050361ee3db"
      "a91ca5c11aa25eb4d679275cc5788063a5f19741120c4f2de2adebeb10a298dd",
      "80b24263c7c1a3ebb71493c1dd7be8b49b46d1f41b4aeec1121b013783f8f352"
      "6b56d037e05f2598bd0fd2215d6a1e5295e64f73f63f0aec8b915a985d786598",
      nullptr}},
}};

OpcUa_StatusCode generate(const HmacRow& row, const HmacCase& input, Bytes& result)
{
    result.assign(row.size + 1, 0xEE);
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, input.key);
    OpcUa_CryptoBytes output = over(result);
    const OpcUa_StatusCode status =
        row.hmac(input.data.data(), static_cast<OpcUa_UInt32>(input.data.size()), &key, &output);
    EXPECT_EQ(output.Length, static_cast<OpcUa_Int32>(row.size));
    EXPECT_EQ(result.back(), 0xEE);
    result.pop_back();
    return status;
}

TEST(Digest, errors_that_a_caller_left_in_the_queue_stay)
{
    ERR_raise(ERR_LIB_USER, 42);
    const unsigned long left = ERR_peek_last_error();
    std::array<OpcUa_Byte, 20> result{};
    {
        const AllocationFaults faults(0);
        EXPECT_EQ(OpcUa_P_OpenSSL_SHA1_Generate(bytesOf("abc"), 3, result.data()), OpcUa_Bad);
    }
    EXPECT_EQ(ERR_peek_last_error(), left);
    EXPECT_EQ(ERR_get_error(), left);
    expectEmptyErrorQueue();
}

TEST(Hmac, published_vectors_come_out_and_nothing_behind_them)
{
    for (const HmacRow& row : hmacs) {
        for (std::size_t i = 0; i < hmacCases.size(); ++i) {
            SCOPED_TRACE(testing::Message() << row.name << " case " << i);
            if (row.results[i] != nullptr) {
                Bytes result;
                EXPECT_EQ(generate(row, hmacCases[i], result), OpcUa_Good);
                EXPECT_EQ(toHex(result), row.results[i]);
            }
        }
    }
    expectEmptyErrorQueue();
}

TEST(Hmac, null_output_buffer_gets_the_size_of_the_table)
{
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, hmacCases[0].key);
    for (const HmacRow& row : hmacs) {
        SCOPED_TRACE(row.name);
        for (const OpcUa_Int32 before : {-1, 0, 1000}) {
            OpcUa_CryptoBytes output = {before, nullptr};
            EXPECT_EQ(row.hmac(bytesOf("abc"), 3, &key, &output), OpcUa_Good);
            EXPECT_EQ(output.Length, static_cast<OpcUa_Int32>(row.size));
        }
    }
}

TEST(Hmac, arguments_are_checked)
{
    Bytes room(64);
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, hmacCases[0].key);
    const OpcUa_Key noData = {OpcUa_Crypto_KeyType_Random, {4, nullptr}};
    const OpcUa_Key negative = {OpcUa_Crypto_KeyType_Random, {-1, room.data()}};
    for (const HmacRow& row : hmacs) {
        SCOPED_TRACE(row.name);
        OpcUa_CryptoBytes output = over(room);
        EXPECT_EQ(row.hmac(nullptr, 3, &key, &output), OpcUa_BadInvalidArgument);
        EXPECT_EQ(row.hmac(bytesOf("abc"), 3, nullptr, &output), OpcUa_BadInvalidArgument);
        EXPECT_EQ(row.hmac(bytesOf("abc"), 3, &noData, &output), OpcUa_BadInvalidArgument);
        EXPECT_EQ(row.hmac(bytesOf("abc"), 3, &negative, &output), OpcUa_BadInvalidArgument);
        EXPECT_EQ(row.hmac(bytesOf("abc"), 3, &key, nullptr), OpcUa_BadInvalidArgument);
        for (const OpcUa_Int32 tooSmall : {-1, 0, static_cast<OpcUa_Int32>(row.size) - 1}) {
            output.Length = tooSmall;
            EXPECT_EQ(row.hmac(bytesOf("abc"), 3, &key, &output), OpcUa_BadInvalidArgument);
        }
        output.Length = static_cast<OpcUa_Int32>(row.size);
        EXPECT_EQ(row.hmac(bytesOf("abc"), 3, &key, &output), OpcUa_Good);
    }
}

TEST(Hmac, empty_key_and_empty_data_are_allowed)
{
    // RFC 2104 pads a short key with zeros, so that a key of one zero byte is the same.
    for (const HmacRow& row : hmacs) {
        SCOPED_TRACE(row.name);
        Bytes zero(1, 0);
        Bytes empty(row.size);
        Bytes padded(row.size);
        OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, zero);
        OpcUa_CryptoBytes output = over(padded);
        EXPECT_EQ(row.hmac(bytesOf(""), 0, &key, &output), OpcUa_Good);
        key.Key.Length = 0;
        output = over(empty);
        EXPECT_EQ(row.hmac(bytesOf(""), 0, &key, &output), OpcUa_Good);
        EXPECT_EQ(toHex(empty), toHex(padded));
    }
    expectEmptyErrorQueue();
}

TEST(Hmac, every_failing_allocation_is_a_failure_or_does_no_harm)
{
    for (const HmacRow& row : hmacs) {
        SCOPED_TRACE(row.name);
        Bytes result;
        const std::size_t failures =
            forEveryFailingAllocation([&] { return generate(row, hmacCases[1], result); },
                                      [&](OpcUa_StatusCode status) {
                                          if (status != OpcUa_Bad) {
                                              EXPECT_EQ(status, OpcUa_Good);
                                              EXPECT_EQ(toHex(result), row.results[1]);
                                          }
                                      });
        EXPECT_GT(failures, 0u);
        EXPECT_EQ(toHex(result), row.results[1]);
    }
    expectEmptyErrorQueue();
}

TEST(Hmac, eight_threads_get_the_same_results)
{
    inEightThreads([] {
        for (int round = 0; round < 20; ++round) {
            for (const HmacRow& row : hmacs) {
                Bytes result;
                EXPECT_EQ(generate(row, hmacCases[3], result), OpcUa_Good);
                EXPECT_EQ(toHex(result), row.results[3]);
            }
        }
    });
}

} // namespace
