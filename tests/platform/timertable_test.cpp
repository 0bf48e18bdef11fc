#include "platform/status.h"
#include "platform/timertable.h"
#include "tests/platform/steadyticks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Records every call of a callback that has it as its data.
struct Calls
{
    struct Call
    {
        OpcUa_Timer timer;
        OpcUa_UInt32 elapsed;
        OpcUa_UInt32 at;
    };
    std::vector<Call> fired;
    std::vector<Call> killed;

    static void fire(void* data, OpcUa_Timer timer, OpcUa_UInt32 elapsed)
    {
        static_cast<Calls*>(data)->fired.push_back({timer, elapsed, SteadyTicks::now()});
    }
    static void kill(void* data, OpcUa_Timer timer, OpcUa_UInt32 elapsed)
    {
        static_cast<Calls*>(data)->killed.push_back({timer, elapsed, SteadyTicks::now()});
    }
};

class TimerTableTest : public testing::Test
{
protected:
    static constexpr OpcUa_UInt32 startTicks = 1000000;

    OpcUa_Timer create(OpcUa_UInt32 interval, Calls* calls)
    {
        OpcUa_Timer timer = nullptr;
        EXPECT_EQ(m_table.create(&timer, interval, Calls::fire, Calls::kill, calls), OpcUa_Good);
        EXPECT_NE(timer, nullptr);
        return timer;
    }

    SteadyTicks m_ticks{startTicks};
    TimerTable m_table;
    Calls m_calls;
};

TEST(TimerEntry, fields_are_in_order)
{
    EXPECT_EQ(offsetof(OpcUa_TimerEntry, used), 0u);
    EXPECT_LT(offsetof(OpcUa_TimerEntry, used), offsetof(OpcUa_TimerEntry, interval));
    EXPECT_LT(offsetof(OpcUa_TimerEntry, interval), offsetof(OpcUa_TimerEntry, timerCallback));
    EXPECT_LT(offsetof(OpcUa_TimerEntry, timerCallback), offsetof(OpcUa_TimerEntry, killCallback));
    EXPECT_LT(offsetof(OpcUa_TimerEntry, killCallback), offsetof(OpcUa_TimerEntry, callbackData));
    EXPECT_LT(offsetof(OpcUa_TimerEntry, callbackData), offsetof(OpcUa_TimerEntry, lastFired));
    EXPECT_LT(offsetof(OpcUa_TimerEntry, lastFired), offsetof(OpcUa_TimerEntry, nextDue));
}

TEST_F(TimerTableTest, scan_of_an_empty_table_asks_for_no_sleep)
{
    EXPECT_EQ(m_table.scan(), 0u);
    EXPECT_EQ(m_table.count(), 0u);
}

