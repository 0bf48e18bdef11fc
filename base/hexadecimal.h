#pragma once

#include "base/uastring.h"

#include <cstddef>
#include <string_view>

/// Bytes as hexadecimal digits: two per byte, the upper half first.
namespace UaHexadecimal {

inline constexpr std::string_view Digits = "0123456789ABCDEF";

/// The value of a digit in either case, -1 for any other character.
[[nodiscard]] constexpr int valueOf(char digit) noexcept
{
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    return digit >= 'a' && digit <= 'f' ? digit - 'a' + 10 : -1;
}

/// Writes two upper case digits per byte, without a NUL.
void encode(const OpcUa_Byte* data, std::size_t size, char* text) noexcept;

/// The text for some bytes, with `spaces` one blank between them; an empty text for none. The null
/// string when it would be too long or memory is short.
[[nodiscard]] UaString encode(const OpcUa_Byte* data, std::size_t size, bool spaces);

/// Reads an even number of digits and writes a byte for every two. False for any other text; what was
/// written until then stands.
[[nodiscard]] bool decode(std::string_view text, OpcUa_Byte* data) noexcept;

} // namespace UaHexadecimal
