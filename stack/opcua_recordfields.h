#pragma once

#include "stack/opcua_recordlayout.h"

#include <cstddef>

// How the walkers reach the fields of a record whose type they don't know.

/// A field's value, or the pointer to an array's block, by its offset.
template <typename T = void>
[[nodiscard]] inline T* OpcUa_Field_At(void* record, OpcUa_UInt16 offset)
{
    return static_cast<T*>(static_cast<void*>(static_cast<char*>(record) + offset));
}

template <typename T = void>
[[nodiscard]] inline const T* OpcUa_Field_At(const void* record, OpcUa_UInt16 offset)
{
    return static_cast<const T*>(
        static_cast<const void*>(static_cast<const char*>(record) + offset));
}

/// The block of an array field and its count as they stand.
[[nodiscard]] inline void*& OpcUa_Field_Block(const OpcUa_RecordField& field, void* record)
{
    return *OpcUa_Field_At<void*>(record, field.Offset);
}

[[nodiscard]] inline void* OpcUa_Field_Block(const OpcUa_RecordField& field, const void* record)
{
    return *OpcUa_Field_At<void*>(record, field.Offset);
}

[[nodiscard]] inline OpcUa_Int32& OpcUa_Field_Count(const OpcUa_RecordField& field, void* record)
{
    return *OpcUa_Field_At<OpcUa_Int32>(record, field.CountOffset);
}

[[nodiscard]] inline OpcUa_Int32 OpcUa_Field_Count(const OpcUa_RecordField& field,
                                                   const void* record)
{
    return *OpcUa_Field_At<OpcUa_Int32>(record, field.CountOffset);
}

/// The record at a place of a block.
[[nodiscard]] inline void* OpcUa_Record_At(const OpcUa_RecordLayout& layout, void* block,
                                           OpcUa_Int32 index)
{
    return static_cast<char*>(block) + static_cast<std::size_t>(index) * layout.Size;
}

[[nodiscard]] inline const void* OpcUa_Record_At(const OpcUa_RecordLayout& layout,
                                                 const void* block, OpcUa_Int32 index)
{
    return static_cast<const char*>(block) + static_cast<std::size_t>(index) * layout.Size;
}

/// The fields of a layout, for a range loop.
struct OpcUa_RecordFields
{
    const OpcUa_RecordLayout& layout;
    [[nodiscard]] const OpcUa_RecordField* begin() const { return layout.Fields; }
    [[nodiscard]] const OpcUa_RecordField* end() const { return layout.Fields + layout.NoOfFields; }
};

/// Frees what a record owns and leaves it undefined, for one that is about to be freed or initialised.
void OpcUa_RecordLayout_Release(const OpcUa_RecordLayout& layout, void* record);

/// Releases the first `count` records of a block and frees it; null is allowed.
void OpcUa_RecordLayout_FreeBlock(const OpcUa_RecordLayout& layout, void* block, OpcUa_Int32 count);
