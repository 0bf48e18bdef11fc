#include "platform/status.h"
#include "platform/systemrandom.h"

#include <algorithm>
#include <cerrno>

#include <sys/random.h>
#include <sys/types.h>

OpcUa_StatusCode OpcUa_P_SystemRandom_Initialize()
{
    OpcUa_Byte probe = 0;
    return OpcUa_P_SystemRandom_Fill(&probe, sizeof probe);
}

OpcUa_StatusCode OpcUa_P_SystemRandom_Fill(void* buffer, OpcUa_UInt32 size)
{
    // A request of this size is answered whole on any system that offers the call.
    constexpr OpcUa_UInt32 largestRequest = 1024;
    if (buffer == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    auto* bytes = static_cast<OpcUa_Byte*>(buffer);
    for (OpcUa_UInt32 done = 0; done < size;) {
        const ssize_t got = getrandom(bytes + done, std::min(size - done, largestRequest), 0);
        if (got < 0 && errno != EINTR) {
            return OpcUa_BadResourceUnavailable;
        }
        done += static_cast<OpcUa_UInt32>(std::max<ssize_t>(got, 0));
    }
    return OpcUa_Good;
}
