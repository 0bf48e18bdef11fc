#pragma once

#include "platform/socketaddress.h"

// Turns hosts and ports into socket addresses. Every function may be called from any thread; the
// caller waits as long as the system's resolver takes.

/// Asks for an address to bind: the resolver gets no host at all and answers with the addresses that
/// stand for all of the computer's.
inline constexpr OpcUa_UInt32 OpcUa_ResolverFlag_Passive = 1;
/// The host is an address in numbers: nothing is looked up.
inline constexpr OpcUa_UInt32 OpcUa_ResolverFlag_NumericHost = 4;

/// Resolves a host and a port, which is a number or the name of a service, for stream sockets. A
/// given family gives its addresses in the system's order. OpcUa_AddressFamily::Any gives a server
/// all IPv6 addresses before those of IPv4, so that its dual-stack socket comes first, and a client
/// the other way round; addresses of other families are counted and leave that many empty entries at
/// the end.
///
/// The caller frees the block with OpcUa_Memory_Free. On failure it is null and the count 0:
/// `BadInvalidArgument` for a null pointer (`host` may be null with the passive flag),
/// `BadOutOfMemory`, `BadHostUnknown`, `BadInvalidState` when sockets aren't started, otherwise `Bad`.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_RawSocket_InetAddr(const char* host, const char* port,
                                                          OpcUa_UInt32 flags,
                                                          OpcUa_AddressFamily family, bool isServer,
                                                          OpcUa_SocketAddress** addresses,
                                                          OpcUa_UInt32* addressCount);

/// What the system's resolver is asked. The host is null for the addresses to bind.
struct OpcUa_ResolverQuery
{
    const char* host;
    const char* port;
    OpcUa_UInt32 flags;
    OpcUa_AddressFamily family;
};

// Results of the system's resolver that have a status of their own; any other but 0 is a failure
// without a name. The numbers are those of Windows' sockets; other systems' are translated by their
// meaning.
inline constexpr OpcUa_Int32 OpcUa_ResolverResult_Success = 0;
inline constexpr OpcUa_Int32 OpcUa_ResolverResult_NoMemory = 8;
inline constexpr OpcUa_Int32 OpcUa_ResolverResult_InvalidArgument = 10022;
inline constexpr OpcUa_Int32 OpcUa_ResolverResult_NotStarted = 10093;
inline constexpr OpcUa_Int32 OpcUa_ResolverResult_HostNotFound = 11001;
inline constexpr OpcUa_Int32 OpcUa_ResolverResult_Failure = 11003;

/// The system's calls behind this layer's names and addresses.
struct OpcUa_ResolverSource
{
    /// Hands out a block of OpcUa_Memory_Alloc with the addresses in the system's order; on failure
    /// a result other than 0, with nothing to free.
    OpcUa_Int32 (*resolve)(const OpcUa_ResolverQuery& query, OpcUa_SocketAddress** addresses,
                           OpcUa_UInt32* addressCount);
    /// Whether a text is an IPv4 address in numbers, of any of the forms that the system reads.
    bool (*isIPv4)(const char* text);
    /// Writes the computer's name, with its end, into `size` bytes; false when it can't.
    bool (*computerName)(char* name, OpcUa_UInt32 size);
    /// The family of an address; Unknown for an empty one.
    OpcUa_AddressFamily (*familyOf)(const OpcUa_SocketAddress& address);
    /// Writes an address in numbers, with its end, into `size` bytes; false when it has no such form.
    bool (*numericForm)(const OpcUa_SocketAddress& address, char* text, OpcUa_UInt32 size);
};

/// The source in use.
[[nodiscard]] const OpcUa_ResolverSource& OpcUa_P_Resolver_Source();

/// Replaces the system's calls, so that a test needs no network; null restores them. The source must
/// outlive its use.
void OpcUa_P_Resolver_SetSource(const OpcUa_ResolverSource* source);

/// The system's calls themselves.
[[nodiscard]] const OpcUa_ResolverSource& OpcUa_P_Resolver_SystemSource();
