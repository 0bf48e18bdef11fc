// Values of every built-in type beside their bytes, worked out by hand from OPC 10000-6, 5.2.2.

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_variant.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"
#include "tests/stack/variantsamples.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

void setText(OpcUa_String& string, const char* text)
{
    ASSERT_EQ(OpcUa_String_AttachCopy(&string, text), OpcUa_Good);
}

template <typename T>
T* allocate(std::size_t count = 1)
{
    return static_cast<T*>(OpcUa_Memory_AllocZeroed(count, sizeof(T)));
}

void setBytes(OpcUa_ByteString& string, const Bytes& bytes)
{
    string = {static_cast<OpcUa_Int32>(bytes.size()), allocate<OpcUa_Byte>(bytes.size())};
    std::copy(bytes.begin(), bytes.end(), string.Data);
}

void makeNumeric(OpcUa_NodeId& nodeId, OpcUa_UInt16 namespaceIndex, OpcUa_UInt32 number)
{
    nodeId.NamespaceIndex = namespaceIndex;
    nodeId.Identifier.Numeric = number;
}

template <typename T>
T& as(void* value)
{
    return *static_cast<T*>(value);
}

struct EncodedValue
{
    const char* name;
    OpcUa_Byte type;
    void (*fill)(void* value);
    const char* bytes;
};

std::ostream& operator<<(std::ostream& stream, const EncodedValue& row)
{
    return stream << row.name;
}

