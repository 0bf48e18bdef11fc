#include "tests/stack/encodingsupport.h"

#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_memorystream.h"
#include "tests/stack/testrecord.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <stdexcept>

namespace {

using Writer = OpcUa_EncoderInterface;
using Reader = OpcUa_DecoderInterface;

void check(OpcUa_StatusCode status)
{
    if (OpcUa_IsBad(status)) {
        throw std::runtime_error("a test's own set-up failed");
    }
}

template <typename T>
BuiltInCodec makeCodec(const char* name, OpcUa_Byte type, OpcUa_WriteOperation<T> Writer::*write,
                       OpcUa_ReadOperation<T> Reader::*read,
                       OpcUa_WriteArrayOperation<T> Writer::*writeArray,
                       OpcUa_ReadArrayOperation<T> Reader::*readArray)
{
    return {name,
            type,
            [=](OpcUa_Encoder* encoder, const void* value, OpcUa_Int32* size) {
                return (encoder->Interface->*write)(encoder, "Field", static_cast<const T*>(value),
                                                    size);
            },
            [=](OpcUa_Decoder* decoder, void* value) {
                return (decoder->Interface->*read)(decoder, "Field", static_cast<T*>(value));
            },
            [=](OpcUa_Encoder* encoder, const void* values, OpcUa_Int32 count, OpcUa_Int32* size) {
                return (encoder->Interface->*writeArray)(
                    encoder, "Field", static_cast<const T*>(values), count, size);
            },
            [=](OpcUa_Decoder* decoder, void** values, OpcUa_Int32* count) {
                T* block = nullptr;
                const OpcUa_StatusCode status = (decoder->Interface->*readArray)(
                    decoder, "Field", values == nullptr ? nullptr : &block, count);
                if (values != nullptr) {
                    *values = block;
                }
                return status;
            }};
}

} // namespace

