#include "pki/uapkicertificateinfo.h"
#include "pki/uapkiidentity.h"

#include <gtest/gtest.h>

namespace {

constexpr UaString UaPkiIdentity::*fields[] = {
    &UaPkiIdentity::organization,    &UaPkiIdentity::organizationUnit, &UaPkiIdentity::locality,
    &UaPkiIdentity::state,           &UaPkiIdentity::country,          &UaPkiIdentity::commonName,
    &UaPkiIdentity::domainComponent,
};

TEST(UaPkiIdentityTest, is_empty_without_a_field)
{
    EXPECT_TRUE(UaPkiIdentity().isEmpty());
    EXPECT_EQ(UaPkiIdentity(), UaPkiIdentity());
}

TEST(UaPkiIdentityTest, is_not_empty_and_not_equal_with_any_field)
{
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        UaPkiIdentity identity;
        identity.*fields[i] = "x";
        EXPECT_FALSE(identity.isEmpty()) << i;
        EXPECT_NE(identity, UaPkiIdentity()) << i;
        UaPkiIdentity same;
        same.*fields[i] = "x";
        EXPECT_EQ(identity, same) << i;
        same.*fields[i] = "X";
        EXPECT_NE(identity, same) << i << ": case counts";
    }
}

TEST(UaPkiIdentityTest, its_fields_stand_in_the_settled_order)
{
    const UaPkiIdentity identity = {"O", "OU", "L", "ST", "C", "CN", "DC"};
    EXPECT_EQ(identity.organization, "O");
    EXPECT_EQ(identity.organizationUnit, "OU");
    EXPECT_EQ(identity.locality, "L");
    EXPECT_EQ(identity.state, "ST");
    EXPECT_EQ(identity.country, "C");
    EXPECT_EQ(identity.commonName, "CN");
    EXPECT_EQ(identity.domainComponent, "DC");
}

TEST(UaPkiCertificateInfoTest, is_empty_at_first)
{
    const UaPkiCertificateInfo info;
    EXPECT_TRUE(info.uri.isEmpty());
    EXPECT_EQ(info.ipAddresses.length(), 0);
    EXPECT_EQ(info.dnsNames.length(), 0);
    EXPECT_TRUE(info.email.isEmpty());
    EXPECT_EQ(info.validTime, 0u);
    EXPECT_EQ(info.serialNumber, 0);
}

} // namespace
