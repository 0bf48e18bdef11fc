// Bytes that mean harm: a bad status with everything freed, or a value that encodes again, and never
// more memory than the bytes are worth.

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_nesting.h"
#include "stack/opcua_variant.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"
#include "tests/stack/testrecord.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/allocationsum.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

/// The encodings of a filled sample: itself, and as an array and a matrix in a variant.
std::vector<std::pair<OpcUa_Byte, Bytes>> encodingsOf(TestContext& context,
                                                      const BuiltInSample& sample)
{
    const BuiltInValue value(sample.type, sample.fill);
    std::vector<std::pair<OpcUa_Byte, Bytes>> encodings = {
        {sample.type, encode(context, sample.type, value.get())}};
    for (const VariantShape shape : allShapes) {
        OwnedVariant variant;
        makeShape(*variant, sample, shape);
        encodings.emplace_back(OpcUaType_Variant,
                               encode(context, OpcUaType_Variant, variant.get()));
    }
    return encodings;
}

/// Decodes; a good value must come through encoding, decoding and encoding again unchanged.
OpcUa_StatusCode decodeHostile(TestContext& context, const Bytes& bytes, OpcUa_Byte type)
{
    BuiltInValue value(type);
    OpcUa_StatusCode status = OpcUa_Good;
    {
        const AllocationSum memory;
        DecoderOnMemory decoder(bytes, context.get());
        status = codecOf(type).read(decoder.get(), value.get());
        EXPECT_TRUE(AllocationSum::isWithinWorthOf(bytes.size()));
    }
    if (OpcUa_IsBad(status)) {
        EXPECT_TRUE(value.isCleared());
        return status;
    }
    const Bytes once = encode(context, type, value.get());
    BuiltInValue again(type);
    EXPECT_EQ(decode(context, once, type, again.get()), OpcUa_Good);
    EXPECT_EQ(toHex(encode(context, type, again.get())), toHex(once));
    return status;
}

class HostileBytes : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(HostileBytes, truncation_at_every_offset_fails)
{
    TestContext context;
    for (const auto& [type, bytes] : encodingsOf(context, GetParam())) {
        EXPECT_EQ(decodeHostile(context, bytes, type), OpcUa_Good);
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            const Bytes prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_TRUE(OpcUa_IsBad(decodeHostile(context, prefix, type))) << toHex(prefix);
        }
    }
}

TEST_P(HostileBytes, every_flipped_bit_is_survived)
{
    TestContext context;
    std::size_t failures = 0;
    for (const auto& [type, bytes] : encodingsOf(context, GetParam())) {
        for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
            Bytes flipped = bytes;
            flipped[bit / 8] = static_cast<OpcUa_Byte>(flipped[bit / 8] ^ (1u << (bit % 8)));
            failures += OpcUa_IsBad(decodeHostile(context, flipped, type)) ? 1 : 0;
        }
    }
    EXPECT_GT(failures, 0u);
}

TEST_P(HostileBytes, arrays_that_promise_too_much_take_no_memory_for_it)
{
    TestContext context;
    context->MaxArrayLength = 0;
    context->MaxMessageSize = 0;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const Bytes element = encode(context, GetParam().type, value.get());
    for (const std::size_t promised : {4u, 5u, 1000u, 0x10000u, 0x1000000u, 0x7FFFFFFFu}) {
        Bytes bytes = {static_cast<OpcUa_Byte>(GetParam().type | 0x80)};
        for (std::size_t i = 0; i < 4; ++i) {
            bytes.push_back(static_cast<OpcUa_Byte>(promised >> (8 * i)));
        }
        for (int i = 0; i < 3; ++i) {
            bytes.insert(bytes.end(), element.begin(), element.end());
        }
        EXPECT_TRUE(OpcUa_IsBad(decodeHostile(context, bytes, OpcUaType_Variant))) << promised;
    }
}

TEST_P(HostileBytes, every_failing_allocation_leaves_nothing)
{
    TestContext context;
    for (const auto& encoding : encodingsOf(context, GetParam())) {
        const OpcUa_Byte type = encoding.first;
        std::unique_ptr<BuiltInValue> value;
        std::unique_ptr<DecoderOnMemory> decoder;
        forEveryFailingAllocation(
            [&] {
                // The set-up allocates outside of the count.
                const OpcUa_MemoryFaultHook hook = OpcUa_Memory_SetFaultHook(nullptr);
                value = std::make_unique<BuiltInValue>(type);
                decoder = std::make_unique<DecoderOnMemory>(encoding.second, context.get());
                OpcUa_Memory_SetFaultHook(hook);
                return codecOf(type).read(decoder->get(), value->get());
            },
            [&](OpcUa_StatusCode status) {
                EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                EXPECT_TRUE(value->isCleared());
            });
    }
}

