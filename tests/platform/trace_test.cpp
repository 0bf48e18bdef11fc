#include "platform/clock.h"
#include "platform/status.h"
#include "platform/threadid.h"
#include "platform/trace.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TraceToStandardOutput : public testing::Test
{
protected:
    TraceToStandardOutput()
    {
        EXPECT_EQ(OpcUa_Trace_Initialize(), OpcUa_Good);
        OpcUa_Trace_Configure(true, 0xFFFFFFFFu);
    }
    ~TraceToStandardOutput() override
    {
        OpcUa_P_Clock_SetSource(nullptr);
        OpcUa_Trace_Configure(false, 0);
        OpcUa_Trace_Clear();
    }

    static std::string threadPrefix()
    {
        std::array<char, 20> text{};
        std::snprintf(text.data(), text.size(), "|%08X| ", OpcUa_P_Thread_GetCurrentId());
        return text.data();
    }
};

TEST(Trace, message_before_initialisation_is_lost)
{
    OpcUa_Trace_Clear();
    OpcUa_Trace_Configure(true, OpcUa_TraceLevel_Error);
    static int calls = 0;
    OpcUa_Trace_SetHook([](const char*) { ++calls; });
    EXPECT_FALSE(OpcUa_Trace(OpcUa_TraceLevel_Error, "early"));
    EXPECT_EQ(calls, 0);
    OpcUa_Trace_SetHook(nullptr);
}

TEST(Trace, message_after_the_end_is_lost_until_the_next_start)
{
    {
        const TraceRecorder recorder;
        ASSERT_TRUE(recorder.isReady());
        OpcUa_Trace_Clear();
        OpcUa_Trace_Clear();
        EXPECT_FALSE(OpcUa_Trace(OpcUa_TraceLevel_Error, "late"));
        EXPECT_EQ(OpcUa_Trace_Initialize(), OpcUa_Good);
        EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "again"));
    }
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre("again"));
}

TEST(Trace, off_flag_silences_every_level)
{
    const TraceRecorder recorder;
    OpcUa_Trace_Configure(false, 0xFFFFFFFFu);
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "nothing"));
    EXPECT_THAT(TraceRecorder::messages(), IsEmpty());
}

TEST(Trace, level_mask_picks_the_messages)
{
    const std::array<OpcUa_UInt32, 5> levels = {OpcUa_TraceLevel_Content, OpcUa_TraceLevel_Debug,
                                                OpcUa_TraceLevel_System, OpcUa_TraceLevel_Warning,
                                                OpcUa_TraceLevel_Error};
    for (OpcUa_UInt32 mask = 0; mask < 64; mask += 2) {
        SCOPED_TRACE(mask);
        const TraceRecorder recorder(mask);
        std::vector<std::string> expected;
        for (const OpcUa_UInt32 level : levels) {
            EXPECT_TRUE(OpcUa_Trace(level, "%u", level));
            if ((mask & level) != 0) {
                expected.push_back(std::to_string(level));
            }
        }
        EXPECT_EQ(TraceRecorder::messages(), expected);
    }
}

TEST(Trace, message_is_formatted)
{
    const TraceRecorder recorder;
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Debug, "%s has %d of %u%%\n", "it", -3, 40u));
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre("it has -3 of 40%\n"));
}

TEST(Trace, message_is_cut_at_199_characters)
{
    const TraceRecorder recorder;
    for (const std::size_t length : {std::size_t{0}, std::size_t{198}, std::size_t{199},
                                     std::size_t{200}, std::size_t{5000}}) {
        SCOPED_TRACE(length);
        std::string text(length, 'x');
        if (length > 0) {
            text.back() = 'y';
        }
        TraceRecorder::messages().clear();
        EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "%s", text.c_str()));
        EXPECT_THAT(TraceRecorder::messages(), ElementsAre(text.substr(0, 199)));
    }
}

TEST(Trace, hook_may_use_the_trace_itself)
{
    static bool isFirst;
    isFirst = true;
    const TraceRecorder recorder;
    OpcUa_Trace_SetHook([](const char* message) {
        TraceRecorder::messages().emplace_back(message);
        if (isFirst) {
            isFirst = false;
            OpcUa_Trace(OpcUa_TraceLevel_Error, "inner");
        }
    });
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "outer"));
    EXPECT_THAT(TraceRecorder::messages(), ElementsAre("outer", "inner"));
}

TEST(Trace, messages_of_eight_threads_arrive_whole)
{
    constexpr int perThread = 500;
    const TraceRecorder recorder;
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([number] {
            for (int i = 0; i < perThread; ++i) {
                OpcUa_Trace(OpcUa_TraceLevel_Debug, "thread %d message %d end", number, i);
                OpcUa_Trace_Configure(true, 0xFFFFFFFFu);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(TraceRecorder::messages().size(), 8u * perThread);
    for (const std::string& message : TraceRecorder::messages()) {
        ASSERT_THAT(message, testing::MatchesRegex("thread [0-7] message [0-9]+ end"));
    }
}

TEST_F(TraceToStandardOutput, line_has_thread_time_and_text)
{
    OpcUa_P_Clock_SetSource([] { return OpcUa_UInt64{125963012967890000}; });
    testing::internal::CaptureStdout();
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "hello %d\n", 5));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              threadPrefix() + "2000-02-29T12:34:56.789Z hello 5\n");
}

TEST_F(TraceToStandardOutput, time_that_has_no_text_is_left_out)
{
    OpcUa_P_Clock_SetSource([] { return OpcUa_UInt64{0xFFFFFFFFFFFFFFFF}; });
    testing::internal::CaptureStdout();
    EXPECT_TRUE(OpcUa_Trace(OpcUa_TraceLevel_Error, "hello\n"));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), threadPrefix() + " hello\n");
}

TEST_F(TraceToStandardOutput, null_hook_restores_it)
{
    OpcUa_Trace_SetHook([](const char*) {});
    testing::internal::CaptureStdout();
    OpcUa_Trace(OpcUa_TraceLevel_Error, "to the hook\n");
    OpcUa_Trace_SetHook(nullptr);
    OpcUa_Trace(OpcUa_TraceLevel_Error, "to the output\n");
    const std::string output = testing::internal::GetCapturedStdout();
    EXPECT_THAT(output, testing::HasSubstr("to the output\n"));
    EXPECT_THAT(output, testing::Not(testing::HasSubstr("to the hook")));
}

TEST_F(TraceToStandardOutput, percent_signs_in_a_value_are_printed)
{
    testing::internal::CaptureStdout();
    OpcUa_Trace(OpcUa_TraceLevel_Error, "%s", "100%s%n\n");
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr(" 100%s%n\n"));
}

} // namespace
