#include "platform/trace.h"

#include "platform/datetime.h"
#include "platform/status.h"
#include "platform/threadid.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

struct TraceState
{
    /// Recursive, so that a hook may call the functions of the trace itself.
    std::recursive_mutex mutex;
    bool isReady = false;
    /// 0 while the trace is off. Not under the mutex, so that whoever configures it may hold locks
    /// that a hook takes.
    std::atomic<OpcUa_UInt32> levelMask = 0;
    OpcUa_TraceHook hook = nullptr;
};

TraceState& state()
{
    static TraceState instance;
    return instance;
}

void printToStandardOutput(const char* message)
{
    std::array<char, OpcUa_DateTime_TextSize + 1> time{};
    if (OpcUa_IsBad(OpcUa_DateTime_GetStringFromDateTime(OpcUa_DateTime_UtcNow(), time.data(),
                                                         static_cast<OpcUa_UInt32>(time.size())))) {
        time[0] = '\0';
    }
    std::printf("|%08X| %s %s", OpcUa_P_Thread_GetCurrentId(), time.data(), message);
    std::fflush(stdout);
}

} // namespace

OpcUa_StatusCode OpcUa_Trace_Initialize()
{
    const std::scoped_lock lock(state().mutex);
    state().isReady = true;
    return OpcUa_Good;
}

void OpcUa_Trace_Clear()
{
    const std::scoped_lock lock(state().mutex);
    state().isReady = false;
}

void OpcUa_Trace_Configure(bool enabled, OpcUa_UInt32 levelMask)
{
    state().levelMask = enabled ? levelMask : 0;
}

void OpcUa_Trace_SetHook(OpcUa_TraceHook hook)
{
    const std::scoped_lock lock(state().mutex);
    state().hook = hook;
}

bool OpcUa_Trace(OpcUa_UInt32 level, const char* format, ...)
{
    const std::scoped_lock lock(state().mutex);
    if (!state().isReady) {
        return false;
    }
    if ((state().levelMask & level) == 0) {
        return true;
    }
    std::array<char, 200> buffer{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    if (state().hook != nullptr) {
        state().hook(buffer.data());
    } else {
        printToStandardOutput(buffer.data());
    }
    return true;
}
