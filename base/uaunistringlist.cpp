#include "base/uaunistringlist.h"

#include "platform/allocator.h"

#include <algorithm>
#include <limits>
#include <memory>

UaUniStringList::UaUniStringList(const UaUniStringList& other)
{
    if (reserve(other.m_size)) {
        std::uninitialized_copy_n(other.m_texts, other.m_size, m_texts);
        m_size = other.m_size;
    }
}

UaUniStringList::UaUniStringList(UaUniStringList&& other) noexcept
{
    swap(other);
}

UaUniStringList& UaUniStringList::operator=(const UaUniStringList& other)
{
    UaUniStringList(other).swap(*this);
    return *this;
}

UaUniStringList& UaUniStringList::operator=(UaUniStringList&& other) noexcept
{
    UaUniStringList(std::move(other)).swap(*this);
    return *this;
}

void UaUniStringList::swap(UaUniStringList& other) noexcept
{
    std::swap(m_texts, other.m_texts);
    std::swap(m_size, other.m_size);
    std::swap(m_capacity, other.m_capacity);
}

UaUniString UaUniStringList::at(OpcUa_Int32 index) const noexcept
{
    return index >= 0 && index < m_size ? m_texts[index] : UaUniString();
}

bool UaUniStringList::reserve(OpcUa_Int32 capacity) noexcept
{
    if (capacity <= m_capacity) {
        return true;
    }
    auto* texts = static_cast<UaUniString*>(
        OpcUa_Memory_AllocArray(static_cast<std::size_t>(capacity), sizeof(UaUniString)));
    if (texts == nullptr) {
        return false;
    }
    std::uninitialized_move_n(m_texts, m_size, texts);
    std::destroy_n(m_texts, m_size);
    OpcUa_Memory_Free(m_texts);
    m_texts = texts;
    m_capacity = capacity;
    return true;
}

bool UaUniStringList::append(UaUniString text) noexcept
{
    if (m_size == m_capacity) {
        constexpr OpcUa_Int64 maximum = std::numeric_limits<OpcUa_Int32>::max();
        const OpcUa_Int64 doubled = std::max<OpcUa_Int64>(InitialCapacity, OpcUa_Int64{m_size} * 2);
        if (m_size == maximum || !reserve(static_cast<OpcUa_Int32>(std::min(maximum, doubled)))) {
            return false;
        }
    }
    std::construct_at(m_texts + m_size, std::move(text));
    ++m_size;
    return true;
}

void UaUniStringList::removeLast() noexcept
{
    if (m_size > 0) {
        --m_size;
        std::destroy_at(m_texts + m_size);
    }
}

void UaUniStringList::sort() noexcept
{
    std::sort(m_texts, m_texts + m_size);
}

void UaUniStringList::clear() noexcept
{
    std::destroy_n(m_texts, m_size);
    OpcUa_Memory_Free(m_texts);
    m_texts = nullptr;
    m_size = 0;
    m_capacity = 0;
}

UaUniString UaUniStringList::join(char16_t separator) const
{
    if (isEmpty()) {
        return {};
    }
    OpcUa_Int64 length = m_size - 1;
    for (const UaUniString& text : *this) {
        length += text.length();
    }
    return UaUniString::compose(length, [this, separator](char16_t* units) {
        for (OpcUa_Int32 i = 0; i < m_size; ++i) {
            if (i > 0) {
                *units++ = separator;
            }
            const std::u16string_view text = m_texts[i].view();
            units = std::copy(text.begin(), text.end(), units);
        }
    });
}

bool operator==(const UaUniStringList& left, const UaUniStringList& right) noexcept
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end());
}
