#include "certificates/validitystate.h"

namespace {

constexpr OpcUa_Int64 ticksPerDay = 864000000000;
constexpr OpcUa_Int64 warningDays = 15;

ValidityState stateOf(bool isValid, const UaDateTime& to, const UaDateTime& now) noexcept
{
    if (!isValid) {
        return now > to ? ValidityState::Expired : ValidityState::NotYetValid;
    }
    const OpcUa_Int64 daysLeft = (to.toInt64() - now.toInt64()) / ticksPerDay;
    return daysLeft < warningDays ? ValidityState::ExpiresSoon : ValidityState::Healthy;
}

} // namespace

ValidityState certificateState(const UaDateTime& from, const UaDateTime& to,
                               const UaDateTime& now) noexcept
{
    return stateOf(!(now < from) && !(now > to), to, now);
}

ValidityState revocationListState(const UaDateTime& thisUpdate, const UaDateTime& nextUpdate,
                                  const UaDateTime& now) noexcept
{
    const bool isValid = !(now < thisUpdate) && (nextUpdate.isNull() || !(now > nextUpdate));
    return stateOf(isValid, nextUpdate, now);
}
