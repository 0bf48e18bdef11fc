#include "base/uaarraytext.h"
#include "platform/status.h"
#include "tests/base/variantvalues.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

std::vector<std::string> piecesOf(const UaArrayText& text)
{
    std::vector<std::string> pieces;
    pieces.reserve(static_cast<std::size_t>(text.count()));
    UaArrayText::Reader reader(text);
    for (OpcUa_Int32 i = 0; i < text.count(); ++i) {
        pieces.emplace_back(reader.next());
    }
    return pieces;
}

TEST(UaArrayText, refused_texts_have_no_pieces)
{
    struct Row
    {
        std::string_view text;
        const char* status;
    };
    constexpr Row rows[] = {
        {"", "BadOutOfRange"},          {"{", "BadOutOfRange"},
        {"{}", "BadOutOfRange"},        {"\xC3\xA4{", "BadOutOfRange"},
        {"{\xC3\xA4", "BadOutOfRange"}, {"abc", "BadTypeMismatch"},
        {"{1", "BadOutOfRange"},        {"{12", "BadTypeMismatch"},
        {"12}", "BadTypeMismatch"},     {" {1}", "BadTypeMismatch"},
        {"{1} ", "BadTypeMismatch"},    {"{1}2", "BadTypeMismatch"},
        {"}1{", "BadTypeMismatch"},     {std::string_view("{1}\0", 4), "BadTypeMismatch"}};
    for (const Row& row : rows) {
        UaArrayText text;
        EXPECT_EQ(nameOf(text.open(row.text)), row.status) << row.text;
        EXPECT_EQ(text.count(), 0) << row.text;
        EXPECT_TRUE(UaArrayText::Reader(text).next().empty());
    }
}

TEST(UaArrayText, pieces_are_trimmed_and_keep_their_order)
{
    struct Row
    {
        std::string_view text;
        std::vector<std::string> pieces;
    };
    const std::vector<Row> rows = {
        {"{1}", {"1"}},
        {"{1| 2 |3}", {"1", "2", "3"}},
        {"{ }", {""}},
        {"{|}", {"", ""}},
        {"{||}", {"", "", ""}},
        {"{1,2}", {"1,2"}},
        {"{a b|c}", {"a b", "c"}},
        {"{{1}|{2}}", {"{1}", "{2}"}},
        {"{1}2}", {"1}2"}},
        {"{\t\n\v\f\r x \r\n}", {"x"}},
        {"{\xC2\xA0x\xC2\xA0|\xE3\x80\x80y\xE2\x80\xA8}", {"x", "y"}}, // spaces beyond ASCII
        {"{\xF0\x9F\x98\x80|\xC3\xA4 }", {"\xF0\x9F\x98\x80", "\xC3\xA4"}},
        {"{\xE2|\x80}", {"\xE2", "\x80"}}, // bytes that are no characters
        {std::string_view("{a\0b|\0}", 7), {std::string("a\0b", 3), std::string("\0", 1)}}};
    for (const Row& row : rows) {
        UaArrayText text;
        EXPECT_EQ(text.open(row.text), OpcUa_Good) << row.text;
        EXPECT_EQ(piecesOf(text), row.pieces) << row.text;
    }
}

TEST(UaArrayText, reader_is_empty_behind_the_last_piece)
{
    UaArrayText text;
    ASSERT_EQ(text.open("{1|2}"), OpcUa_Good);
    UaArrayText::Reader reader(text);
    EXPECT_EQ(reader.next(), "1");
    EXPECT_EQ(reader.next(), "2");
    EXPECT_EQ(reader.next(), "");
    EXPECT_EQ(reader.next(), "");
}

TEST(UaArrayText, dates_are_read_as_a_whole)
{
    struct Row
    {
        std::string_view text;
        const char* status;
        OpcUa_UInt64 ticks;
    };
    const std::string longText(64, '1');
    const Row rows[] = {{"1970-01-01T00:00:00.000Z", "Good", 116444736000000000u},
                        {"", "BadSyntaxError", 0},
                        {"1970-02-30T00:00:00.000Z", "BadOutOfRange", 0},
                        {"1970-01-01", "BadSyntaxError", 0},
                        {std::string_view("1970-01-01T00:00:00.000Z\0", 25), "BadSyntaxError", 0},
                        {longText, "BadSyntaxError", 0}};
    for (const Row& row : rows) {
        OpcUa_DateTime dateTime = {1, 2};
        EXPECT_EQ(nameOf(UaArrayText_ReadDateTime(row.text, dateTime)), row.status) << row.text;
        EXPECT_EQ(OpcUa_DateTime_ToTicks(dateTime), row.ticks) << row.text;
    }
}

} // namespace
