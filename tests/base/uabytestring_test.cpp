#include "base/uabytestring.h"
#include "platform/allocator.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/copyof.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<OpcUa_Byte>;

const OpcUa_Byte abc[] = {'a', 'b', 'c'};

Bytes contentOf(const UaByteString& string)
{
    return string.isEmpty() ? Bytes() : Bytes(string.data(), string.data() + string.length());
}

void expectNull(const UaByteString& string)
{
    EXPECT_TRUE(string.isNull());
    EXPECT_TRUE(string.isEmpty());
    EXPECT_EQ(string.length(), -1);
    EXPECT_EQ(string.data(), nullptr);
}

UaByteString emptyString()
{
    UaByteString empty;
    empty.attach(0, nullptr);
    return empty;
}

OpcUa_ByteString heldBefore()
{
    return {4, static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(4))};
}

TEST(ByteString, default_is_null)
{
    expectNull(UaByteString());
}

TEST(ByteString, nonsense_gives_null)
{
    expectNull(UaByteString(-1, abc));
    expectNull(UaByteString(std::numeric_limits<OpcUa_Int32>::min(), abc));
    expectNull(UaByteString(3, nullptr));
    expectNull(UaByteString(OpcUa_ByteString{-1, nullptr}));
    UaByteString string(3, abc);
    string.setByteString(5, nullptr);
    expectNull(string);
}

TEST(ByteString, empty_is_not_null)
{
    for (const UaByteString& string :
         {emptyString(), UaByteString(0, abc), UaByteString(0, nullptr)}) {
        EXPECT_FALSE(string.isNull());
        EXPECT_TRUE(string.isEmpty());
        EXPECT_EQ(string.length(), 0);
    }
}

TEST(ByteString, copies_its_source)
{
    OpcUa_Byte source[] = {1, 2, 3};
    const UaByteString string(3, source);
    source[0] = 9;
    EXPECT_EQ(contentOf(string), (Bytes{1, 2, 3}));
    EXPECT_EQ(contentOf(UaByteString(*string.toOpcUaByteString())), (Bytes{1, 2, 3}));
}

TEST(ByteString, copy_is_deep)
{
    const UaByteString first(3, abc);
    const UaByteString second = copyOf(first);
    UaByteString third(2, abc);
    third = first;
    EXPECT_NE(first.data(), second.data());
    EXPECT_NE(first.data(), third.data());
    EXPECT_EQ(first, second);
    EXPECT_EQ(first, third);
    UaByteString& self = third;
    third = self;
    EXPECT_EQ(first, third);
}

TEST(ByteString, moving_leaves_null)
{
    UaByteString first(3, abc);
    const OpcUa_Byte* data = first.data();
    UaByteString second = std::move(first);
    // NOLINTNEXTLINE(bugprone-use-after-move): a moved-from byte string is null.
    expectNull(first);
    EXPECT_EQ(second.data(), data);
    first = std::move(second);
    EXPECT_EQ(first.data(), data);
    UaByteString& self = first;
    first = std::move(self);
    EXPECT_EQ(first.data(), data);
}

TEST(ByteString, set_copies_also_bytes_of_its_own)
{
    UaByteString string(3, abc);
    string.setByteString(2, string.data() + 1);
    EXPECT_EQ(contentOf(string), (Bytes{'b', 'c'}));
}

TEST(ByteString, set_from_another_copies_or_takes)
{
    UaByteString source(3, abc);
    UaByteString copy(1, abc);
    copy.setByteString(source, false);
    EXPECT_EQ(copy, source);
    EXPECT_NE(copy.data(), source.data());
    const OpcUa_Byte* data = source.data();
    UaByteString taken(1, abc);
    taken.setByteString(source, true);
    EXPECT_EQ(taken.data(), data);
    expectNull(source);
    taken.setByteString(taken, true);
    taken.setByteString(taken, false);
    EXPECT_EQ(taken.data(), data);
}

TEST(ByteString, attach_takes_a_record_over)
{
    OpcUa_ByteString record = heldBefore();
    OpcUa_Byte* data = record.Data;
    UaByteString string(3, abc);
    string.attach(&record);
    EXPECT_EQ(string.data(), data);
    EXPECT_EQ(string.length(), 4);
    EXPECT_EQ(record.Length, -1);
    EXPECT_EQ(record.Data, nullptr);
    string.attach(nullptr);
    expectNull(string);
}

TEST(ByteString, attach_takes_a_block_over)
{
    UaByteString string(3, abc);
    auto* data = static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(2));
    string.attach(2, data);
    EXPECT_EQ(string.data(), data);
    string.attach(-1, static_cast<OpcUa_Byte*>(OpcUa_Memory_Alloc(2)));
    expectNull(string);
}

TEST(ByteString, detach_hands_the_bytes_over)
{
    UaByteString string(3, abc);
    const OpcUa_Byte* data = string.data();
    OpcUa_ByteString destination = heldBefore();
    string.detach(nullptr);
    EXPECT_EQ(string.length(), 3);
    string.detach(&destination);
    expectNull(string);
    EXPECT_EQ(destination.Length, 3);
    EXPECT_EQ(destination.Data, data);
    string.detach(&destination);
    EXPECT_EQ(destination.Length, -1);
}

TEST(ByteString, copy_to_is_deep)
{
    const UaByteString string(3, abc);
    OpcUa_ByteString destination = heldBefore();
    EXPECT_EQ(string.copyTo(&destination), OpcUa_Good);
    EXPECT_EQ(UaByteString(destination), string);
    EXPECT_NE(destination.Data, string.data());
    EXPECT_EQ(UaByteString().copyTo(&destination), OpcUa_Good);
    EXPECT_EQ(destination.Length, -1);
    EXPECT_EQ(string.copyTo(nullptr), OpcUa_BadInvalidArgument);
    const AllocationFaults faults(0);
    EXPECT_EQ(string.copyTo(&destination), OpcUa_BadOutOfMemory);
    EXPECT_EQ(destination.Length, -1);
}

