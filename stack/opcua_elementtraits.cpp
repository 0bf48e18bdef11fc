#include "stack/opcua_elementtraits.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_nesting.h"

#include <cstring>

namespace {

/// A block whose freeing waits until the thread is out of the depth in which it was found.
struct WaitingBlock
{
    WaitingBlock* next;
    OpcUa_ElementTraits traits;
    void* elements;
    OpcUa_Int32 count;
};

thread_local OpcUa_UInt32 freeingDepth = 0;
thread_local WaitingBlock* waitingBlocks = nullptr;

const char* elementAt(const OpcUa_ElementTraits& traits, const void* elements, OpcUa_Int32 index)
{
    return static_cast<const char*>(elements) + static_cast<std::size_t>(index) * traits.Size;
}

char* elementAt(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 index)
{
    return static_cast<char*>(elements) + static_cast<std::size_t>(index) * traits.Size;
}

void freeNow(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count)
{
    if (traits.ReleaseBlock != nullptr) {
        traits.ReleaseBlock(elements, count);
    } else {
        OpcUa_Elements_Clear(traits, elements, count);
    }
    OpcUa_Memory_Free(elements);
}

/// False when there is no memory to note it down.
bool putOff(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count)
{
    auto* waiting = static_cast<WaitingBlock*>(OpcUa_Memory_Alloc(sizeof(WaitingBlock)));
    if (waiting == nullptr) {
        return false;
    }
    *waiting = {waitingBlocks, traits, elements, count};
    waitingBlocks = waiting;
    return true;
}

void freeWaitingBlocks()
{
    while (waitingBlocks != nullptr) {
        const WaitingBlock block = *waitingBlocks;
        OpcUa_Memory_Free(waitingBlocks);
        waitingBlocks = block.next;
        freeNow(block.traits, block.elements, block.count);
    }
}

/// Elements free what is nested in them through here again, so the stack would grow with the nesting.
/// From a certain depth on the rest waits until the outermost call can take it up. Without the memory
/// for that the recursion simply goes on, which is safe up to some ten thousand levels.
void freeNested(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count)
{
    if (freeingDepth >= OpcUa_Nesting_MaxLevels && putOff(traits, elements, count)) {
        return;
    }
    ++freeingDepth;
    freeNow(traits, elements, count);
    if (freeingDepth == 1) {
        freeWaitingBlocks();
    }
    --freeingDepth;
}

OpcUa_StatusCode copyPlain(const OpcUa_ElementTraits& traits, const void* elements,
                           OpcUa_Int32 count, void** copy)
{
    const auto elementCount = static_cast<std::size_t>(count);
    *copy = OpcUa_Memory_AllocArray(elementCount, traits.Size);
    if (*copy == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    std::memcpy(*copy, elements, elementCount * traits.Size);
    return OpcUa_Good;
}

/// The counterpart of a CopyBlock for types that have none.
OpcUa_StatusCode fillBlock(const OpcUa_ElementTraits& traits, const void* elements,
                           OpcUa_Int32 count, void* block, OpcUa_Int32* copied)
{
    OpcUa_StatusCode status = OpcUa_Good;
    for (*copied = 0; *copied < count; ++*copied) {
        status =
            traits.CopyTo(elementAt(traits, elements, *copied), elementAt(traits, block, *copied));
        if (OpcUa_IsBad(status)) {
            break;
        }
    }
    return status;
}

OpcUa_StatusCode copyOneByOne(const OpcUa_ElementTraits& traits, const void* elements,
                              OpcUa_Int32 count, void** copy)
{
    void* block = OpcUa_Memory_AllocZeroed(static_cast<std::size_t>(count), traits.Size);
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_Int32 copied = 0;
    const OpcUa_StatusCode status = traits.CopyBlock != nullptr
                                        ? traits.CopyBlock(elements, count, block, &copied)
                                        : fillBlock(traits, elements, count, block, &copied);
    if (OpcUa_IsBad(status)) {
        OpcUa_Elements_Free(traits, block, copied);
        return status;
    }
    *copy = block;
    return status;
}

OpcUa_Int32 compareOneByOne(const OpcUa_ElementTraits& traits, const void* left, const void* right,
                            OpcUa_Int32 count)
{
    OpcUa_Int32 order = 0;
    for (OpcUa_Int32 i = 0; i < count && order == 0; ++i) {
        order = traits.Compare(elementAt(traits, left, i), elementAt(traits, right, i));
    }
    return order;
}

} // namespace

OpcUa_ElementTraits OpcUa_ElementTraits_FromEncodeableType(const OpcUa_EncodeableType& type)
{
    return {type.AllocationSize, false,       true,         true,    type.Initialize,
            type.Clear,          type.CopyTo, type.Compare, nullptr, nullptr};
}

void OpcUa_Elements_Clear(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count)
{
    if (traits.IsPlain || elements == nullptr) {
        return;
    }
    for (OpcUa_Int32 i = 0; i < count; ++i) {
        traits.Clear(elementAt(traits, elements, i));
    }
}

void OpcUa_Elements_Free(const OpcUa_ElementTraits& traits, void* elements, OpcUa_Int32 count)
{
    if (elements == nullptr) {
        return;
    }
    if (traits.IsNestable) {
        freeNested(traits, elements, count);
    } else {
        freeNow(traits, elements, count);
    }
}

OpcUa_StatusCode OpcUa_Elements_Copy(const OpcUa_ElementTraits& traits, const void* elements,
                                     OpcUa_Int32 count, void** copy)
{
    if (copy == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *copy = nullptr;
    if (elements == nullptr || count < 1) {
        return OpcUa_Good;
    }
    if (traits.IsPlain) {
        return copyPlain(traits, elements, count, copy);
    }
    if (!traits.IsNestable) {
        return copyOneByOne(traits, elements, count, copy);
    }
    const OpcUa_NestingLevel level;
    return level.isTooDeep() ? OpcUa_BadEncodingLimitsExceeded
                             : copyOneByOne(traits, elements, count, copy);
}

OpcUa_Int32 OpcUa_Elements_Compare(const OpcUa_ElementTraits& traits, const void* left,
                                   const void* right, OpcUa_Int32 count)
{
    if (left == right || count < 1) {
        return 0;
    }
    if (left == nullptr || right == nullptr) {
        return left == nullptr ? -1 : 1;
    }
    // Equal bytes are equal elements of any plain type, NaN included.
    if (traits.IsPlain &&
        std::memcmp(left, right, static_cast<std::size_t>(count) * traits.Size) == 0) {
        return 0;
    }
    if (!traits.IsNestable) {
        return compareOneByOne(traits, left, right, count);
    }
    const OpcUa_NestingLevel level;
    return level.isTooDeep() ? 1 : compareOneByOne(traits, left, right, count);
}
