#pragma once

#include "platform/types.h"

#include <concepts>

class UaBooleanArray;
class UaByteArray;
class UaByteString;
class UaByteStringArray;
class UaDataValue;
class UaDataValues;
class UaDateTime;
class UaDateTimeArray;
class UaDoubleArray;
class UaExpandedNodeId;
class UaExpandedNodeIdArray;
class UaExtensionObject;
class UaExtensionObjectArray;
class UaFloatArray;
class UaGuid;
class UaGuidArray;
class UaInt16Array;
class UaInt32Array;
class UaInt64Array;
class UaLocalizedText;
class UaLocalizedTextArray;
class UaNodeId;
class UaNodeIdArray;
class UaQualifiedName;
class UaQualifiedNameArray;
class UaSByteArray;
class UaStatusCode;
class UaStatusCodeArray;
class UaString;
class UaStringArray;
class UaUInt16Array;
class UaUInt32Array;
class UaUInt64Array;
class UaVariantArray;

/// `T` is one of the types behind it.
template <typename T, typename... Candidates>
concept UaOneOf = (std::same_as<T, Candidates> || ...);

/// What a variant is constructed from and assigned from: numbers, value classes and arrays, each with
/// its setter of the same kind. bool makes a Boolean; OpcUa_Boolean is one type with OpcUa_Byte and
/// makes a Byte.
template <typename T>
concept UaVariantSource =
    UaOneOf<T, bool, OpcUa_SByte, OpcUa_Byte, OpcUa_Int16, OpcUa_UInt16, OpcUa_Int32, OpcUa_UInt32,
            OpcUa_Int64, OpcUa_UInt64, OpcUa_Float, OpcUa_Double, UaString, UaDateTime, UaGuid,
            UaByteString, UaNodeId, UaExpandedNodeId, UaStatusCode, UaQualifiedName,
            UaLocalizedText, UaExtensionObject, UaDataValue, UaBooleanArray, UaSByteArray,
            UaByteArray, UaInt16Array, UaUInt16Array, UaInt32Array, UaUInt32Array, UaInt64Array,
            UaUInt64Array, UaFloatArray, UaDoubleArray, UaStringArray, UaDateTimeArray, UaGuidArray,
            UaByteStringArray, UaNodeIdArray, UaExpandedNodeIdArray, UaStatusCodeArray,
            UaQualifiedNameArray, UaLocalizedTextArray, UaExtensionObjectArray, UaDataValues,
            UaVariantArray>;

/// What a variant can be constructed from with its content moved.
template <typename T>
concept UaVariantDetachableSource =
    UaOneOf<T, UaByteString, UaExtensionObject, UaDataValue, UaBooleanArray, UaSByteArray,
            UaByteArray, UaInt16Array, UaUInt16Array, UaInt32Array, UaUInt32Array, UaInt64Array,
            UaUInt64Array, UaFloatArray, UaDoubleArray, UaDateTimeArray, UaGuidArray,
            UaByteStringArray, UaNodeIdArray, UaExpandedNodeIdArray, UaStatusCodeArray,
            UaExtensionObjectArray, UaVariantArray>;
