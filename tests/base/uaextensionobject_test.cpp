#include "base/uaarrays.h"
#include "base/uaextensionobject.h"
#include "base/uanodeid.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

namespace {

static_assert(std::is_nothrow_move_constructible_v<UaExtensionObject>);
static_assert(std::is_nothrow_move_assignable_v<UaExtensionObject>);
static_assert(sizeof(UaExtensionObject) == sizeof(OpcUa_ExtensionObject));

/// A row of another namespace than the standard's.
const OpcUa_EncodeableType& foreignType()
{
    static const OpcUa_EncodeableType type = [] {
        OpcUa_EncodeableType copy = testRecordType;
        copy.NamespaceUri = "urn:foreign";
        return copy;
    }();
    return type;
}

const OpcUa_EncodeableType& emptyUriType()
{
    static const OpcUa_EncodeableType type = [] {
        OpcUa_EncodeableType copy = testRecordType;
        copy.NamespaceUri = "";
        return copy;
    }();
    return type;
}

UaExtensionObject decoded(const OpcUa_EncodeableType& type, OpcUa_UInt32 typeId = 0,
                          OpcUa_UInt16 namespaceIndex = 0)
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    fillWithTestRecord(record, 5, "record", type);
    record.TypeId.NodeId.NamespaceIndex = namespaceIndex;
    record.TypeId.NodeId.Identifier.Numeric = typeId;
    UaExtensionObject object;
    object.attach(record);
    return object;
}

UaExtensionObject encoded(OpcUa_ExtensionObjectEncoding encoding, OpcUa_UInt32 typeId)
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    record.TypeId.NodeId.Identifier.Numeric = typeId;
    record.TypeId.NodeId.NamespaceIndex = 3;
    record.Encoding = encoding;
    record.Body.Binary = {-1, nullptr};
    UaExtensionObject object;
    object.attach(record);
    return object;
}

UaStringArray uris(const std::vector<const char*>& texts)
{
    UaStringArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(texts.size())), OpcUa_Good);
    for (OpcUa_UInt32 i = 0; i < texts.size(); ++i) {
        if (texts[i] != nullptr) {
            EXPECT_EQ(OpcUa_String_AttachCopy(&array[i], texts[i]), OpcUa_Good);
        }
    }
    return array;
}

std::string xml(const UaNodeId& nodeId)
{
    return textOf(nodeId.toXmlString());
}

void expectEmpty(const UaExtensionObject& object)
{
    EXPECT_EQ(object.encoding(), OpcUa_ExtensionObjectEncoding_None);
    EXPECT_TRUE(object.encodingTypeId().isNull());
    EXPECT_TRUE(object.dataTypeId().isNull());
    EXPECT_EQ(object, UaExtensionObject());
}

TEST(UaExtensionObject, default_has_neither_type_nor_body)
{
    UaExtensionObject object;
    expectEmpty(object);
    object.clear();
    object.clear();
    expectEmpty(object);
}

TEST(UaExtensionObject, copies_are_deep_and_moves_leave_the_default)
{
    UaExtensionObject source = decoded(testRecordType);
    const UaExtensionObject copy(source);
    EXPECT_EQ(copy, source);
    EXPECT_NE(copy.toOpcUaExtensionObject()->Body.EncodeableObject.Object,
              source.toOpcUaExtensionObject()->Body.EncodeableObject.Object);
    UaExtensionObject assigned;
    assigned = source;
    assigned = *&assigned;
    EXPECT_EQ(assigned, source);
    assigned = *encoded(OpcUa_ExtensionObjectEncoding_Binary, 9).toOpcUaExtensionObject();
    EXPECT_EQ(xml(assigned.encodingTypeId()), "ns=3;i=9");
    UaExtensionObject moved(std::move(source));
    EXPECT_EQ(moved, copy);
    expectEmpty(source); // NOLINT(bugprone-use-after-move): its state is the promise
    assigned = std::move(moved);
    EXPECT_EQ(assigned, copy);
    expectEmpty(moved); // NOLINT(bugprone-use-after-move): its state is the promise
    assigned = std::move(*&assigned);
    EXPECT_EQ(assigned, copy);
}

TEST(UaExtensionObject, record_that_cannot_be_copied_becomes_the_default)
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    record.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    record.Body.EncodeableObject = {nullptr, nullptr};
    expectEmpty(UaExtensionObject(record));
    UaExtensionObject object = decoded(testRecordType);
    object = record;
    expectEmpty(object);
}

