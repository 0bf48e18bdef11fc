#pragma once

#include <cstdint>

// Scalar types of the stack and platform layers. Their widths are those of the built-in types of
// OPC 10000-6, 5.1.2; records of the stack layer are made of them.

using OpcUa_Boolean = std::uint8_t; ///< 0 is false, anything else true.
using OpcUa_SByte = std::int8_t;
using OpcUa_Byte = std::uint8_t;
using OpcUa_Int16 = std::int16_t;
using OpcUa_UInt16 = std::uint16_t;
using OpcUa_Int32 = std::int32_t;
using OpcUa_UInt32 = std::uint32_t;
using OpcUa_Int64 = std::int64_t;
using OpcUa_UInt64 = std::uint64_t;
using OpcUa_Float = float;
using OpcUa_Double = double;

/// A status of the standard's numbering: severity in the top two bits, the code above the low 16
/// bits, info bits below. Named values are in "platform/statuscodes.h".
using OpcUa_StatusCode = OpcUa_UInt32;

inline constexpr OpcUa_Boolean OpcUa_False = 0;
inline constexpr OpcUa_Boolean OpcUa_True = 1;
