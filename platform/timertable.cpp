#include "platform/timertable.h"

#include "platform/clock.h"
#include "platform/status.h"

#include <algorithm>

namespace {

/// The ticks from one count to a later one. A later count that is the lower number has wrapped, and
/// the difference takes off one more: across a wrap a timer is a millisecond late rather than early.
OpcUa_UInt32 ticksBetween(OpcUa_UInt32 from, OpcUa_UInt32 to)
{
    const OpcUa_UInt32 difference = to - from;
    return to < from ? difference - 1 : difference;
}

void runIfDue(OpcUa_TimerEntry& entry)
{
    const OpcUa_UInt32 now = OpcUa_P_Clock_GetTickCount();
    const OpcUa_UInt32 elapsed = ticksBetween(entry.lastFired, now);
    if (elapsed < entry.interval) {
        return;
    }
    entry.lastFired = now;
    if (entry.timerCallback != nullptr) {
        entry.timerCallback(entry.callbackData, &entry, elapsed);
    }
    if (entry.used) {
        entry.nextDue = entry.lastFired + entry.interval;
    }
}

} // namespace

OpcUa_StatusCode TimerTable::create(OpcUa_Timer* timer, OpcUa_UInt32 interval,
                                    OpcUa_TimerCallback timerCallback,
                                    OpcUa_TimerCallback killCallback, void* callbackData)
{
    if (timer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *timer = nullptr;
    const std::scoped_lock guard(m_mutex);
    const auto slot =
        std::find_if(m_slots.begin(), m_slots.end(), [](const Slot& s) { return !s.used; });
    if (slot == m_slots.end()) {
        return OpcUa_BadResourceUnavailable;
    }
    slot->used = true;
    slot->interval = interval;
    slot->timerCallback = timerCallback;
    slot->killCallback = killCallback;
    slot->callbackData = callbackData;
    slot->lastFired = OpcUa_P_Clock_GetTickCount();
    slot->nextDue = slot->lastFired + interval;
    ++m_count;
    *timer = &*slot;
    return OpcUa_Good;
}

OpcUa_StatusCode TimerTable::remove(OpcUa_Timer* timer)
{
    if (timer == nullptr || *timer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const std::scoped_lock guard(m_mutex);
    Slot* const slot = find(*timer);
    if (slot != nullptr) {
        if (!slot->used || slot->isEnding) {
            return OpcUa_BadInvalidArgument;
        }
        kill(*slot);
    }
    *timer = nullptr;
    return OpcUa_Good;
}

void TimerTable::removeAll()
{
    const std::scoped_lock guard(m_mutex);
    for (Slot& slot : m_slots) {
        if (slot.used && !slot.isEnding) {
            kill(slot);
        }
    }
}

OpcUa_UInt32 TimerTable::scan()
{
    const OpcUa_UInt32 start = OpcUa_P_Clock_GetTickCount();
    OpcUa_UInt32 sleep = 0;
    const std::scoped_lock guard(m_mutex);
    for (Slot& slot : m_slots) {
        if (slot.used) {
            runIfDue(slot);
        }
        if (slot.used) {
            // 0 would say that there is no timer and put the thread to sleep for good. It comes up
            // with an interval of 0 and in the millisecond of a wrap.
            const OpcUa_UInt32 untilDue = std::max(ticksBetween(start, slot.nextDue), 1u);
            sleep = sleep == 0 ? untilDue : std::min(sleep, untilDue);
        }
    }
    return std::min(sleep, OpcUa_Timer_LongestSleep);
}

OpcUa_UInt32 TimerTable::count()
{
    const std::scoped_lock guard(m_mutex);
    return m_count;
}

TimerTable::Slot* TimerTable::find(const OpcUa_TimerEntry* entry)
{
    const auto slot = std::find_if(m_slots.begin(), m_slots.end(),
                                   [entry](const Slot& s) { return &s == entry; });
    return slot != m_slots.end() ? &*slot : nullptr;
}

void TimerTable::kill(Slot& slot)
{
    if (slot.killCallback != nullptr) {
        const OpcUa_UInt32 elapsed = ticksBetween(slot.lastFired, OpcUa_P_Clock_GetTickCount());
        slot.isEnding = true;
        slot.killCallback(slot.callbackData, &slot, elapsed);
        slot.isEnding = false;
    }
    slot.used = false;
    --m_count;
}