TEST(UaExtensionObject, copy_to_and_detach_need_a_target)
{
    UaExtensionObject object = decoded(testRecordType);
    EXPECT_EQ(nameOf(object.copyTo(nullptr)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(object.detach(nullptr)), "BadInvalidArgument");
    EXPECT_EQ(object, decoded(testRecordType));
    OpcUa_ExtensionObject target;
    OpcUa_ExtensionObject_Initialize(&target);
    EXPECT_EQ(object.copyTo(&target), OpcUa_Good);
    EXPECT_EQ(UaExtensionObject(target), object);
    const void* body = object.toOpcUaExtensionObject()->Body.EncodeableObject.Object;
    EXPECT_EQ(object.detach(&target), OpcUa_Good);
    EXPECT_EQ(target.Body.EncodeableObject.Object, body);
    expectEmpty(object);
    object.attach(target);
    EXPECT_EQ(object, decoded(testRecordType));
    EXPECT_EQ(target.Encoding, OpcUa_ExtensionObjectEncoding_None);
}

TEST(UaExtensionObject, encoding_type_id_is_that_of_an_encoded_body)
{
    EXPECT_EQ(xml(encoded(OpcUa_ExtensionObjectEncoding_Binary, 7).encodingTypeId()), "ns=3;i=7");
    EXPECT_EQ(xml(encoded(OpcUa_ExtensionObjectEncoding_Xml, 8).encodingTypeId()), "ns=3;i=8");
    EXPECT_TRUE(encoded(OpcUa_ExtensionObjectEncoding_None, 7).encodingTypeId().isNull());
    EXPECT_TRUE(decoded(testRecordType, 7, 3).encodingTypeId().isNull());
}

TEST(UaExtensionObject, data_type_id_is_that_of_a_decoded_record)
{
    struct Row
    {
        UaExtensionObject object;
        const char* expected;
    };
    const std::vector<Row> rows = {{decoded(testRecordType), "i=1001"},
                                   {decoded(testRecordType, 7, 3), "i=1001"},
                                   {decoded(emptyUriType(), 7, 3), "i=1001"},
                                   {decoded(foreignType(), 7, 3), "ns=3;i=1001"},
                                   {decoded(foreignType(), 0, 3), "ns=3;i=1001"},
                                   {decoded(foreignType()), "i=0"},
                                   {encoded(OpcUa_ExtensionObjectEncoding_Binary, 7), "i=0"},
                                   {encoded(OpcUa_ExtensionObjectEncoding_None, 7), "i=0"}};
    const UaStringArray empty;
    for (const Row& row : rows) {
        EXPECT_EQ(xml(row.object.dataTypeId()), row.expected);
        EXPECT_EQ(xml(row.object.dataTypeId(empty)), row.expected)
            << "an empty table changes nothing";
    }
}

TEST(UaExtensionObject, decoded_object_without_a_row_has_no_data_type)
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    record.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    record.Body.EncodeableObject = {nullptr, nullptr};
    EXPECT_TRUE(UaExtensionObject::dataTypeId(record).isNull());
}

TEST(UaExtensionObject, table_of_namespaces_gives_the_index_by_position)
{
    const UaStringArray table =
        uris({nullptr, "http://opcfoundation.org/UA/", "urn:foreigner", "urn:foreign"});
    EXPECT_EQ(xml(decoded(foreignType()).dataTypeId(table)), "ns=3;i=1001");
    EXPECT_EQ(xml(decoded(foreignType(), 7, 9).dataTypeId(table)), "ns=3;i=1001");
    EXPECT_EQ(xml(decoded(testRecordType).dataTypeId(table)), "ns=1;i=1001");
    EXPECT_TRUE(decoded(foreignType(), 7, 3).dataTypeId(uris({"urn:other"})).isNull());
    EXPECT_TRUE(decoded(testRecordType).dataTypeId(uris({"urn:other"})).isNull());
    EXPECT_TRUE(encoded(OpcUa_ExtensionObjectEncoding_Binary, 7).dataTypeId(table).isNull());
}

TEST(UaExtensionObject, position_behind_the_largest_namespace_index_is_none)
{
    UaStringArray table;
    ASSERT_EQ(table.create(65537), OpcUa_Good);
    ASSERT_EQ(OpcUa_String_AttachCopy(&table[65536], "urn:foreign"), OpcUa_Good);
    EXPECT_EQ(UaNamespaceUris_Find(table, "urn:foreign"), -1);
    ASSERT_EQ(OpcUa_String_AttachCopy(&table[65535], "urn:foreign"), OpcUa_Good);
    EXPECT_EQ(UaNamespaceUris_Find(table, "urn:foreign"), 65535);
}

TEST(UaExtensionObject, every_failed_allocation_leaves_the_default)
{
    const UaExtensionObject source = decoded(testRecordType, 7, 3);
    EXPECT_GT(forEveryFailingAllocation([&] { return UaExtensionObject(source); }, expectEmpty),
              0u);
}

} // namespace
