// Records in the bodies of extension objects, on their own and as messages.

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_extensionobject.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"
#include "tests/stack/testrecord.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Bodies of extension objects ----------------------------------------------------------------------

Bytes recordBytes()
{
    return fromHex("01 00 EA 03 01 0C 00 00 00 05 00 00 00 01 00 00 00 41 00 00 00");
}

TEST(ExtensionObjectBody, known_type_is_decoded_into_its_record)
{
    TestContext context;
    OpcUa_ExtensionObject object;
    ASSERT_EQ(decode(context, recordBytes(), OpcUaType_ExtensionObject, &object), OpcUa_Good);
    ASSERT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_EncodeableObject);
    EXPECT_EQ(object.Body.EncodeableObject.Type, &testRecordType);
    EXPECT_EQ(object.BodySize, 12);
    EXPECT_EQ(object.TypeId.NodeId.Identifier.Numeric, 1002u);
    EXPECT_EQ(testRecordOf(object).Number, 5);
    EXPECT_STREQ(testRecordOf(object).Name.strContent, "A");
    OpcUa_ExtensionObject_Clear(&object);
}

TEST(ExtensionObjectBody, record_is_written_under_the_id_of_its_binary_encoding)
{
    TestContext context;
    BuiltInValue object(OpcUaType_ExtensionObject);
    fillWithTestRecord(*static_cast<OpcUa_ExtensionObject*>(object.get()), 5, "A");
    EXPECT_EQ(toHex(encode(context, OpcUaType_ExtensionObject, object.get())),
              toHex(recordBytes()));
}

TEST(ExtensionObjectBody, any_id_of_a_row_finds_it)
{
    TestContext context;
    Bytes bytes = recordBytes();
    bytes[2] = 0xE9; // the id of the type itself
    OpcUa_ExtensionObject object;
    ASSERT_EQ(decode(context, bytes, OpcUaType_ExtensionObject, &object), OpcUa_Good);
    EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_EncodeableObject);
    EXPECT_EQ(toHex(encode(context, OpcUaType_ExtensionObject, &object)), toHex(recordBytes()));
    OpcUa_ExtensionObject_Clear(&object);
}

struct UnknownType
{
    const char* name;
    const char* bytes; ///< Up to the form of the body.
};

const UnknownType unknownTypes[] = {
    {"unknown_number", "01 00 EB 03"},
    {"namespace_of_another", "01 01 EA 03"},
    {"namespace_that_is_not_there", "01 09 EA 03"},
    {"uri_of_another", "81 00 EA 03 01 00 00 00 75"},
    {"another_server", "41 00 EA 03 01 00 00 00"},
    {"no_number", "03 00 00 01 00 00 00 41"},
};

TEST(ExtensionObjectBody, unknown_type_keeps_its_bytes)
{
    TestContext context;
    for (const UnknownType& row : unknownTypes) {
        SCOPED_TRACE(row.name);
        const Bytes bytes = fromHex(std::string(row.bytes) + " 01 02 00 00 00 07 08");
        OpcUa_ExtensionObject object;
        ASSERT_EQ(decode(context, bytes, OpcUaType_ExtensionObject, &object), OpcUa_Good);
        EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_Binary);
        EXPECT_EQ(object.BodySize, 2);
        EXPECT_EQ(object.Body.Binary.Data[1], 8);
        EXPECT_EQ(toHex(encode(context, OpcUaType_ExtensionObject, &object)), toHex(bytes));
        OpcUa_ExtensionObject_Clear(&object);
    }
}

TEST(ExtensionObjectBody, without_tables_every_type_keeps_its_bytes)
{
    TestContext context;
    context->KnownTypes = nullptr;
    context->NamespaceUris = nullptr;
    OpcUa_ExtensionObject object;
    ASSERT_EQ(decode(context, recordBytes(), OpcUaType_ExtensionObject, &object), OpcUa_Good);
    EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_Binary);
    EXPECT_EQ(toHex(encode(context, OpcUaType_ExtensionObject, &object)), toHex(recordBytes()));
    OpcUa_ExtensionObject_Clear(&object);
}

