#include "base/uavarianttexts.h"

#include "base/uaarraytext.h"
#include "base/uaguid.h"
#include "base/uastring.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"

namespace UaVariantTexts {

namespace {

using Converter = OpcUa_StatusCode (*)(std::string_view text, void* element);

/// The conversion of a scalar String variant, of which the text is borrowed.
template <typename T, OpcUa_StatusCode (UaVariant::*conversion)(T&) const>
OpcUa_StatusCode convertNumber(std::string_view text, void* element)
{
    OpcUa_Variant variant = UaVariantParts::null();
    variant.Datatype = OpcUaType_String;
    variant.Value.String = UaVariantParts::borrow(text);
    return (UaVariantParts::overlay(variant).*conversion)(*static_cast<T*>(element));
}

OpcUa_StatusCode convertString(std::string_view text, void* element)
{
    return OpcUa_String_AttachToString(text.data(), static_cast<OpcUa_UInt32>(text.size()), 0, true,
                                       true, static_cast<OpcUa_String*>(element));
}

OpcUa_StatusCode convertDateTime(std::string_view text, void* element)
{
    return UaArrayText_ReadDateTime(text, *static_cast<OpcUa_DateTime*>(element));
}

OpcUa_StatusCode convertGuid(std::string_view text, void* element)
{
    const UaString copy(text.data(), static_cast<OpcUa_Int64>(text.size()));
    if (copy.isNull()) {
        return OpcUa_BadOutOfMemory;
    }
    UaGuid guid;
    const OpcUa_StatusCode status = guid.fromString(copy);
    guid.copyTo(static_cast<OpcUa_Guid*>(element));
    return status;
}

/// By type number, from Boolean on.
constexpr Converter converters[] = {
    convertNumber<OpcUa_Boolean, &UaVariant::toBool>,
    convertNumber<OpcUa_SByte, &UaVariant::toSByte>,
    convertNumber<OpcUa_Byte, &UaVariant::toByte>,
    convertNumber<OpcUa_Int16, &UaVariant::toInt16>,
    convertNumber<OpcUa_UInt16, &UaVariant::toUInt16>,
    convertNumber<OpcUa_Int32, &UaVariant::toInt32>,
    convertNumber<OpcUa_UInt32, &UaVariant::toUInt32>,
    convertNumber<OpcUa_Int64, &UaVariant::toInt64>,
    convertNumber<OpcUa_UInt64, &UaVariant::toUInt64>,
    convertNumber<OpcUa_Float, &UaVariant::toFloat>,
    convertNumber<OpcUa_Double, &UaVariant::toDouble>,
    convertString,
    convertDateTime,
    convertGuid,
};

} // namespace

OpcUa_StatusCode convertOne(OpcUa_Byte type, std::string_view text, void* element)
{
    return converters[type - OpcUaType_Boolean](text, element);
}

} // namespace UaVariantTexts
