#include "platform/status.h"
#include "platform/threadid.h"
#include "platform/timer.h"
#include "platform/timerservice.h"
#include "tests/platform/steadyticks.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/eightthreads.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <thread>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr OpcUa_UInt32 deadline = 60000;

/// A semaphore by which callbacks tell the test that they ran.
class Signal
{
public:
    Signal() { EXPECT_EQ(OpcUa_P_Semaphore_Create(&m_semaphore, 0, 0xFFFFFFFF), OpcUa_Good); }
    ~Signal() { EXPECT_EQ(OpcUa_P_Semaphore_Delete(&m_semaphore), OpcUa_Good); }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    void give() { OpcUa_P_Semaphore_Post(m_semaphore, 1); }
    [[nodiscard]] bool await()
    {
        return OpcUa_IsGood(OpcUa_P_Semaphore_TimedWait(m_semaphore, deadline));
    }
    static void onTimer(void* data, OpcUa_Timer /*timer*/, OpcUa_UInt32 /*elapsed*/)
    {
        static_cast<Signal*>(data)->give();
    }

private:
    OpcUa_Semaphore m_semaphore = nullptr;
};

void countUp(void* data, OpcUa_Timer /*timer*/, OpcUa_UInt32 /*elapsed*/)
{
    ++*static_cast<std::atomic<int>*>(data);
}

class TimerServiceTest : public testing::Test
{
protected:
    TimerServiceTest() { EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good); }
    ~TimerServiceTest() override { OpcUa_P_TimerService_Stop(); }
};

TEST(TimerService, nothing_works_before_the_start_and_after_the_stop)
{
    OpcUa_TimerEntry stranger{};
    for (int round = 0; round < 2; ++round) {
        OpcUa_Timer timer = &stranger;
        EXPECT_EQ(OpcUa_P_Timer_Create(&timer, 10, nullptr, nullptr, nullptr),
                  OpcUa_BadInvalidState);
        EXPECT_EQ(timer, nullptr);
        EXPECT_EQ(OpcUa_P_Timer_Create(nullptr, 10, nullptr, nullptr, nullptr),
                  OpcUa_BadInvalidArgument);
        EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_BadInvalidArgument);
        EXPECT_EQ(OpcUa_P_Timer_Delete(nullptr), OpcUa_BadInvalidArgument);
        EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_BadInvalidState);
        EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
        EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
    }
}

TEST(TimerService, every_failing_allocation_of_the_start_leaves_nothing_behind)
{
    TimerService service;
    const std::size_t failures = forEveryFailingAllocation(
        [&service] { return service.start(); },
        [](OpcUa_StatusCode status) { EXPECT_EQ(status, OpcUa_BadOutOfMemory); });
    EXPECT_EQ(failures, 5u);
    EXPECT_EQ(service.stop(), OpcUa_Good);
}

TEST_F(TimerServiceTest, second_start_is_refused)
{
    EXPECT_EQ(OpcUa_P_TimerService_Start(), OpcUa_BadInvalidState);
}

TEST_F(TimerServiceTest, create_checks_its_arguments)
{
    EXPECT_EQ(OpcUa_P_Timer_Create(nullptr, 10, nullptr, nullptr, nullptr),
              OpcUa_BadInvalidArgument);
}

TEST_F(TimerServiceTest, fifty_first_timer_is_refused)
{
    std::array<OpcUa_Timer, NoOfTimers> timers{};
    for (OpcUa_Timer& timer : timers) {
        ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 1000000, nullptr, nullptr, nullptr), OpcUa_Good);
    }
    OpcUa_Timer refused = timers[0];
    EXPECT_EQ(OpcUa_P_Timer_Create(&refused, 1000000, nullptr, nullptr, nullptr),
              OpcUa_BadResourceUnavailable);
    EXPECT_EQ(refused, nullptr);
    for (OpcUa_Timer& timer : timers) {
        EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
    }
}

