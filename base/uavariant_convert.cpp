#include "base/numberread.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <type_traits>
#include <utility>

// Conversions to numbers.

using namespace UaVariantParts;

namespace {

constexpr std::size_t TextLimit = 100;
constexpr std::size_t TextLimit64 = 30;

constexpr OpcUa_Double TwoTo31 = 2147483648.0;
constexpr OpcUa_Double TwoTo32 = 4294967296.0;
constexpr OpcUa_Double TwoTo63 = 9223372036854775808.0;
constexpr OpcUa_Double TwoTo64 = 18446744073709551616.0;

/// Range of floating point numbers that a target takes, both ends included. A NaN is in no range.
struct FloatingRange
{
    OpcUa_Double first;
    OpcUa_Double last;

    [[nodiscard]] bool holds(OpcUa_Double value) const { return value >= first && value <= last; }
};

template <typename Target>
constexpr FloatingRange wholeRange = {
    static_cast<OpcUa_Double>(std::numeric_limits<Target>::min()),
    static_cast<OpcUa_Double>(std::numeric_limits<Target>::max())};

/// The largest Double below 2^63: nothing between the two can be stored.
constexpr FloatingRange int64Range = {-TwoTo63, 9223372036854774784.0};

/// What each target takes from a Float and from a Double. The wider ends of Int32, UInt32 and UInt64
/// are kept as they have always been.
template <typename Target>
FloatingRange rangeOf(OpcUa_Byte source)
{
    const bool isFloat = source == OpcUaType_Float;
    if constexpr (std::is_same_v<Target, OpcUa_Int32>) {
        return {-TwoTo31, isFloat ? TwoTo31 : TwoTo31 - 1};
    } else if constexpr (std::is_same_v<Target, OpcUa_UInt32>) {
        return {0, isFloat ? TwoTo32 : TwoTo32 - 1};
    } else if constexpr (std::is_same_v<Target, OpcUa_Int64>) {
        return int64Range;
    } else if constexpr (std::is_same_v<Target, OpcUa_UInt64>) {
        return {0, TwoTo64};
    } else {
        return wholeRange<Target>;
    }
}

/// Cuts off the fraction as the processor does: what 32 bits can't hold, NaN too, becomes the
/// smallest number, of which narrower types keep the low bits.
template <typename Target>
Target truncateSigned(OpcUa_Double value)
{
    using Wide = std::conditional_t<sizeof(Target) == 8, OpcUa_Int64, OpcUa_Int32>;
    constexpr OpcUa_Double limit = sizeof(Target) == 8 ? TwoTo63 : TwoTo31;
    const bool fits = value > -limit - 1 && value < limit;
    return static_cast<Target>(fits ? static_cast<Wide>(value) : std::numeric_limits<Wide>::min());
}

/// Cuts off the fraction and keeps the low bits.
template <typename Target>
Target truncateUnsigned(OpcUa_Double value)
{
    return static_cast<Target>(value < TwoTo64 ? static_cast<OpcUa_UInt64>(value) : 0);
}

/// Only the two narrow signed targets let a NaN through.
template <typename Target>
constexpr bool takesNan =
    std::is_same_v<Target, OpcUa_SByte> || std::is_same_v<Target, OpcUa_Int16>;

template <typename Target>
OpcUa_StatusCode fromFloating(OpcUa_Byte source, OpcUa_Double value, Target& result)
{
    const bool passes = takesNan<Target> && std::isnan(value);
    if (!passes && !rangeOf<Target>(source).holds(value)) {
        return OpcUa_BadOutOfRange;
    }
    if constexpr (std::is_signed_v<Target>) {
        result = truncateSigned<Target>(value < 0 ? value - 0.5 : value + 0.5);
    } else {
        result = truncateUnsigned<Target>(value + 0.5);
    }
    return OpcUa_Good;
}

template <typename Target, typename Source>
OpcUa_StatusCode fromInteger(Source value, Target& result)
{
    if (!std::in_range<Target>(value)) {
        return OpcUa_BadOutOfRange;
    }
    result = static_cast<Target>(value);
    return OpcUa_Good;
}

/// Deliberate: a Byte is cut out of an Int64 that fits 31 bits.
OpcUa_StatusCode fromInt64(OpcUa_Int64 value, OpcUa_Byte& result)
{
    if (value < 0 || value > std::numeric_limits<OpcUa_Int32>::max()) {
        return OpcUa_BadOutOfRange;
    }
    result = static_cast<OpcUa_Byte>(value & 0xFF);
    return OpcUa_Good;
}

template <typename Target>
OpcUa_StatusCode fromInt64(OpcUa_Int64 value, Target& result)
{
    return fromInteger(value, result);
}

/// Digits of a hexadecimal text that a target takes; Byte takes none.
template <typename Target>
constexpr std::size_t hexadecimalDigits = sizeof(Target) == 1 ? 0 : 2 * sizeof(Target);

template <typename Target>
OpcUa_StatusCode fromText(std::string_view text, Target& result)
{
    if (text.size() >= (sizeof(Target) == 8 ? TextLimit64 : TextLimit)) {
        return OpcUa_BadOutOfRange;
    }
    if constexpr (std::is_signed_v<Target>) {
        OpcUa_Int64 value = 0;
        return UaNumberRead::readSigned(text, value) ? fromInteger(value, result)
                                                     : OpcUa_BadOutOfRange;
    } else {
        OpcUa_UInt64 value = 0;
        const bool isRead = UaNumberRead::readUnsigned(text, value) ||
                            UaNumberRead::readHexadecimal(text, hexadecimalDigits<Target>, value);
        return isRead ? fromInteger(value, result) : OpcUa_BadOutOfRange;
    }
}

template <typename Target>
OpcUa_StatusCode toInteger(const OpcUa_Variant& variant, Target& result)
{
    const OpcUa_VariantValue& value = variant.Value;
    switch (isScalar(variant) ? variant.Datatype : OpcUaType_Null) {
    case OpcUaType_Boolean:
        result = value.Boolean != OpcUa_False ? 1 : 0;
        return OpcUa_Good;
    case OpcUaType_SByte:
        return fromInteger(value.SByte, result);
    case OpcUaType_Byte:
        return fromInteger(value.Byte, result);
    case OpcUaType_Int16:
        return fromInteger(value.Int16, result);
    case OpcUaType_UInt16:
        return fromInteger(value.UInt16, result);
    case OpcUaType_Int32:
        return fromInteger(value.Int32, result);
    case OpcUaType_UInt32:
        return fromInteger(value.UInt32, result);
    case OpcUaType_Int64:
        return fromInt64(value.Int64, result);
    case OpcUaType_UInt64:
        return fromInteger(value.UInt64, result);
    case OpcUaType_Float:
        return fromFloating(OpcUaType_Float, OpcUa_Double{value.Float}, result);
    case OpcUaType_Double:
        return fromFloating(OpcUaType_Double, value.Double, result);
    case OpcUaType_String:
        return fromText(viewOf(value.String), result);
    default:
        return OpcUa_BadOutOfRange;
    }
}

/// A Float that is as large or as close to 0 as its type can't be is refused.
OpcUa_StatusCode narrow(OpcUa_Double value, OpcUa_Float& result)
{
    constexpr OpcUa_Double largest = std::numeric_limits<OpcUa_Float>::max();
    constexpr OpcUa_Double smallest = std::numeric_limits<OpcUa_Float>::min();
    const OpcUa_Double magnitude = std::fabs(value);
    if (magnitude > largest || (magnitude < smallest && magnitude != 0)) {
        return OpcUa_BadOutOfRange;
    }
    result = static_cast<OpcUa_Float>(value);
    return OpcUa_Good;
}

OpcUa_StatusCode narrow(OpcUa_Double value, OpcUa_Double& result)
{
    result = value;
    return OpcUa_Good;
}

/// The low 63 bits, and the top bit added back. A Float takes no UInt64.
OpcUa_StatusCode fromUInt64(OpcUa_UInt64 value, OpcUa_Double& result)
{
    constexpr OpcUa_UInt64 topBit = OpcUa_UInt64{1} << 63;
    result = static_cast<OpcUa_Double>(static_cast<OpcUa_Int64>(value & ~topBit));
    if ((value & topBit) != 0) {
        result += TwoTo63;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode fromUInt64(OpcUa_UInt64 /*value*/, OpcUa_Float& /*result*/)
{
    return OpcUa_BadOutOfRange;
}

template <typename Target>
OpcUa_StatusCode fromTextToFloating(std::string_view text, Target& result)
{
    OpcUa_Double value = 0;
    const bool isRead = text.size() < TextLimit && UaNumberRead::readDouble(text, value);
    return isRead ? narrow(value, result) : OpcUa_BadOutOfRange;
}

template <typename Target, typename Source>
OpcUa_StatusCode convertTo(Source value, Target& result)
{
    result = static_cast<Target>(value);
    return OpcUa_Good;
}

template <typename Target>
OpcUa_StatusCode toFloating(const OpcUa_Variant& variant, Target& result)
{
    const OpcUa_VariantValue& value = variant.Value;
    switch (isScalar(variant) ? variant.Datatype : OpcUaType_Null) {
    case OpcUaType_Boolean:
        return convertTo(value.Boolean != OpcUa_False ? 1 : 0, result);
    case OpcUaType_SByte:
        return convertTo(value.SByte, result);
    case OpcUaType_Byte:
        return convertTo(value.Byte, result);
    case OpcUaType_Int16:
        return convertTo(value.Int16, result);
    case OpcUaType_UInt16:
        return convertTo(value.UInt16, result);
    case OpcUaType_Int32:
        return convertTo(value.Int32, result);
    case OpcUaType_UInt32:
        return convertTo(value.UInt32, result);
    case OpcUaType_Int64:
        return convertTo(value.Int64, result);
    case OpcUaType_UInt64:
        return fromUInt64(value.UInt64, result);
    case OpcUaType_Float:
        return convertTo(value.Float, result);
    case OpcUaType_Double:
        return narrow(value.Double, result);
    case OpcUaType_String:
        return fromTextToFloating(viewOf(value.String), result);
    default:
        return OpcUa_BadOutOfRange;
    }
}

bool isTrueText(std::string_view text)
{
    constexpr std::string_view word = "false";
    if (text == "0") {
        return false;
    }
    return text.size() != word.size() ||
           !std::equal(text.begin(), text.end(), word.begin(), [](char character, char letter) {
               return character == letter || character == letter - 'a' + 'A';
           });
}

/// Any number but 0 is true; `isTrue` stays for a type that is no number.
bool readTruth(const OpcUa_Variant& variant, bool& isTrue)
{
    const OpcUa_VariantValue& value = variant.Value;
    switch (variant.Datatype) {
    case OpcUaType_Boolean:
    case OpcUaType_SByte:
    case OpcUaType_Byte:
        isTrue = value.Byte != 0;
        return true;
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
        isTrue = value.UInt16 != 0;
        return true;
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
        isTrue = value.UInt32 != 0;
        return true;
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
        isTrue = value.UInt64 != 0;
        return true;
    case OpcUaType_Float:
        isTrue = value.Float != 0;
        return true;
    case OpcUaType_Double:
        isTrue = value.Double != 0;
        return true;
    case OpcUaType_String:
        isTrue = isTrueText(viewOf(value.String));
        return true;
    default:
        return false;
    }
}

} // namespace

OpcUa_StatusCode UaVariant::toBool(OpcUa_Boolean& value) const
{
    if (!isScalar(m_variant)) {
        return OpcUa_BadOutOfRange;
    }
    bool isTrue = false;
    if (!readTruth(m_variant, isTrue)) {
        return OpcUa_BadTypeMismatch;
    }
    value = isTrue ? OpcUa_True : OpcUa_False;
    return OpcUa_Good;
}

OpcUa_StatusCode UaVariant::toSByte(OpcUa_SByte& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toInt16(OpcUa_Int16& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toInt32(OpcUa_Int32& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toInt64(OpcUa_Int64& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toByte(OpcUa_Byte& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toUInt16(OpcUa_UInt16& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toUInt32(OpcUa_UInt32& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toUInt64(OpcUa_UInt64& value) const
{
    return toInteger(m_variant, value);
}

OpcUa_StatusCode UaVariant::toFloat(OpcUa_Float& value) const
{
    return toFloating(m_variant, value);
}

OpcUa_StatusCode UaVariant::toDouble(OpcUa_Double& value) const
{
    return toFloating(m_variant, value);
}
