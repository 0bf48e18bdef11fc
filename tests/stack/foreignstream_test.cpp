// Encoders and decoders over streams other than memory streams.

#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"
#include "tests/stack/testrecord.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// A stream that keeps each write by itself and fails from a number of them on.
struct PieceStream
{
    std::vector<Bytes> pieces;
    std::size_t failAt = SIZE_MAX;
    OpcUa_OutputStream base{&table(), this};

    static const OpcUa_OutputStreamInterface& table()
    {
        static const OpcUa_OutputStreamInterface operations = {write, nullptr, nullptr, nullptr};
        return operations;
    }

    static OpcUa_StatusCode write(OpcUa_OutputStream* stream, const OpcUa_Byte* data,
                                  OpcUa_UInt32 length)
    {
        auto& self = *static_cast<PieceStream*>(stream->Handle);
        if (self.pieces.size() == self.failAt) {
            return OpcUa_BadCommunicationError;
        }
        self.pieces.emplace_back(data, data + length);
        return OpcUa_Good;
    }
};

/// An open encoder on such a stream.
class EncoderOnPieces
{
public:
    explicit EncoderOnPieces(TestContext& context)
    {
        EXPECT_EQ(OpcUa_BinaryEncoder_Create(&m_encoder), OpcUa_Good);
        EXPECT_EQ(m_encoder->Interface->Open(m_encoder, &stream.base, context.get()), OpcUa_Good);
    }
    ~EncoderOnPieces() { EXPECT_EQ(m_encoder->Interface->Delete(&m_encoder), OpcUa_Good); }
    EncoderOnPieces(const EncoderOnPieces&) = delete;
    EncoderOnPieces& operator=(const EncoderOnPieces&) = delete;

    [[nodiscard]] OpcUa_Encoder* get() { return m_encoder; }

    PieceStream stream;

private:
    OpcUa_Encoder* m_encoder = nullptr;
};

/// A stream that tells how many bytes there are, and may lie or fail.
struct SourceStream
{
    Bytes bytes;
    std::size_t position = 0;
    std::size_t promised = 0;
    OpcUa_StatusCode failure = OpcUa_Good; ///< In the place of the end.
    OpcUa_InputStream base{&table(), this};

    explicit SourceStream(const Bytes& content)
        : bytes(content)
        , promised(content.size())
    {
    }

    static const OpcUa_InputStreamInterface& table()
    {
        static const OpcUa_InputStreamInterface operations = {read, getRemaining, nullptr, nullptr};
        return operations;
    }

    static OpcUa_StatusCode read(OpcUa_InputStream* stream, OpcUa_Byte* data, OpcUa_UInt32 length,
                                 OpcUa_UInt32* readLength)
    {
        auto& self = *static_cast<SourceStream*>(stream->Handle);
        const std::size_t size = std::min<std::size_t>(length, self.bytes.size() - self.position);
        std::copy_n(self.bytes.begin() + static_cast<std::ptrdiff_t>(self.position), size, data);
        self.position += size;
        *readLength = static_cast<OpcUa_UInt32>(size);
        if (size == length) {
            return OpcUa_Good;
        }
        return OpcUa_IsBad(self.failure) ? self.failure : OpcUa_BadEndOfStream;
    }

    static OpcUa_StatusCode getRemaining(OpcUa_InputStream* stream, OpcUa_UInt32* remaining)
    {
        const auto& self = *static_cast<SourceStream*>(stream->Handle);
        *remaining = static_cast<OpcUa_UInt32>(self.promised - self.position);
        return OpcUa_Good;
    }
};

/// Reads a value that is the only one in the stream.
OpcUa_StatusCode readFrom(SourceStream& stream, TestContext& context, OpcUa_Byte type, void* value)
{
    OpcUa_Decoder* decoder = nullptr;
    EXPECT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_Good);
    EXPECT_EQ(decoder->Interface->Open(decoder, &stream.base, context.get()), OpcUa_Good);
    const OpcUa_StatusCode status = codecOf(type).read(decoder, value);
    EXPECT_EQ(decoder->Interface->Delete(&decoder), OpcUa_Good);
    return status;
}

