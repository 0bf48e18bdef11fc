#include "platform/allocator.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_encodeable.h"
#include "stack/opcua_encodeableobject.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_types.h"
#include "tests/stack/recordcoder.h"
#include "tests/stack/recordsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>

// The operations of every known type, on records in every state.

namespace {

/// Runs `test(layout, sample)` for all types and some samples.
template <typename Samples, typename Test>
void forEveryRecord(const Samples& samples, Test test)
{
    for (const OpcUa_RecordLayout* layout : allLayouts()) {
        for (const RecordSample sample : samples) {
            SCOPED_TRACE(testing::Message() << layout->Type->TypeName << ' ' << sample);
            test(*layout, sample);
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

TEST(Encodeable, initialize_makes_a_zero_state_of_any_memory)
{
    forEveryRecord(std::array{RecordSample::Initialized}, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        EXPECT_TRUE(record.isInitialized());
        layout.Type->Initialize(nullptr);
    });
}

TEST(Encodeable, clear_frees_everything_and_may_be_called_twice_and_on_null)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        SampleRecord record(layout, sample);
        layout.Type->Clear(record.get());
        EXPECT_TRUE(record.isInitialized());
        layout.Type->Clear(record.get());
        EXPECT_TRUE(record.isInitialized());
        layout.Type->Clear(nullptr);
    });
}

TEST(Encodeable, a_filled_record_differs_from_an_initialized_one)
{
    forEveryRecord(filledRecordSamples, [](const auto& layout, auto sample) {
        EXPECT_FALSE(SampleRecord(layout, sample).isInitialized());
    });
}

TEST(Encodeable, decoding_gives_what_was_encoded)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        const Bytes bytes = encodedRecord(*layout.Type, record.get());
        SampleRecord decoded(layout);
        RecordReader reader(bytes);
        EXPECT_EQ(layout.Type->Decode(decoded.get(), reader.decoder()), OpcUa_Good);
        EXPECT_EQ(reader.position(), bytes.size());
        EXPECT_EQ(layout.Type->Compare(record.get(), decoded.get()), 0);
        EXPECT_EQ(encodedRecord(*layout.Type, decoded.get()), bytes);
    });
}

TEST(Encodeable, an_initialized_record_takes_the_least_bytes)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        const std::size_t size = encodedRecord(*layout.Type, record.get()).size();
        EXPECT_GE(size, layout.MinimalSize);
        if (sample == RecordSample::Initialized) {
            EXPECT_EQ(size, layout.MinimalSize);
        }
    });
}

TEST(Encodeable, get_size_writes_nothing_and_replaces_the_size)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        RecordWriter writer;
        OpcUa_Int32 size = 12345;
        EXPECT_EQ(layout.Type->GetSize(record.get(), writer.encoder(), &size), OpcUa_Good);
        EXPECT_TRUE(writer.bytes().empty());
        EXPECT_EQ(layout.Type->Encode(record.get(), writer.encoder()), OpcUa_Good);
        EXPECT_EQ(writer.bytes().size(), static_cast<std::size_t>(size));
    });
}

TEST(Encodeable, copies_are_deep_and_equal)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        SampleRecord copy(layout, RecordSample::FilledOther);
        void* allocated = nullptr;
        Bytes bytes;
        {
            const SampleRecord record(layout, sample);
            bytes = encodedRecord(*layout.Type, record.get());
            EXPECT_EQ(layout.Type->CopyTo(record.get(), copy.get()), OpcUa_Good);
            EXPECT_EQ(layout.Type->Copy(record.get(), &allocated), OpcUa_Good);
            EXPECT_EQ(layout.Type->Compare(record.get(), copy.get()), 0);
            EXPECT_EQ(layout.Type->Compare(record.get(), allocated), 0);
        }
        EXPECT_EQ(encodedRecord(*layout.Type, copy.get()), bytes);
        EXPECT_EQ(encodedRecord(*layout.Type, allocated), bytes);
        OpcUa_EncodeableObject_Delete(layout.Type, &allocated);
    });
}

