#include "base/uadiagnosticinfo.h"
#include "platform/status.h"
#include "stack/opcua_nesting.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <utility>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaDiagnosticInfo>);
static_assert(std::is_nothrow_move_assignable_v<UaDiagnosticInfo>);

void expectDefault(const UaDiagnosticInfo& info)
{
    EXPECT_EQ(info.symbolicId(), -1);
    EXPECT_EQ(info.namespaceUri(), -1);
    EXPECT_EQ(info.locale(), -1);
    EXPECT_EQ(info.localizedText(), -1);
    EXPECT_TRUE(info.additionalInfo().isNull());
    EXPECT_EQ(info.innerStatusCode(), OpcUa_Good);
    EXPECT_EQ(info.innerDiagnosticInfo(), nullptr);
    EXPECT_EQ(info, UaDiagnosticInfo());
}

UaDiagnosticInfo leaf(OpcUa_Int32 symbolicId)
{
    UaDiagnosticInfo info;
    info.setSymbolicId(symbolicId);
    return info;
}

/// All fields set, with an inner info of its own.
UaDiagnosticInfo sample()
{
    UaDiagnosticInfo info;
    info.setSymbolicId(1);
    info.setNamespaceUri(2);
    info.setLocale(3);
    info.setLocalizedText(4);
    info.setInnerStatusCode(OpcUa_BadOutOfRange);
    EXPECT_EQ(info.setAdditionalInfo("valve stuck"), OpcUa_Good);
    UaDiagnosticInfo inner = leaf(5);
    EXPECT_EQ(inner.setAdditionalInfo("motor"), OpcUa_Good);
    EXPECT_EQ(info.setInnerDiagnosticInfo(inner), OpcUa_Good);
    return info;
}

TEST(UaDiagnosticInfo, default_has_no_field_set)
{
    UaDiagnosticInfo info;
    expectDefault(info);
    info.clear();
    expectDefault(info);
}

TEST(UaDiagnosticInfo, keeps_every_field)
{
    const UaDiagnosticInfo info = sample();
    EXPECT_EQ(info.symbolicId(), 1);
    EXPECT_EQ(info.namespaceUri(), 2);
    EXPECT_EQ(info.locale(), 3);
    EXPECT_EQ(info.localizedText(), 4);
    EXPECT_EQ(textOf(info.additionalInfo()), "valve stuck");
    EXPECT_EQ(info.innerStatusCode(), OpcUa_BadOutOfRange);
    ASSERT_NE(info.innerDiagnosticInfo(), nullptr);
    const UaDiagnosticInfo inner(*info.innerDiagnosticInfo());
    EXPECT_EQ(inner.symbolicId(), 5);
    EXPECT_EQ(textOf(inner.additionalInfo()), "motor");
}

TEST(UaDiagnosticInfo, setters_replace_what_was_there)
{
    UaDiagnosticInfo info = sample();
    ASSERT_EQ(info.setAdditionalInfo("other"), OpcUa_Good);
    EXPECT_EQ(textOf(info.additionalInfo()), "other");
    ASSERT_EQ(info.setAdditionalInfo(UaString()), OpcUa_Good);
    EXPECT_TRUE(info.additionalInfo().isNull());
    ASSERT_EQ(info.setInnerDiagnosticInfo(leaf(9)), OpcUa_Good);
    EXPECT_EQ(info.innerDiagnosticInfo()->SymbolicId, 9);
    info.clearInnerDiagnosticInfo();
    EXPECT_EQ(info.innerDiagnosticInfo(), nullptr);
    info.clearInnerDiagnosticInfo();
    EXPECT_EQ(info.innerDiagnosticInfo(), nullptr);
}

TEST(UaDiagnosticInfo, equality_looks_at_every_field)
{
    const UaDiagnosticInfo info = sample();
    EXPECT_EQ(info, sample());
    std::array<UaDiagnosticInfo, 7> others;
    others.fill(info);
    others[0].setSymbolicId(7);
    others[1].setNamespaceUri(7);
    others[2].setLocale(7);
    others[3].setLocalizedText(7);
    others[4].setInnerStatusCode(OpcUa_Bad);
    ASSERT_EQ(others[5].setAdditionalInfo("x"), OpcUa_Good);
    ASSERT_EQ(others[6].setInnerDiagnosticInfo(leaf(6)), OpcUa_Good);
    for (const UaDiagnosticInfo& other : others) {
        EXPECT_NE(info, other);
    }
}

TEST(UaDiagnosticInfo, can_be_put_into_itself)
{
    UaDiagnosticInfo info = sample();
    ASSERT_EQ(info.setInnerDiagnosticInfo(info), OpcUa_Good);
    EXPECT_EQ(UaDiagnosticInfo(*info.innerDiagnosticInfo()), sample());
    EXPECT_EQ(info.symbolicId(), 1);
}

