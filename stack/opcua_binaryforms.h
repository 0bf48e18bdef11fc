#pragma once

#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_binaryfast.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_variant.h"

#include <array>
#include <cstddef>
#include <type_traits>

// The bytes of the binary encoding that tell what follows (OPC 10000-6, 5.2.2), for both directions.

/// Whether elements of a type lie in memory as they do on the wire.
template <OpcUa_Byte type, typename T>
inline constexpr bool OpcUa_BinaryType_IsCopiedAsMemory = type != OpcUaType_Boolean &&
                                                          (std::is_arithmetic_v<T> ||
                                                           type == OpcUaType_DateTime ||
                                                           type == OpcUaType_Guid);

/// Bits of a variant's first byte beside the number of its type.
inline constexpr OpcUa_Byte OpcUa_BinaryVariant_TypeMask = 0x3F;
inline constexpr OpcUa_Byte OpcUa_BinaryVariant_HasDimensions = 0x40;
inline constexpr OpcUa_Byte OpcUa_BinaryVariant_IsArray = 0x80;

/// What follows the type id of an extension object.
inline constexpr OpcUa_Byte OpcUa_BinaryBody_None = 0;
inline constexpr OpcUa_Byte OpcUa_BinaryBody_Bytes = 1;
inline constexpr OpcUa_Byte OpcUa_BinaryBody_Xml = 2;

/// Which fields of a diagnostic info follow its first byte, in the order on the wire.
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasSymbolicId = 0x01;
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasNamespaceUri = 0x02;
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasLocale = 0x08;
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasLocalizedText = 0x04;
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasAdditionalInfo = 0x10;
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasInnerStatusCode = 0x20;
inline constexpr OpcUa_Byte OpcUa_BinaryDiagnosticInfo_HasInnerDiagnosticInfo = 0x40;

/// The elements that a matrix on the wire has: the product of its dimensions, or -1 when there are no
/// dimensions, one below 0, or a product that doesn't fit.
[[nodiscard]] OpcUa_Int32 OpcUa_BinaryMatrix_SizeOf(const OpcUa_VariantMatrix& matrix);

/// First bytes of the forms of a node id, and the flags of an expanded one.
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_TwoByte = 0;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_FourByte = 1;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_Numeric = 2;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_String = 3;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_Guid = 4;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_ByteString = 5;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_HasServerIndex = 0x40;
inline constexpr OpcUa_Byte OpcUa_BinaryNodeId_HasNamespaceUri = 0x80;

/// Which texts of a localized text follow its first byte.
inline constexpr OpcUa_Byte OpcUa_BinaryLocalizedText_HasLocale = 0x01;
inline constexpr OpcUa_Byte OpcUa_BinaryLocalizedText_HasText = 0x02;

/// Which fields of a data value follow its first byte, in the order on the wire.
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_HasValue = 0x01;
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_HasStatusCode = 0x02;
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_HasSourceTimestamp = 0x04;
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_HasSourcePicoseconds = 0x10;
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_HasServerTimestamp = 0x08;
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_HasServerPicoseconds = 0x20;

/// Bytes that the longest data value with a number takes.
inline constexpr std::size_t OpcUa_BinaryDataValue_NumberRoom =
    1 + OpcUa_BinaryNumber_Room + sizeof(OpcUa_StatusCode) +
    2 * (sizeof(OpcUa_DateTime) + sizeof(OpcUa_UInt16));

/// Every flag that a data value's first byte can have.
inline constexpr OpcUa_Byte OpcUa_BinaryDataValue_KnownFlags = 0x3F;

/// The standard's reading of a larger count of picoseconds.
inline constexpr OpcUa_UInt16 OpcUa_BinaryDataValue_MaxPicoseconds = 9999;

/// The least bytes that a value of a built-in type takes, by its number.
inline constexpr std::array<OpcUa_Byte, 26> OpcUa_BinaryType_MinimalSizes = {
    1, 1, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 4, 8, 16, 4, 4, 2, 2, 4, 6, 1, 3, 1, 1, 1};
