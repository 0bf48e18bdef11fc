#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "tests/pki/dercertificate.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplecertificate.h"

#include <gmock/gmock.h>

#include <iterator>
#include <string>
#include <vector>

// What a certificate says, on certificates put together by hand.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using UaPkiCertificateFieldsTest = PkiTest;

const UaDateTime never = UaDateTime::fromTime_t(4294967295);
const UaDateTime epoch = UaDateTime::fromTime_t(0);

constexpr unsigned char DerNumericString = 0x12;
constexpr unsigned char DerT61String = 0x14;
constexpr unsigned char DerIa5String = 0x16;
constexpr unsigned char DerVisibleString = 0x1A;
constexpr unsigned char DerUniversalString = 0x1C;
constexpr unsigned char DerBmpString = 0x1E;

UaPkiCertificate read(const DerCertificate& certificate)
{
    return UaPkiCertificate::fromDER(toByteArray(certificate.bytes()));
}

std::vector<std::string> textsOf(const UaStringArray& array)
{
    std::vector<std::string> texts;
    for (const OpcUa_String& text : array) {
        texts.emplace_back(text.strContent, text.uLength);
    }
    return texts;
}

struct TimeRow
{
    const char* name;
    unsigned char tag;
    std::string text;
    const char* expected; ///< Null for a time that can't be read.
};

const TimeRow timeRows[] = {
    {"UTC", DerUtcTime, "240229123456Z", "2024-02-29T12:34:56.000Z"},
    {"UTC, first of the older years", DerUtcTime, "700101000000Z", "1970-01-01T00:00:00.000Z"},
    {"UTC, last of the newer years", DerUtcTime, "691231235959Z", "2069-12-31T23:59:59.000Z"},
    {"UTC, where the standard's century begins", DerUtcTime, "500101000000Z",
     "2050-01-01T00:00:00.000Z"},
    {"UTC, last year of a century", DerUtcTime, "991231235959Z", "1999-12-31T23:59:59.000Z"},
    {"UTC, first year of a century", DerUtcTime, "000101000000Z", "2000-01-01T00:00:00.000Z"},
    {"UTC, a zone is passed over", DerUtcTime, "240229123456+0100", "2024-02-29T12:34:56.000Z"},
    {"UTC, no end", DerUtcTime, "240229123456", "2024-02-29T12:34:56.000Z"},
    {"UTC, without seconds", DerUtcTime, "2402291234Z", nullptr},
    {"UTC, without seconds, with a zone", DerUtcTime, "2402291234+0100", nullptr},
    {"UTC, one digit short", DerUtcTime, "24022912345", nullptr},
    {"UTC, one character", DerUtcTime, "2", nullptr},
    {"UTC, empty", DerUtcTime, "", nullptr},
    {"UTC, month 13", DerUtcTime, "241301000000Z", nullptr},
    {"UTC, month 0", DerUtcTime, "240001000000Z", nullptr},
    {"UTC, 30th of February", DerUtcTime, "240230000000Z", nullptr},
    {"UTC, no leap year", DerUtcTime, "230229000000Z", nullptr},
    {"UTC, hour 24", DerUtcTime, "240101240000Z", nullptr},
    {"UTC, second 60", DerUtcTime, "240101000060Z", nullptr},
    {"UTC, letters", DerUtcTime, "2401010x0000Z", nullptr},
    {"UTC, a NUL", DerUtcTime,
     std::string("2401\0"
                 "1000000Z",
                 13),
     nullptr},
    {"UTC, a letter for a year", DerUtcTime, "x00101000000Z", nullptr},
    {"generalized", DerGeneralizedTime, "20240229123456Z", "2024-02-29T12:34:56.000Z"},
    {"generalized, old", DerGeneralizedTime, "16010101000000Z", "1601-01-01T00:00:00.000Z"},
    {"generalized, last", DerGeneralizedTime, "99991231235959Z", "9999-12-31T23:59:59.000Z"},
    {"generalized, too old", DerGeneralizedTime, "16001231235959Z", nullptr},
    {"generalized, year 0", DerGeneralizedTime, "00000101000000Z", nullptr},
    {"generalized, one digit", DerGeneralizedTime, "20240229123456.7Z", "2024-02-29T12:34:56.700Z"},
    {"generalized, three digits", DerGeneralizedTime, "20240229123456.789Z",
     "2024-02-29T12:34:56.789Z"},
    {"generalized, more digits", DerGeneralizedTime, "20240229123456.7899999Z",
     "2024-02-29T12:34:56.789Z"},
    {"generalized, fraction at the end", DerGeneralizedTime, "20240229123456.78",
     "2024-02-29T12:34:56.780Z"},
    {"generalized, fraction up to a NUL", DerGeneralizedTime,
     std::string("20240229123456.7\0"
                 "89Z",
                 19),
     "2024-02-29T12:34:56.700Z"},
    {"generalized, point alone", DerGeneralizedTime, "20240229123456.", "2024-02-29T12:34:56.000Z"},
    {"generalized, comma", DerGeneralizedTime, "20240229123456,789Z", "2024-02-29T12:34:56.000Z"},
    {"generalized, a zone is passed over", DerGeneralizedTime, "20240229123456-0500",
     "2024-02-29T12:34:56.000Z"},
    {"generalized, without seconds", DerGeneralizedTime, "202402291234Z", nullptr},
    {"generalized, one digit short", DerGeneralizedTime, "2024022912345", nullptr},
    {"generalized, empty", DerGeneralizedTime, "", nullptr},
    {"generalized, month 13", DerGeneralizedTime, "20241301000000Z", nullptr},
};

