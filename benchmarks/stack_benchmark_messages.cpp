// Service messages through the binary encoding. Each measurement stands beside its floor: straight
// code for this one message into a ready block, or out of one with the same blocks on the heap.

#include "benchmarks/stackcoding.h"
#include "stack/opcua_browseresponse.h"
#include "stack/opcua_createsessionrequest.h"
#include "stack/opcua_readresponse.h"

#include <string>

namespace {

constexpr OpcUa_Int32 resultCount = 1000;
constexpr OpcUa_Int32 certificateSize = 1100;
constexpr std::size_t largestSize = 1024 * 1024;

void setText(OpcUa_String& string, const std::string& text)
{
    Coding::require(OpcUa_String_AttachCopy(&string, text.c_str()));
}

template <typename T>
T* allocate(OpcUa_Int32 count)
{
    return static_cast<T*>(OpcUa_Memory_AllocZeroed(static_cast<std::size_t>(count), sizeof(T)));
}

/// "prefix...123" of a given length.
std::string textOf(OpcUa_Int32 number, std::size_t length)
{
    std::string text = std::to_string(number);
    return text.insert(0, length - text.size(), 'n');
}

/// A message that clears itself.
template <typename T>
struct Message
{
    Message() { type().Initialize(&value); }
    ~Message() { type().Clear(&value); }
    Message(const Message&) = delete;
    Message& operator=(const Message&) = delete;

    static const OpcUa_EncodeableType& type() { return *OpcUa_EncodeableTypeOf<T>; }

