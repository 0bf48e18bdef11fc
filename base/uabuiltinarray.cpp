#include "base/uabuiltinarray.h"

#include "stack/opcua_variant.h"

void UaBuiltInArray_MoveToVariant(OpcUa_Byte type, OpcUa_Int32 length, void* elements,
                                  OpcUa_Variant& variant)
{
    OpcUa_Variant_Clear(&variant);
    variant.Datatype = type;
    variant.ArrayType = OpcUa_VariantArrayType_Array;
    variant.Value.Array = {length, elements};
}

OpcUa_StatusCode UaBuiltInArray_CopyToVariant(OpcUa_Byte type, OpcUa_Int32 length,
                                              const void* elements, OpcUa_Variant& variant)
{
    void* copy = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_Elements_Copy(*OpcUa_BuiltInType_GetTraits(type), elements, length, &copy);
    if (OpcUa_IsBad(status)) {
        OpcUa_Variant_Clear(&variant);
        return status;
    }
    UaBuiltInArray_MoveToVariant(type, length, copy, variant);
    return OpcUa_Good;
}

OpcUa_StatusCode UaBuiltInArray_CopyFromVariant(OpcUa_Byte type, const OpcUa_Variant& variant,
                                                UaArrayBlock& block)
{
    if (!UaBuiltInArray_IsArrayOf(variant, type)) {
        return OpcUa_BadTypeMismatch;
    }
    const UaArrayBlock source = UaBuiltInArray_View(variant);
    const OpcUa_StatusCode status = OpcUa_Elements_Copy(
        *OpcUa_BuiltInType_GetTraits(type), source.elements, source.length, &block.elements);
    block.length = block.elements != nullptr ? source.length : 0;
    return status;
}

OpcUa_StatusCode UaBuiltInArray_TakeFromVariant(OpcUa_Byte type, OpcUa_Variant& variant,
                                                UaArrayBlock& block)
{
    if (!UaBuiltInArray_IsArrayOf(variant, type)) {
        return OpcUa_BadTypeMismatch;
    }
    block = UaBuiltInArray_View(variant);
    if (block.elements != nullptr) {
        variant.Value.Array = {0, nullptr};
    }
    OpcUa_Variant_Clear(&variant);
    return OpcUa_Good;
}

bool UaBuiltInArray_IsArrayOf(const OpcUa_Variant& variant, OpcUa_Byte type)
{
    return variant.Datatype == type && variant.ArrayType == OpcUa_VariantArrayType_Array;
}

UaArrayBlock UaBuiltInArray_View(const OpcUa_Variant& variant)
{
    const OpcUa_VariantArray& array = variant.Value.Array;
    return array.Length < 1 || array.Elements == nullptr
               ? UaArrayBlock{}
               : UaArrayBlock{array.Length, array.Elements};
}
