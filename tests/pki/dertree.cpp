#include "tests/pki/dertree.h"

#include "tests/pki/derwriter.h"

#include <cstdint>

namespace {

constexpr int deepest = 30;
constexpr unsigned char constructed = 0x20;
constexpr unsigned char multiByteTag = 0x1F;

/// Takes a length off the front; nothing when it isn't there or isn't DER.
std::optional<std::size_t> takeLength(std::string_view& bytes)
{
    if (bytes.empty()) {
        return std::nullopt;
    }
    const auto first = static_cast<unsigned char>(bytes.front());
    bytes.remove_prefix(1);
    if (first < 0x80) {
        return first;
    }
    const std::size_t count = first & 0x7FU;
    if (count == 0 || count > 3 || bytes.size() < count) {
        return std::nullopt;
    }
    std::size_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        length = length << 8 | static_cast<unsigned char>(bytes[i]);
    }
    bytes.remove_prefix(count);
    return length;
}

/// Takes a node's content apart where that is possible.
void takeApart(DerNode& node, int depth)
{
    const bool isBitString = node.tag == DerBitString && !node.content.empty();
    const bool mayHoldNodes =
        (node.tag & constructed) != 0 || node.tag == DerOctetString || isBitString;
    if (!mayHoldNodes) {
        return;
    }
    const std::size_t start = isBitString ? 1 : 0;
    auto children = parseDer(std::string_view(node.content).substr(start), depth + 1);
    if (children && !children->empty()) {
        node.children = std::move(*children);
        node.content.resize(start);
    }
}

std::string withLength(unsigned char tag, const std::string& content, DerNode::Length form)
{
    const std::string right = der(tag, content);
    const std::string start(1, static_cast<char>(tag));
    const auto size = static_cast<std::uint32_t>(content.size());
    const auto fourBytes = [&](std::uint32_t length) {
        std::string text = start + '\x84';
        for (int shift = 24; shift >= 0; shift -= 8) {
            text += static_cast<char>(length >> shift & 0xFF);
        }
        return text + content;
    };
    switch (form) {
    case DerNode::Length::Right:
        return right;
    case DerNode::Length::Padded:
        return fourBytes(size);
    case DerNode::Length::Indefinite:
        return start + '\x80' + content + std::string(2, '\0');
    case DerNode::Length::TooShort:
        return fourBytes(size > 0 ? size - 1 : 0);
    case DerNode::Length::TooLong:
        return fourBytes(size + 1);
    case DerNode::Length::Huge:
        return fourBytes(0x7FFFFFFF);
    }
    return right;
}

} // namespace

std::string DerNode::bytes() const
{
    std::string inside = content;
    for (const DerNode& child : children) {
        inside += child.bytes();
    }
    return withLength(tag, inside, length);
}

void DerNode::collect(std::vector<DerNode*>& nodes)
{
    nodes.push_back(this);
    for (DerNode& child : children) {
        child.collect(nodes);
    }
}

std::optional<std::vector<DerNode>> parseDer(std::string_view bytes, int depth)
{
    std::vector<DerNode> nodes;
    while (!bytes.empty()) {
        DerNode node;
        node.tag = static_cast<unsigned char>(bytes.front());
        bytes.remove_prefix(1);
        const auto length = takeLength(bytes);
        if (depth > deepest || (node.tag & multiByteTag) == multiByteTag || !length ||
            *length > bytes.size()) {
            return std::nullopt;
        }
        node.content = bytes.substr(0, *length);
        bytes.remove_prefix(*length);
        takeApart(node, depth);
        nodes.push_back(std::move(node));
    }
    return nodes;
}
