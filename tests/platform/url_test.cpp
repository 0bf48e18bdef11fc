#include "platform/memorypointer.h"
#include "platform/status.h"
#include "platform/url.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/fakeresolver.h"
#include "tests/support/tracerecorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Family = OpcUa_AddressFamily;

constexpr OpcUa_UInt32 passive = OpcUa_ResolverFlag_Passive;
constexpr OpcUa_UInt32 numericHost = OpcUa_ResolverFlag_NumericHost;

struct Answer
{
    OpcUa_StatusCode status = OpcUa_Good;
    std::vector<std::string> addresses;
    bool isHttps = false;
};

Answer parse(const std::string& url, bool isServer = false)
{
    OpcUa_SocketAddress other{};
    OpcUa_SocketAddress* addresses = &other;
    OpcUa_UInt32 count = 7;
    Answer answer;
    answer.status = OpcUa_P_ParseUrl(url.c_str(), isServer, &addresses, &count, &answer.isHttps);
    const OpcUa_MemoryPointer<OpcUa_SocketAddress> owner(addresses);
    EXPECT_EQ(addresses != nullptr, OpcUa_IsGood(answer.status));
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        answer.addresses.push_back(FakeResolver::textOf(addresses[i]));
    }
    return answer;
}

TEST(Url, entry_has_136_bytes)
{
    EXPECT_EQ(sizeof(OpcUa_SocketAddress), 136u);
    EXPECT_EQ(sizeof(OpcUa_SocketAddress::bytes), 128u);
    EXPECT_EQ(sizeof(OpcUa_SocketAddress::length), 4u);
}

