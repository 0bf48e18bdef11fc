// The examples of docs/pki.md about certificates, requests and revocation lists. What stands between
// the markers is quoted there word for word.

#include "base/uadatetime.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "pki/uapkirsakeypair.h"
#include "platform/status.h"
#include "tests/pki/samplekey.h"
#include "tests/pki/temporarydirectory.h"

#include <gtest/gtest.h>
#include <openssl/obj_mac.h>

#include <list>
#include <string>
#include <thread>

namespace {

// docs begin
UaPkiCertificate readCertificate(const char* path)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(path);
    return certificate.isNull() ? UaPkiCertificate::fromPEMFile(path) : certificate;
}
// docs end

UaPkiIdentity nameOf(const char* commonName)
{
    UaPkiIdentity identity;
    identity.commonName = commonName;
    return identity;
}

UaPkiCertificateInfo makeInfo()
{
    UaPkiCertificateInfo info;
    info.uri = "urn:plant:client";
    info.validTime = 3600;
    info.serialNumber = 1;
    return info;
}

TEST(DocsPkiCertificates, failures_stand_on_the_object)
{
    // docs begin
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(UaByteArray("garbage", 7));
    EXPECT_TRUE(certificate.isNull());

    const std::list<UaString> errors = certificate.getErrors();
    EXPECT_FALSE(errors.empty());
    EXPECT_TRUE(certificate.getErrors().empty()); // they were handed out
    // docs end
}

TEST(DocsPkiCertificates, a_null_certificate_answers_with_nothing)
{
    // docs begin
    const UaPkiCertificate none;
    EXPECT_TRUE(none.subject().isEmpty());
    EXPECT_FALSE(none.isValid());
    EXPECT_EQ(none.getErrors().front(), "The certificate is NULL");
    // docs end
}

TEST(DocsPkiCertificates, an_application_signs_its_own)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("pump.der");
    const UaPkiRSAKeyPair& keyPair = sampleKeyPair();

    // docs begin
    UaPkiIdentity subject;
    subject.commonName = "Pump Server";
    subject.organization = "Plant";

    UaPkiCertificateInfo info;
    info.uri = "urn:pump:server";
    EXPECT_EQ(info.dnsNames.create(1), OpcUa_Good);
    EXPECT_EQ(UaString("pump.example.org").copyTo(&info.dnsNames[0]), OpcUa_Good);
    info.validTime = 5 * 365 * 24 * 3600; // seconds from now on
    info.serialNumber = 42;               // 0 takes the current time

    const UaPkiCertificate certificate(info, subject, keyPair, false,
                                       UaPkiCertificate::Sha256WithRsa);
    EXPECT_FALSE(certificate.isNull());
    EXPECT_EQ(certificate.toDERFile(path.c_str()), 0);
    // docs end
    EXPECT_EQ(readCertificate(path.c_str()).toDER(), certificate.toDER());
    EXPECT_EQ(certificate.toPEMFile(path.c_str()), 0);
    EXPECT_EQ(readCertificate(path.c_str()).toDER(), certificate.toDER());

    // docs begin
    info.uri = "urn:pump:server,DNS:intruder.example.org"; // one field, two names
    const UaPkiCertificate injected(info, subject, keyPair, false, UaPkiCertificate::Sha256WithRsa);
    EXPECT_EQ(UaString(&injected.info().dnsNames[0]), "intruder.example.org");

    info.uri = "";
    const UaPkiCertificate refused(info, subject, keyPair, false, UaPkiCertificate::Sha256WithRsa);
    EXPECT_TRUE(refused.isNull());
    // docs end
}

/// The certificate that the page reads.
UaPkiCertificate pumpCertificate()
{
    UaPkiIdentity subject = nameOf("Pump Server");
    subject.organization = "Plant";
    UaPkiCertificateInfo info = makeInfo();
    info.uri = "urn:pump:server";
    info.serialNumber = 42;
    EXPECT_EQ(info.dnsNames.create(1), OpcUa_Good);
    EXPECT_EQ(UaString("pump.example.org").copyTo(&info.dnsNames[0]), OpcUa_Good);
    return {info, subject, sampleKeyPair(), false, UaPkiCertificate::Sha256WithRsa};
}

