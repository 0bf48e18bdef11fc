#include "base/base64.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "base/uastring.h"
#include "platform/status.h"

#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace {

bool isSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

std::string_view withoutSpaces(std::string_view text)
{
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

/// What strtoul in base 10 makes of the text with an unsigned long of 32 bits: white space and a sign
/// may stand in front, a negative number wraps. Nothing when it would leave a rest, find no digit or
/// report an overflow.
std::optional<OpcUa_UInt32> readNumber(std::string_view text)
{
    text = withoutSpaces(text);
    const bool bNegative = !text.empty() && text.front() == '-';
    if (bNegative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    if (text.empty()) {
        return std::nullopt;
    }
    OpcUa_UInt64 number = 0;
    for (const char character : text) {
        const auto digit = static_cast<unsigned char>(character - '0');
        number = number * 10 + digit;
        if (digit > 9 || number > std::numeric_limits<OpcUa_UInt32>::max()) {
            return std::nullopt;
        }
    }
    return static_cast<OpcUa_UInt32>(bNegative ? 0 - number : number);
}

/// Takes "ns=...;" off the text. Nothing when that part is none.
std::optional<OpcUa_UInt16> takeNamespaceIndex(std::string_view& text)
{
    if (text.size() < 4 || !text.starts_with("ns=")) {
        return OpcUa_UInt16{0};
    }
    const std::size_t end = text.find(';', 3);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view part = text.substr(3, end - 3);
    const OpcUa_UInt32 index = part.empty() ? 0 : readNumber(part).value_or(0xFFFFFFFFu);
    if (index > std::numeric_limits<OpcUa_UInt16>::max()) {
        return std::nullopt;
    }
    text.remove_prefix(end + 1);
    return static_cast<OpcUa_UInt16>(index);
}

UaNodeId readNumeric(std::string_view text, OpcUa_UInt16 namespaceIndex)
{
    const std::optional<OpcUa_UInt32> number = readNumber(text);
    return number ? UaNodeId(*number, namespaceIndex) : UaNodeId();
}

UaNodeId readString(std::string_view text, OpcUa_UInt16 namespaceIndex)
{
    OpcUa_NodeId borrowed{OpcUa_IdentifierType_String, namespaceIndex, {}};
    const OpcUa_StatusCode status =
        OpcUa_String_AttachToString(text.data(), static_cast<OpcUa_UInt32>(text.size()), 0, false,
                                    false, &borrowed.Identifier.String);
    return OpcUa_IsGood(status) ? UaNodeId(borrowed) : UaNodeId();
}

/// `text` is the end of a whole text, so a NUL closes it.
UaNodeId readGuid(const char* text, OpcUa_UInt16 namespaceIndex)
{
    UaGuid guid;
    return OpcUa_IsGood(guid.fromString(text)) ? UaNodeId(guid, namespaceIndex) : UaNodeId();
}

} // namespace

UaNodeId UaNodeId::readOpaque(std::string_view text, OpcUa_UInt16 namespaceIndex) noexcept
{
    UaNodeId nodeId;
    nodeId.m_block = Block::create();
    OpcUa_NodeId* record = nodeId.m_block.unshared();
    if (record == nullptr) {
        return nodeId;
    }
    // The bytes are decoded to where they stay.
    *record = {OpcUa_IdentifierType_Opaque, namespaceIndex, {}};
    if (OpcUa_IsNotGood(UaBase64::decode(text, &record->Identifier.ByteString))) {
        nodeId.clear();
    }
    return nodeId;
}

UaNodeId UaNodeId::fromXmlString(const UaString& text)
{
    std::string_view rest = text.view();
    if (rest.size() < 3) {
        return {};
    }
    const std::optional<OpcUa_UInt16> namespaceIndex = takeNamespaceIndex(rest);
    if (!namespaceIndex || rest.size() < 2 || rest[1] != '=') {
        return {};
    }
    const char form = rest.front();
    rest.remove_prefix(2);
    switch (form) {
    case 'i':
        return readNumeric(rest, *namespaceIndex);
    case 's':
        return readString(rest, *namespaceIndex);
    case 'g':
        return readGuid(rest.data(), *namespaceIndex);
    case 'b':
        return readOpaque(rest, *namespaceIndex);
    default:
        return {};
    }
}
