#include "base/uabytestring.h"
#include "base/uastring.h"
#include "platform/allocator.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/copyof.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

/// Lengths around the one up to which a text lies in its block.
constexpr std::array<std::size_t, 6> lengthsAroundTheBlock = {0, 1, 511, 512, 513, 5000};

UaString fromView(std::string_view text)
{
    return {text.data(), static_cast<OpcUa_Int64>(text.size())};
}

void expectNull(const UaString& string)
{
    EXPECT_TRUE(string.isNull());
    EXPECT_TRUE(string.isEmpty());
    EXPECT_EQ(string.length(), 0);
    EXPECT_EQ(string.size(), 0);
    EXPECT_STREQ(string.toUtf8(), "");
    EXPECT_EQ(string.view(), "");
    ASSERT_NE(string.toOpcUaString(), nullptr);
    EXPECT_TRUE(OpcUa_String_IsNull(string.toOpcUaString()));
}

TEST(String, default_is_null)
{
    expectNull(UaString());
}

TEST(String, null_strings_share_one_block)
{
    const UaString first;
    const UaString second(static_cast<const char*>(nullptr));
    EXPECT_EQ(first.toOpcUaString(), second.toOpcUaString());
    UaString moved = "text";
    const UaString taken = std::move(moved);
    // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move): it is null then.
    EXPECT_EQ(moved.toOpcUaString(), first.toOpcUaString());
}

TEST(String, null_sources_give_null)
{
    expectNull(UaString(static_cast<const char*>(nullptr)));
    expectNull(UaString(nullptr, 5));
    expectNull(UaString(static_cast<const OpcUa_String*>(nullptr)));
    expectNull(UaString(static_cast<const char16_t*>(nullptr)));
    expectNull(UaString(UaByteString()));
    const OpcUa_String null{};
    expectNull(UaString(&null));
}

TEST(String, empty_sources_give_an_empty_string_that_is_not_null)
{
    OpcUa_String empty{};
    ASSERT_EQ(OpcUa_String_AttachReadOnly(&empty, ""), OpcUa_Good);
    UaByteString noBytes;
    noBytes.attach(0, nullptr);
    for (const UaString& string :
         {UaString(""), UaString("abc", 0), UaString(&empty), UaString(u""), UaString(noBytes)}) {
        EXPECT_FALSE(string.isNull());
        EXPECT_TRUE(string.isEmpty());
        EXPECT_EQ(string.length(), 0);
        EXPECT_STREQ(string.toUtf8(), "");
    }
}

TEST(String, negative_and_too_long_lengths_give_null)
{
    expectNull(UaString("abc", -1));
    expectNull(UaString("abc", std::numeric_limits<OpcUa_Int64>::min()));
    expectNull(UaString("abc", UaString::MaxLength + 1));
    expectNull(UaString("abc", std::numeric_limits<OpcUa_Int64>::max()));
    UaString text = "kept";
    text.setUtf16(u"abc", -1);
    expectNull(text);
    text.setUtf16(u"abc", UaString::MaxLength + 1);
    expectNull(text);
}

TEST(String, copies_its_source)
{
    char source[] = "hello";
    const UaString string(source);
    source[0] = 'j';
    EXPECT_STREQ(string.toUtf8(), "hello");
    EXPECT_EQ(string.length(), 5);
}

TEST(String, is_made_from_a_stack_string_and_from_a_plain_text_in_its_place)
{
    OpcUa_String record{};
    ASSERT_EQ(OpcUa_String_AttachReadOnly(&record, "record"), OpcUa_Good);
    EXPECT_EQ(UaString(&record), "record");
    EXPECT_EQ(UaString(OpcUa_String_FromPlainText("plain")), "plain");
}

TEST(String, stack_string_without_a_nul_is_read_to_its_length)
{
    const std::string source = "abc";
    OpcUa_String record{};
    ASSERT_EQ(OpcUa_String_AttachToString(source.data(), 2, 0, false, false, &record), OpcUa_Good);
    EXPECT_EQ(UaString(&record), "ab");
}

