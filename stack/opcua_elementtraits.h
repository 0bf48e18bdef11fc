#pragma once

#include "platform/types.h"

#include <cstddef>

/// How the elements of a flat block are handled, whatever their type: one row per built-in type
/// (OpcUa_BuiltInType_GetTraits), or one made from the row of an encodeable type
/// (OpcUa_ElementTraits_FromEncodeableType). The functions work on one element each and follow the
/// pattern of the built-in types.
struct OpcUa_ElementTraits
{
    std::size_t Size; ///< Bytes of one element.
    bool IsPlain;     ///< Elements own nothing: they are copied as memory and need no clearing.
    bool IsByPointer; ///< As a scalar in a variant the element lies behind a pointer.
    bool IsNestable;  ///< Elements can hold further elements of such a type.
    void (*Initialize)(void* element);
    void (*Clear)(void* element);
    OpcUa_StatusCode (*CopyTo)(const void* source, void* destination);
    OpcUa_Int32 (*Compare)(const void* left, const void* right);
    /// Copies `count` elements into a zeroed block up to the first failure and sets `copied` to the
    /// number before it. What CopyTo would do, without a call through a pointer for each element;
    /// null where there is no such shortcut.
    OpcUa_StatusCode (*CopyBlock)(const void* source, OpcUa_Int32 count, void* block,
                                  OpcUa_Int32* copied);
    /// Frees what `count` elements own in a block that is about to be freed, and leaves them undefined.
    /// What Clear would do, without a call through a pointer for each element; null where there is no
    /// such shortcut.
    void (*ReleaseBlock)(void* block, OpcUa_Int32 count);
};

struct OpcUa_EncodeableType;

/// The traits of a record type by its row in the table of encodeable types.
[[nodiscard]] OpcUa_ElementTraits
OpcUa_ElementTraits_FromEncodeableType(const OpcUa_EncodeableType& type);

/// Clears `count` elements and leaves the block; nothing is done for plain elements, a null block or
/// a count below 1.
void OpcUa_Elements_Clear(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count);

/// Clears `count` elements and frees the block. Null is allowed.
void OpcUa_Elements_Free(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count);

/// Deep copy of `count` elements into a new block from the stack's allocator, one memory copy for
/// plain elements. A null block or a count below 1 gives a null block and Good. `BadInvalidArgument`
/// for a null out pointer, `BadOutOfMemory`, or the status of the first element that can't be copied;
/// the out pointer is null then.
[[nodiscard]] OpcUa_StatusCode OpcUa_Elements_Copy(const OpcUa_ElementTraits& traits,
                                                   const void* elements, OpcUa_Int32 count,
                                                   void** copy);

/// The result of the first pair of elements that differs, else 0. Blocks of `count` elements each;
/// the same block is equal, a null block less, and a count below 1 gives 0.
[[nodiscard]] OpcUa_Int32 OpcUa_Elements_Compare(const OpcUa_ElementTraits& traits,
                                                 const void* left, const void* right,
                                                 OpcUa_Int32 count);
