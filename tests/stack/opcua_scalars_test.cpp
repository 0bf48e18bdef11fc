#include "stack/opcua_datetime.h"
#include "stack/opcua_scalars.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace {

template <typename T>
class FloatingScalars : public testing::Test
{
};
using FloatingTypes = testing::Types<OpcUa_Float, OpcUa_Double>;
TYPED_TEST_SUITE(FloatingScalars, FloatingTypes);

TYPED_TEST(FloatingScalars, compare)
{
    using Limits = std::numeric_limits<TypeParam>;
    constexpr TypeParam nan = Limits::quiet_NaN();
    constexpr TypeParam infinity = Limits::infinity();
    struct Row
    {
        const char* name;
        TypeParam left;
        TypeParam right;
        OpcUa_Int32 expected;
    };
    const std::array<Row, 14> rows = {{{"two NaNs", nan, nan, 0},
                                       {"two NaNs of other signs", nan, -nan, 0},
                                       {"NaN left", nan, 1, 1},
                                       {"NaN right", 1, nan, 1},
                                       {"NaN against infinity", nan, infinity, 1},
                                       {"infinity against NaN", infinity, nan, 1},
                                       {"equal", 2, 2, 0},
                                       {"less", 1, 2, -1},
                                       {"greater", 2, 1, 1},
                                       {"zeros of other signs", TypeParam(0), -TypeParam(0), 0},
                                       {"negative", -2, 1, -1},
                                       {"infinities", -infinity, infinity, -1},
                                       {"equal infinities", infinity, infinity, 0},
                                       {"smallest step", 1, 1 + Limits::epsilon(), -1}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(OpcUa_Scalar_Compare(&row.left, &row.right), row.expected);
    }
}

TEST(Scalars, float_and_double_have_their_own_names)
{
    const OpcUa_Float floatNan = std::numeric_limits<OpcUa_Float>::quiet_NaN();
    const OpcUa_Float otherFloatNan = floatNan;
    EXPECT_EQ(OpcUa_Float_Compare(&floatNan, &otherFloatNan), 0);
    const OpcUa_Double doubleNan = std::numeric_limits<OpcUa_Double>::quiet_NaN();
    const OpcUa_Double otherDoubleNan = doubleNan;
    EXPECT_EQ(OpcUa_Double_Compare(&doubleNan, &otherDoubleNan), 0);
}

TEST(Scalars, small_integers_compare_by_difference)
{
    const OpcUa_SByte sbyteLow = -128;
    const OpcUa_SByte sbyteHigh = 127;
    EXPECT_EQ(OpcUa_SByte_Compare(&sbyteLow, &sbyteHigh), -255);
    const OpcUa_Byte byteLow = 3;
    const OpcUa_Byte byteHigh = 250;
    EXPECT_EQ(OpcUa_Byte_Compare(&byteHigh, &byteLow), 247);
    const OpcUa_Int16 int16Low = -32768;
    const OpcUa_Int16 int16High = 32767;
    EXPECT_EQ(OpcUa_Int16_Compare(&int16Low, &int16High), -65535);
    const OpcUa_UInt16 uint16Low = 0;
    const OpcUa_UInt16 uint16High = 65535;
    EXPECT_EQ(OpcUa_UInt16_Compare(&uint16High, &uint16Low), 65535);
    const OpcUa_Boolean no = 0;
    const OpcUa_Boolean yes = 1;
    EXPECT_EQ(OpcUa_Boolean_Compare(&no, &yes), -1);
    const OpcUa_Int32 five = 5;
    const OpcUa_Int32 nine = 9;
    EXPECT_EQ(OpcUa_Int32_Compare(&five, &nine), -4);
    const OpcUa_StatusCode good = 0;
    const OpcUa_StatusCode status = 0x00A50000;
    EXPECT_EQ(OpcUa_StatusCode_Compare(&status, &good), 0x00A50000);
}

TEST(Scalars, difference_beyond_32_bits_keeps_its_sign)
{
    const OpcUa_Int32 low = std::numeric_limits<OpcUa_Int32>::min();
    const OpcUa_Int32 high = std::numeric_limits<OpcUa_Int32>::max();
    EXPECT_EQ(OpcUa_Int32_Compare(&low, &high), low);
    EXPECT_EQ(OpcUa_Int32_Compare(&high, &low), high);
    const OpcUa_UInt32 zero = 0;
    const OpcUa_UInt32 all = 0xFFFFFFFF;
    EXPECT_EQ(OpcUa_UInt32_Compare(&zero, &all), low);
    EXPECT_EQ(OpcUa_UInt32_Compare(&all, &zero), high);
}

TEST(Scalars, wide_values_compare_by_their_bytes_in_memory)
{
    // 256 has its only bit in the second byte, 1 in the first: in memory 1 is the larger one on a
    // little-endian machine and the smaller one on the other kind.
    const OpcUa_UInt64 one = 1;
    const OpcUa_UInt64 more = 256;
    const OpcUa_Int32 expected = std::memcmp(&one, &more, 8) < 0 ? -1 : 1;
    EXPECT_EQ(OpcUa_UInt64_Compare(&one, &more), expected);
    EXPECT_EQ(OpcUa_UInt64_Compare(&more, &one), -expected);
    const OpcUa_Int64 signedOne = 1;
    const OpcUa_Int64 signedMore = 256;
    EXPECT_EQ(OpcUa_Int64_Compare(&signedOne, &signedMore), expected);
    const OpcUa_DateTime early = {1, 0};
    const OpcUa_DateTime late = {0, 1};
    EXPECT_EQ(OpcUa_DateTime_Compare(&early, &late), 1);
    EXPECT_EQ(OpcUa_DateTime_Compare(&late, &early), -1);
    const OpcUa_DateTime sameAsEarly = early;
    EXPECT_EQ(OpcUa_DateTime_Compare(&early, &sameAsEarly), 0);
}

TEST(Scalars, pointers)
{
    OpcUa_Int32 value = 5;
    EXPECT_EQ(OpcUa_Int32_Compare(&value, nullptr), 1);
    EXPECT_EQ(OpcUa_Int32_Compare(nullptr, &value), -1);
    EXPECT_EQ(OpcUa_Int32_CopyTo(nullptr, &value), OpcUa_BadInvalidArgument);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(OpcUa_Int32_CopyTo(&value, nullptr), OpcUa_BadInvalidArgument);
    OpcUa_Int32_Initialize(nullptr);
    OpcUa_Int32_Clear(nullptr);
}

} // namespace
