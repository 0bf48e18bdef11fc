#include "platform/startup/uaplatformlayer.h"

#include "platform/startup/initcount.h"
#include "platform/startup/startsequence.h"
#include "stack/opcua_proxystubconfiguration.h"

namespace {

InitCount& users()
{
    static InitCount count(startPlatform, stopPlatform);
    return count;
}

} // namespace

int UaPlatformLayer::init()
{
    return users().init();
}

void UaPlatformLayer::cleanup()
{
    users().cleanup();
}

OpcUa_ProxyStubConfiguration UaPlatformLayer::stackConfiguration()
{
    return ::stackConfiguration();
}

int UaPlatformLayer::setStackConfiguration(const OpcUa_ProxyStubConfiguration& configuration)
{
    return ::setStackConfiguration(configuration);
}
