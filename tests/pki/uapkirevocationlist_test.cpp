#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiidentity.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "tests/pki/derlist.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/fixedclock.h"
#include "tests/pki/pkitexts.h"
#include "tests/pki/samplekey.h"

#include <gmock/gmock.h>

#include <iterator>
#include <string>
#include <utility>
#include <vector>

// What a list says, on lists put together by hand.

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using UaPkiRevocationListTest = PkiTest;

const UaDateTime never = UaDateTime::fromTime_t(4294967295);

UaPkiRevocationList read(const DerList& list)
{
    return UaPkiRevocationList::fromDER(toByteArray(list.bytes()));
}

UaDateTime timeOf(const char* text)
{
    const UaDateTime time = UaDateTime::fromString(text);
    EXPECT_FALSE(time.isNull()) << text;
    return time;
}

TEST_F(UaPkiRevocationListTest, a_null_list_answers_with_nothing)
{
    UaPkiRevocationList list;
    EXPECT_TRUE(list.isNull());
    EXPECT_EQ(list.handle(), nullptr);
    EXPECT_TRUE(list.toDER().isEmpty());
    EXPECT_TRUE(list.issuer().isEmpty());
    EXPECT_EQ(list.crlNumber(), -1);
    EXPECT_FALSE(list.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_FALSE(list.sign(sampleKeyPair().privateKey()));
    list.addRevoked(UaPkiCertificate(), UaDateTime::now());
    EXPECT_TRUE(list.isNull());
    EXPECT_THAT(messagesOf(list), IsEmpty());
}

TEST_F(UaPkiRevocationListTest, times_of_a_null_list_are_told_as_missing)
{
    const UaPkiRevocationList list;
    EXPECT_EQ(list.thisUpdate(), never);
    EXPECT_THAT(messagesOf(list), ElementsAre("The CRL is NULL"));
    EXPECT_TRUE(list.nextUpdate().isNull());
    EXPECT_THAT(messagesOf(list), ElementsAre("The CRL is NULL"));
    EXPECT_THAT(messagesOf(list), IsEmpty()) << "asked a second time";
}

TEST_F(UaPkiRevocationListTest, a_null_list_is_never_valid)
{
    for (const char* now :
         {"1970-01-01T00:00:00.000Z", "2024-01-01T00:00:00.000Z", "2200-01-01T00:00:00.000Z"}) {
        const FixedClock clock(timeOf(now));
        EXPECT_FALSE(UaPkiRevocationList().isValid()) << now;
    }
}

TEST_F(UaPkiRevocationListTest, empty_der_is_told_in_words_and_garbage_in_those_of_the_library)
{
    const UaPkiRevocationList empty = UaPkiRevocationList::fromDER(UaByteArray());
    EXPECT_TRUE(empty.isNull());
    EXPECT_THAT(messagesOf(empty),
                ElementsAre("Error in fromDER: empty ByteString in argument DERdata"));
    for (const std::string& bytes :
         {std::string("garbage"), std::string(1, '\0'), std::string(100'000, '\x30'),
          std::string("\x30\x80", 2), der(DerSequence, ""),
          std::string("\x30\x84\xFF\xFF\xFF\xFF", 6)}) {
        const UaPkiRevocationList list = UaPkiRevocationList::fromDER(toByteArray(bytes));
        EXPECT_TRUE(list.isNull()) << bytes.substr(0, 10);
        EXPECT_THAT(messagesOf(list), Not(IsEmpty())) << bytes.substr(0, 10);
    }
}

TEST_F(UaPkiRevocationListTest, der_cut_at_any_byte_is_refused_with_messages)
{
    DerList parts;
    parts.extensions = DerList::numberExtension(derSmallInteger(5));
    const UaByteArray whole = toByteArray(parts.bytes());
    ASSERT_FALSE(UaPkiRevocationList::fromDER(whole).isNull());
    for (OpcUa_Int32 size = 0; size < whole.size(); ++size) {
        const UaPkiRevocationList list =
            UaPkiRevocationList::fromDER(UaByteArray(whole.data(), size));
        EXPECT_TRUE(list.isNull()) << size;
        EXPECT_THAT(messagesOf(list), Not(IsEmpty())) << size;
        EXPECT_EQ(ERR_peek_error(), 0u) << size;
    }
}

TEST_F(UaPkiRevocationListTest, bytes_behind_the_list_do_not_matter)
{
    const std::string bytes = DerList().bytes();
    const UaPkiRevocationList list = UaPkiRevocationList::fromDER(toByteArray(bytes + "more"));
    EXPECT_FALSE(list.isNull());
    EXPECT_EQ(toStdString(list.toDER()), bytes);
    EXPECT_THAT(messagesOf(list), IsEmpty());
}

TEST_F(UaPkiRevocationListTest, a_list_with_a_broken_extension_is_read_without_messages)
{
    DerList parts;
    parts.extensions = DerList::numberExtension("broken");
    const UaPkiRevocationList list = read(parts);
    EXPECT_FALSE(list.isNull());
    EXPECT_THAT(messagesOf(list), IsEmpty());
}

struct TimeRow
{
    const char* name;
    std::string encoded;
    const char* expected; ///< Null for a time that can't be read.
};

std::vector<TimeRow> timeRows()
{
    const auto utc = [](std::string_view text) { return der(DerUtcTime, text); };
    const auto general = [](std::string_view text) { return der(DerGeneralizedTime, text); };
    return {
        {"UTCTime", utc("240229123456Z"), "2024-02-29T12:34:56.000Z"},
        {"UTCTime, first of the 21st century", utc("000101000000Z"), "2000-01-01T00:00:00.000Z"},
        {"UTCTime, 49", utc("491231235959Z"), "2049-12-31T23:59:59.000Z"},
        {"UTCTime, 50", utc("500101000000Z"), "2050-01-01T00:00:00.000Z"},
        {"UTCTime, 69", utc("691231235959Z"), "2069-12-31T23:59:59.000Z"},
        {"UTCTime, 70", utc("700101000000Z"), "1970-01-01T00:00:00.000Z"},
        {"UTCTime, 99", utc("991231235959Z"), "1999-12-31T23:59:59.000Z"},
        {"UTCTime, month 13", utc("241301000000Z"), nullptr},
        {"UTCTime, no 29 February", utc("230229000000Z"), nullptr},
        {"UTCTime without seconds", utc("2402291234Z"), nullptr},
        {"UTCTime without anything", utc(""), nullptr},
        {"UTCTime of letters", utc("aabbccddeeffZ"), nullptr},
        {"GeneralizedTime", general("20240229123456Z"), "2024-02-29T12:34:56.000Z"},
        {"GeneralizedTime, 2050", general("20500101000000Z"), "2050-01-01T00:00:00.000Z"},
        {"GeneralizedTime, 1950", general("19500101000000Z"), "1950-01-01T00:00:00.000Z"},
        {"GeneralizedTime, the last", general("99991231235959Z"), "9999-12-31T23:59:59.000Z"},
        {"GeneralizedTime, one digit", general("20240229123456.7Z"), "2024-02-29T12:34:56.700Z"},
        {"GeneralizedTime, three digits", general("20240229123456.789Z"),
         "2024-02-29T12:34:56.789Z"},
        {"GeneralizedTime, more digits", general("20240229123456.7891Z"),
         "2024-02-29T12:34:56.789Z"},
        {"GeneralizedTime, too short", general("2024022912345"), nullptr},
        {"GeneralizedTime, hour 24", general("20240229240000Z"), nullptr},
    };
}

TEST_F(UaPkiRevocationListTest, both_updates_are_read_by_their_kind_of_time)
{
    for (const TimeRow& row : timeRows()) {
        DerList parts;
        parts.thisUpdate = row.encoded;
        parts.nextUpdate = row.encoded;
        const UaPkiRevocationList list = read(parts);
        ASSERT_FALSE(list.isNull()) << row.name;
        if (row.expected != nullptr) {
            EXPECT_EQ(list.thisUpdate(), timeOf(row.expected)) << row.name;
            EXPECT_EQ(list.nextUpdate(), timeOf(row.expected)) << row.name;
        } else {
            EXPECT_EQ(list.thisUpdate(), never) << row.name;
            EXPECT_TRUE(list.nextUpdate().isNull()) << row.name;
        }
        EXPECT_THAT(messagesOf(list), IsEmpty()) << row.name;
    }
}

TEST_F(UaPkiRevocationListTest, a_list_without_next_update_gives_the_null_time)
{
    DerList parts;
    parts.nextUpdate.clear();
    EXPECT_TRUE(read(parts).nextUpdate().isNull());
}

struct ValidRow
{
    const char* name;
    const char* thisUpdate;
    const char* nextUpdate; ///< Null without one.
    const char* now;
    bool isValid;
};

constexpr ValidRow validRows[] = {
    {"before", "240101000000Z", "240201000000Z", "2023-12-31T23:59:59.999Z", false},
    {"at the begin", "240101000000Z", "240201000000Z", "2024-01-01T00:00:00.000Z", true},
    {"within", "240101000000Z", "240201000000Z", "2024-01-15T00:00:00.000Z", true},
    {"at the end", "240101000000Z", "240201000000Z", "2024-02-01T00:00:00.000Z", true},
    {"after", "240101000000Z", "240201000000Z", "2024-02-01T00:00:00.001Z", false},
    {"the wrong way round", "240201000000Z", "240101000000Z", "2024-01-15T00:00:00.000Z", false},
    {"without end, before", "240101000000Z", nullptr, "2023-12-31T23:59:59.999Z", false},
    {"without end, at the begin", "240101000000Z", nullptr, "2024-01-01T00:00:00.000Z", true},
    {"without end, long after", "240101000000Z", nullptr, "2500-01-01T00:00:00.000Z", true},
    {"unreadable begin", "241301000000Z", "240201000000Z", "2024-01-15T00:00:00.000Z", false},
    {"unreadable end", "240101000000Z", "241301000000Z", "2500-01-01T00:00:00.000Z", true},
};

TEST_F(UaPkiRevocationListTest, validity_includes_both_bounds)
{
    for (const ValidRow& row : validRows) {
        DerList parts;
        parts.thisUpdate = der(DerUtcTime, row.thisUpdate);
        parts.nextUpdate = row.nextUpdate != nullptr ? der(DerUtcTime, row.nextUpdate) : "";
        const FixedClock clock(timeOf(row.now));
        EXPECT_EQ(read(parts).isValid(), row.isValid) << row.name;
    }
}

struct NumberRow
{
    const char* name;
    std::string extensions;
    int expected;
    bool hasMessages;
};

std::vector<NumberRow> numberRows()
{
    const auto number = [](std::string_view content) {
        return DerList::numberExtension(der(DerInteger, content));
    };
    using namespace std::string_view_literals;
    const std::string other =
        der(DerSequence, der(DerObjectId, "\x55\x1D\x63") + der(DerOctetString, "other"));
    return {
        {"no extensions", "", -1, false},
        {"other extension", other, -1, false},
        {"0", number("\0"sv), 0, false},
        {"127", number("\x7F"), 127, false},
        {"128", number("\0\x80"sv), 128, false},
        {"2147483647", number("\x7F\xFF\xFF\xFF"), 2147483647, false},
        {"2147483648", number("\0\x80\0\0\0"sv), -1, false},
        {"beyond 64 bits", number(std::string(20, '\x11')), -1, true},
        {"-1", number("\xFF"), -1, false},
        {"-2", number("\xFE"), -2, false},
        {"-2147483648", number("\x80\0\0\0"sv), -2147483647 - 1, false},
        {"no number inside", DerList::numberExtension("broken"), -1, true},
        {"text inside", DerList::numberExtension(der(DerUtf8String, "5")), -1, true},
        {"empty", DerList::numberExtension(""), -1, true},
        {"twice", number("\x01") + number("\x02"), -1, false},
        {"behind another", other + number("\x07"), 7, false},
    };
}

TEST_F(UaPkiRevocationListTest, number_is_read_where_it_fits)
{
    for (const NumberRow& row : numberRows()) {
        DerList parts;
        parts.extensions = row.extensions;
        const UaPkiRevocationList list = read(parts);
        ASSERT_FALSE(list.isNull()) << row.name;
        EXPECT_EQ(list.crlNumber(), row.expected) << row.name;
        EXPECT_EQ(!messagesOf(list).empty(), row.hasMessages) << row.name;
        EXPECT_EQ(ERR_peek_error(), 0u) << row.name;
    }
}

TEST_F(UaPkiRevocationListTest, issuer_has_the_first_of_each_field)
{
    DerList parts;
    parts.issuer =
        der(DerSequence, derAttribute("\x55\x04\x03", DerUtf8String, "first name") +
                             derAttribute("\x55\x04\x03", DerUtf8String, "second name") +
                             derAttribute("\x55\x04\x06", DerPrintableString, "DE") +
                             derAttribute("\x55\x04\x07", DerUtf8String, "M\xC3\xBCnchen") +
                             derAttribute("\x55\x04\x08", 0x14, "T61") +
                             derAttribute("\x55\x04\x0A", 0x1E, std::string("\0O\0r\0g", 6)) +
                             derAttribute("\x55\x04\x0B", DerUtf8String, "") +
                             derAttribute("\x09\x92\x26\x89\x93\xF2\x2C\x64\x01\x19", 0x16, "com"));
    const UaPkiRevocationList list = read(parts);
    ASSERT_FALSE(list.isNull());
    const UaPkiIdentity issuer = list.issuer();
    EXPECT_EQ(issuer.commonName, "first name");
    EXPECT_EQ(issuer.country, "DE");
    EXPECT_EQ(issuer.locality, "M\xC3\xBCnchen");
    EXPECT_EQ(issuer.state, "T61");
    EXPECT_EQ(issuer.organization, "Org");
    EXPECT_EQ(issuer.organizationUnit, "");
    EXPECT_EQ(issuer.domainComponent, "com");
    EXPECT_TRUE(read(DerList()).issuer().isEmpty());
    EXPECT_THAT(messagesOf(list), IsEmpty());
}

TEST_F(UaPkiRevocationListTest, same_issuer_compares_names_and_nothing_else)
{
    const auto named = [](const char* name) {
        DerList parts;
        parts.issuer = der(DerSequence, derAttribute("\x55\x04\x03", DerUtf8String, name));
        return parts;
    };
    DerList later = named("one");
    later.thisUpdate = der(DerUtcTime, "250101000000Z");
    later.extensions = DerList::numberExtension(derSmallInteger(5));
    const UaPkiRevocationList one = read(named("one"));
    EXPECT_TRUE(one.sameIssuer(one));
    EXPECT_TRUE(one.sameIssuer(read(later)));
    EXPECT_TRUE(one.sameIssuer(read(named("ONE")))) << "case doesn't count in names";
    EXPECT_FALSE(one.sameIssuer(read(named("two"))));
    EXPECT_FALSE(one.sameIssuer(UaPkiRevocationList()));
    EXPECT_FALSE(UaPkiRevocationList().sameIssuer(one));
    EXPECT_FALSE(UaPkiRevocationList().sameIssuer(UaPkiRevocationList()));
}

TEST_F(UaPkiRevocationListTest, a_signature_of_nobody_is_refused_with_messages)
{
    const UaPkiRevocationList list = read(DerList());
    EXPECT_FALSE(list.verifySignature(sampleKeyPair().publicKey()));
    EXPECT_THAT(messagesOf(list), Not(IsEmpty()));
    EXPECT_FALSE(list.verifySignature(UaPkiPublicKey())) << "without a key";
}

TEST_F(UaPkiRevocationListTest, copies_share_one_handle_until_the_last)
{
    UaPkiRevocationList copy;
    X509_CRL* handle = nullptr;
    {
        const UaPkiRevocationList list = read(DerList());
        handle = list.handle();
        const UaPkiRevocationList second(list);
        EXPECT_EQ(second.handle(), handle);
        copy = second;
    }
    EXPECT_EQ(copy.handle(), handle);
    EXPECT_EQ(toStdString(copy.toDER()), DerList().bytes());
    const UaPkiRevocationList& itself = copy;
    copy = itself;
    EXPECT_EQ(copy.handle(), handle);
    UaPkiRevocationList moved(std::move(copy));
    copy = std::move(moved);
    EXPECT_EQ(copy.handle(), handle);
    const UaPkiRevocationList raw(copy.handle());
    copy = UaPkiRevocationList();
    EXPECT_TRUE(copy.isNull());
    EXPECT_EQ(toStdString(raw.toDER()), DerList().bytes());
    EXPECT_TRUE(UaPkiRevocationList(nullptr).isNull());
}

TEST_F(UaPkiRevocationListTest, copies_start_without_messages_and_moves_take_them_along)
{
    const UaPkiRevocationList failed = UaPkiRevocationList::fromDER(UaByteArray());
    const UaPkiRevocationList copy(failed);
    EXPECT_THAT(messagesOf(copy), IsEmpty());
    UaPkiRevocationList target;
    target = failed;
    EXPECT_THAT(messagesOf(target), IsEmpty());
    EXPECT_THAT(messagesOf(failed), Not(IsEmpty()));
}

} // namespace
