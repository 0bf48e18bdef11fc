#pragma once

#include "platform/types.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// A network capture in which a client sends messages to a server, each in a chunk of UA TCP without
/// security (OPC 10000-6, 6.7.2) or in several.
class CaptureFile
{
public:
    CaptureFile();

    /// Numbers of the secure channel and its token, the same for all messages.
    static constexpr OpcUa_UInt32 channelId = 7;
    static constexpr OpcUa_UInt32 tokenId = 3;

    /// Adds a message in as many chunks as it needs. Each goes into a packet of its own, and has the
    /// next sequence number; the message has the next request number. Both start at 1.
    void add(std::span<const OpcUa_Byte> message, std::size_t largestChunk = 60000);

    /// Writes the file; false when that fails.
    [[nodiscard]] bool write(const std::string& path) const;

private:
    void addChunk(std::span<const OpcUa_Byte> body, char kind);
    void addPacket(std::span<const OpcUa_Byte> payload);

    std::vector<OpcUa_Byte> m_bytes;
    OpcUa_UInt32 m_sequenceNumber = 0;
    OpcUa_UInt32 m_requestId = 0;
    OpcUa_UInt32 m_tcpPosition = 1;
};
