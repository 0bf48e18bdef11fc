#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "platform/allocator.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/copyof.h"
#include "tests/support/eightthreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr OpcUa_Int32 lowest = std::numeric_limits<OpcUa_Int32>::min();
constexpr OpcUa_Int32 highest = std::numeric_limits<OpcUa_Int32>::max();

std::vector<OpcUa_Byte> contentOf(const UaByteArray& array)
{
    return {array.data(), array.data() + array.size()};
}

using Bytes = std::vector<OpcUa_Byte>;

const OpcUa_Byte abc[] = {'a', 'b', 'c'};

void expectEmpty(const UaByteArray& array)
{
    EXPECT_TRUE(array.isEmpty());
    EXPECT_EQ(array.size(), 0);
    EXPECT_EQ(array.capacity(), 0);
    EXPECT_EQ(array.data(), nullptr);
    EXPECT_EQ(array[0], 0);
    EXPECT_EQ(array, UaByteArray());
}

/// Makes every allocation fail.
class NoMemory
{
public:
    NoMemory()
    {
        OpcUa_Memory_SetFaultHook([](std::size_t) { return true; });
    }
    ~NoMemory() { OpcUa_Memory_SetFaultHook(nullptr); }
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;
};

TEST(ByteArray, default_is_empty)
{
    expectEmpty(UaByteArray());
    UaByteArray array;
    EXPECT_EQ(array.data(), nullptr);
}

TEST(ByteArray, nothing_gives_an_empty_array)
{
    expectEmpty(UaByteArray(static_cast<const OpcUa_Byte*>(nullptr), 5));
    expectEmpty(UaByteArray(static_cast<const char*>(nullptr), 5));
    expectEmpty(UaByteArray(abc, 0));
    expectEmpty(UaByteArray(abc, -1));
    expectEmpty(UaByteArray(abc, lowest));
    expectEmpty(UaByteArray(UaByteString()));
    expectEmpty(UaByteArray(OpcUa_ByteString{-1, nullptr}));
    expectEmpty(UaByteArray(OpcUa_ByteString{0, nullptr}));
    expectEmpty(UaByteArray(OpcUa_ByteString{5, nullptr}));
}

