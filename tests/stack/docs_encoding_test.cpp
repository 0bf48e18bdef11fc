// The examples of docs/encoding.md.

#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_range.h"
#include "tests/stack/encodingsupport.h"

#include <gtest/gtest.h>

namespace {

class DocsEncoding : public testing::Test
{
protected:
    DocsEncoding()
    {
        OpcUa_EncodeableTypeTable_Initialize(&m_types);
        EXPECT_EQ(OpcUa_EncodeableTypeTable_AddTypes(&m_types, OpcUa_KnownEncodeableTypes),
                  OpcUa_Good);
        OpcUa_MessageContext_Initialize(&context);
        context.KnownTypes = &m_types;
    }
    ~DocsEncoding() override { OpcUa_EncodeableTypeTable_Clear(&m_types); }

    OpcUa_MessageContext context{};

private:
    OpcUa_EncodeableTypeTable m_types{};
};

TEST_F(DocsEncoding, value_is_written_and_read)
{
    // docs begin
    OpcUa_OutputStream* stream = nullptr;
    OpcUa_Encoder* encoder = nullptr;
    EXPECT_EQ(OpcUa_MemoryOutputStream_Create(256, 0, &stream), OpcUa_Good);
    EXPECT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    EXPECT_EQ(encoder->Interface->Open(encoder, stream, &context), OpcUa_Good);

    const OpcUa_Int32 number = 1000000000;
    OpcUa_Int32 size = 0;
    EXPECT_EQ(encoder->Interface->WriteInt32(encoder, "Number", &number, &size), OpcUa_Good);
    EXPECT_EQ(size, 4); // counted, not written
    EXPECT_EQ(encoder->Interface->WriteInt32(encoder, "Number", &number, nullptr), OpcUa_Good);
    EXPECT_EQ(encoder->Interface->Close(encoder), OpcUa_Good);

    const OpcUa_Byte* bytes = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(stream, &bytes, &length), OpcUa_Good);
    EXPECT_EQ(toHex({bytes, bytes + length}), "00 CA 9A 3B");
    EXPECT_EQ(encoder->Interface->Delete(&encoder), OpcUa_Good);
    EXPECT_EQ(stream->Interface->Delete(&stream), OpcUa_Good);
    // docs end
}

TEST_F(DocsEncoding, record_in_an_extension_object_is_read)
{
    // docs begin
    const Bytes bytes = fromHex("01 00 76 03 01 10 00 00 00 "
                                "00 00 00 00 00 00 00 00 00 00 00 00 00 00 59 40");
    OpcUa_InputStream* stream = nullptr;
    OpcUa_Decoder* decoder = nullptr;
    EXPECT_EQ(OpcUa_MemoryInputStream_Create(bytes.data(), 25, &stream), OpcUa_Good);
    EXPECT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_Good);
    EXPECT_EQ(decoder->Interface->Open(decoder, stream, &context), OpcUa_Good);

    OpcUa_ExtensionObject object;
    EXPECT_EQ(decoder->Interface->ReadExtensionObject(decoder, "Body", &object), OpcUa_Good);
    EXPECT_EQ(object.Body.EncodeableObject.Type, &OpcUa_Range_EncodeableType);
    const auto& range = *static_cast<OpcUa_Range*>(object.Body.EncodeableObject.Object);
    EXPECT_EQ(range.High, 100);

    OpcUa_ExtensionObject_Clear(&object);
    EXPECT_EQ(decoder->Interface->Delete(&decoder), OpcUa_Good);
    EXPECT_EQ(stream->Interface->Delete(&stream), OpcUa_Good);
    // docs end
}

} // namespace
