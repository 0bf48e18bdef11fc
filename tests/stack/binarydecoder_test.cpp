// What the decoder makes of values and arrays whose bytes are wrong, too long or cut.

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binaryforms.h"
#include "stack/opcua_builtindispatch.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_variant.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"
#include "tests/stack/variantsamples.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct BadBytes
{
    const char* name;
    OpcUa_Byte type;
    const char* bytes;
    OpcUa_StatusCode status;
};

std::ostream& operator<<(std::ostream& stream, const BadBytes& row)
{
    return stream << row.name;
}

constexpr OpcUa_StatusCode cutNumber = OpcUa_BadEndOfStream;
constexpr OpcUa_StatusCode cutText = OpcUa_BadExpectedStreamToBlock;

const BadBytes badBytes[] = {
    {"nothing_at_all", OpcUaType_Boolean, "", cutNumber},
    {"number_cut", OpcUaType_Int32, "01 02 03", cutNumber},
    {"guid_cut", OpcUaType_Guid, "01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F", cutNumber},
    {"string_length_cut", OpcUaType_String, "05 00 00", cutNumber},
    {"string_cut_at_its_begin", OpcUaType_String, "05 00 00 00", cutText},
    {"string_cut_in_the_middle", OpcUaType_String, "05 00 00 00 41 42", cutText},
    {"string_length_below_null", OpcUaType_String, "FE FF FF FF", OpcUa_BadDecodingError},
    {"string_least_length", OpcUaType_String, "00 00 00 80", OpcUa_BadDecodingError},
    {"string_largest_length", OpcUaType_String, "FF FF FF 7F", OpcUa_BadEncodingLimitsExceeded},
    {"bytestring_cut", OpcUaType_ByteString, "03 00 00 00 01 02", cutText},
    {"bytestring_length_below_null", OpcUaType_ByteString, "FE FF FF FF", OpcUa_BadDecodingError},
    {"bytestring_largest_length", OpcUaType_ByteString, "FF FF FF 7F",
     OpcUa_BadEncodingLimitsExceeded},
    {"xmlelement_length_below_null", OpcUaType_XmlElement, "00 00 00 80", OpcUa_BadDecodingError},
    {"nodeid_of_an_unknown_form", OpcUaType_NodeId, "06 00 00", OpcUa_BadDecodingError},
    {"nodeid_with_a_uri", OpcUaType_NodeId, "80 05 01 00 00 00 75", OpcUa_BadDecodingError},
    {"nodeid_with_a_server", OpcUaType_NodeId, "40 05 01 00 00 00", OpcUa_BadDecodingError},
    {"nodeid_cut_behind_its_form", OpcUaType_NodeId, "00", cutNumber},
    {"nodeid_cut_in_its_namespace", OpcUaType_NodeId, "03 01", cutNumber},
    {"nodeid_of_four_bytes_cut", OpcUaType_NodeId, "01 01 00", cutNumber},
    {"nodeid_string_cut", OpcUaType_NodeId, "03 01 00 02 00 00 00 41", cutText},
    {"nodeid_guid_cut", OpcUaType_NodeId, "04 01 00 02 00 00 00 41", cutNumber},
    {"expandednodeid_of_an_unknown_form", OpcUaType_ExpandedNodeId, "C6 00 00",
     OpcUa_BadDecodingError},
    {"expandednodeid_uri_cut", OpcUaType_ExpandedNodeId, "83 00 00 01 00 00 00 41 01 00 00 00",
     cutText},
    {"expandednodeid_server_cut", OpcUaType_ExpandedNodeId, "C0 05 01 00 00 00 75 00 00",
     cutNumber},
    {"qualifiedname_cut", OpcUaType_QualifiedName, "01 00 01 00 00 00", cutText},
    {"localizedtext_of_an_unknown_field", OpcUaType_LocalizedText, "04", OpcUa_BadDecodingError},
    {"localizedtext_cut_in_its_text", OpcUaType_LocalizedText, "03 02 00 00 00 65 6E 01 00 00 00",
     cutText},
    {"extensionobject_of_an_unknown_form", OpcUaType_ExtensionObject, "00 00 03",
     OpcUa_BadDecodingError},
    {"extensionobject_cut_behind_its_type", OpcUaType_ExtensionObject, "03 00 00 00 00 00 00",
     cutNumber},
    {"extensionobject_body_cut", OpcUaType_ExtensionObject, "00 01 01 02 00 00 00 07", cutText},
    {"extensionobject_body_below_null", OpcUaType_ExtensionObject, "00 01 01 FE FF FF FF",
     OpcUa_BadDecodingError},
    {"datavalue_of_an_unknown_field", OpcUaType_DataValue, "40 00", OpcUa_BadDecodingError},
    {"datavalue_cut_in_a_time", OpcUaType_DataValue, "0D 0C 01 00 00 00 41 01 00 00 00", cutNumber},
    {"variant_of_an_unknown_type", OpcUaType_Variant, "1A", OpcUa_BadDecodingError},
    {"variant_of_the_largest_type", OpcUaType_Variant, "3F", OpcUa_BadDecodingError},
    {"variant_array_of_an_unknown_type", OpcUaType_Variant, "9A 00 00 00 00",
     OpcUa_BadDecodingError},
    {"variant_array_of_nothing", OpcUaType_Variant, "80 00 00 00 00", OpcUa_BadDecodingError},
    {"variant_dimensions_without_an_array", OpcUaType_Variant, "46 00 00 00 00",
     OpcUa_BadDecodingError},
    {"variant_scalar_cut", OpcUaType_Variant, "11 03 00 00 01 00 00 00", cutText},
    {"variant_array_count_below_null", OpcUaType_Variant, "86 FE FF FF FF", OpcUa_BadDecodingError},
    {"variant_array_longer_than_the_stream", OpcUaType_Variant, "86 02 00 00 00 01 00 00 00",
     cutNumber},
    {"variant_array_of_strings_longer_than_the_stream", OpcUaType_Variant,
     "8C 03 00 00 00 01 00 00 00 41 01 00 00 00 42", cutNumber},
    {"variant_array_with_a_bad_element_before_its_end", OpcUaType_Variant,
     "8C 09 00 00 00 01 00 00 00 41 FE FF FF FF", OpcUa_BadDecodingError},
    {"matrix_without_dimensions", OpcUaType_Variant, "C3 01 00 00 00 61 00 00 00 00",
     OpcUa_BadDecodingError},
    {"matrix_with_null_dimensions", OpcUaType_Variant, "C3 01 00 00 00 61 FF FF FF FF",
     OpcUa_BadDecodingError},
    {"matrix_of_too_few_elements", OpcUaType_Variant,
     "C3 01 00 00 00 61 02 00 00 00 01 00 00 00 02 00 00 00", OpcUa_BadDecodingError},
    {"matrix_of_too_many_elements", OpcUaType_Variant,
     "CC 02 00 00 00 01 00 00 00 41 FF FF FF FF 01 00 00 00 01 00 00 00", OpcUa_BadDecodingError},
    {"matrix_of_negative_dimensions", OpcUaType_Variant,
     "C3 01 00 00 00 61 02 00 00 00 FF FF FF FF FF FF FF FF", OpcUa_BadDecodingError},
    {"matrix_of_a_product_that_wraps_to_nothing", OpcUaType_Variant,
     "C3 00 00 00 00 02 00 00 00 00 00 01 00 00 00 01 00", OpcUa_BadDecodingError},
    {"matrix_cut_in_its_dimensions", OpcUaType_Variant,
     "CC 01 00 00 00 01 00 00 00 41 01 00 00 00 01", cutNumber},
    {"diagnosticinfo_of_an_unknown_field", OpcUaType_DiagnosticInfo, "80", OpcUa_BadDecodingError},
    {"diagnosticinfo_cut_in_its_inner_one", OpcUaType_DiagnosticInfo,
     "50 01 00 00 00 41 50 01 00 00 00 42", cutNumber},
};