TEST(ByteString, clear_makes_null)
{
    UaByteString string(3, abc);
    string.clear();
    expectNull(string);
    string.clear();
    expectNull(string);
}

TEST(ByteString, hexadecimal_text)
{
    const OpcUa_Byte bytes[] = {0xAB, 0x01};
    EXPECT_STREQ(UaByteString(2, bytes).toHex().toUtf8(), "AB01");
    EXPECT_STREQ(UaByteString(2, bytes).toHex(true).toUtf8(), "AB 01");
    EXPECT_TRUE(UaByteString().toHex().isEmpty());
    EXPECT_FALSE(UaByteString().toHex().isNull());
    EXPECT_TRUE(emptyString().toHex(true).isEmpty());
}

TEST(ByteString, base_64_both_ways)
{
    const UaByteString string(3, abc);
    EXPECT_STREQ(string.toBase64().toUtf8(), "YWJj");
    UaByteString read;
    EXPECT_EQ(UaByteString::fromBase64("YWJj", read), OpcUa_Good);
    EXPECT_EQ(read, string);
    EXPECT_EQ(UaByteString::fromBase64("QQ==", read), OpcUa_Good);
    EXPECT_EQ(contentOf(read), (Bytes{'A'}));
}

TEST(ByteString, base_64_of_nothing)
{
    EXPECT_TRUE(UaByteString().toBase64().isNull());
    EXPECT_FALSE(emptyString().toBase64().isNull());
    EXPECT_TRUE(emptyString().toBase64().isEmpty());
    UaByteString read(3, abc);
    EXPECT_EQ(UaByteString::fromBase64("", read), OpcUa_Good);
    EXPECT_EQ(read.length(), 0);
    EXPECT_EQ(UaByteString::fromBase64(UaString(), read), OpcUa_Good);
    expectNull(read);
}

TEST(ByteString, text_that_is_no_base_64_leaves_the_bytes)
{
    UaByteString read(3, abc);
    for (const char* text : {"Q=Q=", "QQ=", "QQ=A", "QU D", "===="}) {
        EXPECT_EQ(UaByteString::fromBase64(text, read), OpcUa_BadInvalidArgument) << text;
        EXPECT_EQ(contentOf(read), (Bytes{'a', 'b', 'c'}));
    }
    const UaString text = "QUJD";
    const AllocationFaults faults(0);
    EXPECT_EQ(UaByteString::fromBase64(text, read), OpcUa_BadOutOfMemory);
    EXPECT_EQ(contentOf(read), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteString, append_adds_bytes)
{
    UaByteString string(3, abc);
    string += UaByteString(2, abc);
    EXPECT_EQ(contentOf(string), (Bytes{'a', 'b', 'c', 'a', 'b'}));
    string += string;
    EXPECT_EQ(string.length(), 10);
    EXPECT_EQ(string.data()[9], 'b');
}

TEST(ByteString, sum_is_null_only_of_two_null_ones)
{
    UaByteString string;
    string += UaByteString();
    expectNull(string);
    string += string;
    expectNull(string);
    string += emptyString();
    EXPECT_EQ(string.length(), 0);
    string += UaByteString();
    EXPECT_EQ(string.length(), 0);
    string += UaByteString(3, abc);
    EXPECT_EQ(contentOf(string), (Bytes{'a', 'b', 'c'}));
    string += UaByteString();
    string += emptyString();
    EXPECT_EQ(contentOf(string), (Bytes{'a', 'b', 'c'}));
}

TEST(ByteString, append_without_memory_gives_null)
{
    UaByteString string(3, abc);
    const UaByteString other(3, abc);
    {
        const AllocationFaults faults(0);
        string += other;
    }
    expectNull(string);
    const AllocationFaults faults(0);
    string += other;
    expectNull(string);
}

TEST(ByteString, equal_is_by_length_and_bytes)
{
    const UaByteString string(3, abc);
    const OpcUa_Byte other[] = {'a', 'b', 'd'};
    EXPECT_TRUE(string == string);
    EXPECT_TRUE(string == UaByteString(3, abc));
    EXPECT_FALSE(string == UaByteString(3, other));
    EXPECT_FALSE(string == UaByteString(2, abc));
    EXPECT_TRUE(UaByteString() == UaByteString());
    EXPECT_TRUE(emptyString() == emptyString());
    EXPECT_FALSE(UaByteString() == emptyString());
    EXPECT_TRUE(string != UaByteString());
}

TEST(ByteString, every_failing_allocation_gives_null)
{
    const UaByteString source(3, abc);
    EXPECT_EQ(forEveryFailingAllocation([] { return UaByteString(3, abc); }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return UaByteString(source); }, expectNull), 1u);
    EXPECT_EQ(forEveryFailingAllocation(
                  [&] {
                      UaByteString assigned(2, abc);
                      assigned = source;
                      return assigned;
                  },
                  [](const UaByteString& string) {
                      EXPECT_TRUE(string.isNull() || string.length() == 3);
                  }),
              2u);
    EXPECT_EQ(forEveryFailingAllocation([&] { return source.toBase64(); },
                                        [](const UaString& text) { EXPECT_TRUE(text.isNull()); }),
              1u);
}

static_assert(std::is_nothrow_move_constructible_v<UaByteString>);
static_assert(std::is_nothrow_move_assignable_v<UaByteString>);
static_assert(sizeof(UaByteString) == sizeof(OpcUa_ByteString));

} // namespace
