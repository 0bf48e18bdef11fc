#include "platform/openssl_aes.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace {

const Bytes initialVector = fromHex("000102030405060708090a0b0c0d0e0f");
const Bytes plainText = fromHex("6bc1bee22e409f96e93d7e117393172aae2d8a571e03ac9c9eb76fac45af8e51"
                                "30c81c46a35ce411e5fbc1191a0a52eff69f2445df4f9b17ad2b417be66c3710");

/// NIST SP 800-38A, F.2.1, F.2.2, F.2.5 and F.2.6.
struct Vector
{
    const char* name;
    Bytes key;
    Bytes cipherText;
};

const std::array<Vector, 2> vectors = {{
    {"AES-128", fromHex("2b7e151628aed2a6abf7158809cf4f3c"),
     fromHex("7649abac8119b246cee98e9b12e9197d5086cb9b507219ee95db113a917678b2"
             "73bed6b8e3c1743b7116e69e222295163ff1caa1681fac09120eca307586e1a7")},
    {"AES-256", fromHex("603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4"),
     fromHex("f58c4c04d6e5f1ba779eabfb5f7bfbd69cfc4e967edb808d679f777bc6702c7d"
             "39f23369a9d9bacfa530e26304231461b2eb05e2c39be9fcda6c19078c6a9d1b")},
}};

using Crypt = OpcUa_StatusCode (*)(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                   const OpcUa_Key* key, const OpcUa_Byte* initialVector,
                                   OpcUa_Byte* output, OpcUa_UInt32* outputLength);

const std::array<Crypt, 2> bothWays = {OpcUa_P_OpenSSL_AES_CBC_Encrypt,
                                       OpcUa_P_OpenSSL_AES_CBC_Decrypt};

/// Runs a cipher over the bytes; the result has the length that goes back.
Bytes run(Crypt crypt, const Bytes& input, const Bytes& key)
{
    Bytes output(input.size() + 1, 0xEE);
    const OpcUa_Key keyRecord = keyOver(OpcUa_Crypto_KeyType_Random, key);
    auto length = static_cast<OpcUa_UInt32>(input.size());
    EXPECT_EQ(crypt(input.data(), length, &keyRecord, initialVector.data(), output.data(), &length),
              OpcUa_Good);
    EXPECT_EQ(length, input.size());
    EXPECT_EQ(output.back(), 0xEE);
    output.pop_back();
    return output;
}

TEST(Aes, published_vectors_come_out_both_ways)
{
    const Bytes vectorBefore = initialVector;
    for (const Vector& row : vectors) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(toHex(run(OpcUa_P_OpenSSL_AES_CBC_Encrypt, plainText, row.key)),
                  toHex(row.cipherText));
        EXPECT_EQ(toHex(run(OpcUa_P_OpenSSL_AES_CBC_Decrypt, row.cipherText, row.key)),
                  toHex(plainText));
    }
    EXPECT_EQ(initialVector, vectorBefore);
    expectEmptyErrorQueue();
}

TEST(Aes, output_may_be_the_input)
{
    for (const Vector& row : vectors) {
        SCOPED_TRACE(row.name);
        Bytes text = plainText;
        const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, row.key);
        auto length = static_cast<OpcUa_UInt32>(text.size());
        EXPECT_EQ(OpcUa_P_OpenSSL_AES_CBC_Encrypt(text.data(), length, &key, initialVector.data(),
                                                  text.data(), &length),
                  OpcUa_Good);
        EXPECT_EQ(toHex(text), toHex(row.cipherText));
        EXPECT_EQ(OpcUa_P_OpenSSL_AES_CBC_Decrypt(text.data(), length, &key, initialVector.data(),
                                                  text.data(), &length),
                  OpcUa_Good);
        EXPECT_EQ(toHex(text), toHex(plainText));
    }
}

TEST(Aes, every_number_of_blocks_comes_back_and_other_lengths_are_refused)
{
    for (const Vector& row : vectors) {
        SCOPED_TRACE(row.name);
        const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, row.key);
        for (std::size_t size = 0; size <= 65; ++size) {
            SCOPED_TRACE(size);
            Bytes text = pattern(size + 1);
            text.pop_back();
            if (size % 16 == 0) {
                EXPECT_EQ(run(OpcUa_P_OpenSSL_AES_CBC_Decrypt,
                              run(OpcUa_P_OpenSSL_AES_CBC_Encrypt, text, row.key), row.key),
                          text);
                continue;
            }
            for (const Crypt crypt : bothWays) {
                Bytes output(96, 0xEE);
                OpcUa_UInt32 length = 96;
                EXPECT_EQ(crypt(text.data(), static_cast<OpcUa_UInt32>(size), &key,
                                initialVector.data(), output.data(), &length),
                          OpcUa_BadInvalidArgument);
                EXPECT_EQ(output, Bytes(96, 0xEE));
            }
        }
    }
    expectEmptyErrorQueue();
}

