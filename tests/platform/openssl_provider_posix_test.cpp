#include "platform/buildinformation.h"
#include "platform/openssl_provider.h"
#include "platform/startup/uaplatformlayer.h"
#include "platform/status.h"
#include "platform/trace.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <string>

#include <sys/types.h>

namespace {

bool isSourceSilent = false;

/// Takes the system's random source away while it lives.
class SilentSource
{
public:
    SilentSource() { isSourceSilent = true; }
    ~SilentSource() { isSourceSilent = false; }
    SilentSource(const SilentSource&) = delete;
    SilentSource& operator=(const SilentSource&) = delete;
};

} // namespace

// The linker puts this in place of the system's function.
extern "C" ssize_t __real_getrandom(void* buffer, std::size_t size, unsigned flags);

extern "C" ssize_t __wrap_getrandom(void* buffer, std::size_t size, unsigned flags)
{
    if (isSourceSilent) {
        errno = ENOSYS;
        return -1;
    }
    return __real_getrandom(buffer, size, flags);
}

namespace {

TEST(Provider, system_that_gives_no_seed_ends_the_start)
{
    const std::string own = OpcUa_P_BuildInformation_Get();
    {
        const SilentSource silent;
        EXPECT_EQ(OpcUa_P_OpenSSL_Initialize(), OpcUa_Bad);
        EXPECT_EQ(OpcUa_P_OpenSSL_GetLockCount(), 0);
        EXPECT_EQ(OpcUa_P_BuildInformation_Get(), own);
        EXPECT_EQ(UaPlatformLayer::init(), -1);
        EXPECT_FALSE(OpcUa_Trace(OpcUa_TraceLevel_Error, "probe"));
        UaPlatformLayer::cleanup();
    }
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    UaPlatformLayer::cleanup();
}

} // namespace
