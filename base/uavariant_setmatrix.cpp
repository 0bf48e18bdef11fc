#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"
#include "platform/allocator.h"

#include <limits>
#include <utility>

// Setters of matrices.

using namespace UaVariantParts;

namespace {

/// The first dimension decides what all of them must be.
bool isLikeFirst(OpcUa_Int32 dimension, OpcUa_Int32 first)
{
    return dimension >= -1 && (first > 0 ? dimension > 0 : dimension == first);
}

OpcUa_StatusCode checkDimensions(OpcUa_Int32 elementCount, const UaInt32Array& dimensions)
{
    if (dimensions.length() == 0) {
        return elementCount == 0 ? OpcUa_Good : OpcUa_BadInvalidArgument;
    }
    const OpcUa_Int32 first = dimensions[0];
    OpcUa_Int64 product = first > 0 ? 1 : 0;
    for (const OpcUa_Int32 dimension : dimensions) {
        if (!isLikeFirst(dimension, first)) {
            return OpcUa_BadInvalidArgument;
        }
        // Both factors fit 31 bits, so the product fits 64.
        product *= dimension;
        if (product > std::numeric_limits<OpcUa_Int32>::max()) {
            return OpcUa_BadInvalidArgument;
        }
    }
    return product == elementCount ? OpcUa_Good : OpcUa_BadInvalidArgument;
}

/// A matrix that holds its dimensions and no elements yet.
OpcUa_StatusCode createMatrix(OpcUa_Byte type, OpcUa_Int32 elementCount,
                              const UaInt32Array& dimensions, OpcUa_Variant& matrix)
{
    const OpcUa_StatusCode status = checkDimensions(elementCount, dimensions);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    UaInt32Array copy(dimensions);
    if (copy.length() != dimensions.length()) {
        return OpcUa_BadOutOfMemory;
    }
    matrix.Datatype = type;
    matrix.ArrayType = OpcUa_VariantArrayType_Matrix;
    matrix.Value.Matrix = {copy.length(), nullptr, nullptr};
    matrix.Value.Matrix.Dimensions = copy.detach();
    return OpcUa_Good;
}

/// Finishes a matrix by its elements, or gives it up with the status of a failure.
OpcUa_StatusCode finish(OpcUa_Variant& target, OpcUa_Variant& matrix, void* elements,
                        OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(matrix.Value.Matrix.Dimensions);
        return status;
    }
    matrix.Value.Matrix.Elements = elements;
    moveTo(target, matrix);
    return OpcUa_Good;
}

OpcUa_StatusCode copyMatrix(OpcUa_Variant& target, OpcUa_Byte type, OpcUa_Int32 length,
                            const void* elements, const UaInt32Array& dimensions)
{
    OpcUa_Variant matrix = null();
    OpcUa_StatusCode status = createMatrix(type, length, dimensions, matrix);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    void* copy = nullptr;
    status = OpcUa_Elements_Copy(*OpcUa_BuiltInType_GetTraits(type), elements, length, &copy);
    return finish(target, matrix, copy, status);
}

template <typename Array>
OpcUa_StatusCode setMatrix(OpcUa_Variant& target, OpcUa_Byte type, const Array& array,
                           const UaInt32Array& dimensions)
{
    return copyMatrix(target, type, array.length(), array.rawArray(), dimensions);
}

template <typename Array>
OpcUa_StatusCode setMatrix(OpcUa_Variant& target, OpcUa_Byte type, Array& array,
                           const UaInt32Array& dimensions, bool bDetach)
{
    if (!bDetach) {
        return setMatrix(target, type, std::as_const(array), dimensions);
    }
    OpcUa_Variant matrix = null();
    const OpcUa_StatusCode status = createMatrix(type, array.length(), dimensions, matrix);
    return OpcUa_IsBad(status) ? status : finish(target, matrix, array.detach(), OpcUa_Good);
}

} // namespace

