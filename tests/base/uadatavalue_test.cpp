#include "base/uadatavalue.h"
#include "base/uadatetime.h"
#include "base/uavariant.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "tests/base/textof.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

static_assert(std::is_nothrow_copy_constructible_v<UaDataValue>);
static_assert(std::is_nothrow_move_constructible_v<UaDataValue>);
static_assert(std::is_nothrow_copy_assignable_v<UaDataValue>);
static_assert(std::is_nothrow_move_assignable_v<UaDataValue>);
static_assert(sizeof(UaDataValue) == sizeof(void*));

constexpr OpcUa_Int64 sourceTicks = 125963012967890000;
constexpr OpcUa_Int64 serverTicks = 125963012967900000;

UaVariant textVariant(const char* text)
{
    UaVariant variant;
    variant.setString(text);
    return variant;
}

UaVariant numberVariant(OpcUa_Double number)
{
    UaVariant variant;
    variant.setDouble(number);
    return variant;
}

UaDataValue sample()
{
    return {textVariant("running"),
            OpcUa_UncertainInitialValue,
            UaDateTime(sourceTicks),
            UaDateTime(serverTicks),
            1234,
            5678};
}

void expectEmpty(const UaDataValue& dataValue)
{
    EXPECT_TRUE(dataValue.value().isEmpty());
    EXPECT_EQ(dataValue.statusCode(), OpcUa_Good);
    EXPECT_TRUE(dataValue.sourceTimestamp().isNull());
    EXPECT_TRUE(dataValue.serverTimestamp().isNull());
    EXPECT_EQ(dataValue.sourcePicoseconds(), 0);
    EXPECT_EQ(dataValue.serverPicoseconds(), 0);
    EXPECT_EQ(dataValue, UaDataValue());
}

TEST(UaDataValue, default_is_a_null_value_with_status_good)
{
    UaDataValue dataValue;
    expectEmpty(dataValue);
    dataValue.clear();
    expectEmpty(dataValue);
}

TEST(UaDataValue, keeps_every_field)
{
    const UaDataValue dataValue = sample();
    EXPECT_EQ(textOf(dataValue.value().toString()), "running");
    EXPECT_EQ(dataValue.statusCode(), OpcUa_UncertainInitialValue);
    EXPECT_EQ(dataValue.sourceTimestamp().toInt64(), sourceTicks);
    EXPECT_EQ(dataValue.serverTimestamp().toInt64(), serverTicks);
    EXPECT_EQ(dataValue.sourcePicoseconds(), 1234);
    EXPECT_EQ(dataValue.serverPicoseconds(), 5678);
}

struct SetterRow
{
    const char* name;
    std::function<OpcUa_StatusCode(UaDataValue&)> set;
    std::function<bool(const UaDataValue&)> isSet;
};

std::vector<SetterRow> setterRows()
{
    return {
        {"value", [](UaDataValue& target) { return target.setValue(textVariant("stopped")); },
         [](const UaDataValue& target) { return target.value() == textVariant("stopped"); }},
        {"detached value",
         [](UaDataValue& target) {
             UaVariant value = textVariant("stopped");
             return target.setValue(value, true);
         },
         [](const UaDataValue& target) { return target.value() == textVariant("stopped"); }},
        {"copied value",
         [](UaDataValue& target) {
             UaVariant value = textVariant("stopped");
             return target.setValue(value, false);
         },
         [](const UaDataValue& target) { return target.value() == textVariant("stopped"); }},
        {"status code", [](UaDataValue& target) { return target.setStatusCode(OpcUa_BadNoData); },
         [](const UaDataValue& target) { return target.statusCode() == OpcUa_BadNoData; }},
        {"source timestamp",
         [](UaDataValue& target) { return target.setSourceTimestamp(UaDateTime(OpcUa_Int64{1})); },
         [](const UaDataValue& target) { return target.sourceTimestamp().toInt64() == 1; }},
        {"server timestamp",
         [](UaDataValue& target) { return target.setServerTimestamp(UaDateTime(OpcUa_Int64{1})); },
         [](const UaDataValue& target) { return target.serverTimestamp().toInt64() == 1; }},
        {"source picoseconds", [](UaDataValue& target) { return target.setSourcePicoseconds(9); },
         [](const UaDataValue& target) { return target.sourcePicoseconds() == 9; }},
        {"server picoseconds", [](UaDataValue& target) { return target.setServerPicoseconds(9); },
         [](const UaDataValue& target) { return target.serverPicoseconds() == 9; }}};
}

/// The fields in which two data values differ.
int countDifferences(const UaDataValue& left, const UaDataValue& right)
{
    return (left.value() == right.value() ? 0 : 1) +
           (left.statusCode() == right.statusCode() ? 0 : 1) +
           (left.sourceTimestamp() == right.sourceTimestamp() ? 0 : 1) +
           (left.serverTimestamp() == right.serverTimestamp() ? 0 : 1) +
           (left.sourcePicoseconds() == right.sourcePicoseconds() ? 0 : 1) +
           (left.serverPicoseconds() == right.serverPicoseconds() ? 0 : 1);
}

