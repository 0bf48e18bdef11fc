#include "base/uastatuscode.h"

#include "base/uastring.h"
#include "platform/statuscodes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>

namespace {

constexpr std::size_t rowCount = OpcUa_StatusCodeNames.size();

/// The number of a code within its severity, without info bits.
constexpr std::size_t numberOf(OpcUa_StatusCode code)
{
    return (code >> 16) & 0x3FFFu;
}

constexpr std::size_t severityOf(OpcUa_StatusCode code)
{
    return code >> 30;
}

constexpr std::size_t numberLimit = [] {
    std::size_t limit = 0;
    for (const OpcUa_StatusCodeName& row : OpcUa_StatusCodeNames) {
        limit = std::max(limit, numberOf(row.code) + 1);
    }
    return limit;
}();

constexpr std::size_t longestName = [] {
    std::size_t longest = 0;
    for (const OpcUa_StatusCodeName& row : OpcUa_StatusCodeNames) {
        longest = std::max(longest, std::string_view(row.name).size());
    }
    return longest;
}();

constexpr OpcUa_Byte noRow = 0xFF;
static_assert(rowCount <= noRow);

/// The row of every number of every severity, so that a name is found without a search: numbers are
/// small and nearly all in use.
constexpr auto rowOfNumber = [] {
    std::array<std::array<OpcUa_Byte, numberLimit>, 4> rows{};
    for (auto& severity : rows) {
        severity.fill(noRow);
    }
    for (std::size_t i = 0; i < rowCount; ++i) {
        const OpcUa_StatusCode code = OpcUa_StatusCodeNames[i].code;
        rows[severityOf(code)][numberOf(code)] = static_cast<OpcUa_Byte>(i);
    }
    return rows;
}();

std::size_t findRow(OpcUa_StatusCode code)
{
    const std::size_t number = numberOf(code);
    return number < numberLimit ? rowOfNumber[severityOf(code)][number] : noRow;
}

/// The names as texts that everybody shares.
class Names
{
public:
    Names()
    {
        for (std::size_t i = 0; i < rowCount; ++i) {
            m_names[i] = UaString(OpcUa_StatusCodeNames[i].name);
        }
    }

    /// A name that found no memory when all were made is made anew.
    [[nodiscard]] UaString at(std::size_t row) const
    {
        return m_names[row].isNull() ? UaString(OpcUa_StatusCodeNames[row].name) : m_names[row];
    }

private:
    std::array<UaString, rowCount> m_names;
};

/// Made on first use and never destroyed, so that a status can be printed until the process ends.
const Names& names()
{
    alignas(Names) static std::array<std::byte, sizeof(Names)> storage;
    static const Names* const all = ::new (storage.data()) Names;
    return *all;
}

UaString withWholeCode(std::string_view name, OpcUa_StatusCode code)
{
    std::array<char, 14> suffix;
    std::snprintf(suffix.data(), suffix.size(), " (0x%08lx)", static_cast<unsigned long>(code));
    std::array<char, longestName + suffix.size()> text;
    std::memcpy(text.data(), name.data(), name.size());
    std::memcpy(text.data() + name.size(), suffix.data(), suffix.size());
    return UaString(text.data());
}

UaString wholeCode(OpcUa_StatusCode code)
{
    std::array<char, 11> text;
    std::snprintf(text.data(), text.size(), "0x%08lx", static_cast<unsigned long>(code));
    return UaString(text.data());
}

} // namespace

UaString UaStatusCode::toString(OpcUa_StatusCode code)
{
    const std::size_t row = findRow(code);
    if (row == noRow) {
        return wholeCode(code);
    }
    if ((code & 0xFFFFu) != 0) {
        return withWholeCode(OpcUa_StatusCodeNames[row].name, code);
    }
    return names().at(row);
}

UaString UaStatusCode::toString() const
{
    return toString(m_code);
}
