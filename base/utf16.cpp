#include "base/utf16.h"

#include "base/uachar.h"

namespace UaUtf16 {

namespace {

constexpr std::size_t lengthOf(char16_t unit)
{
    return unit < 0x80 ? 1 : (unit < 0x800 ? 2 : 3);
}

char toByte(unsigned bits)
{
    return static_cast<char>(bits);
}

} // namespace

std::size_t countUnits(std::string_view utf8) noexcept
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < utf8.size(); ++count) {
        i += UaChar::announcedLength(utf8[i]);
    }
    return count;
}

void fromUtf8(std::string_view utf8, char16_t* units) noexcept
{
    for (std::size_t i = 0; i < utf8.size(); ++units) {
        if (static_cast<unsigned char>(utf8[i]) < 0x80) {
            *units = static_cast<char16_t>(utf8[i++]);
            continue;
        }
        const UaChar character = UaChar::decode(utf8.data() + i, utf8.size() - i);
        *units = static_cast<char16_t>(character.codePoint() > 0xFFFF ? UaChar::Replacement
                                                                      : character.codePoint());
        i += static_cast<std::size_t>(character.utf8Length());
    }
}

std::size_t countBytes(std::u16string_view units) noexcept
{
    std::size_t count = 0;
    for (const char16_t unit : units) {
        count += lengthOf(unit);
    }
    return count;
}

void toUtf8(std::u16string_view units, char* utf8) noexcept
{
    for (const char16_t unit : units) {
        if (unit < 0x80) {
            *utf8++ = toByte(unit);
        } else if (unit < 0x800) {
            *utf8++ = toByte(0xC0u | (unit >> 6));
            *utf8++ = toByte(0x80u | (unit & 0x3Fu));
        } else {
            *utf8++ = toByte(0xE0u | (unit >> 12));
            *utf8++ = toByte(0x80u | ((unit >> 6) & 0x3Fu));
            *utf8++ = toByte(0x80u | (unit & 0x3Fu));
        }
    }
}

} // namespace UaUtf16
