#include "platform/status.h"
#include "stack/opcua_proxystubconfiguration.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using Record = OpcUa_ProxyStubConfiguration;
using Words = std::array<OpcUa_UInt32, 21>;

enum class Kind
{
    Boolean,
    Unsigned,
    Signed
};

struct Field
{
    const char* key; // null for one that isn't in the text form
    Kind kind;
    OpcUa_UInt32 reset;
    OpcUa_UInt32 chosen; // what stands in place of -1
};

constexpr OpcUa_UInt32 allBits = 0xFFFFFFFFu;

constexpr std::array<Field, 21> fields = {{
    {"TraceEnabled", Kind::Boolean, 0, allBits},
    {"TraceLevel", Kind::Unsigned, 0, allBits},
    {"iSerializer_MaxAlloc", Kind::Signed, allBits, 16777216},
    {"iSerializer_MaxStringLength", Kind::Signed, allBits, 16777216},
    {"iSerializer_MaxByteStringLength", Kind::Signed, allBits, 16777216},
    {"iSerializer_MaxArrayLength", Kind::Signed, allBits, 65536},
    {"iSerializer_MaxMessageSize", Kind::Signed, allBits, 16777216},
    {"bSecureListener_ThreadPool_Enabled", Kind::Boolean, 0, allBits},
    {"iSecureListener_ThreadPool_MinThreads", Kind::Signed, allBits, 5},
    {"iSecureListener_ThreadPool_MaxThreads", Kind::Signed, allBits, 5},
    {"iSecureListener_ThreadPool_MaxJobs", Kind::Signed, allBits, 20},
    {"bSecureListener_ThreadPool_BlockOnAdd", Kind::Boolean, 0, allBits},
    {"uSecureListener_ThreadPool_Timeout", Kind::Unsigned, allBits, allBits},
    {nullptr, Kind::Signed, allBits, 300000},
    {nullptr, Kind::Signed, allBits, 3600000},
    {"bTcpListener_ClientThreadsEnabled", Kind::Boolean, 0, allBits},
    {"iTcpListener_DefaultChunkSize", Kind::Signed, allBits, 65536},
    {"iTcpConnection_DefaultChunkSize", Kind::Signed, allBits, 65536},
    {"iTcpTransport_MaxMessageLength", Kind::Signed, allBits, 16777216},
    {"iTcpTransport_MaxChunkCount", Kind::Signed, allBits, 0},
    {"bTcpStream_ExpectWriteToBlock", Kind::Boolean, 0, allBits},
}};

Words wordsOf(const Record& record)
{
    static_assert(sizeof(Words) == sizeof(Record));
    Words words{};
    std::memcpy(words.data(), &record, sizeof record);
    return words;
}

Record recordOf(const Words& words)
{
    Record record{};
    std::memcpy(&record, words.data(), sizeof record);
    return record;
}

Record resetRecord()
{
    Record record{};
    OpcUa_ProxyStubConfiguration_Initialize(&record);
    return record;
}

const Record& current()
{
    const Record* record = nullptr;
    EXPECT_EQ(OpcUa_ProxyStub_GetConfiguration(&record), OpcUa_Good);
    return *record;
}

std::string currentText()
{
    const char* text = nullptr;
    EXPECT_EQ(OpcUa_ProxyStub_GetConfigurationString(&text), OpcUa_Good);
    return text == nullptr ? "" : text;
}

std::string expectedText(const Words& words)
{
    std::string text;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const Field& field = fields.at(i);
        if (field.key == nullptr) {
            continue;
        }
        text += std::string(field.key) + ":";
        switch (field.kind) {
        case Kind::Boolean:
            text += words.at(i) != 0 ? "1" : "0";
            break;
        case Kind::Unsigned:
            text += std::to_string(words.at(i));
            break;
        case Kind::Signed:
            text += std::to_string(static_cast<OpcUa_Int32>(words.at(i)));
            break;
        }
        text += "\\";
    }
    return text;
}

/// Leaves the stack's own choice behind.
class ProxyStubConfiguration : public testing::Test
{
protected:
    ~ProxyStubConfiguration() override
    {
        const Record record = resetRecord();
        EXPECT_EQ(OpcUa_ProxyStub_ReInitialize(&record), OpcUa_Good);
    }

