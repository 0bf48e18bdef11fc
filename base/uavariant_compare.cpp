#include "base/uadatavalue.h"
#include "base/uaexpandednodeid.h"
#include "base/uanodeid.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nesting.h"
#include "stack/opcua_qualifiedname.h"

#include <algorithm>
#include <array>
#include <cstring>

// Equality.

using namespace UaVariantParts;

namespace {

using ElementEqual = bool (*)(const void* left, const void* right);

template <typename T>
bool isEqualNumber(const void* left, const void* right)
{
    return *static_cast<const T*>(left) == *static_cast<const T*>(right);
}

/// Equality by what the type's compare answers.
template <auto& Compare, typename T>
bool isEqualByCompare(const void* left, const void* right)
{
    return Compare(static_cast<const T*>(left), static_cast<const T*>(right)) == 0;
}

bool isEqualDateTime(const void* left, const void* right)
{
    return OpcUa_DateTime_ToTicks(*static_cast<const OpcUa_DateTime*>(left)) ==
           OpcUa_DateTime_ToTicks(*static_cast<const OpcUa_DateTime*>(right));
}

bool isEqualGuid(const void* left, const void* right)
{
    return OpcUa_Guid_IsEqual(static_cast<const OpcUa_Guid*>(left),
                              static_cast<const OpcUa_Guid*>(right));
}

bool isEqualNodeId(const void* left, const void* right)
{
    return UaNodeId::isEqual(*static_cast<const OpcUa_NodeId*>(left),
                             *static_cast<const OpcUa_NodeId*>(right));
}

bool isEqualExpandedNodeId(const void* left, const void* right)
{
    return UaExpandedNodeId::isEqual(*static_cast<const OpcUa_ExpandedNodeId*>(left),
                                     *static_cast<const OpcUa_ExpandedNodeId*>(right));
}

bool isEqualDataValue(const void* left, const void* right)
{
    return UaDataValue::isEqual(*static_cast<const OpcUa_DataValue*>(left),
                                *static_cast<const OpcUa_DataValue*>(right), false);
}

bool isEqualVariant(const void* left, const void* right)
{
    return overlay(*static_cast<const OpcUa_Variant*>(left)) ==
           overlay(*static_cast<const OpcUa_Variant*>(right));
}

bool isEqualNull(const void* /*left*/, const void* /*right*/)
{
    return true;
}

/// By type number. Two NaNs differ here, other than in the compare of the stack.
constexpr std::array<ElementEqual, 26> equalByType = {
    isEqualNull,
    isEqualNumber<OpcUa_Boolean>,
    isEqualNumber<OpcUa_SByte>,
    isEqualNumber<OpcUa_Byte>,
    isEqualNumber<OpcUa_Int16>,
    isEqualNumber<OpcUa_UInt16>,
    isEqualNumber<OpcUa_Int32>,
    isEqualNumber<OpcUa_UInt32>,
    isEqualNumber<OpcUa_Int64>,
    isEqualNumber<OpcUa_UInt64>,
    isEqualNumber<OpcUa_Float>,
    isEqualNumber<OpcUa_Double>,
    isEqualByCompare<OpcUa_String_Compare, OpcUa_String>,
    isEqualDateTime,
    isEqualGuid,
    isEqualByCompare<OpcUa_ByteString_Compare, OpcUa_ByteString>,
    isEqualByCompare<OpcUa_ByteString_Compare, OpcUa_XmlElement>,
    isEqualNodeId,
    isEqualExpandedNodeId,
    isEqualNumber<OpcUa_StatusCode>,
    isEqualByCompare<OpcUa_QualifiedName_Compare, OpcUa_QualifiedName>,
    isEqualByCompare<OpcUa_LocalizedText_Compare, OpcUa_LocalizedText>,
    isEqualByCompare<OpcUa_ExtensionObject_Compare, OpcUa_ExtensionObject>,
    isEqualDataValue,
    isEqualVariant,
    isEqualByCompare<OpcUa_DiagnosticInfo_Compare, OpcUa_DiagnosticInfo>,
};

bool isEqualScalar(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    const ElementEqual isEqual = equalByType[left.Datatype];
    if (!OpcUa_BuiltInType_GetTraits(left.Datatype)->IsByPointer) {
        return isEqual(&left.Value, &right.Value);
    }
    const void* leftPointer = pointerOf(left);
    const void* rightPointer = pointerOf(right);
    return leftPointer == nullptr || rightPointer == nullptr ? leftPointer == rightPointer
                                                             : isEqual(leftPointer, rightPointer);
}

bool hasEqualBytes(OpcUa_Byte type, const void* left, const void* right, OpcUa_Int32 count)
{
    const std::size_t size = OpcUa_BuiltInType_GetTraits(type)->Size;
    return std::memcmp(left, right, static_cast<std::size_t>(count) * size) == 0;
}

/// True for types of which equal elements have equal bytes and the other way round.
bool isComparedAsBytes(OpcUa_Byte type)
{
    return OpcUa_BuiltInType_GetTraits(type)->IsPlain && type != OpcUaType_Float &&
           type != OpcUaType_Double;
}

bool areEqualElements(OpcUa_Byte type, const void* left, const void* right, OpcUa_Int32 count)
{
    if (isComparedAsBytes(type)) {
        return hasEqualBytes(type, left, right, count);
    }
    const std::size_t size = OpcUa_BuiltInType_GetTraits(type)->Size;
    const std::size_t end = static_cast<std::size_t>(count) * size;
    for (std::size_t offset = 0; offset < end; offset += size) {
        if (!equalByType[type](static_cast<const char*>(left) + offset,
                               static_cast<const char*>(right) + offset)) {
            return false;
        }
    }
    return true;
}

bool isEqualArray(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    if (left.Value.Array.Length != right.Value.Array.Length || left.Datatype == OpcUaType_Null) {
        return left.Value.Array.Length == right.Value.Array.Length;
    }
    if (left.Datatype > OpcUaType_Variant) {
        return false;
    }
    const Elements leftElements = elementsOf(left);
    const Elements rightElements = elementsOf(right);
    return leftElements.count == rightElements.count &&
           (leftElements.count == 0 || areEqualElements(left.Datatype, leftElements.block,
                                                        rightElements.block, leftElements.count));
}

bool hasEqualDimensions(const OpcUa_VariantMatrix& left, const OpcUa_VariantMatrix& right)
{
    if (left.NoOfDimensions != right.NoOfDimensions) {
        return false;
    }
    const OpcUa_Int32 leftCount = left.Dimensions == nullptr ? 0 : left.NoOfDimensions;
    const OpcUa_Int32 rightCount = right.Dimensions == nullptr ? 0 : right.NoOfDimensions;
    return std::equal(left.Dimensions, left.Dimensions + std::max(leftCount, 0), right.Dimensions,
                      right.Dimensions + std::max(rightCount, 0));
}

bool isEqualMatrix(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    if (!hasEqualDimensions(left.Value.Matrix, right.Value.Matrix)) {
        return false;
    }
    const Elements leftElements = elementsOf(left);
    const Elements rightElements = elementsOf(right);
    if (leftElements.count != rightElements.count || leftElements.count == 0) {
        return leftElements.count == rightElements.count;
    }
    // Matrices of equal bytes are equal, even where they hold NaN.
    return hasEqualBytes(left.Datatype, leftElements.block, rightElements.block,
                         leftElements.count) ||
           (left.Datatype <= OpcUaType_Variant &&
            areEqualElements(left.Datatype, leftElements.block, rightElements.block,
                             leftElements.count));
}

} // namespace

bool UaVariant::operator==(const UaVariant& other) const
{
    const OpcUa_Variant& left = m_variant;
    const OpcUa_Variant& right = other.m_variant;
    const OpcUa_NestingLevel level;
    if (left.Datatype != right.Datatype || left.ArrayType != right.ArrayType ||
        left.ArrayType > OpcUa_VariantArrayType_Matrix || left.Datatype >= equalByType.size() ||
        level.isTooDeep()) {
        return false;
    }
    if (::isArray(left)) {
        return isEqualArray(left, right);
    }
    return ::isMatrix(left) ? isEqualMatrix(left, right) : isEqualScalar(left, right);
}
