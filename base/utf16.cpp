#include "base/utf16.h"

#include "base/uachar.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

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

bool isAscii(char byte)
{
    return static_cast<unsigned char>(byte) < 0x80;
}

/// How many characters of ASCII a text begins with, at least: counted in whole words, as most texts
/// hold little else, and 1 for a single one.
std::size_t countAscii(std::string_view text)
{
    std::uint64_t word = 0;
    std::size_t count = 0;
    for (; count + sizeof(word) <= text.size(); count += sizeof(word)) {
        std::memcpy(&word, text.data() + count, sizeof(word));
        if ((word & 0x8080808080808080u) != 0) {
            break;
        }
    }
    return count > 0 ? count : 1;
}

} // namespace

std::size_t countUnits(std::string_view utf8) noexcept
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        const bool isRun = isAscii(utf8[i]);
        const std::size_t taken =
            isRun ? countAscii(utf8.substr(i)) : UaChar::announcedLength(utf8[i]);
        count += isRun ? taken : 1;
        i += taken;
    }
    return count;
}

void fromUtf8(std::string_view utf8, char16_t* units) noexcept
{
    for (std::size_t i = 0; i < utf8.size();) {
        if (isAscii(utf8[i])) {
            const std::size_t count = countAscii(utf8.substr(i));
            units = std::copy_n(utf8.data() + i, count, units);
            i += count;
            continue;
        }
        const UaChar character = UaChar::decode(utf8.data() + i, utf8.size() - i);
        *units++ = static_cast<char16_t>(character.codePoint() > 0xFFFF ? UaChar::Replacement
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
