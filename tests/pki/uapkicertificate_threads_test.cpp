#include "pki/uapkicertificate.h"
#include "tests/pki/certificatefields.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <string>

TEST(UaPkiCertificateThreads, copies_are_read_in_eight_threads)
{
    const std::string der =
        sampleDer({.alternativeNames = "URI:urn:host,email:a@b,DNS:host,DNS:other,IP:10.0.0.1"});
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(toByteArray(der));
    const std::string expected = allFieldsOf(certificate);
    inEightThreads([&] {
        for (int i = 0; i < 20; ++i) {
            const UaPkiCertificate copy(certificate);
            EXPECT_EQ(allFieldsOf(copy), expected);
        }
        EXPECT_FALSE(UaPkiCertificate::fromDER(toByteArray(der)).isNull());
    });
}
