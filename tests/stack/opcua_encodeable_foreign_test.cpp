#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_decoder.h"
#include "stack/opcua_encoder.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"
#include "tests/stack/recordsamples.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <vector>

// Encoders and decoders other than the binary ones get every field by its name through their table.

namespace {

using Encoder = OpcUa_EncoderInterface;
using Decoder = OpcUa_DecoderInterface;

/// One call of an operation.
struct Call
{
    OpcUa_Byte type;
    bool isArray;
    std::string name;
    const void* value;
    OpcUa_Int32 count;
    const OpcUa_EncodeableType* row;
    bool isForSize;

    bool operator==(const Call&) const = default;
};

/// The calls so far, and the one that fails.
struct Recorder
{
    std::vector<Call> calls;
    std::size_t failAt = SIZE_MAX;

    OpcUa_StatusCode add(const Call& call)
    {
        calls.push_back(call);
        return calls.size() - 1 == failAt ? OpcUa_BadNoCommunication : OpcUa_Good;
    }
};

/// What each field takes in the encoding of this test.
constexpr OpcUa_Int32 fieldSize = 3;

Recorder& recorderOf(void* handle)
{
    return *static_cast<Recorder*>(handle);
}

OpcUa_StatusCode addWrite(OpcUa_Encoder* encoder, const Call& call, OpcUa_Int32* size)
{
    const OpcUa_StatusCode status = recorderOf(encoder->Handle).add(call);
    if (size != nullptr && OpcUa_IsGood(status)) {
        *size += fieldSize;
    }
    return status;
}

template <typename T, OpcUa_Byte type>
OpcUa_StatusCode write(OpcUa_Encoder* encoder, const char* name, const T* value, OpcUa_Int32* size)
{
    return addWrite(encoder, {type, false, name, value, 0, nullptr, size != nullptr}, size);
}

template <typename T, OpcUa_Byte type>
OpcUa_StatusCode writeArray(OpcUa_Encoder* encoder, const char* name, const T* values,
                            OpcUa_Int32 count, OpcUa_Int32* size)
{
    return addWrite(encoder, {type, true, name, values, count, nullptr, size != nullptr}, size);
}

OpcUa_StatusCode writeRecord(OpcUa_Encoder* encoder, const char* name, const void* value,
                             const OpcUa_EncodeableType* row, OpcUa_Int32* size)
{
    return addWrite(encoder, {OpcUa_FieldType_Record, false, name, value, 0, row, size != nullptr},
                    size);
}

OpcUa_StatusCode writeRecords(OpcUa_Encoder* encoder, const char* name, const void* values,
                              OpcUa_Int32 count, const OpcUa_EncodeableType* row, OpcUa_Int32* size)
{
    return addWrite(
        encoder, {OpcUa_FieldType_Record, true, name, values, count, row, size != nullptr}, size);
}

template <typename T, OpcUa_Byte type>
OpcUa_StatusCode read(OpcUa_Decoder* decoder, const char* name, T* value)
{
    return recorderOf(decoder->Handle).add({type, false, name, value, 0, nullptr, false});
}

/// Answers with a block that the record owns from then on.
template <typename T, OpcUa_Byte type>
OpcUa_StatusCode readArray(OpcUa_Decoder* decoder, const char* name, T** values, OpcUa_Int32* count)
{
    *values = static_cast<T*>(OpcUa_Memory_Alloc(1));
    *count = 0;
    const OpcUa_StatusCode status =
        recorderOf(decoder->Handle).add({type, true, name, nullptr, 0, nullptr, false});
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(*values);
        *values = nullptr;
    }
    return status;
}

OpcUa_StatusCode readRecord(OpcUa_Decoder* decoder, const char* name, void* value,
                            const OpcUa_EncodeableType* row)
{
    return recorderOf(decoder->Handle)
        .add({OpcUa_FieldType_Record, false, name, value, 0, row, false});
}

OpcUa_StatusCode readRecords(OpcUa_Decoder* decoder, const char* name, void** values,
                             OpcUa_Int32* count, const OpcUa_EncodeableType* row)
{
    *values = OpcUa_Memory_Alloc(1);
    *count = 0;
    const OpcUa_StatusCode status =
        recorderOf(decoder->Handle)
            .add({OpcUa_FieldType_Record, true, name, nullptr, 0, row, false});
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(*values);
        *values = nullptr;
    }
    return status;
}

