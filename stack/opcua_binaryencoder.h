#pragma once

#include "stack/opcua_encoder.h"

/// Makes an encoder of the OPC UA Binary encoding (OPC 10000-6, 5.2), not yet open. Its operations are
/// those of OpcUa_EncoderInterface. `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the out
/// pointer is null then.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryEncoder_Create(OpcUa_Encoder** encoder);
