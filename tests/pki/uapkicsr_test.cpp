#include "base/uabytestring.h"
#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/pkifile.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicsr.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"
#include "tests/support/allocationfaults.h"

#include <gmock/gmock.h>
#include <openssl/core_names.h>
#include <openssl/param_build.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

// Signing requests: new, from certificates, in bytes and in files.

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using UaPkiCSRTest = PkiTest;

constexpr int sha1 = UaPkiCertificate::Sha1WithRsa;
constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

UaPkiCSR newRequest(bool isCA = false, int signatureAlgorithm = sha256)
{
    return {sampleInfo(), sampleIdentity(), sampleKeyPair(), isCA, signatureAlgorithm};
}

/// The extensions as "basicConstraints, critical: CA:FALSE", in their order.
std::vector<std::string> textsOf(const STACK_OF(X509_EXTENSION) * extensions)
{
    std::vector<std::string> texts;
    for (int i = 0; i < sk_X509_EXTENSION_num(extensions); ++i) {
        X509_EXTENSION* const extension = sk_X509_EXTENSION_value(extensions, i);
        const PkiHandle<BIO> memory(BIO_new(BIO_s_mem()));
        X509V3_EXT_print(memory.get(), extension, 0, 0);
        char* bytes = nullptr;
        const long size = BIO_get_mem_data(memory.get(), &bytes);
        texts.push_back(std::string(OBJ_nid2sn(OBJ_obj2nid(X509_EXTENSION_get_object(extension)))) +
                        (X509_EXTENSION_get_critical(extension) != 0 ? ", critical: " : ": ") +
                        std::string(bytes, static_cast<std::size_t>(size)));
    }
    return texts;
}

std::vector<std::string> extensionsOf(const UaPkiCSR& request)
{
    const PkiErrorScope scope;
    const PkiHandle<STACK_OF(X509_EXTENSION)> extensions(X509_REQ_get_extensions(request.handle()));
    return textsOf(extensions.get());
}

bool isSignedByItself(const UaPkiCSR& request)
{
    const PkiErrorScope scope;
    return X509_REQ_verify(request.handle(), X509_REQ_get0_pubkey(request.handle())) == 1;
}

void expectNull(const UaPkiCSR& request, const std::string& what)
{
    EXPECT_TRUE(request.isNull()) << what;
    EXPECT_EQ(request.handle(), nullptr) << what;
    EXPECT_THAT(messagesOf(request), Not(IsEmpty())) << what;
    EXPECT_EQ(ERR_peek_error(), 0u) << what;
}

TEST_F(UaPkiCSRTest, a_null_request_tells_that_it_is_null)
{
    const TemporaryDirectory directory;
    writeBytes(directory.file("f"), "before");
    const UaPkiCSR request;
    EXPECT_TRUE(request.isNull());
    EXPECT_EQ(request.handle(), nullptr);
    EXPECT_THAT(messagesOf(request), IsEmpty());
    EXPECT_TRUE(request.toDER().isEmpty());
    EXPECT_THAT(messagesOf(request), ElementsAre("The CSR is NULL"));
    EXPECT_TRUE(request.toDERByteString().isNull());
    EXPECT_THAT(messagesOf(request), ElementsAre("The CSR is NULL"));
    EXPECT_EQ(request.toDERFile(directory.uniFile("f")), -1);
    EXPECT_THAT(messagesOf(request), ElementsAre("The CSR is NULL"));
    EXPECT_EQ(readBytes(directory.file("f")), "before");
    EXPECT_TRUE(UaPkiCSR(nullptr).isNull());
}