TEST(ByteArray, copies_its_source)
{
    OpcUa_Byte source[] = {1, 2, 3};
    const UaByteArray array(source, 3);
    source[0] = 9;
    EXPECT_EQ(contentOf(array), (Bytes{1, 2, 3}));
    EXPECT_EQ(array.capacity(), 3);
    EXPECT_EQ(contentOf(UaByteArray("abc", 3)), (Bytes{'a', 'b', 'c'}));
    const UaByteString string(3, abc);
    EXPECT_EQ(contentOf(UaByteArray(string)), (Bytes{'a', 'b', 'c'}));
    EXPECT_EQ(contentOf(UaByteArray(*string.toOpcUaByteString())), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteArray, copy_shares_the_block)
{
    const UaByteArray first(abc, 3);
    const UaByteArray second = copyOf(first);
    UaByteArray third;
    third = second;
    EXPECT_EQ(first.data(), second.data());
    EXPECT_EQ(first.data(), std::as_const(third).data());
}

TEST(ByteArray, moving_leaves_an_empty_array)
{
    UaByteArray first(abc, 3);
    UaByteArray second = std::move(first);
    // NOLINTNEXTLINE(bugprone-use-after-move): a moved-from array is empty.
    expectEmpty(first);
    first = std::move(second);
    EXPECT_EQ(first, UaByteArray(abc, 3));
    UaByteArray& self = first;
    first = self;
    first = std::move(self);
    EXPECT_EQ(first, UaByteArray(abc, 3));
}

TEST(ByteArray, reading_outside_gives_0)
{
    const UaByteArray array(abc, 3);
    EXPECT_EQ(array[2], 'c');
    for (const OpcUa_Int32 index : {lowest, -1, 3, highest}) {
        EXPECT_EQ(array[index], 0) << index;
    }
}

TEST(ByteArray, compose_writes_in_place)
{
    const UaByteArray array =
        UaByteArray::compose(3, [](OpcUa_Byte* data) { std::copy_n(abc, 3, data); });
    EXPECT_EQ(array, UaByteArray(abc, 3));
    for (const OpcUa_Int64 size : {OpcUa_Int64{-1}, OpcUa_Int64{0}, OpcUa_Int64{highest} + 1}) {
        expectEmpty(UaByteArray::compose(size, [](OpcUa_Byte*) { FAIL(); }));
    }
}

TEST(ByteArray, resize_below_1_frees)
{
    for (const OpcUa_Int32 size : {0, -1, lowest}) {
        UaByteArray array(abc, 3);
        EXPECT_TRUE(array.resize(size));
        expectEmpty(array);
        EXPECT_TRUE(array.resize(size));
        expectEmpty(array);
    }
}

TEST(ByteArray, resize_to_less_keeps_the_capacity)
{
    UaByteArray array(abc, 3);
    const OpcUa_Byte* data = std::as_const(array).data();
    const NoMemory noMemory;
    EXPECT_TRUE(array.resize(1));
    EXPECT_EQ(array.capacity(), 3);
    EXPECT_EQ(array.size(), 1);
    EXPECT_EQ(std::as_const(array).data(), data);
    EXPECT_TRUE(array.resize(3));
    EXPECT_EQ(contentOf(array), (Bytes{'a', 0, 0}));
    EXPECT_EQ(std::as_const(array).data(), data);
}

TEST(ByteArray, resize_above_the_capacity_reallocates)
{
    UaByteArray array(abc, 3);
    EXPECT_TRUE(array.resize(5));
    EXPECT_EQ(array.capacity(), 5);
    EXPECT_EQ(contentOf(array), (Bytes{'a', 'b', 'c', 0, 0}));
    UaByteArray fromNothing;
    EXPECT_TRUE(fromNothing.resize(2));
    EXPECT_EQ(contentOf(fromNothing), (Bytes{0, 0}));
}

TEST(ByteArray, resize_of_a_shared_array_copies_the_smaller_part)
{
    const UaByteArray source(abc, 3);
    for (const OpcUa_Int32 size : {1, 3, 5}) {
        UaByteArray array = source;
        EXPECT_TRUE(array.resize(size));
        EXPECT_NE(std::as_const(array).data(), source.data());
        EXPECT_EQ(array.size(), size);
        EXPECT_EQ(array.capacity(), size);
        Bytes expected = {'a', 'b', 'c'};
        expected.resize(static_cast<std::size_t>(size));
        EXPECT_EQ(contentOf(array), expected);
        EXPECT_EQ(contentOf(source), (Bytes{'a', 'b', 'c'}));
    }
    UaByteArray dropped = source;
    EXPECT_TRUE(dropped.resize(0));
    EXPECT_EQ(contentOf(source), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteArray, resize_without_memory_keeps_the_array)
{
    UaByteArray own(abc, 3);
    UaByteArray shared = own;
    UaByteArray empty;
    const UaByteArray keeper = copyOf(own);
    {
        const NoMemory noMemory;
        EXPECT_FALSE(shared.resize(2));
        EXPECT_FALSE(empty.resize(5));
    }
    EXPECT_EQ(shared, UaByteArray(abc, 3));
    expectEmpty(empty);
    UaByteArray sole(abc, 3);
    const NoMemory noMemory;
    EXPECT_FALSE(sole.resize(4));
    EXPECT_EQ(contentOf(sole), (Bytes{'a', 'b', 'c'}));
    EXPECT_EQ(sole.capacity(), 3);
}

TEST(ByteArray, writing_through_data_leaves_the_copies)
{
    UaByteArray array(abc, 3);
    const UaByteArray copy = array;
    array.data()[0] = 'x';
    EXPECT_EQ(contentOf(array), (Bytes{'x', 'b', 'c'}));
    EXPECT_EQ(contentOf(copy), (Bytes{'a', 'b', 'c'}));
    const OpcUa_Byte* own = std::as_const(array).data();
    EXPECT_EQ(array.data(), own);
}

TEST(ByteArray, data_for_writing_is_null_without_memory)
{
    UaByteArray array(abc, 3);
    const UaByteArray copy = array;
    const NoMemory noMemory;
    EXPECT_EQ(array.data(), nullptr);
    array[0] = 'x';
    EXPECT_EQ(array[0], 'a');
    EXPECT_EQ(contentOf(copy), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteArray, element_reads_and_writes)
{
    UaByteArray array(abc, 3);
    const UaByteArray copy = array;
    array[1] = 'x';
    EXPECT_EQ(array[1], 'x');
    EXPECT_EQ(copy[1], 'b');
    array[0] = array[2];
    EXPECT_EQ(contentOf(array), (Bytes{'c', 'x', 'c'}));
    const UaByteArray::Element element = array[1];
    array[2] = element;
    EXPECT_EQ(contentOf(array), (Bytes{'c', 'x', 'x'}));
}

TEST(ByteArray, element_behind_the_end_grows_the_array)
{
    UaByteArray array;
    array[4] = 'x';
    EXPECT_EQ(contentOf(array), (Bytes{0, 0, 0, 0, 'x'}));
    EXPECT_GE(array.capacity(), 5);
    UaByteArray shared(abc, 3);
    const UaByteArray copy = shared;
    shared[3] = 'd';
    EXPECT_EQ(contentOf(shared), (Bytes{'a', 'b', 'c', 'd'}));
    EXPECT_EQ(contentOf(copy), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteArray, reading_an_element_behind_the_end_does_not_grow)
{
    UaByteArray array(abc, 3);
    EXPECT_EQ(array[3], 0);
    EXPECT_EQ(array[-1], 0);
    EXPECT_EQ(array.size(), 3);
}

TEST(ByteArray, element_before_the_start_or_too_far_is_ignored)
{
    UaByteArray array(abc, 3);
    array[-1] = 'x';
    array[lowest] = 'x';
    array[highest] = 'x';
    EXPECT_EQ(contentOf(array), (Bytes{'a', 'b', 'c'}));
    const NoMemory noMemory;
    array[1000] = 'x';
    EXPECT_EQ(contentOf(array), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteArray, growing_byte_by_byte_allocates_seldom)
{
    static std::size_t allocations;
    allocations = 0;
    OpcUa_Memory_SetFaultHook([](std::size_t) {
        ++allocations;
        return false;
    });
    UaByteArray array;
    for (OpcUa_Int32 i = 0; i < 100000; ++i) {
        array[i] = static_cast<OpcUa_Byte>(i);
    }
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_LT(allocations, 40u);
    EXPECT_EQ(array.size(), 100000);
    for (OpcUa_Int32 i = 0; i < 100000; ++i) {
        ASSERT_EQ(array[i], static_cast<OpcUa_Byte>(i));
    }
}

TEST(ByteArray, append_adds_bytes)
{
    UaByteArray array;
    EXPECT_TRUE(array.append(abc, 3));
    EXPECT_TRUE(array.append(abc, 1));
    EXPECT_EQ(contentOf(array), (Bytes{'a', 'b', 'c', 'a'}));
    const UaByteArray copy = array;
    EXPECT_TRUE(array.append(abc, 2));
    EXPECT_EQ(array.size(), 6);
    EXPECT_EQ(copy.size(), 4);
}

TEST(ByteArray, append_takes_bytes_of_itself)
{
    UaByteArray array(abc, 3);
    for (int i = 0; i < 8; ++i) {
        const OpcUa_Int32 size = array.size();
        EXPECT_TRUE(array.append(std::as_const(array).data() + 1, size - 1));
        EXPECT_EQ(array.size(), 2 * size - 1);
        EXPECT_EQ(array[size], array[1]);
        EXPECT_EQ(array[2 * size - 2], array[size - 1]);
    }
    UaByteArray shared = array;
    EXPECT_TRUE(shared.append(std::as_const(shared).data(), shared.size()));
    EXPECT_EQ(shared.size(), 2 * array.size());
}

TEST(ByteArray, append_of_nothing_and_nonsense)
{
    UaByteArray array(abc, 3);
    EXPECT_TRUE(array.append(nullptr, 0));
    EXPECT_FALSE(array.append(nullptr, 1));
    EXPECT_FALSE(array.append(abc, -1));
    EXPECT_FALSE(array.append(abc, highest));
    const NoMemory noMemory;
    EXPECT_FALSE(array.append(abc, 3));
    EXPECT_EQ(contentOf(array), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteArray, detach_hands_the_block_over)
{
    UaByteArray array(abc, 3);
    const OpcUa_Byte* data = std::as_const(array).data();
    OpcUa_ByteString destination = {4, static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(4))};
    const NoMemory noMemory;
    EXPECT_EQ(array.detach(&destination), OpcUa_Good);
    EXPECT_EQ(destination.Length, 3);
    EXPECT_EQ(destination.Data, data);
    expectEmpty(array);
    OpcUa_ByteString_Clear(&destination);
}

TEST(ByteArray, detach_of_a_shared_array_copies)
{
    UaByteArray array(abc, 3);
    const UaByteArray copy = array;
    OpcUa_ByteString destination = {-1, nullptr};
    EXPECT_EQ(array.detach(&destination), OpcUa_Good);
    EXPECT_EQ(destination.Length, 3);
    EXPECT_NE(destination.Data, copy.data());
    expectEmpty(array);
    EXPECT_EQ(copy, UaByteArray(destination));
    OpcUa_ByteString_Clear(&destination);
}

TEST(ByteArray, detach_without_memory_keeps_the_bytes)
{
    UaByteArray array(abc, 3);
    const UaByteArray copy = array;
    OpcUa_ByteString destination = {-1, nullptr};
    const NoMemory noMemory;
    EXPECT_EQ(array.detach(&destination), OpcUa_BadOutOfMemory);
    EXPECT_EQ(destination.Length, -1);
    EXPECT_EQ(array, copy);
}

TEST(ByteArray, empty_array_gives_a_length_of_0)
{
    UaByteArray array;
    OpcUa_ByteString destination = {4, static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(4))};
    EXPECT_EQ(array.detach(&destination), OpcUa_Good);
    EXPECT_EQ(destination.Length, 0);
    EXPECT_EQ(array.copyTo(&destination), OpcUa_Good);
    EXPECT_EQ(destination.Length, 0);
    OpcUa_ByteString_Clear(&destination);
}

TEST(ByteArray, detach_and_copy_refuse_a_null_pointer)
{
    UaByteArray array(abc, 3);
    EXPECT_EQ(array.detach(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(array.copyTo(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(array, UaByteArray(abc, 3));
    UaByteArray empty;
    EXPECT_EQ(empty.detach(nullptr), OpcUa_BadInvalidArgument);
}

TEST(ByteArray, copy_to_keeps_the_bytes)
{
    const UaByteArray array(abc, 3);
    OpcUa_ByteString destination = {-1, nullptr};
    EXPECT_EQ(array.copyTo(&destination), OpcUa_Good);
    EXPECT_EQ(destination.Length, 3);
    EXPECT_NE(destination.Data, array.data());
    EXPECT_EQ(array, UaByteArray(destination));
    OpcUa_ByteString_Clear(&destination);
}

TEST(ByteArray, hexadecimal_text_with_and_without_spaces)
{
    const OpcUa_Byte bytes[] = {0xAB, 0x01};
    EXPECT_STREQ(UaByteArray(bytes, 2).toHex(true).toUtf8(), "AB 01");
    EXPECT_STREQ(UaByteArray(bytes, 2).toHex(false).toUtf8(), "AB01");
    EXPECT_STREQ(UaByteArray(bytes, 1).toHex(true).toUtf8(), "AB");
    EXPECT_TRUE(UaByteArray().toHex().isEmpty());
    EXPECT_FALSE(UaByteArray().toHex(true).isNull());
}

TEST(ByteArray, hexadecimal_text_is_read_in_either_case)
{
    EXPECT_EQ(contentOf(UaByteArray::fromHex("ab01CDeF")), (Bytes{0xAB, 0x01, 0xCD, 0xEF}));
    expectEmpty(UaByteArray::fromHex(""));
    expectEmpty(UaByteArray::fromHex(UaString()));
}

TEST(ByteArray, odd_or_other_text_gives_an_empty_array)
{
    for (const char* text : {"ABC", "A", "AG", "GA", "AB 01", "0xAB", "ABg1", "\xC3\xA9"}) {
        expectEmpty(UaByteArray::fromHex(text));
    }
    expectEmpty(UaByteArray::fromHex(UaString("AB\0", 3)));
    expectEmpty(UaByteArray::fromHex(UaString("AB\0\0", 4)));
}

TEST(ByteArray, equal_is_by_size_and_bytes)
{
    const UaByteArray array(abc, 3);
    const UaByteArray same = copyOf(array);
    EXPECT_TRUE(array == same);
    EXPECT_TRUE(array == UaByteArray("abc", 3));
    EXPECT_FALSE(array == UaByteArray("abd", 3));
    EXPECT_FALSE(array == UaByteArray("ab", 2));
    EXPECT_TRUE(array != UaByteArray());
}

TEST(ByteArray, every_failing_allocation_gives_an_empty_array)
{
    const UaString digits = "0102";
    EXPECT_EQ(forEveryFailingAllocation([] { return UaByteArray(abc, 3); }, expectEmpty), 2u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return UaByteArray::fromHex(digits); }, expectEmpty),
              2u);
    const UaByteArray array(abc, 3);
    EXPECT_EQ(forEveryFailingAllocation([&] { return array.toHex(); },
                                        [](const UaString& text) { EXPECT_TRUE(text.isNull()); }),
              1u);
}

TEST(ByteArray, eight_threads_copy_change_and_drop_one_array)
{
    UaByteArray shared;
    shared.resize(100);
    const UaByteArray& source = shared;
    inEightThreads([&source] {
        for (int i = 0; i < 2000; ++i) {
            UaByteArray copy = source;
            UaByteArray other = copy;
            other[50] = 1;
            ASSERT_EQ(other[50], 1);
            ASSERT_EQ(std::as_const(copy)[50], 0);
            copy = UaByteArray();
            ASSERT_TRUE(copy.isEmpty());
        }
    });
    EXPECT_EQ(source[50], 0);
}

TEST(ByteArray, eight_threads_drop_the_last_handle)
{
    for (int round = 0; round < 200; ++round) {
        std::array<UaByteArray, 8> handles;
        handles.fill(UaByteArray(abc, 3));
        std::atomic<std::size_t> next = 0;
        inEightThreads([&handles, &next] {
            UaByteArray& mine = handles[next.fetch_add(1)];
            mine.data()[0] = 'x';
            mine = UaByteArray();
        });
    }
}

} // namespace
