#include "platform/constructed.h"
#include "platform/status.h"
#include "platform/thread.h"
#include "platform/trace.h"

#include <array>
#include <cstring>

#include <pthread.h>

struct OpcUa_SystemThread
{
    pthread_t id{};
    bool isWaitedFor = false;
};

namespace {

/// What a new thread takes along. It is the thread's own, since the record may be deleted while the
/// thread runs.
struct StartBlock
{
    OpcUa_ThreadFunction function;
    void* argument;
};

void* runThread(void* argument)
{
    auto* const block = static_cast<StartBlock*>(argument);
    const StartBlock start = *block;
    OpcUa_Memory_Destroy(block);
    start.function(start.argument);
    return nullptr;
}

int createSystemThread(pthread_t* id, StartBlock* block)
{
    pthread_attr_t attributes;
    int error = pthread_attr_init(&attributes);
    if (error != 0) {
        return error;
    }
    error = pthread_attr_setstacksize(&attributes, ThreadStackSize);
    if (error == 0) {
        error = pthread_create(id, &attributes, runThread, block);
    }
    pthread_attr_destroy(&attributes);
    return error;
}

/// The system's text of an error, whichever of its two forms strerror_r has here.
[[maybe_unused]] const char* messageOf(const char* text, const char* /*buffer*/)
{
    return text;
}

[[maybe_unused]] const char* messageOf(int result, const char* buffer)
{
    return result == 0 ? buffer : "";
}

void traceFailure(int error)
{
    std::array<char, 128> buffer{};
    OpcUa_Trace(OpcUa_TraceLevel_Error,
                "OpcUa_P_Thread_Start: CreateThread failed with error code %u -> %s\n",
                static_cast<unsigned>(error),
                messageOf(strerror_r(error, buffer.data(), buffer.size()), buffer.data()));
}

/// Starts what the record says; on success the block belongs to the new thread.
OpcUa_StatusCode startWith(const OpcUa_ThreadRecord& thread, OpcUa_SystemThread* handle,
                           StartBlock* block)
{
    if (handle == nullptr || block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *block = {thread.startFunction, thread.startArgument};
    const int error = createSystemThread(&handle->id, block);
    if (error != 0) {
        traceFailure(error);
        return OpcUa_BadResourceUnavailable;
    }
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode OpcUa_P_Thread_Create(OpcUa_Thread* thread)
{
    if (thread == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *thread = OpcUa_Memory_Construct<OpcUa_ThreadRecord>();
    return *thread != nullptr ? OpcUa_Good : OpcUa_BadOutOfMemory;
}

OpcUa_StatusCode OpcUa_P_Thread_Start(OpcUa_Thread thread, OpcUa_ThreadFunction function,
                                      void* argument)
{
    if (thread == nullptr || function == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (thread->handle != nullptr) {
        return OpcUa_BadInvalidState;
    }
    thread->startFunction = function;
    thread->startArgument = argument;
    auto* const handle = OpcUa_Memory_Construct<OpcUa_SystemThread>();
    auto* const block = OpcUa_Memory_Construct<StartBlock>();
    const OpcUa_StatusCode status = startWith(*thread, handle, block);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Destroy(block);
        OpcUa_Memory_Destroy(handle);
        return status;
    }
    thread->handle = handle;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_Thread_Wait(OpcUa_Thread thread)
{
    if (thread == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_SystemThread* const handle = thread->handle;
    if (handle == nullptr || handle->isWaitedFor ||
        pthread_equal(handle->id, pthread_self()) != 0) {
        return OpcUa_BadInvalidState;
    }
    if (pthread_join(handle->id, nullptr) != 0) {
        return OpcUa_BadInternalError;
    }
    handle->isWaitedFor = true;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_P_Thread_Delete(OpcUa_Thread* thread)
{
    if (thread == nullptr || *thread == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_SystemThread* const handle = (*thread)->handle;
    if (handle != nullptr && !handle->isWaitedFor) {
        pthread_detach(handle->id);
    }
    OpcUa_Memory_Destroy(handle);
    OpcUa_Memory_Destroy(*thread);
    *thread = nullptr;
    return OpcUa_Good;
}
