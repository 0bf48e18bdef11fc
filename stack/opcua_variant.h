#pragma once

#include "platform/datetime.h"
#include "platform/types.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_string.h"

#include <cstddef>
#include <type_traits>

struct OpcUa_DataValue;
struct OpcUa_DiagnosticInfo;
struct OpcUa_ExpandedNodeId;
struct OpcUa_ExtensionObject;
struct OpcUa_LocalizedText;
struct OpcUa_NodeId;
struct OpcUa_QualifiedName;
struct OpcUa_Variant;

/// The flat block of an array. Elements are of the variant's built-in type.
struct OpcUa_VariantArray
{
    OpcUa_Int32 Length; ///< Elements; -1 for a null array.
    void* Elements;     ///< Owned, from the stack's allocator.
};

/// The flat block of a matrix, the last dimension varying fastest.
struct OpcUa_VariantMatrix
{
    OpcUa_Int32 NoOfDimensions;
    OpcUa_Int32* Dimensions; ///< Owned, from the stack's allocator.
    void* Elements;          ///< Owned; as many elements as the product of the dimensions.
};

/// The value of a variant: a scalar of one of the built-in types, an array or a matrix. The types
/// behind a pointer lie in a block from the stack's allocator, which the variant owns; null is
/// allowed there.
union OpcUa_VariantValue
{
    OpcUa_Boolean Boolean;
    OpcUa_SByte SByte;
    OpcUa_Byte Byte;
    OpcUa_Int16 Int16;
    OpcUa_UInt16 UInt16;
    OpcUa_Int32 Int32;
    OpcUa_UInt32 UInt32;
    OpcUa_Int64 Int64;
    OpcUa_UInt64 UInt64;
    OpcUa_Float Float;
    OpcUa_Double Double;
    OpcUa_String String;
    OpcUa_DateTime DateTime;
    OpcUa_Guid* Guid;
    OpcUa_ByteString ByteString;
    OpcUa_XmlElement XmlElement;
    OpcUa_NodeId* NodeId;
    OpcUa_ExpandedNodeId* ExpandedNodeId;
    OpcUa_StatusCode StatusCode;
    OpcUa_QualifiedName* QualifiedName;
    OpcUa_LocalizedText* LocalizedText;
    OpcUa_ExtensionObject* ExtensionObject;
    OpcUa_DataValue* DataValue;
    OpcUa_Variant* Variant;
    OpcUa_DiagnosticInfo* DiagnosticInfo;
    OpcUa_VariantArray Array;
    OpcUa_VariantMatrix Matrix;
};

/// A value of any built-in type (OPC 10000-6, 5.1.9). It owns what it holds, and moves by a plain
/// copy of its memory: whoever copies it that way zeroes the source.
struct OpcUa_Variant
{
    OpcUa_Byte Datatype;   ///< Built-in type number, OpcUaType_Null to OpcUaType_DiagnosticInfo.
    OpcUa_Byte ArrayType;  ///< OpcUa_VariantArrayType_Scalar, _Array or _Matrix.
    OpcUa_UInt16 Reserved; ///< Unused, 0.
    OpcUa_VariantValue Value;
};
static_assert(std::is_trivially_copyable_v<OpcUa_Variant>);
static_assert(std::is_standard_layout_v<OpcUa_Variant>);
static_assert(offsetof(OpcUa_Variant, Datatype) == 0);
static_assert(offsetof(OpcUa_Variant, ArrayType) == 1);
static_assert(offsetof(OpcUa_Variant, Reserved) == 2);
static_assert(offsetof(OpcUa_Variant, Value) == 8);

/// Makes the Null variant, all bytes 0, without looking at what was there. A null pointer is ignored.
void OpcUa_Variant_Initialize(OpcUa_Variant* variant);

/// Frees what the variant holds and makes the Null variant. Null pointers and a second call are
/// allowed. A matrix whose dimensions multiply to 0 or less is traced and only its dimensions are
/// freed. Nesting of any depth is freed without deep recursion.
void OpcUa_Variant_Clear(OpcUa_Variant* variant);

/// Deep copy; the destination is cleared first. An array or matrix without an element block gives
/// one without. `BadInvalidArgument` for a null pointer, a built-in type above 25 or an unknown array
/// type, `BadOutOfMemory`, `BadEncodingLimitsExceeded` for nesting deeper than
/// OpcUa_Nesting_MaxLevels; the destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_Variant_CopyTo(const OpcUa_Variant* source,
                                                    OpcUa_Variant* destination);

/// Differences of type and array type, then the values. Scalars go by their type's compare, and
/// those of a type above 23 are equal. Arrays go by their lengths, then by their elements; matrices
/// by the product of their dimensions, then by their elements, and a product of 0 or less is traced.
/// The same pointer is equal, a null pointer less. Nesting deeper than OpcUa_Nesting_MaxLevels gives
/// 1.
[[nodiscard]] OpcUa_Int32 OpcUa_Variant_Compare(const OpcUa_Variant* left,
                                                const OpcUa_Variant* right);

/// Number of elements of a matrix: the product of its dimensions, 1 for no dimensions. 0 for a null
/// pointer, for missing dimensions and for a product that doesn't fit 32 bits.
[[nodiscard]] OpcUa_Int32 OpcUa_Variant_MatrixSize(const OpcUa_VariantMatrix* matrix);
