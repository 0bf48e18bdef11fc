#pragma once

#include "platform/types.h"

struct OpcUa_Decoder;
struct OpcUa_Encoder;
struct OpcUa_RecordField;

// One field of a record through the table of an encoder or decoder of any kind, with its name.

/// Writes a field of the record, or adds its size when `size` isn't null. The status is that of the
/// encoder's operation.
[[nodiscard]] OpcUa_StatusCode OpcUa_Field_Write(OpcUa_Encoder* encoder,
                                                 const OpcUa_RecordField& field, const void* record,
                                                 OpcUa_Int32* size);

/// Reads a field of an initialised record. The status is that of the decoder's operation, which
/// leaves the field cleared when it fails.
[[nodiscard]] OpcUa_StatusCode OpcUa_Field_Read(OpcUa_Decoder* decoder,
                                                const OpcUa_RecordField& field, void* record);
