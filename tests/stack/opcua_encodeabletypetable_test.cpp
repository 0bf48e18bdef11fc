#include "platform/status.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_namespacetable.h"
#include "stack/opcua_types.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr const char* ownUri = "urn:example:types";

OpcUa_EncodeableType rowOf(OpcUa_UInt32 typeId, OpcUa_UInt32 binaryId, OpcUa_UInt32 xmlId,
                           const char* uri = nullptr)
{
    OpcUa_EncodeableType row = {};
    row.TypeName = "Row";
    row.TypeId = typeId;
    row.BinaryEncodingTypeId = binaryId;
    row.XmlEncodingTypeId = xmlId;
    row.NamespaceUri = uri;
    return row;
}

class EncodeableTypeTable : public testing::Test
{
protected:
    EncodeableTypeTable() { OpcUa_EncodeableTypeTable_Initialize(&m_table); }
    ~EncodeableTypeTable() override { OpcUa_EncodeableTypeTable_Clear(&m_table); }

    template <typename... Rows>
    OpcUa_StatusCode add(const Rows*... rows)
    {
        const OpcUa_EncodeableType* list[] = {rows..., nullptr};
        return OpcUa_EncodeableTypeTable_AddTypes(&m_table, list);
    }

    /// The row that Find gives, together with the status that goes with it.
    const OpcUa_EncodeableType* find(OpcUa_UInt32 id, const char* uri = nullptr)
    {
        const OpcUa_EncodeableType* type = &m_leftover;
        const OpcUa_StatusCode status = OpcUa_EncodeableTypeTable_Find(&m_table, id, uri, &type);
        EXPECT_EQ(status, type == nullptr ? OpcUa_GoodNoData : OpcUa_Good);
        return type;
    }

    OpcUa_EncodeableTypeTable m_table;
    const OpcUa_EncodeableType m_leftover = rowOf(0, 0, 0);
};

TEST_F(EncodeableTypeTable, empty_one_finds_nothing_and_clears_twice)
{
    EXPECT_EQ(find(258), nullptr);
    OpcUa_EncodeableTypeTable_Clear(&m_table);
    OpcUa_EncodeableTypeTable_Clear(&m_table);
    OpcUa_EncodeableTypeTable_Clear(nullptr);
    OpcUa_EncodeableTypeTable_Initialize(nullptr);
    EXPECT_EQ(m_table.Count, 0u);
    EXPECT_EQ(m_table.IndexCount, 0u);
}

TEST_F(EncodeableTypeTable, null_arguments_are_refused)
{
    const OpcUa_EncodeableType* type = &m_leftover;
    EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(nullptr, OpcUa_KnownEncodeableTypes),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(&m_table, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_EncodeableTypeTable_Find(nullptr, 1, nullptr, &type), OpcUa_BadInvalidArgument);
    EXPECT_EQ(type, nullptr);
    EXPECT_EQ(OpcUa_EncodeableTypeTable_Find(&m_table, 1, nullptr, nullptr),
              OpcUa_BadInvalidArgument);
}

TEST_F(EncodeableTypeTable, an_empty_list_adds_nothing)
{
    EXPECT_EQ(add(), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 0u);
}

TEST_F(EncodeableTypeTable, all_three_ids_find_the_row)
{
    const OpcUa_EncodeableType row = rowOf(10, 30, 20);
    EXPECT_EQ(add(&row), OpcUa_Good);
    EXPECT_EQ(m_table.IndexCount, 3u);
    for (const OpcUa_UInt32 id : {10u, 20u, 30u}) {
        EXPECT_EQ(find(id), &row) << id;
    }
    for (const OpcUa_UInt32 id : {0u, 9u, 11u, 31u, 0xFFFFFFFFu}) {
        EXPECT_EQ(find(id), nullptr) << id;
    }
}

TEST_F(EncodeableTypeTable, an_id_of_0_is_left_out_of_the_index)
{
    const OpcUa_EncodeableType row = rowOf(10, 11, 0);
    EXPECT_EQ(add(&row), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 1u);
    EXPECT_EQ(m_table.IndexCount, 2u);
    EXPECT_EQ(find(0), nullptr);
}

TEST_F(EncodeableTypeTable, the_same_row_is_kept_once)
{
    const OpcUa_EncodeableType row = rowOf(10, 11, 12);
    const OpcUa_EncodeableType twin = row;
    EXPECT_EQ(add(&row, &row, &twin), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 1u);
    EXPECT_EQ(add(&twin), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 1u);
    EXPECT_EQ(m_table.IndexCount, 3u);
    EXPECT_EQ(find(10), &row) << "the one that came first";
}

TEST_F(EncodeableTypeTable, a_type_id_that_another_column_has_counts_as_there)
{
    const OpcUa_EncodeableType row = rowOf(10, 11, 12);
    const OpcUa_EncodeableType clash = rowOf(11, 21, 22);
    EXPECT_EQ(add(&row), OpcUa_Good);
    EXPECT_EQ(add(&clash), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 1u);
    EXPECT_EQ(find(11), &row);
    EXPECT_EQ(find(21), nullptr);
}

