#pragma once

#include <cstddef>

// The one allocator of the platform and stack layers: a thin layer over the C library's. Blocks that
// move between records, arrays and variants all come from here and are all freed here. Every function
// may be called from any thread.

/// Allocates `size` bytes, not initialised. Never null for a size of 0: that gives a block that must
/// be freed too. Null when memory is short or the size can't be that of an object.
[[nodiscard]] void* OpcUa_Memory_Alloc(std::size_t size) noexcept;

/// Allocates `count` elements of `size` bytes each, all bytes 0. The product is checked: one that
/// can't be represented gives null, like a lack of memory.
[[nodiscard]] void* OpcUa_Memory_AllocZeroed(std::size_t count, std::size_t size) noexcept;

/// Allocates `count` elements of `size` bytes each, not initialised, with the product checked.
[[nodiscard]] void* OpcUa_Memory_AllocArray(std::size_t count, std::size_t size) noexcept;

/// Changes the size of a block, or allocates one for a null `block`. On failure the answer is null
/// and the old block stays as it was. A size of 0 keeps a block that must be freed.
[[nodiscard]] void* OpcUa_Memory_ReAlloc(void* block, std::size_t size) noexcept;

/// Frees a block; null is allowed.
void OpcUa_Memory_Free(void* block) noexcept;

/// Decides whether the next allocation of `size` bytes fails. Called from every allocating thread.
using OpcUa_MemoryFaultHook = bool (*)(std::size_t size);

/// Sets the hook that makes allocations fail, so that a test can walk through all error paths; null
/// takes it away. Returns the hook that was set before.
OpcUa_MemoryFaultHook OpcUa_Memory_SetFaultHook(OpcUa_MemoryFaultHook hook) noexcept;
