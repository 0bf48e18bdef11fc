#include "platform/allocator.h"

#include <algorithm>

std::atomic<OpcUa_MemoryFaultHook> OpcUa_Memory_FaultHook = nullptr;

namespace {

bool isProductTooLarge(std::size_t count, std::size_t size)
{
    return size != 0 && count > static_cast<std::size_t>(PTRDIFF_MAX) / size;
}

} // namespace

void* OpcUa_Memory_AllocZeroed(std::size_t count, std::size_t size) noexcept
{
    if (isProductTooLarge(count, size) || OpcUa_Memory_IsRefused(count * size)) {
        return nullptr;
    }
    return std::calloc(std::max<std::size_t>(count * size, 1), 1);
}

void* OpcUa_Memory_AllocArray(std::size_t count, std::size_t size) noexcept
{
    return isProductTooLarge(count, size) ? nullptr : OpcUa_Memory_Alloc(count * size);
}

void* OpcUa_Memory_ReAlloc(void* block, std::size_t size) noexcept
{
    return OpcUa_Memory_IsRefused(size) ? nullptr
                                        : std::realloc(block, std::max<std::size_t>(size, 1));
}

OpcUa_MemoryFaultHook OpcUa_Memory_SetFaultHook(OpcUa_MemoryFaultHook hook) noexcept
{
    return OpcUa_Memory_FaultHook.exchange(hook);
}
