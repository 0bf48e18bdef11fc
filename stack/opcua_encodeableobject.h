#pragma once

#include "platform/types.h"
#include "stack/opcua_encodeabletype.h"

struct OpcUa_ExtensionObject;
struct OpcUa_InputStream;
struct OpcUa_MessageContext;
struct OpcUa_OutputStream;

// Records of any encodeable type by their row. `BadInvalidArgument` for a null argument; after a
// failure an out pointer is null.

/// Allocates an initialised record by the stack's allocator. `BadOutOfMemory`.
[[nodiscard]] OpcUa_StatusCode OpcUa_EncodeableObject_Create(const OpcUa_EncodeableType* type,
                                                             void** object);

/// Clears and frees a record that came from here or from a decoder, and makes the pointer null. Null
/// pointers are allowed.
void OpcUa_EncodeableObject_Delete(const OpcUa_EncodeableType* type, void** object);

/// Clears an extension object and turns it into one that owns a new, initialised record, which is
/// handed out too. Its type id is the row's for the binary encoding where the row is of the standard's
/// namespace, as after decoding; otherwise it stays null. `BadOutOfMemory` leaves the extension object
/// cleared.
[[nodiscard]] OpcUa_StatusCode
OpcUa_EncodeableObject_CreateExtension(const OpcUa_EncodeableType* type,
                                       OpcUa_ExtensionObject* extension, void** object);

/// Writes a record through a binary encoder to a new memory stream, which the caller closes and
/// deletes. `BadNotSupported` for a context of another encoding, `BadOutOfMemory`, or the status of
/// what can't be encoded.
[[nodiscard]] OpcUa_StatusCode OpcUa_EncodeableObject_Encode(const OpcUa_EncodeableType* type,
                                                             const void* record,
                                                             const OpcUa_MessageContext* context,
                                                             OpcUa_OutputStream** stream);

/// Reads a new record through a binary decoder; what follows in the stream stays there.
/// `BadNotSupported` for a context of another encoding, `BadOutOfMemory`, or the status of what can't
/// be decoded.
[[nodiscard]] OpcUa_StatusCode OpcUa_EncodeableObject_Decode(const OpcUa_EncodeableType* type,
                                                             OpcUa_InputStream* stream,
                                                             const OpcUa_MessageContext* context,
                                                             void** record);
