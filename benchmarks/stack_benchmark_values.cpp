// Variants through the binary encoding. Each measurement stands beside its floor: straight code for
// this one value into a ready block, or out of one with the same blocks on the heap.

#include "benchmarks/stackcoding.h"
#include "stack/opcua_variant.h"

#include <numeric>
#include <string>

namespace {

constexpr OpcUa_Int32 numberCount = 1000000;
constexpr OpcUa_Int32 textCount = 100000;
constexpr std::size_t numberArraySize = 5 + std::size_t{numberCount} * sizeof(OpcUa_Int32);
constexpr std::size_t textArraySize = 5 + std::size_t{textCount} * (4 + 16);

/// A variant that clears itself.
struct OwnedVariant
{
    OwnedVariant() { OpcUa_Variant_Initialize(&value); }
    ~OwnedVariant() { OpcUa_Variant_Clear(&value); }
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;

    OpcUa_Variant value;
};

void fillNumbers(OpcUa_Variant& variant)
{
    auto* numbers =
        static_cast<OpcUa_Int32*>(OpcUa_Memory_AllocArray(numberCount, sizeof(OpcUa_Int32)));
    std::iota(numbers, numbers + numberCount, 0);
    variant.Datatype = OpcUaType_Int32;
    variant.ArrayType = OpcUa_VariantArrayType_Array;
    variant.Value.Array = {numberCount, numbers};
}

void fillTexts(OpcUa_Variant& variant)
{
    auto* texts =
        static_cast<OpcUa_String*>(OpcUa_Memory_AllocZeroed(textCount, sizeof(OpcUa_String)));
    for (OpcUa_Int32 i = 0; i < textCount; ++i) {
        std::string text = std::to_string(i);
        text.insert(0, 16 - text.size(), 't');
        Coding::require(OpcUa_String_AttachCopy(&texts[i], text.c_str()));
    }
    variant.Datatype = OpcUaType_String;
    variant.ArrayType = OpcUa_VariantArrayType_Array;
    variant.Value.Array = {textCount, texts};
}

void fillDouble(OpcUa_Variant& variant)
{
    variant.Datatype = OpcUaType_Double;
    variant.Value.Double = 6.5;
}

/// Encodes again and again into a block with the room for a number of messages.
void encode(benchmark::State& state, void (*fill)(OpcUa_Variant& variant), std::size_t size,
            std::size_t messages = 1)
{
    OwnedVariant variant;
    fill(variant.value);
    Coding coding(size * messages);
    OpcUa_Encoder* encoder = coding.encoder();
    const auto write = [&] {
        return encoder->Interface->WriteVariant(encoder, nullptr, &variant.value, nullptr) ==
               OpcUa_Good;
    };
    bool isGood = true;
    const std::size_t allocations = countAllocations([&] { isGood = write(); });
    std::size_t done = 1;
    for (auto _ : state) {
        if (done == messages) {
            encoder = coding.encoder();
            done = 0;
        }
        isGood = write() && isGood;
        ++done;
        benchmark::ClobberMemory();
    }
    checkResult(state, isGood && coding.bytes().size() == size * done && allocations == 0);
    countMessages(state, size, allocations);
}

/// Decodes and clears again and again.
void decode(benchmark::State& state, void (*fill)(OpcUa_Variant& variant), std::size_t size,
            std::size_t expectedAllocations)
{
    OwnedVariant variant;
    fill(variant.value);
    Coding coding(size);
    OpcUa_Encoder* encoder = coding.encoder();
    Coding::require(encoder->Interface->WriteVariant(encoder, nullptr, &variant.value, nullptr));
    OpcUa_Variant read;
    const auto readOnce = [&] {
        OpcUa_Decoder* decoder = coding.decoder();
        return decoder->Interface->ReadVariant(decoder, nullptr, &read) == OpcUa_Good;
    };
    bool isGood = coding.decoder() != nullptr;
    const std::size_t allocations = countAllocations([&] { isGood = readOnce(); });
    isGood = isGood && OpcUa_Variant_Compare(&read, &variant.value) == 0;
    OpcUa_Variant_Clear(&read);
    for (auto _ : state) {
        isGood = readOnce() && isGood;
        benchmark::DoNotOptimize(read);
        OpcUa_Variant_Clear(&read);
    }
    checkResult(state, isGood && allocations == expectedAllocations);
    countMessages(state, size, allocations);
}

void Int32Array_encode(benchmark::State& state)
{
    encode(state, fillNumbers, numberArraySize);
}
BENCHMARK(Int32Array_encode);

/// A bulk copy with its block, as for decoding.
void Int32Array_floor(benchmark::State& state)
{
    OwnedVariant variant;
    fillNumbers(variant.value);
    for (auto _ : state) {
        void* block = std::malloc(numberCount * sizeof(OpcUa_Int32));
        std::memcpy(block, variant.value.Value.Array.Elements, numberCount * sizeof(OpcUa_Int32));
        benchmark::DoNotOptimize(block);
        benchmark::ClobberMemory();
        std::free(block);
    }
    countMessages(state, numberArraySize, 1);
}
BENCHMARK(Int32Array_floor);

void Int32Array_decode(benchmark::State& state)
{
    decode(state, fillNumbers, numberArraySize, 1);
}
BENCHMARK(Int32Array_decode);

void Strings_encode(benchmark::State& state)
{
    encode(state, fillTexts, textArraySize);
}
BENCHMARK(Strings_encode);

void Strings_encode_floor(benchmark::State& state)
{
    OwnedVariant variant;
    fillTexts(variant.value);
    const auto* texts = static_cast<const OpcUa_String*>(variant.value.Value.Array.Elements);
    std::vector<char> block(textArraySize);
    std::size_t size = 0;
    for (auto _ : state) {
        FloorWriter writer(block);
        writer.number(OpcUa_Byte{0x8C});
        writer.number(textCount);
        for (OpcUa_Int32 i = 0; i < textCount; ++i) {
            writer.text(texts[i]);
        }
        size = writer.bytes().size();
        benchmark::ClobberMemory();
    }
    checkResult(state, size == textArraySize);
    countMessages(state, textArraySize, 0);
}
BENCHMARK(Strings_encode_floor);

void Strings_decode(benchmark::State& state)
{
    decode(state, fillTexts, textArraySize, textCount + 1);
}
BENCHMARK(Strings_decode);

void Strings_decode_floor(benchmark::State& state)
{
    OwnedVariant variant;
    fillTexts(variant.value);
    Coding coding(textArraySize);
    OpcUa_Encoder* encoder = coding.encoder();
    Coding::require(encoder->Interface->WriteVariant(encoder, nullptr, &variant.value, nullptr));
    for (auto _ : state) {
        FloorReader reader(coding.bytes());
        checkResult(state, reader.number<OpcUa_Byte>() == 0x8C);
        const auto count = reader.number<OpcUa_Int32>();
        auto* texts = FloorReader::block<OpcUa_String>(count);
        for (OpcUa_Int32 i = 0; i < count; ++i) {
            texts[i] = reader.text();
        }
        benchmark::DoNotOptimize(texts);
        for (OpcUa_Int32 i = 0; i < count; ++i) {
            std::free(texts[i].strContent);
        }
        std::free(texts);
    }
    countMessages(state, textArraySize, textCount + 1);
}
BENCHMARK(Strings_decode_floor);

constexpr std::size_t doubleSize = 9;
constexpr std::size_t doubleMessages = 1000;

void Double_encode(benchmark::State& state)
{
    encode(state, fillDouble, doubleSize, doubleMessages);
}
BENCHMARK(Double_encode);

void Double_encode_floor(benchmark::State& state)
{
    OwnedVariant variant;
    fillDouble(variant.value);
    std::vector<char> block(doubleSize * doubleMessages);
    FloorWriter writer(block);
    std::size_t done = 0;
    for (auto _ : state) {
        if (done == doubleMessages) {
            writer = FloorWriter(block);
            done = 0;
        }
        writer.number(variant.value.Datatype);
        writer.number(variant.value.Value.Double);
        ++done;
        benchmark::ClobberMemory();
    }
    checkResult(state, writer.bytes().size() == done * doubleSize);
    countMessages(state, doubleSize, 0);
}
BENCHMARK(Double_encode_floor);

} // namespace