TEST_F(TimerServiceTest, timers_run_on_one_thread_of_their_own)
{
    struct Seen
    {
        Signal signal;
        std::atomic<OpcUa_UInt32> thread = 0;
    };
    const auto look = [](void* data, OpcUa_Timer, OpcUa_UInt32) {
        static_cast<Seen*>(data)->thread = OpcUa_P_Thread_GetCurrentId();
        static_cast<Seen*>(data)->signal.give();
    };
    std::array<Seen, 3> seen;
    std::array<OpcUa_Timer, 3> timers{};
    for (std::size_t i = 0; i < seen.size(); ++i) {
        ASSERT_EQ(OpcUa_P_Timer_Create(&timers[i], 1, look, nullptr, &seen[i]), OpcUa_Good);
    }
    for (Seen& one : seen) {
        EXPECT_TRUE(one.signal.await());
        EXPECT_EQ(one.thread, seen[0].thread);
        EXPECT_NE(one.thread, OpcUa_P_Thread_GetCurrentId());
    }
    for (OpcUa_Timer& timer : timers) {
        EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
    }
}

TEST_F(TimerServiceTest, timer_runs_again_and_again_and_not_early)
{
    struct Times
    {
        Signal signal;
        std::array<std::chrono::steady_clock::time_point, 4> at;
        std::size_t count = 0;
    };
    const auto note = [](void* data, OpcUa_Timer, OpcUa_UInt32 elapsed) {
        auto& times = *static_cast<Times*>(data);
        EXPECT_GE(elapsed, 20u);
        if (times.count < times.at.size()) {
            times.at[times.count++] = std::chrono::steady_clock::now();
        }
        times.signal.give();
    };
    Times times;
    const auto begin = std::chrono::steady_clock::now();
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 20, note, nullptr, &times), OpcUa_Good);
    for (std::size_t i = 0; i < times.at.size(); ++i) {
        ASSERT_TRUE(times.signal.await());
    }
    EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
    // Each callback asks the clock a little after the service did, hence the millisecond.
    EXPECT_GE(times.at[0] - begin, std::chrono::milliseconds(19));
    EXPECT_GE(times.at[3] - begin, std::chrono::milliseconds(79));
}

TEST(TimerService, new_timer_wakes_a_thread_that_sleeps_for_good)
{
    const SteadyTicks ticks(0xFFFFFFFF);
    ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    Signal signal;
    for (int round = 0; round < 20; ++round) {
        // With an interval of 0 it fires in the scan that its creation causes, whatever the clock.
        OpcUa_Timer timer = nullptr;
        ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 0, Signal::onTimer, nullptr, &signal), OpcUa_Good);
        EXPECT_TRUE(signal.await());
        EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
    }
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
}

TEST(TimerService, timer_fires_when_the_replaced_clock_says_so)
{
    const SteadyTicks ticks(0xFFFFFF00);
    ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    Signal signal;
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 3600000, Signal::onTimer, nullptr, &signal), OpcUa_Good);
    for (int round = 0; round < 3; ++round) {
        SteadyTicks::advance(3600001);
        EXPECT_TRUE(signal.await());
    }
    EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
}

TEST_F(TimerServiceTest, no_callback_runs_any_more_when_delete_has_returned)
{
    for (int round = 0; round < 50; ++round) {
        // The callback would touch the counter after its end.
        auto counter = std::make_unique<std::atomic<int>>(0);
        OpcUa_Timer timer = nullptr;
        ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 0, countUp, countUp, counter.get()), OpcUa_Good);
        while (*counter == 0) {
            std::this_thread::yield();
        }
        EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
        counter.reset();
    }
}

