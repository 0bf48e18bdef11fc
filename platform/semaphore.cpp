#include "platform/semaphore.h"

#include "platform/constructed.h"
#include "platform/status.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

struct OpcUa_SemaphoreRecord
{
    OpcUa_SemaphoreRecord(OpcUa_UInt32 initial, OpcUa_UInt32 maximumCount)
        : permits(initial)
        , maximum(maximumCount)
    {
    }

    std::mutex mutex;
    std::condition_variable posted;
    OpcUa_UInt32 permits;
    const OpcUa_UInt32 maximum;
};

OpcUa_StatusCode OpcUa_P_Semaphore_Create(OpcUa_Semaphore* semaphore, OpcUa_UInt32 initial,
                                          OpcUa_UInt32 maximum)
{
    if (semaphore == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *semaphore = nullptr;
    if (maximum == 0 || initial > maximum) {
        return OpcUa_BadInvalidArgument;
    }
    *semaphore = OpcUa_Memory_Construct<OpcUa_SemaphoreRecord>(initial, maximum);
    return *semaphore != nullptr ? OpcUa_Good : OpcUa_BadOutOfMemory;
}

OpcUa_StatusCode OpcUa_P_Semaphore_Delete(OpcUa_Semaphore* semaphore)
{
    if (semaphore == nullptr || *semaphore == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_Memory_Destroy(*semaphore);
    *semaphore = nullptr;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_Semaphore_Wait(OpcUa_Semaphore semaphore)
{
    return OpcUa_P_Semaphore_TimedWait(semaphore, OpcUa_Semaphore_Infinite);
}

OpcUa_StatusCode OpcUa_P_Semaphore_TimedWait(OpcUa_Semaphore semaphore, OpcUa_UInt32 milliseconds)
{
    if (semaphore == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const auto hasPermit = [semaphore] { return semaphore->permits > 0; };
    std::unique_lock lock(semaphore->mutex);
    if (milliseconds == OpcUa_Semaphore_Infinite) {
        semaphore->posted.wait(lock, hasPermit);
    } else if (!semaphore->posted.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                           hasPermit)) {
        return OpcUa_BadTimeout;
    }
    --semaphore->permits;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_Semaphore_Post(OpcUa_Semaphore semaphore, OpcUa_UInt32 count)
{
    if (semaphore == nullptr || count == 0) {
        return OpcUa_BadInvalidArgument;
    }
    const std::scoped_lock lock(semaphore->mutex);
    if (count > semaphore->maximum - semaphore->permits) {
        return OpcUa_BadTooManyPosts;
    }
    semaphore->permits += count;
    // Under the lock: a waiter that gets its permit may delete the semaphore at once.
    if (count == 1) {
        semaphore->posted.notify_one();
    } else {
        semaphore->posted.notify_all();
    }
    return OpcUa_Good;
}
