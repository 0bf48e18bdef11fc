#include "base/uabytearray.h"
#include "base/uastring.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

/// The units of an array, its closing one included.
std::u16string unitsOf(const UaByteArray& array)
{
    std::u16string units(static_cast<std::size_t>(array.size()) / sizeof(char16_t), u'#');
    if (!array.isEmpty()) {
        std::memcpy(units.data(), array.data(), static_cast<std::size_t>(array.size()));
    }
    return units;
}

TEST(StringUtf16, null_gives_an_empty_array_and_comes_from_a_null_pointer)
{
    EXPECT_TRUE(UaString().toUtf16().isEmpty());
    UaString text = "held";
    text.setUtf16(nullptr);
    EXPECT_TRUE(text.isNull());
    text = "held";
    text.setUtf16(nullptr, 5);
    EXPECT_TRUE(text.isNull());
}

TEST(StringUtf16, array_is_closed_by_a_unit)
{
    EXPECT_EQ(unitsOf(UaString("").toUtf16()), std::u16string(1, u'\0'));
    EXPECT_EQ(unitsOf(UaString("a\xE2\x82\xAC").toUtf16()), std::u16string(u"a\u20AC\0", 3));
    EXPECT_EQ(UaString("a\xE2\x82\xAC").toUtf16().size(), 6);
}

TEST(StringUtf16, characters_of_four_bytes_form_no_surrogates)
{
    EXPECT_EQ(unitsOf(UaString("\xF0\x9F\x98\x80").toUtf16()), std::u16string(u"\uFFFD\0", 2));
}

TEST(StringUtf16, surrogates_pass_as_separate_sequences)
{
    EXPECT_STREQ(UaString(u"\U0001F600").toUtf8(), "\xED\xA0\xBD\xED\xB8\x80");
}

TEST(StringUtf16, units_with_a_length_keep_zeros)
{
    UaString text;
    text.setUtf16(u"a\0b", 3);
    EXPECT_EQ(text.view(), std::string_view("a\0b", 3));
    EXPECT_EQ(unitsOf(text.toUtf16()), std::u16string(u"a\0b\0", 4));
    text.setUtf16(u"abc", 0);
    EXPECT_FALSE(text.isNull());
    EXPECT_TRUE(text.isEmpty());
}

TEST(StringUtf16, array_is_read_back_by_its_pointer)
{
    const UaString text = "\xC3\xA9t\xC3\xA9";
    const UaByteArray array = text.toUtf16();
    EXPECT_EQ(UaString(reinterpret_cast<const char16_t*>(array.data())), text);
}

TEST(StringUtf16, setting_leaves_the_copies)
{
    UaString text = "before";
    const UaString copy = text;
    text.setUtf16(u"after");
    EXPECT_STREQ(text.toUtf8(), "after");
    EXPECT_STREQ(copy.toUtf8(), "before");
}

TEST(StringUtf16, every_failing_allocation_gives_nothing)
{
    const UaString text = "abc";
    EXPECT_EQ(
        forEveryFailingAllocation([&] { return text.toUtf16(); },
                                  [](const UaByteArray& array) { EXPECT_TRUE(array.isEmpty()); }),
        2u);
}

} // namespace
