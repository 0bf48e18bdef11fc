#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uanumericrange.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

UaNumericRange range(const char* string)
{
    UaNumericRange result;
    EXPECT_EQ(result.fromString(string), OpcUa_Good) << string;
    return result;
}

UaVariant strings(const std::vector<std::string>& texts)
{
    UaStringArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(texts.size())), OpcUa_Good);
    for (OpcUa_UInt32 i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(OpcUa_String_AttachCopy(&array[i], texts[i].c_str()), OpcUa_Good);
    }
    return UaVariant(array);
}

UaVariant bytes(const std::string& content)
{
    UaByteString byteString(static_cast<OpcUa_Int32>(content.size()),
                            reinterpret_cast<const OpcUa_Byte*>(content.data()));
    return UaVariant(byteString);
}

UaVariant byteStrings(const std::vector<std::string>& contents)
{
    UaByteStringArray array;
    EXPECT_EQ(array.create(static_cast<OpcUa_Int32>(contents.size())), OpcUa_Good);
    for (OpcUa_UInt32 i = 0; i < contents.size(); ++i) {
        UaByteString content(static_cast<OpcUa_Int32>(contents[i].size()),
                             reinterpret_cast<const OpcUa_Byte*>(contents[i].data()));
        content.detach(&array[i]);
    }
    return UaVariant(array);
}

/// The numbers from 0 on.
UaVariant numbers(OpcUa_Int32 count)
{
    std::vector<OpcUa_Int32> values(static_cast<std::size_t>(count));
    std::iota(values.begin(), values.end(), 0);
    return UaVariant(UaInt32Array(count, values.data()));
}

/// Turns an array into a matrix.
UaVariant matrix(UaVariant array, const std::vector<OpcUa_Int32>& dimensions)
{
    OpcUa_Variant stack;
    array.detach(&stack);
    const OpcUa_VariantArray flat = stack.Value.Array;
    auto* counts =
        static_cast<OpcUa_Int32*>(OpcUa_Memory_AllocArray(dimensions.size(), sizeof(OpcUa_Int32)));
    std::copy(dimensions.begin(), dimensions.end(), counts);
    stack.ArrayType = OpcUa_VariantArrayType_Matrix;
    stack.Value.Matrix = {static_cast<OpcUa_Int32>(dimensions.size()), counts, flat.Elements};
    UaVariant variant;
    variant.attach(stack);
    return variant;
}

/// The value as text with its dimensions before it.
std::string describe(const UaVariant& variant)
{
    const OpcUa_Variant& stack = *variant.toOpcUaVariant();
    if (!variant.isMatrix()) {
        return variant.type() == OpcUaType_ByteString && variant.isArray()
                   ? "byte strings"
                   : textOf(variant.toString());
    }
    std::string result;
    for (OpcUa_Int32 i = 0; i < stack.Value.Matrix.NoOfDimensions; ++i) {
        result += (i == 0 ? "" : "x") + std::to_string(stack.Value.Matrix.Dimensions[i]);
    }
    OpcUa_Variant flat = stack;
    flat.ArrayType = OpcUa_VariantArrayType_Array;
    flat.Value.Array = {variant.arraySize(), stack.Value.Matrix.Elements};
    return result + " " + textOf(reinterpret_cast<const UaVariant&>(flat).toString());
}

std::string read(const UaVariant& source, const char* rangeText)
{
    UaVariant target = text("old");
    const OpcUa_StatusCode status = source.getIndexRange(range(rangeText), target);
    if (OpcUa_IsBad(status)) {
        EXPECT_TRUE(target.isEmpty()) << "a failure clears the target";
        return nameOf(status);
    }
    EXPECT_EQ(target.type(), source.type());
    EXPECT_EQ(target.isArray(), source.isArray());
    EXPECT_EQ(target.isMatrix(), source.isMatrix());
    return describe(target);
}

std::string write(const UaVariant& source, const char* rangeText, const UaVariant& value)
{
    UaVariant variant(source);
    const OpcUa_StatusCode status = variant.setIndexRange(range(rangeText), value);
    if (OpcUa_IsBad(status)) {
        EXPECT_EQ(variant, source) << "a failure leaves the variant";
        return nameOf(status);
    }
    EXPECT_EQ(variant.arraySize(), source.arraySize());
    return describe(variant);
}

