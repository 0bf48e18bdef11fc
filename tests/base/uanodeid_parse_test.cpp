#include "base/uabytestring.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "platform/status.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace {

constexpr OpcUa_Guid sampleGuid = {
    0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};

UaString toText(const std::string& text)
{
    return {text.data(), static_cast<OpcUa_Int64>(text.size())};
}

struct NumericRow
{
    std::string text;
    OpcUa_UInt32 number;
    OpcUa_UInt16 namespaceIndex;
};

const std::vector<NumericRow> numericRows = {{"i=5", 5, 0},
                                             {"ns=0;i=5", 5, 0},
                                             {"ns=;i=5", 5, 0},
                                             {"ns=2;i=1234", 1234, 2},
                                             {"ns=65535;i=4294967295", 4294967295u, 65535},
                                             {"ns=00065535;i=000000000000000000012", 12, 65535},
                                             {"i=0", 0, 0},
                                             // What strtoul takes is taken: white space and a sign.
                                             {"i= 5", 5, 0},
                                             {"i=\t\n\v\f\r 5", 5, 0},
                                             {"i=+5", 5, 0},
                                             {"i= +5", 5, 0},
                                             {"i=-1", 4294967295u, 0},
                                             {"i=-0", 0, 0},
                                             {"i=-4294967295", 1, 0},
                                             {"ns= 2;i=5", 5, 2},
                                             {"ns=+2;i=5", 5, 2},
                                             {"ns=-0;i=5", 5, 0},
                                             {"ns=-4294967294;i=5", 5, 2}};

TEST(UaNodeIdParse, reads_numbers)
{
    for (const NumericRow& row : numericRows) {
        SCOPED_TRACE(row.text);
        const UaNodeId nodeId = UaNodeId::fromXmlString(toText(row.text));
        EXPECT_EQ(nodeId, UaNodeId(row.number, row.namespaceIndex));
        EXPECT_EQ(nodeId.identifierType(), OpcUa_IdentifierType_Numeric);
    }
}

struct StringRow
{
    std::string text;
    std::string identifier;
    OpcUa_UInt16 namespaceIndex;
};

const std::vector<StringRow> stringRows = {
    {"s=a", "a", 0},
    {"ns=2;s=", "", 2},
    {"ns=0;s=", "", 0},
    {"ns=;s=Pump", "Pump", 0},
    {"ns=2;s=Pump", "Pump", 2},
    {"ns=2;s= Pump ", " Pump ", 2},
    {"s=ns=2;s=Pump", "ns=2;s=Pump", 0},
    {"ns=2;s=a;b=c", "a;b=c", 2},
    {"s=\xC3\xA4", "\xC3\xA4", 0},
    {"s=\xFF\xFE", "\xFF\xFE", 0}, // bytes that are no UTF-8 are kept
    {std::string("ns=2;s=a\0b", 10), std::string("a\0b", 3), 2},
    {std::string("s=\0", 3), std::string("\0", 1), 0},
    {"ns=2;s=" + std::string(100000, 'x'), std::string(100000, 'x'), 2}};

TEST(UaNodeIdParse, reads_strings)
{
    for (const StringRow& row : stringRows) {
        SCOPED_TRACE(row.text.substr(0, 40));
        const UaNodeId nodeId = UaNodeId::fromXmlString(toText(row.text));
        ASSERT_EQ(nodeId.identifierType(), OpcUa_IdentifierType_String);
        EXPECT_EQ(nodeId.namespaceIndex(), row.namespaceIndex);
        EXPECT_EQ(textOf(nodeId.identifierString()), row.identifier);
    }
    EXPECT_EQ(textOf(UaNodeId::fromXmlString("ns=2;s=").toXmlString()), "ns=2;s=");
}

TEST(UaNodeIdParse, reads_guids_as_the_guid_reader_does)
{
    const UaNodeId expected(UaGuid(sampleGuid), 2);
    for (const char* text : {"ns=2;g=6b29fc40-ca47-1067-b31d-00dd010662da",
                             "ns=2;g=6B29FC40-CA47-1067-B31D-00DD010662DA",
                             "ns=2;g={6B29FC40-CA47-1067-B31D-00DD010662DA}",
                             "ns=2;g={6B29FC40-CA47-1067-B31D-00DD010662DA",
                             "ns=2;g=6B29FC40-CA47-1067-B31D-00DD010662DA and more"}) {
        EXPECT_EQ(UaNodeId::fromXmlString(text), expected) << text;
    }
    EXPECT_EQ(UaNodeId::fromXmlString("g=6B29FC40-CA47-1067-B31D-00DD010662DA"),
              UaNodeId(UaGuid(sampleGuid), 0));
    EXPECT_EQ(UaNodeId::fromXmlString("ns=1;g=0-0-0-0000-000000000000"), UaNodeId(UaGuid(), 1));
}

struct OpaqueRow
{
    std::string text;
    std::vector<OpcUa_Byte> identifier;
    OpcUa_UInt16 namespaceIndex;
};

const std::vector<OpaqueRow> opaqueRows = {{"b=QQ==", {0x41}, 0},
                                           {"ns=0;b=Aas=", {0x01, 0xAB}, 0},
                                           {"ns=2;b=Aav/", {0x01, 0xAB, 0xFF}, 2},
                                           {"ns=2;b=", {}, 2}};

