#include "base/uavariant.h"
#include "platform/status.h"
#include "tests/base/variantarraymembers.h"
#include "tests/base/variantvalues.h"
#include "tests/stack/variantsamples.h"
#include "tests/support/allocationfaults.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <type_traits>
#include <utility>
#include <vector>

// Setters and getters of matrices, tried with every class and type.

namespace {

UaInt32Array sizes(const std::vector<OpcUa_Int32>& dimensions)
{
    return {static_cast<OpcUa_Int32>(dimensions.size()), dimensions.data()};
}

template <typename M>
class VariantMatrices : public testing::Test
{
protected:
    using FamilyMember = typename M::ArrayType;

    static const BuiltInSample& sample() { return builtInSamples()[M::Type - OpcUaType_Boolean]; }

    static FamilyMember filled(OpcUa_Int32 count = 6)
    {
        FamilyMember array;
        fillArray(sample(), count, array);
        return array;
    }

    static void expectMatrix(const UaVariant& variant, const UaInt32Array& dimensions)
    {
        const OpcUa_Variant& stack = *variant.toOpcUaVariant();
        EXPECT_EQ(stack.Datatype, M::Type);
        EXPECT_EQ(stack.ArrayType, OpcUa_VariantArrayType_Matrix);
        UaInt32Array found;
        variant.dimensions(found);
        EXPECT_EQ(found, dimensions);
    }

    static const void* block(const UaVariant& variant)
    {
        return variant.toOpcUaVariant()->Value.Matrix.Elements;
    }
};

template <typename Types>
struct WithoutDataValue;

template <typename... Ms>
struct WithoutDataValue<testing::Types<Ms...>>
{
    template <typename... Kept>
    struct List
    {
        template <typename M>
        using Add =
            std::conditional_t<M::Type == OpcUaType_DataValue, List<Kept...>, List<Kept..., M>>;
        using Types = testing::Types<Kept...>;
    };

    template <typename Result, typename... Rest>
    struct Filter
    {
        using Types = typename Result::Types;
    };

    template <typename Result, typename First, typename... Rest>
    struct Filter<Result, First, Rest...> : Filter<typename Result::template Add<First>, Rest...>
    {
    };

