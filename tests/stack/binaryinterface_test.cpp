// The handles of encoders and decoders: what every operation checks before it does anything.

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_binarysink.h"
#include "stack/opcua_binarysource.h"
#include "stack/opcua_memorystream.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>

namespace {

using Writer = OpcUa_EncoderInterface;
using Reader = OpcUa_DecoderInterface;

/// One operation of the table, called with good arguments but for the handle, and with a null value.
template <typename Handle>
struct Operation
{
    std::string name;
    std::size_t index; ///< In the table.
    std::function<OpcUa_StatusCode(Handle*)> call;
    std::function<OpcUa_StatusCode(Handle*)> callWithNull;
};

/// Number of an operation in a table of pointers.
template <typename Interface, typename Member>
std::size_t indexOf(Member Interface::*member)
{
    const Interface table{};
    return static_cast<std::size_t>(reinterpret_cast<const char*>(&(table.*member)) -
                                    reinterpret_cast<const char*>(&table)) /
           sizeof(void (*)());
}

/// Memory that is a valid initialised value of any built-in type but for numbers, which are 0.
void* anyValue(OpcUa_Byte type)
{
    static std::vector<std::unique_ptr<BuiltInValue>> values;
    values.push_back(std::make_unique<BuiltInValue>(type));
    return values.back()->get();
}

/// A pointer that is to be overwritten.
template <typename T>
T* notNull()
{
    static T value;
    return &value;
}

const char* uri()
{
    return "urn:sample";
}

TestRecord emptyRecord()
{
    TestRecord record;
    testRecordType.Initialize(&record);
    return record;
}

std::vector<Operation<OpcUa_Encoder>> writeOperations()
{
    using Encoder = OpcUa_Encoder;
    static TestRecord record = emptyRecord();
    static OpcUa_Int32 number = 0;
    static const std::vector<OpcUa_Byte> order = {OpcUaType_Boolean,
                                                  OpcUaType_SByte,
                                                  OpcUaType_Byte,
                                                  OpcUaType_Int16,
                                                  OpcUaType_UInt16,
                                                  OpcUaType_Int32,
                                                  OpcUaType_UInt32,
                                                  OpcUaType_Int64,
                                                  OpcUaType_UInt64,
                                                  OpcUaType_Float,
                                                  OpcUaType_Double,
                                                  OpcUaType_String,
                                                  OpcUaType_DateTime,
                                                  OpcUaType_Guid,
                                                  OpcUaType_ByteString,
                                                  OpcUaType_XmlElement,
                                                  OpcUaType_NodeId,
                                                  OpcUaType_ExpandedNodeId,
                                                  OpcUaType_StatusCode,
                                                  OpcUaType_DiagnosticInfo,
                                                  OpcUaType_LocalizedText,
                                                  OpcUaType_QualifiedName,
                                                  OpcUaType_ExtensionObject,
                                                  OpcUaType_DataValue,
                                                  OpcUaType_Variant};
    std::vector<Operation<Encoder>> operations = {
        {"PushNamespace", indexOf(&Writer::PushNamespace),
         [](Encoder* e) { return OpcUa_BinaryEncoder_Interface.PushNamespace(e, uri()); },
         [](Encoder* e) { return OpcUa_BinaryEncoder_Interface.PushNamespace(e, nullptr); }},
        {"PopNamespace", indexOf(&Writer::PopNamespace),
         [](Encoder* e) { return OpcUa_BinaryEncoder_Interface.PopNamespace(e); },
         [](Encoder*) { return OpcUa_BinaryEncoder_Interface.PopNamespace(nullptr); }},
        {"WriteEncodeable", indexOf(&Writer::WriteEncodeable),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeable(e, "", &record, &testRecordType,
                                                                  nullptr);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeable(e, "", nullptr, &testRecordType,
                                                                  nullptr);
         }},
        {"WriteEncodeableWithoutRow", indexOf(&Writer::WriteEncodeable),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeable(e, nullptr, &record,
                                                                  &testRecordType, &number);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeable(e, "", &record, nullptr, nullptr);
         }},
        {"WriteEnumerated", indexOf(&Writer::WriteEnumerated),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEnumerated(e, "", &number, nullptr);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEnumerated(e, "", nullptr, nullptr);
         }},
        {"WriteEncodeableArray", indexOf(&Writer::WriteEncodeableArray),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeableArray(e, "", &record, 1,
                                                                       &testRecordType, nullptr);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeableArray(e, "", nullptr, 1,
                                                                       &testRecordType, nullptr);
         }},
        {"WriteEncodeableArrayWithoutRow", indexOf(&Writer::WriteEncodeableArray),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeableArray(e, "", nullptr, -1,
                                                                       &testRecordType, nullptr);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEncodeableArray(e, "", &record, 1, nullptr,
                                                                       nullptr);
         }},
        {"WriteEnumeratedArray", indexOf(&Writer::WriteEnumeratedArray),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEnumeratedArray(e, "", &number, 1, nullptr);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteEnumeratedArray(e, "", nullptr, 1, nullptr);
         }},
        {"WriteMessage", indexOf(&Writer::WriteMessage),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteMessage(e, &record, &testRecordType,
                                                               nullptr);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteMessage(e, nullptr, &testRecordType,
                                                               nullptr);
         }},
        {"WriteMessageWithoutRow", indexOf(&Writer::WriteMessage),
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteMessage(e, &record, &testRecordType,
                                                               &number);
         },
         [](Encoder* e) {
             return OpcUa_BinaryEncoder_Interface.WriteMessage(e, &record, nullptr, nullptr);
         }},
    };
    // The codecs call through the handle's own table, so each gets one that is whole.
    for (std::size_t i = 0; i < order.size(); ++i) {
        const BuiltInCodec& codec = codecOf(order[i]);
        void* value = anyValue(order[i]);
        const auto withTable = [](Encoder* e, auto call) {
            if (e != nullptr) {
                return call(e);
            }
            Encoder none = {&OpcUa_BinaryEncoder_Interface, nullptr};
            return call(&none);
        };
        operations.push_back(
            {codec.name, indexOf(&Writer::WriteBoolean) + i,
             [=, &codec](Encoder* e) {
                 return withTable(e, [&](Encoder* x) { return codec.write(x, value, nullptr); });
             },
             [=, &codec](Encoder* e) {
                 return withTable(e, [&](Encoder* x) { return codec.write(x, nullptr, nullptr); });
             }});
        operations.push_back({std::string(codec.name) + "Array",
                              indexOf(&Writer::WriteBooleanArray) + i,
                              [=, &codec](Encoder* e) {
                                  return withTable(e, [&](Encoder* x) {
                                      return codec.writeArray(x, value, 1, nullptr);
                                  });
                              },
                              [=, &codec](Encoder* e) {
                                  return withTable(e, [&](Encoder* x) {
                                      return codec.writeArray(x, nullptr, 1, nullptr);
                                  });
                              }});
    }
    return operations;
}

