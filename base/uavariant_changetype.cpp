#include "base/uaarraytext.h"
#include "base/uabuiltinarray.h"
#include "base/uabytearray.h"
#include "base/uabytestring.h"
#include "base/uadatetime.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"
#include "base/uavarianttexts.h"

// Change of a variant's type in place.

using namespace UaVariantParts;

namespace {

/// The types that texts are converted to, element by element.
bool isElementTarget(OpcUa_Byte type)
{
    return (type >= OpcUaType_Boolean && type <= OpcUaType_Double) || type == OpcUaType_DateTime;
}

/// Converts by a getter and stores by the setter beside it; a failure leaves the variant.
template <typename T, typename Stored>
OpcUa_StatusCode convert(UaVariant& variant, OpcUa_StatusCode (UaVariant::*getter)(T&) const,
                         void (UaVariant::*setter)(Stored))
{
    T value{};
    const OpcUa_StatusCode status = (variant.*getter)(value);
    if (OpcUa_IsGood(status)) {
        (variant.*setter)(value);
    }
    return status;
}

/// True for values that always have a text, so that a null text tells of a lack of memory.
bool hasText(OpcUa_Byte type)
{
    return type <= OpcUaType_Double || type == OpcUaType_StatusCode || type == OpcUaType_ByteString;
}

OpcUa_StatusCode changeToString(UaVariant& variant)
{
    UaString text = variant.toString();
    if (text.isNull() && hasText(variant.type())) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_Variant changed = null();
    const OpcUa_StatusCode status = text.detach(&changed.Value.String);
    if (OpcUa_IsGood(status)) {
        changed.Datatype = OpcUaType_String;
        variant.attach(changed);
    }
    return status;
}

OpcUa_StatusCode changeToByteString(UaVariant& variant)
{
    UaByteString bytes;
    const OpcUa_StatusCode status = variant.toByteString(bytes);
    if (OpcUa_IsGood(status)) {
        variant.setByteString(bytes, true);
    }
    return status;
}

OpcUa_StatusCode changeScalar(UaVariant& variant, OpcUa_Byte target)
{
    switch (target) {
    case OpcUaType_Boolean:
        return convert(variant, &UaVariant::toBool, &UaVariant::setBool);
    case OpcUaType_SByte:
        return convert(variant, &UaVariant::toSByte, &UaVariant::setSByte);
    case OpcUaType_Byte:
        return convert(variant, &UaVariant::toByte, &UaVariant::setByte);
    case OpcUaType_Int16:
        return convert(variant, &UaVariant::toInt16, &UaVariant::setInt16);
    case OpcUaType_UInt16:
        return convert(variant, &UaVariant::toUInt16, &UaVariant::setUInt16);
    case OpcUaType_Int32:
        return convert(variant, &UaVariant::toInt32, &UaVariant::setInt32);
    case OpcUaType_UInt32:
        return convert(variant, &UaVariant::toUInt32, &UaVariant::setUInt32);
    case OpcUaType_Int64:
        return convert(variant, &UaVariant::toInt64, &UaVariant::setInt64);
    case OpcUaType_UInt64:
        return convert(variant, &UaVariant::toUInt64, &UaVariant::setUInt64);
    case OpcUaType_Float:
        return convert(variant, &UaVariant::toFloat, &UaVariant::setFloat);
    case OpcUaType_Double:
        return convert(variant, &UaVariant::toDouble, &UaVariant::setDouble);
    case OpcUaType_String:
        return changeToString(variant);
    case OpcUaType_DateTime:
        return convert(variant, &UaVariant::toDateTime, &UaVariant::setDateTime);
    case OpcUaType_ByteString:
        return changeToByteString(variant);
    default:
        return OpcUa_BadTypeMismatch;
    }
}

/// Brings a flat block into the variant as an array.
void storeArray(UaVariant& variant, OpcUa_Byte type, OpcUa_Int32 length, void* elements)
{
    OpcUa_Variant array = null();
    UaBuiltInArray_MoveToVariant(type, length, elements, array);
    variant.attach(array);
}

/// A String array element by element; every other array stays as it is, which counts as Good.
OpcUa_StatusCode changeArray(UaVariant& variant, OpcUa_Byte target)
{
    if (variant.type() != OpcUaType_String) {
        return OpcUa_Good;
    }
    if (!isElementTarget(target)) {
        return OpcUa_BadTypeMismatch;
    }
    const Elements elements = elementsOf(*variant.toOpcUaVariant());
    const auto* text = static_cast<const OpcUa_String*>(elements.block);
    void* block = nullptr;
    const OpcUa_StatusCode status = UaVariantTexts::convert(
        target, elements.count, [&text] { return viewOf(*text++); }, &block);
    if (OpcUa_IsGood(status)) {
        storeArray(variant, target, elements.count, block);
    }
    return status;
}

/// A scalar String as the text form of an array.
OpcUa_StatusCode readArray(UaVariant& variant, OpcUa_Byte target)
{
    UaArrayText text;
    OpcUa_StatusCode status = text.open(viewOf(variant.toOpcUaVariant()->Value.String));
    if (OpcUa_IsBad(status)) {
        return status;
    }
    UaArrayText::Reader reader(text);
    void* block = nullptr;
    status = UaVariantTexts::convert(
        target, text.count(), [&reader] { return reader.next(); }, &block);
    if (OpcUa_IsGood(status)) {
        storeArray(variant, target, text.count(), block);
    }
    return status;
}

OpcUa_StatusCode changeToByteArray(UaVariant& variant)
{
    UaByteArray array;
    const OpcUa_StatusCode status = variant.toByteArray(array);
    if (OpcUa_IsGood(status)) {
        variant.setByteArray(array, true);
    }
    return status;
}

OpcUa_StatusCode changeScalarToArray(UaVariant& variant, OpcUa_Byte target)
{
    if (variant.type() == OpcUaType_ByteString && target == OpcUaType_Byte) {
        return changeToByteArray(variant);
    }
    const bool isText = variant.type() == OpcUaType_String && isElementTarget(target);
    return isText ? readArray(variant, target) : OpcUa_BadTypeMismatch;
}

OpcUa_StatusCode changeArrayToScalar(UaVariant& variant, OpcUa_Byte target)
{
    const bool isBytes = variant.type() == OpcUaType_Byte && target == OpcUaType_ByteString;
    return isBytes && OpcUa_IsGood(changeToByteString(variant)) ? OpcUa_Good
                                                                : OpcUa_BadTypeMismatch;
}

/// The target is the type that the variant has.
OpcUa_StatusCode changeShape(UaVariant& variant, bool bToArray)
{
    if (variant.isArray()) {
        return bToArray ? OpcUa_Good : OpcUa_BadTypeMismatch;
    }
    if (!bToArray) {
        return OpcUa_Good;
    }
    return variant.type() == OpcUaType_String ? readArray(variant, OpcUaType_String)
                                              : OpcUa_BadOutOfRange;
}

} // namespace

OpcUa_StatusCode UaVariant::changeType(OpcUa_Byte targetType, bool bToArray)
{
    if (::isMatrix(m_variant) || isEmpty()) {
        return OpcUa_BadTypeMismatch;
    }
    if (targetType == m_variant.Datatype) {
        return changeShape(*this, bToArray);
    }
    if (::isArray(m_variant)) {
        return bToArray ? changeArray(*this, targetType) : changeArrayToScalar(*this, targetType);
    }
    return bToArray ? changeScalarToArray(*this, targetType) : changeScalar(*this, targetType);
}
