#include "platform/status.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_types.h"
#include "tests/stack/recordcoder.h"
#include "tests/stack/recordsamples.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

namespace {

const OpcUa_EncodeableType& rangeType = OpcUa_Range_EncodeableType;
const OpcUa_EncodeableType& requestType = OpcUa_ReadRequest_EncodeableType;

/// A range as it lies in a stream: two doubles, -1.5 and 2.5.
const Bytes rangeBytes = {0, 0, 0, 0, 0, 0, 0xF8, 0xBF, 0, 0, 0, 0, 0, 0, 0x04, 0x40};

/// What a stream holds; it is deleted.
Bytes takeBytes(OpcUa_OutputStream* stream)
{
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(stream, &buffer, &length), OpcUa_Good);
    Bytes bytes(buffer, buffer + length);
    stream->Interface->Delete(&stream);
    return bytes;
}

/// An input stream over some bytes, which must live as long.
class Input
{
public:
    explicit Input(const Bytes& bytes)
    {
        EXPECT_EQ(OpcUa_MemoryInputStream_Create(
                      bytes.data(), static_cast<OpcUa_UInt32>(bytes.size()), &m_stream),
                  OpcUa_Good);
    }
    ~Input() { m_stream->Interface->Delete(&m_stream); }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    [[nodiscard]] OpcUa_InputStream* get() { return m_stream; }

private:
    OpcUa_InputStream* m_stream = nullptr;
};

TEST(EncodeableObject, create_refuses_null_and_gives_null)
{
    void* object = &object;
    EXPECT_EQ(OpcUa_EncodeableObject_Create(nullptr, &object), OpcUa_BadInvalidArgument);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(OpcUa_EncodeableObject_Create(&rangeType, nullptr), OpcUa_BadInvalidArgument);
}

TEST(EncodeableObject, create_makes_an_initialized_record_of_every_type)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        void* object = nullptr;
        EXPECT_EQ(OpcUa_EncodeableObject_Create(layout->Type, &object), OpcUa_Good);
        EXPECT_TRUE(isInitialized(*layout, object)) << layout->Type->TypeName;
        OpcUa_EncodeableObject_Delete(layout->Type, &object);
        EXPECT_EQ(object, nullptr);
    }
}

TEST(EncodeableObject, create_without_memory_gives_null)
{
    void* object = nullptr;
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return OpcUa_EncodeableObject_Create(&rangeType, &object); },
        [&](OpcUa_StatusCode status) {
            EXPECT_EQ(status, OpcUa_BadOutOfMemory);
            EXPECT_EQ(object, nullptr);
        });
    EXPECT_EQ(failures, 1u);
    OpcUa_EncodeableObject_Delete(&rangeType, &object);
}

TEST(EncodeableObject, delete_allows_null)
{
    void* object = nullptr;
    OpcUa_EncodeableObject_Delete(&rangeType, &object);
    OpcUa_EncodeableObject_Delete(&rangeType, nullptr);
    OpcUa_EncodeableObject_Delete(nullptr, &object);
}

TEST(EncodeableObject, create_extension_clears_it_and_puts_a_record_in)
{
    OpcUa_ExtensionObject extension;
    OpcUa_ExtensionObject_Initialize(&extension);
    fillWithTestRecord(extension, 5, "old");
    extension.BodySize = 9;
    void* object = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_CreateExtension(&rangeType, &extension, &object), OpcUa_Good);
    EXPECT_EQ(extension.Encoding, OpcUa_ExtensionObjectEncoding_EncodeableObject);
    EXPECT_EQ(extension.Body.EncodeableObject.Object, object);
    EXPECT_EQ(extension.Body.EncodeableObject.Type, &rangeType);
    EXPECT_EQ(extension.BodySize, 0);
    EXPECT_EQ(extension.TypeId.NodeId.Identifier.Numeric, rangeType.BinaryEncodingTypeId);
    EXPECT_TRUE(isInitialized(layoutOf("Range"), object));
    OpcUa_ExtensionObject_Clear(&extension);
}

