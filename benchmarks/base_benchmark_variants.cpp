// Arrays and variants. Each measurement stands beside its floor: the same work by the means of the
// language and the C library alone.

#include "base/uaarrays.h"
#include "base/uavariant.h"
#include "platform/allocator.h"
#include "platform/status.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

void check(benchmark::State& state, bool isRight)
{
    if (!isRight) {
        state.SkipWithError("wrong result");
    }
}

void countBytes(benchmark::State& state, std::size_t size)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(size));
}

/// Counts what is taken from the stack's allocator while it lives.
class AllocationCounter
{
public:
    AllocationCounter()
    {
        count() = 0;
        OpcUa_Memory_SetFaultHook([](std::size_t) {
            ++count();
            return false;
        });
    }
    ~AllocationCounter() { OpcUa_Memory_SetFaultHook(nullptr); }
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;

    static std::atomic<std::size_t>& count()
    {
        static std::atomic<std::size_t> value = 0;
        return value;
    }
};

std::vector<OpcUa_Int32> numbers(std::int64_t count)
{
    std::vector<OpcUa_Int32> values(static_cast<std::size_t>(count));
    std::iota(values.begin(), values.end(), 0);
    return values;
}

UaInt32Array numberArray(std::int64_t count)
{
    return {static_cast<OpcUa_Int32>(count), numbers(count).data()};
}

// Moving ------------------------------------------------------------------------------------------
// The time must not depend on the length, and nothing may be allocated.

void Array_detach_and_attach(benchmark::State& state)
{
    UaInt32Array source = numberArray(state.range(0));
    UaInt32Array target;
    const AllocationCounter counter;
    for (auto _ : state) {
        const OpcUa_Int32 length = source.length();
        target.attach(length, source.detach(), true);
        benchmark::DoNotOptimize(target);
        source.attach(length, target.detach(), true);
    }
    check(state, source.length() == state.range(0) && AllocationCounter::count() == 0);
}
BENCHMARK(Array_detach_and_attach)->Arg(1000)->Arg(1000000);

void Array_detach_and_attach_floor_vector(benchmark::State& state)
{
    std::vector<OpcUa_Int32> source = numbers(state.range(0));
    std::vector<OpcUa_Int32> target;
    for (auto _ : state) {
        target = std::move(source);
        benchmark::DoNotOptimize(target);
        source = std::move(target);
    }
    check(state, static_cast<std::int64_t>(source.size()) == state.range(0));
}
BENCHMARK(Array_detach_and_attach_floor_vector)->Arg(1000)->Arg(1000000);

void Variant_array_in_and_out(benchmark::State& state)
{
    UaInt32Array array = numberArray(state.range(0));
    bool isGood = true;
    const AllocationCounter counter;
    for (auto _ : state) {
        UaVariant variant(array, true);
        UaVariant moved(std::move(variant));
        OpcUa_Variant stack;
        moved.detach(&stack);
        benchmark::DoNotOptimize(stack);
        isGood = isGood && array.setArray(stack, true) == OpcUa_Good;
    }
    check(state, isGood && array.length() == state.range(0) && AllocationCounter::count() == 0);
}
BENCHMARK(Variant_array_in_and_out)->Arg(1000)->Arg(1000000);

// Copying -----------------------------------------------------------------------------------------

void Variant_copy_numbers(benchmark::State& state)
{
    UaInt32Array array = numberArray(state.range(0));
    const UaVariant source(array, true);
    for (auto _ : state) {
        UaVariant copy(source);
        benchmark::DoNotOptimize(copy);
    }
    check(state, UaVariant(source) == source);
    countBytes(state, static_cast<std::size_t>(state.range(0)) * sizeof(OpcUa_Int32));
}
BENCHMARK(Variant_copy_numbers)->Arg(1000)->Arg(1000000);

void Variant_copy_numbers_floor_memcpy(benchmark::State& state)
{
    const std::vector<OpcUa_Int32> source = numbers(state.range(0));
    const std::size_t size = source.size() * sizeof(OpcUa_Int32);
    for (auto _ : state) {
        void* copy = std::malloc(size);
        std::memcpy(copy, source.data(), size);
        benchmark::DoNotOptimize(copy);
        std::free(copy);
    }
    countBytes(state, size);
}
BENCHMARK(Variant_copy_numbers_floor_memcpy)->Arg(1000)->Arg(1000000);

constexpr std::string_view sixteenBytes = "sixteen bytes ..";

