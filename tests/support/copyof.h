#pragma once

/// A copy that is made on purpose, where a test is about copies.
template <typename T>
[[nodiscard]] T copyOf(const T& value)
{
    return value;
}