TEST(String, is_made_from_bytes)
{
    const OpcUa_Byte bytes[] = {'a', 0, 'b'};
    const UaString string(UaByteString(3, bytes));
    EXPECT_EQ(string.view(), "a\0b"sv);
    EXPECT_EQ(string.length(), 3);
}

TEST(String, every_length_is_kept_and_closed_by_a_nul)
{
    for (const std::size_t length : lengthsAroundTheBlock) {
        const std::string text(length, 'x');
        const UaString string = fromView(text);
        EXPECT_EQ(string.view(), text);
        EXPECT_EQ(string.length(), static_cast<OpcUa_Int32>(length));
        EXPECT_EQ(string.toUtf8()[length], '\0');
        EXPECT_EQ(string.toOpcUaString()->uLength, length);
        EXPECT_EQ(string.toOpcUaString()->strContent, string.toUtf8());
    }
}

TEST(String, copy_shares_the_block)
{
    const UaString first = "shared";
    const UaString second = copyOf(first);
    UaString third;
    third = second;
    EXPECT_EQ(first.toOpcUaString(), second.toOpcUaString());
    EXPECT_EQ(first.toOpcUaString(), third.toOpcUaString());
}

TEST(String, copy_outlives_its_source)
{
    for (const std::size_t length : lengthsAroundTheBlock) {
        const std::string text(length, 'x');
        UaString copy;
        {
            const UaString source = fromView(text);
            copy = source;
        }
        EXPECT_EQ(copy.view(), text);
    }
}

TEST(String, changing_one_handle_leaves_the_other)
{
    const UaString first = "abc";
    UaString second = first;
    second += "d";
    EXPECT_STREQ(first.toUtf8(), "abc");
    EXPECT_STREQ(second.toUtf8(), "abcd");
    second = "other";
    EXPECT_STREQ(first.toUtf8(), "abc");
}

TEST(String, copying_takes_no_memory)
{
    const UaString first = "abc";
    const AllocationFaults faults(0);
    UaString second = first;
    const UaString third = std::move(second);
    EXPECT_EQ(third, first);
    EXPECT_FALSE(AllocationFaults::hasFailed());
}

TEST(String, is_assigned_to_itself)
{
    UaString string = "abc";
    const UaString& self = string;
    string = self;
    EXPECT_STREQ(string.toUtf8(), "abc");
    UaString& same = string;
    string = std::move(same);
    EXPECT_STREQ(string.toUtf8(), "abc");
}

TEST(String, swap_exchanges_the_texts)
{
    UaString first = "a";
    UaString second;
    first.swap(second);
    EXPECT_TRUE(first.isNull());
    EXPECT_STREQ(second.toUtf8(), "a");
}

TEST(String, compose_writes_in_place)
{
    const UaString text = UaString::compose(3, [](char* room) { std::copy_n("abc", 3, room); });
    EXPECT_STREQ(text.toUtf8(), "abc");
}

TEST(String, compose_without_room_does_not_write)
{
    for (const OpcUa_Int64 length : {OpcUa_Int64{-1}, UaString::MaxLength + 1}) {
        expectNull(UaString::compose(length, [](char*) { FAIL(); }));
    }
}

struct CountRow
{
    const char* name;
    std::string_view text;
    OpcUa_Int32 characters;
};

