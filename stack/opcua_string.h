#pragma once

#include "platform/types.h"

#include <cstddef>

/// A text of UTF-8 bytes. A null content is the null string, which differs from an empty one.
///
/// Wherever a function takes a `const OpcUa_String*`, a plain NUL-terminated text may be passed in
/// its place: the first byte of the record is always 0, so an argument whose first byte is something
/// else is taken for the text itself (see OpcUa_String_FromPlainText). The empty plain text "" can't
/// be told from a record that way and must not be passed.
struct OpcUa_String
{
    OpcUa_UInt32 flags;   ///< OpcUa_String_OwnsContent or 0; the first byte in memory stays 0.
    OpcUa_UInt32 uLength; ///< Bytes, without a closing NUL.
    char* strContent;     ///< Followed by a NUL, unless it was attached with a length.
};
static_assert(offsetof(OpcUa_String, flags) == 0);
static_assert(sizeof(OpcUa_String) == 8 + sizeof(void*));

/// Bit of `flags`: `strContent` came from the stack's allocator and is freed by OpcUa_String_Clear.
/// Without it the content belongs to somebody else and must not be written to.
inline constexpr OpcUa_UInt32 OpcUa_String_OwnsContent = 0x100;

/// As a length: measure up to the NUL. As a maximum: no limit.
inline constexpr OpcUa_UInt32 OpcUa_String_WholeLength = 0xFFFFFFFFu;

/// Makes the null string, without looking at what was there. A null pointer is ignored.
void OpcUa_String_Initialize(OpcUa_String* string);

/// Frees owned content and makes the null string. Null pointers and a second call are allowed; a
/// plain text is left alone.
void OpcUa_String_Clear(OpcUa_String* string);

/// Clears the record and frees it, for those made by OpcUa_String_CreateNewString; the pointer
/// becomes null.
void OpcUa_String_Delete(OpcUa_String** string);

/// Passes a non-empty plain text where a string is asked.
[[nodiscard]] inline const OpcUa_String* OpcUa_String_FromPlainText(const char* text)
{
    return reinterpret_cast<const OpcUa_String*>(text);
}

/// The text itself: the content, the argument when it is a plain text, or null. Not closed by a NUL
/// when the content was attached with a length.
[[nodiscard]] const char* OpcUa_String_GetRawString(const OpcUa_String* string);

/// Length in bytes, without a closing NUL; 0 for null.
[[nodiscard]] OpcUa_UInt32 OpcUa_String_StrSize(const OpcUa_String* string);

/// Length in UTF-8 characters by the lead bytes: those of two to six bytes skip as many bytes as they
/// announce, or what is left of the text, and any other byte counts alone. 0 for null.
[[nodiscard]] OpcUa_UInt32 OpcUa_String_StrLen(const OpcUa_String* string);

/// True for a null pointer and for a record without content.
[[nodiscard]] bool OpcUa_String_IsNull(const OpcUa_String* string);

/// True for a record with content of length 0: a null string isn't empty, nor is a plain text.
[[nodiscard]] bool OpcUa_String_IsEmpty(const OpcUa_String* string);

/// The worker of the three attach functions. `length` is in bytes, or OpcUa_String_WholeLength to
/// measure; `reserve` has no effect. With `copyText` the content is a copy closed by a NUL, otherwise
/// `source` itself; with `freeOnClear` it is owned from then on and must come from the stack's
/// allocator. What `string` held is cleared; `source` may lie inside it only when it is copied.
/// `BadInvalidArgument` for a null pointer or a text too long for the record, `BadOutOfMemory`; the
/// string is null then and ownership stays with the caller.
[[nodiscard]] OpcUa_StatusCode OpcUa_String_AttachToString(const char* source, OpcUa_UInt32 length,
                                                           OpcUa_UInt32 reserve, bool copyText,
                                                           bool freeOnClear, OpcUa_String* string);

/// Points the string at a text that outlives it, without owning it.
[[nodiscard]] OpcUa_StatusCode OpcUa_String_AttachReadOnly(OpcUa_String* string,
                                                           const char* source);

/// Gives the string a copy of a text.
[[nodiscard]] OpcUa_StatusCode OpcUa_String_AttachCopy(OpcUa_String* string, const char* source);

/// Hands a text allocated by the stack's allocator over to the string.
[[nodiscard]] OpcUa_StatusCode OpcUa_String_AttachWithOwnership(OpcUa_String* string, char* source);

/// Allocates a record, to be freed by OpcUa_String_Delete. With `copyText` record and text lie in one
/// block and the text is closed by a NUL, so `freeOnClear` then has no effect; without, the record is
/// attached to `source` as OpcUa_String_AttachToString does. A null `source` makes a null string.
/// `BadInvalidArgument` for a null out pointer or a text too long for the record, `BadOutOfMemory`;
/// `*string` is null then.
[[nodiscard]] OpcUa_StatusCode OpcUa_String_CreateNewString(const char* source, OpcUa_UInt32 length,
                                                            OpcUa_UInt32 reserve, bool copyText,
                                                            bool freeOnClear,
                                                            OpcUa_String** string);

/// Deep copy, always owned and closed by a NUL; a null string gives a null string. What the
/// destination held is cleared. `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the
/// destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_String_CopyTo(const OpcUa_String* source,
                                                   OpcUa_String* destination);

/// Copies at most `maximum` bytes, whatever characters they cut. A null source gives the null string
/// and is Good. `BadInvalidArgument` for a null destination, `BadOutOfMemory`; the destination is
/// cleared then.
[[nodiscard]] OpcUa_StatusCode
OpcUa_String_StrnCpy(OpcUa_String* destination, const OpcUa_String* source, OpcUa_UInt32 maximum);

/// Order of the first `maximum` bytes: -1, 0 or 1. Two null pointers are equal, and a null pointer is
/// less than any record; then identical contents are equal, whatever the lengths, and a null content
/// is less. Otherwise the bytes up to the shortest of both lengths and the maximum decide, where an
/// embedded NUL ends the comparison; when they are equal and the maximum wasn't reached, the shorter
/// string is less. `ignoreCase` folds the letters A to Z only.
[[nodiscard]] OpcUa_Int32 OpcUa_String_StrnCmp(const OpcUa_String* left, const OpcUa_String* right,
                                               OpcUa_UInt32 maximum, bool ignoreCase);

/// OpcUa_String_StrnCmp without a maximum, case sensitive.
[[nodiscard]] OpcUa_Int32 OpcUa_String_Compare(const OpcUa_String* left, const OpcUa_String* right);
