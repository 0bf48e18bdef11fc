#pragma once

#include "platform/types.h"
#include "stack/opcua_inputstream.h"
#include "stack/opcua_outputstream.h"

// Streams over a block of memory. Encoders and decoders work in the block itself, without a call for
// each field. The functions below give `BadInvalidArgument` for null and for a stream of another kind.

/// Makes a stream with a block of its own, `initialSize` bytes at first. The block doubles when it is
/// full, up to `maxSize` bytes, 0 for no limit but that of a length; beyond it writing gives
/// `BadEncodingLimitsExceeded`. `BadOutOfMemory`; the out pointer is null after a failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryOutputStream_Create(OpcUa_UInt32 initialSize,
                                                               OpcUa_UInt32 maxSize,
                                                               OpcUa_OutputStream** stream);

/// Makes a stream that writes into the caller's block, which outlives it and never grows: writing
/// beyond it gives `BadEncodingLimitsExceeded`. `BadOutOfMemory`; the out pointer is null then.
[[nodiscard]] OpcUa_StatusCode
OpcUa_MemoryOutputStream_Attach(OpcUa_Byte* buffer, OpcUa_UInt32 size, OpcUa_OutputStream** stream);

/// Hands out what was written, for reading until the next write. Also of a closed stream.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryOutputStream_GetBuffer(OpcUa_OutputStream* stream,
                                                                  const OpcUa_Byte** buffer,
                                                                  OpcUa_UInt32* length);

/// Hands the block over, to be freed by the stack's allocator, and leaves an empty stream. Also of a
/// closed stream. `BadInvalidState` for a stream over the caller's block. Nothing written may give a
/// null block.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryOutputStream_Detach(OpcUa_OutputStream* stream,
                                                               OpcUa_Byte** buffer,
                                                               OpcUa_UInt32* length);

/// Forgets what was written and keeps the block, for the next message. `BadInvalidState` for a closed
/// stream.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryOutputStream_Reset(OpcUa_OutputStream* stream);

/// Makes a stream that reads the caller's block, which outlives it. Null is allowed for a length of
/// 0. `BadOutOfMemory`; the out pointer is null after a failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryInputStream_Create(const OpcUa_Byte* buffer,
                                                              OpcUa_UInt32 length,
                                                              OpcUa_InputStream** stream);

/// Goes back to the first byte. `BadInvalidState` for a closed stream.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryInputStream_Reset(OpcUa_InputStream* stream);

/// Bytes read so far.
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryInputStream_GetPosition(OpcUa_InputStream* stream,
                                                                   OpcUa_UInt32* position);
