#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_nesting.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

namespace {

/// An extension object that clears itself.
class OwnedObject
{
public:
    OwnedObject() { OpcUa_ExtensionObject_Initialize(&m_object); }
    ~OwnedObject() { OpcUa_ExtensionObject_Clear(&m_object); }
    OwnedObject(const OwnedObject&) = delete;
    OwnedObject& operator=(const OwnedObject&) = delete;

    [[nodiscard]] OpcUa_ExtensionObject* get() { return &m_object; }
    [[nodiscard]] OpcUa_ExtensionObject* operator->() { return &m_object; }
    [[nodiscard]] OpcUa_ExtensionObject& operator*() { return m_object; }

private:
    OpcUa_ExtensionObject m_object{};
};

void fillWithBytes(OpcUa_ExtensionObject& object, OpcUa_ExtensionObjectEncoding encoding,
                   const char* bytes)
{
    const std::size_t size = std::strlen(bytes);
    auto* data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(size));
    std::copy_n(bytes, size, data);
    object.Encoding = encoding;
    object.Body.Binary = {static_cast<OpcUa_Int32>(size), data};
    object.BodySize = static_cast<OpcUa_Int32>(size);
}

/// Records nested `depth` levels deep: an object with one record has a depth of 1.
void fillWithChain(OpcUa_ExtensionObject& outer, OpcUa_UInt32 depth)
{
    OpcUa_ExtensionObject* object = &outer;
    for (OpcUa_UInt32 i = 0; i < depth; ++i) {
        fillWithTestRecord(*object, 1, "record");
        object = &testRecordOf(*object).Next;
    }
}

TEST(ExtensionObject, initialised_one_has_neither_type_nor_body)
{
    OpcUa_ExtensionObject object;
    std::memset(&object, 0xA5, sizeof(object));
    OpcUa_ExtensionObject_Initialize(&object);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(&object.TypeId.NodeId));
    EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_None);
    EXPECT_EQ(object.BodySize, 0);
}

TEST(ExtensionObject, copy_of_each_encoding)
{
    OwnedObject none;
    OwnedObject binary;
    fillWithBytes(*binary, OpcUa_ExtensionObjectEncoding_Binary, "\x01\x02");
    OwnedObject xml;
    fillWithBytes(*xml, OpcUa_ExtensionObjectEncoding_Xml, "<a/>");
    OwnedObject record;
    fillWithTestRecord(*record, 5, "name");
    OwnedObject copy;
    for (OwnedObject* source : {&binary, &none, &xml, &record}) {
        SCOPED_TRACE((*source)->Encoding);
        EXPECT_EQ(OpcUa_ExtensionObject_CopyTo(source->get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(OpcUa_ExtensionObject_Compare(source->get(), copy.get()), 0);
        EXPECT_EQ(copy->BodySize, (*source)->BodySize);
    }
    EXPECT_NE(copy->Body.EncodeableObject.Object, record->Body.EncodeableObject.Object);
    EXPECT_EQ(copy->Body.EncodeableObject.Type, &testRecordType);
    EXPECT_STREQ(testRecordOf(*copy).Name.strContent, "name");
}

TEST(ExtensionObject, copy_refuses_a_body_that_it_cannot_know)
{
    OwnedObject record;
    fillWithTestRecord(*record, 5, "name");
    OpcUa_ExtensionObject noObject{};
    noObject.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    noObject.Body.EncodeableObject = {nullptr, &testRecordType};
    OpcUa_ExtensionObject noType = noObject;
    noType.Body.EncodeableObject = {record->Body.EncodeableObject.Object, nullptr};
    OpcUa_ExtensionObject unknown{};
    unknown.Encoding = static_cast<OpcUa_ExtensionObjectEncoding>(4);
    for (const OpcUa_ExtensionObject* source : {&noObject, &noType, &unknown}) {
        OwnedObject copy;
        fillWithTestRecord(*copy, 6, "old");
        EXPECT_EQ(OpcUa_ExtensionObject_CopyTo(source, copy.get()), OpcUa_BadInvalidArgument);
        EXPECT_EQ(copy->Encoding, OpcUa_ExtensionObjectEncoding_None);
    }
}

TEST(ExtensionObject, clear_leaves_a_record_without_row_alone)
{
    OwnedObject record;
    fillWithTestRecord(*record, 5, "name");
    OpcUa_ExtensionObject view = *record;
    view.Body.EncodeableObject.Type = nullptr;
    OpcUa_ExtensionObject_Clear(&view);
    EXPECT_EQ(view.Encoding, OpcUa_ExtensionObjectEncoding_None);
    EXPECT_EQ(testRecordOf(*record).Number, 5);
    view.Encoding = static_cast<OpcUa_ExtensionObjectEncoding>(77);
    OpcUa_ExtensionObject_Clear(&view);
    EXPECT_EQ(view.Encoding, OpcUa_ExtensionObjectEncoding_None);
}

TEST(ExtensionObject, compare_runs_through_type_encoding_size_and_body)
{
    OwnedObject low;
    fillWithBytes(*low, OpcUa_ExtensionObjectEncoding_Binary, "aa");
    OwnedObject high;
    fillWithBytes(*high, OpcUa_ExtensionObjectEncoding_Binary, "ab");
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(low.get(), high.get()), -1);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(high.get(), low.get()), 1);

    low->BodySize = 9;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(low.get(), high.get()), 7);

    high->Encoding = OpcUa_ExtensionObjectEncoding_Xml;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(low.get(), high.get()), -1);

    low->TypeId.NodeId.Identifier.Numeric = 12;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(low.get(), high.get()), 12);
}