UaStringArray strings(std::int64_t count)
{
    UaStringArray array;
    static_cast<void>(array.create(static_cast<OpcUa_Int32>(count)));
    for (OpcUa_String& string : array) {
        static_cast<void>(OpcUa_String_AttachCopy(&string, sixteenBytes.data()));
    }
    return array;
}

void Variant_copy_strings(benchmark::State& state)
{
    const UaVariant source(strings(state.range(0)));
    for (auto _ : state) {
        UaVariant copy(source);
        benchmark::DoNotOptimize(copy);
    }
    check(state, UaVariant(source) == source);
    countBytes(state, static_cast<std::size_t>(state.range(0)) * sixteenBytes.size());
}
BENCHMARK(Variant_copy_strings)->Arg(1000)->Arg(100000);

/// A block of pointers and lengths as large as that of the strings, and a text for each.
void Variant_copy_strings_floor_memcpy(benchmark::State& state)
{
    struct Text
    {
        std::size_t size;
        char* content;
    };
    const auto count = static_cast<std::size_t>(state.range(0));
    const UaStringArray source = strings(state.range(0));
    for (auto _ : state) {
        auto* copies = static_cast<Text*>(std::malloc(count * sizeof(Text)));
        for (std::size_t i = 0; i < count; ++i) {
            const OpcUa_String& string = source.rawArray()[i];
            copies[i] = {string.uLength, static_cast<char*>(std::malloc(string.uLength + 1u))};
            std::memcpy(copies[i].content, string.strContent, string.uLength + 1u);
        }
        benchmark::DoNotOptimize(copies);
        for (std::size_t i = 0; i < count; ++i) {
            std::free(copies[i].content);
        }
        std::free(copies);
    }
    countBytes(state, count * sixteenBytes.size());
}
BENCHMARK(Variant_copy_strings_floor_memcpy)->Arg(1000)->Arg(100000);

// Text --------------------------------------------------------------------------------------------

constexpr OpcUa_Double aDouble = -1234.56789012;
constexpr OpcUa_Int32 anInt32 = -1234567890;

template <typename T>
void printVariant(benchmark::State& state, T value, std::string_view expected)
{
    const UaVariant variant(value);
    for (auto _ : state) {
        UaString text = variant.toString();
        benchmark::DoNotOptimize(text);
    }
    check(state, variant.toString().view() == expected);
}

void Variant_text_of_double(benchmark::State& state)
{
    printVariant(state, aDouble, "-1234.56789012");
}
BENCHMARK(Variant_text_of_double);

void Variant_text_of_double_floor_snprintf(benchmark::State& state)
{
    char buffer[256];
    OpcUa_Double value = aDouble;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value);
        benchmark::DoNotOptimize(std::snprintf(buffer, sizeof(buffer), "%.12g", value));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Variant_text_of_double_floor_snprintf);

void Variant_text_of_int32(benchmark::State& state)
{
    printVariant(state, anInt32, "-1234567890");
}
BENCHMARK(Variant_text_of_int32);

void Variant_text_of_int32_floor_snprintf(benchmark::State& state)
{
    char buffer[256];
    OpcUa_Int32 value = anInt32;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value);
        benchmark::DoNotOptimize(std::snprintf(buffer, sizeof(buffer), "%d", value));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Variant_text_of_int32_floor_snprintf);

/// To see how much of it is the text and how much the string that owns it.
void Variant_text_of_int32_floor_to_chars_into_a_string(benchmark::State& state)
{
    char buffer[16];
    OpcUa_Int32 value = anInt32;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value);
        const char* end = std::to_chars(buffer, buffer + sizeof(buffer), value).ptr;
        UaString text(buffer, end - buffer);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(Variant_text_of_int32_floor_to_chars_into_a_string);

void Variant_text_of_numbers(benchmark::State& state)
{
    const UaVariant variant(numberArray(state.range(0)));
    for (auto _ : state) {
        UaString text = variant.toString();
        benchmark::DoNotOptimize(text);
    }
    check(state, variant.toString().length() == 255);
}
BENCHMARK(Variant_text_of_numbers)->Arg(1000)->Arg(1000000);

void Variant_text_of_numbers_floor_snprintf(benchmark::State& state)
{
    char buffer[256];
    for (auto _ : state) {
        std::size_t length = 1;
        for (int i = 0; length < 254; ++i) {
            const int added = std::snprintf(buffer + length, sizeof(buffer) - length, "%d,", i);
            length += static_cast<std::size_t>(added);
        }
        benchmark::ClobberMemory();
    }
}
BENCHMARK(Variant_text_of_numbers_floor_snprintf);

} // namespace
