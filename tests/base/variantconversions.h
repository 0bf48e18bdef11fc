#pragma once

#include "base/uavariant.h"

#include <vector>

/// A value, and what it becomes as each number type.
struct VariantConversion
{
    UaVariant source;

    /// The texts of the results as Boolean, SByte, Byte, Int16, UInt16, Int32, UInt32, Int64, UInt64,
    /// Float and Double, in this order and divided by blanks; "-" stands for BadOutOfRange.
    const char* results;
};

[[nodiscard]] std::vector<VariantConversion> conversionsOfIntegers();
[[nodiscard]] std::vector<VariantConversion> conversionsOfFloatings();
[[nodiscard]] std::vector<VariantConversion> conversionsOfTexts();
