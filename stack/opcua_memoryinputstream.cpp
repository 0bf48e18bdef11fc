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

OpcUa_StatusCode readBytes(OpcUa_InputStream* stream, OpcUa_Byte* data, OpcUa_UInt32 length,
                           OpcUa_UInt32* readLength)
{
    if (stream == nullptr || readLength == nullptr || (data == nullptr && length != 0)) {
        return OpcUa_BadInvalidArgument;
    }
    *readLength = 0;
    Block* block = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::Read, readBytes, block);
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
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::GetRemaining, getRemaining, block);
    if (OpcUa_IsGood(status)) {
        *remaining = static_cast<OpcUa_UInt32>(remainingOf(block->Content));
    }
    return status;
}

OpcUa_StatusCode closeStream(OpcUa_InputStream* stream)
{
    return OpcUa_MemoryStream_Close<Block>(stream, &Interface::Close, closeStream);
}

OpcUa_StatusCode deleteStream(OpcUa_InputStream** stream)
{
    return OpcUa_MemoryStream_Delete<Block>(stream, &Interface::Delete, deleteStream,
                                            [](const OpcUa_ReadBuffer& /*content*/) {});
}

constexpr Interface memoryInterface = {readBytes, getRemaining, closeStream, deleteStream};

} // namespace

OpcUa_ReadBuffer* OpcUa_ReadBuffer_FromStream(const OpcUa_InputStream* stream)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::Read, readBytes, block);
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
    return OpcUa_MemoryStream_Create(memoryInterface,
                                     OpcUa_ReadBuffer{buffer, buffer, buffer + length}, stream);
}

OpcUa_StatusCode OpcUa_MemoryInputStream_Reset(OpcUa_InputStream* stream)
{
    Block* block = nullptr;
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::Read, readBytes, block);
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
    const OpcUa_StatusCode status =
        OpcUa_MemoryStream_Enter(stream, &Interface::Read, readBytes, block);
    if (OpcUa_IsGood(status)) {
        *position = static_cast<OpcUa_UInt32>(block->Content.Current - block->Content.Begin);
    }
    return status;
}
