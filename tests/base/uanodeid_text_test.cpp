#include "base/uabytestring.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr OpcUa_Guid sampleGuid = {
    0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};
const std::string guidDigits = "6b29fc40-ca47-1067-b31d-00dd010662da";
const std::string zeroGuidDigits = "00000000-0000-0000-0000-000000000000";

UaNodeId opaque(const std::vector<OpcUa_Byte>& data, OpcUa_UInt16 namespaceIndex)
{
    return UaNodeId(UaByteString(static_cast<OpcUa_Int32>(data.size()), data.data()),
                    namespaceIndex);
}

UaNodeId withoutGuid(OpcUa_UInt16 namespaceIndex)
{
    const OpcUa_NodeId nodeId{OpcUa_IdentifierType_Guid, namespaceIndex, {}};
    return UaNodeId(nodeId);
}

struct FormRow
{
    const char* name;
    UaNodeId nodeId;
    std::string text;
    std::string fullText;
    std::string xmlText;
};

std::vector<FormRow> formRows()
{
    return {
        {"null", UaNodeId(), "0", "NS0|Numeric|0", "i=0"},
        {"number, namespace 0", UaNodeId(85), "85", "NS0|Numeric|85", "i=85"},
        {"largest number", UaNodeId(0xFFFFFFFFu, 0xFFFF), "4294967295",
         "NS65535|Numeric|4294967295", "ns=65535;i=4294967295"},
        {"string, namespace 0", UaNodeId(UaString("Pump")), "Pump", "NS0|String|Pump", "s=Pump"},
        {"string, other namespace", UaNodeId(UaString("P u;mp|"), 2), "P u;mp|",
         "NS2|String|P u;mp|", "ns=2;s=P u;mp|"},
        {"empty string, namespace 0", UaNodeId(UaString("")), "", "NS0|String|", "s="},
        {"empty string, other namespace", UaNodeId(UaString(""), 2), "", "NS2|String|", "ns=2;s="},
        {"null string, namespace 0", UaNodeId(UaString()), "(null)", "NS0|String|", "s="},
        {"null string, other namespace", UaNodeId(UaString(), 2), "(null)", "NS2|String|",
         "ns=2;s="},
        {"NUL in a string", UaNodeId(UaString("a\0b", 3), 2), std::string("a\0b", 3),
         "NS2|String|a", "ns=2;s=a"},
        {"guid, namespace 0", UaNodeId(UaGuid(sampleGuid)), "{" + guidDigits + "}",
         "NS0|Guid|{" + guidDigits + "}", "g=" + guidDigits},
        {"guid, other namespace", UaNodeId(UaGuid(sampleGuid), 2), "{" + guidDigits + "}",
         "NS2|Guid|{" + guidDigits + "}", "ns=2;g=" + guidDigits},
        {"guid without a block", withoutGuid(2), "{" + zeroGuidDigits + "}",
         "NS2|Guid|{" + zeroGuidDigits + "}", "ns=2;g=" + zeroGuidDigits},
        {"opaque, namespace 0", opaque({0x01, 0xAB}, 0), "01AB", "NS0|Opaque|0x01AB",
         "ns=0;b=Aas="},
        {"opaque, other namespace", opaque({0x01, 0xAB, 0xFF}, 2), "01ABFF", "NS2|Opaque|0x01ABFF",
         "ns=2;b=Aav/"},
        {"empty opaque", opaque({}, 2), "", "NS2|Opaque|0x", "ns=2;b="},
        {"null opaque", UaNodeId(UaByteString(), 65535), "", "NS65535|Opaque|0x", "ns=65535;b="}};
}

TEST(UaNodeIdText, every_type_has_its_three_forms)
{
    for (const FormRow& row : formRows()) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(textOf(row.nodeId.toString()), row.text);
        EXPECT_EQ(textOf(row.nodeId.toFullString()), row.fullText);
        EXPECT_EQ(textOf(row.nodeId.toXmlString()), row.xmlText);
        const OpcUa_NodeId& record = *row.nodeId.toOpcUaNodeId();
        EXPECT_EQ(textOf(UaNodeId::toString(record)), row.text);
        EXPECT_EQ(textOf(UaNodeId::toFullString(record)), row.fullText);
        EXPECT_EQ(textOf(UaNodeId::toXmlString(record)), row.xmlText);
    }
}

TEST(UaNodeIdText, an_unknown_identifier_type_gives_the_null_string)
{
    for (const OpcUa_UInt16 type : {OpcUa_UInt16{4}, OpcUa_UInt16{0xFFFF}}) {
        const OpcUa_NodeId nodeId{type, 1, {}};
        EXPECT_TRUE(UaNodeId::toString(nodeId).isNull());
        EXPECT_TRUE(UaNodeId::toFullString(nodeId).isNull());
        EXPECT_TRUE(UaNodeId::toXmlString(nodeId).isNull());
    }
}

