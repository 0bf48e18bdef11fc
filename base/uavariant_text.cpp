#include "base/hexadecimal.h"
#include "base/uadatetime.h"
#include "base/ualocalizedtext.h"
#include "base/uanodeid.h"
#include "base/uaqualifiedname.h"
#include "base/uastatuscode.h"
#include "base/uavariant.h"
#include "base/uavariantparts.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_qualifiedname.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

// Text forms.

using namespace UaVariantParts;

namespace {

constexpr int FloatDigits = 6;
constexpr int DoubleDigits = 12;

UaString toText(std::string_view text)
{
    return {text.data(), static_cast<OpcUa_Int64>(text.size())};
}

std::string_view upToNul(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

std::string_view truthText(OpcUa_Boolean value)
{
    return value != OpcUa_False ? "true" : "false";
}

/// Room for the text of any number, date or guid with its NUL.
using NumberBuffer = std::array<char, 48>;

template <typename Integer>
std::string_view print(NumberBuffer& buffer, Integer value)
{
    const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

/// As "%.6g" and "%.12g" print it.
template <typename Floating>
std::string_view print(NumberBuffer& buffer, Floating value, int digits)
{
    const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                    std::chars_format::general, digits)
                          .ptr;
    return {buffer.data(), static_cast<std::size_t>(end - buffer.data())};
}

/// An array's text grows here. It behaves like a buffer of 256 bytes, zeroed, into which the older
/// Windows runtime prints each element with "%...,": an element larger than the room that is left is
/// cut and gives a negative count, one that fills the room exactly is written whole but without a NUL
/// and gives the size of the room. Both of them end the text.
class ArrayTextBuffer
{
public:
    static constexpr std::size_t Size = 256;

    ArrayTextBuffer() { m_text[0] = '{'; }

    /// Adds an element made of three pieces, which together end in a comma. False when it didn't fit
    /// with a byte to spare.
    bool add(std::string_view opening, std::string_view value, std::string_view closing)
    {
        const std::size_t room = LastByte - m_length;
        const std::size_t size = opening.size() + value.size() + closing.size();
        for (const std::string_view piece : {opening, value, closing}) {
            const std::size_t taken = std::min(piece.size(), LastByte - m_length);
            std::copy_n(piece.data(), taken, m_text.data() + m_length);
            m_length += taken;
        }
        m_isCut = size > room;
        return size < room;
    }

    [[nodiscard]] std::string_view finish()
    {
        if (m_length == 1) {
            return "{}";
        }
        // A text that fits, and one that fills the room exactly, ends in a comma.
        if (m_isCut) {
            std::fill_n(m_text.data() + LastByte - 3, 3, '.');
        } else {
            m_text[m_length - 1] = '}';
        }
        return {m_text.data(), m_length};
    }

private:
    static constexpr std::size_t LastByte = Size - 1;

    std::array<char, Size> m_text;
    std::size_t m_length = 1;
    bool m_isCut = false;
};

/// Adds the elements one after another until one doesn't fit; `printValue` gives the text of one, which
/// may lie in the buffer that it gets.
template <typename T, typename PrintValue>
std::string_view printElements(const Elements& elements, ArrayTextBuffer& text,
                               std::string_view quote, PrintValue printValue)
{
    const std::string_view closing = quote.empty() ? "," : "',";
    const auto* element = static_cast<const T*>(elements.block);
    NumberBuffer buffer;
    for (OpcUa_Int32 i = 0; i < elements.count; ++i) {
        if (!text.add(quote, printValue(buffer, element[i]), closing)) {
            break;
        }
    }
    return text.finish();
}

template <typename Integer>
std::string_view printIntegers(const Elements& elements, ArrayTextBuffer& text)
{
    return printElements<Integer>(elements, text, "", [](NumberBuffer& buffer, Integer value) {
        return print(buffer, value);
    });
}

template <typename Floating>
std::string_view printFloatings(const Elements& elements, ArrayTextBuffer& text, int digits)
{
    return printElements<Floating>(
        elements, text, "",
        [digits](NumberBuffer& buffer, Floating value) { return print(buffer, value, digits); });
}

std::string_view printTruths(const Elements& elements, ArrayTextBuffer& text)
{
    return printElements<OpcUa_Boolean>(
        elements, text, "",
        [](NumberBuffer& /*buffer*/, OpcUa_Boolean value) { return truthText(value); });
}

std::string_view printStrings(const Elements& elements, ArrayTextBuffer& text)
{
    return printElements<OpcUa_String>(
        elements, text, "'", [](NumberBuffer& /*buffer*/, const OpcUa_String& value) {
            return upToNul(viewOf(value).substr(0, ArrayTextBuffer::Size));
        });
}

std::string_view printDateTimes(const Elements& elements, ArrayTextBuffer& text)
{
    return printElements<OpcUa_DateTime>(
        elements, text, "'", [](NumberBuffer& buffer, OpcUa_DateTime value) {
            // A time behind the last year that has a text shows as an empty one.
            static_cast<void>(OpcUa_DateTime_GetStringFromDateTime(
                value, buffer.data(), static_cast<OpcUa_UInt32>(buffer.size())));
            return std::string_view(buffer.data());
        });
}

std::string_view printGuids(const Elements& elements, ArrayTextBuffer& text)
{
    return printElements<OpcUa_Guid>(
        elements, text, "'", [](NumberBuffer& buffer, const OpcUa_Guid& value) {
            static_cast<void>(OpcUa_Guid_ToString(&value, buffer.data(),
                                                  static_cast<OpcUa_UInt32>(buffer.size())));
            return std::string_view(buffer.data());
        });
}

UaString arrayText(const OpcUa_Variant& variant)
{
    const Elements elements = elementsOf(variant);
    ArrayTextBuffer text;
    switch (variant.Datatype) {
    case OpcUaType_Null:
        return "{}";
    case OpcUaType_Boolean:
        return toText(printTruths(elements, text));
    case OpcUaType_SByte:
        return toText(printIntegers<OpcUa_SByte>(elements, text));
    case OpcUaType_Byte:
        return toText(printIntegers<OpcUa_Byte>(elements, text));
    case OpcUaType_Int16:
        return toText(printIntegers<OpcUa_Int16>(elements, text));
    case OpcUaType_UInt16:
        return toText(printIntegers<OpcUa_UInt16>(elements, text));
    case OpcUaType_Int32:
        return toText(printIntegers<OpcUa_Int32>(elements, text));
    case OpcUaType_UInt32:
        return toText(printIntegers<OpcUa_UInt32>(elements, text));
    case OpcUaType_Int64:
        return toText(printIntegers<OpcUa_Int64>(elements, text));
    case OpcUaType_UInt64:
        return toText(printIntegers<OpcUa_UInt64>(elements, text));
    case OpcUaType_Float:
        return toText(printFloatings<OpcUa_Float>(elements, text, FloatDigits));
    case OpcUaType_Double:
        return toText(printFloatings<OpcUa_Double>(elements, text, DoubleDigits));
    case OpcUaType_String:
        return toText(printStrings(elements, text));
    case OpcUaType_DateTime:
        return toText(printDateTimes(elements, text));
    case OpcUaType_Guid:
        return toText(printGuids(elements, text));
    default:
        return "This array type cannot be displayed";
    }
}

template <typename Integer>
UaString integerText(Integer value)
{
    NumberBuffer buffer;
    return toText(print(buffer, value));
}

template <typename Floating>
UaString floatingText(Floating value, int digits)
{
    NumberBuffer buffer;
    return toText(print(buffer, value, digits));
}

UaString xmlText(const OpcUa_XmlElement& element)
{
    if (element.Length < 1 || element.Data == nullptr) {
        return {};
    }
    return toText(upToNul(
        {reinterpret_cast<const char*>(element.Data), static_cast<std::size_t>(element.Length)}));
}

UaString bytesText(const OpcUa_ByteString& bytes)
{
    const OpcUa_Int32 length = bytes.Data == nullptr ? 0 : std::max(bytes.Length, 0);
    return UaHexadecimal::encode(bytes.Data, static_cast<std::size_t>(length), true);
}

UaString guidText(const OpcUa_Guid& guid)
{
    NumberBuffer buffer;
    static_cast<void>(
        OpcUa_Guid_ToString(&guid, buffer.data(), static_cast<OpcUa_UInt32>(buffer.size())));
    return buffer.data();
}

/// The text of a scalar that lies behind a pointer; null for a null pointer.
UaString textBehind(const OpcUa_Variant& variant)
{
    const OpcUa_VariantValue& value = variant.Value;
    if (pointerOf(variant) == nullptr) {
        return {};
    }
    switch (variant.Datatype) {
    case OpcUaType_Guid:
        return guidText(*value.Guid);
    case OpcUaType_NodeId:
        return UaNodeId::toString(*value.NodeId);
    case OpcUaType_ExpandedNodeId:
        return UaNodeId::toString(value.ExpandedNodeId->NodeId);
    case OpcUaType_QualifiedName:
        return UaString(&value.QualifiedName->Name);
    default:
        return UaString(&value.LocalizedText->Text);
    }
}

UaString numberText(const OpcUa_Variant& variant)
{
    const OpcUa_VariantValue& value = variant.Value;
    switch (variant.Datatype) {
    case OpcUaType_Boolean:
        return toText(truthText(value.Boolean));
    case OpcUaType_SByte:
        return integerText(value.SByte);
    case OpcUaType_Byte:
        return integerText(value.Byte);
    case OpcUaType_Int16:
        return integerText(value.Int16);
    case OpcUaType_UInt16:
        return integerText(value.UInt16);
    case OpcUaType_Int32:
        return integerText(value.Int32);
    case OpcUaType_UInt32:
        return integerText(value.UInt32);
    case OpcUaType_Int64:
        return integerText(value.Int64);
    case OpcUaType_UInt64:
        return integerText(value.UInt64);
    case OpcUaType_Float:
        return floatingText(value.Float, FloatDigits);
    default:
        return floatingText(value.Double, DoubleDigits);
    }
}

UaString scalarText(const OpcUa_Variant& variant)
{
    const OpcUa_VariantValue& value = variant.Value;
    switch (variant.Datatype) {
    case OpcUaType_Null:
        return "";
    case OpcUaType_String:
        return UaString(&value.String);
    case OpcUaType_DateTime:
        return UaDateTime(value.DateTime).toString();
    case OpcUaType_ByteString:
        return bytesText(value.ByteString);
    case OpcUaType_XmlElement:
        return xmlText(value.XmlElement);
    case OpcUaType_StatusCode:
        return UaStatusCode::toString(value.StatusCode);
    case OpcUaType_Guid:
    case OpcUaType_NodeId:
    case OpcUaType_ExpandedNodeId:
    case OpcUaType_QualifiedName:
    case OpcUaType_LocalizedText:
        return textBehind(variant);
    default:
        return variant.Datatype < OpcUaType_String ? numberText(variant)
                                                   : "Type cannot be displayed";
    }
}

} // namespace

UaString UaVariant::toString() const
{
    if (::isMatrix(m_variant)) {
        return "Matrix cannot be displayed";
    }
    return ::isArray(m_variant) ? arrayText(m_variant) : scalarText(m_variant);
}

UaString UaVariant::toFullString() const
{
    if (!isScalar(m_variant) || pointerOf(m_variant) == nullptr) {
        return toString();
    }
    switch (m_variant.Datatype) {
    case OpcUaType_NodeId:
        return UaNodeId::toFullString(*m_variant.Value.NodeId);
    case OpcUaType_QualifiedName:
        return UaQualifiedName(*m_variant.Value.QualifiedName).toFullString();
    case OpcUaType_LocalizedText:
        return UaLocalizedText(*m_variant.Value.LocalizedText).toFullString();
    default:
        return toString();
    }
}
