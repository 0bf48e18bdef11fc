#include "base/uabytearray.h"
#include "base/uastring.h"
#include "base/utf16.h"

#include <cstring>
#include <string>

UaString::UaString(const char16_t* text)
    : UaString()
{
    setUtf16(text);
}

void UaString::setUtf16(const char16_t* text)
{
    setUtf16(text, text == nullptr
                       ? 0
                       : static_cast<OpcUa_Int64>(std::char_traits<char16_t>::length(text)));
}

void UaString::setUtf16(const char16_t* text, OpcUa_Int64 length)
{
    // Also keeps the count of bytes, three times the units at most, far from an overflow.
    if (text == nullptr || length < 0 || length > MaxLength) {
        *this = UaString();
        return;
    }
    const std::u16string_view units(text, static_cast<std::size_t>(length));
    *this = compose(static_cast<OpcUa_Int64>(UaUtf16::countBytes(units)),
                    [units](char* utf8) { UaUtf16::toUtf8(units, utf8); });
}

UaByteArray UaString::toUtf16() const
{
    if (isNull()) {
        return {};
    }
    const std::size_t count = UaUtf16::countUnits(view());
    return UaByteArray::compose(static_cast<OpcUa_Int64>((count + 1) * sizeof(char16_t)),
                                [this, count](OpcUa_Byte* bytes) {
                                    // A block of the allocator is aligned for any type.
                                    auto* units = reinterpret_cast<char16_t*>(bytes);
                                    UaUtf16::fromUtf8(view(), units);
                                    units[count] = u'\0';
                                });
}