TEST_F(TimerTableTest, create_needs_a_place_for_the_handle)
{
    EXPECT_EQ(m_table.create(nullptr, 10, nullptr, nullptr, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(m_table.count(), 0u);
}

TEST_F(TimerTableTest, new_timer_is_due_one_interval_from_now)
{
    const OpcUa_Timer timer = create(250, &m_calls);
    EXPECT_TRUE(timer->used);
    EXPECT_EQ(timer->interval, 250u);
    EXPECT_EQ(timer->timerCallback, &Calls::fire);
    EXPECT_EQ(timer->killCallback, &Calls::kill);
    EXPECT_EQ(timer->callbackData, &m_calls);
    EXPECT_EQ(timer->lastFired, startTicks);
    EXPECT_EQ(timer->nextDue, startTicks + 250);
    EXPECT_EQ(m_table.count(), 1u);
    m_table.removeAll();
}

TEST_F(TimerTableTest, fifty_first_timer_is_refused)
{
    std::vector<OpcUa_Timer> timers;
    for (OpcUa_UInt32 i = 0; i < 50; ++i) {
        timers.push_back(create(100, &m_calls));
    }
    EXPECT_EQ(m_table.count(), NoOfTimers);
    OpcUa_Timer refused = timers.front();
    EXPECT_EQ(m_table.create(&refused, 100, nullptr, nullptr, nullptr),
              OpcUa_BadResourceUnavailable);
    EXPECT_EQ(refused, nullptr);

    // The first free slot is taken again.
    OpcUa_Timer freed = timers[17];
    EXPECT_EQ(m_table.remove(&freed), OpcUa_Good);
    EXPECT_EQ(create(100, &m_calls), timers[17]);
    m_table.removeAll();
    EXPECT_EQ(m_calls.killed.size(), 51u);
    EXPECT_EQ(m_table.count(), 0u);
}

TEST_F(TimerTableTest, sleep_reaches_to_the_next_timer_but_200_milliseconds_at_most)
{
    struct Row
    {
        std::vector<OpcUa_UInt32> intervals;
        OpcUa_UInt32 sleep;
    };
    const std::array rows = {Row{{1}, 1},          Row{{199}, 199},      Row{{200}, 200},
                             Row{{201}, 200},      Row{{86400000}, 200}, Row{{0xFFFFFFFF}, 200},
                             Row{{300, 50}, 50},   Row{{50, 300}, 50},   Row{{90, 30, 60}, 30},
                             Row{{1000, 500}, 200}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.intervals));
        for (const OpcUa_UInt32 interval : row.intervals) {
            create(interval, &m_calls);
        }
        EXPECT_EQ(m_table.scan(), row.sleep);
        m_table.removeAll();
    }
    EXPECT_THAT(m_calls.fired, IsEmpty());
}

TEST_F(TimerTableTest, sleep_counts_from_the_beginning_of_the_scan)
{
    create(10, &m_calls);
    OpcUa_Timer slow = nullptr;
    // The scan itself takes 70 milliseconds, through the callback of the second timer.
    const auto work = [](void*, OpcUa_Timer, OpcUa_UInt32) { SteadyTicks::advance(70); };
    ASSERT_EQ(m_table.create(&slow, 500, work, nullptr, nullptr), OpcUa_Good);
    slow->lastFired -= 490;
    slow->nextDue -= 490;
    SteadyTicks::advance(10);
    EXPECT_EQ(m_table.scan(), 10u);
    EXPECT_EQ(slow->lastFired, startTicks + 10);
    EXPECT_EQ(slow->nextDue, startTicks + 510);
    m_table.removeAll();
}

TEST_F(TimerTableTest, timer_fires_when_its_interval_has_passed_and_not_before)
{
    const OpcUa_Timer timer = create(100, &m_calls);
    SteadyTicks::advance(99);
    EXPECT_EQ(m_table.scan(), 1u);
    EXPECT_THAT(m_calls.fired, IsEmpty());
    SteadyTicks::advance(1);
    EXPECT_EQ(m_table.scan(), 100u);
    ASSERT_EQ(m_calls.fired.size(), 1u);
    EXPECT_EQ(m_calls.fired[0].timer, timer);
    EXPECT_EQ(m_calls.fired[0].elapsed, 100u);
    SteadyTicks::advance(350);
    EXPECT_EQ(m_table.scan(), 100u);
    ASSERT_EQ(m_calls.fired.size(), 2u);
    EXPECT_EQ(m_calls.fired[1].elapsed, 350u);
    EXPECT_EQ(timer->lastFired, startTicks + 450);
    EXPECT_EQ(timer->nextDue, startTicks + 550);
    m_table.removeAll();
}

TEST_F(TimerTableTest, timer_without_callbacks_is_rescheduled)
{
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(m_table.create(&timer, 40, nullptr, nullptr, nullptr), OpcUa_Good);
    SteadyTicks::advance(40);
    EXPECT_EQ(m_table.scan(), 40u);
    EXPECT_EQ(timer->nextDue, startTicks + 80);
    EXPECT_EQ(m_table.remove(&timer), OpcUa_Good);
    EXPECT_EQ(timer, nullptr);
}

TEST_F(TimerTableTest, interval_of_zero_fires_at_every_scan_and_never_stops_the_thread)
{
    create(0, &m_calls);
    for (std::size_t round = 1; round <= 5; ++round) {
        EXPECT_EQ(m_table.scan(), 1u);
        EXPECT_EQ(m_calls.fired.size(), round);
    }
    m_table.removeAll();
}

