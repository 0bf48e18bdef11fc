#include "platform/status.h"
#include "stack/opcua_string.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace {

constexpr OpcUa_UInt32 noMaximum = OpcUa_String_WholeLength;

/// A record around a text, without owning it.
OpcUa_String around(std::string_view text)
{
    OpcUa_String string{};
    EXPECT_EQ(OpcUa_String_AttachToString(text.data(), static_cast<OpcUa_UInt32>(text.size()), 0,
                                          false, false, &string),
              OpcUa_Good);
    return string;
}

TEST(StringCompare, pointers_and_contents_that_are_null)
{
    const OpcUa_String null{};
    const OpcUa_String otherNull{};
    const OpcUa_String empty = around("");
    const OpcUa_String filled = around("a");
    struct Row
    {
        const char* name;
        const OpcUa_String* left;
        const OpcUa_String* right;
        OpcUa_Int32 expected;
    };
    const std::array<Row, 11> rows = {{{"two null pointers", nullptr, nullptr, 0},
                                       {"null pointer left", nullptr, &filled, -1},
                                       {"null pointer right", &filled, nullptr, 1},
                                       {"null pointer against null content", nullptr, &null, -1},
                                       {"null content against null pointer", &null, nullptr, 1},
                                       {"two null contents", &null, &otherNull, 0},
                                       {"null content left", &null, &filled, -1},
                                       {"null content right", &filled, &null, 1},
                                       {"null against empty", &null, &empty, -1},
                                       {"empty against null", &empty, &null, 1},
                                       {"same record", &filled, &filled, 0}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OpcUa_String_StrnCmp(row.left, row.right, noMaximum, false), row.expected);
        EXPECT_EQ(OpcUa_String_Compare(row.left, row.right), row.expected);
    }
}

TEST(StringCompare, identical_contents_are_equal_whatever_the_lengths)
{
    const std::string_view text = "abcd";
    const OpcUa_String whole = around(text);
    const OpcUa_String part = around(text.substr(0, 2));
    EXPECT_EQ(OpcUa_String_StrnCmp(&whole, &part, noMaximum, false), 0);
}

TEST(StringCompare, texts)
{
    struct Row
    {
        std::string_view left;
        std::string_view right;
        OpcUa_UInt32 maximum;
        bool ignoreCase;
        OpcUa_Int32 expected;
    };
    using namespace std::string_view_literals;
    const std::array<Row, 26> rows = {{
        {"abc", "abcd", 3, false, 0},
        {"abc", "abcd", noMaximum, false, -1},
        {"abcd", "abc", noMaximum, false, 1},
        {"abc", "abcd", 4, false, -1},
        {"abc", "abd", 2, false, 0},
        {"abc", "abd", 3, false, -1},
        {"abd", "abc", 3, false, 1},
        {"abc", "xyz", 0, false, 0},
        {"", "", noMaximum, false, 0},
        {"", "a", noMaximum, false, -1},
        {"", "a", 0, false, 0},
        {"z", "ab", noMaximum, false, 1},
        {"abc", "ABC", noMaximum, false, 1},
        {"abc", "ABC", noMaximum, true, 0},
        {"aBz", "AbZ", noMaximum, true, 0},
        {"abc", "ABD", noMaximum, true, -1},
        {"ABD", "abc", noMaximum, true, 1},
        {"ABC", "abcd", noMaximum, true, -1},
        {"ABC", "abcd", 3, true, 0},
        {"[", "{", noMaximum, true, -1},
        {"\xC4", "\xE4", noMaximum, true, -1},
        {"a\x7F", "a\x80", noMaximum, false, -1},
        {"a\0b"sv, "a\0c"sv, noMaximum, false, 0},
        {"a\0b"sv, "A\0C"sv, noMaximum, true, 0},
        {"a\0b"sv, "a\0cd"sv, noMaximum, false, -1},
        {"a"sv, "a\0"sv, noMaximum, false, -1},
    }};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.left << " | " << row.right << " | " << row.maximum);
        const OpcUa_String left = around(row.left);
        const OpcUa_String right = around(row.right);
        EXPECT_EQ(OpcUa_String_StrnCmp(&left, &right, row.maximum, row.ignoreCase), row.expected);
        EXPECT_EQ(OpcUa_String_StrnCmp(&right, &left, row.maximum, row.ignoreCase), -row.expected);
    }
}

TEST(StringCompare, plain_texts_stand_for_records)
{
    const OpcUa_String* hello = OpcUa_String_FromPlainText("hello");
    const OpcUa_String record = around("hello");
    const OpcUa_String longer = around("hello!");
    EXPECT_EQ(OpcUa_String_StrnCmp(hello, &record, noMaximum, false), 0);
    EXPECT_EQ(OpcUa_String_StrnCmp(&record, hello, noMaximum, false), 0);
    EXPECT_EQ(OpcUa_String_StrnCmp(hello, &longer, noMaximum, false), -1);
    EXPECT_EQ(OpcUa_String_StrnCmp(hello, &longer, 5, false), 0);
    EXPECT_EQ(OpcUa_String_StrnCmp(hello, OpcUa_String_FromPlainText("HELLO"), noMaximum, true), 0);
    EXPECT_EQ(OpcUa_String_Compare(hello, nullptr), 1);
}

TEST(StringCompare, reads_no_byte_behind_a_content_without_nul)
{
    const auto left = std::make_unique<char[]>(2);
    const auto right = std::make_unique<char[]>(3);
    left[0] = right[0] = 'a';
    left[1] = right[1] = 'b';
    right[2] = 'c';
    const OpcUa_String shorter = around({left.get(), 2});
    const OpcUa_String longer = around({right.get(), 3});
    EXPECT_EQ(OpcUa_String_StrnCmp(&shorter, &longer, noMaximum, false), -1);
    EXPECT_EQ(OpcUa_String_StrnCmp(&shorter, &longer, noMaximum, true), -1);
}

} // namespace
