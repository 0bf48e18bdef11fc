#include "base/uavariant.h"
#include "base/uavariantparts.h"

#include <functional>
#include <utility>

// Order, and the common type of two numbers.

using namespace UaVariantParts;

namespace {

/// UaString's order for records: the shorter first, then OpcUa_String_StrnCmp.
bool isLess(const OpcUa_String& left, const OpcUa_String& right)
{
    const std::string_view leftText = viewOf(left);
    const std::string_view rightText = viewOf(right);
    return leftText.size() != rightText.size() ? leftText.size() < rightText.size()
                                               : OpcUa_String_Compare(&left, &right) < 0;
}

/// Applies a comparison to two scalars of one type; false for a type without an order. Strings are
/// told by `stringResult`.
template <typename Comparison>
bool compareScalars(const OpcUa_Variant& left, const OpcUa_Variant& right, Comparison holds,
                    bool stringResult)
{
    const OpcUa_VariantValue& a = left.Value;
    const OpcUa_VariantValue& b = right.Value;
    switch (left.Datatype) {
    case OpcUaType_Boolean:
        return holds(a.Boolean, b.Boolean);
    case OpcUaType_SByte:
        return holds(a.SByte, b.SByte);
    case OpcUaType_Byte:
        return holds(a.Byte, b.Byte);
    case OpcUaType_Int16:
        return holds(a.Int16, b.Int16);
    case OpcUaType_UInt16:
        return holds(a.UInt16, b.UInt16);
    case OpcUaType_Int32:
        return holds(a.Int32, b.Int32);
    case OpcUaType_UInt32:
        return holds(a.UInt32, b.UInt32);
    case OpcUaType_Int64:
        return holds(a.Int64, b.Int64);
    case OpcUaType_UInt64:
        return holds(a.UInt64, b.UInt64);
    case OpcUaType_Float:
        return holds(a.Float, b.Float);
    case OpcUaType_Double:
        return holds(a.Double, b.Double);
    case OpcUaType_String:
        return stringResult;
    case OpcUaType_DateTime:
        return holds(OpcUa_DateTime_ToTicks(a.DateTime), OpcUa_DateTime_ToTicks(b.DateTime));
    case OpcUaType_StatusCode:
        return holds(a.StatusCode, b.StatusCode);
    default:
        return false;
    }
}

bool areComparable(const OpcUa_Variant& left, const OpcUa_Variant& right)
{
    return isScalar(left) && isScalar(right) && left.Datatype == right.Datatype;
}

bool areStrings(const OpcUa_Variant& left)
{
    return left.Datatype == OpcUaType_String;
}

bool isNumber(const OpcUa_Variant& variant)
{
    return isScalar(variant) && variant.Datatype >= OpcUaType_Boolean &&
           variant.Datatype <= OpcUaType_Double;
}

bool isUnsigned(OpcUa_Byte type)
{
    return type == OpcUaType_Boolean || type == OpcUaType_Byte || type == OpcUaType_UInt16 ||
           type == OpcUaType_UInt32 || type == OpcUaType_UInt64;
}

bool isFloating(OpcUa_Byte type)
{
    return type == OpcUaType_Float || type == OpcUaType_Double;
}

OpcUa_Byte commonType(OpcUa_Byte left, OpcUa_Byte right)
{
    if (isUnsigned(left) && isUnsigned(right)) {
        return OpcUaType_UInt64;
    }
    return isFloating(left) || isFloating(right) ? OpcUaType_Double : OpcUaType_Int64;
}

} // namespace

bool UaVariant::operator>=(const UaVariant& other) const
{
    const OpcUa_Variant& left = m_variant;
    const OpcUa_Variant& right = other.m_variant;
    if (!areComparable(left, right)) {
        return false;
    }
    const bool stringResult = areStrings(left) && !isLess(left.Value.String, right.Value.String);
    return compareScalars(left, right, std::greater_equal<>(), stringResult);
}

bool UaVariant::operator<=(const UaVariant& other) const
{
    const OpcUa_Variant& left = m_variant;
    const OpcUa_Variant& right = other.m_variant;
    if (!areComparable(left, right)) {
        return false;
    }
    const bool stringResult =
        areStrings(left) && (isLess(left.Value.String, right.Value.String) ||
                             viewOf(left.Value.String) == viewOf(right.Value.String));
    return compareScalars(left, right, std::less_equal<>(), stringResult);
}

OpcUa_StatusCode UaVariant::adjustTypes(UaVariant& left, UaVariant& right, bool bExact)
{
    const OpcUa_Byte leftType = left.type();
    const OpcUa_Byte rightType = right.type();
    const bool areAlike = bExact && leftType == rightType;
    if (areAlike || !isNumber(left.m_variant) || !isNumber(right.m_variant)) {
        return OpcUa_Good;
    }
    const OpcUa_Byte target = commonType(leftType, rightType);
    UaVariant changedLeft(left);
    UaVariant changedRight(right);
    OpcUa_StatusCode status = changedLeft.changeType(target, false);
    if (OpcUa_IsGood(status)) {
        status = changedRight.changeType(target, false);
    }
    if (OpcUa_IsGood(status)) {
        left = std::move(changedLeft);
        right = std::move(changedRight);
    }
    return status;
}
