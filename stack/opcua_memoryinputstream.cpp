#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarysource.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_memorystreamparts.h"

#include <algorithm>

namespace {

using Interface = OpcUa_InputStreamInterface;
using Block = OpcUa_MemoryStream<OpcUa_InputStream, OpcUa_ReadBuffer>;

std::size_t remainingOf(const OpcUa_ReadBuffer& buffer)
{
    return static_cast<std::size_t>(buffer.End - buffer.Current);
}

/// The private block, which is open when the answer is Good.
template <typename Entry, typename Operation>
OpcUa_StatusCode enter(const OpcUa_InputStream* stream, Entry entry, Operation operation,
                       Block*& block)
{
    block = OpcUa_MemoryStream_BlockOf<Block>(stream, entry, operation);
    if (block == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    return block->IsClosed ? OpcUa_BadInvalidState : OpcUa_Good;
}

OpcUa_StatusCode readBytes(OpcUa_InputStream* stream, OpcUa_Byte* data, OpcUa_UInt32 length,
                           OpcUa_UInt32* readLength)
{
    if (stream == nullptr || readLength == nullptr || (data == nullptr && length != 0)) {
        return OpcUa_BadInvalidArgument;
    }
    *readLength = 0;
    Block* block = nullptr;
    const OpcUa_StatusCode status = enter(stream, &Interface::Read, readBytes, block);
    if (OpcUa_IsBad(status) || length == 0) {
        return status;
    }
    OpcUa_ReadBuffer& buffer = block->Content;
    const std::size_t size = std::min<std::size_t>(length, remainingOf(buffer));
    if (size != 0) {
        std::memcpy(data, buffer.Current, size);
        buffer.Current += size;
    }
    *readLength = static_cast<OpcUa_UInt32>(size);
    return size == length ? OpcUa_Good : OpcUa_BadEndOfStream;
}

OpcUa_StatusCode getRemaining(OpcUa_InputStream* stream, OpcUa_UInt32* remaining)
{
    if (stream == nullptr || remaining == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    Block* block = nullptr;
    const OpcUa_StatusCode status = enter(stream, &Interface::GetRemaining, getRemaining, block);
    if (OpcUa_IsGood(status)) {
        *remaining = static_cast<OpcUa_UInt32>(remainingOf(block->Content));
    }
    return status;
}

OpcUa_StatusCode closeStream(OpcUa_InputStream* stream)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status = enter(stream, &Interface::Close, closeStream, block);
    if (OpcUa_IsGood(status)) {
        block->IsClosed = true;
    }
    return status;
}

OpcUa_StatusCode deleteStream(OpcUa_InputStream** stream)
{
    auto* block = stream == nullptr ? nullptr
                                    : OpcUa_MemoryStream_BlockOf<Block>(*stream, &Interface::Delete,
                                                                        deleteStream);
    if (block == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    block->SanityCheck = 0;
    OpcUa_Memory_Free(block);
    *stream = nullptr;
    return OpcUa_Good;
}

constexpr Interface memoryInterface = {readBytes, getRemaining, closeStream, deleteStream};

} // namespace

OpcUa_ReadBuffer* OpcUa_ReadBuffer_FromStream(const OpcUa_InputStream* stream)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status = enter(stream, &Interface::Read, readBytes, block);
    return OpcUa_IsGood(status) ? &block->Content : nullptr;
}

OpcUa_StatusCode OpcUa_MemoryInputStream_Create(const OpcUa_Byte* buffer, OpcUa_UInt32 length,
                                                OpcUa_InputStream** stream)
{
    if (stream == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *stream = nullptr;
    if (buffer == nullptr && length != 0) {
        return OpcUa_BadInvalidArgument;
    }
    auto* block = static_cast<Block*>(OpcUa_Memory_Alloc(sizeof(Block)));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    *block = {OpcUa_MemoryStream_SanityCheck,
              false,
              {&memoryInterface, block},
              {buffer, buffer, buffer + length}};
    *stream = &block->Base;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_MemoryInputStream_Reset(OpcUa_InputStream* stream)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status = enter(stream, &Interface::Read, readBytes, block);
    if (OpcUa_IsGood(status)) {
        block->Content.Current = block->Content.Begin;
    }
    return status;
}

OpcUa_StatusCode OpcUa_MemoryInputStream_GetPosition(OpcUa_InputStream* stream,
                                                     OpcUa_UInt32* position)
{
    if (position == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    Block* block = nullptr;
    const OpcUa_StatusCode status = enter(stream, &Interface::Read, readBytes, block);
    if (OpcUa_IsGood(status)) {
        *position = static_cast<OpcUa_UInt32>(block->Content.Current - block->Content.Begin);
    }
    return status;
}