struct ReadRow
{
    UaVariant source;
    const char* range;
    const char* result;
};

void expectRead(const std::vector<ReadRow>& rows)
{
    for (const ReadRow& row : rows) {
        EXPECT_EQ(read(row.source, row.range), row.result)
            << row.range << " of " << describe(row.source);
    }
}

struct WriteRow
{
    UaVariant source;
    const char* range;
    UaVariant value;
    const char* result;
};

void expectWritten(const std::vector<WriteRow>& rows)
{
    for (const WriteRow& row : rows) {
        EXPECT_EQ(write(row.source, row.range, row.value), row.result)
            << row.range << " of " << describe(row.source);
    }
}

constexpr const char* noData = "BadIndexRangeNoData";
constexpr const char* mismatch = "BadTypeMismatch";

TEST(UaVariantGetIndexRange, needs_a_valid_range_and_leaves_the_target_without)
{
    UaNumericRange reversed;
    ASSERT_EQ(reversed.append({3, 2, UaNumericRangeEntry::Range}), OpcUa_Good);
    for (const UaNumericRange& invalid : {UaNumericRange(), reversed}) {
        UaVariant target = text("old");
        EXPECT_EQ(nameOf(text("abc").getIndexRange(invalid, target)), "BadIndexRangeInvalid");
        EXPECT_EQ(textOf(target.toString()), "old");
    }
}

TEST(UaVariantGetIndexRange, string_is_indexed_by_character)
{
    // Two, three and four bytes long.
    const UaVariant umlauts = text("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z");
    expectRead({{text("abcdef"), "0", "a"},
                {text("abcdef"), "5", "f"},
                {text("abcdef"), "6", noData},
                {text("abcdef"), "0:1", "ab"},
                {text("abcdef"), "2:4", "cde"},
                {text("abcdef"), "4:9", "ef"},
                {text("abcdef"), "5:4294967295", "f"},
                {text("abcdef"), "4294967295", noData},
                {text("abcdef"), "6:7", noData},
                {text("abcdef"), "0,0", noData},
                {text(""), "0", noData},
                {umlauts, "1", "\xC3\xA4"},
                {umlauts, "2", "\xE2\x82\xAC"},
                {umlauts, "3", "\xF0\x9F\x98\x80"},
                {umlauts, "4", "z"},
                {umlauts, "5", noData},
                {umlauts, "1:2", "\xC3\xA4\xE2\x82\xAC"},
                {umlauts, "3:9", "\xF0\x9F\x98\x80z"}});
}

TEST(UaVariantGetIndexRange, text_that_is_no_utf8_is_read_by_its_lead_bytes)
{
    expectRead({{text("a\xE2\x82"), "1", "\xE2\x82"}, // cut short: the rest of the text
                {text("a\xE2\x82"), "2", noData},
                {text("\x80\x80z"), "1", "\x80"}, // no lead byte: a character each
                {text("\xFFz"), "1", "z"},
                {text("\xC3(z"), "0", "\xC3("}, // whatever follows belongs to it
                {text("\xC3(z"), "1", "z"},
                {text("\xFC"), "0:5", "\xFC"}});
}

TEST(UaVariantGetIndexRange, byte_string_is_indexed_by_byte)
{
    expectRead({{bytes("abc"), "0", "61"},
                {bytes("abc"), "2", "63"},
                {bytes("abc"), "3", noData},
                {bytes("abc"), "1:2", "62 63"},
                {bytes("abc"), "1:4294967295", "62 63"},
                {bytes("abc"), "3:4", noData},
                {bytes("abc"), "0,0", noData},
                {bytes(""), "0", noData},
                {UaVariant(UaByteString()), "0", noData}});
}

TEST(UaVariantGetIndexRange, other_scalars_have_nothing_to_index)
{
    expectRead({{UaVariant(), "0", noData}, {int32(5), "0", noData}});
    UaVariant xml;
    xml.setXmlElement(UaString("<a/>"));
    expectRead({{xml, "0", noData}});
}

