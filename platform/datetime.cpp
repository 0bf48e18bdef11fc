#include "platform/datetime.h"

#include "platform/clock.h"
#include "platform/status.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>

namespace {

using std::chrono::days;
using std::chrono::hh_mm_ss;
using std::chrono::milliseconds;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr OpcUa_UInt64 ticksPerMillisecond = 10000;
constexpr OpcUa_UInt64 ticksPerDay = 864000000000;
constexpr sys_days epoch = std::chrono::year(OpcUa_DateTime_MinYear) / 1 / 1;
constexpr sys_days behindLastDay = std::chrono::year(OpcUa_DateTime_MaxYear + 1) / 1 / 1;
constexpr OpcUa_UInt64 dayCount = static_cast<OpcUa_UInt64>((behindLastDay - epoch).count());

/// One number of the text form and the character that closes it.
struct Field
{
    std::size_t digits;
    char closing;
};

constexpr std::array<Field, 7> fields = {
    {{4, '-'}, {2, '-'}, {2, 'T'}, {2, ':'}, {2, ':'}, {2, '.'}, {3, 'Z'}}};

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Years from 10000 on have a digit more than the others.
std::size_t countYearDigits(const char* text)
{
    std::size_t count = 0;
    while (count < 5 && isDigit(text[count])) {
        ++count;
    }
    return count == 5 && text[0] != '0' ? 5 : 4;
}

/// Reads the numbers of the whole text; false for a text of another form.
bool readFields(const char* text, std::array<int, fields.size()>& values)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t digits = i == 0 ? countYearDigits(text) : fields[i].digits;
        values[i] = 0;
        for (std::size_t digit = 0; digit < digits; ++digit, ++text) {
            if (!isDigit(*text)) {
                return false;
            }
            values[i] = values[i] * 10 + (*text - '0');
        }
        if (*text != fields[i].closing) {
            return false;
        }
        ++text;
    }
    return *text == '\0';
}

bool isInRange(const year_month_day& date, const std::array<int, fields.size()>& values)
{
    return date.ok() && values[0] >= OpcUa_DateTime_MinYear &&
           values[0] <= OpcUa_DateTime_MaxYear && values[3] < 24 && values[4] < 60 &&
           values[5] < 60;
}

} // namespace

OpcUa_DateTime OpcUa_DateTime_UtcNow()
{
    return OpcUa_DateTime_FromTicks(OpcUa_P_Clock_UtcNow());
}

OpcUa_StatusCode OpcUa_DateTime_GetStringFromDateTime(OpcUa_DateTime dateTime, char* buffer,
                                                      OpcUa_UInt32 bufferSize)
{
    if (buffer == nullptr || bufferSize == 0) {
        return OpcUa_BadInvalidArgument;
    }
    buffer[0] = '\0';
    if (bufferSize < OpcUa_DateTime_TextSize) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_UInt64 ticks = OpcUa_DateTime_ToTicks(dateTime);
    if (ticks / ticksPerDay >= dayCount) {
        return OpcUa_BadOutOfRange;
    }
    const year_month_day date = epoch + days(ticks / ticksPerDay);
    const hh_mm_ss time(milliseconds(ticks % ticksPerDay / ticksPerMillisecond));
    const int length = std::snprintf(
        buffer, bufferSize, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
        static_cast<int>(static_cast<unsigned>(date.month())),
        static_cast<int>(static_cast<unsigned>(date.day())), static_cast<int>(time.hours().count()),
        static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
        static_cast<int>(time.subseconds().count()));
    if (static_cast<OpcUa_UInt32>(length) >= bufferSize) {
        buffer[0] = '\0';
        return OpcUa_BadInvalidArgument;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_DateTime_GetDateTimeFromString(const char* text, OpcUa_DateTime* dateTime)
{
    if (dateTime == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    *dateTime = {};
    if (text == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    std::array<int, fields.size()> values{};
    if (!readFields(text, values)) {
        return OpcUa_BadSyntaxError;
    }
    const year_month_day date = std::chrono::year(values[0]) / values[1] / values[2];
    if (!isInRange(date, values)) {
        return OpcUa_BadOutOfRange;
    }
    const auto dayNumber = static_cast<OpcUa_UInt64>((sys_days(date) - epoch).count());
    const milliseconds time = std::chrono::hours(values[3]) + std::chrono::minutes(values[4]) +
                              std::chrono::seconds(values[5]) + milliseconds(values[6]);
    *dateTime = OpcUa_DateTime_FromTicks(
        dayNumber * ticksPerDay + static_cast<OpcUa_UInt64>(time.count()) * ticksPerMillisecond);
    return OpcUa_Good;
}
