#include "base/base64.h"

#include "platform/allocator.h"
#include "platform/status.h"

#include <algorithm>
#include <array>
#include <limits>

namespace UaBase64 {

namespace {

constexpr std::string_view Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Marks a character that isn't in the alphabet.
constexpr OpcUa_Byte Bad = 64;

constexpr std::array<OpcUa_Byte, 256> makeValues()
{
    std::array<OpcUa_Byte, 256> values = {};
    values.fill(Bad);
    for (std::size_t i = 0; i < Alphabet.size(); ++i) {
        values[static_cast<OpcUa_Byte>(Alphabet[i])] = static_cast<OpcUa_Byte>(i);
    }
    return values;
}

constexpr std::array<OpcUa_Byte, 256> values = makeValues();

constexpr std::size_t GroupLength = 4;
constexpr std::size_t GroupSize = 3;

char digit(unsigned bits)
{
    return Alphabet[bits & 0x3Fu];
}

/// Reads a group without its padding, 2 to 4 characters, into one byte less.
bool decodeGroup(std::string_view group, OpcUa_Byte* data)
{
    unsigned bits = 0;
    unsigned seen = 0;
    for (std::size_t i = 0; i < GroupLength; ++i) {
        const unsigned value = i < group.size() ? values[static_cast<OpcUa_Byte>(group[i])] : 0;
        bits = (bits << 6) | value;
        seen |= value;
    }
    for (std::size_t i = 0; i + 1 < group.size(); ++i) {
        data[i] = static_cast<OpcUa_Byte>(bits >> (16 - 8 * i));
    }
    return (seen & Bad) == 0;
}

/// Reads whole groups and skips line breaks before them. Only the last group may be padded, with
/// `padding` characters. False for a bad character or a group that is cut off.
bool decodeGroups(std::string_view text, std::size_t padding, OpcUa_Byte* data, OpcUa_Int32& size)
{
    const OpcUa_Byte* const start = data;
    while (!text.empty()) {
        if (text.front() == '\n' || text.front() == '\r') {
            text.remove_prefix(1);
            continue;
        }
        if (text.size() < GroupLength) {
            return false;
        }
        const bool isLast = text.size() == GroupLength;
        const std::string_view group = text.substr(0, GroupLength - (isLast ? padding : 0));
        if (!decodeGroup(group, data)) {
            return false;
        }
        data += group.size() - 1;
        text.remove_prefix(GroupLength);
    }
    size = static_cast<OpcUa_Int32>(data - start);
    return true;
}

/// Counts the "=" from the first one on. False when anything else follows, or more than a group can
/// have.
bool countPadding(std::string_view text, std::size_t& padding)
{
    const std::size_t first = std::min(text.find('='), text.size());
    padding = text.size() - first;
    return padding <= 2 && text.find_first_not_of('=', first) == std::string_view::npos;
}

} // namespace

void encode(const OpcUa_Byte* data, std::size_t size, char* text) noexcept
{
    for (; size >= GroupSize; size -= GroupSize, data += GroupSize) {
        const unsigned bits = (unsigned{data[0]} << 16) | (unsigned{data[1]} << 8) | data[2];
        *text++ = digit(bits >> 18);
        *text++ = digit(bits >> 12);
        *text++ = digit(bits >> 6);
        *text++ = digit(bits);
    }
    if (size > 0) {
        const unsigned second = size > 1 ? data[1] : 0u;
        const unsigned bits = (unsigned{data[0]} << 16) | (second << 8);
        *text++ = digit(bits >> 18);
        *text++ = digit(bits >> 12);
        *text++ = size > 1 ? digit(bits >> 6) : '=';
        *text++ = '=';
    }
}

UaString encode(const OpcUa_Byte* data, std::size_t size)
{
    return UaString::compose(encodedLength(static_cast<OpcUa_Int64>(size)),
                             [data, size](char* text) { encode(data, size, text); });
}

OpcUa_StatusCode decode(std::string_view text, OpcUa_ByteString* bytes) noexcept
{
    if (bytes == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_ByteString_Initialize(bytes);
    std::size_t padding = 0;
    const std::size_t room = text.size() / GroupLength * GroupSize;
    if (text.size() % GroupLength != 0 || !countPadding(text, padding) ||
        room > static_cast<std::size_t>(std::numeric_limits<OpcUa_Int32>::max())) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_ByteString decoded = {0, nullptr};
    if (room > 0) {
        decoded.Data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(room - padding));
        if (decoded.Data == nullptr) {
            return OpcUa_BadOutOfMemory;
        }
        if (!decodeGroups(text, padding, decoded.Data, decoded.Length)) {
            OpcUa_Memory_Free(decoded.Data);
            return OpcUa_BadInvalidArgument;
        }
    }
    *bytes = decoded;
    return OpcUa_Good;
}

} // namespace UaBase64