TEST(UaVariantGetIndexRange, array_takes_one_dimension)
{
    expectRead({{numbers(5), "0", "{0}"},
                {numbers(5), "4", "{4}"},
                {numbers(5), "5", noData},
                {numbers(5), "1:3", "{1,2,3}"},
                {numbers(5), "3:100", "{3,4}"},
                {numbers(5), "4:4294967295", "{4}"},
                {numbers(5), "4294967295", noData},
                {numbers(5), "5:6", noData},
                {numbers(5), "0,0", noData},
                {numbers(5), "0,0,0", noData},
                {numbers(0), "0", noData}});
}

TEST(UaVariantGetIndexRange, second_entry_indexes_within_strings)
{
    expectRead({{strings({"abc", "de", ""}), "0", "{'abc'}"},
                {strings({"abc", "de", ""}), "0:2,0", "{'a','d',''}"},
                {strings({"abc", "de", ""}), "0:1,1:2", "{'bc','e'}"},
                {strings({"abc", "de", ""}), "0:9,2", "{'c','',''}"},
                {strings({"abc", "de", ""}), "1:2,2", noData},
                {strings({"abc", "de", ""}), "2,0", noData},
                {strings({"abc", "de", ""}), "3,0", noData},
                {strings({"abc"}), "0,0,0", noData},
                {strings({"\xC3\xA4z"}), "0,1", "{'z'}"}});
    UaVariant target;
    EXPECT_EQ(strings({"abc", "d"}).getIndexRange(range("0:1,1"), target), OpcUa_Good);
    UaStringArray array;
    EXPECT_EQ(target.toStringArray(array), OpcUa_Good);
    EXPECT_TRUE(OpcUa_String_IsEmpty(&array[1])) << "too short gives empty, not null";
}

TEST(UaVariantGetIndexRange, second_entry_indexes_within_byte_strings)
{
    const UaVariant source = byteStrings({"abc", "de", ""});
    UaVariant target;
    EXPECT_EQ(source.getIndexRange(range("0:2,1:2"), target), OpcUa_Good);
    EXPECT_EQ(target, byteStrings({"bc", "e", ""}));
    EXPECT_EQ(source.getIndexRange(range("1"), target), OpcUa_Good);
    EXPECT_EQ(target, byteStrings({"de"}));
    EXPECT_EQ(nameOf(source.getIndexRange(range("1:2,2"), target)), noData);
    EXPECT_TRUE(target.isEmpty());
}

TEST(UaVariantGetIndexRange, matrix_takes_an_entry_for_each_dimension)
{
    const UaVariant square = matrix(numbers(12), {3, 4});
    const UaVariant cube = matrix(numbers(24), {2, 3, 4});
    expectRead({{square, "0,0", "1x1 {0}"},
                {square, "2,3", "1x1 {11}"},
                {square, "0:2,0:3", "3x4 {0,1,2,3,4,5,6,7,8,9,10,11}"},
                {square, "1:2,1:2", "2x2 {5,6,9,10}"},
                {square, "0:2,1", "3x1 {1,5,9}"},
                {square, "1,0:3", "1x4 {4,5,6,7}"},
                {square, "1:9,2:9", "2x2 {6,7,10,11}"},
                {square, "3,0", noData},
                {square, "0,4", noData},
                {square, "0", noData},
                {square, "0,0,0", noData},
                {square, "4294967295,0", noData},
                {square, "0:4294967295,3:4294967295", "3x1 {3,7,11}"},
                {cube, "0:1,1,2", "2x1x1 {6,18}"},
                {cube, "1,0:2,0:3", "1x3x4 {12,13,14,15,16,17,18,19,20,21,22,23}"},
                {cube, "0:1,0:1,1:2", "2x2x2 {1,2,5,6,13,14,17,18}"},
                {cube, "0:1,1:2,0:3", "2x2x4 {4,5,6,7,8,9,10,11,16,17,18,19,20,21,22,23}"}});
}