TEST(UaDataValue, each_setter_changes_its_field_of_its_handle_alone)
{
    for (const SetterRow& row : setterRows()) {
        SCOPED_TRACE(row.name);
        UaDataValue empty;
        EXPECT_EQ(row.set(empty), OpcUa_Good);
        EXPECT_TRUE(row.isSet(empty));
        EXPECT_EQ(countDifferences(empty, UaDataValue()), 1);

        UaDataValue single = sample();
        const OpcUa_DataValue* block = single.toOpcUaDataValue();
        EXPECT_EQ(row.set(single), OpcUa_Good);
        EXPECT_TRUE(row.isSet(single));
        EXPECT_EQ(countDifferences(single, sample()), 1);
        EXPECT_EQ(single.toOpcUaDataValue(), block); // changed in place

        UaDataValue shared = sample();
        const UaDataValue other = shared;
        EXPECT_EQ(row.set(shared), OpcUa_Good);
        EXPECT_TRUE(row.isSet(shared));
        EXPECT_EQ(countDifferences(shared, sample()), 1);
        EXPECT_EQ(other, sample());
    }
}

TEST(UaDataValue, a_setter_without_memory_leaves_both_handles)
{
    for (const SetterRow& row : setterRows()) {
        SCOPED_TRACE(row.name);
        const UaDataValue whole = sample();
        std::size_t failures = 0;
        for (std::size_t failAt = 0; failAt < 8; ++failAt) {
            UaDataValue dataValue = whole;
            OpcUa_StatusCode status = OpcUa_Good;
            {
                const AllocationFaults faults(failAt);
                status = row.set(dataValue);
            }
            // The setters of a value make their argument first, and may set a Null one then.
            if (OpcUa_IsBad(status)) {
                EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                EXPECT_EQ(dataValue.toOpcUaDataValue(), whole.toOpcUaDataValue());
                ++failures;
            }
        }
        EXPECT_GE(failures, 1u);
        EXPECT_EQ(whole, sample());
    }
}

TEST(UaDataValue, set_value_detaches_on_success_alone)
{
    UaDataValue dataValue = sample();
    const UaDataValue other = dataValue;
    UaVariant value = textVariant("a text that is far too long for any small space inside");
    const char* text = value.toOpcUaVariant()->Value.String.strContent;
    {
        const AllocationFaults noMemory(0);
        EXPECT_EQ(dataValue.setValue(value, true), OpcUa_BadOutOfMemory);
    }
    EXPECT_FALSE(value.isEmpty());
    EXPECT_EQ(dataValue.setValue(value, true), OpcUa_Good);
    EXPECT_TRUE(value.isEmpty());
    EXPECT_EQ(dataValue.toOpcUaDataValue()->Value.Value.String.strContent, text); // moved
    value = dataValue.value();
    EXPECT_EQ(dataValue.setValue(value, false), OpcUa_Good);
    EXPECT_FALSE(value.isEmpty());
}

TEST(UaDataValue, a_value_that_cant_be_copied_is_refused)
{
    UaDataValue dataValue = sample();
    OpcUa_Variant unknown{};
    unknown.Datatype = 26;
    UaVariant value;
    value.attach(unknown);
    EXPECT_EQ(dataValue.setValue(value), OpcUa_BadInvalidArgument);
    EXPECT_EQ(dataValue, sample());
}

TEST(UaDataValue, copies_and_moves_share_the_block_without_an_allocation)
{
    const UaDataValue original = sample();
    const AllocationFaults noMemory(0);
    UaDataValue copy = original;
    const UaDataValue moved = std::move(copy);
    EXPECT_EQ(moved.toOpcUaDataValue(), original.toOpcUaDataValue());
    expectEmpty(copy); // NOLINT(bugprone-use-after-move): a moved one is empty
    copy = moved;
    UaDataValue& self = copy;
    copy = self;
    copy = std::move(self);
    EXPECT_EQ(copy.toOpcUaDataValue(), original.toOpcUaDataValue());
    copy.clear();
    EXPECT_EQ(moved.toOpcUaDataValue(), original.toOpcUaDataValue());
    EXPECT_FALSE(AllocationFaults::hasFailed());
}

TEST(UaDataValue, records_are_copied_deeply)
{
    const UaDataValue source = sample();
    UaDataValue dataValue(*source.toOpcUaDataValue());
    EXPECT_EQ(dataValue, source);
    EXPECT_NE(dataValue.toOpcUaDataValue()->Value.Value.String.strContent,
              source.toOpcUaDataValue()->Value.Value.String.strContent);
    UaDataValue assigned;
    assigned = *dataValue.toOpcUaDataValue();
    assigned = *assigned.toOpcUaDataValue(); // its own record
    EXPECT_EQ(assigned, source);
}