TEST(BinaryEncoder, table_lists_its_operations_in_their_order)
{
    EXPECT_EQ(indexOf(&Writer::Open), 0u);
    EXPECT_EQ(indexOf(&Writer::Close), 1u);
    EXPECT_EQ(indexOf(&Writer::Delete), 2u);
    EXPECT_EQ(indexOf(&Writer::PushNamespace), 3u);
    EXPECT_EQ(indexOf(&Writer::PopNamespace), 4u);
    EXPECT_EQ(indexOf(&Writer::WriteBoolean), 5u);
    EXPECT_EQ(indexOf(&Writer::WriteVariant), 29u);
    EXPECT_EQ(indexOf(&Writer::WriteEncodeable), 30u);
    EXPECT_EQ(indexOf(&Writer::WriteEnumerated), 31u);
    EXPECT_EQ(indexOf(&Writer::WriteBooleanArray), 32u);
    EXPECT_EQ(indexOf(&Writer::WriteVariantArray), 56u);
    EXPECT_EQ(indexOf(&Writer::WriteEncodeableArray), 57u);
    EXPECT_EQ(indexOf(&Writer::WriteEnumeratedArray), 58u);
    EXPECT_EQ(indexOf(&Writer::WriteMessage), 59u);
    EXPECT_EQ(indexOf(&Writer::WriteDiagnosticInfo), 24u);
    EXPECT_EQ(indexOf(&Writer::WriteQualifiedName), 26u);
    EXPECT_EQ(sizeof(Writer), 60 * sizeof(void (*)()));
}

