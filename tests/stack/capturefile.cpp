#include "tests/stack/capturefile.h"

#include <algorithm>
#include <fstream>

namespace {

using Bytes = std::vector<OpcUa_Byte>;

template <typename Number>
void addLittle(Bytes& bytes, Number number)
{
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        bytes.push_back(static_cast<OpcUa_Byte>(number >> (8 * i)));
    }
}

template <typename Number>
void addBig(Bytes& bytes, Number number)
{
    for (std::size_t i = sizeof(Number); i > 0; --i) {
        bytes.push_back(static_cast<OpcUa_Byte>(number >> (8 * (i - 1))));
    }
}

void addAll(Bytes& bytes, std::span<const OpcUa_Byte> more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

constexpr OpcUa_UInt16 ipHeaderSize = 20;
constexpr OpcUa_UInt16 tcpHeaderSize = 20;

void addIpHeader(Bytes& packet, std::size_t payloadSize)
{
    constexpr OpcUa_UInt32 loopback = 0x7F000001;
    addBig<OpcUa_UInt16>(packet, 0x4500); // version, header of five words, no service class
    addBig(packet, static_cast<OpcUa_UInt16>(ipHeaderSize + tcpHeaderSize + payloadSize));
    addBig<OpcUa_UInt32>(packet, 0x00004000); // no number, don't fragment
    addBig<OpcUa_UInt16>(packet, 0x4006);     // time to live, TCP
    addBig<OpcUa_UInt16>(packet, 0);          // checksum, which nobody looks at
    addBig(packet, loopback);
    addBig(packet, loopback);
}

void addTcpHeader(Bytes& packet, OpcUa_UInt32 position)
{
    addBig<OpcUa_UInt16>(packet, 50000);
    addBig<OpcUa_UInt16>(packet, 4840);
    addBig(packet, position);
    addBig<OpcUa_UInt32>(packet, 1);
    addBig<OpcUa_UInt16>(packet, 0x5018); // header of five words, push and acknowledge
    addBig<OpcUa_UInt16>(packet, 0xFFFF); // window
    addBig<OpcUa_UInt32>(packet, 0);      // checksum, urgent pointer
}

} // namespace

CaptureFile::CaptureFile()
{
    constexpr OpcUa_UInt32 rawPackets = 101;
    addLittle<OpcUa_UInt32>(m_bytes, 0xA1B2C3D4);
    addLittle<OpcUa_UInt16>(m_bytes, 2);
    addLittle<OpcUa_UInt16>(m_bytes, 4);
    addLittle<OpcUa_UInt64>(m_bytes, 0);
    addLittle<OpcUa_UInt32>(m_bytes, 0xFFFF);
    addLittle(m_bytes, rawPackets);
}

void CaptureFile::add(std::span<const OpcUa_Byte> message, std::size_t largestChunk)
{
    ++m_requestId;
    while (message.size() > largestChunk) {
        addChunk(message.first(largestChunk), 'C');
        message = message.subspan(largestChunk);
    }
    addChunk(message, 'F');
}

bool CaptureFile::write(const std::string& path) const
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(m_bytes.data()),
               static_cast<std::streamsize>(m_bytes.size()));
    file.close();
    return file.good();
}

void CaptureFile::addChunk(std::span<const OpcUa_Byte> body, char kind)
{
    constexpr std::size_t headerSize = 24;
    Bytes chunk = {'M', 'S', 'G', static_cast<OpcUa_Byte>(kind)};
    addLittle(chunk, static_cast<OpcUa_UInt32>(headerSize + body.size()));
    for (const OpcUa_UInt32 number : {channelId, tokenId, ++m_sequenceNumber, m_requestId}) {
        addLittle(chunk, number);
    }
    addAll(chunk, body);
    addPacket(chunk);
}

void CaptureFile::addPacket(std::span<const OpcUa_Byte> payload)
{
    Bytes packet;
    addIpHeader(packet, payload.size());
    addTcpHeader(packet, m_tcpPosition);
    addAll(packet, payload);
    m_tcpPosition += static_cast<OpcUa_UInt32>(payload.size());
    addLittle<OpcUa_UInt64>(m_bytes, m_sequenceNumber); // seconds and their fraction
    addLittle(m_bytes, static_cast<OpcUa_UInt32>(packet.size()));
    addLittle(m_bytes, static_cast<OpcUa_UInt32>(packet.size()));
    addAll(m_bytes, packet);
}
