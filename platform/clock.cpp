#include "platform/clock.h"

#include <atomic>
#include <chrono>
#include <ratio>

namespace {

std::atomic<OpcUa_P_ClockSource> clockSource = nullptr;
std::atomic<OpcUa_P_TickSource> tickSource = nullptr;

/// 100-nanosecond units from the start of 1601 to the start of 1970.
constexpr OpcUa_Int64 ticksAtUnixEpoch = 116444736000000000;

} // namespace

OpcUa_UInt64 OpcUa_P_Clock_UtcNow()
{
    const OpcUa_P_ClockSource source = clockSource.load();
    return source != nullptr ? source() : OpcUa_P_Clock_ReadSystem();
}

OpcUa_P_ClockSource OpcUa_P_Clock_SetSource(OpcUa_P_ClockSource source)
{
    return clockSource.exchange(source);
}

OpcUa_UInt64 OpcUa_P_Clock_ReadSystem()
{
    using Ticks = std::chrono::duration<OpcUa_Int64, std::ratio<1, 10000000>>;
    const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<OpcUa_UInt64>(std::chrono::floor<Ticks>(sinceUnixEpoch).count() +
                                     ticksAtUnixEpoch);
}

OpcUa_UInt32 OpcUa_P_Clock_GetTickCount()
{
    const OpcUa_P_TickSource source = tickSource.load();
    return source != nullptr ? source() : OpcUa_P_Clock_ReadSystemTicks();
}

OpcUa_P_TickSource OpcUa_P_Clock_SetTickSource(OpcUa_P_TickSource source)
{
    return tickSource.exchange(source);
}

OpcUa_UInt32 OpcUa_P_Clock_ReadSystemTicks()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    // The count wraps at 32 bits by design.
    return static_cast<OpcUa_UInt32>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}