TEST_F(UaPkiCertificateFieldsTest, times_are_read_by_the_form_of_their_type)
{
    for (const TimeRow& row : timeRows) {
        DerCertificate parts;
        parts.notBefore = der(row.tag, row.text);
        parts.notAfter = parts.notBefore;
        const UaPkiCertificate certificate = read(parts);
        ASSERT_FALSE(certificate.isNull()) << row.name;
        const bool isReadable = row.expected != nullptr;
        const UaDateTime expected = UaDateTime::fromString(row.expected);
        EXPECT_EQ(certificate.validFrom(), isReadable ? expected : never) << row.name;
        EXPECT_EQ(certificate.validTo(), isReadable ? expected : epoch) << row.name;
        EXPECT_THAT(messagesOf(certificate), IsEmpty()) << row.name;
    }
}

TEST_F(UaPkiCertificateFieldsTest, unreadable_times_are_never_valid)
{
    DerCertificate parts;
    parts.notBefore = der(DerUtcTime, "x");
    parts.notAfter = der(DerUtcTime, "x");
    const UaPkiCertificate certificate = read(parts);
    for (const char* now : {"1969-01-01T00:00:00.000Z", "1970-01-01T00:00:00.000Z",
                            "2026-01-01T00:00:00.000Z", "2106-02-07T06:28:15.000Z"}) {
        const FixedClock clock(UaDateTime::fromString(now));
        EXPECT_FALSE(certificate.isValid()) << now;
    }
}

TEST_F(UaPkiCertificateFieldsTest, a_certificate_is_valid_from_bound_to_bound)
{
    DerCertificate parts;
    parts.notBefore = der(DerUtcTime, "240101000000Z");
    parts.notAfter = der(DerUtcTime, "240201000000Z");
    const UaPkiCertificate certificate = read(parts);
    struct Row
    {
        const char* now;
        bool isValid;
    };
    for (const Row& row :
         {Row{"2023-12-31T23:59:59.999Z", false}, Row{"2024-01-01T00:00:00.000Z", true},
          Row{"2024-01-15T12:00:00.000Z", true}, Row{"2024-02-01T00:00:00.000Z", true},
          Row{"2024-02-01T00:00:00.001Z", false}}) {
        const FixedClock clock(UaDateTime::fromString(row.now));
        EXPECT_EQ(certificate.isValid(), row.isValid) << row.now;
    }
}

TEST_F(UaPkiCertificateFieldsTest, a_lifetime_turned_round_is_never_valid)
{
    DerCertificate parts;
    std::swap(parts.notBefore, parts.notAfter);
    const FixedClock clock(UaDateTime::fromString("2028-01-01T00:00:00.000Z"));
    EXPECT_FALSE(read(parts).isValid());
}

struct NameField
{
    const char* name;
    std::string_view type;
    UaString UaPkiIdentity::*field;
};

const NameField nameFields[] = {
    {"O", "\x55\x04\x0A", &UaPkiIdentity::organization},
    {"OU", "\x55\x04\x0B", &UaPkiIdentity::organizationUnit},
    {"L", "\x55\x04\x07", &UaPkiIdentity::locality},
    {"ST", "\x55\x04\x08", &UaPkiIdentity::state},
    {"C", "\x55\x04\x06", &UaPkiIdentity::country},
    {"CN", "\x55\x04\x03", &UaPkiIdentity::commonName},
    {"DC", "\x09\x92\x26\x89\x93\xF2\x2C\x64\x01\x19", &UaPkiIdentity::domainComponent},
};
constexpr std::string_view commonNameType = "\x55\x04\x03";