TEST(Encodeable, copy_to_itself_changes_nothing)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        SampleRecord record(layout, sample);
        const SampleRecord twin(layout, sample);
        EXPECT_EQ(layout.Type->CopyTo(record.get(), record.get()), OpcUa_Good);
        EXPECT_EQ(layout.Type->Compare(record.get(), twin.get()), 0);
    });
}

TEST(Encodeable, copy_refuses_null_and_clears_the_destination)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        SampleRecord record(layout, sample);
        EXPECT_EQ(layout.Type->CopyTo(record.get(), nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(layout.Type->CopyTo(nullptr, record.get()), OpcUa_BadInvalidArgument);
        EXPECT_TRUE(record.isInitialized());
        void* copy = &record;
        EXPECT_EQ(layout.Type->Copy(record.get(), nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(layout.Type->Copy(nullptr, &copy), OpcUa_BadInvalidArgument);
        EXPECT_EQ(copy, nullptr);
    });
}

TEST(Encodeable, coding_refuses_null)
{
    forEveryRecord(std::array{RecordSample::Filled}, [](const auto& layout, auto sample) {
        SampleRecord record(layout, sample);
        RecordWriter writer;
        OpcUa_Int32 size = 7;
        EXPECT_EQ(layout.Type->GetSize(nullptr, writer.encoder(), &size), OpcUa_BadInvalidArgument);
        EXPECT_EQ(size, -1);
        size = 7;
        EXPECT_EQ(layout.Type->GetSize(record.get(), nullptr, &size), OpcUa_BadInvalidArgument);
        EXPECT_EQ(size, -1);
        EXPECT_EQ(layout.Type->GetSize(record.get(), writer.encoder(), nullptr),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(layout.Type->Encode(nullptr, writer.encoder()), OpcUa_BadInvalidArgument);
        EXPECT_EQ(layout.Type->Encode(record.get(), nullptr), OpcUa_BadInvalidArgument);
        EXPECT_TRUE(writer.bytes().empty());
        RecordReader reader({});
        EXPECT_EQ(layout.Type->Decode(nullptr, reader.decoder()), OpcUa_BadInvalidArgument);
        SampleRecord target(layout);
        EXPECT_EQ(layout.Type->Decode(target.get(), nullptr), OpcUa_BadInvalidArgument);
        EXPECT_TRUE(target.isInitialized());
    });
}

TEST(Encodeable, coding_refuses_closed_coders)
{
    forEveryRecord(std::array{RecordSample::Filled}, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        RecordWriter writer;
        EXPECT_EQ(writer.encoder()->Interface->Close(writer.encoder()), OpcUa_Good);
        OpcUa_Int32 size = 7;
        EXPECT_EQ(layout.Type->GetSize(record.get(), writer.encoder(), &size),
                  OpcUa_BadInvalidState);
        EXPECT_EQ(size, -1);
        EXPECT_EQ(layout.Type->Encode(record.get(), writer.encoder()), OpcUa_BadInvalidState);
        RecordReader reader({});
        EXPECT_EQ(reader.decoder()->Interface->Close(reader.decoder()), OpcUa_Good);
        SampleRecord target(layout);
        EXPECT_EQ(layout.Type->Decode(target.get(), reader.decoder()), OpcUa_BadInvalidState);
        EXPECT_TRUE(target.isInitialized());
    });
}

TEST(Encodeable, compare_takes_the_same_pointer_as_equal_and_null_as_less)
{
    forEveryRecord(allRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        const SampleRecord twin(layout, sample);
        EXPECT_EQ(layout.Type->Compare(record.get(), record.get()), 0);
        EXPECT_EQ(layout.Type->Compare(nullptr, nullptr), 0);
        EXPECT_EQ(layout.Type->Compare(record.get(), twin.get()), 0);
        EXPECT_LT(layout.Type->Compare(nullptr, record.get()), 0);
        EXPECT_GT(layout.Type->Compare(record.get(), nullptr), 0);
    });
}

