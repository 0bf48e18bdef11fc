#pragma once

#include "platform/status.h"
#include "platform/trace.h"

#include <string>
#include <vector>

/// Brings the trace up with all levels and keeps what it is sent; takes it down again at the end.
/// Only one object may live at a time.
class TraceRecorder
{
public:
    explicit TraceRecorder(OpcUa_UInt32 levelMask = 0xFFFFFFFFu)
    {
        messages().clear();
        m_isReady = OpcUa_IsGood(OpcUa_Trace_Initialize());
        OpcUa_Trace_Configure(true, levelMask);
        OpcUa_Trace_SetHook([](const char* message) { messages().emplace_back(message); });
    }
    ~TraceRecorder()
    {
        OpcUa_Trace_SetHook(nullptr);
        OpcUa_Trace_Configure(false, 0);
        OpcUa_Trace_Clear();
    }
    TraceRecorder(const TraceRecorder&) = delete;
    TraceRecorder& operator=(const TraceRecorder&) = delete;

    [[nodiscard]] bool isReady() const { return m_isReady; }

    /// What was traced so far. The trace's lock guards it, so read it when other threads are done.
    [[nodiscard]] static std::vector<std::string>& messages()
    {
        static std::vector<std::string> list;
        return list;
    }

private:
    bool m_isReady = false;
};
