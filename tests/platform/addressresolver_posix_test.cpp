#include "platform/addressresolver.h"
#include "platform/memorypointer.h"
#include "platform/status.h"
#include "platform/url.h"
#include "tests/support/allocationfaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What a call of the system's resolver was given.
struct Call
{
    std::optional<std::string> host;
    std::string port;
    int flags = 0;
    int family = 0;
    int type = 0;
};

struct FakeSystem
{
    bool isOn = false;
    int result = 0;
    int error = 0;
    addrinfo* list = nullptr;
    std::vector<Call> calls;
    std::vector<addrinfo*> freed;
    std::optional<std::string> name; // none fails
};

FakeSystem& fakeSystem()
{
    static FakeSystem system;
    return system;
}

} // namespace

// The linker puts these in place of the system's functions.
extern "C" int __real_getaddrinfo(const char* host, const char* port, const addrinfo* hints,
                                  addrinfo** list);
extern "C" void __real_freeaddrinfo(addrinfo* list);
extern "C" int __real_gethostname(char* name, std::size_t size);

extern "C" int __wrap_getaddrinfo(const char* host, const char* port, const addrinfo* hints,
                                  addrinfo** list)
{
    FakeSystem& system = fakeSystem();
    if (!system.isOn) {
        return __real_getaddrinfo(host, port, hints, list);
    }
    Call call = {std::nullopt, port, hints->ai_flags, hints->ai_family, hints->ai_socktype};
    if (host != nullptr) {
        call.host = host;
    }
    system.calls.push_back(call);
    errno = system.error;
    *list = system.result == 0 ? system.list : nullptr;
    return system.result;
}

extern "C" void __wrap_freeaddrinfo(addrinfo* list)
{
    if (!fakeSystem().isOn) {
        __real_freeaddrinfo(list);
        return;
    }
    fakeSystem().freed.push_back(list);
}

extern "C" int __wrap_gethostname(char* name, std::size_t size)
{
    FakeSystem& system = fakeSystem();
    if (!system.isOn) {
        return __real_gethostname(name, size);
    }
    if (!system.name) {
        errno = EPERM;
        return -1;
    }
    // Without an end when the name is cut, as some systems do it.
    std::memset(name, 0, size);
    system.name->copy(name, size);
    return 0;
}

namespace {

class SystemResolver : public testing::Test
{
protected:
    SystemResolver()
    {
        fakeSystem() = {};
        fakeSystem().isOn = true;
        fakeSystem().list = &m_first;
    }
    ~SystemResolver() override { fakeSystem() = {}; }

    static OpcUa_StatusCode resolve(OpcUa_UInt32 flags = 0,
                                    OpcUa_AddressFamily family = OpcUa_AddressFamily::Any)
    {
        OpcUa_SocketAddress* addresses = nullptr;
        OpcUa_UInt32 count = 0;
        const OpcUa_StatusCode status =
            OpcUa_P_RawSocket_InetAddr("host", "4840", flags, family, false, &addresses, &count);
        OpcUa_Memory_Free(addresses);
        return status;
    }

    sockaddr_in m_address{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {}, .sin_zero = {}};
    addrinfo m_first{.ai_flags = 0,
                     .ai_family = AF_INET,
                     .ai_socktype = SOCK_STREAM,
                     .ai_protocol = 0,
                     .ai_addrlen = sizeof m_address,
                     .ai_addr = reinterpret_cast<sockaddr*>(&m_address),
                     .ai_canonname = nullptr,
                     .ai_next = nullptr};
};

TEST_F(SystemResolver, its_results_are_translated_by_their_meaning)
{
    struct Row
    {
        int result;
        int error;
        OpcUa_StatusCode status;
    };
    constexpr Row rows[] = {
        {0, 0, OpcUa_Good},
        {EAI_MEMORY, 0, OpcUa_BadOutOfMemory},
        {EAI_SYSTEM, ENOMEM, OpcUa_BadOutOfMemory},
        {EAI_BADFLAGS, 0, OpcUa_BadInvalidArgument},
        {EAI_SYSTEM, EINVAL, OpcUa_BadInvalidArgument},
        {EAI_NONAME, 0, OpcUa_BadHostUnknown},
        {EAI_NONAME, ENOENT, OpcUa_BadHostUnknown},
        {EAI_AGAIN, 0, OpcUa_Bad},
        // The error number counts only where the system says so.
        {EAI_AGAIN, ENOMEM, OpcUa_Bad},
        {EAI_FAIL, EINVAL, OpcUa_Bad},
        {EAI_FAMILY, 0, OpcUa_Bad},
        {EAI_SERVICE, 0, OpcUa_Bad},
        {EAI_SOCKTYPE, 0, OpcUa_Bad},
        {EAI_SYSTEM, EMFILE, OpcUa_Bad},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.result);
        SCOPED_TRACE(row.error);
        fakeSystem().result = row.result;
        fakeSystem().error = row.error;
        EXPECT_EQ(resolve(), row.status);
    }
}