TEST(Url, null_arguments_are_refused)
{
    const FakeResolver fake;
    OpcUa_SocketAddress other{};
    OpcUa_SocketAddress* addresses = &other;
    OpcUa_UInt32 count = 7;
    bool isHttps = false;
    EXPECT_EQ(OpcUa_P_ParseUrl(nullptr, false, &addresses, &count, &isHttps),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(addresses, nullptr);
    EXPECT_EQ(count, 0u);
    count = 7;
    EXPECT_EQ(OpcUa_P_ParseUrl("opc.tcp://h", false, nullptr, &count, &isHttps),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(count, 0u);
    addresses = &other;
    EXPECT_EQ(OpcUa_P_ParseUrl("opc.tcp://h", false, &addresses, nullptr, &isHttps),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(addresses, nullptr);
    EXPECT_THAT(fake.queries, IsEmpty());
}

TEST(Url, https_is_told_to_whom_asks_for_it)
{
    const FakeResolver fake;
    struct Row
    {
        const char* url;
        bool isHttps;
    };
    constexpr Row rows[] = {
        {"https://h", true},    {"https:x//h", true},   {"https//h:1", false},
        {"http://h", false},    {"HTTPS://h:1", false}, {"opc.https://h:1", false},
        {"opc.tcp://h", false}, {"https:", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        EXPECT_EQ(parse(row.url).isHttps, row.isHttps);
    }
    OpcUa_SocketAddress* addresses = nullptr;
    OpcUa_UInt32 count = 0;
    EXPECT_EQ(OpcUa_P_ParseUrl("https://h", false, &addresses, &count, nullptr), OpcUa_Good);
    OpcUa_Memory_Free(addresses);
}

TEST(Url, host_and_port_are_taken_from_it)
{
    struct Row
    {
        const char* url;
        const char* host;
        const char* port;
    };
    constexpr Row rows[] = {
        {"opc.tcp://myhost:4850/path", "myhost", "4850"},
        {"opc.tcp://[fe80::1]:4840", "fe80::1", "4840"},
        {"opc.tcp://myhost", "myhost", "4840"},
        {"https://myhost", "myhost", "443"},
        {"http://myhost", "myhost", "80"},
        // The default of opc.tcp is chosen by five characters.
        {"opc.tc://x", "x", "4840"},
        {"opc.tls://x", "x", "4840"},
        {"opc.t//x", "x", "4840"},
        // With a port the scheme isn't looked at.
        {"ftp://x:21", "x", "21"},
        {"//x:21", "x", "21"},
        {"x//y//z:1", "y", nullptr},
        // At most six characters, of any kind.
        {"opc.tcp://h:123456", "h", "123456"},
        {"opc.tcp://h:1234567", "h", "123456"},
        {"opc.tcp://h:1234567/path", "h", "123456"},
        {"opc.tcp://h:12345/path", "h", "12345"},
        {"opc.tcp://h:abc", "h", "abc"},
        {"opc.tcp://h:1:2]3", "h", "1:2]3"},
        {"opc.tcp://h:", "h", ""},
        {"opc.tcp://h:/path:9", "h", ""},
        // The path is left out.
        {"opc.tcp://h/path", "h", "4840"},
        {"opc.tcp://h/path:17", "h", "4840"},
        {"opc.tcp://h//", "h", "4840"},
        {"opc.tcp://", "", "4840"},
        {"opc.tcp:///", "", "4840"},
        {"opc.tcp://:99", "", "99"},
        // Addresses in brackets.
        {"opc.tcp://[::1]", "::1", "4840"},
        {"opc.tcp://[::1]/path", "::1", "4840"},
        {"opc.tcp://[::1]:99/path", "::1", "99"},
        {"opc.tcp://[::1]x:99", "::1", "4840"},
        {"opc.tcp://[::1", "::1", "4840"},
        {"opc.tcp://[::1/p]:9", "::1", "4840"},
        {"opc.tcp://[]", "", "4840"},
        {"opc.tcp://[", "", "4840"},
        {"opc.tcp://[fe80::1%eth0]:1", "fe80::1%eth0", "1"},
        // A closing bracket ends a name too.
        {"opc.tcp://h]:99", "h", "99"},
        {"opc.tcp://h]99", "h", "4840"},
        {"opc.tcp://h[1]:99", "h[1", "99"},
        {"opc.tcp://192.168.0.1:99", "192.168.0.1", "99"},
    };
    FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        fake.queries.clear();
        const Answer answer = parse(row.url);
        if (row.port == nullptr) {
            EXPECT_EQ(answer.status, OpcUa_BadInvalidArgument);
            EXPECT_THAT(fake.queries, IsEmpty());
            continue;
        }
        EXPECT_EQ(answer.status, OpcUa_Good);
        EXPECT_THAT(answer.addresses, ElementsAre("4first"));
        ASSERT_EQ(fake.queries.size(), 1u);
        EXPECT_EQ(fake.queries[0].host, row.host);
        EXPECT_EQ(fake.queries[0].port, row.port);
    }
}

TEST(Url, wrong_forms_have_their_statuses)
{
    struct Row
    {
        const char* url;
        OpcUa_StatusCode status;
    };
    constexpr Row rows[] = {
        {"", OpcUa_BadSyntaxError},
        {"server", OpcUa_BadSyntaxError},
        {"opc.tcp:/server", OpcUa_BadSyntaxError},
        {"server:4840", OpcUa_BadSyntaxError},
        {"/", OpcUa_BadSyntaxError},
        {"ftp://x", OpcUa_BadInvalidArgument},
        {"ftp://x/y:1", OpcUa_BadInvalidArgument},
        {"//x", OpcUa_BadInvalidArgument},
        {"opc.x://x", OpcUa_BadInvalidArgument},
        {"OPC.TCP://x", OpcUa_BadInvalidArgument},
        {"HTTP://x", OpcUa_BadInvalidArgument},
        {"http//x", OpcUa_BadInvalidArgument},
        {"https//x", OpcUa_BadInvalidArgument},
        {"ftp://[::1]", OpcUa_BadInvalidArgument},
    };
    const FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        const Answer answer = parse(row.url);
        EXPECT_EQ(answer.status, row.status);
        EXPECT_THAT(answer.addresses, IsEmpty());
    }
    EXPECT_THAT(fake.queries, IsEmpty());
}

TEST(Url, kind_of_host_sets_flags_and_family)
{
    struct Row
    {
        const char* url;
        bool isServer;
        std::optional<std::string> host;
        OpcUa_UInt32 flags;
        Family family;
    };
    const std::vector<Row> rows = {
        {"opc.tcp://name", false, "name", 0, Family::Any},
        {"opc.tcp://10.0.0.1", false, "10.0.0.1", numericHost, Family::IPv4},
        {"opc.tcp://10.0.0.1:4841/x", false, "10.0.0.1", numericHost, Family::IPv4},
        {"opc.tcp://[::1]", false, "::1", 0, Family::Any},
        // Brackets are enough: what stands in them isn't looked at.
        {"opc.tcp://[10.0.0.1]", false, "10.0.0.1", 0, Family::Any},
        // A server binds everywhere but to an address in brackets.
        {"opc.tcp://name", true, std::nullopt, passive, Family::Any},
        {"opc.tcp://10.0.0.1", true, std::nullopt, passive | numericHost, Family::IPv4},
        {"opc.tcp://[::1]", true, "::1", 0, Family::Any},
        {"opc.tcp://[name]", true, "name", 0, Family::Any},
    };
    FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        EXPECT_EQ(parse(row.url, row.isServer).status, OpcUa_Good);
        EXPECT_EQ(fake.queries.back().host, row.host);
        EXPECT_EQ(fake.queries.back().flags, row.flags);
        EXPECT_EQ(fake.queries.back().family, row.family);
    }
}

TEST(Url, server_and_client_get_their_order_of_families)
{
    FakeResolver fake;
    fake.addresses = {"4a", "6a", "4b", "6b"};
    EXPECT_THAT(parse("opc.tcp://h", true).addresses, ElementsAre("6a", "6b", "4a", "4b"));
    EXPECT_THAT(parse("opc.tcp://h", false).addresses, ElementsAre("4a", "4b", "6a", "6b"));
}

TEST(Url, client_of_this_computer_goes_to_localhost)
{
    struct Row
    {
        const char* url;
        std::optional<std::string> name;
        const char* host;
    };
    const std::string longest(1024, 'a');
    const std::string tooLong(1030, 'a');
    const std::vector<Row> rows = {
        {"opc.tcp://MyHost:1", "myHOST", "localhost"},
        {"opc.tcp://[myhost]", "myhost", "localhost"},
        {"opc.tcp://10.0.0.1", "10.0.0.1", "localhost"},
        {"opc.tcp://myhost", "myhost2", "myhost"},
        {"opc.tcp://myhost2", "myhost", "myhost2"},
        {"opc.tcp://my[host", "my{host", "my[host"},
        {"opc.tcp://myhost", std::nullopt, "myhost"},
        {"opc.tcp://myhost", "", "myhost"},
        {"opc.tcp://", "", "localhost"},
    };
    FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        fake.name = row.name;
        EXPECT_EQ(parse(row.url).status, OpcUa_Good);
        EXPECT_EQ(fake.queries.back().host, row.host);
        // A server asks for no name.
        EXPECT_EQ(parse(row.url, true).status, OpcUa_Good);
        EXPECT_NE(fake.queries.back().host, "localhost");
    }
    fake.name = longest;
    EXPECT_EQ(parse("opc.tcp://" + longest).status, OpcUa_Good);
    EXPECT_EQ(fake.queries.back().host, "localhost");
    fake.name = tooLong; // cut by the room for it
    EXPECT_EQ(parse("opc.tcp://" + tooLong).status, OpcUa_Good);
    EXPECT_EQ(fake.queries.back().host, tooLong);
}

