#include "base/uaservicerecordarrays.h"
#include "platform/allocator.h"
#include "platform/clock.h"
#include "platform/status.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_variant.h"
#include "tests/stack/recordsamples.h"
#include "tests/stack/testrecord.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

// The pattern of the arrays over service records, tried on each of its members.

namespace {

using Members = testing::Types<
    UaAddNodesResults, UaBrowseDescriptions, UaBrowsePathResults, UaBrowsePathTargets,
    UaBrowsePaths, UaBrowseResults, UaCallMethodRequests, UaCallMethodResults, UaEventFieldLists,
    UaHistoryReadResults, UaHistoryReadValueIds, UaHistoryUpdateResults, UaModificationInfos,
    UaMonitoredItemCreateRequests, UaMonitoredItemCreateResults, UaMonitoredItemModifyRequests,
    UaMonitoredItemModifyResults, UaMonitoredItemNotifications, UaNodeTypeDescriptions,
    UaParsingResults, UaQueryDataSets, UaReadValueIds, UaReferenceDescriptions,
    UaRelativePathElements, UaSimpleAttributeOperands, UaWriteValues>;

template <typename Array>
class ServiceRecordArray : public testing::Test
{
protected:
    using Record = typename Array::Element;
    using FamilyMember = Array;

    static const OpcUa_EncodeableType& type() { return *OpcUa_EncodeableTypeOf<Record>; }
    static const OpcUa_RecordLayout& layout() { return layoutOf(type().TypeName); }

    /// Three elements: two alike and one that differs.
    static Array filled()
    {
        Array array;
        EXPECT_EQ(array.create(3), OpcUa_Good);
        fillRecord(layout(), &array[0], RecordSample::Filled);
        fillRecord(layout(), &array[1], RecordSample::FilledOther);
        fillRecord(layout(), &array[2], RecordSample::Filled);
        return array;
    }

    static void expectEmpty(const Array& array)
    {
        EXPECT_EQ(array.length(), 0);
        EXPECT_EQ(array.rawArray(), nullptr);
        EXPECT_EQ(array, Array());
    }

    static OpcUa_ExtensionObject& objectIn(OpcUa_Variant& variant, OpcUa_Int32 index)
    {
        return static_cast<OpcUa_ExtensionObject*>(variant.Value.Array.Elements)[index];
    }

    /// The variant that `filled()` makes.
    static void fill(OpcUa_Variant& variant)
    {
        EXPECT_EQ(filled().toVariant(&variant), OpcUa_Good);
    }

    /// The variant holds what `filled()` holds.
    static void expectFilled(OpcUa_Variant& variant)
    {
        ASSERT_EQ(variant.Datatype, OpcUaType_ExtensionObject);
        ASSERT_EQ(variant.ArrayType, OpcUa_VariantArrayType_Array);
        ASSERT_EQ(variant.Value.Array.Length, 3);
        const Array expected = filled();
        for (OpcUa_Int32 i = 0; i < 3; ++i) {
            const OpcUa_ExtensionObject& object = objectIn(variant, i);
            EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_EncodeableObject);
            EXPECT_EQ(object.Body.EncodeableObject.Type, &type());
            EXPECT_EQ(type().Compare(object.Body.EncodeableObject.Object,
                                     &expected[static_cast<OpcUa_UInt32>(i)]),
                      0);
        }
    }
};

TYPED_TEST_SUITE(ServiceRecordArray, Members);

TYPED_TEST(ServiceRecordArray, has_one_virtual_operation_and_two_members)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>);
    EXPECT_EQ(sizeof(TypeParam), 3 * sizeof(void*));
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<TypeParam>);
}

TYPED_TEST(ServiceRecordArray, default_is_empty_and_clears_twice)
{
    TypeParam array;
    this->expectEmpty(array);
    array.clear();
    array.clear();
    this->expectEmpty(array);
}

TYPED_TEST(ServiceRecordArray, create_initialises_every_record)
{
    TypeParam array = this->filled();
    EXPECT_EQ(array.create(2), OpcUa_Good);
    ASSERT_EQ(array.length(), 2);
    for (const auto& record : array) {
        EXPECT_TRUE(isInitialized(this->layout(), &record));
    }
    EXPECT_EQ(array.create(0), OpcUa_Good);
    this->expectEmpty(array);
    forEveryFailingAllocation([&] { return array.create(2); },
                              [&](OpcUa_StatusCode status) {
                                  EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                  this->expectEmpty(array);
                              });
}

