#pragma once

#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uavariant.h"
#include "stack/opcua_builtintype.h"
#include "tests/stack/builtinsamples.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

// The array classes with their setters and getters of UaVariant, for tests that run over all of them.

/// Operations on one array class as the elements of one built-in type. The flagged setters are null
/// where a class is always copied, and the matrix operations for DataValue, which has none.
template <typename Array, OpcUa_Byte type, void (UaVariant::*copy)(const Array&),
          void (UaVariant::*detach)(Array&, bool), OpcUa_StatusCode (UaVariant::*get)(Array&) const,
          OpcUa_StatusCode (UaVariant::*copyMatrix)(const Array&, const UaInt32Array&),
          OpcUa_StatusCode (UaVariant::*detachMatrix)(Array&, const UaInt32Array&, bool),
          OpcUa_StatusCode (UaVariant::*getMatrix)(Array&, UaInt32Array&) const>
struct VariantArrayMember
{
    using ArrayType = Array;
    static constexpr OpcUa_Byte Type = type;
    static constexpr auto Copy = copy;
    static constexpr auto Detach = detach;
    static constexpr auto Get = get;
    static constexpr auto CopyMatrix = copyMatrix;
    static constexpr auto DetachMatrix = detachMatrix;
    static constexpr auto GetMatrix = getMatrix;
};

template <typename Array>
[[nodiscard]] OpcUa_Int32 lengthOf(const Array& array)
{
    return array.length();
}

[[nodiscard]] inline OpcUa_Int32 lengthOf(const UaByteArray& array)
{
    return array.size();
}

template <typename Array>
[[nodiscard]] const void* blockOf(const Array& array)
{
    return array.rawArray();
}

[[nodiscard]] inline const void* blockOf(const UaByteArray& array)
{
    return array.data();
}

/// `count` elements, of which the second differs from the others in one field.
template <typename Array>
void fillArray(const BuiltInSample& sample, OpcUa_Int32 count, Array& array)
{
    EXPECT_EQ(array.create(count), OpcUa_StatusCode{0});
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        (i == 1 ? sample.fillOther : sample.fill)(array.rawArray() + i);
    }
}

inline void fillArray(const BuiltInSample& sample, OpcUa_Int32 count, UaByteArray& array)
{
    EXPECT_TRUE(array.resize(count));
    OpcUa_Byte* bytes = array.data();
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        (i == 1 ? sample.fillOther : sample.fill)(bytes + i);
    }
}