/// Drives a table as the thread does, with a sleep that may take `oversleep` longer, and returns the
/// true times between the runs of a timer.
std::vector<OpcUa_UInt32> runFor(TimerTable& table, OpcUa_UInt32 milliseconds,
                                 OpcUa_UInt32 oversleep, const Calls& calls)
{
    OpcUa_UInt32 last = SteadyTicks::now();
    for (OpcUa_UInt32 passed = 0; passed < milliseconds;) {
        const OpcUa_UInt32 sleep = table.scan();
        if (sleep == 0) {
            ADD_FAILURE() << "the thread would sleep for good";
            break;
        }
        SteadyTicks::advance(sleep + oversleep);
        passed += sleep + oversleep;
    }
    std::vector<OpcUa_UInt32> distances;
    for (const Calls::Call& call : calls.fired) {
        distances.push_back(call.at - last);
        last = call.at;
    }
    return distances;
}

TEST_F(TimerTableTest, timer_of_1000_milliseconds_is_never_early_and_at_most_200_late)
{
    create(1000, &m_calls);
    Calls other;
    create(130, &other);
    // A sleep that the system ends late is the worst that can happen with short callbacks.
    const std::vector<OpcUa_UInt32> distances = runFor(m_table, 100000, 37, m_calls);
    EXPECT_GE(distances.size(), 80u);
    for (const OpcUa_UInt32 distance : distances) {
        EXPECT_GE(distance, 1000u);
        EXPECT_LE(distance, 1200u);
    }
    m_table.removeAll();
}

TEST(TimerTable, wrap_of_the_tick_count_stops_no_timer)
{
    for (const OpcUa_UInt32 interval : {1u, 2u, 16u, 199u, 200u, 201u, 1000u, 5000u}) {
        for (const OpcUa_UInt32 before : {0u, 1u, 2u, 15u, 16u, 17u, 200u, 999u, 1000u, 3001u}) {
            SCOPED_TRACE(testing::Message() << interval << " ms, " << before << " ms before it");
            const SteadyTicks ticks(0u - before);
            TimerTable table;
            Calls calls;
            OpcUa_Timer timer = nullptr;
            ASSERT_EQ(table.create(&timer, interval, Calls::fire, nullptr, &calls), OpcUa_Good);
            const std::vector<OpcUa_UInt32> distances = runFor(table, 8000, 0, calls);
            EXPECT_GE(distances.size(), 8000 / (interval + 1) - 1);
            for (const OpcUa_UInt32 distance : distances) {
                ASSERT_GE(distance, interval);
                ASSERT_LE(distance, interval + 1);
            }
        }
    }
}

TEST(TimerTable, wrapped_difference_takes_off_one_more)
{
    const SteadyTicks ticks(0xFFFFFFF0);
    TimerTable table;
    Calls calls;
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(table.create(&timer, 16, Calls::fire, Calls::kill, &calls), OpcUa_Good);
    EXPECT_EQ(timer->nextDue, 0u);
    SteadyTicks::advance(15);
    // The difference from the last count before the wrap to 0 is none, and a sleep of 0 has no end.
    EXPECT_EQ(table.scan(), 1u);
    SteadyTicks::advance(1);
    EXPECT_EQ(table.scan(), 1u);
    EXPECT_THAT(calls.fired, IsEmpty());
    SteadyTicks::advance(1);
    EXPECT_EQ(table.scan(), 16u);
    ASSERT_EQ(calls.fired.size(), 1u);
    EXPECT_EQ(calls.fired[0].elapsed, 16u);
    EXPECT_EQ(timer->lastFired, 1u);
    EXPECT_EQ(table.remove(&timer), OpcUa_Good);
}

