#include "base/numberread.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace UaNumberRead {

namespace {

constexpr std::string_view whiteSpace = " \t\n\v\f\r";
constexpr std::string_view hexadecimalStart = ".0123456789ABCDEFabcdef";

/// Takes white space and a sign away from the front; true for a "-".
bool takeSign(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(whiteSpace), text.size()));
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return isNegative;
}

/// The rest of a text must be digits, at least one.
bool readDigits(std::string_view digits, int base, OpcUa_UInt64& value)
{
    const char* end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, value, base);
    return error == std::errc() && last == end;
}

bool isHexadecimal(std::string_view text)
{
    return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

} // namespace

bool readSigned(std::string_view text, OpcUa_Int64& value) noexcept
{
    if (text.empty()) {
        value = 0;
        return true;
    }
    const bool isNegative = takeSign(text);
    OpcUa_UInt64 magnitude = 0;
    const OpcUa_UInt64 limit =
        OpcUa_UInt64{std::numeric_limits<OpcUa_Int64>::max()} + (isNegative ? 1 : 0);
    if (!readDigits(text, 10, magnitude) || magnitude > limit) {
        return false;
    }
    value = static_cast<OpcUa_Int64>(isNegative ? 0 - magnitude : magnitude);
    return true;
}

bool readUnsigned(std::string_view text, OpcUa_UInt64& value) noexcept
{
    if (text.empty()) {
        value = 0;
        return true;
    }
    return !takeSign(text) && readDigits(text, 10, value);
}

bool readHexadecimal(std::string_view text, std::size_t maxDigits, OpcUa_UInt64& value) noexcept
{
    return isHexadecimal(text) && text.size() <= maxDigits + 2 &&
           readDigits(text.substr(2), 16, value);
}

bool readDouble(std::string_view text, OpcUa_Double& value) noexcept
{
    if (text.empty()) {
        value = 0;
        return true;
    }
    const bool isNegative = takeSign(text);
    auto format = std::chars_format::general;
    if (isHexadecimal(text)) {
        text.remove_prefix(2);
        format = std::chars_format::hex;
    }
    // The library's reader would take a sign of its own, and words behind "0x".
    if (text.starts_with('-') || (format == std::chars_format::hex &&
                                  hexadecimalStart.find(text[0]) == std::string_view::npos)) {
        return false;
    }
    OpcUa_Double magnitude = 0;
    const char* end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, magnitude, format);
    value = isNegative ? -magnitude : magnitude;
    return error == std::errc() && last == end;
}

} // namespace UaNumberRead
