// The examples of docs/values.md about identifiers, status codes and dates. What stands between the
// markers is quoted there word for word.

#include "base/uadatavalue.h"
#include "base/uadatetime.h"
#include "base/uadiagnosticinfo.h"
#include "base/uaexpandednodeid.h"
#include "base/uaguid.h"
#include "base/ualocalizedtext.h"
#include "base/uanodeid.h"
#include "base/uaqualifiedname.h"
#include "base/uastatuscode.h"
#include "base/uastring.h"
#include "base/uavariant.h"
#include "platform/status.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>

namespace {

// docs begin
std::optional<UaNodeId> readNodeId(const UaString& text)
{
    UaNodeId nodeId = UaNodeId::fromXmlString(text); // hostile text is fine
    if (nodeId.isNull()) {
        return std::nullopt;
    }
    return nodeId;
}
// docs end

TEST(DocsIdentifiers, node_ids_are_read)
{
    EXPECT_EQ(readNodeId("ns=2;i=5"), UaNodeId(5, 2));
    EXPECT_FALSE(readNodeId("ns=70000;i=5").has_value());
}

TEST(DocsIdentifiers, node_ids_are_shared)
{
    // docs begin
    UaNodeId pump(UaString("Pump"), 2);
    const UaNodeId copy = pump; // shares the block: one atomic increment

    pump.setNodeId(85, 0); // a block of its own from here on
    EXPECT_EQ(copy, UaNodeId(UaString("Pump"), 2));

    std::map<UaNodeId, int> counts; // numbers, then strings, then guids, then opaque bytes
    ++counts[pump];
    ++counts[copy];
    EXPECT_EQ(counts.begin()->first, pump);
    // docs end
}

TEST(DocsIdentifiers, node_ids_have_three_texts)
{
    // docs begin
    const UaNodeId pump(UaString("Pump"), 2);
    EXPECT_STREQ(pump.toString().toUtf8(), "Pump");
    EXPECT_STREQ(pump.toFullString().toUtf8(), "NS2|String|Pump");
    EXPECT_STREQ(pump.toXmlString().toUtf8(), "ns=2;s=Pump");
    EXPECT_EQ(UaNodeId::fromXmlString(pump.toXmlString()), pump);
    // docs end
}

TEST(DocsIdentifiers, names_and_texts)
{
    // docs begin
    const UaExpandedNodeId remote(UaNodeId(85), "urn:factory:line3", 1);
    EXPECT_STREQ(remote.toString().toUtf8(), "85"); // neither URI nor server index

    const UaQualifiedName name("Pump", 2);
    EXPECT_STREQ(name.toString().toUtf8(), "Pump");
    EXPECT_STREQ(name.toFullString().toUtf8(), "ns=2|Pump");

    const UaLocalizedText title("en-US", "Pump 7");
    EXPECT_STREQ(title.toString().toUtf8(), "Pump 7");
    EXPECT_STREQ(title.toFullString().toUtf8(), "en-US|Pump 7");
    // docs end
}

TEST(DocsIdentifiers, records_go_in_and_out)
{
    // docs begin
    OpcUa_QualifiedName record;
    OpcUa_QualifiedName_Initialize(&record);

    UaQualifiedName name("Pump", 2);
    EXPECT_EQ(name.copyTo(&record), OpcUa_Good); // a deep copy
    EXPECT_EQ(name.detach(&record), OpcUa_Good); // moves; what the record held is cleared
    EXPECT_TRUE(name.isNull());

    EXPECT_EQ(UaQualifiedName(record), UaQualifiedName("Pump", 2));
    OpcUa_QualifiedName_Clear(&record); // whoever holds a record clears it
    // docs end
}

TEST(DocsIdentifiers, status_codes_have_names)
{
    // docs begin
    const UaStatusCode status(0x803C0001); // the low 16 bits are info bits
    EXPECT_TRUE(status.isBad() && status.isNotGood() && !status.isUncertain());
    EXPECT_STREQ(status.toString().toUtf8(), "BadOutOfRange (0x803c0001)");

    EXPECT_STREQ(UaStatusCode::toString(0x803C0000).toUtf8(), "BadOutOfRange");
    EXPECT_STREQ(UaStatusCode::toString(0x12340000).toUtf8(), "0x12340000"); // no such name
    // docs end
}

TEST(DocsIdentifiers, diagnostic_infos_are_nested)
{
    // docs begin
    UaDiagnosticInfo cause;
    cause.setSymbolicId(3); // an index into the string table of the message; -1 is none

    UaDiagnosticInfo info;
    EXPECT_EQ(info.setAdditionalInfo("valve stuck"), OpcUa_Good);
    EXPECT_EQ(info.setInnerDiagnosticInfo(cause), OpcUa_Good); // a deep copy
    EXPECT_EQ(info.innerDiagnosticInfo()->SymbolicId, 3);
    // docs end
}

TEST(DocsIdentifiers, times_are_counts)
{
    // docs begin
    UaDateTime time = UaDateTime::fromString("2000-02-29T12:34:56.789Z");
    EXPECT_FALSE(time.isNull()); // a text that is none gives the null time
    EXPECT_EQ(time.msec(), 789);

    const UaDateTime before = time;
    time.addSecs(36 * 3600);
    EXPECT_STREQ(time.toString().toUtf8(), "2000-03-02T00:34:56.789Z"); // always UTC
    EXPECT_STREQ(time.toDateString().toUtf8(), "2000-03-02");
    EXPECT_EQ(before.daysTo(time), 1);
    EXPECT_TRUE(before < time);

    EXPECT_EQ(UaDateTime::fromTime_t(0).toInt64(), 116444736000000000);
    EXPECT_EQ(UaDateTime().toTime_t(), 0); // what lies before 1970 has no negative seconds
    // docs end
}

TEST(DocsIdentifiers, guids_are_read_and_made)
{
    // docs begin
    UaGuid guid;
    EXPECT_EQ(guid.fromString("6B29FC40-CA47-1067-B31D-00DD010662DA"), OpcUa_Good);
    EXPECT_STREQ(guid.toString().toUtf8(), "{6b29fc40-ca47-1067-b31d-00dd010662da}");

    EXPECT_EQ(guid.fromString("none"), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(guid.isNull()); // cleared before it is read

    EXPECT_NE(UaGuid::create(), UaGuid::create());
    // docs end
}

TEST(DocsIdentifiers, data_values_are_shared_until_one_changes)
{
    // docs begin
    UaVariant reading;
    reading.setDouble(20.5);
    const UaDataValue first(reading, OpcUa_Good, UaDateTime::now(), UaDateTime::now());

    UaDataValue second = first; // shares the block
    EXPECT_EQ(second.setStatusCode(OpcUa_UncertainLastUsableValue), OpcUa_Good);
    EXPECT_EQ(first.statusCode(), OpcUa_Good);

    EXPECT_EQ(second.setStatusCode(OpcUa_Good), OpcUa_Good);
    EXPECT_EQ(second.setServerTimestamp(UaDateTime()), OpcUa_Good);
    EXPECT_TRUE(first.isEqual(second, false)); // status and value alone
    EXPECT_FALSE(first == second);             // the times too
    // docs end
}

} // namespace