TEST(BinaryDecoder, table_has_the_order_of_the_encoder)
{
    EXPECT_EQ(indexOf(&Reader::Open), 0u);
    EXPECT_EQ(indexOf(&Reader::ReadBoolean), 5u);
    EXPECT_EQ(indexOf(&Reader::ReadDiagnosticInfo), 24u);
    EXPECT_EQ(indexOf(&Reader::ReadLocalizedText), 25u);
    EXPECT_EQ(indexOf(&Reader::ReadQualifiedName), 26u);
    EXPECT_EQ(indexOf(&Reader::ReadVariant), 29u);
    EXPECT_EQ(indexOf(&Reader::ReadEncodeable), 30u);
    EXPECT_EQ(indexOf(&Reader::ReadEnumerated), 31u);
    EXPECT_EQ(indexOf(&Reader::ReadBooleanArray), 32u);
    EXPECT_EQ(indexOf(&Reader::ReadEnumeratedArray), 58u);
    EXPECT_EQ(indexOf(&Reader::ReadMessage), 59u);
    EXPECT_EQ(sizeof(Reader), sizeof(Writer));
}

TEST(BinaryEncoder, private_block_begins_with_its_sanity_value)
{
    OpcUa_Encoder* encoder = nullptr;
    ASSERT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    OpcUa_UInt32 sanity = 0;
    std::memcpy(&sanity, encoder->Handle, sizeof(sanity));
    EXPECT_EQ(sanity, 0x323278DAu);
    EXPECT_EQ(encoder->Interface->Delete(&encoder), OpcUa_Good);
    EXPECT_EQ(encoder, nullptr);
}

TEST(BinaryDecoder, private_block_begins_with_its_sanity_value)
{
    OpcUa_Decoder* decoder = nullptr;
    ASSERT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_Good);
    OpcUa_UInt32 sanity = 0;
    std::memcpy(&sanity, decoder->Handle, sizeof(sanity));
    EXPECT_EQ(sanity, 0x032150D3u);
    EXPECT_EQ(decoder->Interface->Delete(&decoder), OpcUa_Good);
    EXPECT_EQ(decoder, nullptr);
}

TEST(BinaryEncoder, every_operation_works_on_an_open_handle)
{
    TestContext context;
    for (const auto& operation : writeOperations()) {
        EncoderOnMemory encoder(context.get());
        EXPECT_EQ(operation.call(encoder.get()), OpcUa_Good) << operation.name;
    }
}

TEST(BinaryEncoder, every_operation_refuses_null)
{
    TestContext context;
    for (const auto& operation : writeOperations()) {
        EncoderOnMemory encoder(context.get());
        EXPECT_EQ(operation.call(nullptr), OpcUa_BadInvalidArgument) << operation.name;
        EXPECT_EQ(operation.callWithNull(encoder.get()), OpcUa_BadInvalidArgument)
            << operation.name;
    }
}

TEST(BinaryEncoder, every_operation_refuses_another_sanity_value)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    auto& writer = *static_cast<OpcUa_BinaryWriter*>(encoder.get()->Handle);
    writer.SanityCheck = OpcUa_BinaryDecoder_SanityCheck;
    for (const auto& operation : writeOperations()) {
        EXPECT_EQ(operation.call(encoder.get()), OpcUa_BadInvalidArgument) << operation.name;
    }
    EXPECT_EQ(OpcUa_BinaryEncoder_Interface.Close(encoder.get()), OpcUa_BadInvalidArgument);
    OpcUa_Encoder* handle = encoder.get();
    EXPECT_EQ(OpcUa_BinaryEncoder_Interface.Delete(&handle), OpcUa_BadInvalidArgument);
    writer.SanityCheck = OpcUa_BinaryEncoder_SanityCheck;
}

/// A table in which one entry was exchanged for that of another operation.
template <typename Interface>
Interface tableWithout(const Interface& table, std::size_t index)
{
    Interface changed = table;
    auto* entries = reinterpret_cast<void (**)()>(&changed);
    entries[index] = entries[index == 0 ? 1 : 0];
    return changed;
}

