#pragma once

#include "base/uaconvertiblearray.h"
#include "platform/types.h"
#include "stack/opcua_encodeable.h"
#include "stack/opcua_encodeabletype.h"

struct OpcUa_Variant;

// In a variant each record lies in an extension object of its own, decoded. The functions below do
// that for records of any type.

/// Replaces the variant's value by an array of new extension objects with copies of the records.
[[nodiscard]] OpcUa_StatusCode UaServiceRecordArray_CopyToVariant(const OpcUa_EncodeableType& type,
                                                                  OpcUa_Int32 length,
                                                                  const void* records,
                                                                  OpcUa_Variant& variant);

/// The same with the records themselves: their block is freed. After a failure they stay where they
/// are, and the variant is Null.
[[nodiscard]] OpcUa_StatusCode UaServiceRecordArray_MoveToVariant(const OpcUa_EncodeableType& type,
                                                                  OpcUa_Int32 length, void* records,
                                                                  OpcUa_Variant& variant);

/// Copies the records out of a variant. `BadTypeMismatch` unless it is an array of extension objects
/// and each of them holds a decoded record of this type.
[[nodiscard]] OpcUa_StatusCode
UaServiceRecordArray_CopyFromVariant(const OpcUa_EncodeableType& type, const OpcUa_Variant& variant,
                                     UaArrayBlock& block);

/// The same with the records moved; the variant keeps extension objects with initialised records.
[[nodiscard]] OpcUa_StatusCode
UaServiceRecordArray_TakeFromVariant(const OpcUa_EncodeableType& type, OpcUa_Variant& variant,
                                     UaArrayBlock& block);

/// The traits of arrays over a record that the library knows.
template <typename Record>
struct UaServiceRecordArrayTraits
{
    using Element = Record;

    static const OpcUa_EncodeableType& type() { return *OpcUa_EncodeableTypeOf<Record>; }
    static OpcUa_ElementTraits elementTraits()
    {
        return OpcUa_ElementTraits_FromEncodeableType(type());
    }

    static OpcUa_StatusCode copyToVariant(OpcUa_Int32 length, const Element* elements,
                                          OpcUa_Variant& variant)
    {
        return UaServiceRecordArray_CopyToVariant(type(), length, elements, variant);
    }
    static OpcUa_StatusCode moveToVariant(OpcUa_Int32 length, Element* elements,
                                          OpcUa_Variant& variant)
    {
        return UaServiceRecordArray_MoveToVariant(type(), length, elements, variant);
    }
    static OpcUa_StatusCode copyFromVariant(const OpcUa_Variant& variant, UaArrayBlock& block)
    {
        return UaServiceRecordArray_CopyFromVariant(type(), variant, block);
    }
    static OpcUa_StatusCode takeFromVariant(OpcUa_Variant& variant, UaArrayBlock& block)
    {
        return UaServiceRecordArray_TakeFromVariant(type(), variant, block);
    }
};

/// An array over records of a service (OPC 10000-4). In a variant it is an array of extension objects,
/// each with one decoded record; setArray accepts nothing else. Where setArray moves, the variant keeps
/// its extension objects with initialised records.
template <typename Record>
class UaServiceRecordArray : public UaConvertibleArray<UaServiceRecordArrayTraits<Record>>
{
    using Base = UaConvertibleArray<UaServiceRecordArrayTraits<Record>>;

public:
    using Base::Base;

    /// Takes over a block from the stack's allocator, without a copy. It stays the caller's for a
    /// negative length or a null pointer, which leave the array empty; with a length of 0 it is freed.
    void attach(OpcUa_Int32 length, Record* pRecords)
    {
        Base::attach(length, pRecords, true);
        if (length == 0) {
            OpcUa_Elements_Free(UaServiceRecordArrayTraits<Record>::elementTraits(), pRecords, 0);
        }
    }

    /// The same for a count as others keep it. One above the range of a length leaves the array empty.
    void attach(OpcUa_UInt32 length, Record* pRecords)
    {
        attach(static_cast<OpcUa_Int32>(length), pRecords);
    }
};
