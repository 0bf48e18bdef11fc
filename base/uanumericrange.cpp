#include "base/uanumericrange.h"

#include "base/uastring.h"
#include "platform/allocator.h"
#include "platform/status.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <utility>

namespace {

/// Reads the text character by character; each state is named by what it waits for.
class RangeReader
{
public:
    explicit RangeReader(UaNumericRange& range)
        : m_range(range)
    {
    }

    OpcUa_StatusCode read(std::string_view text)
    {
        for (const char character : text) {
            const OpcUa_StatusCode status = take(character);
            if (OpcUa_IsBad(status)) {
                return status;
            }
        }
        return endDimension();
    }

private:
    enum class State
    {
        FirstDigit,
        FirstNumber,
        SecondDigit,
        SecondNumber
    };

    OpcUa_StatusCode take(char character)
    {
        if (character >= '0' && character <= '9') {
            return takeDigit(static_cast<OpcUa_UInt32>(character - '0'));
        }
        if (character == ':' && m_state == State::FirstNumber) {
            m_entry.kind = UaNumericRangeEntry::Range;
            m_state = State::SecondDigit;
            return OpcUa_Good;
        }
        return character == ',' ? endDimension() : OpcUa_BadIndexRangeInvalid;
    }

    OpcUa_StatusCode takeDigit(OpcUa_UInt32 digit)
    {
        const bool isFirst = m_state == State::FirstDigit || m_state == State::FirstNumber;
        OpcUa_UInt32& index = isFirst ? m_entry.first : m_entry.last;
        const OpcUa_UInt64 next = OpcUa_UInt64{index} * 10 + digit;
        if (next > std::numeric_limits<OpcUa_UInt32>::max()) {
            return OpcUa_BadIndexRangeInvalid;
        }
        index = static_cast<OpcUa_UInt32>(next);
        m_state = isFirst ? State::FirstNumber : State::SecondNumber;
        return OpcUa_Good;
    }

    OpcUa_StatusCode endDimension()
    {
        if (m_state == State::FirstDigit || m_state == State::SecondDigit || !m_entry.isValid()) {
            return OpcUa_BadIndexRangeInvalid;
        }
        m_entry.last = m_entry.end();
        const OpcUa_StatusCode status = m_range.append(m_entry);
        m_entry = Begun;
        m_state = State::FirstDigit;
        return status;
    }

    static constexpr UaNumericRangeEntry Begun = {0, 0, UaNumericRangeEntry::Single};

    UaNumericRange& m_range;
    UaNumericRangeEntry m_entry = Begun;
    State m_state = State::FirstDigit;
};

/// Room for ",4294967295:4294967295".
constexpr std::size_t EntryTextSize = 22;

char* writeEntry(char* text, const UaNumericRangeEntry& entry, bool isFirst)
{
    if (!isFirst) {
        *text++ = ',';
    }
    text = std::to_chars(text, text + EntryTextSize, entry.first).ptr;
    if (entry.kind == UaNumericRangeEntry::Range) {
        *text++ = ':';
        text = std::to_chars(text, text + EntryTextSize, entry.last).ptr;
    }
    return text;
}

} // namespace

UaNumericRange::UaNumericRange(const UaNumericRange& other)
{
    if (other.m_count == 0) {
        return;
    }
    m_pEntries = static_cast<UaNumericRangeEntry*>(
        OpcUa_Memory_AllocArray(other.m_count, sizeof(UaNumericRangeEntry)));
    if (m_pEntries != nullptr) {
        std::copy_n(other.m_pEntries, other.m_count, m_pEntries);
        m_count = m_capacity = other.m_count;
    }
}

UaNumericRange::UaNumericRange(UaNumericRange&& other) noexcept
    : m_count(std::exchange(other.m_count, 0))
    , m_capacity(std::exchange(other.m_capacity, 0))
    , m_pEntries(std::exchange(other.m_pEntries, nullptr))
{
}

UaNumericRange::~UaNumericRange()
{
    clear();
}

UaNumericRange& UaNumericRange::operator=(const UaNumericRange& other)
{
    if (this != &other) {
        *this = UaNumericRange(other);
    }
    return *this;
}

UaNumericRange& UaNumericRange::operator=(UaNumericRange&& other) noexcept
{
    UaNumericRange taken(std::move(other));
    std::swap(m_count, taken.m_count);
    std::swap(m_capacity, taken.m_capacity);
    std::swap(m_pEntries, taken.m_pEntries);
    return *this;
}

OpcUa_StatusCode UaNumericRange::fromString(const UaString& sRange)
{
    clear();
    if (sRange.isNull()) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_StatusCode status = RangeReader(*this).read(sRange.view());
    if (OpcUa_IsBad(status)) {
        clear();
    }
    return status;
}

UaString UaNumericRange::toString() const
{
    const std::size_t room = m_count * EntryTextSize;
    auto* text = isValid() ? static_cast<char*>(OpcUa_Memory_Alloc(room)) : nullptr;
    if (text == nullptr) {
        return {};
    }
    char* end = text;
    for (OpcUa_UInt32 i = 0; i < m_count; ++i) {
        end = writeEntry(end, m_pEntries[i], i == 0);
    }
    UaString result(text, end - text);
    OpcUa_Memory_Free(text);
    return result;
}

bool UaNumericRange::isValid() const
{
    return m_count > 0 &&
           std::all_of(m_pEntries, m_pEntries + m_count,
                       [](const UaNumericRangeEntry& entry) { return entry.isValid(); });
}

OpcUa_StatusCode UaNumericRange::append(const UaNumericRangeEntry& entry)
{
    if (m_count == m_capacity) {
        const OpcUa_UInt64 capacity = m_capacity == 0 ? 4 : OpcUa_UInt64{m_capacity} * 2;
        void* block =
            capacity > std::numeric_limits<OpcUa_UInt32>::max()
                ? nullptr
                : OpcUa_Memory_ReAlloc(m_pEntries, capacity * sizeof(UaNumericRangeEntry));
        if (block == nullptr) {
            return OpcUa_BadOutOfMemory;
        }
        m_pEntries = static_cast<UaNumericRangeEntry*>(block);
        m_capacity = static_cast<OpcUa_UInt32>(capacity);
    }
    m_pEntries[m_count] = entry;
    ++m_count;
    return OpcUa_Good;
}

void UaNumericRange::clear()
{
    OpcUa_Memory_Free(std::exchange(m_pEntries, nullptr));
    m_count = m_capacity = 0;
}

bool UaNumericRange::operator==(const UaNumericRange& other) const
{
    return std::equal(m_pEntries, m_pEntries + m_count, other.m_pEntries,
                      other.m_pEntries + other.m_count);
}
