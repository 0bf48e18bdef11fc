#include "platform/status.h"
#include "stack/opcua_types.h"
#include "tests/stack/recordcoder.h"

#include <gtest/gtest.h>

#include <string>

// Records against bytes that were put together by hand (OPC 10000-6, 5.2).

namespace {

/// Bytes from pieces: numbers as hexadecimal pairs, texts behind a quotation mark with their length.
Bytes wire(std::initializer_list<std::string> pieces)
{
    Bytes bytes;
    for (const std::string& piece : pieces) {
        if (piece[0] == '"') {
            const std::size_t length = piece.size() - 1;
            bytes.insert(bytes.end(), {static_cast<OpcUa_Byte>(length), 0, 0, 0});
            bytes.insert(bytes.end(), piece.begin() + 1, piece.end());
            continue;
        }
        for (std::size_t i = 0; i < piece.size(); i += 3) {
            bytes.push_back(static_cast<OpcUa_Byte>(std::stoul(piece.substr(i, 2), nullptr, 16)));
        }
    }
    return bytes;
}

/// A text that belongs to somebody else, and whose clearing does nothing.
OpcUa_String text(const char* content)
{
    OpcUa_String string;
    OpcUa_String_Initialize(&string);
    EXPECT_EQ(OpcUa_String_AttachReadOnly(&string, content), OpcUa_Good);
    return string;
}

/// The record encodes to these bytes, and they decode to the record.
template <typename Record>
void expectWire(const Record& record, const Bytes& bytes)
{
    const OpcUa_EncodeableType& type = *OpcUa_EncodeableTypeOf<Record>;
    EXPECT_EQ(encodedRecord(type, &record), bytes);
    Record decoded;
    EXPECT_EQ(decodeRecord(type, bytes, &decoded), OpcUa_Good);
    EXPECT_EQ(type.Compare(&record, &decoded), 0);
    type.Clear(&decoded);
}

const std::string null = "FF FF FF FF";
const std::string zero = "00 00 00 00";

TEST(EncodeableWire, a_time_zone_is_an_offset_and_a_flag)
{
    expectWire(OpcUa_TimeZoneDataType{-60, OpcUa_True}, wire({"C4 FF", "01"}));
}

TEST(EncodeableWire, a_range_is_two_doubles)
{
    expectWire(OpcUa_Range{-1.5, 2.5},
               wire({"00 00 00 00 00 00 F8 BF", "00 00 00 00 00 00 04 40"}));
}

TEST(EncodeableWire, an_argument_has_its_fields_in_order)
{
    OpcUa_UInt32 dimensions[] = {2, 3};
    OpcUa_Argument argument;
    OpcUa_Argument_Initialize(&argument);
    argument.Name = text("Speed");
    argument.DataType.Identifier.Numeric = 11;
    argument.ValueRank = -1;
    argument.NoOfArrayDimensions = 2;
    argument.ArrayDimensions = dimensions;
    argument.Description.Text = text("how fast");
    expectWire(argument, wire({"\"Speed", "00 0B", "FF FF FF FF",
                               "02 00 00 00 02 00 00 00 03 00 00 00", "02", "\"how fast"}));
}

TEST(EncodeableWire, null_and_empty_arrays_keep_their_counts)
{
    OpcUa_TrustListDataType list;
    OpcUa_TrustListDataType_Initialize(&list);
    list.SpecifiedLists = OpcUa_TrustListMasks_All;
    list.NoOfTrustedCrls = -1;
    OpcUa_Byte byte = 0xAB;
    OpcUa_ByteString certificates[] = {{1, &byte}, {-1, nullptr}, {0, nullptr}};
    list.NoOfIssuerCertificates = 3;
    list.IssuerCertificates = certificates;
    const Bytes bytes =
        wire({"0F 00 00 00", zero, null, "03 00 00 00", "01 00 00 00 AB", null, zero, zero});
    expectWire(list, bytes);
    OpcUa_TrustListDataType decoded;
    ASSERT_EQ(decodeRecord(OpcUa_TrustListDataType_EncodeableType, bytes, &decoded), OpcUa_Good);
    EXPECT_EQ(decoded.NoOfTrustedCertificates, 0);
    EXPECT_EQ(decoded.TrustedCertificates, nullptr);
    EXPECT_EQ(decoded.NoOfTrustedCrls, -1);
    EXPECT_EQ(decoded.TrustedCrls, nullptr);
    OpcUa_TrustListDataType_Clear(&decoded);
}

TEST(EncodeableWire, a_read_request_holds_its_header_and_an_array_of_records)
{
    OpcUa_ReadValueId node;
    OpcUa_ReadValueId_Initialize(&node);
    node.NodeId.NamespaceIndex = 2;
    node.NodeId.IdentifierType = OpcUa_IdentifierType_String;
    node.NodeId.Identifier.String = text("Pump");
    node.AttributeId = 13;
    OpcUa_ReadRequest request;
    OpcUa_ReadRequest_Initialize(&request);
    request.RequestHeader.AuthenticationToken.NamespaceIndex = 1;
    request.RequestHeader.AuthenticationToken.Identifier.Numeric = 1000;
    request.RequestHeader.Timestamp = {0x11223344, 0x01D00000};
    request.RequestHeader.RequestHandle = 7;
    request.RequestHeader.TimeoutHint = 5000;
    request.TimestampsToReturn = OpcUa_TimestampsToReturn_Neither;
    request.NoOfNodesToRead = 1;
    request.NodesToRead = &node;
    expectWire(request,
               wire({"01 01 E8 03", "44 33 22 11 00 00 D0 01", "07 00 00 00", zero, null,
                     "88 13 00 00", "00 00 00", "00 00 00 00 00 00 00 00", "03 00 00 00",
                     "01 00 00 00", "03 02 00", "\"Pump", "0D 00 00 00", null, "00 00", null}));
}

TEST(EncodeableWire, an_abstract_field_is_an_extension_object_with_its_record)
{
    OpcUa_AnonymousIdentityToken token;
    OpcUa_AnonymousIdentityToken_Initialize(&token);
    token.PolicyId = text("anonymous");
    OpcUa_MonitoringParameters parameters;
    OpcUa_MonitoringParameters_Initialize(&parameters);
    parameters.ClientHandle = 9;
    parameters.QueueSize = 1;
    parameters.DiscardOldest = OpcUa_True;
    parameters.Filter.TypeId.NodeId.Identifier.Numeric =
        OpcUa_AnonymousIdentityToken_EncodeableType.BinaryEncodingTypeId;
    parameters.Filter.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
    parameters.Filter.Body.EncodeableObject = {&token,
                                               &OpcUa_AnonymousIdentityToken_EncodeableType};
    parameters.Filter.BodySize = 13;
    expectWire(parameters, wire({"09 00 00 00", "00 00 00 00 00 00 00 00", "01 00 41 01", "01",
                                 "0D 00 00 00", "\"anonymous", "01 00 00 00", "01"}));
}

TEST(EncodeableWire, a_service_fault_is_a_response_header)
{
    OpcUa_ServiceFault fault;
    OpcUa_ServiceFault_Initialize(&fault);
    OpcUa_String strings[] = {text("why")};
    fault.ResponseHeader.RequestHandle = 3;
    fault.ResponseHeader.ServiceResult = OpcUa_BadServiceUnsupported;
    fault.ResponseHeader.ServiceDiagnostics.SymbolicId = 0;
    fault.ResponseHeader.NoOfStringTable = 1;
    fault.ResponseHeader.StringTable = strings;
    expectWire(fault, wire({"00 00 00 00 00 00 00 00", "03 00 00 00", "00 00 0B 80",
                            "01 00 00 00 00", "01 00 00 00", "\"why", "00 00 00"}));
}

} // namespace