TEST(ExtensionObjectBody, known_type_in_xml_keeps_its_text)
{
    TestContext context;
    const Bytes bytes = fromHex("01 00 EA 03 02 03 00 00 00 3C 2F 3E");
    OpcUa_ExtensionObject object;
    ASSERT_EQ(decode(context, bytes, OpcUaType_ExtensionObject, &object), OpcUa_Good);
    EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_Xml);
    EXPECT_EQ(toHex(encode(context, OpcUaType_ExtensionObject, &object)), toHex(bytes));
    OpcUa_ExtensionObject_Clear(&object);
}

TEST(ExtensionObjectBody, bytes_are_held_against_the_limit_of_byte_strings)
{
    TestContext context;
    context->MaxByteStringLength = 2;
    OpcUa_ExtensionObject object;
    EXPECT_EQ(
        decode(context, fromHex("00 01 01 02 00 00 00 07 08"), OpcUaType_ExtensionObject, &object),
        OpcUa_Good);
    OpcUa_ExtensionObject_Clear(&object);
    EXPECT_EQ(decode(context, fromHex("00 01 01 03 00 00 00 07 08 09"), OpcUaType_ExtensionObject,
                     &object),
              OpcUa_BadEncodingLimitsExceeded);
}

struct WrongBody
{
    const char* name;
    OpcUa_Byte length;
    OpcUa_StatusCode status;
};

const WrongBody wrongBodies[] = {
    {"longer_than_its_record", 13, OpcUa_BadDecodingError},
    {"cut_within_a_number", 2, OpcUa_BadEndOfStream},
    {"cut_within_a_text", 8, OpcUa_BadExpectedStreamToBlock},
    {"cut_behind_a_text", 9, OpcUa_BadEndOfStream},
    {"longer_than_the_stream", 15, OpcUa_BadExpectedStreamToBlock},
    {"empty", 0, OpcUa_BadEndOfStream},
};

TEST(ExtensionObjectBody, record_ends_where_its_body_ends)
{
    TestContext context;
    for (const WrongBody& row : wrongBodies) {
        SCOPED_TRACE(row.name);
        Bytes bytes = recordBytes();
        bytes.insert(bytes.end(), {0, 0});
        bytes[5] = row.length;
        OpcUa_ExtensionObject object;
        EXPECT_EQ(decode(context, bytes, OpcUaType_ExtensionObject, &object), row.status);
        EXPECT_EQ(object.Encoding, OpcUa_ExtensionObjectEncoding_None);
    }
}

TEST(ExtensionObjectBody, record_needs_a_body_with_a_length)
{
    TestContext context;
    OpcUa_ExtensionObject object;
    for (const char* bytes : {"01 00 EA 03 01 FF FF FF FF", "01 00 EA 03 01 FE FF FF FF"}) {
        EXPECT_EQ(decode(context, fromHex(bytes), OpcUaType_ExtensionObject, &object),
                  OpcUa_BadDecodingError);
    }
}

TEST(ExtensionObjectBody, what_follows_it_is_read_as_before)
{
    TestContext context;
    Bytes bytes = recordBytes();
    const Bytes second = bytes;
    bytes.insert(bytes.end(), second.begin(), second.end());
    bytes.insert(bytes.begin(), {2, 0, 0, 0});
    DecoderOnMemory decoder(bytes, context.get());
    OpcUa_ExtensionObject* objects = nullptr;
    OpcUa_Int32 count = 0;
    ASSERT_EQ(decoder->ReadExtensionObjectArray(decoder.get(), "", &objects, &count), OpcUa_Good);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(testRecordOf(objects[1]).Number, 5);
    EXPECT_EQ(decoder.remaining(), 0u);
    OpcUa_Elements_Free(*OpcUa_BuiltInType_GetTraits(OpcUaType_ExtensionObject), objects, count);
}

// Rows of other namespaces -------------------------------------------------------------------------

OpcUa_EncodeableType typeIn(const char* namespaceUri)
{
    OpcUa_EncodeableType type = testRecordType;
    type.NamespaceUri = namespaceUri;
    return type;
}

