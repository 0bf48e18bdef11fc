#include "base/uabytestring.h"
#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/dercertificate.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/copyof.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

// The object itself: null, copied, read from bytes, written to bytes, verified.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using UaPkiCertificateTest = PkiTest;

constexpr const char* isNullMessage = "The certificate is NULL";
constexpr const char* isEmptyMessage = "Error in fromDER: empty ByteString in argument DERdata";

TEST_F(UaPkiCertificateTest, every_accessor_of_a_null_object_adds_the_message_and_gives_nothing)
{
    using Certificate = UaPkiCertificate;
    const UaPkiPublicKey key = sampleKeyPair().publicKey();
    const TemporaryDirectory directory;
    const std::string path = directory.file("f");
    const UaUniString uniPath = directory.uniFile("f");
    struct Row
    {
        const char* name;
        std::function<bool(const Certificate&)> givesNothing;
    };
    const Row rows[] = {
        {"toDER", [](const Certificate& c) { return c.toDER().isEmpty(); }},
        {"toDERByteString", [](const Certificate& c) { return c.toDERByteString().isNull(); }},
        {"toDERFile", [&](const Certificate& c) { return c.toDERFile(path.c_str()) == -1; }},
        {"toDERFile, engine", [&](const Certificate& c) { return c.toDERFile(uniPath) == -1; }},
        {"toPEMFile", [&](const Certificate& c) { return c.toPEMFile(path.c_str()) == -1; }},
        {"toPEMFile, engine", [&](const Certificate& c) { return c.toPEMFile(uniPath) == -1; }},
        {"subject", [](const Certificate& c) { return c.subject().isEmpty(); }},
        {"issuer", [](const Certificate& c) { return c.issuer().isEmpty(); }},
        {"commonName", [](const Certificate& c) { return c.commonName().isEmpty(); }},
        {"info",
         [](const Certificate& c) {
             const UaPkiCertificateInfo info = c.info();
             return info.uri.isEmpty() && info.email.isEmpty() && info.dnsNames.length() == 0 &&
                    info.ipAddresses.length() == 0 && info.serialNumber == 0;
         }},
        {"serialNumberString",
         [](const Certificate& c) { return c.serialNumberString().isEmpty(); }},
        {"validFrom", [](const Certificate& c) { return c.validFrom().isNull(); }},
        {"validTo", [](const Certificate& c) { return c.validTo().isNull(); }},
        {"isValid", [](const Certificate& c) { return !c.isValid(); }},
        {"thumbPrint", [](const Certificate& c) { return c.thumbPrint().isEmpty(); }},
        {"publicKey", [](const Certificate& c) { return c.publicKey().keySize() == -1; }},
        {"isSelfSigned", [](const Certificate& c) { return !c.isSelfSigned(); }},
        {"verifySignature", [&](const Certificate& c) { return !c.verifySignature(key); }},
        {"hasExtension",
         [](const Certificate& c) { return !c.hasExtension(NID_basic_constraints); }},
        {"extensionValue",
         [](const Certificate& c) { return c.extensionValue(NID_key_usage).isEmpty(); }},
        {"signatureTypeName", [](const Certificate& c) { return c.signatureTypeName().isEmpty(); }},
        {"signatureAlgorithm", [](const Certificate& c) { return c.signatureAlgorithm() == 0; }},
        {"subjectNameHash", [](const Certificate& c) { return c.subjectNameHash() == 0; }},
    };
    const UaPkiCertificate certificate;
    EXPECT_TRUE(certificate.isNull());
    EXPECT_EQ(certificate.handle(), nullptr);
    for (const Row& row : rows) {
        EXPECT_TRUE(row.givesNothing(certificate)) << row.name;
        EXPECT_THAT(messagesOf(certificate), ElementsAre(isNullMessage)) << row.name;
    }
    EXPECT_EQ(readBytes(path), "") << "nothing was written";
}

