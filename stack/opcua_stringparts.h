#pragma once

#include "platform/allocator.h"
#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_string.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

// Parts that the sources of OpcUa_String share.

/// The longest text that a record can hold; one more is the sign for "measure".
inline constexpr std::size_t OpcUa_String_MaxSize = 0xFFFFFFFEu;

/// True when the argument is a text passed in place of a record.
[[nodiscard]] inline bool OpcUa_String_IsPlainText(const OpcUa_String* string)
{
    return *reinterpret_cast<const unsigned char*>(string) != 0;
}

/// The bytes behind a string argument of any form; no text and size 0 for null.
struct OpcUa_StringView
{
    const char* text;
    OpcUa_UInt32 size;
};

[[nodiscard]] inline OpcUa_StringView OpcUa_String_View(const OpcUa_String* string)
{
    if (string == nullptr) {
        return {nullptr, 0};
    }
    if (OpcUa_String_IsPlainText(string)) {
        const char* text = reinterpret_cast<const char*>(string);
        return {text, static_cast<OpcUa_UInt32>(std::min(std::strlen(text), OpcUa_String_MaxSize))};
    }
    return {string->strContent, string->strContent == nullptr ? 0 : string->uLength};
}

/// A copy of `size` bytes with a NUL behind it, from the stack's allocator, or null.
[[nodiscard]] inline char* OpcUa_String_DuplicateText(const char* text, std::size_t size)
{
    auto* copy = static_cast<char*>(OpcUa_Memory_Alloc(size + 1));
    if (copy != nullptr) {
        std::memcpy(copy, text, size);
        copy[size] = '\0';
    }
    return copy;
}

/// Deep copy into a null string. Inline because arrays of strings are copied through here.
[[nodiscard]] inline OpcUa_StatusCode OpcUa_String_CopyToNew(const OpcUa_String* source,
                                                             OpcUa_String* destination)
{
    const OpcUa_StringView view = OpcUa_String_View(source);
    if (view.text == nullptr) {
        return OpcUa_Good;
    }
    char* text = OpcUa_String_DuplicateText(view.text, view.size);
    if (text == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *destination = {OpcUa_String_OwnsContent, view.size, text};
    return OpcUa_Good;
}