TEST_F(UaPkiCSRTest, empty_der_is_told_in_words_and_garbage_in_those_of_the_library)
{
    const UaPkiCSR empty = UaPkiCSR::fromDER(UaByteArray());
    EXPECT_THAT(messagesOf(empty),
                ElementsAre("Error in fromDER: empty ByteString in argument DERdata"));
    EXPECT_TRUE(empty.isNull());
    for (const std::string& bytes :
         {std::string("garbage"), std::string(1, '\0'), std::string(100'000, '\x30'),
          std::string("\x30\x00", 2), std::string("\x30\x84\xFF\xFF\xFF\xFF", 6), sampleDer()}) {
        expectNull(UaPkiCSR::fromDER(toByteArray(bytes)), bytes.substr(0, 10));
    }
}

TEST_F(UaPkiCSRTest, der_cut_at_any_byte_is_refused_with_messages)
{
    const UaByteArray whole = newRequest().toDER();
    ASSERT_GT(whole.size(), 500);
    for (OpcUa_Int32 size = 0; size < whole.size(); ++size) {
        expectNull(UaPkiCSR::fromDER(UaByteArray(whole.data(), size)), std::to_string(size));
    }
}

TEST_F(UaPkiCSRTest, der_goes_out_and_in)
{
    const UaByteArray bytes = newRequest().toDER();
    const UaPkiCSR read = UaPkiCSR::fromDER(bytes);
    ASSERT_FALSE(read.isNull());
    EXPECT_EQ(read.toDER(), bytes);
    EXPECT_EQ(UaByteArray(read.toDERByteString()), bytes);
    EXPECT_TRUE(isSignedByItself(read));
    const UaPkiCSR trailed = UaPkiCSR::fromDER(toByteArray(toStdString(bytes) + "more"));
    EXPECT_EQ(trailed.toDER(), bytes) << "bytes behind the request don't matter";
    EXPECT_THAT(messagesOf(read), IsEmpty());
}

TEST_F(UaPkiCSRTest, a_request_of_an_application_asks_for_its_extensions_in_their_order)
{
    const UaPkiCSR request = newRequest(false);
    ASSERT_FALSE(request.isNull());
    EXPECT_THAT(messagesOf(request), IsEmpty());
    EXPECT_THAT(extensionsOf(request),
                ElementsAre("basicConstraints, critical: CA:FALSE",
                            HasSubstr("subjectKeyIdentifier: "),
                            "keyUsage, critical: Digital Signature, Non Repudiation, Key "
                            "Encipherment, Data Encipherment, Certificate Sign",
                            "extendedKeyUsage, critical: TLS Web Server Authentication, TLS Web "
                            "Client Authentication",
                            "subjectAltName: URI:urn:host:application, DNS:host, "
                            "DNS:host.example.org, IP Address:192.168.0.1, IP "
                            "Address:2001:DB8:0:0:0:0:0:1, email:operator@example.org"));
}

TEST_F(UaPkiCSRTest, a_request_of_an_authority_asks_for_no_names)
{
    const UaPkiCSR request = newRequest(true);
    ASSERT_FALSE(request.isNull());
    EXPECT_THAT(extensionsOf(request),
                ElementsAre("basicConstraints, critical: CA:TRUE",
                            "keyUsage, critical: Digital Signature, Non Repudiation, Key "
                            "Encipherment, Certificate Sign, CRL Sign",
                            "extendedKeyUsage, critical: TLS Web Server Authentication, TLS Web "
                            "Client Authentication",
                            HasSubstr("subjectKeyIdentifier: ")));
}

TEST_F(UaPkiCSRTest, a_request_has_neither_comment_nor_issuer)
{
    for (const bool isCA : {false, true}) {
        for (const std::string& text : extensionsOf(newRequest(isCA))) {
            EXPECT_THAT(text, Not(HasSubstr("nsComment")));
            EXPECT_THAT(text, Not(HasSubstr("authorityKeyIdentifier")));
        }
    }
}

TEST_F(UaPkiCSRTest, without_names_there_is_no_extension_for_them)
{
    const UaPkiCSR request({}, sampleIdentity(), sampleKeyPair(), false, sha256);
    ASSERT_FALSE(request.isNull());
    EXPECT_EQ(extensionsOf(request).size(), 4u);
}

TEST_F(UaPkiCSRTest, subject_key_and_version_are_those_of_the_request)
{
    const UaPkiCSR request = newRequest();
    EXPECT_EQ(X509_REQ_get_version(request.handle()), 0);
    EXPECT_EQ(
        EVP_PKEY_eq(X509_REQ_get0_pubkey(request.handle()), sampleKeyPair().privateKey().handle()),
        1);
    const UaPkiCertificate certificate(sampleInfo(), sampleIdentity(), sampleKeyPair(), false,
                                       sha256);
    EXPECT_EQ(X509_NAME_cmp(X509_REQ_get_subject_name(request.handle()),
                            X509_get_subject_name(certificate.handle())),
              0);
    EXPECT_EQ(X509_NAME_entry_count(X509_REQ_get_subject_name(request.handle())), 7);
}

TEST_F(UaPkiCSRTest, the_request_holds_no_private_key)
{
    const UaPkiCSR request = newRequest();
    const PkiHandle<EVP_PKEY> key(X509_REQ_get_pubkey(request.handle()));
    BIGNUM* secret = nullptr;
    EXPECT_EQ(EVP_PKEY_get_bn_param(key.get(), OSSL_PKEY_PARAM_RSA_D, &secret), 0);
    BN_clear_free(secret);
    ERR_clear_error();
}

TEST_F(UaPkiCSRTest, signature_algorithm_0_is_sha1_and_any_other_sha256)
{
    const std::pair<int, int> rows[] = {{0, NID_sha1WithRSAEncryption},
                                        {1, NID_sha256WithRSAEncryption},
                                        {2, NID_sha256WithRSAEncryption},
                                        {-1, NID_sha256WithRSAEncryption}};
    for (const auto& [algorithm, nid] : rows) {
        const UaPkiCSR request = newRequest(false, algorithm);
        EXPECT_EQ(X509_REQ_get_signature_nid(request.handle()), nid) << algorithm;
        EXPECT_TRUE(isSignedByItself(request)) << algorithm;
    }
}

TEST_F(UaPkiCSRTest, what_the_library_refuses_gives_a_null_request_with_messages)
{
    UaPkiIdentity badCountry = sampleIdentity();
    badCountry.country = "DEU";
    UaPkiCertificateInfo badNames;
    badNames.dnsNames = textArray({"host"});
    const PkiHandle<EVP_PKEY> edwards(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
    expectNull({sampleInfo(), badCountry, sampleKeyPair(), false, sha256}, "subject");
    expectNull({badNames, sampleIdentity(), sampleKeyPair(), false, sha256},
               "names that begin with a comma");
    expectNull({sampleInfo(), sampleIdentity(), UaPkiRSAKeyPair(), false, sha256}, "empty key");
    expectNull({sampleInfo(), sampleIdentity(), UaPkiRSAKeyPair(nullptr), false, sha256},
               "null key");
    expectNull({sampleInfo(), sampleIdentity(), UaPkiRSAKeyPair(edwards.get()), false, sha256},
               "a key that takes no digest");
    EXPECT_FALSE(UaPkiCSR(badNames, sampleIdentity(), sampleKeyPair(), true, sha256).isNull())
        << "an authority's names aren't looked at";
}

/// A key whose private half isn't that of its public one.
PkiHandle<EVP_PKEY> makeFalseKey()
{
    BIGNUM* values[3] = {};
    const UaPkiPrivateKey key = sampleKeyPair().privateKey();
    EVP_PKEY_get_bn_param(key.handle(), OSSL_PKEY_PARAM_RSA_N, &values[0]);
    EVP_PKEY_get_bn_param(key.handle(), OSSL_PKEY_PARAM_RSA_E, &values[1]);
    EVP_PKEY_get_bn_param(key.handle(), OSSL_PKEY_PARAM_RSA_D, &values[2]);
    BN_add_word(values[2], 2);
    OSSL_PARAM_BLD* const builder = OSSL_PARAM_BLD_new();
    OSSL_PARAM_BLD_push_BN(builder, OSSL_PKEY_PARAM_RSA_N, values[0]);
    OSSL_PARAM_BLD_push_BN(builder, OSSL_PKEY_PARAM_RSA_E, values[1]);
    OSSL_PARAM_BLD_push_BN(builder, OSSL_PKEY_PARAM_RSA_D, values[2]);
    OSSL_PARAM* const parameters = OSSL_PARAM_BLD_to_param(builder);
    EVP_PKEY_CTX* const context = EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr);
    EVP_PKEY* falseKey = nullptr;
    EVP_PKEY_fromdata_init(context);
    EVP_PKEY_fromdata(context, &falseKey, EVP_PKEY_KEYPAIR, parameters);
    EVP_PKEY_CTX_free(context);
    OSSL_PARAM_free(parameters);
    OSSL_PARAM_BLD_free(builder);
    for (BIGNUM* const value : values) {
        BN_clear_free(value);
    }
    return PkiHandle<EVP_PKEY>(falseKey);
}

TEST_F(UaPkiCSRTest, a_signature_that_does_not_hold_leaves_messages_and_the_request)
{
    const PkiHandle<EVP_PKEY> key = makeFalseKey();
    ASSERT_NE(key, nullptr);
    const UaPkiCSR request(sampleInfo(), sampleIdentity(), UaPkiRSAKeyPair(key.get()), false,
                           sha256);
    EXPECT_FALSE(request.isNull());
    EXPECT_THAT(messagesOf(request), Not(IsEmpty()));
    EXPECT_FALSE(isSignedByItself(request));
}

TEST_F(UaPkiCSRTest, copies_share_one_handle_until_the_last)
{
    UaPkiCSR copy;
    X509_REQ* handle = nullptr;
    {
        const UaPkiCSR request = newRequest();
        handle = request.handle();
        const UaPkiCSR second(request);
        EXPECT_EQ(second.handle(), handle);
        copy = second;
    }
    EXPECT_EQ(copy.handle(), handle);
    EXPECT_FALSE(copy.toDER().isEmpty());
    const UaPkiCSR& itself = copy;
    copy = itself;
    EXPECT_EQ(copy.handle(), handle);
    UaPkiCSR moved(std::move(copy));
    copy = std::move(moved);
    EXPECT_EQ(copy.handle(), handle);
    const UaPkiCSR failed = UaPkiCSR::fromDER(UaByteArray());
    const UaPkiCSR copyOfFailed(failed);
    EXPECT_THAT(messagesOf(copyOfFailed), IsEmpty());
    EXPECT_THAT(messagesOf(failed), Not(IsEmpty()));
}

TEST_F(UaPkiCSRTest, memory_short_for_the_bytes_gives_none)
{
    const UaPkiCSR request = newRequest();
    EXPECT_GE(
        forEveryFailingAllocation([&] { return request.toDER(); },
                                  [](const UaByteArray& bytes) { EXPECT_TRUE(bytes.isEmpty()); }),
        1u);
    EXPECT_GE(
        forEveryFailingAllocation([&] { return request.toDERByteString(); },
                                  [](const UaByteString& bytes) { EXPECT_TRUE(bytes.isNull()); }),
        1u);
}

class RequestFileTest : public PkiTest
{
protected:
    /// Reads in both forms, which must agree; the file engine's result.
    UaPkiCSR read(const std::string& name) const
    {
        const UaPkiCSR plain = UaPkiCSR::fromDERFile(directory.file(name).c_str());
        UaPkiCSR engine = UaPkiCSR::fromDERFile(directory.uniFile(name));
        EXPECT_EQ(plain.isNull(), engine.isNull()) << name;
        EXPECT_EQ(plain.getErrors().empty(), !plain.isNull()) << name;
        if (!plain.isNull() && !engine.isNull()) {
            EXPECT_EQ(plain.toDER(), engine.toDER()) << name;
        }
        return engine;
    }

    TemporaryDirectory directory;
    const UaPkiCSR request = newRequest();
    const std::string derBytes = toStdString(request.toDER());
};

TEST_F(RequestFileTest, requests_go_out_and_in)
{
    EXPECT_EQ(request.toDERFile(directory.uniFile("f")), 0);
    EXPECT_THAT(messagesOf(request), IsEmpty());
    EXPECT_EQ(readBytes(directory.file("f")), derBytes);
    EXPECT_EQ(toStdString(read("f").toDER()), derBytes);
    MemoryFileEngine engine;
    EXPECT_EQ(request.toDERFile(UaUniString("m")), 0);
    EXPECT_EQ(toStdString(UaPkiCSR::fromDERFile(UaUniString("m")).toDER()), derBytes);
    EXPECT_THAT(engine.calls, ElementsAre("wb m", "rb m"));
    EXPECT_EQ(engine.openStreams(), 0u);
}

TEST_F(RequestFileTest, a_missing_file_is_told_in_the_words_of_each_form)
{
    const UaPkiCSR engine = UaPkiCSR::fromDERFile(directory.uniFile("none"));
    EXPECT_TRUE(engine.isNull());
    EXPECT_THAT(messagesOf(engine), ElementsAre("Could not get file size"));
    const UaPkiCSR plain = UaPkiCSR::fromDERFile(directory.file("none").c_str());
    EXPECT_TRUE(plain.isNull());
    EXPECT_THAT(messagesOf(plain), ElementsAre(HasSubstr("No such file"), HasSubstr("BIO")));
    expectNull(UaPkiCSR::fromDERFile(static_cast<const char*>(nullptr)), "null path");
    expectNull(read(""), "a directory");
}

TEST_F(RequestFileTest, what_is_no_request_loads_as_nothing)
{
    for (const std::string& bytes :
         {std::string(), std::string("garbage"), sampleDer(), samplePem(), std::string(5000, '\0'),
          derBytes.substr(0, derBytes.size() - 1)}) {
        writeBytes(directory.file("f"), bytes);
        expectNull(read("f"), bytes.substr(0, 20));
    }
}

TEST_F(RequestFileTest, a_file_is_read_up_to_its_bound)
{
    writeBytes(directory.file("f"), derBytes);
    std::filesystem::resize_file(directory.file("f"), PkiFile_LargestSize);
    EXPECT_EQ(toStdString(read("f").toDER()), derBytes);
    std::filesystem::resize_file(directory.file("f"), PkiFile_LargestSize + 1);
    const UaPkiCSR plain = UaPkiCSR::fromDERFile(directory.file("f").c_str());
    EXPECT_THAT(messagesOf(plain), ElementsAre("The file is too large"));
    const UaPkiCSR engine = UaPkiCSR::fromDERFile(directory.uniFile("f"));
    EXPECT_THAT(messagesOf(engine), ElementsAre("The file is too large"));
}

TEST_F(RequestFileTest, a_target_that_can_not_be_written_is_told)
{
    EXPECT_EQ(request.toDERFile(directory.uniFile("missing/f")), -1);
    EXPECT_THAT(messagesOf(request), ElementsAre("Could not open file for writing"));
    MemoryFileEngine engine;
    engine.writeLimit = 10;
    EXPECT_EQ(request.toDERFile(UaUniString("f")), -1);
    EXPECT_THAT(messagesOf(request), ElementsAre("Could not write file"));
}

using CertificateToRequestTest = PkiTest;

TEST_F(CertificateToRequestTest, a_null_certificate_tells_that_it_is_null)
{
    const UaPkiCertificate certificate;
    const UaPkiCSR request = certificate.toCSR(sampleKeyPair().privateKey(), sha256);
    EXPECT_TRUE(request.isNull());
    EXPECT_THAT(messagesOf(certificate), ElementsAre("The certificate is NULL"));
    EXPECT_THAT(messagesOf(request), ElementsAre("The certificate is NULL"));
}

TEST_F(CertificateToRequestTest, subject_key_and_extensions_but_two_are_those_of_the_certificate)
{
    for (const bool isCA : {false, true}) {
        const UaPkiCertificate made(sampleInfo(), sampleIdentity(), sampleKeyPair(), isCA, sha256);
        const UaPkiCertificate read = UaPkiCertificate::fromDER(made.toDER());
        for (const UaPkiCertificate& certificate : {made, read}) {
            const UaPkiCSR request = certificate.toCSR(sampleKeyPair().privateKey(), sha256);
            ASSERT_FALSE(request.isNull());
            EXPECT_THAT(messagesOf(request), IsEmpty());
            EXPECT_EQ(extensionsOf(request), extensionsOf(newRequest(isCA)));
            EXPECT_EQ(X509_NAME_cmp(X509_REQ_get_subject_name(request.handle()),
                                    X509_get_subject_name(certificate.handle())),
                      0);
            EXPECT_TRUE(isSignedByItself(UaPkiCSR::fromDER(request.toDER())));
        }
        EXPECT_EQ(X509_get_ext_count(made.handle()), isCA ? 5 : 7) << "it keeps its own";
        EXPECT_TRUE(made.verifySignature(sampleKeyPair().publicKey()));
    }
}

TEST_F(CertificateToRequestTest, signature_algorithm_0_is_sha1_and_any_other_sha256)
{
    const std::pair<int, int> rows[] = {{0, NID_sha1WithRSAEncryption},
                                        {1, NID_sha256WithRSAEncryption},
                                        {2, NID_sha256WithRSAEncryption}};
    for (const auto& [algorithm, nid] : rows) {
        const UaPkiCSR request = sampleCertificate().toCSR(sampleKeyPair().privateKey(), algorithm);
        EXPECT_EQ(X509_REQ_get_signature_nid(request.handle()), nid) << algorithm;
    }
}

TEST_F(CertificateToRequestTest, another_key_than_the_certificates_gives_nothing)
{
    const PkiHandle<EVP_PKEY> curve(EVP_EC_gen("P-256"));
    const PkiHandle<EVP_PKEY> edwards(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
    expectNull(sampleCertificate().toCSR(otherKeyPair().privateKey(), sha256), "another RSA key");
    expectNull(sampleCertificate().toCSR(UaPkiPrivateKey(curve.get()), sha256), "EC");
    expectNull(sampleCertificate().toCSR(UaPkiPrivateKey(edwards.get()), sha256), "ED25519");
    expectNull(sampleCertificate().toCSR(UaPkiPrivateKey(), sha256), "empty");
    expectNull(sampleCertificate().toCSR(UaPkiPrivateKey(nullptr), sha256), "null");
}

TEST_F(CertificateToRequestTest, keys_of_other_types_do_as_well)
{
    const PkiHandle<EVP_PKEY> curve(EVP_EC_gen("P-256"));
    CertificateSample sample;
    sample.subjectKey = curve.get();
    const UaPkiCSR request = sampleCertificate(sample).toCSR(UaPkiPrivateKey(curve.get()), sha256);
    ASSERT_FALSE(request.isNull());
    EXPECT_TRUE(isSignedByItself(request));
}

TEST_F(CertificateToRequestTest, a_certificate_without_extensions_gives_a_request_without_any)
{
    const UaPkiCSR request = sampleCertificate().toCSR(sampleKeyPair().privateKey(), sha256);
    ASSERT_FALSE(request.isNull());
    EXPECT_THAT(extensionsOf(request), IsEmpty());
    EXPECT_EQ(X509_REQ_get_attr_count(request.handle()), 0);
    EXPECT_TRUE(isSignedByItself(request));
}

} // namespace
