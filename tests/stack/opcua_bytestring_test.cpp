#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_bytestring.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

namespace {

using Bytes = std::vector<OpcUa_Byte>;

/// A byte string that clears itself.
class OwnedBytes
{
public:
    OwnedBytes() { OpcUa_ByteString_Initialize(&m_bytes); }
    explicit OwnedBytes(const Bytes& bytes)
        : OwnedBytes()
    {
        m_bytes.Length = static_cast<OpcUa_Int32>(bytes.size());
        m_bytes.Data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), m_bytes.Data);
    }
    ~OwnedBytes() { OpcUa_ByteString_Clear(&m_bytes); }
    OwnedBytes(const OwnedBytes&) = delete;
    OwnedBytes& operator=(const OwnedBytes&) = delete;

    [[nodiscard]] OpcUa_ByteString* get() { return &m_bytes; }
    [[nodiscard]] const OpcUa_ByteString* get() const { return &m_bytes; }
    [[nodiscard]] Bytes bytes() const { return {m_bytes.Data, m_bytes.Data + m_bytes.Length}; }

private:
    OpcUa_ByteString m_bytes{};
};

TEST(ByteString, initialised_one_is_null)
{
    OpcUa_ByteString bytes{5, nullptr};
    OpcUa_ByteString_Initialize(&bytes);
    EXPECT_EQ(bytes.Length, -1);
    EXPECT_EQ(bytes.Data, nullptr);
}