class BadBytesOfType : public testing::TestWithParam<BadBytes>
{
};

TEST_P(BadBytesOfType, give_their_status_and_a_cleared_value)
{
    TestContext context;
    BuiltInValue value(GetParam().type);
    EXPECT_EQ(decode(context, fromHex(GetParam().bytes), GetParam().type, value.get()),
              GetParam().status);
    EXPECT_TRUE(value.isCleared());
}

TEST_P(BadBytesOfType, give_the_same_status_in_an_array)
{
    TestContext context;
    Bytes bytes = fromHex(GetParam().bytes);
    bytes.insert(bytes.begin(), {1, 0, 0, 0});
    DecoderOnMemory decoder(bytes, context.get());
    int something = 0;
    void* values = &something;
    OpcUa_Int32 count = 7;
    EXPECT_EQ(codecOf(GetParam().type).readArray(decoder.get(), &values, &count),
              GetParam().status);
    EXPECT_EQ(values, nullptr);
    EXPECT_EQ(count, 0);
}

INSTANTIATE_TEST_SUITE_P(Table, BadBytesOfType, testing::ValuesIn(badBytes),
                         [](const auto& row) { return std::string(row.param.name); });

// Readings of bytes that the encoder doesn't write -------------------------------------------------

TEST(ReadValue, any_byte_but_zero_is_true)
{
    TestContext context;
    OpcUa_Boolean value = 0;
    EXPECT_EQ(decode(context, {0x80}, OpcUaType_Boolean, &value), OpcUa_Good);
    EXPECT_EQ(value, OpcUa_True);
    const Bytes bytes = fromHex("03 00 00 00 02 00 FF");
    DecoderOnMemory arrays(bytes, context.get());
    OpcUa_Boolean* values = nullptr;
    OpcUa_Int32 count = 0;
    ASSERT_EQ(arrays->ReadBooleanArray(arrays.get(), "", &values, &count), OpcUa_Good);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(Bytes(values, values + 3), (Bytes{1, 0, 1}));
    OpcUa_Memory_Free(values);
}

