#pragma once

#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_variant.h"

#include <string_view>

class UaVariant;

/// Parts that the sources of UaVariant share.
namespace UaVariantParts {

[[nodiscard]] inline bool isScalar(const OpcUa_Variant& variant)
{
    return variant.ArrayType == OpcUa_VariantArrayType_Scalar;
}

[[nodiscard]] inline bool isScalarOf(const OpcUa_Variant& variant, OpcUa_Byte type)
{
    return isScalar(variant) && variant.Datatype == type;
}

[[nodiscard]] inline bool isArray(const OpcUa_Variant& variant)
{
    return variant.ArrayType == OpcUa_VariantArrayType_Array;
}

[[nodiscard]] inline bool isMatrix(const OpcUa_Variant& variant)
{
    return variant.ArrayType == OpcUa_VariantArrayType_Matrix;
}

/// The Null variant.
[[nodiscard]] inline OpcUa_Variant null()
{
    return OpcUa_Variant();
}

/// Number of elements of a matrix; 0 unless all dimensions are positive, and for none.
[[nodiscard]] OpcUa_Int32 matrixSize(const OpcUa_VariantMatrix& matrix);

/// The flat elements of an array or matrix; none for a scalar, and without a block none whatever the
/// count says.
struct Elements
{
    const void* block;
    OpcUa_Int32 count;
};
[[nodiscard]] Elements elementsOf(const OpcUa_Variant& variant);

/// The extension object that stands for the variant: a scalar, the only element of an array, the first
/// of a matrix. Null for anything else.
[[nodiscard]] const OpcUa_ExtensionObject* extensionObjectOf(const OpcUa_Variant& variant);

/// Clears the target and moves a value into it.
void moveTo(OpcUa_Variant& target, OpcUa_Variant& value);

/// The bytes of a string; none for null. The stack's plain texts in place of a record can't stand in a
/// variant.
[[nodiscard]] inline std::string_view viewOf(const OpcUa_String& string)
{
    return string.strContent == nullptr ? std::string_view()
                                        : std::string_view(string.strContent, string.uLength);
}

/// A string record over some bytes, without owning them.
[[nodiscard]] inline OpcUa_String borrow(std::string_view text)
{
    return {0, static_cast<OpcUa_UInt32>(text.size()), const_cast<char*>(text.data())};
}

/// The pointer of a scalar whose type is held behind one.
[[nodiscard]] const void* pointerOf(const OpcUa_Variant& variant);

/// A UaVariant is its record and nothing else, so it can be laid over one.
[[nodiscard]] inline const UaVariant& overlay(const OpcUa_Variant& variant)
{
    return reinterpret_cast<const UaVariant&>(variant);
}

} // namespace UaVariantParts
