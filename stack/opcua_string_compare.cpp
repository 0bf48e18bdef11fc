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
    const OpcUa_StringView leftView = OpcUa_String_View(left);
    const OpcUa_StringView rightView = OpcUa_String_View(right);
    if (leftView.text == rightView.text) {
        return 0;
    }
    if (leftView.text == nullptr || rightView.text == nullptr) {
        return leftView.text == nullptr ? -1 : 1;
    }
    const OpcUa_UInt32 compared = std::min({leftView.size, rightView.size, maximum});
    const int order = ignoreCase ? compareFolded(leftView.text, rightView.text, compared)
                                 : std::strncmp(leftView.text, rightView.text, compared);
    if (order != 0 || compared == maximum) {
        return signOf(order);
    }
    return signOf(OpcUa_Int64{leftView.size} - OpcUa_Int64{rightView.size});
}

OpcUa_Int32 OpcUa_String_Compare(const OpcUa_String* left, const OpcUa_String* right)
{
    return OpcUa_String_StrnCmp(left, right, OpcUa_String_WholeLength, false);
}
