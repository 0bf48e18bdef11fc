#include "platform/status.h"
#include "stack/opcua_qualifiedname.h"

#include <gtest/gtest.h>

#include <array>

namespace {

OpcUa_QualifiedName makeName(OpcUa_UInt16 namespaceIndex, const char* text)
{
    OpcUa_QualifiedName name;
    OpcUa_QualifiedName_Initialize(&name);
    name.NamespaceIndex = namespaceIndex;
    if (text != nullptr) {
        EXPECT_EQ(OpcUa_String_AttachReadOnly(&name.Name, text), OpcUa_Good);
    }
    return name;
}

TEST(QualifiedName, initialised_one_is_null_in_namespace_0)
{
    const OpcUa_QualifiedName name = makeName(0, nullptr);
    EXPECT_EQ(name.NamespaceIndex, 0);
    EXPECT_EQ(name.Reserved, 0);
    EXPECT_TRUE(OpcUa_String_IsNull(&name.Name));
}

TEST(QualifiedName, namespace_orders_before_name)
{
    const std::array<OpcUa_QualifiedName, 6> ordered = {makeName(0, nullptr), makeName(0, ""),
                                                        makeName(0, "a"),     makeName(0, "b"),
                                                        makeName(1, "a"),     makeName(65535, "a")};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            SCOPED_TRACE(testing::Message() << i << " against " << j);
            const OpcUa_Int32 order = OpcUa_QualifiedName_Compare(&ordered[i], &ordered[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
    EXPECT_EQ(OpcUa_QualifiedName_Compare(&ordered[5], &ordered[4]), 65534);
}

TEST(QualifiedName, copy_is_owned)
{
    const OpcUa_QualifiedName source = makeName(3, "name");
    OpcUa_QualifiedName copy = makeName(9, "old");
    EXPECT_EQ(OpcUa_QualifiedName_CopyTo(&source, &copy), OpcUa_Good);
    EXPECT_EQ(copy.NamespaceIndex, 3);
    EXPECT_STREQ(copy.Name.strContent, "name");
    EXPECT_NE(copy.Name.strContent, source.Name.strContent);
    OpcUa_QualifiedName_Clear(&copy);
    EXPECT_EQ(copy.NamespaceIndex, 0);
}

} // namespace