TEST(ReadValue, longer_forms_of_a_small_node_id_are_read)
{
    TestContext context;
    for (const char* bytes : {"00 05", "01 00 05 00", "02 00 00 05 00 00 00"}) {
        BuiltInValue value(OpcUaType_NodeId);
        EXPECT_EQ(decode(context, fromHex(bytes), OpcUaType_NodeId, value.get()), OpcUa_Good);
        EXPECT_EQ(toHex(encode(context, OpcUaType_NodeId, value.get())), "00 05");
    }
}

TEST(ReadValue, picoseconds_beyond_their_range_are_its_end)
{
    TestContext context;
    OpcUa_DataValue value;
    EXPECT_EQ(decode(context, fromHex("30 10 27 FF FF"), OpcUaType_DataValue, &value), OpcUa_Good);
    EXPECT_EQ(value.SourcePicoseconds, 9999);
    EXPECT_EQ(value.ServerPicoseconds, 9999);
}

TEST(ReadValue, null_array_of_a_matrix_without_elements_is_read)
{
    TestContext context;
    BuiltInValue value(OpcUaType_Variant);
    EXPECT_EQ(decode(context, fromHex("C6 FF FF FF FF 01 00 00 00 00 00 00 00"), OpcUaType_Variant,
                     value.get()),
              OpcUa_Good);
    EXPECT_EQ(toHex(encode(context, OpcUaType_Variant, value.get())),
              "C6 00 00 00 00 01 00 00 00 00 00 00 00");
}

TEST(ReadValue, string_is_closed_and_owned)
{
    TestContext context;
    OpcUa_String value{};
    EXPECT_EQ(decode(context, fromHex("02 00 00 00 41 42"), OpcUaType_String, &value), OpcUa_Good);
    EXPECT_STREQ(value.strContent, "AB");
    EXPECT_EQ(value.flags, OpcUa_String_OwnsContent);
    OpcUa_String_Clear(&value);
}

TEST(ReadValue, empty_byte_string_keeps_a_block)
{
    TestContext context;
    OpcUa_ByteString value{};
    EXPECT_EQ(decode(context, fromHex("00 00 00 00"), OpcUaType_ByteString, &value), OpcUa_Good);
    EXPECT_EQ(value.Length, 0);
    EXPECT_NE(value.Data, nullptr);
    OpcUa_ByteString_Clear(&value);
}

// Limits -------------------------------------------------------------------------------------------

Bytes textOfLength(std::size_t length)
{
    Bytes bytes(4 + length, 'x');
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[i] = static_cast<OpcUa_Byte>(length >> (8 * i));
    }
    return bytes;
}

