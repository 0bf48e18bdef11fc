#include "base/uastring.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/copyof.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>

namespace {

using namespace std::string_view_literals;

struct LikeRow
{
    const char* name;
    std::string_view pattern;
    std::string_view text;
    bool matches;
};

void PrintTo(const LikeRow& row, std::ostream* stream)
{
    *stream << row.name;
}

class StringLike : public testing::TestWithParam<LikeRow>
{
};

TEST_P(StringLike, matches_or_not)
{
    const LikeRow& row = GetParam();
    const UaString text(row.text.data(), static_cast<OpcUa_Int64>(row.text.size()));
    const UaString pattern(row.pattern.data(), static_cast<OpcUa_Int64>(row.pattern.size()));
    EXPECT_EQ(text.like(pattern), row.matches);
}

constexpr LikeRow likeRows[] = {
    {"empty_pattern_and_text", "", "", true},
    {"empty_pattern_and_some_text", "", "a", false},
    {"literal", "abc", "abc", true},
    {"literal_is_the_whole_text", "abc", "abcd", false},
    {"literal_longer_than_text", "abcd", "abc", false},
    {"case_sensitive", "abc", "Abc", false},
    {"literal_of_two_bytes", "\xC3\xA9", "\xC3\xA9", true},
    {"embedded_nul", "a\0b"sv, "a\0b"sv, true},
    {"embedded_nul_differs", "a\0b"sv, "a\0c"sv, false},

    {"run_of_nothing", "%", "", true},
    {"run_of_anything", "%", "anything", true},
    {"run_at_the_start", "%ing", "anything", true},
    {"run_at_the_end", "any%", "anything", true},
    {"run_in_the_middle", "a%g", "anything", true},
    {"run_of_nothing_in_the_middle", "a%b", "ab", true},
    {"runs_around", "%yth%", "anything", true},
    {"run_does_not_find", "%z%", "anything", false},
    {"runs_side_by_side", "%%%", "a", true},
    {"runs_side_by_side_of_nothing", "%%%", "", true},
    {"run_is_tried_again", "%ab", "aaab", true},
    {"run_is_tried_again_after_half_a_match", "%aab%c", "aaaabxc", true},
    {"last_run_takes_the_rest", "a%b%", "axbyyy", true},
    {"text_ends_too_early", "a%b%c", "axb", false},
    {"run_over_wide_characters", "%z", "\xF0\x9F\x98\x80z", true},

    {"any_character", "a_c", "abc", true},
    {"any_character_is_one", "a_c", "ac", false},
    {"any_character_is_only_one", "a_c", "abbc", false},
    {"any_character_of_two_bytes", "_", "\xC3\xA9", true},
    {"any_character_of_four_bytes", "_", "\xF0\x9F\x98\x80", true},
    {"at_least_two", "__%", "a", false},

    {"set_holds", "[abc]", "b", true},
    {"set_does_not_hold", "[abc]", "d", false},
    {"set_is_one_character", "[abc]", "ab", false},
    {"set_holds_wide_characters", "[a\xC3\xA9]", "\xC3\xA9", true},
    {"set_does_not_hold_a_part", "[a\xC3\xA9]", "\xC3\xA8", false},
    {"negated_set_holds", "[^abc]", "d", true},
    {"negated_set_does_not_hold", "[^abc]", "b", false},
    {"negated_set_needs_a_character", "[^abc]", "", false},
    {"hat_behind_the_start_is_itself", "[a^]", "^", true},
    {"set_without_members", "[]", "a", false},
    {"negated_set_without_members", "[^]", "a", true},
    {"set_without_members_after_run", "%[]", "abc", false},
    {"signs_in_a_set_are_themselves", "[%_[]", "[", true},
    {"percent_in_a_set_is_no_run", "[%]", "ab", false},
    {"underscore_in_a_set_is_itself", "[_]", "a", false},
    {"sets_and_runs", "Th[ia][ts]%", "That is", true},
    {"closing_bracket_outside_is_itself", "a]", "a]", true},

    {"range_of_digits", "[0-9]", "5", true},
    {"range_of_lower_case", "[a-f]", "f", true},
    {"range_of_upper_case", "[A-F]", "A", true},
    {"outside_a_range", "[a-f]", "g", false},
    {"before_a_range", "[b-f]", "a", false},
    {"range_of_one", "[b-b]", "b", true},
    {"range_does_not_hold_the_minus", "[a-c]", "-", false},
    {"negated_range", "[^a-f]", "g", true},
    {"negated_range_does_not_hold", "[^a-f]", "c", false},
    {"ranges_and_members", "[a-cx0-3]", "2", true},
    {"members_between_ranges", "[a-cx0-3]", "x", true},
    {"wide_character_is_in_no_range", "[a-z]", "\xC3\xA9", false},
    {"range_end_may_be_escaped", "[a-\\f]", "c", true},
    {"range_start_may_be_escaped", "[\\a-f]", "c", true},
    {"reversed_range", "[z-a]", "m", false},
    {"reversed_range_of_digits", "[9-0]", "5", false},
    {"reversed_range_makes_the_pattern_invalid", "%[z-a]%", "z-a", false},
    {"reversed_negated_range", "[^z-a]", "m", false},
    {"range_over_cases", "[a-Z]", "b", false},
    {"range_over_cases_down", "[A-z]", "B", false},
    {"range_of_digit_and_letter", "[0-a]", "5", false},
    {"range_of_signs", "[!-/]", "+", false},
    {"range_of_wide_characters", "[\xC3\xA0-\xC3\xBF]", "\xC3\xA9", false},
    {"range_to_a_wide_character", "[a-\xC3\xBF]", "b", false},
    {"invalid_range_behind_the_match", "a%[9-0]", "a5", false},
    {"invalid_pattern_does_not_match_itself", "[z-a]", "[z-a]", false},
    {"minus_at_the_start_is_itself", "[-a]", "-", true},
    {"minus_at_the_start_and_a_member", "[-a]", "a", true},
    {"minus_at_the_end_is_itself", "[a-]", "-", true},
    {"minus_at_the_end_and_a_member", "[a-]", "a", true},
    {"minus_behind_a_range_is_itself", "[a-c-e]", "-", true},
    {"member_behind_that_minus", "[a-c-e]", "e", true},
    {"no_range_behind_a_range", "[a-c-e]", "d", false},
    {"minus_of_a_negated_set", "[^-]", "-", false},
    {"minus_as_the_start_of_a_range", "[--a]", "-", false},
    {"escaped_minus_is_no_range", "[a\\-c]", "b", false},
    {"escaped_minus_is_itself", "[a\\-c]", "-", true},

    {"escaped_percent", "100\\%", "100%", true},
    {"escaped_percent_is_no_run", "100\\%", "1000", false},
    {"escaped_underscore", "a\\_b", "a_b", true},
    {"escaped_underscore_is_no_wildcard", "a\\_b", "axb", false},
    {"escaped_bracket", "\\[a]", "[a]", true},
    {"escaped_backslash", "a\\\\b", "a\\b", true},
    {"escaped_letter_is_itself", "\\a", "a", true},
    {"escaped_wide_character", "\\\xC3\xA9", "\xC3\xA9", true},
    {"escaped_bracket_in_a_set", "[\\]]", "]", true},
    {"escaped_backslash_in_a_set", "[\\\\]", "\\", true},
    {"escaped_hat_in_a_set", "[\\^a]", "^", true},

    {"backslash_at_the_end", "a\\", "a\\", false},
    {"backslash_at_the_end_behind_a_run", "%\\", "a", false},
    {"set_without_its_end", "[abc", "a", false},
    {"set_without_its_end_as_text", "[abc", "[abc", false},
    {"set_cut_behind_the_start", "[", "[", false},
    {"set_cut_behind_the_hat", "[^", "^", false},
    {"set_cut_behind_the_minus", "[a-", "a", false},
    {"set_cut_behind_the_range", "[a-c", "a", false},
    {"set_cut_behind_a_backslash", "[a\\", "a", false},
    {"range_cut_behind_a_backslash", "[a-\\", "a", false},

    {"malformed_text_matches_itself", "\x80", "\x80", true},
    {"malformed_text_matches_no_other", "\x80", "\x81", false},
    {"malformed_byte_is_one_character", "__", "\x80\x81", true},
    {"lead_byte_takes_what_follows", "_",
     "\xE2"
     "ab",
     true},
    {"overlong_percent_is_no_run", "\xC0\xA5", "abc", false},
    {"cut_character_matches_itself", "a\xE2\x82", "a\xE2\x82", true},
    {"cut_character_is_not_the_whole", "\xE2\x82", "\xE2\x82\xAC", false},
    {"pattern_takes_the_bracket_into_a_character", "[\xC3]", "\xC3]", false},
};

INSTANTIATE_TEST_SUITE_P(Rows, StringLike, testing::ValuesIn(likeRows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(StringLikes, reversed_range_is_false_for_every_text)
{
    for (int byte = 0; byte < 256; ++byte) {
        const char text = static_cast<char>(byte);
        EXPECT_FALSE(UaString(&text, 1).like("[z-a]"));
    }
    EXPECT_FALSE(UaString().like("[z-a]"));
}

TEST(StringLikes, null_is_an_empty_text_and_pattern)
{
    EXPECT_TRUE(UaString().like(UaString()));
    EXPECT_TRUE(UaString().like("%"));
    EXPECT_FALSE(UaString().like("a"));
    EXPECT_TRUE(UaString("").like(UaString()));
    EXPECT_FALSE(UaString("a").like(UaString()));
}

TEST(StringLikes, long_pattern_takes_memory)
{
    const std::string pattern = std::string(40, 'a') + "%";
    const UaString text = (std::string(40, 'a') + "xyz").c_str();
    EXPECT_TRUE(text.like(pattern.c_str()));
    const UaString patternString = pattern.c_str();
    const AllocationFaults faults(0);
    EXPECT_FALSE(text.like(patternString));
}

TEST(StringLikes, short_pattern_takes_no_memory)
{
    const UaString text = "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa";
    const UaString pattern = copyOf(text);
    const AllocationFaults faults(0);
    EXPECT_TRUE(text.like(pattern));
}

TEST(StringLikes, pattern_that_fills_all_items_stays_in_bounds)
{
    // Every byte an item, below, at and above the length from which on memory is taken.
    for (const std::size_t length : {2, 31, 32, 33, 100}) {
        const UaString cutSet = ("[" + std::string(length - 1, 'a')).c_str();
        EXPECT_FALSE(UaString("a").like(cutSet)) << length;
        const std::string letters(length, 'a');
        EXPECT_TRUE(UaString(letters.c_str()).like(letters.c_str())) << length;
        EXPECT_FALSE(UaString(letters.c_str()).like((letters + "\\").c_str())) << length;
    }
}

TEST(StringLikes, pattern_of_runs_takes_bounded_time)
{
    // A matcher that tries every run again takes longer than any test for a few runs of these.
    std::string pattern;
    for (int i = 0; i < 1000; ++i) {
        pattern += "%a";
    }
    pattern += "b";
    const UaString text = std::string(20000, 'a').c_str();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(text.like(pattern.c_str()));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
