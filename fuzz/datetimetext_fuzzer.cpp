// The text form of a time: a text that is read prints as itself, and any time that prints reads back.

#include "fuzz/require.h"
#include "platform/datetime.h"
#include "platform/status.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

void checkText(const std::string& text)
{
    OpcUa_DateTime time{1, 1};
    const OpcUa_StatusCode status = OpcUa_DateTime_GetDateTimeFromString(text.c_str(), &time);
    if (OpcUa_IsBad(status)) {
        require(status == OpcUa_BadSyntaxError || status == OpcUa_BadOutOfRange);
        require(OpcUa_DateTime_ToTicks(time) == 0);
        return;
    }
    std::array<char, OpcUa_DateTime_TextSize + 1> printed{};
    require(
        OpcUa_IsGood(OpcUa_DateTime_GetStringFromDateTime(time, printed.data(), printed.size())));
    require(std::strcmp(printed.data(), text.c_str()) == 0);
}

void checkTicks(OpcUa_UInt64 ticks)
{
    std::array<char, OpcUa_DateTime_TextSize + 1> printed{};
    const OpcUa_StatusCode status = OpcUa_DateTime_GetStringFromDateTime(
        OpcUa_DateTime_FromTicks(ticks), printed.data(), printed.size());
    if (OpcUa_IsBad(status)) {
        require(status == OpcUa_BadOutOfRange && printed[0] == '\0');
        return;
    }
    OpcUa_DateTime read{};
    require(OpcUa_IsGood(OpcUa_DateTime_GetDateTimeFromString(printed.data(), &read)));
    // What lies below the millisecond isn't printed.
    require(OpcUa_DateTime_ToTicks(read) == ticks - ticks % 10000);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    checkText(std::string(reinterpret_cast<const char*>(data), size));
    OpcUa_UInt64 ticks = 0;
    if (size >= sizeof(ticks)) {
        std::memcpy(&ticks, data, sizeof(ticks));
        checkTicks(ticks);
    }
    return 0;
}