/// Overwrites one field of a filled record by that of another one, and back.
void swapField(const OpcUa_RecordField& field, void* left, void* right)
{
    const auto swapBytes = [&](OpcUa_UInt16 offset, std::size_t size) {
        auto* l = OpcUa_Field_At<unsigned char>(left, offset);
        auto* r = OpcUa_Field_At<unsigned char>(right, offset);
        std::swap_ranges(l, l + size, r);
    };
    if (field.IsArray) {
        swapBytes(field.Offset, sizeof(void*));
        swapBytes(field.CountOffset, sizeof(OpcUa_Int32));
    } else if (field.Type == OpcUa_FieldType_Record) {
        swapBytes(field.Offset, field.Record->Size);
    } else {
        swapBytes(field.Offset, OpcUa_BuiltInType_GetTraits(field.BuiltInType)->Size);
    }
}

TEST(Encodeable, compare_sees_every_field)
{
    forEveryRecord(std::array{RecordSample::Filled}, [](const auto& layout, auto sample) {
        SampleRecord record(layout, sample);
        SampleRecord changed(layout, sample);
        SampleRecord donor(layout, RecordSample::FilledOther);
        for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
            SCOPED_TRACE(field.Name);
            swapField(field, changed.get(), donor.get());
            EXPECT_NE(layout.Type->Compare(record.get(), changed.get()), 0);
            swapField(field, changed.get(), donor.get());
            EXPECT_EQ(layout.Type->Compare(record.get(), changed.get()), 0);
        }
    });
}

TEST(Encodeable, compare_goes_by_the_first_field_that_differs)
{
    OpcUa_ServiceCounterDataType left = {10, 1};
    OpcUa_ServiceCounterDataType right = {7, 9};
    EXPECT_EQ(OpcUa_ServiceCounterDataType_Compare(&left, &right), 3);
    EXPECT_EQ(OpcUa_ServiceCounterDataType_Compare(&right, &left), -3);
    right.TotalCount = 10;
    EXPECT_EQ(OpcUa_ServiceCounterDataType_Compare(&left, &right), -8);
}

TEST(Encodeable, arrays_of_different_counts_compare_as_one)
{
    OpcUa_UInt32 numbers[] = {1, 2, 3};
    OpcUa_TransferResult left = {OpcUa_Good, 2, numbers};
    OpcUa_TransferResult right = {OpcUa_Good, 3, numbers};
    EXPECT_EQ(OpcUa_TransferResult_Compare(&left, &right), 1);
    EXPECT_EQ(OpcUa_TransferResult_Compare(&right, &left), 1);
    left = {OpcUa_Good, -1, nullptr};
    right = {OpcUa_Good, 0, nullptr};
    EXPECT_EQ(OpcUa_TransferResult_Compare(&left, &right), 1);
}

TEST(Encodeable, equal_counts_leave_it_to_the_elements)
{
    OpcUa_UInt32 low[] = {1, 2};
    OpcUa_UInt32 high[] = {1, 7};
    const OpcUa_TransferResult left = {OpcUa_Good, 2, low};
    const OpcUa_TransferResult right = {OpcUa_Good, 2, high};
    EXPECT_EQ(OpcUa_TransferResult_Compare(&left, &right), -5);
    const OpcUa_TransferResult missing = {OpcUa_Good, 2, nullptr};
    EXPECT_EQ(OpcUa_TransferResult_Compare(&missing, &right), -1);
}

TEST(Encodeable, a_count_without_block_is_refused_by_coding_and_copied_as_it_stands)
{
    const OpcUa_TransferResult broken = {OpcUa_Good, 2, nullptr};
    RecordWriter writer;
    OpcUa_Int32 size = 0;
    EXPECT_TRUE(OpcUa_IsBad(OpcUa_TransferResult_GetSize(&broken, writer.encoder(), &size)));
    EXPECT_EQ(size, -1);
    EXPECT_TRUE(OpcUa_IsBad(OpcUa_TransferResult_Encode(&broken, writer.encoder())));
    OpcUa_TransferResult copy = {};
    EXPECT_EQ(OpcUa_TransferResult_CopyTo(&broken, &copy), OpcUa_Good);
    EXPECT_EQ(OpcUa_TransferResult_Compare(&broken, &copy), 0);
    OpcUa_TransferResult_Clear(&copy);
}