struct Tables
{
    Encoder encoder = {};
    Decoder decoder = {};
};

template <typename T, OpcUa_Byte type, OpcUa_WriteOperation<T> Encoder::*Write,
          OpcUa_WriteArrayOperation<T> Encoder::*WriteArray, OpcUa_ReadOperation<T> Decoder::*Read,
          OpcUa_ReadArrayOperation<T> Decoder::*ReadArray>
void fillFor(Tables& tables)
{
    tables.encoder.*Write = write<T, type>;
    tables.encoder.*WriteArray = writeArray<T, type>;
    tables.decoder.*Read = read<T, type>;
    tables.decoder.*ReadArray = readArray<T, type>;
}

Tables makeTables()
{
    Tables tables;
    fillFor<OpcUa_Boolean, OpcUaType_Boolean, &Encoder::WriteBoolean, &Encoder::WriteBooleanArray,
            &Decoder::ReadBoolean, &Decoder::ReadBooleanArray>(tables);
    fillFor<OpcUa_SByte, OpcUaType_SByte, &Encoder::WriteSByte, &Encoder::WriteSByteArray,
            &Decoder::ReadSByte, &Decoder::ReadSByteArray>(tables);
    fillFor<OpcUa_Byte, OpcUaType_Byte, &Encoder::WriteByte, &Encoder::WriteByteArray,
            &Decoder::ReadByte, &Decoder::ReadByteArray>(tables);
    fillFor<OpcUa_Int16, OpcUaType_Int16, &Encoder::WriteInt16, &Encoder::WriteInt16Array,
            &Decoder::ReadInt16, &Decoder::ReadInt16Array>(tables);
    fillFor<OpcUa_UInt16, OpcUaType_UInt16, &Encoder::WriteUInt16, &Encoder::WriteUInt16Array,
            &Decoder::ReadUInt16, &Decoder::ReadUInt16Array>(tables);
    fillFor<OpcUa_Int32, OpcUaType_Int32, &Encoder::WriteInt32, &Encoder::WriteInt32Array,
            &Decoder::ReadInt32, &Decoder::ReadInt32Array>(tables);
    fillFor<OpcUa_UInt32, OpcUaType_UInt32, &Encoder::WriteUInt32, &Encoder::WriteUInt32Array,
            &Decoder::ReadUInt32, &Decoder::ReadUInt32Array>(tables);
    fillFor<OpcUa_Int64, OpcUaType_Int64, &Encoder::WriteInt64, &Encoder::WriteInt64Array,
            &Decoder::ReadInt64, &Decoder::ReadInt64Array>(tables);
    fillFor<OpcUa_UInt64, OpcUaType_UInt64, &Encoder::WriteUInt64, &Encoder::WriteUInt64Array,
            &Decoder::ReadUInt64, &Decoder::ReadUInt64Array>(tables);
    fillFor<OpcUa_Float, OpcUaType_Float, &Encoder::WriteFloat, &Encoder::WriteFloatArray,
            &Decoder::ReadFloat, &Decoder::ReadFloatArray>(tables);
    fillFor<OpcUa_Double, OpcUaType_Double, &Encoder::WriteDouble, &Encoder::WriteDoubleArray,
            &Decoder::ReadDouble, &Decoder::ReadDoubleArray>(tables);
    fillFor<OpcUa_String, OpcUaType_String, &Encoder::WriteString, &Encoder::WriteStringArray,
            &Decoder::ReadString, &Decoder::ReadStringArray>(tables);
    fillFor<OpcUa_DateTime, OpcUaType_DateTime, &Encoder::WriteDateTime,
            &Encoder::WriteDateTimeArray, &Decoder::ReadDateTime, &Decoder::ReadDateTimeArray>(
        tables);
    fillFor<OpcUa_Guid, OpcUaType_Guid, &Encoder::WriteGuid, &Encoder::WriteGuidArray,
            &Decoder::ReadGuid, &Decoder::ReadGuidArray>(tables);
    fillFor<OpcUa_ByteString, OpcUaType_ByteString, &Encoder::WriteByteString,
            &Encoder::WriteByteStringArray, &Decoder::ReadByteString,
            &Decoder::ReadByteStringArray>(tables);
    fillFor<OpcUa_XmlElement, OpcUaType_XmlElement, &Encoder::WriteXmlElement,
            &Encoder::WriteXmlElementArray, &Decoder::ReadXmlElement,
            &Decoder::ReadXmlElementArray>(tables);
    fillFor<OpcUa_NodeId, OpcUaType_NodeId, &Encoder::WriteNodeId, &Encoder::WriteNodeIdArray,
            &Decoder::ReadNodeId, &Decoder::ReadNodeIdArray>(tables);
    fillFor<OpcUa_ExpandedNodeId, OpcUaType_ExpandedNodeId, &Encoder::WriteExpandedNodeId,
            &Encoder::WriteExpandedNodeIdArray, &Decoder::ReadExpandedNodeId,
            &Decoder::ReadExpandedNodeIdArray>(tables);
    fillFor<OpcUa_StatusCode, OpcUaType_StatusCode, &Encoder::WriteStatusCode,
            &Encoder::WriteStatusCodeArray, &Decoder::ReadStatusCode,
            &Decoder::ReadStatusCodeArray>(tables);
    fillFor<OpcUa_QualifiedName, OpcUaType_QualifiedName, &Encoder::WriteQualifiedName,
            &Encoder::WriteQualifiedNameArray, &Decoder::ReadQualifiedName,
            &Decoder::ReadQualifiedNameArray>(tables);
    fillFor<OpcUa_LocalizedText, OpcUaType_LocalizedText, &Encoder::WriteLocalizedText,
            &Encoder::WriteLocalizedTextArray, &Decoder::ReadLocalizedText,
            &Decoder::ReadLocalizedTextArray>(tables);
    fillFor<OpcUa_ExtensionObject, OpcUaType_ExtensionObject, &Encoder::WriteExtensionObject,
            &Encoder::WriteExtensionObjectArray, &Decoder::ReadExtensionObject,
            &Decoder::ReadExtensionObjectArray>(tables);
    fillFor<OpcUa_DataValue, OpcUaType_DataValue, &Encoder::WriteDataValue,
            &Encoder::WriteDataValueArray, &Decoder::ReadDataValue, &Decoder::ReadDataValueArray>(
        tables);
    fillFor<OpcUa_Variant, OpcUaType_Variant, &Encoder::WriteVariant, &Encoder::WriteVariantArray,
            &Decoder::ReadVariant, &Decoder::ReadVariantArray>(tables);
    fillFor<OpcUa_DiagnosticInfo, OpcUaType_DiagnosticInfo, &Encoder::WriteDiagnosticInfo,
            &Encoder::WriteDiagnosticInfoArray, &Decoder::ReadDiagnosticInfo,
            &Decoder::ReadDiagnosticInfoArray>(tables);
    fillFor<OpcUa_Int32, OpcUa_FieldType_Enumeration, &Encoder::WriteEnumerated,
            &Encoder::WriteEnumeratedArray, &Decoder::ReadEnumerated,
            &Decoder::ReadEnumeratedArray>(tables);
    tables.encoder.WriteEncodeable = writeRecord;
    tables.encoder.WriteEncodeableArray = writeRecords;
    tables.decoder.ReadEncodeable = readRecord;
    tables.decoder.ReadEncodeableArray = readRecords;
    return tables;
}

