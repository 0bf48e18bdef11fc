#pragma once

#include "base/uareferencecount.h"
#include "base/uastring.h"
#include "stack/opcua_bytestring.h"

#include <concepts>
#include <utility>

class UaByteString;

/// Growing bytes, as one pointer to a shared block. A copy shares the block, costs one atomic
/// increment and may live in another thread; what writes to a shared block makes an own copy first.
///
/// There is one kind of empty array: it holds no bytes and no difference between null and empty. When
/// memory is short, an array that should be made stays empty and a write that needs more has no
/// effect.
class UaByteArray
{
public:
    class Element;

    UaByteArray() noexcept
        : m_pBlock(&s_nullBlock)
    {
    }
    /// Copies `length` bytes; empty for a null pointer or a length below 1.
    UaByteArray(const OpcUa_Byte* data, OpcUa_Int32 length);
    UaByteArray(const char* data, OpcUa_Int32 length);
    /// Copies the bytes; a null byte string gives an empty array.
    explicit UaByteArray(const UaByteString& bytes);
    explicit UaByteArray(const OpcUa_ByteString& bytes);

    UaByteArray(const UaByteArray& other) noexcept
        : m_pBlock(other.m_pBlock)
    {
        take();
    }
    UaByteArray(UaByteArray&& other) noexcept
        : m_pBlock(std::exchange(other.m_pBlock, &s_nullBlock))
    {
    }
    UaByteArray& operator=(const UaByteArray& other) noexcept
    {
        UaByteArray(other).swap(*this);
        return *this;
    }
    UaByteArray& operator=(UaByteArray&& other) noexcept
    {
        UaByteArray(std::move(other)).swap(*this);
        return *this;
    }
    ~UaByteArray() { drop(); }

    void swap(UaByteArray& other) noexcept { std::swap(m_pBlock, other.m_pBlock); }

    /// Makes an array of `size` bytes without a copy: `write` is called with the room for them, unless
    /// there is none; then the result is empty, as it is for a size below 1.
    template <std::invocable<OpcUa_Byte*> Writer>
    [[nodiscard]] static UaByteArray compose(OpcUa_Int64 size, Writer&& write)
    {
        UaByteArray bytes;
        if (bytes.allocate(size)) {
            std::forward<Writer>(write)(bytes.m_pBlock->data);
        }
        return bytes;
    }

    [[nodiscard]] OpcUa_Int32 size() const noexcept { return m_pBlock->size; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_pBlock->size == 0; }
    /// Bytes that the array can hold without another allocation.
    [[nodiscard]] OpcUa_Int32 capacity() const noexcept { return m_pBlock->capacity; }

    /// Changes the size; new bytes are 0. A size below 1 frees everything, a smaller one keeps the
    /// capacity, and one above the capacity reallocates. A shared array gets an own copy of no more
    /// than the new size. False when memory is short; the array is as it was then.
    bool resize(OpcUa_Int32 size) noexcept;

    /// The bytes, valid until the array changes; null for an empty one.
    [[nodiscard]] const OpcUa_Byte* data() const noexcept { return m_pBlock->data; }
    /// The bytes for writing; a shared array gets an own copy first. Null for an empty array and when
    /// memory is short.
    [[nodiscard]] OpcUa_Byte* data() noexcept;

    /// The byte at a position, 0 outside.
    [[nodiscard]] OpcUa_Byte operator[](OpcUa_Int32 index) const noexcept
    {
        return index >= 0 && index < m_pBlock->size ? m_pBlock->data[index] : OpcUa_Byte{0};
    }
    /// A place for reading and writing; see Element.
    [[nodiscard]] Element operator[](OpcUa_Int32 index) noexcept;

    /// Appends bytes, which may be bytes of this array. False for a null pointer with a positive
    /// length, a negative length, or when the sum is too long or memory is short; the array is as it
    /// was then.
    bool append(const OpcUa_Byte* data, OpcUa_Int32 length) noexcept;

    /// Hands the bytes over and leaves this array empty: the block itself when no other array shares
    /// it, however large, and a copy otherwise. An empty array gives a byte string of length 0. What
    /// the destination held is cleared. `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the
    /// destination is null then, and this array keeps its bytes.
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_ByteString* destination);
    /// The same, but always a copy, and this array keeps its bytes.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ByteString* destination) const;

    /// Two upper case digits per byte, with `spaces` and a blank between bytes. Without bytes an empty
    /// text; the null string when the text would be too long.
    [[nodiscard]] UaString toHex(bool spaces = false) const;
    /// Reads an even number of digits in either case and nothing else; an empty array otherwise.
    [[nodiscard]] static UaByteArray fromHex(const UaString& text);

    /// Equal sizes and bytes.
    friend bool operator==(const UaByteArray& left, const UaByteArray& right) noexcept;

private:
    struct Block
    {
        OpcUa_Int32 size = 0;
        OpcUa_Int32 capacity = 0;
        OpcUa_Byte* data = nullptr;
        UaReferenceCount count;
    };

    void take() const noexcept
    {
        // The null block isn't counted: it is never freed, and threads needn't contend over it.
        if (m_pBlock != &s_nullBlock) {
            m_pBlock->count.take();
        }
    }
    void drop() noexcept
    {
        if (m_pBlock != &s_nullBlock && m_pBlock->count.drop()) {
            destroy(m_pBlock);
        }
    }
    [[nodiscard]] bool isShared() const noexcept
    {
        return m_pBlock == &s_nullBlock || !m_pBlock->count.isOne();
    }
    static void destroy(Block* block) noexcept;
    bool allocate(OpcUa_Int64 size) noexcept;
    bool changeSize(OpcUa_Int32 size, OpcUa_Int32 capacity) noexcept;
    bool grow(OpcUa_Int64 size) noexcept;
    void write(OpcUa_Int32 index, OpcUa_Byte value) noexcept;

    static Block s_nullBlock;

    Block* m_pBlock;
};

/// One place of a byte array. Assigning writes the byte; at or behind the end the array grows, with 0
/// in between. A negative place, or a lack of memory, leaves the array as it is. It refers to the
/// array, which must outlive it.
class UaByteArray::Element
{
public:
    Element(UaByteArray& array, OpcUa_Int32 index) noexcept
        : m_array(array)
        , m_index(index)
    {
    }
    Element(const Element&) = default;
    Element(Element&&) = default;
    ~Element() = default;

    operator OpcUa_Byte() const noexcept { return std::as_const(m_array)[m_index]; }
    Element& operator=(OpcUa_Byte value) noexcept
    {
        m_array.write(m_index, value);
        return *this;
    }
    /// Copies the byte, as with two references.
    Element& operator=(const Element& other) // NOLINT(bugprone-unhandled-self-assignment): harmless
    {
        return *this = static_cast<OpcUa_Byte>(other);
    }
    Element& operator=(Element&& other) noexcept { return *this = static_cast<OpcUa_Byte>(other); }

private:
    UaByteArray& m_array;
    OpcUa_Int32 m_index;
};

inline UaByteArray::Element UaByteArray::operator[](OpcUa_Int32 index) noexcept
{
    return Element(*this, index);
}
