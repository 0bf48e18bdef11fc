#include "platform/addressresolver.h"
#include "platform/memorypointer.h"
#include "platform/status.h"
#include "tests/support/allocationfaults.h"
#include "tests/support/fakeresolver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Family = OpcUa_AddressFamily;

/// The status of a resolution, and the texts of the addresses that came.
struct Answer
{
    OpcUa_StatusCode status = OpcUa_Good;
    std::vector<std::string> addresses;
};

Answer resolve(Family family, bool isServer, OpcUa_UInt32 flags = 0, const char* host = "host")
{
    OpcUa_SocketAddress other{};
    OpcUa_SocketAddress* addresses = &other;
    OpcUa_UInt32 count = 7;
    Answer answer;
    answer.status =
        OpcUa_P_RawSocket_InetAddr(host, "4840", flags, family, isServer, &addresses, &count);
    const OpcUa_MemoryPointer<OpcUa_SocketAddress> owner(addresses);
    EXPECT_EQ(addresses != nullptr, OpcUa_IsGood(answer.status));
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        answer.addresses.push_back(FakeResolver::textOf(addresses[i]));
    }
    return answer;
}

TEST(AddressResolver, null_arguments_are_refused_without_a_query)
{
    FakeResolver fake;
    OpcUa_SocketAddress other{};
    OpcUa_SocketAddress* addresses = &other;
    OpcUa_UInt32 count = 7;
    constexpr OpcUa_UInt32 passive = OpcUa_ResolverFlag_Passive;
    EXPECT_EQ(OpcUa_P_RawSocket_InetAddr(nullptr, "1", 0, Family::Any, true, &addresses, &count),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(addresses, nullptr);
    EXPECT_EQ(count, 0u);
    addresses = &other;
    EXPECT_EQ(
        OpcUa_P_RawSocket_InetAddr("h", nullptr, passive, Family::Any, true, &addresses, nullptr),
        OpcUa_BadInvalidArgument);
    EXPECT_EQ(addresses, nullptr);
    count = 7;
    EXPECT_EQ(OpcUa_P_RawSocket_InetAddr("h", "1", passive, Family::Any, true, nullptr, &count),
              OpcUa_BadInvalidArgument);
    EXPECT_EQ(count, 0u);
    EXPECT_THAT(fake.queries, IsEmpty());
}

TEST(AddressResolver, each_result_of_the_system_has_its_status)
{
    struct Row
    {
        OpcUa_Int32 result;
        OpcUa_StatusCode status;
    };
    constexpr Row rows[] = {
        {0, OpcUa_Good},
        {8, OpcUa_BadOutOfMemory},
        {10022, OpcUa_BadInvalidArgument},
        {10093, OpcUa_BadInvalidState},
        {11001, OpcUa_BadHostUnknown},
        {11002, OpcUa_Bad},
        {11003, OpcUa_Bad},
        {1, OpcUa_Bad},
        {-1, OpcUa_Bad},
        {-2, OpcUa_Bad},
    };
    FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.result);
        fake.result = row.result;
        const Answer answer = resolve(Family::Any, false);
        EXPECT_EQ(answer.status, row.status);
        EXPECT_EQ(answer.addresses.size(), row.result == 0 ? 1u : 0u);
    }
}

TEST(AddressResolver, families_come_in_the_order_of_the_caller)
{
    struct Row
    {
        const char* name;
        Family family;
        bool isServer;
        std::vector<std::string> found;
        std::vector<std::string> expected;
    };
    const std::vector<std::string> mixed = {"4a", "6a", "4b", "6b"};
    const std::vector<Row> rows = {
        {"server, any family", Family::Any, true, mixed, {"6a", "6b", "4a", "4b"}},
        {"client, any family", Family::Any, false, mixed, {"4a", "4b", "6a", "6b"}},
        {"server, IPv4", Family::IPv4, true, mixed, {"4a", "4b"}},
        {"client, IPv4", Family::IPv4, false, mixed, {"4a", "4b"}},
        {"server, IPv6", Family::IPv6, true, mixed, {"6a", "6b"}},
        {"client, IPv6", Family::IPv6, false, mixed, {"6a", "6b"}},
        {"server with one family", Family::Any, true, {"4a", "4b"}, {"4a", "4b"}},
        {"client with one family", Family::Any, false, {"6b", "6a"}, {"6b", "6a"}},
        {"another family is counted and not copied",
         Family::Any,
         true,
         {"9", "4a", "6a", "9"},
         {"6a", "4a", "", ""}},
        {"client, another family", Family::Any, false, {"9", "6a", "4a"}, {"4a", "6a", ""}},
        {"another family where one is given", Family::IPv4, false, {"9", "4a"}, {"4a"}},
        {"none of the family", Family::IPv6, false, {"4a"}, {}},
        {"nothing at all", Family::Any, false, {}, {}},
    };
    FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        fake.addresses = row.found;
        const Answer answer = resolve(row.family, row.isServer);
        EXPECT_EQ(answer.status, OpcUa_Good);
        EXPECT_EQ(answer.addresses, row.expected);
        EXPECT_EQ(fake.queries.back().family, row.family);
    }
}

TEST(AddressResolver, passive_flag_leaves_out_the_host)
{
    constexpr OpcUa_UInt32 both = OpcUa_ResolverFlag_Passive | OpcUa_ResolverFlag_NumericHost;
    struct Row
    {
        OpcUa_UInt32 flags;
        const char* host;
        std::optional<std::string> expected;
    };
    const std::vector<Row> rows = {
        {0, "host", "host"},
        {OpcUa_ResolverFlag_NumericHost, "host", "host"},
        {OpcUa_ResolverFlag_Passive, "host", std::nullopt},
        {OpcUa_ResolverFlag_Passive, nullptr, std::nullopt},
        {both, "host", std::nullopt},
    };
    FakeResolver fake;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.flags);
        EXPECT_EQ(resolve(Family::Any, true, row.flags, row.host).status, OpcUa_Good);
        EXPECT_EQ(fake.queries.back().host, row.expected);
        EXPECT_EQ(fake.queries.back().port, "4840");
        EXPECT_EQ(fake.queries.back().flags, row.flags);
    }
}

TEST(AddressResolver, without_memory_nothing_is_left)
{
    const FakeResolver fake;
    const std::size_t failures =
        forEveryFailingAllocation([] { return resolve(Family::Any, true); },
                                  [](const Answer& answer) {
                                      EXPECT_EQ(answer.status, OpcUa_BadOutOfMemory);
                                      EXPECT_THAT(answer.addresses, IsEmpty());
                                  });
    EXPECT_EQ(failures, 2u);
}

TEST(AddressResolver, null_source_restores_the_system_s)
{
    {
        const FakeResolver fake;
        EXPECT_NE(&OpcUa_P_Resolver_Source(), &OpcUa_P_Resolver_SystemSource());
    }
    EXPECT_EQ(&OpcUa_P_Resolver_Source(), &OpcUa_P_Resolver_SystemSource());
}

} // namespace
