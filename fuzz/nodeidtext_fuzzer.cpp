// The text form of a node id: a numeric text is read as strtoul reads it, and what is read prints in
// a form that reads back to the same; so does any node id.

#include "base/uabytestring.h"
#include "base/uanodeid.h"
#include "base/uastring.h"
#include "fuzz/require.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void checkNumber(const std::string& digits)
{
    errno = 0;
    char* end = nullptr;
    const unsigned long long number = std::strtoull(digits.c_str(), &end, 10);
    const bool bNegative = digits.find('-') != std::string::npos;
    const unsigned long long magnitude = bNegative ? 0 - number : number;
    const bool bRead = !digits.empty() && end == digits.c_str() + digits.size() && errno == 0 &&
                       magnitude <= 0xFFFFFFFFu;
    const UaNodeId expected = bRead ? UaNodeId(static_cast<OpcUa_UInt32>(number)) : UaNodeId();
    const std::string text = "ns=;i=" + digits;
    require(UaNodeId::fromXmlString(UaString(text.data(), static_cast<OpcUa_Int64>(text.size()))) ==
            expected);
}

void checkRoundTrip(const UaNodeId& nodeId)
{
    const UaString printed = nodeId.toXmlString();
    const UaNodeId read = UaNodeId::fromXmlString(printed);
    const std::string string(nodeId.identifierString().view());
    if (nodeId.isNull() || string.find('\0') != std::string::npos) {
        return; // the empty string isn't read without a namespace, and a NUL ends the text
    }
    require(read.toXmlString() == printed);
    require(read == nodeId || string.size() > 240); // a long string is cut
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const UaString text(input.data(), static_cast<OpcUa_Int64>(size));
    checkNumber(input);
    checkRoundTrip(UaNodeId::fromXmlString(text));
    const auto index = static_cast<OpcUa_UInt16>(size * 257);
    checkRoundTrip(UaNodeId(text, index));
    checkRoundTrip(UaNodeId(UaByteString(static_cast<OpcUa_Int32>(size), data), index));
    return 0;
}
