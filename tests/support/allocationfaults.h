#pragma once

#include "platform/allocator.h"

#include <atomic>
#include <cstddef>

/// Makes one allocation of the stack's allocator fail while it lives: the one with the number
/// `failAt`, counted from 0. Only one object may live at a time.
class AllocationFaults
{
public:
    explicit AllocationFaults(std::size_t failAt)
    {
        count() = 0;
        target() = failAt;
        OpcUa_Memory_SetFaultHook(
            [](std::size_t) { return count().fetch_add(1) == target().load(); });
    }
    ~AllocationFaults() { OpcUa_Memory_SetFaultHook(nullptr); }
    AllocationFaults(const AllocationFaults&) = delete;
    AllocationFaults& operator=(const AllocationFaults&) = delete;

    [[nodiscard]] static bool hasFailed() { return count() > target(); }

private:
    static std::atomic<std::size_t>& count()
    {
        static std::atomic<std::size_t> value = 0;
        return value;
    }
    static std::atomic<std::size_t>& target()
    {
        static std::atomic<std::size_t> value = 0;
        return value;
    }
};

/// Runs `attempt()` again and again, with each of its allocations failing once, and hands each result
/// to `verify(result)`. The last run, in which nothing fails, isn't verified. Returns how many runs
/// failed.
template <typename Attempt, typename Verify>
std::size_t forEveryFailingAllocation(Attempt attempt, Verify verify)
{
    for (std::size_t failAt = 0;; ++failAt) {
        bool hasFailed = false;
        const auto result = [&] {
            const AllocationFaults faults(failAt);
            auto value = attempt();
            hasFailed = AllocationFaults::hasFailed();
            return value;
        }();
        if (!hasFailed) {
            return failAt;
        }
        verify(result);
    }
}