TEST(UaVariantGetIndexRange, matrix_of_strings_takes_one_entry_more)
{
    const UaVariant source = matrix(strings({"ab", "cd", "ef", "g"}), {2, 2});
    expectRead({{source, "0:1,0", "2x1 {'ab','ef'}"},
                {source, "0:1,0:1,1", "2x2 {'b','d','f',''}"},
                {source, "1,1,1", noData},
                {source, "1,1,0", "1x1 {'g'}"},
                {source, "0,0,0,0", noData}});
    UaVariant target;
    EXPECT_EQ(matrix(byteStrings({"ab", "cd"}), {2, 1}).getIndexRange(range("0:1,0,1"), target),
              OpcUa_Good);
    EXPECT_EQ(target, matrix(byteStrings({"b", "d"}), {2, 1}));
}

TEST(UaVariantGetIndexRange, elements_of_every_type_are_copied_deeply)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        OwnedVariant stack;
        makeShape(*stack, sample, VariantShape::Array);
        UaVariant source;
        source.attach(*stack);
        UaVariant target;
        ASSERT_EQ(source.getIndexRange(range("1:2"), target), OpcUa_Good) << sample;
        source.clear();
        OwnedVariant expected;
        makeArray(*expected, sample, 2);
        EXPECT_EQ(OpcUa_Variant_Compare(target.toOpcUaVariant(), expected.get()), 0) << sample;
    }
}

TEST(UaVariantGetIndexRange, may_read_into_itself)
{
    UaVariant variant = numbers(5);
    EXPECT_EQ(variant.getIndexRange(range("1:2"), variant), OpcUa_Good);
    EXPECT_EQ(describe(variant), "{1,2}");
}

TEST(UaVariantGetIndexRange, broken_variants_have_no_data)
{
    OpcUa_Variant stack{};
    stack.Datatype = OpcUaType_Int32;
    stack.ArrayType = OpcUa_VariantArrayType_Array;
    stack.Value.Array = {5, nullptr};
    const auto& variant = reinterpret_cast<const UaVariant&>(stack);
    UaVariant target;
    EXPECT_EQ(nameOf(variant.getIndexRange(range("0"), target)), noData);
    stack.Value.Array = {-1, nullptr};
    EXPECT_EQ(nameOf(variant.getIndexRange(range("0"), target)), noData);
    stack.ArrayType = OpcUa_VariantArrayType_Matrix;
    stack.Value.Matrix = {2, nullptr, nullptr};
    EXPECT_EQ(nameOf(variant.getIndexRange(range("0,0"), target)), noData);
    stack.ArrayType = 3;
    EXPECT_EQ(nameOf(variant.getIndexRange(range("0"), target)), noData);
    stack.ArrayType = 0;
    stack.Datatype = 99;
    EXPECT_EQ(nameOf(variant.getIndexRange(range("0"), target)), noData);
    EXPECT_EQ(nameOf(UaVariant(int32(1)).setIndexRange(range("0"), variant)), mismatch);
}

TEST(UaVariantSetIndexRange, needs_a_valid_range)
{
    UaVariant variant = text("abc");
    EXPECT_EQ(nameOf(variant.setIndexRange(UaNumericRange(), text("x"))), "BadIndexRangeInvalid");
    EXPECT_EQ(textOf(variant.toString()), "abc");
}

TEST(UaVariantSetIndexRange, needs_a_value_of_the_same_type_and_shape)
{
    expectWritten({{text("abc"), "0", bytes("x"), mismatch},
                   {text("abc"), "0", strings({"x"}), mismatch},
                   {text("abc"), "0", UaVariant(), mismatch},
                   {numbers(3), "0", int32(1), mismatch},
                   {numbers(3), "0", matrix(numbers(1), {1}), mismatch},
                   {numbers(3), "0", UaVariant(UaUInt32Array()), mismatch},
                   {UaVariant(), "0", UaVariant(), noData},
                   {int32(1), "0", int32(2), noData}});
    OpcUa_Variant stack{};
    stack.Datatype = 99;
    UaVariant strange;
    strange.attach(stack);
    EXPECT_EQ(nameOf(strange.setIndexRange(range("0"), UaVariant(strange))), mismatch);
    auto& same = reinterpret_cast<UaVariant&>(stack);
    stack.Datatype = 99;
    EXPECT_EQ(nameOf(same.setIndexRange(range("0"), same)), noData);
}

