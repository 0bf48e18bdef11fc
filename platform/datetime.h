#pragma once

#include "platform/types.h"

/// A time as the count of 100-nanosecond units since 1 January 1601 UTC, kept as two words. 0 is the
/// null time.
struct OpcUa_DateTime
{
    OpcUa_UInt32 dwLowDateTime;
    OpcUa_UInt32 dwHighDateTime;
};
static_assert(sizeof(OpcUa_DateTime) == 8);

/// Size in bytes of the text form of a date up to the year 9999, with its closing NUL.
inline constexpr OpcUa_UInt32 OpcUa_DateTime_TextSize = 25;

/// The smallest and the largest year that the text form knows.
inline constexpr OpcUa_Int32 OpcUa_DateTime_MinYear = 1601;
inline constexpr OpcUa_Int32 OpcUa_DateTime_MaxYear = 30827;

/// The count as one number.
[[nodiscard]] constexpr OpcUa_UInt64 OpcUa_DateTime_ToTicks(OpcUa_DateTime dateTime)
{
    return (OpcUa_UInt64{dateTime.dwHighDateTime} << 32) | dateTime.dwLowDateTime;
}

/// The record that holds a count.
[[nodiscard]] constexpr OpcUa_DateTime OpcUa_DateTime_FromTicks(OpcUa_UInt64 ticks)
{
    return {static_cast<OpcUa_UInt32>(ticks), static_cast<OpcUa_UInt32>(ticks >> 32)};
}

/// The current time of the platform's clock.
[[nodiscard]] OpcUa_DateTime OpcUa_DateTime_UtcNow();

/// Prints a time by "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ"; what is below a millisecond is cut off.
/// `bufferSize` is in bytes. `BadInvalidArgument` for a null buffer, one below 25 bytes, or one of
/// 25 bytes for a year of five digits. `BadOutOfRange` for a time behind the year 30827. After a
/// failure a non-empty buffer holds the empty text.
[[nodiscard]] OpcUa_StatusCode OpcUa_DateTime_GetStringFromDateTime(OpcUa_DateTime dateTime,
                                                                    char* buffer,
                                                                    OpcUa_UInt32 bufferSize);

/// Reads the form that OpcUa_DateTime_GetStringFromDateTime prints, and nothing else around it. The
/// year has four digits, or five from 10000 on. `BadInvalidArgument` for a null pointer,
/// `BadSyntaxError` for a text of another form, `BadOutOfRange` for the right form with a field
/// outside its range, such as a 30th of February or a year before 1601. A failure gives the null
/// time.
[[nodiscard]] OpcUa_StatusCode OpcUa_DateTime_GetDateTimeFromString(const char* text,
                                                                    OpcUa_DateTime* dateTime);
