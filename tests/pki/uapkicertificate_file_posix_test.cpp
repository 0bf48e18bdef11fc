#include "base/uaunistring.h"
#include "pki/uapkicertificate.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/pki/temporarydirectory.h"

#include <gmock/gmock.h>

#include <string>

#include <sys/stat.h>

// Files that are none: a reader must neither wait for them nor read them without end.

namespace {

using ::testing::IsEmpty;
using ::testing::Not;

using CertificateFilePosixTest = PkiTest;

TEST_F(CertificateFilePosixTest, devices_and_pipes_are_refused_at_once)
{
    const TemporaryDirectory directory;
    ASSERT_EQ(mkfifo(directory.file("pipe").c_str(), 0600), 0);
    for (const std::string& path :
         {directory.file("pipe"), std::string("/dev/zero"), std::string("/dev/null"),
          std::string("/dev/random"), std::string("/dev/tty")}) {
        for (const UaPkiCertificate& certificate :
             {UaPkiCertificate::fromDERFile(path.c_str()),
              UaPkiCertificate::fromDERFile(UaUniString(path.c_str())),
              UaPkiCertificate::fromPEMFile(path.c_str())}) {
            EXPECT_TRUE(certificate.isNull()) << path;
        }
        EXPECT_THAT(messagesOf(UaPkiCertificate::fromDERFile(path.c_str())), Not(IsEmpty()));
        EXPECT_THAT(messagesOf(UaPkiCertificate::fromDERFile(UaUniString(path.c_str()))),
                    Not(IsEmpty()));
        EXPECT_THAT(messagesOf(UaPkiCertificate::fromPEMFile(path.c_str())), Not(IsEmpty()));
    }
}

TEST_F(CertificateFilePosixTest, a_full_disk_is_told)
{
    const UaPkiCertificate certificate = sampleCertificate();
    EXPECT_EQ(certificate.toDERFile("/dev/full"), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    EXPECT_EQ(certificate.toPEMFile("/dev/full"), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
    EXPECT_EQ(certificate.toDERFile(UaUniString("/dev/full")), -1);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
}

} // namespace
