#pragma once

#include "base/uaarray.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_elementtraits.h"

#include <cstddef>
#include <string_view>

/// Elements of arrays made of texts, for the sources of UaVariant.
namespace UaVariantTexts {

/// The types that a text can become an element of: Boolean to Guid.
[[nodiscard]] constexpr bool isReadable(OpcUa_Byte type)
{
    return type >= OpcUaType_Boolean && type <= OpcUaType_Guid;
}

/// Fills one zeroed element of a readable type, as the conversion of a scalar String does; a failure
/// leaves it as it was.
[[nodiscard]] OpcUa_StatusCode convertOne(OpcUa_Byte type, std::string_view text, void* element);

/// Makes a block of `count` elements of a readable type of what `next()` answers, text by text. The
/// first failure ends it, with its status and a null block; a count below 1 gives a null block too.
template <typename Next>
[[nodiscard]] OpcUa_StatusCode convert(OpcUa_Byte type, OpcUa_Int32 count, Next next, void** block)
{
    const OpcUa_ElementTraits& traits = *OpcUa_BuiltInType_GetTraits(type);
    *block = nullptr;
    if (count < 1) {
        return OpcUa_Good;
    }
    auto* elements = static_cast<char*>(UaArray_CreateBlock(traits, count));
    if (elements == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        const OpcUa_StatusCode status =
            convertOne(type, next(), elements + static_cast<std::size_t>(i) * traits.Size);
        if (OpcUa_IsBad(status)) {
            OpcUa_Elements_Free(traits, elements, i);
            return status;
        }
    }
    *block = elements;
    return OpcUa_Good;
}

} // namespace UaVariantTexts
