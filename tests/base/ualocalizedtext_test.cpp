#include "base/ualocalizedtext.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <utility>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaLocalizedText>);
static_assert(std::is_nothrow_move_assignable_v<UaLocalizedText>);

void expectDefault(const UaLocalizedText& text)
{
    EXPECT_TRUE(text.isNull());
    EXPECT_TRUE(text.locale().isNull());
    EXPECT_TRUE(text.text().isNull());
    EXPECT_EQ(text, UaLocalizedText());
}

TEST(UaLocalizedText, default_has_neither_locale_nor_text)
{
    UaLocalizedText text;
    expectDefault(text);
    EXPECT_EQ(textOf(text.toString()), "(null)");
    EXPECT_EQ(textOf(text.toFullString()), "|");
    text.clear();
    expectDefault(text);
}

struct TextRow
{
    UaString locale;
    UaString text;
    std::string fullText;
};

TEST(UaLocalizedText, texts_are_the_text_alone_and_with_the_locale)
{
    const std::array<TextRow, 7> rows = {{{"en-US", "Hello", "en-US|Hello"},
                                          {"", "Hello", "|Hello"},
                                          {UaString(), "Hello", "|Hello"},
                                          {"en-US", UaString(), "en-US|"},
                                          {"de", "a|b", "de|a|b"},
                                          {"de", "%1 and %2", "de|%1 and %2"},
                                          // The locale is filled in first, and then its "%1".
                                          {"%1", "Hello", "Hello|%2"}}};
    for (const TextRow& row : rows) {
        SCOPED_TRACE(row.fullText);
        const UaLocalizedText text(row.locale, row.text);
        EXPECT_EQ(textOf(text.locale()), textOf(row.locale));
        EXPECT_EQ(textOf(text.text()), textOf(row.text));
        EXPECT_EQ(textOf(text.toString()), textOf(row.text));
        EXPECT_EQ(textOf(text.toFullString()), row.fullText);
    }
}

TEST(UaLocalizedText, is_null_without_any_characters)
{
    EXPECT_TRUE(UaLocalizedText("", "").isNull());
    EXPECT_FALSE(UaLocalizedText("en", "").isNull());
    EXPECT_FALSE(UaLocalizedText("", "a").isNull());
}

TEST(UaLocalizedText, set_replaces_the_whole_content)
{
    UaLocalizedText text("en-US", "Hello");
    text.setLocalizedText("de", "Hallo");
    EXPECT_EQ(text, UaLocalizedText("de", "Hallo"));
    text.setLocalizedText(UaString(), UaString());
    expectDefault(text);
}

TEST(UaLocalizedText, equality_needs_locale_and_text)
{
    EXPECT_EQ(UaLocalizedText("en", "Hello"), UaLocalizedText("en", "Hello"));
    EXPECT_NE(UaLocalizedText("en", "Hello"), UaLocalizedText("de", "Hello"));
    EXPECT_NE(UaLocalizedText("en", "Hello"), UaLocalizedText("en", "hello"));
    EXPECT_NE(UaLocalizedText("", "Hello"), UaLocalizedText(UaString(), "Hello"));
    EXPECT_NE(UaLocalizedText("en", ""), UaLocalizedText("en", UaString()));
}

TEST(UaLocalizedText, records_are_copied_deeply)
{
    const UaLocalizedText source("en", "Hello");
    UaLocalizedText text(*source.toOpcUaLocalizedText());
    EXPECT_EQ(text, source);
    EXPECT_NE(text.toOpcUaLocalizedText()->Text.strContent,
              source.toOpcUaLocalizedText()->Text.strContent);
    text = *text.toOpcUaLocalizedText(); // its own record
    EXPECT_EQ(text, source);
    UaLocalizedText assigned("old", "old");
    assigned = *source.toOpcUaLocalizedText();
    EXPECT_EQ(assigned, source);
}

TEST(UaLocalizedText, copies_are_own_and_moves_leave_the_default)
{
    UaLocalizedText first("en", "Hello");
    UaLocalizedText copy = first;
    first.clear();
    EXPECT_EQ(copy, UaLocalizedText("en", "Hello"));
    const UaLocalizedText moved = std::move(copy);
    EXPECT_EQ(moved, UaLocalizedText("en", "Hello"));
    expectDefault(copy); // NOLINT(bugprone-use-after-move): a moved one is the default
    copy = moved;
    UaLocalizedText& self = copy;
    copy = self;
    copy = std::move(self);
    EXPECT_EQ(copy, moved);
}

TEST(UaLocalizedText, copy_to_and_detach_fill_a_record)
{
    UaLocalizedText text("en", "Hello");
    OpcUa_LocalizedText target{};
    ASSERT_EQ(text.copyTo(&target), OpcUa_Good);
    EXPECT_EQ(UaLocalizedText(target), text);
    ASSERT_EQ(text.detach(&target), OpcUa_Good);
    expectDefault(text);
    EXPECT_EQ(UaLocalizedText(target), UaLocalizedText("en", "Hello"));
    OpcUa_LocalizedText_Clear(&target);
    EXPECT_EQ(text.copyTo(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(text.detach(nullptr), OpcUa_BadInvalidArgument);
}

TEST(UaLocalizedText, every_failed_allocation_gives_the_default)
{
    const UaString locale("en");
    const UaString words("Hello");
    const UaLocalizedText whole(locale, words);
    EXPECT_GE(
        forEveryFailingAllocation([&] { return UaLocalizedText(locale, words); }, expectDefault),
        2u);
    EXPECT_GE(forEveryFailingAllocation([&] { return UaLocalizedText(whole); }, expectDefault), 2u);
}

} // namespace
