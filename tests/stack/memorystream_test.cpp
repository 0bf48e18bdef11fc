#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_memorystream.h"
#include "tests/stack/encodingsupport.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <numeric>

namespace {

Bytes contentOf(OpcUa_OutputStream* stream)
{
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(stream, &buffer, &length), OpcUa_Good);
    return {buffer, buffer + length};
}

Bytes someBytes(std::size_t count)
{
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), OpcUa_Byte{1});
    return bytes;
}

OpcUa_StatusCode write(OpcUa_OutputStream* stream, const Bytes& bytes)
{
    return stream->Interface->Write(stream, bytes.data(), static_cast<OpcUa_UInt32>(bytes.size()));
}

class OutputStream : public testing::Test
{
protected:
    ~OutputStream() override
    {
        if (m_stream != nullptr) {
            EXPECT_EQ(m_stream->Interface->Delete(&m_stream), OpcUa_Good);
            EXPECT_EQ(m_stream, nullptr);
        }
    }

    OpcUa_OutputStream* m_stream = nullptr;
};

TEST_F(OutputStream, private_block_begins_with_its_sanity_value)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &m_stream), OpcUa_Good);
    OpcUa_UInt32 sanity = 0;
    std::memcpy(&sanity, m_stream->Handle, sizeof(sanity));
    EXPECT_EQ(sanity, 0x25B49A0Eu);
}

TEST_F(OutputStream, empty_one_holds_nothing)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &m_stream), OpcUa_Good);
    EXPECT_TRUE(contentOf(m_stream).empty());
    OpcUa_UInt32 position = 7;
    EXPECT_EQ(m_stream->Interface->GetPosition(m_stream, &position), OpcUa_Good);
    EXPECT_EQ(position, 0u);
    EXPECT_EQ(m_stream->Interface->Write(m_stream, nullptr, 0), OpcUa_Good);
}

TEST_F(OutputStream, it_grows_by_doubling_and_keeps_what_was_written)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(16, 0, &m_stream), OpcUa_Good);
    Bytes expected;
    std::size_t growths = 0;
    for (int i = 0; i < 4096; ++i) {
        const Bytes piece = someBytes(static_cast<std::size_t>(i % 7));
        OpcUa_Memory_SetFaultHook([](std::size_t) { return true; });
        OpcUa_StatusCode status = write(m_stream, piece);
        OpcUa_Memory_SetFaultHook(nullptr);
        if (status == OpcUa_BadOutOfMemory) {
            ++growths;
            status = write(m_stream, piece);
        }
        ASSERT_EQ(status, OpcUa_Good);
        expected.insert(expected.end(), piece.begin(), piece.end());
    }
    EXPECT_EQ(contentOf(m_stream), expected);
    EXPECT_LT(growths, 12u);
}

TEST_F(OutputStream, largest_size_is_met_exactly_and_not_passed)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(1, 100, &m_stream), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(99)), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(2)), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(write(m_stream, someBytes(1)), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(1)), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(contentOf(m_stream).size(), 100u);
}

TEST_F(OutputStream, first_size_above_the_largest_is_cut)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(1000, 10, &m_stream), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(10)), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(1)), OpcUa_BadEncodingLimitsExceeded);
}

TEST_F(OutputStream, callers_block_is_filled_without_allocating_and_never_grows)
{
    std::array<OpcUa_Byte, 8> block{};
    ASSERT_EQ(OpcUa_MemoryOutputStream_Attach(block.data(), 8, &m_stream), OpcUa_Good);
    const AllocationFaults faults(0);
    EXPECT_EQ(write(m_stream, someBytes(8)), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(1)), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_FALSE(AllocationFaults::hasFailed());
    EXPECT_EQ(block[7], 8);
    OpcUa_Byte* taken = block.data();
    OpcUa_UInt32 length = 1;
    EXPECT_EQ(OpcUa_MemoryOutputStream_Detach(m_stream, &taken, &length), OpcUa_BadInvalidState);
    EXPECT_EQ(taken, nullptr);
    EXPECT_EQ(length, 0u);
}