TEST(Url, failure_of_the_resolver_is_returned_and_traced)
{
    struct Row
    {
        OpcUa_Int32 result;
        OpcUa_StatusCode status;
        const char* trace;
    };
    constexpr Row rows[] = {
        {8, OpcUa_BadOutOfMemory, "0x80030000"},
        {10022, OpcUa_BadInvalidArgument, "0x80AB0000"},
        {10093, OpcUa_BadInvalidState, "0x80AF0000"},
        {11001, OpcUa_BadHostUnknown, "0x81060000"},
        {5, OpcUa_Bad, "0x80000000"},
    };
    FakeResolver fake;
    const TraceRecorder recorder(OpcUa_TraceLevel_Warning);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.trace);
        fake.result = row.result;
        TraceRecorder::messages().clear();
        EXPECT_EQ(parse("opc.tcp://h").status, row.status);
        EXPECT_THAT(TraceRecorder::messages(),
                    ElementsAre("OpcUa_P_ParseUrl: OpcUa_P_RawSocket_InetAddr reports error " +
                                std::string(row.trace) + ".\n"));
    }
}

TEST(Url, steps_are_traced_in_their_order)
{
    struct Row
    {
        const char* url;
        bool isServer;
        std::vector<std::string> messages;
    };
    const std::vector<Row> rows = {
        {"opc.tcp://[::1]:1",
         false,
         {"Numeric IPv6 URL Scheme detected!\n",
          "Trying to resolve host \"::1\" port \"1\" to address family 0.\n",
          "0: Resolved to IPv4 address family.\n",
          "0: Numeric representation of resolved address is 4a.\n",
          "1: Resolved to IPv6 address family.\n",
          "1: Numeric representation of resolved address is 6a.\n",
          "2: Resolved to unknown! address family.\n"}},
        {"opc.tcp://10.0.0.1",
         false,
         {"Numeric IPv4 URL pattern detected!\n",
          "Trying to resolve host \"10.0.0.1\" port \"4840\" to address family 2.\n",
          "0: Resolved to IPv4 address family.\n",
          "0: Numeric representation of resolved address is 4a.\n"}},
        {"opc.tcp://me",
         false,
         {"Hostname detected!\n",
          "Trying to resolve host \"me\" port \"4840\" to address family 0.\n",
          "Hostname refers this host. Replacing with localhost.\n",
          "0: Resolved to IPv4 address family.\n",
          "0: Numeric representation of resolved address is 4a.\n",
          "1: Resolved to IPv6 address family.\n",
          "1: Numeric representation of resolved address is 6a.\n",
          "2: Resolved to unknown! address family.\n"}},
        {"opc.tcp://[::1]:1",
         true,
         {"Numeric IPv6 URL Scheme detected!\n",
          "Restricting incoming connections to specific IP address!\n",
          "Trying to resolve host \"::1\" port \"1\" to address family 0.\n",
          "0: Resolved to IPv6 address family.\n",
          "0: Numeric representation of resolved address is 6a.\n",
          "1: Resolved to IPv4 address family.\n",
          "1: Numeric representation of resolved address is 4a.\n",
          "2: Resolved to unknown! address family.\n"}},
        {"opc.tcp://10.0.0.1",
         true,
         {"Numeric IPv4 URL pattern detected!\n", "Allowing connections to any ip!\n",
          "Trying to resolve host \"10.0.0.1\" port \"4840\" to address family 2.\n",
          "0: Resolved to IPv4 address family.\n",
          "0: Numeric representation of resolved address is 4a.\n"}},
        {"ftp://h", true, {"Hostname detected!\n", "Allowing connections to any ip!\n"}},
        {"server", true, {}},
    };
    FakeResolver fake;
    fake.addresses = {"9", "4a", "6a"};
    fake.name = "me";
    const TraceRecorder recorder;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        TraceRecorder::messages().clear();
        static_cast<void>(parse(row.url, row.isServer));
        std::vector<std::string> expected;
        for (const std::string& message : row.messages) {
            expected.push_back("OpcUa_P_ParseUrl: " + message);
        }
        EXPECT_EQ(TraceRecorder::messages(), expected);
    }
}

