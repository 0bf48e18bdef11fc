#include "platform/openssl_digest.h"
#include "platform/openssl_rsa.h"
#include "platform/status.h"
#include "tests/platform/cryptosupport.h"
#include "tests/platform/rsatestkeys.h"
#include "tests/platform/rsavectors.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using testing::IsEmpty;

/// The library's numbers of the digests.
struct DigestRow
{
    const char* name;
    OpcUa_Int32 type;
    OpcUa_UInt32 size;
    OpcUa_StatusCode (*digest)(const OpcUa_Byte* data, OpcUa_UInt32 length, OpcUa_Byte* result);
};

const std::array<DigestRow, 5> digests = {{{"sha1", 64, 20, OpcUa_P_OpenSSL_SHA1_Generate},
                                           {"sha224", 675, 28, OpcUa_P_OpenSSL_SHA224_Generate},
                                           {"sha256", 672, 32, OpcUa_P_OpenSSL_SHA256_Generate},
                                           {"sha384", 673, 48, OpcUa_P_OpenSSL_SHA384_Generate},
                                           {"sha512", 674, 64, OpcUa_P_OpenSSL_SHA512_Generate}}};

constexpr OpcUa_Int32 sha256 = 672;

const RsaPair& testPair()
{
    static const RsaPair pair = {fromHex(RsaVectors::signingPublicKey),
                                 fromHex(RsaVectors::signingPrivateKey)};
    return pair;
}

Bytes digestOf(const DigestRow& row, const Bytes& text)
{
    Bytes digest(row.size);
    EXPECT_EQ(row.digest(text.data(), static_cast<OpcUa_UInt32>(text.size()), digest.data()),
              OpcUa_Good);
    return digest;
}

Bytes sign(const Bytes& digest, OpcUa_Int32 type, const RsaPair& pair)
{
    const OpcUa_Key key = pair.privateKey();
    OpcUa_CryptoBytes signature = {0, nullptr};
    const auto length = static_cast<OpcUa_UInt32>(digest.size());
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), length, &key, type, &signature),
              OpcUa_Good);
    Bytes bytes(static_cast<std::size_t>(signature.Length) + 1, 0xEE);
    signature.Data = bytes.data();
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), length, &key, type, &signature),
              OpcUa_Good);
    EXPECT_EQ(bytes.back(), 0xEE);
    cutTo(bytes, signature.Length);
    return bytes;
}

OpcUa_StatusCode verify(const Bytes& digest, OpcUa_Int32 type, const RsaPair& pair,
                        const Bytes& signature)
{
    const OpcUa_Key key = pair.publicKey();
    const OpcUa_CryptoBytes record = over(signature);
    return OpcUa_P_OpenSSL_RSA_PublicVerify(digest.data(), static_cast<OpcUa_UInt32>(digest.size()),
                                            &key, type, &record);
}

TEST(RsaSign, published_signature_comes_out_and_is_verified)
{
    const Bytes digest = digestOf(digests[2], fromText(RsaVectors::signedText));
    EXPECT_EQ(toHex(sign(digest, sha256, testPair())), RsaVectors::signature);
    EXPECT_EQ(verify(digest, sha256, testPair(), fromHex(RsaVectors::signature)), OpcUa_Good);
    expectEmptyErrorQueue();
}

TEST(RsaSign, every_changed_byte_of_the_signature_is_found)
{
    const Bytes digest = digestOf(digests[2], fromText(RsaVectors::signedText));
    const Bytes good = fromHex(RsaVectors::signature);
    for (std::size_t i = 0; i < good.size(); ++i) {
        Bytes changed = good;
        changed[i] = static_cast<OpcUa_Byte>(changed[i] ^ 0x20);
        ASSERT_EQ(verify(digest, sha256, testPair(), changed), OpcUa_BadSignatureInvalid) << i;
    }
    expectEmptyErrorQueue();
}

TEST(RsaSign, other_digest_other_type_and_other_key_are_found)
{
    const Bytes digest = digestOf(digests[2], fromText(RsaVectors::signedText));
    const Bytes signature = fromHex(RsaVectors::signature);
    Bytes changed = digest;
    changed[0] = static_cast<OpcUa_Byte>(changed[0] ^ 1);
    EXPECT_EQ(verify(changed, sha256, testPair(), signature), OpcUa_BadSignatureInvalid);
    EXPECT_EQ(verify(digest, 64, testPair(), signature), OpcUa_BadSignatureInvalid);
    EXPECT_EQ(verify(digest, 0, testPair(), signature), OpcUa_BadSignatureInvalid);
    EXPECT_EQ(verify(digest, 999999, testPair(), signature), OpcUa_BadSignatureInvalid);
    EXPECT_EQ(verify(digest, sha256, generateRsaPair(2048), signature), OpcUa_BadSignatureInvalid);
    EXPECT_EQ(OpcUa_BadSignatureInvalid, 0x81010000u);
    expectEmptyErrorQueue();
}