TEST_F(OutputStream, reset_forgets_the_bytes_and_keeps_the_block)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(64, 0, &m_stream), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(64)), OpcUa_Good);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Reset(m_stream), OpcUa_Good);
    EXPECT_TRUE(contentOf(m_stream).empty());
    const AllocationFaults faults(0);
    EXPECT_EQ(write(m_stream, someBytes(64)), OpcUa_Good);
}

TEST_F(OutputStream, detach_hands_the_block_over_also_after_close)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &m_stream), OpcUa_Good);
    EXPECT_EQ(write(m_stream, someBytes(5)), OpcUa_Good);
    EXPECT_EQ(m_stream->Interface->Close(m_stream), OpcUa_Good);
    EXPECT_EQ(contentOf(m_stream), someBytes(5));
    OpcUa_Byte* block = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_Detach(m_stream, &block, &length), OpcUa_Good);
    EXPECT_EQ(Bytes(block, block + length), someBytes(5));
    OpcUa_Memory_Free(block);
    EXPECT_TRUE(contentOf(m_stream).empty());
}

TEST_F(OutputStream, operations_after_close_are_refused)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &m_stream), OpcUa_Good);
    EXPECT_EQ(m_stream->Interface->Close(m_stream), OpcUa_Good);
    OpcUa_UInt32 position = 0;
    EXPECT_EQ(write(m_stream, someBytes(1)), OpcUa_BadInvalidState);
    EXPECT_EQ(m_stream->Interface->GetPosition(m_stream, &position), OpcUa_BadInvalidState);
    EXPECT_EQ(m_stream->Interface->Close(m_stream), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Reset(m_stream), OpcUa_BadInvalidState);
}