TEST(UaNodeIdText, an_opaque_length_without_a_block_prints_no_bytes)
{
    OpcUa_NodeId nodeId{OpcUa_IdentifierType_Opaque, 1, {}};
    nodeId.Identifier.ByteString = {5, nullptr};
    EXPECT_EQ(textOf(UaNodeId::toString(nodeId)), "");
    EXPECT_EQ(textOf(UaNodeId::toFullString(nodeId)), "NS1|Opaque|0x");
    EXPECT_EQ(textOf(UaNodeId::toXmlString(nodeId)), "ns=1;b=");
}

/// A text of a length, in which every place shows.
std::string longText(std::size_t length)
{
    std::string text(length, '.');
    for (std::size_t i = 0; i < length; ++i) {
        text[i] = static_cast<char>('a' + i % 26);
    }
    return text;
}

TEST(UaNodeIdText, long_strings_are_cut_at_255_bytes_without_a_mark)
{
    for (const std::size_t length : {240u, 242u, 243u, 244u, 245u, 246u, 255u, 256u, 5000u}) {
        SCOPED_TRACE(length);
        const std::string identifier = longText(length);
        const UaNodeId nodeId(UaString(identifier.c_str()), 42);
        EXPECT_EQ(textOf(nodeId.toString()), identifier); // never cut
        EXPECT_EQ(textOf(nodeId.toFullString()), ("NS42|String|" + identifier).substr(0, 255));
        EXPECT_EQ(textOf(nodeId.toXmlString()), ("ns=42;s=" + identifier).substr(0, 255));
        EXPECT_EQ(textOf(UaNodeId(UaString(identifier.c_str())).toXmlString()),
                  ("s=" + identifier).substr(0, 255));
    }
}

struct OpaqueRow
{
    OpcUa_UInt16 namespaceIndex;
    std::size_t size;
    std::size_t printed; ///< Bytes that toFullString shows.
};

// "NS0|Opaque|0x" has 13 characters, which leaves 242 for digits and thus 121 bytes; "NS65535|..." has
// 17, which leaves 238 and thus 119; "NS10|..." has 14, which leaves 241 and thus 120.
constexpr std::array<OpaqueRow, 11> opaqueRows = {{{0, 1, 1},
                                                   {0, 120, 120},
                                                   {0, 121, 121},
                                                   {0, 122, 121},
                                                   {0, 200, 121},
                                                   {0, 100000, 121},
                                                   {10, 120, 120},
                                                   {10, 121, 120},
                                                   {65535, 119, 119},
                                                   {65535, 120, 119},
                                                   {65535, 200, 119}}};

TEST(UaNodeIdText, long_opaque_bytes_are_cut_in_the_full_form_alone)
{
    for (const OpaqueRow& row : opaqueRows) {
        SCOPED_TRACE(std::to_string(row.namespaceIndex) + ", " + std::to_string(row.size));
        const std::vector<OpcUa_Byte> data(row.size, 0xAB);
        const UaNodeId nodeId = opaque(data, row.namespaceIndex);
        std::string digits;
        for (std::size_t i = 0; i < row.size; ++i) {
            digits += "AB";
        }
        EXPECT_EQ(textOf(nodeId.toString()), digits);
        EXPECT_EQ(textOf(nodeId.toFullString()), "NS" + std::to_string(row.namespaceIndex) +
                                                     "|Opaque|0x" +
                                                     digits.substr(0, 2 * row.printed));
        const std::string prefix = "ns=" + std::to_string(row.namespaceIndex) + ";b=";
        EXPECT_EQ(nodeId.toXmlString().length(),
                  static_cast<OpcUa_Int32>(prefix.size() + (row.size + 2) / 3 * 4));
        EXPECT_EQ(UaNodeId::fromXmlString(nodeId.toXmlString()), nodeId);
    }
}

TEST(UaNodeIdText, forms_are_right_or_null_when_memory_is_short)
{
    for (const FormRow& row : formRows()) {
        SCOPED_TRACE(row.name);
        forEveryFailingAllocation([&] { return row.nodeId.toString(); },
                                  [](const UaString& text) { EXPECT_TRUE(text.isNull()); });
        forEveryFailingAllocation([&] { return row.nodeId.toFullString(); },
                                  [](const UaString& text) { EXPECT_TRUE(text.isNull()); });
        forEveryFailingAllocation([&] { return row.nodeId.toXmlString(); },
                                  [](const UaString& text) { EXPECT_TRUE(text.isNull()); });
    }
}

} // namespace