TEST(EncodeableObject, create_extension_leaves_the_type_id_of_another_namespace_null)
{
    OpcUa_EncodeableType own = rangeType;
    own.NamespaceUri = "urn:example";
    OpcUa_ExtensionObject extension;
    OpcUa_ExtensionObject_Initialize(&extension);
    void* object = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_CreateExtension(&own, &extension, &object), OpcUa_Good);
    EXPECT_TRUE(OpcUa_NodeId_IsNull(&extension.TypeId.NodeId));
    OpcUa_ExtensionObject_Clear(&extension);
}

TEST(EncodeableObject, create_extension_refuses_null_and_clears_it_without_memory)
{
    OpcUa_ExtensionObject extension;
    OpcUa_ExtensionObject_Initialize(&extension);
    void* object = &object;
    EXPECT_EQ(OpcUa_EncodeableObject_CreateExtension(nullptr, &extension, &object),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(OpcUa_EncodeableObject_CreateExtension(&rangeType, nullptr, &object),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_EncodeableObject_CreateExtension(&rangeType, &extension, nullptr),
              OpcUa_BadInvalidArgument);
    fillWithTestRecord(extension, 5, "old");
    const std::size_t failures = forEveryFailingAllocation(
        [&] { return OpcUa_EncodeableObject_CreateExtension(&rangeType, &extension, &object); },
        [&](OpcUa_StatusCode status) {
            EXPECT_EQ(status, OpcUa_BadOutOfMemory);
            EXPECT_EQ(object, nullptr);
            EXPECT_EQ(extension.Encoding, OpcUa_ExtensionObjectEncoding_None);
        });
    EXPECT_EQ(failures, 1u);
    OpcUa_ExtensionObject_Clear(&extension);
}

TEST(EncodeableObject, encode_writes_the_record_to_a_new_stream)
{
    const OpcUa_Range range = {-1.5, 2.5};
    OpcUa_OutputStream* stream = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_Encode(&rangeType, &range, &unlimitedContext(), &stream),
              OpcUa_Good);
    EXPECT_EQ(takeBytes(stream), rangeBytes);
}

TEST(EncodeableObject, decode_reads_a_new_record_and_leaves_what_follows)
{
    Bytes bytes = rangeBytes;
    bytes.push_back(1);
    Input input(bytes);
    void* record = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_Decode(&rangeType, input.get(), &unlimitedContext(), &record),
              OpcUa_Good);
    EXPECT_EQ(static_cast<OpcUa_Range*>(record)->Low, -1.5);
    EXPECT_EQ(static_cast<OpcUa_Range*>(record)->High, 2.5);
    OpcUa_EncodeableObject_Delete(&rangeType, &record);
    OpcUa_UInt32 position = 0;
    EXPECT_EQ(OpcUa_MemoryInputStream_GetPosition(input.get(), &position), OpcUa_Good);
    EXPECT_EQ(position, rangeBytes.size());
}

TEST(EncodeableObject, both_ways_for_every_type)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        SCOPED_TRACE(layout->Type->TypeName);
        const SampleRecord record(*layout, RecordSample::Nested);
        OpcUa_OutputStream* stream = nullptr;
        EXPECT_EQ(
            OpcUa_EncodeableObject_Encode(layout->Type, record.get(), &unlimitedContext(), &stream),
            OpcUa_Good);
        const Bytes bytes = takeBytes(stream);
        EXPECT_EQ(bytes, encodedRecord(*layout->Type, record.get()));
        Input input(bytes);
        void* decoded = nullptr;
        EXPECT_EQ(
            OpcUa_EncodeableObject_Decode(layout->Type, input.get(), &unlimitedContext(), &decoded),
            OpcUa_Good);
        EXPECT_EQ(layout->Type->Compare(record.get(), decoded), 0);
        OpcUa_EncodeableObject_Delete(layout->Type, &decoded);
    }
}

