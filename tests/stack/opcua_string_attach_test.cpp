#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_string.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

char* allocateText(const char* text)
{
    const std::size_t size = std::strlen(text) + 1;
    auto* copy = static_cast<char*>(OpcUa_Memory_Alloc(size));
    std::memcpy(copy, text, size);
    return copy;
}

TEST(StringAttach, read_only_points_at_the_text_and_owns_nothing)
{
    const char* text = "hello";
    OpcUa_String string{};
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&string, text), OpcUa_Good);
    EXPECT_EQ(string.strContent, text);
    EXPECT_EQ(string.uLength, 5u);
    EXPECT_EQ(string.flags, 0u);
    OpcUa_String_Clear(&string);
    EXPECT_TRUE(OpcUa_String_IsNull(&string));
}

TEST(StringAttach, copy_owns_a_text_of_its_own)
{
    char text[] = "hello";
    OpcUa_String string{};
    EXPECT_EQ(OpcUa_String_AttachCopy(&string, text), OpcUa_Good);
    text[0] = 'j';
    EXPECT_STREQ(string.strContent, "hello");
    EXPECT_EQ(string.flags, OpcUa_String_OwnsContent);
    OpcUa_String_Clear(&string);
}

TEST(StringAttach, ownership_takes_the_text_over)
{
    char* text = allocateText("hello");
    OpcUa_String string{};
    EXPECT_EQ(OpcUa_String_AttachWithOwnership(&string, text), OpcUa_Good);
    EXPECT_EQ(string.strContent, text);
    EXPECT_EQ(string.flags, OpcUa_String_OwnsContent);
    OpcUa_String_Clear(&string);
    OpcUa_String_Clear(&string);
}

TEST(StringAttach, each_form_clears_what_the_string_held)
{
    OpcUa_String string{};
    ASSERT_EQ(OpcUa_String_AttachCopy(&string, "first"), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_AttachCopy(&string, "second"), OpcUa_Good);
    EXPECT_STREQ(string.strContent, "second");
    EXPECT_EQ(OpcUa_String_AttachWithOwnership(&string, allocateText("third")), OpcUa_Good);
    EXPECT_STREQ(string.strContent, "third");
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&string, "fourth"), OpcUa_Good);
    EXPECT_STREQ(string.strContent, "fourth");
    OpcUa_String_Clear(&string);
}

TEST(StringAttach, copy_may_come_from_the_string_itself)
{
    OpcUa_String string{};
    ASSERT_EQ(OpcUa_String_AttachCopy(&string, "hello"), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_AttachCopy(&string, string.strContent + 2), OpcUa_Good);
    EXPECT_STREQ(string.strContent, "llo");
    OpcUa_String_Clear(&string);
}

