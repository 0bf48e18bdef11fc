#include "base/uaqualifiedname.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <utility>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaQualifiedName>);
static_assert(std::is_nothrow_move_assignable_v<UaQualifiedName>);

void expectDefault(const UaQualifiedName& name)
{
    EXPECT_TRUE(name.isNull());
    EXPECT_TRUE(name.name().isNull());
    EXPECT_EQ(name.namespaceIndex(), 0);
    EXPECT_EQ(name, UaQualifiedName());
}

TEST(UaQualifiedName, default_is_a_null_name_in_namespace_0)
{
    UaQualifiedName name;
    expectDefault(name);
    EXPECT_EQ(textOf(name.toString()), "(null)");
    EXPECT_EQ(textOf(name.toFullString()), "ns=0|");
    name.clear();
    expectDefault(name);
}

struct TextRow
{
    UaString name;
    OpcUa_UInt16 namespaceIndex;
    std::string text;
    std::string fullText;
};

TEST(UaQualifiedName, texts_are_the_name_alone_and_with_the_namespace)
{
    const std::array<TextRow, 7> rows = {
        {{"Pump", 0, "Pump", "ns=0|Pump"},
         {"Pump", 2, "Pump", "ns=2|Pump"},
         {"Pump", 65535, "Pump", "ns=65535|Pump"},
         {"", 1, "", "ns=1|"},
         {"a|b%1%2", 3, "a|b%1%2", "ns=3|a|b%1%2"}, // the name is filled in last
         {"%", 3, "%", "ns=3|%"},
         {UaString("a\0b", 3), 3, std::string("a\0b", 3), std::string("ns=3|a\0b", 8)}}};
    for (const TextRow& row : rows) {
        SCOPED_TRACE(row.fullText);
        const UaQualifiedName name(row.name, row.namespaceIndex);
        EXPECT_EQ(textOf(name.name()), row.text);
        EXPECT_EQ(name.namespaceIndex(), row.namespaceIndex);
        EXPECT_EQ(textOf(name.toString()), row.text);
        EXPECT_EQ(textOf(name.toFullString()), row.fullText);
    }
}

TEST(UaQualifiedName, is_null_needs_no_name_and_namespace_0)
{
    EXPECT_TRUE(UaQualifiedName("", 0).isNull());
    EXPECT_FALSE(UaQualifiedName("", 1).isNull());
    EXPECT_FALSE(UaQualifiedName("a", 0).isNull());
}

TEST(UaQualifiedName, set_replaces_the_whole_content)
{
    UaQualifiedName name("Pump", 2);
    name.setQualifiedName("Valve", 3);
    EXPECT_EQ(name, UaQualifiedName("Valve", 3));
    name.setQualifiedName(UaString(), 0);
    expectDefault(name);
}

TEST(UaQualifiedName, equality_needs_namespace_and_name)
{
    EXPECT_EQ(UaQualifiedName("Pump", 2), UaQualifiedName("Pump", 2));
    EXPECT_NE(UaQualifiedName("Pump", 2), UaQualifiedName("Pump", 3));
    EXPECT_NE(UaQualifiedName("Pump", 2), UaQualifiedName("pump", 2));
    EXPECT_NE(UaQualifiedName("", 2), UaQualifiedName(UaString(), 2));
}

TEST(UaQualifiedName, records_are_copied_deeply)
{
    const UaQualifiedName source("Pump", 2);
    UaQualifiedName name(*source.toOpcUaQualifiedName());
    EXPECT_EQ(name, source);
    EXPECT_NE(name.toOpcUaQualifiedName()->Name.strContent,
              source.toOpcUaQualifiedName()->Name.strContent);
    name = *name.toOpcUaQualifiedName(); // its own record
    EXPECT_EQ(name, source);
    UaQualifiedName assigned("old", 9);
    assigned = *source.toOpcUaQualifiedName();
    EXPECT_EQ(assigned, source);
}

TEST(UaQualifiedName, copies_are_own_and_moves_leave_the_default)
{
    UaQualifiedName first("Pump", 2);
    UaQualifiedName copy = first;
    first.clear();
    EXPECT_EQ(copy, UaQualifiedName("Pump", 2));
    const UaQualifiedName moved = std::move(copy);
    EXPECT_EQ(moved, UaQualifiedName("Pump", 2));
    expectDefault(copy); // NOLINT(bugprone-use-after-move): a moved one is the default
    copy = moved;
    UaQualifiedName& self = copy;
    copy = self;
    copy = std::move(self);
    EXPECT_EQ(copy, moved);
}

TEST(UaQualifiedName, copy_to_and_detach_fill_a_record)
{
    UaQualifiedName name("Pump", 2);
    OpcUa_QualifiedName target{};
    ASSERT_EQ(name.copyTo(&target), OpcUa_Good);
    EXPECT_EQ(UaQualifiedName(target), name);
    ASSERT_EQ(name.detach(&target), OpcUa_Good);
    expectDefault(name);
    EXPECT_EQ(UaQualifiedName(target), UaQualifiedName("Pump", 2));
    OpcUa_QualifiedName_Clear(&target);
    EXPECT_EQ(name.copyTo(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(name.detach(nullptr), OpcUa_BadInvalidArgument);
}

TEST(UaQualifiedName, every_failed_allocation_gives_the_default)
{
    const UaString text("Pump");
    const UaQualifiedName whole(text, 2);
    EXPECT_GE(forEveryFailingAllocation([&] { return UaQualifiedName(text, 2); }, expectDefault),
              1u);
    EXPECT_GE(forEveryFailingAllocation([&] { return UaQualifiedName(whole); }, expectDefault), 1u);
    forEveryFailingAllocation([&] { return whole.toFullString(); },
                              [](const UaString& result) {
                                  EXPECT_TRUE(result.isNull() ||
                                              textOf(result).starts_with("ns=2|"));
                              });
}

} // namespace
