#include "base/uabytestring.h"
#include "base/uaexpandednodeid.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaExpandedNodeId>);
static_assert(std::is_nothrow_move_assignable_v<UaExpandedNodeId>);

const char* const uri = "urn:factory:pumps";

UaExpandedNodeId sample()
{
    return {UaNodeId(UaString("Pump"), 2), uri, 7};
}

void expectDefault(const UaExpandedNodeId& nodeId)
{
    EXPECT_TRUE(nodeId.isNull());
    EXPECT_EQ(nodeId.nodeId(), UaNodeId());
    EXPECT_TRUE(nodeId.namespaceUri().isNull());
    EXPECT_EQ(nodeId.serverIndex(), 0u);
    EXPECT_EQ(nodeId, UaExpandedNodeId());
}

TEST(UaExpandedNodeId, default_is_null)
{
    UaExpandedNodeId nodeId;
    expectDefault(nodeId);
    EXPECT_EQ(textOf(nodeId.toString()), "0");
    nodeId.clear();
    expectDefault(nodeId);
}

TEST(UaExpandedNodeId, keeps_node_id_uri_and_server_index)
{
    const UaExpandedNodeId nodeId = sample();
    EXPECT_EQ(nodeId.nodeId(), UaNodeId(UaString("Pump"), 2));
    EXPECT_EQ(textOf(nodeId.namespaceUri()), uri);
    EXPECT_EQ(nodeId.serverIndex(), 7u);
    EXPECT_FALSE(nodeId.isNull());
}

TEST(UaExpandedNodeId, is_null_by_the_inner_node_id_alone)
{
    const UaExpandedNodeId nodeId(UaNodeId(), uri, 7);
    EXPECT_TRUE(nodeId.isNull());
    EXPECT_EQ(textOf(nodeId.namespaceUri()), uri);
    EXPECT_EQ(nodeId.serverIndex(), 7u);
}

TEST(UaExpandedNodeId, texts_show_the_inner_node_id_alone)
{
    EXPECT_EQ(textOf(sample().toString()), "Pump");
    EXPECT_EQ(textOf(sample().toFullString()), "NS2|String|Pump");
    EXPECT_EQ(textOf(UaExpandedNodeId(UaNodeId(85), uri, 7).toString()), "85");
    EXPECT_EQ(textOf(UaExpandedNodeId(UaNodeId(85), uri, 7).toFullString()), "NS0|Numeric|85");
}

TEST(UaExpandedNodeId, set_replaces_the_whole_content)
{
    UaExpandedNodeId nodeId = sample();
    nodeId.setExpandedNodeId(UaNodeId(85), UaString(), 0);
    EXPECT_EQ(nodeId, UaExpandedNodeId(UaNodeId(85), UaString(), 0));
    EXPECT_TRUE(nodeId.namespaceUri().isNull());
}

TEST(UaExpandedNodeId, records_are_copied_deeply)
{
    UaExpandedNodeId nodeId(*sample().toOpcUaExpandedNodeId());
    EXPECT_EQ(nodeId, sample());
    nodeId = *nodeId.toOpcUaExpandedNodeId(); // its own record
    EXPECT_EQ(nodeId, sample());
    UaExpandedNodeId assigned;
    assigned = *nodeId.toOpcUaExpandedNodeId();
    EXPECT_EQ(assigned, sample());
    const OpcUa_ExpandedNodeId unknown{{4, 0, {}}, {}, 7};
    assigned = unknown;
    expectDefault(assigned);
    expectDefault(UaExpandedNodeId(unknown));
}

TEST(UaExpandedNodeId, copies_are_own_and_moves_leave_the_default)
{
    UaExpandedNodeId first = sample();
    UaExpandedNodeId copy = first;
    first.clear();
    EXPECT_EQ(copy, sample());
    first = copy;
    UaExpandedNodeId& self = first;
    first = self;
    EXPECT_EQ(first, sample());
    const UaExpandedNodeId moved = std::move(copy);
    EXPECT_EQ(moved, sample());
    expectDefault(copy); // NOLINT(bugprone-use-after-move): a moved one is the default
    copy = std::move(first);
    EXPECT_EQ(copy, sample());
    expectDefault(first); // NOLINT(bugprone-use-after-move): a moved one is the default
}

TEST(UaExpandedNodeId, equality_needs_server_uri_and_node_id)
{
    const UaExpandedNodeId nodeId = sample();
    EXPECT_EQ(nodeId, sample());
    EXPECT_NE(nodeId, UaExpandedNodeId(UaNodeId(UaString("Pump"), 2), uri, 8));
    EXPECT_NE(nodeId, UaExpandedNodeId(UaNodeId(UaString("Pump"), 2), "urn:factory", 7));
    EXPECT_NE(nodeId, UaExpandedNodeId(UaNodeId(UaString("Pump"), 2), UaString(), 7));
    EXPECT_NE(nodeId, UaExpandedNodeId(UaNodeId(UaString("Pump"), 3), uri, 7));
    EXPECT_NE(nodeId, UaExpandedNodeId(UaNodeId(UaString("pump"), 2), uri, 7));
    EXPECT_NE(UaExpandedNodeId(UaNodeId(1), UaString(), 0),
              UaExpandedNodeId(UaNodeId(1), UaString(""), 0)); // null and empty differ
}

TEST(UaExpandedNodeId, copy_to_and_detach_fill_a_record)
{
    UaExpandedNodeId nodeId = sample();
    OpcUa_ExpandedNodeId target{};
    ASSERT_EQ(nodeId.copyTo(&target), OpcUa_Good);
    EXPECT_TRUE(UaExpandedNodeId::isEqual(target, *nodeId.toOpcUaExpandedNodeId()));
    {
        const AllocationFaults noMemory(0);
        ASSERT_EQ(nodeId.detach(&target), OpcUa_Good); // moves, and clears what was there
        EXPECT_FALSE(AllocationFaults::hasFailed());
    }
    expectDefault(nodeId);
    EXPECT_TRUE(UaExpandedNodeId::isEqual(target, *sample().toOpcUaExpandedNodeId()));
    OpcUa_ExpandedNodeId_Clear(&target);
    nodeId = sample();
    EXPECT_EQ(nodeId.copyTo(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(nodeId.detach(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(nodeId, sample());
}

TEST(UaExpandedNodeId, every_failed_allocation_gives_the_default)
{
    const UaNodeId inner(UaString("Pump"), 2);
    const UaString uriText(uri);
    const UaExpandedNodeId whole = sample();
    EXPECT_GE(forEveryFailingAllocation([&] { return UaExpandedNodeId(inner, uriText, 7); },
                                        expectDefault),
              2u);
    EXPECT_GE(forEveryFailingAllocation([&] { return UaExpandedNodeId(whole); }, expectDefault),
              2u);
    EXPECT_GE(forEveryFailingAllocation(
                  [&] {
                      UaExpandedNodeId nodeId;
                      nodeId = whole;
                      return nodeId;
                  },
                  expectDefault),
              2u);
    forEveryFailingAllocation([&] { return whole.nodeId(); },
                              [](const UaNodeId& nodeId) { EXPECT_TRUE(nodeId.isNull()); });
}

} // namespace