    using Types = typename Filter<List<>, Ms...>::Types;
};

TYPED_TEST_SUITE(VariantMatrices, WithoutDataValue<VariantArrayMembers>::Types);

TYPED_TEST(VariantMatrices, setter_copies_elements_and_dimensions_and_getter_gives_them_back)
{
    using Array = typename TypeParam::ArrayType;
    const Array source = this->filled();
    const UaInt32Array dimensions = sizes({2, 3});
    UaVariant variant = text("old");
    EXPECT_EQ((variant.*TypeParam::CopyMatrix)(source, dimensions), OpcUa_Good);
    this->expectMatrix(variant, dimensions);
    EXPECT_NE(this->block(variant), blockOf(source));
    EXPECT_NE(variant.toOpcUaVariant()->Value.Matrix.Dimensions, dimensions.rawArray());
    Array back = this->filled(1);
    UaInt32Array backDimensions;
    EXPECT_EQ((variant.*TypeParam::GetMatrix)(back, backDimensions), OpcUa_Good);
    EXPECT_EQ(back, source);
    EXPECT_EQ(backDimensions, dimensions);
}

TYPED_TEST(VariantMatrices, detach_moves_the_block_and_copies_the_dimensions)
{
    using Array = typename TypeParam::ArrayType;
    if constexpr (UaVariantDetachableSource<Array>) {
        Array source = this->filled();
        const UaInt32Array dimensions = sizes({3, 2});
        UaVariant variant = text("old");
        EXPECT_EQ((variant.*TypeParam::DetachMatrix)(source, dimensions, false), OpcUa_Good);
        this->expectMatrix(variant, dimensions);
        EXPECT_EQ(source, this->filled()) << "without the flag it copies";
        const void* block = blockOf(source);
        EXPECT_EQ((variant.*TypeParam::DetachMatrix)(source, dimensions, true), OpcUa_Good);
        this->expectMatrix(variant, dimensions);
        EXPECT_EQ(this->block(variant), block);
        EXPECT_EQ(source, Array());
    } else {
        SUCCEED() << "this class is always copied";
    }
}

TYPED_TEST(VariantMatrices, refused_dimensions_leave_variant_and_array)
{
    using Array = typename TypeParam::ArrayType;
    Array source = this->filled();
    UaVariant variant = text("old");
    EXPECT_EQ(nameOf((variant.*TypeParam::CopyMatrix)(source, sizes({2, 2}))),
              "BadInvalidArgument");
    if constexpr (UaVariantDetachableSource<Array>) {
        EXPECT_EQ(nameOf((variant.*TypeParam::DetachMatrix)(source, sizes({7}), true)),
                  "BadInvalidArgument");
    }
    EXPECT_EQ(textOf(variant.toString()), "old");
    EXPECT_EQ(source, this->filled());
}

TYPED_TEST(VariantMatrices, null_variant_gives_empty_elements_and_dimensions)
{
    typename TypeParam::ArrayType array = this->filled();
    UaInt32Array dimensions = sizes({2, 3});
    EXPECT_EQ((UaVariant().*TypeParam::GetMatrix)(array, dimensions), OpcUa_Good);
    EXPECT_EQ(lengthOf(array), 0);
    EXPECT_EQ(dimensions.length(), 0);
}

TYPED_TEST(VariantMatrices, matrices_without_elements_come_back_empty)
{
    using Array = typename TypeParam::ArrayType;
    const std::vector<std::vector<OpcUa_Int32>> rows = {{}, {0}, {0, 0}, {-1}, {-1, -1}};
    for (const std::vector<OpcUa_Int32>& row : rows) {
        UaVariant variant;
        EXPECT_EQ((variant.*TypeParam::CopyMatrix)(Array(), sizes(row)), OpcUa_Good);
        this->expectMatrix(variant, sizes(row));
        Array array = this->filled();
        UaInt32Array dimensions = sizes({2, 3});
        EXPECT_EQ((variant.*TypeParam::GetMatrix)(array, dimensions), OpcUa_Good);
        EXPECT_EQ(lengthOf(array), 0);
        EXPECT_EQ(dimensions, sizes(row));
    }
}

TYPED_TEST(VariantMatrices, everything_else_is_a_type_mismatch)
{
    typename TypeParam::ArrayType array = this->filled();
    UaInt32Array dimensions = sizes({2, 3});
    for (const BuiltInSample& sample : builtInSamples()) {
        for (const VariantShape shape : allShapes) {
            if (sample.type == TypeParam::Type && shape == VariantShape::Matrix) {
                continue;
            }
            OwnedVariant stack;
            makeShape(*stack, sample, shape);
            UaVariant variant;
            variant.attach(*stack);
            EXPECT_EQ(nameOf((variant.*TypeParam::GetMatrix)(array, dimensions)), "BadTypeMismatch")
                << sample;
        }
    }
    EXPECT_EQ(array, this->filled()) << "a failure leaves the targets";
    EXPECT_EQ(dimensions, sizes({2, 3}));
}

TYPED_TEST(VariantMatrices, missing_blocks_are_a_type_mismatch)
{
    typename TypeParam::ArrayType array;
    UaInt32Array dimensions;
    OpcUa_Variant stack{};
    stack.Datatype = TypeParam::Type;
    stack.ArrayType = OpcUa_VariantArrayType_Matrix;
    stack.Value.Matrix = {2, nullptr, nullptr};
    const auto& variant = reinterpret_cast<const UaVariant&>(stack);
    EXPECT_EQ(nameOf((variant.*TypeParam::GetMatrix)(array, dimensions)), "BadTypeMismatch");
    UaInt32Array counts = sizes({2, 2});
    stack.Value.Matrix.Dimensions = counts.rawArray();
    EXPECT_EQ(nameOf((variant.*TypeParam::GetMatrix)(array, dimensions)), "BadTypeMismatch");
}

TYPED_TEST(VariantMatrices, every_failed_allocation_leaves_the_targets)
{
    using Array = typename TypeParam::ArrayType;
    const Array source = this->filled();
    const UaInt32Array dimensions = sizes({2, 3});
    UaVariant variant = text("old");
    const auto verifySetter = [&](OpcUa_StatusCode status) {
        EXPECT_EQ(nameOf(status), "BadOutOfMemory");
        EXPECT_EQ(textOf(variant.toString()), "old");
    };
    EXPECT_GE(
        forEveryFailingAllocation(
            [&] { return (variant.*TypeParam::CopyMatrix)(source, dimensions); }, verifySetter),
        2u);
    Array target = this->filled(1);
    UaInt32Array targetDimensions = sizes({9});
    EXPECT_GE(forEveryFailingAllocation(
                  [&] { return (variant.*TypeParam::GetMatrix)(target, targetDimensions); },
                  [&](OpcUa_StatusCode status) {
                      EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                      EXPECT_EQ(target, this->filled(1));
                      EXPECT_EQ(targetDimensions, sizes({9}));
                  }),
              2u);
    if constexpr (UaVariantDetachableSource<Array>) {
        Array moved = this->filled();
        UaVariant taker = text("old");
        EXPECT_EQ(forEveryFailingAllocation(
                      [&] { return (taker.*TypeParam::DetachMatrix)(moved, dimensions, true); },
                      [&](OpcUa_StatusCode status) {
                          EXPECT_EQ(nameOf(status), "BadOutOfMemory");
                          EXPECT_EQ(textOf(taker.toString()), "old");
                          EXPECT_EQ(moved, this->filled());
                      }),
                  1u);
    }
}

struct DimensionRow
{
    const char* name;
    std::vector<OpcUa_Int32> dimensions;
    OpcUa_Int32 elementCount;
    bool isAccepted;
};

std::ostream& operator<<(std::ostream& stream, const DimensionRow& row)
{
    return stream << row.name;
}

class MatrixDimensions : public testing::TestWithParam<DimensionRow>
{
};

constexpr OpcUa_Int32 largest = std::numeric_limits<OpcUa_Int32>::max();
constexpr OpcUa_Int32 smallest = std::numeric_limits<OpcUa_Int32>::min();

INSTANTIATE_TEST_SUITE_P(
    Rows, MatrixDimensions,
    testing::Values(DimensionRow{"none_with_no_elements", {}, 0, true},
                    DimensionRow{"none_with_elements", {}, 1, false},
                    DimensionRow{"one_positive", {4}, 4, true},
                    DimensionRow{"three_positive", {2, 1, 3}, 6, true},
                    DimensionRow{"too_few_elements", {2, 3}, 5, false},
                    DimensionRow{"too_many_elements", {2, 3}, 7, false},
                    DimensionRow{"all_zero", {0, 0}, 0, true},
                    DimensionRow{"all_zero_with_elements", {0, 0}, 1, false},
                    DimensionRow{"all_unknown", {-1, -1}, 0, true},
                    DimensionRow{"all_unknown_with_elements", {-1, -1}, 1, false},
                    DimensionRow{"one_zero", {0}, 0, true},
                    DimensionRow{"one_unknown", {-1}, 0, true},
                    DimensionRow{"zero_after_positive", {2, 0}, 0, false},
                    DimensionRow{"zero_after_positive_with_elements", {2, 0}, 2, false},
                    DimensionRow{"unknown_after_positive", {2, -1}, 2, false},
                    DimensionRow{"positive_after_zero", {0, 2}, 0, false},
                    DimensionRow{"unknown_after_zero", {0, -1}, 0, false},
                    DimensionRow{"positive_after_unknown", {-1, 2}, 0, false},
                    DimensionRow{"zero_after_unknown", {-1, 0}, 0, false},
                    DimensionRow{"below_unknown", {-2}, 0, false},
                    DimensionRow{"below_unknown_twice", {-2, -2}, 4, false},
                    DimensionRow{"smallest", {smallest}, 0, false},
                    DimensionRow{"product_of_31_bits", {largest, 1}, 6, false},
                    DimensionRow{"product_of_32_bits", {65536, 32768}, 0, false},
                    DimensionRow{"product_of_32_bits_that_wraps", {65536, 65536}, 0, false},
                    DimensionRow{"product_of_64_bits", {largest, largest}, 1, false},
                    DimensionRow{"product_beyond_64_bits", {largest, largest, largest}, 1, false},
                    DimensionRow{
                        "product_that_wraps_to_the_count", {65536, 65536, 1, 4}, 4, false}),
    [](const testing::TestParamInfo<DimensionRow>& row) { return row.param.name; });

TEST_P(MatrixDimensions, are_checked)
{
    const DimensionRow& row = GetParam();
    UaByteArray elements;
    ASSERT_TRUE(elements.resize(row.elementCount));
    UaVariant variant;
    EXPECT_EQ(nameOf(variant.setByteMatrix(elements, sizes(row.dimensions))),
              row.isAccepted ? "Good" : "BadInvalidArgument");
    EXPECT_EQ(variant.isMatrix(), row.isAccepted);
    UaVariant other;
    EXPECT_EQ(OpcUa_IsGood(other.setByteMatrix(elements, sizes(row.dimensions), true)),
              row.isAccepted);
    EXPECT_EQ(elements.size(), row.isAccepted ? 0 : row.elementCount);
}

} // namespace