const EncodedValue encodedValues[] = {
    {"boolean_false", OpcUaType_Boolean, nullptr, "00"},
    {"boolean_true", OpcUaType_Boolean, [](void* v) { as<OpcUa_Boolean>(v) = 1; }, "01"},
    {"sbyte", OpcUaType_SByte, [](void* v) { as<OpcUa_SByte>(v) = -2; }, "FE"},
    {"byte", OpcUaType_Byte, [](void* v) { as<OpcUa_Byte>(v) = 200; }, "C8"},
    {"int16", OpcUaType_Int16, [](void* v) { as<OpcUa_Int16>(v) = -2; }, "FE FF"},
    {"uint16", OpcUaType_UInt16, [](void* v) { as<OpcUa_UInt16>(v) = 0x1234; }, "34 12"},
    {"int32", OpcUaType_Int32, [](void* v) { as<OpcUa_Int32>(v) = -2; }, "FE FF FF FF"},
    {"uint32", OpcUaType_UInt32, [](void* v) { as<OpcUa_UInt32>(v) = 0x12345678; }, "78 56 34 12"},
    {"int64", OpcUaType_Int64, [](void* v) { as<OpcUa_Int64>(v) = -2; }, "FE FF FF FF FF FF FF FF"},
    {"uint64", OpcUaType_UInt64, [](void* v) { as<OpcUa_UInt64>(v) = 0x123456789ABCDEF0; },
     "F0 DE BC 9A 78 56 34 12"},
    {"float", OpcUaType_Float, [](void* v) { as<OpcUa_Float>(v) = 1.0F; }, "00 00 80 3F"},
    {"float_infinity", OpcUaType_Float,
     [](void* v) { as<OpcUa_Float>(v) = std::numeric_limits<OpcUa_Float>::infinity(); },
     "00 00 80 7F"},
    {"double", OpcUaType_Double, [](void* v) { as<OpcUa_Double>(v) = -6.5; },
     "00 00 00 00 00 00 1A C0"},
    {"string_null", OpcUaType_String, nullptr, "FF FF FF FF"},
    {"string_empty", OpcUaType_String, [](void* v) { setText(as<OpcUa_String>(v), ""); },
     "00 00 00 00"},
    {"string", OpcUaType_String, [](void* v) { setText(as<OpcUa_String>(v), "AB"); },
     "02 00 00 00 41 42"},
    {"datetime_null", OpcUaType_DateTime, nullptr, "00 00 00 00 00 00 00 00"},
    {"datetime", OpcUaType_DateTime,
     [](void* v) {
         as<OpcUa_DateTime>(v) = {0x89ABCDEF, 0x01D01234};
     },
     "EF CD AB 89 34 12 D0 01"},
    {"guid", OpcUaType_Guid,
     [](void* v) {
         as<OpcUa_Guid>(v) = {0x01020304, 0x0506, 0x0708, {9, 10, 11, 12, 13, 14, 15, 16}};
     },
     "04 03 02 01 06 05 08 07 09 0A 0B 0C 0D 0E 0F 10"},
    {"bytestring_null", OpcUaType_ByteString, nullptr, "FF FF FF FF"},
    {"bytestring_empty", OpcUaType_ByteString,
     [](void* v) { setBytes(as<OpcUa_ByteString>(v), {}); }, "00 00 00 00"},
    {"bytestring", OpcUaType_ByteString,
     [](void* v) {
         setBytes(as<OpcUa_ByteString>(v), {0, 1, 255});
     },
     "03 00 00 00 00 01 FF"},
    {"xmlelement_null", OpcUaType_XmlElement, nullptr, "FF FF FF FF"},
    {"xmlelement", OpcUaType_XmlElement,
     [](void* v) {
         setBytes(as<OpcUa_XmlElement>(v), {'<', 'a', '/', '>'});
     },
     "04 00 00 00 3C 61 2F 3E"},
    {"nodeid_null", OpcUaType_NodeId, nullptr, "00 00"},
    {"nodeid_largest_of_two_bytes", OpcUaType_NodeId,
     [](void* v) { makeNumeric(as<OpcUa_NodeId>(v), 0, 255); }, "00 FF"},
    {"nodeid_smallest_of_four_bytes", OpcUaType_NodeId,
     [](void* v) { makeNumeric(as<OpcUa_NodeId>(v), 0, 256); }, "01 00 00 01"},
    {"nodeid_small_number_in_a_namespace", OpcUaType_NodeId,
     [](void* v) { makeNumeric(as<OpcUa_NodeId>(v), 1, 0); }, "01 01 00 00"},
    {"nodeid_largest_of_four_bytes", OpcUaType_NodeId,
     [](void* v) { makeNumeric(as<OpcUa_NodeId>(v), 255, 65535); }, "01 FF FF FF"},
    {"nodeid_numeric_by_number", OpcUaType_NodeId,
     [](void* v) { makeNumeric(as<OpcUa_NodeId>(v), 0, 65536); }, "02 00 00 00 00 01 00"},
    {"nodeid_numeric_by_namespace", OpcUaType_NodeId,
     [](void* v) { makeNumeric(as<OpcUa_NodeId>(v), 256, 1); }, "02 00 01 01 00 00 00"},
    {"nodeid_string_null", OpcUaType_NodeId,
     [](void* v) {
         as<OpcUa_NodeId>(v) = {OpcUa_IdentifierType_String, 2, {}};
         as<OpcUa_NodeId>(v).Identifier.String = {};
     },
     "03 02 00 FF FF FF FF"},
    {"nodeid_guid", OpcUaType_NodeId,
     [](void* v) {
         as<OpcUa_NodeId>(v) = {OpcUa_IdentifierType_Guid, 0x0102, {}};
         as<OpcUa_NodeId>(v).Identifier.Guid = allocate<OpcUa_Guid>();
         as<OpcUa_NodeId>(v).Identifier.Guid->Data1 = 1;
     },
     "04 02 01 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
    {"nodeid_bytestring", OpcUaType_NodeId,
     [](void* v) {
         as<OpcUa_NodeId>(v) = {OpcUa_IdentifierType_Opaque, 1, {}};
         setBytes(as<OpcUa_NodeId>(v).Identifier.ByteString, {7});
     },
     "05 01 00 01 00 00 00 07"},
    {"expandednodeid_null", OpcUaType_ExpandedNodeId, nullptr, "00 00"},
    {"expandednodeid_with_uri", OpcUaType_ExpandedNodeId,
     [](void* v) {
         makeNumeric(as<OpcUa_ExpandedNodeId>(v).NodeId, 0, 5);
         setText(as<OpcUa_ExpandedNodeId>(v).NamespaceUri, "u");
     },
     "80 05 01 00 00 00 75"},
    {"expandednodeid_with_server", OpcUaType_ExpandedNodeId,
     [](void* v) {
         makeNumeric(as<OpcUa_ExpandedNodeId>(v).NodeId, 1, 5);
         as<OpcUa_ExpandedNodeId>(v).ServerIndex = 3;
     },
     "41 01 05 00 03 00 00 00"},
    {"expandednodeid_with_both", OpcUaType_ExpandedNodeId,
     [](void* v) {
         auto& nodeId = as<OpcUa_ExpandedNodeId>(v);
         nodeId.NodeId = {OpcUa_IdentifierType_String, 0, {}};
         nodeId.NodeId.Identifier.String = {};
         setText(nodeId.NodeId.Identifier.String, "n");
         setText(nodeId.NamespaceUri, "u");
         nodeId.ServerIndex = 1;
     },
     "C3 00 00 01 00 00 00 6E 01 00 00 00 75 01 00 00 00"},
    {"statuscode", OpcUaType_StatusCode,
     [](void* v) { as<OpcUa_StatusCode>(v) = OpcUa_BadDecodingError; }, "00 00 07 80"},
    {"qualifiedname_null", OpcUaType_QualifiedName, nullptr, "00 00 FF FF FF FF"},
    {"qualifiedname", OpcUaType_QualifiedName,
     [](void* v) {
         as<OpcUa_QualifiedName>(v).NamespaceIndex = 0x0102;
         setText(as<OpcUa_QualifiedName>(v).Name, "x");
     },
     "02 01 01 00 00 00 78"},
    {"localizedtext_null", OpcUaType_LocalizedText, nullptr, "00"},
    {"localizedtext_with_locale", OpcUaType_LocalizedText,
     [](void* v) { setText(as<OpcUa_LocalizedText>(v).Locale, "en"); }, "01 02 00 00 00 65 6E"},
    {"localizedtext_with_text", OpcUaType_LocalizedText,
     [](void* v) { setText(as<OpcUa_LocalizedText>(v).Text, "a"); }, "02 01 00 00 00 61"},
    {"localizedtext_with_empty_text", OpcUaType_LocalizedText,
     [](void* v) { setText(as<OpcUa_LocalizedText>(v).Text, ""); }, "02 00 00 00 00"},
    {"localizedtext_with_both", OpcUaType_LocalizedText,
     [](void* v) {
         setText(as<OpcUa_LocalizedText>(v).Locale, "en");
         setText(as<OpcUa_LocalizedText>(v).Text, "a");
     },
     "03 02 00 00 00 65 6E 01 00 00 00 61"},
    {"extensionobject_without_body", OpcUaType_ExtensionObject, nullptr, "00 00 00"},
    {"extensionobject_with_bytes", OpcUaType_ExtensionObject,
     [](void* v) {
         auto& object = as<OpcUa_ExtensionObject>(v);
         makeNumeric(object.TypeId.NodeId, 2, 300);
         object.Encoding = OpcUa_ExtensionObjectEncoding_Binary;
         setBytes(object.Body.Binary, {1, 2});
         object.BodySize = 2;
     },
     "01 02 2C 01 01 02 00 00 00 01 02"},
    {"extensionobject_with_xml", OpcUaType_ExtensionObject,
     [](void* v) {
         auto& object = as<OpcUa_ExtensionObject>(v);
         makeNumeric(object.TypeId.NodeId, 0, 9);
         object.Encoding = OpcUa_ExtensionObjectEncoding_Xml;
         setBytes(object.Body.Xml, {'<', '/', '>'});
         object.BodySize = 3;
     },
     "00 09 02 03 00 00 00 3C 2F 3E"},
    {"datavalue_empty", OpcUaType_DataValue, nullptr, "00"},
    {"datavalue_with_value", OpcUaType_DataValue,
     [](void* v) {
         as<OpcUa_DataValue>(v).Value.Datatype = OpcUaType_Byte;
         as<OpcUa_DataValue>(v).Value.Value.Byte = 7;
     },
     "01 03 07"},
    {"datavalue_with_status", OpcUaType_DataValue,
     [](void* v) { as<OpcUa_DataValue>(v).StatusCode = 0x80010203; }, "02 03 02 01 80"},
    {"datavalue_with_source_time", OpcUaType_DataValue,
     [](void* v) {
         as<OpcUa_DataValue>(v).SourceTimestamp = {1, 0};
     },
     "04 01 00 00 00 00 00 00 00"},
    {"datavalue_with_server_time", OpcUaType_DataValue,
     [](void* v) {
         as<OpcUa_DataValue>(v).ServerTimestamp = {0, 1};
     },
     "08 00 00 00 00 01 00 00 00"},
    {"datavalue_with_source_picoseconds", OpcUaType_DataValue,
     [](void* v) { as<OpcUa_DataValue>(v).SourcePicoseconds = 9999; }, "10 0F 27"},
    {"datavalue_with_server_picoseconds", OpcUaType_DataValue,
     [](void* v) { as<OpcUa_DataValue>(v).ServerPicoseconds = 1; }, "20 01 00"},
    {"datavalue_with_all", OpcUaType_DataValue,
     [](void* v) {
         auto& value = as<OpcUa_DataValue>(v);
         value.Value.Datatype = OpcUaType_Boolean;
         value.Value.Value.Boolean = 1;
         value.StatusCode = 0x40000000;
         value.SourceTimestamp = {2, 0};
         value.SourcePicoseconds = 3;
         value.ServerTimestamp = {4, 0};
         value.ServerPicoseconds = 5;
     },
     "3F 01 01 00 00 00 40 02 00 00 00 00 00 00 00 03 00 04 00 00 00 00 00 00 00 05 00"},
    {"variant_null", OpcUaType_Variant, nullptr, "00"},
    {"variant_double", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_Double;
         as<OpcUa_Variant>(v).Value.Double = -6.5;
     },
     "0B 00 00 00 00 00 00 1A C0"},
    {"variant_null_string", OpcUaType_Variant,
     [](void* v) { as<OpcUa_Variant>(v).Datatype = OpcUaType_String; }, "0C FF FF FF FF"},
    {"variant_nodeid", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_NodeId;
         as<OpcUa_Variant>(v).Value.NodeId = allocate<OpcUa_NodeId>();
         makeNumeric(*as<OpcUa_Variant>(v).Value.NodeId, 0, 85);
     },
     "11 00 55"},
    {"variant_null_array", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_Int32;
         as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array;
         as<OpcUa_Variant>(v).Value.Array = {-1, nullptr};
     },
     "86 FF FF FF FF"},
    {"variant_empty_array", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_String;
         as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array;
     },
     "8C 00 00 00 00"},
    {"variant_array", OpcUaType_Variant,
     [](void* v) {
         auto* numbers = allocate<OpcUa_Int16>(2);
         numbers[0] = 1;
         numbers[1] = -1;
         as<OpcUa_Variant>(v).Datatype = OpcUaType_Int16;
         as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array;
         as<OpcUa_Variant>(v).Value.Array = {2, numbers};
     },
     "84 02 00 00 00 01 00 FF FF"},
    {"variant_matrix", OpcUaType_Variant,
     [](void* v) {
         makeMatrix(as<OpcUa_Variant>(v), OpcUaType_Byte, {2, 3}, 6);
         std::memcpy(as<OpcUa_Variant>(v).Value.Matrix.Elements, "abcdef", 6);
     },
     "C3 06 00 00 00 61 62 63 64 65 66 02 00 00 00 02 00 00 00 03 00 00 00"},
    {"variant_matrix_without_elements", OpcUaType_Variant,
     [](void* v) {
         makeMatrix(as<OpcUa_Variant>(v), OpcUaType_Byte, {0, 3}, 0);
     },
     "C3 00 00 00 00 02 00 00 00 00 00 00 00 03 00 00 00"},
    {"variant_array_of_variants", OpcUaType_Variant,
     [](void* v) { makeNested(as<OpcUa_Variant>(v), NestingKind::ArrayOfVariants, 1); },
     "98 01 00 00 00 00"},
    {"diagnosticinfo_empty", OpcUaType_DiagnosticInfo, nullptr, "00"},
    {"diagnosticinfo_symbolic_id", OpcUaType_DiagnosticInfo,
     [](void* v) { as<OpcUa_DiagnosticInfo>(v).SymbolicId = 0; }, "01 00 00 00 00"},
    {"diagnosticinfo_namespace", OpcUaType_DiagnosticInfo,
     [](void* v) { as<OpcUa_DiagnosticInfo>(v).NamespaceUri = 1; }, "02 01 00 00 00"},
    {"diagnosticinfo_localized_text", OpcUaType_DiagnosticInfo,
     [](void* v) { as<OpcUa_DiagnosticInfo>(v).LocalizedText = 2; }, "04 02 00 00 00"},
    {"diagnosticinfo_locale", OpcUaType_DiagnosticInfo,
     [](void* v) { as<OpcUa_DiagnosticInfo>(v).Locale = 3; }, "08 03 00 00 00"},
    {"diagnosticinfo_additional_info", OpcUaType_DiagnosticInfo,
     [](void* v) { setText(as<OpcUa_DiagnosticInfo>(v).AdditionalInfo, "i"); },
     "10 01 00 00 00 69"},
    {"diagnosticinfo_inner_status", OpcUaType_DiagnosticInfo,
     [](void* v) { as<OpcUa_DiagnosticInfo>(v).InnerStatusCode = 4; }, "20 04 00 00 00"},
    {"diagnosticinfo_locale_before_text", OpcUaType_DiagnosticInfo,
     [](void* v) {
         as<OpcUa_DiagnosticInfo>(v).Locale = 3;
         as<OpcUa_DiagnosticInfo>(v).LocalizedText = 2;
     },
     "0C 03 00 00 00 02 00 00 00"},
    {"diagnosticinfo_with_all", OpcUaType_DiagnosticInfo,
     [](void* v) {
         auto& info = as<OpcUa_DiagnosticInfo>(v);
         info = {1, 2, 3, 4, {}, 5, allocate<OpcUa_DiagnosticInfo>()};
         setText(info.AdditionalInfo, "");
         OpcUa_DiagnosticInfo_Initialize(info.InnerDiagnosticInfo);
     },
     "7F 01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 00 00 00 00 05 00 00 00 00"},
};