TEST(TimerService, stop_calls_the_kill_callback_of_each_open_timer_once)
{
    ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    struct Killed
    {
        std::atomic<int> count = 0;
        OpcUa_UInt32 thread = 0;
    };
    const auto kill = [](void* data, OpcUa_Timer, OpcUa_UInt32) {
        ++static_cast<Killed*>(data)->count;
        static_cast<Killed*>(data)->thread = OpcUa_P_Thread_GetCurrentId();
    };
    std::array<Killed, NoOfTimers> killed;
    std::array<OpcUa_Timer, NoOfTimers> timers{};
    for (std::size_t i = 0; i < NoOfTimers; ++i) {
        ASSERT_EQ(OpcUa_P_Timer_Create(&timers[i], 1, nullptr, kill, &killed[i]), OpcUa_Good);
    }
    EXPECT_EQ(OpcUa_P_Timer_Delete(&timers[7]), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
    for (const Killed& one : killed) {
        EXPECT_EQ(one.count, 1);
        EXPECT_EQ(one.thread, OpcUa_P_Thread_GetCurrentId());
    }
    OpcUa_Timer old = timers[0];
    EXPECT_EQ(OpcUa_P_Timer_Delete(&old), OpcUa_BadInvalidArgument);
}

TEST(TimerService, kill_callback_of_the_stop_can_create_no_timer)
{
    ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    const auto create = [](void* data, OpcUa_Timer, OpcUa_UInt32) {
        OpcUa_Timer timer = nullptr;
        *static_cast<OpcUa_StatusCode*>(data) =
            OpcUa_P_Timer_Create(&timer, 1, nullptr, nullptr, nullptr);
    };
    OpcUa_StatusCode status = OpcUa_Good;
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 100000, nullptr, create, &status), OpcUa_Good);
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
    EXPECT_EQ(status, OpcUa_BadInvalidState);
}

TEST_F(TimerServiceTest, callback_can_not_stop_the_service)
{
    struct Attempt
    {
        Signal signal;
        std::atomic<OpcUa_StatusCode> status = OpcUa_Good;
    };
    const auto stop = [](void* data, OpcUa_Timer, OpcUa_UInt32) {
        static_cast<Attempt*>(data)->status = OpcUa_P_TimerService_Stop();
        static_cast<Attempt*>(data)->signal.give();
    };
    Attempt attempt;
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 1, stop, nullptr, &attempt), OpcUa_Good);
    EXPECT_TRUE(attempt.signal.await());
    EXPECT_EQ(attempt.status, OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
}

TEST(TimerService, post_that_does_not_fit_is_traced_and_the_timer_is_good_all_the_same)
{
    struct Creator
    {
        Signal signal;
        std::array<OpcUa_Timer, 2> made{};
        std::array<OpcUa_StatusCode, 2> statuses{};
    };
    // On the timer thread itself, since nobody takes the permit of the first post meanwhile.
    const auto createTwo = [](void* data, OpcUa_Timer timer, OpcUa_UInt32) {
        auto& creator = *static_cast<Creator*>(data);
        for (std::size_t i = 0; i < creator.made.size(); ++i) {
            creator.statuses[i] =
                OpcUa_P_Timer_Create(&creator.made[i], 100000, nullptr, nullptr, nullptr);
        }
        OpcUa_P_Timer_Delete(&timer);
        creator.signal.give();
    };
    const TraceRecorder recorder(OpcUa_TraceLevel_Content);
    ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
    Creator creator;
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 50, createTwo, nullptr, &creator), OpcUa_Good);
    EXPECT_TRUE(creator.signal.await());
    EXPECT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
    EXPECT_THAT(creator.statuses, ElementsAre(OpcUa_Good, OpcUa_Good));
    ASSERT_THAT(TraceRecorder::messages(), testing::Not(IsEmpty()));
    EXPECT_EQ(TraceRecorder::messages().back(),
              "OpcUa_P_Timer_Create: (ignorable) semaphore error: 0x81070000");
}

TEST(TimerService, it_starts_and_stops_a_thousand_times)
{
    std::atomic<int> killed = 0;
    for (int round = 0; round < 1000; ++round) {
        ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
        OpcUa_Timer timer = nullptr;
        ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 0, nullptr, countUp, &killed), OpcUa_Good);
        ASSERT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
    }
    EXPECT_EQ(killed, 1000);
}

/// Timers that delete themselves after a few runs and create their successor, from callbacks.
struct Chain
{
    static constexpr int links = 40;
    Signal ended;
    int made = 0;
    OpcUa_Timer timer = nullptr;
    std::atomic<int> killed = 0;

    static void run(void* data, OpcUa_Timer /*timer*/, OpcUa_UInt32 /*elapsed*/)
    {
        auto& chain = *static_cast<Chain*>(data);
        EXPECT_EQ(OpcUa_P_Timer_Delete(&chain.timer), OpcUa_Good);
        if (chain.made == links) {
            chain.ended.give();
            return;
        }
        ++chain.made;
        EXPECT_EQ(OpcUa_P_Timer_Create(&chain.timer, 0, run, kill, &chain), OpcUa_Good);
    }
    static void kill(void* data, OpcUa_Timer /*timer*/, OpcUa_UInt32 /*elapsed*/)
    {
        ++static_cast<Chain*>(data)->killed;
    }
};