TEST(BinaryEncoder, every_operation_looks_for_itself_in_the_table)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 number = 0;
    const OpcUa_Byte byte = 1;
    // Through the real functions: the handle's own table no longer leads there.
    for (std::size_t index = 3; index < 60; ++index) {
        const Writer table = tableWithout(OpcUa_BinaryEncoder_Interface, index);
        OpcUa_Encoder handle = {&table, encoder.get()->Handle};
        const auto expected = [index](auto member) {
            return indexOf(member) == index ? OpcUa_BadInvalidArgument : OpcUa_Good;
        };
        const Writer& real = OpcUa_BinaryEncoder_Interface;
        EXPECT_EQ(real.WriteByte(&handle, "", &byte, nullptr), expected(&Writer::WriteByte));
        EXPECT_EQ(real.WriteInt32(&handle, "", &number, nullptr), expected(&Writer::WriteInt32));
        EXPECT_EQ(real.WriteEnumerated(&handle, "", &number, nullptr),
                  expected(&Writer::WriteEnumerated));
        EXPECT_EQ(real.WriteInt32Array(&handle, "", &number, 1, nullptr),
                  expected(&Writer::WriteInt32Array));
        EXPECT_EQ(real.WriteEnumeratedArray(&handle, "", &number, 1, nullptr),
                  expected(&Writer::WriteEnumeratedArray));
        EXPECT_EQ(real.PopNamespace(&handle), expected(&Writer::PopNamespace));
    }
}

TEST(BinaryEncoder, every_operation_has_an_address_of_its_own)
{
    std::array<void (*)(), 60> entries{};
    static_assert(sizeof(entries) == sizeof(Writer));
    std::memcpy(entries.data(), &OpcUa_BinaryEncoder_Interface, sizeof(entries));
    std::sort(entries.begin(), entries.end());
    EXPECT_NE(entries.front(), nullptr);
    EXPECT_EQ(std::adjacent_find(entries.begin(), entries.end()), entries.end());
    std::memcpy(entries.data(), &OpcUa_BinaryDecoder_Interface, sizeof(entries));
    std::sort(entries.begin(), entries.end());
    EXPECT_NE(entries.front(), nullptr);
    EXPECT_EQ(std::adjacent_find(entries.begin(), entries.end()), entries.end());
}

TEST(BinaryEncoder, every_operation_after_close_is_refused)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    EXPECT_EQ(encoder->Close(encoder.get()), OpcUa_Good);
    for (const auto& operation : writeOperations()) {
        EXPECT_EQ(operation.call(encoder.get()), OpcUa_BadInvalidState) << operation.name;
    }
    EXPECT_EQ(encoder->Close(encoder.get()), OpcUa_BadInvalidState);
    OpcUa_OutputStream* stream = nullptr;
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &stream), OpcUa_Good);
    EXPECT_EQ(encoder->Open(encoder.get(), stream, context.get()), OpcUa_BadInvalidState);
    EXPECT_EQ(stream->Interface->Delete(&stream), OpcUa_Good);
}

TEST(BinaryEncoder, every_operation_before_open_is_refused)
{
    OpcUa_Encoder* encoder = nullptr;
    ASSERT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    for (const auto& operation : writeOperations()) {
        EXPECT_EQ(operation.call(encoder), OpcUa_BadInvalidState) << operation.name;
    }
    EXPECT_EQ(encoder->Interface->Delete(&encoder), OpcUa_Good);
}

TEST(BinaryEncoder, open_refuses_what_it_cannot_use)
{
    TestContext context;
    OpcUa_OutputStream* stream = nullptr;
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &stream), OpcUa_Good);
    OpcUa_Encoder* encoder = nullptr;
    ASSERT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    const Writer& real = OpcUa_BinaryEncoder_Interface;
    EXPECT_EQ(real.Open(nullptr, stream, context.get()), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Open(encoder, nullptr, context.get()), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Open(encoder, stream, nullptr), OpcUa_BadInvalidArgument);
    context->Encoding = OpcUa_MessageEncoding_Xml;
    EXPECT_EQ(real.Open(encoder, stream, context.get()), OpcUa_BadNotSupported);
    context->Encoding = OpcUa_MessageEncoding_Binary;
    EXPECT_EQ(real.Open(encoder, stream, context.get()), OpcUa_Good);
    EXPECT_EQ(real.Open(encoder, stream, context.get()), OpcUa_BadInvalidState);
    EXPECT_EQ(real.Delete(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Delete(&encoder), OpcUa_Good);
    EXPECT_EQ(real.Delete(&encoder), OpcUa_BadInvalidArgument);
    EXPECT_EQ(stream->Interface->Delete(&stream), OpcUa_Good);
}

