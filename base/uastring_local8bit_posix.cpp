#include "base/uabytearray.h"
#include "base/uastring.h"

#include <array>
#include <climits>
#include <cstring>
#include <cwchar>

// wchar_t is a code point here; the locale's character set is that of the C library's multibyte
// functions.

namespace {

/// Calls `sink(bytes, count)` for each character of a text in the locale's set, and for the closing
/// NUL, which in a set with shifts also leads back to the first one.
template <typename Sink>
void convertToLocal(std::string_view text, Sink sink)
{
    std::mbstate_t state = {};
    std::array<char, MB_LEN_MAX> bytes = {};
    while (!text.empty()) {
        const UaChar character = UaChar::decode(text.data(), text.size());
        text.remove_prefix(static_cast<std::size_t>(character.utf8Length()));
        const std::mbstate_t before = state;
        std::size_t count =
            std::wcrtomb(bytes.data(), static_cast<wchar_t>(character.codePoint()), &state);
        if (count == static_cast<std::size_t>(-1)) {
            state = before;
            count = std::wcrtomb(bytes.data(), L'?', &state);
        }
        sink(bytes.data(), count);
    }
    sink(bytes.data(), std::wcrtomb(bytes.data(), L'\0', &state));
}

/// Calls `sink` for each character of a text in the locale's set.
template <typename Sink>
void convertFromLocal(std::string_view text, Sink sink)
{
    std::mbstate_t state = {};
    while (!text.empty()) {
        wchar_t wide = L'\0';
        std::size_t taken = std::mbrtowc(&wide, text.data(), text.size(), &state);
        // Wrong or cut bytes count one by one.
        const bool isBad = taken > text.size();
        if (isBad) {
            state = {};
            taken = 1;
        }
        sink(UaChar(isBad ? UaChar::Replacement : static_cast<char32_t>(wide)));
        text.remove_prefix(taken);
    }
}

} // namespace

UaByteArray UaString::toLocal8Bit() const
{
    if (isNull()) {
        return {};
    }
    OpcUa_Int64 size = 0;
    convertToLocal(view(), [&size](const char*, std::size_t count) {
        size += static_cast<OpcUa_Int64>(count);
    });
    return UaByteArray::compose(size, [this](OpcUa_Byte* data) {
        convertToLocal(view(), [&data](const char* bytes, std::size_t count) {
            std::memcpy(data, bytes, count);
            data += count;
        });
    });
}

UaString UaString::fromLocal8Bit(const char* text)
{
    if (text == nullptr) {
        return {};
    }
    OpcUa_Int64 length = 0;
    convertFromLocal(text, [&length](UaChar character) { length += character.utf8Length(); });
    return compose(length, [text](char* utf8) {
        convertFromLocal(text, [&utf8](UaChar character) { utf8 += character.toUtf8(utf8); });
    });
}
