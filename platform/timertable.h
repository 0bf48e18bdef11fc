#pragma once

#include "platform/timer.h"

#include <array>
#include <mutex>

/// The slots of the timer service and the rule by which they run, without the thread. Every operation
/// takes the table's recursive lock, and callbacks run with it held. The destructor calls no kill
/// callbacks.
class TimerTable
{
public:
    /// The table's lock, for a caller whose own state goes with it.
    [[nodiscard]] std::unique_lock<std::recursive_mutex> lock()
    {
        return std::unique_lock(m_mutex);
    }

    /// Takes the first free slot, to run first one interval from now. `BadInvalidArgument` for a
    /// null `timer`, `BadResourceUnavailable` with all slots taken; `*timer` is null then.
    OpcUa_StatusCode create(OpcUa_Timer* timer, OpcUa_UInt32 interval,
                            OpcUa_TimerCallback timerCallback, OpcUa_TimerCallback killCallback,
                            void* callbackData);

    /// Runs the kill callback, frees the slot and sets the handle to null. See OpcUa_P_Timer_Delete
    /// for the statuses.
    OpcUa_StatusCode remove(OpcUa_Timer* timer);

    /// Removes every timer.
    void removeAll();

    /// Runs the timers that are due and returns the milliseconds to the next scan: at most 200, or 0
    /// when there is no timer.
    OpcUa_UInt32 scan();

    /// The number of slots in use.
    [[nodiscard]] OpcUa_UInt32 count();

private:
    struct Slot : OpcUa_TimerEntry
    {
        /// The kill callback runs: a second deletion of the timer from there is refused.
        bool isEnding = false;
    };

    Slot* find(const OpcUa_TimerEntry* entry);
    void kill(Slot& slot);

    std::recursive_mutex m_mutex;
    std::array<Slot, NoOfTimers> m_slots{};
    OpcUa_UInt32 m_count = 0;
};
