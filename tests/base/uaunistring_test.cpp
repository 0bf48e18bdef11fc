#include "base/uaunistring.h"
#include "base/uaunistringlist.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <limits>
#include <string>
#include <type_traits>

namespace {

constexpr OpcUa_Int32 lowest = std::numeric_limits<OpcUa_Int32>::min();
constexpr OpcUa_Int32 highest = std::numeric_limits<OpcUa_Int32>::max();

void expectNull(const UaUniString& string)
{
    EXPECT_TRUE(string.isNull());
    EXPECT_TRUE(string.isEmpty());
    EXPECT_EQ(string.length(), 0);
    EXPECT_EQ(string.view(), u"");
    EXPECT_EQ(*string.utf16(), u'\0');
    EXPECT_TRUE(string.toUaString().isNull());
}

TEST(UniString, default_is_null)
{
    expectNull(UaUniString());
}

TEST(UniString, null_sources_and_nonsense_give_null)
{
    expectNull(UaUniString(static_cast<const char*>(nullptr)));
    expectNull(UaUniString(static_cast<const char16_t*>(nullptr)));
    expectNull(UaUniString(nullptr, 3));
    expectNull(UaUniString(UaString()));
    expectNull(UaUniString(u"abc", -1));
    expectNull(UaUniString(u"abc", std::numeric_limits<OpcUa_Int64>::min()));
    expectNull(UaUniString(u"abc", UaUniString::MaxLength + 1));
    expectNull(UaUniString::compose(-1, [](char16_t*) { FAIL(); }));
}

TEST(UniString, empty_sources_give_an_empty_string_that_is_not_null)
{
    for (const UaUniString& string :
         {UaUniString(""), UaUniString(u""), UaUniString(u"abc", 0), UaUniString(UaString(""))}) {
        EXPECT_FALSE(string.isNull());
        EXPECT_TRUE(string.isEmpty());
        EXPECT_FALSE(string.toUaString().isNull());
        EXPECT_TRUE(string.toUaString().isEmpty());
    }
}

TEST(UniString, has_one_unit_per_character)
{
    const UaUniString string(UaString("a\xC3\xA9\xF0\x9F\x98\x80z"));
    EXPECT_EQ(string.length(), 4);
    EXPECT_EQ(string.view(), u"a\u00E9\uFFFDz");
    EXPECT_EQ(string, UaUniString("a\xC3\xA9\xF0\x9F\x98\x80z"));
    EXPECT_EQ(string.toUaString(), "a\xC3\xA9\xEF\xBF\xBDz");
}

TEST(UniString, zero_units_are_kept)
{
    const UaUniString string(u"a\0b", 3);
    EXPECT_EQ(string.length(), 3);
    EXPECT_EQ(string.toUaString().view(), std::string_view("a\0b", 3));
    EXPECT_EQ(UaUniString(string.toUaString()), string);
}

TEST(UniString, is_closed_by_a_0_unit)
{
    const UaUniString string = u"abc";
    EXPECT_EQ(string.utf16()[3], u'\0');
}

TEST(UniString, copy_shares_the_block_and_move_leaves_null)
{
    UaUniString first = u"abc";
    const UaUniString second = first;
    EXPECT_EQ(first.utf16(), second.utf16());
    UaUniString third;
    third = first;
    EXPECT_EQ(third.utf16(), second.utf16());
    UaUniString& self = third;
    third = self;
    third = std::move(self);
    EXPECT_EQ(third, second);
    const UaUniString taken = std::move(first);
    // NOLINTNEXTLINE(bugprone-use-after-move): a moved-from string is null.
    expectNull(first);
    EXPECT_EQ(taken, second);
}

TEST(UniString, at_gives_the_unit_or_0)
{
    const UaUniString string = u"a\u20ACb";
    EXPECT_EQ(string.at(1), u'\u20AC');
    for (const OpcUa_Int32 index : {lowest, -1, 3, highest}) {
        EXPECT_EQ(string.at(index), u'\0') << index;
        EXPECT_EQ(UaUniString().at(index), u'\0') << index;
    }
}

TEST(UniString, index_of_finds_from_a_position)
{
    const UaUniString string = u"ab-ab";
    EXPECT_EQ(string.indexOf(u"ab"), 0);
    EXPECT_EQ(string.indexOf(u"ab", 1), 3);
    EXPECT_EQ(string.indexOf(u"ab", 3), 3);
    EXPECT_EQ(string.indexOf(u"ab", 4), -1);
    EXPECT_EQ(string.indexOf(u"ab", lowest), 0);
    EXPECT_EQ(string.indexOf(u"ab", highest), -1);
    EXPECT_EQ(string.indexOf(u'-'), 2);
    EXPECT_EQ(string.indexOf(u'-', 3), -1);
    EXPECT_EQ(string.indexOf(u'-', -1), 2);
    EXPECT_EQ(string.indexOf(u"", 5), 5);
    EXPECT_EQ(string.indexOf(u"", 6), -1);
    EXPECT_EQ(UaUniString().indexOf(u"a"), -1);
    EXPECT_EQ(UaUniString().indexOf(u'a'), -1);
}

TEST(UniString, last_index_of_finds_up_to_a_position)
{
    const UaUniString string = u"ab-ab";
    EXPECT_EQ(string.lastIndexOf(u"ab"), 3);
    EXPECT_EQ(string.lastIndexOf(u"ab", 3), 3);
    EXPECT_EQ(string.lastIndexOf(u"ab", 2), 0);
    EXPECT_EQ(string.lastIndexOf(u"ab", 0), 0);
    EXPECT_EQ(string.lastIndexOf(u"abc"), -1);
    EXPECT_EQ(string.lastIndexOf(u'-'), 2);
    EXPECT_EQ(string.lastIndexOf(u'-', 1), -1);
    EXPECT_EQ(string.lastIndexOf(u'-', highest), 2);
    EXPECT_EQ(UaUniString().lastIndexOf(u'a'), -1);
}

TEST(UniString, contains_starts_and_ends)
{
    const UaUniString string = u"{1|2}";
    EXPECT_TRUE(string.contains(u"|2"));
    EXPECT_TRUE(string.contains(u'|'));
    EXPECT_FALSE(string.contains(u'x'));
    EXPECT_FALSE(string.contains(u"2|"));
    EXPECT_TRUE(string.startsWith(u"{1"));
    EXPECT_FALSE(string.startsWith(u"1"));
    EXPECT_TRUE(string.endsWith(u"}"));
    EXPECT_FALSE(string.endsWith(u"{1|2}}"));
}

TEST(UniString, mid_left_and_right_cut)
{
    const UaUniString string = u"abcde";
    EXPECT_EQ(string.mid(1, 2), u"bc");
    EXPECT_EQ(string.mid(3), u"de");
    EXPECT_EQ(string.mid(3, 100), u"de");
    EXPECT_EQ(string.mid(0).utf16(), string.utf16());
    EXPECT_FALSE(string.mid(5).isNull());
    EXPECT_TRUE(string.mid(5).isEmpty());
    expectNull(string.mid(6));
    expectNull(string.mid(-1));
    expectNull(UaUniString().mid(0));
    EXPECT_EQ(string.left(2), u"ab");
    EXPECT_EQ(string.left(100), u"abcde");
    EXPECT_EQ(string.left(-1), u"");
    EXPECT_FALSE(string.left(-1).isNull());
    EXPECT_EQ(string.right(2), u"de");
    EXPECT_EQ(string.right(100), u"abcde");
    EXPECT_EQ(string.right(lowest), u"");
    expectNull(UaUniString().left(1));
    expectNull(UaUniString().right(1));
}

TEST(UniString, trimmed_takes_white_space_away)
{
    EXPECT_EQ(UaUniString(u" \t\r\n a b \u00A0\u3000").trimmed(), u"a b");
    EXPECT_EQ(UaUniString(u" \t ").trimmed(), u"");
    EXPECT_FALSE(UaUniString(u" \t ").trimmed().isNull());
    const UaUniString bare = u"bare";
    EXPECT_EQ(bare.trimmed().utf16(), bare.utf16());
    expectNull(UaUniString().trimmed());
}

TEST(UniString, replaced_exchanges_units)
{
    EXPECT_EQ(UaUniString(u"a\\b\\c").replaced(u'\\', u'/'), u"a/b/c");
    const UaUniString bare = u"bare";
    EXPECT_EQ(bare.replaced(u'\\', u'/').utf16(), bare.utf16());
    expectNull(UaUniString().replaced(u'a', u'b'));
}

TEST(UniString, split_keeps_empty_pieces)
{
    const UaUniStringList pieces = UaUniString(u"|a||b|").split(u'|');
    ASSERT_EQ(pieces.size(), 5);
    EXPECT_EQ(pieces.at(0), u"");
    EXPECT_EQ(pieces.at(1), u"a");
    EXPECT_EQ(pieces.at(2), u"");
    EXPECT_EQ(pieces.at(3), u"b");
    EXPECT_EQ(pieces.at(4), u"");
    EXPECT_FALSE(pieces.at(4).isNull());
}

TEST(UniString, split_without_separator_gives_one_piece)
{
    EXPECT_EQ(UaUniString(u"abc").split(u'|').size(), 1);
    EXPECT_EQ(UaUniString(u"abc").split(u'|').at(0), u"abc");
    EXPECT_EQ(UaUniString(u"").split(u'|').size(), 1);
    EXPECT_EQ(UaUniString().split(u'|').size(), 0);
}

TEST(UniString, append_and_sum)
{
    UaUniString string = u"ab";
    const UaUniString copy = string;
    string += u"cd";
    EXPECT_EQ(string, u"abcd");
    EXPECT_EQ(copy, u"ab");
    string += string;
    EXPECT_EQ(string, u"abcdabcd");
    EXPECT_EQ(copy + u"x", u"abx");
    expectNull(UaUniString() + UaUniString());
    EXPECT_FALSE((UaUniString() + UaUniString(u"")).isNull());
    EXPECT_FALSE((UaUniString(u"") + UaUniString()).isNull());
    EXPECT_EQ(copy + UaUniString(), u"ab");
}

TEST(UniString, order_is_lexical)
{
    EXPECT_TRUE(UaUniString(u"ab") < UaUniString(u"b"));
    EXPECT_TRUE(UaUniString(u"a") < UaUniString(u"ab"));
    EXPECT_FALSE(UaUniString(u"b") < UaUniString(u"ab"));
    EXPECT_TRUE(UaUniString() == UaUniString(u""));
    EXPECT_FALSE(UaUniString() < UaUniString(u""));
    EXPECT_TRUE(UaUniString(u"a") != UaUniString(u"b"));
}

TEST(UniString, every_failing_allocation_gives_null)
{
    const UaString utf8 = "abc";
    const UaUniString string = u" a|b|c ";
    EXPECT_EQ(forEveryFailingAllocation([] { return UaUniString(u"abc"); }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return UaUniString(utf8); }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return string + string; }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return string.trimmed(); }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return string.replaced(u'a', u'b'); }, expectNull),
              1u);
    EXPECT_EQ(forEveryFailingAllocation([] { return UaUniString::number(5); }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return string.toUaString(); },
                                        [](const UaString& text) { EXPECT_TRUE(text.isNull()); }),
              1u);
    EXPECT_EQ(forEveryFailingAllocation(
                  [&] { return string.split(u'|'); },
                  [](const UaUniStringList& pieces) { EXPECT_TRUE(pieces.isEmpty()); }),
              4u);
}

TEST(UniString, eight_threads_copy_and_drop_one_text)
{
    const UaUniString shared = u"shared text";
    inEightThreads([&shared] {
        for (int i = 0; i < 2000; ++i) {
            UaUniString copy = shared;
            UaUniString other = copy;
            other += u"!";
            ASSERT_EQ(other.length(), 12);
            copy = UaUniString();
            ASSERT_TRUE(copy.isNull());
        }
    });
    EXPECT_EQ(shared, u"shared text");
}

TEST(UniString, eight_threads_drop_the_last_handle)
{
    for (int round = 0; round < 200; ++round) {
        std::array<UaUniString, 8> handles;
        handles.fill(UaUniString(u"text"));
        std::atomic<std::size_t> next = 0;
        inEightThreads([&handles, &next] { handles[next.fetch_add(1)] = UaUniString(); });
    }
}

static_assert(std::is_nothrow_move_constructible_v<UaUniString>);
static_assert(sizeof(UaUniString) == sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<UaString>);
static_assert(sizeof(UaString) == sizeof(void*));

} // namespace
