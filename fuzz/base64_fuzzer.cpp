// A text of base 64, and bytes to be written as such: whatever is read writes the same text but for
// line breaks and spare bits, whatever is refused leaves the target, whatever is written is read back.

#include "base/uabytestring.h"
#include "fuzz/require.h"
#include "platform/status.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

/// The characters that carry whole bytes: without line breaks, padding and the spare bits before it.
std::string wholeCharacters(std::string text)
{
    std::erase_if(text, [](char character) { return character == '\n' || character == '\r'; });
    const std::size_t padding = text.find('=');
    return padding == std::string::npos ? text : text.substr(0, padding - 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const UaByteString before(3, reinterpret_cast<const OpcUa_Byte*>("abc"));
    UaByteString read = before;
    const UaString string(text.data(), static_cast<OpcUa_Int64>(size));
    const OpcUa_StatusCode status = UaByteString::fromBase64(string, read);
    if (OpcUa_IsGood(status)) {
        const std::string again(read.toBase64().view());
        require(wholeCharacters(again) == wholeCharacters(text));
        require(std::count(again.begin(), again.end(), '=') ==
                std::count(text.begin(), text.end(), '='));
        require(size % 4 == 0);
    } else {
        require(status == OpcUa_BadInvalidArgument);
        require(read == before);
    }

    const UaByteString bytes(static_cast<OpcUa_Int32>(size), data);
    require(UaByteString::fromBase64(bytes.toBase64(), read) == OpcUa_Good);
    require(read.length() == static_cast<OpcUa_Int32>(size));
    require(size == 0 || read == bytes);
    return 0;
}
