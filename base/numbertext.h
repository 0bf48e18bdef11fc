#pragma once

#include "platform/types.h"

#include <array>
#include <string_view>

/// The texts of numbers, in a buffer of the caller and without a look at the locale.
namespace UaNumberText {

/// Room for the digits of 64 bits in base 2 and a sign.
using IntegerBuffer = std::array<char, 65>;

/// More decimals than these are 0 in any Double.
inline constexpr OpcUa_Int32 MaxPrecision = 1100;

/// Room for the longest text of a Double: sign, 309 digits, point and decimals.
using DoubleBuffer = std::array<char, 311 + MaxPrecision>;

/// Upper case digits in a base of 2 to 36, 10 in place of any other; a "-" before a negative number
/// in any base.
[[nodiscard]] std::string_view format(IntegerBuffer& buffer, OpcUa_Int64 value,
                                      OpcUa_Int32 base) noexcept;
[[nodiscard]] std::string_view format(IntegerBuffer& buffer, OpcUa_UInt64 value,
                                      OpcUa_Int32 base) noexcept;

/// As printf writes it: `form` is "f", "e" or "g", in either case, and "g" in place of any other; the
/// precision is 6 for a negative one and held at MaxPrecision.
[[nodiscard]] std::string_view format(DoubleBuffer& buffer, OpcUa_Double value, char form,
                                      OpcUa_Int32 precision) noexcept;

} // namespace UaNumberText