TEST_P(HostileBytes, encoding_reports_a_stream_that_is_too_short)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const auto size =
        static_cast<OpcUa_UInt32>(encode(context, GetParam().type, value.get()).size());
    for (OpcUa_UInt32 room = 1; room < size; ++room) {
        EncoderOnMemory encoder(context.get(), room);
        EXPECT_EQ(codecOf(GetParam().type).write(encoder.get(), value.get(), nullptr),
                  OpcUa_BadEncodingLimitsExceeded);
    }
    EncoderOnMemory encoder(context.get(), size);
    EXPECT_EQ(codecOf(GetParam().type).write(encoder.get(), value.get(), nullptr), OpcUa_Good);
}

TEST_P(HostileBytes, encoding_reports_that_its_stream_cannot_grow)
{
    TestContext context;
    OwnedVariant variant;
    makeArray(*variant, GetParam(), 200);
    std::unique_ptr<EncoderOnMemory> encoder;
    const std::size_t failures = forEveryFailingAllocation(
        [&] {
            const OpcUa_MemoryFaultHook hook = OpcUa_Memory_SetFaultHook(nullptr);
            encoder = std::make_unique<EncoderOnMemory>(context.get());
            OpcUa_Memory_SetFaultHook(hook);
            return encoder->get()->Interface->WriteVariant(encoder->get(), "", variant.get(),
                                                           nullptr);
        },
        [](OpcUa_StatusCode status) { EXPECT_EQ(status, OpcUa_BadOutOfMemory); });
    EXPECT_GT(failures, 1u);
}

INSTANTIATE_TEST_SUITE_P(Types, HostileBytes, testing::ValuesIn(builtInSamples()),
                         [](const auto& row) { return std::string(row.param.name); });

// Nesting ------------------------------------------------------------------------------------------

/// Bytes of values inside each other, `levels` of them with the innermost.
Bytes nestedBytes(const char* levelInHex, const char* innermostInHex, std::size_t levels)
{
    const Bytes level = fromHex(levelInHex);
    Bytes bytes;
    for (std::size_t i = 1; i < levels; ++i) {
        bytes.insert(bytes.end(), level.begin(), level.end());
    }
    const Bytes innermost = fromHex(innermostInHex);
    bytes.insert(bytes.end(), innermost.begin(), innermost.end());
    return bytes;
}

/// Records in the bodies of extension objects inside each other.
Bytes nestedRecords(std::size_t levels)
{
    Bytes bytes = fromHex("00 00 00");
    for (std::size_t i = 1; i < levels; ++i) {
        const std::size_t length = 8 + bytes.size();
        Bytes outer = fromHex("01 00 EA 03 01");
        for (std::size_t k = 0; k < 4; ++k) {
            outer.push_back(static_cast<OpcUa_Byte>(length >> (8 * k)));
        }
        const Bytes fields = fromHex("05 00 00 00 FF FF FF FF");
        outer.insert(outer.end(), fields.begin(), fields.end());
        outer.insert(outer.end(), bytes.begin(), bytes.end());
        bytes = outer;
    }
    return bytes;
}

struct NestedKind
{
    const char* name;
    OpcUa_Byte type;
    Bytes (*make)(std::size_t levels);
};

const NestedKind nestedKinds[] = {
    {"scalar_variants", OpcUaType_Variant,
     [](std::size_t levels) { return nestedBytes("18", "01 01", levels); }},
    {"arrays_of_variants", OpcUaType_Variant,
     [](std::size_t levels) { return nestedBytes("98 01 00 00 00", "01 01", levels); }},
    {"data_values", OpcUaType_Variant,
     [](std::size_t levels) { return nestedBytes("17 01", "01 01", levels); }},
    {"diagnostic_infos", OpcUaType_DiagnosticInfo,
     [](std::size_t levels) { return nestedBytes("40", "00", levels); }},
    {"records", OpcUaType_ExtensionObject, nestedRecords},
};

TEST(Nesting, budget_is_met_exactly_and_not_passed)
{
    TestContext context;
    for (const NestedKind& kind : nestedKinds) {
        SCOPED_TRACE(kind.name);
        EXPECT_EQ(decodeHostile(context, kind.make(OpcUa_Nesting_MaxLevels), kind.type),
                  OpcUa_Good);
        EXPECT_EQ(decodeHostile(context, kind.make(OpcUa_Nesting_MaxLevels + 1), kind.type),
                  OpcUa_BadEncodingLimitsExceeded);
    }
}