TEST(ByteString, copy_keeps_null_empty_and_filled_apart)
{
    OwnedBytes copy({9, 9});
    const OwnedBytes null;
    EXPECT_EQ(OpcUa_ByteString_CopyTo(null.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(copy.get()->Length, -1);
    EXPECT_EQ(copy.get()->Data, nullptr);

    const OwnedBytes empty{Bytes()};
    EXPECT_EQ(OpcUa_ByteString_CopyTo(empty.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(copy.get()->Length, 0);
    EXPECT_NE(copy.get()->Data, nullptr);

    const OpcUa_ByteString zeroed{0, nullptr};
    EXPECT_EQ(OpcUa_ByteString_CopyTo(&zeroed, copy.get()), OpcUa_Good);
    EXPECT_EQ(copy.get()->Length, 0);
    EXPECT_EQ(copy.get()->Data, nullptr);

    const OwnedBytes filled({1, 0, 255});
    EXPECT_EQ(OpcUa_ByteString_CopyTo(filled.get(), copy.get()), OpcUa_Good);
    EXPECT_EQ(copy.bytes(), Bytes({1, 0, 255}));
    EXPECT_NE(copy.get()->Data, filled.get()->Data);
}

TEST(ByteString, copy_refuses_a_length_without_bytes)
{
    OwnedBytes copy({9});
    const OpcUa_ByteString broken{3, nullptr};
    EXPECT_EQ(OpcUa_ByteString_CopyTo(&broken, copy.get()), OpcUa_BadInvalidArgument);
    EXPECT_EQ(copy.get()->Length, -1);
}

TEST(ByteString, copy_of_a_length_below_null_is_null)
{
    OwnedBytes copy({9});
    const OpcUa_ByteString odd{-7, nullptr};
    EXPECT_EQ(OpcUa_ByteString_CopyTo(&odd, copy.get()), OpcUa_Good);
    EXPECT_EQ(copy.get()->Length, -1);
}

TEST(ByteString, compare)
{
    const OpcUa_ByteString null{-1, nullptr};
    const OpcUa_ByteString otherNull{-1, nullptr};
    const OpcUa_ByteString noBytes{2, nullptr};
    const OpcUa_ByteString alsoNoBytes{2, nullptr};
    const OpcUa_ByteString longest{std::numeric_limits<OpcUa_Int32>::max(), nullptr};
    const OpcUa_ByteString lowest{std::numeric_limits<OpcUa_Int32>::min(), nullptr};
    const OwnedBytes empty{Bytes()};
    const OwnedBytes one({1});
    const OwnedBytes twoLow({1, 2});
    const OwnedBytes twoHigh({1, 200});
    const OwnedBytes five({0, 0, 0, 0, 0});
    struct Row
    {
        const char* name;
        const OpcUa_ByteString* left;
        const OpcUa_ByteString* right;
        OpcUa_Int32 expected;
    };
    const std::array<Row, 19> rows = {
        {{"two null pointers", nullptr, nullptr, 0},
         {"same record", one.get(), one.get(), 0},
         {"null pointer left", nullptr, one.get(), 1},
         {"null pointer right", one.get(), nullptr, 1},
         {"null pointer against a null one", nullptr, &null, 1},
         {"two null ones", &null, &otherNull, 0},
         {"null against empty", &null, empty.get(), -1},
         {"empty against null", empty.get(), &null, 1},
         {"shorter by one", one.get(), twoLow.get(), -1},
         {"longer by one", twoLow.get(), one.get(), 1},
         {"longer by four", five.get(), one.get(), 4},
         {"length decides before the bytes", one.get(), five.get(), -4},
         {"bytes are unsigned", twoLow.get(), twoHigh.get(), -1},
         {"bytes are unsigned, reversed", twoHigh.get(), twoLow.get(), 1},
         {"no bytes left", &noBytes, twoLow.get(), -1},
         {"no bytes right", twoLow.get(), &noBytes, 1},
         {"no bytes on both sides", &noBytes, &alsoNoBytes, 0},
         {"difference is held at the upper end", &longest, &lowest,
          std::numeric_limits<OpcUa_Int32>::max()},
         {"difference is held at the lower end", &lowest, &longest,
          std::numeric_limits<OpcUa_Int32>::min()}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OpcUa_ByteString_Compare(row.left, row.right), row.expected);
    }
}

TEST(ByteString, equal_bytes_in_other_blocks_are_equal)
{
    const OwnedBytes left({1, 0, 3});
    const OwnedBytes right({1, 0, 3});
    EXPECT_EQ(OpcUa_ByteString_Compare(left.get(), right.get()), 0);
}

TEST(ByteString, concatenate_appends)
{
    struct Row
    {
        const char* name;
        OpcUa_Int32 length;
        Bytes expected;
    };
    const std::array<Row, 5> rows = {{{"whole by 0", 0, {9, 1, 2, 3}},
                                      {"whole by -1", -1, {9, 1, 2, 3}},
                                      {"one byte", 1, {9, 1}},
                                      {"all but one", 2, {9, 1, 2}},
                                      {"exactly all", 3, {9, 1, 2, 3}}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const OwnedBytes source({1, 2, 3});
        OwnedBytes destination({9});
        EXPECT_EQ(OpcUa_ByteString_Concatenate(source.get(), destination.get(), row.length),
                  OpcUa_Good);
        EXPECT_EQ(destination.bytes(), row.expected);
        EXPECT_EQ(source.bytes(), Bytes({1, 2, 3}));
    }
}

TEST(ByteString, concatenate_refuses)
{
    const OwnedBytes source({1, 2, 3});
    const OwnedBytes empty{Bytes()};
    const OwnedBytes null;
    const OpcUa_ByteString noBytes{3, nullptr};
    OwnedBytes destination({9});
    OwnedBytes emptyDestination{Bytes()};
    OwnedBytes nullDestination;
    struct Row
    {
        const char* name;
        const OpcUa_ByteString* source;
        OpcUa_ByteString* destination;
        OpcUa_Int32 length;
    };
    const std::array<Row, 11> rows = {
        {{"null source", nullptr, destination.get(), 1},
         {"null destination", source.get(), nullptr, 1},
         {"source that is the destination", destination.get(), destination.get(), 0},
         {"empty destination", source.get(), emptyDestination.get(), 1},
         {"destination that holds null", source.get(), nullDestination.get(), 1},
         {"whole of an empty source", empty.get(), destination.get(), 0},
         {"whole of a null source", null.get(), destination.get(), -1},
         {"part of an empty source", empty.get(), destination.get(), 1},
         {"more than the source has", source.get(), destination.get(), 4},
         {"largest length", source.get(), destination.get(),
          std::numeric_limits<OpcUa_Int32>::max()},
         {"source without bytes", &noBytes, destination.get(), 2}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OpcUa_ByteString_Concatenate(row.source, row.destination, row.length),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(destination.bytes(), Bytes({9}));
    }
}

TEST(ByteString, concatenate_takes_a_source_that_shares_the_block)
{
    OwnedBytes destination({1, 2});
    const OpcUa_ByteString alias = *destination.get();
    EXPECT_EQ(OpcUa_ByteString_Concatenate(&alias, destination.get(), 0), OpcUa_Good);
    EXPECT_EQ(destination.bytes(), Bytes({1, 2, 1, 2}));
}

TEST(ByteString, concatenate_without_memory_keeps_the_destination)
{
    const OwnedBytes source({1, 2, 3});
    OwnedBytes destination({9});
    const AllocationFaults faults(0);
    EXPECT_EQ(OpcUa_ByteString_Concatenate(source.get(), destination.get(), 0),
              OpcUa_BadOutOfMemory);
    EXPECT_EQ(destination.bytes(), Bytes({9}));
}

TEST(ByteString, concatenate_refuses_a_sum_that_fits_no_length)
{
    const OwnedBytes source({1});
    OwnedBytes destination({9});
    // The check comes before the bytes are touched, so the length may promise more than there is.
    OpcUa_ByteString huge{std::numeric_limits<OpcUa_Int32>::max(), destination.get()->Data};
    EXPECT_EQ(OpcUa_ByteString_Concatenate(source.get(), &huge, 0), OpcUa_BadOutOfMemory);
    EXPECT_EQ(huge.Length, std::numeric_limits<OpcUa_Int32>::max());
}

TEST(XmlElement, shares_record_and_functions)
{
    OpcUa_XmlElement element;
    OpcUa_XmlElement_Initialize(&element);
    EXPECT_EQ(element.Length, -1);
    const OwnedBytes source({'<', 'a', '/', '>'});
    EXPECT_EQ(OpcUa_XmlElement_CopyTo(source.get(), &element), OpcUa_Good);
    EXPECT_EQ(OpcUa_XmlElement_Compare(source.get(), &element), 0);
    OpcUa_XmlElement_Clear(&element);
    EXPECT_EQ(element.Length, -1);
}

} // namespace
