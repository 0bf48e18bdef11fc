#include "platform/status.h"
#include "stack/opcua_string.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

/// A string that clears itself.
class OwnedString
{
public:
    OwnedString() { OpcUa_String_Initialize(&m_string); }
    explicit OwnedString(const char* text)
        : OwnedString()
    {
        EXPECT_EQ(OpcUa_String_AttachCopy(&m_string, text), OpcUa_Good);
    }
    ~OwnedString() { OpcUa_String_Clear(&m_string); }
    OwnedString(const OwnedString&) = delete;
    OwnedString& operator=(const OwnedString&) = delete;

    [[nodiscard]] OpcUa_String* get() { return &m_string; }
    [[nodiscard]] const OpcUa_String* get() const { return &m_string; }

private:
    OpcUa_String m_string{};
};

const OpcUa_String* plain(const char* text)
{
    return OpcUa_String_FromPlainText(text);
}

TEST(String, initialised_string_is_null)
{
    OpcUa_String string{0xFFFFFFFF, 77, nullptr};
    OpcUa_String_Initialize(&string);
    EXPECT_EQ(string.flags, 0u);
    EXPECT_EQ(string.uLength, 0u);
    EXPECT_EQ(string.strContent, nullptr);
    EXPECT_TRUE(OpcUa_String_IsNull(&string));
    EXPECT_FALSE(OpcUa_String_IsEmpty(&string));
}

TEST(String, first_byte_of_an_owned_string_is_zero)
{
    const OwnedString string("text");
    EXPECT_EQ(string.get()->flags, 0x100u);
    EXPECT_EQ(*reinterpret_cast<const unsigned char*>(string.get()), 0);
}

TEST(String, clear_leaves_a_plain_text_alone)
{
    std::array<char, 6> text = {'h', 'e', 'l', 'l', 'o', '\0'};
    OpcUa_String_Clear(reinterpret_cast<OpcUa_String*>(text.data()));
    EXPECT_STREQ(text.data(), "hello");
}

TEST(String, states_of_null_empty_and_filled)
{
    const OwnedString null;
    const OwnedString empty("");
    const OwnedString filled("abc");
    struct Row
    {
        const char* name;
        const OpcUa_String* string;
        bool isNull;
        bool isEmpty;
        OpcUa_UInt32 size;
        const char* raw;
    };
    const std::array<Row, 5> rows = {{{"null pointer", nullptr, true, false, 0, nullptr},
                                      {"null content", null.get(), true, false, 0, nullptr},
                                      {"empty", empty.get(), false, true, 0, ""},
                                      {"filled", filled.get(), false, false, 3, "abc"},
                                      {"plain", plain("hello"), false, false, 5, "hello"}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OpcUa_String_IsNull(row.string), row.isNull);
        EXPECT_EQ(OpcUa_String_IsEmpty(row.string), row.isEmpty);
        EXPECT_EQ(OpcUa_String_StrSize(row.string), row.size);
        EXPECT_STREQ(OpcUa_String_GetRawString(row.string), row.raw);
    }
}

TEST(String, raw_string_of_a_plain_text_is_the_pointer_itself)
{
    const char* text = "hello";
    EXPECT_EQ(OpcUa_String_GetRawString(plain(text)), text);
}

TEST(String, a_null_content_has_no_size_whatever_its_length_says)
{
    const OpcUa_String string{0, 77, nullptr};
    EXPECT_EQ(OpcUa_String_StrSize(&string), 0u);
    EXPECT_EQ(OpcUa_String_StrLen(&string), 0u);
}

TEST(String, plain_text_may_start_at_any_address)
{
    const std::string text = "0123456789";
    for (std::size_t offset = 0; offset < text.size(); ++offset) {
        const OpcUa_String* string = plain(text.c_str() + offset);
        EXPECT_FALSE(OpcUa_String_IsNull(string));
        EXPECT_FALSE(OpcUa_String_IsEmpty(string));
        EXPECT_EQ(OpcUa_String_StrSize(string), text.size() - offset);
        EXPECT_EQ(OpcUa_String_StrLen(string), text.size() - offset);
        OwnedString copy;
        EXPECT_EQ(OpcUa_String_CopyTo(string, copy.get()), OpcUa_Good);
        EXPECT_EQ(OpcUa_String_Compare(string, copy.get()), 0);
    }
}

TEST(String, characters_are_counted_by_their_lead_bytes)
{
    struct Row
    {
        const char* name;
        std::string text;
        OpcUa_UInt32 expected;
    };
    const std::array<Row, 17> rows = {{
        {"nothing", "", 0},
        {"ascii", "abc", 3},
        {"embedded NUL", std::string("a\0b", 3), 3},
        {"two bytes", "\xC3\xA4x", 2},
        {"three bytes", "\xE2\x82\xACx", 2},
        {"four bytes", "\xF0\x9F\x98\x80x", 2},
        {"five bytes", "\xF8\x88\x80\x80\x80x", 2},
        {"six bytes", "\xFC\x84\x80\x80\x80\x80x", 2},
        {"lone continuation byte counts alone", "\x80\xBF", 2},
        {"bytes that lead nothing count alone", "\xFE\xFF", 2},
        {"largest lead of two", "\xDF\x80", 1},
        {"largest lead of six", "\xFD\x80\x80\x80\x80\x80", 1},
        {"followers aren't looked at", "\xC3zx", 2},
        {"cut after the lead of two", "x\xC3", 2},
        {"cut inside three", "x\xE2\x82", 2},
        {"cut after the lead of six", "\xFC", 1},
        {"mixed", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", 3},
    }};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        // A copy of exactly this size lets a sanitizer see a read behind the end.
        const auto exact = std::make_unique<char[]>(row.text.size() + 1);
        row.text.copy(exact.get(), row.text.size());
        OpcUa_String string{};
        EXPECT_EQ(OpcUa_String_AttachToString(exact.get(),
                                              static_cast<OpcUa_UInt32>(row.text.size()), 0, false,
                                              false, &string),
                  OpcUa_Good);
        EXPECT_EQ(OpcUa_String_StrLen(&string), row.expected);
    }
    EXPECT_EQ(OpcUa_String_StrLen(nullptr), 0u);
    EXPECT_EQ(OpcUa_String_StrLen(plain("\xC3\xA4x")), 2u);
    EXPECT_EQ(OpcUa_String_StrLen(plain("x\xFC")), 2u);
}

