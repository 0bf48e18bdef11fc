#pragma once

#include "platform/socketaddress.h"

// Endpoint URLs as socket addresses. May be called from any thread.

/// Whether a client that is given the computer's own name connects to "localhost" instead.
inline constexpr bool PreferLocalhost = true;

/// Resolves the host and port of a URL of the form "scheme://host:port/path" to the addresses that a
/// server binds or that a client tries, in that order.
///
/// The host ends at the next ":", "/" or "]"; behind "[" it is an IPv6 address and ends at "]". A
/// server binds to all addresses, those of IPv4 alone when the host is an IPv4 address; only an IPv6
/// address in brackets restricts it. A port has at most six characters, the rest is left out, and
/// none of them is checked here. Without a port, "opc.t" at the start of the URL gives 4840, "https:"
/// 443 and "http:" 80. `isHttps`, which may be null, tells whether the URL starts with "https:".
///
/// The caller frees the addresses with OpcUa_Memory_Free. On failure they are null and the count 0:
/// `BadInvalidArgument` for a null `url`, `addresses` or `addressCount`, and for any other scheme
/// without a port; `BadSyntaxError` without "//"; `BadOutOfMemory`; and the statuses of
/// OpcUa_P_RawSocket_InetAddr.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_ParseUrl(const char* url, bool isServer,
                                                OpcUa_SocketAddress** addresses,
                                                OpcUa_UInt32* addressCount, bool* isHttps);
