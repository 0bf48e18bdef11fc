#include "pki/opensslhandles.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/temporarydirectory.h"

#include <openssl/pem.h>

#include <array>
#include <string>

// Keys of every kind and form that the openssl program writes.

namespace {

UaByteArray bytesOf(const std::string& text)
{
    return {text.data(), static_cast<OpcUa_Int32>(text.size())};
}

std::string textOf(const UaByteArray& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(bytes.size())};
}

bool isEmpty(const UaPkiPrivateKey& key)
{
    return EVP_PKEY_get_id(key.handle()) == EVP_PKEY_NONE;
}

struct Kind
{
    const char* name;
    const char* command; ///< Writes the key to standard output as PKCS#8 in PEM.
    int type;
    int reportedType; ///< What UaPkiPublicKey::keyType tells.
    bool hasOwnForm;  ///< Besides PKCS#8.
    bool hashes;      ///< Signs a digest that the caller chooses.
};

constexpr Kind kinds[] = {
    {"rsa", "openssl genpkey -algorithm RSA -pkeyopt rsa_keygen_bits:1024", EVP_PKEY_RSA,
     EVP_PKEY_RSA, true, true},
    {"pss", "openssl genpkey -algorithm RSA-PSS -pkeyopt rsa_keygen_bits:1024", EVP_PKEY_RSA_PSS, 0,
     false, true},
    {"p256", "openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256", EVP_PKEY_EC, 0, true,
     true},
    {"p521", "openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-521", EVP_PKEY_EC, 0, true,
     true},
    {"koblitz", "openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:secp256k1", EVP_PKEY_EC,
     0, true, true},
    {"explicit",
     "openssl genpkey -algorithm EC -pkeyopt ec_paramgen_curve:P-256"
     " -pkeyopt ec_param_enc:explicit",
     EVP_PKEY_EC, 0, true, true},
    {"dsa",
     "openssl genpkey -genparam -algorithm DSA -pkeyopt dsa_paramgen_bits:1024 -out parameters &&"
     " openssl genpkey -paramfile parameters",
     EVP_PKEY_DSA, EVP_PKEY_DSA, true, true},
    {"ed25519", "openssl genpkey -algorithm ED25519", EVP_PKEY_ED25519, 0, false, false},
    {"ed448", "openssl genpkey -algorithm ED448", EVP_PKEY_ED448, 0, false, false},
};

struct Form
{
    const char* name;
    const char* command; ///< From the file "key" to standard output.
    const char* password;
    bool isOwnForm;
};

constexpr Form pemForms[] = {
    {"PKCS#8", "openssl pkcs8 -topk8 -nocrypt -in key", nullptr, false},
    {"PKCS#8, AES-256", "openssl pkcs8 -topk8 -v2 aes256 -passout pass:p -in key", "p", false},
    {"PKCS#8, DES3", "openssl pkcs8 -topk8 -v2 des3 -passout pass:p -in key", "p", false},
    {"PKCS#8, PBE", "openssl pkcs8 -topk8 -v1 PBE-SHA1-3DES -passout pass:p -in key", "p", false},
    {"PKCS#8, scrypt",
     "openssl pkcs8 -topk8 -scrypt -scrypt_N 2 -scrypt_r 1 -scrypt_p 1 -passout pass:p -in key",
     "p", false},
    {"own", "openssl pkey -traditional -in key", nullptr, true},
    {"own, AES-128", "openssl pkey -traditional -aes128 -passout pass:p -in key", "p", true},
    {"own, DES3", "openssl pkey -traditional -des3 -passout pass:p -in key", "p", true},
};

class KeyFormsTest : public PkiTest, public ::testing::WithParamInterface<Kind>
{
protected:
    void SetUp() override
    {
        PkiTest::SetUp();
        run(GetParam().command, "key");
    }

    /// Runs a command in the directory; its output goes to a file and is given back.
    std::string run(const std::string& command, const std::string& output)
    {
        const std::string text =
            outputOf("(cd " + directory.path() + " && (" + command + ") >" + output + ")");
        EXPECT_NE(text.find("exit 0"), std::string::npos) << command << '\n' << text;
        return readBytes(directory.file(output));
    }

    /// The same key as in the file "key", in its public part and in what it signs.
    void expectKey(const UaPkiPrivateKey& key, const std::string& form)
    {
        EXPECT_TRUE(key.getErrors().empty()) << form;
        EXPECT_EQ(EVP_PKEY_get_id(key.handle()), GetParam().type) << form;
        const UaPkiPublicKey publicKey(key.handle());
        EXPECT_EQ(textOf(publicKey.toDER()),
                  run("openssl pkey -pubout -outform DER -in key", "pub"))
            << form;
        EXPECT_EQ(publicKey.keyType(), GetParam().reportedType) << form;
        EXPECT_EQ(isSignedRight(key), true) << form;
    }

