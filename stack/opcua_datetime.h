#pragma once

#include "platform/datetime.h"
#include "stack/opcua_scalars.h"

// The record and its text form are the platform's, which stamps its trace with them.

/// Makes the null time.
inline constexpr auto& OpcUa_DateTime_Initialize = OpcUa_Scalar_Initialize<OpcUa_DateTime>;

/// The same: a time owns nothing.
inline constexpr auto& OpcUa_DateTime_Clear = OpcUa_Scalar_Clear<OpcUa_DateTime>;

/// `BadInvalidArgument` for a null pointer; the destination is cleared then.
inline constexpr auto& OpcUa_DateTime_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_DateTime>;

/// Order of the eight bytes in memory: -1, 0 or 1. It tells times apart but isn't their order in
/// time: for that compare the high and then the low words. A null pointer is less.
inline constexpr auto& OpcUa_DateTime_Compare = OpcUa_Scalar_Compare<OpcUa_DateTime>;
