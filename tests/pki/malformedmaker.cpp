#include "tests/pki/malformedmaker.h"

#include "tests/pki/derwriter.h"

#include <openssl/evp.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

constexpr unsigned char usualTags[] = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x0A, 0x0C, 0x10,
                                       0x13, 0x14, 0x16, 0x17, 0x18, 0x1C, 0x1E, 0x1F, 0x24, 0x30,
                                       0x31, 0x80, 0x82, 0x86, 0x87, 0xA0, 0xA3, 0xA4, 0xFF};
constexpr char usualBytes[] = {'\x00', '\x01', '\x7F', '\x80', '\x81', '\x84', '\xFE', '\xFF'};

bool isText(const std::string& sample)
{
    return sample.rfind("-----BEGIN", 0) == 0;
}

std::string base64(const std::string& bytes)
{
    std::string text(4 * ((bytes.size() + 2) / 3) + 1, '\0');
    const int size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                     reinterpret_cast<const unsigned char*>(bytes.data()),
                                     static_cast<int>(bytes.size()));
    text.resize(static_cast<std::size_t>(size));
    for (std::size_t place = 64; place < text.size(); place += 65) {
        text.insert(place, "\n");
    }
    return text;
}

/// The bytes of a PEM text; `start` and `end` are where its base 64 lies.
std::string bytesOfText(const std::string& text, std::size_t& start, std::size_t& end)
{
    const std::size_t header = text.find("\n\n");
    start = header != std::string::npos ? header + 2 : text.find('\n') + 1;
    end = text.find("-----END");
    std::string lines = text.substr(start, end - start);
    lines.erase(std::remove(lines.begin(), lines.end(), '\n'), lines.end());
    std::string bytes(lines.size(), '\0');
    const int size = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                                     reinterpret_cast<const unsigned char*>(lines.data()),
                                     static_cast<int>(lines.size()));
    const auto padding = std::count(lines.begin(), lines.end(), '=');
    bytes.resize(size < 0 ? 0 : static_cast<std::size_t>(size - padding));
    return bytes;
}

} // namespace

std::string MalformedMaker::randomBytes(std::size_t size)
{
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(below(256)); });
    return bytes;
}

void MalformedMaker::changeBytes(std::string& bytes)
{
    if (bytes.empty()) {
        return;
    }
    const std::size_t place = below(bytes.size());
    const std::size_t run = 1 + below(std::min<std::size_t>(bytes.size() - place, 16));
    switch (below(6)) {
    case 0:
        bytes[place] = static_cast<char>(bytes[place] ^ (1 << below(8)));
        break;
    case 1:
        bytes[place] = usualBytes[below(std::size(usualBytes))];
        break;
    case 2:
        bytes.erase(place, run);
        break;
    case 3:
        bytes.insert(place, randomBytes(run));
        break;
    case 4:
        bytes.insert(place, bytes.substr(place, run));
        break;
    default:
        bytes.resize(place);
    }
}

void MalformedMaker::changeContent(DerNode& node)
{
    constexpr std::size_t longContent = 5000;
    std::string bytes;
    for (const DerNode& child : std::exchange(node.children, {})) {
        bytes += child.bytes();
    }
    node.content += bytes;
    switch (below(6)) {
    case 0:
        node.content.clear();
        break;
    case 1:
        node.content = randomBytes(1 + below(40));
        break;
    case 2:
        node.content = std::string(longContent, usualBytes[below(std::size(usualBytes))]);
        break;
    case 3:
        node.content.insert(below(node.content.size() + 1), 1, '\0');
        break;
    case 4:
        node.content += node.content;
        break;
    default:
        changeBytes(node.content);
    }
}

void MalformedMaker::changePlace(DerNode& node, const std::vector<std::string>& others)
{
    constexpr int nested = 2000;
    const DerNode copy = node;
    switch (below(4)) {
    case 0: // many of it
        node = {DerSequence, "", std::vector<DerNode>(1 + below(100), copy),
                DerNode::Length::Right};
        break;
    case 1: // deep inside
        node.content = copy.bytes();
        node.children.clear();
        for (int i = 0; i < nested; ++i) {
            node.content = der(node.tag, node.content);
        }
        break;
    case 2: { // another one's part
        auto parts = parseDer(others[below(others.size())]);
        if (parts && !parts->empty()) {
            std::vector<DerNode*> nodes;
            parts->front().collect(nodes);
            node = DerNode(*nodes[below(nodes.size())]);
        }
        break;
    }
    default:
        if (!node.children.empty()) { // one less
            node.children.erase(node.children.begin() +
                                static_cast<std::ptrdiff_t>(below(node.children.size())));
        }
    }
}

std::string MalformedMaker::changeNode(const std::string& bytes,
                                       const std::vector<std::string>& others)
{
    auto parsed = parseDer(bytes);
    if (!parsed || parsed->empty()) {
        std::string changed = bytes;
        changeBytes(changed);
        return changed;
    }
    std::vector<DerNode*> nodes;
    for (DerNode& node : *parsed) {
        node.collect(nodes);
    }
    DerNode& node = *nodes[below(nodes.size())];
    switch (below(4)) {
    case 0:
        node.tag = usualTags[below(std::size(usualTags))];
        break;
    case 1:
        node.length = static_cast<DerNode::Length>(1 + below(5));
        break;
    case 2:
        changeContent(node);
        break;
    default:
        changePlace(node, others);
    }
    std::string changed;
    for (const DerNode& part : *parsed) {
        changed += part.bytes();
    }
    return changed;
}

std::string MalformedMaker::changeText(const std::string& text,
                                       const std::vector<std::string>& others)
{
    std::string changed = text;
    if (below(2) == 0) {
        changeBytes(changed);
        return changed;
    }
    std::size_t start = 0;
    std::size_t end = 0;
    const std::string bytes = bytesOfText(text, start, end);
    return changed.replace(start, end - start, base64(changeNode(bytes, others)) + "\n");
}

std::string MalformedMaker::change(const std::string& sample,
                                   const std::vector<std::string>& others)
{
    std::string changed = sample;
    for (std::size_t count = 1 + below(3); count > 0; --count) {
        if (isText(sample)) {
            changed = isText(changed) && changed.find("-----END") != std::string::npos
                          ? changeText(changed, others)
                          : std::move(changed);
        } else if (below(3) == 0) {
            changeBytes(changed);
        } else {
            changed = changeNode(changed, others);
        }
    }
    return changed;
}
