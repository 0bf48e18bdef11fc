#include "base/uaarrays.h"
#include "base/uabytestring.h"
#include "base/uaextensionobject.h"
#include "base/uanodeid.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/testrecord.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

static_assert(std::is_standard_layout_v<UaVariant>);
static_assert(!std::is_polymorphic_v<UaVariant>);
static_assert(sizeof(UaVariant) == sizeof(OpcUa_Variant));
static_assert(alignof(UaVariant) == alignof(OpcUa_Variant));
static_assert(std::is_nothrow_move_constructible_v<UaVariant>);
static_assert(std::is_nothrow_move_assignable_v<UaVariant>);
static_assert(!std::is_convertible_v<OpcUa_Int32, UaVariant>);
static_assert(!std::is_constructible_v<UaVariant, const char*>);

UaVariant variantOf(const BuiltInSample& sample, VariantShape shape)
{
    OwnedVariant filled;
    makeShape(*filled, sample, shape);
    UaVariant variant;
    variant.attach(*filled);
    return variant;
}

bool isAllZero(const UaVariant& variant)
{
    return memoryOf(variant) == VariantMemory{};
}

void expectNull(const UaVariant& variant)
{
    EXPECT_TRUE(isAllZero(variant));
    EXPECT_EQ(variant.type(), OpcUaType_Null);
    EXPECT_TRUE(variant.isEmpty());
    EXPECT_FALSE(variant.isArray());
    EXPECT_FALSE(variant.isMatrix());
    EXPECT_EQ(variant.arraySize(), -1);
}

UaVariant arrayOf(OpcUa_Byte type, OpcUa_Int32 length, void* elements)
{
    OpcUa_Variant array{};
    array.Datatype = type;
    array.ArrayType = OpcUa_VariantArrayType_Array;
    array.Value.Array = {length, elements};
    UaVariant variant;
    variant.attach(array);
    return variant;
}

UaVariant matrixOf(OpcUa_Byte type, const std::vector<OpcUa_Int32>& dimensions, OpcUa_Int32 count)
{
    OwnedVariant filled;
    makeMatrix(*filled, type, dimensions, count);
    UaVariant variant;
    variant.attach(*filled);
    return variant;
}

TEST(UaVariant, default_is_null_with_all_bytes_zero)
{
    UaVariant variant;
    expectNull(variant);
    variant.clear();
    variant.clear();
    expectNull(variant);
}

TEST(UaVariant, copies_of_every_type_and_shape_are_deep_and_equal)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            const UaVariant source = variantOf(sample, shape);
            const UaVariant constructed(source);
            const UaVariant fromRecord(*source.toOpcUaVariant());
            UaVariant assigned = text("old");
            assigned = source;
            assigned = *&assigned;
            UaVariant assignedRecord = text("old");
            assignedRecord = *source.toOpcUaVariant();
            for (const UaVariant* copy : {&constructed, &fromRecord, &std::as_const(assigned),
                                          &std::as_const(assignedRecord)}) {
                EXPECT_EQ(copy->type(), sample.type);
                EXPECT_EQ(OpcUa_Variant_Compare(copy->toOpcUaVariant(), source.toOpcUaVariant()), 0)
                    << sample;
            }
        }
    }
}

TEST(UaVariant, moves_take_the_memory_and_leave_null)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            UaVariant source = variantOf(sample, shape);
            const VariantMemory memory = memoryOf(source);
            UaVariant constructed(std::move(source));
            expectNull(source); // NOLINT(bugprone-use-after-move): its state is the promise
            EXPECT_EQ(memoryOf(constructed), memory);
            UaVariant assigned = text("old");
            assigned = std::move(constructed);
            expectNull(constructed); // NOLINT(bugprone-use-after-move): its state is the promise
            EXPECT_EQ(memoryOf(assigned), memory);
            assigned = std::move(*&assigned);
            EXPECT_EQ(memoryOf(assigned), memory);
        }
    }
}

