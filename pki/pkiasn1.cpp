#include "pki/pkiasn1.h"

#include "pki/opensslhandles.h"
#include "platform/datetime.h"
#include "platform/status.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string_view>

namespace {

/// The place of each group of two digits of "YYMMDDhhmmss" in the text form of a time.
constexpr std::size_t groupPlaces[] = {2, 5, 8, 11, 14, 17};
constexpr std::size_t fractionPlace = 20;
constexpr std::string_view blankTime = "2000-01-01T00:00:00.000Z";

using TimeText = std::array<char, blankTime.size() + 1>;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Copies the six groups, whatever their characters are.
void copyGroups(std::string_view groups, TimeText& text)
{
    for (std::size_t i = 0; i < std::size(groupPlaces); ++i) {
        text[groupPlaces[i]] = groups[2 * i];
        text[groupPlaces[i] + 1] = groups[2 * i + 1];
    }
}

constexpr std::size_t shortLength = 2 * std::size(groupPlaces);
constexpr std::size_t longLength = shortLength + 2;

bool copyUtcTime(std::string_view time, TimeText& text)
{
    if (time.size() < shortLength) {
        return false;
    }
    if (time[0] >= '7') {
        text[0] = '1';
        text[1] = '9';
    }
    copyGroups(time, text);
    return true;
}

bool copyGeneralizedTime(std::string_view time, TimeText& text)
{
    if (time.size() < longLength) {
        return false;
    }
    text[0] = time[0];
    text[1] = time[1];
    copyGroups(time.substr(2), text);
    if (time.size() > longLength && time[longLength] == '.') {
        const std::string_view fraction = time.substr(longLength + 1, 3);
        std::copy(fraction.begin(), std::find_if_not(fraction.begin(), fraction.end(), isDigit),
                  text.begin() + fractionPlace);
    }
    return true;
}

/// What a string or time holds, never a null pointer.
std::string_view bytesOf(const ASN1_STRING* value)
{
    const unsigned char* const data = value != nullptr ? ASN1_STRING_get0_data(value) : nullptr;
    return data == nullptr ? std::string_view("")
                           : std::string_view(reinterpret_cast<const char*>(data),
                                              static_cast<std::size_t>(ASN1_STRING_length(value)));
}

/// Whether ASCII in a string of this type is ASCII in UTF-8 as well.
bool isOneByteType(int type)
{
    return type == V_ASN1_UTF8STRING || type == V_ASN1_PRINTABLESTRING || type == V_ASN1_IA5STRING;
}

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<signed char>(character) >= 0; });
}

} // namespace

PkiText::PkiText(const ASN1_STRING* pText) noexcept
{
    const std::string_view bytes = bytesOf(pText);
    if (bytes.empty() || (isOneByteType(ASN1_STRING_type(pText)) && isAscii(bytes))) {
        m_view = bytes;
        return;
    }
    unsigned char* converted = nullptr;
    const int length = ASN1_STRING_to_UTF8(&converted, pText);
    m_converted.reset(converted);
    if (length > 0) {
        m_view = {reinterpret_cast<const char*>(converted), static_cast<std::size_t>(length)};
    }
}

UaString PkiText_Copy(std::string_view text) noexcept
{
    UaString copy(text.data(), static_cast<OpcUa_Int64>(text.size()));
    if (copy.isNull() && !text.empty()) {
        PkiError_EnsureReason();
    }
    return copy;
}

UaString PkiText_Read(const ASN1_STRING* pText) noexcept
{
    const PkiText text(pText);
    return text.view().empty() ? UaString() : PkiText_Copy(text.view());
}

UaDateTime PkiTime_Read(const ASN1_TIME* pTime, const UaDateTime& unreadable) noexcept
{
    const std::string_view time = bytesOf(pTime);
    TimeText text{};
    std::copy(blankTime.begin(), blankTime.end(), text.begin());
    const int type = pTime != nullptr ? ASN1_STRING_type(pTime) : V_ASN1_NULL;
    const bool isCopied = (type == V_ASN1_UTCTIME && copyUtcTime(time, text)) ||
                          (type == V_ASN1_GENERALIZEDTIME && copyGeneralizedTime(time, text));
    OpcUa_DateTime result{};
    return isCopied && OpcUa_IsGood(OpcUa_DateTime_GetDateTimeFromString(text.data(), &result))
               ? UaDateTime(result)
               : unreadable;
}
