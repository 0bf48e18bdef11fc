#include "base/uabuiltinarray.h"

#include "stack/opcua_datavalue.h"
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

bool UaBuiltInArray_IsArrayOf(const OpcUa_Variant& variant, OpcUa_Byte type)
{
    return variant.Datatype == type && variant.ArrayType == OpcUa_VariantArrayType_Array;
}

UaBuiltInArrayView UaBuiltInArray_View(const OpcUa_Variant& variant)
{
    const OpcUa_VariantArray& array = variant.Value.Array;
    return array.Length < 1 || array.Elements == nullptr
               ? UaBuiltInArrayView{0, nullptr}
               : UaBuiltInArrayView{array.Length, array.Elements};
}

UaBuiltInArrayView UaBuiltInArray_Take(OpcUa_Variant& variant)
{
    const UaBuiltInArrayView taken = UaBuiltInArray_View(variant);
    if (taken.elements != nullptr) {
        variant.Value.Array = {0, nullptr};
    }
    OpcUa_Variant_Clear(&variant);
    return taken;
}

void UaBuiltInArray_UpdateTimestamps(OpcUa_DataValue& dataValue)
{
    dataValue.SourceTimestamp = OpcUa_DateTime_UtcNow();
    dataValue.ServerTimestamp = OpcUa_DateTime_UtcNow();
}

OpcUa_Variant* UaBuiltInArray_ValueOf(OpcUa_DataValue* pDataValue)
{
    return pDataValue == nullptr ? nullptr : &pDataValue->Value;
}
