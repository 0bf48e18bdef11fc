#include "platform/url.h"

#include "platform/addressresolver.h"
#include "platform/memorypointer.h"
#include "platform/status.h"
#include "platform/trace.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace {

constexpr std::string_view hostMark = "//";
constexpr std::size_t longestPort = 6;
constexpr std::size_t longestComputerName = 1025;

/// Room for the longest numeric form, an IPv6 address with the name of its interface.
constexpr OpcUa_UInt32 numericFormSize = 128;

struct DefaultPort
{
    std::string_view start; // of the URL
    const char* port;
};

// The first is compared by its first five characters alone: "opc.tls:" and "opc.tc:" get it too.
constexpr DefaultPort defaultPorts[] = {{"opc.t", "4840"}, {"https:", "443"}, {"http:", "80"}};

using Port = std::array<char, longestPort + 1>;
using OwnedText = OpcUa_MemoryPointer<char>;

/// What the resolver is asked for.
struct Target
{
    OwnedText host;
    Port port{};
    OpcUa_UInt32 flags = 0;
    OpcUa_AddressFamily family = OpcUa_AddressFamily::Any;
};

OwnedText copyOf(std::string_view text)
{
    auto* const copy = static_cast<char*>(OpcUa_Memory_Alloc(text.size() + 1));
    if (copy != nullptr) {
        text.copy(copy, text.size());
        copy[text.size()] = '\0';
    }
    return OwnedText(copy);
}

/// False when there is no port and the scheme has no default.
bool findPort(std::string_view url, std::string_view behindHost, Port& port)
{
    std::string_view text;
    if (behindHost.starts_with(':')) {
        text = behindHost.substr(1);
    } else if (behindHost.starts_with("]:")) {
        text = behindHost.substr(2);
    } else {
        const auto* const found = std::find_if(
            std::begin(defaultPorts), std::end(defaultPorts),
            [url](const DefaultPort& scheme) { return url.starts_with(scheme.start); });
        if (found == std::end(defaultPorts)) {
            return false;
        }
        text = found->port;
    }
    text.substr(0, text.find('/')).copy(port.data(), longestPort);
    return true;
}

void chooseHostType(bool isBracketed, Target& target)
{
    if (isBracketed) {
        OpcUa_Trace(OpcUa_TraceLevel_Content,
                    "OpcUa_P_ParseUrl: Numeric IPv6 URL Scheme detected!\n");
    } else if (OpcUa_P_Resolver_Source().isIPv4(target.host.get())) {
        OpcUa_Trace(OpcUa_TraceLevel_Content,
                    "OpcUa_P_ParseUrl: Numeric IPv4 URL pattern detected!\n");
        target.flags |= OpcUa_ResolverFlag_NumericHost;
        target.family = OpcUa_AddressFamily::IPv4;
    } else {
        OpcUa_Trace(OpcUa_TraceLevel_Content, "OpcUa_P_ParseUrl: Hostname detected!\n");
    }
}

void chooseBinding(bool isBracketed, Target& target)
{
    if (isBracketed) {
        OpcUa_Trace(OpcUa_TraceLevel_Content,
                    "OpcUa_P_ParseUrl: Restricting incoming connections to specific IP address!\n");
    } else {
        OpcUa_Trace(OpcUa_TraceLevel_Content,
                    "OpcUa_P_ParseUrl: Allowing connections to any ip!\n");
        target.flags |= OpcUa_ResolverFlag_Passive;
    }
}

