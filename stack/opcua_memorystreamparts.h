#pragma once

#include "platform/allocator.h"
#include "platform/status.h"
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

/// The same for an operation on an open stream: `BadInvalidArgument` without a block, `BadInvalidState`
/// once it is closed.
template <typename Block, typename Stream, typename Entry, typename Operation>
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryStream_Enter(const Stream* stream, Entry entry,
                                                        Operation operation, Block*& block)
{
    block = OpcUa_MemoryStream_BlockOf<Block>(stream, entry, operation);
    if (block == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    return block->IsClosed ? OpcUa_BadInvalidState : OpcUa_Good;
}

/// Makes a stream that is open.
template <typename Stream, typename Interface, typename Buffer>
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryStream_Create(const Interface& table,
                                                         const Buffer& content, Stream** stream)
{
    using Block = OpcUa_MemoryStream<Stream, Buffer>;
    auto* block = static_cast<Block*>(OpcUa_Memory_Alloc(sizeof(Block)));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *block = {OpcUa_MemoryStream_SanityCheck, false, {&table, block}, content};
    *stream = &block->Base;
    return OpcUa_Good;
}

/// Closes a stream by its table's own operation.
template <typename Block, typename Stream, typename Entry, typename Operation>
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryStream_Close(Stream* stream, Entry entry,
                                                        Operation operation)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status = OpcUa_MemoryStream_Enter(stream, entry, operation, block);
    if (OpcUa_IsGood(status)) {
        block->IsClosed = true;
    }
    return status;
}

/// Frees a stream, open or closed, by its table's own operation; `clear` frees what its buffer owns.
template <typename Block, typename Stream, typename Entry, typename Operation, typename Clear>
[[nodiscard]] OpcUa_StatusCode OpcUa_MemoryStream_Delete(Stream** stream, Entry entry,
                                                         Operation operation, Clear clear)
{
    auto* block =
        stream == nullptr ? nullptr : OpcUa_MemoryStream_BlockOf<Block>(*stream, entry, operation);
    if (block == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    clear(block->Content);
    block->SanityCheck = 0;
    OpcUa_Memory_Free(block);
    *stream = nullptr;
    return OpcUa_Good;
}
