#include "base/uanumericrange.h"
#include "base/uastring.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaNumericRange>);
static_assert(std::is_nothrow_move_assignable_v<UaNumericRange>);

constexpr OpcUa_UInt32 single = UaNumericRangeEntry::Single;
constexpr OpcUa_UInt32 range = UaNumericRangeEntry::Range;

UaString stringOf(std::string_view bytes)
{
    return {bytes.data(), static_cast<OpcUa_Int64>(bytes.size())};
}

UaNumericRange parsed(const char* string)
{
    UaNumericRange result;
    EXPECT_EQ(result.fromString(string), OpcUa_Good) << string;
    return result;
}

void expectEmpty(const UaNumericRange& numericRange)
{
    EXPECT_EQ(numericRange.count(), 0u);
    EXPECT_FALSE(numericRange.isValid());
    EXPECT_TRUE(numericRange.toString().isNull());
    EXPECT_EQ(numericRange, UaNumericRange());
}

TEST(UaNumericRange, default_has_no_dimension_and_is_invalid)
{
    UaNumericRange numericRange;
    expectEmpty(numericRange);
    numericRange.clear();
    expectEmpty(numericRange);
}

TEST(UaNumericRange, refused_texts_leave_it_empty)
{
    const std::vector<std::string_view> texts = {
        "",
        ",",
        ":",
        "1,",
        ",1",
        "1,,2",
        "1:",
        ":1",
        "1:2:3",
        "1::2",
        "1:,2",
        "2:2",
        "3:2",
        "1:2,3:3",
        "1:1,2",
        " 1",
        "1 ",
        "1 :2",
        "-1",
        "+1",
        "1;2",
        "a",
        "0x1",
        "1.5",
        "4294967296",
        "99999999999999999999999999",
        "0:4294967296",
        std::string_view("1\0", 2),
        std::string_view("\0", 1),
        "\xC0\xB1",         // an overlong "1"
        "\xF0\x90\x80\xB1", // a character whose low 16 bits are those of "1"
        "\xEF\xBC\x91",     // a full-width "1"
        "1\xFF"};
    for (const std::string_view bytes : texts) {
        UaNumericRange numericRange = parsed("7");
        EXPECT_EQ(nameOf(numericRange.fromString(stringOf(bytes))), "BadIndexRangeInvalid")
            << bytes;
        expectEmpty(numericRange);
    }
}

TEST(UaNumericRange, null_string_is_an_invalid_argument)
{
    UaNumericRange numericRange = parsed("7");
    EXPECT_EQ(nameOf(numericRange.fromString(UaString())), "BadInvalidArgument");
    expectEmpty(numericRange);
}

struct ParsedRow
{
    const char* text;
    std::vector<UaNumericRangeEntry> entries;
    const char* printed;
};

TEST(UaNumericRange, reads_dimensions_and_prints_them_again)
{
    const std::vector<ParsedRow> rows = {
        {"0", {{0, 0, single}}, "0"},
        {"5", {{5, 5, single}}, "5"},
        {"007", {{7, 7, single}}, "7"},
        {"0:1", {{0, 1, range}}, "0:1"},
        {"12:345", {{12, 345, range}}, "12:345"},
        {"01:02", {{1, 2, range}}, "1:2"},
        {"4294967295", {{4294967295u, 4294967295u, single}}, "4294967295"},
        {"0:4294967295", {{0, 4294967295u, range}}, "0:4294967295"},
        {"1,2", {{1, 1, single}, {2, 2, single}}, "1,2"},
        {"1:2,0:1", {{1, 2, range}, {0, 1, range}}, "1:2,0:1"},
        {"3,1:4,9", {{3, 3, single}, {1, 4, range}, {9, 9, single}}, "3,1:4,9"},
    };
    for (const ParsedRow& row : rows) {
        const UaNumericRange numericRange = parsed(row.text);
        ASSERT_EQ(numericRange.count(), row.entries.size()) << row.text;
        for (OpcUa_UInt32 i = 0; i < numericRange.count(); ++i) {
            EXPECT_EQ(numericRange[i], row.entries[i]) << row.text;
        }
        EXPECT_TRUE(numericRange.isValid());
        EXPECT_EQ(textOf(numericRange.toString()), row.printed);
    }
}

TEST(UaNumericRange, takes_any_number_of_dimensions)
{
    std::string longText = "0:1";
    for (int i = 1; i < 1000; ++i) {
        longText += ",0:1";
    }
    const UaNumericRange numericRange = parsed(longText.c_str());
    EXPECT_EQ(numericRange.count(), 1000u);
    EXPECT_EQ(textOf(numericRange.toString()), longText);
}

TEST(UaNumericRange, entries_are_valid_by_kind)
{
    struct Row
    {
        UaNumericRangeEntry entry;
        bool isValid;
    };
    constexpr Row rows[] = {{{1, 0, single}, true}, {{1, 9, single}, true},
                            {{1, 2, range}, true},  {{2, 2, range}, false},
                            {{3, 2, range}, false}, {{1, 2, 0}, false},
                            {{1, 2, 3}, false},     {{0, 4294967295u, range}, true}};
    for (const Row& row : rows) {
        EXPECT_EQ(row.entry.isValid(), row.isValid)
            << row.entry.first << ":" << row.entry.last << " kind " << row.entry.kind;
        UaNumericRange numericRange = parsed("1");
        EXPECT_EQ(numericRange.append(row.entry), OpcUa_Good);
        EXPECT_EQ(numericRange.isValid(), row.isValid) << "one invalid entry is enough";
        EXPECT_EQ(numericRange.toString().isNull(), !row.isValid);
    }
    EXPECT_EQ((UaNumericRangeEntry{4, 9, single}.end()), 4u);
    EXPECT_EQ((UaNumericRangeEntry{4, 9, range}.end()), 9u);
}

TEST(UaNumericRange, copies_moves_and_compares)
{
    UaNumericRange source = parsed("1:2,3");
    const UaNumericRange copy(source);
    EXPECT_EQ(copy, source);
    EXPECT_NE(copy, parsed("1:2"));
    EXPECT_NE(copy, parsed("1:2,4"));
    UaNumericRange assigned = parsed("9");
    assigned = source;
    assigned = *&assigned;
    EXPECT_EQ(assigned, copy);
    UaNumericRange moved(std::move(source));
    EXPECT_EQ(moved, copy);
    expectEmpty(source); // NOLINT(bugprone-use-after-move): its state is the promise
    source = std::move(moved);
    EXPECT_EQ(source, copy);
    expectEmpty(moved); // NOLINT(bugprone-use-after-move): its state is the promise
    assigned = UaNumericRange();
    expectEmpty(assigned);
    expectEmpty(UaNumericRange(assigned));
}

TEST(UaNumericRange, every_failed_allocation_is_told)
{
    const UaString string("0,1,2,3,4,5,6,7,8,9");
    UaNumericRange numericRange;
    const std::size_t failures =
        forEveryFailingAllocation([&] { return numericRange.fromString(string); },
                                  [&](OpcUa_StatusCode status) {
                                      EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                      expectEmpty(numericRange);
                                  });
    EXPECT_GT(failures, 1u);
    forEveryFailingAllocation([&] { return UaNumericRange(numericRange); }, expectEmpty);
    forEveryFailingAllocation([&] { return numericRange.toString(); },
                              [](const UaString& printed) { EXPECT_TRUE(printed.isNull()); });
    EXPECT_EQ(numericRange.count(), 10u);
}

} // namespace