TEST(Encodeable, arrays_of_records_keep_to_the_limit_of_arrays)
{
    const SampleRecord record(layoutOf("BrowseResult"), RecordSample::FilledOther);
    const Bytes bytes = encodedRecord(OpcUa_BrowseResult_EncodeableType, record.get());
    ASSERT_EQ(static_cast<const OpcUa_BrowseResult*>(record.get())->NoOfReferences, 2);
    struct Row
    {
        OpcUa_Int32 limit;
        OpcUa_StatusCode status;
    };
    for (const Row& row :
         {Row{0, OpcUa_Good}, Row{2, OpcUa_Good}, Row{1, OpcUa_BadEncodingLimitsExceeded}}) {
        OpcUa_MessageContext context = unlimitedContext();
        context.MaxArrayLength = row.limit;
        RecordReader reader(bytes, context);
        SampleRecord decoded(layoutOf("BrowseResult"));
        EXPECT_EQ(OpcUa_BrowseResult_EncodeableType.Decode(decoded.get(), reader.decoder()),
                  row.status)
            << row.limit;
        EXPECT_EQ(decoded.isInitialized(), OpcUa_IsBad(row.status));
    }
}

TEST(Encodeable, a_count_below_minus_one_is_no_array)
{
    const Bytes bytes = {0, 0, 0, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0};
    SampleRecord decoded(layoutOf("ContentFilterResult"));
    EXPECT_EQ(decodeRecord(OpcUa_ContentFilterResult_EncodeableType, std::span(bytes).subspan(4),
                           decoded.get()),
              OpcUa_BadDecodingError);
    EXPECT_TRUE(decoded.isInitialized());
    EXPECT_EQ(decodeRecord(OpcUa_ContentFilterResult_EncodeableType, bytes, decoded.get()),
              OpcUa_BadDecodingError);
    EXPECT_TRUE(decoded.isInitialized());
    OpcUa_ContentFilterResult result;
    OpcUa_ContentFilterResult_Initialize(&result);
    result.NoOfElementResults = -2;
    RecordWriter writer;
    EXPECT_EQ(OpcUa_ContentFilterResult_Encode(&result, writer.encoder()), OpcUa_BadEncodingError);
}

TEST(Encodeable, the_first_field_that_cannot_be_written_ends_the_encoding)
{
    OpcUa_BrowsePath path;
    OpcUa_BrowsePath_Initialize(&path);
    path.StartingNode.IdentifierType = 9;
    path.RelativePath.NoOfElements = 1;
    RecordWriter writer;
    OpcUa_Int32 size = 0;
    EXPECT_EQ(OpcUa_BrowsePath_Encode(&path, writer.encoder()), OpcUa_BadEncodingError);
    EXPECT_EQ(OpcUa_BrowsePath_GetSize(&path, writer.encoder(), &size), OpcUa_BadEncodingError);
    EXPECT_EQ(size, -1);
    EXPECT_TRUE(writer.bytes().empty());
}

TEST(Encodeable, copy_takes_a_source_that_lies_inside_the_destination)
{
    OpcUa_LiteralOperand outer;
    OpcUa_LiteralOperand_Initialize(&outer);
    auto* object = static_cast<OpcUa_ExtensionObject*>(
        OpcUa_Memory_AllocZeroed(1, sizeof(OpcUa_ExtensionObject)));
    outer.Value.Datatype = OpcUaType_ExtensionObject;
    outer.Value.Value.ExtensionObject = object;
    void* inner = nullptr;
    ASSERT_EQ(OpcUa_EncodeableObject_CreateExtension(&OpcUa_LiteralOperand_EncodeableType, object,
                                                     &inner),
              OpcUa_Good);
    auto* operand = static_cast<OpcUa_LiteralOperand*>(inner);
    operand->Value.Datatype = OpcUaType_Int32;
    operand->Value.Value.Int32 = 42;
    EXPECT_EQ(OpcUa_LiteralOperand_CopyTo(operand, &outer), OpcUa_Good);
    EXPECT_EQ(outer.Value.Datatype, OpcUaType_Int32);
    EXPECT_EQ(outer.Value.Value.Int32, 42);
    OpcUa_LiteralOperand_Clear(&outer);
}

