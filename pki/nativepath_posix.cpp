#include "pki/nativepath_posix.h"

#include <algorithm>

namespace {

constexpr char32_t escapeBase = 0xDC00; ///< A byte b of 0x80 and more becomes U+DC00 + b.

constexpr bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

constexpr bool isEscapedByte(char32_t unit)
{
    return unit >= escapeBase + 0x80 && unit <= escapeBase + 0xFF;
}

struct Decoded
{
    char32_t character = 0;
    std::size_t length = 1;
};

/// How long the sequence is that a lead byte announces, and the least character that needs it.
struct Form
{
    std::size_t length;
    char32_t least;
};

constexpr Form formOf(unsigned char lead)
{
    if (lead >= 0xC2 && lead < 0xE0) {
        return {2, 0x80};
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return {3, 0x800};
    }
    if (lead >= 0xF0 && lead < 0xF5) {
        return {4, 0x10000};
    }
    return {1, 0};
}

/// The character at the start of a text, or its first byte escaped when there is no sound one.
Decoded decode(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) {
        return {lead, 1};
    }
    const Decoded escaped{escapeBase + lead, 1};
    const Form form = formOf(lead);
    if (form.length == 1 || form.length > text.size()) {
        return escaped;
    }
    char32_t character = lead & (0x7Fu >> form.length);
    for (const char byte : text.substr(1, form.length - 1)) {
        const auto tail = static_cast<unsigned char>(byte);
        if ((tail & 0xC0u) != 0x80) {
            return escaped;
        }
        character = character << 6u | (tail & 0x3Fu);
    }
    const bool isSound = character >= form.least && character <= 0x10FFFF &&
                         (character < 0xD800 || character >= 0xE000);
    return isSound ? Decoded{character, form.length} : escaped;
}

std::size_t countUnits(std::string_view bytes)
{
    std::size_t units = 0;
    while (!bytes.empty()) {
        const Decoded decoded = decode(bytes);
        units += decoded.character > 0xFFFF ? 2 : 1;
        bytes.remove_prefix(decoded.length);
    }
    return units;
}

void writeUnits(std::string_view bytes, char16_t* units)
{
    while (!bytes.empty()) {
        const Decoded decoded = decode(bytes);
        bytes.remove_prefix(decoded.length);
        if (decoded.character > 0xFFFF) {
            const char32_t rest = decoded.character - 0x10000;
            *units++ = static_cast<char16_t>(0xD800 + (rest >> 10u));
            *units++ = static_cast<char16_t>(0xDC00 + (rest & 0x3FFu));
        } else {
            *units++ = static_cast<char16_t>(decoded.character);
        }
    }
}

} // namespace

NativePath::NativePath(const UaUniString& path) noexcept
{
    const std::u16string_view units = path.view();
    for (std::size_t i = 0; i < units.size() && m_isValid; ++i) {
        char32_t character = units[i];
        if (isHighSurrogate(character) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
            ++i;
            character = 0x10000 + ((character - 0xD800) << 10u) + (units[i] - 0xDC00u);
        }
        m_isValid = character != 0 && append(character);
    }
    if (!m_isValid) {
        m_length = 0;
    }
    m_text[m_length] = '\0';
}

bool NativePath::append(char32_t character) noexcept
{
    std::array<char, 4> bytes{};
    std::size_t count = 0;
    const auto add = [&](char32_t byte) { bytes[count++] = static_cast<char>(byte); };
    if (character < 0x80) {
        add(character);
    } else if (isEscapedByte(character)) {
        add(character - escapeBase);
    } else if (character < 0x800) {
        add(0xC0u | character >> 6u);
        add(0x80u | (character & 0x3Fu));
    } else if (character < 0x10000) {
        add(0xE0u | character >> 12u);
        add(0x80u | (character >> 6u & 0x3Fu));
        add(0x80u | (character & 0x3Fu));
    } else {
        add(0xF0u | character >> 18u);
        add(0x80u | (character >> 12u & 0x3Fu));
        add(0x80u | (character >> 6u & 0x3Fu));
        add(0x80u | (character & 0x3Fu));
    }
    if (m_length + count >= m_text.size()) {
        return false;
    }
    std::copy_n(bytes.begin(), count, m_text.begin() + m_length);
    m_length += count;
    return true;
}

UaUniString fromNativePath(std::string_view bytes) noexcept
{
    return UaUniString::compose(static_cast<OpcUa_Int64>(countUnits(bytes)),
                                [&](char16_t* units) { writeUnits(bytes, units); });
}

UaUniString joinNativeName(const UaUniString& prefix, std::string_view name) noexcept
{
    const std::u16string_view start = prefix.view();
    const std::size_t length = start.size() + 1 + countUnits(name);
    return UaUniString::compose(static_cast<OpcUa_Int64>(length), [&](char16_t* units) {
        char16_t* const end = std::copy(start.begin(), start.end(), units);
        *end = u'/';
        writeUnits(name, end + 1);
    });
}
