#pragma once

#include "platform/allocator.h"
#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_binarysink.h"
#include "stack/opcua_decoder.h"
#include "stack/opcua_elementtraits.h"

#include <cstddef>
#include <cstring>

struct OpcUa_InputStream;
struct OpcUa_MessageContext;

// Where encoded bytes come from.

/// The block behind a memory input stream, and how far it is read.
struct OpcUa_ReadBuffer
{
    const OpcUa_Byte* Begin;
    const OpcUa_Byte* Current;
    const OpcUa_Byte* End;
};

/// The block behind a memory input stream that is open; null for a stream of another kind.
[[nodiscard]] OpcUa_ReadBuffer* OpcUa_ReadBuffer_FromStream(const OpcUa_InputStream* stream);

/// The table of every binary decoder.
extern const OpcUa_DecoderInterface OpcUa_BinaryDecoder_Interface;

inline constexpr OpcUa_UInt32 OpcUa_BinaryDecoder_SanityCheck = 0x032150D3;

/// The private block of a binary decoder.
struct OpcUa_BinaryReader
{
    /// Bytes of the largest value that is read in one piece.
    static constexpr std::size_t WindowSize = 16;

    OpcUa_UInt32 SanityCheck;
    bool IsClosed;
    bool WasOpened;
    OpcUa_InputStream* Stream;
    const OpcUa_MessageContext* Context;
    OpcUa_Decoder* Decoder;
    OpcUa_UInt32 Level;       ///< Of the nesting at this point.
    OpcUa_ReadBuffer* Buffer; ///< What can be read without asking the stream.
    std::size_t Behind;       ///< Bytes of the stream behind the buffer: 0 for a memory stream.
    std::size_t Owed;         ///< Bytes that the arrays around this point need at least.
    OpcUa_ReadBuffer Window;  ///< The buffer for other than memory streams.
    OpcUa_Byte WindowBytes[WindowSize];

    /// Bytes in the buffer.
    [[nodiscard]] std::size_t available() const
    {
        return static_cast<std::size_t>(Buffer->End - Buffer->Current);
    }

    /// Bytes until the end of the stream, or of the body that is being read.
    [[nodiscard]] std::size_t remaining() const { return available() + Behind; }

    /// Brings `size` bytes into the buffer, at most WindowSize, for the functions with "get".
    [[nodiscard]] OpcUa_StatusCode need(std::size_t size)
    {
        return size <= available() ? OpcUa_Good : fill(size);
    }

    template <typename T>
    void get(T& value)
    {
        std::memcpy(&value, Buffer->Current, sizeof(T));
        Buffer->Current += sizeof(T);
    }

    /// Reads a block of any size. `BadExpectedStreamToBlock` when the stream has fewer bytes, of which
    /// the block may hold some then.
    [[nodiscard]] OpcUa_StatusCode read(void* bytes, std::size_t size)
    {
        if (size > available()) {
            return readBehind(bytes, size);
        }
        OpcUa_Binary_Copy(bytes, Buffer->Current, size);
        Buffer->Current += size;
        return OpcUa_Good;
    }

private:
    [[nodiscard]] OpcUa_StatusCode fill(std::size_t size);
    [[nodiscard]] OpcUa_StatusCode readBehind(void* bytes, std::size_t size);
};

/// The private block of an open binary decoder; null for a decoder of another kind, one with a table
/// of its own and one that isn't open. The fast way past the table: call the functions of
/// "stack/opcua_binaryread.h" on it.
[[nodiscard]] inline OpcUa_BinaryReader*
OpcUa_BinaryReader_FromDecoder(const OpcUa_Decoder* decoder)
{
    if (decoder == nullptr || decoder->Interface != &OpcUa_BinaryDecoder_Interface) {
        return nullptr;
    }
    auto* reader = static_cast<OpcUa_BinaryReader*>(decoder->Handle);
    return reader != nullptr && reader->SanityCheck == OpcUa_BinaryDecoder_SanityCheck &&
                   !reader->IsClosed
               ? reader
               : nullptr;
}

/// Reads elements for the sake of the status alone, one after the other into the memory of one, by
/// `readElement(reading, element)`.
[[nodiscard]] OpcUa_StatusCode
OpcUa_BinaryRead_Nowhere(const OpcUa_ElementTraits& traits, OpcUa_Int32 count, void* reading,
                         OpcUa_StatusCode (*readElement)(void* reading, void* element));

/// Reads the elements of an array whose count is known, by `readElement(void*)`, which fills memory of
/// any content and leaves nothing to be cleared when it fails. No element takes fewer bytes of the
/// stream than `minimum`, which is at least 1. After a failure `*elements` is null.
///
/// The block is allocated at once when the stream has enough bytes for all elements besides those that
/// the arrays around it still need. Otherwise the array can't end well, and is read for the sake of its
/// status alone. Where all of its elements are there, it is the arrays around it that can't:
/// `BadEndOfStream`.
template <typename ReadElement>
[[nodiscard]] OpcUa_StatusCode OpcUa_BinaryRead_Elements(OpcUa_BinaryReader& reader,
                                                         const OpcUa_ElementTraits& traits,
                                                         std::size_t minimum, OpcUa_Int32 count,
                                                         void** elements, ReadElement readElement)
{
    *elements = nullptr;
    if (count < 1) {
        return OpcUa_Good;
    }
    const std::size_t owed = reader.Owed;
    const std::size_t minimalSize = minimum * static_cast<std::size_t>(count);
    if (owed + minimalSize > reader.remaining()) {
        const OpcUa_StatusCode status =
            OpcUa_BinaryRead_Nowhere(traits, count, &readElement, [](void* reading, void* element) {
                return (*static_cast<ReadElement*>(reading))(element);
            });
        return OpcUa_IsBad(status) ? status : OpcUa_BadEndOfStream;
    }
    auto* block =
        static_cast<char*>(OpcUa_Memory_AllocArray(static_cast<std::size_t>(count), traits.Size));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    reader.Owed = owed + minimalSize;
    char* element = block;
    for (OpcUa_Int32 done = 0; done < count; ++done, element += traits.Size) {
        reader.Owed -= minimum;
        const OpcUa_StatusCode status = readElement(static_cast<void*>(element));
        if (OpcUa_IsBad(status)) {
            OpcUa_Elements_Free(traits, block, done);
            reader.Owed = owed;
            return status;
        }
    }
    reader.Owed = owed;
    *elements = block;
    return OpcUa_Good;
}