TEST(ExtensionObject, bodies_without_content_are_equal)
{
    OwnedObject left;
    OwnedObject right;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(left.get(), right.get()), 0);
}

TEST(ExtensionObject, pointers_are_compared_first)
{
    OwnedObject object;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(object.get(), object.get()), 0);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(nullptr, nullptr), 0);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(nullptr, object.get()), 1);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(object.get(), nullptr), 1);
}

TEST(ExtensionObject, records_are_compared_by_a_compare_that_both_rows_carry)
{
    OwnedObject left;
    fillWithTestRecord(*left, 5, "name");
    OwnedObject right;
    fillWithTestRecord(*right, 5, "name");
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(left.get(), right.get()), 0);
    testRecordOf(*right).Number = 7;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(left.get(), right.get()), -2);

    right->Body.EncodeableObject.Type = &testRecordTwinType;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(left.get(), right.get()), -2);

    testRecordOf(*right).Number = 5;
    right->Body.EncodeableObject.Type = &testRecordOtherType;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(left.get(), right.get()), 1);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(right.get(), left.get()), 1);
    right->Body.EncodeableObject.Type = &testRecordType;
}

TEST(ExtensionObject, records_without_rows_and_unknown_encodings_are_never_equal)
{
    OpcUa_ExtensionObject left{};
    left.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    left.Body.EncodeableObject = {nullptr, nullptr};
    OpcUa_ExtensionObject right = left;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(&left, &right), 1);
    right.Body.EncodeableObject.Type = &testRecordType;
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(&left, &right), 1);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(&right, &left), 1);
    left.Encoding = static_cast<OpcUa_ExtensionObjectEncoding>(4);
    right.Encoding = static_cast<OpcUa_ExtensionObjectEncoding>(4);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(&left, &right), 1);
}

TEST(ExtensionObject, nesting_up_to_the_limit_is_copied_and_compared)
{
    OwnedObject source;
    fillWithChain(*source, OpcUa_Nesting_MaxLevels);
    OwnedObject copy;
    EXPECT_EQ(OpcUa_ExtensionObject_CopyTo(source.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_ExtensionObject_Compare(source.get(), copy.get()), 0);
}

TEST(ExtensionObject, deeper_nesting_is_refused_and_never_equal)
{
    for (const OpcUa_UInt32 depth : {OpcUa_Nesting_MaxLevels + 1, OpcUa_UInt32{100000}}) {
        SCOPED_TRACE(depth);
        OwnedObject source;
        fillWithChain(*source, depth);
        OwnedObject twin;
        fillWithChain(*twin, depth);
        OwnedObject copy;
        EXPECT_EQ(OpcUa_ExtensionObject_CopyTo(source.get(), copy.get()),
                  OpcUa_BadEncodingLimitsExceeded);
        EXPECT_EQ(copy->Encoding, OpcUa_ExtensionObjectEncoding_None);
        EXPECT_EQ(OpcUa_ExtensionObject_Compare(source.get(), twin.get()), 1);
        OpcUa_ExtensionObject_Clear(source.get());
        EXPECT_EQ(source->Encoding, OpcUa_ExtensionObjectEncoding_None);
    }
}

} // namespace
