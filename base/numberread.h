#pragma once

#include "platform/types.h"

#include <cstddef>
#include <string_view>

/// Reads numbers from text by the rules of the C library's functions in the "C" locale, whatever the
/// process' locale is. The whole text must be the number, but for white space (blank, tab, line feed,
/// vertical tab, form feed, carriage return) in front. An empty text reads as 0, as it does there;
/// every byte counts, also a NUL. False for any other text; the value is undefined then.
namespace UaNumberRead {

/// A decimal number with an optional sign within 64 bits (strtoll).
[[nodiscard]] bool readSigned(std::string_view text, OpcUa_Int64& value) noexcept;

/// A decimal number within 64 bits (strtoull), but without any "-".
[[nodiscard]] bool readUnsigned(std::string_view text, OpcUa_UInt64& value) noexcept;

/// "0x" or "0X" and 1 to `maxDigits` (at most 16) hexadecimal digits, without white space or sign.
[[nodiscard]] bool readHexadecimal(std::string_view text, std::size_t maxDigits,
                                   OpcUa_UInt64& value) noexcept;

/// A decimal or hexadecimal floating point number, "inf" or "nan" (strtod); the decimal point is
/// always ".". False also for a number too large or too close to 0 for a Double.
[[nodiscard]] bool readDouble(std::string_view text, OpcUa_Double& value) noexcept;

} // namespace UaNumberRead
