#pragma once

#include "platform/addressresolver.h"
#include "platform/allocator.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Answers in place of the system's resolver while it lives, and keeps what it was asked. Only one
/// object may live at a time. Its addresses are a digit for the family, 4 or 6, followed by any text.
class FakeResolver
{
public:
    struct Query
    {
        std::optional<std::string> host;
        std::string port;
        OpcUa_UInt32 flags = 0;
        OpcUa_AddressFamily family = OpcUa_AddressFamily::Any;
    };

    FakeResolver()
    {
        current() = this;
        static constexpr OpcUa_ResolverSource source = {resolve, isIPv4, computerName, familyOf,
                                                        numericForm};
        OpcUa_P_Resolver_SetSource(&source);
    }
    ~FakeResolver() { OpcUa_P_Resolver_SetSource(nullptr); }
    FakeResolver(const FakeResolver&) = delete;
    FakeResolver& operator=(const FakeResolver&) = delete;

    /// What every query gets.
    OpcUa_Int32 result = OpcUa_ResolverResult_Success;
    std::vector<std::string> addresses = {"4first"};
    /// The computer's name; none makes asking for it fail.
    std::optional<std::string> name;
    std::vector<Query> queries;

    /// The text of an address that resolve() made; "" for an empty one.
    static std::string textOf(const OpcUa_SocketAddress& address)
    {
        return {reinterpret_cast<const char*>(address.bytes.data()), address.length};
    }

private:
    static FakeResolver*& current()
    {
        static FakeResolver* object = nullptr;
        return object;
    }

    static OpcUa_Int32 resolve(const OpcUa_ResolverQuery& query, OpcUa_SocketAddress** addresses,
                               OpcUa_UInt32* addressCount)
    {
        FakeResolver& fake = *current();
        Query kept = {std::nullopt, query.port, query.flags, query.family};
        if (query.host != nullptr) {
            kept.host = query.host;
        }
        fake.queries.push_back(kept);
        if (fake.result != OpcUa_ResolverResult_Success) {
            return fake.result;
        }
        auto* const block = static_cast<OpcUa_SocketAddress*>(
            OpcUa_Memory_AllocZeroed(fake.addresses.size(), sizeof(OpcUa_SocketAddress)));
        if (block == nullptr) {
            return OpcUa_ResolverResult_NoMemory;
        }
        for (std::size_t i = 0; i < fake.addresses.size(); ++i) {
            const std::string& text = fake.addresses[i];
            std::memcpy(block[i].bytes.data(), text.data(), text.size());
            block[i].length = static_cast<OpcUa_UInt32>(text.size());
        }
        *addresses = block;
        *addressCount = static_cast<OpcUa_UInt32>(fake.addresses.size());
        return OpcUa_ResolverResult_Success;
    }

    /// Three dots between digits.
    static bool isIPv4(const char* text)
    {
        const std::string_view view = text;
        return view.find_first_not_of(".0123456789") == std::string_view::npos &&
               std::count(view.begin(), view.end(), '.') == 3;
    }

    static bool computerName(char* name, OpcUa_UInt32 size)
    {
        if (!current()->name) {
            return false;
        }
        const std::size_t length = current()->name->copy(name, size - 1);
        name[length] = '\0';
        return true;
    }

    static OpcUa_AddressFamily familyOf(const OpcUa_SocketAddress& address)
    {
        switch (address.length == 0 ? 0 : address.bytes[0]) {
        case '4':
            return OpcUa_AddressFamily::IPv4;
        case '6':
            return OpcUa_AddressFamily::IPv6;
        default:
            return OpcUa_AddressFamily::Unknown;
        }
    }

    static bool numericForm(const OpcUa_SocketAddress& address, char* text, OpcUa_UInt32 size)
    {
        if (address.length == 0 || address.length >= size) {
            return false;
        }
        std::memcpy(text, address.bytes.data(), address.length);
        text[address.length] = '\0';
        return true;
    }
};
