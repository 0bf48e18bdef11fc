#pragma once

#include "platform/types.h"

class UaString;

/// One dimension of an index range.
struct UaNumericRangeEntry
{
    static constexpr OpcUa_UInt32 Single = 1;
    static constexpr OpcUa_UInt32 Range = 2;

    OpcUa_UInt32 first; ///< First index, counted from 0.
    OpcUa_UInt32 last;  ///< Last index; not looked at for a single index.
    OpcUa_UInt32 kind;  ///< Single or Range; anything else is invalid.

    /// A single index, or a range whose first index is below its last.
    [[nodiscard]] constexpr bool isValid() const
    {
        return kind == Single || (kind == Range && first < last);
    }

    /// The last index that is meant: for a single index the first.
    [[nodiscard]] constexpr OpcUa_UInt32 end() const { return kind == Single ? first : last; }

    friend constexpr bool operator==(const UaNumericRangeEntry&,
                                     const UaNumericRangeEntry&) = default;
};

/// The parsed form of an index range such as "2" or "0:3,5" (OPC 10000-4, 7.27): a dimension each
/// between commas, a single index or the first and the last index between colons. The default has no
/// dimension and isn't valid.
///
/// Owns its entries: copies are deep, moves take them. Where memory is short a copy is empty. Not
/// shared between threads.
class UaNumericRange
{
public:
    UaNumericRange() noexcept = default;
    UaNumericRange(const UaNumericRange& other);
    UaNumericRange(UaNumericRange&& other) noexcept;
    ~UaNumericRange();

    UaNumericRange& operator=(const UaNumericRange& other);
    UaNumericRange& operator=(UaNumericRange&& other) noexcept;

    /// Reads a text of decimal digits, ":" and ",", nothing else, not even blanks. Leading zeros are
    /// allowed. `BadIndexRangeInvalid` for any other text, the empty one, an index above 4294967295
    /// and a range whose first index isn't below its last; `BadInvalidArgument` for a null string;
    /// `BadOutOfMemory`. The range is empty after a failure.
    [[nodiscard]] OpcUa_StatusCode fromString(const UaString& sRange);

    /// The text that fromString reads, without leading zeros; null for an invalid range and where
    /// memory is short.
    [[nodiscard]] UaString toString() const;

    /// At least one entry, and every entry valid.
    [[nodiscard]] bool isValid() const;

    /// Number of dimensions.
    [[nodiscard]] OpcUa_UInt32 count() const { return m_count; }

    /// The entry of a dimension, whose index must be below count: it isn't checked.
    const UaNumericRangeEntry& operator[](OpcUa_UInt32 index) const { return m_pEntries[index]; }

    /// Adds a dimension, valid or not. `BadOutOfMemory` leaves the range as it was.
    [[nodiscard]] OpcUa_StatusCode append(const UaNumericRangeEntry& entry);

    /// Takes all dimensions away.
    void clear();

    [[nodiscard]] bool operator==(const UaNumericRange& other) const;

private:
    OpcUa_UInt32 m_count = 0;
    OpcUa_UInt32 m_capacity = 0;
    UaNumericRangeEntry* m_pEntries = nullptr;
};