const Tables& tables()
{
    static const Tables made = makeTables();
    return made;
}

const OpcUa_EncodeableType* rowOf(const OpcUa_RecordField& field)
{
    return field.Record == nullptr ? nullptr : field.Record->Type;
}

/// What an encoder has to see of a record.
std::vector<Call> expectedWrites(const OpcUa_RecordLayout& layout, const void* record,
                                 bool isForSize)
{
    std::vector<Call> calls;
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray) {
            calls.push_back({field.Type, true, field.Name, OpcUa_Field_Block(field, record),
                             OpcUa_Field_Count(field, record), rowOf(field), isForSize});
        } else {
            calls.push_back({field.Type, false, field.Name, OpcUa_Field_At(record, field.Offset), 0,
                             rowOf(field), isForSize});
        }
    }
    return calls;
}

/// What a decoder has to see.
std::vector<Call> expectedReads(const OpcUa_RecordLayout& layout, void* record)
{
    std::vector<Call> calls;
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        calls.push_back({field.Type, field.IsArray, field.Name,
                         field.IsArray ? nullptr : OpcUa_Field_At(record, field.Offset), 0,
                         rowOf(field), false});
    }
    return calls;
}

template <typename Calls>
Calls firstOf(const Calls& calls, std::size_t count)
{
    return {calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(count)};
}

