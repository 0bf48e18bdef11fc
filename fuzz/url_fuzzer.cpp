// A byte that chooses the resolver's answer, then a URL: what the resolver is asked for follows from
// the URL alone, and whatever it answers ends in a status or in addresses.

#include "fuzz/require.h"
#include "platform/memorypointer.h"
#include "platform/status.h"
#include "platform/url.h"
#include "tests/support/fakeresolver.h"

#include <cstdint>
#include <string>

namespace {

void requireParts(const FakeResolver::Query& query, const std::string& url, bool isBracketed)
{
    require(query.port.size() <= 6 && query.port.find('/') == std::string::npos);
    const bool hasPort = url.find(':' + query.port) != std::string::npos;
    require(hasPort || query.port == "4840" || query.port == "443" || query.port == "80");
    require(query.host.has_value() == ((query.flags & OpcUa_ResolverFlag_Passive) == 0));
    if (!query.host || *query.host == "localhost") {
        return;
    }
    const std::size_t start = url.find("//") + (isBracketed ? 3 : 2);
    const char* const ends = isBracketed ? "/]" : ":/]";
    require(url.compare(start, query.host->size(), *query.host) == 0);
    require(url.find_first_of(ends, start) == start + query.host->size() ||
            start + query.host->size() == url.size());
}

void parse(FakeResolver& resolver, const std::string& url, bool isServer)
{
    resolver.queries.clear();
    OpcUa_SocketAddress* addresses = nullptr;
    OpcUa_UInt32 count = 0;
    bool isHttps = false;
    const OpcUa_StatusCode status =
        OpcUa_P_ParseUrl(url.c_str(), isServer, &addresses, &count, &isHttps);
    const OpcUa_MemoryPointer<OpcUa_SocketAddress> owner(addresses);
    require(isHttps == url.starts_with("https:"));
    require((addresses != nullptr) == (status == OpcUa_Good));
    const std::size_t mark = url.find("//");
    require((status == OpcUa_BadSyntaxError) == (mark == std::string::npos));
    if (resolver.queries.empty()) {
        require(status == OpcUa_BadSyntaxError || status == OpcUa_BadInvalidArgument);
        return;
    }
    require(resolver.queries.size() == 1);
    require((status == OpcUa_Good) == (resolver.result == OpcUa_ResolverResult_Success));
    // One address of each family is there.
    const bool isOneFamily = resolver.queries[0].family != OpcUa_AddressFamily::Any;
    require(count == (status != OpcUa_Good ? 0u : (isOneFamily ? 1u : 2u)));
    requireParts(resolver.queries[0], url, url.compare(mark + 2, 1, "[") == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    FakeResolver resolver;
    resolver.addresses = {"4a", "6b"};
    resolver.name = "computer";
    if ((data[0] & 1) != 0) {
        resolver.result = OpcUa_ResolverResult_HostNotFound;
    }
    // A C text ends at its first zero.
    const std::string url = std::string(reinterpret_cast<const char*>(data + 1), size - 1).c_str();
    parse(resolver, url, false);
    parse(resolver, url, true);
    return 0;
}
