// The examples of docs/values.md about strings and bytes. What stands between the markers is quoted
// there word for word.

#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uastring.h"
#include "base/uaunistring.h"
#include "base/uaunistringlist.h"
#include "platform/status.h"
#include "stack/opcua_string.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

OpcUa_StatusCode passToStack(const OpcUa_String* string)
{
    return OpcUa_String_IsNull(string) ? OpcUa_BadInvalidArgument : OpcUa_Good;
}

// docs begin
bool isServerName(const UaString& name)
{
    return !name.isEmpty() && name.size() <= 64 && !name.like("%[^A-Za-z0-9 \\-]%");
}
// docs end

TEST(DocsStrings, names_are_checked)
{
    EXPECT_TRUE(isServerName("Line-3 Server"));
    EXPECT_FALSE(isServerName("Line_3"));
    EXPECT_FALSE(isServerName(""));
}

TEST(DocsStrings, text_is_shared)
{
    // docs begin
    const UaString name = "Pump 7"; // copies the literal once
    UaString title = name;          // shares it: one atomic increment
    EXPECT_EQ(title.toOpcUaString(), name.toOpcUaString());

    title += " \xE2\x80\x93 on"; // a text of its own from here on
    EXPECT_STREQ(name.toUtf8(), "Pump 7");
    EXPECT_STREQ(title.toUtf8(), "Pump 7 \xE2\x80\x93 on");
    EXPECT_EQ(title.length(), 13); // bytes
    EXPECT_EQ(title.size(), 11);   // characters
    // docs end
}

TEST(DocsStrings, null_and_empty)
{
    // docs begin
    const UaString null;
    const UaString empty = "";

    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(empty.isNull());
    EXPECT_TRUE(null.isEmpty() && empty.isEmpty());
    EXPECT_TRUE(null == empty);
    EXPECT_STREQ(null.toUtf8(), ""); // never a null pointer
    // docs end
}

TEST(DocsStrings, order)
{
    // docs begin
    EXPECT_TRUE(UaString("z") < UaString("ab"));       // fewer bytes come first
    EXPECT_TRUE(UaUniString("ab") < UaUniString("z")); // lexical
    // docs end
}

TEST(DocsStrings, arguments)
{
    // docs begin
    const UaString line = UaString("%1 of %2 nodes, %3 %")
                              .arg(3)
                              .arg(12, 4)            // at least 4 characters, padded on the left
                              .arg(25.0, 0, 'f', 1); // one decimal
    EXPECT_EQ(line, "3 of   12 nodes, 25.0 %");
    EXPECT_EQ(UaString("0x%1").arg(48879u, 8, 16, '0'), "0x0000BEEF");
    // docs end
}

TEST(DocsStrings, stack_calls)
{
    // docs begin
    UaString name = "Pump 7";
    EXPECT_EQ(passToStack(name.toOpcUaString()), OpcUa_Good); // still owned by `name`

    OpcUa_String record;
    OpcUa_String_Initialize(&record);
    if (OpcUa_IsGood(name.detach(&record))) { // `record` owns the text now, `name` is null
        EXPECT_STREQ(record.strContent, "Pump 7");
        OpcUa_String_Clear(&record);
    }
    // docs end
    EXPECT_TRUE(name.isNull());
}

TEST(DocsStrings, units)
{
    // docs begin
    UaUniString text = " {1 | 2.5 | x} ";
    text = text.trimmed();
    const UaUniStringList pieces = text.mid(1, text.length() - 2).split(u'|');

    bool isNumber = false;
    EXPECT_EQ(pieces.size(), 3);
    EXPECT_EQ(pieces.at(1).toDouble(&isNumber), 2.5);
    EXPECT_EQ(pieces.at(2).toInt32(&isNumber), 0);
    EXPECT_FALSE(isNumber);
    // docs end
}

TEST(DocsStrings, characters)
{
    // docs begin
    const UaString text = "\xC3\xA9\xF0\x9F\x98\x80\x80z"; // the byte 0x80 is no UTF-8
    OpcUa_Int32 sound = 0;
    for (std::string_view rest = text.view(); !rest.empty();) {
        const UaChar character = UaChar::decode(rest.data(), rest.size());
        sound += character.codePoint() != UaChar::Replacement ? 1 : 0;
        rest.remove_prefix(static_cast<std::size_t>(character.utf8Length()));
    }
    EXPECT_EQ(text.size(), 4);
    EXPECT_EQ(sound, 3);
    // docs end
}

TEST(DocsStrings, bytes)
{
    // docs begin
    UaByteArray bytes = UaByteArray::fromHex("DEADBEEF");
    bytes[4] = 0x01; // grows the array
    EXPECT_EQ(bytes.toHex(true), "DE AD BE EF 01");

    OpcUa_ByteString record = {-1, nullptr};
    UaByteString owner;
    if (OpcUa_IsGood(bytes.detach(&record))) { // moves the block, however large
        owner.attach(&record);                 // and so does this
    }
    EXPECT_EQ(owner.toBase64(), "3q2+7wE=");
    // docs end
}

TEST(DocsStrings, base_64)
{
    // docs begin
    UaByteString bytes;
    EXPECT_EQ(UaByteString::fromBase64("QQ==", bytes), OpcUa_Good);
    EXPECT_EQ(UaByteString::fromBase64("QQ=", bytes), OpcUa_BadInvalidArgument);
    EXPECT_EQ(bytes.length(), 1); // a text that is refused leaves the target
    // docs end
}

} // namespace