void PrintTo(const CountRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class StringSize : public testing::TestWithParam<CountRow>
{
};

TEST_P(StringSize, counts_by_the_lead_bytes)
{
    const UaString string = fromView(GetParam().text);
    EXPECT_EQ(string.size(), GetParam().characters);
    EXPECT_EQ(string.length(), static_cast<OpcUa_Int32>(GetParam().text.size()));
    EXPECT_EQ(static_cast<OpcUa_Int32>(OpcUa_String_StrLen(string.toOpcUaString())),
              GetParam().characters);
}

constexpr CountRow countRows[] = {
    {"ascii", "abc", 3},
    {"embedded_nul", "a\0b"sv, 3},
    {"two_to_four_bytes", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", 3},
    {"five_and_six_bytes", "\xF8\x88\x80\x80\x80\xFC\x84\x80\x80\x80\x80", 2},
    {"lone_bytes_count_alone", "\x80\xBF\xFE\xFF", 4},
    {"lead_takes_what_follows",
     "\xE2"
     "abc",
     2},
    {"cut_at_the_end", "a\xFC", 2},
};

INSTANTIATE_TEST_SUITE_P(Rows, StringSize, testing::ValuesIn(countRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(String, at_gives_the_character)
{
    const UaString string = "a\xC3\xA9\xF0\x9F\x98\x80\x80z\xE2";
    const char32_t expected[] = {
        U'a', 0xE9, 0x1F600, UaChar::Replacement, U'z', UaChar::Replacement};
    const OpcUa_Int32 lengths[] = {1, 2, 4, 1, 1, 1};
    ASSERT_EQ(string.size(), 6);
    for (OpcUa_Int32 i = 0; i < 6; ++i) {
        EXPECT_EQ(string.at(i).codePoint(), expected[i]) << i;
        EXPECT_EQ(string.at(i).utf8Length(), lengths[i]) << i;
    }
}

TEST(String, at_outside_is_no_character)
{
    for (const OpcUa_Int32 index : {std::numeric_limits<OpcUa_Int32>::min(), -1, 3,
                                    std::numeric_limits<OpcUa_Int32>::max()}) {
        EXPECT_TRUE(UaString("abc").at(index).isNull()) << index;
        EXPECT_TRUE(UaString().at(index).isNull()) << index;
    }
    EXPECT_TRUE(UaString().at(0).isNull());
}

TEST(String, byte_offset_counts_bytes_before_a_character)
{
    const UaString string = "a\xC3\xA9\xE2\x82\xAC\xE2";
    const OpcUa_Int32 expected[] = {0, 1, 3, 6, 7, 7};
    for (OpcUa_Int32 i = 0; i < 6; ++i) {
        EXPECT_EQ(string.byteOffset(i), expected[i]) << i;
    }
    EXPECT_EQ(string.byteOffset(-1), 0);
    EXPECT_EQ(string.byteOffset(std::numeric_limits<OpcUa_Int32>::max()), 7);
    EXPECT_EQ(UaString().byteOffset(5), 0);
}

TEST(String, find_gives_the_position_in_characters)
{
    const UaString string = "\xC3\xA9-ab-\xC3\xA9-ab";
    EXPECT_EQ(string.find("ab"), 2);
    EXPECT_EQ(string.find("ab", 2), 2);
    EXPECT_EQ(string.find("ab", 3), 7);
    EXPECT_EQ(string.find("ab", 8), -1);
    EXPECT_EQ(string.find("ab", -5), 2);
    EXPECT_EQ(string.find("\xC3\xA9", 1), 5);
    EXPECT_EQ(string.find("abc"), -1);
    EXPECT_EQ(string.find(string), 0);
}

TEST(String, find_of_nothing)
{
    EXPECT_EQ(UaString("abc").find(UaString()), -1);
    EXPECT_EQ(UaString("abc").find(""), 0);
    EXPECT_EQ(UaString("abc").find("", 3), 3);
    EXPECT_EQ(UaString("abc").find("", 4), -1);
    EXPECT_EQ(UaString().find("a"), -1);
    EXPECT_EQ(UaString().find(""), 0);
}

TEST(String, find_begins_at_characters_alone)
{
    // The second byte of a character isn't one.
    EXPECT_EQ(UaString("\xC3\xA9\xA9").find("\xA9"), 1);
    EXPECT_EQ(fromView("a\0b"sv).find(fromView("\0b"sv)), 1);
}

TEST(String, substring_takes_characters)
{
    const UaString string = "a\xC3\xA9\xE2\x82\xACz";
    EXPECT_EQ(string.substring(1, 2), "\xC3\xA9\xE2\x82\xAC");
    EXPECT_EQ(string.substring(2), "\xE2\x82\xACz");
    EXPECT_EQ(string.substring(2, 100), "\xE2\x82\xACz");
    EXPECT_EQ(string.substring(1, 0), "");
    EXPECT_FALSE(string.substring(1, 0).isNull());
    EXPECT_EQ(string.substring(0).toOpcUaString(), string.toOpcUaString());
    EXPECT_FALSE(string.substring(4).isNull());
    EXPECT_TRUE(string.substring(4).isEmpty());
    EXPECT_EQ(UaString("a\xE2\x82").substring(1), "\xE2\x82");
}

TEST(String, substring_outside_is_null)
{
    const UaString string = "abc";
    expectNull(string.substring(4));
    expectNull(string.substring(-1));
    expectNull(string.substring(std::numeric_limits<OpcUa_Int32>::max(), 1));
    expectNull(UaString().substring(0));
}

TEST(String, appending_gives_a_new_block)
{
    UaString string = "ab";
    const UaString before = string;
    string += UaString("cd");
    string += "ef";
    EXPECT_STREQ(string.toUtf8(), "abcdef");
    EXPECT_STREQ(before.toUtf8(), "ab");
    string += string;
    EXPECT_STREQ(string.toUtf8(), "abcdefabcdef");
}

TEST(String, appending_crosses_the_block_size)
{
    UaString string = "";
    std::string expected;
    for (int i = 0; i < 300; ++i) {
        string += "abc";
        expected += "abc";
        ASSERT_EQ(string.view(), expected);
    }
}

TEST(String, sum_is_null_only_of_two_null_ones)
{
    const UaString null;
    const char* noText = nullptr;
    expectNull(null + null);
    expectNull(null + noText);
    expectNull(noText + null);
    EXPECT_FALSE((null + UaString("")).isNull());
    EXPECT_FALSE((UaString("") + null).isNull());
    EXPECT_FALSE((null + "").isNull());
    EXPECT_FALSE(("" + null).isNull());
    EXPECT_EQ(UaString("a") + null, "a");
    EXPECT_EQ(null + UaString("a"), "a");
    EXPECT_EQ(UaString("a") + noText, "a");
    EXPECT_EQ(noText + UaString("a"), "a");
}

TEST(String, sums_of_texts)
{
    EXPECT_EQ(UaString("a") + UaString("b"), "ab");
    EXPECT_EQ(UaString("a") + "b", "ab");
    EXPECT_EQ("a" + UaString("b"), "ab");
    EXPECT_EQ((fromView("a\0"sv) + fromView("\0b"sv)).view(), "a\0\0b"sv);
}

TEST(String, appending_nothing_keeps_the_block)
{
    UaString string = "a";
    const OpcUa_String* block = string.toOpcUaString();
    string += "";
    string += UaString("");
    string += UaString();
    string += static_cast<const char*>(nullptr);
    EXPECT_EQ(string.toOpcUaString(), block);
}

TEST(String, equal_is_by_length_and_bytes)
{
    const UaString first = "abc";
    const UaString same = copyOf(first);
    EXPECT_TRUE(first == same);
    EXPECT_TRUE(first == UaString("abc"));
    EXPECT_FALSE(first == UaString("abd"));
    EXPECT_FALSE(first == UaString("ab"));
    EXPECT_TRUE(first != UaString("ABC"));
    EXPECT_TRUE(first == "abc");
    EXPECT_TRUE("abc" == first);
    EXPECT_TRUE(first != "abcd");
    EXPECT_FALSE(fromView("a\0b"sv) == fromView("a\0c"sv));
    EXPECT_FALSE(fromView("a\0b"sv) == "a");
}

TEST(String, null_equals_empty)
{
    EXPECT_TRUE(UaString() == UaString(""));
    EXPECT_TRUE(UaString() == "");
    EXPECT_TRUE(UaString("") == static_cast<const char*>(nullptr));
    EXPECT_FALSE(UaString("a") == static_cast<const char*>(nullptr));
}

TEST(String, shorter_comes_first_whatever_it_holds)
{
    EXPECT_FALSE(UaString("ab") < UaString("z"));
    EXPECT_TRUE(UaString("z") < UaString("ab"));
    EXPECT_TRUE(UaString("") < UaString("a"));
    EXPECT_TRUE(UaString() < UaString("a"));
    EXPECT_FALSE(UaString("a") < UaString());
}

TEST(String, equal_lengths_are_ordered_by_their_bytes)
{
    const UaString text = "ab";
    const UaString same = copyOf(text);
    EXPECT_FALSE(text < same);
    EXPECT_FALSE(text < UaString("ab"));
    EXPECT_TRUE(text < UaString("ac"));
    EXPECT_FALSE(UaString("ac") < text);
    // Bytes count as unsigned.
    EXPECT_TRUE(UaString("az") < UaString("a\xC3"));
}

TEST(String, order_stops_at_an_embedded_nul)
{
    const UaString first = fromView("a\0b"sv);
    const UaString second = fromView("a\0c"sv);
    EXPECT_FALSE(first < second);
    EXPECT_FALSE(second < first);
    EXPECT_FALSE(first == second);
}

TEST(String, null_comes_before_empty_although_they_are_equal)
{
    EXPECT_TRUE(UaString() < UaString(""));
    EXPECT_FALSE(UaString("") < UaString());
    EXPECT_FALSE(UaString() < UaString());
}

TEST(String, copy_to_gives_a_text_of_its_own)
{
    for (const std::size_t length : lengthsAroundTheBlock) {
        const std::string text(length, 'x');
        const UaString string = fromView(text);
        OpcUa_String copy{};
        ASSERT_EQ(OpcUa_String_AttachCopy(&copy, "held before"), OpcUa_Good);
        EXPECT_EQ(string.copyTo(&copy), OpcUa_Good);
        EXPECT_EQ(copy.uLength, length);
        EXPECT_STREQ(copy.strContent, text.c_str());
        EXPECT_NE(copy.strContent, string.toUtf8());
        EXPECT_NE(copy.flags & OpcUa_String_OwnsContent, 0u);
        OpcUa_String_Clear(&copy);
    }
}

TEST(String, copy_to_of_null_gives_null)
{
    OpcUa_String copy{};
    ASSERT_EQ(OpcUa_String_AttachCopy(&copy, "held before"), OpcUa_Good);
    EXPECT_EQ(UaString().copyTo(&copy), OpcUa_Good);
    EXPECT_TRUE(OpcUa_String_IsNull(&copy));
}

TEST(String, copy_to_and_detach_refuse_a_null_pointer)
{
    for (const std::size_t length : lengthsAroundTheBlock) {
        UaString string = fromView(std::string(length, 'x'));
        EXPECT_EQ(string.copyTo(nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(string.detach(nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(string.length(), static_cast<OpcUa_Int32>(length));
    }
}

TEST(String, detach_hands_the_text_over)
{
    for (const std::size_t length : lengthsAroundTheBlock) {
        const std::string text(length, 'x');
        UaString string = fromView(text);
        OpcUa_String detached{};
        ASSERT_EQ(OpcUa_String_AttachCopy(&detached, "held before"), OpcUa_Good);
        EXPECT_EQ(string.detach(&detached), OpcUa_Good);
        expectNull(string);
        EXPECT_EQ(detached.uLength, length);
        EXPECT_STREQ(detached.strContent, text.c_str());
        OpcUa_String_Clear(&detached);
    }
}

TEST(String, detach_moves_a_long_text_of_its_own)
{
    UaString string = fromView(std::string(5000, 'x'));
    const char* text = string.toUtf8();
    OpcUa_String detached{};
    const AllocationFaults faults(0);
    EXPECT_EQ(string.detach(&detached), OpcUa_Good);
    EXPECT_EQ(detached.strContent, text);
    OpcUa_String_Clear(&detached);
}

TEST(String, detach_copies_a_shared_text)
{
    UaString string = fromView(std::string(5000, 'x'));
    const UaString other = string;
    OpcUa_String detached{};
    EXPECT_EQ(string.detach(&detached), OpcUa_Good);
    expectNull(string);
    EXPECT_NE(detached.strContent, other.toUtf8());
    EXPECT_STREQ(detached.strContent, other.toUtf8());
    OpcUa_String_Clear(&detached);
}

TEST(String, detach_of_null_gives_null)
{
    UaString string;
    OpcUa_String detached{};
    ASSERT_EQ(OpcUa_String_AttachCopy(&detached, "held before"), OpcUa_Good);
    EXPECT_EQ(string.detach(&detached), OpcUa_Good);
    EXPECT_TRUE(OpcUa_String_IsNull(&detached));
}

TEST(String, without_memory_detach_keeps_the_text)
{
    UaString string = "short";
    OpcUa_String detached{};
    const AllocationFaults faults(0);
    EXPECT_EQ(string.detach(&detached), OpcUa_BadOutOfMemory);
    EXPECT_TRUE(OpcUa_String_IsNull(&detached));
    EXPECT_STREQ(string.toUtf8(), "short");
}

TEST(String, every_failing_allocation_gives_null)
{
    const std::string longText(5000, '%');
    const UaString longString = fromView(longText);
    const UaString pattern = fromView("%1" + longText);
    const UaByteString bytes(3, reinterpret_cast<const OpcUa_Byte*>("abc"));
    const auto null = [](const UaString& string) { expectNull(string); };
    EXPECT_EQ(forEveryFailingAllocation([] { return UaString("abc"); }, null), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return fromView(longText); }, null), 2u);
    EXPECT_EQ(forEveryFailingAllocation([] { return UaString(u"abc"); }, null), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return UaString(bytes); }, null), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return longString + longString; }, null), 2u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return longString + "abc"; }, null), 2u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return "abc" + longString; }, null), 2u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return longString.substring(1); }, null), 2u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return pattern.arg(1); }, null), 2u);
    EXPECT_EQ(forEveryFailingAllocation([] { return UaString::fromLocal8Bit("abc"); }, null), 1u);
}