TEST_F(UaPkiCertificateTest, no_bytes_are_told_in_words_of_our_own)
{
    for (const UaPkiCertificate& certificate :
         {UaPkiCertificate::fromDER(UaByteArray()), UaPkiCertificate::fromDER(UaByteString()),
          UaPkiCertificate::fromDER(UaByteString(0, nullptr))}) {
        EXPECT_TRUE(certificate.isNull());
    }
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromDER(UaByteArray())), ElementsAre(isEmptyMessage));
    EXPECT_THAT(messagesOf(UaPkiCertificate::fromDER(UaByteString())), ElementsAre(isEmptyMessage));
}

TEST_F(UaPkiCertificateTest, garbage_is_null_with_messages_of_the_library)
{
    for (const std::string& bytes :
         {std::string("garbage"), std::string(1, '\0'), std::string(100'000, '\xFF'),
          std::string("\x30\x80\x00\x00", 4), der(DerSequence, ""), samplePem()}) {
        const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(bytes));
        EXPECT_TRUE(certificate.isNull());
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
        EXPECT_EQ(ERR_peek_error(), 0u);
    }
}

TEST_F(UaPkiCertificateTest, bytes_cut_anywhere_are_null_with_messages)
{
    const std::string whole = sampleDer();
    for (std::size_t size = 1; size < whole.size(); ++size) {
        const UaPkiCertificate certificate =
            UaPkiCertificate::fromDER(toByteArray(whole.substr(0, size)));
        EXPECT_TRUE(certificate.isNull()) << size;
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty())) << size;
        EXPECT_EQ(ERR_peek_error(), 0u) << size;
    }
}

TEST_F(UaPkiCertificateTest, bytes_behind_the_certificate_do_not_matter)
{
    const std::string bytes = sampleDer();
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(bytes + "more"));
    EXPECT_EQ(toStdString(certificate.toDER()), bytes);
}

TEST_F(UaPkiCertificateTest, der_goes_in_and_out_in_both_forms)
{
    const std::string bytes = sampleDer();
    const UaByteArray array = toByteArray(bytes);
    const UaPkiCertificate fromArray = UaPkiCertificate::fromDER(array);
    const UaPkiCertificate fromString =
        UaPkiCertificate::fromDER(UaByteString(array.size(), array.data()));
    for (const UaPkiCertificate& certificate : {fromArray, fromString}) {
        ASSERT_FALSE(certificate.isNull());
        EXPECT_EQ(certificate.toDER(), array);
        EXPECT_EQ(certificate.toDERByteString(), UaByteString(array.size(), array.data()));
        EXPECT_THAT(messagesOf(certificate), IsEmpty());
    }
}

TEST_F(UaPkiCertificateTest, copies_share_the_handle_until_the_last)
{
    const PkiHandle<X509> raw(X509_new());
    UaPkiCertificate last;
    {
        const UaPkiCertificate certificate(raw.get());
        EXPECT_EQ(certificate.handle(), raw.get());
        const UaPkiCertificate copy = copyOf(certificate);
        EXPECT_EQ(copy.handle(), raw.get());
        last = copy;
    }
    EXPECT_EQ(last.handle(), raw.get());
    const UaPkiCertificate& itself = last;
    last = itself;
    EXPECT_EQ(last.handle(), raw.get());
}

TEST_F(UaPkiCertificateTest, the_handle_is_freed_with_the_last_copy)
{
    // Application data of a handle is told when it is freed.
    static int freed = 0;
    const int index = X509_get_ex_new_index(
        0, nullptr, nullptr, nullptr,
        [](void*, void* data, CRYPTO_EX_DATA*, int, long, void*) { freed += data != nullptr; });
    auto first = std::make_unique<UaPkiCertificate>(sampleCertificate());
    X509_set_ex_data(first->handle(), index, &freed);
    auto second = std::make_unique<UaPkiCertificate>(*first);
    first.reset();
    EXPECT_EQ(freed, 0);
    EXPECT_EQ(second->commonName(), "subject");
    second.reset();
    EXPECT_EQ(freed, 1);
}

TEST_F(UaPkiCertificateTest, a_null_handle_makes_a_null_object)
{
    const UaPkiCertificate certificate(nullptr);
    EXPECT_TRUE(certificate.isNull());
    EXPECT_TRUE(copyOf(certificate).isNull());
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
}

