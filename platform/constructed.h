#pragma once

#include "platform/allocator.h"

#include <memory>
#include <utility>

// Objects with a constructor in blocks of the platform's allocator, so that a lack of memory is an
// answer and not an exception.

/// Allocates and constructs an object; null when memory is short. The caller gives it back with
/// OpcUa_Memory_Destroy.
template <typename Type, typename... Arguments>
[[nodiscard]] Type* OpcUa_Memory_Construct(Arguments&&... arguments)
{
    void* const block = OpcUa_Memory_Alloc(sizeof(Type));
    if (block == nullptr) {
        return nullptr;
    }
    return std::construct_at(static_cast<Type*>(block), std::forward<Arguments>(arguments)...);
}

/// Destroys an object and frees its block; null is allowed.
template <typename Type>
void OpcUa_Memory_Destroy(Type* object)
{
    if (object != nullptr) {
        std::destroy_at(object);
        OpcUa_Memory_Free(object);
    }
}
