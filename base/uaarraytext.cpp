#include "base/uaarraytext.h"

#include "base/uachar.h"
#include "platform/status.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

std::size_t countCharacters(std::string_view text, std::size_t limit)
{
    std::size_t count = 0;
    while (!text.empty() && count < limit) {
        text.remove_prefix(UaChar::sequenceLength(text.data(), text.size()));
        ++count;
    }
    return count;
}

std::string_view withoutLeadingSpace(std::string_view text)
{
    UaChar first = UaChar::decode(text.data(), text.size());
    while (first.isSpace()) {
        text.remove_prefix(static_cast<std::size_t>(first.utf8Length()));
        first = UaChar::decode(text.data(), text.size());
    }
    return text;
}

/// Walks forward, as only that way it is known where a character begins.
std::string_view withoutTrailingSpace(std::string_view text)
{
    std::size_t end = 0;
    for (std::size_t position = 0; position < text.size();) {
        const UaChar character = UaChar::decode(text.data() + position, text.size() - position);
        position += static_cast<std::size_t>(character.utf8Length());
        if (!character.isSpace()) {
            end = position;
        }
    }
    return text.substr(0, end);
}

} // namespace

OpcUa_StatusCode UaArrayText::open(std::string_view text)
{
    constexpr std::size_t shortest = 3;
    if (countCharacters(text, shortest) < shortest) {
        return OpcUa_BadOutOfRange;
    }
    if (!text.starts_with('{') || !text.ends_with('}')) {
        return OpcUa_BadTypeMismatch;
    }
    const std::string_view inner = text.substr(1, text.size() - 2);
    const auto separators = std::count(inner.begin(), inner.end(), '|');
    if (separators >= std::numeric_limits<OpcUa_Int32>::max()) {
        return OpcUa_BadOutOfRange;
    }
    m_inner = inner;
    m_count = static_cast<OpcUa_Int32>(separators) + 1;
    return OpcUa_Good;
}

std::string_view UaArrayText::Reader::next()
{
    const std::size_t end = std::min(m_rest.find('|'), m_rest.size());
    const std::string_view piece = m_rest.substr(0, end);
    m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
    return withoutTrailingSpace(withoutLeadingSpace(piece));
}

OpcUa_StatusCode UaArrayText_ReadDateTime(std::string_view text, OpcUa_DateTime& dateTime)
{
    std::array<char, 64> buffer{};
    dateTime = {};
    if (text.size() >= buffer.size() || text.find('\0') != std::string_view::npos) {
        return OpcUa_BadSyntaxError;
    }
    std::copy(text.begin(), text.end(), buffer.begin());
    return OpcUa_DateTime_GetDateTimeFromString(buffer.data(), &dateTime);
}