TYPED_TEST(ServiceRecordArray, copies_are_deep)
{
    TypeParam source = this->filled();
    const TypeParam constructed(source.length(), source.rawArray());
    TypeParam assigned;
    assigned = source;
    source.clear();
    EXPECT_EQ(constructed, this->filled());
    EXPECT_EQ(assigned, this->filled());
    this->expectEmpty(TypeParam(-1, assigned.rawArray()));
    this->expectEmpty(TypeParam(3, nullptr));
}

TYPED_TEST(ServiceRecordArray, equality_sees_length_and_elements)
{
    TypeParam array = this->filled();
    EXPECT_EQ(array, this->filled());
    std::swap(array[0], array[1]);
    EXPECT_NE(array, this->filled());
    EXPECT_NE(array, TypeParam(2, array.rawArray()));
}

TYPED_TEST(ServiceRecordArray, empty_arrays_are_equal_whatever_their_history)
{
    TypeParam detached = this->filled();
    const OpcUa_Int32 length = detached.length();
    auto* block = detached.detach();
    this->expectEmpty(detached);
    TypeParam created;
    EXPECT_EQ(created.create(0), OpcUa_Good);
    EXPECT_EQ(detached, created);
    created.attach(length, block);
    EXPECT_EQ(created, this->filled());
}

TYPED_TEST(ServiceRecordArray, attach_takes_the_block_over)
{
    TypeParam source = this->filled();
    auto* block = source.detach();
    TypeParam array = this->filled();
    array.attach(OpcUa_UInt32{3}, block);
    EXPECT_EQ(array.rawArray(), block);
    EXPECT_EQ(array, this->filled());
}

TYPED_TEST(ServiceRecordArray, attach_of_a_negative_count_leaves_it_empty_and_the_block_alone)
{
    TypeParam source = this->filled();
    TypeParam array = this->filled();
    array.attach(-1, source.rawArray());
    this->expectEmpty(array);
    array = this->filled();
    array.attach(0x80000000u, source.rawArray());
    this->expectEmpty(array);
    array = this->filled();
    array.attach(3, nullptr);
    this->expectEmpty(array);
    EXPECT_EQ(source, this->filled());
}

TYPED_TEST(ServiceRecordArray, attach_of_no_elements_frees_the_block)
{
    TypeParam array = this->filled();
    array.attach(0, static_cast<typename TypeParam::Element*>(OpcUa_Memory_Alloc(8)));
    this->expectEmpty(array);
}

TYPED_TEST(ServiceRecordArray, to_variant_copies_each_record_into_an_extension_object)
{
    OwnedVariant variant;
    makeScalar(*variant, builtInSamples()[0]);
    const TypeParam array = this->filled();
    EXPECT_EQ(array.toVariant(variant.get()), OpcUa_Good);
    this->expectFilled(*variant);
    EXPECT_EQ(array, this->filled());
    EXPECT_EQ(array.toVariant(nullptr), OpcUa_BadInvalidArgument);
}

TYPED_TEST(ServiceRecordArray, to_variant_with_detach_moves_the_records)
{
    TypeParam array = this->filled();
    OwnedVariant variant;
    EXPECT_EQ(array.toVariant(variant.get(), false), OpcUa_Good);
    EXPECT_EQ(array.length(), 3);
    EXPECT_EQ(array.toVariant(nullptr, true), OpcUa_BadInvalidArgument);
    EXPECT_EQ(array.length(), 3);
    EXPECT_EQ(array.toVariant(variant.get(), true), OpcUa_Good);
    this->expectEmpty(array);
    this->expectFilled(*variant);
}

TYPED_TEST(ServiceRecordArray, an_empty_array_makes_an_empty_array_variant)
{
    for (const bool detaches : {false, true}) {
        OwnedVariant variant;
        TypeParam array;
        EXPECT_EQ(array.toVariant(variant.get(), detaches), OpcUa_Good);
        EXPECT_EQ(variant->Datatype, OpcUaType_ExtensionObject);
        EXPECT_EQ(variant->ArrayType, OpcUa_VariantArrayType_Array);
        EXPECT_EQ(variant->Value.Array.Length, 0);
        EXPECT_EQ(array.setArray(*variant, detaches), OpcUa_Good);
        this->expectEmpty(array);
    }
}

