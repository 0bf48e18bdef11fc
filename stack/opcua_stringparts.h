#pragma once

#include "platform/allocator.h"
#include "platform/types.h"
#include "stack/opcua_string.h"

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
