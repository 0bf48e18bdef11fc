#include "pki/uapkiidentity.h"

#include <tuple>

namespace {

auto fieldsOf(const UaPkiIdentity& identity) noexcept
{
    return std::tie(identity.organization, identity.organizationUnit, identity.locality,
                    identity.state, identity.country, identity.commonName,
                    identity.domainComponent);
}

} // namespace

bool UaPkiIdentity::isEmpty() const noexcept
{
    return std::apply([](const auto&... fields) { return (fields.isEmpty() && ...); },
                      fieldsOf(*this));
}

bool operator==(const UaPkiIdentity& left, const UaPkiIdentity& right) noexcept
{
    return fieldsOf(left) == fieldsOf(right);
}
