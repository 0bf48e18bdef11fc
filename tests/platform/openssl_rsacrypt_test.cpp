#include "platform/openssl_rsa.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"
#include "tests/platform/rsatestkeys.h"
#include "tests/platform/rsavectors.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

struct PaddingRow
{
    const char* name; ///< As the openssl program knows it.
    OpcUa_Int32 number;
    OpcUa_UInt32 overhead;
};

constexpr std::array<PaddingRow, 3> paddings = {
    {{"pkcs1", 1, 11}, {"none", 3, 0}, {"oaep", 4, 42}}};

const RsaPair& smallPair()
{
    static const RsaPair pair = generateRsaPair(1024);
    return pair;
}

using Crypt = OpcUa_StatusCode (*)(const OpcUa_Byte* input, OpcUa_UInt32 inputLength,
                                   const OpcUa_Key* key, OpcUa_Int32 padding, OpcUa_Byte* output,
                                   OpcUa_UInt32* outputLength);

/// Asks for the length, runs, and returns what came out.
Bytes run(Crypt crypt, const Bytes& input, const OpcUa_Key& key, OpcUa_Int32 padding)
{
    OpcUa_UInt32 length = 0;
    const auto inputLength = static_cast<OpcUa_UInt32>(input.size());
    EXPECT_EQ(crypt(input.data(), inputLength, &key, padding, nullptr, &length), OpcUa_Good);
    Bytes output(length + 1, 0xEE);
    EXPECT_EQ(crypt(input.data(), inputLength, &key, padding, output.data(), &length), OpcUa_Good);
    EXPECT_EQ(output.back(), 0xEE);
    cutTo(output, static_cast<OpcUa_Int32>(length));
    return output;
}

/// Bytes whose every block is a smaller number than the modulus, for use without padding.
Bytes plainOf(std::size_t size, std::size_t block)
{
    Bytes bytes = pattern(size, static_cast<unsigned>(size));
    for (std::size_t i = 0; i < size; i += block) {
        bytes[i] = 0x11;
    }
    return bytes;
}

TEST(RsaCrypt, paddings_have_their_numbers)
{
    EXPECT_EQ(OpcUa_Rsa_PaddingPkcs1, 1);
    EXPECT_EQ(OpcUa_Rsa_PaddingNone, 3);
    EXPECT_EQ(OpcUa_Rsa_PaddingOaep, 4);
}

TEST(RsaCrypt, published_oaep_vector_is_decrypted)
{
    const Bytes der = fromHex(RsaVectors::oaepPrivateKey);
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Rsa_Private, der);
    EXPECT_EQ(toHex(run(OpcUa_P_OpenSSL_RSA_PrivateDecrypt, fromHex(RsaVectors::oaepCipherText),
                        key, OpcUa_Rsa_PaddingOaep)),
              RsaVectors::oaepPlainText);
}

TEST(RsaCrypt, any_number_of_blocks_comes_back)
{
    for (const PaddingRow& row : paddings) {
        const OpcUa_UInt32 payload = 128 - row.overhead;
        for (const OpcUa_UInt32 size : {1u, payload - 1, payload, payload + 1, 2 * payload - 1,
                                        2 * payload, 2 * payload + 1, 5 * payload}) {
            if (row.overhead == 0 && size % payload != 0) {
                continue;
            }
            SCOPED_TRACE(testing::Message() << row.name << " " << size);
            const Bytes plain = plainOf(size, payload);
            const Bytes cipher =
                run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, plain, smallPair().publicKey(), row.number);
            EXPECT_EQ(cipher.size(), (size + payload - 1) / payload * 128);
            EXPECT_EQ(toHex(run(OpcUa_P_OpenSSL_RSA_PrivateDecrypt, cipher,
                                smallPair().privateKey(), row.number)),
                      toHex(plain));
        }
    }
    expectEmptyErrorQueue();
}

