#pragma once

#include "platform/types.h"

#include <atomic>

/// The number of handles to one shared block. Handles in different threads may be taken and dropped
/// at the same time; the block itself is freed by whoever drops the last one.
class UaReferenceCount
{
public:
    /// Starts with the one handle of whoever makes the block.
    constexpr UaReferenceCount() noexcept = default;
    UaReferenceCount(const UaReferenceCount&) = delete;
    UaReferenceCount& operator=(const UaReferenceCount&) = delete;
    UaReferenceCount(UaReferenceCount&&) = delete;
    UaReferenceCount& operator=(UaReferenceCount&&) = delete;
    ~UaReferenceCount() = default;

    /// One more handle. The caller has one already, so nothing needs to be ordered.
    void take() noexcept { m_count.fetch_add(1, std::memory_order_relaxed); }

    /// One handle less. True when it was the last: what all other threads did with the block has
    /// happened before, and the caller frees it.
    [[nodiscard]] bool drop() noexcept
    {
        // The only handle can't be copied by another thread, so it needs no locked write.
        return isOne() || m_count.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }

    /// True when the caller's handle is the only one, so that the block may be written to.
    [[nodiscard]] bool isOne() const noexcept
    {
        return m_count.load(std::memory_order_acquire) == 1;
    }

private:
    std::atomic<OpcUa_Int32> m_count = 1;
};
