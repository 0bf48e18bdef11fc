// The examples of docs/pki.md about keys and the file engine. What stands between the markers is quoted
// there word for word.

#include "base/uaunistring.h"
#include "base/uaunistringlist.h"
#include "pki/uaabstractfileengine.h"
#include "pki/uadir.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/memoryfileengine.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <algorithm>
#include <string>

namespace {

// docs begin
int askOperator(char* buffer, int size, int /*rwflag*/, void* userData)
{
    const std::string& answer = *static_cast<const std::string*>(userData);
    const std::size_t length = std::min(answer.size(), static_cast<std::size_t>(size));
    std::copy_n(answer.begin(), length, buffer);
    return static_cast<int>(length);
}
// docs end

TEST(DocsPkiKeys, keys_are_kept_in_files)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("pump.pem");

    // docs begin
    const UaPkiRSAKeyPair keyPair(2048);
    EXPECT_EQ(keyPair.publicKey().keySize(), 2048);
    EXPECT_EQ(keyPair.publicKey().keyType(), EVP_PKEY_RSA);
    // docs end

    // docs begin
    EXPECT_EQ(keyPair.toPEMFile(path.c_str(), "open sesame"), 0);

    const UaPkiRSAKeyPair read = UaPkiRSAKeyPair::fromPEMFile(path.c_str(), "open sesame");
    EXPECT_EQ(read.toDER(), keyPair.toDER());

    const UaPkiRSAKeyPair locked = UaPkiRSAKeyPair::fromPEMFile(path.c_str(), nullptr);
    EXPECT_TRUE(locked.toDER().isEmpty());
    EXPECT_FALSE(locked.getErrors().empty());
    // docs end

    // docs begin
    std::string answer = "open sesame";
    const UaPkiRSAKeyPair asked =
        UaPkiRSAKeyPair::fromPEMFile(path.c_str(), nullptr, askOperator, &answer);
    EXPECT_FALSE(asked.toDER().isEmpty());
    // docs end
}

TEST(DocsPkiKeys, files_are_kept_anywhere)
{
    UaPkiCertificateInfo info;
    info.uri = "urn:pump:server";
    const UaPkiCertificate certificate(info, UaPkiIdentity(), sampleKeyPair(), false,
                                       UaPkiCertificate::Sha256WithRsa);
    MemoryFileEngine engine;

    // docs begin
    UaAbstractFileEngine* const former = uaSetFileEngine(&engine);
    EXPECT_EQ(certificate.toDERFile(UaUniString("pump.der")), 0);
    EXPECT_EQ(engine.files.count("pump.der"), 1u); // nothing on the disk
    EXPECT_FALSE(UaPkiCertificate::fromDERFile(UaUniString("pump.der")).isNull());
    uaSetFileEngine(former);
    // docs end
}

TEST(DocsPkiKeys, directories_are_listed)
{
    const TemporaryDirectory temporary;
    const std::string& folder = temporary.path();

    // docs begin
    const UaDir directory(UaUniString(folder.c_str()));
    EXPECT_TRUE(directory.mkpath(directory.path() + u"/pki/trusted"));
    const UaUniStringList entries = directory.entryList(UaAbstractFileEngine::FilterDirectories |
                                                        UaAbstractFileEngine::FilterNoDotEntries);
    EXPECT_EQ(entries.size(), 1u);
    // docs end
}

} // namespace
