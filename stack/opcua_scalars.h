#pragma once

#include "platform/status.h"
#include "platform/types.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

// The operations of the built-in types that own nothing. One template stands for all of them; the
// names at the end of this file give each type its own set, so that code over any type can be written
// in one pattern.

/// Makes all bytes 0. A null pointer is ignored.
template <typename T>
void OpcUa_Scalar_Initialize(T* value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    if (value != nullptr) {
        *value = T{};
    }
}

/// The same: the value owns nothing.
template <typename T>
void OpcUa_Scalar_Clear(T* value)
{
    OpcUa_Scalar_Initialize(value);
}

/// `BadInvalidArgument` for a null pointer; the destination is cleared then.
template <typename T>
[[nodiscard]] OpcUa_StatusCode OpcUa_Scalar_CopyTo(const T* source, T* destination)
{
    if (source == nullptr || destination == nullptr) {
        OpcUa_Scalar_Clear(destination);
        return OpcUa_BadInvalidArgument;
    }
    *destination = *source;
    return OpcUa_Good;
}

/// Two NaNs are equal; a NaN against a number is 1 from either side; otherwise -1, 0 or 1.
template <typename T>
[[nodiscard]] OpcUa_Int32 OpcUa_Scalar_CompareFloating(T left, T right)
{
    if (std::isnan(left) || std::isnan(right)) {
        return std::isnan(left) && std::isnan(right) ? 0 : 1;
    }
    return left < right ? -1 : (left > right ? 1 : 0);
}

/// The difference, held at the ends of the 32-bit range so that its sign is always right.
template <typename T>
[[nodiscard]] OpcUa_Int32 OpcUa_Scalar_CompareSmallInteger(T left, T right)
{
    const OpcUa_Int64 difference = OpcUa_Int64{left} - OpcUa_Int64{right};
    return static_cast<OpcUa_Int32>(
        std::clamp<OpcUa_Int64>(difference, std::numeric_limits<OpcUa_Int32>::min(),
                                std::numeric_limits<OpcUa_Int32>::max()));
}