TEST(UaVariantSetIndexRange, string_is_replaced_by_character)
{
    expectWritten({{text("abcdef"), "0", text("X"), "Xbcdef"},
                   {text("abcdef"), "5", text("X"), "abcdeX"},
                   {text("abcdef"), "1:3", text("XYZ"), "aXYZef"},
                   {text("abcdef"), "0:5", text("UVWXYZ"), "UVWXYZ"},
                   {text("abcdef"), "1", text("\xC3\xA4"),
                    "a\xC3\xA4"
                    "cdef"},
                   {text("a\xC3\xA4z"), "1", text("x"), "axz"},
                   {text("a\xC3\xA4z"), "1:2", text("\xE2\x82\xAC!"), "a\xE2\x82\xAC!"},
                   {text("abcdef"), "6", text("X"), noData},
                   {text("abcdef"), "4:6", text("XYZ"), noData},
                   {text("abcdef"), "0:9", text("UVWXYZ"), noData},
                   {text("abcdef"), "1:2", text("X"), noData},
                   {text("abcdef"), "1:2", text("XYZ"), noData},
                   {text("abcdef"), "1", text(""), noData},
                   {text("abcdef"), "0:4294967295", text("X"), noData},
                   {text("abcdef"), "0,0", text("X"), noData},
                   {text(""), "0", text("X"), noData}});
}

TEST(UaVariantSetIndexRange, byte_string_is_replaced_by_byte)
{
    expectWritten({{bytes("abc"), "1", bytes("X"), "61 58 63"},
                   {bytes("abc"), "0:2", bytes("XYZ"), "58 59 5A"},
                   {bytes("abc"), "2:3", bytes("XY"), noData},
                   {bytes("abc"), "3", bytes("X"), noData},
                   {bytes("abc"), "0:1", bytes("X"), noData},
                   {bytes("abc"), "0", UaVariant(UaByteString()), noData}});
}

TEST(UaVariantSetIndexRange, array_takes_a_value_of_exactly_the_size)
{
    expectWritten({{numbers(5), "1", numbers(1), "{0,0,2,3,4}"},
                   {numbers(5), "2:4", numbers(3), "{0,1,0,1,2}"},
                   {numbers(5), "0:4", numbers(5), "{0,1,2,3,4}"},
                   {numbers(5), "2:5", numbers(4), noData},
                   {numbers(5), "5", numbers(1), noData},
                   {numbers(5), "1:2", numbers(1), noData},
                   {numbers(5), "1:2", numbers(3), noData},
                   {numbers(5), "0:4294967295", numbers(5), noData},
                   {numbers(5), "4294967295", numbers(1), noData},
                   {numbers(5), "0,0", numbers(1), noData},
                   {numbers(0), "0", numbers(0), noData},
                   {strings({"a", "b", "c"}), "0:1", strings({"X", "Y"}), "{'X','Y','c'}"}});
}

TEST(UaVariantSetIndexRange, second_entry_replaces_within_strings)
{
    const UaVariant source = strings({"abc", "def", "g"});
    expectWritten({{source, "0:1,1", strings({"X", "Y"}), "{'aXc','dYf','g'}"},
                   {source, "0:1,0:1", strings({"WX", "YZ"}), "{'WXc','YZf','g'}"},
                   {source, "2,0", strings({"X"}), "{'abc','def','X'}"},
                   {source, "0:2,1", strings({"X", "Y", "Z"}), noData}, // "g" is too short
                   {source, "0:1,1", strings({"X", "YY"}), noData},
                   {source, "0:1,1", strings({"X"}), noData},
                   {source, "0:1,1:3", strings({"UVW", "XYZ"}), noData},
                   {source, "0,0,0", strings({"X"}), noData}});
    UaVariant target = byteStrings({"abc", "de"});
    EXPECT_EQ(target.setIndexRange(range("0:1,1"), byteStrings({"X", "Y"})), OpcUa_Good);
    EXPECT_EQ(target, byteStrings({"aXc", "dY"}));
}

