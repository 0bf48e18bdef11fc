#pragma once

#include <atomic>
#include <thread>

/// A lock for sections of a few nanoseconds, where a mutex would cost more than what it guards. It
/// needs nothing to be made or deleted; taking a free one is a single atomic operation, and whoever
/// finds it taken gives its time slice away until it is free. Not recursive. For std::lock_guard.
class OpcUa_SpinLock
{
public:
    void lock() noexcept
    {
        while (m_bIsLocked.exchange(true, std::memory_order_acquire)) {
            std::this_thread::yield();
        }
    }

    void unlock() noexcept { m_bIsLocked.store(false, std::memory_order_release); }

private:
    std::atomic<bool> m_bIsLocked = false;
};
