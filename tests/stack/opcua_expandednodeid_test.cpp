#include "platform/status.h"
#include "stack/opcua_expandednodeid.h"

#include <gtest/gtest.h>

#include <array>

namespace {

OpcUa_ExpandedNodeId makeId(OpcUa_UInt32 number, const char* uri, OpcUa_UInt32 server)
{
    OpcUa_ExpandedNodeId id;
    OpcUa_ExpandedNodeId_Initialize(&id);
    id.NodeId.Identifier.Numeric = number;
    id.ServerIndex = server;
    if (uri != nullptr) {
        EXPECT_EQ(OpcUa_String_AttachReadOnly(&id.NamespaceUri, uri), OpcUa_Good);
    }
    return id;
}

TEST(ExpandedNodeId, initialised_one_has_no_uri_and_is_on_server_0)
{
    const OpcUa_ExpandedNodeId id = makeId(0, nullptr, 0);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(&id.NodeId));
    EXPECT_TRUE(OpcUa_String_IsNull(&id.NamespaceUri));
    EXPECT_EQ(id.ServerIndex, 0u);
}

TEST(ExpandedNodeId, order_runs_through_server_uri_and_node_id)
{
    const std::array<OpcUa_ExpandedNodeId, 6> ordered = {
        makeId(9, nullptr, 0), makeId(8, "urn:a", 0), makeId(9, "urn:a", 0),
        makeId(1, "urn:b", 0), makeId(0, nullptr, 1), makeId(0, nullptr, 0x80000001)};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            SCOPED_TRACE(testing::Message() << i << " against " << j);
            const OpcUa_Int32 order = OpcUa_ExpandedNodeId_Compare(&ordered[i], &ordered[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
}

TEST(ExpandedNodeId, copy_of_a_broken_node_id_clears_everything)
{
    OpcUa_ExpandedNodeId source = makeId(1, "urn:a", 2);
    source.NodeId.IdentifierType = 17;
    OpcUa_ExpandedNodeId copy = makeId(5, "urn:old", 6);
    EXPECT_EQ(OpcUa_ExpandedNodeId_CopyTo(&source, &copy), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(&copy.NodeId));
    EXPECT_TRUE(OpcUa_String_IsNull(&copy.NamespaceUri));
    EXPECT_EQ(copy.ServerIndex, 0u);
}

} // namespace