TEST(RsaCrypt, null_output_gets_the_sum_of_the_blocks)
{
    struct Row
    {
        OpcUa_Int32 padding;
        OpcUa_UInt32 input;
        OpcUa_UInt32 encrypted;
    };
    const Bytes input = pattern(400);
    const OpcUa_Key publicKey = smallPair().publicKey();
    for (const Row& row : {Row{1, 1, 128}, Row{1, 117, 128}, Row{1, 118, 256}, Row{1, 351, 384},
                           Row{1, 352, 512}, Row{3, 128, 128}, Row{3, 129, 256}, Row{4, 86, 128},
                           Row{4, 87, 256}, Row{4, 172, 256}, Row{4, 173, 384}}) {
        SCOPED_TRACE(testing::Message() << row.padding << " " << row.input);
        OpcUa_UInt32 length = 0;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(input.data(), row.input, &publicKey,
                                                    row.padding, nullptr, &length),
                  OpcUa_Good);
        EXPECT_EQ(length, row.encrypted);
    }
    const OpcUa_Key privateKey = smallPair().privateKey();
    for (const PaddingRow& row : paddings) {
        OpcUa_UInt32 length = 0;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateDecrypt(input.data(), 384, &privateKey, row.number,
                                                     nullptr, &length),
                  OpcUa_Good);
        EXPECT_EQ(length, 3 * (128 - row.overhead));
    }
}

TEST(RsaCrypt, empty_input_is_an_invalid_argument)
{
    Bytes output(128, 0xEE);
    const OpcUa_Key publicKey = smallPair().publicKey();
    const OpcUa_Key privateKey = smallPair().privateKey();
    for (const PaddingRow& row : paddings) {
        OpcUa_UInt32 length = 128;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(output.data(), 0, &publicKey, row.number,
                                                    output.data(), &length),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(output.data(), 0, &publicKey, row.number,
                                                    nullptr, &length),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateDecrypt(output.data(), 0, &privateKey, row.number,
                                                     output.data(), &length),
                  OpcUa_BadInvalidArgument);
    }
    EXPECT_EQ(output, Bytes(128, 0xEE));
}

TEST(RsaCrypt, decryption_takes_whole_blocks_alone)
{
    const Bytes input = pattern(400);
    Bytes output(400);
    const OpcUa_Key key = smallPair().privateKey();
    for (const OpcUa_UInt32 size : {1u, 127u, 129u, 255u, 257u, 400u}) {
        SCOPED_TRACE(size);
        OpcUa_UInt32 length = 400;
        EXPECT_EQ(
            OpcUa_P_OpenSSL_RSA_PrivateDecrypt(input.data(), size, &key, 4, output.data(), &length),
            OpcUa_BadInvalidArgument);
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateDecrypt(input.data(), size, &key, 4, nullptr, &length),
                  OpcUa_BadInvalidArgument);
    }
}

TEST(RsaCrypt, other_paddings_are_not_supported)
{
    const Bytes input = pattern(128);
    Bytes output(128);
    const OpcUa_Key publicKey = smallPair().publicKey();
    const OpcUa_Key privateKey = smallPair().privateKey();
    for (const OpcUa_Int32 padding : {-1, 0, 2, 5, 6, 7, 0x7FFFFFFF}) {
        SCOPED_TRACE(padding);
        OpcUa_UInt32 length = 128;
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(input.data(), 10, &publicKey, padding,
                                                    output.data(), &length),
                  OpcUa_BadNotSupported);
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateDecrypt(input.data(), 128, &privateKey, padding,
                                                     output.data(), &length),
                  OpcUa_BadNotSupported);
    }
}

TEST(RsaCrypt, block_that_the_library_refuses_is_a_failure_without_output)
{
    const OpcUa_Key publicKey = smallPair().publicKey();
    const OpcUa_Key privateKey = smallPair().privateKey();
    Bytes output(512, 0xEE);
    OpcUa_UInt32 length = 512;
    // Without padding the last block can't be shorter; the first one is wiped again.
    const Bytes oneAndAHalf = plainOf(192, 128);
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(oneAndAHalf.data(), 192, &publicKey, 3,
                                                output.data(), &length),
              OpcUa_Bad);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(Bytes(output.begin(), output.begin() + 128), Bytes(128, 0));

    // A number that isn't below the modulus.
    const Bytes tooLarge(128, 0xFF);
    length = 512;
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(tooLarge.data(), 128, &publicKey, 3, output.data(),
                                                &length),
              OpcUa_Bad);
    EXPECT_EQ(length, 0u);

    // The second block was changed on its way.
    Bytes cipher =
        run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, pattern(172), publicKey, OpcUa_Rsa_PaddingOaep);
    cipher[200] = static_cast<OpcUa_Byte>(cipher[200] ^ 1);
    length = 512;
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateDecrypt(cipher.data(), 256, &privateKey, 4, output.data(),
                                                 &length),
              OpcUa_Bad);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(Bytes(output.begin(), output.begin() + 86), Bytes(86, 0));
    expectEmptyErrorQueue();
}

