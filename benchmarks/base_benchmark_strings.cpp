// Strings and byte strings. Each pair is a measurement and its floor: the same work by the means of
// the language and the C library alone.

#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uastring.h"
#include "base/uaunistring.h"
#include "platform/status.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

/// A process that has started a thread counts with locked instructions, in shared_ptr too, which
/// otherwise takes plain ones. Ours always has the timer thread.
const bool hasStartedThread = [] {
    std::thread([] {}).join();
    return true;
}();

std::string textOfLength(benchmark::State& state)
{
    return std::string(static_cast<std::size_t>(state.range(0)), 'x');
}

UaString toUaString(const std::string& text)
{
    return {text.data(), static_cast<OpcUa_Int64>(text.size())};
}

void countBytes(benchmark::State& state, std::size_t size)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(size));
}

void check(benchmark::State& state, bool isRight)
{
    if (!isRight || !hasStartedThread) {
        state.SkipWithError("wrong result");
    }
}

/// Copies one handle and drops the copy.
template <typename Handle>
void copyAndDrop(benchmark::State& state, const Handle& handle)
{
    for (auto _ : state) {
        Handle copy = handle;
        benchmark::DoNotOptimize(copy);
    }
}

void String_copy(benchmark::State& state)
{
    const UaString text = toUaString(textOfLength(state));
    copyAndDrop(state, text);
    check(state, text.length() == state.range(0));
}
BENCHMARK(String_copy)->Arg(16)->Arg(100000);

void String_copy_floor_shared_ptr(benchmark::State& state)
{
    copyAndDrop(state, std::make_shared<const std::string>(textOfLength(state)));
}
BENCHMARK(String_copy_floor_shared_ptr)->Arg(16)->Arg(100000);

/// Copies a thousand handles of different texts and drops the copies.
template <typename Handle>
void copyMany(benchmark::State& state, const std::vector<Handle>& handles)
{
    std::vector<Handle> copies(handles.size());
    for (auto _ : state) {
        std::copy(handles.begin(), handles.end(), copies.begin());
        benchmark::ClobberMemory();
        for (Handle& copy : copies) {
            copy = Handle();
        }
    }
}

void String_copy_many(benchmark::State& state)
{
    std::vector<UaString> handles;
    handles.reserve(1000);
    for (int i = 0; i < 1000; ++i) {
        handles.push_back(UaString("text number %1").arg(i));
    }
    copyMany(state, handles);
    check(state, handles[999] == "text number 999");
}
BENCHMARK(String_copy_many);

void String_copy_many_floor_shared_ptr(benchmark::State& state)
{
    std::vector<std::shared_ptr<const std::string>> handles;
    handles.reserve(1000);
    for (int i = 0; i < 1000; ++i) {
        handles.push_back(std::make_shared<const std::string>("text number " + std::to_string(i)));
    }
    copyMany(state, handles);
}
BENCHMARK(String_copy_many_floor_shared_ptr);

void String_make(benchmark::State& state)
{
    const std::string source = textOfLength(state);
    for (auto _ : state) {
        UaString text(source.data(), state.range(0));
        benchmark::DoNotOptimize(text);
    }
    check(state, toUaString(source).view() == source);
    countBytes(state, source.size());
}
BENCHMARK(String_make)->Arg(16)->Arg(256)->Arg(100000);

void String_make_floor_malloc_memcpy(benchmark::State& state)
{
    const std::string source = textOfLength(state);
    for (auto _ : state) {
        void* copy = std::malloc(source.size() + 1);
        std::memcpy(copy, source.data(), source.size() + 1);
        benchmark::DoNotOptimize(copy);
        std::free(copy);
    }
    countBytes(state, source.size());
}
BENCHMARK(String_make_floor_malloc_memcpy)->Arg(16)->Arg(256)->Arg(100000);

void String_arg(benchmark::State& state)
{
    const UaString pattern = "ns=%1|rest";
    UaString text;
    for (auto _ : state) {
        text = pattern.arg(12345);
        benchmark::DoNotOptimize(text);
    }
    check(state, text == "ns=12345|rest");
}
BENCHMARK(String_arg);

void String_arg_floor_snprintf_strdup(benchmark::State& state)
{
    for (auto _ : state) {
        std::array<char, 32> buffer;
        std::snprintf(buffer.data(), buffer.size(), "ns=%d|rest", 12345);
        char* text = ::strdup(buffer.data());
        benchmark::DoNotOptimize(text);
        std::free(text);
    }
}
BENCHMARK(String_arg_floor_snprintf_strdup);

void String_like(benchmark::State& state)
{
    const UaString text = toUaString(textOfLength(state) + "yz");
    const UaString pattern = "%y[a-z]";
    bool matches = true;
    for (auto _ : state) {
        matches = matches && text.like(pattern);
        benchmark::DoNotOptimize(matches);
    }
    check(state, matches);
    countBytes(state, static_cast<std::size_t>(text.length()));
}
BENCHMARK(String_like)->Arg(16)->Arg(10000);

void String_like_floor_search_loop(benchmark::State& state)
{
    const std::string text = textOfLength(state) + "yz";
    for (auto _ : state) {
        std::size_t place = 0;
        while (text[place] != 'y' || place + 2 != text.size()) {
            ++place;
            benchmark::DoNotOptimize(place);
        }
    }
    countBytes(state, text.size());
}
BENCHMARK(String_like_floor_search_loop)->Arg(16)->Arg(10000);

