#pragma once

#include "base/uastring.h"
#include "stack/opcua_bytestring.h"

#include <cstddef>
#include <string_view>

/// Base 64 with the alphabet of RFC 4648, section 4.
namespace UaBase64 {

/// Characters of the text for a number of bytes, padding included.
[[nodiscard]] constexpr OpcUa_Int64 encodedLength(OpcUa_Int64 size) noexcept
{
    return (size + 2) / 3 * 4;
}

/// Writes encodedLength(size) characters, with "=" padding and no line breaks or NUL.
void encode(const OpcUa_Byte* data, std::size_t size, char* text) noexcept;

/// The text for some bytes; the null string when it would be too long or memory is short.
[[nodiscard]] UaString encode(const OpcUa_Byte* data, std::size_t size);

/// Reads a text into a new block, which becomes the caller's. The text's length must be a multiple of
/// 4, at most two "=" may stand at its end and nothing behind them; line feeds and carriage returns
/// are skipped before a group of four but count in the length. Bits that the last group has too many
/// are ignored. An empty text gives an empty byte string. `BadInvalidArgument` for any other text,
/// `BadOutOfMemory`; `*bytes`, which is not looked at before, is null then.
[[nodiscard]] OpcUa_StatusCode decode(std::string_view text, OpcUa_ByteString* bytes) noexcept;

} // namespace UaBase64
