#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/libraryfaults.h"
#include "tests/pki/pkitexts.h"
#include "tests/support/allocationfaults.h"

#include <functional>
#include <string>

// Each allocation of the library fails once: what comes out is what was asked for, or nothing.

namespace {

constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;
constexpr int keySize = 512;

/// A copy of a key: the library keeps some state with a key, which a failure in the middle of a signature
/// spoils for the next one.
UaPkiRSAKeyPair freshCopyOf(const UaPkiRSAKeyPair& keyPair)
{
    const PkiHandle<EVP_PKEY> key(EVP_PKEY_dup(keyPair.privateKey().handle()));
    return UaPkiRSAKeyPair(key.get());
}

UaPkiRSAKeyPair issuersKeyPair()
{
    static const UaPkiRSAKeyPair keyPair(keySize);
    return freshCopyOf(keyPair);
}

UaPkiRSAKeyPair subjectsKeyPair()
{
    static const UaPkiRSAKeyPair keyPair(keySize);
    return freshCopyOf(keyPair);
}

struct Outcome
{
    std::string bytes; ///< Empty for nothing.
};

struct Operation
{
    const char* name;
    std::function<Outcome(const UaPkiRSAKeyPair& subject, const UaPkiRSAKeyPair& issuer)> run;
};

Outcome outcomeOf(const UaPkiCertificate& certificate)
{
    EXPECT_EQ(ERR_peek_error(), 0u);
    // Encoded by hand, as allocations may still fail.
    const PkiErrorScope scope;
    unsigned char* encoded = nullptr;
    const int size = certificate.isNull() ? 0 : i2d_X509(certificate.handle(), &encoded);
    const PkiLibraryBytes owner(encoded);
    return {size > 0 ? std::string(reinterpret_cast<const char*>(encoded),
                                   static_cast<std::size_t>(size))
                     : std::string()};
}

Outcome outcomeOf(const UaPkiPrivateKey& key)
{
    const bool isEmpty = key.handle() == nullptr || EVP_PKEY_get_id(key.handle()) == EVP_PKEY_NONE;
    return {isEmpty ? "" : "key"};
}

class LibraryFaultsTest : public PkiTest
{
protected:
    void expectAllOrNothing(const Operation& operation)
    {
        const FixedClock clock(UaDateTime::fromTime_t(1'700'000'000));
        const auto run = [&] { return operation.run(subjectsKeyPair(), issuersKeyPair()); };
        (void)run();
        const std::string expected = run().bytes;
        ASSERT_FALSE(expected.empty()) << operation.name;
        std::size_t failAt = 0;
        for (bool hasFailed = true; hasFailed; ++failAt) {
            const UaPkiRSAKeyPair subject = subjectsKeyPair();
            const UaPkiRSAKeyPair issuer = issuersKeyPair();
            const Outcome outcome = [&] {
                const LibraryFaults faults(failAt);
                Outcome result = operation.run(subject, issuer);
                hasFailed = LibraryFaults::hasFailed();
                return result;
            }();
            ASSERT_EQ(ERR_peek_error(), 0u) << operation.name << ", allocation " << failAt;
            if (!outcome.bytes.empty()) {
                ASSERT_TRUE(outcome.bytes == expected)
                    << operation.name << ", allocation " << failAt;
            }
        }
        EXPECT_GT(failAt, 20u) << operation.name;
    }
};

TEST_F(LibraryFaultsTest, certificates_are_made_whole_or_not_at_all)
{
    const UaPkiCertificate issuer(sampleInfo(), identityOf("issuer"), issuersKeyPair(), true,
                                  sha256);
    const UaPkiCSR request(sampleInfo(), sampleIdentity(), subjectsKeyPair(), false, sha256);
    using KeyPair = UaPkiRSAKeyPair;
    using Certificate = UaPkiCertificate;
    const Operation operations[] = {
        {"self-signed",
         [](const KeyPair& subject, const KeyPair&) {
             return outcomeOf(Certificate(sampleInfo(), sampleIdentity(), subject, false, sha256));
         }},
        {"issuer's name",
         [](const KeyPair& subject, const KeyPair& key) {
             return outcomeOf(Certificate(sampleInfo(), sampleIdentity(), subject.publicKey(),
                                          identityOf("issuer"), key.privateKey()));
         }},
        {"issuer",
         [&](const KeyPair& subject, const KeyPair& key) {
             return outcomeOf(Certificate(sampleInfo(), sampleIdentity(), subject.publicKey(),
                                          issuer, key.privateKey(), false, sha256));
         }},
        {"request",
         [&](const KeyPair&, const KeyPair& key) {
             return outcomeOf(
                 Certificate::fromCSR(request, issuer, key.privateKey(), 3600, 1, sha256));
         }},
    };
    for (const Operation& operation : operations) {
        expectAllOrNothing(operation);
    }
}

TEST_F(LibraryFaultsTest, a_certificate_is_signed_anew_or_the_failure_is_told)
{
    const UaPkiCertificate issuer(sampleInfo(), identityOf("issuer"), issuersKeyPair(), true,
                                  sha256);
    const UaByteArray former =
        UaPkiCertificate(sampleInfo(), sampleIdentity(), subjectsKeyPair(), false, sha256).toDER();
    UaPkiCertificate certificate;
    bool isSigned = false;
    // Reading isn't under test here, so that each round begins with the same certificate.
    for (std::size_t failAt = 0;; ++failAt) {
        certificate = UaPkiCertificate::fromDER(former);
        ASSERT_FALSE(certificate.isNull());
        bool hasFailed = false;
        const UaPkiPrivateKey key = issuersKeyPair().privateKey();
        {
            const LibraryFaults faults(failAt);
            isSigned = certificate.sign(issuer, key, sha256);
            hasFailed = LibraryFaults::hasFailed();
        }
        ASSERT_EQ(ERR_peek_error(), 0u) << failAt;
        if (isSigned) {
            ASSERT_TRUE(certificate.verifySignature(issuersKeyPair().publicKey())) << failAt;
            ASSERT_EQ(extensionNamesOf(certificate).size(), 7u) << failAt;
        }
        if (!hasFailed) {
            EXPECT_TRUE(isSigned);
            EXPECT_GT(failAt, 20u);
            return;
        }
    }
}

TEST_F(LibraryFaultsTest, keys_are_read_or_not)
{
    const UaByteArray plain = subjectsKeyPair().toPEM(nullptr);
    const UaByteArray encrypted = subjectsKeyPair().toPEM("secret");
    const UaByteArray der = subjectsKeyPair().toDER();
    const Operation operations[] = {
        {"plain", [&](const auto&,
                      const auto&) { return outcomeOf(UaPkiPrivateKey::fromPEM(plain, nullptr)); }},
        {"encrypted",
         [&](const auto&, const auto&) {
             return outcomeOf(UaPkiPrivateKey::fromPEM(encrypted, "secret"));
         }},
        {"DER",
         [&](const auto&, const auto&) {
             return outcomeOf(UaPkiPrivateKey::fromDER(der, EVP_PKEY_RSA));
         }},
    };
    for (const Operation& operation : operations) {
        expectAllOrNothing(operation);
    }
}

// The library loses some blocks of a key that it converts for its traditional form.
TEST_F(LibraryFaultsTest, keys_are_written_or_not)
{
    const auto bytes = [](const UaByteArray& written) { return Outcome{toStdString(written)}; };
    const Operation operations[] = {
        {"to DER", [&](const auto& key, const auto&) { return bytes(key.toDER()); }},
        {"to PEM", [&](const auto& key, const auto&) { return bytes(key.toPEM(nullptr)); }},
        {"public key",
         [&](const auto& key, const auto&) { return bytes(key.publicKey().toDER()); }},
    };
    for (const Operation& operation : operations) {
        expectAllOrNothing(operation);
    }
}

TEST_F(LibraryFaultsTest, memory_short_for_the_names_leaves_a_null_object_with_a_message)
{
    const auto info = sampleInfo();
    const auto identity = sampleIdentity();
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return UaPkiCertificate(info, identity, subjectsKeyPair(), false, sha256); },
        [](const UaPkiCertificate& certificate) { EXPECT_TRUE(certificate.isNull()); });
    EXPECT_GT(failures, 0u);
}

} // namespace
