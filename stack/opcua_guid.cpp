#include "stack/opcua_guid.h"

#include "platform/status.h"
#include "platform/systemrandom.h"

#include <array>
#include <cstdio>

const OpcUa_Guid OpcUa_Guid_Null{};

bool OpcUa_Guid_IsEqual(const OpcUa_Guid* left, const OpcUa_Guid* right)
{
    return OpcUa_Guid_Compare(left, right) == 0;
}

bool OpcUa_Guid_IsNull(const OpcUa_Guid* guid)
{
    return guid == nullptr || OpcUa_Guid_IsEqual(guid, &OpcUa_Guid_Null);
}

OpcUa_StatusCode OpcUa_Guid_Create(OpcUa_Guid* guid)
{
    if (guid == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_Guid fresh{};
    const OpcUa_StatusCode status = OpcUa_P_SystemRandom_Fill(&fresh, sizeof(fresh));
    // Version 4 and the variant of RFC 4122 mark it as random.
    fresh.Data3 = static_cast<OpcUa_UInt16>((fresh.Data3 & 0x0FFFu) | 0x4000u);
    fresh.Data4[0] = static_cast<OpcUa_Byte>((fresh.Data4[0] & 0x3Fu) | 0x80u);
    *guid = OpcUa_IsGood(status) ? fresh : OpcUa_Guid_Null;
    return status;
}

OpcUa_StatusCode OpcUa_Guid_ToString(const OpcUa_Guid* guid, char* buffer, OpcUa_UInt32 bufferSize)
{
    if (buffer == nullptr || bufferSize == 0) {
        return OpcUa_BadInvalidArgument;
    }
    buffer[0] = '\0';
    if (guid == nullptr || bufferSize < OpcUa_Guid_TextSize) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_Byte* rest = guid->Data4;
    std::snprintf(buffer, bufferSize, "{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}",
                  guid->Data1, guid->Data2, guid->Data3, rest[0], rest[1], rest[2], rest[3],
                  rest[4], rest[5], rest[6], rest[7]);
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_Guid_FromString(const char* text, OpcUa_Guid* guid)
{
    OpcUa_Guid_Clear(guid);
    if (text == nullptr || guid == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_Guid read{};
    std::array<OpcUa_UInt16, 8> rest{};
    // NOLINTNEXTLINE(cert-err34-c): the field widths leave nothing to overflow, the count is checked.
    const int count = std::sscanf(text + (*text == '{' ? 1 : 0),
                                  "%08x-%04hx-%04hx-%02hx%02hx-%02hx%02hx%02hx%02hx%02hx%02hx",
                                  &read.Data1, &read.Data2, &read.Data3, &rest[0], &rest[1],
                                  &rest[2], &rest[3], &rest[4], &rest[5], &rest[6], &rest[7]);
    if (count != 3 + static_cast<int>(rest.size())) {
        return OpcUa_BadInvalidArgument;
    }
    for (std::size_t i = 0; i < rest.size(); ++i) {
        read.Data4[i] = static_cast<OpcUa_Byte>(rest[i]);
    }
    *guid = read;
    return OpcUa_Good;
}