TEST_F(UaPkiCertificateFieldsTest, each_field_of_a_name_comes_from_its_attribute)
{
    for (const NameField& row : nameFields) {
        DerCertificate parts;
        parts.subject = der(DerSequence, derAttribute(row.type, DerUtf8String, "text"));
        UaPkiIdentity expected;
        expected.*row.field = "text";
        EXPECT_EQ(read(parts).subject(), expected) << row.name;
        EXPECT_TRUE(read(parts).issuer().isEmpty()) << row.name;
        std::swap(parts.subject, parts.issuer);
        EXPECT_EQ(read(parts).issuer(), expected) << row.name;
        EXPECT_TRUE(read(parts).subject().isEmpty()) << row.name;
    }
}

TEST_F(UaPkiCertificateFieldsTest, the_first_attribute_of_a_type_counts)
{
    DerCertificate parts;
    parts.subject = der(DerSequence, derAttribute("\x55\x04\x0A", DerUtf8String, "O") +
                                         derAttribute(commonNameType, DerUtf8String, "first") +
                                         derAttribute(commonNameType, DerUtf8String, "second"));
    EXPECT_EQ(read(parts).subject().commonName, "first");
    EXPECT_EQ(read(parts).commonName(), "first");
}

TEST_F(UaPkiCertificateFieldsTest, an_attribute_inside_a_set_of_two_counts)
{
    DerCertificate parts;
    parts.subject =
        der(DerSequence,
            der(DerSet,
                der(DerSequence, der(DerObjectId, "\x55\x04\x0A") + der(DerUtf8String, "O")) +
                    der(DerSequence, der(DerObjectId, commonNameType) + der(DerUtf8String, "CN"))));
    EXPECT_EQ(read(parts).subject().organization, "O");
    EXPECT_EQ(read(parts).subject().commonName, "CN");
}

struct TextRow
{
    const char* name;
    unsigned char tag;
    std::string bytes;
    std::string expected;
};

const TextRow textRows[] = {
    {"UTF-8", DerUtf8String, "G\xC3\xBCnther \xF0\x9F\x94\x91", "G\xC3\xBCnther \xF0\x9F\x94\x91"},
    {"UTF-8, ASCII", DerUtf8String, "plain", "plain"},
    {"printable", DerPrintableString, "plain text", "plain text"},
    {"printable, with what it may not hold", DerPrintableString, "a@b\xFC", "a@b\xC3\xBC"},
    {"numeric", DerNumericString, "12 34", "12 34"},
    {"T61, read as Latin-1", DerT61String, "G\xFCnther", "G\xC3\xBCnther"},
    {"IA5", DerIa5String, "a@b", "a@b"},
    {"IA5, with eight bits", DerIa5String, "\xE9", "\xC3\xA9"},
    {"BMP", DerBmpString, std::string("\0G\0\xFC\x20\xAC", 6), "G\xC3\xBC\xE2\x82\xAC"},
    {"universal", DerUniversalString, std::string("\0\0\0G\0\1\xF5\x11", 8), "G\xF0\x9F\x94\x91"},
    {"empty", DerUtf8String, "", ""},
    {"with a NUL", DerUtf8String, std::string("good\0evil", 9), std::string("good\0evil", 9)},
    {"with a NUL, converted", DerT61String, std::string("\xFC\0b", 3),
     std::string("\xC3\xBC\0b", 4)},
    {"with line breaks", DerUtf8String, "a\r\nb\nc\x1B[31m", "a\r\nb\nc\x1B[31m"},
    {"one megabyte", DerUtf8String, std::string(1'000'000, 'x'), std::string(1'000'000, 'x')},
    {"bits, which are no text", DerBitString, std::string("\0text", 5), ""},
};

TEST_F(UaPkiCertificateFieldsTest, texts_of_all_types_become_utf8)
{
    for (const TextRow& row : textRows) {
        DerCertificate parts;
        parts.subject = der(DerSequence, derAttribute(commonNameType, row.tag, row.bytes));
        const UaPkiCertificate certificate = read(parts);
        ASSERT_FALSE(certificate.isNull()) << row.name;
        EXPECT_EQ(certificate.commonName().view(), row.expected) << row.name;
        EXPECT_EQ(certificate.subject().commonName.view(), row.expected) << row.name;
        EXPECT_THAT(messagesOf(certificate), IsEmpty()) << row.name;
    }
}