TEST(Aes, keys_have_16_or_32_bytes)
{
    const Bytes room = pattern(64);
    for (OpcUa_Int32 size = -1; size <= 64; ++size) {
        if (size == 16 || size == 32) {
            continue;
        }
        SCOPED_TRACE(size);
        const OpcUa_Key key = {OpcUa_Crypto_KeyType_Random,
                               {size, const_cast<OpcUa_Byte*>(room.data())}};
        for (const Crypt crypt : bothWays) {
            Bytes output(64, 0xEE);
            OpcUa_UInt32 length = 64;
            EXPECT_EQ(
                crypt(plainText.data(), 64, &key, initialVector.data(), output.data(), &length),
                OpcUa_Bad);
            // The key is looked at before the question for the length is answered.
            EXPECT_EQ(crypt(plainText.data(), 64, &key, initialVector.data(), nullptr, &length),
                      OpcUa_Bad);
            EXPECT_EQ(output, Bytes(64, 0xEE));
        }
    }
}

TEST(Aes, null_output_gets_the_needed_size_and_nothing_else_happens)
{
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, vectors[0].key);
    for (const Crypt crypt : bothWays) {
        for (const OpcUa_UInt32 size : {0u, 16u, 64u}) {
            OpcUa_UInt32 length = 7;
            EXPECT_EQ(crypt(plainText.data(), size, &key, nullptr, nullptr, &length), OpcUa_Good);
            EXPECT_EQ(length, size);
        }
    }
}

TEST(Aes, null_pointers_and_too_little_room_are_refused)
{
    Bytes output(64, 0xEE);
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, vectors[0].key);
    const OpcUa_Key noKey = {OpcUa_Crypto_KeyType_Random, {16, nullptr}};
    for (const Crypt crypt : bothWays) {
        OpcUa_UInt32 length = 64;
        EXPECT_EQ(crypt(nullptr, 64, &key, initialVector.data(), output.data(), &length),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(
            crypt(plainText.data(), 64, nullptr, initialVector.data(), output.data(), &length),
            OpcUa_BadInvalidArgument);
        EXPECT_EQ(crypt(plainText.data(), 64, &noKey, initialVector.data(), output.data(), &length),
                  OpcUa_Bad);
        EXPECT_EQ(crypt(plainText.data(), 64, &key, nullptr, output.data(), &length),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(crypt(plainText.data(), 64, &key, initialVector.data(), output.data(), nullptr),
                  OpcUa_BadInvalidArgument);
        for (const OpcUa_UInt32 room : {0u, 48u, 63u}) {
            length = room;
            EXPECT_EQ(
                crypt(plainText.data(), 64, &key, initialVector.data(), output.data(), &length),
                OpcUa_BadInvalidArgument);
        }
    }
    EXPECT_EQ(output, Bytes(64, 0xEE));
}

TEST(Aes, every_failing_allocation_is_a_failure_without_output)
{
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Random, vectors[1].key);
    for (const Crypt crypt : bothWays) {
        Bytes output(64);
        OpcUa_UInt32 length = 0;
        const std::size_t failures = forEveryFailingAllocation(
            [&] {
                length = 64;
                return crypt(plainText.data(), 64, &key, initialVector.data(), output.data(),
                             &length);
            },
            [&](OpcUa_StatusCode status) {
                EXPECT_EQ(length, OpcUa_IsGood(status) ? 64u : 0u);
                EXPECT_TRUE(status == OpcUa_Good || status == OpcUa_Bad);
            });
        EXPECT_GT(failures, 0u);
        EXPECT_EQ(length, 64u);
    }
    expectEmptyErrorQueue();
}

TEST(Aes, a_megabyte_agrees_with_the_openssl_program_both_ways)
{
    const TestFolder folder;
    const Bytes text = pattern(1 << 20);
    folder.write("plain", text);
    for (const Vector& row : vectors) {
        SCOPED_TRACE(row.name);
        const std::string cipher = row.key.size() == 16 ? "-aes-128-cbc" : "-aes-256-cbc";
        const std::string common =
            "enc " + cipher + " -nopad -K " + toHex(row.key) + " -iv " + toHex(initialVector);
        ASSERT_TRUE(folder.openssl(common + " -in plain -out cipher"));
        const Bytes ours = run(OpcUa_P_OpenSSL_AES_CBC_Encrypt, text, row.key);
        EXPECT_EQ(ours, folder.read("cipher"));
        folder.write("ours", ours);
        ASSERT_TRUE(folder.openssl(common + " -d -in ours -out again"));
        EXPECT_EQ(folder.read("again"), text);
    }
}

} // namespace
