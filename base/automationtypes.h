#pragma once

#include "platform/types.h"

// How the value types of Windows automation and the built-in types answer to one another. These are
// plain numbers, so that the table is the same on every system; the bridge that moves the values is
// part of the Windows build alone.

/// A type number of a Windows automation value (VARTYPE), with the array bit or without.
using UaAutomationType = OpcUa_UInt16;

inline constexpr UaAutomationType UaAutomationType_Empty = 0;    ///< VT_EMPTY
inline constexpr UaAutomationType UaAutomationType_I2 = 2;       ///< VT_I2
inline constexpr UaAutomationType UaAutomationType_I4 = 3;       ///< VT_I4
inline constexpr UaAutomationType UaAutomationType_R4 = 4;       ///< VT_R4
inline constexpr UaAutomationType UaAutomationType_R8 = 5;       ///< VT_R8
inline constexpr UaAutomationType UaAutomationType_Cy = 6;       ///< VT_CY
inline constexpr UaAutomationType UaAutomationType_Date = 7;     ///< VT_DATE
inline constexpr UaAutomationType UaAutomationType_Bstr = 8;     ///< VT_BSTR
inline constexpr UaAutomationType UaAutomationType_Bool = 11;    ///< VT_BOOL
inline constexpr UaAutomationType UaAutomationType_Variant = 12; ///< VT_VARIANT
inline constexpr UaAutomationType UaAutomationType_I1 = 16;      ///< VT_I1
inline constexpr UaAutomationType UaAutomationType_UI1 = 17;     ///< VT_UI1
inline constexpr UaAutomationType UaAutomationType_UI2 = 18;     ///< VT_UI2
inline constexpr UaAutomationType UaAutomationType_UI4 = 19;     ///< VT_UI4
inline constexpr UaAutomationType UaAutomationType_I8 = 20;      ///< VT_I8
inline constexpr UaAutomationType UaAutomationType_UI8 = 21;     ///< VT_UI8
inline constexpr UaAutomationType UaAutomationType_Array =
    0x2000; ///< VT_ARRAY, added to an element

/// Type and shape of a variant.
struct UaAutomationVariantType
{
    OpcUa_Byte builtInType; ///< Built-in type number.
    OpcUa_Byte arrayType;   ///< OpcUa_VariantArrayType_Scalar, _Array or _Matrix.

    friend constexpr bool operator==(const UaAutomationVariantType&,
                                     const UaAutomationVariantType&) = default;
};

/// What an automation type becomes as a variant. `dimensions` is looked at for types with the array
/// bit: one dimension of bytes is a scalar ByteString, one of anything else an array, more are a
/// matrix. `BadInvalidArgument` for a null pointer, `BadNotFound` for a type without a counterpart or
/// an array without dimensions; the target stays as it was then.
[[nodiscard]] OpcUa_StatusCode UaAutomationType_ToVariantType(UaAutomationType type,
                                                              OpcUa_UInt32 dimensions,
                                                              UaAutomationVariantType* pType);

/// What a variant becomes as an automation type, with the array bit for arrays, matrices and the
/// bytes of a scalar ByteString. Types that have no number of their own become the text or the number
/// that shows them. `BadInvalidArgument` for a null pointer, `BadNotFound` for ExtensionObject,
/// DataValue, DiagnosticInfo and arrays of ByteString or Null; the target stays as it was then.
[[nodiscard]] OpcUa_StatusCode UaAutomationType_FromVariantType(const UaAutomationVariantType& type,
                                                                UaAutomationType* pType);