    T value;
};

// Messages -----------------------------------------------------------------------------------------

void fill(OpcUa_ReadResponse& message)
{
    message.ResponseHeader.Timestamp = {1, 0x01D00000};
    message.ResponseHeader.RequestHandle = 7;
    message.NoOfResults = resultCount;
    message.Results = allocate<OpcUa_DataValue>(resultCount);
    for (OpcUa_Int32 i = 0; i < resultCount; ++i) {
        OpcUa_DataValue& result = message.Results[i];
        result.Value.Datatype = OpcUaType_Double;
        result.Value.Value.Double = i;
        result.StatusCode = OpcUa_UncertainInitialValue;
        result.SourceTimestamp = {static_cast<OpcUa_UInt32>(i), 0x01D00000};
        result.ServerTimestamp = {static_cast<OpcUa_UInt32>(i), 0x01D00001};
    }
}

void fill(OpcUa_BrowseResponse& message)
{
    message.ResponseHeader.Timestamp = {1, 0x01D00000};
    message.NoOfResults = 1;
    message.Results = allocate<OpcUa_BrowseResult>(1);
    OpcUa_BrowseResult_Initialize(message.Results);
    message.Results->NoOfReferences = resultCount;
    message.Results->References = allocate<OpcUa_ReferenceDescription>(resultCount);
    for (OpcUa_Int32 i = 0; i < resultCount; ++i) {
        OpcUa_ReferenceDescription& reference = message.Results->References[i];
        reference.ReferenceTypeId.Identifier.Numeric = 35;
        reference.IsForward = OpcUa_True;
        reference.NodeId.NodeId = {OpcUa_IdentifierType_String, 2, {}};
        reference.NodeId.NodeId.Identifier.String = {};
        setText(reference.NodeId.NodeId.Identifier.String, textOf(i, 20));
        reference.BrowseName.NamespaceIndex = 2;
        setText(reference.BrowseName.Name, textOf(i, 12));
        setText(reference.DisplayName.Locale, "en");
        setText(reference.DisplayName.Text, textOf(i, 12));
        reference.NodeClass = OpcUa_NodeClass_Variable;
        reference.TypeDefinition.NodeId.Identifier.Numeric = 63;
    }
}

void fill(OpcUa_CreateSessionRequest& message)
{
    message.RequestHeader.Timestamp = {1, 0x01D00000};
    message.RequestHeader.RequestHandle = 1;
    message.RequestHeader.TimeoutHint = 10000;
    setText(message.ClientDescription.ApplicationUri, "urn:host:vendor:client");
    setText(message.ClientDescription.ProductUri, "urn:vendor:client");
    setText(message.ClientDescription.ApplicationName.Text, "Client");
    message.ClientDescription.ApplicationType = OpcUa_ApplicationType_Client;
    setText(message.EndpointUrl, "opc.tcp://host.domain:4840");
    setText(message.SessionName, "Session of a client");
    message.ClientNonce = {32, allocate<OpcUa_Byte>(32)};
    message.ClientCertificate = {certificateSize, allocate<OpcUa_Byte>(certificateSize)};
    message.RequestedSessionTimeout = 60000;
    message.MaxResponseMessageSize = 1 << 24;
}

// Straight code ------------------------------------------------------------------------------------

void writeNodeIdOfTwoBytes(FloorWriter& writer, OpcUa_UInt32 number)
{
    writer.number(OpcUa_Byte{0});
    writer.number(static_cast<OpcUa_Byte>(number));
}

void writeTypeId(FloorWriter& writer, OpcUa_UInt16 number)
{
    writer.number(OpcUa_Byte{1});
    writer.number(OpcUa_Byte{0});
    writer.number(number);
}

void writeHeader(FloorWriter& writer, const OpcUa_ResponseHeader& header)
{
    writer.number(header.Timestamp);
    writer.number(header.RequestHandle);
    writer.number(header.ServiceResult);
    writer.number(OpcUa_Byte{0});
    writer.number(header.NoOfStringTable);
    writeNodeIdOfTwoBytes(writer, 0);
    writer.number(OpcUa_Byte{0});
}

void writeFloor(FloorWriter& writer, const OpcUa_ReadResponse& message)
{
    writeTypeId(writer, 634);
    writeHeader(writer, message.ResponseHeader);
    writer.number(message.NoOfResults);
    for (OpcUa_Int32 i = 0; i < message.NoOfResults; ++i) {
        const OpcUa_DataValue& result = message.Results[i];
        writer.number(OpcUa_Byte{0x0F});
        writer.number(result.Value.Datatype);
        writer.number(result.Value.Value.Double);
        writer.number(result.StatusCode);
        writer.number(result.SourceTimestamp);
        writer.number(result.ServerTimestamp);
    }
    writer.number(message.NoOfDiagnosticInfos);
}

void writeFloor(FloorWriter& writer, const OpcUa_BrowseResponse& message)
{
    writeTypeId(writer, 530);
    writeHeader(writer, message.ResponseHeader);
    writer.number(message.NoOfResults);
    const OpcUa_BrowseResult& result = message.Results[0];
    writer.number(result.StatusCode);
    writer.text(nullptr, -1);
    writer.number(result.NoOfReferences);
    for (OpcUa_Int32 i = 0; i < result.NoOfReferences; ++i) {
        const OpcUa_ReferenceDescription& reference = result.References[i];
        writeNodeIdOfTwoBytes(writer, reference.ReferenceTypeId.Identifier.Numeric);
        writer.number(reference.IsForward);
        writer.number(OpcUa_Byte{3});
        writer.number(reference.NodeId.NodeId.NamespaceIndex);
        writer.text(reference.NodeId.NodeId.Identifier.String);
        writer.number(reference.BrowseName.NamespaceIndex);
        writer.text(reference.BrowseName.Name);
        writer.number(OpcUa_Byte{3});
        writer.text(reference.DisplayName.Locale);
        writer.text(reference.DisplayName.Text);
        writer.number(reference.NodeClass);
        writeNodeIdOfTwoBytes(writer, reference.TypeDefinition.NodeId.Identifier.Numeric);
    }
    writer.number(message.NoOfDiagnosticInfos);
}

void writeFloor(FloorWriter& writer, const OpcUa_CreateSessionRequest& message)
{
    const OpcUa_RequestHeader& header = message.RequestHeader;
    const OpcUa_ApplicationDescription& client = message.ClientDescription;
    writeTypeId(writer, 461);
    writeNodeIdOfTwoBytes(writer, header.AuthenticationToken.Identifier.Numeric);
    writer.number(header.Timestamp);
    writer.number(header.RequestHandle);
    writer.number(header.ReturnDiagnostics);
    writer.text(header.AuditEntryId);
    writer.number(header.TimeoutHint);
    writeNodeIdOfTwoBytes(writer, 0);
    writer.number(OpcUa_Byte{0});
    writer.text(client.ApplicationUri);
    writer.text(client.ProductUri);
    writer.number(OpcUa_Byte{2});
    writer.text(client.ApplicationName.Text);
    writer.number(client.ApplicationType);
    writer.text(client.GatewayServerUri);
    writer.text(client.DiscoveryProfileUri);
    writer.number(client.NoOfDiscoveryUrls);
    writer.text(message.ServerUri);
    writer.text(message.EndpointUrl);
    writer.text(message.SessionName);
    writer.text(message.ClientNonce.Data, message.ClientNonce.Length);
    writer.text(message.ClientCertificate.Data, message.ClientCertificate.Length);
    writer.number(message.RequestedSessionTimeout);
    writer.number(message.MaxResponseMessageSize);
}

void skipHeader(FloorReader& reader)
{
    reader.number<OpcUa_UInt32>(); // type id
    reader.number<OpcUa_DateTime>();
    reader.number<OpcUa_UInt32>();
    reader.number<OpcUa_StatusCode>();
    reader.number<OpcUa_Byte>();
    reader.number<OpcUa_Int32>();
    reader.number<OpcUa_UInt16>();
    reader.number<OpcUa_Byte>();
}

/// Reads what writeFloor wrote into blocks of the records, and frees them; true at the end.
bool readFloor(FloorReader& reader, const OpcUa_ReadResponse&)
{
    auto* message = FloorReader::block<OpcUa_ReadResponse>(1);
    skipHeader(reader);
    message->NoOfResults = reader.number<OpcUa_Int32>();
    message->Results = FloorReader::block<OpcUa_DataValue>(message->NoOfResults);
    for (OpcUa_Int32 i = 0; i < message->NoOfResults; ++i) {
        OpcUa_DataValue& result = message->Results[i];
        if (reader.number<OpcUa_Byte>() != 0x0F) {
            return false;
        }
        result.Value.Datatype = reader.number<OpcUa_Byte>();
        result.Value.ArrayType = OpcUa_VariantArrayType_Scalar;
        result.Value.Value.Double = reader.number<OpcUa_Double>();
        result.StatusCode = reader.number<OpcUa_StatusCode>();
        result.SourceTimestamp = reader.number<OpcUa_DateTime>();
        result.ServerTimestamp = reader.number<OpcUa_DateTime>();
        result.SourcePicoseconds = 0;
        result.ServerPicoseconds = 0;
    }
    message->NoOfDiagnosticInfos = reader.number<OpcUa_Int32>();
    benchmark::DoNotOptimize(message->Results);
    benchmark::ClobberMemory();
    std::free(message->Results);
    std::free(message);
    return reader.isAtEnd();
}

OpcUa_UInt32 readNodeIdOfTwoBytes(FloorReader& reader)
{
    reader.number<OpcUa_Byte>();
    return reader.number<OpcUa_Byte>();
}

void readReference(FloorReader& reader, OpcUa_ReferenceDescription& reference)
{
    reference.ReferenceTypeId = {};
    reference.ReferenceTypeId.Identifier.Numeric = readNodeIdOfTwoBytes(reader);
    reference.IsForward = reader.number<OpcUa_Boolean>();
    reader.number<OpcUa_Byte>();
    reference.NodeId = {};
    reference.NodeId.NodeId.IdentifierType = OpcUa_IdentifierType_String;
    reference.NodeId.NodeId.NamespaceIndex = reader.number<OpcUa_UInt16>();
    reference.NodeId.NodeId.Identifier.String = reader.text();
    reference.BrowseName.NamespaceIndex = reader.number<OpcUa_UInt16>();
    reference.BrowseName.Reserved = 0;
    reference.BrowseName.Name = reader.text();
    reader.number<OpcUa_Byte>();
    reference.DisplayName.Locale = reader.text();
    reference.DisplayName.Text = reader.text();
    reference.NodeClass = static_cast<OpcUa_NodeClass>(reader.number<OpcUa_Int32>());
    reference.TypeDefinition = {};
    reference.TypeDefinition.NodeId.Identifier.Numeric = readNodeIdOfTwoBytes(reader);
}

bool readFloor(FloorReader& reader, const OpcUa_BrowseResponse&)
{
    auto* message = FloorReader::block<OpcUa_BrowseResponse>(1);
    skipHeader(reader);
    message->NoOfResults = reader.number<OpcUa_Int32>();
    message->Results = FloorReader::block<OpcUa_BrowseResult>(message->NoOfResults);
    OpcUa_BrowseResult& result = message->Results[0];
    result.StatusCode = reader.number<OpcUa_StatusCode>();
    result.ContinuationPoint = {reader.number<OpcUa_Int32>(), nullptr};
    result.NoOfReferences = reader.number<OpcUa_Int32>();
    result.References = FloorReader::block<OpcUa_ReferenceDescription>(result.NoOfReferences);
    for (OpcUa_Int32 i = 0; i < result.NoOfReferences; ++i) {
        readReference(reader, result.References[i]);
    }
    message->NoOfDiagnosticInfos = reader.number<OpcUa_Int32>();
    benchmark::DoNotOptimize(result.References);
    benchmark::ClobberMemory();
    for (OpcUa_Int32 i = 0; i < result.NoOfReferences; ++i) {
        const OpcUa_ReferenceDescription& reference = result.References[i];
        std::free(reference.NodeId.NodeId.Identifier.String.strContent);
        std::free(reference.BrowseName.Name.strContent);
        std::free(reference.DisplayName.Locale.strContent);
        std::free(reference.DisplayName.Text.strContent);
    }
    std::free(result.References);
    std::free(message->Results);
    std::free(message);
    return reader.isAtEnd();
}

// Measurements -------------------------------------------------------------------------------------

template <typename T>
void encode(benchmark::State& state)
{
    Message<T> message;
    fill(message.value);
    std::vector<char> block(largestSize);
    FloorWriter floor(block);
    writeFloor(floor, message.value);
    Coding coding(floor.bytes().size());
    const auto write = [&] {
        OpcUa_Encoder* encoder = coding.encoder();
        return encoder->Interface->WriteMessage(encoder, &message.value, &message.type(),
                                                nullptr) == OpcUa_Good;
    };
    bool isGood = true;
    const std::size_t allocations = countAllocations([&] { isGood = write(); });
    for (auto _ : state) {
        isGood = write() && isGood;
        benchmark::ClobberMemory();
    }
    checkResult(state, isGood && coding.bytes() == floor.bytes() && allocations == 0);
    countMessages(state, coding.bytes().size(), allocations);
}

template <typename T>
void encodeFloor(benchmark::State& state)
{
    Message<T> message;
    fill(message.value);
    std::vector<char> block(largestSize);
    std::size_t size = 0;
    for (auto _ : state) {
        FloorWriter writer(block);
        writeFloor(writer, message.value);
        size = writer.bytes().size();
        benchmark::ClobberMemory();
    }
    countMessages(state, size, 0);
}

/// What a decoder in front of the type table does: the id of the message, then its record.
template <typename T>
bool decodeOnce(Coding& coding, T*& message)
{
    OpcUa_Decoder* decoder = coding.decoder();
    OpcUa_NodeId typeId;
    message = static_cast<T*>(OpcUa_Memory_Alloc(sizeof(T)));
    return decoder->Interface->ReadNodeId(decoder, nullptr, &typeId) == OpcUa_Good &&
           decoder->Interface->ReadEncodeable(decoder, nullptr, message,
                                              OpcUa_EncodeableTypeOf<T>) == OpcUa_Good;
}

template <typename T>
void decode(benchmark::State& state)
{
    Message<T> message;
    fill(message.value);
    Coding coding(largestSize);
    OpcUa_Encoder* encoder = coding.encoder();
    Coding::require(
        encoder->Interface->WriteMessage(encoder, &message.value, &message.type(), nullptr));
    T* read = nullptr;
    bool isGood = coding.decoder() != nullptr;
    const std::size_t allocations = countAllocations([&] { isGood = decodeOnce(coding, read); });
    isGood = isGood && message.type().Compare(read, &message.value) == 0;
    message.type().Clear(read);
    OpcUa_Memory_Free(read);
    for (auto _ : state) {
        isGood = decodeOnce(coding, read) && isGood;
        benchmark::DoNotOptimize(read);
        message.type().Clear(read);
        OpcUa_Memory_Free(read);
    }
    checkResult(state, isGood);
    countMessages(state, coding.bytes().size(), allocations);
}

template <typename T>
void decodeFloor(benchmark::State& state)
{
    Message<T> message;
    fill(message.value);
    std::vector<char> block(largestSize);
    FloorWriter writer(block);
    writeFloor(writer, message.value);
    bool isGood = true;
    for (auto _ : state) {
        FloorReader reader(writer.bytes());
        isGood = readFloor(reader, message.value) && isGood;
    }
    checkResult(state, isGood);
    countMessages(state, writer.bytes().size(), 0);
}

BENCHMARK_TEMPLATE(encode, OpcUa_ReadResponse)->Name("ReadResponse_encode");
BENCHMARK_TEMPLATE(encodeFloor, OpcUa_ReadResponse)->Name("ReadResponse_encode_floor");
BENCHMARK_TEMPLATE(decode, OpcUa_ReadResponse)->Name("ReadResponse_decode");
BENCHMARK_TEMPLATE(decodeFloor, OpcUa_ReadResponse)->Name("ReadResponse_decode_floor");
BENCHMARK_TEMPLATE(encode, OpcUa_BrowseResponse)->Name("BrowseResponse_encode");
BENCHMARK_TEMPLATE(encodeFloor, OpcUa_BrowseResponse)->Name("BrowseResponse_encode_floor");
BENCHMARK_TEMPLATE(decode, OpcUa_BrowseResponse)->Name("BrowseResponse_decode");
BENCHMARK_TEMPLATE(decodeFloor, OpcUa_BrowseResponse)->Name("BrowseResponse_decode_floor");
BENCHMARK_TEMPLATE(encode, OpcUa_CreateSessionRequest)->Name("CreateSessionRequest_encode");
BENCHMARK_TEMPLATE(encodeFloor, OpcUa_CreateSessionRequest)
    ->Name("CreateSessionRequest_encode_floor");

} // namespace