TEST(UaNodeIdParse, reads_opaque_bytes)
{
    for (const OpaqueRow& row : opaqueRows) {
        SCOPED_TRACE(row.text);
        const UaNodeId nodeId = UaNodeId::fromXmlString(toText(row.text));
        ASSERT_EQ(nodeId.identifierType(), OpcUa_IdentifierType_Opaque);
        EXPECT_EQ(nodeId.namespaceIndex(), row.namespaceIndex);
        const UaByteString identifier = nodeId.identifierOpaque();
        ASSERT_EQ(identifier.length(), static_cast<OpcUa_Int32>(row.identifier.size()));
        EXPECT_TRUE(std::equal(row.identifier.begin(), row.identifier.end(), identifier.data()));
    }
}

TEST(UaNodeIdParse, anything_else_gives_the_null_node_id)
{
    const std::vector<std::string> refused = {
        // below 3 bytes
        "", "i", "s=", "i=", "b=", "=5",
        // the part in front of ";"
        "ns=", "ns=1", "ns=1i=5", "ns=70000;i=5", "ns=65536;i=5", "ns=4294967296;i=5",
        "ns=99999999999999999999;i=5", "ns=-1;i=5", "ns=1x;i=5", "ns=x;i=5", "ns= ;i=5",
        "ns=1 ;i=5", "ns=+;i=5", "ns=-;i=5", "ns=0x1;i=5", "ns=1.0;i=5", "ns=+-1;i=5",
        std::string("ns=1\0;i=5", 9), "NS=1;i=5", " ns=1;i=5", "n=1;i=5", "ns:1;i=5",
        // the form
        "ns=1;", "ns=1;i", "ns=1;;i=5", "ns=1;x=5", "ns=1; i=5", "ns=1;I=5", "ns=1;ns=1;i=5", "x=5",
        "I=5", "i:5", "ii=5", "abc", "===", "5i=",
        // numbers
        "ns=1;i=", "i=x", "i=5x", "i=5 ", "i= ", "i=+", "i=-", "i=+-5", "i=- 5", "i=0x5", "i=5.0",
        "i=4294967296", "i=-4294967296", "i=18446744073709551617",
        "i=99999999999999999999999999999999999999", "i=5;", "i=1e3", std::string("i=5\0", 4),
        std::string("i=\0", 3), "i=\xD9\xA1",
        // guids
        "ns=1;g=", "g=x", "g=6B29FC40", "g=6B29FC40-CA47-1067-B31D-00DD010662",
        "g={{6B29FC40-CA47-1067-B31D-00DD010662DA}",
        std::string("g=6B29FC40\0-CA47-1067-B31D-00DD010662DA", 39),
        // base 64
        "b=Q", "b=QQ=", "b=Q=Q=", "b=QQ==QQ==", "b=!!!!", std::string("b=QQ\0=", 6)};
    for (const std::string& text : refused) {
        SCOPED_TRACE(text);
        const UaNodeId nodeId = UaNodeId::fromXmlString(toText(text));
        EXPECT_TRUE(nodeId.isNull());
        EXPECT_EQ(nodeId, UaNodeId()); // the default one, with no identifier of another type
    }
    EXPECT_EQ(UaNodeId::fromXmlString(UaString()), UaNodeId());
}

TEST(UaNodeIdParse, every_prefix_of_a_text_is_read_or_refused)
{
    const std::array<std::string, 4> whole = {"ns=65535;i=4294967295", "ns=2;s=Pump",
                                              "ns=2;g={6b29fc40-ca47-1067-b31d-00dd010662da}",
                                              "ns=2;b=Aav/Aav/"};
    for (const std::string& text : whole) {
        EXPECT_FALSE(UaNodeId::fromXmlString(toText(text)).isNull());
        for (std::size_t length = 0; length < text.size(); ++length) {
            const UaNodeId nodeId = UaNodeId::fromXmlString(toText(text.substr(0, length)));
            EXPECT_EQ(UaNodeId::fromXmlString(nodeId.toXmlString()).isNull(), nodeId.isNull());
        }
    }
}

TEST(UaNodeIdParse, reads_what_the_text_form_prints)
{
    const std::array<OpcUa_Byte, 5> bytes = {0, 1, 2, 0xFE, 0xFF};
    for (const OpcUa_UInt16 index : {OpcUa_UInt16{0}, OpcUa_UInt16{1}, OpcUa_UInt16{65535}}) {
        const std::array<UaNodeId, 6> nodeIds = {
            UaNodeId(5, index),
            UaNodeId(0xFFFFFFFFu, index),
            UaNodeId(UaString("a;b=c|\xC3\xA4"), index),
            UaNodeId(UaString(std::string(240, 'x').c_str()), index),
            UaNodeId(UaGuid(sampleGuid), index),
            UaNodeId(UaByteString(5, bytes.data()), index)};
        for (const UaNodeId& nodeId : nodeIds) {
            EXPECT_EQ(UaNodeId::fromXmlString(nodeId.toXmlString()), nodeId)
                << nodeId.toXmlString().toUtf8();
        }
    }
}

TEST(UaNodeIdParse, every_failed_allocation_gives_the_null_node_id)
{
    for (const char* text : {"ns=2;i=5", "ns=2;s=Pump",
                             "ns=2;g={6b29fc40-ca47-1067-b31d-00dd010662da}", "ns=2;b=Aav/"}) {
        SCOPED_TRACE(text);
        const UaString whole(text);
        const std::size_t allocations = forEveryFailingAllocation(
            [&] { return UaNodeId::fromXmlString(whole); },
            [](const UaNodeId& nodeId) { EXPECT_EQ(nodeId, UaNodeId()); });
        EXPECT_GE(allocations, 1u);
    }
}

} // namespace