TYPED_TEST(ServiceRecordArray, to_data_value_sets_value_and_times)
{
    OpcUa_DataValue dataValue;
    OpcUa_DataValue_Initialize(&dataValue);
    TypeParam array = this->filled();
    EXPECT_EQ(array.toDataValue(&dataValue, false), OpcUa_Good);
    this->expectFilled(dataValue.Value);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.SourceTimestamp), 0u);
    EXPECT_EQ(OpcUa_DateTime_ToTicks(dataValue.ServerTimestamp), 0u);
    EXPECT_EQ(array.toDataValue(&dataValue, true, true), OpcUa_Good);
    this->expectEmpty(array);
    this->expectFilled(dataValue.Value);
    EXPECT_NE(OpcUa_DateTime_ToTicks(dataValue.SourceTimestamp), 0u);
    EXPECT_NE(OpcUa_DateTime_ToTicks(dataValue.ServerTimestamp), 0u);
    EXPECT_EQ(array.toDataValue(nullptr, true), OpcUa_BadInvalidArgument);
    OpcUa_DataValue_Clear(&dataValue);
}

TYPED_TEST(ServiceRecordArray, set_array_copies_the_records)
{
    OwnedVariant variant;
    this->fill(*variant);
    TypeParam array;
    EXPECT_EQ(array.create(1), OpcUa_Good);
    EXPECT_EQ(array.setArray(std::as_const(*variant)), OpcUa_Good);
    EXPECT_EQ(array, this->filled());
    EXPECT_EQ(array.setArray(*variant, false), OpcUa_Good);
    EXPECT_EQ(array, this->filled());
    this->expectFilled(*variant);
}

TYPED_TEST(ServiceRecordArray, set_array_with_detach_leaves_initialised_records_behind)
{
    OwnedVariant variant;
    this->fill(*variant);
    TypeParam array;
    EXPECT_EQ(array.setArray(*variant, true), OpcUa_Good);
    EXPECT_EQ(array, this->filled());
    ASSERT_EQ(variant->Value.Array.Length, 3);
    for (OpcUa_Int32 i = 0; i < 3; ++i) {
        const auto& body = this->objectIn(*variant, i).Body.EncodeableObject;
        EXPECT_TRUE(isInitialized(this->layout(), body.Object));
    }
}

TYPED_TEST(ServiceRecordArray, set_array_takes_a_negative_length_or_no_block_as_empty)
{
    for (const bool detaches : {false, true}) {
        for (const OpcUa_Int32 length : {-1, 0, 3}) {
            OwnedVariant variant;
            variant->Datatype = OpcUaType_ExtensionObject;
            variant->ArrayType = OpcUa_VariantArrayType_Array;
            variant->Value.Array = {length, nullptr};
            TypeParam array = this->filled();
            EXPECT_EQ(array.setArray(*variant, detaches), OpcUa_Good);
            this->expectEmpty(array);
        }
    }
}

TYPED_TEST(ServiceRecordArray, set_array_refuses_other_variants)
{
    const BuiltInSample& texts = builtInSamples()[OpcUaType_String - OpcUaType_Boolean];
    const BuiltInSample& objects = builtInSamples()[OpcUaType_ExtensionObject - OpcUaType_Boolean];
    for (const bool detaches : {false, true}) {
        for (const int kind : {0, 1, 2, 3}) {
            OwnedVariant variant;
            if (kind == 1) {
                makeArray(*variant, texts, 2);
            } else if (kind != 0) {
                makeShape(*variant, objects,
                          kind == 2 ? VariantShape::Scalar : VariantShape::Matrix);
            }
            TypeParam array = this->filled();
            EXPECT_EQ(array.setArray(*variant, detaches), OpcUa_BadTypeMismatch) << kind;
            this->expectEmpty(array);
        }
    }
}