TEST_F(UaPkiCertificateFieldsTest, text_that_names_do_not_take_has_the_certificate_refused)
{
    // The library converts all names for its comparisons when it decodes them.
    for (const TextRow& row : {TextRow{"bad UTF-8", DerUtf8String, "\xFF\xFE", ""},
                               TextRow{"a type that names don't take", DerVisibleString, "a", ""},
                               TextRow{"BMP of odd length", DerBmpString, "abc", ""},
                               TextRow{"universal too short", DerUniversalString, "abc", ""}}) {
        DerCertificate parts;
        parts.subject = der(DerSequence, derAttribute(commonNameType, row.tag, row.bytes));
        const UaPkiCertificate certificate = read(parts);
        EXPECT_TRUE(certificate.isNull()) << row.name;
        EXPECT_THAT(messagesOf(certificate), Not(IsEmpty())) << row.name;
    }
}

TEST_F(UaPkiCertificateFieldsTest, without_alternative_names_info_has_the_serial_number_alone)
{
    DerCertificate parts;
    parts.serialNumber = derSmallInteger(77);
    const UaPkiCertificate certificate = read(parts);
    const UaPkiCertificateInfo info = certificate.info();
    EXPECT_TRUE(info.uri.isEmpty());
    EXPECT_TRUE(info.email.isEmpty());
    EXPECT_EQ(info.dnsNames.length(), 0);
    EXPECT_EQ(info.ipAddresses.length(), 0);
    EXPECT_EQ(info.validTime, 0u);
    EXPECT_EQ(info.serialNumber, 77);
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
}

UaPkiCertificate withNames(std::string_view names)
{
    DerCertificate parts;
    parts.extensions = DerCertificate::alternativeNames(names);
    return read(parts);
}

TEST_F(UaPkiCertificateFieldsTest,
       alternative_names_come_in_their_order_and_the_last_single_one_wins)
{
    const std::string directoryName = der(0xA4, der(DerSequence, ""));
    const std::string otherName =
        der(0xA0, der(DerObjectId, "\x2A\x03") + der(DerContext0, der(DerUtf8String, "x")));
    const std::string ediPartyName = der(0xA5, der(0xA1, der(DerUtf8String, "party")));
    const UaPkiCertificate certificate =
        withNames(derGeneralName(6, "urn:first") + derGeneralName(2, "host-b") +
                  derGeneralName(1, "a@a") + otherName + derGeneralName(7, "\x0A\x01\x02\xFF") +
                  derGeneralName(2, "host-a") + directoryName + derGeneralName(8, "\x2A\x03\x04") +
                  derGeneralName(1, "b@b") + ediPartyName + derGeneralName(7, "\x7F\x01\x01\x01") +
                  derGeneralName(6, "urn:last") + derGeneralName(2, ""));
    ASSERT_FALSE(certificate.isNull());
    const UaPkiCertificateInfo info = certificate.info();
    EXPECT_EQ(info.uri, "urn:last");
    EXPECT_EQ(info.email, "b@b");
    EXPECT_THAT(textsOf(info.dnsNames), ElementsAre("host-b", "host-a", ""));
    EXPECT_THAT(textsOf(info.ipAddresses), ElementsAre("10.1.2.255", "127.1.1.1"));
    EXPECT_THAT(messagesOf(certificate), IsEmpty());
}

