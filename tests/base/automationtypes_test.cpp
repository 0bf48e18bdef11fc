#include "base/automationtypes.h"
#include "base/uavariantexception.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "tests/base/textof.h"
#include "tests/base/variantvalues.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <vector>

namespace {

struct Pair
{
    UaAutomationType automationType;
    OpcUa_Byte builtInType;
};

/// The numbers of the automation types as the system's headers have them.
constexpr Pair bothWays[] = {
    {0, OpcUaType_Null},   {2, OpcUaType_Int16},    {3, OpcUaType_Int32},   {4, OpcUaType_Float},
    {5, OpcUaType_Double}, {7, OpcUaType_DateTime}, {8, OpcUaType_String},  {11, OpcUaType_Boolean},
    {16, OpcUaType_SByte}, {17, OpcUaType_Byte},    {18, OpcUaType_UInt16}, {19, OpcUaType_UInt32},
    {20, OpcUaType_Int64}, {21, OpcUaType_UInt64}};
constexpr Pair incomingOnly[] = {{6, OpcUaType_Double}};
constexpr Pair outgoingOnly[] = {{8, OpcUaType_Guid},          {8, OpcUaType_XmlElement},
                                 {8, OpcUaType_NodeId},        {8, OpcUaType_ExpandedNodeId},
                                 {8, OpcUaType_QualifiedName}, {8, OpcUaType_LocalizedText},
                                 {19, OpcUaType_StatusCode},   {12, OpcUaType_Variant}};
constexpr UaAutomationType arrayBit = 0x2000;
constexpr UaAutomationVariantType untouched = {99, 99};

void expectIncoming(UaAutomationType type, OpcUa_UInt32 dimensions,
                    const UaAutomationVariantType& expected)
{
    UaAutomationVariantType found = untouched;
    EXPECT_EQ(UaAutomationType_ToVariantType(type, dimensions, &found), OpcUa_Good) << type;
    EXPECT_EQ(found, expected) << type << " with " << dimensions << " dimensions";
}

void expectIncomingUnknown(UaAutomationType type, OpcUa_UInt32 dimensions)
{
    UaAutomationVariantType found = untouched;
    EXPECT_EQ(nameOf(UaAutomationType_ToVariantType(type, dimensions, &found)), "BadNotFound")
        << type << " with " << dimensions << " dimensions";
    EXPECT_EQ(found, untouched);
}

void expectOutgoing(const UaAutomationVariantType& type, UaAutomationType expected)
{
    UaAutomationType found = 9999;
    EXPECT_EQ(UaAutomationType_FromVariantType(type, &found), OpcUa_Good) << int{type.builtInType};
    EXPECT_EQ(found, expected) << int{type.builtInType};
}

void expectOutgoingUnknown(const UaAutomationVariantType& type)
{
    UaAutomationType found = 9999;
    EXPECT_EQ(nameOf(UaAutomationType_FromVariantType(type, &found)), "BadNotFound")
        << int{type.builtInType} << " " << int{type.arrayType};
    EXPECT_EQ(found, 9999);
}

TEST(UaAutomationType, null_pointers_are_refused)
{
    EXPECT_EQ(nameOf(UaAutomationType_ToVariantType(0, 0, nullptr)), "BadInvalidArgument");
    EXPECT_EQ(nameOf(UaAutomationType_FromVariantType({0, 0}, nullptr)), "BadInvalidArgument");
}

TEST(UaAutomationType, scalars_are_mapped_in_both_directions)
{
    for (const Pair& pair : bothWays) {
        const UaAutomationVariantType type = {pair.builtInType, OpcUa_VariantArrayType_Scalar};
        expectIncoming(pair.automationType, 0, type);
        expectOutgoing(type, pair.automationType);
    }
    for (const Pair& pair : incomingOnly) {
        expectIncoming(pair.automationType, 0, {pair.builtInType, OpcUa_VariantArrayType_Scalar});
    }
    for (const Pair& pair : outgoingOnly) {
        expectOutgoing({pair.builtInType, OpcUa_VariantArrayType_Scalar}, pair.automationType);
    }
}

TEST(UaAutomationType, a_row_of_bytes_is_a_byte_string)
{
    expectIncoming(arrayBit | 17, 1, {OpcUaType_ByteString, OpcUa_VariantArrayType_Scalar});
    expectOutgoing({OpcUaType_ByteString, OpcUa_VariantArrayType_Scalar}, arrayBit | 17);
    expectIncoming(arrayBit | 17, 2, {OpcUaType_Byte, OpcUa_VariantArrayType_Matrix});
    expectOutgoingUnknown({OpcUaType_ByteString, OpcUa_VariantArrayType_Array});
    expectOutgoingUnknown({OpcUaType_ByteString, OpcUa_VariantArrayType_Matrix});
}

TEST(UaAutomationType, arrays_follow_their_elements)
{
    for (const Pair& pair : bothWays) {
        if (pair.builtInType == OpcUaType_Null || pair.builtInType == OpcUaType_Byte) {
            continue;
        }
        const auto type = static_cast<UaAutomationType>(arrayBit | pair.automationType);
        expectIncoming(type, 1, {pair.builtInType, OpcUa_VariantArrayType_Array});
        expectIncoming(type, 2, {pair.builtInType, OpcUa_VariantArrayType_Matrix});
        expectIncoming(type, 60, {pair.builtInType, OpcUa_VariantArrayType_Matrix});
        expectIncomingUnknown(type, 0);
        expectOutgoing({pair.builtInType, OpcUa_VariantArrayType_Array}, type);
        expectOutgoing({pair.builtInType, OpcUa_VariantArrayType_Matrix}, type);
    }
    expectIncoming(arrayBit | 6, 1, {OpcUaType_Double, OpcUa_VariantArrayType_Array});
    expectOutgoing({OpcUaType_Variant, OpcUa_VariantArrayType_Array}, arrayBit | 12);
}

TEST(UaAutomationType, what_has_no_counterpart_is_not_found)
{
    const auto isKnown = [](UaAutomationType type) {
        const auto matches = [type](const Pair& pair) { return pair.automationType == type; };
        return std::any_of(std::begin(bothWays), std::end(bothWays), matches) ||
               std::any_of(std::begin(incomingOnly), std::end(incomingOnly), matches);
    };
    for (UaAutomationType type = 0; type < 0x1FFF; ++type) {
        if (!isKnown(type)) {
            expectIncomingUnknown(type, 0);
            expectIncomingUnknown(static_cast<UaAutomationType>(type | arrayBit), 1);
        }
    }
    expectIncomingUnknown(arrayBit, 1);
    for (const OpcUa_Byte type : {OpcUaType_ExtensionObject, OpcUaType_DataValue,
                                  OpcUaType_DiagnosticInfo, OpcUa_Byte{26}, OpcUa_Byte{255}}) {
        for (OpcUa_Byte shape = 0; shape <= 2; ++shape) {
            expectOutgoingUnknown({type, shape});
        }
    }
    expectOutgoingUnknown({OpcUaType_Null, OpcUa_VariantArrayType_Array});
    expectOutgoingUnknown({OpcUaType_Int32, 3});
}

TEST(UaVariantException, has_an_always_empty_message)
{
    try {
        throw UaVariantException();
    } catch (const UaVariantException& exception) {
        EXPECT_TRUE(exception.message().isEmpty());
        EXPECT_STREQ(exception.what(), "");
    }
    EXPECT_THROW(throw UaVariantException(), std::exception);
}

} // namespace
