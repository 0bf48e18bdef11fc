#include "platform/addressresolver.h"

#include "platform/memorypointer.h"
#include "platform/status.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <span>

namespace {

std::atomic<const OpcUa_ResolverSource*> replacement = nullptr;

OpcUa_StatusCode statusOf(OpcUa_Int32 result)
{
    switch (result) {
    case OpcUa_ResolverResult_Success:
        return OpcUa_Good;
    case OpcUa_ResolverResult_NoMemory:
        return OpcUa_BadOutOfMemory;
    case OpcUa_ResolverResult_InvalidArgument:
        return OpcUa_BadInvalidArgument;
    case OpcUa_ResolverResult_NotStarted:
        return OpcUa_BadInvalidState;
    case OpcUa_ResolverResult_HostNotFound:
        return OpcUa_BadHostUnknown;
    default:
        return OpcUa_Bad;
    }
}

/// Copies the addresses of a family to `next`, and gives back where they end there.
OpcUa_SocketAddress* copyFamily(std::span<const OpcUa_SocketAddress> found,
                                OpcUa_AddressFamily family, OpcUa_SocketAddress* next)
{
    const auto familyOf = OpcUa_P_Resolver_Source().familyOf;
    return std::copy_if(found.begin(), found.end(), next, [&](const OpcUa_SocketAddress& address) {
        return familyOf(address) == family;
    });
}

OpcUa_UInt32 countFamily(std::span<const OpcUa_SocketAddress> found, OpcUa_AddressFamily family)
{
    if (family == OpcUa_AddressFamily::Any) {
        return static_cast<OpcUa_UInt32>(found.size());
    }
    const auto familyOf = OpcUa_P_Resolver_Source().familyOf;
    return static_cast<OpcUa_UInt32>(
        std::count_if(found.begin(), found.end(), [&](const OpcUa_SocketAddress& address) {
            return familyOf(address) == family;
        }));
}

void copyInOrder(std::span<const OpcUa_SocketAddress> found, OpcUa_AddressFamily family,
                 bool isServer, OpcUa_SocketAddress* block)
{
    if (family != OpcUa_AddressFamily::Any) {
        copyFamily(found, family, block);
        return;
    }
    std::array order = {OpcUa_AddressFamily::IPv4, OpcUa_AddressFamily::IPv6};
    if (isServer) {
        std::swap(order[0], order[1]);
    }
    for (const OpcUa_AddressFamily next : order) {
        block = copyFamily(found, next, block);
    }
}

} // namespace

OpcUa_StatusCode OpcUa_P_RawSocket_InetAddr(const char* host, const char* port, OpcUa_UInt32 flags,
                                            OpcUa_AddressFamily family, bool isServer,
                                            OpcUa_SocketAddress** addresses,
                                            OpcUa_UInt32* addressCount)
{
    if (addresses != nullptr) {
        *addresses = nullptr;
    }
    if (addressCount != nullptr) {
        *addressCount = 0;
    }
    const bool isPassive = (flags & OpcUa_ResolverFlag_Passive) != 0;
    if (addresses == nullptr || addressCount == nullptr || port == nullptr ||
        (host == nullptr && !isPassive)) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_SocketAddress* answer = nullptr;
    OpcUa_UInt32 answerCount = 0;
    const OpcUa_Int32 result = OpcUa_P_Resolver_Source().resolve(
        {isPassive ? nullptr : host, port, flags, family}, &answer, &answerCount);
    if (result != OpcUa_ResolverResult_Success) {
        return statusOf(result);
    }
    const OpcUa_MemoryPointer<OpcUa_SocketAddress> owner(answer);
    const std::span<const OpcUa_SocketAddress> found(answer, answerCount);
    const OpcUa_UInt32 count = countFamily(found, family);
    auto* const block = static_cast<OpcUa_SocketAddress*>(
        OpcUa_Memory_AllocZeroed(count, sizeof(OpcUa_SocketAddress)));
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    copyInOrder(found, family, isServer, block);
    *addresses = block;
    *addressCount = count;
    return OpcUa_Good;
}

const OpcUa_ResolverSource& OpcUa_P_Resolver_Source()
{
    const OpcUa_ResolverSource* const source = replacement.load();
    return source != nullptr ? *source : OpcUa_P_Resolver_SystemSource();
}

void OpcUa_P_Resolver_SetSource(const OpcUa_ResolverSource* source)
{
    replacement = source;
}
