#include "base/uavariantrange.h"

#include "base/uachar.h"
#include "platform/allocator.h"

#include <algorithm>
#include <limits>

namespace UaVariantRange {

namespace {

std::size_t nextCharacter(std::string_view text, std::size_t position)
{
    return position + UaChar::sequenceLength(text.data() + position, text.size() - position);
}

Part findBytes(std::string_view bytes, const UaNumericRangeEntry& entry)
{
    const OpcUa_UInt64 begin = std::min<OpcUa_UInt64>(entry.first, bytes.size());
    const OpcUa_UInt64 end = std::min<OpcUa_UInt64>(OpcUa_UInt64{entry.end()} + 1, bytes.size());
    return {begin, end, end - begin};
}

} // namespace

Part findCharacters(std::string_view text, const UaNumericRangeEntry& entry)
{
    std::size_t position = 0;
    for (OpcUa_UInt64 i = 0; i < entry.first && position < text.size(); ++i) {
        position = nextCharacter(text, position);
    }
    Part part = {position, position, 0};
    while (part.end < text.size() && part.count < sizeOf(entry)) {
        part.end = nextCharacter(text, part.end);
        ++part.count;
    }
    return part;
}

std::string_view bytesOf(const OpcUa_ByteString& bytes)
{
    return bytes.Length < 1 || bytes.Data == nullptr
               ? std::string_view()
               : std::string_view(reinterpret_cast<const char*>(bytes.Data),
                                  static_cast<std::size_t>(bytes.Length));
}

std::string_view contentOf(OpcUa_Byte type, const void* element)
{
    return type == OpcUaType_String
               ? UaVariantParts::viewOf(*static_cast<const OpcUa_String*>(element))
               : bytesOf(*static_cast<const OpcUa_ByteString*>(element));
}

Part findPart(OpcUa_Byte type, const void* element, const UaNumericRangeEntry& entry)
{
    const std::string_view content = contentOf(type, element);
    return type == OpcUaType_String ? findCharacters(content, entry) : findBytes(content, entry);
}

OpcUa_UInt64 partsOf(OpcUa_Byte type, const void* element)
{
    constexpr UaNumericRangeEntry all = {0, std::numeric_limits<OpcUa_UInt32>::max(),
                                         UaNumericRangeEntry::Range};
    return findPart(type, element, all).count;
}

OpcUa_StatusCode join(OpcUa_Byte type, std::string_view first, std::string_view second,
                      std::string_view third, void* element)
{
    const std::size_t size = first.size() + second.size() + third.size();
    char* block = nullptr;
    if (size <= static_cast<std::size_t>(std::numeric_limits<OpcUa_Int32>::max())) {
        block = static_cast<char*>(OpcUa_Memory_Alloc(size + 1));
    }
    if (block == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    char* end = std::copy(first.begin(), first.end(), block);
    end = std::copy(second.begin(), second.end(), end);
    end = std::copy(third.begin(), third.end(), end);
    *end = '\0';
    if (type == OpcUaType_String) {
        *static_cast<OpcUa_String*>(element) = {OpcUa_String_OwnsContent,
                                                static_cast<OpcUa_UInt32>(size), block};
    } else {
        *static_cast<OpcUa_ByteString*>(element) = {static_cast<OpcUa_Int32>(size),
                                                    reinterpret_cast<OpcUa_Byte*>(block)};
    }
    return OpcUa_Good;
}

Shape shapeOf(const OpcUa_Variant& variant)
{
    if (UaVariantParts::isArray(variant)) {
        return {&variant.Value.Array.Length, 1};
    }
    const OpcUa_VariantMatrix& matrix = variant.Value.Matrix;
    return {matrix.Dimensions, static_cast<OpcUa_UInt32>(matrix.NoOfDimensions)};
}

bool Selection::select(const Shape& shape, const UaNumericRange& range, bool shortens)
{
    OpcUa_Int64 stride = 1;
    OpcUa_Int64 count = 1;
    for (OpcUa_UInt32 i = shape.count; i-- > 0;) {
        const OpcUa_Int64 dimension = shape.dimensions[i];
        const OpcUa_Int64 first = range[i].first;
        const OpcUa_Int64 end = range[i].end();
        if (first >= dimension || (!shortens && end >= dimension)) {
            return false;
        }
        const OpcUa_Int64 selected = std::min(end, dimension - 1) - first + 1;
        m_offset += first * stride;
        count *= selected;
        if (selected > 1) {
            add(selected, stride);
        }
        stride *= dimension;
    }
    m_count = static_cast<OpcUa_Int32>(count);
    return true;
}

void Selection::add(OpcUa_Int64 count, OpcUa_Int64 stride)
{
    // Neighbours of neighbours make one run.
    if (m_stepCount == 0 && stride == m_runLength) {
        m_runLength *= count;
    } else {
        m_steps[m_stepCount] = {count, stride};
        ++m_stepCount;
    }
}

} // namespace UaVariantRange
