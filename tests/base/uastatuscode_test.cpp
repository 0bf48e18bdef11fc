#include "base/uastatuscode.h"
#include "platform/statuscodes.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

// The first test of the file: the names are made once in a process.
TEST(UaStatusCode, a_name_that_found_no_memory_on_first_use_is_made_anew)
{
    constexpr std::size_t row = 5;
    {
        const AllocationFaults faults(row);
        EXPECT_EQ(textOf(UaStatusCode::toString(OpcUa_Good)), "Good");
    }
    EXPECT_EQ(textOf(UaStatusCode::toString(OpcUa_StatusCodeNames[row].code)),
              OpcUa_StatusCodeNames[row].name);
}

TEST(UaStatusCode, default_is_good)
{
    const UaStatusCode status;
    EXPECT_EQ(status.code(), 0u);
    EXPECT_TRUE(status.isGood());
    EXPECT_EQ(textOf(status.toString()), "Good");
}

struct SeverityRow
{
    const char* name;
    OpcUa_StatusCode code;
    bool bGood;
    bool bBad;
    bool bUncertain;
};

constexpr std::array<SeverityRow, 8> severityRows = {
    {{"good", 0x00000000, true, false, false},
     {"good with info bits", 0x0000FFFF, true, false, false},
     {"last good", 0x3FFFFFFF, true, false, false},
     {"first uncertain", 0x40000000, false, false, true},
     {"last uncertain", 0x7FFFFFFF, false, false, true},
     {"first bad", 0x80000000, false, true, false},
     {"first of the reserved pattern", 0xC0000000, false, true, false},
     {"last of the reserved pattern", 0xFFFFFFFF, false, true, false}}};

TEST(UaStatusCode, severity_is_told_by_the_top_two_bits)
{
    for (const SeverityRow& row : severityRows) {
        SCOPED_TRACE(row.name);
        const UaStatusCode status(row.code);
        EXPECT_EQ(status.isGood(), row.bGood);
        EXPECT_EQ(status.isNotGood(), !row.bGood);
        EXPECT_EQ(status.isBad(), row.bBad);
        EXPECT_EQ(status.isNotBad(), !row.bBad);
        EXPECT_EQ(status.isUncertain(), row.bUncertain);
    }
}

TEST(UaStatusCode, set_code_replaces_all_bits)
{
    UaStatusCode status(OpcUa_BadOutOfRange);
    status.setCode(0x40920001);
    EXPECT_EQ(status.code(), 0x40920001u);
    EXPECT_EQ(status, 0x40920001u);
    EXPECT_EQ(status, UaStatusCode(0x40920001));
    EXPECT_NE(status, UaStatusCode(0x40920000)); // info bits count
    EXPECT_NE(status, OpcUa_Good);
}

struct TextRow
{
    OpcUa_StatusCode code;
    const char* text;
};

constexpr std::array<TextRow, 19> namedRows = {{{0x00000000, "Good"},
                                                {0x40000000, "Uncertain"},
                                                {0x80000000, "Bad"},
                                                {0x80010000, "BadUnexpectedError"},
                                                {0x80030000, "BadOutOfMemory"},
                                                {0x80060000, "BadEncodingError"},
                                                {0x80070000, "BadDecodingError"},
                                                {0x80080000, "BadEncodingLimitsExceeded"},
                                                {0x80360000, "BadIndexRangeInvalid"},
                                                {0x80370000, "BadIndexRangeNoData"},
                                                {0x803C0000, "BadOutOfRange"},
                                                {0x803D0000, "BadNotSupported"},
                                                {0x803E0000, "BadNotFound"},
                                                {0x80740000, "BadTypeMismatch"},
                                                {0x80AB0000, "BadInvalidArgument"},
                                                {0x80AF0000, "BadInvalidState"},
                                                {0x80B40000, "BadExpectedStreamToBlock"},
                                                {0x80B60000, "BadSyntaxError"},
                                                {0x00A50000, "GoodNoData"}}};

