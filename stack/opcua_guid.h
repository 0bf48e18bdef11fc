#pragma once

#include "platform/types.h"
#include "stack/opcua_scalars.h"

/// A globally unique identifier (OPC 10000-6, 5.1.3).
struct OpcUa_Guid
{
    OpcUa_UInt32 Data1;
    OpcUa_UInt16 Data2;
    OpcUa_UInt16 Data3;
    OpcUa_Byte Data4[8];
};
static_assert(sizeof(OpcUa_Guid) == 16);

/// The all-zero guid.
extern const OpcUa_Guid OpcUa_Guid_Null;

/// Size in bytes of the text form with its closing NUL.
inline constexpr OpcUa_UInt32 OpcUa_Guid_TextSize = 39;

/// Makes the null guid.
inline constexpr auto& OpcUa_Guid_Initialize = OpcUa_Scalar_Initialize<OpcUa_Guid>;

/// The same: a guid owns nothing.
inline constexpr auto& OpcUa_Guid_Clear = OpcUa_Scalar_Clear<OpcUa_Guid>;

/// `BadInvalidArgument` for a null pointer; the destination is cleared then.
inline constexpr auto& OpcUa_Guid_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Guid>;

/// Order of the 16 bytes in memory: -1, 0 or 1. Two null pointers are equal; one is less than a guid.
inline constexpr auto& OpcUa_Guid_Compare = OpcUa_Scalar_Compare<OpcUa_Guid>;

/// True for two null pointers and for equal bytes. A null pointer differs from every guid, also from
/// the null guid.
[[nodiscard]] bool OpcUa_Guid_IsEqual(const OpcUa_Guid* left, const OpcUa_Guid* right);

/// True for a null pointer and for the all-zero guid.
[[nodiscard]] bool OpcUa_Guid_IsNull(const OpcUa_Guid* guid);

/// Fills in a new random guid (version 4). `BadInvalidArgument` for a null pointer, or the status of
/// the random source, with the null guid.
[[nodiscard]] OpcUa_StatusCode OpcUa_Guid_Create(OpcUa_Guid* guid);

/// Prints "{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}". `BadInvalidArgument` for a null
/// pointer or a buffer below 39 bytes; a non-empty buffer holds the empty text then.
[[nodiscard]] OpcUa_StatusCode OpcUa_Guid_ToString(const OpcUa_Guid* guid, char* buffer,
                                                   OpcUa_UInt32 bufferSize);

/// Reads "%08x-%04hx-%04hx-%02hx%02hx-%02hx%02hx%02hx%02hx%02hx%02hx" as the C library scans it,
/// after an optional "{". What follows, such as a closing brace, isn't looked at.
/// `BadInvalidArgument` for a null pointer, an empty text or a missing field, with the null guid.
[[nodiscard]] OpcUa_StatusCode OpcUa_Guid_FromString(const char* text, OpcUa_Guid* guid);