Bytes fromHex(std::string_view text)
{
    Bytes bytes;
    std::string digits;
    for (const char character : text) {
        if (std::isspace(static_cast<unsigned char>(character)) == 0) {
            digits += character;
        }
    }
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(static_cast<OpcUa_Byte>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

std::string toHex(const Bytes& bytes)
{
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (const OpcUa_Byte byte : bytes) {
        text += text.empty() ? "" : " ";
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

TestContext::TestContext()
{
    OpcUa_EncodeableTypeTable_Initialize(&m_types);
    OpcUa_NamespaceTable_Initialize(&m_namespaces);
    check(OpcUa_NamespaceTable_AddUri(&m_namespaces, OpcUa_NamespaceTable_StandardUri, nullptr));
    check(OpcUa_NamespaceTable_AddUri(&m_namespaces, "urn:sample", nullptr));
    addType(testRecordType);
    OpcUa_MessageContext_Initialize(&m_context);
    m_context.KnownTypes = &m_types;
    m_context.NamespaceUris = &m_namespaces;
}

TestContext::~TestContext()
{
    OpcUa_EncodeableTypeTable_Clear(&m_types);
    OpcUa_NamespaceTable_Clear(&m_namespaces);
}

void TestContext::addType(const OpcUa_EncodeableType& type)
{
    const std::array<const OpcUa_EncodeableType*, 2> types = {&type, nullptr};
    check(OpcUa_EncodeableTypeTable_AddTypes(&m_types, types.data()));
}

EncoderOnMemory::EncoderOnMemory(OpcUa_MessageContext* context, OpcUa_UInt32 maxSize)
{
    check(OpcUa_MemoryOutputStream_Create(0, maxSize, &m_stream));
    check(OpcUa_BinaryEncoder_Create(&m_encoder));
    check(m_encoder->Interface->Open(m_encoder, m_stream, context));
}

EncoderOnMemory::~EncoderOnMemory()
{
    EXPECT_EQ(m_encoder->Interface->Delete(&m_encoder), OpcUa_Good);
    EXPECT_EQ(m_stream->Interface->Delete(&m_stream), OpcUa_Good);
}

Bytes EncoderOnMemory::bytes() const
{
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(m_stream, &buffer, &length), OpcUa_Good);
    return {buffer, buffer + length};
}

DecoderOnMemory::DecoderOnMemory(const Bytes& bytes, OpcUa_MessageContext* context)
{
    check(OpcUa_MemoryInputStream_Create(bytes.data(), static_cast<OpcUa_UInt32>(bytes.size()),
                                         &m_stream));
    check(OpcUa_BinaryDecoder_Create(&m_decoder));
    check(m_decoder->Interface->Open(m_decoder, m_stream, context));
}

DecoderOnMemory::~DecoderOnMemory()
{
    EXPECT_EQ(m_decoder->Interface->Delete(&m_decoder), OpcUa_Good);
    EXPECT_EQ(m_stream->Interface->Delete(&m_stream), OpcUa_Good);
}

OpcUa_UInt32 DecoderOnMemory::remaining() const
{
    OpcUa_UInt32 remaining = 0;
    EXPECT_EQ(m_stream->Interface->GetRemaining(m_stream, &remaining), OpcUa_Good);
    return remaining;
}

const std::vector<BuiltInCodec>& builtInCodecs()
{
    static const std::vector<BuiltInCodec> codecs = {
        makeCodec("Boolean", OpcUaType_Boolean, &Writer::WriteBoolean, &Reader::ReadBoolean,
                  &Writer::WriteBooleanArray, &Reader::ReadBooleanArray),
        makeCodec("SByte", OpcUaType_SByte, &Writer::WriteSByte, &Reader::ReadSByte,
                  &Writer::WriteSByteArray, &Reader::ReadSByteArray),
        makeCodec("Byte", OpcUaType_Byte, &Writer::WriteByte, &Reader::ReadByte,
                  &Writer::WriteByteArray, &Reader::ReadByteArray),
        makeCodec("Int16", OpcUaType_Int16, &Writer::WriteInt16, &Reader::ReadInt16,
                  &Writer::WriteInt16Array, &Reader::ReadInt16Array),
        makeCodec("UInt16", OpcUaType_UInt16, &Writer::WriteUInt16, &Reader::ReadUInt16,
                  &Writer::WriteUInt16Array, &Reader::ReadUInt16Array),
        makeCodec("Int32", OpcUaType_Int32, &Writer::WriteInt32, &Reader::ReadInt32,
                  &Writer::WriteInt32Array, &Reader::ReadInt32Array),
        makeCodec("UInt32", OpcUaType_UInt32, &Writer::WriteUInt32, &Reader::ReadUInt32,
                  &Writer::WriteUInt32Array, &Reader::ReadUInt32Array),
        makeCodec("Int64", OpcUaType_Int64, &Writer::WriteInt64, &Reader::ReadInt64,
                  &Writer::WriteInt64Array, &Reader::ReadInt64Array),
        makeCodec("UInt64", OpcUaType_UInt64, &Writer::WriteUInt64, &Reader::ReadUInt64,
                  &Writer::WriteUInt64Array, &Reader::ReadUInt64Array),
        makeCodec("Float", OpcUaType_Float, &Writer::WriteFloat, &Reader::ReadFloat,
                  &Writer::WriteFloatArray, &Reader::ReadFloatArray),
        makeCodec("Double", OpcUaType_Double, &Writer::WriteDouble, &Reader::ReadDouble,
                  &Writer::WriteDoubleArray, &Reader::ReadDoubleArray),
        makeCodec("String", OpcUaType_String, &Writer::WriteString, &Reader::ReadString,
                  &Writer::WriteStringArray, &Reader::ReadStringArray),
        makeCodec("DateTime", OpcUaType_DateTime, &Writer::WriteDateTime, &Reader::ReadDateTime,
                  &Writer::WriteDateTimeArray, &Reader::ReadDateTimeArray),
        makeCodec("Guid", OpcUaType_Guid, &Writer::WriteGuid, &Reader::ReadGuid,
                  &Writer::WriteGuidArray, &Reader::ReadGuidArray),
        makeCodec("ByteString", OpcUaType_ByteString, &Writer::WriteByteString,
                  &Reader::ReadByteString, &Writer::WriteByteStringArray,
                  &Reader::ReadByteStringArray),
        makeCodec("XmlElement", OpcUaType_XmlElement, &Writer::WriteXmlElement,
                  &Reader::ReadXmlElement, &Writer::WriteXmlElementArray,
                  &Reader::ReadXmlElementArray),
        makeCodec("NodeId", OpcUaType_NodeId, &Writer::WriteNodeId, &Reader::ReadNodeId,
                  &Writer::WriteNodeIdArray, &Reader::ReadNodeIdArray),
        makeCodec("ExpandedNodeId", OpcUaType_ExpandedNodeId, &Writer::WriteExpandedNodeId,
                  &Reader::ReadExpandedNodeId, &Writer::WriteExpandedNodeIdArray,
                  &Reader::ReadExpandedNodeIdArray),
        makeCodec("StatusCode", OpcUaType_StatusCode, &Writer::WriteStatusCode,
                  &Reader::ReadStatusCode, &Writer::WriteStatusCodeArray,
                  &Reader::ReadStatusCodeArray),
        makeCodec("QualifiedName", OpcUaType_QualifiedName, &Writer::WriteQualifiedName,
                  &Reader::ReadQualifiedName, &Writer::WriteQualifiedNameArray,
                  &Reader::ReadQualifiedNameArray),
        makeCodec("LocalizedText", OpcUaType_LocalizedText, &Writer::WriteLocalizedText,
                  &Reader::ReadLocalizedText, &Writer::WriteLocalizedTextArray,
                  &Reader::ReadLocalizedTextArray),
        makeCodec("ExtensionObject", OpcUaType_ExtensionObject, &Writer::WriteExtensionObject,
                  &Reader::ReadExtensionObject, &Writer::WriteExtensionObjectArray,
                  &Reader::ReadExtensionObjectArray),
        makeCodec("DataValue", OpcUaType_DataValue, &Writer::WriteDataValue, &Reader::ReadDataValue,
                  &Writer::WriteDataValueArray, &Reader::ReadDataValueArray),
        makeCodec("Variant", OpcUaType_Variant, &Writer::WriteVariant, &Reader::ReadVariant,
                  &Writer::WriteVariantArray, &Reader::ReadVariantArray),
        makeCodec("DiagnosticInfo", OpcUaType_DiagnosticInfo, &Writer::WriteDiagnosticInfo,
                  &Reader::ReadDiagnosticInfo, &Writer::WriteDiagnosticInfoArray,
                  &Reader::ReadDiagnosticInfoArray)};
    return codecs;
}

std::ostream& operator<<(std::ostream& stream, const BuiltInCodec& codec)
{
    return stream << codec.name;
}

Bytes encode(TestContext& context, OpcUa_Byte type, const void* value)
{
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 size = 0;
    EXPECT_EQ(codecOf(type).write(encoder.get(), value, &size), OpcUa_Good);
    EXPECT_EQ(codecOf(type).write(encoder.get(), value, nullptr), OpcUa_Good);
    const Bytes bytes = encoder.bytes();
    EXPECT_EQ(static_cast<std::size_t>(size), bytes.size());
    return bytes;
}

OpcUa_StatusCode decode(TestContext& context, const Bytes& bytes, OpcUa_Byte type, void* value)
{
    DecoderOnMemory decoder(bytes, context.get());
    const OpcUa_StatusCode status = codecOf(type).read(decoder.get(), value);
    EXPECT_TRUE(OpcUa_IsBad(status) || decoder.remaining() == 0);
    return status;
}
