#include "platform/startup/opcua_proxystub.h"
#include "platform/status.h"
#include "platform/timer.h"
#include "stack/opcua_proxystubconfiguration.h"
#include "tests/platform/servicestates.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What runs besides the timers, as a text: one letter for each service.
std::string runningBesideTimers()
{
    std::string letters;
    letters += isTraceRunning() ? "r" : "";
    letters += isNetworkRunning() ? "n" : "";
    letters += isTypeTableFilled() ? "e" : "";
    letters += isNamespaceTableFilled() ? "u" : "";
    return letters;
}

/// The same with the timers.
std::string running()
{
    return (isTimerServiceRunning() ? "T" : "") + runningBesideTimers();
}

class ProxyStub : public testing::Test
{
protected:
    ProxyStub()
    {
        messages().clear();
        EXPECT_EQ(running(), "");
        EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    }
    ~ProxyStub() override
    {
        OpcUa_Trace_SetHook(nullptr);
        OpcUa_P_TimerService_Stop();
        const OpcUa_ProxyStubConfiguration record = configuration();
        EXPECT_EQ(OpcUa_ProxyStub_ReInitialize(&record), OpcUa_Good);
        EXPECT_EQ(running(), "");
    }

    static std::vector<std::string>& messages()
    {
        static std::vector<std::string> list;
        return list;
    }

    static OpcUa_ProxyStubConfiguration configuration(OpcUa_UInt32 traceLevel = 0)
    {
        OpcUa_ProxyStubConfiguration record{};
        OpcUa_ProxyStubConfiguration_Initialize(&record);
        record.TraceEnabled = traceLevel != 0 ? 1 : 0;
        record.TraceLevel = traceLevel;
        return record;
    }

    static OpcUa_StatusCode start(OpcUa_UInt32 traceLevel = 0)
    {
        const OpcUa_ProxyStubConfiguration record = configuration(traceLevel);
        return OpcUa_ProxyStub_Initialize(&record);
    }
};

TEST_F(ProxyStub, null_record_is_refused_and_counts_nobody)
{
    EXPECT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(running(), "T");
    ASSERT_EQ(start(), OpcUa_Good);
    EXPECT_EQ(OpcUa_ProxyStub_Initialize(nullptr), OpcUa_BadInvalidArgument);
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(running(), "");
}

TEST_F(ProxyStub, clear_without_a_user_does_nothing)
{
    OpcUa_ProxyStub_Clear();
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(running(), "T");
    ASSERT_EQ(start(), OpcUa_Good);
    EXPECT_EQ(running(), "Trneu");
    OpcUa_ProxyStub_Clear();
}

TEST_F(ProxyStub, users_are_counted)
{
    ASSERT_EQ(start(), OpcUa_Good);
    ASSERT_EQ(start(), OpcUa_Good);
    ASSERT_EQ(start(), OpcUa_Good);
    OpcUa_ProxyStub_Clear();
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(running(), "Trneu");
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(running(), "");
}

TEST_F(ProxyStub, only_the_first_record_is_taken)
{
    OpcUa_ProxyStubConfiguration record = configuration();
    record.iSerializer_MaxArrayLength = 5;
    ASSERT_EQ(OpcUa_ProxyStub_Initialize(&record), OpcUa_Good);
    record.iSerializer_MaxArrayLength = 6;
    ASSERT_EQ(OpcUa_ProxyStub_Initialize(&record), OpcUa_Good);
    const OpcUa_ProxyStubConfiguration* current = nullptr;
    ASSERT_EQ(OpcUa_ProxyStub_GetConfiguration(&current), OpcUa_Good);
    EXPECT_EQ(current->iSerializer_MaxArrayLength, 5);
    EXPECT_EQ(current->iSerializer_MaxMessageSize, 16777216);
    OpcUa_ProxyStub_Clear();
    OpcUa_ProxyStub_Clear();
}

/// Each message is kept with what runs at that moment, so that the steps between the messages show. A
/// hook must not ask the timers, which trace under their lock; a kill callback tells when they end.
TEST_F(ProxyStub, steps_have_their_order_and_their_messages)
{
    static bool areTimersStopped;
    areTimersStopped = false;
    OpcUa_Timer timer = nullptr;
    const auto kill = [](void*, OpcUa_Timer, OpcUa_UInt32) { areTimersStopped = true; };
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 100000, nullptr, kill, nullptr), OpcUa_Good);
    OpcUa_Trace_SetHook([](const char* message) {
        messages().push_back("[" + std::string(areTimersStopped ? "" : "T") +
                             runningBesideTimers() + "] " + message);
    });
    ASSERT_EQ(start(OpcUa_TraceLevel_Debug), OpcUa_Good);
    EXPECT_THAT(messages(),
                ElementsAre("[Tr] OpcUa_ProxyStub_Initialize: Tracer has been initialized!\n",
                            "[Tr] OpcUa_ProxyStub_Initialize: Network Module...\n",
                            "[Trn] OpcUa_ProxyStub_Initialize: Network Module done!\n"));
    messages().clear();
    OpcUa_ProxyStub_Clear();
    EXPECT_THAT(messages(), ElementsAre("[Trneu] OpcUa_ProxyStub_Clear: Network Module...\n",
                                        "[reu] OpcUa_ProxyStub_Clear: Network Module done!\n"));
}