TEST(UaVariant, attach_and_detach_move_the_memory)
{
    OwnedVariant stack;
    makeShape(*stack, builtInSamples()[OpcUaType_String - 1], VariantShape::Array);
    const void* block = stack->Value.Array.Elements;
    UaVariant variant = text("old");
    variant.attach(*stack);
    EXPECT_EQ(variant.toOpcUaVariant()->Value.Array.Elements, block);
    EXPECT_EQ(stack->Datatype, OpcUaType_Null);
    variant.detach(nullptr);
    EXPECT_TRUE(variant.isArray());
    variant.detach(stack.get());
    EXPECT_EQ(stack->Value.Array.Elements, block);
    expectNull(variant);
}

TEST(UaVariant, lies_over_a_stack_variant)
{
    OpcUa_Variant stack{};
    stack.Datatype = OpcUaType_Int32;
    stack.Value.Int32 = 42;
    EXPECT_EQ(textOf(reinterpret_cast<const UaVariant&>(stack).toString()), "42");
}

TEST(UaVariant, copy_to_clears_the_target_first)
{
    OwnedVariant target;
    makeShape(*target, builtInSamples()[OpcUaType_String - 1], VariantShape::Array);
    EXPECT_EQ(int32(7).copyTo(target.get()), OpcUa_Good);
    EXPECT_EQ(target->Datatype, OpcUaType_Int32);
    EXPECT_EQ(target->Value.Int32, 7);
    EXPECT_EQ(nameOf(int32(7).copyTo(nullptr)), "BadInvalidArgument");
}

TEST(UaVariant, shape_is_told_by_array_type)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        const UaVariant scalar = variantOf(sample, VariantShape::Scalar);
        EXPECT_FALSE(scalar.isArray() || scalar.isMatrix() || scalar.isEmpty());
        const UaVariant array = variantOf(sample, VariantShape::Array);
        EXPECT_TRUE(array.isArray() && !array.isMatrix());
        const UaVariant matrix = variantOf(sample, VariantShape::Matrix);
        EXPECT_TRUE(matrix.isMatrix() && !matrix.isArray());
        for (const UaVariant* variant : {&scalar, &array, &matrix}) {
            EXPECT_EQ(variant->type(), sample.type);
        }
    }
}

TEST(UaVariant, array_size_and_dimensions)
{
    struct Row
    {
        UaVariant variant;
        OpcUa_Int32 size;
        std::vector<OpcUa_Int32> dimensions;
    };
    const std::vector<Row> rows = {
        {UaVariant(), -1, {}},
        {int32(1), -1, {}},
        {arrayOf(OpcUaType_Int32, 0, nullptr), 0, {0}},
        {arrayOf(OpcUaType_Int32, -1, nullptr), -1, {-1}},
        {variantOf(builtInSamples()[0], VariantShape::Array), 3, {3}},
        {variantOf(builtInSamples()[0], VariantShape::Matrix), 6, {2, 3}},
        {matrixOf(OpcUaType_Int32, {}, 0), 0, {}},
        {matrixOf(OpcUaType_Int32, {4}, 4), 4, {4}},
        {matrixOf(OpcUaType_Int32, {0, 0}, 0), 0, {0, 0}},
        {matrixOf(OpcUaType_Int32, {-1, -1}, 0), 0, {-1, -1}},
        {matrixOf(OpcUaType_Int32, {65536, 65536}, 0), 0, {65536, 65536}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.variant.arraySize(), row.size);
        UaInt32Array dimensions(1, &row.size);
        row.variant.dimensions(dimensions);
        EXPECT_EQ(std::vector<OpcUa_Int32>(dimensions.begin(), dimensions.end()), row.dimensions);
    }
}

TEST(UaVariant, matrix_without_its_dimensions_has_no_elements)
{
    OpcUa_Variant matrix{};
    matrix.Datatype = OpcUaType_Int32;
    matrix.ArrayType = OpcUa_VariantArrayType_Matrix;
    matrix.Value.Matrix = {2, nullptr, nullptr};
    UaVariant variant;
    variant.attach(matrix);
    EXPECT_EQ(variant.arraySize(), 0);
    UaInt32Array dimensions;
    variant.dimensions(dimensions);
    EXPECT_EQ(dimensions.length(), 0);
}

