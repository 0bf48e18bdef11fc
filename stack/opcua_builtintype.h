#pragma once

#include "platform/types.h"

struct OpcUa_ElementTraits;

// Numbers of the built-in types (OPC 10000-6, 5.1.2), as they stand in OpcUa_Variant::Datatype.

inline constexpr OpcUa_Byte OpcUaType_Null = 0;
inline constexpr OpcUa_Byte OpcUaType_Boolean = 1;
inline constexpr OpcUa_Byte OpcUaType_SByte = 2;
inline constexpr OpcUa_Byte OpcUaType_Byte = 3;
inline constexpr OpcUa_Byte OpcUaType_Int16 = 4;
inline constexpr OpcUa_Byte OpcUaType_UInt16 = 5;
inline constexpr OpcUa_Byte OpcUaType_Int32 = 6;
inline constexpr OpcUa_Byte OpcUaType_UInt32 = 7;
inline constexpr OpcUa_Byte OpcUaType_Int64 = 8;
inline constexpr OpcUa_Byte OpcUaType_UInt64 = 9;
inline constexpr OpcUa_Byte OpcUaType_Float = 10;
inline constexpr OpcUa_Byte OpcUaType_Double = 11;
inline constexpr OpcUa_Byte OpcUaType_String = 12;
inline constexpr OpcUa_Byte OpcUaType_DateTime = 13;
inline constexpr OpcUa_Byte OpcUaType_Guid = 14;
inline constexpr OpcUa_Byte OpcUaType_ByteString = 15;
inline constexpr OpcUa_Byte OpcUaType_XmlElement = 16;
inline constexpr OpcUa_Byte OpcUaType_NodeId = 17;
inline constexpr OpcUa_Byte OpcUaType_ExpandedNodeId = 18;
inline constexpr OpcUa_Byte OpcUaType_StatusCode = 19;
inline constexpr OpcUa_Byte OpcUaType_QualifiedName = 20;
inline constexpr OpcUa_Byte OpcUaType_LocalizedText = 21;
inline constexpr OpcUa_Byte OpcUaType_ExtensionObject = 22;
inline constexpr OpcUa_Byte OpcUaType_DataValue = 23;
inline constexpr OpcUa_Byte OpcUaType_Variant = 24;
inline constexpr OpcUa_Byte OpcUaType_DiagnosticInfo = 25;

/// The shape of a variant, as it stands in OpcUa_Variant::ArrayType.
inline constexpr OpcUa_Byte OpcUa_VariantArrayType_Scalar = 0;
inline constexpr OpcUa_Byte OpcUa_VariantArrayType_Array = 1;
inline constexpr OpcUa_Byte OpcUa_VariantArrayType_Matrix = 2;

/// How elements of a built-in type are handled; null for a number above 25. The row of Null has
/// elements of size 0.
[[nodiscard]] const OpcUa_ElementTraits* OpcUa_BuiltInType_GetTraits(OpcUa_Byte type);
