#pragma once

#include "platform/types.h"

// Values can hold values: variants of variants, data values, decoded records and diagnostic infos.
// Copying and comparing them recurses, within a budget that all these kinds share; freeing them
// doesn't need one.

/// Levels that a copy or a comparison descends from the outermost value.
inline constexpr OpcUa_UInt32 OpcUa_Nesting_MaxLevels = 100;

/// Counts one level of the calling thread from its construction to its destruction.
class OpcUa_NestingLevel
{
public:
    OpcUa_NestingLevel();
    ~OpcUa_NestingLevel();
    OpcUa_NestingLevel(const OpcUa_NestingLevel&) = delete;
    OpcUa_NestingLevel& operator=(const OpcUa_NestingLevel&) = delete;

    /// True when this level is beyond OpcUa_Nesting_MaxLevels: whoever descends gives up.
    [[nodiscard]] bool isTooDeep() const;
};
