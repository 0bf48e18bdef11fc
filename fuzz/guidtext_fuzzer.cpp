// The text form of a guid: a text that is read gives a guid that prints in one form, which reads back
// to the same guid; so does any guid.

#include "fuzz/require.h"
#include "platform/status.h"
#include "stack/opcua_guid.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

void checkGuid(const OpcUa_Guid& guid)
{
    std::array<char, OpcUa_Guid_TextSize> printed{};
    require(OpcUa_IsGood(OpcUa_Guid_ToString(&guid, printed.data(), printed.size())));
    require(std::strlen(printed.data()) == OpcUa_Guid_TextSize - 1);
    OpcUa_Guid read{};
    require(OpcUa_IsGood(OpcUa_Guid_FromString(printed.data(), &read)));
    require(OpcUa_Guid_IsEqual(&guid, &read));
    // The braces may be left out.
    require(OpcUa_IsGood(OpcUa_Guid_FromString(printed.data() + 1, &read)));
    require(OpcUa_Guid_IsEqual(&guid, &read));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    OpcUa_Guid guid = {1, 2, 3, {}};
    const OpcUa_StatusCode status = OpcUa_Guid_FromString(text.c_str(), &guid);
    if (OpcUa_IsGood(status)) {
        checkGuid(guid);
    } else {
        require(status == OpcUa_BadInvalidArgument && OpcUa_Guid_IsNull(&guid));
    }
    if (size >= sizeof(guid)) {
        std::memcpy(&guid, data, sizeof(guid));
        checkGuid(guid);
    }
    return 0;
}
