#include "base/uabytearray.h"

#include "base/hexadecimal.h"
#include "base/uabytestring.h"
#include "platform/allocator.h"
#include "platform/status.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>

namespace {

constexpr OpcUa_Int64 MaxSize = std::numeric_limits<OpcUa_Int32>::max();

/// The least capacity of an array that grows byte by byte.
constexpr OpcUa_Int64 FirstCapacity = 16;

} // namespace

constinit UaByteArray::Block UaByteArray::s_nullBlock;

UaByteArray::UaByteArray(const OpcUa_Byte* data, OpcUa_Int32 length)
    : UaByteArray()
{
    if (data != nullptr && allocate(length)) {
        std::memcpy(m_pBlock->data, data, static_cast<std::size_t>(length));
    }
}

UaByteArray::UaByteArray(const char* data, OpcUa_Int32 length)
    : UaByteArray(reinterpret_cast<const OpcUa_Byte*>(data), length)
{
}

UaByteArray::UaByteArray(const UaByteString& bytes)
    : UaByteArray(bytes.data(), bytes.length())
{
}

UaByteArray::UaByteArray(const OpcUa_ByteString& bytes)
    : UaByteArray(bytes.Data, bytes.Length)
{
}

void UaByteArray::destroy(Block* block) noexcept
{
    OpcUa_Memory_Free(block->data);
    std::destroy_at(block);
    OpcUa_Memory_Free(block);
}

/// Replaces the array by one with `size` bytes that aren't set yet; by an empty one, and false, when
/// there is no such size or memory is short.
bool UaByteArray::allocate(OpcUa_Int64 size) noexcept
{
    *this = UaByteArray();
    if (size < 1 || size > MaxSize) {
        return false;
    }
    void* memory = OpcUa_Memory_Alloc(sizeof(Block));
    void* data = OpcUa_Memory_Alloc(static_cast<std::size_t>(size));
    if (memory == nullptr || data == nullptr) {
        OpcUa_Memory_Free(memory);
        OpcUa_Memory_Free(data);
        return false;
    }
    m_pBlock = ::new (memory) Block();
    m_pBlock->size = static_cast<OpcUa_Int32>(size);
    m_pBlock->capacity = m_pBlock->size;
    m_pBlock->data = static_cast<OpcUa_Byte*>(data);
    return true;
}

/// Changes size and capacity, which isn't below the size, of a block of this array's own, made first
/// when the block is shared. New bytes are 0.
bool UaByteArray::changeSize(OpcUa_Int32 size, OpcUa_Int32 capacity) noexcept
{
    const OpcUa_Int32 kept = std::min(size, m_pBlock->size);
    if (isShared()) {
        UaByteArray copy;
        if (!copy.allocate(capacity)) {
            return false;
        }
        if (kept > 0) {
            std::memcpy(copy.m_pBlock->data, m_pBlock->data, static_cast<std::size_t>(kept));
        }
        swap(copy);
    } else if (capacity > m_pBlock->capacity) {
        void* data = OpcUa_Memory_ReAlloc(m_pBlock->data, static_cast<std::size_t>(capacity));
        if (data == nullptr) {
            return false;
        }
        m_pBlock->data = static_cast<OpcUa_Byte*>(data);
        m_pBlock->capacity = capacity;
    }
    std::memset(m_pBlock->data + kept, 0, static_cast<std::size_t>(size - kept));
    m_pBlock->size = size;
    return true;
}

/// Makes the array larger, with room for more when it has to be reallocated, so that growing byte by
/// byte takes linear time.
bool UaByteArray::grow(OpcUa_Int64 size) noexcept
{
    if (size > MaxSize) {
        return false;
    }
    const OpcUa_Int64 half = m_pBlock->capacity / 2;
    const OpcUa_Int64 roomy =
        std::min(MaxSize, std::max({size, m_pBlock->capacity + half, FirstCapacity}));
    const bool fits = !isShared() && size <= m_pBlock->capacity;
    return changeSize(static_cast<OpcUa_Int32>(size),
                      static_cast<OpcUa_Int32>(fits ? size : roomy));
}

bool UaByteArray::resize(OpcUa_Int32 size) noexcept
{
    if (size < 1) {
        *this = UaByteArray();
        return true;
    }
    return changeSize(size, size);
}

OpcUa_Byte* UaByteArray::data() noexcept
{
    if (isEmpty() || (isShared() && !changeSize(size(), size()))) {
        return nullptr;
    }
    return m_pBlock->data;
}

void UaByteArray::write(OpcUa_Int32 index, OpcUa_Byte value) noexcept
{
    if (index < 0) {
        return;
    }
    if (index >= size() ? grow(OpcUa_Int64{index} + 1) : data() != nullptr) {
        m_pBlock->data[index] = value;
    }
}

bool UaByteArray::append(const OpcUa_Byte* data, OpcUa_Int32 length) noexcept
{
    if (length < 0 || (data == nullptr && length > 0)) {
        return false;
    }
    if (length == 0) {
        return true;
    }
    // Bytes of this array may move when it grows; their place in it stays.
    const OpcUa_Int32 oldSize = size();
    const OpcUa_Byte* oldData = m_pBlock->data;
    const bool isOwn = oldData != nullptr && !std::less<>()(data, oldData) &&
                       std::less<>()(data, oldData + oldSize);
    const auto offset = isOwn ? data - oldData : 0;
    if (!grow(OpcUa_Int64{oldSize} + length)) {
        return false;
    }
    std::memcpy(m_pBlock->data + oldSize, isOwn ? m_pBlock->data + offset : data,
                static_cast<std::size_t>(length));
    return true;
}

OpcUa_StatusCode UaByteArray::copyTo(OpcUa_ByteString* destination) const
{
    const OpcUa_ByteString bytes = {size(), m_pBlock->data};
    return OpcUa_ByteString_CopyTo(&bytes, destination);
}

OpcUa_StatusCode UaByteArray::detach(OpcUa_ByteString* destination)
{
    if (isShared() || destination == nullptr) {
        const OpcUa_StatusCode status = copyTo(destination);
        if (OpcUa_IsGood(status)) {
            *this = UaByteArray();
        }
        return status;
    }
    OpcUa_ByteString_Clear(destination);
    *destination = {size(), std::exchange(m_pBlock->data, nullptr)};
    *this = UaByteArray();
    return OpcUa_Good;
}

UaString UaByteArray::toHex(bool spaces) const
{
    return UaHexadecimal::encode(data(), static_cast<std::size_t>(size()), spaces);
}

UaByteArray UaByteArray::fromHex(const UaString& text)
{
    bool isRead = true;
    UaByteArray bytes = compose(text.length() / 2, [&text, &isRead](OpcUa_Byte* data) {
        isRead = UaHexadecimal::decode(text.view(), data);
    });
    return isRead ? bytes : UaByteArray();
}

bool operator==(const UaByteArray& left, const UaByteArray& right) noexcept
{
    return left.m_pBlock == right.m_pBlock || std::equal(left.data(), left.data() + left.size(),
                                                         right.data(), right.data() + right.size());
}
