#include "base/numbertext.h"
#include "base/uaunistring.h"

#include <charconv>
#include <limits>
#include <system_error>
#include <type_traits>

namespace {

/// The value of a digit or letter, 36 for any other unit.
OpcUa_UInt32 digitValue(char16_t unit)
{
    if (unit >= u'0' && unit <= u'9') {
        return static_cast<OpcUa_UInt32>(unit - u'0');
    }
    if (unit >= u'A' && unit <= u'Z') {
        return static_cast<OpcUa_UInt32>(unit - u'A') + 10;
    }
    return unit >= u'a' && unit <= u'z' ? static_cast<OpcUa_UInt32>(unit - u'a') + 10 : 36;
}

/// Reads digits alone. False without any, for another character, and for a number above `maximum`.
bool readDigits(std::u16string_view digits, OpcUa_UInt32 base, OpcUa_UInt64 maximum,
                OpcUa_UInt64& number)
{
    for (const char16_t unit : digits) {
        const OpcUa_UInt32 digit = digitValue(unit);
        if (digit >= base || number > (maximum - digit) / base) {
            return false;
        }
        number = number * base + digit;
    }
    return !digits.empty();
}

/// Reads a text without white space around it.
template <typename Integer>
Integer readInteger(std::u16string_view text, bool* pbOk, OpcUa_Int32 base)
{
    const bool isNegative = std::is_signed_v<Integer> && text.starts_with(u'-');
    if (isNegative || text.starts_with(u'+')) {
        text.remove_prefix(1);
    }
    const auto maximum =
        static_cast<OpcUa_UInt64>(std::numeric_limits<Integer>::max()) + (isNegative ? 1 : 0);
    OpcUa_UInt64 number = 0;
    const bool isRead = base >= 2 && base <= 36 &&
                        readDigits(text, static_cast<OpcUa_UInt32>(base), maximum, number);
    if (pbOk != nullptr) {
        *pbOk = isRead;
    }
    if (!isRead) {
        return 0;
    }
    return static_cast<Integer>(isNegative ? 0 - number : number);
}

} // namespace

OpcUa_Int32 UaUniString::toInt32(bool* pbOk, OpcUa_Int32 base) const noexcept
{
    return readInteger<OpcUa_Int32>(trim(view()), pbOk, base);
}

OpcUa_UInt32 UaUniString::toUInt32(bool* pbOk, OpcUa_Int32 base) const noexcept
{
    return readInteger<OpcUa_UInt32>(trim(view()), pbOk, base);
}

OpcUa_Int64 UaUniString::toInt64(bool* pbOk, OpcUa_Int32 base) const noexcept
{
    return readInteger<OpcUa_Int64>(trim(view()), pbOk, base);
}

OpcUa_UInt64 UaUniString::toUInt64(bool* pbOk, OpcUa_Int32 base) const noexcept
{
    return readInteger<OpcUa_UInt64>(trim(view()), pbOk, base);
}

OpcUa_Double UaUniString::toDouble(bool* pbOk) const
{
    const UaString utf8 = trimmed().toUaString();
    std::string_view text = utf8.view();
    // The library's reader knows no "+", and must not see a second sign behind one.
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    OpcUa_Double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isRead = error == std::errc() && end == text.data() + text.size();
    if (pbOk != nullptr) {
        *pbOk = isRead;
    }
    return isRead ? value : 0;
}

UaUniString UaUniString::numberSigned(OpcUa_Int64 value, OpcUa_Int32 base)
{
    UaNumberText::IntegerBuffer buffer;
    return fromUtf8(UaNumberText::format(buffer, value, base));
}

UaUniString UaUniString::numberUnsigned(OpcUa_UInt64 value, OpcUa_Int32 base)
{
    UaNumberText::IntegerBuffer buffer;
    return fromUtf8(UaNumberText::format(buffer, value, base));
}

UaUniString UaUniString::number(OpcUa_Double value, char format, OpcUa_Int32 precision)
{
    UaNumberText::DoubleBuffer buffer;
    return fromUtf8(UaNumberText::format(buffer, value, format, precision));
}
