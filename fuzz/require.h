#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// Ends a fuzz target with a finding when a promised property doesn't hold.
inline void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}
