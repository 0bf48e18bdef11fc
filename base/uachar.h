#pragma once

#include "platform/types.h"

#include <cstddef>

/// One character decoded from UTF-8: its code point and the number of bytes that it takes.
///
/// Malformed text has a defined reading: the lead byte alone says how many bytes a character takes,
/// whatever bytes follow, up to the end of the text; a byte that can't lead counts alone. What isn't
/// the shortest form of a code point up to U+10FFFF reads as U+FFFD, the replacement character, but
/// still takes its bytes. Surrogates pass as the code points that they are.
class UaChar
{
public:
    static constexpr char32_t Replacement = 0xFFFD;

    /// The most bytes that toUtf8 writes.
    static constexpr std::size_t MaxUtf8Length = 4;

    /// No character: code point 0 and no bytes. This is what stands behind the end of a text.
    constexpr UaChar() noexcept = default;

    /// A code point; above U+10FFFF the replacement character.
    constexpr UaChar(char32_t codePoint) noexcept
        : m_codePoint(codePoint > LastCodePoint ? Replacement : codePoint)
        , m_utf8Length(encodedLength(m_codePoint))
    {
    }

    /// An ASCII character. A byte above 127 is none by itself and gives the replacement character.
    constexpr UaChar(char character) noexcept
        : UaChar(static_cast<OpcUa_Byte>(character) < 0x80
                     ? static_cast<char32_t>(static_cast<OpcUa_Byte>(character))
                     : Replacement)
    {
    }

    /// The first character of `length` bytes; the null character for a length of 0.
    [[nodiscard]] static constexpr UaChar decode(const char* text, std::size_t length) noexcept;

    /// How many bytes the character with this lead byte takes, 1 to 6.
    [[nodiscard]] static constexpr std::size_t announcedLength(char lead) noexcept;

    /// The same within a text: what the lead byte announces, but no more than `length`, which must not
    /// be 0.
    [[nodiscard]] static constexpr std::size_t sequenceLength(const char* text,
                                                              std::size_t length) noexcept
    {
        const std::size_t announced = announcedLength(*text);
        return announced < length ? announced : length;
    }

    [[nodiscard]] constexpr char32_t codePoint() const noexcept { return m_codePoint; }

    /// Bytes that the character takes in the text that it was decoded from, 0 for the null character.
    [[nodiscard]] constexpr OpcUa_Int32 utf8Length() const noexcept { return m_utf8Length; }

    /// True for no character, which is not the same as U+0000.
    [[nodiscard]] constexpr bool isNull() const noexcept { return m_utf8Length == 0; }

    /// 0 to 9; like the two below for ASCII alone.
    [[nodiscard]] constexpr bool isDigit() const noexcept { return isWithin(U'0', U'9'); }
    [[nodiscard]] constexpr bool isLower() const noexcept { return isWithin(U'a', U'z'); }
    [[nodiscard]] constexpr bool isUpper() const noexcept { return isWithin(U'A', U'Z'); }

    /// Unicode's White_Space property.
    [[nodiscard]] constexpr bool isSpace() const noexcept;

    /// Writes the code point in its shortest form, 1 to 4 bytes, without a NUL, and answers how many;
    /// nothing for the null character. `buffer` has room for MaxUtf8Length bytes.
    constexpr std::size_t toUtf8(char* buffer) const noexcept;

    /// Equal code points; the null character equals itself alone.
    friend constexpr bool operator==(const UaChar& left, const UaChar& right) noexcept
    {
        return left.m_codePoint == right.m_codePoint && left.isNull() == right.isNull();
    }

private:
    static constexpr char32_t LastCodePoint = 0x10FFFF;

    [[nodiscard]] static constexpr OpcUa_Byte encodedLength(char32_t codePoint) noexcept
    {
        return codePoint < 0x80 ? 1 : (codePoint < 0x800 ? 2 : (codePoint < 0x10000 ? 3 : 4));
    }

    [[nodiscard]] constexpr bool isWithin(char32_t first, char32_t last) const noexcept
    {
        return m_codePoint >= first && m_codePoint <= last;
    }

    char32_t m_codePoint = 0;
    OpcUa_Byte m_utf8Length = 0;
};

constexpr std::size_t UaChar::announcedLength(char lead) noexcept
{
    const auto byte = static_cast<OpcUa_Byte>(lead);
    if (byte < 0xC0 || byte >= 0xFE) {
        return 1;
    }
    return byte < 0xE0 ? 2 : (byte < 0xF0 ? 3 : (byte < 0xF8 ? 4 : (byte < 0xFC ? 5 : 6)));
}

constexpr UaChar UaChar::decode(const char* text, std::size_t length) noexcept
{
    UaChar character;
    if (length == 0) {
        return character;
    }
    const std::size_t announced = announcedLength(*text);
    const std::size_t taken = announced < length ? announced : length;
    const auto lead = static_cast<OpcUa_Byte>(*text);
    bool isSound = taken == announced && (lead < 0x80 || announced > 1);
    char32_t codePoint = announced == 1 ? lead : lead & (0x7Fu >> announced);
    for (std::size_t i = 1; i < taken; ++i) {
        const auto byte = static_cast<OpcUa_Byte>(text[i]);
        isSound = isSound && (byte & 0xC0u) == 0x80u;
        codePoint = (codePoint << 6) | (byte & 0x3Fu);
    }
    isSound = isSound && codePoint <= LastCodePoint && encodedLength(codePoint) == taken;
    character.m_codePoint = isSound ? codePoint : Replacement;
    character.m_utf8Length = static_cast<OpcUa_Byte>(taken);
    return character;
}

constexpr bool UaChar::isSpace() const noexcept
{
    return isWithin(0x09, 0x0D) || m_codePoint == 0x20 || m_codePoint == 0x85 ||
           m_codePoint == 0xA0 || m_codePoint == 0x1680 || isWithin(0x2000, 0x200A) ||
           isWithin(0x2028, 0x2029) || m_codePoint == 0x202F || m_codePoint == 0x205F ||
           m_codePoint == 0x3000;
}

constexpr std::size_t UaChar::toUtf8(char* buffer) const noexcept
{
    constexpr OpcUa_Byte leads[] = {0, 0x00, 0xC0, 0xE0, 0xF0};
    const std::size_t length = isNull() ? 0 : encodedLength(m_codePoint);
    char32_t rest = m_codePoint;
    for (std::size_t i = length; i-- > 1; rest >>= 6) {
        buffer[i] = static_cast<char>(0x80u | (rest & 0x3Fu));
    }
    if (length > 0) {
        buffer[0] = static_cast<char>(leads[length] | rest);
    }
    return length;
}
