#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "tests/pki/certificateorder.h"
#include "tests/pki/dercertificate.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

// Lists made here: new, with entries, signed.

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using RevocationListMakeTest = PkiTest;

const UaDateTime today = UaDateTime::fromString("2024-05-06T07:08:09.500Z");

UaPkiRevocationList newList(const UaPkiIdentity& issuer = sampleIdentity(), int number = 7)
{
    return {3600, issuer, number};
}

UaPkiCertificate certificateWithSerial(const std::string& content)
{
    DerCertificate parts;
    parts.serialNumber = der(DerInteger, content);
    return UaPkiCertificate::fromDER(toByteArray(parts.bytes()));
}

std::string textOf(const ASN1_STRING* value)
{
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(value)),
            static_cast<std::size_t>(ASN1_STRING_length(value))};
}

std::vector<std::string> entriesOf(const UaPkiRevocationList& list)
{
    return attributesOf(X509_CRL_get_issuer(list.handle()));
}

int countOf(const UaPkiRevocationList& list)
{
    const int count = sk_X509_REVOKED_num(X509_CRL_get_REVOKED(list.handle()));
    return count < 0 ? 0 : count;
}

/// Serial number and time of an entry.
std::pair<std::string, std::string> entryOf(const UaPkiRevocationList& list, int index)
{
    const X509_REVOKED* const entry =
        sk_X509_REVOKED_value(X509_CRL_get_REVOKED(list.handle()), index);
    const PkiHandle<BIGNUM> number(
        ASN1_INTEGER_to_BN(X509_REVOKED_get0_serialNumber(entry), nullptr));
    char* const text = BN_bn2hex(number.get());
    const std::string serial(text);
    OPENSSL_free(text);
    return {serial, textOf(X509_REVOKED_get0_revocationDate(entry))};
}

TEST_F(RevocationListMakeTest, a_new_list_has_version_issuer_times_and_number)
{
    const FixedClock clock(today);
    const UaPkiRevocationList list = newList();
    ASSERT_FALSE(list.isNull());
    EXPECT_THAT(messagesOf(list), IsEmpty());
    EXPECT_EQ(X509_CRL_get_version(list.handle()), 1);
    EXPECT_EQ(list.thisUpdate().toString(), "2024-05-06T07:08:09.000Z");
    EXPECT_EQ(list.nextUpdate().toString(), "2024-05-06T08:08:09.000Z");
    EXPECT_EQ(list.issuer(), sampleIdentity());
    EXPECT_EQ(list.crlNumber(), 7);
    EXPECT_TRUE(list.isValid());
    EXPECT_EQ(countOf(list), 0);
    ASSERT_EQ(X509_CRL_get_ext_count(list.handle()), 1);
    X509_EXTENSION* const number = X509_CRL_get_ext(list.handle(), 0);
    EXPECT_EQ(OBJ_obj2nid(X509_EXTENSION_get_object(number)), 88);
    EXPECT_EQ(X509_EXTENSION_get_critical(number), 0);
}

TEST_F(RevocationListMakeTest, issuer_has_seven_entries_in_the_order_of_certificates)
{
    EXPECT_THAT(entriesOf(newList()),
                ElementsAre("DC=host", "C=DE", "ST=State", "L=Ort \xC3\xBC", "O=Organisation",
                            "OU=Unit", "CN=application@host"));
}

TEST_F(RevocationListMakeTest, empty_fields_become_entries_with_an_empty_text)
{
    const UaPkiIdentity issuer = identityOf("Authority");
    const UaPkiRevocationList list = newList(issuer);
    EXPECT_THAT(messagesOf(list), IsEmpty());
    EXPECT_THAT(entriesOf(list),
                ElementsAre("DC=", "C=", "ST=", "L=", "O=", "OU=", "CN=Authority"));
    const X509_NAME* const name = X509_CRL_get_issuer(list.handle());
    const int place = X509_NAME_get_index_by_NID(name, NID_organizationName, -1);
    ASSERT_GE(place, 0);
    const ASN1_STRING* const organization =
        X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, place));
    EXPECT_EQ(ASN1_STRING_type(organization), V_ASN1_UTF8STRING);
    EXPECT_EQ(ASN1_STRING_length(organization), 0);
    EXPECT_EQ(list.issuer(), issuer);
    EXPECT_THAT(entriesOf(newList(UaPkiIdentity())),
                ElementsAre("DC=", "C=", "ST=", "L=", "O=", "OU=", "CN="));
}

struct RefusedRow
{
    const char* name;
    UaString UaPkiIdentity::*field;
    std::string text;
    std::size_t place;
};

