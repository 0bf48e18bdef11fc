#include "platform/allocator.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <thread>
#include <vector>

namespace {

constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();

TEST(Allocator, size_zero_gives_a_block_of_its_own)
{
    for (void* block : {OpcUa_Memory_Alloc(0), OpcUa_Memory_AllocZeroed(0, 8),
                        OpcUa_Memory_AllocZeroed(8, 0), OpcUa_Memory_AllocArray(0, 8),
                        OpcUa_Memory_AllocArray(8, 0), OpcUa_Memory_ReAlloc(nullptr, 0)}) {
        EXPECT_NE(block, nullptr);
        OpcUa_Memory_Free(block);
    }
}

TEST(Allocator, free_ignores_null)
{
    OpcUa_Memory_Free(nullptr);
}

TEST(Allocator, sizes_of_no_object_give_null)
{
    struct Row
    {
        const char* name;
        std::size_t count;
        std::size_t size;
    };
    const std::array<Row, 5> rows = {{{"product wraps to 0", largest / 2 + 1, 2},
                                      {"product wraps to a small size", largest / 8 + 2, 8},
                                      {"largest count", largest, 1},
                                      {"largest size", 1, largest},
                                      {"one byte above the limit", largest / 2 + 1, 1}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OpcUa_Memory_AllocZeroed(row.count, row.size), nullptr);
        EXPECT_EQ(OpcUa_Memory_AllocArray(row.count, row.size), nullptr);
    }
    EXPECT_EQ(OpcUa_Memory_Alloc(largest / 2 + 1), nullptr);
    EXPECT_EQ(OpcUa_Memory_ReAlloc(nullptr, largest), nullptr);
}

TEST(Allocator, zeroed_blocks_are_zeroed)
{
    auto* bytes = static_cast<std::uint8_t*>(OpcUa_Memory_AllocZeroed(100, 3));
    ASSERT_NE(bytes, nullptr);
    EXPECT_TRUE(std::all_of(bytes, bytes + 300, [](std::uint8_t byte) { return byte == 0; }));
    OpcUa_Memory_Free(bytes);
}

TEST(Allocator, realloc_keeps_the_content)
{
    auto* bytes = static_cast<std::uint8_t*>(OpcUa_Memory_Alloc(2));
    ASSERT_NE(bytes, nullptr);
    bytes[0] = 7;
    bytes[1] = 9;
    bytes = static_cast<std::uint8_t*>(OpcUa_Memory_ReAlloc(bytes, 1000));
    ASSERT_NE(bytes, nullptr);
    EXPECT_EQ(bytes[0], 7);
    EXPECT_EQ(bytes[1], 9);
    OpcUa_Memory_Free(bytes);
}

TEST(Allocator, failing_realloc_leaves_the_block)
{
    auto* bytes = static_cast<std::uint8_t*>(OpcUa_Memory_Alloc(1));
    ASSERT_NE(bytes, nullptr);
    bytes[0] = 5;
    EXPECT_EQ(OpcUa_Memory_ReAlloc(bytes, largest), nullptr);
    EXPECT_EQ(bytes[0], 5);
    OpcUa_Memory_Free(bytes);
}

TEST(Allocator, fault_hook_makes_every_kind_of_allocation_fail)
{
    EXPECT_EQ(OpcUa_Memory_SetFaultHook([](std::size_t size) { return size == 12; }), nullptr);
    EXPECT_EQ(OpcUa_Memory_Alloc(12), nullptr);
    EXPECT_EQ(OpcUa_Memory_AllocZeroed(3, 4), nullptr);
    EXPECT_EQ(OpcUa_Memory_AllocArray(4, 3), nullptr);
    EXPECT_EQ(OpcUa_Memory_ReAlloc(nullptr, 12), nullptr);
    void* other = OpcUa_Memory_Alloc(13);
    EXPECT_NE(other, nullptr);
    OpcUa_Memory_Free(other);
    EXPECT_NE(OpcUa_Memory_SetFaultHook(nullptr), nullptr);
    void* block = OpcUa_Memory_Alloc(12);
    EXPECT_NE(block, nullptr);
    OpcUa_Memory_Free(block);
}

TEST(Allocator, exactly_one_of_many_threads_meets_the_fault)
{
    std::atomic<int> failures = 0;
    {
        const AllocationFaults faults(500);
        std::vector<std::thread> threads;
        threads.reserve(8);
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&failures] {
                for (int round = 0; round < 100; ++round) {
                    void* block = OpcUa_Memory_Alloc(16);
                    failures += block == nullptr ? 1 : 0;
                    OpcUa_Memory_Free(block);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    EXPECT_EQ(failures, 1);
}

} // namespace
