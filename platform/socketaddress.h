#pragma once

#include "platform/types.h"

#include <array>

/// The address families that the layer tells apart. The number of IPv6 differs between systems and is
/// translated; the others are the systems' own.
enum class OpcUa_AddressFamily : OpcUa_Int32
{
    Any = 0,
    IPv4 = 2,
    IPv6 = 10,
    Unknown = -1
};

/// An address as the system's socket calls take it. The length is in bytes and 0 for no address.
struct OpcUa_SocketAddress
{
    alignas(8) std::array<OpcUa_Byte, 128> bytes;
    OpcUa_UInt32 length;
};
static_assert(sizeof(OpcUa_SocketAddress) == 136);
