#pragma once

#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_binaryfast.h"
#include "stack/opcua_encoder.h"
#include "stack/opcua_nesting.h"

#include <bit>
#include <cstddef>
#include <cstring>

struct OpcUa_MessageContext;
struct OpcUa_OutputStream;

// Where encoded bytes go: into a stream's block (OpcUa_BinaryWriter), or nowhere but into a sum
// (OpcUa_BinaryCounter). The functions of "stack/opcua_binarywrite.h" are written once for both, so a
// size is always that of what is written.

static_assert(std::endian::native == std::endian::little,
              "numbers and arrays of them are copied as they lie in memory");

/// The block behind a memory output stream, and how far it is filled.
struct OpcUa_WriteBuffer
{
    OpcUa_Byte* Begin;
    OpcUa_Byte* Current;
    OpcUa_Byte* End;
    std::size_t MaxSize; ///< Up to which an owned block grows.
    bool IsOwned;        ///< From the stack's allocator; otherwise it never grows.
};

/// Makes room for `size` bytes behind what is written.
[[nodiscard]] OpcUa_StatusCode OpcUa_WriteBuffer_Grow(OpcUa_WriteBuffer& buffer, std::size_t size);

/// Frees an owned block.
void OpcUa_WriteBuffer_Clear(OpcUa_WriteBuffer& buffer);

/// The block behind a memory output stream that is open; null for a stream of another kind.
[[nodiscard]] OpcUa_WriteBuffer* OpcUa_WriteBuffer_FromStream(const OpcUa_OutputStream* stream);

/// The table of every binary encoder.
extern const OpcUa_EncoderInterface OpcUa_BinaryEncoder_Interface;

inline constexpr OpcUa_UInt32 OpcUa_BinaryEncoder_SanityCheck = 0x323278DA;

/// The private block of a binary encoder.
struct OpcUa_BinaryWriter
{
    static constexpr bool IsCounter = false;

    OpcUa_UInt32 SanityCheck;
    bool IsClosed;
    bool WasOpened;
    OpcUa_OutputStream* Stream;
    const OpcUa_MessageContext* Context;
    OpcUa_Encoder* Encoder;
    OpcUa_UInt32 Level; ///< Of the nesting at this point.
    OpcUa_WriteBuffer* Buffer;
    OpcUa_WriteBuffer
        Staging; ///< Collects the bytes of one operation for other than memory streams.

    /// Bytes that can be put without making room.
    [[nodiscard]] std::size_t room() const
    {
        return static_cast<std::size_t>(Buffer->End - Buffer->Current);
    }

    /// Room for `size` bytes, which the functions with "put" fill without asking.
    [[nodiscard]] OpcUa_StatusCode reserve(std::size_t size)
    {
        return size <= room() ? OpcUa_Good : OpcUa_WriteBuffer_Grow(*Buffer, size);
    }

    template <typename T>
    void put(T value)
    {
        std::memcpy(Buffer->Current, &value, sizeof(T));
        Buffer->Current += sizeof(T);
    }

    /// Null is allowed for a size of 0.
    void putBytes(const void* bytes, std::size_t size)
    {
        OpcUa_Binary_Copy(Buffer->Current, bytes, size);
        Buffer->Current += size;
    }

    /// The writer of this sink.
    [[nodiscard]] OpcUa_BinaryWriter& writer() { return *this; }

    /// Ends an operation with its status: outside of any nesting, staged bytes go to the stream.
    [[nodiscard]] OpcUa_StatusCode finish(OpcUa_StatusCode status)
    {
        return Buffer != &Staging || Level != 0 ? status : flush(status);
    }

private:
    [[nodiscard]] OpcUa_StatusCode flush(OpcUa_StatusCode status);
};

/// Makes a writer that isn't open, and the handle that stands for it; neither may move from then on.
void OpcUa_BinaryWriter_Initialize(OpcUa_BinaryWriter& writer, OpcUa_Encoder& encoder);

/// Counts bytes in the place of a writer.
struct OpcUa_BinaryCounter
{
    static constexpr bool IsCounter = true;

    OpcUa_BinaryWriter& Writer;
    OpcUa_UInt64 Size = 0;

    [[nodiscard]] static OpcUa_StatusCode reserve(std::size_t /*size*/) { return OpcUa_Good; }

    template <typename T>
    void put(T /*value*/)
    {
        Size += sizeof(T);
    }

    void putBytes(const void* /*bytes*/, std::size_t size) { Size += size; }

    [[nodiscard]] OpcUa_BinaryWriter& writer() const { return Writer; }

    /// Adds what was counted to a size. `BadEncodingLimitsExceeded` for a sum that doesn't fit.
    [[nodiscard]] OpcUa_StatusCode addTo(OpcUa_Int32& size) const
    {
        const OpcUa_UInt64 sum = Size + static_cast<OpcUa_UInt32>(size);
        if (size < 0 || sum > 0x7FFFFFFFu) {
            return OpcUa_BadEncodingLimitsExceeded;
        }
        size = static_cast<OpcUa_Int32>(sum);
        return OpcUa_Good;
    }
};

/// The private block of an open binary encoder; null for an encoder of another kind, one with a table
/// of its own and one that isn't open. The fast way past the table: call the functions of
/// "stack/opcua_binarywrite.h" on it, and `finish` at the end.
[[nodiscard]] inline OpcUa_BinaryWriter*
OpcUa_BinaryWriter_FromEncoder(const OpcUa_Encoder* encoder)
{
    if (encoder == nullptr || encoder->Interface != &OpcUa_BinaryEncoder_Interface) {
        return nullptr;
    }
    auto* writer = static_cast<OpcUa_BinaryWriter*>(encoder->Handle);
    return writer != nullptr && writer->SanityCheck == OpcUa_BinaryEncoder_SanityCheck &&
                   !writer->IsClosed
               ? writer
               : nullptr;
}

/// Counts one level of a writer or reader from its construction to its destruction.
class OpcUa_BinaryLevel
{
public:
    explicit OpcUa_BinaryLevel(OpcUa_UInt32& level)
        : m_level(level)
    {
        ++m_level;
    }
    ~OpcUa_BinaryLevel() { --m_level; }
    OpcUa_BinaryLevel(const OpcUa_BinaryLevel&) = delete;
    OpcUa_BinaryLevel& operator=(const OpcUa_BinaryLevel&) = delete;

    [[nodiscard]] bool isTooDeep() const { return m_level > OpcUa_Nesting_MaxLevels; }

private:
    OpcUa_UInt32& m_level;
};
