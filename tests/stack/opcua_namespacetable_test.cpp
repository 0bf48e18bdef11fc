#include "platform/status.h"
#include "stack/opcua_namespacetable.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class NamespaceTable : public testing::Test
{
protected:
    NamespaceTable() { OpcUa_NamespaceTable_Initialize(&m_table); }
    ~NamespaceTable() override { OpcUa_NamespaceTable_Clear(&m_table); }

    OpcUa_UInt16 add(const char* uri)
    {
        OpcUa_UInt16 index = 0xFFFF;
        EXPECT_EQ(OpcUa_NamespaceTable_AddUri(&m_table, uri, &index), OpcUa_Good);
        return index;
    }

    OpcUa_StatusCode find(const char* uri, OpcUa_UInt16& index)
    {
        return OpcUa_NamespaceTable_FindUri(&m_table, uri, &index);
    }

    OpcUa_NamespaceTable m_table;
};

TEST_F(NamespaceTable, empty_one_finds_nothing_and_clears_twice)
{
    OpcUa_UInt16 index = 7;
    EXPECT_EQ(find("urn:a", index), OpcUa_BadNotFound);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(OpcUa_NamespaceTable_GetUri(&m_table, 0), nullptr);
    OpcUa_NamespaceTable_Clear(&m_table);
    OpcUa_NamespaceTable_Clear(nullptr);
    OpcUa_NamespaceTable_Initialize(nullptr);
}

TEST_F(NamespaceTable, null_and_empty_arguments_are_refused)
{
    OpcUa_UInt16 index = 7;
    EXPECT_EQ(OpcUa_NamespaceTable_AddUri(nullptr, "urn:a", &index), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_NamespaceTable_AddUri(&m_table, nullptr, &index), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_NamespaceTable_AddUri(&m_table, "", &index), OpcUa_BadInvalidArgument);
    EXPECT_EQ(m_table.Count, 0);
    EXPECT_EQ(OpcUa_NamespaceTable_FindUri(nullptr, "urn:a", &index), OpcUa_BadInvalidArgument);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(OpcUa_NamespaceTable_FindUri(&m_table, nullptr, &index), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_NamespaceTable_FindUri(&m_table, "urn:a", nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_NamespaceTable_GetUri(nullptr, 0), nullptr);
}

TEST_F(NamespaceTable, indexes_are_given_in_the_order_of_adding)
{
    const char* uris[] = {OpcUa_NamespaceTable_StandardUri, "urn:z", "urn:a", "urn:m", "urn:b"};
    OpcUa_UInt16 expected = 0;
    for (const char* uri : uris) {
        EXPECT_EQ(add(uri), expected++);
    }
    for (OpcUa_UInt16 i = 0; i < expected; ++i) {
        OpcUa_UInt16 index = 0xFFFF;
        EXPECT_STREQ(OpcUa_NamespaceTable_GetUri(&m_table, i), uris[i]);
        EXPECT_EQ(find(uris[i], index), OpcUa_Good);
        EXPECT_EQ(index, i);
    }
    EXPECT_EQ(OpcUa_NamespaceTable_GetUri(&m_table, expected), nullptr);
    OpcUa_UInt16 index = 0;
    EXPECT_EQ(find("urn:", index), OpcUa_BadNotFound);
    EXPECT_EQ(find("URN:A", index), OpcUa_BadNotFound) << "the comparison is exact";
}

TEST_F(NamespaceTable, a_uri_is_kept_once_and_as_a_copy)
{
    std::string uri = "urn:a";
    EXPECT_EQ(add(uri.c_str()), 0);
    EXPECT_EQ(add("urn:b"), 1);
    uri[4] = 'x';
    EXPECT_EQ(add("urn:a"), 0);
    EXPECT_EQ(OpcUa_NamespaceTable_AddUri(&m_table, "urn:b", nullptr), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 2);
}

TEST_F(NamespaceTable, holds_as_many_uris_as_an_index_can_count)
{
    for (int i = 0; i < 0xFFFF; ++i) {
        ASSERT_EQ(add(("urn:" + std::to_string(i)).c_str()), i);
    }
    OpcUa_UInt16 index = 7;
    EXPECT_EQ(OpcUa_NamespaceTable_AddUri(&m_table, "urn:more", &index), OpcUa_BadOutOfRange);
    EXPECT_EQ(add("urn:65534"), 65534);
}

TEST_F(NamespaceTable, every_failed_allocation_leaves_the_old_table)
{
    EXPECT_EQ(add("urn:b"), 0);
    OpcUa_UInt16 index = 0;
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return OpcUa_NamespaceTable_AddUri(&m_table, "urn:a", &index); },
        [&](OpcUa_StatusCode status) {
            EXPECT_EQ(status, OpcUa_BadOutOfMemory);
            EXPECT_EQ(m_table.Count, 1);
            EXPECT_EQ(find("urn:a", index), OpcUa_BadNotFound);
            EXPECT_EQ(find("urn:b", index), OpcUa_Good);
        });
    EXPECT_EQ(failures, 3u);
    EXPECT_EQ(index, 1);
}

} // namespace
