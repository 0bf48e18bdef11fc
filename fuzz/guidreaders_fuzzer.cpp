// The class's reader of guid texts, which has a short cut for the usual form, agrees with the stack's
// scan about every text.

#include "base/uaguid.h"
#include "base/uastring.h"
#include "fuzz/require.h"
#include "platform/status.h"
#include "stack/opcua_guid.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    OpcUa_Guid scanned{};
    const OpcUa_StatusCode status = OpcUa_Guid_FromString(text.c_str(), &scanned);

    UaGuid guid(OpcUa_Guid{1, 2, 3, {}});
    require(guid.fromString(text.c_str()) == status);
    require(guid == UaGuid(scanned));

    UaGuid fromString(OpcUa_Guid{1, 2, 3, {}});
    require(fromString.fromString(UaString(text.data(), static_cast<OpcUa_Int64>(size))) == status);
    require(fromString == guid);

    UaGuid printed;
    require(printed.fromString(guid.toString()) == OpcUa_Good);
    require(printed == guid);
    return 0;
}
