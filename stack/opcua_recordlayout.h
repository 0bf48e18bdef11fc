#pragma once

#include "platform/types.h"
#include "stack/opcua_binaryforms.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_encodeabletype.h"

#include <cstddef>

// How the records of the known encodeable types lie in memory, and the operations that walk along
// such a description. The generated source holds one layout for each type; nobody else needs them.

struct OpcUa_EnumeratedType;
struct OpcUa_RecordLayout;

/// What a field holds, besides the numbers of the built-in types.
inline constexpr OpcUa_Byte OpcUa_FieldType_Enumeration = 26;
inline constexpr OpcUa_Byte OpcUa_FieldType_Record = 27;

/// One field of a record, or one array: a count and a pointer to a block.
struct OpcUa_RecordField
{
    const char* Name;
    OpcUa_UInt16 Offset;      ///< Of the value, or of the pointer to the block.
    OpcUa_UInt16 CountOffset; ///< Of the count of an array.
    OpcUa_Byte Type;          ///< A built-in type, or one of the OpcUa_FieldType constants.
    OpcUa_Byte BuiltInType;   ///< The same, with an enumeration as the number it is.
    bool IsArray;
    bool IsValue;                            ///< A single value of a built-in type.
    const OpcUa_RecordLayout* Record;        ///< The layout of a nested record, else null.
    const OpcUa_EnumeratedType* Enumeration; ///< The type of an enumeration, else null.
};

/// All fields of a record in the order of the encoding.
struct OpcUa_RecordLayout
{
    const OpcUa_EncodeableType* Type;
    const OpcUa_RecordField* Fields;
    OpcUa_UInt16 NoOfFields;
    OpcUa_UInt16 Size;        ///< Of the record in bytes.
    OpcUa_UInt16 MinimalSize; ///< Of the encoding in bytes, with empty texts and arrays.
    bool IsZeroed;            ///< The zero state of the record is a block of zeroes.
    bool IsPlain; ///< The record owns nothing: it is copied as memory and needs no clearing.
};

/// No record is larger. The walkers keep one on their stack.
inline constexpr std::size_t OpcUa_RecordLayout_MaxSize = 1024;

/// The layouts in the order of OpcUa_KnownEncodeableTypes, ended by a null pointer.
extern const OpcUa_RecordLayout* const OpcUa_RecordLayouts[];

// The operations behind the columns of a row (see "stack/opcua_encodeable.h").

void OpcUa_RecordLayout_Initialize(const OpcUa_RecordLayout& layout, void* record);
void OpcUa_RecordLayout_Clear(const OpcUa_RecordLayout& layout, void* record);
[[nodiscard]] OpcUa_StatusCode OpcUa_RecordLayout_GetSize(const OpcUa_RecordLayout& layout,
                                                          const void* record,
                                                          OpcUa_Encoder* encoder,
                                                          OpcUa_Int32* size);
[[nodiscard]] OpcUa_StatusCode OpcUa_RecordLayout_Encode(const OpcUa_RecordLayout& layout,
                                                         const void* record,
                                                         OpcUa_Encoder* encoder);
[[nodiscard]] OpcUa_StatusCode OpcUa_RecordLayout_Decode(const OpcUa_RecordLayout& layout,
                                                         void* record, OpcUa_Decoder* decoder);
[[nodiscard]] OpcUa_Int32 OpcUa_RecordLayout_Compare(const OpcUa_RecordLayout& layout,
                                                     const void* left, const void* right);
[[nodiscard]] OpcUa_StatusCode OpcUa_RecordLayout_Copy(const OpcUa_RecordLayout& layout,
                                                       const void* record, void** copy);
[[nodiscard]] OpcUa_StatusCode OpcUa_RecordLayout_CopyTo(const OpcUa_RecordLayout& layout,
                                                         const void* source, void* destination);

// What the generated source is made of.

[[nodiscard]] constexpr OpcUa_RecordField OpcUa_Field_Value(const char* name, std::size_t offset,
                                                            OpcUa_Byte type)
{
    return {name, static_cast<OpcUa_UInt16>(offset), 0, type, type, false, true, nullptr, nullptr};
}

[[nodiscard]] constexpr OpcUa_RecordField OpcUa_Field_Value(const char* name, std::size_t offset,
                                                            const OpcUa_RecordLayout& record)
{
    return {name,
            static_cast<OpcUa_UInt16>(offset),
            0,
            OpcUa_FieldType_Record,
            OpcUa_FieldType_Record,
            false,
            false,
            &record,
            nullptr};
}