TEST(StringAttach, null_text_is_refused_and_clears_the_string)
{
    OpcUa_String string{};
    ASSERT_EQ(OpcUa_String_AttachCopy(&string, "held"), OpcUa_Good);
    EXPECT_EQ(OpcUa_String_AttachCopy(&string, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(OpcUa_String_IsNull(&string));
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&string, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_AttachWithOwnership(&string, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_AttachToString(nullptr, 5, 0, true, true, &string),
              OpcUa_BadInvalidArgument);
}

TEST(StringAttach, null_string_is_refused)
{
    EXPECT_EQ(OpcUa_String_AttachCopy(nullptr, "text"), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_AttachReadOnly(nullptr, "text"), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_String_AttachWithOwnership(nullptr, nullptr), OpcUa_BadInvalidArgument);
}

TEST(StringAttach, length_picks_the_bytes)
{
    OpcUa_String string{};
    EXPECT_EQ(OpcUa_String_AttachToString("hello", 2, 100, true, true, &string), OpcUa_Good);
    EXPECT_STREQ(string.strContent, "he");
    EXPECT_EQ(string.uLength, 2u);
    EXPECT_EQ(OpcUa_String_AttachToString("hello", 0, 0, true, true, &string), OpcUa_Good);
    EXPECT_TRUE(OpcUa_String_IsEmpty(&string));
    EXPECT_EQ(OpcUa_String_AttachToString("a\0b", 3, 0, true, true, &string), OpcUa_Good);
    EXPECT_EQ(std::memcmp(string.strContent, "a\0b", 4), 0);
    const OpcUa_Int32 measure = -1;
    EXPECT_EQ(OpcUa_String_AttachToString("hello", static_cast<OpcUa_UInt32>(measure), 0, true,
                                          true, &string),
              OpcUa_Good);
    EXPECT_EQ(string.uLength, 5u);
    OpcUa_String_Clear(&string);
}

TEST(StringAttach, copy_without_ownership_leaves_the_text_to_the_caller)
{
    OpcUa_String string{};
    ASSERT_EQ(
        OpcUa_String_AttachToString("hello", OpcUa_String_WholeLength, 0, true, false, &string),
        OpcUa_Good);
    char* text = string.strContent;
    OpcUa_String_Clear(&string);
    EXPECT_STREQ(text, "hello");
    OpcUa_Memory_Free(text);
}

TEST(StringAttach, copy_without_memory_clears_the_string)
{
    OpcUa_String string{};
    ASSERT_EQ(OpcUa_String_AttachCopy(&string, "held"), OpcUa_Good);
    const AllocationFaults faults(0);
    EXPECT_EQ(OpcUa_String_AttachCopy(&string, "hello"), OpcUa_BadOutOfMemory);
    EXPECT_TRUE(OpcUa_String_IsNull(&string));
}

TEST(StringCreate, copied_text_lies_in_the_block_of_the_record)
{
    static std::size_t askedFor = 0;
    OpcUa_Memory_SetFaultHook([](std::size_t size) {
        askedFor = size;
        return false;
    });
    OpcUa_String* string = nullptr;
    EXPECT_EQ(OpcUa_String_CreateNewString("hello", 3, 0, true, true, &string), OpcUa_Good);
    OpcUa_Memory_SetFaultHook(nullptr);
    ASSERT_NE(string, nullptr);
    EXPECT_EQ(askedFor, sizeof(OpcUa_String) + 3 + 1);
    EXPECT_EQ(string->strContent, reinterpret_cast<char*>(string) + sizeof(OpcUa_String));
    EXPECT_STREQ(string->strContent, "hel");
    EXPECT_EQ(string->uLength, 3u);
    EXPECT_EQ(string->flags, 0u);
    OpcUa_String_Delete(&string);
    EXPECT_EQ(string, nullptr);
}

TEST(StringCreate, text_may_be_replaced_afterwards)
{
    OpcUa_String* string = nullptr;
    ASSERT_EQ(
        OpcUa_String_CreateNewString("hello", OpcUa_String_WholeLength, 0, true, true, &string),
        OpcUa_Good);
    EXPECT_STREQ(string->strContent, "hello");
    EXPECT_EQ(OpcUa_String_AttachCopy(string, string->strContent + 1), OpcUa_Good);
    EXPECT_STREQ(string->strContent, "ello");
    OpcUa_String_Delete(&string);
}

TEST(StringCreate, without_copying_it_attaches)
{
    const char* text = "hello";
    OpcUa_String* readOnly = nullptr;
    EXPECT_EQ(
        OpcUa_String_CreateNewString(text, OpcUa_String_WholeLength, 0, false, false, &readOnly),
        OpcUa_Good);
    EXPECT_EQ(readOnly->strContent, text);
    EXPECT_EQ(readOnly->flags, 0u);
    OpcUa_String_Delete(&readOnly);

    OpcUa_String* owner = nullptr;
    EXPECT_EQ(OpcUa_String_CreateNewString(allocateText("hello"), OpcUa_String_WholeLength, 0,
                                           false, true, &owner),
              OpcUa_Good);
    EXPECT_EQ(owner->flags, OpcUa_String_OwnsContent);
    EXPECT_EQ(owner->uLength, 5u);
    OpcUa_String_Delete(&owner);
}

TEST(StringCreate, null_text_makes_a_null_string)
{
    for (const bool copyText : {true, false}) {
        OpcUa_String* string = nullptr;
        EXPECT_EQ(OpcUa_String_CreateNewString(nullptr, OpcUa_String_WholeLength, 0, copyText, true,
                                               &string),
                  OpcUa_Good);
        EXPECT_NE(string, nullptr);
        EXPECT_TRUE(OpcUa_String_IsNull(string));
        OpcUa_String_Delete(&string);
    }
}

TEST(StringCreate, null_out_pointer_is_refused)
{
    EXPECT_EQ(OpcUa_String_CreateNewString("hello", 3, 0, true, true, nullptr),
              OpcUa_BadInvalidArgument);
}

TEST(StringCreate, without_memory_there_is_no_string)
{
    for (const bool copyText : {true, false}) {
        const AllocationFaults faults(0);
        OpcUa_String unused{};
        OpcUa_String* string = &unused;
        EXPECT_EQ(OpcUa_String_CreateNewString("hello", 3, 0, copyText, false, &string),
                  OpcUa_BadOutOfMemory);
        EXPECT_EQ(string, nullptr);
    }
}

TEST(StringCreate, delete_ignores_null)
{
    OpcUa_String_Delete(nullptr);
    OpcUa_String* string = nullptr;
    OpcUa_String_Delete(&string);
    EXPECT_EQ(string, nullptr);
}

} // namespace
