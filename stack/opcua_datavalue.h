#pragma once

#include "platform/datetime.h"
#include "platform/types.h"
#include "stack/opcua_variant.h"

/// A value with its status and times (OPC 10000-6, 5.1.10).
struct OpcUa_DataValue
{
    OpcUa_Variant Value;
    OpcUa_StatusCode StatusCode;
    OpcUa_DateTime SourceTimestamp;
    OpcUa_DateTime ServerTimestamp;
    OpcUa_UInt16 SourcePicoseconds; ///< In units of 10 picoseconds.
    OpcUa_UInt16 ServerPicoseconds; ///< In units of 10 picoseconds.
};

/// Makes a Null value with status Good and null times, without looking at what was there. A null
/// pointer is ignored.
void OpcUa_DataValue_Initialize(OpcUa_DataValue* dataValue);

/// Frees the value and initialises the record. Null pointers and a second call are allowed.
void OpcUa_DataValue_Clear(OpcUa_DataValue* dataValue);

/// Deep copy; what the destination held is cleared. Failures are those of OpcUa_Variant_CopyTo; the
/// destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_DataValue_CopyTo(const OpcUa_DataValue* source,
                                                      OpcUa_DataValue* destination);

/// Status code, source and server time, their picoseconds, then the value. The same pointer is equal,
/// a null pointer less.
[[nodiscard]] OpcUa_Int32 OpcUa_DataValue_Compare(const OpcUa_DataValue* left,
                                                  const OpcUa_DataValue* right);
