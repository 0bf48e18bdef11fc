#include "platform/trace.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"
#include "stack/opcua_variant.h"
#include "stack/opcua_variantparts.h"

namespace {

OpcUa_Int32 comparePointers(const OpcUa_ElementTraits& traits, const void* left, const void* right)
{
    // A null pointer is placed as the type itself does it.
    return left == nullptr || right == nullptr ? traits.Compare(left, right)
                                               : OpcUa_Elements_Compare(traits, left, right, 1);
}

OpcUa_Int32 compareScalars(const OpcUa_ElementTraits& traits, const OpcUa_Variant& left,
                           const OpcUa_Variant& right)
{
    if (left.Datatype > OpcUaType_DataValue) {
        return 0;
    }
    return traits.IsByPointer ? comparePointers(traits, OpcUa_VariantValue_GetPointer(left.Value),
                                                OpcUa_VariantValue_GetPointer(right.Value))
                              : traits.Compare(&left.Value, &right.Value);
}

OpcUa_Int32 compareArrays(const OpcUa_ElementTraits& traits, const OpcUa_VariantArray& left,
                          const OpcUa_VariantArray& right)
{
    if (left.Length != right.Length) {
        return OpcUa_Int32_Compare(&left.Length, &right.Length);
    }
    return OpcUa_Elements_Compare(traits, left.Elements, right.Elements, left.Length);
}

/// Two matrices of one product are compared as flat blocks, whatever their dimensions.
OpcUa_Int32 compareMatrices(const OpcUa_ElementTraits& traits, const OpcUa_VariantMatrix& left,
                            const OpcUa_VariantMatrix& right)
{
    const OpcUa_Int32 leftSize = OpcUa_Variant_MatrixSize(&left);
    const OpcUa_Int32 rightSize = OpcUa_Variant_MatrixSize(&right);
    if (leftSize < 1 || rightSize < 1) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "OpcUa_Variant_Compare: invalid matrix size!\n");
    }
    if (leftSize != rightSize) {
        return OpcUa_Int32_Compare(&leftSize, &rightSize);
    }
    return OpcUa_Elements_Compare(traits, left.Elements, right.Elements, leftSize);
}

OpcUa_Int32 compareValues(const OpcUa_ElementTraits& traits, const OpcUa_Variant& left,
                          const OpcUa_Variant& right)
{
    switch (left.ArrayType) {
    case OpcUa_VariantArrayType_Scalar:
        return compareScalars(traits, left, right);
    case OpcUa_VariantArrayType_Array:
        return compareArrays(traits, left.Value.Array, right.Value.Array);
    case OpcUa_VariantArrayType_Matrix:
        return compareMatrices(traits, left.Value.Matrix, right.Value.Matrix);
    default:
        return 0;
    }
}

OpcUa_Int32 compareVariants(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    if (left.Datatype != right.Datatype) {
        return left.Datatype - right.Datatype;
    }
    if (left.ArrayType != right.ArrayType) {
        return left.ArrayType - right.ArrayType;
    }
    const OpcUa_ElementTraits* traits = OpcUa_BuiltInType_GetTraits(left.Datatype);
    return traits == nullptr ? 0 : compareValues(*traits, left, right);
}

} // namespace

OpcUa_Int32 OpcUa_Variant_Compare(const OpcUa_Variant* left, const OpcUa_Variant* right)
{
    return OpcUa_Record_Compare(left, right, compareVariants);
}
