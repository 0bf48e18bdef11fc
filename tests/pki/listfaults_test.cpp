#include "base/uabytestring.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/libraryfaults.h"
#include "tests/pki/pkitexts.h"

#include <functional>
#include <string>

// Lists and requests while each allocation of the library fails once: what comes out is what was asked
// for, or there are messages.

namespace {

constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

/// A small key that has signed nothing under faults: one whose use was cut short by a lack of memory may
/// give wrong signatures in the library from then on. It has signed once, since the library keeps blocks
/// of its own when memory runs out at the first use.
UaPkiRSAKeyPair freshKeyPair()
{
    static const UaByteArray bytes = UaPkiRSAKeyPair(512).toDER();
    UaPkiRSAKeyPair keyPair(UaPkiPrivateKey::fromDER(bytes, EVP_PKEY_RSA).handle());
    EXPECT_TRUE(UaPkiRevocationList(1, UaPkiIdentity(), 1).sign(keyPair.privateKey()));
    return keyPair;
}

/// Every allocation at first, then fewer of the thousands that the search for a decoder takes.
std::size_t nextAllocation(std::size_t failAt)
{
    return failAt + 1 + failAt / 50;
}

/// What an operation gave, encoded without allocations that may fail, and whether there were messages.
struct Outcome
{
    std::string text;
    bool hasMessages = false;
};

struct Operation
{
    const char* name;
    std::function<Outcome(const UaPkiRSAKeyPair&)> run;
    std::size_t leastAllocations = 2; ///< And the run in which none fails.
};

template <typename Handle>
std::string encode(const Handle* handle, int (*i2d)(const Handle*, unsigned char**))
{
    constexpr std::size_t largest = 10'000;
    const PkiErrorScope scope;
    std::string bytes(largest, '\0');
    auto* position = reinterpret_cast<unsigned char*>(bytes.data());
    const int size = handle != nullptr ? i2d(handle, nullptr) : 0;
    if (size <= 0 || static_cast<std::size_t>(size) > largest || i2d(handle, &position) != size) {
        return {};
    }
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

Outcome outcomeOf(const UaPkiRevocationList& list)
{
    return {encode(list.handle(), i2d_X509_CRL), !list.getErrors().empty()};
}

/// One without a signature, which the library doesn't encode.
Outcome outcomeOfNew(const UaPkiRevocationList& list)
{
    std::string text;
    if (!list.isNull()) {
        text = encode(X509_CRL_get_issuer(list.handle()), i2d_X509_NAME) + " " +
               std::string(list.nextUpdate().toString().view()) + " " +
               std::to_string(X509_CRL_get_ext_count(list.handle()));
    }
    return {text, !list.getErrors().empty()};
}

Outcome outcomeOf(const UaPkiCSR& request)
{
    return {encode<X509_REQ>(request.handle(), i2d_X509_REQ), !request.getErrors().empty()};
}

Outcome outcomeOf(const std::string& text, const UaPkiErrorList& errors)
{
    return {text, !errors.getErrors().empty()};
}

class ListFaultsTest : public PkiTest
{
protected:
    void SetUp() override
    {
        PkiTest::SetUp();
        list.addRevoked(certificate, UaDateTime::fromTime_t(1'600'000'000));
        ASSERT_TRUE(list.sign(freshKeyPair().privateKey()));
        listBytes = list.toDER();
        requestBytes = request.toDER();
    }

    static void expectAllOrMessages(const Operation& operation)
    {
        (void)operation.run(freshKeyPair()); // what the library makes once is made
        const Outcome expected = operation.run(freshKeyPair());
        ASSERT_FALSE(expected.text.empty()) << operation.name;
        ASSERT_FALSE(expected.hasMessages) << operation.name;
        std::size_t failAt = 0;
        for (bool hasFailed = true; hasFailed; failAt = nextAllocation(failAt)) {
            const UaPkiRSAKeyPair keyPair = freshKeyPair();
            Outcome outcome;
            {
                const LibraryFaults faults(failAt);
                outcome = operation.run(keyPair);
                hasFailed = LibraryFaults::hasFailed();
            }
            ASSERT_EQ(ERR_peek_error(), 0u) << operation.name << ", allocation " << failAt;
            ASSERT_TRUE(outcome.hasMessages || outcome.text == expected.text)
                << operation.name << ", allocation " << failAt;
        }
        EXPECT_GE(failAt, operation.leastAllocations) << operation.name;
    }

    const FixedClock clock = FixedClock(UaDateTime::fromTime_t(1'700'000'000));
    const UaPkiPublicKey publicKey = freshKeyPair().publicKey();
    const UaPkiCertificate certificate = {sampleInfo(), sampleIdentity(), freshKeyPair(), false,
                                          sha256};
    const UaPkiCSR request = {sampleInfo(), sampleIdentity(), freshKeyPair(), false, sha256};
    UaPkiRevocationList list = {3600, sampleIdentity(), 7};
    UaByteArray listBytes;
    UaByteArray requestBytes;
};

TEST_F(ListFaultsTest, lists_are_made_read_and_asked_or_the_failure_is_told)
{
    const Operation operations[] = {
        {"new",
         [&](const UaPkiRSAKeyPair&) {
             return outcomeOfNew(UaPkiRevocationList(3600, sampleIdentity(), 7));
         }},
        {"new, without fields",
         [&](const UaPkiRSAKeyPair&) {
             return outcomeOfNew(UaPkiRevocationList(3600, UaPkiIdentity(), 7));
         }},
        {"read",
         [&](const UaPkiRSAKeyPair&) {
             return outcomeOf(UaPkiRevocationList::fromDER(listBytes));
         }},
        {"write",
         [&](const UaPkiRSAKeyPair&) { return outcomeOf(toStdString(list.toDER()), list); }, 1},
        {"issuer",
         [&](const UaPkiRSAKeyPair&) {
             return outcomeOf(std::string(list.issuer().organization.view()), list);
         }},
        {"number",
         [&](const UaPkiRSAKeyPair&) { return outcomeOf(std::to_string(list.crlNumber()), list); }},
        {"verify",
         [&](const UaPkiRSAKeyPair&) {
             const bool isVerified = list.verifySignature(publicKey);
             const bool hasMessages = !list.getErrors().empty() || !publicKey.getErrors().empty();
             return Outcome{isVerified ? "verified" : "refused", hasMessages};
         }},
    };
    for (const Operation& operation : operations) {
        expectAllOrMessages(operation);
    }
}

TEST_F(ListFaultsTest, an_entry_is_added_whole_or_the_failure_is_told)
{
    std::size_t failAt = 0;
    for (bool hasFailed = true; hasFailed; failAt = nextAllocation(failAt)) {
        const UaPkiPrivateKey key = freshKeyPair().privateKey();
        UaPkiRevocationList target(3600, sampleIdentity(), 7);
        {
            const LibraryFaults faults(failAt);
            target.addRevoked(certificate, UaDateTime::fromTime_t(1'600'000'000));
            hasFailed = LibraryFaults::hasFailed();
        }
        const bool hasMessages = !target.getErrors().empty() || !certificate.getErrors().empty();
        ASSERT_TRUE(target.sign(key)) << failAt;
        const std::string bytes = encode(target.handle(), i2d_X509_CRL);
        ASSERT_TRUE(hasMessages || bytes == toStdString(listBytes)) << failAt;
        ASSERT_EQ(ERR_peek_error(), 0u) << failAt;
    }
    EXPECT_GE(failAt, 5u);
}

TEST_F(ListFaultsTest, a_list_is_signed_anew_or_the_failure_is_told)
{
    std::size_t failAt = 0;
    for (bool hasFailed = true; hasFailed; failAt = nextAllocation(failAt)) {
        const UaPkiPrivateKey key = freshKeyPair().privateKey();
        UaPkiRevocationList target = UaPkiRevocationList::fromDER(listBytes);
        bool isSigned = false;
        {
            const LibraryFaults faults(failAt);
            isSigned = target.sign(key);
            hasFailed = LibraryFaults::hasFailed();
        }
        ASSERT_EQ(isSigned, target.getErrors().empty()) << failAt;
        ASSERT_TRUE(!isSigned || target.verifySignature(publicKey)) << failAt;
        ASSERT_EQ(ERR_peek_error(), 0u) << failAt;
    }
    EXPECT_GE(failAt, 5u);
}

TEST_F(ListFaultsTest, requests_are_made_read_and_written_or_the_failure_is_told)
{
    const Operation operations[] = {
        {"new",
         [](const UaPkiRSAKeyPair& keyPair) {
             return outcomeOf(UaPkiCSR(sampleInfo(), sampleIdentity(), keyPair, false, sha256));
         }},
        {"read",
         [&](const UaPkiRSAKeyPair&) { return outcomeOf(UaPkiCSR::fromDER(requestBytes)); }},
        {"write",
         [&](const UaPkiRSAKeyPair&) { return outcomeOf(toStdString(request.toDER()), request); },
         1},
        {"from a certificate",
         [&](const UaPkiRSAKeyPair& keyPair) {
             return outcomeOf(certificate.toCSR(keyPair.privateKey(), sha256));
         }},
    };
    for (const Operation& operation : operations) {
        expectAllOrMessages(operation);
    }
}

} // namespace
