#include "platform/status.h"
#include "stack/opcua_guid.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <set>
#include <string>

namespace {

constexpr OpcUa_Guid sample = {
    0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};
constexpr const char* sampleText = "{6b29fc40-ca47-1067-b31d-00dd010662da}";

TEST(Guid, null_instance_is_all_zero)
{
    const std::array<unsigned char, sizeof(OpcUa_Guid)> zero{};
    EXPECT_EQ(std::memcmp(&OpcUa_Guid_Null, zero.data(), zero.size()), 0);
}

TEST(Guid, is_null)
{
    EXPECT_TRUE(OpcUa_Guid_IsNull(nullptr));
    EXPECT_TRUE(OpcUa_Guid_IsNull(&OpcUa_Guid_Null));
    EXPECT_FALSE(OpcUa_Guid_IsNull(&sample));
    for (std::size_t i = 0; i < sizeof(OpcUa_Guid); ++i) {
        OpcUa_Guid guid{};
        std::memset(reinterpret_cast<char*>(&guid) + i, 1, 1);
        EXPECT_FALSE(OpcUa_Guid_IsNull(&guid)) << "byte " << i;
    }
}

TEST(Guid, is_equal)
{
    const OpcUa_Guid same = sample;
    const OpcUa_Guid zero{};
    EXPECT_TRUE(OpcUa_Guid_IsEqual(nullptr, nullptr));
    EXPECT_FALSE(OpcUa_Guid_IsEqual(nullptr, &zero));
    EXPECT_FALSE(OpcUa_Guid_IsEqual(&zero, nullptr));
    EXPECT_TRUE(OpcUa_Guid_IsEqual(&zero, &OpcUa_Guid_Null));
    EXPECT_TRUE(OpcUa_Guid_IsEqual(&sample, &same));
    EXPECT_FALSE(OpcUa_Guid_IsEqual(&sample, &zero));
}

TEST(Guid, compare_goes_by_the_bytes_in_memory)
{
    std::array<unsigned char, 16> lowBytes{};
    std::array<unsigned char, 16> highBytes{};
    lowBytes[0] = 1;
    lowBytes[15] = 255;
    highBytes[0] = 2;
    OpcUa_Guid low{};
    OpcUa_Guid high{};
    std::memcpy(&low, lowBytes.data(), 16);
    std::memcpy(&high, highBytes.data(), 16);
    EXPECT_EQ(OpcUa_Guid_Compare(&low, &high), -1);
    EXPECT_EQ(OpcUa_Guid_Compare(&high, &low), 1);
}

TEST(Guid, prints_in_lower_case)
{
    std::array<char, OpcUa_Guid_TextSize> buffer{};
    EXPECT_EQ(OpcUa_Guid_ToString(&sample, buffer.data(), buffer.size()), OpcUa_Good);
    EXPECT_STREQ(buffer.data(), sampleText);
    EXPECT_EQ(std::strlen(buffer.data()), 38u);
    EXPECT_EQ(OpcUa_Guid_ToString(&OpcUa_Guid_Null, buffer.data(), buffer.size()), OpcUa_Good);
    EXPECT_STREQ(buffer.data(), "{00000000-0000-0000-0000-000000000000}");
}

TEST(Guid, print_refuses_null_pointers_and_small_buffers)
{
    std::string buffer(50, '#');
    EXPECT_EQ(OpcUa_Guid_ToString(&sample, nullptr, 50), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_Guid_ToString(&sample, buffer.data(), 0), OpcUa_BadInvalidArgument);
    EXPECT_EQ(buffer[0], '#');
    EXPECT_EQ(OpcUa_Guid_ToString(&sample, buffer.data(), 38), OpcUa_BadInvalidArgument);
    EXPECT_STREQ(buffer.c_str(), "");
    buffer.assign(50, '#');
    EXPECT_EQ(OpcUa_Guid_ToString(nullptr, buffer.data(), 50), OpcUa_BadInvalidArgument);
    EXPECT_STREQ(buffer.c_str(), "");
    buffer.assign(50, '#');
    EXPECT_EQ(OpcUa_Guid_ToString(&sample, buffer.data(), 39), OpcUa_Good);
    EXPECT_EQ(buffer[39], '#');
}

TEST(Guid, reads_each_accepted_form)
{
    for (const char* text :
         {"{6B29FC40-CA47-1067-B31D-00DD010662DA}", "6B29FC40-CA47-1067-B31D-00DD010662DA",
          "{6b29fc40-ca47-1067-b31d-00dd010662da}", "{6B29FC40-CA47-1067-B31D-00DD010662DA",
          "6B29FC40-CA47-1067-B31D-00DD010662DA}", "6B29FC40-CA47-1067-B31D-00DD010662DA and more",
          "  6B29FC40-CA47-1067-B31D-00DD010662DA"}) {
        SCOPED_TRACE(text);
        OpcUa_Guid guid{};
        EXPECT_EQ(OpcUa_Guid_FromString(text, &guid), OpcUa_Good);
        EXPECT_TRUE(OpcUa_Guid_IsEqual(&guid, &sample));
    }
}

TEST(Guid, reads_short_fields_as_a_scanner_does)
{
    OpcUa_Guid guid{};
    EXPECT_EQ(OpcUa_Guid_FromString("1-2-3-0405-060708090a0b", &guid), OpcUa_Good);
    const OpcUa_Guid expected = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    EXPECT_TRUE(OpcUa_Guid_IsEqual(&guid, &expected));
}

TEST(Guid, read_refuses_and_leaves_the_null_guid)
{
    for (const char* text :
         {"", "{", "{}", "hello", "6B29FC40", "6B29FC40-", "6B29FC40-CA47-1067-B31D",
          "6B29FC40-CA47-1067-B31D-00DD010662", "6B29FC40-CA47-1067-B31D-00DD010662xx",
          "6B29FC40CA471067B31D00DD010662DA", "6B29FC401-CA47-1067-B31D-00DD010662DA",
          "{{6B29FC40-CA47-1067-B31D-00DD010662DA}", "(6B29FC40-CA47-1067-B31D-00DD010662DA)",
          "6B29FC40:CA47:1067:B31D:00DD010662DA", "G6B29FC4-CA47-1067-B31D-00DD010662DA"}) {
        SCOPED_TRACE(text);
        OpcUa_Guid guid = sample;
        EXPECT_EQ(OpcUa_Guid_FromString(text, &guid), OpcUa_BadInvalidArgument);
        EXPECT_TRUE(OpcUa_Guid_IsNull(&guid));
    }
}

TEST(Guid, read_refuses_null_pointers)
{
    OpcUa_Guid guid = sample;
    EXPECT_EQ(OpcUa_Guid_FromString(nullptr, &guid), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(OpcUa_Guid_IsNull(&guid));
    EXPECT_EQ(OpcUa_Guid_FromString(sampleText, nullptr), OpcUa_BadInvalidArgument);
}

TEST(Guid, create_makes_random_guids_of_version_4)
{
    std::set<std::string> seen;
    for (int round = 0; round < 1000; ++round) {
        OpcUa_Guid guid{};
        ASSERT_EQ(OpcUa_Guid_Create(&guid), OpcUa_Good);
        EXPECT_EQ(guid.Data3 >> 12, 4);
        EXPECT_EQ(guid.Data4[0] >> 6, 2);
        std::array<char, OpcUa_Guid_TextSize> text{};
        ASSERT_EQ(OpcUa_Guid_ToString(&guid, text.data(), text.size()), OpcUa_Good);
        EXPECT_TRUE(seen.insert(text.data()).second);
    }
    EXPECT_EQ(OpcUa_Guid_Create(nullptr), OpcUa_BadInvalidArgument);
}

} // namespace
