#include "base/uabytearray.h"
#include "base/uastring.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace {

/// Sets the locale's character set for one test.
class Locale
{
public:
    explicit Locale(const char* name)
        : m_before(std::setlocale(LC_CTYPE, nullptr))
        , m_isSet(std::setlocale(LC_CTYPE, name) != nullptr)
    {
    }
    ~Locale() { std::setlocale(LC_CTYPE, m_before.c_str()); }
    Locale(const Locale&) = delete;
    Locale& operator=(const Locale&) = delete;

    [[nodiscard]] bool isSet() const { return m_isSet; }

private:
    std::string m_before;
    bool m_isSet;
};

const char* textOf(const UaByteArray& array)
{
    return reinterpret_cast<const char*>(array.data());
}

TEST(StringLocal8Bit, null_gives_nothing)
{
    EXPECT_TRUE(UaString().toLocal8Bit().isEmpty());
    EXPECT_TRUE(UaString::fromLocal8Bit(nullptr).isNull());
}

TEST(StringLocal8Bit, empty_stays_empty)
{
    EXPECT_EQ(UaString("").toLocal8Bit().size(), 1);
    const UaString empty = UaString::fromLocal8Bit("");
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_FALSE(empty.isNull());
}

TEST(StringLocal8Bit, ascii_survives_in_the_plainest_locale)
{
    const Locale locale("C");
    ASSERT_TRUE(locale.isSet());
    const UaByteArray bytes = UaString("plain text").toLocal8Bit();
    EXPECT_EQ(bytes.size(), 11);
    EXPECT_STREQ(textOf(bytes), "plain text");
    EXPECT_STREQ(UaString::fromLocal8Bit("plain text").toUtf8(), "plain text");
}

TEST(StringLocal8Bit, what_the_locale_lacks_becomes_a_question_mark)
{
    const Locale locale("C");
    ASSERT_TRUE(locale.isSet());
    EXPECT_STREQ(textOf(UaString("a\xE2\x82\xAC\xF0\x9F\x98\x80z").toLocal8Bit()), "a??z");
    EXPECT_STREQ(textOf(UaString("a\x80z\xE2").toLocal8Bit()), "a?z?");
}

TEST(StringLocal8Bit, all_characters_survive_in_a_locale_of_utf8)
{
    const Locale locale("C.UTF-8");
    if (!locale.isSet()) {
        GTEST_SKIP() << "no locale of UTF-8 here";
    }
    const char* text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";
    EXPECT_STREQ(textOf(UaString(text).toLocal8Bit()), text);
    EXPECT_STREQ(UaString::fromLocal8Bit(text).toUtf8(), text);
}

TEST(StringLocal8Bit, bad_bytes_of_the_locale_are_replaced_one_by_one)
{
    const Locale locale("C.UTF-8");
    if (!locale.isSet()) {
        GTEST_SKIP() << "no locale of UTF-8 here";
    }
    EXPECT_STREQ(UaString::fromLocal8Bit("a\x80z").toUtf8(), "a\xEF\xBF\xBDz");
    EXPECT_STREQ(UaString::fromLocal8Bit("a\xE2\x82").toUtf8(), "a\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(StringLocal8Bit, embedded_nul_is_kept)
{
    const UaByteArray bytes = UaString("a\0b", 3).toLocal8Bit();
    ASSERT_EQ(bytes.size(), 4);
    EXPECT_EQ(std::string_view(textOf(bytes), 4), std::string_view("a\0b\0", 4));
}

TEST(StringLocal8Bit, every_failing_allocation_gives_nothing)
{
    const UaString text = "abc";
    EXPECT_EQ(
        forEveryFailingAllocation([&] { return text.toLocal8Bit(); },
                                  [](const UaByteArray& array) { EXPECT_TRUE(array.isEmpty()); }),
        2u);
}

} // namespace