TEST(String, copy_owns_its_text_and_closes_it)
{
    OpcUa_String source{};
    ASSERT_EQ(OpcUa_String_AttachToString("abcdef", 3, 0, false, false, &source), OpcUa_Good);
    OwnedString copy("old");
    EXPECT_EQ(OpcUa_String_CopyTo(&source, copy.get()), OpcUa_Good);
    EXPECT_STREQ(copy.get()->strContent, "abc");
    EXPECT_EQ(copy.get()->uLength, 3u);
    EXPECT_EQ(copy.get()->flags, OpcUa_String_OwnsContent);
}

TEST(String, copy_keeps_embedded_nuls)
{
    OpcUa_String source{};
    ASSERT_EQ(OpcUa_String_AttachToString("a\0b", 3, 0, false, false, &source), OpcUa_Good);
    OwnedString copy;
    EXPECT_EQ(OpcUa_String_CopyTo(&source, copy.get()), OpcUa_Good);
    EXPECT_EQ(std::string(copy.get()->strContent, copy.get()->uLength), std::string("a\0b", 3));
}

TEST(String, copy_of_a_plain_text_works)
{
    OwnedString copy;
    EXPECT_EQ(OpcUa_String_CopyTo(plain("hello"), copy.get()), OpcUa_Good);
    EXPECT_STREQ(copy.get()->strContent, "hello");
}

TEST(String, copy_of_an_empty_string_is_empty_and_not_null)
{
    const OwnedString source("");
    OwnedString copy;
    EXPECT_EQ(OpcUa_String_CopyTo(source.get(), copy.get()), OpcUa_Good);
    EXPECT_TRUE(OpcUa_String_IsEmpty(copy.get()));
}

TEST(String, plain_text_is_no_destination)
{
    std::array<char, 6> text = {'h', 'e', 'l', 'l', 'o', '\0'};
    auto* destination = reinterpret_cast<OpcUa_String*>(text.data());
    const OwnedString source("other");
    EXPECT_EQ(OpcUa_String_CopyTo(source.get(), destination), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_StrnCpy(destination, source.get(), 3), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_AttachCopy(destination, "other"), OpcUa_BadInvalidArgument);
    EXPECT_STREQ(text.data(), "hello");
}

TEST(String, strncpy_copies_at_most_the_maximum)
{
    struct Row
    {
        const char* source;
        OpcUa_UInt32 maximum;
        const char* expected;
    };
    const std::array<Row, 6> rows = {{{"hello", 0, ""},
                                      {"hello", 1, "h"},
                                      {"hello", 5, "hello"},
                                      {"hello", 6, "hello"},
                                      {"hello", OpcUa_String_WholeLength, "hello"},
                                      {"\xE2\x82\xAC", 2, "\xE2\x82"}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.maximum);
        OwnedString destination("old");
        EXPECT_EQ(OpcUa_String_StrnCpy(destination.get(), plain(row.source), row.maximum),
                  OpcUa_Good);
        EXPECT_STREQ(destination.get()->strContent, row.expected);
        const OwnedString source(row.source);
        EXPECT_EQ(OpcUa_String_StrnCpy(destination.get(), source.get(), row.maximum), OpcUa_Good);
        EXPECT_STREQ(destination.get()->strContent, row.expected);
    }
}

TEST(String, strncpy_of_null_leaves_the_destination_null)
{
    const OwnedString null;
    for (const OpcUa_String* source : {static_cast<const OpcUa_String*>(nullptr), null.get()}) {
        OwnedString destination("old");
        EXPECT_EQ(OpcUa_String_StrnCpy(destination.get(), source, 10), OpcUa_Good);
        EXPECT_TRUE(OpcUa_String_IsNull(destination.get()));
    }
}

TEST(String, strncpy_refuses_a_null_destination)
{
    EXPECT_EQ(OpcUa_String_StrnCpy(nullptr, plain("hello"), 3), OpcUa_BadInvalidArgument);
}

TEST(String, strncpy_shortens_a_string_in_place)
{
    OwnedString string("hello");
    EXPECT_EQ(OpcUa_String_StrnCpy(string.get(), string.get(), 2), OpcUa_Good);
    EXPECT_STREQ(string.get()->strContent, "he");
}

TEST(String, strncpy_without_memory_clears_the_destination)
{
    OwnedString destination("old");
    const AllocationFaults faults(0);
    EXPECT_EQ(OpcUa_String_StrnCpy(destination.get(), plain("hello"), 3), OpcUa_BadOutOfMemory);
    EXPECT_TRUE(OpcUa_String_IsNull(destination.get()));
}

} // namespace
