#pragma once

#include "base/uastatuscode.h"
#include "base/uastring.h"
#include "base/uavariant.h"
#include "tests/base/textof.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>

// Variants for tables of inputs and expectations.

inline UaVariant boolean(OpcUa_Boolean value)
{
    UaVariant variant;
    variant.setBool(value);
    return variant;
}

inline UaVariant sbyte(OpcUa_SByte value)
{
    return UaVariant(value);
}

inline UaVariant byte(OpcUa_Byte value)
{
    return UaVariant(value);
}

inline UaVariant int16(OpcUa_Int16 value)
{
    return UaVariant(value);
}

inline UaVariant uint16(OpcUa_UInt16 value)
{
    return UaVariant(value);
}

inline UaVariant int32(OpcUa_Int32 value)
{
    return UaVariant(value);
}

inline UaVariant uint32(OpcUa_UInt32 value)
{
    return UaVariant(value);
}

inline UaVariant int64(OpcUa_Int64 value)
{
    return UaVariant(value);
}

inline UaVariant uint64(OpcUa_UInt64 value)
{
    return UaVariant(value);
}

inline UaVariant real(OpcUa_Float value)
{
    return UaVariant(value);
}

inline UaVariant real(OpcUa_Double value)
{
    return UaVariant(value);
}

inline UaVariant text(std::string_view value)
{
    return UaVariant(UaString(value.data(), static_cast<OpcUa_Int64>(value.size())));
}

/// "BadOutOfRange" reads better in a failed test than its number.
inline std::string nameOf(OpcUa_StatusCode status)
{
    return textOf(UaStatusCode::toString(status));
}

/// The bytes of a variant, so that nothing of it changes or moves unseen.
using VariantMemory = std::array<unsigned char, sizeof(OpcUa_Variant)>;

inline VariantMemory memoryOf(const UaVariant& variant)
{
    VariantMemory memory;
    std::memcpy(memory.data(), variant.toOpcUaVariant(), memory.size());
    return memory;
}
