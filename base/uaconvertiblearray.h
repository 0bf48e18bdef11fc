#pragma once

#include "base/uaarray.h"
#include "platform/status.h"
#include "platform/types.h"

struct OpcUa_DataValue;
struct OpcUa_Variant;

/// Length and block of an array on its way out of a variant; 0 and null for an empty one.
struct UaArrayBlock
{
    OpcUa_Int32 length = 0;
    void* elements = nullptr;
};

/// Brings both time stamps of a data value to the current time, each read by itself.
void UaConvertibleArray_UpdateTimestamps(OpcUa_DataValue& dataValue);

/// The value of a data value, null for a null pointer.
[[nodiscard]] OpcUa_Variant* UaConvertibleArray_ValueOf(OpcUa_DataValue* pDataValue);

/// An array with ways into a variant or a data value and back. `BadInvalidArgument` for a null target
/// pointer; `BadOutOfMemory` or the status of an element that can't be copied, and the target variant
/// is Null then.
///
/// What the variant holds is a matter of `Traits`, which adds to those of UaArray:
/// - `copyToVariant(length, elements, variant)` and `moveToVariant(length, elements, variant)`, which
///   replace the variant's value; the latter takes the block over unless it fails,
/// - `copyFromVariant(variant, block)` and `takeFromVariant(variant, block)`, which give
///   `BadTypeMismatch` for a variant of another type or shape.
template <typename Traits>
class UaConvertibleArray : public UaArray<Traits>
{
    using Base = UaArray<Traits>;

public:
    using Base::Base;

    /// Clears the variant and makes it an array of a deep copy.
    [[nodiscard]] OpcUa_StatusCode toVariant(OpcUa_Variant* pVariant) const
    {
        return pVariant == nullptr
                   ? OpcUa_BadInvalidArgument
                   : Traits::copyToVariant(this->length(), this->rawArray(), *pVariant);
    }

    /// With `bDetach` the elements move into the variant and the array is left empty, unless that
    /// fails.
    [[nodiscard]] OpcUa_StatusCode toVariant(OpcUa_Variant* pVariant, bool bDetach)
    {
        if (!bDetach || pVariant == nullptr) {
            return toVariant(pVariant);
        }
        const OpcUa_StatusCode status =
            Traits::moveToVariant(this->length(), this->rawArray(), *pVariant);
        if (OpcUa_IsGood(status)) {
            static_cast<void>(this->detach());
        }
        return status;
    }

    /// toVariant into the value of a data value. With `bUpdateTimestamps` its source and server time
    /// become the current time; its other fields stay, and after a failure its times too.
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pDataValue,
                                               bool bUpdateTimestamps) const
    {
        return updateTimestamps(pDataValue, bUpdateTimestamps,
                                toVariant(UaConvertibleArray_ValueOf(pDataValue)));
    }

    /// The same with the elements moved when `bDetach` is set.
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pDataValue, bool bDetach,
                                               bool bUpdateTimestamps)
    {
        return updateTimestamps(pDataValue, bUpdateTimestamps,
                                toVariant(UaConvertibleArray_ValueOf(pDataValue), bDetach));
    }

    /// Replaces the content by a deep copy of an array variant's elements; a negative length counts
    /// as 0. `BadTypeMismatch` for a variant of another type or shape, `BadOutOfMemory`, or the
    /// status of an element that can't be copied; the array is empty then.
    [[nodiscard]] OpcUa_StatusCode setArray(const OpcUa_Variant& variant)
    {
        UaArrayBlock block;
        return takeBlock(Traits::copyFromVariant(variant, block), block);
    }

    /// With `bDetach` the elements are moved out of the variant; after a `BadTypeMismatch` it is what
    /// it was.
    [[nodiscard]] OpcUa_StatusCode setArray(OpcUa_Variant& variant, bool bDetach)
    {
        if (!bDetach) {
            return setArray(variant);
        }
        UaArrayBlock block;
        return takeBlock(Traits::takeFromVariant(variant, block), block);
    }

private:
    // After the variant was read, as that may lie in this very array.
    OpcUa_StatusCode takeBlock(OpcUa_StatusCode status, const UaArrayBlock& block)
    {
        Base::attach(block.length, static_cast<typename Traits::Element*>(block.elements), true);
        return status;
    }

    static OpcUa_StatusCode updateTimestamps(OpcUa_DataValue* pDataValue, bool bUpdateTimestamps,
                                             OpcUa_StatusCode status)
    {
        if (bUpdateTimestamps && OpcUa_IsGood(status)) {
            UaConvertibleArray_UpdateTimestamps(*pDataValue);
        }
        return status;
    }
};
