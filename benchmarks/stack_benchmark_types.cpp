// The table of encodeable types beside a bare binary search over the same ids, and the walk along the
// layout of a record beside straight code that calls the same functions field by field.

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_binaryread.h"
#include "stack/opcua_binarywrite.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_referencedescription.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <stdexcept>
#include <vector>

namespace {

void check(benchmark::State& state, bool isRight)
{
    if (!isRight) {
        state.SkipWithError("wrong result");
    }
}

void require(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status)) {
        throw std::runtime_error("a benchmark can't be set up");
    }
}

// Looking types up --------------------------------------------------------------------------------

const OpcUa_EncodeableTypeTable& knownTypes()
{
    static OpcUa_EncodeableTypeTable table;
    if (table.Count == 0) {
        require(OpcUa_EncodeableTypeTable_AddTypes(&table, OpcUa_KnownEncodeableTypes));
    }
    return table;
}

/// Ids of known types in an order that no branch predictor learns.
std::vector<OpcUa_UInt32> someIds()
{
    std::mt19937 random(1);
    std::vector<OpcUa_UInt32> ids(1u << 16);
    std::generate(ids.begin(), ids.end(),
                  [&] { return knownTypes().Index[random() % knownTypes().IndexCount].TypeId; });
    return ids;
}

void findType(benchmark::State& state)
{
    const std::vector<OpcUa_UInt32> ids = someIds();
    std::size_t i = 0;
    bool isRight = true;
    for (auto _ : state) {
        const OpcUa_EncodeableType* type = nullptr;
        isRight &=
            OpcUa_IsGood(OpcUa_EncodeableTypeTable_Find(&knownTypes(), ids[i], nullptr, &type));
        isRight &= type != nullptr;
        i = (i + 1) % ids.size();
    }
    check(state, isRight);
}
BENCHMARK(findType);

void findTypeFloor(benchmark::State& state)
{
    std::vector<OpcUa_UInt32> sorted;
    for (OpcUa_UInt32 i = 0; i < knownTypes().IndexCount; ++i) {
        sorted.push_back(knownTypes().Index[i].TypeId);
    }
    const std::vector<OpcUa_UInt32> ids = someIds();
    std::size_t i = 0;
    bool isRight = true;
    for (auto _ : state) {
        const auto found = std::lower_bound(sorted.begin(), sorted.end(), ids[i]);
        isRight &= found != sorted.end() && *found == ids[i];
        i = (i + 1) % ids.size();
    }
    check(state, isRight);
}
BENCHMARK(findTypeFloor);

// Walking along a record --------------------------------------------------------------------------

constexpr int recordCount = 1000;

/// A reference as a browse gives it, without owning its texts.
OpcUa_ReferenceDescription makeReference()
{
    const auto text = [](const char* content) {
        OpcUa_String string;
        OpcUa_String_Initialize(&string);
        require(OpcUa_String_AttachReadOnly(&string, content));
        return string;
    };
    OpcUa_ReferenceDescription reference;
    OpcUa_ReferenceDescription_Initialize(&reference);
    reference.ReferenceTypeId.Identifier.Numeric = 35;
    reference.IsForward = OpcUa_True;
    reference.NodeId.NodeId.IdentifierType = OpcUa_IdentifierType_String;
    reference.NodeId.NodeId.NamespaceIndex = 2;
    reference.NodeId.NodeId.Identifier.String = text("Plant.Line1.Machine7");
    reference.BrowseName = {2, 0, text("Machine7")};
    reference.DisplayName = {text("en"), text("Machine 7")};
    reference.NodeClass = OpcUa_NodeClass_Object;
    reference.TypeDefinition.NodeId.Identifier.Numeric = 58;
    return reference;
}