    static OpcUa_StatusCode set(const Words& words)
    {
        const Record record = recordOf(words);
        return OpcUa_ProxyStub_ReInitialize(&record);
    }
};

TEST_F(ProxyStubConfiguration, null_arguments_are_refused)
{
    const Words before = wordsOf(current());
    OpcUa_ProxyStubConfiguration_Initialize(nullptr);
    EXPECT_EQ(OpcUa_ProxyStub_ReInitialize(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_ProxyStub_GetConfiguration(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_ProxyStub_GetConfigurationString(nullptr), OpcUa_BadInvalidArgument);
    const Record record = resetRecord();
    std::array<char, 10> text{};
    EXPECT_EQ(OpcUa_ProxyStubConfiguration_ToText(nullptr, text.data(), 10),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_ProxyStubConfiguration_ToText(&record, nullptr, 10), OpcUa_BadInvalidArgument);
    EXPECT_EQ(wordsOf(current()), before);
}

TEST_F(ProxyStubConfiguration, initialize_resets_every_field)
{
    Words filled{};
    filled.fill(0x5A5A5A5A);
    Record record = recordOf(filled);
    OpcUa_ProxyStubConfiguration_Initialize(&record);
    const Words words = wordsOf(record);
    for (std::size_t i = 0; i < fields.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(words.at(i), fields.at(i).reset);
    }
}

TEST_F(ProxyStubConfiguration, reset_record_leaves_every_choice_to_the_stack)
{
    ASSERT_EQ(set(wordsOf(resetRecord())), OpcUa_Good);
    EXPECT_EQ(current().iSerializer_MaxStringLength, 16777216);
    EXPECT_EQ(current().iSerializer_MaxByteStringLength, 16777216);
    EXPECT_EQ(current().iSerializer_MaxArrayLength, 65536);
    EXPECT_EQ(current().iTcpListener_DefaultChunkSize, 65536);
    EXPECT_EQ(current().iTcpConnection_DefaultChunkSize, 65536);
    EXPECT_EQ(current().iTcpTransport_MaxChunkCount, 0);
}

TEST_F(ProxyStubConfiguration, each_value_of_minus_one_is_replaced_and_each_other_stays)
{
    for (const OpcUa_UInt32 value : {allBits, allBits - 1, 0u, 1u, 0x7FFFFFFFu, 0x80000000u}) {
        SCOPED_TRACE(value);
        for (std::size_t i = 0; i < fields.size(); ++i) {
            SCOPED_TRACE(i);
            Words expected{};
            expected.fill(7);
            expected.at(i) = value;
            ASSERT_EQ(set(expected), OpcUa_Good);
            if (value == allBits) {
                expected.at(i) = fields.at(i).chosen;
            }
            EXPECT_EQ(wordsOf(current()), expected);
        }
    }
}

TEST_F(ProxyStubConfiguration, the_handed_record_is_copied_and_not_changed)
{
    Record record = resetRecord();
    ASSERT_EQ(OpcUa_ProxyStub_ReInitialize(&record), OpcUa_Good);
    EXPECT_EQ(wordsOf(record), wordsOf(resetRecord()));
    record.iSerializer_MaxAlloc = 12;
    EXPECT_EQ(current().iSerializer_MaxAlloc, 16777216);
}

TEST_F(ProxyStubConfiguration, address_of_the_record_never_changes)
{
    const Record* const first = &current();
    Record record = *first;
    record.iSerializer_MaxAlloc = 12;
    ASSERT_EQ(OpcUa_ProxyStub_ReInitialize(&record), OpcUa_Good);
    EXPECT_EQ(&current(), first);
    // Its own record may be handed back.
    EXPECT_EQ(OpcUa_ProxyStub_ReInitialize(first), OpcUa_Good);
    EXPECT_EQ(first->iSerializer_MaxAlloc, 12);
}

TEST_F(ProxyStubConfiguration, live_proxies_and_stubs_keep_the_old_values)
{
    struct Row
    {
        const char* name;
        void (*add)();
        void (*remove)();
    };
    constexpr std::array<Row, 2> rows = {
        {{"proxy", OpcUa_ProxyStub_AddProxy, OpcUa_ProxyStub_RemoveProxy},
         {"stub", OpcUa_ProxyStub_AddStub, OpcUa_ProxyStub_RemoveStub}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Words words{};
        words.fill(3);
        ASSERT_EQ(set(words), OpcUa_Good);
        Words others{};
        others.fill(4);
        row.remove(); // without one nothing happens
        row.add();
        row.add();
        EXPECT_EQ(set(others), OpcUa_BadInvalidState);
        row.remove();
        EXPECT_EQ(set(others), OpcUa_BadInvalidState);
        EXPECT_EQ(wordsOf(current()), words);
        // A null record is told before the state is looked at.
        EXPECT_EQ(OpcUa_ProxyStub_ReInitialize(nullptr), OpcUa_BadInvalidArgument);
        row.remove();
        EXPECT_EQ(set(others), OpcUa_Good);
        EXPECT_EQ(wordsOf(current()), others);
    }
}

TEST_F(ProxyStubConfiguration, a_proxy_is_not_taken_away_as_a_stub)
{
    OpcUa_ProxyStub_AddProxy();
    OpcUa_ProxyStub_RemoveStub();
    EXPECT_EQ(set(Words{}), OpcUa_BadInvalidState);
    OpcUa_ProxyStub_RemoveProxy();
    EXPECT_EQ(set(Words{}), OpcUa_Good);
}

TEST_F(ProxyStubConfiguration, lock_is_free_after_every_outcome)
{
    OpcUa_ProxyStub_AddStub();
    EXPECT_EQ(OpcUa_ProxyStub_ReInitialize(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(set(Words{}), OpcUa_BadInvalidState);
    OpcUa_ProxyStub_RemoveStub();
    EXPECT_EQ(set(Words{}), OpcUa_Good);
    std::string fromOther;
    std::thread([&fromOther] { fromOther = currentText(); }).join();
    EXPECT_EQ(fromOther, expectedText(Words{}));
}

TEST_F(ProxyStubConfiguration, trace_follows_the_record)
{
    const TraceRecorder recorder;
    Record record = resetRecord();
    for (const bool isEnabled : {false, true}) {
        for (const OpcUa_UInt32 level : {OpcUa_TraceLevel_Debug, OpcUa_TraceLevel_Error}) {
            record.TraceEnabled = isEnabled ? 1 : 0;
            record.TraceLevel = level;
            ASSERT_EQ(OpcUa_ProxyStub_ReInitialize(&record), OpcUa_Good);
            TraceRecorder::messages().clear();
            EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "message"));
            EXPECT_EQ(TraceRecorder::messages().size(),
                      isEnabled && level == OpcUa_TraceLevel_Error ? 1u : 0u);
        }
    }
}

TEST_F(ProxyStubConfiguration, refused_record_leaves_the_trace)
{
    const TraceRecorder recorder;
    OpcUa_ProxyStub_AddStub();
    EXPECT_EQ(set(Words{}), OpcUa_BadInvalidState);
    OpcUa_ProxyStub_RemoveStub();
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "message"));
    EXPECT_THAT(TraceRecorder::messages(), testing::ElementsAre("message"));
}

TEST_F(ProxyStubConfiguration, a_hook_of_the_trace_may_ask_for_the_record)
{
    const TraceRecorder recorder;
    OpcUa_Trace_SetHook([](const char*) { TraceRecorder::messages().push_back(currentText()); });
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "message"));
    EXPECT_THAT(TraceRecorder::messages(), testing::ElementsAre(expectedText(wordsOf(current()))));
}

