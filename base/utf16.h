#pragma once

#include <cstddef>
#include <string_view>

/// The conversions between UTF-8 and 16-bit units, which know one unit per character and no pairs of
/// surrogates. A lead byte takes as many bytes as it announces, whatever they are, and gives one unit;
/// any other byte above 127 gives one too. A character that isn't sound, or that doesn't fit 16 bits,
/// gives U+FFFD, so that no byte order, NUL or separator can come out of it that isn't in the text.
/// Any units survive the way to UTF-8 and back.
namespace UaUtf16 {

/// Units that a text of UTF-8 gives.
[[nodiscard]] std::size_t countUnits(std::string_view utf8) noexcept;

/// Writes countUnits(utf8) units, without a closing one.
void fromUtf8(std::string_view utf8, char16_t* units) noexcept;

/// Bytes of the UTF-8 form, one sequence per unit: one byte below 0x80, two below 0x800, otherwise
/// three.
[[nodiscard]] std::size_t countBytes(std::u16string_view units) noexcept;

/// Writes countBytes(units) bytes, without a closing NUL.
void toUtf8(std::u16string_view units, char* utf8) noexcept;

} // namespace UaUtf16