TEST(TypeIds, known_namespace_is_written_by_its_index)
{
    TestContext context;
    const OpcUa_EncodeableType type = typeIn("urn:sample");
    context.addType(type);
    BuiltInValue object(OpcUaType_ExtensionObject);
    fillWithTestRecord(*static_cast<OpcUa_ExtensionObject*>(object.get()), 5, "A", type);
    const Bytes bytes = encode(context, OpcUaType_ExtensionObject, object.get());
    EXPECT_EQ(toHex(bytes).substr(0, 11), "01 01 EA 03");
    OpcUa_ExtensionObject read;
    ASSERT_EQ(decode(context, bytes, OpcUaType_ExtensionObject, &read), OpcUa_Good);
    EXPECT_EQ(read.Body.EncodeableObject.Type, &type);
    OpcUa_ExtensionObject_Clear(&read);
}

TEST(TypeIds, unknown_namespace_is_written_as_its_uri)
{
    TestContext context;
    const OpcUa_EncodeableType type = typeIn("urn:elsewhere");
    context.addType(type);
    BuiltInValue object(OpcUaType_ExtensionObject);
    fillWithTestRecord(*static_cast<OpcUa_ExtensionObject*>(object.get()), 5, "A", type);
    const Bytes bytes = encode(context, OpcUaType_ExtensionObject, object.get());
    EXPECT_EQ(toHex(bytes).substr(0, 62),
              "81 00 EA 03 0D 00 00 00 75 72 6E 3A 65 6C 73 65 77 68 65 72 65");
    OpcUa_ExtensionObject read;
    ASSERT_EQ(decode(context, bytes, OpcUaType_ExtensionObject, &read), OpcUa_Good);
    EXPECT_EQ(read.Body.EncodeableObject.Type, &type);
    OpcUa_ExtensionObject_Clear(&read);
}

// Records and messages -----------------------------------------------------------------------------

TEST(Records, one_and_many_are_written_and_read_by_their_row)
{
    TestContext context;
    TestRecord records[2];
    for (TestRecord& record : records) {
        testRecordType.Initialize(&record);
        record.Number = 7;
        ASSERT_EQ(OpcUa_String_AttachReadOnly(&record.Name, "AB"), OpcUa_Good);
    }
    const std::string oneInHex = "07 00 00 00 02 00 00 00 41 42 00 00 00";
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 size = 0;
    EXPECT_EQ(encoder->WriteEncodeable(encoder.get(), "", records, &testRecordType, &size),
              OpcUa_Good);
    EXPECT_EQ(size, 13);
    EXPECT_EQ(encoder->WriteEncodeable(encoder.get(), "", records, &testRecordType, nullptr),
              OpcUa_Good);
    EXPECT_EQ(encoder->WriteEncodeableArray(encoder.get(), "", records, 2, &testRecordType, &size),
              OpcUa_Good);
    EXPECT_EQ(size, 13 + 30);
    EXPECT_EQ(
        encoder->WriteEncodeableArray(encoder.get(), "", records, 2, &testRecordType, nullptr),
        OpcUa_Good);
    EXPECT_EQ(toHex(encoder.bytes()), oneInHex + " 02 00 00 00 " + oneInHex + " " + oneInHex);

    const Bytes bytes = encoder.bytes();
    DecoderOnMemory decoder(bytes, context.get());
    TestRecord one;
    ASSERT_EQ(decoder->ReadEncodeable(decoder.get(), "", &one, &testRecordType), OpcUa_Good);
    EXPECT_EQ(testRecordType.Compare(&one, records), 0);
    testRecordType.Clear(&one);
    void* many = nullptr;
    OpcUa_Int32 count = 0;
    ASSERT_EQ(decoder->ReadEncodeableArray(decoder.get(), "", &many, &count, &testRecordType),
              OpcUa_Good);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(testRecordType.Compare(static_cast<TestRecord*>(many) + 1, records), 0);
    OpcUa_Elements_Free(OpcUa_ElementTraits_FromEncodeableType(testRecordType), many, count);
}

TEST(Records, array_that_promises_more_than_there_is_fails_without_memory_for_it)
{
    TestContext context;
    context->MaxArrayLength = 0;
    context->MaxMessageSize = 0;
    const Bytes bytes =
        fromHex("FF FF FF 7F 07 00 00 00 02 00 00 00 41 42 00 00 00 07 00 00 00 02");
    DecoderOnMemory decoder(bytes, context.get());
    void* records = nullptr;
    OpcUa_Int32 count = 0;
    OpcUa_Memory_SetFaultHook([](std::size_t size) { return size > 1000; });
    EXPECT_EQ(decoder->ReadEncodeableArray(decoder.get(), "", &records, &count, &testRecordType),
              OpcUa_BadEndOfStream);
    OpcUa_Memory_SetFaultHook(nullptr);
    EXPECT_EQ(records, nullptr);
    EXPECT_EQ(count, 0);
}