TEST_F(ProxyStubConfiguration, text_form_of_the_stack_s_own_choice)
{
    ASSERT_EQ(set(wordsOf(resetRecord())), OpcUa_Good);
    EXPECT_EQ(currentText(),
              "TraceEnabled:0\\TraceLevel:0\\iSerializer_MaxAlloc:16777216\\"
              "iSerializer_MaxStringLength:16777216\\iSerializer_MaxByteStringLength:16777216\\"
              "iSerializer_MaxArrayLength:65536\\iSerializer_MaxMessageSize:16777216\\"
              "bSecureListener_ThreadPool_Enabled:0\\iSecureListener_ThreadPool_MinThreads:5\\"
              "iSecureListener_ThreadPool_MaxThreads:5\\iSecureListener_ThreadPool_MaxJobs:20\\"
              "bSecureListener_ThreadPool_BlockOnAdd:0\\"
              "uSecureListener_ThreadPool_Timeout:4294967295\\"
              "bTcpListener_ClientThreadsEnabled:0\\iTcpListener_DefaultChunkSize:65536\\"
              "iTcpConnection_DefaultChunkSize:65536\\iTcpTransport_MaxMessageLength:16777216\\"
              "iTcpTransport_MaxChunkCount:0\\bTcpStream_ExpectWriteToBlock:0\\");
}

