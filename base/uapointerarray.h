#pragma once

#include "platform/allocator.h"
#include "platform/status.h"
#include "platform/types.h"

#include <algorithm>
#include <memory>
#include <utility>

/// A growing array of owned pointers, such as UaPointerArray<UaDiagnosticInfo>: elements keep their
/// address while the array grows and moves. Moves leave an empty array; there is no copy. Not shared
/// between threads.
template <typename T>
class UaPointerArray
{
public:
    UaPointerArray() noexcept = default;
    UaPointerArray(const UaPointerArray&) = delete;
    UaPointerArray(UaPointerArray&& other) noexcept
        : m_length(std::exchange(other.m_length, 0))
        , m_capacity(std::exchange(other.m_capacity, 0))
        , m_ppElements(std::exchange(other.m_ppElements, nullptr))
    {
    }
    virtual ~UaPointerArray() { clear(); }

    UaPointerArray& operator=(const UaPointerArray&) = delete;
    UaPointerArray& operator=(UaPointerArray&& other) noexcept
    {
        UaPointerArray taken(std::move(other));
        std::swap(m_length, taken.m_length);
        std::swap(m_capacity, taken.m_capacity);
        std::swap(m_ppElements, taken.m_ppElements);
        return *this;
    }

    [[nodiscard]] OpcUa_UInt32 length() const noexcept { return m_length; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_length == 0; }

    /// The element, owned by the array; null when the index is out of range.
    [[nodiscard]] T* at(OpcUa_UInt32 index) const noexcept
    {
        return index < m_length ? m_ppElements[index] : nullptr;
    }

    /// The same without a check of the index.
    [[nodiscard]] T* operator[](OpcUa_UInt32 index) const noexcept { return m_ppElements[index]; }

    /// Takes an element over at the end; a null one is allowed and keeps its place. `BadOutOfMemory`;
    /// the caller still owns the element then.
    [[nodiscard]] OpcUa_StatusCode append(std::unique_ptr<T>&& pElement) noexcept
    {
        if (m_length == m_capacity && !grow()) {
            return OpcUa_BadOutOfMemory;
        }
        m_ppElements[m_length] = pElement.release();
        ++m_length;
        return OpcUa_Good;
    }

    /// Takes an element out and hands it over; those behind it move up. Null when the index is out of
    /// range.
    [[nodiscard]] std::unique_ptr<T> remove(OpcUa_UInt32 index) noexcept
    {
        if (index >= m_length) {
            return nullptr;
        }
        std::unique_ptr<T> pElement(m_ppElements[index]);
        std::move(m_ppElements + index + 1, m_ppElements + m_length, m_ppElements + index);
        --m_length;
        return pElement;
    }

    /// Deletes all elements, the last one first.
    void clear() noexcept
    {
        while (m_length > 0) {
            --m_length;
            delete m_ppElements[m_length];
        }
        OpcUa_Memory_Free(std::exchange(m_ppElements, nullptr));
        m_capacity = 0;
    }

private:
    bool grow() noexcept
    {
        constexpr OpcUa_UInt32 firstCapacity = 8;
        constexpr OpcUa_UInt32 lastCapacity = 0x40000000u;
        if (m_capacity >= lastCapacity) {
            return false;
        }
        const OpcUa_UInt32 capacity = m_capacity == 0 ? firstCapacity : m_capacity * 2;
        void* block = OpcUa_Memory_ReAlloc(m_ppElements, capacity * sizeof(T*));
        if (block == nullptr) {
            return false;
        }
        m_ppElements = static_cast<T**>(block);
        m_capacity = capacity;
        return true;
    }

    OpcUa_UInt32 m_length = 0;
    OpcUa_UInt32 m_capacity = 0;
    T** m_ppElements = nullptr; ///< From the stack's allocator; the elements from new.
};
