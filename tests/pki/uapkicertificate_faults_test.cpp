#include "base/uabytestring.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/libraryfaults.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/support/allocationfaults.h"

#include <openssl/obj_mac.h>

#include <algorithm>
#include <functional>
#include <string>

// Each allocation fails once, the stack's and the library's: an answer is the right one or comes with a
// message.

namespace {

using CertificateFaultsTest = PkiTest;

std::string der()
{
    static const std::string bytes =
        sampleDer({.alternativeNames = "URI:urn:host,email:a@b,DNS:host,DNS:other,IP:10.0.0.1"});
    return bytes;
}

std::string namesOf(const UaPkiCertificateInfo& info)
{
    std::string text = std::string(info.uri.view()) + " " + std::string(info.email.view());
    for (const UaStringArray* array : {&info.dnsNames, &info.ipAddresses}) {
        for (const OpcUa_String& name : *array) {
            text.append(" ").append(name.strContent == nullptr ? "none" : name.strContent);
        }
    }
    return text;
}

std::string bytesOf(const UaByteString& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::size_t>(std::max(bytes.length(), 0))};
}

struct Accessor
{
    const char* name;
    std::function<std::string(const UaPkiCertificate&)> ask;
};

const Accessor accessors[] = {
    {"subject",
     [](const UaPkiCertificate& c) { return std::string(c.subject().commonName.view()); }},
    {"issuer", [](const UaPkiCertificate& c) { return std::string(c.issuer().commonName.view()); }},
    {"commonName", [](const UaPkiCertificate& c) { return std::string(c.commonName().view()); }},
    {"info", [](const UaPkiCertificate& c) { return namesOf(c.info()); }},
    {"serialNumberString",
     [](const UaPkiCertificate& c) { return std::string(c.serialNumberString().view()); }},
    {"thumbPrint", [](const UaPkiCertificate& c) { return toStdString(c.thumbPrint()); }},
    {"toDER", [](const UaPkiCertificate& c) { return toStdString(c.toDER()); }},
    {"toDERByteString", [](const UaPkiCertificate& c) { return bytesOf(c.toDERByteString()); }},
    {"isSelfSigned",
     [](const UaPkiCertificate& c) { return std::string(c.isSelfSigned() ? "yes" : "no"); }},
    {"extensionValue",
     [](const UaPkiCertificate& c) {
         return std::string(c.extensionValue(NID_subject_alt_name).view());
     }},
    {"signatureTypeName",
     [](const UaPkiCertificate& c) { return std::string(c.signatureTypeName().view()); }},
    {"subjectNameHash",
     [](const UaPkiCertificate& c) { return std::to_string(c.subjectNameHash()); }},
};

/// An answer and whether messages came with it.
struct Answer
{
    std::string text;
    bool hasMessages = false;
};

Answer ask(const Accessor& accessor, const UaPkiCertificate& certificate)
{
    std::string text = accessor.ask(certificate);
    EXPECT_EQ(ERR_peek_error(), 0u);
    return {std::move(text), !certificate.getErrors().empty()};
}

TEST_F(CertificateFaultsTest, without_the_stacks_memory_an_answer_is_right_or_told)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(der()));
    for (const Accessor& accessor : accessors) {
        const std::string expected = ask(accessor, certificate).text;
        forEveryFailingAllocation([&] { return ask(accessor, certificate); },
                                  [&](const Answer& answer) {
                                      EXPECT_TRUE(answer.text == expected || answer.hasMessages)
                                          << accessor.name;
                                  });
    }
}

/// Runs `attempt()` with each of the library's allocations failing once.
template <typename Attempt, typename Verify>
std::size_t forEveryFailingLibraryAllocation(Attempt attempt, Verify verify)
{
    for (std::size_t failAt = 0;; ++failAt) {
        bool hasFailed = false;
        const auto result = [&] {
            const LibraryFaults faults(failAt);
            auto value = attempt();
            hasFailed = LibraryFaults::hasFailed();
            return value;
        }();
        if (!hasFailed) {
            return failAt;
        }
        verify(result);
    }
}

TEST_F(CertificateFaultsTest, without_the_librarys_memory_an_answer_is_right_or_told)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(der()));
    for (const Accessor& accessor : accessors) {
        const std::string expected = ask(accessor, certificate).text;
        forEveryFailingLibraryAllocation(
            [&] { return ask(accessor, certificate); },
            [&](const Answer& answer) {
                // The library takes an algorithm that it has no memory to look up for another one.
                EXPECT_TRUE(answer.text == expected || answer.hasMessages || answer.text == "no")
                    << accessor.name;
            });
    }
}

TEST_F(CertificateFaultsTest, without_the_librarys_memory_a_certificate_is_read_whole_or_not_at_all)
{
    const UaByteArray bytes = toByteArray(der());
    (void)UaPkiCertificate::fromDER(bytes);
    const std::size_t failures = forEveryFailingLibraryAllocation(
        [&] { return UaPkiCertificate::fromDER(bytes); },
        [&](const UaPkiCertificate& certificate) {
            EXPECT_EQ(ERR_peek_error(), 0u);
            EXPECT_EQ(certificate.isNull(), !messagesOf(certificate).empty());
            EXPECT_TRUE(certificate.isNull() || certificate.toDER() == bytes);
        });
    EXPECT_GT(failures, 50u);
}

TEST_F(CertificateFaultsTest, without_the_librarys_memory_a_key_is_the_right_one_or_none)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(der()));
    const UaByteArray expected = certificate.publicKey().toDER();
    forEveryFailingLibraryAllocation([&] { return certificate.publicKey(); },
                                     [&](const UaPkiPublicKey& key) {
                                         EXPECT_TRUE(key.toDER() == expected ||
                                                     key.keySize() == -1);
                                         (void)certificate.getErrors();
                                     });
    const UaPkiPublicKey key = certificate.publicKey();
    forEveryFailingLibraryAllocation([&] { return certificate.verifySignature(key); },
                                     [&](bool isVerified) {
                                         EXPECT_TRUE(isVerified ||
                                                     !certificate.getErrors().empty());
                                         (void)certificate.getErrors();
                                     });
}

} // namespace