TYPED_TEST(ServiceRecordArray, set_array_refuses_objects_without_a_decoded_record_of_its_type)
{
    using Change = void (*)(OpcUa_ExtensionObject&);
    struct Row
    {
        const char* name;
        Change change;
    };
    const Row rows[] = {
        {"another type",
         [](OpcUa_ExtensionObject& object) {
             OpcUa_ExtensionObject_Clear(&object);
             fillWithTestRecord(object, 1, "other");
         }},
        {"nothing", [](OpcUa_ExtensionObject& object) { OpcUa_ExtensionObject_Clear(&object); }},
        {"still encoded",
         [](OpcUa_ExtensionObject& object) {
             OpcUa_ExtensionObject_Clear(&object);
             object.Encoding = OpcUa_ExtensionObjectEncoding_Binary;
             object.Body.Binary = {1, static_cast<OpcUa_Byte*>(OpcUa_Memory_AllocZeroed(1, 1))};
         }},
        {"no object", [](OpcUa_ExtensionObject& object) {
             const OpcUa_EncodeableType* type = object.Body.EncodeableObject.Type;
             OpcUa_ExtensionObject_Clear(&object);
             object.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
             object.Body.EncodeableObject = {nullptr, type};
         }}};
    for (const bool detaches : {false, true}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            OwnedVariant variant;
            this->fill(*variant);
            row.change(this->objectIn(*variant, 2));
            TypeParam array = this->filled();
            EXPECT_EQ(array.setArray(*variant, detaches), OpcUa_BadTypeMismatch);
            this->expectEmpty(array);
            const auto& first = this->objectIn(*variant, 0).Body.EncodeableObject;
            EXPECT_EQ(this->type().Compare(first.Object, &this->filled()[0]), 0)
                << "what was there before stays there";
        }
    }
}

TYPED_TEST(ServiceRecordArray, set_array_goes_by_type_id_and_namespace_of_the_row)
{
    OpcUa_EncodeableType twin = this->type();
    OpcUa_EncodeableType own = twin;
    own.NamespaceUri = "urn:example";
    OpcUa_EncodeableType other = twin;
    other.TypeId = twin.BinaryEncodingTypeId;
    struct Row
    {
        const OpcUa_EncodeableType* type;
        OpcUa_StatusCode status;
    };
    for (const Row& row :
         {Row{&twin, OpcUa_Good}, Row{&own, OpcUa_BadTypeMismatch},
          Row{&other, OpcUa_BadTypeMismatch}, Row{nullptr, OpcUa_BadTypeMismatch}}) {
        OwnedVariant variant;
        this->fill(*variant);
        const OpcUa_EncodeableType*& type = this->objectIn(*variant, 1).Body.EncodeableObject.Type;
        type = row.type;
        TypeParam array;
        EXPECT_EQ(array.setArray(std::as_const(*variant)), row.status);
        EXPECT_EQ(array.length(), row.status == OpcUa_Good ? 3 : 0);
        type = &this->type();
    }
}

TYPED_TEST(ServiceRecordArray, every_failed_allocation_leaves_a_null_variant_and_the_array)
{
    TypeParam array = this->filled();
    for (const bool detaches : {false, true}) {
        OwnedVariant variant;
        const std::size_t failures =
            forEveryFailingAllocation([&] { return array.toVariant(variant.get(), detaches); },
                                      [&](OpcUa_StatusCode status) {
                                          EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                          EXPECT_EQ(variant->Datatype, OpcUaType_Null);
                                          EXPECT_EQ(array, this->filled());
                                      });
        EXPECT_GE(failures, 4u);
        this->expectFilled(*variant);
    }
    this->expectEmpty(array);
}

TYPED_TEST(ServiceRecordArray, every_failed_allocation_of_set_array_leaves_an_empty_array)
{
    OwnedVariant variant;
    this->fill(*variant);
    TypeParam array;
    for (const bool detaches : {false, true}) {
        const std::size_t failures =
            forEveryFailingAllocation([&] { return array.setArray(*variant, detaches); },
                                      [&](OpcUa_StatusCode status) {
                                          EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                          this->expectEmpty(array);
                                      });
        EXPECT_GE(failures, 1u);
        EXPECT_EQ(array, this->filled());
    }
}

TEST(UaWriteValues, sets_itself_from_a_variant_that_lies_in_one_of_its_own_elements)
{
    for (const bool detaches : {false, true}) {
        UaWriteValues inner;
        ASSERT_EQ(inner.create(1), OpcUa_Good);
        inner[0].AttributeId = 13;
        UaWriteValues array;
        ASSERT_EQ(array.create(2), OpcUa_Good);
        ASSERT_EQ(inner.toVariant(&array[1].Value.Value), OpcUa_Good);
        EXPECT_EQ(array.setArray(array[1].Value.Value, detaches), OpcUa_Good);
        EXPECT_EQ(array, inner);
    }
}

} // namespace
