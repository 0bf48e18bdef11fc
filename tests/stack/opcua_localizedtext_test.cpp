#include "platform/status.h"
#include "stack/opcua_localizedtext.h"

#include <gtest/gtest.h>

#include <array>

namespace {

OpcUa_LocalizedText makeText(const char* locale, const char* text)
{
    OpcUa_LocalizedText record;
    OpcUa_LocalizedText_Initialize(&record);
    if (locale != nullptr) {
        EXPECT_EQ(OpcUa_String_AttachReadOnly(&record.Locale, locale), OpcUa_Good);
    }
    if (text != nullptr) {
        EXPECT_EQ(OpcUa_String_AttachReadOnly(&record.Text, text), OpcUa_Good);
    }
    return record;
}

TEST(LocalizedText, initialised_one_has_two_null_strings)
{
    const OpcUa_LocalizedText text = makeText(nullptr, nullptr);
    EXPECT_TRUE(OpcUa_String_IsNull(&text.Locale));
    EXPECT_TRUE(OpcUa_String_IsNull(&text.Text));
}

TEST(LocalizedText, locale_orders_before_text)
{
    const std::array<OpcUa_LocalizedText, 6> ordered = {
        makeText(nullptr, nullptr), makeText(nullptr, ""), makeText(nullptr, "z"),
        makeText("de", "z"),        makeText("en", "a"),   makeText("en", "b")};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            SCOPED_TRACE(testing::Message() << i << " against " << j);
            const OpcUa_Int32 order = OpcUa_LocalizedText_Compare(&ordered[i], &ordered[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
}

TEST(LocalizedText, copy_keeps_null_and_empty_apart)
{
    const OpcUa_LocalizedText source = makeText(nullptr, "");
    OpcUa_LocalizedText copy = makeText("en", "old");
    EXPECT_EQ(OpcUa_LocalizedText_CopyTo(&source, &copy), OpcUa_Good);
    EXPECT_TRUE(OpcUa_String_IsNull(&copy.Locale));
    EXPECT_TRUE(OpcUa_String_IsEmpty(&copy.Text));
    OpcUa_LocalizedText_Clear(&copy);
    EXPECT_TRUE(OpcUa_String_IsNull(&copy.Text));
}

} // namespace
