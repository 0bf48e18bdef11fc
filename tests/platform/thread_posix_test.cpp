#include "platform/status.h"
#include "platform/thread.h"
#include "platform/timer.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string>

#include <pthread.h>

namespace {

/// The error with which the next threads are refused; 0 lets them through.
std::atomic<int> refusal = 0;

} // namespace

// The linker puts __wrap_pthread_create in the place of pthread_create.
extern "C" {
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*function)(void*), void* argument);

int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                          void* (*function)(void*), void* argument)
{
    const int error = refusal;
    return error != 0 ? error : __real_pthread_create(thread, attributes, function, argument);
}
}

namespace {

using testing::ElementsAre;

TEST(ThreadPosix, refused_thread_is_traced_with_the_message_of_the_system)
{
    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    {
        const TraceRecorder recorder(OpcUa_TraceLevel_Error);
        refusal = EAGAIN;
        EXPECT_EQ(OpcUa_P_Thread_Start(
                      thread, [](void*) {}, nullptr),
                  OpcUa_BadResourceUnavailable);
        refusal = 0;
        EXPECT_THAT(TraceRecorder::messages(),
                    ElementsAre("OpcUa_P_Thread_Start: CreateThread failed with error code 11 -> " +
                                std::string(std::strerror(EAGAIN)) + "\n"));
    }
    EXPECT_EQ(thread->handle, nullptr);
    EXPECT_EQ(OpcUa_P_Thread_Start(
                  thread, [](void*) {}, nullptr),
              OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
}

TEST(ThreadPosix, timer_service_without_a_thread_does_not_run)
{
    refusal = EAGAIN;
    EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_BadResourceUnavailable);
    refusal = 0;
    OpcUa_Timer timer = nullptr;
    EXPECT_EQ(OpcUa_P_Timer_Create(&timer, 10, nullptr, nullptr, nullptr), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
}

TEST(ThreadPosix, stack_has_at_least_the_promised_size)
{
    std::size_t size = 0;
    OpcUa_Thread thread = nullptr;
    ASSERT_EQ(OpcUa_P_Thread_Create(&thread), OpcUa_Good);
    const auto measure = [](void* argument) {
        pthread_attr_t attributes;
        if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
            pthread_attr_getstacksize(&attributes, static_cast<std::size_t*>(argument));
            pthread_attr_destroy(&attributes);
        }
    };
    ASSERT_EQ(OpcUa_P_Thread_Start(thread, measure, &size), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_Thread_Wait(thread), OpcUa_Good);
    EXPECT_GE(size, ThreadStackSize);
    EXPECT_EQ(OpcUa_P_Thread_Delete(&thread), OpcUa_Good);
}

} // namespace
