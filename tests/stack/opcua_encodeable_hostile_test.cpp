#include "platform/allocator.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_nesting.h"
#include "tests/stack/recordcoder.h"
#include "tests/stack/recordsamples.h"
#include "tests/support/allocationsum.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <span>
#include <utility>

// Every prefix and every flipped bit of filled messages of every type.

namespace {

/// Decodes bytes that may be anything: an error with nothing left, or a value that encodes again to
/// something that decodes to the same.
OpcUa_StatusCode decodeAnything(const OpcUa_RecordLayout& layout, std::span<const OpcUa_Byte> bytes)
{
    SampleRecord record(layout);
    OpcUa_StatusCode status = OpcUa_Good;
    {
        const AllocationSum allocations;
        status = decodeRecord(*layout.Type, bytes, record.get());
        EXPECT_TRUE(AllocationSum::isWithinWorthOf(bytes.size()));
    }
    if (OpcUa_IsBad(status)) {
        EXPECT_TRUE(record.isInitialized());
        return status;
    }
    const Bytes again = encodedRecord(*layout.Type, record.get());
    SampleRecord twin(layout);
    EXPECT_EQ(decodeRecord(*layout.Type, again, twin.get()), OpcUa_Good);
    EXPECT_EQ(encodedRecord(*layout.Type, twin.get()), again);
    return status;
}

/// One row per type and sample, so that a finding names its message.
template <typename Test>
void forEveryMessage(Test test)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        for (const RecordSample sample : filledRecordSamples) {
            SCOPED_TRACE(testing::Message() << layout->Type->TypeName << ' ' << sample);
            const SampleRecord record(*layout, sample);
            test(*layout, encodedRecord(*layout->Type, record.get()));
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

TEST(EncodeableHostile, no_prefix_of_a_message_decodes)
{
    forEveryMessage([](const OpcUa_RecordLayout& layout, const Bytes& bytes) {
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            // A copy of its own, so that a sanitizer sees the first byte behind it.
            const Bytes prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_TRUE(OpcUa_IsBad(decodeAnything(layout, prefix))) << length;
        }
    });
}

TEST(EncodeableHostile, flipped_bits_are_refused_or_give_a_value_that_encodes_again)
{
    forEveryMessage([](const OpcUa_RecordLayout& layout, const Bytes& bytes) {
        Bytes flipped = bytes;
        std::size_t good = 0;
        for (std::size_t bit = 0; bit < bytes.size() * 8; ++bit) {
            const auto mask = static_cast<OpcUa_Byte>(1u << (bit % 8));
            flipped[bit / 8] ^= mask;
            good += OpcUa_IsGood(decodeAnything(layout, flipped)) ? 1 : 0;
            flipped[bit / 8] ^= mask;
            if (testing::Test::HasFailure()) {
                FAIL() << "bit " << bit;
            }
        }
        // Every message has a number or a text in which any bit may be set.
        EXPECT_GT(good, 0u);
    });
}

/// A type whose record can hold another one of it, in an extension object that comes last.
struct NestingType
{
    const char* name;
    Bytes before;
    Bytes without;        ///< The record that holds no other.
    OpcUa_UInt32 deepest; ///< Records in one another that are read.
};

// A variant counts as a level besides the extension object in it.
const NestingType nestingTypes[] = {{"LiteralOperand",
                                     {OpcUaType_ExtensionObject},
                                     {OpcUaType_Null},
                                     (OpcUa_Nesting_MaxLevels - 1) / 2},
                                    {"ContentFilterElement",
                                     {0, 0, 0, 0, 1, 0, 0, 0},
                                     {0, 0, 0, 0, 0, 0, 0, 0},
                                     OpcUa_Nesting_MaxLevels}};

void appendInt32(Bytes& bytes, std::size_t value)
{
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<OpcUa_Byte>(value >> shift));
    }
}

/// The encoding of a record that holds a record, and so on; `depth` records in all but the outermost.
Bytes nestedBytes(const NestingType& type, const OpcUa_EncodeableType& row, OpcUa_UInt32 depth)
{
    Bytes bytes = type.without;
    for (OpcUa_UInt32 i = 0; i < depth; ++i) {
        Bytes outer = type.before;
        outer.insert(outer.end(), {1, 0, static_cast<OpcUa_Byte>(row.BinaryEncodingTypeId),
                                   static_cast<OpcUa_Byte>(row.BinaryEncodingTypeId >> 8), 1});
        appendInt32(outer, bytes.size());
        outer.insert(outer.end(), bytes.begin(), bytes.end());
        bytes = std::move(outer);
    }
    return bytes;
}

TEST(EncodeableHostile, records_nested_up_to_the_limit_decode_copy_compare_and_encode)
{
    for (const NestingType& nesting : nestingTypes) {
        SCOPED_TRACE(nesting.name);
        const OpcUa_RecordLayout& layout = layoutOf(nesting.name);
        const Bytes bytes = nestedBytes(nesting, *layout.Type, nesting.deepest);
        SampleRecord record(layout);
        SampleRecord copy(layout);
        ASSERT_EQ(decodeRecord(*layout.Type, bytes, record.get()), OpcUa_Good);
        EXPECT_EQ(layout.Type->CopyTo(record.get(), copy.get()), OpcUa_Good);
        EXPECT_EQ(layout.Type->Compare(record.get(), copy.get()), 0);
        EXPECT_EQ(encodedRecord(*layout.Type, copy.get()), bytes);
    }
}

TEST(EncodeableHostile, records_nested_deeper_are_refused)
{
    for (const NestingType& nesting : nestingTypes) {
        for (const OpcUa_UInt32 depth : {nesting.deepest + 1, OpcUa_UInt32{3000}}) {
            SCOPED_TRACE(testing::Message() << nesting.name << ' ' << depth);
            const OpcUa_RecordLayout& layout = layoutOf(nesting.name);
            const Bytes bytes = nestedBytes(nesting, *layout.Type, depth);
            SampleRecord record(layout);
            EXPECT_EQ(decodeRecord(*layout.Type, bytes, record.get()),
                      OpcUa_BadEncodingLimitsExceeded);
            EXPECT_TRUE(record.isInitialized());
        }
    }
}

} // namespace