TEST(RsaSign, signatures_agree_with_the_openssl_program)
{
    const TestFolder folder;
    const Bytes text = pattern(1000);
    folder.write("text", text);
    folder.write("private.der", testPair().privateDer);
    ASSERT_TRUE(folder.openssl("rsa -inform DER -in private.der -out private.pem"));
    ASSERT_TRUE(folder.openssl("rsa -inform DER -in private.der -pubout -out public.pem"));
    for (const DigestRow& row : digests) {
        SCOPED_TRACE(row.name);
        const Bytes digest = digestOf(row, text);
        const Bytes ours = sign(digest, row.type, testPair());
        folder.write("ours", ours);
        const std::string dgst = std::string("dgst -") + row.name;
        EXPECT_TRUE(folder.openssl(dgst + " -verify public.pem -signature ours text"));
        ASSERT_TRUE(folder.openssl(dgst + " -sign private.pem -out theirs text"));
        // This kind of signature has no random part.
        EXPECT_EQ(toHex(folder.read("theirs")), toHex(ours));
        EXPECT_EQ(verify(digest, row.type, testPair(), folder.read("theirs")), OpcUa_Good);
    }
}

TEST(RsaSign, null_signature_data_get_the_size_of_the_key)
{
    const Bytes digest(32, 7);
    for (const unsigned bits : {1024u, 2048u}) {
        const RsaPair pair = generateRsaPair(bits);
        const OpcUa_Key key = pair.privateKey();
        OpcUa_CryptoBytes signature = {-1, nullptr};
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), 32, &key, sha256, &signature),
                  OpcUa_Good);
        EXPECT_EQ(signature.Length, static_cast<OpcUa_Int32>(bits / 8));
    }
}

TEST(RsaSign, output_needs_the_size_of_the_key)
{
    const Bytes digest(32, 7);
    Bytes room(256, 0xEE);
    const OpcUa_Key key = testPair().privateKey();
    for (const OpcUa_Int32 size : {-1, 0, 1, 255}) {
        SCOPED_TRACE(size);
        OpcUa_CryptoBytes signature = {size, room.data()};
        EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), 32, &key, sha256, &signature),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(signature.Length, size);
    }
    EXPECT_EQ(room, Bytes(256, 0xEE));
}

TEST(RsaSign, null_pointers_and_keys_of_the_wrong_type_are_refused)
{
    const Bytes digest(32, 7);
    Bytes room(256);
    const OpcUa_Key publicKey = testPair().publicKey();
    const OpcUa_Key privateKey = testPair().privateKey();
    OpcUa_CryptoBytes signature = over(room);
    const OpcUa_CryptoBytes nothing = {256, nullptr};
    const OpcUa_CryptoBytes empty = {0, room.data()};
    using Status = OpcUa_StatusCode;
    const Status invalid = OpcUa_BadInvalidArgument;
    const auto signWith = [&](const OpcUa_Byte* data, const OpcUa_Key* key,
                              OpcUa_CryptoBytes* output) {
        return OpcUa_P_OpenSSL_RSA_PrivateSign(data, 32, key, sha256, output);
    };
    const auto verifyWith = [&](const OpcUa_Byte* data, const OpcUa_Key* key,
                                const OpcUa_CryptoBytes* input) {
        return OpcUa_P_OpenSSL_RSA_PublicVerify(data, 32, key, sha256, input);
    };
    EXPECT_EQ(signWith(nullptr, &privateKey, &signature), invalid);
    EXPECT_EQ(signWith(digest.data(), nullptr, &signature), invalid);
    EXPECT_EQ(signWith(digest.data(), &publicKey, &signature), invalid);
    EXPECT_EQ(signWith(digest.data(), &privateKey, nullptr), invalid);
    EXPECT_EQ(verifyWith(nullptr, &publicKey, &signature), invalid);
    EXPECT_EQ(verifyWith(digest.data(), nullptr, &signature), invalid);
    EXPECT_EQ(verifyWith(digest.data(), &privateKey, &signature), invalid);
    EXPECT_EQ(verifyWith(digest.data(), &publicKey, nullptr), invalid);
    EXPECT_EQ(verifyWith(digest.data(), &publicKey, &nothing), invalid);
    EXPECT_EQ(verifyWith(digest.data(), &publicKey, &empty), invalid);
}

TEST(RsaSign, signature_length_must_be_a_multiple_of_the_key_size)
{
    struct Row
    {
        std::size_t length;
        OpcUa_StatusCode status;
    };
    const Bytes digest = digestOf(digests[2], fromText(RsaVectors::signedText));
    for (const Row& row :
         {Row{1, OpcUa_BadInvalidArgument}, Row{255, OpcUa_BadInvalidArgument},
          Row{256, OpcUa_Good}, Row{257, OpcUa_BadInvalidArgument},
          Row{511, OpcUa_BadInvalidArgument}, Row{512, OpcUa_BadSignatureInvalid}}) {
        SCOPED_TRACE(row.length);
        Bytes signature = fromHex(RsaVectors::signature);
        signature.resize(row.length);
        EXPECT_EQ(verify(digest, sha256, testPair(), signature), row.status);
    }
}

