#include "platform/allocator.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace {

std::atomic<OpcUa_MemoryFaultHook> faultHook = nullptr;

/// No object is larger than PTRDIFF_MAX bytes; refusing such a size here spares the C library's
/// checkers from ending the process over it.
bool isRefused(std::size_t size)
{
    const OpcUa_MemoryFaultHook hook = faultHook.load(std::memory_order_relaxed);
    return size > static_cast<std::size_t>(PTRDIFF_MAX) || (hook != nullptr && hook(size));
}

/// The C library may answer null for 0 bytes, which a caller couldn't tell from a lack of memory.
std::size_t atLeastOne(std::size_t size)
{
    return size == 0 ? 1 : size;
}

bool isProductTooLarge(std::size_t count, std::size_t size)
{
    return size != 0 && count > static_cast<std::size_t>(PTRDIFF_MAX) / size;
}

} // namespace

void* OpcUa_Memory_Alloc(std::size_t size) noexcept
{
    return isRefused(size) ? nullptr : std::malloc(atLeastOne(size));
}

void* OpcUa_Memory_AllocZeroed(std::size_t count, std::size_t size) noexcept
{
    if (isProductTooLarge(count, size) || isRefused(count * size)) {
        return nullptr;
    }
    return std::calloc(atLeastOne(count * size), 1);
}

void* OpcUa_Memory_AllocArray(std::size_t count, std::size_t size) noexcept
{
    return isProductTooLarge(count, size) ? nullptr : OpcUa_Memory_Alloc(count * size);
}

void* OpcUa_Memory_ReAlloc(void* block, std::size_t size) noexcept
{
    return isRefused(size) ? nullptr : std::realloc(block, atLeastOne(size));
}

void OpcUa_Memory_Free(void* block) noexcept
{
    std::free(block);
}

OpcUa_MemoryFaultHook OpcUa_Memory_SetFaultHook(OpcUa_MemoryFaultHook hook) noexcept
{
    return faultHook.exchange(hook);
}