OpcUa_StatusCode readTarget(std::string_view url, bool isServer, Target& target)
{
    const std::size_t mark = url.find(hostMark);
    if (mark == std::string_view::npos) {
        return OpcUa_BadSyntaxError;
    }
    std::string_view rest = url.substr(mark + hostMark.size());
    const bool isBracketed = rest.starts_with('[');
    if (isBracketed) {
        rest.remove_prefix(1);
    }
    const std::size_t end = std::min(rest.find_first_of(isBracketed ? "/]" : ":/]"), rest.size());
    target.host = copyOf(rest.substr(0, end));
    if (target.host == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    chooseHostType(isBracketed, target);
    if (isServer) {
        chooseBinding(isBracketed, target);
    }
    return findPort(url, rest.substr(end), target.port) ? OpcUa_Good : OpcUa_BadInvalidArgument;
}

char toLower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool isComputerName(std::string_view host)
{
    std::array<char, longestComputerName> buffer{};
    if (!OpcUa_P_Resolver_Source().computerName(buffer.data(), longestComputerName)) {
        return false;
    }
    const std::string_view name = buffer.data();
    host = host.substr(0, longestComputerName);
    return std::equal(host.begin(), host.end(), name.begin(), name.end(),
                      [](char left, char right) { return toLower(left) == toLower(right); });
}

const char* chooseHost(const Target& target, bool isServer)
{
    if (!PreferLocalhost || isServer || !isComputerName(target.host.get())) {
        return target.host.get();
    }
    OpcUa_Trace(OpcUa_TraceLevel_Debug,
                "OpcUa_P_ParseUrl: Hostname refers this host. Replacing with localhost.\n");
    return "localhost";
}

const char* nameOf(OpcUa_AddressFamily family)
{
    switch (family) {
    case OpcUa_AddressFamily::IPv4:
        return "IPv4";
    case OpcUa_AddressFamily::IPv6:
        return "IPv6";
    default:
        return "unknown!";
    }
}

void traceAddress(OpcUa_Int32 index, const OpcUa_SocketAddress& address)
{
    const OpcUa_ResolverSource& source = OpcUa_P_Resolver_Source();
    OpcUa_Trace(OpcUa_TraceLevel_Content, "OpcUa_P_ParseUrl: %i: Resolved to %s address family.\n",
                index, nameOf(source.familyOf(address)));
    std::array<char, numericFormSize> text{};
    if (source.numericForm(address, text.data(), numericFormSize)) {
        OpcUa_Trace(OpcUa_TraceLevel_Content,
                    "OpcUa_P_ParseUrl: %i: Numeric representation of resolved address is %s.\n",
                    index, text.data());
    }
}

OpcUa_StatusCode resolve(const Target& target, bool isServer, OpcUa_SocketAddress** addresses,
                         OpcUa_UInt32* addressCount)
{
    OpcUa_Trace(
        OpcUa_TraceLevel_Content,
        "OpcUa_P_ParseUrl: Trying to resolve host \"%s\" port \"%s\" to address family %i.\n",
        target.host.get(), target.port.data(), static_cast<int>(target.family));
    const OpcUa_StatusCode status =
        OpcUa_P_RawSocket_InetAddr(chooseHost(target, isServer), target.port.data(), target.flags,
                                   target.family, isServer, addresses, addressCount);
    if (OpcUa_IsBad(status)) {
        OpcUa_Trace(OpcUa_TraceLevel_Warning,
                    "OpcUa_P_ParseUrl: OpcUa_P_RawSocket_InetAddr reports error 0x%08X.\n", status);
        return status;
    }
    for (OpcUa_UInt32 i = 0; i < *addressCount; ++i) {
        traceAddress(static_cast<OpcUa_Int32>(i), (*addresses)[i]);
    }
    return status;
}

} // namespace

OpcUa_StatusCode OpcUa_P_ParseUrl(const char* url, bool isServer, OpcUa_SocketAddress** addresses,
                                  OpcUa_UInt32* addressCount, bool* isHttps)
{
    if (addresses != nullptr) {
        *addresses = nullptr;
    }
    if (addressCount != nullptr) {
        *addressCount = 0;
    }
    if (url == nullptr || addresses == nullptr || addressCount == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const std::string_view text = url;
    if (isHttps != nullptr) {
        *isHttps = text.starts_with("https:");
    }
    Target target;
    const OpcUa_StatusCode status = readTarget(text, isServer, target);
    return OpcUa_IsBad(status) ? status : resolve(target, isServer, addresses, addressCount);
}
