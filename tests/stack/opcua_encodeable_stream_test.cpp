#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_inputstream.h"
#include "stack/opcua_outputstream.h"
#include "tests/stack/recordcoder.h"
#include "tests/stack/recordsamples.h"

#include <gtest/gtest.h>

#include <algorithm>

// Records through binary coders whose streams are no blocks of memory.

namespace {

/// Puts what is written behind what was written, and can refuse it.
struct OutputToBytes
{
    Bytes bytes;
    std::size_t writes = 0;
    OpcUa_StatusCode status = OpcUa_Good;

    static OpcUa_StatusCode write(OpcUa_OutputStream* stream, const OpcUa_Byte* data,
                                  OpcUa_UInt32 length)
    {
        auto& self = *static_cast<OutputToBytes*>(stream->Handle);
        self.bytes.insert(self.bytes.end(), data, data + length);
        ++self.writes;
        return self.status;
    }
};

OpcUa_StatusCode encodeTo(OutputToBytes& output, const OpcUa_EncodeableType& type,
                          const void* record)
{
    const OpcUa_OutputStreamInterface table = {OutputToBytes::write, nullptr, nullptr, nullptr};
    OpcUa_OutputStream stream = {&table, &output};
    OpcUa_Encoder* encoder = nullptr;
    EXPECT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    EXPECT_EQ(encoder->Interface->Open(encoder, &stream, &unlimitedContext()), OpcUa_Good);
    const OpcUa_StatusCode status = type.Encode(record, encoder);
    encoder->Interface->Delete(&encoder);
    return status;
}

/// Gives the bytes in the pieces that are asked for.
struct InputFromBytes
{
    std::span<const OpcUa_Byte> bytes;

    static OpcUa_StatusCode read(OpcUa_InputStream* stream, OpcUa_Byte* data, OpcUa_UInt32 length,
                                 OpcUa_UInt32* readLength)
    {
        auto& self = *static_cast<InputFromBytes*>(stream->Handle);
        const std::size_t size = std::min<std::size_t>(length, self.bytes.size());
        std::copy_n(self.bytes.begin(), size, data);
        self.bytes = self.bytes.subspan(size);
        *readLength = static_cast<OpcUa_UInt32>(size);
        return size == length ? OpcUa_Good : OpcUa_BadEndOfStream;
    }

    static OpcUa_StatusCode getRemaining(OpcUa_InputStream* stream, OpcUa_UInt32* remaining)
    {
        *remaining =
            static_cast<OpcUa_UInt32>(static_cast<InputFromBytes*>(stream->Handle)->bytes.size());
        return OpcUa_Good;
    }
};

OpcUa_StatusCode decodeFrom(std::span<const OpcUa_Byte> bytes, const OpcUa_EncodeableType& type,
                            void* record)
{
    const OpcUa_InputStreamInterface table = {InputFromBytes::read, InputFromBytes::getRemaining,
                                              nullptr, nullptr};
    InputFromBytes input = {bytes};
    OpcUa_InputStream stream = {&table, &input};
    OpcUa_Decoder* decoder = nullptr;
    EXPECT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_Good);
    EXPECT_EQ(decoder->Interface->Open(decoder, &stream, &unlimitedContext()), OpcUa_Good);
    const OpcUa_StatusCode status = type.Decode(record, decoder);
    decoder->Interface->Delete(&decoder);
    return status;
}

TEST(EncodeableStream, a_record_is_one_write_of_the_same_bytes)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        SCOPED_TRACE(layout->Type->TypeName);
        const SampleRecord record(*layout, RecordSample::Nested);
        OutputToBytes output;
        EXPECT_EQ(encodeTo(output, *layout->Type, record.get()), OpcUa_Good);
        EXPECT_EQ(output.writes, 1u);
        EXPECT_EQ(output.bytes, encodedRecord(*layout->Type, record.get()));
    }
}

TEST(EncodeableStream, a_refused_write_is_the_status_of_the_encoding)
{
    const OpcUa_RecordLayout& layout = layoutOf("ReadRequest");
    const SampleRecord record(layout, RecordSample::Nested);
    OutputToBytes output;
    output.status = OpcUa_BadCommunicationError;
    EXPECT_EQ(encodeTo(output, *layout.Type, record.get()), OpcUa_BadCommunicationError);
}

TEST(EncodeableStream, a_record_is_read_in_pieces)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        SCOPED_TRACE(layout->Type->TypeName);
        const SampleRecord record(*layout, RecordSample::Nested);
        const Bytes bytes = encodedRecord(*layout->Type, record.get());
        SampleRecord decoded(*layout);
        EXPECT_EQ(decodeFrom(bytes, *layout->Type, decoded.get()), OpcUa_Good);
        EXPECT_EQ(layout->Type->Compare(record.get(), decoded.get()), 0);
    }
}

TEST(EncodeableStream, a_stream_that_ends_early_leaves_a_cleared_record)
{
    const OpcUa_RecordLayout& layout = layoutOf("CompositeTestType");
    const SampleRecord record(layout, RecordSample::FilledOther);
    const Bytes bytes = encodedRecord(*layout.Type, record.get());
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        SampleRecord decoded(layout);
        EXPECT_TRUE(
            OpcUa_IsBad(decodeFrom(std::span(bytes).first(length), *layout.Type, decoded.get())))
            << length;
        EXPECT_TRUE(decoded.isInitialized()) << length;
    }
}

} // namespace
