#pragma once

#include "base/uanumericrange.h"
#include "base/uavariantparts.h"

#include <array>
#include <cstddef>
#include <string_view>

/// What an index range means within a value, for the sources of UaVariant.
namespace UaVariantRange {

/// Only strings and byte strings have something to index within an element.
[[nodiscard]] constexpr bool hasParts(OpcUa_Byte type)
{
    return type == OpcUaType_String || type == OpcUaType_ByteString;
}

/// Indexes that an entry spans.
[[nodiscard]] constexpr OpcUa_UInt64 sizeOf(const UaNumericRangeEntry& entry)
{
    return OpcUa_UInt64{entry.end()} - entry.first + 1;
}

/// The part of a String or ByteString that an entry selects, in bytes.
struct Part
{
    std::size_t begin = 0; ///< The end of the text when nothing is selected.
    std::size_t end = 0;
    OpcUa_UInt64 count =
        0; ///< Characters or bytes that were found; less than the entry's size where
           ///< the text ends before.
};

/// Characters, told apart by their lead bytes.
[[nodiscard]] Part findCharacters(std::string_view text, const UaNumericRangeEntry& entry);

/// The bytes of an element; none for null.
[[nodiscard]] std::string_view bytesOf(const OpcUa_ByteString& bytes);

/// The part of a String or ByteString record.
[[nodiscard]] Part findPart(OpcUa_Byte type, const void* element, const UaNumericRangeEntry& entry);

/// The bytes of a String or ByteString record.
[[nodiscard]] std::string_view contentOf(OpcUa_Byte type, const void* element);

/// Number of characters or bytes of a String or ByteString record.
[[nodiscard]] OpcUa_UInt64 partsOf(OpcUa_Byte type, const void* element);

/// Makes a String or ByteString record, empty or longer but not null, out of three pieces in a row.
/// `BadOutOfMemory`, also for a result too long for the record.
[[nodiscard]] OpcUa_StatusCode join(OpcUa_Byte type, std::string_view first,
                                    std::string_view second, std::string_view third, void* element);

/// The dimensions of an array or a matrix.
struct Shape
{
    const OpcUa_Int32* dimensions;
    OpcUa_UInt32 count;
};
[[nodiscard]] Shape shapeOf(const OpcUa_Variant& variant);

/// A block within the flat elements of an array or matrix, as runs of neighbours. Dimensions of which
/// one index is selected take no part in the walk, so there are at most 31 that do, however many the
/// matrix has, and the work is bounded by the elements.
class Selection
{
public:
    /// Selects the block of the range's first entries, one for each dimension. With `shortens` an end
    /// behind a dimension's is brought back to it, otherwise it fails. False when the block isn't
    /// inside.
    [[nodiscard]] bool select(const Shape& shape, const UaNumericRange& range, bool shortens);

    /// Number of selected elements.
    [[nodiscard]] OpcUa_Int32 count() const { return m_count; }

    /// Calls `visit(offset, length)` for each run of elements, in order; it answers whether to go on.
    /// True when all were visited.
    template <typename Visit>
    bool forEachRun(Visit visit) const;

private:
    struct Step
    {
        OpcUa_Int64 count;
        OpcUa_Int64 stride;
    };

    void add(OpcUa_Int64 count, OpcUa_Int64 stride);

    std::array<Step, 31> m_steps{}; ///< The innermost first.
    std::size_t m_stepCount = 0;
    OpcUa_Int64 m_offset = 0;
    OpcUa_Int64 m_runLength = 1;
    OpcUa_Int32 m_count = 0;
};

template <typename Visit>
bool Selection::forEachRun(Visit visit) const
{
    std::array<OpcUa_Int64, 31> position{};
    OpcUa_Int64 offset = m_offset;
    for (;;) {
        if (!visit(static_cast<std::size_t>(offset), static_cast<std::size_t>(m_runLength))) {
            return false;
        }
        std::size_t step = 0;
        while (step < m_stepCount && position[step] + 1 == m_steps[step].count) {
            offset -= position[step] * m_steps[step].stride;
            position[step] = 0;
            ++step;
        }
        if (step == m_stepCount) {
            return true;
        }
        ++position[step];
        offset += m_steps[step].stride;
    }
}

} // namespace UaVariantRange