TEST_F(OutputStream, null_arguments_are_refused)
{
    OpcUa_Byte byte = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Attach(&byte, 1, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Attach(nullptr, 1, &m_stream), OpcUa_BadInvalidArgument);
    EXPECT_EQ(m_stream, nullptr);
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &m_stream), OpcUa_Good);
    const OpcUa_OutputStreamInterface& real = *m_stream->Interface;
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_Byte* block = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(real.Write(nullptr, &byte, 1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Write(m_stream, nullptr, 1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.GetPosition(nullptr, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.GetPosition(m_stream, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Close(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Delete(nullptr), OpcUa_BadInvalidArgument);
    OpcUa_OutputStream* none = nullptr;
    EXPECT_EQ(real.Delete(&none), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(nullptr, &buffer, &length),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(m_stream, nullptr, &length),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(m_stream, &buffer, nullptr),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Detach(nullptr, &block, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Reset(nullptr), OpcUa_BadInvalidArgument);
}

TEST_F(OutputStream, stream_of_another_kind_is_refused)
{
    ASSERT_EQ(OpcUa_MemoryOutputStream_Create(0, 0, &m_stream), OpcUa_Good);
    const OpcUa_OutputStreamInterface other{};
    OpcUa_OutputStream stranger = {&other, m_stream->Handle};
    OpcUa_Byte byte = 0;
    EXPECT_EQ(m_stream->Interface->Write(&stranger, &byte, 1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(m_stream->Interface->Close(&stranger), OpcUa_BadInvalidArgument);
    OpcUa_UInt32 wrongBlock[8] = {};
    stranger = {m_stream->Interface, wrongBlock};
    EXPECT_EQ(m_stream->Interface->Write(&stranger, &byte, 1), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryOutputStream_Reset(&stranger), OpcUa_BadInvalidArgument);
}

TEST_F(OutputStream, creating_one_without_memory_leaves_nothing)
{
    EXPECT_EQ(forEveryFailingAllocation(
                  [this] { return OpcUa_MemoryOutputStream_Create(10, 0, &m_stream); },
                  [this](OpcUa_StatusCode status) {
                      EXPECT_EQ(status, OpcUa_BadOutOfMemory);
                      EXPECT_EQ(m_stream, nullptr);
                  }),
              2u);
}

class InputStream : public testing::Test
{
protected:
    ~InputStream() override
    {
        if (m_stream != nullptr) {
            EXPECT_EQ(m_stream->Interface->Delete(&m_stream), OpcUa_Good);
            EXPECT_EQ(m_stream, nullptr);
        }
    }

    OpcUa_InputStream* m_stream = nullptr;
};

TEST_F(InputStream, it_reads_what_there_is_and_tells_the_end)
{
    const Bytes bytes = someBytes(5);
    ASSERT_EQ(OpcUa_MemoryInputStream_Create(bytes.data(), 5, &m_stream), OpcUa_Good);
    OpcUa_UInt32 sanity = 0;
    std::memcpy(&sanity, m_stream->Handle, sizeof(sanity));
    EXPECT_EQ(sanity, 0x25B49A0Eu);
    std::array<OpcUa_Byte, 8> read{};
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(m_stream->Interface->Read(m_stream, read.data(), 3, &length), OpcUa_Good);
    EXPECT_EQ(length, 3u);
    EXPECT_EQ(read[2], 3);
    OpcUa_UInt32 count = 0;
    EXPECT_EQ(m_stream->Interface->GetRemaining(m_stream, &count), OpcUa_Good);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(OpcUa_MemoryInputStream_GetPosition(m_stream, &count), OpcUa_Good);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(m_stream->Interface->Read(m_stream, read.data(), 3, &length), OpcUa_BadEndOfStream);
    EXPECT_EQ(length, 2u);
    EXPECT_EQ(m_stream->Interface->Read(m_stream, read.data(), 1, &length), OpcUa_BadEndOfStream);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(m_stream->Interface->Read(m_stream, nullptr, 0, &length), OpcUa_Good);
    EXPECT_EQ(OpcUa_MemoryInputStream_Reset(m_stream), OpcUa_Good);
    EXPECT_EQ(m_stream->Interface->Read(m_stream, read.data(), 5, &length), OpcUa_Good);
    EXPECT_EQ(read[4], 5);
}

TEST_F(InputStream, operations_after_close_are_refused)
{
    ASSERT_EQ(OpcUa_MemoryInputStream_Create(nullptr, 0, &m_stream), OpcUa_Good);
    EXPECT_EQ(m_stream->Interface->Close(m_stream), OpcUa_Good);
    OpcUa_Byte byte = 0;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(m_stream->Interface->Read(m_stream, &byte, 1, &length), OpcUa_BadInvalidState);
    EXPECT_EQ(m_stream->Interface->GetRemaining(m_stream, &length), OpcUa_BadInvalidState);
    EXPECT_EQ(m_stream->Interface->Close(m_stream), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_MemoryInputStream_Reset(m_stream), OpcUa_BadInvalidState);
    EXPECT_EQ(OpcUa_MemoryInputStream_GetPosition(m_stream, &length), OpcUa_BadInvalidState);
}

TEST_F(InputStream, null_arguments_and_other_kinds_are_refused)
{
    OpcUa_Byte byte = 0;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryInputStream_Create(&byte, 1, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryInputStream_Create(nullptr, 1, &m_stream), OpcUa_BadInvalidArgument);
    EXPECT_EQ(m_stream, nullptr);
    ASSERT_EQ(OpcUa_MemoryInputStream_Create(&byte, 1, &m_stream), OpcUa_Good);
    const OpcUa_InputStreamInterface& real = *m_stream->Interface;
    EXPECT_EQ(real.Read(nullptr, &byte, 1, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Read(m_stream, nullptr, 1, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Read(m_stream, &byte, 1, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.GetRemaining(nullptr, &length), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.GetRemaining(m_stream, nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Close(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(real.Delete(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryInputStream_Reset(nullptr), OpcUa_BadInvalidArgument);
    EXPECT_EQ(OpcUa_MemoryInputStream_GetPosition(m_stream, nullptr), OpcUa_BadInvalidArgument);
    OpcUa_UInt32 wrongBlock[8] = {};
    OpcUa_InputStream stranger = {m_stream->Interface, wrongBlock};
    EXPECT_EQ(real.Read(&stranger, &byte, 1, &length), OpcUa_BadInvalidArgument);
}

TEST_F(InputStream, creating_one_without_memory_leaves_nothing)
{
    const AllocationFaults faults(0);
    EXPECT_EQ(OpcUa_MemoryInputStream_Create(nullptr, 0, &m_stream), OpcUa_BadOutOfMemory);
    EXPECT_EQ(m_stream, nullptr);
}

} // namespace
