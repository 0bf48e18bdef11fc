#pragma once

#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_elementtraits.h"

#include <utility>

/// A flat block of stack records that moves into a variant or a service record without a copy. The
/// pattern of the whole array family: `Traits` names the record type `Element` and answers
/// `elementTraits()`, which tells how such records are cleared, copied and compared.
///
/// An array owns its block, which comes from the stack's allocator and is never shared: a copy of the
/// array is a deep copy, a move takes the block over. The empty array has length 0 and a null block.
/// Where memory runs short the array is empty afterwards. An array is used by one thread at a time.
template <typename Traits>
class UaArray
{
public:
    using Element = typename Traits::Element;

    UaArray() noexcept = default;

    /// Deep copy of `length` elements; a length below 1 or a null pointer gives the empty array.
    UaArray(OpcUa_Int32 length, const Element* elements) { attach(length, elements); }

    UaArray(const UaArray& other)
        : UaArray(other.m_length, other.m_pElements)
    {
    }

    UaArray(UaArray&& other) noexcept { swap(other); }

    virtual ~UaArray() { clear(); }

    UaArray& operator=(const UaArray& other)
    {
        if (this != &other) {
            attach(other.m_length, other.m_pElements);
        }
        return *this;
    }

    UaArray& operator=(UaArray&& other) noexcept
    {
        UaArray taken(std::move(other));
        swap(taken);
        return *this;
    }

    /// Same length and no pair of elements that their type's compare tells apart. Empty arrays are
    /// equal, whatever their history.
    friend bool operator==(const UaArray& left, const UaArray& right)
    {
        return left.m_length == right.m_length &&
               OpcUa_Elements_Compare(Traits::elementTraits(), left.m_pElements, right.m_pElements,
                                      left.m_length) == 0;
    }

    /// Number of elements, never negative.
    [[nodiscard]] OpcUa_Int32 length() const { return m_length; }

    /// The block, null for the empty array. It stays the array's.
    [[nodiscard]] const Element* rawArray() const { return m_pElements; }
    [[nodiscard]] Element* rawArray() { return m_pElements; }

    /// The element at `index`, which must be below the length: it isn't checked.
    const Element& operator[](OpcUa_UInt32 index) const { return m_pElements[index]; }
    Element& operator[](OpcUa_UInt32 index) { return m_pElements[index]; }

    [[nodiscard]] const Element* begin() const { return m_pElements; }
    [[nodiscard]] const Element* end() const { return m_pElements + m_length; }
    [[nodiscard]] Element* begin() { return m_pElements; }
    [[nodiscard]] Element* end() { return m_pElements + m_length; }

    /// Clears every element and frees the block.
    void clear()
    {
        OpcUa_Elements_Free(Traits::elementTraits(), std::exchange(m_pElements, nullptr),
                            std::exchange(m_length, 0));
    }

    /// Replaces the content by `length` initialised elements; a length below 1 gives the empty array.
    /// `BadOutOfMemory` leaves the array empty.
    [[nodiscard]] OpcUa_StatusCode create(OpcUa_Int32 length);

    /// Replaces the content by a deep copy of `length` elements, which may be the array's own; a
    /// length below 1 or a null pointer leaves the array empty.
    void attach(OpcUa_Int32 length, const Element* elements)
    {
        void* copy = nullptr;
        const bool isCopied =
            OpcUa_IsGood(OpcUa_Elements_Copy(Traits::elementTraits(), elements, length, &copy));
        clear();
        m_pElements = static_cast<Element*>(copy);
        m_length = isCopied && copy != nullptr ? length : 0;
    }

    /// With `bDetach` the array takes over the block itself, which must come from the stack's
    /// allocator; it stays the caller's when the length is below 1, which leaves the array empty.
    /// Without `bDetach` a deep copy is made.
    void attach(OpcUa_Int32 length, Element* elements, bool bDetach)
    {
        if (!bDetach) {
            attach(length, elements);
            return;
        }
        clear();
        if (length > 0 && elements != nullptr) {
            m_length = length;
            m_pElements = elements;
        }
    }

    /// Hands the block out, to be freed by OpcUa_Elements_Free, and leaves the array empty. The
    /// caller asks for the length before.
    [[nodiscard]] Element* detach() noexcept
    {
        m_length = 0;
        return std::exchange(m_pElements, nullptr);
    }

    void swap(UaArray& other) noexcept
    {
        std::swap(m_length, other.m_length);
        std::swap(m_pElements, other.m_pElements);
    }

private:
    OpcUa_Int32 m_length = 0;
    Element* m_pElements = nullptr;
};

/// Makes a block of `length` initialised elements, at least one, freed by OpcUa_Elements_Free; null
/// without memory.
[[nodiscard]] void* UaArray_CreateBlock(const OpcUa_ElementTraits& traits, OpcUa_Int32 length);

template <typename Traits>
OpcUa_StatusCode UaArray<Traits>::create(OpcUa_Int32 length)
{
    clear();
    if (length < 1) {
        return OpcUa_Good;
    }
    m_pElements = static_cast<Element*>(UaArray_CreateBlock(Traits::elementTraits(), length));
    if (m_pElements == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    m_length = length;
    return OpcUa_Good;
}
