// Bytes as UTF-8 and as 16-bit units: every way of counting and walking agrees, the units of a text
// survive the way to UTF-8 and back, and so do any others.

#include "base/uabytearray.h"
#include "base/uastring.h"
#include "base/uaunistring.h"
#include "fuzz/require.h"

#include <cstdint>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const UaString text(reinterpret_cast<const char*>(data), static_cast<OpcUa_Int64>(size));
    const UaUniString units(text);
    require(units.length() == text.size());
    require(static_cast<OpcUa_UInt32>(text.size()) == OpcUa_String_StrLen(text.toOpcUaString()));

    OpcUa_Int32 offset = 0;
    for (OpcUa_Int32 i = 0; i < text.size() && i < 100; ++i) {
        const UaChar character = text.at(i);
        require(text.byteOffset(i) == offset);
        require(character.utf8Length() > 0);
        require(units.at(i) ==
                (character.codePoint() > 0xFFFF ? UaChar::Replacement : character.codePoint()));
        require(UaUniString(text.substring(i, 1)) == units.mid(i, 1));
        offset += character.utf8Length();
    }

    const UaByteArray array = text.toUtf16();
    require(std::memcmp(array.data(), units.utf16(), static_cast<std::size_t>(array.size())) == 0);
    require(UaUniString(units.toUaString()) == units);

    std::u16string any(size / sizeof(char16_t), u'\0');
    std::memcpy(any.data(), data, any.size() * sizeof(char16_t));
    const UaUniString anyUnits(any.data(), static_cast<OpcUa_Int64>(any.size()));
    require(UaUniString(anyUnits.toUaString()) == anyUnits);
    return 0;
}
