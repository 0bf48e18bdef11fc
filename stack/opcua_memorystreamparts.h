#pragma once

#include "platform/types.h"

// Parts that the sources of the memory streams share.

inline constexpr OpcUa_UInt32 OpcUa_MemoryStream_SanityCheck = 0x25B49A0E;

/// The private block of a memory stream, which is also what is allocated: the handle lies in it.
template <typename Stream, typename Buffer>
struct OpcUa_MemoryStream
{
    OpcUa_UInt32 SanityCheck;
    bool IsClosed;
    Stream Base;
    Buffer Content;
};

/// The private block of a stream that passes for a memory stream by its sanity value and by its table,
/// which holds `operation` in the place of `entry`; otherwise null.
template <typename Block, typename Stream, typename Entry, typename Operation>
[[nodiscard]] Block* OpcUa_MemoryStream_BlockOf(const Stream* stream, Entry entry,
                                                Operation operation)
{
    if (stream == nullptr || stream->Interface == nullptr || stream->Handle == nullptr) {
        return nullptr;
    }
    auto* block = static_cast<Block*>(stream->Handle);
    return block->SanityCheck == OpcUa_MemoryStream_SanityCheck &&
                   stream->Interface->*entry == operation
               ? block
               : nullptr;
}
