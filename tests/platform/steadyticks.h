#pragma once

#include "platform/clock.h"

#include <atomic>

/// A tick count that a test moves by hand. Only one object may live at a time.
class SteadyTicks
{
public:
    explicit SteadyTicks(OpcUa_UInt32 start)
    {
        current() = start;
        OpcUa_P_Clock_SetTickSource([] { return current().load(); });
    }
    ~SteadyTicks() { OpcUa_P_Clock_SetTickSource(nullptr); }
    SteadyTicks(const SteadyTicks&) = delete;
    SteadyTicks& operator=(const SteadyTicks&) = delete;

    static void advance(OpcUa_UInt32 milliseconds) { current() += milliseconds; }
    [[nodiscard]] static OpcUa_UInt32 now() { return current(); }

private:
    static std::atomic<OpcUa_UInt32>& current()
    {
        static std::atomic<OpcUa_UInt32> value = 0;
        return value;
    }
};