using VariantArrayMembers = testing::Types<
    VariantArrayMember<UaBooleanArray, OpcUaType_Boolean, &UaVariant::setBoolArray,
                       &UaVariant::setBoolArray, &UaVariant::toBoolArray, &UaVariant::setBoolMatrix,
                       &UaVariant::setBoolMatrix, &UaVariant::toBoolMatrix>,
    VariantArrayMember<UaSByteArray, OpcUaType_SByte, &UaVariant::setSByteArray,
                       &UaVariant::setSByteArray, &UaVariant::toSByteArray,
                       &UaVariant::setSByteMatrix, &UaVariant::setSByteMatrix,
                       &UaVariant::toSByteMatrix>,
    VariantArrayMember<UaByteArray, OpcUaType_Byte, &UaVariant::setByteArray,
                       &UaVariant::setByteArray, &UaVariant::toByteArray, &UaVariant::setByteMatrix,
                       &UaVariant::setByteMatrix, &UaVariant::toByteMatrix>,
    VariantArrayMember<UaInt16Array, OpcUaType_Int16, &UaVariant::setInt16Array,
                       &UaVariant::setInt16Array, &UaVariant::toInt16Array,
                       &UaVariant::setInt16Matrix, &UaVariant::setInt16Matrix,
                       &UaVariant::toInt16Matrix>,
    VariantArrayMember<UaUInt16Array, OpcUaType_UInt16, &UaVariant::setUInt16Array,
                       &UaVariant::setUInt16Array, &UaVariant::toUInt16Array,
                       &UaVariant::setUInt16Matrix, &UaVariant::setUInt16Matrix,
                       &UaVariant::toUInt16Matrix>,
    VariantArrayMember<UaInt32Array, OpcUaType_Int32, &UaVariant::setInt32Array,
                       &UaVariant::setInt32Array, &UaVariant::toInt32Array,
                       &UaVariant::setInt32Matrix, &UaVariant::setInt32Matrix,
                       &UaVariant::toInt32Matrix>,
    VariantArrayMember<UaUInt32Array, OpcUaType_UInt32, &UaVariant::setUInt32Array,
                       &UaVariant::setUInt32Array, &UaVariant::toUInt32Array,
                       &UaVariant::setUInt32Matrix, &UaVariant::setUInt32Matrix,
                       &UaVariant::toUInt32Matrix>,
    VariantArrayMember<UaInt64Array, OpcUaType_Int64, &UaVariant::setInt64Array,
                       &UaVariant::setInt64Array, &UaVariant::toInt64Array,
                       &UaVariant::setInt64Matrix, &UaVariant::setInt64Matrix,
                       &UaVariant::toInt64Matrix>,
    VariantArrayMember<UaUInt64Array, OpcUaType_UInt64, &UaVariant::setUInt64Array,
                       &UaVariant::setUInt64Array, &UaVariant::toUInt64Array,
                       &UaVariant::setUInt64Matrix, &UaVariant::setUInt64Matrix,
                       &UaVariant::toUInt64Matrix>,
    VariantArrayMember<UaFloatArray, OpcUaType_Float, &UaVariant::setFloatArray,
                       &UaVariant::setFloatArray, &UaVariant::toFloatArray,
                       &UaVariant::setFloatMatrix, &UaVariant::setFloatMatrix,
                       &UaVariant::toFloatMatrix>,
    VariantArrayMember<UaDoubleArray, OpcUaType_Double, &UaVariant::setDoubleArray,
                       &UaVariant::setDoubleArray, &UaVariant::toDoubleArray,
                       &UaVariant::setDoubleMatrix, &UaVariant::setDoubleMatrix,
                       &UaVariant::toDoubleMatrix>,
    VariantArrayMember<UaStringArray, OpcUaType_String, &UaVariant::setStringArray, nullptr,
                       &UaVariant::toStringArray, &UaVariant::setStringMatrix, nullptr,
                       &UaVariant::toStringMatrix>,
    VariantArrayMember<UaDateTimeArray, OpcUaType_DateTime, &UaVariant::setDateTimeArray,
                       &UaVariant::setDateTimeArray, &UaVariant::toDateTimeArray,
                       &UaVariant::setDateTimeMatrix, &UaVariant::setDateTimeMatrix,
                       &UaVariant::toDateTimeMatrix>,
    VariantArrayMember<UaGuidArray, OpcUaType_Guid, &UaVariant::setGuidArray,
                       &UaVariant::setGuidArray, &UaVariant::toGuidArray, &UaVariant::setGuidMatrix,
                       &UaVariant::setGuidMatrix, &UaVariant::toGuidMatrix>,
    VariantArrayMember<UaByteStringArray, OpcUaType_ByteString, &UaVariant::setByteStringArray,
                       &UaVariant::setByteStringArray, &UaVariant::toByteStringArray,
                       &UaVariant::setByteStringMatrix, &UaVariant::setByteStringMatrix,
                       &UaVariant::toByteStringMatrix>,
    VariantArrayMember<UaByteStringArray, OpcUaType_XmlElement, &UaVariant::setXmlElementArray,
                       &UaVariant::setXmlElementArray, &UaVariant::toXmlElementArray,
                       &UaVariant::setXmlElementMatrix, &UaVariant::setXmlElementMatrix,
                       &UaVariant::toXmlElementMatrix>,
    VariantArrayMember<UaNodeIdArray, OpcUaType_NodeId, &UaVariant::setNodeIdArray,
                       &UaVariant::setNodeIdArray, &UaVariant::toNodeIdArray,
                       &UaVariant::setNodeIdMatrix, &UaVariant::setNodeIdMatrix,
                       &UaVariant::toNodeIdMatrix>,
    VariantArrayMember<UaExpandedNodeIdArray, OpcUaType_ExpandedNodeId,
                       &UaVariant::setExpandedNodeIdArray, &UaVariant::setExpandedNodeIdArray,
                       &UaVariant::toExpandedNodeIdArray, &UaVariant::setExpandedNodeIdMatrix,
                       &UaVariant::setExpandedNodeIdMatrix, &UaVariant::toExpandedNodeIdMatrix>,
    VariantArrayMember<UaStatusCodeArray, OpcUaType_StatusCode, &UaVariant::setStatusCodeArray,
                       &UaVariant::setStatusCodeArray, &UaVariant::toStatusCodeArray,
                       &UaVariant::setStatusCodeMatrix, &UaVariant::setStatusCodeMatrix,
                       &UaVariant::toStatusCodeMatrix>,
    VariantArrayMember<UaQualifiedNameArray, OpcUaType_QualifiedName,
                       &UaVariant::setQualifiedNameArray, nullptr, &UaVariant::toQualifiedNameArray,
                       &UaVariant::setQualifiedNameMatrix, nullptr,
                       &UaVariant::toQualifiedNameMatrix>,
    VariantArrayMember<UaLocalizedTextArray, OpcUaType_LocalizedText,
                       &UaVariant::setLocalizedTextArray, nullptr, &UaVariant::toLocalizedTextArray,
                       &UaVariant::setLocalizedTextMatrix, nullptr,
                       &UaVariant::toLocalizedTextMatrix>,
    VariantArrayMember<UaExtensionObjectArray, OpcUaType_ExtensionObject,
                       &UaVariant::setExtensionObjectArray, &UaVariant::setExtensionObjectArray,
                       &UaVariant::toExtensionObjectArray, &UaVariant::setExtensionObjectMatrix,
                       &UaVariant::setExtensionObjectMatrix, &UaVariant::toExtensionObjectMatrix>,
    VariantArrayMember<UaDataValues, OpcUaType_DataValue, &UaVariant::setDataValueArray, nullptr,
                       &UaVariant::toDataValueArray, nullptr, nullptr, nullptr>,
    VariantArrayMember<UaVariantArray, OpcUaType_Variant, &UaVariant::setVariantArray,
                       &UaVariant::setVariantArray, &UaVariant::toVariantArray,
                       &UaVariant::setVariantMatrix, &UaVariant::setVariantMatrix,
                       &UaVariant::toVariantMatrix>>;