TEST_F(ProxyStubConfiguration, text_form_shows_each_field_by_its_kind)
{
    // The negative values give the longest text there is, and then the shortest one follows in the
    // same buffer.
    for (const OpcUa_UInt32 value : {0x80000000u, 2u, 0u}) {
        SCOPED_TRACE(value);
        Words words{};
        words.fill(value);
        ASSERT_EQ(set(words), OpcUa_Good);
        const std::string text = currentText();
        EXPECT_EQ(text, expectedText(words));
        EXPECT_LT(text.size(), OpcUa_ProxyStubConfiguration_TextSize);
    }
}

TEST_F(ProxyStubConfiguration, text_without_room_tells_which_field_failed)
{
    const Record record = resetRecord();
    const std::string whole = expectedText(wordsOf(record));
    const std::string first = "TraceEnabled:0\\";
    // One more character than the room, so that a write behind the end shows.
    for (OpcUa_UInt32 size = 0; size <= whole.size() + 1; ++size) {
        SCOPED_TRACE(size);
        std::string text(size + 1, '#');
        const OpcUa_StatusCode status =
            OpcUa_ProxyStubConfiguration_ToText(&record, text.data(), size);
        EXPECT_EQ(status, size <= first.size()   ? OpcUa_BadInternalError
                          : size <= whole.size() ? OpcUa_BadOutOfMemory
                                                 : OpcUa_Good);
        EXPECT_EQ(text.back(), '#');
        if (size > 0) {
            EXPECT_EQ(whole.find(text.c_str()), 0u);
        }
    }
}

TEST_F(ProxyStubConfiguration, text_takes_one_block_for_good)
{
    const char* text = nullptr;
    ASSERT_EQ(OpcUa_ProxyStub_GetConfigurationString(&text), OpcUa_Good);
    const AllocationFaults faults(0);
    const char* again = nullptr;
    EXPECT_EQ(OpcUa_ProxyStub_GetConfigurationString(&again), OpcUa_Good);
    EXPECT_EQ(again, text);
    EXPECT_FALSE(AllocationFaults::hasFailed());
}

/// Runs in a process of its own, whose text was never asked for.
TEST(ProxyStubConfigurationDeathTest, text_without_memory_is_null)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto ask = [] {
        const AllocationFaults faults(0);
        const char* text = "old";
        const bool isRefused =
            OpcUa_ProxyStub_GetConfigurationString(&text) == OpcUa_BadOutOfMemory &&
            text == nullptr;
        const bool isMadeLater =
            OpcUa_ProxyStub_GetConfigurationString(&text) == OpcUa_Good && text != nullptr;
        std::exit(isRefused && isMadeLater ? 0 : 1);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "");
}

/// Runs in a process of its own, in which no record was ever set.
TEST(ProxyStubConfigurationDeathTest, unset_record_holds_the_stack_s_own_choice)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto ask = [] {
        const Words before = wordsOf(current());
        const Record record = resetRecord();
        static_cast<void>(OpcUa_ProxyStub_ReInitialize(&record));
        std::exit(before == wordsOf(current()) ? 0 : 1);
    };
    EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "");
}

TEST_F(ProxyStubConfiguration, eight_threads_count_and_set_it)
{
    inEightThreads([] {
        Words words{};
        for (OpcUa_UInt32 i = 0; i < 200; ++i) {
            words.fill(i + 2);
            OpcUa_ProxyStub_AddProxy();
            OpcUa_ProxyStub_AddStub();
            EXPECT_EQ(set(words), OpcUa_BadInvalidState);
            OpcUa_ProxyStub_RemoveProxy();
            OpcUa_ProxyStub_RemoveStub();
            set(words);
        }
    });
    EXPECT_EQ(set(Words{}), OpcUa_Good);
}

} // namespace
