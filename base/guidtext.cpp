#include "base/guidtext.h"

#include "base/hexadecimal.h"
#include "platform/status.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr std::size_t wholeLength = 36;
constexpr std::array<std::size_t, 4> dashes = {8, 13, 18, 23};

constexpr OpcUa_Byte noDigit = 0xFF;

/// The value of each character as a hexadecimal digit.
constexpr auto digitValues = [] {
    std::array<OpcUa_Byte, 256> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int value = UaHexadecimal::valueOf(static_cast<char>(i));
        values[i] = value < 0 ? noDigit : static_cast<OpcUa_Byte>(value);
    }
    return values;
}();

/// The number that some digits make. All values are collected in `seen`, so that they can be checked
/// at once: a check of each would cost more than the reading.
OpcUa_UInt64 readGroup(const char* text, std::size_t digits, unsigned& seen)
{
    OpcUa_UInt64 number = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        const OpcUa_Byte value = digitValues[static_cast<unsigned char>(text[i])];
        seen |= value;
        number = number << 4 | value;
    }
    return number;
}

bool hasDashes(const char* text)
{
    return std::ranges::all_of(dashes, [text](std::size_t place) { return text[place] == '-'; });
}

/// Reads a text that begins with all digits of a guid, each in its place. False for any other text,
/// among which are some that the scan of the stack accepts: it allows fields to be short.
bool readWholeForm(std::string_view whole, OpcUa_Guid& guid)
{
    const std::size_t begin = whole.starts_with('{') ? 1 : 0;
    const char* const text = whole.data() + begin;
    if (whole.size() < begin + wholeLength || !hasDashes(text)) {
        return false;
    }
    unsigned seen = 0;
    const OpcUa_UInt64 data1 = readGroup(text, 8, seen);
    const OpcUa_UInt64 data2 = readGroup(text + 9, 4, seen);
    const OpcUa_UInt64 data3 = readGroup(text + 14, 4, seen);
    const OpcUa_UInt64 data4 = readGroup(text + 19, 4, seen) << 48 | readGroup(text + 24, 12, seen);
    if (seen > 0x0F) {
        return false; // one of them is no digit
    }
    guid = {static_cast<OpcUa_UInt32>(data1),
            static_cast<OpcUa_UInt16>(data2),
            static_cast<OpcUa_UInt16>(data3),
            {}};
    for (std::size_t i = 0; i < sizeof guid.Data4; ++i) {
        guid.Data4[i] = static_cast<OpcUa_Byte>(data4 >> (56 - 8 * i));
    }
    return true;
}

} // namespace

OpcUa_StatusCode UaGuidText::read(std::string_view text, OpcUa_Guid& guid) noexcept
{
    return readWholeForm(text, guid) ? OpcUa_Good : OpcUa_Guid_FromString(text.data(), &guid);
}