TEST(EncodeableForeign, encoder_gets_each_field_with_its_name_in_order)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        SCOPED_TRACE(layout->Type->TypeName);
        const SampleRecord record(*layout, RecordSample::FilledOther);
        Recorder recorder;
        OpcUa_Encoder encoder = {&tables().encoder, &recorder};
        EXPECT_EQ(layout->Type->Encode(record.get(), &encoder), OpcUa_Good);
        EXPECT_TRUE(recorder.calls == expectedWrites(*layout, record.get(), false));
    }
}

TEST(EncodeableForeign, sizes_are_those_of_the_encoder_added_up)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        SCOPED_TRACE(layout->Type->TypeName);
        const SampleRecord record(*layout, RecordSample::FilledOther);
        Recorder recorder;
        OpcUa_Encoder encoder = {&tables().encoder, &recorder};
        OpcUa_Int32 size = 1000;
        EXPECT_EQ(layout->Type->GetSize(record.get(), &encoder, &size), OpcUa_Good);
        EXPECT_EQ(size, fieldSize * layout->NoOfFields);
        EXPECT_TRUE(recorder.calls == expectedWrites(*layout, record.get(), true));
    }
}

TEST(EncodeableForeign, the_first_failing_field_ends_it)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        const SampleRecord record(*layout, RecordSample::FilledOther);
        for (std::size_t failAt = 0; failAt < layout->NoOfFields; ++failAt) {
            SCOPED_TRACE(testing::Message() << layout->Type->TypeName << ' ' << failAt);
            Recorder recorder{{}, failAt};
            OpcUa_Encoder encoder = {&tables().encoder, &recorder};
            EXPECT_EQ(layout->Type->Encode(record.get(), &encoder), OpcUa_BadNoCommunication);
            EXPECT_TRUE(recorder.calls ==
                        firstOf(expectedWrites(*layout, record.get(), false), failAt + 1));
            recorder.calls.clear();
            OpcUa_Int32 size = 1000;
            EXPECT_EQ(layout->Type->GetSize(record.get(), &encoder, &size),
                      OpcUa_BadNoCommunication);
            EXPECT_EQ(size, -1);
        }
    }
}

TEST(EncodeableForeign, decoder_gets_each_field_with_its_name_in_order)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        SCOPED_TRACE(layout->Type->TypeName);
        SampleRecord record(*layout);
        Recorder recorder;
        OpcUa_Decoder decoder = {&tables().decoder, &recorder};
        EXPECT_EQ(layout->Type->Decode(record.get(), &decoder), OpcUa_Good);
        EXPECT_TRUE(recorder.calls == expectedReads(*layout, record.get()));
        for (const OpcUa_RecordField& field : OpcUa_RecordFields{*layout}) {
            if (field.IsArray) {
                EXPECT_NE(OpcUa_Field_Block(field, record.get()), nullptr) << field.Name;
            }
        }
    }
}

TEST(EncodeableForeign, a_failing_field_clears_the_record)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        for (std::size_t failAt = 0; failAt < layout->NoOfFields; ++failAt) {
            SCOPED_TRACE(testing::Message() << layout->Type->TypeName << ' ' << failAt);
            SampleRecord record(*layout);
            Recorder recorder{{}, failAt};
            OpcUa_Decoder decoder = {&tables().decoder, &recorder};
            EXPECT_EQ(layout->Type->Decode(record.get(), &decoder), OpcUa_BadNoCommunication);
            EXPECT_TRUE(record.isInitialized());
            EXPECT_TRUE(recorder.calls ==
                        firstOf(expectedReads(*layout, record.get()), failAt + 1));
        }
    }
}

TEST(EncodeableForeign, coders_without_a_table_are_refused)
{
    const OpcUa_RecordLayout& layout = layoutOf("ReadRequest");
    SampleRecord record(layout);
    OpcUa_Encoder encoder = {};
    OpcUa_Int32 size = 0;
    EXPECT_EQ(layout.Type->Encode(record.get(), &encoder), OpcUa_BadInvalidArgument);
    EXPECT_EQ(layout.Type->GetSize(record.get(), &encoder, &size), OpcUa_BadInvalidArgument);
    EXPECT_EQ(size, -1);
    OpcUa_Decoder decoder = {};
    EXPECT_EQ(layout.Type->Decode(record.get(), &decoder), OpcUa_BadInvalidArgument);
    EXPECT_TRUE(record.isInitialized());
}

} // namespace
