#include "base/base64.h"
#include "base/guidtext.h"
#include "base/uanodeid.h"
#include "base/uastring.h"
#include "platform/status.h"

#include <cstring>
#include <limits>
#include <string_view>

namespace {

bool isSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// The value of a digit; more than 9 for any other character.
unsigned digitOf(char character)
{
    return static_cast<unsigned char>(character - '0');
}

/// A number of the text and the position behind it, which is null when there is none.
template <typename T>
struct Number
{
    const char* behind;
    T value;
};

/// The position behind white space and a sign.
const char* skipSign(const char* position, const char* end)
{
    while (position != end && isSpace(*position)) {
        ++position;
    }
    const bool bSign = position != end && (*position == '-' || *position == '+');
    return bSign ? position + 1 : position;
}

/// Reads what strtoul in base 10 reads with an unsigned long of 32 bits: white space and a sign may
/// stand in front, a negative number wraps. No number when strtoul would find no digit or report an
/// overflow. In front of the position there is a character of the text.
Number<OpcUa_UInt32> readNumber(const char* position, const char* end)
{
    bool bNegative = false;
    if (position != end && digitOf(*position) > 9) {
        position = skipSign(position, end);
        bNegative = position[-1] == '-';
    }
    if (position == end || digitOf(*position) > 9) {
        return {nullptr, 0};
    }
    OpcUa_UInt64 number = 0;
    do {
        number = number * 10 + digitOf(*position);
        if (number > std::numeric_limits<OpcUa_UInt32>::max()) {
            return {nullptr, 0};
        }
        ++position;
    } while (position != end && digitOf(*position) <= 9);
    return {position, static_cast<OpcUa_UInt32>(bNegative ? 0 - number : number)};
}

/// Reads "ns=...;", which may be missing.
Number<OpcUa_UInt16> readNamespaceIndex(const char* text, const char* end)
{
    if (end - text < 4 || std::memcmp(text, "ns=", 3) != 0) {
        return {text, 0};
    }
    text += 3;
    const Number<OpcUa_UInt32> index =
        *text == ';' ? Number<OpcUa_UInt32>{text, 0} : readNumber(text, end);
    if (index.behind == nullptr || index.behind == end || *index.behind != ';' ||
        index.value > std::numeric_limits<OpcUa_UInt16>::max()) {
        return {nullptr, 0};
    }
    return {index.behind + 1, static_cast<OpcUa_UInt16>(index.value)};
}

UaNodeId readNumeric(std::string_view text, OpcUa_UInt16 namespaceIndex)
{
    const char* const end = text.data() + text.size();
    const Number<OpcUa_UInt32> number = readNumber(text.data(), end);
    return number.behind == end ? UaNodeId(number.value, namespaceIndex) : UaNodeId();
}

UaNodeId readString(std::string_view text, OpcUa_UInt16 namespaceIndex)
{
    OpcUa_NodeId borrowed{OpcUa_IdentifierType_String, namespaceIndex, {}};
    const OpcUa_StatusCode status =
        OpcUa_String_AttachToString(text.data(), static_cast<OpcUa_UInt32>(text.size()), 0, false,
                                    false, &borrowed.Identifier.String);
    return OpcUa_IsGood(status) ? UaNodeId(borrowed) : UaNodeId();
}

UaNodeId readGuid(std::string_view text, OpcUa_UInt16 namespaceIndex)
{
    OpcUa_Guid guid;
    if (OpcUa_IsNotGood(UaGuidText::read(text, guid))) {
        return {};
    }
    OpcUa_NodeId borrowed{OpcUa_IdentifierType_Guid, namespaceIndex, {}};
    borrowed.Identifier.Guid = &guid;
    return UaNodeId(borrowed);
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
    const std::string_view whole = text.view();
    if (whole.size() < 3) {
        return {};
    }
    const char* const end = whole.data() + whole.size();
    const auto [form, namespaceIndex] = readNamespaceIndex(whole.data(), end);
    if (form == nullptr || end - form < 2 || form[1] != '=') {
        return {};
    }
    // It goes to the end of the text, so a NUL follows.
    const std::string_view identifier(form + 2, static_cast<std::size_t>(end - form - 2));
    switch (*form) {
    case 'i':
        return readNumeric(identifier, namespaceIndex);
    case 's':
        return readString(identifier, namespaceIndex);
    case 'g':
        return readGuid(identifier, namespaceIndex);
    case 'b':
        return readOpaque(identifier, namespaceIndex);
    default:
        return {};
    }
}
