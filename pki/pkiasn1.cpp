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

} // namespace

UaString PkiText_Read(const ASN1_STRING* pText) noexcept
{
    unsigned char* converted = nullptr;
    const int length = pText != nullptr ? ASN1_STRING_to_UTF8(&converted, pText) : -1;
    const PkiLibraryBytes bytes(converted);
    return UaString(reinterpret_cast<const char*>(converted), length);
}

UaDateTime PkiTime_Read(const ASN1_TIME* pTime, const UaDateTime& unreadable) noexcept
{
    if (pTime == nullptr || ASN1_STRING_get0_data(pTime) == nullptr) {
        return unreadable;
    }
    const std::string_view time(reinterpret_cast<const char*>(ASN1_STRING_get0_data(pTime)),
                                static_cast<std::size_t>(ASN1_STRING_length(pTime)));
    TimeText text{};
    std::copy(blankTime.begin(), blankTime.end(), text.begin());
    const int type = ASN1_STRING_type(pTime);
    const bool isCopied = (type == V_ASN1_UTCTIME && copyUtcTime(time, text)) ||
                          (type == V_ASN1_GENERALIZEDTIME && copyGeneralizedTime(time, text));
    OpcUa_DateTime result{};
    return isCopied && OpcUa_IsGood(OpcUa_DateTime_GetDateTimeFromString(text.data(), &result))
               ? UaDateTime(result)
               : unreadable;
}
