#pragma once

#include "platform/status.h"
#include "platform/types.h"

class UaString;

/// A status code with its name (OPC 10000-4, 7.39; the names are those of OPC 10000-6, Annex A). The
/// top two bits are the severity, the low 16 bits info bits. A status is tested by its severity and
/// never by equality with 0: good statuses carry info bits too. The default is Good.
class UaStatusCode
{
public:
    constexpr UaStatusCode() noexcept = default;
    explicit constexpr UaStatusCode(OpcUa_StatusCode code) noexcept
        : m_code(code)
    {
    }

    [[nodiscard]] constexpr OpcUa_StatusCode code() const noexcept { return m_code; }
    constexpr void setCode(OpcUa_StatusCode code) noexcept { m_code = code; }

    /// Neither severity bit is set.
    [[nodiscard]] constexpr bool isGood() const noexcept { return OpcUa_IsGood(m_code); }

    /// At least one severity bit is set: uncertain, bad or the reserved pattern 11.
    [[nodiscard]] constexpr bool isNotGood() const noexcept { return OpcUa_IsNotGood(m_code); }

    /// The top bit is set.
    [[nodiscard]] constexpr bool isBad() const noexcept { return OpcUa_IsBad(m_code); }

    /// The top bit is clear.
    [[nodiscard]] constexpr bool isNotBad() const noexcept { return OpcUa_IsNotBad(m_code); }

    /// The severity bits are 01.
    [[nodiscard]] constexpr bool isUncertain() const noexcept { return OpcUa_IsUncertain(m_code); }

    /// "BadOutOfRange"; with info bits "BadOutOfRange (0x803c0001)", the whole code in hexadecimal;
    /// for a code without a name "0x12340000". Null where memory is short. Any thread.
    [[nodiscard]] UaString toString() const;
    [[nodiscard]] static UaString toString(OpcUa_StatusCode code);

    /// All 32 bits, info bits too.
    [[nodiscard]] constexpr bool operator==(const UaStatusCode& other) const noexcept = default;
    [[nodiscard]] constexpr bool operator==(OpcUa_StatusCode code) const noexcept
    {
        return m_code == code;
    }

private:
    OpcUa_StatusCode m_code = OpcUa_Good;
};