TEST_F(ProxyStub, its_messages_have_level_4)
{
    OpcUa_Trace_SetHook([](const char* message) { messages().emplace_back(message); });
    ASSERT_EQ(start(0xFFFFFFFBu), OpcUa_Good);
    OpcUa_ProxyStub_Clear();
    EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(ProxyStub, later_users_make_no_messages)
{
    OpcUa_Trace_SetHook([](const char* message) { messages().emplace_back(message); });
    ASSERT_EQ(start(OpcUa_TraceLevel_Debug), OpcUa_Good);
    messages().clear();
    ASSERT_EQ(start(OpcUa_TraceLevel_Debug), OpcUa_Good);
    OpcUa_ProxyStub_Clear();
    EXPECT_THAT(messages(), IsEmpty());
    OpcUa_ProxyStub_Clear();
}

TEST_F(ProxyStub, tables_hold_the_known_types_and_the_standard_s_namespace)
{
    ASSERT_EQ(start(), OpcUa_Good);
    EXPECT_EQ(OpcUa_EncodeableTypes.Count, 221u);
    const OpcUa_EncodeableType* type = nullptr;
    // The id of the type and those of its two encodings.
    for (const OpcUa_UInt32 id : {12554u, 12680u, 12676u}) {
        EXPECT_EQ(OpcUa_EncodeableTypeTable_Find(&OpcUa_EncodeableTypes, id, nullptr, &type),
                  OpcUa_Good);
        ASSERT_NE(type, nullptr);
        EXPECT_STREQ(type->TypeName, "TrustListDataType");
    }
    EXPECT_EQ(OpcUa_Namespaces.Count, 1u);
    EXPECT_THAT(OpcUa_NamespaceTable_GetUri(&OpcUa_Namespaces, 0), testing::EndsWith("/UA/"));
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(OpcUa_EncodeableTypes.IndexCount, 0u);
    EXPECT_EQ(OpcUa_NamespaceTable_GetUri(&OpcUa_Namespaces, 0), nullptr);
}

TEST_F(ProxyStub, living_stub_or_proxy_ends_the_start)
{
    struct Row
    {
        void (*add)();
        void (*remove)();
    };
    for (const auto& [add, remove] : {Row{OpcUa_ProxyStub_AddStub, OpcUa_ProxyStub_RemoveStub},
                                      Row{OpcUa_ProxyStub_AddProxy, OpcUa_ProxyStub_RemoveProxy}}) {
        add();
        EXPECT_EQ(start(), OpcUa_BadInvalidState);
        EXPECT_EQ(running(), "");
        remove();
        ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    }
    ASSERT_EQ(start(), OpcUa_Good);
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(running(), "");
}

TEST_F(ProxyStub, failing_network_stops_what_was_started)
{
    ASSERT_EQ(OpcUa_P_Socket_InitializeNetwork(), OpcUa_Good);
    OpcUa_Trace_SetHook([](const char* message) { messages().emplace_back(message); });
    EXPECT_EQ(start(OpcUa_TraceLevel_Debug), OpcUa_BadInvalidState);
    EXPECT_EQ(running(), "");
    EXPECT_THAT(messages(),
                ElementsAre("OpcUa_ProxyStub_Initialize: Tracer has been initialized!\n",
                            "OpcUa_ProxyStub_Initialize: Network Module...\n",
                            "OpcUa_ProxyStub_Clear: Network Module...\n",
                            "OpcUa_ProxyStub_Clear: Network Module done!\n"));
}

TEST_F(ProxyStub, every_failing_allocation_of_the_start_stops_everything)
{
    const std::size_t failures =
        forEveryFailingAllocation([] { return start(); },
                                  [](OpcUa_StatusCode status) {
                                      EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                                      EXPECT_EQ(running(), "");
                                      EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
                                  });
    EXPECT_GE(failures, 5u); // two mutexes, the types, their index, the namespaces
    EXPECT_EQ(running(), "Trneu");
    OpcUa_ProxyStub_Clear();
}

TEST_F(ProxyStub, kill_callbacks_of_the_stop_may_ask_the_stack)
{
    static std::string seen;
    ASSERT_EQ(start(), OpcUa_Good);
    OpcUa_Timer timer = nullptr;
    const auto kill = [](void*, OpcUa_Timer, OpcUa_UInt32) {
        OpcUa_ProxyStub_Clear(); // nobody is left to be taken away
        seen = running();
    };
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 100000, nullptr, kill, nullptr), OpcUa_Good);
    OpcUa_ProxyStub_Clear();
    EXPECT_EQ(seen, "reu");
}

TEST_F(ProxyStub, eight_threads_start_and_stop_it)
{
    std::atomic<int> failures = 0;
    inEightThreads([&failures] {
        for (int i = 0; i < 50; ++i) {
            failures += start() == OpcUa_Good && isTraceRunning() && isNetworkRunning() ? 0 : 1;
            OpcUa_ProxyStub_Clear();
        }
    });
    EXPECT_EQ(failures, 0);
}

} // namespace
