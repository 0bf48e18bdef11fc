#include "platform/mutex.h"

#include "platform/constructed.h"
#include "platform/status.h"

#include <atomic>
#include <mutex>
#include <thread>

struct OpcUa_MutexRecord
{
    std::recursive_mutex mutex;
    /// The thread that holds the mutex, so that a wrong unlock is told from a right one. It is only
    /// compared with the calling thread, which alone could have written its own name.
    std::atomic<std::thread::id> owner{};
    /// How often the owner has locked it; touched by the owner alone.
    OpcUa_UInt32 depth = 0;
};

OpcUa_StatusCode OpcUa_P_Mutex_Create(OpcUa_Mutex* mutex)
{
    if (mutex == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *mutex = OpcUa_Memory_Construct<OpcUa_MutexRecord>();
    return *mutex != nullptr ? OpcUa_Good : OpcUa_BadOutOfMemory;
}

OpcUa_StatusCode OpcUa_P_Mutex_Delete(OpcUa_Mutex* mutex)
{
    if (mutex == nullptr || *mutex == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if ((*mutex)->owner.load() != std::thread::id()) {
        return OpcUa_BadInvalidState;
    }
    OpcUa_Memory_Destroy(*mutex);
    *mutex = nullptr;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_Mutex_Lock(OpcUa_Mutex mutex)
{
    if (mutex == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    mutex->mutex.lock();
    mutex->owner.store(std::this_thread::get_id());
    ++mutex->depth;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_Mutex_Unlock(OpcUa_Mutex mutex)
{
    if (mutex == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (mutex->owner.load() != std::this_thread::get_id()) {
        return OpcUa_BadInvalidState;
    }
    --mutex->depth;
    if (mutex->depth == 0) {
        mutex->owner.store(std::thread::id());
    }
    mutex->mutex.unlock();
    return OpcUa_Good;
}
