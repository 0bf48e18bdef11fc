#pragma once

#include "base/uareferencecount.h"
#include "platform/allocator.h"

#include <new>
#include <utility>

/// A handle to one stack record in a block with an atomic count. A copy shares the block; the last
/// handle clears the record and frees the block, in whatever thread it dies. Copies may live in
/// different threads, one handle may not. The empty handle has no block and costs nothing.
///
/// `Initialize` and `Clear` are the record's functions of those names.
template <typename Record, void (*Initialize)(Record*), void (*Clear)(Record*)>
class UaSharedRecord
{
public:
    UaSharedRecord() noexcept = default;

    UaSharedRecord(const UaSharedRecord& other) noexcept
        : m_pBlock(other.m_pBlock)
    {
        retain();
    }

    UaSharedRecord(UaSharedRecord&& other) noexcept
        : m_pBlock(std::exchange(other.m_pBlock, nullptr))
    {
    }

    ~UaSharedRecord() { release(); }

    UaSharedRecord& operator=(UaSharedRecord other) noexcept
    {
        swap(other);
        return *this;
    }

    void swap(UaSharedRecord& other) noexcept { std::swap(m_pBlock, other.m_pBlock); }

    /// A new block with an initialised record; the empty handle when memory is short.
    [[nodiscard]] static UaSharedRecord create() noexcept
    {
        UaSharedRecord handle;
        void* memory = OpcUa_Memory_Alloc(sizeof(Block));
        if (memory != nullptr) {
            handle.m_pBlock = ::new (memory) Block;
            Initialize(&handle.m_pBlock->record);
        }
        return handle;
    }

    [[nodiscard]] bool isEmpty() const noexcept { return m_pBlock == nullptr; }

    /// The record, or null for the empty handle.
    [[nodiscard]] const Record* get() const noexcept
    {
        return m_pBlock == nullptr ? nullptr : &m_pBlock->record;
    }

    /// The record for writing, or null for the empty handle and while the block is shared.
    [[nodiscard]] Record* unshared() noexcept
    {
        return m_pBlock != nullptr && m_pBlock->count.isOne() ? &m_pBlock->record : nullptr;
    }

    /// True when both handles refer to one block, or both to none.
    [[nodiscard]] bool isSameAs(const UaSharedRecord& other) const noexcept
    {
        return m_pBlock == other.m_pBlock;
    }

private:
    struct Block
    {
        Record record;
        UaReferenceCount count;
    };

    void retain() noexcept
    {
        if (m_pBlock != nullptr) {
            m_pBlock->count.take();
        }
    }

    void release() noexcept
    {
        if (m_pBlock != nullptr && m_pBlock->count.drop()) {
            Clear(&m_pBlock->record);
            m_pBlock->~Block();
            OpcUa_Memory_Free(m_pBlock);
        }
    }

    Block* m_pBlock = nullptr;
};
