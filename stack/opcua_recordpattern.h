#pragma once

#include "platform/status.h"
#include "platform/types.h"

// The frame around the copy and the comparison of every record that owns something.

/// Copies `*source` into `*destination` through `fill(from, to)`, which gets an initialised record and
/// returns a status. The copy is finished before the destination is cleared, so that the source may
/// lie inside what the destination owns; the same record is left as it is. `BadInvalidArgument` for a
/// null pointer, else the status of `fill`; after a failure the destination is cleared.
template <auto InitializeRecord, auto ClearRecord, typename T, typename Fill>
[[nodiscard]] OpcUa_StatusCode OpcUa_Record_CopyTo(const T* source, T* destination, Fill fill)
{
    if (source == nullptr || destination == nullptr) {
        ClearRecord(destination);
        return OpcUa_BadInvalidArgument;
    }
    if (source == destination) {
        return OpcUa_Good;
    }
    T copy;
    InitializeRecord(&copy);
    const OpcUa_StatusCode status = fill(*source, copy);
    if (OpcUa_IsBad(status)) {
        ClearRecord(&copy);
    }
    ClearRecord(destination);
    *destination = copy;
    return status;
}

/// Compares by `order(left, right)` what isn't decided by the pointers: the same one is equal, a null
/// one less.
template <typename T, typename Order>
[[nodiscard]] OpcUa_Int32 OpcUa_Record_Compare(const T* left, const T* right, Order order)
{
    if (left == right) {
        return 0;
    }
    if (left == nullptr || right == nullptr) {
        return left == nullptr ? -1 : 1;
    }
    return order(*left, *right);
}