class EncodedValues : public testing::TestWithParam<EncodedValue>
{
};

TEST_P(EncodedValues, are_written_as_these_bytes_and_counted_rightly)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    EXPECT_EQ(toHex(encode(context, GetParam().type, value.get())), GetParam().bytes);
}

TEST_P(EncodedValues, are_read_from_these_bytes)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    BuiltInValue read(GetParam().type);
    EXPECT_EQ(decode(context, fromHex(GetParam().bytes), GetParam().type, read.get()), OpcUa_Good);
    EXPECT_EQ(OpcUa_BuiltInType_GetTraits(GetParam().type)->Compare(read.get(), value.get()), 0);
    EXPECT_EQ(toHex(encode(context, GetParam().type, read.get())), GetParam().bytes);
}

TEST_P(EncodedValues, fill_a_stream_of_their_size_and_no_smaller_one)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    const auto size = static_cast<OpcUa_UInt32>(fromHex(GetParam().bytes).size());
    EncoderOnMemory encoder(context.get(), size);
    EXPECT_EQ(codecOf(GetParam().type).write(encoder.get(), value.get(), nullptr), OpcUa_Good);
    EXPECT_EQ(toHex(encoder.bytes()), GetParam().bytes);
    if (size > 1) {
        EncoderOnMemory smaller(context.get(), size - 1);
        EXPECT_EQ(codecOf(GetParam().type).write(smaller.get(), value.get(), nullptr),
                  OpcUa_BadEncodingLimitsExceeded);
    }
}

