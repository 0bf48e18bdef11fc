#include "base/uaunistring.h"

#include "base/uaunistringlist.h"
#include "base/utf16.h"
#include "platform/allocator.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>

constinit UaUniString::Block UaUniString::s_nullBlock;

namespace {

OpcUa_Int32 toPosition(std::size_t position)
{
    return position == std::u16string_view::npos ? -1 : static_cast<OpcUa_Int32>(position);
}

std::size_t firstPosition(OpcUa_Int32 from)
{
    return static_cast<std::size_t>(std::max(from, 0));
}

std::size_t lastPosition(OpcUa_Int32 from)
{
    return from < 0 ? std::u16string_view::npos : static_cast<std::size_t>(from);
}

bool isSpace(char16_t unit)
{
    return UaChar(static_cast<char32_t>(unit)).isSpace();
}

} // namespace

UaUniString::UaUniString(const char* text)
    : UaUniString(text == nullptr ? UaUniString() : fromUtf8(text))
{
}

UaUniString::UaUniString(const UaString& text)
    : UaUniString(text.isNull() ? UaUniString() : fromUtf8(text.view()))
{
}

UaUniString::UaUniString(const char16_t* text)
    : UaUniString(text, text == nullptr
                            ? 0
                            : static_cast<OpcUa_Int64>(std::char_traits<char16_t>::length(text)))
{
}

UaUniString::UaUniString(const char16_t* text, OpcUa_Int64 length) noexcept
    : UaUniString()
{
    if (text == nullptr) {
        return;
    }
    if (char16_t* units = allocate(length); units != nullptr) {
        std::copy_n(text, length, units);
    }
}

void UaUniString::destroy(Block* block) noexcept
{
    std::destroy_at(block);
    OpcUa_Memory_Free(block);
}

/// Replaces the string by one with `length` units that aren't set yet, closed by a 0 unit; by the null
/// string, and a null pointer, when there is no such length or memory is short.
char16_t* UaUniString::allocate(OpcUa_Int64 length) noexcept
{
    *this = UaUniString();
    if (length < 0 || length > MaxLength) {
        return nullptr;
    }
    void* memory = OpcUa_Memory_Alloc(sizeof(Block) +
                                      (static_cast<std::size_t>(length) + 1) * sizeof(char16_t));
    if (memory == nullptr) {
        return nullptr;
    }
    m_pBlock = ::new (memory) Block();
    m_pBlock->length = static_cast<OpcUa_Int32>(length);
    auto* units = reinterpret_cast<char16_t*>(m_pBlock + 1);
    units[length] = u'\0';
    return units;
}

UaUniString UaUniString::fromUtf8(std::string_view text)
{
    return compose(static_cast<OpcUa_Int64>(UaUtf16::countUnits(text)),
                   [text](char16_t* units) { UaUtf16::fromUtf8(text, units); });
}

UaString UaUniString::toUaString() const noexcept
{
    UaString text;
    if (!isNull()) {
        text.setUtf16(utf16(), length());
    }
    return text;
}

OpcUa_Int32 UaUniString::indexOf(const UaUniString& text, OpcUa_Int32 from) const noexcept
{
    return toPosition(view().find(text.view(), firstPosition(from)));
}

OpcUa_Int32 UaUniString::indexOf(char16_t unit, OpcUa_Int32 from) const noexcept
{
    return toPosition(view().find(unit, firstPosition(from)));
}

OpcUa_Int32 UaUniString::lastIndexOf(const UaUniString& text, OpcUa_Int32 from) const noexcept
{
    return toPosition(view().rfind(text.view(), lastPosition(from)));
}

OpcUa_Int32 UaUniString::lastIndexOf(char16_t unit, OpcUa_Int32 from) const noexcept
{
    return toPosition(view().rfind(unit, lastPosition(from)));
}

bool UaUniString::startsWith(const UaUniString& text) const noexcept
{
    return view().starts_with(text.view());
}

bool UaUniString::endsWith(const UaUniString& text) const noexcept
{
    return view().ends_with(text.view());
}

/// A string for a part of this one's text, sharing the block when the part is the whole.
UaUniString UaUniString::piece(std::u16string_view part) const
{
    if (part.size() == view().size()) {
        return *this;
    }
    return {part.data(), static_cast<OpcUa_Int64>(part.size())};
}

UaUniString UaUniString::mid(OpcUa_Int32 first, OpcUa_Int32 count) const
{
    if (isNull() || first < 0 || first > length()) {
        return {};
    }
    return piece(
        view().substr(static_cast<std::size_t>(first),
                      count < 0 ? std::u16string_view::npos : static_cast<std::size_t>(count)));
}

UaUniString UaUniString::left(OpcUa_Int32 count) const
{
    return mid(0, std::max(count, 0));
}

UaUniString UaUniString::right(OpcUa_Int32 count) const
{
    return mid(length() - std::clamp(count, 0, length()));
}

std::u16string_view UaUniString::trim(std::u16string_view text) noexcept
{
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

UaUniString UaUniString::trimmed() const
{
    return piece(trim(view()));
}

UaUniString UaUniString::replaced(char16_t before, char16_t after) const
{
    if (indexOf(before) < 0) {
        return *this;
    }
    return compose(length(), [this, before, after](char16_t* units) {
        std::replace_copy(utf16(), utf16() + length(), units, before, after);
    });
}

UaUniStringList UaUniString::split(char16_t separator) const noexcept
{
    UaUniStringList pieces;
    if (isNull()) {
        return pieces;
    }
    std::u16string_view rest = view();
    const auto count = std::count(rest.begin(), rest.end(), separator) + 1;
    if (!pieces.reserve(static_cast<OpcUa_Int32>(count))) {
        return pieces;
    }
    for (bool isLast = false; !isLast;) {
        const std::size_t end = std::min(rest.find(separator), rest.size());
        isLast = end == rest.size();
        // A piece that is null failed for lack of memory.
        if (!pieces.append(piece(rest.substr(0, end))) || (pieces.end() - 1)->isNull()) {
            return {};
        }
        rest.remove_prefix(isLast ? end : end + 1);
    }
    return pieces;
}

UaUniString& UaUniString::operator+=(const UaUniString& other) noexcept
{
    if (isNull()) {
        *this = other;
    } else if (!other.isEmpty()) {
        *this = compose(OpcUa_Int64{length()} + other.length(), [this, &other](char16_t* units) {
            const std::u16string_view left = view();
            const std::u16string_view right = other.view();
            std::copy(right.begin(), right.end(), std::copy(left.begin(), left.end(), units));
        });
    }
    return *this;
}

UaUniString operator+(const UaUniString& left, const UaUniString& right) noexcept
{
    UaUniString sum = left;
    sum += right;
    return sum;
}