TEST(UaVariantElement, is_a_deep_copy_for_every_type_up_to_data_value)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        const UaVariant array = variantOf(sample, VariantShape::Array);
        UaVariant element;
        OpcUa_Variant taken = array[2];
        element.attach(taken);
        if (sample.type > OpcUaType_DataValue) {
            expectNull(element);
            continue;
        }
        OwnedVariant expected;
        makeScalar(*expected, sample);
        EXPECT_EQ(OpcUa_Variant_Compare(element.toOpcUaVariant(), expected.get()), 0) << sample;
    }
}

TEST(UaVariantElement, of_a_byte_string_is_a_byte)
{
    const OpcUa_Byte data[] = {1, 0xFE};
    UaVariant bytes(UaByteString(2, data));
    EXPECT_EQ(bytes[1].Datatype, OpcUaType_Byte);
    EXPECT_EQ(bytes[1].Value.Byte, 0xFE);
    EXPECT_EQ(bytes[0].Value.Byte, 1);
    EXPECT_EQ(bytes[2].Datatype, OpcUaType_Null);
    EXPECT_EQ(bytes[4294967295u].Datatype, OpcUaType_Null);
    EXPECT_EQ(UaVariant(UaByteString())[0].Datatype, OpcUaType_Null);
}

TEST(UaVariantElement, of_anything_else_is_null)
{
    const std::vector<UaVariant> rows = {UaVariant(),
                                         int32(5),
                                         text("text"),
                                         arrayOf(OpcUaType_Int32, -1, nullptr),
                                         arrayOf(OpcUaType_Int32, 3, nullptr),
                                         arrayOf(OpcUaType_Null, 3, OpcUa_Memory_Alloc(1)),
                                         matrixOf(OpcUaType_Int32, {2, 3}, 6)};
    for (const UaVariant& variant : rows) {
        const OpcUa_Variant element = variant[0];
        EXPECT_EQ(element.Datatype, OpcUaType_Null);
    }
    const UaVariant array = variantOf(builtInSamples()[0], VariantShape::Array);
    EXPECT_EQ(array[3].Datatype, OpcUaType_Null);
    EXPECT_EQ(array[4294967295u].Datatype, OpcUaType_Null);
}

std::string xml(const UaNodeId& nodeId)
{
    return textOf(nodeId.toXmlString());
}

UaStringArray uris(const std::vector<const char*>& texts)
{
    UaStringArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(texts.size())), OpcUa_Good);
    for (OpcUa_UInt32 i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(OpcUa_String_AttachCopy(&array[i], texts[i]), OpcUa_Good);
    }
    return array;
}

TEST(UaVariantDataType, is_the_built_in_type_number_in_namespace_0)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        if (sample.type == OpcUaType_ExtensionObject) {
            continue;
        }
        for (const VariantShape shape : allShapes) {
            const UaVariant variant = variantOf(sample, shape);
            EXPECT_EQ(variant.dataTypeId(), UaNodeId(OpcUa_UInt32{sample.type})) << sample;
            EXPECT_EQ(variant.dataTypeId(UaStringArray()), variant.dataTypeId());
            EXPECT_TRUE(variant.encodingTypeId().isNull());
        }
    }
    EXPECT_TRUE(UaVariant().dataTypeId().isNull());
}

TEST(UaVariantDataType, has_the_index_of_the_standards_namespace_in_a_table)
{
    const UaVariant variant = int32(1);
    EXPECT_EQ(xml(variant.dataTypeId(uris({"http://opcfoundation.org/UA/", "urn:a"}))), "i=6");
    EXPECT_EQ(xml(variant.dataTypeId(uris({"urn:a", "http://opcfoundation.org/UA/"}))), "ns=1;i=6");
    EXPECT_TRUE(variant.dataTypeId(uris({"urn:a"})).isNull());
    EXPECT_TRUE(variant.dataTypeId(uris({"http://opcfoundation.org/UA"})).isNull());
}

