#pragma once

#include "platform/types.h"

struct OpcUa_InputStream;

/// What a stream does for a decoder. Each operation takes its own handle and checks that it is of
/// its kind: `BadInvalidArgument` for null and for a handle of another kind, `BadInvalidState` after
/// Close.
struct OpcUa_InputStreamInterface
{
    /// Reads `length` bytes and tells in `readLength` how many there were. Fewer than asked come with
    /// `BadEndOfStream`, or with the status of what went wrong.
    OpcUa_StatusCode (*Read)(OpcUa_InputStream* stream, OpcUa_Byte* data, OpcUa_UInt32 length,
                             OpcUa_UInt32* readLength);
    /// Bytes that can still be read. A decoder takes no memory for more than these can fill, so the
    /// answer must not come from the sender's words.
    OpcUa_StatusCode (*GetRemaining)(OpcUa_InputStream* stream, OpcUa_UInt32* remaining);
    /// Ends the reading.
    OpcUa_StatusCode (*Close)(OpcUa_InputStream* stream);
    /// Frees the stream, open or closed, and makes the pointer null.
    OpcUa_StatusCode (*Delete)(OpcUa_InputStream** stream);
};

/// A source of encoded bytes, received as a whole: a table of operations and a private block. A
/// stream belongs to one thread.
struct OpcUa_InputStream
{
    const OpcUa_InputStreamInterface* Interface;
    void* Handle; ///< The implementation's own.
};
