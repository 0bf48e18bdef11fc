#include "platform/semaphore.h"
#include "platform/status.h"
#include "platform/thread.h"
#include "platform/threadid.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

namespace {

void doNothing(void* /*argument*/) {}

void storeThreadId(void* argument)
{
    *static_cast<OpcUa_UInt32*>(argument) = OpcUa_P_Thread_GetCurrentId();
}

TEST(Thread, record_has_its_fields_in_order)
{
    EXPECT_EQ(offsetof(OpcUa_ThreadRecord, handle), 0u);
    EXPECT_LT(offsetof(OpcUa_ThreadRecord, handle), offsetof(OpcUa_ThreadRecord, startFunction));
    EXPECT_LT(offsetof(OpcUa_ThreadRecord, startFunction),
              offsetof(OpcUa_ThreadRecord, startArgument));
}

TEST(Thread, stack_size_is_one_mebibyte)
{
    EXPECT_EQ(ThreadStackSize, 1048576u);
}

TEST(Thread, null_is_refused_everywhere)
{
    OpcUa_Thread none = nullptr;
    EXPECT_EQ(OpcUa_P_Thread_Create(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Thread_Start(nullptr, doNothing, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Thread_Wait(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Thread_Delete(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&none), OpcUa_BadInvalidArgument);
}

TEST(Thread, record_of_a_new_thread_is_empty)
{
    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    EXPECT_EQ(thread->handle, nullptr);
    EXPECT_EQ(thread->startFunction, nullptr);
    EXPECT_EQ(thread->startArgument, nullptr);
    EXPECT_EQ(OpcUa_P_Thread_Start(thread, nullptr, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
    EXPECT_EQ(thread, nullptr);
}

TEST(Thread, start_runs_the_function_with_its_argument_on_another_thread)
{
    OpcUa_UInt32 id = 0;
    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    ASSERT_EQ(OpcUa_P_Thread_Start(thread, storeThreadId, &id), OpcUa_Good);
    EXPECT_NE(thread->handle, nullptr);
    EXPECT_EQ(thread->startFunction, &storeThreadId);
    EXPECT_EQ(thread->startArgument, &id);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_Good);
    EXPECT_NE(id, 0u);
    EXPECT_NE(id, OpcUa_P_Thread_GetCurrentId());
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
}

TEST(Thread, it_starts_once_and_is_waited_for_once)
{
    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    ASSERT_EQ(OpcUa_P_Thread_Start(thread, doNothing, nullptr), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Start(thread, doNothing, nullptr), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Thread_Start(thread, doNothing, nullptr), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
}

/// What a thread needs to try to wait for itself.
struct SelfWait
{
    OpcUa_Thread thread = nullptr;
    OpcUa_Semaphore started = nullptr;
    OpcUa_StatusCode status = OpcUa_Good;
};

TEST(Thread, it_can_not_wait_for_itself)
{
    SelfWait wait;
    ASSERT_EQ(OpcUa_P_Semaphore_Create(&wait.started, 0, 1), OpcUa_Good);
    ASSERT_EQ(OpcUa_P_Thread_Create(&wait.thread), OpcUa_Good);
    const auto waitForItself = [](void* argument) {
        auto& self = *static_cast<SelfWait*>(argument);
        OpcUa_P_Semaphore_Wait(self.started);
        self.status = OpcUa_P_Thread_Wait(self.thread);
    };
    ASSERT_EQ(OpcUa_P_Thread_Start(wait.thread, waitForItself, &wait), OpcUa_Good);
    OpcUa_P_Semaphore_Post(wait.started, 1);
    EXPECT_EQ(OpcUa_P_Thread_Wait(wait.thread), OpcUa_Good);
    EXPECT_EQ(wait.status, OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&wait.thread), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_Delete(&wait.started), OpcUa_Good);
}

TEST(Thread, it_goes_on_after_its_record_was_deleted)
{
    std::array<OpcUa_Semaphore, 2> semaphores{};
    for (OpcUa_Semaphore& semaphore : semaphores) {
        ASSERT_EQ(OpcUa_P_Semaphore_Create(&semaphore, 0, 1), OpcUa_Good);
    }
    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    const auto answer = [](void* argument) {
        const auto& pair = *static_cast<std::array<OpcUa_Semaphore, 2>*>(argument);
        OpcUa_P_Semaphore_Wait(pair[0]);
        OpcUa_P_Semaphore_Post(pair[1], 1);
    };
    ASSERT_EQ(OpcUa_P_Thread_Start(thread, answer, &semaphores), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_Post(semaphores[0], 1), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Semaphore_TimedWait(semaphores[1], 60000), OpcUa_Good);
    for (OpcUa_Semaphore& semaphore : semaphores) {
        EXPECT_EQ(OpcUa_P_Semaphore_Delete(&semaphore), OpcUa_Good);
    }
}

TEST(Thread, every_failing_allocation_is_out_of_memory_and_it_can_be_started_later)
{
    const std::size_t failures = forEveryFailingAllocation(
        [] {
            OpcUa_Thread thread = nullptr;
            const OpcUa_StatusCode status = OpcUa_P_Thread_Create(&thread);
            OpcUa_P_Thread_Delete(&thread);
            return status;
        },
        [](OpcUa_StatusCode status) { EXPECT_EQ(status, OpcUa_BadOutOfMemory); });
    EXPECT_EQ(failures, 1u);

    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    const std::size_t startFailures = forEveryFailingAllocation(
        [thread] { return OpcUa_P_Thread_Start(thread, doNothing, nullptr); },
        [](OpcUa_StatusCode status) { EXPECT_EQ(status, OpcUa_BadOutOfMemory); });
    EXPECT_EQ(startFailures, 2u);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
}

} // namespace