TEST(RsaCrypt, another_key_does_not_decrypt)
{
    const Bytes cipher = run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, fromText("secret"),
                             smallPair().publicKey(), OpcUa_Rsa_PaddingOaep);
    const RsaPair other = generateRsaPair(1024);
    const OpcUa_Key key = other.privateKey();
    Bytes output(128);
    OpcUa_UInt32 length = 128;
    EXPECT_EQ(
        OpcUa_P_OpenSSL_RSA_PrivateDecrypt(cipher.data(), 128, &key, 4, output.data(), &length),
        OpcUa_Bad);
    EXPECT_EQ(length, 0u);
}

TEST(RsaCrypt, arguments_are_checked)
{
    const Bytes input = pattern(128);
    const Bytes garbage = pattern(140);
    Bytes output(128, 0xEE);
    const OpcUa_Key publicKey = smallPair().publicKey();
    const OpcUa_Key privateKey = smallPair().privateKey();
    const OpcUa_Key empty = {6, {0, over(garbage).Data}};
    OpcUa_UInt32 length = 128;
    const auto encrypt = [&](const OpcUa_Byte* data, const OpcUa_Key* key, OpcUa_UInt32* size) {
        return OpcUa_P_OpenSSL_RSA_PublicEncrypt(data, 10, key, 1, output.data(), size);
    };
    const auto decrypt = [&](const OpcUa_Byte* data, const OpcUa_Key* key, OpcUa_UInt32* size) {
        return OpcUa_P_OpenSSL_RSA_PrivateDecrypt(data, 128, key, 1, output.data(), size);
    };
    EXPECT_EQ(encrypt(nullptr, &publicKey, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(encrypt(input.data(), nullptr, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(encrypt(input.data(), &privateKey, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(encrypt(input.data(), &empty, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(encrypt(input.data(), &publicKey, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(decrypt(nullptr, &privateKey, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(decrypt(input.data(), nullptr, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(decrypt(input.data(), &publicKey, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(decrypt(input.data(), &privateKey, nullptr), OpcUa_BadInvalidArgument);
    const OpcUa_Key badPublic = keyOver(6, garbage);
    const OpcUa_Key badPrivate = keyOver(5, garbage);
    EXPECT_EQ(encrypt(input.data(), &badPublic, &length), OpcUa_BadUnexpectedError);
    EXPECT_EQ(decrypt(input.data(), &badPrivate, &length), OpcUa_BadUnexpectedError);
    for (const OpcUa_UInt32 tooSmall : {0u, 1u, 127u}) {
        length = tooSmall;
        EXPECT_EQ(encrypt(input.data(), &publicKey, &length), OpcUa_BadInvalidArgument);
    }
    EXPECT_EQ(output, Bytes(128, 0xEE));
    expectEmptyErrorQueue();
}

TEST(RsaCrypt, sum_of_blocks_above_32_bits_is_refused)
{
    // Only the length is looked at, since the output is too small in any case.
    const OpcUa_Byte first = 0;
    const OpcUa_Key key = smallPair().publicKey();
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PublicEncrypt(&first, 0xFFFFFFFF, &key, 4, nullptr, &length),
              OpcUa_BadInvalidArgument);
}

TEST(RsaCrypt, decryption_wants_room_for_what_comes_out)
{
    const Bytes plain = pattern(100);
    const OpcUa_Key key = smallPair().privateKey();
    const Bytes cipher = run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, plain, smallPair().publicKey(), 4);
    ASSERT_EQ(cipher.size(), 256u);
    for (const OpcUa_UInt32 room : {0u, 50u, 86u, 99u}) {
        SCOPED_TRACE(room);
        Bytes output(100, 0xEE);
        OpcUa_UInt32 length = room;
        EXPECT_EQ(
            OpcUa_P_OpenSSL_RSA_PrivateDecrypt(cipher.data(), 256, &key, 4, output.data(), &length),
            OpcUa_BadInvalidArgument);
        EXPECT_EQ(length, 0u);
        EXPECT_EQ(Bytes(output.begin() + room, output.end()), Bytes(100 - room, 0xEE));
    }
    Bytes output(100);
    OpcUa_UInt32 length = 100;
    EXPECT_EQ(
        OpcUa_P_OpenSSL_RSA_PrivateDecrypt(cipher.data(), 256, &key, 4, output.data(), &length),
        OpcUa_Good);
    EXPECT_EQ(output, plain);
}

TEST(RsaCrypt, openssl_program_decrypts_ours_and_we_decrypt_its)
{
    const TestFolder folder;
    for (const unsigned bits : {1024u, 2048u, 3072u}) {
        const RsaPair pair = makeRsaPairByProgram(bits);
        folder.write("private.der", pair.privateDer);
        for (const PaddingRow& row : paddings) {
            SCOPED_TRACE(testing::Message() << bits << " " << row.name);
            const Bytes plain = plainOf(bits / 8 - row.overhead, bits / 8);
            const std::string common = std::string(" -keyform DER -inkey private.der -pkeyopt "
                                                   "rsa_padding_mode:") +
                                       row.name;
            folder.write("ours", run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, plain, pair.publicKey(),
                                     row.number));
            ASSERT_TRUE(folder.openssl("pkeyutl -decrypt -in ours -out plain" + common));
            EXPECT_EQ(toHex(folder.read("plain")), toHex(plain));

            folder.write("plain", plain);
            ASSERT_TRUE(folder.openssl("pkeyutl -encrypt -in plain -out theirs" + common));
            EXPECT_EQ(toHex(run(OpcUa_P_OpenSSL_RSA_PrivateDecrypt, folder.read("theirs"),
                                pair.privateKey(), row.number)),
                      toHex(plain));
        }
    }
}

TEST(RsaCrypt, every_failing_allocation_is_a_failure_without_output)
{
    const Bytes plain = pattern(20);
    const OpcUa_Key publicKey = smallPair().publicKey();
    const OpcUa_Key privateKey = smallPair().privateKey();
    const Bytes cipher = run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, plain, publicKey, 4);
    Bytes output(128);
    OpcUa_UInt32 length = 0;
    const auto verify = [&](OpcUa_StatusCode status) {
        EXPECT_TRUE(status == OpcUa_Good || status == OpcUa_Bad || status == OpcUa_BadOutOfMemory ||
                    status == OpcUa_BadUnexpectedError)
            << std::hex << status;
    };
    EXPECT_GT(forEveryFailingAllocation(
                  [&] {
                      length = 128;
                      return OpcUa_P_OpenSSL_RSA_PublicEncrypt(plain.data(), 20, &publicKey, 4,
                                                               output.data(), &length);
                  },
                  verify),
              5u);
    EXPECT_EQ(length, 128u);
    EXPECT_GT(forEveryFailingAllocation(
                  [&] {
                      length = 128;
                      return OpcUa_P_OpenSSL_RSA_PrivateDecrypt(cipher.data(), 128, &privateKey, 4,
                                                                output.data(), &length);
                  },
                  verify),
              5u);
    EXPECT_EQ(Bytes(output.begin(), output.begin() + 20), plain);
    expectEmptyErrorQueue();
}

TEST(RsaCrypt, eight_threads_work_with_one_key)
{
    inEightThreads([] {
        for (unsigned round = 0; round < 10; ++round) {
            const Bytes plain = pattern(60, round);
            const Bytes cipher =
                run(OpcUa_P_OpenSSL_RSA_PublicEncrypt, plain, smallPair().publicKey(), 4);
            EXPECT_EQ(run(OpcUa_P_OpenSSL_RSA_PrivateDecrypt, cipher, smallPair().privateKey(), 4),
                      plain);
        }
    });
}

} // namespace