TEST_F(TimerServiceTest, timers_replace_themselves_from_their_own_callbacks)
{
    std::array<Chain, 10> chains;
    for (Chain& chain : chains) {
        // The service lock keeps the callback away until the handle is stored.
        ASSERT_EQ(OpcUa_P_Timer_Create(&chain.timer, 5, Chain::run, Chain::kill, &chain),
                  OpcUa_Good);
    }
    for (Chain& chain : chains) {
        ASSERT_TRUE(chain.ended.await());
        EXPECT_EQ(chain.made, Chain::links);
        EXPECT_EQ(chain.killed, Chain::links + 1);
    }
}

/// A timer of one of eight threads, which may delete itself before its thread does.
struct Contested
{
    std::atomic<int> runs = 0;
    std::atomic<int> kills = 0;

    static void run(void* data, OpcUa_Timer timer, OpcUa_UInt32 /*elapsed*/)
    {
        auto& contested = *static_cast<Contested*>(data);
        if (++contested.runs == 3) {
            EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
        }
    }
    static void kill(void* data, OpcUa_Timer /*timer*/, OpcUa_UInt32 /*elapsed*/)
    {
        ++static_cast<Contested*>(data)->kills;
    }
};

TEST_F(TimerServiceTest, eight_threads_create_and_delete_timers)
{
    std::atomic<int> created = 0;
    std::atomic<int> killed = 0;
    inEightThreads([&] {
        for (int round = 0; round < 100; ++round) {
            // Six each are 48 at the same time, so that none is refused.
            std::array<OpcUa_Timer, 6> timers{};
            for (OpcUa_Timer& timer : timers) {
                ASSERT_EQ(OpcUa_P_Timer_Create(&timer, static_cast<OpcUa_UInt32>(round % 3),
                                               countUp, countUp, &killed),
                          OpcUa_Good);
                ++created;
            }
            for (OpcUa_Timer& timer : timers) {
                ASSERT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
            }
        }
    });
    EXPECT_EQ(created, 4800);
    EXPECT_GE(killed, 4800);
}

TEST_F(TimerServiceTest, timers_of_eight_threads_delete_themselves)
{
    inEightThreads([] {
        for (int round = 0; round < 10; ++round) {
            std::array<Contested, 6> contested;
            for (Contested& one : contested) {
                OpcUa_Timer timer = nullptr;
                ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 0, Contested::run, Contested::kill, &one),
                          OpcUa_Good);
            }
            for (Contested& one : contested) {
                while (one.kills == 0) {
                    std::this_thread::yield();
                }
                EXPECT_EQ(one.runs, 3);
            }
            // A kill callback may still be inside its increment; the lock of a deletion waits for it.
            OpcUa_Timer timer = nullptr;
            ASSERT_EQ(OpcUa_P_Timer_Create(&timer, 100000, nullptr, nullptr, nullptr), OpcUa_Good);
            EXPECT_EQ(OpcUa_P_Timer_Delete(&timer), OpcUa_Good);
            for (Contested& one : contested) {
                EXPECT_EQ(one.kills, 1);
            }
        }
    });
}

TEST(TimerService, stop_takes_the_timers_of_threads_that_go_on_creating)
{
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(OpcUa_P_TimerService_Start(), OpcUa_Good);
        std::atomic<int> created = 0;
        std::atomic<int> killed = 0;
        std::array<std::thread, 4> threads;
        for (std::thread& thread : threads) {
            thread = std::thread([&] {
                for (;;) {
                    OpcUa_Timer timer = nullptr;
                    const OpcUa_StatusCode status =
                        OpcUa_P_Timer_Create(&timer, 100000, nullptr, countUp, &killed);
                    if (status == OpcUa_BadInvalidState) {
                        return;
                    }
                    created += OpcUa_IsGood(status) ? 1 : 0;
                }
            });
        }
        while (created < 10) {
            std::this_thread::yield();
        }
        ASSERT_EQ(OpcUa_P_TimerService_Stop(), OpcUa_Good);
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(created, killed);
    }
}

} // namespace
