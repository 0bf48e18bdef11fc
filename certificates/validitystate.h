#pragma once

#include "base/uadatetime.h"

/// What the dates of a certificate or revocation list say at one moment.
enum class ValidityState
{
    Healthy = 0,
    NotYetValid = 1,
    ExpiresSoon = 2, ///< Fewer than 15 whole days are left.
    Expired = 3
};

inline constexpr int validityStateCount = 4;

/// The state of a certificate at `now`. Both bounds belong to its lifetime.
[[nodiscard]] ValidityState certificateState(const UaDateTime& from, const UaDateTime& to,
                                             const UaDateTime& now) noexcept;

/// The state of a revocation list at `now`. One without a next update, the null time, never expires
/// but always counts as one that will soon; before its begin it counts as expired.
[[nodiscard]] ValidityState revocationListState(const UaDateTime& thisUpdate,
                                                const UaDateTime& nextUpdate,
                                                const UaDateTime& now) noexcept;