TEST_F(RevocationListMakeTest, a_field_that_the_library_refuses_is_left_out_with_a_message)
{
    const RefusedRow rows[] = {
        {"country of three letters", &UaPkiIdentity::country, "DEU", 1},
        {"country of one letter", &UaPkiIdentity::country, "D", 1},
        {"long common name", &UaPkiIdentity::commonName, std::string(65, 'n'), 6},
        {"no UTF-8", &UaPkiIdentity::organization, "\xFF\xFE", 4},
    };
    for (const RefusedRow& row : rows) {
        UaPkiIdentity issuer = sampleIdentity();
        issuer.*row.field = UaString(row.text.c_str());
        const UaPkiRevocationList list = newList(issuer);
        EXPECT_FALSE(list.isNull()) << row.name;
        EXPECT_THAT(messagesOf(list), Not(IsEmpty())) << row.name;
        std::vector<std::string> expected = entriesOf(newList());
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(row.place));
        EXPECT_EQ(entriesOf(list), expected) << row.name;
        EXPECT_EQ(list.crlNumber(), 7) << row.name;
    }
}

struct LifetimeRow
{
    const char* now;
    OpcUa_UInt32 validTime;
    const char* nextUpdate;
    int type;
};

constexpr LifetimeRow lifetimeRows[] = {
    {"2024-05-06T07:08:09.000Z", 0, "240506070809Z", V_ASN1_UTCTIME},
    {"2024-05-06T07:08:09.000Z", 1, "240506070810Z", V_ASN1_UTCTIME},
    {"2024-05-06T07:08:09.000Z", 86'400, "240507070809Z", V_ASN1_UTCTIME},
    {"2024-05-06T07:08:09.000Z", 31'536'000, "250506070809Z", V_ASN1_UTCTIME},
    {"2024-05-06T07:08:09.000Z", 2'147'483'648, "20920524102217Z", V_ASN1_GENERALIZEDTIME},
    {"2024-05-06T07:08:09.000Z", 4'294'967'295, "21600612133624Z", V_ASN1_GENERALIZEDTIME},
    {"2049-12-31T23:59:58.000Z", 1, "491231235959Z", V_ASN1_UTCTIME},
    {"2049-12-31T23:59:58.000Z", 2, "20500101000000Z", V_ASN1_GENERALIZEDTIME},
};

TEST_F(RevocationListMakeTest, lifetime_counts_from_now_in_seconds)
{
    for (const LifetimeRow& row : lifetimeRows) {
        const FixedClock clock(UaDateTime::fromString(row.now));
        const UaPkiRevocationList list(row.validTime, sampleIdentity(), 1);
        ASSERT_FALSE(list.isNull()) << row.validTime;
        const ASN1_TIME* const next = X509_CRL_get0_nextUpdate(list.handle());
        EXPECT_EQ(textOf(next), row.nextUpdate) << row.validTime;
        EXPECT_EQ(ASN1_STRING_type(next), row.type) << row.validTime;
        EXPECT_EQ(list.thisUpdate().toString(), row.now) << row.validTime;
    }
}

TEST_F(RevocationListMakeTest, any_number_comes_back)
{
    for (const int number : {0, 1, 127, 128, 65536, 2147483647, -1, -128, -2147483647 - 1}) {
        EXPECT_EQ(newList(sampleIdentity(), number).crlNumber(), number);
    }
}

struct EntryRow
{
    const char* name;
    std::string serialNumber; ///< Content of the INTEGER.
    const char* hex;
    const char* time;
    const char* encodedTime;
};

std::vector<EntryRow> entryRows()
{
    using namespace std::string_literals;
    return {
        {"small", "\x05", "05", "2024-05-06T07:08:09.000Z", "240506070809Z"},
        {"two bytes", "\x01\x02", "0102", "2049-12-31T23:59:59.000Z", "491231235959Z"},
        {"highest bit", "\0\x80"s, "80", "2050-01-01T00:00:00.000Z", "20500101000000Z"},
        {"20 bytes", std::string(20, '\x7F'), "7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F",
         "1970-01-01T00:00:00.000Z", "700101000000Z"},
        {"negative", "\xFB", "-05", "1950-01-01T00:00:00.000Z", "700101000000Z"},
        {"null", "\0"s, "0", "9999-12-31T23:59:59.999Z", "99991231235959Z"},
    };
}

TEST_F(RevocationListMakeTest, entries_have_serial_number_and_time_in_the_order_of_adding)
{
    UaPkiRevocationList list = newList();
    const std::vector<EntryRow> rows = entryRows();
    for (const EntryRow& row : rows) {
        list.addRevoked(certificateWithSerial(row.serialNumber), UaDateTime::fromString(row.time));
    }
    EXPECT_THAT(messagesOf(list), IsEmpty());
    ASSERT_TRUE(list.sign(sampleKeyPair().privateKey()));
    const UaPkiRevocationList read = UaPkiRevocationList::fromDER(list.toDER());
    ASSERT_EQ(countOf(read), static_cast<int>(rows.size()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto [serial, time] = entryOf(read, static_cast<int>(i));
        EXPECT_EQ(serial, rows[i].hex) << rows[i].name;
        EXPECT_EQ(time, rows[i].encodedTime) << rows[i].name;
    }
}

TEST_F(RevocationListMakeTest, a_time_beyond_the_form_leaves_messages_and_the_list_as_it_was)
{
    UaPkiRevocationList list = newList();
    list.addRevoked(certificateWithSerial("\x05"), UaDateTime::fromTime_t(253'402'300'800));
    EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
    EXPECT_EQ(countOf(list), 0);
}

TEST_F(RevocationListMakeTest, a_null_certificate_is_not_added)
{
    UaPkiRevocationList list = newList();
    const UaPkiCertificate null;
    list.addRevoked(null, today);
    EXPECT_EQ(countOf(list), 0);
    EXPECT_THAT(messagesOf(list), IsEmpty());
    EXPECT_THAT(messagesOf(null), IsEmpty());
    UaPkiRevocationList nullList;
    nullList.addRevoked(certificateWithSerial("\x05"), today);
    EXPECT_TRUE(nullList.isNull());
    EXPECT_THAT(messagesOf(nullList), IsEmpty());
}

TEST_F(RevocationListMakeTest, signature_is_sha1_and_verifies_with_its_key_alone)
{
    UaPkiRevocationList list = newList();
    ASSERT_TRUE(list.sign(sampleKeyPair().privateKey()));
    EXPECT_EQ(X509_CRL_get_signature_nid(list.handle()), NID_sha1WithRSAEncryption);
    EXPECT_TRUE(list.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_THAT(messagesOf(list), IsEmpty());
    EXPECT_FALSE(list.verifySignature(otherKeyPair().publicKey()));
    EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
    const UaPkiRevocationList read = UaPkiRevocationList::fromDER(list.toDER());
    EXPECT_TRUE(read.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_TRUE(read.sameIssuer(list));
    EXPECT_EQ(read.toDER(), list.toDER());
}

TEST_F(RevocationListMakeTest, an_entry_added_later_counts_once_the_list_is_signed_again)
{
    UaPkiRevocationList list = newList();
    ASSERT_TRUE(list.sign(sampleKeyPair().privateKey()));
    list.addRevoked(certificateWithSerial("\x05"), today);
    EXPECT_FALSE(
        UaPkiRevocationList::fromDER(list.toDER()).verifySignature(sampleKeyPair().publicKey()));
    ASSERT_TRUE(list.sign(otherKeyPair().privateKey()));
    const UaPkiRevocationList read = UaPkiRevocationList::fromDER(list.toDER());
    EXPECT_TRUE(read.verifySignature(otherKeyPair().publicKey()));
    EXPECT_EQ(countOf(read), 1);
}

TEST_F(RevocationListMakeTest, a_list_that_was_read_takes_entries_and_a_new_signature)
{
    UaPkiRevocationList list = newList();
    ASSERT_TRUE(list.sign(sampleKeyPair().privateKey()));
    UaPkiRevocationList read = UaPkiRevocationList::fromDER(list.toDER());
    read.addRevoked(certificateWithSerial("\x05"), today);
    ASSERT_TRUE(read.sign(sampleKeyPair().privateKey()));
    const UaPkiRevocationList again = UaPkiRevocationList::fromDER(read.toDER());
    EXPECT_TRUE(again.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_EQ(countOf(again), 1);
    EXPECT_EQ(countOf(list), 0) << "the first one is another list";
}

TEST_F(RevocationListMakeTest, copies_see_entries_and_signature)
{
    UaPkiRevocationList list = newList();
    const UaPkiRevocationList copy(list);
    list.addRevoked(certificateWithSerial("\x05"), today);
    ASSERT_TRUE(list.sign(sampleKeyPair().privateKey()));
    EXPECT_EQ(countOf(copy), 1);
    EXPECT_TRUE(copy.verifySignature(sampleKeyPair().publicKey()));
}

struct KeyRow
{
    const char* name;
    PkiHandle<EVP_PKEY> key;
    bool canSign;
    bool hasMessages;
};

TEST_F(RevocationListMakeTest, keys_that_go_with_sha1_sign_and_others_are_refused)
{
    KeyRow rows[] = {
        {"null", nullptr, false, false},
        {"empty", PkiHandle<EVP_PKEY>(EVP_PKEY_new()), false, true},
        {"RSA", PkiHandle<EVP_PKEY>(EVP_RSA_gen(1024)), true, false},
        {"EC", PkiHandle<EVP_PKEY>(EVP_EC_gen("P-256")), true, false},
        {"ED25519", PkiHandle<EVP_PKEY>(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519")), false,
         true},
        {"X25519", PkiHandle<EVP_PKEY>(EVP_PKEY_Q_keygen(nullptr, nullptr, "X25519")), false, true},
    };
    for (const KeyRow& row : rows) {
        UaPkiRevocationList list = newList();
        EXPECT_EQ(list.sign(UaPkiPrivateKey(row.key.get())), row.canSign) << row.name;
        EXPECT_EQ(!messagesOf(list).empty(), row.hasMessages) << row.name;
        if (row.canSign) {
            EXPECT_TRUE(list.verifySignature(UaPkiPublicKey(row.key.get()))) << row.name;
        }
    }
}

TEST_F(RevocationListMakeTest, a_public_key_alone_does_not_sign)
{
    const PkiHandle<EVP_PKEY> key(sampleKeyPair().publicKey().handle());
    UaPkiRevocationList list = newList();
    EXPECT_FALSE(list.sign(UaPkiPrivateKey(key.get())));
    EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
}

} // namespace
