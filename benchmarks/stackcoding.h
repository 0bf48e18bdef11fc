#pragma once

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

// What the benchmarks of the binary encoding share: encoders and decoders over memory, and the
// straight code beside which they stand.

/// How often `work()` takes memory from the stack's allocator. Counting takes time of its own, so it
/// is done outside of the measured loops.
template <typename Work>
std::size_t countAllocations(Work work)
{
    static std::atomic<std::size_t> count;
    count = 0;
    OpcUa_Memory_SetFaultHook([](std::size_t) {
        ++count;
        return false;
    });
    work();
    OpcUa_Memory_SetFaultHook(nullptr);
    return count;
}

/// An encoder over a block that is large enough, and a decoder over what was encoded.
class Coding
{
public:
    explicit Coding(std::size_t size)
        : m_block(size)
    {
        std::memset(m_block.data(), 1, size);
        require(OpcUa_MemoryOutputStream_Attach(m_block.data(), static_cast<OpcUa_UInt32>(size),
                                                &m_output));
        require(OpcUa_BinaryEncoder_Create(&m_encoder));
        require(m_encoder->Interface->Open(m_encoder, m_output, &m_context));
    }
    ~Coding()
    {
        require(m_encoder->Interface->Delete(&m_encoder));
        require(m_output->Interface->Delete(&m_output));
        if (m_decoder != nullptr) {
            require(m_decoder->Interface->Delete(&m_decoder));
            require(m_input->Interface->Delete(&m_input));
        }
    }
    Coding(const Coding&) = delete;
    Coding& operator=(const Coding&) = delete;

    /// Ends the program over a failure in a benchmark's own set-up.
    static void require(OpcUa_StatusCode status)
    {
        if (OpcUa_IsBad(status)) {
            std::abort();
        }
    }

    /// Starts the next message and gives the encoder.
    OpcUa_Encoder* encoder()
    {
        require(OpcUa_MemoryOutputStream_Reset(m_output));
        return m_encoder;
    }

    /// Bytes of the last message.
    [[nodiscard]] std::string_view bytes() const
    {
        const OpcUa_Byte* buffer = nullptr;
        OpcUa_UInt32 length = 0;
        require(OpcUa_MemoryOutputStream_GetBuffer(m_output, &buffer, &length));
        return {reinterpret_cast<const char*>(buffer), length};
    }

    /// Starts to read the last message from its begin and gives the decoder.
    OpcUa_Decoder* decoder()
    {
        if (m_decoder == nullptr) {
            openDecoder();
        }
        require(OpcUa_MemoryInputStream_Reset(m_input));
        return m_decoder;
    }

private:
    void openDecoder()
    {
        require(OpcUa_MemoryInputStream_Create(
            m_block.data(), static_cast<OpcUa_UInt32>(bytes().size()), &m_input));
        require(OpcUa_BinaryDecoder_Create(&m_decoder));
        require(m_decoder->Interface->Open(m_decoder, m_input, &m_context));
    }

    std::vector<OpcUa_Byte> m_block;
    OpcUa_MessageContext m_context{}; ///< Without limits.
    OpcUa_OutputStream* m_output = nullptr;
    OpcUa_Encoder* m_encoder = nullptr;
    OpcUa_InputStream* m_input = nullptr;
    OpcUa_Decoder* m_decoder = nullptr;
};

/// Straight code into a ready block, with one check for each field.
class FloorWriter
{
public:
    explicit FloorWriter(std::vector<char>& block)
        : m_begin(block.data())
        , m_at(block.data())
        , m_end(block.data() + block.size())
    {
    }

    template <typename T>
    void number(T value)
    {
        if (m_end - m_at < static_cast<std::ptrdiff_t>(sizeof(T))) {
            std::abort();
        }
        std::memcpy(m_at, &value, sizeof(T));
        m_at += sizeof(T);
    }

    void text(const void* bytes, OpcUa_Int32 length)
    {
        number(length);
        if (length > 0) {
            if (m_end - m_at < length) {
                std::abort();
            }
            std::memcpy(m_at, bytes, static_cast<std::size_t>(length));
            m_at += length;
        }
    }

    void text(const OpcUa_String& string)
    {
        text(string.strContent,
             string.strContent == nullptr ? -1 : static_cast<OpcUa_Int32>(string.uLength));
    }

    [[nodiscard]] std::string_view bytes() const
    {
        return {m_begin, static_cast<std::size_t>(m_at - m_begin)};
    }

private:
    char* m_begin;
    char* m_at;
    char* m_end;
};

/// Straight code out of a block, with one check for each field; blocks come from the C library.
class FloorReader
{
public:
    explicit FloorReader(std::string_view bytes)
        : m_at(bytes.data())
        , m_end(bytes.data() + bytes.size())
    {
    }

    template <typename T>
    T number()
    {
        if (m_end - m_at < static_cast<std::ptrdiff_t>(sizeof(T))) {
            std::abort();
        }
        T value;
        std::memcpy(&value, m_at, sizeof(T));
        m_at += sizeof(T);
        return value;
    }

    OpcUa_String text()
    {
        const auto length = number<OpcUa_Int32>();
        if (length < 0) {
            return {};
        }
        if (m_end - m_at < length) {
            std::abort();
        }
        const auto size = static_cast<std::size_t>(length);
        auto* content = static_cast<char*>(std::malloc(size + 1));
        std::memcpy(content, m_at, size);
        content[size] = '\0';
        m_at += length;
        return {OpcUa_String_OwnsContent, static_cast<OpcUa_UInt32>(size), content};
    }

    /// A block for elements, not initialised.
    template <typename T>
    static T* block(OpcUa_Int32 count)
    {
        return static_cast<T*>(std::malloc(static_cast<std::size_t>(count) * sizeof(T)));
    }

    void copy(void* block, std::size_t size)
    {
        if (static_cast<std::size_t>(m_end - m_at) < size) {
            std::abort();
        }
        std::memcpy(block, m_at, size);
        m_at += size;
    }

    [[nodiscard]] bool isAtEnd() const { return m_at == m_end; }

private:
    const char* m_at;
    const char* m_end;
};

inline void checkResult(benchmark::State& state, bool isRight)
{
    if (!isRight) {
        state.SkipWithError("wrong result");
    }
}

/// Bytes per second, and allocations for each message.
inline void countMessages(benchmark::State& state, std::size_t bytes, std::size_t allocations)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(bytes));
    state.counters["allocations"] = static_cast<double>(allocations);
}
