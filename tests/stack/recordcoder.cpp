#include "tests/stack/recordcoder.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

struct KnownTypes
{
    KnownTypes()
    {
        OpcUa_EncodeableTypeTable_Initialize(&table);
        if (OpcUa_IsBad(OpcUa_EncodeableTypeTable_AddTypes(&table, OpcUa_KnownEncodeableTypes))) {
            throw std::runtime_error("no memory for the known types");
        }
    }
    ~KnownTypes() { OpcUa_EncodeableTypeTable_Clear(&table); }
    KnownTypes(const KnownTypes&) = delete;
    KnownTypes& operator=(const KnownTypes&) = delete;

    OpcUa_EncodeableTypeTable table;
};

// Made before any test makes memory short.
KnownTypes knownTypes;

} // namespace

const OpcUa_MessageContext& unlimitedContext()
{
    static const OpcUa_MessageContext context = {
        0, 0, 0, 0, OpcUa_MessageEncoding_Binary, nullptr, &knownTypes.table};
    return context;
}

RecordWriter::RecordWriter(const OpcUa_MessageContext& context)
    : m_status(OpcUa_MemoryOutputStream_Create(64, 0, &m_stream))
{
    if (OpcUa_IsGood(m_status)) {
        m_status = OpcUa_BinaryEncoder_Create(&m_encoder);
    }
    if (OpcUa_IsGood(m_status)) {
        m_status = m_encoder->Interface->Open(m_encoder, m_stream, &context);
    }
}

RecordWriter::~RecordWriter()
{
    if (m_encoder != nullptr) {
        m_encoder->Interface->Delete(&m_encoder);
    }
    if (m_stream != nullptr) {
        m_stream->Interface->Delete(&m_stream);
    }
}

Bytes RecordWriter::bytes() const
{
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(m_stream, &buffer, &length), OpcUa_Good);
    return {buffer, buffer + length};
}

RecordReader::RecordReader(std::span<const OpcUa_Byte> bytes, const OpcUa_MessageContext& context)
    : m_status(OpcUa_MemoryInputStream_Create(bytes.data(), static_cast<OpcUa_UInt32>(bytes.size()),
                                              &m_stream))
{
    if (OpcUa_IsGood(m_status)) {
        m_status = OpcUa_BinaryDecoder_Create(&m_decoder);
    }
    if (OpcUa_IsGood(m_status)) {
        m_status = m_decoder->Interface->Open(m_decoder, m_stream, &context);
    }
}

RecordReader::~RecordReader()
{
    if (m_decoder != nullptr) {
        m_decoder->Interface->Delete(&m_decoder);
    }
    if (m_stream != nullptr) {
        m_stream->Interface->Delete(&m_stream);
    }
}

std::size_t RecordReader::position() const
{
    OpcUa_UInt32 position = 0;
    EXPECT_EQ(OpcUa_MemoryInputStream_GetPosition(m_stream, &position), OpcUa_Good);
    return position;
}

Bytes encodedRecord(const OpcUa_EncodeableType& type, const void* record)
{
    RecordWriter writer;
    OpcUa_Int32 size = 0;
    EXPECT_EQ(writer.status(), OpcUa_Good);
    EXPECT_EQ(type.GetSize(record, writer.encoder(), &size), OpcUa_Good);
    EXPECT_EQ(type.Encode(record, writer.encoder()), OpcUa_Good);
    Bytes bytes = writer.bytes();
    EXPECT_EQ(static_cast<std::size_t>(size), bytes.size());
    return bytes;
}

OpcUa_StatusCode decodeRecord(const OpcUa_EncodeableType& type, std::span<const OpcUa_Byte> bytes,
                              void* record)
{
    RecordReader reader(bytes);
    if (OpcUa_IsBad(reader.status())) {
        type.Initialize(record);
        return reader.status();
    }
    return type.Decode(record, reader.decoder());
}