TEST_F(SystemResolver, hints_reach_it)
{
    struct Row
    {
        OpcUa_UInt32 flags;
        OpcUa_AddressFamily family;
        int systemFlags;
        int systemFamily;
    };
    constexpr OpcUa_UInt32 both = OpcUa_ResolverFlag_Passive | OpcUa_ResolverFlag_NumericHost;
    constexpr Row rows[] = {
        {0, OpcUa_AddressFamily::Any, 0, AF_UNSPEC},
        {0, OpcUa_AddressFamily::IPv4, 0, AF_INET},
        {0, OpcUa_AddressFamily::IPv6, 0, AF_INET6},
        {OpcUa_ResolverFlag_Passive, OpcUa_AddressFamily::Any, AI_PASSIVE, AF_UNSPEC},
        {OpcUa_ResolverFlag_NumericHost, OpcUa_AddressFamily::IPv4, AI_NUMERICHOST, AF_INET},
        {both, OpcUa_AddressFamily::IPv4, AI_PASSIVE | AI_NUMERICHOST, AF_INET},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(resolve(row.flags, row.family), OpcUa_Good);
        const Call& call = fakeSystem().calls.back();
        EXPECT_EQ(call.flags, row.systemFlags);
        EXPECT_EQ(call.family, row.systemFamily);
        EXPECT_EQ(call.type, SOCK_STREAM);
        EXPECT_EQ(call.port, "4840");
        EXPECT_EQ(call.host.has_value(), (row.flags & OpcUa_ResolverFlag_Passive) == 0);
    }
}

TEST_F(SystemResolver, its_list_is_freed_in_every_case)
{
    EXPECT_EQ(resolve(), OpcUa_Good);
    EXPECT_THAT(fakeSystem().freed, ElementsAre(&m_first));
    fakeSystem().freed.clear();
    const std::size_t failures = forEveryFailingAllocation(
        [] { return resolve(); },
        [](OpcUa_StatusCode status) { EXPECT_EQ(status, OpcUa_BadOutOfMemory); });
    EXPECT_EQ(failures, 2u);
    EXPECT_EQ(fakeSystem().freed.size(), failures + 1);
    fakeSystem().freed.clear();
    fakeSystem().result = EAI_NONAME;
    EXPECT_EQ(resolve(), OpcUa_BadHostUnknown);
    EXPECT_THAT(fakeSystem().freed, IsEmpty());
}

TEST_F(SystemResolver, addresses_of_every_kind_are_taken_over)
{
    sockaddr_un local{};
    local.sun_family = AF_UNIX;
    addrinfo other = m_first;
    other.ai_addr = reinterpret_cast<sockaddr*>(&local);
    other.ai_addrlen = 10;
    std::array<OpcUa_Byte, 200> tooLong{};
    addrinfo longOne = m_first;
    longOne.ai_addr = reinterpret_cast<sockaddr*>(tooLong.data());
    longOne.ai_addrlen = 129;
    addrinfo empty = m_first;
    empty.ai_addr = nullptr;
    sockaddr_in6 address6{};
    address6.sin6_family = AF_INET6;
    addrinfo last = m_first;
    last.ai_addr = reinterpret_cast<sockaddr*>(&address6);
    last.ai_addrlen = sizeof address6;
    m_first.ai_next = &other;
    other.ai_next = &longOne;
    longOne.ai_next = &empty;
    empty.ai_next = &last;

    const OpcUa_ResolverSource& source = OpcUa_P_Resolver_SystemSource();
    OpcUa_SocketAddress* addresses = nullptr;
    OpcUa_UInt32 count = 0;
    ASSERT_EQ(source.resolve({"host", "1", 0, OpcUa_AddressFamily::Any}, &addresses, &count), 0);
    const OpcUa_MemoryPointer<OpcUa_SocketAddress> owner(addresses);
    ASSERT_EQ(count, 5u);
    std::vector<OpcUa_AddressFamily> families;
    std::vector<OpcUa_UInt32> lengths;
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        families.push_back(source.familyOf(addresses[i]));
        lengths.push_back(addresses[i].length);
    }
    EXPECT_THAT(families, ElementsAre(OpcUa_AddressFamily::IPv4, OpcUa_AddressFamily::Unknown,
                                      OpcUa_AddressFamily::Unknown, OpcUa_AddressFamily::Unknown,
                                      OpcUa_AddressFamily::IPv6));
    EXPECT_THAT(lengths, ElementsAre(sizeof m_address, 10u, 0u, 0u, sizeof address6));
    EXPECT_EQ(std::memcmp(addresses[0].bytes.data(), &m_address, sizeof m_address), 0);
    EXPECT_EQ(std::memcmp(addresses[4].bytes.data(), &address6, sizeof address6), 0);
}

