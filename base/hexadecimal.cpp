#include "base/hexadecimal.h"

namespace UaHexadecimal {

void encode(const OpcUa_Byte* data, std::size_t size, char* text) noexcept
{
    for (std::size_t i = 0; i < size; ++i) {
        *text++ = Digits[data[i] >> 4];
        *text++ = Digits[data[i] & 0x0Fu];
    }
}

UaString encode(const OpcUa_Byte* data, std::size_t size, bool spaces)
{
    // Sizes come from signed 32-bit lengths: three times that fits 64 bits by far.
    const auto bytes = static_cast<OpcUa_Int64>(size);
    const OpcUa_Int64 blanks = spaces && bytes > 0 ? bytes - 1 : 0;
    return UaString::compose(2 * bytes + blanks, [data, size, spaces](char* text) {
        if (!spaces) {
            encode(data, size, text);
            return;
        }
        for (std::size_t i = 0; i < size; ++i) {
            if (i > 0) {
                *text++ = ' ';
            }
            encode(data + i, 1, text);
            text += 2;
        }
    });
}

bool decode(std::string_view text, OpcUa_Byte* data) noexcept
{
    if (text.size() % 2 != 0) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); i += 2) {
        const int high = valueOf(text[i]);
        const int low = valueOf(text[i + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        *data++ = static_cast<OpcUa_Byte>((high << 4) | low);
    }
    return true;
}

} // namespace UaHexadecimal
