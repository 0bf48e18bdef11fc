#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarysink.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_memorystreamparts.h"

#include <algorithm>

namespace {

using Interface = OpcUa_OutputStreamInterface;
using Block = OpcUa_MemoryStream<OpcUa_OutputStream, OpcUa_WriteBuffer>;

/// What a block holds at least once it holds anything.
constexpr std::size_t smallestCapacity = 64;

/// Sizes are signed 32-bit numbers all over.
constexpr std::size_t largestSize = 0x7FFFFFFF;

std::size_t lengthOf(const OpcUa_WriteBuffer& buffer)
{
    return static_cast<std::size_t>(buffer.Current - buffer.Begin);
}

OpcUa_StatusCode writeBytes(OpcUa_OutputStream* stream, const OpcUa_Byte* data, OpcUa_UInt32 length)
{
    if (stream == nullptr || (data == nullptr && length != 0)) {
        return OpcUa_BadInvalidArgument;
    }
    Block* block = nullptr;
    OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::Write, writeBytes, block);
    if (OpcUa_IsBad(status) || length == 0) {
        return status;
    }
    OpcUa_WriteBuffer& buffer = block->Content;
    if (length > static_cast<std::size_t>(buffer.End - buffer.Current)) {
        status = OpcUa_WriteBuffer_Grow(buffer, length);
    }
    if (OpcUa_IsGood(status)) {
        std::memcpy(buffer.Current, data, length);
        buffer.Current += length;
    }
    return status;
}

OpcUa_StatusCode getPosition(OpcUa_OutputStream* stream, OpcUa_UInt32* position)
{
    if (stream == nullptr || position == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    Block* block = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::GetPosition, getPosition, block);
    if (OpcUa_IsGood(status)) {
        *position = static_cast<OpcUa_UInt32>(lengthOf(block->Content));
    }
    return status;
}

OpcUa_StatusCode closeStream(OpcUa_OutputStream* stream)
{
    return OpcUa_MemoryStream_Close<Block>(stream, &Interface::Close, closeStream);
}

OpcUa_StatusCode deleteStream(OpcUa_OutputStream** stream)
{
    return OpcUa_MemoryStream_Delete<Block>(stream, &Interface::Delete, deleteStream,
                                            OpcUa_WriteBuffer_Clear);
}

constexpr Interface memoryInterface = {writeBytes, getPosition, closeStream, deleteStream};

/// A stream of this kind, open or closed.
Block* blockOf(const OpcUa_OutputStream* stream)
{
    return OpcUa_MemoryStream_BlockOf<Block>(stream, &Interface::Write, writeBytes);
}

} // namespace

OpcUa_StatusCode OpcUa_WriteBuffer_Grow(OpcUa_WriteBuffer& buffer, std::size_t size)
{
    const std::size_t used = lengthOf(buffer);
    if (!buffer.IsOwned || size > buffer.MaxSize - used) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    const auto doubled = 2 * static_cast<std::size_t>(buffer.End - buffer.Begin);
    const std::size_t capacity =
        std::min(std::max({doubled, used + size, smallestCapacity}), buffer.MaxSize);
    auto* block = static_cast<OpcUa_Byte*>(OpcUa_Memory_ReAlloc(buffer.Begin, capacity));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    buffer.Begin = block;
    buffer.Current = block + used;
    buffer.End = block + capacity;
    return OpcUa_Good;
}

void OpcUa_WriteBuffer_Clear(OpcUa_WriteBuffer& buffer)
{
    if (buffer.IsOwned) {
        OpcUa_Memory_Free(buffer.Begin);
    }
    buffer.Begin = nullptr;
    buffer.Current = nullptr;
    buffer.End = nullptr;
}

OpcUa_WriteBuffer* OpcUa_WriteBuffer_FromStream(const OpcUa_OutputStream* stream)
{
    Block* block = blockOf(stream);
    return block == nullptr || block->IsClosed ? nullptr : &block->Content;
}

OpcUa_StatusCode OpcUa_MemoryOutputStream_Create(OpcUa_UInt32 initialSize, OpcUa_UInt32 maxSize,
                                                 OpcUa_OutputStream** stream)
{
    if (stream == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *stream = nullptr;
    const std::size_t limit =
        maxSize == 0 ? largestSize : std::min<std::size_t>(maxSize, largestSize);
    OpcUa_WriteBuffer buffer = {nullptr, nullptr, nullptr, limit, true};
    OpcUa_StatusCode status = OpcUa_Good;
    if (initialSize != 0) {
        status = OpcUa_WriteBuffer_Grow(buffer, std::min<std::size_t>(initialSize, limit));
    }
    if (OpcUa_IsGood(status)) {
        status = OpcUa_MemoryStream_Create(memoryInterface, buffer, stream);
    }
    if (OpcUa_IsBad(status)) {
        OpcUa_WriteBuffer_Clear(buffer);
    }
    return status;
}

OpcUa_StatusCode OpcUa_MemoryOutputStream_Attach(OpcUa_Byte* buffer, OpcUa_UInt32 size,
                                                 OpcUa_OutputStream** stream)
{
    if (stream == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *stream = nullptr;
    if (buffer == nullptr && size != 0) {
        return OpcUa_BadInvalidArgument;
    }
    return OpcUa_MemoryStream_Create(
        memoryInterface, OpcUa_WriteBuffer{buffer, buffer, buffer + size, size, false}, stream);
}

OpcUa_StatusCode OpcUa_MemoryOutputStream_GetBuffer(OpcUa_OutputStream* stream,
                                                    const OpcUa_Byte** buffer, OpcUa_UInt32* length)
{
    const Block* block = blockOf(stream);
    if (block == nullptr || buffer == nullptr || length == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *buffer = block->Content.Begin;
    *length = static_cast<OpcUa_UInt32>(lengthOf(block->Content));
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_MemoryOutputStream_Detach(OpcUa_OutputStream* stream, OpcUa_Byte** buffer,
                                                 OpcUa_UInt32* length)
{
    Block* block = blockOf(stream);
    if (block == nullptr || buffer == nullptr || length == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_WriteBuffer& content = block->Content;
    if (!content.IsOwned) {
        *buffer = nullptr;
        *length = 0;
        return OpcUa_BadInvalidState;
    }
    *buffer = content.Begin;
    *length = static_cast<OpcUa_UInt32>(lengthOf(content));
    content = {nullptr, nullptr, nullptr, content.MaxSize, true};
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_MemoryOutputStream_Reset(OpcUa_OutputStream* stream)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::Write, writeBytes, block);
    if (OpcUa_IsGood(status)) {
        block->Content.Current = block->Content.Begin;
    }
    return status;
}
