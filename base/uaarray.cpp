#include "base/uaarray.h"

#include "platform/allocator.h"

#include <cstddef>

void* UaArray_CreateBlock(const OpcUa_ElementTraits& traits, OpcUa_Int32 length)
{
    const auto count = static_cast<std::size_t>(length);
    auto* block = static_cast<char*>(OpcUa_Memory_AllocZeroed(count, traits.Size));
    if (block != nullptr && !traits.IsPlain) {
        for (std::size_t i = 0; i < count; ++i) {
            traits.Initialize(block + i * traits.Size);
        }
    }
    return block;
}