TEST(DocsPkiCertificates, fields_are_plain_values)
{
    const UaPkiCertificate certificate = pumpCertificate();

    // docs begin
    EXPECT_EQ(certificate.commonName(), "Pump Server");
    EXPECT_EQ(certificate.subject().organization, "Plant");
    EXPECT_EQ(certificate.issuer(), certificate.subject());

    const UaPkiCertificateInfo info = certificate.info();
    EXPECT_EQ(info.uri, "urn:pump:server");
    EXPECT_EQ(UaString(&info.dnsNames[0]), "pump.example.org");

    EXPECT_TRUE(certificate.isValid());
    EXPECT_TRUE(certificate.validFrom() < certificate.validTo());
    EXPECT_EQ(certificate.thumbPrint().size(), 20); // SHA-1, by which OPC UA names certificates
    EXPECT_EQ(certificate.serialNumberString(), "2A");
    // docs end

    // docs begin
    EXPECT_TRUE(certificate.hasExtension(NID_basic_constraints));
    EXPECT_EQ(certificate.extensionValue(NID_basic_constraints), "CA:FALSE");
    // docs end

    // docs begin
    EXPECT_TRUE(certificate.isSelfSigned());
    EXPECT_TRUE(certificate.verifySignature(certificate.publicKey()));
    // docs end

    // docs begin
    std::thread other([copy = certificate] { EXPECT_TRUE(copy.isValid()); });
    EXPECT_TRUE(certificate.isValid());
    other.join();
    // docs end
}

TEST(DocsPkiCertificates, authorities_make_certificates_for_others)
{
    const TemporaryDirectory directory;
    const std::string path = directory.file("plant.crl");
    const UaPkiCertificateInfo info = makeInfo();
    const UaPkiRSAKeyPair& authorityKey = sampleKeyPair();
    const UaPkiRSAKeyPair& clientKey = otherKeyPair();
    const UaPkiRSAKeyPair& otherKey = otherKeyPair();
    const UaPkiCertificate other(info, nameOf("Other Authority"), otherKey, true,
                                 UaPkiCertificate::Sha256WithRsa);

    // docs begin
    const UaPkiCertificate authority(info, nameOf("Plant Authority"), authorityKey, true,
                                     UaPkiCertificate::Sha256WithRsa);
    const UaPkiCertificate client(info, nameOf("Client"), clientKey.publicKey(), authority,
                                  authorityKey.privateKey(), false,
                                  UaPkiCertificate::Sha256WithRsa);
    EXPECT_EQ(client.issuer(), authority.subject());
    EXPECT_TRUE(client.verifySignature(authority.publicKey()));
    // docs end

    // docs begin
    const UaPkiCSR request(info, nameOf("Client"), clientKey, false,
                           UaPkiCertificate::Sha256WithRsa);
    EXPECT_FALSE(request.toDER().isEmpty()); // what is sent

    const UaPkiCertificate granted =
        UaPkiCertificate::fromCSR(request, authority, authorityKey.privateKey(), info.validTime, 43,
                                  UaPkiCertificate::Sha256WithRsa);
    EXPECT_EQ(granted.commonName(), "Client");
    EXPECT_TRUE(granted.verifySignature(authority.publicKey()));
    // docs end

    // docs begin
    UaPkiCertificate moved = UaPkiCertificate::fromDER(granted.toDER());
    EXPECT_TRUE(moved.sign(other, otherKey.privateKey(), UaPkiCertificate::Sha256WithRsa));
    EXPECT_EQ(moved.issuer(), other.subject());
    // docs end

    // docs begin
    UaPkiRevocationList list(7 * 24 * 3600, authority.subject(), 1);
    list.addRevoked(client, UaDateTime::now());
    EXPECT_TRUE(list.sign(authorityKey.privateKey()));
    EXPECT_EQ(list.toDERFile(path.c_str()), 1);

    const UaPkiRevocationList read = UaPkiRevocationList::fromFile(path.c_str());
    EXPECT_TRUE(read.isValid());
    EXPECT_EQ(read.crlNumber(), 1);
    EXPECT_TRUE(read.verifySignature(authority.publicKey()));
    // docs end
}

} // namespace
