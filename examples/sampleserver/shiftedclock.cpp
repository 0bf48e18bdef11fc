#include "examples/sampleserver/shiftedclock.h"

#include "platform/clock.h"

#include <utility>

namespace {

constexpr long long ticksPerDay = 24LL * 60 * 60 * 10'000'000;

long long s_shift = 0;

OpcUa_UInt64 shiftedNow()
{
    return OpcUa_P_Clock_ReadSystem() + static_cast<OpcUa_UInt64>(s_shift);
}

} // namespace

ShiftedClock::ShiftedClock(int days)
    : m_former(std::exchange(s_shift, days * ticksPerDay))
{
    OpcUa_P_Clock_SetSource(shiftedNow);
}

ShiftedClock::~ShiftedClock()
{
    s_shift = m_former;
}