TEST(UaVariantSetIndexRange, matrix_takes_a_block_of_exactly_the_dimensions)
{
    const UaVariant square = matrix(numbers(6), {2, 3});
    expectWritten({{square, "0,0", matrix(numbers(1), {1, 1}), "2x3 {0,1,2,3,4,5}"},
                   {square, "1,2", matrix(numbers(1), {1, 1}), "2x3 {0,1,2,3,4,0}"},
                   {square, "0:1,1", matrix(numbers(2), {2, 1}), "2x3 {0,0,2,3,1,5}"},
                   {square, "0:1,1:2", matrix(numbers(4), {2, 2}), "2x3 {0,0,1,3,2,3}"},
                   {square, "1,0:2", matrix(numbers(3), {1, 3}), "2x3 {0,1,2,0,1,2}"},
                   {square, "1,0:2", matrix(numbers(3), {3, 1}), noData},
                   {square, "1,0:2", matrix(numbers(3), {3}), noData},
                   {square, "1,0:2", matrix(numbers(3), {1, 3, 1}), noData},
                   {square, "1:2,0", matrix(numbers(2), {2, 1}), noData},
                   {square, "0", matrix(numbers(1), {1, 1}), noData},
                   {square, "0,0", matrix(numbers(0), {0, 0}), noData}});
    expectWritten({{matrix(strings({"ab", "cd", "ef", "gh"}), {2, 2}), "0:1,1,0",
                    matrix(strings({"X", "Y"}), {2, 1}), "2x2 {'ab','Xd','ef','Yh'}"},
                   {matrix(strings({"ab", "cd"}), {1, 2}), "0,1", matrix(strings({"X"}), {1, 1}),
                    "1x2 {'ab','X'}"}});
}

TEST(UaVariantSetIndexRange, elements_of_every_type_are_copied_deeply)
{
    for (const BuiltInSample& sample : builtInSamples()) {
        const BuiltInSample other = {sample.name, sample.type, sample.fillOther, sample.fill};
        OwnedVariant stack;
        makeShape(*stack, sample, VariantShape::Array);
        UaVariant variant;
        variant.attach(*stack);
        OwnedVariant otherStack;
        makeArray(*otherStack, other, 2);
        UaVariant value;
        value.attach(*otherStack);
        const UaVariant kept(value);
        ASSERT_EQ(variant.setIndexRange(range("1:2"), value), OpcUa_Good) << sample;
        value.clear();
        UaVariant back;
        ASSERT_EQ(variant.getIndexRange(range("1:2"), back), OpcUa_Good) << sample;
        EXPECT_EQ(OpcUa_Variant_Compare(back.toOpcUaVariant(), kept.toOpcUaVariant()), 0) << sample;
    }
}

TEST(UaVariantSetIndexRange, may_write_itself)
{
    UaVariant array = numbers(3);
    EXPECT_EQ(array.setIndexRange(range("0:2"), array), OpcUa_Good);
    EXPECT_EQ(describe(array), "{0,1,2}");
    UaVariant texts = strings({"a", "b"});
    EXPECT_EQ(texts.setIndexRange(range("0:1"), texts), OpcUa_Good);
    EXPECT_EQ(describe(texts), "{'a','b'}");
    UaVariant string = text("abc");
    EXPECT_EQ(string.setIndexRange(range("0:2"), string), OpcUa_Good);
    EXPECT_EQ(describe(string), "abc");
}

TEST(UaVariantIndexRange, single_kind_ignores_its_last_index)
{
    UaNumericRange single;
    ASSERT_EQ(single.append({1, 77, UaNumericRangeEntry::Single}), OpcUa_Good);
    UaVariant target;
    EXPECT_EQ(numbers(5).getIndexRange(single, target), OpcUa_Good);
    EXPECT_EQ(describe(target), "{1}");
    EXPECT_EQ(target.setIndexRange(range("0"), numbers(1)), OpcUa_Good);
}