TEST_F(UaPkiCertificateTest, messages_stay_with_their_object)
{
    const UaPkiCertificate failed = UaPkiCertificate::fromDER(UaByteArray());
    EXPECT_THAT(messagesOf(copyOf(failed)), IsEmpty()) << "a copy has none";
    UaPkiCertificate target = UaPkiCertificate::fromDER(UaByteArray());
    target = sampleCertificate();
    EXPECT_THAT(messagesOf(target), IsEmpty()) << "a move brings its own";
    UaPkiCertificate kept = UaPkiCertificate::fromDER(UaByteArray());
    const UaPkiCertificate source = sampleCertificate();
    kept = source;
    EXPECT_FALSE(kept.isNull());
    EXPECT_THAT(messagesOf(kept), ElementsAre(isEmptyMessage))
        << "an assignment keeps the target's";
    EXPECT_THAT(messagesOf(failed), ElementsAre(isEmptyMessage));
    EXPECT_THAT(messagesOf(failed), IsEmpty()) << "they are handed out once";
}

TEST_F(UaPkiCertificateTest, the_eleventh_message_pushes_out_the_first)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(UaByteArray());
    for (int i = 0; i < 9; ++i) {
        (void)certificate.toDER();
    }
    EXPECT_THAT(certificate.getErrors().front(), UaString(isEmptyMessage));
    certificate.addError("first");
    for (int i = 0; i < 10; ++i) {
        (void)certificate.subject();
    }
    EXPECT_THAT(messagesOf(certificate),
                ElementsAre(isNullMessage, isNullMessage, isNullMessage, isNullMessage,
                            isNullMessage, isNullMessage, isNullMessage, isNullMessage,
                            isNullMessage, isNullMessage));
}

TEST_F(UaPkiCertificateTest, a_move_leaves_null)
{
    UaPkiCertificate certificate = sampleCertificate();
    UaPkiCertificate moved(std::move(certificate));
    EXPECT_TRUE(certificate.isNull()); // NOLINT(bugprone-use-after-move): under test
    UaPkiCertificate assigned;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.commonName(), "subject");
}

TEST_F(UaPkiCertificateTest, the_thumb_print_is_the_sha1_of_the_der_form)
{
    for (const bool usesSha1 : {false, true}) {
        const UaPkiCertificate certificate = sampleCertificate({.usesSha1 = usesSha1});
        const UaByteArray bytes = certificate.toDER();
        std::array<unsigned char, 20> expected{};
        EVP_Digest(bytes.data(), static_cast<std::size_t>(bytes.size()), expected.data(), nullptr,
                   EVP_sha1(), nullptr);
        EXPECT_EQ(certificate.thumbPrint(), UaByteArray(expected.data(), 20));
        EXPECT_THAT(messagesOf(certificate), IsEmpty());
    }
}

struct KeyRow
{
    const char* name;
    PkiHandle<EVP_PKEY> key;
    int size;
    int type;
};

