#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_nesting.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>

namespace {

OpcUa_DiagnosticInfo makeInfo(const std::function<void(OpcUa_DiagnosticInfo&)>& change)
{
    OpcUa_DiagnosticInfo info;
    OpcUa_DiagnosticInfo_Initialize(&info);
    change(info);
    return info;
}

/// An info with `depth` inner infos, one inside the other; the innermost has the given id.
OpcUa_DiagnosticInfo makeChain(OpcUa_UInt32 depth, OpcUa_Int32 innermostId = 7)
{
    OpcUa_DiagnosticInfo outer = makeInfo([](OpcUa_DiagnosticInfo&) {});
    OpcUa_DiagnosticInfo* last = &outer;
    for (OpcUa_UInt32 i = 0; i < depth; ++i) {
        auto* inner =
            static_cast<OpcUa_DiagnosticInfo*>(OpcUa_Memory_Alloc(sizeof(OpcUa_DiagnosticInfo)));
        OpcUa_DiagnosticInfo_Initialize(inner);
        last->InnerDiagnosticInfo = inner;
        last = inner;
    }
    EXPECT_EQ(OpcUa_String_AttachCopy(&last->AdditionalInfo, "innermost"), OpcUa_Good);
    last->SymbolicId = innermostId;
    return outer;
}

TEST(DiagnosticInfo, initialised_one_has_no_indexes)
{
    OpcUa_DiagnosticInfo info;
    std::memset(&info, 0xA5, sizeof(info));
    OpcUa_DiagnosticInfo_Initialize(&info);
    EXPECT_EQ(info.SymbolicId, -1);
    EXPECT_EQ(info.NamespaceUri, -1);
    EXPECT_EQ(info.Locale, -1);
    EXPECT_EQ(info.LocalizedText, -1);
    EXPECT_TRUE(OpcUa_String_IsNull(&info.AdditionalInfo));
    EXPECT_EQ(info.InnerStatusCode, OpcUa_Good);
    EXPECT_EQ(info.InnerDiagnosticInfo, nullptr);
}

TEST(DiagnosticInfo, each_field_orders_before_the_next)
{
    static OpcUa_DiagnosticInfo inner = makeInfo([](OpcUa_DiagnosticInfo&) {});
    const std::array<OpcUa_DiagnosticInfo, 8> ordered = {
        makeInfo([](OpcUa_DiagnosticInfo&) {}),
        makeInfo([](OpcUa_DiagnosticInfo& i) { i.InnerDiagnosticInfo = &inner; }),
        makeInfo([](OpcUa_DiagnosticInfo& i) { i.InnerStatusCode = 1; }),
        makeInfo([](OpcUa_DiagnosticInfo& i) {
            EXPECT_EQ(OpcUa_String_AttachReadOnly(&i.AdditionalInfo, "a"), OpcUa_Good);
        }),
        makeInfo([](OpcUa_DiagnosticInfo& i) { i.LocalizedText = 0; }),
        makeInfo([](OpcUa_DiagnosticInfo& i) { i.Locale = 0; }),
        makeInfo([](OpcUa_DiagnosticInfo& i) { i.NamespaceUri = 0; }),
        makeInfo([](OpcUa_DiagnosticInfo& i) { i.SymbolicId = 0; })};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            SCOPED_TRACE(testing::Message() << i << " against " << j);
            const OpcUa_Int32 order = OpcUa_DiagnosticInfo_Compare(&ordered[i], &ordered[j]);
            EXPECT_EQ(order < 0, i < j);
            EXPECT_EQ(order == 0, i == j);
        }
    }
}

TEST(DiagnosticInfo, chain_within_the_limit_is_copied_and_compared)
{
    OpcUa_DiagnosticInfo source = makeChain(OpcUa_Nesting_MaxLevels);
    OpcUa_DiagnosticInfo other = makeChain(OpcUa_Nesting_MaxLevels, 8);
    OpcUa_DiagnosticInfo copy = makeChain(3);
    EXPECT_EQ(OpcUa_DiagnosticInfo_CopyTo(&source, &copy), OpcUa_Good);
    EXPECT_EQ(OpcUa_DiagnosticInfo_Compare(&source, &copy), 0);
    EXPECT_EQ(OpcUa_DiagnosticInfo_Compare(&source, &other), -1);
    OpcUa_DiagnosticInfo_Clear(&source);
    OpcUa_DiagnosticInfo_Clear(&other);
    OpcUa_DiagnosticInfo_Clear(&copy);
}

TEST(DiagnosticInfo, chain_beyond_the_limit_is_refused_and_never_equal)
{
    OpcUa_DiagnosticInfo source = makeChain(OpcUa_Nesting_MaxLevels + 1);
    OpcUa_DiagnosticInfo twin = makeChain(OpcUa_Nesting_MaxLevels + 1);
    OpcUa_DiagnosticInfo copy = makeChain(3);
    EXPECT_EQ(OpcUa_DiagnosticInfo_CopyTo(&source, &copy), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(copy.InnerDiagnosticInfo, nullptr);
    EXPECT_EQ(OpcUa_DiagnosticInfo_Compare(&source, &twin), 1);
    EXPECT_EQ(OpcUa_DiagnosticInfo_Compare(&source, &source), 0);
    OpcUa_DiagnosticInfo_Clear(&source);
    OpcUa_DiagnosticInfo_Clear(&twin);
}

TEST(DiagnosticInfo, chain_of_100000_is_cleared_and_refused)
{
    OpcUa_DiagnosticInfo source = makeChain(100000);
    OpcUa_DiagnosticInfo twin = makeChain(100000);
    OpcUa_DiagnosticInfo copy = makeInfo([](OpcUa_DiagnosticInfo&) {});
    EXPECT_EQ(OpcUa_DiagnosticInfo_CopyTo(&source, &copy), OpcUa_BadEncodingLimitsExceeded);
    EXPECT_EQ(OpcUa_DiagnosticInfo_Compare(&source, &twin), 1);
    OpcUa_DiagnosticInfo_Clear(&source);
    OpcUa_DiagnosticInfo_Clear(&twin);
    EXPECT_EQ(source.InnerDiagnosticInfo, nullptr);
}

} // namespace
