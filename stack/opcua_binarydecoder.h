#pragma once

#include "stack/opcua_decoder.h"

/// Makes a decoder of the OPC UA Binary encoding (OPC 10000-6, 5.2), not yet open. Its operations are
/// those of OpcUa_DecoderInterface. `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the out
/// pointer is null then.
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryDecoder_Create(OpcUa_Decoder** decoder);
