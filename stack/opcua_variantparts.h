#pragma once

#include "stack/opcua_variant.h"

#include <cstring>

// Parts that the sources of OpcUa_Variant share.

/// The pointer of a scalar whose type is held behind one: all members of that sort have the same
/// representation.
[[nodiscard]] inline void* OpcUa_VariantValue_GetPointer(const OpcUa_VariantValue& value)
{
    void* pointer = nullptr;
    std::memcpy(&pointer, &value, sizeof(pointer));
    return pointer;
}

/// The counterpart of OpcUa_VariantValue_GetPointer.
inline void OpcUa_VariantValue_SetPointer(OpcUa_VariantValue& value, void* pointer)
{
    std::memcpy(&value, &pointer, sizeof(pointer));
}