TEST(BinaryEncoder, create_reports_null_and_a_lack_of_memory)
{
    EXPECT_EQ(OpcUa_BinaryEncoder_Create(nullptr), OpcUa_BadInvalidArgument);
    const AllocationFaults faults(0);
    auto* encoder = notNull<OpcUa_Encoder>();
    EXPECT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_BadOutOfMemory);
    EXPECT_EQ(encoder, nullptr);
}

TEST(BinaryDecoder, create_reports_null_and_a_lack_of_memory)
{
    EXPECT_EQ(OpcUa_BinaryDecoder_Create(nullptr), OpcUa_BadInvalidArgument);
    const AllocationFaults faults(0);
    auto* decoder = notNull<OpcUa_Decoder>();
    EXPECT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_BadOutOfMemory);
    EXPECT_EQ(decoder, nullptr);
}

TEST(BinaryDecoder, open_refuses_what_it_cannot_use)
{
    TestContext context;
    OpcUa_InputStream* stream = nullptr;
    ASSERT_EQ(OpcUa_MemoryInputStream_Create(nullptr, 0, &stream), OpcUa_Good);
    OpcUa_Decoder* decoder = nullptr;
    ASSERT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_Good);
    const Reader& real = OpcUa_BinaryDecoder_Interface;
    EXPECT_EQ(real.Open(nullptr, stream, context.get()), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Open(decoder, nullptr, context.get()), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Open(decoder, stream, nullptr), OpcUa_BadInvalidArgument);
    context->Encoding = OpcUa_MessageEncoding_Xml;
    EXPECT_EQ(real.Open(decoder, stream, context.get()), OpcUa_BadNotSupported);
    context->Encoding = OpcUa_MessageEncoding_Binary;
    EXPECT_EQ(real.Open(decoder, stream, context.get()), OpcUa_Good);
    EXPECT_EQ(real.Open(decoder, stream, context.get()), OpcUa_BadInvalidState);
    EXPECT_EQ(real.Delete(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Delete(&decoder), OpcUa_Good);
    EXPECT_EQ(real.Delete(&decoder), OpcUa_BadInvalidArgument);
    EXPECT_EQ(stream->Interface->Delete(&stream), OpcUa_Good);
}

/// Calls every operation of the decoder's table with good arguments; `status` is what each must give.
void expectOfEveryRead(OpcUa_Decoder* decoder, OpcUa_StatusCode status)
{
    const Reader& real = OpcUa_BinaryDecoder_Interface;
    OpcUa_Decoder handle = {&real, decoder == nullptr ? nullptr : decoder->Handle};
    for (const BuiltInCodec& codec : builtInCodecs()) {
        SCOPED_TRACE(codec.name);
        BuiltInValue value(codec.type);
        EXPECT_EQ(codec.read(&handle, value.get()), status);
        void* values = nullptr;
        OpcUa_Int32 count = 0;
        EXPECT_EQ(codec.readArray(&handle, &values, &count), status);
    }
    TestRecord record = emptyRecord();
    void* records = nullptr;
    OpcUa_Int32* numbers = nullptr;
    OpcUa_Int32 count = 0;
    const OpcUa_EncodeableType* type = nullptr;
    EXPECT_EQ(real.PushNamespace(decoder, uri()), status);
    EXPECT_EQ(real.PopNamespace(decoder), status);
    EXPECT_EQ(real.ReadEncodeable(decoder, "", &record, &testRecordType), status);
    EXPECT_EQ(real.ReadEnumerated(decoder, "", &count), status);
    EXPECT_EQ(real.ReadEncodeableArray(decoder, "", &records, &count, &testRecordType), status);
    EXPECT_EQ(real.ReadEnumeratedArray(decoder, "", &numbers, &count), status);
    EXPECT_EQ(real.ReadMessage(decoder, &records, &type), status);
    EXPECT_EQ(real.Close(decoder), status);
}