TEST(UaStatusCode, names_have_the_settled_codes)
{
    for (const TextRow& row : namedRows) {
        EXPECT_EQ(textOf(UaStatusCode::toString(row.code)), row.text);
    }
}

constexpr std::array<TextRow, 13> otherRows = {{{0x803C0001, "BadOutOfRange (0x803c0001)"},
                                                {0x803CFFFF, "BadOutOfRange (0x803cffff)"},
                                                {0x00000001, "Good (0x00000001)"},
                                                {0x00000400, "Good (0x00000400)"},
                                                {0x400000AB, "Uncertain (0x400000ab)"},
                                                {0x80000001, "Bad (0x80000001)"},
                                                {0x12340000, "0x12340000"},
                                                {0x12345678, "0x12345678"},
                                                {0x00010000, "0x00010000"},
                                                {0xC0000000, "0xc0000000"},
                                                {0xC03C0000, "0xc03c0000"},
                                                {0x903C0000, "0x903c0000"},
                                                {0xFFFFFFFF, "0xffffffff"}}};

TEST(UaStatusCode, info_bits_and_unknown_codes_show_the_whole_code)
{
    for (const TextRow& row : otherRows) {
        EXPECT_EQ(textOf(UaStatusCode(row.code).toString()), row.text);
    }
}

struct ListedCode
{
    std::string name;
    OpcUa_StatusCode code;
};

std::vector<ListedCode> readList()
{
    std::ifstream file(ZANDREL_SOURCE_DIR "/platform/data/statuscodes.txt");
    std::vector<ListedCode> list;
    std::string name;
    std::string code;
    while (file >> name >> code) {
        list.push_back({name, static_cast<OpcUa_StatusCode>(std::stoul(code, nullptr, 16))});
    }
    return list;
}

TEST(UaStatusCode, every_listed_code_has_its_name_with_and_without_info_bits)
{
    const std::vector<ListedCode> list = readList();
    ASSERT_EQ(list.size(), 240u);
    EXPECT_EQ(OpcUa_StatusCodeNames.size(), 240u);
    for (const ListedCode& row : list) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.code & 0xFFFFu, 0u);
        EXPECT_EQ(textOf(UaStatusCode::toString(row.code)), row.name);
        const std::string withBits = textOf(UaStatusCode::toString(row.code | 0x8001u));
        EXPECT_TRUE(withBits.starts_with(row.name + " (0x"));
        EXPECT_TRUE(withBits.ends_with("8001)"));
        EXPECT_EQ(withBits.size(), row.name.size() + 13);
    }
}

TEST(UaStatusCode, only_listed_codes_have_names)
{
    std::size_t named = 0;
    for (OpcUa_UInt32 high = 0; high <= 0xFFFF; ++high) {
        named += textOf(UaStatusCode::toString(high << 16)).starts_with("0x") ? 0 : 1;
    }
    EXPECT_EQ(named, 240u);
}

TEST(UaStatusCode, text_is_right_or_null_when_memory_is_short)
{
    for (const OpcUa_StatusCode code : {0x803C0000u, 0x803C0001u, 0x12340000u}) {
        const std::string expected = textOf(UaStatusCode::toString(code));
        forEveryFailingAllocation(
            [code] { return UaStatusCode::toString(code); },
            [&](const UaString& text) { EXPECT_TRUE(text.isNull() || textOf(text) == expected); });
    }
}

TEST(UaStatusCode, names_can_be_printed_from_eight_threads_from_the_first_use_on)
{
    std::vector<std::thread> threads;
    threads.reserve(8);
    std::array<int, 8> matches{};
    for (int& match : matches) {
        threads.emplace_back([&match] {
            for (int round = 0; round < 500; ++round) {
                const UaString text = UaStatusCode::toString(OpcUa_BadSyntaxError);
                match += text == "BadSyntaxError" ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const int match : matches) {
        EXPECT_EQ(match, 500);
    }
}

} // namespace