TEST(DecoderLimits, text_of_exactly_the_largest_length_is_read_and_no_longer_one)
{
    TestContext context;
    context->MaxStringLength = 10;
    context->MaxByteStringLength = 20;
    const std::pair<OpcUa_Byte, std::size_t> rows[] = {
        {OpcUaType_String, 10}, {OpcUaType_ByteString, 20}, {OpcUaType_XmlElement, 20}};
    for (const auto& [type, limit] : rows) {
        BuiltInValue value(type);
        EXPECT_EQ(decode(context, textOfLength(limit), type, value.get()), OpcUa_Good);
        BuiltInValue longer(type);
        EXPECT_EQ(decode(context, textOfLength(limit + 1), type, longer.get()),
                  OpcUa_BadEncodingLimitsExceeded);
        EXPECT_TRUE(longer.isCleared());
    }
}

TEST(DecoderLimits, zero_is_no_limit)
{
    TestContext context;
    context->MaxStringLength = 0;
    context->MaxByteStringLength = 0;
    context->MaxArrayLength = 0;
    context->MaxMessageSize = 0;
    for (const OpcUa_Byte type : {OpcUaType_String, OpcUaType_ByteString}) {
        BuiltInValue value(type);
        EXPECT_EQ(decode(context, textOfLength(20000000), type, value.get()), OpcUa_Good);
    }
    const Bytes bytes = textOfLength(20000000);
    DecoderOnMemory decoder(bytes, context.get());
    OpcUa_Byte* values = nullptr;
    OpcUa_Int32 count = 0;
    EXPECT_EQ(decoder->ReadByteArray(decoder.get(), "", &values, &count), OpcUa_Good);
    EXPECT_EQ(count, 20000000);
    OpcUa_Memory_Free(values);
}

TEST(DecoderLimits, default_limits_are_those_of_the_stack)
{
    OpcUa_MessageContext context;
    OpcUa_MessageContext_Initialize(&context);
    EXPECT_EQ(context.MaxStringLength, 16777216);
    EXPECT_EQ(context.MaxByteStringLength, 16777216);
    EXPECT_EQ(context.MaxArrayLength, 65536);
    EXPECT_EQ(context.MaxMessageSize, 16777216);
    EXPECT_EQ(context.Encoding, OpcUa_MessageEncoding_Binary);
    EXPECT_EQ(context.NamespaceUris, nullptr);
    EXPECT_EQ(context.KnownTypes, nullptr);
    OpcUa_MessageContext_Initialize(nullptr);
}

OpcUa_StatusCode readBytes(TestContext& context, OpcUa_Int32 length)
{
    const Bytes bytes = textOfLength(static_cast<std::size_t>(length));
    DecoderOnMemory decoder(bytes, context.get());
    OpcUa_Byte notNull = 0;
    OpcUa_Byte* values = &notNull;
    OpcUa_Int32 count = 7;
    const OpcUa_StatusCode status = decoder->ReadByteArray(decoder.get(), "", &values, &count);
    EXPECT_EQ(count, OpcUa_IsBad(status) ? 0 : length);
    EXPECT_EQ(values == nullptr, OpcUa_IsBad(status) || length == 0);
    OpcUa_Memory_Free(values);
    return status;
}

TEST(DecoderLimits, array_of_exactly_the_largest_length_is_read_and_no_longer_one)
{
    TestContext context;
    context->MaxArrayLength = 10;
    EXPECT_EQ(readBytes(context, 10), OpcUa_Good);
    EXPECT_EQ(readBytes(context, 11), OpcUa_BadEncodingLimitsExceeded);
}

TEST(DecoderLimits, array_is_no_longer_than_a_message_may_be)
{
    TestContext context;
    context->MaxArrayLength = 0;
    context->MaxMessageSize = 10;
    EXPECT_EQ(readBytes(context, 10), OpcUa_Good);
    EXPECT_EQ(readBytes(context, 11), OpcUa_BadEncodingLimitsExceeded);
}

// Arrays -------------------------------------------------------------------------------------------

class ArraysOfType : public testing::TestWithParam<BuiltInSample>
{
};

TEST_P(ArraysOfType, null_and_empty_ones_keep_their_count)
{
    TestContext context;
    for (const auto& [count, bytes] : {std::pair{-1, "FF FF FF FF"}, {0, "00 00 00 00"}}) {
        EncoderOnMemory encoder(context.get());
        EXPECT_EQ(codecOf(GetParam().type).writeArray(encoder.get(), nullptr, count, nullptr),
                  OpcUa_Good);
        EXPECT_EQ(toHex(encoder.bytes()), bytes);
        const Bytes written = encoder.bytes();
        DecoderOnMemory decoder(written, context.get());
        int something = 0;
        void* values = &something;
        OpcUa_Int32 countRead = 7;
        EXPECT_EQ(codecOf(GetParam().type).readArray(decoder.get(), &values, &countRead),
                  OpcUa_Good);
        EXPECT_EQ(values, nullptr);
        EXPECT_EQ(countRead, count);
    }
}

