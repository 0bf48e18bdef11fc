#include "base/uaarray.h"
#include "base/uavariant.h"
#include "base/uavariantrange.h"
#include "platform/allocator.h"
#include "stack/opcua_bytestring.h"

#include <algorithm>
#include <cstring>
#include <utility>

// Reading and writing parts of a value.

using namespace UaVariantParts;
using namespace UaVariantRange;

namespace {

const char* elementAt(const void* block, std::size_t index, std::size_t size)
{
    return static_cast<const char*>(block) + index * size;
}

char* elementAt(void* block, std::size_t index, std::size_t size)
{
    return static_cast<char*>(block) + index * size;
}

/// A block of elements that are all cleared with it.
class Block
{
public:
    Block(const OpcUa_ElementTraits& traits, OpcUa_Int32 count)
        : m_traits(traits)
        , m_count(count)
        , m_elements(UaArray_CreateBlock(traits, count))
    {
    }
    ~Block() { OpcUa_Elements_Free(m_traits, m_elements, m_count); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    [[nodiscard]] void* elements() { return m_elements; }
    [[nodiscard]] void* release() { return std::exchange(m_elements, nullptr); }

private:
    const OpcUa_ElementTraits& m_traits;
    OpcUa_Int32 m_count;
    void* m_elements;
};

/// The parts of an array or matrix that a range means.
struct Target
{
    explicit Target(const OpcUa_Variant& variant)
        : type(variant.Datatype)
        , traits(*OpcUa_BuiltInType_GetTraits(type))
    {
    }

