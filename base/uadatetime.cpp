#include "base/uadatetime.h"

#include "base/uastring.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_datavalue.h"

#include <array>
#include <string_view>

namespace {

constexpr OpcUa_Int64 ticksPerMilliSecond = 10000;
constexpr OpcUa_Int64 ticksPerSecond = 10000000;
constexpr OpcUa_Int64 ticksPerDay = 864000000000;
constexpr OpcUa_Int64 ticksAtUnixEpoch = 116444736000000000;

/// The text of a time, empty when it has none.
class TimeText
{
public:
    explicit TimeText(OpcUa_DateTime dateTime)
        : m_bGood(OpcUa_IsGood(OpcUa_DateTime_GetStringFromDateTime(dateTime, m_text.data(), size)))
    {
    }

    [[nodiscard]] std::string_view view() const
    {
        return m_bGood ? std::string_view(m_text.data()) : std::string_view();
    }

private:
    static constexpr OpcUa_UInt32 size = 100;

    std::array<char, size> m_text;
    bool m_bGood;
};

/// A text without a character makes the null string.
UaString toUaString(std::string_view text)
{
    return text.empty() ? UaString() : UaString(text.data(), static_cast<OpcUa_Int64>(text.size()));
}

/// The span from one count to the other in a unit, truncated to 32 bits.
OpcUa_Int32 spanIn(OpcUa_Int64 unit, OpcUa_UInt64 from, OpcUa_UInt64 to)
{
    return static_cast<OpcUa_Int32>(static_cast<OpcUa_Int64>(to - from) / unit);
}

} // namespace

UaDateTime UaDateTime::now()
{
    return UaDateTime(OpcUa_DateTime_UtcNow());
}

UaDateTime UaDateTime::fromTime_t(std::time_t seconds) noexcept
{
    // Unsigned, because a far time overflows.
    constexpr OpcUa_UInt64 secondsAtUnixEpoch = ticksAtUnixEpoch / ticksPerSecond;
    const OpcUa_UInt64 ticks =
        (static_cast<OpcUa_UInt64>(seconds) + secondsAtUnixEpoch) * OpcUa_UInt64{ticksPerSecond};
    return UaDateTime(OpcUa_DateTime_FromTicks(ticks));
}

UaDateTime UaDateTime::fromString(const UaString& text)
{
    OpcUa_DateTime dateTime{};
    static_cast<void>(OpcUa_DateTime_GetDateTimeFromString(text.toUtf8(), &dateTime));
    return UaDateTime(dateTime);
}

std::time_t UaDateTime::toTime_t() const noexcept
{
    const OpcUa_Int64 count = toInt64();
    return count <= ticksAtUnixEpoch ? 0 : (count - ticksAtUnixEpoch) / ticksPerSecond;
}

OpcUa_Int32 UaDateTime::msec() const noexcept
{
    return static_cast<OpcUa_Int32>(ticks() / OpcUa_UInt64{ticksPerMilliSecond} % 1000);
}

OpcUa_Int32 UaDateTime::msecsTo(const UaDateTime& other) const noexcept
{
    return spanIn(ticksPerMilliSecond, ticks(), other.ticks());
}

OpcUa_Int32 UaDateTime::secsTo(const UaDateTime& other) const noexcept
{
    return spanIn(ticksPerSecond, ticks(), other.ticks());
}

OpcUa_Int32 UaDateTime::daysTo(const UaDateTime& other) const noexcept
{
    return spanIn(ticksPerDay, ticks(), other.ticks());
}

void UaDateTime::addSecs(OpcUa_Int32 seconds) noexcept
{
    const OpcUa_Int64 span = seconds * ticksPerSecond;
    m_dateTime = OpcUa_DateTime_FromTicks(ticks() + static_cast<OpcUa_UInt64>(span));
}

void UaDateTime::addMilliSecs(OpcUa_Int32 milliSeconds) noexcept
{
    const OpcUa_Int64 span = milliSeconds * ticksPerMilliSecond;
    m_dateTime = OpcUa_DateTime_FromTicks(ticks() + static_cast<OpcUa_UInt64>(span));
}

UaString UaDateTime::toString() const
{
    return toUaString(TimeText(m_dateTime).view());
}

UaString UaDateTime::toDateString() const
{
    const TimeText text(m_dateTime);
    return toUaString(text.view().substr(0, text.view().find('T')));
}

UaString UaDateTime::toTimeString() const
{
    const TimeText text(m_dateTime);
    // Without a "T" the position before the first character is taken, and so the whole text.
    return toUaString(text.view().substr(text.view().find('T') + 1));
}

void UaDateTime::copyTo(OpcUa_DateTime* pTarget) const noexcept
{
    if (pTarget != nullptr) {
        *pTarget = m_dateTime;
    }
}

OpcUa_StatusCode UaDateTime::toVariant(OpcUa_Variant* pVariant) const noexcept
{
    if (pVariant == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_Variant_Clear(pVariant);
    pVariant->Datatype = OpcUaType_DateTime;
    pVariant->ArrayType = OpcUa_VariantArrayType_Scalar;
    pVariant->Value.DateTime = m_dateTime;
    return OpcUa_Good;
}

OpcUa_StatusCode UaDateTime::toDataValue(OpcUa_DataValue* pDataValue,
                                         bool bUpdateTimestamps) const noexcept
{
    if (pDataValue == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_StatusCode status = toVariant(&pDataValue->Value);
    if (bUpdateTimestamps) {
        pDataValue->SourceTimestamp = OpcUa_DateTime_UtcNow();
        pDataValue->ServerTimestamp = OpcUa_DateTime_UtcNow();
    }
    return status;
}
