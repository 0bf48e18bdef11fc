#pragma once

#include "platform/types.h"
#include "stack/opcua_encodeabletype.h"

// The operations of the records that the library knows, each through the row of its type. One
// template stands for all of them; the header of each type gives them its names, such as
// OpcUa_ReadRequest_Clear.

/// The row of a record type; null for types that have none.
template <typename Record>
inline constexpr const OpcUa_EncodeableType* OpcUa_EncodeableTypeOf = nullptr;

/// Brings the record to its zero state, without looking at what was there: numbers and counts 0,
/// blocks null, other fields as their type's initialise leaves them. A null pointer is ignored.
template <typename Record>
void OpcUa_Encodeable_Initialize(Record* record)
{
    OpcUa_EncodeableTypeOf<Record>->Initialize(record);
}

/// Frees what the record owns and initialises it. Null pointers and a second call are allowed.
template <typename Record>
void OpcUa_Encodeable_Clear(Record* record)
{
    OpcUa_EncodeableTypeOf<Record>->Clear(record);
}

/// The bytes that Encode writes with this encoder. `BadInvalidArgument` for a null pointer, otherwise
/// the status of the first field without a size; the size is -1 then.
template <typename Record>
[[nodiscard]] OpcUa_StatusCode OpcUa_Encodeable_GetSize(const Record* record,
                                                        OpcUa_Encoder* encoder, OpcUa_Int32* size)
{
    return OpcUa_EncodeableTypeOf<Record>->GetSize(record, encoder, size);
}

/// Writes the fields in order. `BadInvalidArgument` for a null pointer, otherwise the status of the
/// first field that can't be written, which ends the writing.
template <typename Record>
[[nodiscard]] OpcUa_StatusCode OpcUa_Encodeable_Encode(const Record* record, OpcUa_Encoder* encoder)
{
    return OpcUa_EncodeableTypeOf<Record>->Encode(record, encoder);
}

/// Reads the fields in order into a record that need not be initialised: what it held is forgotten.
/// `BadInvalidArgument` for a null pointer, otherwise the status of the first field that can't be
/// read; the record is cleared then.
template <typename Record>
[[nodiscard]] OpcUa_StatusCode OpcUa_Encodeable_Decode(Record* record, OpcUa_Decoder* decoder)
{
    return OpcUa_EncodeableTypeOf<Record>->Decode(record, decoder);
}

/// The fields in order, each as its type compares; arrays of different counts give 1. The same
/// pointer is equal, a null pointer less.
template <typename Record>
[[nodiscard]] OpcUa_Int32 OpcUa_Encodeable_Compare(const Record* left, const Record* right)
{
    return OpcUa_EncodeableTypeOf<Record>->Compare(left, right);
}

/// Allocates a record by the stack's allocator and copies into it; the caller clears and frees it.
/// The failures are those of CopyTo; the out pointer is null then.
template <typename Record>
[[nodiscard]] OpcUa_StatusCode OpcUa_Encodeable_Copy(const Record* source, Record** copy)
{
    void* untyped = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_EncodeableTypeOf<Record>->Copy(source, copy == nullptr ? nullptr : &untyped);
    if (copy != nullptr) {
        *copy = static_cast<Record*>(untyped);
    }
    return status;
}

/// Deep copy into an initialised record; what it held is cleared. `BadInvalidArgument` for a null
/// pointer, `BadOutOfMemory`, or the status of a field that can't be copied; the destination is
/// cleared then.
template <typename Record>
[[nodiscard]] OpcUa_StatusCode OpcUa_Encodeable_CopyTo(const Record* source, Record* destination)
{
    return OpcUa_EncodeableTypeOf<Record>->CopyTo(source, destination);
}
