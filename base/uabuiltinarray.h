#pragma once

#include "base/uaarray.h"
#include "platform/types.h"
#include "stack/opcua_builtintype.h"

struct OpcUa_DataValue;
struct OpcUa_Variant;

/// The traits record of arrays over a built-in type.
template <typename ElementType, OpcUa_Byte Type>
struct UaBuiltInArrayTraits
{
    using Element = ElementType;
    static constexpr OpcUa_Byte BuiltInType = Type;
    static const OpcUa_ElementTraits& elementTraits() { return *OpcUa_BuiltInType_GetTraits(Type); }
};

/// Makes `variant` an array variant that takes the block over; what it held is cleared.
void UaBuiltInArray_MoveToVariant(OpcUa_Byte type, OpcUa_Int32 length, void* elements,
                                  OpcUa_Variant& variant);

/// Makes `variant` an array variant of a deep copy; what it held is cleared. `BadOutOfMemory` or the
/// status of the element that can't be copied leaves it Null.
[[nodiscard]] OpcUa_StatusCode UaBuiltInArray_CopyToVariant(OpcUa_Byte type, OpcUa_Int32 length,
                                                            const void* elements,
                                                            OpcUa_Variant& variant);

/// True when `variant` is an array of `type`.
[[nodiscard]] bool UaBuiltInArray_IsArrayOf(const OpcUa_Variant& variant, OpcUa_Byte type);

/// Length and block of an array variant; a negative length or a missing block gives 0 and null.
struct UaBuiltInArrayView
{
    OpcUa_Int32 length;
    void* elements;
};
[[nodiscard]] UaBuiltInArrayView UaBuiltInArray_View(const OpcUa_Variant& variant);

/// Takes the block out of an array variant, which is Null afterwards. A block behind a length below 1
/// is freed.
[[nodiscard]] UaBuiltInArrayView UaBuiltInArray_Take(OpcUa_Variant& variant);

/// Brings both time stamps of a data value to the current time, each read by itself.
void UaBuiltInArray_UpdateTimestamps(OpcUa_DataValue& dataValue);

/// The value of a data value, null for a null pointer.
[[nodiscard]] OpcUa_Variant* UaBuiltInArray_ValueOf(OpcUa_DataValue* pDataValue);

/// An array over a built-in type: what its number adds to the pattern are the ways into a variant or
/// a data value and back. `BadInvalidArgument` for a null target pointer; `BadOutOfMemory` or the
/// status of an element that can't be copied, and the target variant is Null then.
template <typename ElementType, OpcUa_Byte Type>
class UaBuiltInArray : public UaArray<UaBuiltInArrayTraits<ElementType, Type>>
{
    using Base = UaArray<UaBuiltInArrayTraits<ElementType, Type>>;

public:
    using Base::Base;

    /// Clears the variant and makes it an array of a deep copy.
    [[nodiscard]] OpcUa_StatusCode toVariant(OpcUa_Variant* pVariant) const
    {
        return pVariant == nullptr ? OpcUa_BadInvalidArgument
                                   : UaBuiltInArray_CopyToVariant(Type, this->length(),
                                                                  this->rawArray(), *pVariant);
    }

    /// With `bDetach` the block moves into the variant and the array is left empty.
    [[nodiscard]] OpcUa_StatusCode toVariant(OpcUa_Variant* pVariant, bool bDetach)
    {
        if (!bDetach || pVariant == nullptr) {
            return toVariant(pVariant);
        }
        const OpcUa_Int32 length = this->length();
        UaBuiltInArray_MoveToVariant(Type, length, this->detach(), *pVariant);
        return OpcUa_Good;
    }

    /// toVariant into the value of a data value. With `bUpdateTimestamps` its source and server time
    /// become the current time; its other fields stay, and after a failure its times too.
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pDataValue,
                                               bool bUpdateTimestamps) const
    {
        return updateTimestamps(pDataValue, bUpdateTimestamps,
                                toVariant(UaBuiltInArray_ValueOf(pDataValue)));
    }

    /// The same with the block moved when `bDetach` is set.
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pDataValue, bool bDetach,
                                               bool bUpdateTimestamps)
    {
        return updateTimestamps(pDataValue, bUpdateTimestamps,
                                toVariant(UaBuiltInArray_ValueOf(pDataValue), bDetach));
    }

    /// Replaces the content by a deep copy of an array variant's elements; a negative length counts
    /// as 0. `BadTypeMismatch` for a variant of another type or shape, `BadOutOfMemory`, or the
    /// status of an element that can't be copied; the array is empty then.
    [[nodiscard]] OpcUa_StatusCode setArray(const OpcUa_Variant& variant)
    {
        // Told before clearing, as a nested variant may lie in this very array.
        if (!UaBuiltInArray_IsArrayOf(variant, Type)) {
            this->clear();
            return OpcUa_BadTypeMismatch;
        }
        const UaBuiltInArrayView source = UaBuiltInArray_View(variant);
        void* copy = nullptr;
        const OpcUa_StatusCode status = OpcUa_Elements_Copy(*OpcUa_BuiltInType_GetTraits(Type),
                                                            source.elements, source.length, &copy);
        Base::attach(source.length, static_cast<ElementType*>(copy), true);
        return status;
    }

    /// With `bDetach` the block is taken over and the variant is left Null; after a
    /// `BadTypeMismatch` it is what it was.
    [[nodiscard]] OpcUa_StatusCode setArray(OpcUa_Variant& variant, bool bDetach)
    {
        if (!bDetach || !UaBuiltInArray_IsArrayOf(variant, Type)) {
            return setArray(variant);
        }
        const UaBuiltInArrayView taken = UaBuiltInArray_Take(variant);
        Base::attach(taken.length, static_cast<ElementType*>(taken.elements), true);
        return OpcUa_Good;
    }

private:
    static OpcUa_StatusCode updateTimestamps(OpcUa_DataValue* pDataValue, bool bUpdateTimestamps,
                                             OpcUa_StatusCode status)
    {
        if (bUpdateTimestamps && OpcUa_IsGood(status)) {
            UaBuiltInArray_UpdateTimestamps(*pDataValue);
        }
        return status;
    }
};