TEST_P(EncodedValues, are_read_alike_with_other_bytes_behind_them)
{
    TestContext context;
    const BuiltInValue value(GetParam().type, GetParam().fill);
    for (const unsigned filler : {0x00u, 0x55u, 0xFFu}) {
        Bytes bytes = fromHex(GetParam().bytes);
        bytes.insert(bytes.end(), 64, static_cast<OpcUa_Byte>(filler));
        DecoderOnMemory decoder(bytes, context.get());
        BuiltInValue read(GetParam().type);
        EXPECT_EQ(codecOf(GetParam().type).read(decoder.get(), read.get()), OpcUa_Good);
        EXPECT_EQ(decoder.remaining(), 64u);
        EXPECT_EQ(OpcUa_BuiltInType_GetTraits(GetParam().type)->Compare(read.get(), value.get()),
                  0);
        EXPECT_EQ(toHex(encode(context, GetParam().type, read.get())), GetParam().bytes);
    }
}

/// A scalar number of every type in a variant, alone and in a data value with every field.
TEST(NumberValues, of_every_type_are_written_and_read_with_and_without_room)
{
    TestContext context;
    for (const BuiltInSample& sample : builtInSamples()) {
        SCOPED_TRACE(sample.name);
        OwnedVariant variant;
        makeScalar(*variant, sample);
        Bytes bytes = encode(context, OpcUaType_Variant, variant.get());
        const BuiltInValue value(sample.type, sample.fill);
        Bytes expected = encode(context, sample.type, value.get());
        expected.insert(expected.begin(), sample.type);
        EXPECT_EQ(toHex(bytes), toHex(expected));
        for (OpcUa_Byte mask = 0x01; mask <= 0x3F; mask = static_cast<OpcUa_Byte>(mask + 2)) {
            OpcUa_DataValue dataValue{};
            dataValue.Value = *variant;
            dataValue.StatusCode = (mask & 0x02) != 0 ? 0x80010000 : 0;
            dataValue.SourceTimestamp.dwLowDateTime = (mask & 0x04) != 0 ? 1 : 0;
            dataValue.ServerTimestamp.dwHighDateTime = (mask & 0x08) != 0 ? 2 : 0;
            dataValue.SourcePicoseconds = (mask & 0x10) != 0 ? 3 : 0;
            dataValue.ServerPicoseconds = (mask & 0x20) != 0 ? 4 : 0;
            const Bytes whole = encode(context, OpcUaType_DataValue, &dataValue);
            ASSERT_EQ(whole.front(), mask);
            EncoderOnMemory exact(context.get(), static_cast<OpcUa_UInt32>(whole.size()));
            EXPECT_EQ(exact->WriteDataValue(exact.get(), "", &dataValue, nullptr), OpcUa_Good);
            EXPECT_EQ(toHex(exact.bytes()), toHex(whole));
            Bytes followed = whole;
            followed.insert(followed.end(), 64, 0xFF);
            for (const Bytes& input : {whole, followed}) {
                DecoderOnMemory decoder(input, context.get());
                BuiltInValue read(OpcUaType_DataValue);
                EXPECT_EQ(decoder->ReadDataValue(decoder.get(), "",
                                                 static_cast<OpcUa_DataValue*>(read.get())),
                          OpcUa_Good);
                EXPECT_EQ(decoder.remaining(), input.size() - whole.size());
                EXPECT_EQ(toHex(encode(context, OpcUaType_DataValue, read.get())), toHex(whole));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Table, EncodedValues, testing::ValuesIn(encodedValues),
                         [](const auto& row) { return std::string(row.param.name); });

// Values that several in-memory forms stand for, or that have none on the wire.

TEST(WrittenValue, any_true_boolean_is_one)
{
    TestContext context;
    const OpcUa_Boolean value = 7;
    EXPECT_EQ(toHex(encode(context, OpcUaType_Boolean, &value)), "01");
}

TEST(WrittenValue, plain_text_stands_for_a_string)
{
    TestContext context;
    EXPECT_EQ(toHex(encode(context, OpcUaType_String, OpcUa_String_FromPlainText("AB"))),
              "02 00 00 00 41 42");
}

TEST(WrittenValue, negative_length_of_a_byte_string_is_null)
{
    TestContext context;
    const OpcUa_ByteString value = {-5, nullptr};
    EXPECT_EQ(toHex(encode(context, OpcUaType_ByteString, &value)), "FF FF FF FF");
}

TEST(WrittenValue, missing_guid_of_a_node_id_is_the_null_guid)
{
    TestContext context;
    OpcUa_NodeId value = {OpcUa_IdentifierType_Guid, 0, {}};
    value.Identifier.Guid = nullptr;
    EXPECT_EQ(toHex(encode(context, OpcUaType_NodeId, &value)),
              "04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

TEST(WrittenValue, missing_scalar_of_a_variant_is_the_empty_value_of_its_type)
{
    TestContext context;
    for (const BuiltInSample& sample : builtInSamples()) {
        SCOPED_TRACE(sample.name);
        OpcUa_Variant variant{};
        variant.Datatype = sample.type;
        const BuiltInValue empty(sample.type);
        Bytes expected = encode(context, sample.type, empty.get());
        if (sample.type == OpcUaType_ByteString || sample.type == OpcUaType_XmlElement) {
            variant.Value.ByteString.Length = -1;
        }
        expected.insert(expected.begin(), sample.type);
        EXPECT_EQ(toHex(encode(context, OpcUaType_Variant, &variant)), toHex(expected));
    }
}

/// A value that has no encoding.
struct UnwritableValue
{
    const char* name;
    OpcUa_Byte type;
    void (*fill)(void* value);
    OpcUa_StatusCode status;
};

std::ostream& operator<<(std::ostream& stream, const UnwritableValue& row)
{
    return stream << row.name;
}

OpcUa_Int32 someDimensions[] = {2, 3};
OpcUa_Int32 negativeDimensions[] = {-2, -3};
OpcUa_Int32 hugeDimensions[] = {65536, 65536};

template <OpcUa_Int32* dimensions, OpcUa_Int32 count>
void makeBadMatrix(void* value)
{
    auto& variant = as<OpcUa_Variant>(value);
    variant.Datatype = OpcUaType_Int32;
    variant.ArrayType = OpcUa_VariantArrayType_Matrix;
    variant.Value.Matrix = {count, dimensions, nullptr};
}

const UnwritableValue unwritableValues[] = {
    {"string_longer_than_a_length_can_say", OpcUaType_String,
     [](void* v) {
         static char text[] = "text";
         as<OpcUa_String>(v) = {0, 0x80000000u, text};
     },
     OpcUa_BadEncodingLimitsExceeded},
    {"byte_string_without_its_block", OpcUaType_ByteString,
     [](void* v) {
         as<OpcUa_ByteString>(v) = {1, nullptr};
     },
     OpcUa_BadEncodingError},
    {"node_id_of_an_unknown_kind", OpcUaType_NodeId,
     [](void* v) { as<OpcUa_NodeId>(v).IdentifierType = 4; }, OpcUa_BadEncodingError},
    {"extension_object_of_an_unknown_encoding", OpcUaType_ExtensionObject,
     [](void* v) {
         as<OpcUa_ExtensionObject>(v).Encoding = static_cast<OpcUa_ExtensionObjectEncoding>(4);
     },
     OpcUa_BadEncodingError},
    {"extension_object_without_its_record", OpcUaType_ExtensionObject,
     [](void* v) {
         as<OpcUa_ExtensionObject>(v).Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
     },
     OpcUa_BadEncodingError},
    {"variant_of_an_unknown_type", OpcUaType_Variant,
     [](void* v) { as<OpcUa_Variant>(v).Datatype = 26; }, OpcUa_BadEncodingError},
    {"variant_array_of_an_unknown_type", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = 26;
         as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array;
     },
     OpcUa_BadEncodingError},
    {"variant_array_of_nothing", OpcUaType_Variant,
     [](void* v) { as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array; },
     OpcUa_BadEncodingError},
    {"variant_of_an_unknown_shape", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_Int32;
         as<OpcUa_Variant>(v).ArrayType = 3;
     },
     OpcUa_BadEncodingError},
    {"variant_array_without_its_block", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_Int32;
         as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array;
         as<OpcUa_Variant>(v).Value.Array = {1, nullptr};
     },
     OpcUa_BadEncodingError},
    {"variant_array_of_a_count_below_null", OpcUaType_Variant,
     [](void* v) {
         as<OpcUa_Variant>(v).Datatype = OpcUaType_Int32;
         as<OpcUa_Variant>(v).ArrayType = OpcUa_VariantArrayType_Array;
         as<OpcUa_Variant>(v).Value.Array = {-2, nullptr};
     },
     OpcUa_BadEncodingError},
    {"matrix_without_dimensions", OpcUaType_Variant, makeBadMatrix<nullptr, 0>,
     OpcUa_BadEncodingError},
    {"matrix_without_its_dimensions_block", OpcUaType_Variant, makeBadMatrix<nullptr, 2>,
     OpcUa_BadEncodingError},
    {"matrix_without_its_elements", OpcUaType_Variant, makeBadMatrix<someDimensions, 2>,
     OpcUa_BadEncodingError},
    {"matrix_of_negative_dimensions", OpcUaType_Variant, makeBadMatrix<negativeDimensions, 2>,
     OpcUa_BadEncodingError},
    {"matrix_of_more_elements_than_a_count_can_say", OpcUaType_Variant,
     makeBadMatrix<hugeDimensions, 2>, OpcUa_BadEncodingError},
};

class UnwritableValues : public testing::TestWithParam<UnwritableValue>
{
};

TEST_P(UnwritableValues, are_refused_in_writing_and_in_counting)
{
    TestContext context;
    EncoderOnMemory encoder(context.get());
    // It may point at memory that isn't its own, so nothing clears it.
    alignas(8) unsigned char value[sizeof(OpcUa_ExtensionObject)];
    OpcUa_BuiltInType_GetTraits(GetParam().type)->Initialize(value);
    GetParam().fill(value);
    EXPECT_EQ(codecOf(GetParam().type).write(encoder.get(), value, nullptr), GetParam().status);
    OpcUa_Int32 size = 5;
    EXPECT_EQ(codecOf(GetParam().type).write(encoder.get(), value, &size), GetParam().status);
    EXPECT_EQ(size, 5);
}

INSTANTIATE_TEST_SUITE_P(Table, UnwritableValues, testing::ValuesIn(unwritableValues),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
