#pragma once

#include "base/uadatetime.h"
#include "platform/clock.h"

/// While it lives, the platform's clock shows one moment.
class FixedClock
{
public:
    explicit FixedClock(const UaDateTime& now)
    {
        set(now);
        OpcUa_P_Clock_SetSource([] { return reading(); });
    }
    ~FixedClock() { OpcUa_P_Clock_SetSource(nullptr); }
    FixedClock(const FixedClock&) = delete;
    FixedClock& operator=(const FixedClock&) = delete;

    static void set(const UaDateTime& now) { reading() = static_cast<OpcUa_UInt64>(now.toInt64()); }

private:
    static OpcUa_UInt64& reading()
    {
        static OpcUa_UInt64 value = 0;
        return value;
    }
};
