// A text of digits, and bytes to be written as such: whatever is read writes the same text, whatever
// is refused holds something else than pairs of digits, and whatever is written is read back.

#include "base/uabytearray.h"
#include "base/uastring.h"
#include "fuzz/require.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);
    const UaString string(text.data(), static_cast<OpcUa_Int64>(size));
    const UaByteArray read = UaByteArray::fromHex(string);
    const bool isHexadecimal =
        size % 2 == 0 && std::all_of(text.begin(), text.end(), [](char character) {
            return std::isxdigit(static_cast<unsigned char>(character)) != 0;
        });
    require(read.size() == (isHexadecimal ? static_cast<OpcUa_Int32>(size / 2) : 0));
    if (isHexadecimal) {
        std::transform(text.begin(), text.end(), text.begin(), [](char character) {
            return static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
        });
        require(read.toHex().view() == text);
    }

    const UaByteArray bytes(data, static_cast<OpcUa_Int32>(size));
    require(UaByteArray::fromHex(bytes.toHex()) == bytes);
    std::string spaced(bytes.toHex(true).view());
    require(spaced.size() == (size == 0 ? 0 : 3 * size - 1));
    spaced.erase(std::remove(spaced.begin(), spaced.end(), ' '), spaced.end());
    require(bytes.toHex() == spaced.c_str());
    return 0;
}