TEST(String, without_memory_an_append_gives_null)
{
    UaString string = "abc";
    const AllocationFaults faults(0);
    string += "def";
    expectNull(string);
}

TEST(String, eight_threads_copy_and_drop_one_text)
{
    for (const std::size_t length : {std::size_t{10}, std::size_t{5000}}) {
        const std::string text(length, 'x');
        UaString shared = fromView(text);
        inEightThreads([&shared, &text] {
            for (int i = 0; i < 2000; ++i) {
                UaString copy = shared;
                UaString other;
                other = copy;
                ASSERT_EQ(other.view(), text);
                const UaString moved = std::move(copy);
                other += "y";
                ASSERT_EQ(other.length(), moved.length() + 1);
                const UaString null = UaString();
                ASSERT_TRUE(null.isNull());
            }
        });
        EXPECT_EQ(shared.view(), text);
    }
}

TEST(String, eight_threads_drop_the_last_handle)
{
    for (int round = 0; round < 200; ++round) {
        std::array<UaString, 8> handles;
        handles.fill(fromView(std::string(600, 'x')));
        std::atomic<std::size_t> next = 0;
        inEightThreads([&handles, &next] {
            UaString& mine = handles[next.fetch_add(1)];
            ASSERT_EQ(mine.length(), 600);
            mine = UaString();
        });
    }
}

} // namespace
