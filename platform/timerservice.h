#pragma once

#include "platform/semaphore.h"
#include "platform/thread.h"
#include "platform/timertable.h"

#include <atomic>

/// The thread that runs a timer table. Timers may be created and removed from any thread; starting
/// and stopping are done by one thread. Lock order as in "platform/timer.h". The service must be
/// stopped before it is destroyed, unless the process ends with it.
class TimerService
{
public:
    /// See OpcUa_P_TimerService_Start.
    [[nodiscard]] OpcUa_StatusCode start();
    /// See OpcUa_P_TimerService_Stop.
    OpcUa_StatusCode stop();
    /// See OpcUa_P_Timer_Create.
    [[nodiscard]] OpcUa_StatusCode create(OpcUa_Timer* timer, OpcUa_UInt32 interval,
                                          OpcUa_TimerCallback timerCallback,
                                          OpcUa_TimerCallback killCallback, void* callbackData);
    /// See OpcUa_P_Timer_Delete.
    OpcUa_StatusCode remove(OpcUa_Timer* timer) { return m_table.remove(timer); }

private:
    static void runThread(void* service);
    void serve();
    OpcUa_StatusCode makeParts();
    void freeParts();

    TimerTable m_table;
    /// Posted once by the thread at its end.
    OpcUa_Semaphore m_stopped = nullptr;
    /// Posted to end the thread's sleep; the table's lock guards its life.
    OpcUa_Semaphore m_wake = nullptr;
    OpcUa_Thread m_thread = nullptr;
    std::atomic<bool> m_isStopping = false;
    std::atomic<OpcUa_UInt32> m_threadId = 0;
};