TEST_F(SystemResolver, computer_name_has_an_end)
{
    const auto computerName = OpcUa_P_Resolver_SystemSource().computerName;
    std::array<char, 6> buffer{};
    EXPECT_FALSE(computerName(buffer.data(), 6));
    fakeSystem().name = "host";
    EXPECT_FALSE(computerName(buffer.data(), 0));
    EXPECT_TRUE(computerName(buffer.data(), 6));
    EXPECT_STREQ(buffer.data(), "host");
    fakeSystem().name = "longerhost";
    EXPECT_TRUE(computerName(buffer.data(), 6));
    EXPECT_STREQ(buffer.data(), "longe");
}

TEST_F(SystemResolver, client_of_this_computer_goes_to_localhost)
{
    fakeSystem().name = "This.Computer";
    OpcUa_SocketAddress* addresses = nullptr;
    OpcUa_UInt32 count = 0;
    EXPECT_EQ(OpcUa_P_ParseUrl("opc.tcp://this.computer:1", false, &addresses, &count, nullptr),
              OpcUa_Good);
    OpcUa_Memory_Free(addresses);
    EXPECT_EQ(fakeSystem().calls.back().host, "localhost");
}

TEST(SystemResolverTexts, ipv4_is_read_as_the_system_reads_it)
{
    struct Row
    {
        const char* text;
        bool isIPv4;
    };
    constexpr Row rows[] = {
        {"127.0.0.1", true},
        {"0.0.0.0", true},
        {"127.1", true},
        {"0x7f.1", true},
        {"127.0.0.256", false},
        {"1.2.3.4.5", false},
        {"", false},
        {"host", false},
        {"1.2.3.4x", false},
        // The system has the same answer for this one and for no address.
        {"255.255.255.255", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(OpcUa_P_Resolver_SystemSource().isIPv4(row.text), row.isIPv4) << row.text;
    }
}

TEST(SystemResolverTexts, empty_address_has_neither_family_nor_text)
{
    const OpcUa_SocketAddress empty{};
    std::array<char, 10> text{};
    EXPECT_EQ(OpcUa_P_Resolver_SystemSource().familyOf(empty), OpcUa_AddressFamily::Unknown);
    EXPECT_FALSE(OpcUa_P_Resolver_SystemSource().numericForm(empty, text.data(), 10));
}

/// The real resolver, on addresses that need no network.
TEST(SystemResolverTexts, numeric_urls_resolve_to_their_addresses)
{
    struct Row
    {
        const char* url;
        bool isServer;
        const char* address;
        OpcUa_AddressFamily family;
    };
    constexpr Row rows[] = {
        {"opc.tcp://127.0.0.1:4850", false, "127.0.0.1", OpcUa_AddressFamily::IPv4},
        {"opc.tcp://127.0.0.1:4850", true, "0.0.0.0", OpcUa_AddressFamily::IPv4},
        {"opc.tcp://[::1]:4850", false, "::1", OpcUa_AddressFamily::IPv6},
        {"opc.tcp://[::1]:4850", true, "::1", OpcUa_AddressFamily::IPv6},
        {"opc.tcp://[2001:db8::17]:4850/x", false, "2001:db8::17", OpcUa_AddressFamily::IPv6},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        OpcUa_SocketAddress* addresses = nullptr;
        OpcUa_UInt32 count = 0;
        ASSERT_EQ(OpcUa_P_ParseUrl(row.url, row.isServer, &addresses, &count, nullptr), OpcUa_Good);
        const OpcUa_MemoryPointer<OpcUa_SocketAddress> owner(addresses);
        ASSERT_EQ(count, 1u);
        EXPECT_EQ(OpcUa_P_Resolver_Source().familyOf(addresses[0]), row.family);
        std::array<char, 128> text{};
        EXPECT_TRUE(OpcUa_P_Resolver_Source().numericForm(addresses[0], text.data(), 128));
        EXPECT_STREQ(text.data(), row.address);
        // The port is in the same place for both families.
        sockaddr_in address{};
        std::memcpy(&address, addresses[0].bytes.data(), sizeof address);
        EXPECT_EQ(ntohs(address.sin_port), 4850);
    }
}

TEST(SystemResolverTexts, numeric_hint_looks_no_name_up)
{
    OpcUa_SocketAddress* addresses = nullptr;
    OpcUa_UInt32 count = 0;
    EXPECT_EQ(OpcUa_P_RawSocket_InetAddr("localhost", "1", OpcUa_ResolverFlag_NumericHost,
                                         OpcUa_AddressFamily::Any, false, &addresses, &count),
              OpcUa_BadHostUnknown);
    EXPECT_EQ(addresses, nullptr);
}

} // namespace