std::vector<KeyRow> keysOfAllTypes()
{
    std::vector<KeyRow> rows;
    rows.push_back({"RSA", PkiHandle<EVP_PKEY>(EVP_RSA_gen(1024)), 1024, 6});
    rows.push_back({"EC", PkiHandle<EVP_PKEY>(EVP_EC_gen("P-256")), 256, 0});
    rows.push_back(
        {"ED25519", PkiHandle<EVP_PKEY>(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519")), 256, 0});
    return rows;
}

TEST_F(UaPkiCertificateTest, the_key_is_that_of_the_certificate_whatever_its_type)
{
    for (const KeyRow& row : keysOfAllTypes()) {
        const UaPkiCertificate certificate = sampleCertificate({.subjectKey = row.key.get()});
        const UaPkiPublicKey key = certificate.publicKey();
        const PkiHandle<EVP_PKEY> handle(key.handle());
        EXPECT_EQ(EVP_PKEY_eq(handle.get(), row.key.get()), 1) << row.name;
        EXPECT_EQ(key.keySize(), row.size) << row.name;
        EXPECT_EQ(key.keyType(), row.type) << row.name;
        EXPECT_THAT(messagesOf(certificate), IsEmpty()) << row.name;
    }
}

TEST_F(UaPkiCertificateTest, a_key_that_can_not_be_decoded_is_told)
{
    const UaPkiCertificate certificate =
        UaPkiCertificate::fromDER(toByteArray(DerCertificate().bytes()));
    ASSERT_FALSE(certificate.isNull());
    EXPECT_EQ(certificate.publicKey().keySize(), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    EXPECT_FALSE(certificate.isSelfSigned()) << "though it names itself as its issuer";
    (void)messagesOf(certificate);
}

TEST_F(UaPkiCertificateTest, self_signed_is_who_names_and_signs_itself)
{
    for (const KeyRow& row : keysOfAllTypes()) {
        EXPECT_TRUE(sampleCertificate({.subjectKey = row.key.get()}).isSelfSigned()) << row.name;
    }
    const UaPkiPrivateKey other = otherKeyPair().privateKey();
    EXPECT_FALSE(sampleCertificate({.issuer = "another"}).isSelfSigned()) << "by its own key";
    const UaPkiCertificate foreign = sampleCertificate({.issuerKey = other.handle()});
    EXPECT_FALSE(foreign.isSelfSigned()) << "by another key of the same name";
    EXPECT_FALSE(
        sampleCertificate({.issuerKey = other.handle(), .issuer = "another"}).isSelfSigned());
}

TEST_F(UaPkiCertificateTest, a_signature_is_verified_by_its_key_alone)
{
    for (const KeyRow& row : keysOfAllTypes()) {
        const UaPkiCertificate certificate =
            sampleCertificate({.issuerKey = row.key.get(), .issuer = "another"});
        EXPECT_TRUE(certificate.verifySignature(UaPkiPublicKey(row.key.get()))) << row.name;
        EXPECT_THAT(messagesOf(certificate), IsEmpty());
        EXPECT_FALSE(certificate.verifySignature(otherKeyPair().publicKey())) << row.name;
        EXPECT_FALSE(certificate.verifySignature(UaPkiPublicKey())) << row.name;
    }
}

TEST_F(UaPkiCertificateTest, a_changed_byte_breaks_the_signature_or_the_form)
{
    const std::string whole = sampleDer();
    const UaPkiPublicKey key = sampleKeyPair().publicKey();
    ASSERT_TRUE(UaPkiCertificate::fromDER(toByteArray(whole)).verifySignature(key));
    // Behind the outer length all bytes count.
    for (std::size_t i = 4; i < whole.size(); ++i) {
        std::string changed = whole;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(changed));
        EXPECT_FALSE(!certificate.isNull() && certificate.verifySignature(key)) << i;
        EXPECT_EQ(ERR_peek_error(), 0u);
    }
}

TEST_F(UaPkiCertificateTest, a_signature_by_another_algorithm_than_the_signed_one_is_none)
{
    // Two certificates that differ in their algorithm, and a mixture of them.
    std::string mixed = sampleDer();
    const std::string sha256("\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0B");
    mixed.replace(mixed.rfind(sha256) + sha256.size() - 1, 1, "\x05");
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(mixed));
    ASSERT_FALSE(certificate.isNull());
    EXPECT_FALSE(certificate.verifySignature(sampleKeyPair().publicKey()));
}

TEST_F(UaPkiCertificateTest, handles_of_the_default_context_answer_like_our_own)
{
    const std::string bytes = sampleDer({.alternativeNames = "URI:urn:x,DNS:host"});
    const auto* position = reinterpret_cast<const unsigned char*>(bytes.data());
    const PkiHandle<X509> raw(d2i_X509(nullptr, &position, static_cast<long>(bytes.size())));
    const UaPkiCertificate certificate(raw.get());
    EXPECT_TRUE(certificate.isSelfSigned());
    EXPECT_TRUE(certificate.verifySignature(certificate.publicKey()));
    EXPECT_EQ(certificate.publicKey().keySize(), 2048);
    EXPECT_EQ(certificate.thumbPrint(), UaPkiCertificate::fromDER(toByteArray(bytes)).thumbPrint());
}

} // namespace