TEST(UaVariantIndexRange, many_dimensions_cost_no_more_than_the_elements)
{
    // 100,000 dimensions of one index each around 20 of two: a million elements.
    constexpr int flatCount = 100000;
    std::vector<OpcUa_Int32> dimensions(flatCount, 1);
    UaNumericRange all;
    for (int i = 0; i < flatCount; ++i) {
        ASSERT_EQ(all.append({0, 0, UaNumericRangeEntry::Single}), OpcUa_Good);
    }
    for (int i = 0; i < 20; ++i) {
        dimensions.push_back(2);
        ASSERT_EQ(all.append({0, 1, UaNumericRangeEntry::Range}), OpcUa_Good);
    }
    dimensions.insert(dimensions.end(), flatCount, 1);
    for (int i = 0; i < flatCount; ++i) {
        ASSERT_EQ(all.append({0, 0, UaNumericRangeEntry::Single}), OpcUa_Good);
    }
    UaVariant source = matrix(numbers(1 << 20), dimensions);
    const auto start = std::chrono::steady_clock::now();
    UaVariant target;
    ASSERT_EQ(source.getIndexRange(all, target), OpcUa_Good);
    EXPECT_EQ(target, source);
    EXPECT_EQ(source.setIndexRange(all, target), OpcUa_Good);
    EXPECT_EQ(target, source);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST(UaVariantIndexRange, every_other_column_is_read_and_written)
{
    std::vector<OpcUa_Int32> dimensions(10, 3);
    UaVariant source = matrix(numbers(59049), dimensions);
    const UaNumericRange ends = range("0:1,1:2,0:1,1:2,0:1,1:2,0:1,1:2,0:1,1:2");
    UaVariant block;
    ASSERT_EQ(source.getIndexRange(ends, block), OpcUa_Good);
    EXPECT_EQ(block.arraySize(), 1024);
    const UaVariant before(source);
    ASSERT_EQ(source.setIndexRange(ends, block), OpcUa_Good);
    EXPECT_EQ(source, before);
}

TEST(UaVariantIndexRange, every_failed_allocation_of_a_read_is_told)
{
    struct Row
    {
        UaVariant source;
        const char* range;
    };
    const std::vector<Row> rows = {{text("abc"), "1"},
                                   {bytes("abc"), "1"},
                                   {numbers(5), "1:2"},
                                   {strings({"abc", "def"}), "0:1"},
                                   {strings({"abc", "def"}), "0:1,1"},
                                   {matrix(numbers(4), {2, 2}), "0:1,1"},
                                   {matrix(strings({"abc", "def"}), {2, 1}), "0:1,0,1"}};
    for (const Row& row : rows) {
        const UaNumericRange selected = range(row.range);
        UaVariant target;
        const std::size_t failures =
            forEveryFailingAllocation([&] { return row.source.getIndexRange(selected, target); },
                                      [&](OpcUa_StatusCode status) {
                                          EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                          EXPECT_TRUE(target.isEmpty());
                                      });
        EXPECT_GT(failures, 0u) << row.range;
        EXPECT_FALSE(target.isEmpty());
    }
}

TEST(UaVariantIndexRange, every_failed_allocation_of_a_write_leaves_the_variant)
{
    struct Row
    {
        UaVariant source;
        const char* range;
        UaVariant value;
    };
    const std::vector<Row> rows = {
        {text("abc"), "1", text("X")},
        {bytes("abc"), "1", bytes("X")},
        {strings({"abc", "def"}), "0:1", strings({"X", "Y"})},
        {strings({"abc", "def"}), "0:1,1", strings({"X", "Y"})},
        {matrix(strings({"abc", "def"}), {2, 1}), "0:1,0,1", matrix(strings({"X", "Y"}), {2, 1})}};
    for (const Row& row : rows) {
        const UaNumericRange selected = range(row.range);
        UaVariant variant(row.source);
        const std::size_t failures =
            forEveryFailingAllocation([&] { return variant.setIndexRange(selected, row.value); },
                                      [&](OpcUa_StatusCode status) {
                                          EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                                          EXPECT_EQ(variant, row.source);
                                      });
        EXPECT_GT(failures, 0u) << row.range;
        EXPECT_NE(variant, row.source);
    }
}

} // namespace
