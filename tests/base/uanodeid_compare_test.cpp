#include "base/uabytestring.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "tests/base/textof.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

UaByteString bytes(const std::vector<OpcUa_Byte>& data)
{
    return {static_cast<OpcUa_Int32>(data.size()), data.data()};
}

/// The guid whose bytes in memory are these.
UaGuid guidOf(OpcUa_Byte first, OpcUa_Byte last)
{
    std::array<OpcUa_Byte, sizeof(OpcUa_Guid)> memory{};
    memory.front() = first;
    memory.back() = last;
    OpcUa_Guid guid;
    std::memcpy(&guid, memory.data(), sizeof guid);
    return UaGuid(guid);
}

/// A guid identifier that has no block at all.
UaNodeId withoutGuid()
{
    const OpcUa_NodeId nodeId{OpcUa_IdentifierType_Guid, 0, {}};
    return UaNodeId(nodeId);
}

/// Node ids in their order, each less than all that follow.
std::vector<UaNodeId> inOrder()
{
    return {UaNodeId(0, 0),
            UaNodeId(5, 0),
            UaNodeId(0xFFFFFFFFu, 0),
            UaNodeId(0, 1),
            UaNodeId(0, 0xFFFF),
            UaNodeId(UaString(), 0),
            UaNodeId(UaString(""), 0),
            UaNodeId(UaString("z"), 0), // the shorter first, whatever it holds
            UaNodeId(UaString("aa"), 0),
            UaNodeId(UaString("ab"), 0),
            UaNodeId(UaString("zz"), 0),
            UaNodeId(UaString("aaa"), 0),
            UaNodeId(UaString(""), 1),
            withoutGuid(),
            UaNodeId(UaGuid(), 0),
            UaNodeId(guidOf(0, 1), 0),
            UaNodeId(guidOf(1, 0), 0),
            UaNodeId(guidOf(2, 0), 0),
            UaNodeId(UaGuid(), 1),
            UaNodeId(UaByteString(), 0),
            UaNodeId(bytes({}), 0),
            UaNodeId(bytes({0xFF}), 0),
            UaNodeId(bytes({0x00, 0x00}), 0),
            UaNodeId(bytes({0x00, 0x80}), 0),
            UaNodeId(bytes({0x01, 0x00}), 0),
            UaNodeId(bytes({0x00, 0x00, 0x00}), 0),
            UaNodeId(bytes({0x00}), 1)};
}

TEST(UaNodeIdCompare, every_pair_has_its_settled_order)
{
    const std::vector<UaNodeId> nodeIds = inOrder();
    for (std::size_t left = 0; left < nodeIds.size(); ++left) {
        for (std::size_t right = 0; right < nodeIds.size(); ++right) {
            SCOPED_TRACE(textOf(nodeIds[left].toFullString()) + " and " +
                         textOf(nodeIds[right].toFullString()));
            // Another block of the same content, so that the shared block doesn't decide.
            const UaNodeId other(*nodeIds[right].toOpcUaNodeId());
            EXPECT_EQ(nodeIds[left] == other, left == right);
            EXPECT_EQ(nodeIds[left] != other, left != right);
            EXPECT_EQ(nodeIds[left] < other, left < right);
        }
    }
}

TEST(UaNodeIdCompare, handles_to_one_block_are_equal_and_not_less)
{
    for (const UaNodeId& nodeId : inOrder()) {
        const UaNodeId copy = nodeId; // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_TRUE(copy == nodeId);
        EXPECT_FALSE(copy < nodeId);
    }
}

TEST(UaNodeIdCompare, a_number_comes_before_a_string_of_any_namespace)
{
    EXPECT_TRUE(UaNodeId(5, 0xFFFF) < UaNodeId(UaString("a"), 0));
    EXPECT_FALSE(UaNodeId(UaString("a"), 0) < UaNodeId(5, 0xFFFF));
}

TEST(UaNodeIdCompare, strings_are_case_sensitive)
{
    EXPECT_NE(UaNodeId(UaString("pump"), 1), UaNodeId(UaString("Pump"), 1));
    EXPECT_TRUE(UaNodeId(UaString("Pump"), 1) < UaNodeId(UaString("pump"), 1));
}

TEST(UaNodeIdCompare, a_nul_ends_the_comparison_of_strings_of_one_length)
{
    const UaNodeId left(UaString("a\0b", 3), 1);
    const UaNodeId right(UaString("a\0c", 3), 1);
    EXPECT_EQ(left, right);
    EXPECT_FALSE(left < right);
    EXPECT_FALSE(right < left);
    EXPECT_NE(left, UaNodeId(UaString("a\0", 2), 1));
}

TEST(UaNodeIdCompare, unknown_identifier_types_are_neither_equal_nor_less)
{
    const OpcUa_NodeId unknown{4, 0, {}};
    const OpcUa_NodeId other{5, 0, {}};
    const OpcUa_NodeId number{};
    EXPECT_FALSE(UaNodeId::isEqual(unknown, unknown));
    EXPECT_FALSE(UaNodeId::isLess(unknown, unknown));
    EXPECT_TRUE(UaNodeId::isLess(unknown, other));
    EXPECT_TRUE(UaNodeId::isLess(number, unknown));
}

TEST(UaNodeIdCompare, order_serves_a_map)
{
    std::map<UaNodeId, std::size_t> positions;
    const std::vector<UaNodeId> nodeIds = inOrder();
    for (std::size_t i = nodeIds.size(); i > 0; --i) {
        positions.emplace(nodeIds[i - 1], i - 1);
    }
    ASSERT_EQ(positions.size(), nodeIds.size());
    std::size_t expected = 0;
    for (const auto& [nodeId, position] : positions) {
        EXPECT_EQ(position, expected++);
        EXPECT_EQ(positions.at(UaNodeId(*nodeId.toOpcUaNodeId())), position);
    }
}

} // namespace
