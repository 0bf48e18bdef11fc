#include "platform/addressresolver.h"
#include "platform/allocator.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

static_assert(sizeof(sockaddr_storage) <= sizeof(OpcUa_SocketAddress::bytes));

struct AddressInfoDeleter
{
    void operator()(addrinfo* info) const { freeaddrinfo(info); }
};
using AddressInfoPointer = std::unique_ptr<addrinfo, AddressInfoDeleter>;

OpcUa_Int32 translate(int result)
{
    // What the system reports as an error of its own has the number of that.
    const int error = result == EAI_SYSTEM ? errno : 0;
    if (result == EAI_MEMORY || error == ENOMEM) {
        return OpcUa_ResolverResult_NoMemory;
    }
    if (result == EAI_BADFLAGS || error == EINVAL) {
        return OpcUa_ResolverResult_InvalidArgument;
    }
    return result == EAI_NONAME ? OpcUa_ResolverResult_HostNotFound : OpcUa_ResolverResult_Failure;
}

int systemFamily(OpcUa_AddressFamily family)
{
    switch (family) {
    case OpcUa_AddressFamily::IPv4:
        return AF_INET;
    case OpcUa_AddressFamily::IPv6:
        return AF_INET6;
    default:
        return AF_UNSPEC;
    }
}

int systemFlags(OpcUa_UInt32 flags)
{
    return ((flags & OpcUa_ResolverFlag_Passive) != 0 ? AI_PASSIVE : 0) |
           ((flags & OpcUa_ResolverFlag_NumericHost) != 0 ? AI_NUMERICHOST : 0);
}

/// An address that is too long for an entry stays empty.
void copyAddress(const addrinfo& info, OpcUa_SocketAddress& entry)
{
    if (info.ai_addr != nullptr && info.ai_addrlen <= entry.bytes.size()) {
        std::memcpy(entry.bytes.data(), info.ai_addr, info.ai_addrlen);
        entry.length = static_cast<OpcUa_UInt32>(info.ai_addrlen);
    }
}

OpcUa_Int32 resolve(const OpcUa_ResolverQuery& query, OpcUa_SocketAddress** addresses,
                    OpcUa_UInt32* addressCount)
{
    addrinfo hints{};
    hints.ai_flags = systemFlags(query.flags);
    hints.ai_family = systemFamily(query.family);
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    const int result = getaddrinfo(query.host, query.port, &hints, &first);
    if (result != 0) {
        return translate(result);
    }
    const AddressInfoPointer owner(first);
    OpcUa_UInt32 count = 0;
    for (const addrinfo* info = first; info != nullptr; info = info->ai_next) {
        ++count;
    }
    auto* entry = static_cast<OpcUa_SocketAddress*>(
        OpcUa_Memory_AllocZeroed(count, sizeof(OpcUa_SocketAddress)));
    if (entry == nullptr) {
        return OpcUa_ResolverResult_NoMemory;
    }
    *addresses = entry;
    *addressCount = count;
    for (const addrinfo* info = first; info != nullptr; info = info->ai_next) {
        copyAddress(*info, *entry++);
    }
    return OpcUa_ResolverResult_Success;
}

bool isIPv4(const char* text)
{
    return inet_addr(text) != INADDR_NONE;
}

bool computerName(char* name, OpcUa_UInt32 size)
{
    if (size == 0 || gethostname(name, size) != 0) {
        return false;
    }
    // A name that was cut has no end.
    name[size - 1] = '\0';
    return true;
}

const sockaddr* systemAddress(const OpcUa_SocketAddress& address)
{
    return reinterpret_cast<const sockaddr*>(address.bytes.data());
}

OpcUa_AddressFamily familyOf(const OpcUa_SocketAddress& address)
{
    if (address.length < sizeof(sa_family_t)) {
        return OpcUa_AddressFamily::Unknown;
    }
    switch (systemAddress(address)->sa_family) {
    case AF_INET:
        return OpcUa_AddressFamily::IPv4;
    case AF_INET6:
        return OpcUa_AddressFamily::IPv6;
    default:
        return OpcUa_AddressFamily::Unknown;
    }
}

bool numericForm(const OpcUa_SocketAddress& address, char* text, OpcUa_UInt32 size)
{
    return getnameinfo(systemAddress(address), address.length, text, size, nullptr, 0,
                       NI_NUMERICHOST) == 0;
}

} // namespace

const OpcUa_ResolverSource& OpcUa_P_Resolver_SystemSource()
{
    static constexpr OpcUa_ResolverSource source = {resolve, isIPv4, computerName, familyOf,
                                                    numericForm};
    return source;
}
