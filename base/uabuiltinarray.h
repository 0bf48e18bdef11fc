#pragma once

#include "base/uaconvertiblearray.h"
#include "platform/types.h"
#include "stack/opcua_builtintype.h"

struct OpcUa_Variant;

/// Makes `variant` an array variant that takes the block over; what it held is cleared.
void UaBuiltInArray_MoveToVariant(OpcUa_Byte type, OpcUa_Int32 length, void* elements,
                                  OpcUa_Variant& variant);

/// Makes `variant` an array variant of a deep copy; what it held is cleared. `BadOutOfMemory` or the
/// status of the element that can't be copied leaves it Null.
[[nodiscard]] OpcUa_StatusCode UaBuiltInArray_CopyToVariant(OpcUa_Byte type, OpcUa_Int32 length,
                                                            const void* elements,
                                                            OpcUa_Variant& variant);

/// Copies the elements of an array variant. `BadTypeMismatch` unless it is an array of `type`.
[[nodiscard]] OpcUa_StatusCode
UaBuiltInArray_CopyFromVariant(OpcUa_Byte type, const OpcUa_Variant& variant, UaArrayBlock& block);

/// Takes the block out of an array variant, which is Null afterwards; a block behind a length below 1
/// is freed. `BadTypeMismatch` unless it is an array of `type`; it is what it was then.
[[nodiscard]] OpcUa_StatusCode
UaBuiltInArray_TakeFromVariant(OpcUa_Byte type, OpcUa_Variant& variant, UaArrayBlock& block);

/// True when `variant` is an array of `type`.
[[nodiscard]] bool UaBuiltInArray_IsArrayOf(const OpcUa_Variant& variant, OpcUa_Byte type);

/// Length and block of an array variant; a negative length or a missing block gives 0 and null.
[[nodiscard]] UaArrayBlock UaBuiltInArray_View(const OpcUa_Variant& variant);

/// The traits of arrays over a built-in type, which variants hold as they are.
template <typename ElementType, OpcUa_Byte Type>
struct UaBuiltInArrayTraits
{
    using Element = ElementType;
    static const OpcUa_ElementTraits& elementTraits() { return *OpcUa_BuiltInType_GetTraits(Type); }

    static OpcUa_StatusCode copyToVariant(OpcUa_Int32 length, const Element* elements,
                                          OpcUa_Variant& variant)
    {
        return UaBuiltInArray_CopyToVariant(Type, length, elements, variant);
    }
    static OpcUa_StatusCode moveToVariant(OpcUa_Int32 length, Element* elements,
                                          OpcUa_Variant& variant)
    {
        UaBuiltInArray_MoveToVariant(Type, length, elements, variant);
        return OpcUa_Good;
    }
    static OpcUa_StatusCode copyFromVariant(const OpcUa_Variant& variant, UaArrayBlock& block)
    {
        return UaBuiltInArray_CopyFromVariant(Type, variant, block);
    }
    static OpcUa_StatusCode takeFromVariant(OpcUa_Variant& variant, UaArrayBlock& block)
    {
        return UaBuiltInArray_TakeFromVariant(Type, variant, block);
    }
};

/// An array over a built-in type. Moving it into a variant never fails; moving out of one leaves that
/// Null.
template <typename ElementType, OpcUa_Byte Type>
class UaBuiltInArray : public UaConvertibleArray<UaBuiltInArrayTraits<ElementType, Type>>
{
    using Base = UaConvertibleArray<UaBuiltInArrayTraits<ElementType, Type>>;

public:
    using Base::Base;
};
