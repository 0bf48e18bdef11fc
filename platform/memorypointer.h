#pragma once

#include "platform/allocator.h"

#include <memory>

/// Frees a block of the platform's allocator.
struct OpcUa_MemoryDeleter
{
    void operator()(void* block) const noexcept { OpcUa_Memory_Free(block); }
};

/// Owns a block of the platform's allocator that holds plain records. No destructor runs in it.
template <typename Type>
using OpcUa_MemoryPointer = std::unique_ptr<Type, OpcUa_MemoryDeleter>;