TEST(UaDataValue, copy_to_and_detach_fill_a_record)
{
    UaDataValue dataValue = sample();
    OpcUa_DataValue target;
    OpcUa_DataValue_Initialize(&target);
    ASSERT_EQ(dataValue.copyTo(&target), OpcUa_Good);
    EXPECT_TRUE(UaDataValue::isEqual(target, *sample().toOpcUaDataValue(), true));
    {
        const AllocationFaults noMemory(0);
        ASSERT_EQ(dataValue.detach(&target), OpcUa_Good); // nobody shares it: it moves
        EXPECT_FALSE(AllocationFaults::hasFailed());
    }
    expectEmpty(dataValue);
    EXPECT_TRUE(UaDataValue::isEqual(target, *sample().toOpcUaDataValue(), true));

    dataValue = sample();
    const UaDataValue shared = dataValue;
    {
        const AllocationFaults noMemory(0);
        EXPECT_EQ(dataValue.detach(&target), OpcUa_BadOutOfMemory);
    }
    EXPECT_EQ(dataValue, shared);
    ASSERT_EQ(dataValue.detach(&target), OpcUa_Good);
    EXPECT_EQ(shared, sample());
    EXPECT_TRUE(UaDataValue::isEqual(target, *sample().toOpcUaDataValue(), true));
    OpcUa_DataValue_Clear(&target);

    EXPECT_EQ(shared.copyTo(nullptr), OpcUa_BadInvalidArgument);
    dataValue = shared;
    EXPECT_EQ(dataValue.detach(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(dataValue, sample());
}

struct CompareRow
{
    const char* name;
    UaDataValue other;
    bool bEqualWithTimes;
    bool bEqualWithoutTimes;
};

TEST(UaDataValue, compares_status_then_times_when_asked_then_the_value)
{
    const UaDataValue dataValue = sample();
    std::vector<CompareRow> rows = {{"same", sample(), true, true},
                                    {"status code", sample(), false, false},
                                    {"source timestamp", sample(), false, true},
                                    {"server timestamp", sample(), false, true},
                                    {"source picoseconds", sample(), false, true},
                                    {"server picoseconds", sample(), false, true},
                                    {"value", sample(), false, false},
                                    {"type", sample(), false, false}};
    ASSERT_EQ(rows[1].other.setStatusCode(OpcUa_Good), OpcUa_Good);
    ASSERT_EQ(rows[2].other.setSourceTimestamp(UaDateTime()), OpcUa_Good);
    ASSERT_EQ(rows[3].other.setServerTimestamp(UaDateTime()), OpcUa_Good);
    ASSERT_EQ(rows[4].other.setSourcePicoseconds(0), OpcUa_Good);
    ASSERT_EQ(rows[5].other.setServerPicoseconds(0), OpcUa_Good);
    ASSERT_EQ(rows[6].other.setValue(textVariant("Running")), OpcUa_Good);
    ASSERT_EQ(rows[7].other.setValue(numberVariant(1)), OpcUa_Good);
    for (const CompareRow& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(dataValue.isEqual(row.other, true), row.bEqualWithTimes);
        EXPECT_EQ(row.other.isEqual(dataValue, true), row.bEqualWithTimes);
        EXPECT_EQ(dataValue.isEqual(row.other, false), row.bEqualWithoutTimes);
        EXPECT_EQ(dataValue == row.other, row.bEqualWithTimes);
        EXPECT_EQ(dataValue != row.other, !row.bEqualWithTimes);
    }
}

TEST(UaDataValue, a_nan_differs_from_itself)
{
    UaDataValue dataValue;
    ASSERT_EQ(dataValue.setValue(numberVariant(std::numeric_limits<OpcUa_Double>::quiet_NaN())),
              OpcUa_Good);
    const UaDataValue same = dataValue; // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_FALSE(dataValue == same);
    EXPECT_TRUE(dataValue != same);
}

TEST(UaDataValue, every_failed_allocation_gives_the_empty_data_value)
{
    const UaVariant value = textVariant("running");
    const UaDataValue whole = sample();
    EXPECT_GE(
        forEveryFailingAllocation(
            [&] { return UaDataValue(value, OpcUa_Bad, UaDateTime(), UaDateTime()); }, expectEmpty),
        2u);
    EXPECT_GE(forEveryFailingAllocation([&] { return UaDataValue(*whole.toOpcUaDataValue()); },
                                        expectEmpty),
              2u);
    forEveryFailingAllocation([&] { return whole.value(); },
                              [](const UaVariant& copy) { EXPECT_TRUE(copy.isEmpty()); });
}

TEST(UaDataValue, copies_are_used_and_dropped_from_eight_threads)
{
    UaDataValue first = sample();
    std::array<int, 8> matches{};
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int& match : matches) {
        threads.emplace_back([&match, own = first]() mutable {
            for (int round = 0; round < 200; ++round) {
                UaDataValue copy = own;
                match += copy.statusCode() == OpcUa_UncertainInitialValue ? 1 : 0;
                match += OpcUa_IsGood(copy.setStatusCode(OpcUa_Good)) ? 1 : 0;
                match += own.statusCode() == OpcUa_UncertainInitialValue ? 1 : 0;
            }
            own.clear();
        });
    }
    first.clear(); // one of the threads frees the block
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const int match : matches) {
        EXPECT_EQ(match, 600);
    }
}

} // namespace