/// The order of the bytes in memory: -1, 0 or 1. For a number this is not the numeric order on a
/// little-endian machine; it is only good for telling values apart and for a stable sorting.
template <typename T>
[[nodiscard]] OpcUa_Int32 OpcUa_Scalar_CompareMemory(const T& left, const T& right)
{
    static_assert(std::has_unique_object_representations_v<T>);
    const int order = std::memcmp(&left, &right, sizeof(T));
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

/// Order of two values by the rule of their kind: floating point, integers up to 32 bits, and
/// anything larger by its bytes. The same pointer is equal; a null pointer is less.
template <typename T>
[[nodiscard]] OpcUa_Int32 OpcUa_Scalar_Compare(const T* left, const T* right)
{
    if (left == right) {
        return 0;
    }
    if (left == nullptr || right == nullptr) {
        return left == nullptr ? -1 : 1;
    }
    if constexpr (std::is_floating_point_v<T>) {
        return OpcUa_Scalar_CompareFloating(*left, *right);
    } else if constexpr (sizeof(T) >= 8) {
        return OpcUa_Scalar_CompareMemory(*left, *right);
    } else {
        return OpcUa_Scalar_CompareSmallInteger(*left, *right);
    }
}

inline constexpr auto& OpcUa_Boolean_Initialize = OpcUa_Scalar_Initialize<OpcUa_Boolean>;
inline constexpr auto& OpcUa_Boolean_Clear = OpcUa_Scalar_Clear<OpcUa_Boolean>;
inline constexpr auto& OpcUa_Boolean_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Boolean>;
inline constexpr auto& OpcUa_Boolean_Compare = OpcUa_Scalar_Compare<OpcUa_Boolean>;

inline constexpr auto& OpcUa_SByte_Initialize = OpcUa_Scalar_Initialize<OpcUa_SByte>;
inline constexpr auto& OpcUa_SByte_Clear = OpcUa_Scalar_Clear<OpcUa_SByte>;
inline constexpr auto& OpcUa_SByte_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_SByte>;
inline constexpr auto& OpcUa_SByte_Compare = OpcUa_Scalar_Compare<OpcUa_SByte>;

inline constexpr auto& OpcUa_Byte_Initialize = OpcUa_Scalar_Initialize<OpcUa_Byte>;
inline constexpr auto& OpcUa_Byte_Clear = OpcUa_Scalar_Clear<OpcUa_Byte>;
inline constexpr auto& OpcUa_Byte_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Byte>;
inline constexpr auto& OpcUa_Byte_Compare = OpcUa_Scalar_Compare<OpcUa_Byte>;

inline constexpr auto& OpcUa_Int16_Initialize = OpcUa_Scalar_Initialize<OpcUa_Int16>;
inline constexpr auto& OpcUa_Int16_Clear = OpcUa_Scalar_Clear<OpcUa_Int16>;
inline constexpr auto& OpcUa_Int16_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Int16>;
inline constexpr auto& OpcUa_Int16_Compare = OpcUa_Scalar_Compare<OpcUa_Int16>;

inline constexpr auto& OpcUa_UInt16_Initialize = OpcUa_Scalar_Initialize<OpcUa_UInt16>;
inline constexpr auto& OpcUa_UInt16_Clear = OpcUa_Scalar_Clear<OpcUa_UInt16>;
inline constexpr auto& OpcUa_UInt16_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_UInt16>;
inline constexpr auto& OpcUa_UInt16_Compare = OpcUa_Scalar_Compare<OpcUa_UInt16>;

inline constexpr auto& OpcUa_Int32_Initialize = OpcUa_Scalar_Initialize<OpcUa_Int32>;
inline constexpr auto& OpcUa_Int32_Clear = OpcUa_Scalar_Clear<OpcUa_Int32>;
inline constexpr auto& OpcUa_Int32_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Int32>;
inline constexpr auto& OpcUa_Int32_Compare = OpcUa_Scalar_Compare<OpcUa_Int32>;

inline constexpr auto& OpcUa_UInt32_Initialize = OpcUa_Scalar_Initialize<OpcUa_UInt32>;
inline constexpr auto& OpcUa_UInt32_Clear = OpcUa_Scalar_Clear<OpcUa_UInt32>;
inline constexpr auto& OpcUa_UInt32_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_UInt32>;
inline constexpr auto& OpcUa_UInt32_Compare = OpcUa_Scalar_Compare<OpcUa_UInt32>;

inline constexpr auto& OpcUa_Int64_Initialize = OpcUa_Scalar_Initialize<OpcUa_Int64>;
inline constexpr auto& OpcUa_Int64_Clear = OpcUa_Scalar_Clear<OpcUa_Int64>;
inline constexpr auto& OpcUa_Int64_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Int64>;
inline constexpr auto& OpcUa_Int64_Compare = OpcUa_Scalar_Compare<OpcUa_Int64>;

inline constexpr auto& OpcUa_UInt64_Initialize = OpcUa_Scalar_Initialize<OpcUa_UInt64>;
inline constexpr auto& OpcUa_UInt64_Clear = OpcUa_Scalar_Clear<OpcUa_UInt64>;
inline constexpr auto& OpcUa_UInt64_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_UInt64>;
inline constexpr auto& OpcUa_UInt64_Compare = OpcUa_Scalar_Compare<OpcUa_UInt64>;

inline constexpr auto& OpcUa_Float_Initialize = OpcUa_Scalar_Initialize<OpcUa_Float>;
inline constexpr auto& OpcUa_Float_Clear = OpcUa_Scalar_Clear<OpcUa_Float>;
inline constexpr auto& OpcUa_Float_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Float>;
inline constexpr auto& OpcUa_Float_Compare = OpcUa_Scalar_Compare<OpcUa_Float>;

inline constexpr auto& OpcUa_Double_Initialize = OpcUa_Scalar_Initialize<OpcUa_Double>;
inline constexpr auto& OpcUa_Double_Clear = OpcUa_Scalar_Clear<OpcUa_Double>;
inline constexpr auto& OpcUa_Double_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_Double>;
inline constexpr auto& OpcUa_Double_Compare = OpcUa_Scalar_Compare<OpcUa_Double>;

inline constexpr auto& OpcUa_StatusCode_Initialize = OpcUa_Scalar_Initialize<OpcUa_StatusCode>;
inline constexpr auto& OpcUa_StatusCode_Clear = OpcUa_Scalar_Clear<OpcUa_StatusCode>;
inline constexpr auto& OpcUa_StatusCode_CopyTo = OpcUa_Scalar_CopyTo<OpcUa_StatusCode>;
inline constexpr auto& OpcUa_StatusCode_Compare = OpcUa_Scalar_Compare<OpcUa_StatusCode>;