TEST(BinaryDecoder, every_operation_refuses_a_null_handle)
{
    expectOfEveryRead(nullptr, OpcUa_BadInvalidArgument);
}

TEST(BinaryDecoder, every_operation_refuses_the_handle_of_an_encoder)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    expectOfEveryRead(reinterpret_cast<OpcUa_Decoder*>(encoder.get()), OpcUa_BadInvalidArgument);
}

TEST(BinaryEncoder, operations_refuse_the_handle_of_a_decoder)
{
    TestContext context;
    const Bytes bytes(8);
    DecoderOnMemory decoder(bytes, context.get());
    auto* handle = reinterpret_cast<OpcUa_Encoder*>(decoder.get());
    const OpcUa_Int32 number = 0;
    const Writer& real = OpcUa_BinaryEncoder_Interface;
    EXPECT_EQ(real.WriteInt32(handle, "", &number, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.WriteInt32Array(handle, "", &number, 1, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Close(handle), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Delete(&handle), OpcUa_BadInvalidArgument);
}

TEST(BinaryDecoder, every_operation_after_close_is_refused)
{
    TestContext context;
    const Bytes bytes(64);
    DecoderOnMemory decoder(bytes, context.get());
    EXPECT_EQ(decoder->Close(decoder.get()), OpcUa_Good);
    expectOfEveryRead(decoder.get(), OpcUa_BadInvalidState);
}

TEST(BinaryDecoder, every_operation_before_open_is_refused)
{
    OpcUa_Decoder* decoder = nullptr;
    ASSERT_EQ(OpcUa_BinaryDecoder_Create(&decoder), OpcUa_Good);
    expectOfEveryRead(decoder, OpcUa_BadInvalidState);
    EXPECT_EQ(decoder->Interface->Delete(&decoder), OpcUa_Good);
}

TEST(BinaryDecoder, every_operation_refuses_a_null_value)
{
    TestContext context;
    const Bytes bytes(64);
    DecoderOnMemory decoder(bytes, context.get());
    for (const BuiltInCodec& codec : builtInCodecs()) {
        SCOPED_TRACE(codec.name);
        void* values = nullptr;
        OpcUa_Int32 count = 0;
        EXPECT_EQ(codec.read(decoder.get(), nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(codec.readArray(decoder.get(), nullptr, &count), OpcUa_BadInvalidArgument);
        EXPECT_EQ(codec.readArray(decoder.get(), &values, nullptr), OpcUa_BadInvalidArgument);
    }
    const Reader& real = OpcUa_BinaryDecoder_Interface;
    TestRecord record;
    void* records = nullptr;
    OpcUa_Int32 count = 0;
    const OpcUa_EncodeableType* type = nullptr;
    OpcUa_Decoder* handle = decoder.get();
    EXPECT_EQ(real.PushNamespace(handle, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadEncodeable(handle, "", nullptr, &testRecordType), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadEncodeable(handle, "", &record, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadEncodeableArray(handle, "", nullptr, &count, &testRecordType),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadEncodeableArray(handle, "", &records, nullptr, &testRecordType),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadEncodeableArray(handle, "", &records, &count, nullptr),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadMessage(handle, nullptr, &type), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.ReadMessage(handle, &records, nullptr), OpcUa_BadInvalidArgument);
}

TEST(BinaryDecoder, operations_look_for_themselves_in_the_table)
{
    TestContext context;
    const Bytes bytes(4096);
    for (std::size_t index = 3; index < 60; ++index) {
        DecoderOnMemory decoder(bytes, context.get());
        const Reader table = tableWithout(OpcUa_BinaryDecoder_Interface, index);
        OpcUa_Decoder handle = {&table, decoder.get()->Handle};
        const auto expected = [index](auto member) {
            return indexOf(member) == index ? OpcUa_BadInvalidArgument : OpcUa_Good;
        };
        const Reader& real = OpcUa_BinaryDecoder_Interface;
        OpcUa_Byte byte = 0;
        OpcUa_Int32 number = 0;
        OpcUa_Int32* numbers = nullptr;
        EXPECT_EQ(real.ReadByte(&handle, "", &byte), expected(&Reader::ReadByte));
        EXPECT_EQ(real.ReadInt32(&handle, "", &number), expected(&Reader::ReadInt32));
        EXPECT_EQ(real.ReadEnumerated(&handle, "", &number), expected(&Reader::ReadEnumerated));
        EXPECT_EQ(real.ReadInt32Array(&handle, "", &numbers, &number),
                  expected(&Reader::ReadInt32Array));
    }
}

// Sizes --------------------------------------------------------------------------------------------

TEST(BinaryEncoder, size_is_added_to_what_is_there_and_nothing_is_written)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 size = 10;
    const OpcUa_Double value = 1;
    EXPECT_EQ(encoder->WriteDouble(encoder.get(), "", &value, &size), OpcUa_Good);
    EXPECT_EQ(size, 18);
    EXPECT_EQ(encoder->WriteDoubleArray(encoder.get(), "", &value, 1, &size), OpcUa_Good);
    EXPECT_EQ(size, 30);
    EXPECT_TRUE(encoder.bytes().empty());
}

TEST(BinaryEncoder, size_beyond_a_signed_number_is_refused)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    const OpcUa_Double value = 1;
    OpcUa_Int32 size = std::numeric_limits<OpcUa_Int32>::max() - 8;
    EXPECT_EQ(encoder->WriteDouble(encoder.get(), "", &value, &size), OpcUa_Good);
    EXPECT_EQ(size, std::numeric_limits<OpcUa_Int32>::max());
    const OpcUa_Byte byte = 1;
    EXPECT_EQ(encoder->WriteByte(encoder.get(), "", &byte, &size), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(size, std::numeric_limits<OpcUa_Int32>::max());
}

TEST(BinaryEncoder, size_needs_no_stream_and_no_memory)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    for (const BuiltInSample& sample : builtInSamples()) {
        const BuiltInValue value(sample.type, sample.fill);
        const AllocationFaults faults(0);
        OpcUa_Int32 size = 0;
        EXPECT_EQ(codecOf(sample.type).write(encoder.get(), value.get(), &size), OpcUa_Good);
        EXPECT_GT(size, 0);
    }
}

// Memory -------------------------------------------------------------------------------------------

TEST(BinaryEncoder, writing_into_a_stream_with_a_size_takes_no_memory)
{
    TestContext context;
    std::array<OpcUa_Byte, 4096> block;
    OpcUa_OutputStream* stream = nullptr;
    OpcUa_Encoder* encoder = nullptr;
    ASSERT_EQ(OpcUa_MemoryOutputStream_Attach(block.data(), block.size(), &stream), OpcUa_Good);
    ASSERT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    ASSERT_EQ(encoder->Interface->Open(encoder, stream, context.get()), OpcUa_Good);
    for (const BuiltInSample& sample : builtInSamples()) {
        SCOPED_TRACE(sample.name);
        const BuiltInValue value(sample.type, sample.fill);
        const AllocationFaults faults(0);
        EXPECT_EQ(codecOf(sample.type).write(encoder, value.get(), nullptr), OpcUa_Good);
    }
    EXPECT_EQ(encoder->Interface->Delete(&encoder), OpcUa_Good);
    EXPECT_EQ(stream->Interface->Delete(&stream), OpcUa_Good);
}

TEST(BinaryDecoder, reading_takes_a_block_for_an_array_and_one_for_each_text)
{
    TestContext context;
    Bytes bytes = fromHex("8C 64 00 00 00");
    for (int i = 0; i < 100; ++i) {
        const Bytes text = fromHex("02 00 00 00 41 42");
        bytes.insert(bytes.end(), text.begin(), text.end());
    }
    DecoderOnMemory decoder(bytes, context.get());
    OpcUa_Variant value;
    static std::size_t allocations = 0;
    OpcUa_Memory_SetFaultHook([](std::size_t) {
        ++allocations;
        return false;
    });
    EXPECT_EQ(decoder->ReadVariant(decoder.get(), "", &value), OpcUa_Good);
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_EQ(allocations, 101u);
    OpcUa_Variant_Clear(&value);
}

} // namespace