TEST(UaDiagnosticInfo, nests_as_deep_as_it_can_be_copied)
{
    UaDiagnosticInfo info = leaf(0);
    for (OpcUa_UInt32 level = 1; level <= OpcUa_Nesting_MaxLevels; ++level) {
        UaDiagnosticInfo outer = leaf(static_cast<OpcUa_Int32>(level));
        ASSERT_EQ(outer.setInnerDiagnosticInfo(info), OpcUa_Good) << level;
        info = std::move(outer);
    }
    EXPECT_EQ(UaDiagnosticInfo(info), info);
    EXPECT_EQ(UaDiagnosticInfo(info).symbolicId(),
              static_cast<OpcUa_Int32>(OpcUa_Nesting_MaxLevels));
    UaDiagnosticInfo outer = leaf(-2);
    ASSERT_EQ(outer.setInnerDiagnosticInfo(leaf(7)), OpcUa_Good);
    EXPECT_EQ(outer.setInnerDiagnosticInfo(info), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(outer.innerDiagnosticInfo()->SymbolicId, 7);
    EXPECT_EQ(info.setInnerDiagnosticInfo(info), OpcUa_BadEncodingLimitsExceeded);
}

TEST(UaDiagnosticInfo, a_record_nested_too_deep_gives_the_default)
{
    std::array<OpcUa_DiagnosticInfo, OpcUa_Nesting_MaxLevels + 2> chain;
    for (std::size_t i = chain.size(); i > 0; --i) {
        OpcUa_DiagnosticInfo_Initialize(&chain[i - 1]);
        chain[i - 1].SymbolicId = 1;
        chain[i - 1].InnerDiagnosticInfo = i < chain.size() ? &chain[i] : nullptr;
    }
    expectDefault(UaDiagnosticInfo(chain[0]));
    EXPECT_EQ(UaDiagnosticInfo(chain[1]).symbolicId(), 1);
    UaDiagnosticInfo assigned = sample();
    assigned = chain[0];
    expectDefault(assigned);
}

TEST(UaDiagnosticInfo, copies_are_own_and_moves_leave_the_default)
{
    UaDiagnosticInfo first = sample();
    UaDiagnosticInfo copy = first;
    EXPECT_NE(copy.innerDiagnosticInfo(), first.innerDiagnosticInfo());
    first.clear();
    EXPECT_EQ(copy, sample());
    const UaDiagnosticInfo moved = std::move(copy);
    EXPECT_EQ(moved, sample());
    expectDefault(copy); // NOLINT(bugprone-use-after-move): a moved one is the default
    copy = moved;
    UaDiagnosticInfo& self = copy;
    copy = self;
    copy = std::move(self);
    EXPECT_EQ(copy, sample());
    copy = *moved.toOpcUaDiagnosticInfo();
    EXPECT_EQ(copy, sample());
    copy = *copy.innerDiagnosticInfo(); // a part of itself
    EXPECT_EQ(copy.symbolicId(), 5);
}

TEST(UaDiagnosticInfo, copy_to_and_detach_fill_a_record)
{
    UaDiagnosticInfo info = sample();
    OpcUa_DiagnosticInfo target;
    OpcUa_DiagnosticInfo_Initialize(&target);
    ASSERT_EQ(info.copyTo(&target), OpcUa_Good);
    EXPECT_EQ(UaDiagnosticInfo(target), info);
    const OpcUa_DiagnosticInfo* inner = info.innerDiagnosticInfo();
    ASSERT_EQ(info.detach(&target), OpcUa_Good);
    EXPECT_EQ(target.InnerDiagnosticInfo, inner); // moved
    expectDefault(info);
    OpcUa_DiagnosticInfo_Clear(&target);
    EXPECT_EQ(info.copyTo(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(info.detach(nullptr), OpcUa_BadInvalidArgument);
}

TEST(UaDiagnosticInfo, a_copy_without_memory_is_the_default)
{
    const UaDiagnosticInfo whole = sample();
    EXPECT_GE(forEveryFailingAllocation([&] { return UaDiagnosticInfo(whole); }, expectDefault),
              3u);
}

TEST(UaDiagnosticInfo, a_setter_without_memory_leaves_what_was_there)
{
    const UaString text("other");
    UaDiagnosticInfo nested = leaf(8);
    ASSERT_EQ(nested.setAdditionalInfo("nested"), OpcUa_Good);
    UaDiagnosticInfo info = sample();
    {
        const AllocationFaults faults(0);
        EXPECT_EQ(info.setAdditionalInfo(text), OpcUa_BadOutOfMemory);
    }
    for (const std::size_t failAt : {0u, 1u}) {
        const AllocationFaults faults(failAt);
        EXPECT_EQ(info.setInnerDiagnosticInfo(nested), OpcUa_BadOutOfMemory) << failAt;
    }
    EXPECT_EQ(info, sample());
}

} // namespace
