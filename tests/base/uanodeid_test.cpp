#include "base/uabytestring.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "platform/allocator.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

constexpr OpcUa_Guid sampleGuid = {
    0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};
constexpr std::array<OpcUa_Byte, 3> sampleBytes = {0x01, 0xAB, 0xFF};

UaByteString opaque()
{
    return {static_cast<OpcUa_Int32>(sampleBytes.size()), sampleBytes.data()};
}

struct Sample
{
    const char* name;
    UaNodeId nodeId;
    OpcUa_UInt16 identifierType;
};

std::vector<Sample> samples()
{
    return {{"numeric", UaNodeId(85, 2), OpcUa_IdentifierType_Numeric},
            {"string", UaNodeId(UaString("Pump"), 2), OpcUa_IdentifierType_String},
            {"guid", UaNodeId(UaGuid(sampleGuid), 2), OpcUa_IdentifierType_Guid},
            {"opaque", UaNodeId(opaque(), 2), OpcUa_IdentifierType_Opaque}};
}

static_assert(std::is_nothrow_copy_constructible_v<UaNodeId>);
static_assert(std::is_nothrow_move_constructible_v<UaNodeId>);
static_assert(std::is_nothrow_copy_assignable_v<UaNodeId>);
static_assert(std::is_nothrow_move_assignable_v<UaNodeId>);
static_assert(sizeof(UaNodeId) == sizeof(void*));

void expectNullNodeId(const UaNodeId& nodeId)
{
    EXPECT_TRUE(nodeId.isNull());
    EXPECT_EQ(nodeId.identifierType(), OpcUa_IdentifierType_Numeric);
    EXPECT_EQ(nodeId.namespaceIndex(), 0);
    EXPECT_EQ(nodeId.identifierNumeric(), 0u);
    EXPECT_TRUE(nodeId.identifierString().isNull());
    EXPECT_TRUE(nodeId.identifierGuid().isNull());
    EXPECT_TRUE(nodeId.identifierOpaque().isNull());
    EXPECT_EQ(nodeId, UaNodeId());
}

TEST(UaNodeId, default_is_number_0_in_namespace_0)
{
    UaNodeId nodeId;
    expectNullNodeId(nodeId);
    EXPECT_EQ(nodeId, UaNodeId(0));
    nodeId.clear();
    expectNullNodeId(nodeId);
}

TEST(UaNodeId, constructors_keep_the_identifier_and_the_namespace_index)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(sample.nodeId.identifierType(), sample.identifierType);
        EXPECT_EQ(sample.nodeId.namespaceIndex(), 2);
        EXPECT_FALSE(sample.nodeId.isNull());
    }
    EXPECT_EQ(UaNodeId(0xFFFFFFFFu, 0xFFFF).identifierNumeric(), 0xFFFFFFFFu);
    EXPECT_EQ(UaNodeId(0xFFFFFFFFu, 0xFFFF).namespaceIndex(), 0xFFFF);
    EXPECT_EQ(textOf(UaNodeId(UaString("Pump"), 2).identifierString()), "Pump");
    EXPECT_EQ(UaNodeId(UaGuid(sampleGuid), 2).identifierGuid(), UaGuid(sampleGuid));
    EXPECT_EQ(UaNodeId(opaque(), 2).identifierOpaque(), opaque());
}

TEST(UaNodeId, an_identifier_of_another_type_reads_as_null)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        const OpcUa_UInt16 type = sample.identifierType;
        EXPECT_EQ(sample.nodeId.identifierNumeric() == 0, type != OpcUa_IdentifierType_Numeric);
        EXPECT_EQ(sample.nodeId.identifierString().isNull(), type != OpcUa_IdentifierType_String);
        EXPECT_EQ(sample.nodeId.identifierGuid().isNull(), type != OpcUa_IdentifierType_Guid);
        EXPECT_EQ(sample.nodeId.identifierOpaque().isNull(), type != OpcUa_IdentifierType_Opaque);
    }
}

TEST(UaNodeId, a_string_identifier_keeps_embedded_nuls)
{
    const UaNodeId nodeId(UaString("a\0b", 3), 1);
    EXPECT_EQ(textOf(nodeId.identifierString()), std::string("a\0b", 3));
}