class Writer
{
public:
    Writer()
    {
        OpcUa_MessageContext_Initialize(&m_context);
        require(OpcUa_MemoryOutputStream_Create(1u << 18, 0, &m_stream));
        require(OpcUa_BinaryEncoder_Create(&m_encoder));
        require(m_encoder->Interface->Open(m_encoder, m_stream, &m_context));
    }
    ~Writer()
    {
        m_encoder->Interface->Delete(&m_encoder);
        m_stream->Interface->Delete(&m_stream);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    [[nodiscard]] OpcUa_Encoder* encoder() { return m_encoder; }
    void restart() { require(OpcUa_MemoryOutputStream_Reset(m_stream)); }
    [[nodiscard]] std::vector<OpcUa_Byte> bytes()
    {
        const OpcUa_Byte* buffer = nullptr;
        OpcUa_UInt32 length = 0;
        require(OpcUa_MemoryOutputStream_GetBuffer(m_stream, &buffer, &length));
        return {buffer, buffer + length};
    }

private:
    OpcUa_MessageContext m_context = {};
    OpcUa_OutputStream* m_stream = nullptr;
    OpcUa_Encoder* m_encoder = nullptr;
};

OpcUa_StatusCode writeStraight(OpcUa_BinaryWriter& writer, const OpcUa_ReferenceDescription& record)
{
    OpcUa_StatusCode status = OpcUa_BinaryWrite<OpcUaType_NodeId>(writer, record.ReferenceTypeId);
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite<OpcUaType_Boolean>(writer, record.IsForward);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite<OpcUaType_ExpandedNodeId>(writer, record.NodeId);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite<OpcUaType_QualifiedName>(writer, record.BrowseName);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite<OpcUaType_LocalizedText>(writer, record.DisplayName);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite<OpcUaType_Int32>(writer, OpcUa_Int32{record.NodeClass});
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryWrite<OpcUaType_ExpandedNodeId>(writer, record.TypeDefinition);
    }
    return status;
}

void encodeRecords(benchmark::State& state)
{
    const std::vector<OpcUa_ReferenceDescription> records(recordCount, makeReference());
    Writer writer;
    bool isRight = true;
    for (auto _ : state) {
        writer.restart();
        isRight &= OpcUa_IsGood(writer.encoder()->Interface->WriteEncodeableArray(
            writer.encoder(), nullptr, records.data(), recordCount,
            &OpcUa_ReferenceDescription_EncodeableType, nullptr));
    }
    check(state, isRight);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(writer.bytes().size()));
}
BENCHMARK(encodeRecords);

void encodeRecordsStraight(benchmark::State& state)
{
    const std::vector<OpcUa_ReferenceDescription> records(recordCount, makeReference());
    Writer writer;
    bool isRight = true;
    for (auto _ : state) {
        writer.restart();
        OpcUa_BinaryWriter& straight = *OpcUa_BinaryWriter_FromEncoder(writer.encoder());
        isRight &= OpcUa_IsGood(OpcUa_BinaryWrite_Count(straight, records.data(), recordCount));
        for (const OpcUa_ReferenceDescription& record : records) {
            isRight &= OpcUa_IsGood(writeStraight(straight, record));
        }
    }
    Writer walked;
    require(walked.encoder()->Interface->WriteEncodeableArray(
        walked.encoder(), nullptr, records.data(), recordCount,
        &OpcUa_ReferenceDescription_EncodeableType, nullptr));
    check(state, isRight && walked.bytes() == writer.bytes());
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(writer.bytes().size()));
}
BENCHMARK(encodeRecordsStraight);

