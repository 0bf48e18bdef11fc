#include "tests/stack/dissection.h"

#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace {

std::string outputOf(const std::string& command)
{
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        throw std::runtime_error("can't run " + command);
    }
    std::string output;
    std::array<char, 65536> block{};
    for (std::size_t size = 1; size > 0;) {
        size = std::fread(block.data(), 1, block.size(), pipe);
        output.append(block.data(), size);
    }
    if (pclose(pipe) != 0) {
        throw std::runtime_error("failed: " + command);
    }
    return output;
}

std::string unescaped(std::string_view text)
{
    constexpr std::pair<std::string_view, char> entities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#x27;", '\''}};
    std::string result;
    while (!text.empty()) {
        std::size_t taken = 1;
        char character = text.front();
        for (const auto& [entity, meaning] : entities) {
            if (text.starts_with(entity)) {
                taken = entity.size();
                character = meaning;
            }
        }
        result += character;
        text.remove_prefix(taken);
    }
    return result;
}

/// The value of an attribute; empty when it isn't there.
std::string attribute(std::string_view element, const std::string& name)
{
    const std::string start = " " + name + "=\"";
    const std::size_t begin = element.find(start);
    if (begin == std::string_view::npos) {
        return {};
    }
    element.remove_prefix(begin + start.size());
    return unescaped(element.substr(0, element.find('"')));
}

/// Reads PDML, which tshark writes with one tag a line.
class PdmlReader
{
public:
    void readLine(std::string_view line)
    {
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        if (line.starts_with("<packet>")) {
            m_packets.emplace_back();
            m_depth = 0;
        } else if (line.starts_with("</field") || line.starts_with("</proto")) {
            --m_depth;
        } else if (line.starts_with("<proto") || line.starts_with("<field")) {
            readElement(line);
        }
    }

    [[nodiscard]] std::vector<DissectedPacket> packets() const { return m_packets; }

private:
    void readElement(std::string_view line)
    {
        const std::string name = attribute(line, "name");
        const bool isProtocol = line.starts_with("<proto");
        if (isProtocol && m_depth == 0) {
            m_isShown = name == "opcua" || name.starts_with("_ws");
        }
        if (m_isShown) {
            m_packets.back().push_back(std::string(2 * m_depth, ' ') +
                                       textOf(isProtocol, name, shownIn(line)));
        }
        m_depth += line.ends_with("/>") ? 0 : 1;
    }

    /// A value without characters stands in the label alone, as "Name: [OpcUa Null String]".
    static std::string shownIn(std::string_view line)
    {
        const std::string shown = attribute(line, "show");
        const std::string label = attribute(line, "showname");
        const std::size_t bracket = label.find("[OpcUa ");
        return shown.empty() && bracket != std::string::npos ? label.substr(bracket) : shown;
    }

    static std::string textOf(bool isProtocol, const std::string& name, const std::string& shown)
    {
        if (isProtocol) {
            return "proto " + name;
        }
        return name.empty() ? shown : name + "=" + shown;
    }

    std::vector<DissectedPacket> m_packets;
    std::size_t m_depth = 0;
    bool m_isShown = false;
};

} // namespace

std::vector<DissectedPacket> dissect(const std::string& path)
{
    // The user's own settings must not matter, nor the place where the test runs.
    std::istringstream output(
        outputOf("TZ=UTC LC_ALL=C.UTF-8 WIRESHARK_CONFIG_DIR=/nonexistent HOME=/nonexistent "
                 "tshark -n -d tcp.port==4840,opcua -T pdml -r '" +
                 path + "' 2>/dev/null"));
    PdmlReader reader;
    for (std::string line; std::getline(output, line);) {
        reader.readLine(line);
    }
    return reader.packets();
}