TEST_F(UaPkiCertificateFieldsTest, addresses_are_written_by_their_length)
{
    struct Row
    {
        std::string bytes;
        const char* expected;
    };
    const Row rows[] = {
        {std::string("\xC0\xA8\0\1", 4), "192.168.0.1"},
        {std::string(4, '\0'), "0.0.0.0"},
        {std::string(4, '\xFF'), "255.255.255.255"},
        {std::string(15, '\0') + '\1', "0000:0000:0000:0000:0000:0000:0000:0001"},
        {std::string("\x20\x01\x0D\xB8\xAB\xCD\x00\xEF\x00\x00\x00\x00\x00\x00\x12\x34", 16),
         "2001:0DB8:ABCD:00EF:0000:0000:0000:1234"},
        {std::string(16, '\xFF'), "FFFF:FFFF:FFFF:FFFF:FFFF:FFFF:FFFF:FFFF"},
        {"", ""},
        {std::string(3, '\1'), ""},
        {std::string(5, '\1'), ""},
        {std::string(8, '\1'), ""},
        {std::string(15, '\1'), ""},
        {std::string(17, '\1'), ""},
        {std::string(100'000, '\1'), ""},
    };
    std::string names;
    std::vector<std::string> expected;
    for (const Row& row : rows) {
        names += derGeneralName(7, row.bytes);
        expected.emplace_back(row.expected);
    }
    EXPECT_EQ(textsOf(withNames(names).info().ipAddresses), expected);
}

TEST_F(UaPkiCertificateFieldsTest, a_name_of_eight_bits_or_with_a_nul_is_kept_whole)
{
    const UaPkiCertificateInfo info =
        withNames(derGeneralName(2, std::string("good\0evil", 9)) + derGeneralName(2, "\xE9") +
                  derGeneralName(6, std::string("urn:\0x", 6)) + derGeneralName(1, "a@b\nc"))
            .info();
    EXPECT_THAT(textsOf(info.dnsNames), ElementsAre(std::string("good\0evil", 9), "\xC3\xA9"));
    EXPECT_EQ(info.uri.view(), std::string_view("urn:\0x", 6));
    EXPECT_EQ(info.email, "a@b\nc");
}

TEST_F(UaPkiCertificateFieldsTest, a_hundred_thousand_names_are_read)
{
    constexpr int count = 100'000;
    std::string names;
    for (int i = 0; i < count; ++i) {
        names += derGeneralName(2, "host-" + std::to_string(i));
    }
    const UaStringArray read = withNames(names).info().dnsNames;
    ASSERT_EQ(read.length(), count);
    EXPECT_EQ(textsOf(read).front(), "host-0");
    EXPECT_EQ(textsOf(read).back(), "host-99999");
}

TEST_F(UaPkiCertificateFieldsTest, broken_alternative_names_are_told_and_leave_the_serial_number)
{
    DerCertificate parts;
    parts.extensions = DerCertificate::extension("\x55\x1D\x11", "broken");
    parts.serialNumber = derSmallInteger(5);
    const UaPkiCertificate certificate = read(parts);
    ASSERT_FALSE(certificate.isNull());
    const UaPkiCertificateInfo info = certificate.info();
    EXPECT_EQ(info.serialNumber, 5);
    EXPECT_EQ(info.dnsNames.length(), 0);
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty()));
}

TEST_F(UaPkiCertificateFieldsTest, alternative_names_twice_are_none)
{
    DerCertificate parts;
    parts.extensions = DerCertificate::alternativeNames(derGeneralName(2, "a"));
    parts.extensions += parts.extensions;
    EXPECT_EQ(read(parts).info().dnsNames.length(), 0);
}

TEST_F(UaPkiCertificateFieldsTest, serial_numbers_are_hexadecimal_and_32_bits_where_they_fit)
{
    struct Row
    {
        std::string content;
        const char* text;
        OpcUa_Int32 number;
    };
    const Row rows[] = {
        {std::string(1, '\0'), "0", 0},
        {"\x01", "01", 1},
        {"\x7F", "7F", 127},
        {std::string("\x00\x80", 2), "80", 128},
        {"\xFF", "-01", -1},
        {"\x80", "-80", -128},
        {"\x12\x34", "1234", 0x1234},
        {"\x7F\xFF\xFF\xFF", "7FFFFFFF", 0x7FFFFFFF},
        {std::string("\x00\x80\x00\x00\x00", 5), "80000000", -1},
        {std::string("\x80\x00\x00\x00", 4), "-80000000", -0x7FFFFFFF - 1},
        {"\xFF\x7F\xFF\xFF\xFF", "-80000001", -1},
        {"\x01\x02\x03\x04\x05\x06\x07\x08\x09", "010203040506070809", -1},
        {std::string(20, '\x7F'), "7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F7F", -1},
    };
    for (const Row& row : rows) {
        DerCertificate parts;
        parts.serialNumber = der(DerInteger, row.content);
        const UaPkiCertificate certificate = read(parts);
        EXPECT_EQ(certificate.serialNumberString(), row.text);
        EXPECT_EQ(certificate.info().serialNumber, row.number) << row.text;
        EXPECT_THAT(messagesOf(certificate), IsEmpty()) << row.text;
    }
}