TEST(EncodeableObject, coding_refuses_null)
{
    const OpcUa_Range range = {};
    const OpcUa_MessageContext& context = unlimitedContext();
    OpcUa_OutputStream* const leftover = reinterpret_cast<OpcUa_OutputStream*>(0x10);
    const OpcUa_EncodeableType* types[] = {nullptr, &rangeType, &rangeType};
    const void* records[] = {&range, nullptr, &range};
    const OpcUa_MessageContext* contexts[] = {&context, &context, nullptr};
    Input input(rangeBytes);
    OpcUa_InputStream* inputs[] = {input.get(), nullptr, input.get()};
    for (int i = 0; i < 3; ++i) {
        OpcUa_OutputStream* stream = leftover;
        EXPECT_EQ(OpcUa_EncodeableObject_Encode(types[i], records[i], contexts[i], &stream),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(stream, nullptr);
        void* record = leftover;
        EXPECT_EQ(OpcUa_EncodeableObject_Decode(types[i], inputs[i], contexts[i], &record),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(record, nullptr);
    }
    EXPECT_EQ(OpcUa_EncodeableObject_Encode(&rangeType, &range, &context, nullptr),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_EncodeableObject_Decode(&rangeType, input.get(), &context, nullptr),
              OpcUa_BadInvalidArgument);
}

TEST(EncodeableObject, coding_supports_the_binary_encoding_only)
{
    OpcUa_MessageContext context = unlimitedContext();
    context.Encoding = OpcUa_MessageEncoding_Xml;
    const OpcUa_Range range = {};
    OpcUa_OutputStream* stream = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_Encode(&rangeType, &range, &context, &stream),
              OpcUa_BadNotSupported);
    EXPECT_EQ(stream, nullptr);
    Input input(rangeBytes);
    void* record = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_Decode(&rangeType, input.get(), &context, &record),
              OpcUa_BadNotSupported);
    EXPECT_EQ(record, nullptr);
}

TEST(EncodeableObject, encode_keeps_to_the_size_of_a_message)
{
    const OpcUa_Range range = {-1.5, 2.5};
    OpcUa_MessageContext context = unlimitedContext();
    context.MaxMessageSize = 16;
    OpcUa_OutputStream* stream = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_Encode(&rangeType, &range, &context, &stream), OpcUa_Good);
    EXPECT_EQ(takeBytes(stream), rangeBytes);
    context.MaxMessageSize = 15;
    EXPECT_EQ(OpcUa_EncodeableObject_Encode(&rangeType, &range, &context, &stream),
              OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(stream, nullptr);
}

TEST(EncodeableObject, a_failed_coding_gives_null_and_its_status)
{
    OpcUa_ReadRequest request;
    OpcUa_ReadRequest_Initialize(&request);
    request.RequestHeader.AuthenticationToken.IdentifierType = 9;
    OpcUa_OutputStream* stream = nullptr;
    EXPECT_EQ(OpcUa_EncodeableObject_Encode(&requestType, &request, &unlimitedContext(), &stream),
              OpcUa_BadEncodingError);
    EXPECT_EQ(stream, nullptr);
    const Bytes bytes = {0x3F};
    Input input(bytes);
    void* record = nullptr;
    EXPECT_EQ(
        OpcUa_EncodeableObject_Decode(&requestType, input.get(), &unlimitedContext(), &record),
        OpcUa_BadDecodingError);
    EXPECT_EQ(record, nullptr);
}

TEST(EncodeableObject, every_failed_allocation_gives_null)
{
    const SampleRecord request(layoutOf("ReadRequest"), RecordSample::Nested);
    OpcUa_OutputStream* stream = nullptr;
    EXPECT_GT(forEveryFailingAllocation(
                  [&] {
                      return OpcUa_EncodeableObject_Encode(&requestType, request.get(),
                                                           &unlimitedContext(), &stream);
                  },
                  [&](OpcUa_StatusCode status) {
                      EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                      EXPECT_EQ(stream, nullptr);
                  }),
              0u);
    const Bytes bytes = takeBytes(stream);
    Input input(bytes);
    void* record = nullptr;
    EXPECT_GT(forEveryFailingAllocation(
                  [&] {
                      EXPECT_EQ(OpcUa_MemoryInputStream_Reset(input.get()), OpcUa_Good);
                      return OpcUa_EncodeableObject_Decode(&requestType, input.get(),
                                                           &unlimitedContext(), &record);
                  },
                  [&](OpcUa_StatusCode status) {
                      EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                      EXPECT_EQ(record, nullptr);
                  }),
              0u);
    EXPECT_EQ(requestType.Compare(request.get(), record), 0);
    OpcUa_EncodeableObject_Delete(&requestType, &record);
}

} // namespace