class ForeignStream : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(ForeignStream, each_operation_is_one_write_of_the_same_bytes)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const Bytes expected = encode(context, GetParam().type, value.get());
    EncoderOnPieces encoder(context);
    const auto write = codecOf(GetParam().type).write;
    OpcUa_Int32 size = 0;
    EXPECT_EQ(write(encoder.get(), value.get(), &size), OpcUa_Good);
    EXPECT_TRUE(encoder.stream.pieces.empty());
    EXPECT_EQ(write(encoder.get(), value.get(), nullptr), OpcUa_Good);
    EXPECT_EQ(write(encoder.get(), value.get(), nullptr), OpcUa_Good);
    ASSERT_EQ(encoder.stream.pieces.size(), 2u);
    EXPECT_EQ(toHex(encoder.stream.pieces[0]), toHex(expected));
    EXPECT_EQ(toHex(encoder.stream.pieces[1]), toHex(expected));
}

TEST_P(ForeignStream, its_failure_is_that_of_the_operation)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    EncoderOnPieces encoder(context);
    encoder.stream.failAt = 1;
    const auto write = codecOf(GetParam().type).write;
    EXPECT_EQ(write(encoder.get(), value.get(), nullptr), OpcUa_Good);
    EXPECT_EQ(write(encoder.get(), value.get(), nullptr), OpcUa_BadCommunicationError);
}

TEST_P(ForeignStream, the_same_value_is_read_and_nothing_behind_it)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const Bytes bytes = encode(context, GetParam().type, value.get());
    SourceStream stream(bytes);
    stream.bytes.insert(stream.bytes.end(), {1, 2, 3, 4, 5, 6, 7, 8, 9});
    stream.promised = stream.bytes.size();
    BuiltInValue read(GetParam().type);
    EXPECT_EQ(readFrom(stream, context, GetParam().type, read.get()), OpcUa_Good);
    EXPECT_EQ(stream.position, bytes.size());
    EXPECT_EQ(toHex(encode(context, GetParam().type, read.get())), toHex(bytes));
}

TEST_P(ForeignStream, truncation_is_the_status_that_a_memory_stream_gives)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const Bytes bytes = encode(context, GetParam().type, value.get());
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const Bytes prefix(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        BuiltInValue expected(GetParam().type);
        const OpcUa_StatusCode status = decode(context, prefix, GetParam().type, expected.get());
        SourceStream honest(prefix);
        BuiltInValue read(GetParam().type);
        EXPECT_EQ(readFrom(honest, context, GetParam().type, read.get()), status) << size;
        EXPECT_TRUE(read.isCleared());
        SourceStream liar(prefix);
        liar.promised = bytes.size();
        EXPECT_TRUE(OpcUa_IsBad(readFrom(liar, context, GetParam().type, read.get()))) << size;
        EXPECT_TRUE(read.isCleared());
        SourceStream broken(prefix);
        broken.promised = bytes.size();
        broken.failure = OpcUa_BadCommunicationError;
        EXPECT_EQ(readFrom(broken, context, GetParam().type, read.get()),
                  OpcUa_BadCommunicationError)
            << size;
        EXPECT_TRUE(read.isCleared());
    }
}

INSTANTIATE_TEST_SUITE_P(Types, ForeignStream, testing::ValuesIn(builtInSamples()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ForeignStreams, length_of_a_body_is_right_also_where_nothing_can_be_patched)
{
    TestContext context;
    BuiltInValue object(OpcUaType_ExtensionObject);
    auto& outer = *static_cast<OpcUa_ExtensionObject*>(object.get());
    fillWithTestRecord(outer, 1, "outer");
    fillWithTestRecord(testRecordOf(outer).Next, 2, "inner");
    EncoderOnPieces encoder(context);
    EXPECT_EQ(encoder.get()->Interface->WriteExtensionObject(encoder.get(), "", &outer, nullptr),
              OpcUa_Good);
    ASSERT_EQ(encoder.stream.pieces.size(), 1u);
    EXPECT_EQ(toHex(encoder.stream.pieces[0]),
              toHex(encode(context, OpcUaType_ExtensionObject, &outer)));
}

TEST(ForeignStreams, message_goes_out_whole)
{
    TestContext context;
    TestRecord record;
    testRecordType.Initialize(&record);
    EncoderOnPieces encoder(context);
    EXPECT_EQ(
        encoder.get()->Interface->WriteMessage(encoder.get(), &record, &testRecordType, nullptr),
        OpcUa_Good);
    Bytes all;
    for (const Bytes& piece : encoder.stream.pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    EXPECT_EQ(toHex(all), "01 00 EA 03 00 00 00 00 FF FF FF FF 00 00 00");
}

} // namespace
