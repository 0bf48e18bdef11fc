#include "platform/buildinformation.h"

#include "platform/allocator.h"
#include "platform/status.h"

#include <cstddef>
#include <cstdio>
#include <cstring>

namespace {

constexpr const char* ownInformation = "Zandrel " ZANDREL_VERSION;

/// Null as long as nothing was added.
char* extendedInformation = nullptr;

} // namespace

const char* OpcUa_P_BuildInformation_Get()
{
    return extendedInformation != nullptr ? extendedInformation : ownInformation;
}

OpcUa_StatusCode OpcUa_P_BuildInformation_Add(const char* prefix, const char* text)
{
    if (prefix == nullptr || text == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const char* const current = OpcUa_P_BuildInformation_Get();
    const std::size_t size =
        std::strlen(current) + std::strlen(prefix) + std::strlen(text) + sizeof "\\";
    auto* const extended = static_cast<char*>(OpcUa_Memory_Alloc(size));
    if (extended == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    std::snprintf(extended, size, "%s\\%s%s", current, prefix, text);
    OpcUa_P_BuildInformation_Restore();
    extendedInformation = extended;
    return OpcUa_Good;
}

void OpcUa_P_BuildInformation_Restore()
{
    OpcUa_Memory_Free(extendedInformation);
    extendedInformation = nullptr;
}
