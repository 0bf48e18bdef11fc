#pragma once

#include "platform/allocator.h"

#include <atomic>
#include <cstddef>

/// Adds up what is asked of the stack's allocator while it lives, freed again or not.
class AllocationSum
{
public:
    AllocationSum()
    {
        sum() = 0;
        OpcUa_Memory_SetFaultHook([](std::size_t size) {
            sum() += size;
            return false;
        });
    }
    ~AllocationSum() { OpcUa_Memory_SetFaultHook(nullptr); }
    AllocationSum(const AllocationSum&) = delete;
    AllocationSum& operator=(const AllocationSum&) = delete;

    /// In bytes.
    [[nodiscard]] static std::atomic<std::size_t>& sum()
    {
        static std::atomic<std::size_t> value = 0;
        return value;
    }

    /// Whether so much was asked for as bytes from outside are worth: 64 times their size and 1 MiB.
    [[nodiscard]] static bool isWithinWorthOf(std::size_t size)
    {
        return sum() <= 64 * size + 1024 * 1024;
    }
};