TEST(UaNodeId, null_and_empty_identifiers_in_namespace_0_are_null)
{
    const std::array<UaNodeId, 6> nodeIds = {UaNodeId(0),
                                             UaNodeId(UaString()),
                                             UaNodeId(UaString("")),
                                             UaNodeId(UaGuid()),
                                             UaNodeId(UaByteString()),
                                             UaNodeId(UaByteString(0, sampleBytes.data()))};
    for (const UaNodeId& nodeId : nodeIds) {
        SCOPED_TRACE(textOf(nodeId.toFullString()));
        EXPECT_TRUE(nodeId.isNull());
        OpcUa_NodeId elsewhere = *nodeId.toOpcUaNodeId();
        elsewhere.NamespaceIndex = 1;
        EXPECT_FALSE(UaNodeId(elsewhere).isNull());
    }
}

TEST(UaNodeId, setters_replace_the_whole_content)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        UaNodeId nodeId = sample.nodeId;
        nodeId.setNodeId(7, 3);
        EXPECT_EQ(nodeId, UaNodeId(7, 3));
        nodeId = sample.nodeId;
        nodeId.setNodeId(UaString("x"), 4);
        EXPECT_EQ(nodeId, UaNodeId(UaString("x"), 4));
        nodeId = sample.nodeId;
        nodeId.setNodeId(UaGuid(sampleGuid), 5);
        EXPECT_EQ(nodeId, UaNodeId(UaGuid(sampleGuid), 5));
        nodeId = sample.nodeId;
        nodeId.setNodeId(opaque(), 6);
        EXPECT_EQ(nodeId, UaNodeId(opaque(), 6));
    }
}

TEST(UaNodeId, a_setter_of_one_handle_leaves_the_others)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        UaNodeId changed = sample.nodeId;
        const UaNodeId kept = changed;
        EXPECT_EQ(kept.toOpcUaNodeId(), changed.toOpcUaNodeId()); // one block
        changed.setNodeId(1, 1);
        EXPECT_EQ(kept, sample.nodeId);
        EXPECT_EQ(changed, UaNodeId(1, 1));
        UaNodeId cleared = sample.nodeId;
        cleared.clear();
        expectNullNodeId(cleared);
        EXPECT_EQ(kept, sample.nodeId);
    }
}

TEST(UaNodeId, copies_and_moves_share_the_block_without_an_allocation)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        const AllocationFaults noMemory(0);
        UaNodeId copy = sample.nodeId;
        UaNodeId moved = std::move(copy);
        EXPECT_EQ(moved.toOpcUaNodeId(), sample.nodeId.toOpcUaNodeId());
        EXPECT_TRUE(copy.isNull()); // NOLINT(bugprone-use-after-move): a moved one is null
        UaNodeId& self = moved;
        moved = self;
        EXPECT_EQ(moved.toOpcUaNodeId(), sample.nodeId.toOpcUaNodeId());
        moved = std::move(self);
        EXPECT_EQ(moved.toOpcUaNodeId(), sample.nodeId.toOpcUaNodeId());
        UaNodeId assigned(sample.nodeId);
        assigned = std::move(moved);
        EXPECT_EQ(assigned, sample.nodeId);
        EXPECT_FALSE(AllocationFaults::hasFailed());
    }
}

TEST(UaNodeId, records_are_copied_deeply)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        UaNodeId constructed(*sample.nodeId.toOpcUaNodeId());
        EXPECT_EQ(constructed, sample.nodeId);
        EXPECT_NE(constructed.toOpcUaNodeId(), sample.nodeId.toOpcUaNodeId());
        UaNodeId assigned(99, 9);
        assigned = *sample.nodeId.toOpcUaNodeId();
        EXPECT_EQ(assigned, sample.nodeId);
        assigned = *assigned.toOpcUaNodeId(); // out of its own block
        EXPECT_EQ(assigned, sample.nodeId);
    }
}

TEST(UaNodeId, an_unknown_identifier_type_gives_the_null_node_id)
{
    const OpcUa_NodeId unknown{4, 1, {}};
    expectNullNodeId(UaNodeId(unknown));
    UaNodeId assigned(1, 1);
    assigned = unknown;
    expectNullNodeId(assigned);
}

TEST(UaNodeId, a_guid_identifier_without_a_block_reads_as_the_null_guid)
{
    const OpcUa_NodeId withoutBlock{OpcUa_IdentifierType_Guid, 1, {}};
    const UaNodeId nodeId(withoutBlock);
    EXPECT_EQ(nodeId.identifierType(), OpcUa_IdentifierType_Guid);
    EXPECT_TRUE(nodeId.identifierGuid().isNull());
}

