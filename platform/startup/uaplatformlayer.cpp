#include "platform/startup/uaplatformlayer.h"

#include "platform/startup/initcount.h"
#include "platform/startup/startsequence.h"

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
