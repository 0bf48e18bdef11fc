#pragma once

#include "platform/datetime.h"
#include "platform/types.h"
#include "stack/opcua_variant.h"

#include <ctime>

struct OpcUa_DataValue;
class UaString;

/// A time as the count of 100-nanosecond units since 1 January 1601 UTC (OPC 10000-6, 5.2.2.5). The
/// default, count 0, is the null time. Copying copies eight bytes; times may be shared between
/// threads as plain numbers may.
class UaDateTime
{
public:
    UaDateTime() noexcept = default;
    explicit UaDateTime(OpcUa_DateTime dateTime) noexcept
        : m_dateTime(dateTime)
    {
    }

    /// From a count; a negative one is kept as its 64 bits.
    explicit UaDateTime(OpcUa_Int64 ticks) noexcept
        : m_dateTime(OpcUa_DateTime_FromTicks(static_cast<OpcUa_UInt64>(ticks)))
    {
    }
    UaDateTime(const UaDateTime&) noexcept = default;
    UaDateTime(UaDateTime&&) noexcept = default;
    virtual ~UaDateTime() = default;
    UaDateTime& operator=(const UaDateTime&) noexcept = default;
    UaDateTime& operator=(UaDateTime&&) noexcept = default;

    /// The platform's current time.
    [[nodiscard]] static UaDateTime now();

    /// From seconds since 1 January 1970: (seconds + 11644473600) * 10000000, kept to its low 64 bits.
    [[nodiscard]] static UaDateTime fromTime_t(std::time_t seconds) noexcept;

    /// Reads "2024-02-29T12:34:56.789Z", up to a NUL in it. The null time when the text is of another
    /// form or a field is out of its range; OpcUa_DateTime_GetDateTimeFromString tells which.
    [[nodiscard]] static UaDateTime fromString(const UaString& text);

    [[nodiscard]] OpcUa_Int64 toInt64() const noexcept
    {
        return static_cast<OpcUa_Int64>(OpcUa_DateTime_ToTicks(m_dateTime));
    }
    [[nodiscard]] OpcUa_DateTime toOpcUaDateTime() const noexcept { return m_dateTime; }

    /// Whole seconds since 1 January 1970; 0 for a count at or before that moment, negative ones too.
    [[nodiscard]] std::time_t toTime_t() const noexcept;

    /// The millisecond part of the time, 0 to 999.
    [[nodiscard]] OpcUa_Int32 msec() const noexcept;

    [[nodiscard]] bool isNull() const noexcept
    {
        return m_dateTime.dwLowDateTime == 0 && m_dateTime.dwHighDateTime == 0;
    }

    /// The time from this to the other in whole milliseconds, seconds or days, rounded towards 0, of
    /// which the low 32 bits are kept: milliseconds turn over after 24 days.
    [[nodiscard]] OpcUa_Int32 msecsTo(const UaDateTime& other) const noexcept;
    [[nodiscard]] OpcUa_Int32 secsTo(const UaDateTime& other) const noexcept;
    [[nodiscard]] OpcUa_Int32 daysTo(const UaDateTime& other) const noexcept;

    /// Moves this time; a result outside 64 bits turns over.
    void addSecs(OpcUa_Int32 seconds) noexcept;
    void addMilliSecs(OpcUa_Int32 milliSeconds) noexcept;

    /// "2024-02-29T12:34:56.789Z", always UTC; what is below a millisecond is cut off. Null for a time
    /// behind the year 30827 and where memory is short.
    [[nodiscard]] UaString toString() const;

    /// What toString gives before its "T": "2024-02-29".
    [[nodiscard]] UaString toDateString() const;

    /// What toString gives behind its "T": "12:34:56.789Z".
    [[nodiscard]] UaString toTimeString() const;

    /// Copies both words; a null target does nothing.
    void copyTo(OpcUa_DateTime* pTarget) const noexcept;

    /// The order of the counts as unsigned numbers.
    [[nodiscard]] bool operator<(const UaDateTime& other) const noexcept
    {
        return ticks() < other.ticks();
    }
    [[nodiscard]] bool operator>(const UaDateTime& other) const noexcept
    {
        return ticks() > other.ticks();
    }
    [[nodiscard]] bool operator==(const UaDateTime& other) const noexcept
    {
        return ticks() == other.ticks();
    }

    /// Clears the variant and makes it a scalar DateTime. `BadInvalidArgument` for a null pointer.
    [[nodiscard]] OpcUa_StatusCode toVariant(OpcUa_Variant* pVariant) const noexcept;

    /// toVariant into the data value's value; with the flag both its timestamps become the platform's
    /// current time, read once for each. `BadInvalidArgument` for a null pointer.
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pDataValue,
                                               bool bUpdateTimestamps) const noexcept;

private:
    [[nodiscard]] OpcUa_UInt64 ticks() const noexcept { return OpcUa_DateTime_ToTicks(m_dateTime); }

    OpcUa_DateTime m_dateTime{};
};