TEST(TimerTable, kill_callback_gets_the_time_since_the_last_run_across_a_wrap)
{
    const SteadyTicks ticks(0xFFFFFFF0);
    TimerTable table;
    Calls calls;
    OpcUa_Timer timer = nullptr;
    ASSERT_EQ(table.create(&timer, 1000, nullptr, Calls::kill, &calls), OpcUa_Good);
    const OpcUa_Timer handle = timer;
    SteadyTicks::advance(116);
    EXPECT_EQ(table.remove(&timer), OpcUa_Good);
    ASSERT_EQ(calls.killed.size(), 1u);
    EXPECT_EQ(calls.killed[0].timer, handle);
    EXPECT_EQ(calls.killed[0].elapsed, 115u);
    EXPECT_EQ(timer, nullptr);
}

TEST_F(TimerTableTest, remove_of_null_or_of_a_free_slot_is_refused)
{
    EXPECT_EQ(m_table.remove(nullptr), OpcUa_BadInvalidArgument);
    OpcUa_Timer timer = nullptr;
    EXPECT_EQ(m_table.remove(&timer), OpcUa_BadInvalidArgument);
    timer = create(100, &m_calls);
    OpcUa_Timer copy = timer;
    EXPECT_EQ(m_table.remove(&timer), OpcUa_Good);
    EXPECT_EQ(m_table.remove(&copy), OpcUa_BadInvalidArgument);
    EXPECT_EQ(m_calls.killed.size(), 1u);
}

TEST_F(TimerTableTest, handle_that_is_not_in_the_table_is_only_cleared)
{
    OpcUa_TimerEntry stranger = {true, 10, Calls::fire, Calls::kill, &m_calls, 0, 10};
    OpcUa_Timer timer = &stranger;
    EXPECT_EQ(m_table.remove(&timer), OpcUa_Good);
    EXPECT_EQ(timer, nullptr);
    EXPECT_TRUE(stranger.used);
    EXPECT_THAT(m_calls.killed, IsEmpty());
}

TEST_F(TimerTableTest, handle_into_the_middle_of_a_slot_is_only_cleared)
{
    const OpcUa_Timer timer = create(100, &m_calls);
    auto* const bytes = reinterpret_cast<std::byte*>(timer);
    auto* middle = reinterpret_cast<OpcUa_Timer>(bytes + alignof(OpcUa_TimerEntry));
    EXPECT_EQ(m_table.remove(&middle), OpcUa_Good);
    EXPECT_EQ(middle, nullptr);
    EXPECT_TRUE(timer->used);
    m_table.removeAll();
    EXPECT_EQ(m_calls.killed.size(), 1u);
}

/// A timer that works on its table from its callbacks.
struct Actor
{
    TimerTable* table;
    OpcUa_Timer own = nullptr;
    OpcUa_Timer other = nullptr;
    OpcUa_UInt32 newInterval = 0;
    std::vector<OpcUa_StatusCode> statuses{};

    static Actor& of(void* data) { return *static_cast<Actor*>(data); }
    static void removeOwn(void* data, OpcUa_Timer, OpcUa_UInt32)
    {
        of(data).statuses.push_back(of(data).table->remove(&of(data).own));
    }
    static void removeOther(void* data, OpcUa_Timer, OpcUa_UInt32)
    {
        of(data).statuses.push_back(of(data).table->remove(&of(data).other));
    }
    static void createOther(void* data, OpcUa_Timer, OpcUa_UInt32)
    {
        of(data).statuses.push_back(of(data).table->create(&of(data).other, of(data).newInterval,
                                                           nullptr, nullptr, nullptr));
    }
    static void replaceOwn(void* data, OpcUa_Timer timer, OpcUa_UInt32 elapsed)
    {
        removeOwn(data, timer, elapsed);
        createOther(data, timer, elapsed);
    }
};

TEST_F(TimerTableTest, timer_that_deletes_itself_is_not_rescheduled)
{
    Actor actor{&m_table};
    ASSERT_EQ(m_table.create(&actor.own, 100, Actor::removeOwn, nullptr, &actor), OpcUa_Good);
    const OpcUa_Timer slot = actor.own;
    SteadyTicks::advance(100);
    EXPECT_EQ(m_table.scan(), 0u);
    EXPECT_THAT(actor.statuses, ElementsAre(OpcUa_Good));
    EXPECT_EQ(actor.own, nullptr);
    EXPECT_FALSE(slot->used);
    EXPECT_EQ(slot->nextDue, startTicks + 100);
    SteadyTicks::advance(1000);
    EXPECT_EQ(m_table.scan(), 0u);
    EXPECT_EQ(actor.statuses.size(), 1u);
}

