#pragma once

#include "platform/statuscodes.h"
#include "platform/types.h"

// A status is tested by its top two bits and never by equality with 0: good statuses carry info
// bits too (OPC 10000-4, 7.39).

/// Both severity bits are clear.
[[nodiscard]] constexpr bool OpcUa_IsGood(OpcUa_StatusCode status)
{
    return (status & 0xC0000000u) == 0;
}

/// At least one severity bit is set: uncertain, bad or the reserved pattern.
[[nodiscard]] constexpr bool OpcUa_IsNotGood(OpcUa_StatusCode status)
{
    return !OpcUa_IsGood(status);
}

/// The top bit is set.
[[nodiscard]] constexpr bool OpcUa_IsBad(OpcUa_StatusCode status)
{
    return (status & 0x80000000u) != 0;
}

/// The top bit is clear: good or uncertain.
[[nodiscard]] constexpr bool OpcUa_IsNotBad(OpcUa_StatusCode status)
{
    return !OpcUa_IsBad(status);
}

/// The top two bits are 01.
[[nodiscard]] constexpr bool OpcUa_IsUncertain(OpcUa_StatusCode status)
{
    return (status & 0xC0000000u) == 0x40000000u;
}
