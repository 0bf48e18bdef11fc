#include "stack/opcua_variant.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "platform/trace.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_variantparts.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

void clearScalar(const OpcUa_ElementTraits& traits, OpcUa_VariantValue& value)
{
    if (traits.IsByPointer) {
        OpcUa_Elements_Free(traits, OpcUa_VariantValue_GetPointer(value), 1);
    } else {
        OpcUa_Elements_Clear(traits, &value, 1);
    }
}

void clearMatrix(const OpcUa_ElementTraits& traits, const OpcUa_VariantMatrix& matrix)
{
    const OpcUa_Int32 size = OpcUa_Variant_MatrixSize(&matrix);
    OpcUa_Memory_Free(matrix.Dimensions);
    if (size < 1) {
        OpcUa_Trace(OpcUa_TraceLevel_Error, "OpcUa_Variant_Clear: invalid matrix size!\n");
        return;
    }
    OpcUa_Elements_Free(traits, matrix.Elements, size);
}

void clearValue(const OpcUa_ElementTraits& traits, OpcUa_Variant& variant)
{
    switch (variant.ArrayType) {
    case OpcUa_VariantArrayType_Scalar:
        clearScalar(traits, variant.Value);
        break;
    case OpcUa_VariantArrayType_Array:
        OpcUa_Elements_Free(traits, variant.Value.Array.Elements, variant.Value.Array.Length);
        break;
    case OpcUa_VariantArrayType_Matrix:
        clearMatrix(traits, variant.Value.Matrix);
        break;
    default:
        break;
    }
}

OpcUa_StatusCode fillScalar(const OpcUa_ElementTraits& traits, const OpcUa_VariantValue& source,
                            OpcUa_VariantValue& copy)
{
    if (!traits.IsByPointer) {
        return traits.CopyTo(&source, &copy);
    }
    void* pointer = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_Elements_Copy(traits, OpcUa_VariantValue_GetPointer(source), 1, &pointer);
    OpcUa_VariantValue_SetPointer(copy, pointer);
    return status;
}

OpcUa_StatusCode fillArray(const OpcUa_ElementTraits& traits, const OpcUa_VariantArray& source,
                           OpcUa_VariantArray& copy)
{
    copy = {source.Length, nullptr};
    return OpcUa_Elements_Copy(traits, source.Elements, source.Length, &copy.Elements);
}

OpcUa_StatusCode fillMatrix(const OpcUa_ElementTraits& traits, const OpcUa_VariantMatrix& source,
                            OpcUa_VariantMatrix& copy)
{
    void* dimensions = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_Elements_Copy(*OpcUa_BuiltInType_GetTraits(OpcUaType_Int32), source.Dimensions,
                            source.NoOfDimensions, &dimensions);
    copy = {source.NoOfDimensions, static_cast<OpcUa_Int32*>(dimensions), nullptr};
    if (OpcUa_IsBad(status)) {
        copy.NoOfDimensions = 0;
        return status;
    }
    return OpcUa_Elements_Copy(traits, source.Elements, OpcUa_Variant_MatrixSize(&source),
                               &copy.Elements);
}

OpcUa_StatusCode fillVariant(const OpcUa_Variant& source, OpcUa_Variant& copy)
{
    const OpcUa_ElementTraits* traits = OpcUa_BuiltInType_GetTraits(source.Datatype);
    if (traits == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    copy.Datatype = source.Datatype;
    copy.ArrayType = source.ArrayType;
    switch (source.ArrayType) {
    case OpcUa_VariantArrayType_Scalar:
        return fillScalar(*traits, source.Value, copy.Value);
    case OpcUa_VariantArrayType_Array:
        return fillArray(*traits, source.Value.Array, copy.Value.Array);
    case OpcUa_VariantArrayType_Matrix:
        return fillMatrix(*traits, source.Value.Matrix, copy.Value.Matrix);
    default:
        return OpcUa_BadInvalidArgument;
    }
}

} // namespace

void OpcUa_Variant_Initialize(OpcUa_Variant* variant)
{
    if (variant != nullptr) {
        std::memset(variant, 0, sizeof(*variant));
    }
}

void OpcUa_Variant_Clear(OpcUa_Variant* variant)
{
    if (variant == nullptr) {
        return;
    }
    const OpcUa_ElementTraits* traits = OpcUa_BuiltInType_GetTraits(variant->Datatype);
    if (traits != nullptr) {
        clearValue(*traits, *variant);
    }
    OpcUa_Variant_Initialize(variant);
}

OpcUa_StatusCode OpcUa_Variant_CopyTo(const OpcUa_Variant* source, OpcUa_Variant* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_Variant_Initialize, OpcUa_Variant_Clear>(source, destination,
                                                                              fillVariant);
}

OpcUa_Int32 OpcUa_Variant_MatrixSize(const OpcUa_VariantMatrix* matrix)
{
    if (matrix == nullptr || (matrix->NoOfDimensions > 0 && matrix->Dimensions == nullptr)) {
        return 0;
    }
    OpcUa_Int64 size = 1;
    bool isTooLarge = false;
    for (OpcUa_Int32 i = 0; i < matrix->NoOfDimensions && size != 0; ++i) {
        // Both factors fit 32 bits here, so the product fits 64.
        size *= matrix->Dimensions[i];
        if (std::llabs(size) > std::numeric_limits<OpcUa_Int32>::max()) {
            isTooLarge = true;
            size = 1;
        }
    }
    return isTooLarge ? 0 : static_cast<OpcUa_Int32>(size);
}
