#include "tests/stack/variantsamples.h"

#include "platform/allocator.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_extensionobject.h"
#include "tests/stack/testrecord.h"

#include <algorithm>
#include <cstring>

namespace {

/// A block of initialised elements.
void* allocateElements(OpcUa_Byte type, OpcUa_Int32 count)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    auto* elements =
        static_cast<char*>(OpcUa_Memory_AllocArray(static_cast<std::size_t>(count), traits.Size));
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        traits.Initialize(elements + static_cast<std::size_t>(i) * traits.Size);
    }
    return elements;
}

void* allocateFilled(const BuiltInSample& sample, OpcUa_Int32 count)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(sample.type);
    void* elements = allocateElements(sample.type, count);
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        sample.fill(static_cast<char*>(elements) + static_cast<std::size_t>(i) * traits.Size);
    }
    return elements;
}

void setDimensions(OpcUa_VariantMatrix& matrix, const std::vector<OpcUa_Int32>& dimensions)
{
    matrix.NoOfDimensions = static_cast<OpcUa_Int32>(dimensions.size());
    matrix.Dimensions =
        static_cast<OpcUa_Int32*>(OpcUa_Memory_AllocArray(dimensions.size(), sizeof(OpcUa_Int32)));
    std::copy(dimensions.begin(), dimensions.end(), matrix.Dimensions);
}

void nestVariants(OpcUa_Variant* variant, OpcUa_Byte arrayType, OpcUa_UInt32 levels)
{
    for (OpcUa_UInt32 i = 0; i < levels; ++i) {
        auto* inner = static_cast<OpcUa_Variant*>(allocateElements(OpcUaType_Variant, 1));
        variant->Datatype = OpcUaType_Variant;
        variant->ArrayType = arrayType;
        if (arrayType == OpcUa_VariantArrayType_Array) {
            variant->Value.Array = {1, inner};
        } else {
            variant->Value.Variant = inner;
        }
        variant = inner;
    }
}

void nestDataValues(OpcUa_Variant* variant, OpcUa_UInt32 levels)
{
    for (OpcUa_UInt32 i = 0; i < levels; ++i) {
        auto* inner = static_cast<OpcUa_DataValue*>(allocateElements(OpcUaType_DataValue, 1));
        variant->Datatype = OpcUaType_DataValue;
        variant->Value.DataValue = inner;
        variant = &inner->Value;
    }
}

void nestExtensionObjects(OpcUa_Variant& variant, OpcUa_UInt32 levels)
{
    auto* object =
        static_cast<OpcUa_ExtensionObject*>(allocateElements(OpcUaType_ExtensionObject, 1));
    variant.Datatype = OpcUaType_ExtensionObject;
    variant.Value.ExtensionObject = object;
    for (OpcUa_UInt32 i = 1; i < levels; ++i) {
        fillWithTestRecord(*object, 1, "record");
        object = &testRecordOf(*object).Next;
    }
}

void nestDiagnosticInfos(OpcUa_Variant& variant, OpcUa_UInt32 levels)
{
    auto* info = static_cast<OpcUa_DiagnosticInfo*>(allocateElements(OpcUaType_DiagnosticInfo, 1));
    variant.Datatype = OpcUaType_DiagnosticInfo;
    variant.ArrayType = OpcUa_VariantArrayType_Array;
    variant.Value.Array = {1, info};
    for (OpcUa_UInt32 i = 1; i < levels; ++i) {
        info->InnerDiagnosticInfo =
            static_cast<OpcUa_DiagnosticInfo*>(allocateElements(OpcUaType_DiagnosticInfo, 1));
        info = info->InnerDiagnosticInfo;
    }
}

} // namespace

void makeScalar(OpcUa_Variant& variant, const BuiltInSample& sample)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(sample.type);
    variant.Datatype = sample.type;
    if (traits.IsByPointer) {
        void* pointer = allocateFilled(sample, 1);
        std::memcpy(&variant.Value, &pointer, sizeof(pointer));
    } else {
        traits.Initialize(&variant.Value);
        sample.fill(&variant.Value);
    }
}

void makeArray(OpcUa_Variant& variant, const BuiltInSample& sample, OpcUa_Int32 length)
{
    variant.Datatype = sample.type;
    variant.ArrayType = OpcUa_VariantArrayType_Array;
    variant.Value.Array = {length, allocateFilled(sample, length)};
}

void makeMatrix(OpcUa_Variant& variant, OpcUa_Byte type, const std::vector<OpcUa_Int32>& dimensions,
                OpcUa_Int32 elementCount)
{
    variant.Datatype = type;
    variant.ArrayType = OpcUa_VariantArrayType_Matrix;
    setDimensions(variant.Value.Matrix, dimensions);
    variant.Value.Matrix.Elements =
        elementCount == 0 ? nullptr : allocateElements(type, elementCount);
}

void makeShape(OpcUa_Variant& variant, const BuiltInSample& sample, VariantShape shape)
{
    switch (shape) {
    case VariantShape::Scalar:
        makeScalar(variant, sample);
        break;
    case VariantShape::Array:
        makeArray(variant, sample, 3);
        break;
    case VariantShape::Matrix:
        variant.Datatype = sample.type;
        variant.ArrayType = OpcUa_VariantArrayType_Matrix;
        setDimensions(variant.Value.Matrix, {2, 3});
        variant.Value.Matrix.Elements = allocateFilled(sample, 6);
        break;
    }
}

void makeNested(OpcUa_Variant& variant, NestingKind kind, OpcUa_UInt32 levels)
{
    switch (kind) {
    case NestingKind::ArrayOfVariants:
        nestVariants(&variant, OpcUa_VariantArrayType_Array, levels);
        break;
    case NestingKind::ScalarVariant:
        nestVariants(&variant, OpcUa_VariantArrayType_Scalar, levels);
        break;
    case NestingKind::DataValue:
        nestDataValues(&variant, levels);
        break;
    case NestingKind::ExtensionObject:
        nestExtensionObjects(variant, levels);
        break;
    case NestingKind::DiagnosticInfo:
        nestDiagnosticInfos(variant, levels);
        break;
    }
}