TEST_P(ArraysOfType, count_below_null_is_refused_both_ways)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    EXPECT_EQ(codecOf(GetParam().type).writeArray(encoder.get(), nullptr, -2, nullptr),
              OpcUa_BadEncodingError);
    for (const char* bytes : {"FE FF FF FF 00 00", "00 00 00 80 00 00"}) {
        const Bytes count = fromHex(bytes);
        DecoderOnMemory decoder(count, context.get());
        void* values = nullptr;
        OpcUa_Int32 countRead = 7;
        EXPECT_EQ(codecOf(GetParam().type).readArray(decoder.get(), &values, &countRead),
                  OpcUa_BadDecodingError);
        EXPECT_EQ(countRead, 0);
    }
}

/// Three filled values of a type, and one empty in their middle.
class FilledBlock
{
public:
    explicit FilledBlock(const BuiltInSample& sample)
        : m_traits(*OpcUa_BuiltInType_GetTraits(sample.type))
        , m_block(static_cast<char*>(OpcUa_Memory_AllocArray(count, m_traits.Size)))
    {
        for (std::size_t i = 0; i < count; ++i) {
            m_traits.Initialize(m_block + i * m_traits.Size);
            if (i != 1) {
                sample.fill(m_block + i * m_traits.Size);
            }
        }
    }
    ~FilledBlock() { OpcUa_Elements_Free(m_traits, m_block, count); }
    FilledBlock(const FilledBlock&) = delete;
    FilledBlock& operator=(const FilledBlock&) = delete;

    [[nodiscard]] const void* get() const { return m_block; }

    static constexpr OpcUa_Int32 count = 4;

private:
    const OpcUa_ElementTraits& m_traits;
    char* m_block;
};

TEST_P(ArraysOfType, filled_ones_come_back)
{
    TestContext context;
    const BuiltInCodec& codec = codecOf(GetParam().type);
    const FilledBlock block(GetParam());
    EncoderOnMemory encoder(context.get());
    OpcUa_Int32 size = 0;
    ASSERT_EQ(codec.writeArray(encoder.get(), block.get(), FilledBlock::count, &size), OpcUa_Good);
    ASSERT_EQ(codec.writeArray(encoder.get(), block.get(), FilledBlock::count, nullptr),
              OpcUa_Good);
    const Bytes bytes = encoder.bytes();
    EXPECT_EQ(bytes.size(), static_cast<std::size_t>(size));
    DecoderOnMemory decoder(bytes, context.get());
    void* values = nullptr;
    OpcUa_Int32 count = 0;
    ASSERT_EQ(codec.readArray(decoder.get(), &values, &count), OpcUa_Good);
    EXPECT_EQ(count, FilledBlock::count);
    EXPECT_EQ(decoder.remaining(), 0u);
    EncoderOnMemory again(context.get());
    EXPECT_EQ(codec.writeArray(again.get(), values, count, nullptr), OpcUa_Good);
    EXPECT_EQ(toHex(again.bytes()), toHex(bytes));
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(GetParam().type);
    // An extension object learns its type id and size from the wire.
    if (GetParam().type != OpcUaType_ExtensionObject) {
        EXPECT_EQ(OpcUa_Elements_Compare(traits, values, block.get(), count), 0);
    }
    OpcUa_Elements_Free(traits, values, count);
}

TEST_P(ArraysOfType, minimal_size_is_that_of_the_shortest_encoding)
{
    TestContext context;
    const BuiltInValue empty(GetParam().type);
    EXPECT_EQ(encode(context, GetParam().type, empty.get()).size(),
              OpcUa_BinaryType_MinimalSizes[GetParam().type]);
}

TEST_P(ArraysOfType, kind_of_scalar_is_that_of_the_element_traits)
{
    EXPECT_EQ(OpcUa_BuiltInType_IsByPointer(GetParam().type),
              OpcUa_BuiltInType_GetTraits(GetParam().type)->IsByPointer);
}

INSTANTIATE_TEST_SUITE_P(Types, ArraysOfType, testing::ValuesIn(builtInSamples()),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