TEST_F(UaPkiCertificateFieldsTest, extensions_are_found_and_printed)
{
    DerCertificate parts;
    const std::string unknown = DerCertificate::extension("\x2A\x03\x04", "content");
    const std::string keyUsage =
        DerCertificate::extension("\x55\x1D\x0F", der(DerBitString, "\x05\xA0"));
    const std::string comment = DerCertificate::extension("\x60\x86\x48\x01\x86\xF8\x42\x01\x0D",
                                                          der(DerIa5String, "G\xC3\xBCte"));
    const std::string broken = DerCertificate::extension("\x55\x1D\x13", "broken");
    parts.extensions = unknown + keyUsage + comment + broken;
    const UaPkiCertificate certificate = read(parts);
    EXPECT_TRUE(certificate.hasExtension(NID_key_usage));
    EXPECT_EQ(certificate.extensionValue(NID_key_usage), "Digital Signature, Key Encipherment");
    EXPECT_EQ(certificate.extensionValue(NID_netscape_comment), "G\xC3\xBCte");
    EXPECT_FALSE(certificate.hasExtension(NID_subject_alt_name));
    EXPECT_TRUE(certificate.extensionValue(NID_subject_alt_name).isEmpty());
    EXPECT_FALSE(certificate.hasExtension(-1));
    EXPECT_FALSE(certificate.hasExtension(999'999));
    EXPECT_TRUE(certificate.extensionValue(999'999).isEmpty());
    (void)messagesOf(certificate);
    EXPECT_TRUE(certificate.hasExtension(NID_basic_constraints));
    EXPECT_TRUE(certificate.extensionValue(NID_basic_constraints).isEmpty());
    EXPECT_THAT(messagesOf(certificate), Not(IsEmpty())) << "what it holds can't be printed";
}

TEST_F(UaPkiCertificateFieldsTest, the_first_of_two_extensions_is_printed)
{
    DerCertificate parts;
    const auto keyUsage = [](std::string_view bits) {
        return DerCertificate::extension("\x55\x1D\x0F", der(DerBitString, bits));
    };
    parts.extensions = keyUsage("\x07\x80") + keyUsage("\x02\x04");
    EXPECT_EQ(read(parts).extensionValue(NID_key_usage), "Digital Signature");
}

TEST_F(UaPkiCertificateFieldsTest, signature_algorithms_are_told_by_name_and_by_number)
{
    struct Row
    {
        std::string_view type;
        const char* name;
        int algorithm;
    };
    const Row rows[] = {
        {"\x2A\x86\x48\x86\xF7\x0D\x01\x01\x05", "RSA-SHA1", 0},
        {"\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0B", "RSA-SHA256", 1},
        {"\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0C", "RSA-SHA384", 0},
        {"\x2A\x86\x48\x86\xF7\x0D\x01\x01\x0A", "RSASSA-PSS", 0},
        {"\x2A\x86\x48\xCE\x3D\x04\x03\x02", "ecdsa-with-SHA256", 0},
        {"\x2B\x65\x70", "ED25519", 0},
        {"\x2A\x03\x04\x05", "", 0},
    };
    for (const Row& row : rows) {
        DerCertificate parts;
        parts.signatureAlgorithm = der(DerSequence, der(DerObjectId, row.type));
        const UaPkiCertificate certificate = read(parts);
        EXPECT_EQ(certificate.signatureTypeName(), row.name);
        EXPECT_EQ(certificate.signatureAlgorithm(), row.algorithm) << row.name;
        EXPECT_FALSE(certificate.isSelfSigned()) << row.name;
        (void)messagesOf(certificate);
    }
}

TEST_F(UaPkiCertificateFieldsTest, versions_without_a_number_or_extensions_are_read)
{
    DerCertificate parts;
    parts.version = "";
    const UaPkiCertificate certificate = read(parts);
    EXPECT_FALSE(certificate.isNull());
    EXPECT_FALSE(certificate.hasExtension(NID_key_usage));
    EXPECT_EQ(certificate.thumbPrint().size(), 20);
}

TEST_F(UaPkiCertificateFieldsTest, the_hash_of_the_subject_is_the_librarys)
{
    const UaPkiCertificate certificate = sampleCertificate();
    EXPECT_EQ(
        certificate.subjectNameHash(),
        X509_NAME_hash_ex(X509_get_subject_name(certificate.handle()), nullptr, nullptr, nullptr));
    EXPECT_NE(certificate.subjectNameHash(),
              sampleCertificate({.subject = "another"}).subjectNameHash());
}

} // namespace