void UniString_from_utf8(benchmark::State& state)
{
    const UaString text = toUaString(textOfLength(state));
    for (auto _ : state) {
        UaUniString units(text);
        benchmark::DoNotOptimize(units);
    }
    check(state, UaUniString(text).length() == state.range(0));
    countBytes(state, static_cast<std::size_t>(text.length()));
}
BENCHMARK(UniString_from_utf8)->Arg(16)->Arg(100000);

void UniString_from_utf8_floor_widening_loop(benchmark::State& state)
{
    const std::string text = textOfLength(state);
    for (auto _ : state) {
        const std::unique_ptr<char16_t[]> units(new char16_t[text.size() + 1]);
        for (std::size_t i = 0; i < text.size(); ++i) {
            units[i] = static_cast<unsigned char>(text[i]);
        }
        benchmark::DoNotOptimize(units.get());
        benchmark::ClobberMemory();
    }
    countBytes(state, text.size());
}
BENCHMARK(UniString_from_utf8_floor_widening_loop)->Arg(16)->Arg(100000);

UaByteString bytesOfLength(benchmark::State& state)
{
    const std::string text = textOfLength(state);
    return {static_cast<OpcUa_Int32>(text.size()),
            reinterpret_cast<const OpcUa_Byte*>(text.data())};
}

void ByteString_to_base64(benchmark::State& state)
{
    const UaByteString bytes = bytesOfLength(state);
    for (auto _ : state) {
        UaString text = bytes.toBase64();
        benchmark::DoNotOptimize(text);
    }
    UaByteString read;
    check(state, OpcUa_IsGood(UaByteString::fromBase64(bytes.toBase64(), read)) && read == bytes);
    countBytes(state, static_cast<std::size_t>(bytes.length()));
}
BENCHMARK(ByteString_to_base64)->Arg(48)->Arg(100000);

void ByteString_from_base64(benchmark::State& state)
{
    const UaByteString bytes = bytesOfLength(state);
    const UaString text = bytes.toBase64();
    UaByteString read;
    OpcUa_StatusCode status = OpcUa_Good;
    for (auto _ : state) {
        status |= UaByteString::fromBase64(text, read);
        benchmark::DoNotOptimize(read);
    }
    check(state, OpcUa_IsGood(status) && read == bytes);
    countBytes(state, static_cast<std::size_t>(bytes.length()));
}
BENCHMARK(ByteString_from_base64)->Arg(48)->Arg(100000);

/// One table look-up and one store per character: what any coder of four characters does.
void ByteString_base64_floor_table_loop(benchmark::State& state)
{
    const UaByteString bytes = bytesOfLength(state);
    std::array<char, 256> table;
    table.fill('x');
    const std::size_t length = (static_cast<std::size_t>(bytes.length()) + 2) / 3 * 4;
    for (auto _ : state) {
        const std::unique_ptr<char[]> text(new char[length + 1]);
        for (std::size_t i = 0; i < length; ++i) {
            text[i] = table[bytes.data()[i / 4 * 3]];
        }
        benchmark::DoNotOptimize(text.get());
        benchmark::ClobberMemory();
    }
    countBytes(state, static_cast<std::size_t>(bytes.length()));
}
BENCHMARK(ByteString_base64_floor_table_loop)->Arg(48)->Arg(100000);

void ByteArray_to_hex(benchmark::State& state)
{
    const UaByteArray bytes(bytesOfLength(state));
    for (auto _ : state) {
        UaString text = bytes.toHex();
        benchmark::DoNotOptimize(text);
    }
    check(state, UaByteArray::fromHex(bytes.toHex()) == bytes);
    countBytes(state, static_cast<std::size_t>(bytes.size()));
}
BENCHMARK(ByteArray_to_hex)->Arg(48)->Arg(100000);

void ByteArray_to_hex_floor_table_loop(benchmark::State& state)
{
    const UaByteArray bytes(bytesOfLength(state));
    constexpr char digits[] = "0123456789ABCDEF";
    const auto size = static_cast<std::size_t>(bytes.size());
    for (auto _ : state) {
        const std::unique_ptr<char[]> text(new char[2 * size + 1]);
        for (std::size_t i = 0; i < size; ++i) {
            text[2 * i] = digits[bytes.data()[i] >> 4];
            text[2 * i + 1] = digits[bytes.data()[i] & 15];
        }
        benchmark::DoNotOptimize(text.get());
        benchmark::ClobberMemory();
    }
    countBytes(state, size);
}
BENCHMARK(ByteArray_to_hex_floor_table_loop)->Arg(48)->Arg(100000);

void ByteArray_detach(benchmark::State& state)
{
    OpcUa_ByteString moved = {-1, nullptr};
    bool isRight = true;
    for (auto _ : state) {
        state.PauseTiming();
        UaByteArray bytes;
        isRight = bytes.resize(static_cast<OpcUa_Int32>(state.range(0))) && isRight;
        const OpcUa_Byte* data = std::as_const(bytes).data();
        state.ResumeTiming();
        isRight = OpcUa_IsGood(bytes.detach(&moved)) && isRight;
        isRight = moved.Data == data && isRight;
        state.PauseTiming();
        OpcUa_ByteString_Clear(&moved);
        state.ResumeTiming();
    }
    check(state, isRight);
}
BENCHMARK(ByteArray_detach)->Arg(16)->Arg(1000000)->Iterations(20000);

} // namespace