TEST_F(EncodeableTypeTable, the_same_id_in_another_namespace_is_another_row)
{
    const OpcUa_EncodeableType standard = rowOf(10, 11, 12);
    const OpcUa_EncodeableType own = rowOf(10, 11, 12, ownUri);
    const OpcUa_EncodeableType other = rowOf(10, 11, 12, "urn:example:a");
    EXPECT_EQ(add(&own, &standard, &other), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 3u);
    EXPECT_EQ(find(11), &standard);
    EXPECT_EQ(find(11, ownUri), &own);
    EXPECT_EQ(find(11, "urn:example:a"), &other);
    EXPECT_EQ(find(11, "urn:example:b"), nullptr);
    EXPECT_EQ(find(11, ""), nullptr);
}

TEST_F(EncodeableTypeTable, the_standards_uri_is_the_same_as_none)
{
    const OpcUa_EncodeableType spelledOut = rowOf(10, 11, 12, OpcUa_NamespaceTable_StandardUri);
    const OpcUa_EncodeableType left = rowOf(10, 11, 12);
    const OpcUa_EncodeableType plain = rowOf(20, 21, 22);
    EXPECT_EQ(add(&spelledOut, &left, &plain), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 2u);
    EXPECT_EQ(find(10), &spelledOut);
    EXPECT_EQ(find(10, OpcUa_NamespaceTable_StandardUri), &spelledOut);
    EXPECT_EQ(find(20, OpcUa_NamespaceTable_StandardUri), &plain);
}

TEST_F(EncodeableTypeTable, the_index_is_sorted_by_id_and_then_by_uri)
{
    const OpcUa_EncodeableType own = rowOf(10, 5, 70, ownUri);
    const OpcUa_EncodeableType other = rowOf(10, 3, 70, "urn:example:a");
    EXPECT_EQ(add(&own, &other), OpcUa_Good);
    EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(&m_table, OpcUa_KnownEncodeableTypes), OpcUa_Good);
    const OpcUa_EncodeableTypeTableEntry* begin = m_table.Index;
    const OpcUa_EncodeableTypeTableEntry* end = begin + m_table.IndexCount;
    EXPECT_TRUE(std::is_sorted(begin, end, [](const auto& left, const auto& right) {
        if (left.TypeId != right.TypeId) {
            return left.TypeId < right.TypeId;
        }
        const char* leftUri = left.NamespaceUri == nullptr ? "" : left.NamespaceUri;
        const char* rightUri = right.NamespaceUri == nullptr ? "" : right.NamespaceUri;
        return std::strcmp(leftUri, rightUri) < 0;
    }));
}

TEST_F(EncodeableTypeTable, known_types_are_all_found_by_all_their_ids)
{
    EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(&m_table, OpcUa_KnownEncodeableTypes), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 221u);
    EXPECT_EQ(m_table.IndexCount, 3u * 221u);
    for (const auto* type = OpcUa_KnownEncodeableTypes; *type != nullptr; ++type) {
        const OpcUa_EncodeableType& row = **type;
        for (const OpcUa_UInt32 id :
             {row.TypeId, row.BinaryEncodingTypeId, row.XmlEncodingTypeId}) {
            EXPECT_EQ(find(id), &row) << row.TypeName << ' ' << id;
        }
    }
    EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(&m_table, OpcUa_KnownEncodeableTypes), OpcUa_Good);
    EXPECT_EQ(m_table.Count, 221u);
}

TEST_F(EncodeableTypeTable, rows_keep_their_place_when_others_are_added)
{
    const OpcUa_EncodeableType own = rowOf(100000, 100001, 0, ownUri);
    EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(&m_table, OpcUa_KnownEncodeableTypes), OpcUa_Good);
    const OpcUa_EncodeableType* before = find(258);
    EXPECT_EQ(add(&own), OpcUa_Good);
    EXPECT_EQ(find(258), before);
    EXPECT_EQ(m_table.Types[0], OpcUa_KnownEncodeableTypes[0]);
    EXPECT_EQ(m_table.Types[221], &own);
}

TEST_F(EncodeableTypeTable, every_failed_allocation_leaves_the_old_table)
{
    const OpcUa_EncodeableType old = rowOf(100000, 100001, 0, ownUri);
    EXPECT_EQ(add(&old), OpcUa_Good);
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return OpcUa_EncodeableTypeTable_AddTypes(&m_table, OpcUa_KnownEncodeableTypes); },
        [&](OpcUa_StatusCode status) {
            EXPECT_EQ(status, OpcUa_BadOutOfMemory);
            EXPECT_EQ(m_table.Count, 1u);
            EXPECT_EQ(m_table.IndexCount, 2u);
            EXPECT_EQ(find(100001, ownUri), &old);
            EXPECT_EQ(find(258), nullptr);
        });
    EXPECT_EQ(failures, 2u);
    EXPECT_EQ(m_table.Count, 222u);
    EXPECT_EQ(find(100001, ownUri), &old);
}

TEST_F(EncodeableTypeTable, threads_find_rows_while_others_add_them)
{
    EXPECT_EQ(add(&OpcUa_Node_EncodeableType), OpcUa_Good);
    inEightThreads([&] {
        for (const auto* row = OpcUa_KnownEncodeableTypes; *row != nullptr; ++row) {
            EXPECT_EQ(find(258), &OpcUa_Node_EncodeableType);
            EXPECT_EQ(add(*row), OpcUa_Good);
            EXPECT_EQ(find((*row)->BinaryEncodingTypeId), *row);
        }
    });
    EXPECT_EQ(m_table.Count, 221u);
}

} // namespace
