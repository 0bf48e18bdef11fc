#include "stack/opcua_string.h"
#include "stack/opcua_stringparts.h"

#include <algorithm>
#include <cstring>

namespace {

unsigned char fold(char character)
{
    return static_cast<unsigned char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a'
                                                                           : character);
}

/// strncmp with the letters A to Z folded, whatever the locale.
int compareFolded(const char* left, const char* right, std::size_t maximum)
{
    for (std::size_t i = 0; i < maximum; ++i) {
        const int difference = fold(left[i]) - fold(right[i]);
        if (difference != 0 || left[i] == '\0') {
            return difference;
        }
    }
    return 0;
}

OpcUa_Int32 signOf(OpcUa_Int64 difference)
{
    return difference < 0 ? -1 : (difference > 0 ? 1 : 0);
}

} // namespace

OpcUa_Int32 OpcUa_String_StrnCmp(const OpcUa_String* left, const OpcUa_String* right,
                                 OpcUa_UInt32 maximum, bool ignoreCase)
{
    if (left == nullptr || right == nullptr) {
        return left == right ? 0 : (left == nullptr ? -1 : 1);
    }
    const char* leftText = OpcUa_String_GetRawString(left);
    const char* rightText = OpcUa_String_GetRawString(right);
    if (leftText == rightText) {
        return 0;
    }
    if (leftText == nullptr || rightText == nullptr) {
        return leftText == nullptr ? -1 : 1;
    }
    const OpcUa_UInt32 leftSize = OpcUa_String_StrSize(left);
    const OpcUa_UInt32 rightSize = OpcUa_String_StrSize(right);
    const OpcUa_UInt32 compared = std::min({leftSize, rightSize, maximum});
    const int order = ignoreCase ? compareFolded(leftText, rightText, compared)
                                 : std::strncmp(leftText, rightText, compared);
    if (order != 0 || compared == maximum) {
        return signOf(order);
    }
    return signOf(OpcUa_Int64{leftSize} - OpcUa_Int64{rightSize});
}

OpcUa_Int32 OpcUa_String_Compare(const OpcUa_String* left, const OpcUa_String* right)
{
    return OpcUa_String_StrnCmp(left, right, OpcUa_String_WholeLength, false);
}
