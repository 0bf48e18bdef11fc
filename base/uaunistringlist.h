#pragma once

#include "base/uaunistring.h"

/// A list of texts in one block of the stack's allocator. It belongs to one thread at a time, and a
/// copy copies the handles, not the texts. When memory is short for a copy, the copy is empty.
class UaUniStringList
{
public:
    /// Room that the first append makes.
    static constexpr OpcUa_Int32 InitialCapacity = 10;

    UaUniStringList() noexcept = default;
    UaUniStringList(const UaUniStringList& other);
    UaUniStringList(UaUniStringList&& other) noexcept;
    UaUniStringList& operator=(const UaUniStringList& other);
    UaUniStringList& operator=(UaUniStringList&& other) noexcept;
    ~UaUniStringList() { clear(); }

    void swap(UaUniStringList& other) noexcept;

    [[nodiscard]] OpcUa_Int32 size() const noexcept { return m_size; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_size == 0; }
    /// The text at a position, the null string outside.
    [[nodiscard]] UaUniString at(OpcUa_Int32 index) const noexcept;
    [[nodiscard]] const UaUniString* begin() const noexcept { return m_texts; }
    [[nodiscard]] const UaUniString* end() const noexcept { return m_texts + m_size; }

    /// Makes room for `capacity` texts. False when memory is short; the list is as it was then.
    bool reserve(OpcUa_Int32 capacity) noexcept;
    /// Adds a text at the end. False when memory is short or the list is full; it is as it was then.
    bool append(UaUniString text) noexcept;
    /// Removes the last text; nothing happens to an empty list.
    void removeLast() noexcept;
    /// Orders the texts as UaUniString does.
    void sort() noexcept;
    /// Removes all texts and frees the block.
    void clear() noexcept;
    /// All texts in their order with a unit between them; null for an empty list.
    [[nodiscard]] UaUniString join(char16_t separator) const;

    friend bool operator==(const UaUniStringList& left, const UaUniStringList& right) noexcept;

private:
    UaUniString* m_texts = nullptr;
    OpcUa_Int32 m_size = 0;
    OpcUa_Int32 m_capacity = 0;
};