TEST_F(TimerTableTest, callback_may_delete_a_timer_that_is_due_in_the_same_scan)
{
    Actor actor{&m_table};
    ASSERT_EQ(m_table.create(&actor.own, 100, Actor::removeOther, nullptr, &actor), OpcUa_Good);
    actor.other = create(100, &m_calls);
    SteadyTicks::advance(100);
    EXPECT_EQ(m_table.scan(), 100u);
    EXPECT_THAT(m_calls.fired, IsEmpty());
    EXPECT_EQ(m_calls.killed.size(), 1u);
    EXPECT_EQ(m_table.count(), 1u);
    m_table.removeAll();
}

TEST_F(TimerTableTest, callback_may_create_a_timer_and_the_scan_goes_on_to_it)
{
    Actor actor{&m_table};
    actor.newInterval = 30;
    ASSERT_EQ(m_table.create(&actor.own, 100, Actor::createOther, nullptr, &actor), OpcUa_Good);
    SteadyTicks::advance(100);
    EXPECT_EQ(m_table.scan(), 30u);
    EXPECT_EQ(m_table.count(), 2u);
    m_table.removeAll();
}

TEST_F(TimerTableTest, callback_may_put_another_timer_into_its_own_slot)
{
    Actor actor{&m_table};
    actor.newInterval = 70;
    ASSERT_EQ(m_table.create(&actor.own, 100, Actor::replaceOwn, nullptr, &actor), OpcUa_Good);
    const OpcUa_Timer slot = actor.own;
    SteadyTicks::advance(100);
    EXPECT_EQ(m_table.scan(), 70u);
    EXPECT_EQ(actor.other, slot);
    EXPECT_EQ(slot->nextDue, startTicks + 170);
    m_table.removeAll();
}

TEST_F(TimerTableTest, kill_callback_runs_once_also_when_it_deletes_its_timer_itself)
{
    Actor actor{&m_table};
    ASSERT_EQ(m_table.create(&actor.own, 100, nullptr, Actor::removeOwn, &actor), OpcUa_Good);
    OpcUa_Timer timer = actor.own;
    EXPECT_EQ(m_table.remove(&timer), OpcUa_Good);
    EXPECT_THAT(actor.statuses, ElementsAre(OpcUa_BadInvalidArgument));
    EXPECT_EQ(m_table.count(), 0u);
}

TEST_F(TimerTableTest, timer_that_a_kill_callback_creates_does_not_get_the_slot_that_is_being_freed)
{
    Actor actor{&m_table};
    actor.newInterval = 5;
    ASSERT_EQ(m_table.create(&actor.own, 100, nullptr, Actor::createOther, &actor), OpcUa_Good);
    const OpcUa_Timer slot = actor.own;
    EXPECT_EQ(m_table.remove(&actor.own), OpcUa_Good);
    EXPECT_THAT(actor.statuses, ElementsAre(OpcUa_Good));
    EXPECT_NE(actor.other, slot);
    EXPECT_EQ(m_table.count(), 1u);
    EXPECT_EQ(m_table.remove(&actor.other), OpcUa_Good);
}

TEST_F(TimerTableTest, remove_all_kills_each_timer_once_and_keeps_the_handles)
{
    const std::array timers = {create(10, &m_calls), create(20, &m_calls), create(30, &m_calls)};
    SteadyTicks::advance(7);
    m_table.removeAll();
    m_table.removeAll();
    ASSERT_EQ(m_calls.killed.size(), timers.size());
    for (std::size_t i = 0; i < timers.size(); ++i) {
        EXPECT_EQ(m_calls.killed[i].timer, timers[i]);
        EXPECT_EQ(m_calls.killed[i].elapsed, 7u);
    }
    EXPECT_EQ(m_table.scan(), 0u);
}

} // namespace