[[nodiscard]] constexpr OpcUa_RecordField OpcUa_Field_Value(const char* name, std::size_t offset,
                                                            const OpcUa_EnumeratedType& enumeration)
{
    return {name,
            static_cast<OpcUa_UInt16>(offset),
            0,
            OpcUa_FieldType_Enumeration,
            OpcUaType_Int32,
            false,
            true,
            nullptr,
            &enumeration};
}

/// `type` is what the elements of the array are: anything that a value can be.
template <typename Type>
[[nodiscard]] constexpr OpcUa_RecordField
OpcUa_Field_Array(const char* name, std::size_t offset, std::size_t countOffset, const Type& type)
{
    OpcUa_RecordField field = OpcUa_Field_Value(name, offset, type);
    field.CountOffset = static_cast<OpcUa_UInt16>(countOffset);
    field.IsArray = true;
    field.IsValue = false;
    return field;
}

/// True when initialising the field makes all its bytes 0.
[[nodiscard]] constexpr bool OpcUa_Field_IsZeroed(const OpcUa_RecordField& field)
{
    switch (field.IsArray ? OpcUaType_Null : field.Type) {
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
    case OpcUaType_DiagnosticInfo:
        return false;
    case OpcUa_FieldType_Record:
        return field.Record->IsZeroed;
    default:
        return true;
    }
}

/// True when what the field holds never owns memory.
[[nodiscard]] constexpr bool OpcUa_Field_IsPlain(const OpcUa_RecordField& field)
{
    if (field.IsArray) {
        return false;
    }
    switch (field.Type) {
    case OpcUaType_DateTime:
    case OpcUaType_Guid:
    case OpcUaType_StatusCode:
    case OpcUa_FieldType_Enumeration:
        return true;
    case OpcUa_FieldType_Record:
        return field.Record->IsPlain;
    default:
        return field.Type <= OpcUaType_Double;
    }
}

/// The least bytes that the encoding of the field takes.
[[nodiscard]] constexpr OpcUa_UInt16 OpcUa_Field_MinimalSize(const OpcUa_RecordField& field)
{
    if (field.IsArray || field.Type == OpcUa_FieldType_Enumeration) {
        return sizeof(OpcUa_Int32);
    }
    return field.Type == OpcUa_FieldType_Record ? field.Record->MinimalSize
                                                : OpcUa_BinaryType_MinimalSizes[field.Type];
}

template <std::size_t Count>
[[nodiscard]] consteval OpcUa_RecordLayout
OpcUa_RecordLayout_Make(const OpcUa_EncodeableType& type, const OpcUa_RecordField (&fields)[Count],
                        std::size_t size)
{
    bool isZeroed = true;
    bool isPlain = true;
    std::size_t minimalSize = 0;
    for (const OpcUa_RecordField& field : fields) {
        isZeroed = isZeroed && OpcUa_Field_IsZeroed(field);
        isPlain = isPlain && OpcUa_Field_IsPlain(field);
        minimalSize += OpcUa_Field_MinimalSize(field);
    }
    // Division by zero stops the compiler where a record outgrows the walkers.
    const auto checkedSize = size / (size <= OpcUa_RecordLayout_MaxSize ? 1u : 0u);
    return {&type,
            fields,
            Count,
            static_cast<OpcUa_UInt16>(checkedSize),
            static_cast<OpcUa_UInt16>(minimalSize),
            isZeroed,
            isPlain};
}

/// The row of a type, with operations of its own.
template <const OpcUa_RecordLayout& Layout>
[[nodiscard]] consteval OpcUa_EncodeableType
OpcUa_RecordLayout_MakeType(const char* name, OpcUa_UInt32 typeId, OpcUa_UInt32 binaryEncodingId,
                            OpcUa_UInt32 xmlEncodingId)
{
    return {name,
            typeId,
            binaryEncodingId,
            xmlEncodingId,
            nullptr,
            Layout.Size,
            [](void* record) { OpcUa_RecordLayout_Initialize(Layout, record); },
            [](void* record) { OpcUa_RecordLayout_Clear(Layout, record); },
            [](const void* record, OpcUa_Encoder* encoder, OpcUa_Int32* size) {
                return OpcUa_RecordLayout_GetSize(Layout, record, encoder, size);
            },
            [](const void* record, OpcUa_Encoder* encoder) {
                return OpcUa_RecordLayout_Encode(Layout, record, encoder);
            },
            [](void* record, OpcUa_Decoder* decoder) {
                return OpcUa_RecordLayout_Decode(Layout, record, decoder);
            },
            [](const void* left, const void* right) {
                return OpcUa_RecordLayout_Compare(Layout, left, right);
            },
            [](const void* record, void** copy) {
                return OpcUa_RecordLayout_Copy(Layout, record, copy);
            },
            [](const void* source, void* destination) {
                return OpcUa_RecordLayout_CopyTo(Layout, source, destination);
            }};
}