TEST(Encodeable, copies_of_what_cannot_be_copied_leave_nothing)
{
    OpcUa_CallMethodRequest source;
    OpcUa_CallMethodRequest_Initialize(&source);
    OpcUa_Variant arguments[2] = {};
    arguments[1].Datatype = 99;
    source.NoOfInputArguments = 2;
    source.InputArguments = arguments;
    SampleRecord copy(layoutOf("CallMethodRequest"), RecordSample::Filled);
    EXPECT_EQ(
        OpcUa_CallMethodRequest_CopyTo(&source, static_cast<OpcUa_CallMethodRequest*>(copy.get())),
        OpcUa_BadInvalidArgument);
    EXPECT_TRUE(copy.isInitialized());
    OpcUa_CallMethodRequest* allocated = &source;
    EXPECT_EQ(OpcUa_CallMethodRequest_Copy(&source, &allocated), OpcUa_BadInvalidArgument);
    EXPECT_EQ(allocated, nullptr);
    EXPECT_EQ(OpcUa_CallMethodRequest_Copy(&source, nullptr), OpcUa_BadInvalidArgument);
}

TEST(Encodeable, every_failed_allocation_of_a_copy_leaves_a_cleared_record)
{
    forEveryRecord(filledRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        SampleRecord copy(layout);
        forEveryFailingAllocation([&] { return layout.Type->CopyTo(record.get(), copy.get()); },
                                  [&](OpcUa_StatusCode status) {
                                      EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                      EXPECT_TRUE(copy.isInitialized());
                                  });
        EXPECT_EQ(layout.Type->Compare(record.get(), copy.get()), 0);
        void* allocated = nullptr;
        const std::size_t failures =
            forEveryFailingAllocation([&] { return layout.Type->Copy(record.get(), &allocated); },
                                      [&](OpcUa_StatusCode status) {
                                          EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                          EXPECT_EQ(allocated, nullptr);
                                      });
        EXPECT_GT(failures, 0u);
        EXPECT_EQ(layout.Type->Compare(record.get(), allocated), 0);
        OpcUa_EncodeableObject_Delete(layout.Type, &allocated);
    });
}

TEST(Encodeable, every_failed_allocation_of_a_decoding_leaves_a_cleared_record)
{
    forEveryRecord(filledRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        const Bytes bytes = encodedRecord(*layout.Type, record.get());
        SampleRecord decoded(layout);
        const std::size_t failures = forEveryFailingAllocation(
            [&] { return decodeRecord(*layout.Type, bytes, decoded.get()); },
            [&](OpcUa_StatusCode status) {
                EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                EXPECT_TRUE(decoded.isInitialized());
            });
        EXPECT_GT(failures, 0u);
        EXPECT_EQ(layout.Type->Compare(record.get(), decoded.get()), 0);
    });
}

TEST(Encodeable, every_failed_allocation_of_an_encoding_gives_its_status)
{
    forEveryRecord(filledRecordSamples, [](const auto& layout, auto sample) {
        const SampleRecord record(layout, sample);
        const auto encode = [&] {
            RecordWriter writer;
            return OpcUa_IsBad(writer.status())
                       ? writer.status()
                       : layout.Type->Encode(record.get(), writer.encoder());
        };
        const std::size_t failures = forEveryFailingAllocation(
            encode, [](auto status) { EXPECT_EQ(status, OpcUa_BadOutOfMemory); });
        EXPECT_GT(failures, 0u);
    });
}

} // namespace
