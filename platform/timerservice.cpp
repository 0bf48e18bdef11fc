#include "platform/timerservice.h"

#include "platform/status.h"
#include "platform/threadid.h"
#include "platform/trace.h"

OpcUa_StatusCode TimerService::start()
{
    const auto guard = m_table.lock();
    if (m_wake != nullptr) {
        return OpcUa_BadInvalidState;
    }
    m_isStopping = false;
    const OpcUa_StatusCode status = makeParts();
    if (OpcUa_IsBad(status)) {
        freeParts();
    }
    return status;
}

OpcUa_StatusCode TimerService::stop()
{
    if (m_thread == nullptr || m_threadId == OpcUa_P_Thread_GetCurrentId()) {
        return OpcUa_BadInvalidState;
    }
    m_isStopping = true;
    // A wake that is still pending serves as well.
    OpcUa_P_Semaphore_Post(m_wake, 1);
    OpcUa_P_Semaphore_Wait(m_stopped);
    // The thread may still be inside its last post, so that the semaphores must wait for its end.
    OpcUa_P_Thread_Wait(m_thread);
    OpcUa_P_Thread_Delete(&m_thread);

    const auto guard = m_table.lock();
    // Without the semaphores no timer can be created, also not by the kill callbacks that follow.
    freeParts();
    m_table.removeAll();
    return OpcUa_Good;
}

OpcUa_StatusCode TimerService::create(OpcUa_Timer* timer, OpcUa_UInt32 interval,
                                      OpcUa_TimerCallback timerCallback,
                                      OpcUa_TimerCallback killCallback, void* callbackData)
{
    if (timer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *timer = nullptr;
    auto guard = m_table.lock();
    if (m_wake == nullptr) {
        return OpcUa_BadInvalidState;
    }
    const OpcUa_StatusCode status =
        m_table.create(timer, interval, timerCallback, killCallback, callbackData);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    // Under the lock, since a stop takes the semaphore away.
    const OpcUa_StatusCode posted = OpcUa_P_Semaphore_Post(m_wake, 1);
    guard.unlock();
    if (OpcUa_IsBad(posted)) {
        OpcUa_Trace(OpcUa_TraceLevel_Content,
                    "OpcUa_P_Timer_Create: (ignorable) semaphore error: 0x%08X", posted);
    }
    return OpcUa_Good;
}

void TimerService::runThread(void* service)
{
    static_cast<TimerService*>(service)->serve();
}

void TimerService::serve()
{
    m_threadId = OpcUa_P_Thread_GetCurrentId();
    while (!m_isStopping) {
        const OpcUa_UInt32 sleep = m_table.scan();
        // A wait that runs into its limit is as good as one that was ended by a post.
        static_cast<void>(
            OpcUa_P_Semaphore_TimedWait(m_wake, sleep != 0 ? sleep : OpcUa_Semaphore_Infinite));
    }
    m_threadId = 0;
    OpcUa_P_Semaphore_Post(m_stopped, 1);
}

OpcUa_StatusCode TimerService::makeParts()
{
    OpcUa_StatusCode status = OpcUa_P_Semaphore_Create(&m_stopped, 0, 1);
    if (OpcUa_IsNotBad(status)) {
        status = OpcUa_P_Semaphore_Create(&m_wake, 0, 1);
    }
    if (OpcUa_IsNotBad(status)) {
        status = OpcUa_P_Thread_Create(&m_thread);
    }
    if (OpcUa_IsNotBad(status)) {
        status = OpcUa_P_Thread_Start(m_thread, runThread, this);
    }
    return status;
}

void TimerService::freeParts()
{
    OpcUa_P_Thread_Delete(&m_thread);
    OpcUa_P_Semaphore_Delete(&m_wake);
    OpcUa_P_Semaphore_Delete(&m_stopped);
}
