#pragma once

#include "platform/types.h"

struct OpcUa_OutputStream;

/// What a stream does for an encoder. Each operation takes its own handle and checks that it is of
/// its kind: `BadInvalidArgument` for null and for a handle of another kind, `BadInvalidState` after
/// Close.
struct OpcUa_OutputStreamInterface
{
    /// Takes all bytes or fails; after a failure the content is undefined.
    OpcUa_StatusCode (*Write)(OpcUa_OutputStream* stream, const OpcUa_Byte* data,
                              OpcUa_UInt32 length);
    /// Bytes written so far.
    OpcUa_StatusCode (*GetPosition)(OpcUa_OutputStream* stream, OpcUa_UInt32* position);
    /// Ends the writing. What was written stays until Delete.
    OpcUa_StatusCode (*Close)(OpcUa_OutputStream* stream);
    /// Frees the stream, open or closed, and makes the pointer null.
    OpcUa_StatusCode (*Delete)(OpcUa_OutputStream** stream);
};

/// A place for encoded bytes: a table of operations and a private block. A stream belongs to one
/// thread.
struct OpcUa_OutputStream
{
    const OpcUa_OutputStreamInterface* Interface;
    void* Handle; ///< The implementation's own.
};
