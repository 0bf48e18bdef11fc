#include "pki/opensslhandles.h"
#include "pki/pkibarecontext.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/certificatecorpus.h"
#include "tests/pki/certificatefields.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"

#include <gmock/gmock.h>

#include <array>
#include <random>
#include <string>

// Certificates are decoded in a context without algorithms. Nothing of it may show: what is decoded and
// refused, and all answers, are those of the default context.

namespace {

using UaPkiCertificateContextTest = PkiTest;

/// The library's own decoding.
PkiHandle<X509> decodeByLibrary(const std::string& bytes)
{
    const auto* position = reinterpret_cast<const unsigned char*>(bytes.data());
    return PkiHandle<X509>(d2i_X509(nullptr, &position, static_cast<long>(bytes.size())));
}

/// What the library itself says about a certificate of the default context.
void expectLibraryAgrees(const UaPkiCertificate& ours, X509* theirs)
{
    std::array<unsigned char, 20> digest{};
    X509_digest(theirs, EVP_sha1(), digest.data(), nullptr);
    EXPECT_EQ(ours.thumbPrint(), UaByteArray(digest.data(), 20));
    const PkiHandle<EVP_PKEY> key(X509_get_pubkey(theirs));
    const PkiHandle<EVP_PKEY> ourKey(ours.publicKey().handle());
    ASSERT_EQ(key == nullptr, ourKey == nullptr);
    if (key != nullptr) {
        EXPECT_EQ(EVP_PKEY_eq(key.get(), ourKey.get()), 1);
        EXPECT_EQ(ours.verifySignature(UaPkiPublicKey(key.get())),
                  X509_verify(theirs, key.get()) > 0);
    }
    EXPECT_EQ(ours.isSelfSigned(), key != nullptr &&
                                       X509_check_issued(theirs, theirs) == X509_V_OK &&
                                       X509_verify(theirs, key.get()) > 0);
    ERR_clear_error();
}

/// Decodes bytes both ways. Returns whether they are a certificate.
bool compareBothWays(const std::string& bytes)
{
    const UaPkiCertificate ours = UaPkiCertificate::fromDER(toByteArray(bytes));
    const PkiHandle<X509> raw = decodeByLibrary(bytes);
    const UaPkiCertificate theirs(raw.get());
    theirs.addLibraryErrors();
    EXPECT_EQ(ours.isNull(), theirs.isNull());
    if (ours.isNull() || theirs.isNull()) {
        EXPECT_EQ(messagesOf(ours), messagesOf(theirs));
        return false;
    }
    (void)messagesOf(theirs);
    EXPECT_EQ(allFieldsOf(ours), allFieldsOf(theirs));
    EXPECT_EQ(messagesOf(ours), messagesOf(theirs));
    expectLibraryAgrees(ours, raw.get());
    (void)messagesOf(ours);
    return true;
}

TEST_F(UaPkiCertificateContextTest, whole_certificates_read_the_same_both_ways)
{
    ASSERT_GT(certificateCorpus().size(), 100u) << "the distribution's certificates are missing";
    for (const std::string& bytes : certificateCorpus()) {
        EXPECT_TRUE(compareBothWays(bytes));
    }
}

TEST_F(UaPkiCertificateContextTest, malformed_certificates_read_the_same_both_ways)
{
    constexpr int count = 2000;
    std::mt19937 random(4711); // NOLINT(cert-msc51-cpp): the same files at every run
    const auto below = [&](std::size_t limit) { return random() % limit; };
    int decoded = 0;
    for (int i = 0; i < count; ++i) {
        std::string bytes = certificateCorpus()[below(certificateCorpus().size())];
        for (std::size_t change = 0; change <= below(3); ++change) {
            bytes[below(bytes.size())] = static_cast<char>(random());
        }
        if (below(4) == 0) {
            bytes.resize(below(bytes.size()) + 1);
        }
        decoded += compareBothWays(bytes) ? 1 : 0;
        ASSERT_FALSE(HasFailure()) << "file " << i << ": " << toByteArray(bytes).toHex().toUtf8();
    }
    EXPECT_GT(decoded, count / 10);
    EXPECT_LT(decoded, count - count / 10);
}

TEST_F(UaPkiCertificateContextTest, the_context_is_one_and_the_same_and_knows_no_algorithm)
{
    OSSL_LIB_CTX* const context = PkiBareContext();
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(context, PkiBareContext());
    EXPECT_EQ(EVP_MD_fetch(context, "SHA1", nullptr), nullptr);
    EXPECT_EQ(EVP_KEYMGMT_fetch(context, "RSA", nullptr), nullptr);
    ERR_clear_error();
}

TEST_F(UaPkiCertificateContextTest, the_default_context_keeps_its_algorithms)
{
    (void)PkiBareContext();
    EVP_MD* const digest = EVP_MD_fetch(nullptr, "SHA1", nullptr);
    EXPECT_NE(digest, nullptr);
    EVP_MD_free(digest);
}

TEST_F(UaPkiCertificateContextTest, a_completed_certificate_has_its_key_and_the_same_bytes)
{
    const UaPkiCertificate ours =
        UaPkiCertificate::fromDER(toByteArray(certificateCorpus().front()));
    EXPECT_EQ(X509_get0_pubkey(ours.handle()), nullptr);
    const PkiHandle<X509> complete = PkiBareContext_Complete(ours.handle());
    ERR_clear_error();
    ASSERT_NE(complete, nullptr);
    EXPECT_NE(X509_get0_pubkey(complete.get()), nullptr);
    EXPECT_EQ(UaPkiCertificate(complete.get()).toDER(), ours.toDER());
}

} // namespace
