#include "base/uabytestring.h"
#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicertificateinfo.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiidentity.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/certificatefields.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/malformedmaker.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"

#include <openssl/pem.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Malformed certificates, lists, requests and keys by the hundred: each gives a null object with
// messages or what OpenSSL itself reads.

namespace {

constexpr unsigned seed = 20'240'506;
constexpr int variantsOfEach = 80;
constexpr const char* password = "secret";

int refuse(char* /*buffer*/, int /*size*/, int /*rwflag*/, void* /*data*/)
{
    return -1;
}

/// What OpenSSL's own function reads from DER.
template <typename Handle>
PkiHandle<Handle> readDer(const std::string& bytes,
                          Handle* (*d2i)(Handle**, const unsigned char**, long))
{
    const PkiErrorScope scope;
    const auto* position = reinterpret_cast<const unsigned char*>(bytes.data());
    return PkiHandle<Handle>(d2i(nullptr, &position, static_cast<long>(bytes.size())));
}

/// What OpenSSL's own function reads from PEM.
template <typename Handle>
PkiHandle<Handle> readPem(const std::string& bytes,
                          Handle* (*read)(BIO*, Handle**, pem_password_cb*, void*),
                          pem_password_cb* callback = refuse, void* data = nullptr)
{
    const PkiErrorScope scope;
    const PkiHandle<BIO> bio(BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
    return PkiHandle<Handle>(read(bio.get(), nullptr, callback, data));
}

template <typename Handle>
std::string encode(const Handle* handle, int (*i2d)(const Handle*, unsigned char**))
{
    const PkiErrorScope scope;
    unsigned char* encoded = nullptr;
    const int size = i2d(handle, &encoded);
    const PkiLibraryBytes owner(encoded);
    return size > 0
               ? std::string(reinterpret_cast<const char*>(encoded), static_cast<std::size_t>(size))
               : std::string();
}

class MalformedTest : public PkiTest
{
protected:
    void SetUp() override
    {
        PkiTest::SetUp();
        for (const auto& entry : std::filesystem::directory_iterator(PKI_TEST_DATA)) {
            if (entry.path().extension() != ".sh") {
                samples[entry.path().filename().string()] = readBytes(entry.path().string());
            }
        }
        for (const auto& [name, bytes] : samples) {
            if (name.find(".der") != std::string::npos) {
                donors.push_back(bytes);
            }
        }
    }

    /// Hands malformed variants of the samples of one kind to `check`, in a file as well.
    template <typename Check>
    void forEachVariant(const std::string& kind, Check check)
    {
        for (const auto& [name, bytes] : samples) {
            if (name.rfind(kind, 0) != 0) {
                continue;
            }
            MalformedMaker maker(seed);
            for (int i = 0; i < variantsOfEach; ++i) {
                const std::string variant = maker.change(bytes, donors);
                SCOPED_TRACE(name + " " + std::to_string(i));
                writeBytes(path, variant);
                check(variant);
                EXPECT_EQ(ERR_peek_error(), 0u);
                ++count;
                accepted += lastAccepted ? 1 : 0;
                if (HasFailure()) {
                    return;
                }
            }
        }
    }

    /// A null object has messages, any other has none, and OpenSSL agrees.
    template <typename Object>
    void expectAgreement(const Object& object, bool isExpected, const char* what)
    {
        EXPECT_EQ(!object.isNull(), isExpected) << what;
        EXPECT_EQ(object.getErrors().empty(), !object.isNull()) << what;
        lastAccepted = isExpected;
    }

    TemporaryDirectory directory;
    const std::string path = directory.file("f");
    const UaUniString uniPath = directory.uniFile("f");
    std::map<std::string, std::string> samples;
    std::vector<std::string> donors; ///< Samples in DER.
    bool lastAccepted = false;
    int count = 0;
    int accepted = 0;
};

TEST_F(MalformedTest, certificates)
{
    forEachVariant("certificate", [&](const std::string& bytes) {
        const PkiHandle<X509> der = readDer<X509>(bytes, d2i_X509);
        const UaPkiCertificate inMemory = UaPkiCertificate::fromDER(toByteArray(bytes));
        expectAgreement(UaPkiCertificate::fromDERFile(path.c_str()), der != nullptr, "file");
        expectAgreement(UaPkiCertificate::fromDERFile(uniPath), der != nullptr, "engine");
        expectAgreement(inMemory, der != nullptr, "memory");
        const PkiHandle<X509> pem = readPem<X509>(bytes, PEM_read_bio_X509);
        const UaPkiCertificate text = UaPkiCertificate::fromPEMFile(path.c_str());
        EXPECT_EQ(text.isNull(), pem == nullptr);
        if (!text.isNull() && pem != nullptr) {
            EXPECT_EQ(allFieldsOf(text), allFieldsOf(UaPkiCertificate(pem.get())));
        }
        if (!inMemory.isNull() && der != nullptr) {
            EXPECT_EQ(allFieldsOf(inMemory), allFieldsOf(UaPkiCertificate(der.get())));
        }
        lastAccepted = der != nullptr || pem != nullptr;
    });
    EXPECT_GE(count, 300);
    EXPECT_GT(accepted, 0) << "all are refused: the generator is too rough";
    EXPECT_LT(accepted, count / 2) << "most are good: the generator is too gentle";
}

void useList(const UaPkiRevocationList& list, const X509_CRL* expected)
{
    EXPECT_EQ(toStdString(list.toDER()), encode(expected, i2d_X509_CRL));
    const UaPkiRevocationList same(const_cast<X509_CRL*>(expected));
    EXPECT_EQ(list.thisUpdate(), same.thisUpdate());
    EXPECT_EQ(list.nextUpdate(), same.nextUpdate());
    EXPECT_EQ(list.isValid(), same.isValid());
    EXPECT_EQ(list.issuer(), same.issuer());
    EXPECT_EQ(list.crlNumber(), same.crlNumber());
    EXPECT_EQ(list.sameIssuer(same), same.sameIssuer(list));
    EXPECT_FALSE(list.verifySignature(sampleKeyPair().publicKey()));
    (void)list.getErrors();
}

TEST_F(MalformedTest, lists)
{
    forEachVariant("list", [&](const std::string& bytes) {
        PkiHandle<X509_CRL> der = readDer<X509_CRL>(bytes, d2i_X509_CRL);
        const UaPkiRevocationList inMemory = UaPkiRevocationList::fromDER(toByteArray(bytes));
        expectAgreement(inMemory, der != nullptr, "memory");
        PkiHandle<X509_CRL> either = readPem<X509_CRL>(bytes, PEM_read_bio_X509_CRL);
        if (either == nullptr) {
            either = std::move(der);
        }
        const UaPkiRevocationList plain = UaPkiRevocationList::fromFile(path.c_str());
        const UaPkiRevocationList engine = UaPkiRevocationList::fromFile(uniPath);
        expectAgreement(plain, either != nullptr, "file");
        expectAgreement(engine, either != nullptr, "engine");
        for (const UaPkiRevocationList* list : {&plain, &engine}) {
            if (!list->isNull() && either != nullptr) {
                useList(*list, either.get());
            }
        }
    });
    EXPECT_GE(count, 200);
    EXPECT_GT(accepted, 0);
    EXPECT_LT(accepted, count / 2);
}

TEST_F(MalformedTest, requests)
{
    const UaPkiCertificate issuer(sampleInfo(), sampleIdentity(), sampleKeyPair(), true,
                                  UaPkiCertificate::Sha256WithRsa);
    forEachVariant("request", [&](const std::string& bytes) {
        const PkiHandle<X509_REQ> der = readDer<X509_REQ>(bytes, d2i_X509_REQ);
        const UaPkiCSR request = UaPkiCSR::fromDER(toByteArray(bytes));
        expectAgreement(UaPkiCSR::fromDERFile(path.c_str()), der != nullptr, "file");
        expectAgreement(UaPkiCSR::fromDERFile(uniPath), der != nullptr, "engine");
        expectAgreement(request, der != nullptr, "memory");
        if (request.isNull() || der == nullptr) {
            return;
        }
        EXPECT_EQ(toStdString(request.toDER()), encode(der.get(), i2d_X509_REQ));
        EXPECT_EQ(UaByteArray(request.toDERByteString()), request.toDER());
        const UaPkiCertificate made =
            UaPkiCertificate::fromCSR(request, issuer, sampleKeyPair().privateKey(), 3600, 1,
                                      UaPkiCertificate::Sha256WithRsa);
        EXPECT_EQ(made.isNull(), !made.getErrors().empty());
        EXPECT_TRUE(made.isNull() || made.verifySignature(sampleKeyPair().publicKey()));
    });
    EXPECT_GE(count, 150);
    EXPECT_GT(accepted, 0);
    EXPECT_LT(accepted, count / 2);
}

bool isEmpty(const UaPkiPrivateKey& key)
{
    return key.handle() == nullptr || EVP_PKEY_get_id(key.handle()) == EVP_PKEY_NONE;
}

TEST_F(MalformedTest, private_keys)
{
    const auto compare = [&](const UaPkiPrivateKey& key, const UaPkiErrorList& errors,
                             const EVP_PKEY* expected, const char* what) {
        EXPECT_EQ(!isEmpty(key), expected != nullptr) << what;
        EXPECT_EQ(errors.getErrors().empty(), !isEmpty(key)) << what;
        if (!isEmpty(key) && expected != nullptr) {
            const PkiErrorScope scope;
            // Less than 0 where the library can't compare what it has read.
            EXPECT_NE(EVP_PKEY_eq(key.handle(), expected), 0) << what;
        }
        (void)key.toDER();
        (void)key.getErrors();
        lastAccepted = lastAccepted || expected != nullptr;
    };
    forEachVariant("key", [&](const std::string& bytes) {
        lastAccepted = false;
        for (const int type : {EVP_PKEY_RSA, EVP_PKEY_EC}) {
            const PkiErrorScope scope;
            const auto* position = reinterpret_cast<const unsigned char*>(bytes.data());
            const PkiHandle<EVP_PKEY> der(
                d2i_PrivateKey(type, nullptr, &position, static_cast<long>(bytes.size())));
            const UaPkiPrivateKey key = UaPkiPrivateKey::fromDER(toByteArray(bytes), type);
            compare(key, key, der.get(), type == EVP_PKEY_RSA ? "DER as RSA" : "DER as EC");
        }
        const PkiHandle<EVP_PKEY> pem =
            readPem<EVP_PKEY>(bytes, PEM_read_bio_PrivateKey, nullptr, const_cast<char*>(password));
        const UaPkiPrivateKey key = UaPkiPrivateKey::fromPEM(toByteArray(bytes), password);
        compare(key, key, pem.get(), "PEM");
        const bool isRsa = pem != nullptr && EVP_PKEY_is_a(pem.get(), "RSA") == 1;
        for (const UaPkiRSAKeyPair& keyPair : {UaPkiRSAKeyPair::fromPEMFile(path.c_str(), password),
                                               UaPkiRSAKeyPair::fromPEMFile(uniPath, password)}) {
            compare(keyPair.privateKey(), keyPair, isRsa ? pem.get() : nullptr, "file");
        }
        EXPECT_TRUE(isEmpty(UaPkiRSAKeyPair::fromPEMFile(path.c_str(), nullptr).privateKey()) ||
                    bytes.find("ENCRYPTED") == std::string::npos);
    });
    EXPECT_GE(count, 600);
    EXPECT_GT(accepted, 0);
    EXPECT_LT(accepted, count / 2);
}

TEST_F(MalformedTest, public_keys)
{
    forEachVariant("public", [&](const std::string& bytes) {
        const PkiHandle<X509_PUBKEY> der = readDer<X509_PUBKEY>(bytes, d2i_X509_PUBKEY);
        const UaPkiPublicKey key = UaPkiPublicKey::fromDER(toByteArray(bytes));
        lastAccepted = der != nullptr;
        EXPECT_EQ(messagesOf(key).empty(), lastAccepted);
        if (lastAccepted) {
            EXPECT_EQ(toStdString(key.toDER()), encode(der.get(), i2d_X509_PUBKEY));
        }
        EXPECT_EQ(key.keySize() >= 0, PkiHandle<EVP_PKEY>(key.handle()) != nullptr);
        EXPECT_GE(key.keyType(), 0);
        (void)key.getErrors();
    });
    EXPECT_GE(count, 150);
    EXPECT_GT(accepted, 0);
}

TEST_F(MalformedTest, good_samples_are_read)
{
    for (const auto& [name, bytes] : samples) {
        const UaByteArray data = toByteArray(bytes);
        const bool isText = name.find(".pem") != std::string::npos;
        const std::string file = std::string(PKI_TEST_DATA) + "/" + name;
        if (name.rfind("certificate", 0) == 0) {
            EXPECT_FALSE((isText ? UaPkiCertificate::fromPEMFile(file.c_str())
                                 : UaPkiCertificate::fromDER(data))
                             .isNull())
                << name;
        } else if (name.rfind("list", 0) == 0) {
            EXPECT_FALSE(UaPkiRevocationList::fromFile(file.c_str()).isNull()) << name;
        } else if (name.rfind("request", 0) == 0) {
            EXPECT_FALSE(UaPkiCSR::fromDER(data).isNull()) << name;
        } else if (name.rfind("public", 0) == 0) {
            EXPECT_GT(UaPkiPublicKey::fromDER(data).keySize(), 0) << name;
        } else if (isText) {
            EXPECT_FALSE(isEmpty(UaPkiPrivateKey::fromPEM(data, password))) << name;
        } else {
            const int type = name.find("ec") != std::string::npos ? EVP_PKEY_EC : EVP_PKEY_RSA;
            EXPECT_FALSE(isEmpty(UaPkiPrivateKey::fromDER(data, type))) << name;
        }
    }
    EXPECT_EQ(samples.size(), 19u);
}

TEST(MalformedMakerTest, makes_the_same_variants_from_the_same_seed)
{
    const std::string sample = readBytes(std::string(PKI_TEST_DATA) + "/list_entries.der");
    ASSERT_FALSE(sample.empty());
    const auto parsed = parseDer(sample);
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->front().bytes(), sample) << "an unchanged tree gives the same bytes";
    MalformedMaker first(seed);
    MalformedMaker second(seed);
    int same = 0;
    for (int i = 0; i < variantsOfEach; ++i) {
        const std::string variant = first.change(sample, {sample});
        EXPECT_EQ(variant, second.change(sample, {sample}));
        same += variant == sample ? 1 : 0;
    }
    EXPECT_LE(same, variantsOfEach / 10);
}

} // namespace
