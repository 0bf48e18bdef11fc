#include "base/base64.h"
#include "base/hexadecimal.h"
#include "base/uanodeid.h"
#include "base/uastring.h"
#include "stack/opcua_guid.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>

namespace {

/// A line of 256 bytes with its NUL, as these texts are printed in: what doesn't fit is cut off.
class Line
{
public:
    static constexpr std::size_t Limit = 255;

    Line& operator<<(std::string_view text)
    {
        m_length += text.copy(m_text.data() + m_length, room());
        return *this;
    }

    /// A number stands near the beginning of a line and always fits.
    Line& operator<<(OpcUa_UInt32 number)
    {
        char* begin = m_text.data() + m_length;
        m_length += static_cast<std::size_t>(
            std::to_chars(begin, m_text.data() + Limit, number).ptr - begin);
        return *this;
    }

    [[nodiscard]] std::size_t room() const { return Limit - m_length; }
    [[nodiscard]] std::string_view view() const { return {m_text.data(), m_length}; }
    [[nodiscard]] UaString toString() const
    {
        return {m_text.data(), static_cast<OpcUa_Int64>(m_length)};
    }

private:
    std::array<char, Limit + 1> m_text;
    std::size_t m_length = 0;
};

/// The text as "%s" prints it: up to a NUL inside, nothing for a null string.
std::string_view printable(const OpcUa_String& string)
{
    const char* text = OpcUa_String_GetRawString(&string);
    if (text == nullptr) {
        return {};
    }
    const std::string_view whole(text, OpcUa_String_StrSize(&string));
    return whole.substr(0, whole.find('\0'));
}

/// The bytes of an opaque identifier; none for a null one and for a length without a block.
std::basic_string_view<OpcUa_Byte> bytesOf(const OpcUa_ByteString& bytes)
{
    if (bytes.Length < 1 || bytes.Data == nullptr) {
        return {};
    }
    return {bytes.Data, static_cast<std::size_t>(bytes.Length)};
}

/// The 38 characters of a guid's text; a missing block stands for the null guid. The views end with
/// the object.
class GuidText
{
public:
    explicit GuidText(const OpcUa_Guid* guid)
    {
        static_cast<void>(OpcUa_Guid_ToString(guid == nullptr ? &OpcUa_Guid_Null : guid,
                                              m_text.data(), OpcUa_Guid_TextSize));
    }

    [[nodiscard]] std::string_view withBraces() const
    {
        return {m_text.data(), OpcUa_Guid_TextSize - 1};
    }
    [[nodiscard]] std::string_view withoutBraces() const { return withBraces().substr(1, 36); }

private:
    std::array<char, OpcUa_Guid_TextSize> m_text;
};

UaString fullOpaque(Line& line, const OpcUa_ByteString& identifier)
{
    const auto bytes = bytesOf(identifier);
    std::array<char, Line::Limit> digits;
    const std::size_t count = std::min(bytes.size(), line.room() / 2);
    UaHexadecimal::encode(bytes.data(), count, digits.data());
    return (line << std::string_view(digits.data(), 2 * count)).toString();
}

/// "ns=2;b=" and base 64, in a text that is made as long as it needs to be.
UaString xmlOpaque(OpcUa_UInt16 namespaceIndex, const OpcUa_ByteString& identifier)
{
    Line prefix;
    prefix << "ns=" << namespaceIndex << ";b=";
    const std::string_view start = prefix.view();
    const auto bytes = bytesOf(identifier);
    const OpcUa_Int64 length = static_cast<OpcUa_Int64>(start.size()) +
                               UaBase64::encodedLength(static_cast<OpcUa_Int64>(bytes.size()));
    return UaString::compose(length, [&](char* text) {
        start.copy(text, start.size());
        UaBase64::encode(bytes.data(), bytes.size(), text + start.size());
    });
}

} // namespace

UaString UaNodeId::toString(const OpcUa_NodeId& nodeId)
{
    switch (nodeId.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return (Line() << nodeId.Identifier.Numeric).toString();
    case OpcUa_IdentifierType_String:
        return UaString(&nodeId.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        return (Line() << GuidText(nodeId.Identifier.Guid).withBraces()).toString();
    case OpcUa_IdentifierType_Opaque: {
        const auto bytes = bytesOf(nodeId.Identifier.ByteString);
        return UaHexadecimal::encode(bytes.data(), bytes.size(), false);
    }
    default:
        return {};
    }
}

UaString UaNodeId::toFullString(const OpcUa_NodeId& nodeId)
{
    Line line;
    line << "NS" << nodeId.NamespaceIndex;
    switch (nodeId.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return (line << "|Numeric|" << nodeId.Identifier.Numeric).toString();
    case OpcUa_IdentifierType_String:
        return (line << "|String|" << printable(nodeId.Identifier.String)).toString();
    case OpcUa_IdentifierType_Guid:
        return (line << "|Guid|" << GuidText(nodeId.Identifier.Guid).withBraces()).toString();
    case OpcUa_IdentifierType_Opaque:
        return fullOpaque(line << "|Opaque|0x", nodeId.Identifier.ByteString);
    default:
        return {};
    }
}

UaString UaNodeId::toXmlString(const OpcUa_NodeId& nodeId)
{
    if (nodeId.IdentifierType == OpcUa_IdentifierType_Opaque) {
        return xmlOpaque(nodeId.NamespaceIndex, nodeId.Identifier.ByteString);
    }
    Line line;
    if (nodeId.NamespaceIndex != 0) {
        line << "ns=" << nodeId.NamespaceIndex << ";";
    }
    switch (nodeId.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        return (line << "i=" << nodeId.Identifier.Numeric).toString();
    case OpcUa_IdentifierType_String:
        return (line << "s=" << printable(nodeId.Identifier.String)).toString();
    case OpcUa_IdentifierType_Guid:
        return (line << "g=" << GuidText(nodeId.Identifier.Guid).withoutBraces()).toString();
    default:
        return {};
    }
}

UaString UaNodeId::toString() const
{
    return toString(*toOpcUaNodeId());
}

UaString UaNodeId::toFullString() const
{
    return toFullString(*toOpcUaNodeId());
}

UaString UaNodeId::toXmlString() const
{
    return toXmlString(*toOpcUaNodeId());
}