OpcUa_StatusCode UaVariant::setBoolMatrix(UaBooleanArray& aValues, const UaInt32Array& aDimensions,
                                          bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Boolean, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setBoolMatrix(const UaBooleanArray& aValues,
                                          const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Boolean, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setSByteMatrix(UaSByteArray& aValues, const UaInt32Array& aDimensions,
                                           bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_SByte, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setSByteMatrix(const UaSByteArray& aValues,
                                           const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_SByte, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setByteMatrix(UaByteArray& aValues, const UaInt32Array& aDimensions,
                                          bool bDetach)
{
    if (!bDetach) {
        return setByteMatrix(aValues, aDimensions);
    }
    OpcUa_Variant matrix = null();
    OpcUa_StatusCode status = createMatrix(OpcUaType_Byte, aValues.size(), aDimensions, matrix);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    status = aValues.detach(&bytes);
    return finish(m_variant, matrix, bytes.Data, status);
}

OpcUa_StatusCode UaVariant::setByteMatrix(const UaByteArray& aValues,
                                          const UaInt32Array& aDimensions)
{
    return copyMatrix(m_variant, OpcUaType_Byte, aValues.size(), aValues.data(), aDimensions);
}

OpcUa_StatusCode UaVariant::setInt16Matrix(UaInt16Array& aValues, const UaInt32Array& aDimensions,
                                           bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Int16, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setInt16Matrix(const UaInt16Array& aValues,
                                           const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Int16, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setUInt16Matrix(UaUInt16Array& aValues, const UaInt32Array& aDimensions,
                                            bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_UInt16, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setUInt16Matrix(const UaUInt16Array& aValues,
                                            const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_UInt16, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setInt32Matrix(UaInt32Array& aValues, const UaInt32Array& aDimensions,
                                           bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Int32, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setInt32Matrix(const UaInt32Array& aValues,
                                           const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Int32, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setUInt32Matrix(UaUInt32Array& aValues, const UaInt32Array& aDimensions,
                                            bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_UInt32, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setUInt32Matrix(const UaUInt32Array& aValues,
                                            const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_UInt32, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setInt64Matrix(UaInt64Array& aValues, const UaInt32Array& aDimensions,
                                           bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Int64, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setInt64Matrix(const UaInt64Array& aValues,
                                           const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Int64, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setUInt64Matrix(UaUInt64Array& aValues, const UaInt32Array& aDimensions,
                                            bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_UInt64, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setUInt64Matrix(const UaUInt64Array& aValues,
                                            const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_UInt64, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setFloatMatrix(UaFloatArray& aValues, const UaInt32Array& aDimensions,
                                           bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Float, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setFloatMatrix(const UaFloatArray& aValues,
                                           const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Float, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setDoubleMatrix(UaDoubleArray& aValues, const UaInt32Array& aDimensions,
                                            bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Double, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setDoubleMatrix(const UaDoubleArray& aValues,
                                            const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Double, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setStringMatrix(const UaStringArray& aValues,
                                            const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_String, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setDateTimeMatrix(UaDateTimeArray& aValues,
                                              const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_DateTime, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setDateTimeMatrix(const UaDateTimeArray& aValues,
                                              const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_DateTime, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setGuidMatrix(UaGuidArray& aValues, const UaInt32Array& aDimensions,
                                          bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Guid, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setGuidMatrix(const UaGuidArray& aValues,
                                          const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Guid, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setByteStringMatrix(UaByteStringArray& aValues,
                                                const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_ByteString, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setByteStringMatrix(const UaByteStringArray& aValues,
                                                const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_ByteString, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setXmlElementMatrix(UaByteStringArray& aValues,
                                                const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_XmlElement, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setXmlElementMatrix(const UaByteStringArray& aValues,
                                                const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_XmlElement, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setNodeIdMatrix(UaNodeIdArray& aValues, const UaInt32Array& aDimensions,
                                            bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_NodeId, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setNodeIdMatrix(const UaNodeIdArray& aValues,
                                            const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_NodeId, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setExpandedNodeIdMatrix(UaExpandedNodeIdArray& aValues,
                                                    const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_ExpandedNodeId, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setExpandedNodeIdMatrix(const UaExpandedNodeIdArray& aValues,
                                                    const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_ExpandedNodeId, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setStatusCodeMatrix(UaStatusCodeArray& aValues,
                                                const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_StatusCode, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setStatusCodeMatrix(const UaStatusCodeArray& aValues,
                                                const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_StatusCode, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setQualifiedNameMatrix(const UaQualifiedNameArray& aValues,
                                                   const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_QualifiedName, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setLocalizedTextMatrix(const UaLocalizedTextArray& aValues,
                                                   const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_LocalizedText, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setExtensionObjectMatrix(UaExtensionObjectArray& aValues,
                                                     const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_ExtensionObject, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setExtensionObjectMatrix(const UaExtensionObjectArray& aValues,
                                                     const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_ExtensionObject, aValues, aDimensions);
}

OpcUa_StatusCode UaVariant::setVariantMatrix(UaVariantArray& aValues,
                                             const UaInt32Array& aDimensions, bool bDetach)
{
    return setMatrix(m_variant, OpcUaType_Variant, aValues, aDimensions, bDetach);
}

OpcUa_StatusCode UaVariant::setVariantMatrix(const UaVariantArray& aValues,
                                             const UaInt32Array& aDimensions)
{
    return setMatrix(m_variant, OpcUaType_Variant, aValues, aDimensions);
}
