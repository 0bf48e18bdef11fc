#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_nodeid.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace {

struct NodeIdDeleter
{
    void operator()(OpcUa_NodeId* nodeId) const
    {
        OpcUa_NodeId_Clear(nodeId);
        std::default_delete<OpcUa_NodeId>()(nodeId);
    }
};
using NodeId = std::unique_ptr<OpcUa_NodeId, NodeIdDeleter>;

NodeId makeNodeId(OpcUa_UInt16 type = 0, OpcUa_UInt16 namespaceIndex = 0)
{
    NodeId nodeId(std::make_unique<OpcUa_NodeId>().release());
    OpcUa_NodeId_Initialize(nodeId.get());
    nodeId->IdentifierType = type;
    nodeId->NamespaceIndex = namespaceIndex;
    return nodeId;
}

NodeId makeNumeric(OpcUa_UInt32 number, OpcUa_UInt16 namespaceIndex = 0)
{
    NodeId nodeId = makeNodeId(OpcUa_IdentifierType_Numeric, namespaceIndex);
    nodeId->Identifier.Numeric = number;
    return nodeId;
}

NodeId makeString(const char* text, OpcUa_UInt16 namespaceIndex = 0)
{
    NodeId nodeId = makeNodeId(OpcUa_IdentifierType_String, namespaceIndex);
    OpcUa_String_Initialize(&nodeId->Identifier.String);
    if (text != nullptr) {
        EXPECT_EQ(OpcUa_String_AttachCopy(&nodeId->Identifier.String, text), OpcUa_Good);
    }
    return nodeId;
}

NodeId makeGuid(const OpcUa_Guid* guid, OpcUa_UInt16 namespaceIndex = 0)
{
    NodeId nodeId = makeNodeId(OpcUa_IdentifierType_Guid, namespaceIndex);
    nodeId->Identifier.Guid = nullptr;
    if (guid != nullptr) {
        nodeId->Identifier.Guid = static_cast<OpcUa_Guid*>(OpcUa_Memory_Alloc(sizeof(OpcUa_Guid)));
        *nodeId->Identifier.Guid = *guid;
    }
    return nodeId;
}

NodeId makeOpaque(const char* bytes, OpcUa_UInt16 namespaceIndex = 0)
{
    NodeId nodeId = makeNodeId(OpcUa_IdentifierType_Opaque, namespaceIndex);
    OpcUa_ByteString_Initialize(&nodeId->Identifier.ByteString);
    if (bytes != nullptr) {
        const std::size_t size = std::strlen(bytes);
        auto* data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(size));
        std::copy_n(bytes, size, data);
        nodeId->Identifier.ByteString = {static_cast<OpcUa_Int32>(size), data};
    }
    return nodeId;
}

constexpr OpcUa_Guid guidA = {1, 0, 0, {}};
constexpr OpcUa_Guid guidB = {2, 0, 0, {}};

TEST(NodeId, initialised_one_is_numeric_zero)
{
    OpcUa_NodeId nodeId;
    std::memset(&nodeId, 0xA5, sizeof(nodeId));
    OpcUa_NodeId_Initialize(&nodeId);
    EXPECT_EQ(nodeId.IdentifierType, OpcUa_IdentifierType_Numeric);
    EXPECT_EQ(nodeId.NamespaceIndex, 0);
    EXPECT_EQ(nodeId.Identifier.Numeric, 0u);
}

TEST(NodeId, is_null)
{
    EXPECT_TRUE(OpcUa_NodeId_IsNull(nullptr));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeNumeric(0).get()));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeString(nullptr).get()));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeString("").get()));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeGuid(nullptr).get()));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeGuid(&OpcUa_Guid_Null).get()));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeOpaque(nullptr).get()));
    EXPECT_TRUE(OpcUa_NodeId_IsNull(makeOpaque("").get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeNumeric(0, 1).get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeString("", 1).get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeNumeric(1).get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeString("a").get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeGuid(&guidA).get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeOpaque("a").get()));
    EXPECT_FALSE(OpcUa_NodeId_IsNull(makeNodeId(4).get()));
}

TEST(NodeId, order_runs_through_type_namespace_and_identifier)
{
    std::array<NodeId, 16> ordered = {
        makeNumeric(0),      makeNumeric(7),   makeNumeric(3, 1), makeString(nullptr),
        makeString("a"),     makeString("b"),  makeString("", 1), makeString("a", 1),
        makeGuid(nullptr),   makeGuid(&guidA), makeGuid(&guidB),  makeGuid(&guidA, 1),
        makeOpaque(nullptr), makeOpaque("a"),  makeOpaque("b"),   makeOpaque("aa")};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            SCOPED_TRACE(testing::Message() << i << " against " << j);
            const OpcUa_Int32 order = OpcUa_NodeId_Compare(ordered[i].get(), ordered[j].get());
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
}

TEST(NodeId, unknown_identifiers_are_equal)
{
    NodeId left = makeNodeId(9, 2);
    NodeId right = makeNodeId(9, 2);
    left->Identifier.Numeric = 1;
    right->Identifier.Numeric = 2;
    EXPECT_EQ(OpcUa_NodeId_Compare(left.get(), right.get()), 0);
}

TEST(NodeId, copy_of_each_identifier_type)
{
    std::array<NodeId, 7> sources = {
        makeNumeric(5, 3), makeString("text", 3),  makeString(nullptr), makeGuid(&guidA, 3),
        makeGuid(nullptr), makeOpaque("bytes", 3), makeOpaque(nullptr)};
    const NodeId copy = makeString("old");
    for (std::size_t i = 0; i < sources.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(OpcUa_NodeId_CopyTo(sources[i].get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(OpcUa_NodeId_Compare(sources[i].get(), copy.get()), 0);
        sources[i].reset();
        EXPECT_GE(OpcUa_NodeId_Compare(copy.get(), makeNumeric(0).get()), 0);
    }
}

TEST(NodeId, copy_refuses_an_unknown_identifier_type)
{
    const NodeId source = makeNodeId(4, 1);
    const NodeId copy = makeString("old", 1);
    EXPECT_EQ(OpcUa_NodeId_CopyTo(source.get(), copy.get()), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(copy.get()));
}

TEST(NodeId, copy_without_memory_clears_the_destination)
{
    for (const NodeId& source : {makeString("text"), makeGuid(&guidA), makeOpaque("bytes")}) {
        SCOPED_TRACE(source->IdentifierType);
        const NodeId copy = makeNumeric(8, 8);
        const AllocationFaults faults(0);
        EXPECT_EQ(OpcUa_NodeId_CopyTo(source.get(), copy.get()), OpcUa_BadOutOfMemory);
        EXPECT_TRUE(OpcUa_NodeId_IsNull(copy.get()));
    }
}

} // namespace
