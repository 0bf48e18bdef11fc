#pragma once

#include "platform/types.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_variant.h"

#include <array>
#include <cstddef>
#include <cstring>

// Parts of the binary encoding that long arrays and messages spend their time in.

/// Copies bytes like std::memcpy. Short texts are the rule, and a call for each would be most of the
/// work; two pieces that may overlap cover any length between one and two pieces.
inline void OpcUa_Binary_Copy(void* to, const void* from, std::size_t size)
{
    auto* target = static_cast<char*>(to);
    const auto* source = static_cast<const char*>(from);
    const auto copyEnds = [=]<std::size_t piece>(std::array<char, piece> first) {
        std::array<char, piece> last;
        std::memcpy(first.data(), source, piece);
        std::memcpy(last.data(), source + size - piece, piece);
        std::memcpy(target, first.data(), piece);
        std::memcpy(target + size - piece, last.data(), piece);
    };
    if (size > 32) {
        std::memcpy(to, from, size);
    } else if (size >= 16) {
        copyEnds(std::array<char, 16>());
    } else if (size >= 8) {
        copyEnds(std::array<char, 8>());
    } else if (size >= 4) {
        copyEnds(std::array<char, 4>());
    } else {
        for (std::size_t i = 0; i < size; ++i) {
            target[i] = source[i];
        }
    }
}

/// Bytes of a scalar that lies in a variant as it does on the wire, by the variant's first byte on the
/// wire; 0 for everything else.
inline constexpr std::array<OpcUa_Byte, 256> OpcUa_BinaryNumber_Sizes = [] {
    std::array<OpcUa_Byte, 256> sizes{};
    sizes[OpcUaType_Boolean] = 1;
    sizes[OpcUaType_SByte] = 1;
    sizes[OpcUaType_Byte] = 1;
    sizes[OpcUaType_Int16] = 2;
    sizes[OpcUaType_UInt16] = 2;
    sizes[OpcUaType_Int32] = 4;
    sizes[OpcUaType_UInt32] = 4;
    sizes[OpcUaType_Int64] = 8;
    sizes[OpcUaType_UInt64] = 8;
    sizes[OpcUaType_Float] = 4;
    sizes[OpcUaType_Double] = 8;
    sizes[OpcUaType_DateTime] = 8;
    sizes[OpcUaType_StatusCode] = 4;
    return sizes;
}();

/// Size of a variant's scalar number on the wire, without its first byte; 0 for another variant.
[[nodiscard]] inline std::size_t OpcUa_BinaryNumber_SizeOf(const OpcUa_Variant& value)
{
    return value.ArrayType == OpcUa_VariantArrayType_Scalar
               ? OpcUa_BinaryNumber_Sizes[value.Datatype]
               : 0;
}

/// Bytes that OpcUa_BinaryNumber_Put may touch.
inline constexpr std::size_t OpcUa_BinaryNumber_Room = 1 + sizeof(OpcUa_UInt64);

/// Writes a variant whose number takes `size` bytes, and gives where it ends. The bytes behind it are
/// touched as well.
[[nodiscard]] inline OpcUa_Byte* OpcUa_BinaryNumber_Put(OpcUa_Byte* to, const OpcUa_Variant& value,
                                                        std::size_t size)
{
    OpcUa_UInt64 bits;
    std::memcpy(&bits, &value.Value, sizeof(bits));
    if (value.Datatype == OpcUaType_Boolean) {
        bits = value.Value.Boolean != 0 ? 1 : 0;
    }
    *to = value.Datatype;
    std::memcpy(to + 1, &bits, sizeof(bits));
    return to + 1 + size;
}

/// Reads a variant whose number takes `size` bytes into one that is all zero, and gives where it ends.
/// The bytes behind it are looked at as well.
[[nodiscard]] inline const OpcUa_Byte*
OpcUa_BinaryNumber_Get(const OpcUa_Byte* from, OpcUa_Variant& value, std::size_t size)
{
    OpcUa_UInt64 bits;
    std::memcpy(&bits, from + 1, sizeof(bits));
    bits = bits << (64 - 8 * size) >> (64 - 8 * size);
    value.Datatype = *from;
    if (value.Datatype == OpcUaType_Boolean) {
        bits = bits != 0 ? 1 : 0;
    }
    std::memcpy(&value.Value, &bits, sizeof(bits));
    return from + 1 + size;
}