TEST(Url, levels_of_the_traces)
{
    struct Row
    {
        OpcUa_UInt32 level;
        std::size_t count;
    };
    constexpr Row rows[] = {{OpcUa_TraceLevel_Content, 4},
                            {OpcUa_TraceLevel_Debug, 1},
                            {OpcUa_TraceLevel_System, 0},
                            {OpcUa_TraceLevel_Warning, 0},
                            {OpcUa_TraceLevel_Error, 0}};
    FakeResolver fake;
    fake.name = "me";
    for (const Row& row : rows) {
        const TraceRecorder recorder(row.level);
        EXPECT_EQ(parse("opc.tcp://me").status, OpcUa_Good);
        EXPECT_EQ(TraceRecorder::messages().size(), row.count);
    }
}

TEST(Url, without_memory_nothing_is_left)
{
    const FakeResolver fake;
    const std::size_t failures =
        forEveryFailingAllocation([] { return parse("opc.tcp://host:1"); },
                                  [](const Answer& answer) {
                                      EXPECT_EQ(answer.status, OpcUa_BadOutOfMemory);
                                      EXPECT_THAT(answer.addresses, IsEmpty());
                                  });
    EXPECT_EQ(failures, 3u);
}

TEST(Url, long_host_is_taken_whole)
{
    const FakeResolver fake;
    const std::string host(100000, 'h');
    EXPECT_EQ(parse("opc.tcp://" + host + ":1").status, OpcUa_Good);
    EXPECT_EQ(fake.queries.back().host, host);
}

} // namespace