TEST(Records, row_without_operations_has_no_encoding)
{
    TestContext context;
    OpcUa_EncodeableType type = testRecordType;
    type.Encode = nullptr;
    type.GetSize = nullptr;
    type.Decode = nullptr;
    TestRecord record;
    testRecordType.Initialize(&record);
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 size = 0;
    EXPECT_EQ(encoder->WriteEncodeable(encoder.get(), "", &record, &type, nullptr),
              OpcUa_BadEncodingError);
    EXPECT_EQ(encoder->WriteEncodeable(encoder.get(), "", &record, &type, &size),
              OpcUa_BadEncodingError);
    const Bytes bytes(16);
    DecoderOnMemory decoder(bytes, context.get());
    EXPECT_EQ(decoder->ReadEncodeable(decoder.get(), "", &record, &type), OpcUa_BadDecodingError);
}

TEST(Messages, id_of_the_binary_encoding_goes_in_front)
{
    TestContext context;
    TestRecord record;
    testRecordType.Initialize(&record);
    record.Number = 7;
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 size = 0;
    EXPECT_EQ(encoder->WriteMessage(encoder.get(), &record, &testRecordType, &size), OpcUa_Good);
    EXPECT_EQ(encoder->WriteMessage(encoder.get(), &record, &testRecordType, nullptr), OpcUa_Good);
    EXPECT_EQ(size, 15);
    const Bytes bytes = encoder.bytes();
    EXPECT_EQ(toHex(bytes), "01 00 EA 03 07 00 00 00 FF FF FF FF 00 00 00");
    DecoderOnMemory decoder(bytes, context.get());
    void* message = nullptr;
    const OpcUa_EncodeableType* type = nullptr;
    ASSERT_EQ(decoder->ReadMessage(decoder.get(), &message, &type), OpcUa_Good);
    EXPECT_EQ(type, &testRecordType);
    EXPECT_EQ(static_cast<TestRecord*>(message)->Number, 7);
    type->Clear(message);
    OpcUa_Memory_Free(message);
}

TEST(Messages, unknown_or_broken_ones_give_no_record)
{
    TestContext context;
    const std::pair<const char*, OpcUa_StatusCode> rows[] = {
        {"01 00 EB 03 00 00 00 00", OpcUa_BadDecodingError},
        {"03 00 00 01 00 00 00 41", OpcUa_BadDecodingError},
        {"81 00 EA 03 01 00 00 00 75", OpcUa_BadDecodingError},
        {"01 00 EA", OpcUa_BadEndOfStream},
        {"01 00 EA 03 07 00 00", OpcUa_BadEndOfStream},
    };
    for (const auto& [hex, status] : rows) {
        const Bytes bytes = fromHex(hex);
        DecoderOnMemory decoder(bytes, context.get());
        int something = 0;
        void* message = &something;
        const OpcUa_EncodeableType* type = &testRecordType;
        EXPECT_EQ(decoder->ReadMessage(decoder.get(), &message, &type), status) << hex;
        EXPECT_EQ(message, nullptr);
        EXPECT_EQ(type, nullptr);
    }
}

TEST(Messages, namespace_must_be_known)
{
    TestContext context;
    TestRecord record;
    testRecordType.Initialize(&record);
    EncoderOnMemory encoder(context.get());
    const OpcUa_EncodeableType known = typeIn("urn:sample");
    EXPECT_EQ(encoder->WriteMessage(encoder.get(), &record, &known, nullptr), OpcUa_Good);
    EXPECT_EQ(toHex(encoder.bytes()).substr(0, 11), "01 01 EA 03");
    const OpcUa_EncodeableType unknown = typeIn("urn:elsewhere");
    EXPECT_EQ(encoder->WriteMessage(encoder.get(), &record, &unknown, nullptr),
              OpcUa_BadEncodingError);
}

} // namespace