TEST(UaNodeId, copy_to_makes_an_own_record)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        OpcUa_NodeId target;
        ASSERT_EQ(OpcUa_NodeId_CopyTo(UaNodeId(UaString("old"), 1).toOpcUaNodeId(), &(target = {})),
                  OpcUa_Good);
        ASSERT_EQ(sample.nodeId.copyTo(&target), OpcUa_Good);
        EXPECT_TRUE(UaNodeId::isEqual(target, *sample.nodeId.toOpcUaNodeId()));
        OpcUa_NodeId_Clear(&target);
        EXPECT_EQ(sample.nodeId.copyTo(nullptr), OpcUa_BadInvalidArgument);
    }
}

TEST(UaNodeId, detach_moves_an_identifier_that_nobody_shares)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        UaNodeId nodeId(*sample.nodeId.toOpcUaNodeId());
        OpcUa_NodeId target{};
        {
            const AllocationFaults noMemory(0);
            ASSERT_EQ(nodeId.detach(&target), OpcUa_Good);
            EXPECT_FALSE(AllocationFaults::hasFailed());
        }
        EXPECT_TRUE(UaNodeId::isEqual(target, *sample.nodeId.toOpcUaNodeId()));
        expectNullNodeId(nodeId);
        ASSERT_EQ(nodeId.detach(&target), OpcUa_Good); // what the target held is cleared
        EXPECT_TRUE(OpcUa_NodeId_IsNull(&target));
    }
}

TEST(UaNodeId, detach_copies_a_shared_identifier)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        UaNodeId nodeId = sample.nodeId;
        OpcUa_NodeId target{};
        ASSERT_EQ(nodeId.detach(&target), OpcUa_Good);
        EXPECT_TRUE(UaNodeId::isEqual(target, *sample.nodeId.toOpcUaNodeId()));
        expectNullNodeId(nodeId);
        OpcUa_NodeId_Clear(&target);
    }
}

TEST(UaNodeId, a_failed_detach_leaves_the_handle)
{
    UaNodeId nodeId(UaString("Pump"), 2);
    const UaNodeId shared = nodeId;
    EXPECT_EQ(nodeId.detach(nullptr), OpcUa_BadInvalidArgument);
    OpcUa_NodeId target{};
    const AllocationFaults noMemory(0);
    EXPECT_EQ(nodeId.detach(&target), OpcUa_BadOutOfMemory);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(&target));
    EXPECT_EQ(nodeId, shared);
}

TEST(UaNodeId, every_failed_allocation_gives_the_null_node_id)
{
    const std::vector<Sample> all = samples();
    const UaString text("Pump");
    const UaByteString bytes = opaque();
    const std::vector<std::function<UaNodeId()>> makers = {
        [] { return UaNodeId(85, 2); },
        [&] { return UaNodeId(text, 2); },
        [] { return UaNodeId(UaGuid(sampleGuid), 2); },
        [&] { return UaNodeId(bytes, 2); },
        [&] { return UaNodeId(*all[1].nodeId.toOpcUaNodeId()); },
        [&] {
            UaNodeId nodeId = all[2].nodeId;
            nodeId.setNodeId(text, 4);
            return nodeId;
        }};
    for (const auto& make : makers) {
        const std::size_t allocations = forEveryFailingAllocation(make, expectNullNodeId);
        EXPECT_GE(allocations, 1u);
        EXPECT_FALSE(make().isNull());
    }
}

TEST(UaNodeId, copies_are_used_and_dropped_from_eight_threads)
{
    for (const Sample& sample : samples()) {
        SCOPED_TRACE(sample.name);
        UaNodeId first(*sample.nodeId.toOpcUaNodeId());
        std::array<int, 8> matches{};
        std::vector<std::thread> threads;
        threads.reserve(8);
        for (int& match : matches) {
            threads.emplace_back([&match, own = first, expected = sample.nodeId]() mutable {
                for (int round = 0; round < 200; ++round) {
                    UaNodeId copy = own;
                    match += copy == expected && !copy.isNull() ? 1 : 0;
                    own = copy;
                    copy.setNodeId(1, 1);
                }
                own.clear();
            });
        }
        first.clear(); // one of the threads frees the block
        for (std::thread& thread : threads) {
            thread.join();
        }
        for (const int match : matches) {
            EXPECT_EQ(match, 200);
        }
    }
}

} // namespace
