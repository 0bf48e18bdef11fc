#pragma once

#include "platform/datetime.h"
#include "platform/types.h"

// The record and its text form are the platform's, which stamps its trace with them.

/// Makes the null time. A null pointer is ignored.
void OpcUa_DateTime_Initialize(OpcUa_DateTime* dateTime);

/// The same: a time owns nothing.
void OpcUa_DateTime_Clear(OpcUa_DateTime* dateTime);

/// `BadInvalidArgument` for a null pointer; the destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_DateTime_CopyTo(const OpcUa_DateTime* source,
                                                     OpcUa_DateTime* destination);

/// Order of the eight bytes in memory: -1, 0 or 1. It tells times apart but isn't their order in
/// time: for that compare the high and then the low words. A null pointer is less.
[[nodiscard]] OpcUa_Int32 OpcUa_DateTime_Compare(const OpcUa_DateTime* left,
                                                 const OpcUa_DateTime* right);