/// An array or a matrix of decoded objects.
UaVariant objects(const std::vector<OpcUa_Int32>& dimensions, OpcUa_UInt32 count)
{
    UaExtensionObjectArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(count)), OpcUa_Good);
    for (OpcUa_ExtensionObject& object : array) {
        fillWithTestRecord(object, 1, "record");
    }
    UaVariant variant;
    if (dimensions.empty()) {
        variant.setExtensionObjectArray(array, true);
        return variant;
    }
    const UaInt32Array sizes(static_cast<OpcUa_Int32>(dimensions.size()), dimensions.data());
    EXPECT_EQ(variant.setExtensionObjectMatrix(array, sizes, true), OpcUa_Good);
    return variant;
}

TEST(UaVariantDataType, of_an_extension_object_is_that_of_its_record)
{
    const UaStringArray table = uris({"urn:a", "http://opcfoundation.org/UA/"});
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    fillWithTestRecord(record, 1, "record");
    UaExtensionObject object;
    object.attach(record);
    struct Row
    {
        UaVariant variant;
        const char* plain;
        const char* byTable;
    };
    const std::vector<Row> rows = {{UaVariant(object), "i=1001", "ns=1;i=1001"},
                                   {objects({}, 1), "i=1001", "ns=1;i=1001"},
                                   {objects({}, 2), "i=0", "i=0"},
                                   {objects({}, 0), "i=0", "i=0"},
                                   {objects({2, 2}, 4), "i=1001", "ns=1;i=1001"},
                                   {objects({0, 0}, 0), "i=0", "i=0"}};
    for (const Row& row : rows) {
        EXPECT_EQ(xml(row.variant.dataTypeId()), row.plain);
        EXPECT_EQ(xml(row.variant.dataTypeId(table)), row.byTable);
        EXPECT_TRUE(row.variant.encodingTypeId().isNull());
    }
}

TEST(UaVariantDataType, encoding_type_id_is_that_of_an_encoded_extension_object)
{
    OpcUa_ExtensionObject record;
    OpcUa_ExtensionObject_Initialize(&record);
    record.TypeId.NodeId.Identifier.Numeric = 9;
    record.Encoding = OpcUa_ExtensionObjectEncoding_Binary;
    record.Body.Binary = {-1, nullptr};
    const UaVariant variant{UaExtensionObject(record)};
    EXPECT_EQ(xml(variant.encodingTypeId()), "i=9");
    EXPECT_TRUE(variant.dataTypeId().isNull());
}

TEST(UaVariantDataType, null_pointer_has_none)
{
    OpcUa_Variant pointerless{};
    pointerless.Datatype = OpcUaType_ExtensionObject;
    const auto& variant = reinterpret_cast<const UaVariant&>(pointerless);
    EXPECT_TRUE(variant.dataTypeId().isNull());
    EXPECT_TRUE(variant.dataTypeId(uris({"urn:a"})).isNull());
    EXPECT_TRUE(variant.encodingTypeId().isNull());
}

TEST(UaVariant, every_failed_allocation_of_a_copy_leaves_null)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            const UaVariant source = variantOf(sample, shape);
            forEveryFailingAllocation([&] { return UaVariant(source); }, expectNull);
            forEveryFailingAllocation(
                [&] {
                    OpcUa_Variant element = source[0];
                    UaVariant taken;
                    taken.attach(element);
                    return taken;
                },
                expectNull);
        }
    }
}

TEST(UaVariant, copies_in_eight_threads_share_nothing)
{
    const UaVariant source =
        variantOf(builtInSamples()[OpcUaType_Variant - 1], VariantShape::Matrix);
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&source] {
            for (int round = 0; round < 200; ++round) {
                UaVariant copy(source);
                UaVariant moved(std::move(copy));
                EXPECT_EQ(moved, source);
                moved.setString("dropped");
                EXPECT_NE(moved, source);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