    bool isSignedRight(const UaPkiPrivateKey& key)
    {
        const EVP_MD* const digest = GetParam().hashes ? EVP_sha256() : nullptr;
        const PkiHandle<EVP_MD_CTX> signing(EVP_MD_CTX_new());
        std::array<unsigned char, 256> signature{};
        std::size_t size = signature.size();
        constexpr unsigned char message[] = "message";
        const PkiHandle<EVP_PKEY> publicKey(UaPkiPublicKey(key.handle()).handle());
        const PkiHandle<EVP_MD_CTX> verifying(EVP_MD_CTX_new());
        return EVP_DigestSignInit(signing.get(), nullptr, digest, nullptr, key.handle()) == 1 &&
               EVP_DigestSign(signing.get(), signature.data(), &size, message, sizeof(message)) ==
                   1 &&
               EVP_DigestVerifyInit(verifying.get(), nullptr, digest, nullptr, publicKey.get()) ==
                   1 &&
               EVP_DigestVerify(verifying.get(), signature.data(), size, message,
                                sizeof(message)) == 1;
    }

    TemporaryDirectory directory;
};

TEST_P(KeyFormsTest, every_pem_form_gives_the_key)
{
    for (const Form& form : pemForms) {
        if (form.isOwnForm && !GetParam().hasOwnForm) {
            continue;
        }
        const UaByteArray pem = bytesOf(run(form.command, "form"));
        expectKey(UaPkiPrivateKey::fromPEM(pem, form.password), form.name);
        if (form.password != nullptr) {
            EXPECT_TRUE(isEmpty(UaPkiPrivateKey::fromPEM(pem, nullptr))) << form.name;
            EXPECT_TRUE(isEmpty(UaPkiPrivateKey::fromPEM(pem, "q"))) << form.name;
        }
    }
}

TEST_P(KeyFormsTest, both_der_forms_give_the_key)
{
    const std::string forms[] = {"openssl pkcs8 -topk8 -nocrypt -outform DER -in key",
                                 "openssl pkey -traditional -outform DER -in key"};
    for (const std::string& form : forms) {
        const std::string der = run(form, "form");
        expectKey(UaPkiPrivateKey::fromDER(bytesOf(der), GetParam().type), form);
    }
}

TEST_P(KeyFormsTest, what_is_written_is_read_again)
{
    const UaPkiPrivateKey key =
        UaPkiPrivateKey::fromPEM(bytesOf(readBytes(directory.file("key"))), nullptr);
    expectKey(UaPkiPrivateKey::fromDER(key.toDER(), GetParam().type), "DER");
}

TEST_P(KeyFormsTest, a_key_cut_at_any_byte_is_refused)
{
    const std::string der = run("openssl pkey -traditional -outform DER -in key", "form");
    for (std::size_t size = 0; size < der.size(); ++size) {
        const UaPkiPrivateKey key =
            UaPkiPrivateKey::fromDER(bytesOf(der.substr(0, size)), GetParam().type);
        EXPECT_TRUE(isEmpty(key)) << "DER of " << size;
        EXPECT_FALSE(key.getErrors().empty()) << "DER of " << size;
    }
    const std::string pem = readBytes(directory.file("key"));
    for (std::size_t size = 0; size + 1 < pem.size(); ++size) {
        const UaPkiPrivateKey key = UaPkiPrivateKey::fromPEM(bytesOf(pem.substr(0, size)), nullptr);
        EXPECT_TRUE(isEmpty(key)) << "PEM of " << size;
        EXPECT_FALSE(key.getErrors().empty()) << "PEM of " << size;
    }
}

TEST_P(KeyFormsTest, what_the_library_makes_of_changed_bytes_is_what_we_make_of_them)
{
    const std::string pem = readBytes(directory.file("key"));
    for (std::size_t at = 0; at < pem.size(); ++at) {
        std::string changed = pem;
        changed[at] = static_cast<char>(changed[at] ^ 0x02);
        const UaPkiPrivateKey key = UaPkiPrivateKey::fromPEM(bytesOf(changed), nullptr);
        const PkiErrorScope scope;
        const PkiHandle<BIO> bio(BIO_new_mem_buf(changed.data(), static_cast<int>(changed.size())));
        const PkiHandle<EVP_PKEY> other(
            PEM_read_bio_PrivateKey(bio.get(), nullptr, nullptr, const_cast<char*>("")));
        EXPECT_EQ(isEmpty(key), other == nullptr) << at;
        EXPECT_EQ(isEmpty(key), !key.getErrors().empty()) << at;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, KeyFormsTest, ::testing::ValuesIn(kinds),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