TEST(Nesting, thousands_of_levels_are_refused)
{
    TestContext context;
    context->MaxByteStringLength = 0;
    for (const NestedKind& kind : nestedKinds) {
        SCOPED_TRACE(kind.name);
        EXPECT_EQ(decodeHostile(context, kind.make(20000), kind.type),
                  OpcUa_BadEncodingLimitsExceeded);
    }
}

TEST(Nesting, budget_is_shared_by_all_kinds)
{
    TestContext context;
    // 60 variants around an array of 50 diagnostic infos in each other.
    Bytes bytes = nestedBytes("18", "99 01 00 00 00", 60);
    const Bytes infos = nestedBytes("40", "00", 40);
    bytes.insert(bytes.end(), infos.begin(), infos.end());
    EXPECT_EQ(decodeHostile(context, bytes, OpcUaType_Variant), OpcUa_Good);
    bytes.insert(bytes.end() - 1, 0x40);
    EXPECT_EQ(decodeHostile(context, bytes, OpcUaType_Variant), OpcUa_BadEncodingLimitsExceeded);
}

TEST(Nesting, it_counts_depth_and_not_number)
{
    TestContext context;
    Bytes bytes = fromHex("98 00 04 00 00");
    for (int i = 0; i < 1024; ++i) {
        bytes.insert(bytes.end(), {1, 1});
    }
    EXPECT_EQ(decodeHostile(context, bytes, OpcUaType_Variant), OpcUa_Good);
}

TEST(Nesting, encoding_shares_the_budget)
{
    TestContext context;
    for (const NestingKind kind : allNestingKinds) {
        SCOPED_TRACE(static_cast<int>(kind));
        OwnedVariant deepest;
        makeNested(*deepest, kind, OpcUa_Nesting_MaxLevels - 1);
        EncoderOnMemory encoder(context.get());
        EXPECT_EQ(encoder->WriteVariant(encoder.get(), "", deepest.get(), nullptr), OpcUa_Good);
        for (const OpcUa_UInt32 levels : {OpcUa_Nesting_MaxLevels + 1, 5000u}) {
            OwnedVariant tooDeep;
            makeNested(*tooDeep, kind, levels);
            OpcUa_Int32 size = 0;
            EXPECT_EQ(encoder->WriteVariant(encoder.get(), "", tooDeep.get(), nullptr),
                      OpcUa_BadEncodingLimitsExceeded);
            EXPECT_EQ(encoder->WriteVariant(encoder.get(), "", tooDeep.get(), &size),
                      OpcUa_BadEncodingLimitsExceeded);
        }
        // The budget is whole again.
        EXPECT_EQ(encoder->WriteVariant(encoder.get(), "", deepest.get(), nullptr), OpcUa_Good);
    }
}

TEST(Memory, arrays_in_arrays_that_promise_too_much_take_no_memory_for_it)
{
    TestContext context;
    context->MaxArrayLength = 0;
    context->MaxMessageSize = 0;
    constexpr std::size_t size = 100000;
    // Each array promises as many elements as there are bytes behind it.
    Bytes bytes;
    while (bytes.size() < 90 * 5) {
        const std::size_t promised = size - bytes.size() - 5;
        bytes.push_back(0x98);
        for (std::size_t i = 0; i < 4; ++i) {
            bytes.push_back(static_cast<OpcUa_Byte>(promised >> (8 * i)));
        }
    }
    bytes.resize(size, 0);
    EXPECT_EQ(decodeHostile(context, bytes, OpcUaType_Variant), OpcUa_BadEndOfStream);
}

TEST(Memory, array_of_the_densest_values_is_within_its_worth)
{
    TestContext context;
    context->MaxArrayLength = 0;
    for (const OpcUa_Byte type :
         {OpcUaType_DataValue, OpcUaType_Variant, OpcUaType_DiagnosticInfo, OpcUaType_LocalizedText,
          OpcUaType_ExtensionObject, OpcUaType_ExpandedNodeId}) {
        constexpr std::size_t count = 300000;
        Bytes bytes = {static_cast<OpcUa_Byte>(type | 0x80), count & 0xFF, (count >> 8) & 0xFF,
                       (count >> 16) & 0xFF, 0};
        const BuiltInValue empty(type);
        const Bytes element = encode(context, type, empty.get());
        bytes.resize(5 + count * element.size(), 0);
        EXPECT_EQ(decodeHostile(context, bytes, OpcUaType_Variant), OpcUa_Good);
        bytes.pop_back();
        EXPECT_EQ(decodeHostile(context, bytes, OpcUaType_Variant), OpcUa_BadEndOfStream);
    }
}

} // namespace