TEST(RsaSign, verification_with_a_key_that_does_not_decode_is_an_unexpected_error)
{
    const RsaPair garbage = {pattern(270), {}};
    EXPECT_EQ(verify(Bytes(32, 1), sha256, garbage, fromHex(RsaVectors::signature)),
              OpcUa_BadUnexpectedError);
    EXPECT_EQ(OpcUa_BadUnexpectedError, 0x80010000u);
    expectEmptyErrorQueue();
}

TEST(RsaSign, failure_is_traced_in_three_pieces)
{
    struct Row
    {
        const char* name;
        OpcUa_UInt32 length;
        OpcUa_Int32 type;
        const char* text;
    };
    const Bytes digest(64, 7);
    const OpcUa_Key key = testPair().privateKey();
    for (const Row& row : {Row{"length of another digest", 31, sha256, "invalid digest length"},
                           Row{"unknown digest", 32, 999999, "unknown algorithm type"},
                           Row{"no digest", 32, 0, "unknown algorithm type"}}) {
        SCOPED_TRACE(row.name);
        Bytes room(256);
        OpcUa_CryptoBytes signature = over(room);
        const TraceRecorder recorder;
        EXPECT_EQ(
            OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), row.length, &key, row.type, &signature),
            OpcUa_Bad);
        EXPECT_EQ(signature.Length, 0);
        ASSERT_EQ(TraceRecorder::messages().size(), 3u);
        EXPECT_EQ(TraceRecorder::messages()[0], "*** RSA_Private_Sign: ");
        EXPECT_THAT(TraceRecorder::messages()[1], testing::StartsWith("error:"));
        EXPECT_THAT(TraceRecorder::messages()[1], testing::HasSubstr(row.text));
        EXPECT_EQ(TraceRecorder::messages()[2], " ***\n");
    }
    expectEmptyErrorQueue();
}

TEST(RsaSign, trace_tells_nothing_of_the_key)
{
    Bytes der = testPair().privateDer;
    der[4] = 0x7F;
    const OpcUa_Key key = keyOver(OpcUa_Crypto_KeyType_Rsa_Private, der);
    const Bytes digest(32, 7);
    OpcUa_CryptoBytes signature = {0, nullptr};
    const TraceRecorder recorder;
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), 32, &key, sha256, &signature),
              OpcUa_BadUnexpectedError);
    const std::string secret = toHex(der);
    for (const std::string& message : TraceRecorder::messages()) {
        for (std::size_t i = 0; i + 8 < secret.size(); i += 2) {
            ASSERT_EQ(message.find(secret.substr(i, 8)), std::string::npos);
        }
    }
}

TEST(RsaSign, success_traces_nothing)
{
    const TraceRecorder recorder;
    sign(Bytes(32, 7), sha256, testPair());
    EXPECT_THAT(TraceRecorder::messages(), IsEmpty());
}

TEST(RsaSign, every_failing_allocation_is_a_failure_or_does_no_harm)
{
    const Bytes digest(20, 9);
    const RsaPair pair = generateRsaPair(1024);
    const OpcUa_Key privateKey = pair.privateKey();
    const OpcUa_Key publicKey = pair.publicKey();
    const Bytes expected = sign(digest, 64, pair);
    const OpcUa_CryptoBytes good = over(expected);
    Bytes room(128);
    OpcUa_CryptoBytes signature = over(room);
    EXPECT_GT(forEveryFailingAllocation(
                  [&] {
                      signature = over(room);
                      return OpcUa_P_OpenSSL_RSA_PrivateSign(digest.data(), 20, &privateKey, 64,
                                                             &signature);
                  },
                  [&](OpcUa_StatusCode status) {
                      EXPECT_TRUE(status == OpcUa_Bad || status == OpcUa_BadUnexpectedError ||
                                  (status == OpcUa_Good && room == expected));
                  }),
              5u);
    EXPECT_EQ(room, expected);
    EXPECT_GT(forEveryFailingAllocation(
                  [&] {
                      return OpcUa_P_OpenSSL_RSA_PublicVerify(digest.data(), 20, &publicKey, 64,
                                                              &good);
                  },
                  [](OpcUa_StatusCode status) {
                      EXPECT_TRUE(status == OpcUa_Good || status == OpcUa_BadSignatureInvalid ||
                                  status == OpcUa_BadUnexpectedError);
                  }),
              5u);
    expectEmptyErrorQueue();
}

} // namespace