    OpcUa_Byte type;
    const OpcUa_ElementTraits& traits;
    Selection selection{};
    const UaNumericRangeEntry* part = nullptr; ///< Within each element, or null.
};

/// `BadIndexRangeNoData` when the range has another number of entries than the value, or isn't inside.
OpcUa_StatusCode findTarget(const OpcUa_Variant& variant, const UaNumericRange& range,
                            bool shortens, Target& target)
{
    const Shape shape = shapeOf(variant);
    const bool hasPart = hasParts(variant.Datatype) && range.count() == shape.count + 1;
    if (elementsOf(variant).count == 0 || (range.count() != shape.count && !hasPart) ||
        !target.selection.select(shape, range, shortens)) {
        return OpcUa_BadIndexRangeNoData;
    }
    target.part = hasPart ? &range[shape.count] : nullptr;
    return OpcUa_Good;
}

// Reading ----------------------------------------------------------------------------------------

/// Copies the part of an element, and counts what it found there.
OpcUa_StatusCode readPart(OpcUa_Byte type, const void* element, const UaNumericRangeEntry& entry,
                          OpcUa_UInt64& foundCount, void* part)
{
    const Part found = findPart(type, element, entry);
    foundCount += found.count;
    return join(type, contentOf(type, element).substr(found.begin, found.end - found.begin), {}, {},
                part);
}

OpcUa_StatusCode readScalar(const OpcUa_Variant& source, const UaNumericRange& range,
                            OpcUa_Variant& result)
{
    if (!hasParts(source.Datatype) || range.count() != 1) {
        return OpcUa_BadIndexRangeNoData;
    }
    OpcUa_UInt64 foundCount = 0;
    const OpcUa_StatusCode status =
        readPart(source.Datatype, &source.Value, range[0], foundCount, &result.Value);
    if (OpcUa_IsGood(status)) {
        result.Datatype = source.Datatype;
    }
    return OpcUa_IsGood(status) && foundCount == 0 ? OpcUa_BadIndexRangeNoData : status;
}

/// Copies the selected elements one after another.
OpcUa_StatusCode readWhole(const Target& target, const void* source, void* result)
{
    OpcUa_StatusCode status = OpcUa_Good;
    const std::size_t size = target.traits.Size;
    auto* destination = static_cast<char*>(result);
    target.selection.forEachRun([&](std::size_t offset, std::size_t length) {
        if (target.traits.IsPlain) {
            std::memcpy(destination, elementAt(source, offset, size), length * size);
            destination += length * size;
            return true;
        }
        for (std::size_t i = 0; i < length && OpcUa_IsGood(status); ++i, destination += size) {
            status = target.traits.CopyTo(elementAt(source, offset + i, size), destination);
        }
        return OpcUa_IsGood(status);
    });
    return status;
}

/// Copies a part of each selected element. At least one must have something there.
OpcUa_StatusCode readParts(const Target& target, const void* source, void* result)
{
    OpcUa_StatusCode status = OpcUa_Good;
    OpcUa_UInt64 foundCount = 0;
    const std::size_t size = target.traits.Size;
    auto* destination = static_cast<char*>(result);
    target.selection.forEachRun([&](std::size_t offset, std::size_t length) {
        for (std::size_t i = 0; i < length && OpcUa_IsGood(status); ++i, destination += size) {
            status = readPart(target.type, elementAt(source, offset + i, size), *target.part,
                              foundCount, destination);
        }
        return OpcUa_IsGood(status);
    });
    return OpcUa_IsGood(status) && foundCount == 0 ? OpcUa_BadIndexRangeNoData : status;
}

/// Gives the result the shape of the selected block.
OpcUa_StatusCode shapeResult(const OpcUa_Variant& source, const UaNumericRange& range,
                             OpcUa_Int32 count, OpcUa_Variant& result)
{
    result.Datatype = source.Datatype;
    result.ArrayType = source.ArrayType;
    if (::isArray(source)) {
        result.Value.Array = {count, nullptr};
        return OpcUa_Good;
    }
    const Shape shape = shapeOf(source);
    auto* dimensions =
        static_cast<OpcUa_Int32*>(OpcUa_Memory_AllocArray(shape.count, sizeof(OpcUa_Int32)));
    if (dimensions == nullptr) {
        OpcUa_Variant_Initialize(&result);
        return OpcUa_BadOutOfMemory;
    }
    for (OpcUa_UInt32 i = 0; i < shape.count; ++i) {
        const OpcUa_Int64 end = std::min<OpcUa_Int64>(range[i].end(), shape.dimensions[i] - 1);
        dimensions[i] = static_cast<OpcUa_Int32>(end - range[i].first + 1);
    }
    result.Value.Matrix = {static_cast<OpcUa_Int32>(shape.count), dimensions, nullptr};
    return OpcUa_Good;
}

OpcUa_StatusCode readElements(const OpcUa_Variant& source, const UaNumericRange& range,
                              OpcUa_Variant& result)
{
    Target target(source);
    OpcUa_StatusCode status = findTarget(source, range, true, target);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    Block block(target.traits, target.selection.count());
    if (block.elements() == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    const void* elements = elementsOf(source).block;
    status = target.part == nullptr ? readWhole(target, elements, block.elements())
                                    : readParts(target, elements, block.elements());
    if (OpcUa_IsGood(status)) {
        status = shapeResult(source, range, target.selection.count(), result);
    }
    if (OpcUa_IsGood(status)) {
        void*& place =
            ::isArray(result) ? result.Value.Array.Elements : result.Value.Matrix.Elements;
        place = block.release();
    }
    return status;
}

// Writing ----------------------------------------------------------------------------------------

/// Makes an element with a part of it replaced. The new part must be exactly as large as the range.
OpcUa_StatusCode replacePart(OpcUa_Byte type, const void* element, const UaNumericRangeEntry& entry,
                             const void* value, void* result)
{
    const Part found = findPart(type, element, entry);
    if (found.count != sizeOf(entry) || partsOf(type, value) != sizeOf(entry)) {
        return OpcUa_BadIndexRangeNoData;
    }
    const std::string_view content = contentOf(type, element);
    return join(type, content.substr(0, found.begin), contentOf(type, value),
                content.substr(found.end), result);
}

OpcUa_StatusCode writeScalar(OpcUa_Variant& variant, const UaNumericRange& range,
                             const OpcUa_Variant& value)
{
    if (!hasParts(variant.Datatype) || range.count() != 1) {
        return OpcUa_BadIndexRangeNoData;
    }
    OpcUa_Variant result = null();
    const OpcUa_StatusCode status =
        replacePart(variant.Datatype, &variant.Value, range[0], &value.Value, &result.Value);
    if (OpcUa_IsGood(status)) {
        result.Datatype = variant.Datatype;
        moveTo(variant, result);
    }
    return status;
}

/// True when the value has as many dimensions as the range selects in, each of the selected size.
bool hasSizeOf(const OpcUa_Variant& value, const UaNumericRange& range, OpcUa_UInt32 dimensions)
{
    const Shape shape = shapeOf(value);
    if (shape.count != dimensions || elementsOf(value).count == 0) {
        return false;
    }
    for (OpcUa_UInt32 i = 0; i < dimensions; ++i) {
        if (static_cast<OpcUa_UInt64>(shape.dimensions[i]) != sizeOf(range[i])) {
            return false;
        }
    }
    return true;
}

/// Makes the new elements out of the value, each combined with what stands in its place.
OpcUa_StatusCode replaceParts(const Target& target, const void* elements, const void* values,
                              void* result)
{
    OpcUa_StatusCode status = OpcUa_Good;
    std::size_t index = 0;
    const std::size_t size = target.traits.Size;
    target.selection.forEachRun([&](std::size_t offset, std::size_t length) {
        for (std::size_t i = 0; i < length && OpcUa_IsGood(status); ++i, ++index) {
            status = replacePart(target.type, elementAt(elements, offset + i, size), *target.part,
                                 elementAt(values, index, size), elementAt(result, index, size));
        }
        return OpcUa_IsGood(status);
    });
    return status;
}

OpcUa_StatusCode copyWhole(const Target& target, const void* values, void* result)
{
    OpcUa_StatusCode status = OpcUa_Good;
    const std::size_t size = target.traits.Size;
    const auto count = static_cast<std::size_t>(target.selection.count());
    for (std::size_t i = 0; i < count && OpcUa_IsGood(status); ++i) {
        status = target.traits.CopyTo(elementAt(values, i, size), elementAt(result, i, size));
    }
    return status;
}

/// Exchanges the selected elements for those of a block, which takes the old ones.
void exchangeElements(const Target& target, void* elements, void* values)
{
    const std::size_t size = target.traits.Size;
    auto* value = static_cast<char*>(values);
    target.selection.forEachRun([&](std::size_t offset, std::size_t length) {
        char* run = elementAt(elements, offset, size);
        std::swap_ranges(run, run + length * size, value);
        value += length * size;
        return true;
    });
}

void overwritePlain(const Target& target, void* elements, const void* values)
{
    const std::size_t size = target.traits.Size;
    const auto* value = static_cast<const char*>(values);
    target.selection.forEachRun([&](std::size_t offset, std::size_t length) {
        // The value may be the variant itself.
        std::memmove(elementAt(elements, offset, size), value, length * size);
        value += length * size;
        return true;
    });
}

OpcUa_StatusCode writeElements(OpcUa_Variant& variant, const UaNumericRange& range,
                               const OpcUa_Variant& value)
{
    Target target(variant);
    OpcUa_StatusCode status = findTarget(variant, range, false, target);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    if (!hasSizeOf(value, range, shapeOf(variant).count)) {
        return OpcUa_BadIndexRangeNoData;
    }
    void* elements =
        ::isArray(variant) ? variant.Value.Array.Elements : variant.Value.Matrix.Elements;
    const void* values = elementsOf(value).block;
    if (target.traits.IsPlain) {
        overwritePlain(target, elements, values);
        return OpcUa_Good;
    }
    // All new elements are made before the first one moves in, so that a failure changes nothing.
    Block block(target.traits, target.selection.count());
    if (block.elements() == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    status = target.part == nullptr ? copyWhole(target, values, block.elements())
                                    : replaceParts(target, elements, values, block.elements());
    if (OpcUa_IsGood(status)) {
        exchangeElements(target, elements, block.elements());
    }
    return status;
}

} // namespace

OpcUa_StatusCode UaVariant::getIndexRange(const UaNumericRange& range, UaVariant& target) const
{
    if (!range.isValid()) {
        return OpcUa_BadIndexRangeInvalid;
    }
    UaVariant result;
    OpcUa_StatusCode status = OpcUa_BadIndexRangeNoData;
    if (m_variant.Datatype <= OpcUaType_DiagnosticInfo) {
        status = isScalar(m_variant) ? readScalar(m_variant, range, result.m_variant)
                                     : readElements(m_variant, range, result.m_variant);
    }
    if (OpcUa_IsBad(status)) {
        result.clear();
    }
    target = std::move(result);
    return status;
}

OpcUa_StatusCode UaVariant::setIndexRange(const UaNumericRange& range, const UaVariant& value)
{
    if (!range.isValid()) {
        return OpcUa_BadIndexRangeInvalid;
    }
    if (value.m_variant.Datatype != m_variant.Datatype ||
        value.m_variant.ArrayType != m_variant.ArrayType) {
        return OpcUa_BadTypeMismatch;
    }
    if (m_variant.Datatype > OpcUaType_DiagnosticInfo) {
        return OpcUa_BadIndexRangeNoData;
    }
    return isScalar(m_variant) ? writeScalar(m_variant, range, value.m_variant)
                               : writeElements(m_variant, range, value.m_variant);
}