/// The bytes of the records without a count, and a decoder over them.
class Reader
{
public:
    Reader()
    {
        Writer writer;
        const OpcUa_ReferenceDescription record = makeReference();
        for (int i = 0; i < recordCount; ++i) {
            require(OpcUa_ReferenceDescription_Encode(&record, writer.encoder()));
        }
        m_bytes = writer.bytes();
        OpcUa_MessageContext_Initialize(&m_context);
        require(OpcUa_MemoryInputStream_Create(
            m_bytes.data(), static_cast<OpcUa_UInt32>(m_bytes.size()), &m_stream));
        require(OpcUa_BinaryDecoder_Create(&m_decoder));
        require(m_decoder->Interface->Open(m_decoder, m_stream, &m_context));
    }
    ~Reader()
    {
        m_decoder->Interface->Delete(&m_decoder);
        m_stream->Interface->Delete(&m_stream);
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    [[nodiscard]] OpcUa_Decoder* decoder() { return m_decoder; }
    void restart() { require(OpcUa_MemoryInputStream_Reset(m_stream)); }
    [[nodiscard]] std::int64_t size() const { return static_cast<std::int64_t>(m_bytes.size()); }

private:
    std::vector<OpcUa_Byte> m_bytes;
    OpcUa_MessageContext m_context = {};
    OpcUa_InputStream* m_stream = nullptr;
    OpcUa_Decoder* m_decoder = nullptr;
};

void decodeAndClearRecords(benchmark::State& state)
{
    Reader reader;
    std::vector<OpcUa_ReferenceDescription> records(recordCount);
    bool isRight = true;
    for (auto _ : state) {
        reader.restart();
        for (OpcUa_ReferenceDescription& record : records) {
            isRight &= OpcUa_IsGood(OpcUa_ReferenceDescription_Decode(&record, reader.decoder()));
        }
        for (OpcUa_ReferenceDescription& record : records) {
            OpcUa_ReferenceDescription_Clear(&record);
        }
    }
    check(state, isRight);
    state.SetBytesProcessed(state.iterations() * reader.size());
}
BENCHMARK(decodeAndClearRecords);

OpcUa_StatusCode readStraight(OpcUa_BinaryReader& reader, OpcUa_ReferenceDescription& record)
{
    OpcUa_Int32 nodeClass = 0;
    OpcUa_StatusCode status = OpcUa_BinaryRead<OpcUaType_NodeId>(reader, record.ReferenceTypeId);
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead<OpcUaType_Boolean>(reader, record.IsForward);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead<OpcUaType_ExpandedNodeId>(reader, record.NodeId);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead<OpcUaType_QualifiedName>(reader, record.BrowseName);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead<OpcUaType_LocalizedText>(reader, record.DisplayName);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead<OpcUaType_Int32>(reader, nodeClass);
        record.NodeClass = static_cast<OpcUa_NodeClass>(nodeClass);
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_BinaryRead<OpcUaType_ExpandedNodeId>(reader, record.TypeDefinition);
    }
    return status;
}

void clearStraight(OpcUa_ReferenceDescription& record)
{
    OpcUa_NodeId_Clear(&record.ReferenceTypeId);
    record.IsForward = OpcUa_False;
    OpcUa_ExpandedNodeId_Clear(&record.NodeId);
    OpcUa_QualifiedName_Clear(&record.BrowseName);
    OpcUa_LocalizedText_Clear(&record.DisplayName);
    record.NodeClass = OpcUa_NodeClass_Unspecified;
    OpcUa_ExpandedNodeId_Clear(&record.TypeDefinition);
}

void decodeAndClearRecordsStraight(benchmark::State& state)
{
    Reader reader;
    std::vector<OpcUa_ReferenceDescription> records(recordCount);
    bool isRight = true;
    for (auto _ : state) {
        reader.restart();
        OpcUa_BinaryReader& straight = *OpcUa_BinaryReader_FromDecoder(reader.decoder());
        for (OpcUa_ReferenceDescription& record : records) {
            isRight &= OpcUa_IsGood(readStraight(straight, record));
        }
        for (OpcUa_ReferenceDescription& record : records) {
            clearStraight(record);
        }
    }
    check(state, isRight);
    state.SetBytesProcessed(state.iterations() * reader.size());
}
BENCHMARK(decodeAndClearRecordsStraight);

} // namespace
