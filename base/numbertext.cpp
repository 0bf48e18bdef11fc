#include "base/numbertext.h"

#include <algorithm>
#include <charconv>

namespace UaNumberText {

namespace {

constexpr OpcUa_Int32 DefaultPrecision = 6;

char toUpper(char character)
{
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                : character;
}

template <typename Integer>
std::string_view formatInteger(IntegerBuffer& buffer, Integer value, OpcUa_Int32 base)
{
    const int usedBase = base >= 2 && base <= 36 ? base : 10;
    const auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, usedBase);
    if (usedBase > 10) {
        std::transform(buffer.data(), end, buffer.data(), toUpper);
    }
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

std::chars_format formatOf(char form)
{
    switch (form) {
    case 'f':
    case 'F':
        return std::chars_format::fixed;
    case 'e':
    case 'E':
        return std::chars_format::scientific;
    default:
        return std::chars_format::general;
    }
}

} // namespace

std::string_view format(IntegerBuffer& buffer, OpcUa_Int64 value, OpcUa_Int32 base) noexcept
{
    return formatInteger(buffer, value, base);
}

std::string_view format(IntegerBuffer& buffer, OpcUa_UInt64 value, OpcUa_Int32 base) noexcept
{
    return formatInteger(buffer, value, base);
}

std::string_view format(DoubleBuffer& buffer, OpcUa_Double value, char form,
                        OpcUa_Int32 precision) noexcept
{
    const int usedPrecision = precision < 0 ? DefaultPrecision : std::min(precision, MaxPrecision);
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            formatOf(form), usedPrecision);
    if (form == 'F' || form == 'E' || form == 'G') {
        std::transform(buffer.data(), end, buffer.data(), toUpper);
    }
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

} // namespace UaNumberText
