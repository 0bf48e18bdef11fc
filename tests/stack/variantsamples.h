#pragma once

#include "stack/opcua_variant.h"
#include "tests/stack/builtinsamples.h"

#include <array>
#include <vector>

/// A variant that clears itself.
class OwnedVariant
{
public:
    OwnedVariant() { OpcUa_Variant_Initialize(&m_variant); }
    ~OwnedVariant() { OpcUa_Variant_Clear(&m_variant); }
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;

    [[nodiscard]] OpcUa_Variant* get() { return &m_variant; }
    [[nodiscard]] OpcUa_Variant* operator->() { return &m_variant; }
    [[nodiscard]] OpcUa_Variant& operator*() { return m_variant; }

private:
    OpcUa_Variant m_variant{};
};

// Each of the following fills an initialised variant.

void makeScalar(OpcUa_Variant& variant, const BuiltInSample& sample);

/// All elements are filled by the sample's `fill`.
void makeArray(OpcUa_Variant& variant, const BuiltInSample& sample, OpcUa_Int32 length);

/// A matrix of empty elements; 0 elements leave out the block.
void makeMatrix(OpcUa_Variant& variant, OpcUa_Byte type, const std::vector<OpcUa_Int32>& dimensions,
                OpcUa_Int32 elementCount);

enum class VariantShape
{
    Scalar,
    Array,
    Matrix,
};
inline constexpr std::array<VariantShape, 3> allShapes = {VariantShape::Scalar, VariantShape::Array,
                                                          VariantShape::Matrix};

/// A filled scalar, an array of three or a matrix of 2 x 3.
void makeShape(OpcUa_Variant& variant, const BuiltInSample& sample, VariantShape shape);

enum class NestingKind
{
    ArrayOfVariants,
    ScalarVariant,
    DataValue,
    ExtensionObject,
    DiagnosticInfo,
};
inline constexpr std::array<NestingKind, 5> allNestingKinds = {
    NestingKind::ArrayOfVariants, NestingKind::ScalarVariant, NestingKind::DataValue,
    NestingKind::ExtensionObject, NestingKind::DiagnosticInfo};

/// Values inside each other from which a copy descends `levels` levels.
void makeNested(OpcUa_Variant& variant, NestingKind kind, OpcUa_UInt32 levels);
