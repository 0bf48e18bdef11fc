#pragma once

#include "platform/types.h"

/// A block of bytes from the stack's allocator. Length -1 is the null byte string; 0 is an empty one
/// with or without a block.
struct OpcUa_ByteString
{
    OpcUa_Int32 Length; ///< Bytes, or -1.
    OpcUa_Byte* Data;   ///< Owned.
};
static_assert(sizeof(OpcUa_ByteString) == 2 * sizeof(void*));

/// An XML element: the bytes of its text. The same record, so the functions of ByteString serve it.
using OpcUa_XmlElement = OpcUa_ByteString;

/// Makes the null byte string, without looking at what was there. A null pointer is ignored.
void OpcUa_ByteString_Initialize(OpcUa_ByteString* byteString);

/// Frees the block and makes the null byte string. Null pointers and a second call are allowed.
void OpcUa_ByteString_Clear(OpcUa_ByteString* byteString);

/// Deep copy; a null one stays null and an empty one empty. What the destination held is cleared.
/// `BadInvalidArgument` for a null pointer or a positive length without a block, `BadOutOfMemory`;
/// the destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_ByteString_CopyTo(const OpcUa_ByteString* source,
                                                       OpcUa_ByteString* destination);

/// 0 for the same record, 1 when one pointer is null; otherwise the difference of the lengths, and
/// with equal lengths the first difference of the bytes as -1 or 1. Lengths below 1 are equal.
[[nodiscard]] OpcUa_Int32 OpcUa_ByteString_Compare(const OpcUa_ByteString* left,
                                                   const OpcUa_ByteString* right);

/// Appends the first `length` bytes of the source to the destination, the whole source for a length
/// below 1. `BadInvalidArgument` for a null argument, a source that is the destination, a destination
/// shorter than 1, an empty source where the whole is asked, or a source shorter than `length`;
/// `BadOutOfMemory` also when the sum doesn't fit a length. After a failure the destination is what
/// it was.
[[nodiscard]] OpcUa_StatusCode OpcUa_ByteString_Concatenate(const OpcUa_ByteString* source,
                                                            OpcUa_ByteString* destination,
                                                            OpcUa_Int32 length);

// One pattern of functions per type, also where two types share a record.
inline constexpr auto& OpcUa_XmlElement_Initialize = OpcUa_ByteString_Initialize;
inline constexpr auto& OpcUa_XmlElement_Clear = OpcUa_ByteString_Clear;
inline constexpr auto& OpcUa_XmlElement_CopyTo = OpcUa_ByteString_CopyTo;
inline constexpr auto& OpcUa_XmlElement_Compare = OpcUa_ByteString_Compare;
