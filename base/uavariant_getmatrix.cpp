#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"

#include <utility>

// Getters of matrices.

using namespace UaVariantParts;

namespace {

/// True for a matrix of the type that lacks nothing.
bool isWholeMatrix(const OpcUa_Variant& variant, OpcUa_Byte type)
{
    if (variant.Datatype != type || !::isMatrix(variant)) {
        return false;
    }
    const OpcUa_VariantMatrix& matrix = variant.Value.Matrix;
    return (matrix.NoOfDimensions == 0 || matrix.Dimensions != nullptr) &&
           (matrixSize(matrix) == 0 || matrix.Elements != nullptr);
}

OpcUa_StatusCode copyDimensions(const OpcUa_VariantMatrix& matrix, UaInt32Array& dimensions)
{
    dimensions.attach(matrix.NoOfDimensions, matrix.Dimensions);
    return dimensions.length() < matrix.NoOfDimensions ? OpcUa_BadOutOfMemory : OpcUa_Good;
}

OpcUa_StatusCode copyElements(const OpcUa_VariantMatrix& matrix, OpcUa_Byte /*type*/,
                              UaByteArray& array)
{
    const OpcUa_Int32 size = matrixSize(matrix);
    UaByteArray copy(static_cast<const OpcUa_Byte*>(matrix.Elements), size);
    if (copy.size() != size) {
        return OpcUa_BadOutOfMemory;
    }
    array = std::move(copy);
    return OpcUa_Good;
}

template <typename Array>
OpcUa_StatusCode copyElements(const OpcUa_VariantMatrix& matrix, OpcUa_Byte type, Array& array)
{
    void* copy = nullptr;
    const OpcUa_StatusCode status = OpcUa_Elements_Copy(*OpcUa_BuiltInType_GetTraits(type),
                                                        matrix.Elements, matrixSize(matrix), &copy);
    if (OpcUa_IsGood(status)) {
        array.attach(matrixSize(matrix), static_cast<typename Array::Element*>(copy), true);
    }
    return status;
}

template <typename Array>
OpcUa_StatusCode getMatrix(const OpcUa_Variant& variant, OpcUa_Byte type, Array& array,
                           UaInt32Array& dimensions)
{
    if (variant.Datatype == OpcUaType_Null) {
        array = Array();
        dimensions.clear();
        return OpcUa_Good;
    }
    if (!isWholeMatrix(variant, type)) {
        return OpcUa_BadTypeMismatch;
    }
    UaInt32Array dimensionsCopy;
    OpcUa_StatusCode status = copyDimensions(variant.Value.Matrix, dimensionsCopy);
    if (OpcUa_IsGood(status)) {
        status = copyElements(variant.Value.Matrix, type, array);
    }
    if (OpcUa_IsGood(status)) {
        dimensions = std::move(dimensionsCopy);
    }
    return status;
}

} // namespace

OpcUa_StatusCode UaVariant::toBoolMatrix(UaBooleanArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Boolean, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toSByteMatrix(UaSByteArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_SByte, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toByteMatrix(UaByteArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Byte, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toInt16Matrix(UaInt16Array& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Int16, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toUInt16Matrix(UaUInt16Array& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_UInt16, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toInt32Matrix(UaInt32Array& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Int32, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toUInt32Matrix(UaUInt32Array& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_UInt32, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toInt64Matrix(UaInt64Array& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Int64, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toUInt64Matrix(UaUInt64Array& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_UInt64, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toFloatMatrix(UaFloatArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Float, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toDoubleMatrix(UaDoubleArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Double, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toStringMatrix(UaStringArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_String, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toDateTimeMatrix(UaDateTimeArray& aValues,
                                             UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_DateTime, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toGuidMatrix(UaGuidArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Guid, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toByteStringMatrix(UaByteStringArray& aValues,
                                               UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_ByteString, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toXmlElementMatrix(UaByteStringArray& aValues,
                                               UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_XmlElement, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toNodeIdMatrix(UaNodeIdArray& aValues, UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_NodeId, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toExpandedNodeIdMatrix(UaExpandedNodeIdArray& aValues,
                                                   UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_ExpandedNodeId, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toStatusCodeMatrix(UaStatusCodeArray& aValues,
                                               UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_StatusCode, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toQualifiedNameMatrix(UaQualifiedNameArray& aValues,
                                                  UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_QualifiedName, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toLocalizedTextMatrix(UaLocalizedTextArray& aValues,
                                                  UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_LocalizedText, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toExtensionObjectMatrix(UaExtensionObjectArray& aValues,
                                                    UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_ExtensionObject, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::toVariantMatrix(UaVariantArray& aValues,
                                            UaInt32Array& aDimensions) const
{
    return getMatrix(m_variant, OpcUaType_Variant, aValues, aDimensions);
}
